"""The development library alone, driven by a Windows program of its own, in both generations of libvlc 4."""

import shutil
import subprocess

import pytest

from vantro_interface import host as hosts

PROGRAM = hosts.BUILD / "libvlc/early4/devlib_smoke.exe"


@pytest.fixture
def smoke(wine_prefix, tmp_path):
    """Runs the program with the library of one generation beside it: smoke(variant, argument...) gives its result with
    the lines it printed."""

    def run(variant, *arguments, **environment):
        shutil.copy(PROGRAM, tmp_path)
        for name, library in hosts.bridge(variant).items():
            shutil.copy(library, tmp_path / name)
        return subprocess.run(
            [hosts.ROOT / "devkit/wine/run", tmp_path / PROGRAM.name, *arguments],
            env={**wine_prefix.environment, "VANTRO_WINEPREFIX": str(wine_prefix.folder), **environment},
            cwd=tmp_path, stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace", timeout=100)

    return run


def checks(result):
    return [line for line in result.stdout.splitlines() if line.startswith(("ok ", "FAILED "))]


def assert_all_held(result, at_least):
    assert [line for line in checks(result) if line.startswith("FAILED")] == []
    assert len(checks(result)) >= at_least
    assert result.returncode == 0


@pytest.mark.time_limit(120)
@pytest.mark.parametrize("variant, at_least", [("early4", 40), ("libvlc4", 35)])
def test_the_development_library_behaves_like_libvlc_4(smoke, server, variant, at_least):
    result = smoke(variant, "all", server.url("test.ts"), server.url("red.ts"), server.url("tracks.mp4"), "20",
                   VANTRO_LIBVLC_STRICT="1")
    assert_all_held(result, at_least)


def test_the_development_library_plays_windows_paths_and_file_addresses(smoke, streams, tmp_path):
    spaced = tmp_path / "a film.ts"
    shutil.copy(streams / "short.ts", spaced)
    drive_path = "Z:" + str(spaced)
    result = smoke("early4", "play", drive_path.replace("/", "\\"), "file:///" + drive_path.replace(" ", "%20"))
    assert_all_held(result, 2)


def test_a_seek_inside_a_callback_is_reported(smoke, server):
    result = smoke("early4", "misuse", server.url("test.ts"))
    assert_all_held(result, 1)
    assert "FORBIDDEN CALL of libvlc_media_player_set_time" in result.stdout


def test_a_seek_inside_a_callback_ends_the_process_in_strict_mode(smoke, server):
    result = smoke("early4", "misuse", server.url("test.ts"), VANTRO_LIBVLC_STRICT="1")
    assert result.returncode != 0
    assert checks(result) == []
    assert "FORBIDDEN CALL of libvlc_media_player_set_time" in result.stdout
