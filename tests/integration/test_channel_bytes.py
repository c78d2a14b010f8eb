"""Tests how the host reads bytes on its player channel."""

import pytest

from vantro_interface import codec
from vantro_interface.codec import MethodError, NotImplementedByHost


def test_a_position_without_a_media_is_a_64_bit_zero(host):
    answer = host().client.send_bytes(codec.encode_method_call("getPosition"))
    assert answer == codec.encode_success(codec.Int64(0))


def test_a_media_without_an_address_is_refused(host):
    with pytest.raises(MethodError) as refused:
        host().client.invoke("setMedia", {"title": "nothing"})
    assert refused.value == MethodError("INVALID_ARGUMENT", "URL is required")


@pytest.mark.parametrize("method", ["Play", "nothing", ""])
def test_an_unknown_name_is_not_implemented(host, method):
    with pytest.raises(NotImplementedByHost):
        host().client.invoke(method)


HOSTILE = {
    "nothing": b"",
    "a type byte that does not exist": b"\xff",
    "a name that is no string": b"\x03\x01\x00\x00\x00",
    "a name longer than the message": b"\x07\xff\xff\xff\xff\x7fplay",
    "a list of four thousand million": b"\x07\x08setMedia" + b"\x0c\xff\xff\xff\xff\xff",
    "a map cut off": codec.encode_method_call("setMedia", {"url": "http://host/"})[:-4],
}


def test_the_next_request_after_hostile_bytes_is_answered(host):
    client = host().client
    for name, data in HOSTILE.items():
        client.send_bytes(data)
        assert client.invoke("isPlaying") is False, name


def test_the_player_events_of_a_scripted_library_reach_the_interface(host):
    events = "libvlc_media_player_play=258,260,267:5000"
    client = host(environment={"VANTRO_SCRIPTED_EVENTS": events}).client
    mark = client.mark()
    assert client.invoke("setMedia", {"url": "http://host/stream.ts"}) is True
    client.wait_for("onOpening", after=mark)
    client.wait_for("onPlaying", after=mark)
    assert client.wait_for("onTimeChanged", after=mark).arguments == "5000"
