"""Tests the development library alone, through a separate Windows program, in both variants. Each row tests one known
behaviour of libvlc 4."""

import shutil
import subprocess

import pytest

from vantro_interface import host as hosts

PROGRAM = hosts.BUILD / "libvlc/devlib_smoke.exe"
VARIANTS = ("events", "callbacks")

# The name of the row in the program, and its rule.
ROWS = {
    "exports": "exactly one interface is exported, and no function that libvlc 4 with stop_async lacks",
    "version": "the version begins with 4.0.0 and names the development library",
    "unknown_option": "an unknown option does not fail libvlc_new",
    "calls_in_callbacks": "calls from callbacks return, for the same and another player; a seek and a stop take effect",
    "lock_in_callbacks": "a callback holds the player's lock: another thread's call into the player waits",
    "detach_waits": "a detach waits for a running callback",
    "no_event_after_release": "no event comes after a release",
    "media_changed_inside_set_media": "an idle player reports MediaChanged inside set_media, on the calling thread",
    "first_play": "MediaChanged, Opening, Buffering, Playing, times; all but the first on one thread of the library",
    "change_while_playing": "Seekable 0, MediaChanged some 50 ms later, Buffering, Seekable 1, times; state Playing",
    "change_in_pause": "a change in pause reports Opening and Playing",
    "change_after_stop": "a change after a stop reports Opening and Playing",
    "change_after_error": "a missing stream is an error, a change after it reports Opening and Playing; time 0",
    "missing_while_playing": "a change to a missing stream reports no Opening, but an error and Stopped",
    "garbage": "bytes that are no stream report no Seekable",
    "two_loads_at_once": "of two loads at once only the last is reported",
    "seek_before_play": "a seek before play on an idle player sets the start of the next play only",
    "seek_at_change": "a seek while the old input closes is lost, unless set_media has opened the media",
    "seek_while_playing": "seeks while playing take effect",
    "pause_at_change": "a pause right after a change is lost",
    "pause_and_resume": "pause toggles, play resumes, the time does not change in between",
    "stop": "0x109, 0x504, Seekable 0, 0x106; is_playing until then; -2147483648 with nothing to stop; time 0",
    "end": "the end reports 0x109, 0x504, Seekable 0, 0x106; time 0; play begins again",
    "time_with_sound": "get_time goes on rising with the sound when no time is reported",
    "sound_outputs": "mmdevice and waveout are listed, directsound is not listed but accepted",
    "one_volume_for_the_process": "without waveout the last volume and mute count for all players",
    "volume_of_the_process_holds": "without waveout sound begins with the volume of the process",
    "waveout_volume_per_player": "with waveout each player has its own, and sound begins with 100 and no mute",
    "mute_stays": "a volume above 0 does not end a mute",
    "volume_before_output": "before any sound the volume is 100 and the mute -1; set values are read back",
    "given_window": "pictures are in a child of the given window; the library owns it, and it follows the size",
    "sent_messages": "a picture's opening and closing send messages to the given window and wait for them",
    "player_without_window": "a player without a window opens a framed one at 0,0",
    "vdummy": "with :vout=vdummy there is no window, and snapshots work",
    "hidden_window": "with a hidden window no picture is shown, and a snapshot is 0 without a file",
    "snapshots": "a snapshot is 0 without a picture or a folder; its bytes are PNG",
    "lost_window": "a player continues without its window",
    "statistics": "displayed pictures and played buffers rise",
    "release_while_playing": "a release while playing returns, and the child is destroyed",
    "track_lists": "tracks have text ids that do not change, and live as long as they are held",
    "track_selection": "a track is selected by object and by id, and unselected by kind",
    "picture_size": "the size of video 0 is returned once it is known, otherwise -1",
}
# Rows that do not apply to the other variant; the program prints "-" there.
OF_ONE_VARIANT = ("detach_waits",)


@pytest.fixture(scope="module")
def smoke(wine_prefix, tmp_path_factory):
    """Runs the program with one variant of the library beside it: smoke(variant, argument...) returns its result with
    the printed lines, and its folder."""

    def run(variant, *arguments, **environment):
        folder = tmp_path_factory.mktemp(variant)
        shutil.copy(PROGRAM, folder)
        for name, library in hosts.bare_libraries(variant).items():
            shutil.copy(library, folder / name)
        stats = folder / "stats"
        result = subprocess.run(
            [hosts.ROOT / "devkit/wine/run", folder / PROGRAM.name,
             *[argument.replace("STATS", hosts.windows_path(stats)) for argument in arguments]],
            env={**wine_prefix.environment, "VANTRO_WINEPREFIX": str(wine_prefix.folder),
                 "VANTRO_LIBVLC_STATS": str(stats), **environment},
            cwd=folder, stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace", timeout=200)
        return result

    return run


@pytest.fixture(scope="module", params=VARIANTS)
def rows(request, smoke, module_server):
    """Returns the program's line for each row, by its name."""
    result = smoke(request.param, "rows", module_server.url("x")[:-2], module_server.fault_url("x")[:-2], "STATS",
                   VANTRO_LIBVLC_STRICT="1")
    lines = [line.split(" ", 1) for line in result.stdout.splitlines()]
    said = {line[1].split(":")[0]: " ".join(line) for line in lines if line[0] in ("ok", "FAILED", "-")}
    assert set(said) == set(ROWS), result.stdout[-3000:] + result.stderr[-1000:]
    return said


@pytest.mark.time_limit(240)
@pytest.mark.parametrize("row", ROWS, ids=ROWS.get)
def test_row(rows, row):
    assert rows[row] in (f"ok {row}", f"- {row}")
    assert rows[row].startswith("ok ") or row in OF_ONE_VARIANT


def checks(result):
    return [line for line in result.stdout.splitlines() if line.startswith(("ok ", "FAILED "))]


def test_windows_paths_and_file_addresses_play(smoke, streams, tmp_path):
    spaced = tmp_path / "a film.ts"
    shutil.copy(streams / "short.ts", spaced)
    drive_path = "Z:" + str(spaced)
    result = smoke("events", "play", drive_path.replace("/", "\\"), "file:///" + drive_path.replace(" ", "%20"))
    assert [line.split(" ", 1)[0] for line in checks(result)] == ["ok", "ok"]
    assert result.returncode == 0


def test_detaching_a_callback_that_is_not_attached_ends_the_process(smoke):
    result = smoke("events", "detach")
    assert result.returncode != 0
    assert checks(result) == []
    assert "libvlc_event_detach: the callback is not attached to event 0x104" in result.stdout


@pytest.mark.parametrize("variant", VARIANTS)
def test_a_call_with_a_released_player_is_reported_and_in_strict_mode_fatal(smoke, variant):
    result = smoke(variant, "released")
    assert len(checks(result)) == 1 and result.returncode == 0
    assert "FORBIDDEN CALL of libvlc_media_player_play" in result.stdout
    result = smoke(variant, "released", VANTRO_LIBVLC_STRICT="1")
    assert result.returncode != 0 and checks(result) == []


@pytest.mark.time_limit(120)
@pytest.mark.parametrize("variant", VARIANTS)
def test_players_are_made_played_and_released_in_rounds(smoke, server, variant):
    result = smoke(variant, "rounds", server.url("red.ts"), "20")
    assert "20 of 20 rounds played" in result.stdout
    assert result.returncode == 0
