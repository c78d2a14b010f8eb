"""Tests which libvlc a package accepts, and the messages for those that it refuses."""

import subprocess

import pytest

from tests.packaging.runtimes import ROOT, check_runtime, make_runtime, published

EVENTS, CALLBACKS = check_runtime.interfaces()


@pytest.fixture
def runtime(tmp_path):
    make_runtime(tmp_path / "runtime", published(EVENTS))
    return tmp_path / "runtime"


def refusal(folder):
    with pytest.raises(check_runtime.Unfit) as caught:
        check_runtime.library_of(folder)
    return str(caught.value)


def test_needed_functions_and_marks_are_read_from_the_adapter():
    assert len(check_runtime.needed_functions()) >= 30
    assert EVENTS == ["libvlc_media_player_event_manager", "libvlc_media_player_new", "libvlc_event_attach",
                      "libvlc_event_detach"]
    assert CALLBACKS == ["libvlc_media_player_set_next_media", "libvlc_media_player_new"]


@pytest.mark.parametrize("interface", [EVENTS, CALLBACKS], ids=["events", "callbacks"])
def test_published_libvlc_4_of_each_interface_is_accepted(tmp_path, interface):
    make_runtime(tmp_path / "runtime", published(interface))
    assert check_runtime.library_of(tmp_path / "runtime") == tmp_path / "runtime" / "libvlc.dll"


def test_library_under_an_adapter_is_preferred(runtime):
    (runtime / "libvlc.dll").rename(runtime / "libvlc-real.dll")
    (runtime / "libvlc.dll").write_bytes(b"an adapter")
    assert check_runtime.library_of(runtime).name == "libvlc-real.dll"


def test_libvlc_3_is_refused(tmp_path):
    make_runtime(tmp_path / "runtime", {"libvlc_new", "libvlc_media_player_stop", "libvlc_media_player_new"})
    assert "libvlc 3 or older" in refusal(tmp_path / "runtime")


def test_32_bit_library_is_refused(runtime):
    image = bytearray((runtime / "libvlc.dll").read_bytes())
    header = int.from_bytes(image[0x3C:0x40], "little")
    image[header + 4:header + 6] = (0x14C).to_bytes(2, "little")
    (runtime / "libvlc.dll").write_bytes(image)
    assert "built for I386" in refusal(runtime)


def test_unknown_interface_is_refused(tmp_path):
    make_runtime(tmp_path / "runtime", published(EVENTS) - {EVENTS[0]})
    assert refusal(tmp_path / "runtime").endswith(f"it exports neither {EVENTS[0]} nor {CALLBACKS[0]}")


@pytest.mark.parametrize("missing", ["libvlc_video_get_size", "libvlc_event_detach"])
def test_libvlc_4_without_a_needed_function_is_refused_with_its_name(tmp_path, missing):
    make_runtime(tmp_path / "runtime", published(EVENTS) - {missing})
    assert refusal(tmp_path / "runtime") == f"libvlc.dll: it is a libvlc 4 that lacks {missing}"


def test_adapter_itself_is_refused(tmp_path):
    definition = (ROOT / "runtime/libvlc.def").read_text()
    make_runtime(tmp_path / "runtime", set(definition.split("EXPORTS")[1].replace(" DATA", "").split()))
    assert refusal(tmp_path / "runtime") == "libvlc.dll: it is Vantro's runtime adapter, and not the libvlc 4 that it needs"


def test_other_library_is_refused(tmp_path):
    make_runtime(tmp_path / "runtime", {"something_else"})
    assert "it is no libvlc" in refusal(tmp_path / "runtime")


def test_file_that_is_no_library_is_refused(runtime):
    (runtime / "libvlc.dll").write_bytes(b"text")
    assert "not a Windows library" in refusal(runtime)


def test_folder_without_libvlc_is_refused(tmp_path):
    assert refusal(tmp_path) == "there is no libvlc.dll in it"


def test_folder_without_libvlccore_is_refused(runtime):
    (runtime / "libvlccore.dll").unlink()
    assert "no libvlccore.dll" in refusal(runtime)


def test_folder_without_plugins_is_refused(runtime):
    (runtime / "plugins" / "plugin.dll").unlink()
    assert "no plugins folder" in refusal(runtime)


def test_package_is_not_made_with_a_runtime_without_its_licence(runtime):
    (runtime / "COPYING.txt").unlink()
    (runtime / "AUTHORS.txt").write_text("names are no licence")
    out = runtime.parent / "out"
    result = subprocess.run([ROOT / "packaging/make-package", "--runtime", runtime, "--out", out], capture_output=True,
                            text=True)
    assert result.returncode == 1
    assert "has no licence file (COPYING.txt or the like)" in result.stderr
    assert not out.exists()


def test_package_is_not_made_with_an_unsuitable_runtime(tmp_path):
    make_runtime(tmp_path / "runtime", {"libvlc_new"})
    result = subprocess.run([ROOT / "packaging/make-package", "--runtime", tmp_path / "runtime", "--out", tmp_path / "out"],
                            capture_output=True, text=True)
    assert result.returncode == 1
    assert "libvlc 3 or older" in result.stderr
    assert not (tmp_path / "out").exists()
