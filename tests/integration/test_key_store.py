"""Tests the database key in its file, over several runs of the executable."""

import pytest

from vantro_interface.codec import MethodError

GET_KEY = "getDatabaseEncryptionKey"


@pytest.fixture
def key_file(wine_prefix):
    """Returns the path of the key file, whose folder does not exist yet."""
    return wine_prefix.local_app_data / "Vantro/db.key"


def key_of_a_new_run(host):
    """Returns the key of a fresh start of the executable, which then ends normally."""
    vantro = host()
    key = vantro.client.invoke(GET_KEY)
    assert vantro.quit() == 0
    return key


def test_the_first_call_makes_a_key_and_every_later_one_returns_it(host, key_file):
    assert not key_file.parent.exists()
    client = host().client
    key = client.invoke(GET_KEY)
    assert isinstance(key, bytes) and len(key) == 32
    assert key_file.exists()
    assert client.invoke(GET_KEY) == key


def test_the_key_is_the_same_after_a_restart(host):
    assert key_of_a_new_run(host) == key_of_a_new_run(host)


def test_the_key_is_the_same_after_a_process_was_killed(host):
    vantro = host()
    key = vantro.client.invoke(GET_KEY)
    vantro.kill()
    assert key_of_a_new_run(host) == key


def test_the_key_file_does_not_contain_the_plain_key(host, key_file):
    key = key_of_a_new_run(host)
    assert key not in key_file.read_bytes()


def test_a_key_file_of_another_run_is_decrypted(host, key_file):
    first = key_of_a_new_run(host)
    kept = key_file.read_bytes()
    key_file.unlink()
    second = key_of_a_new_run(host)
    assert second != first
    key_file.write_bytes(kept)
    assert key_of_a_new_run(host) == first


@pytest.mark.parametrize("damage", [
    lambda content: b"", lambda content: b"garbage" * 40, lambda content: content[:-1],
    lambda content: bytes([content[0] ^ 0xFF]) + content[1:],
], ids=["empty", "garbage", "cut", "first byte flipped"])
def test_a_damaged_file_is_replaced_by_a_new_lasting_key(host, key_file, damage):
    lost = key_of_a_new_run(host)
    key_file.write_bytes(damage(key_file.read_bytes()))
    vantro = host()
    new = vantro.client.invoke(GET_KEY)
    assert new != lost and len(new) == 32
    assert "ERROR DatabaseKeyStore: CryptUnprotectData failed" in vantro.log
    assert vantro.quit() == 0
    assert key_of_a_new_run(host) == new


def test_a_removed_folder_is_made_again_with_a_new_key(host, key_file):
    client = host().client
    lost = client.invoke(GET_KEY)
    key_file.unlink()
    key_file.parent.rmdir()
    new = client.invoke(GET_KEY)
    assert new != lost
    assert key_file.exists()


def test_a_key_that_cannot_be_stored_is_not_returned(host, key_file):
    key_file.mkdir(parents=True)  # a folder with the file's name
    client = host().client
    with pytest.raises(MethodError):
        client.invoke(GET_KEY)
    assert key_file.is_dir()
