"""Tests what works and what is lost when the host uses a published libvlc 4 without the runtime adapter."""

import time

import pytest

from tests.end_to_end.stream_server import StreamServer
from tests.support.meters import Meters
from tests.support.preview import windows_while_a_frame_is_taken
from tests.support.wedged_stream import HOPELESS, make_hopeless

TONES = {"red": 330, "green": 440}  # hertz


def play(client, url, **options):
    """Loads the stream and waits until its time rises. Returns the mark before the load."""
    mark = client.mark()
    assert client.invoke("setMedia", {"url": url, "networkCacheMs": 300, **options}) is True
    client.wait_for("onMediaChanged", after=mark)
    wait_for_time(client)
    return mark


def wait_for_time(client):
    client.wait_for("onTimeChanged", after=client.mark())


def methods(client, mark):
    return [event.method for event in client.since(mark)]


def test_a_stream_plays_and_the_process_ends_with_0(bare_host, server):
    host = bare_host()
    mark = play(host.client, server.url("red.ts"))
    assert methods(host.client, mark).count("onPlaying") == 1
    assert host.client.invoke("isPlaying") is True
    assert host.quit() == 0


def test_a_stop_replies_true_and_stops_nothing(bare_host, server):
    client = bare_host().client
    mark = play(client, server.url("red.ts"))
    assert client.invoke("stop") is True
    wait_for_time(client)
    assert client.invoke("isPlaying") is True
    assert "onStopped" not in methods(client, mark)


def test_a_change_of_stream_while_playing_reports_a_change_but_no_opening_and_no_playing(bare_host, server):
    client = bare_host().client
    play(client, server.url("red.ts"))
    changed = play(client, server.url("green.ts"))
    seen = methods(client, changed)
    assert seen.count("onMediaChanged") == 1
    assert "onOpening" not in seen and "onPlaying" not in seen and "onStopped" not in seen


def test_an_initial_position_is_lost_while_another_stream_plays(bare_host, server):
    client = bare_host().client
    play(client, server.url("red.ts"))
    play(client, server.url("tracks.mp4"), isLiveStream=False, initialSeekPositionMs=30000)
    assert client.invoke("getPosition") < 10000


def test_tracks_are_neither_listed_nor_selected(bare_host, server, tmp_path):
    meters = Meters(tmp_path / "meters.jsonl")
    client = bare_host(environment=meters.environment).client
    play(client, server.url("tracks.mp4"), isLiveStream=False)
    mark = client.mark()
    assert client.invoke("getTracksInfo") is True
    assert client.invoke("setAudioTrack", {"index": 1}) is True
    assert client.invoke("setSpu", {"index": 0}) is True
    meters.wait(client, lambda second: abs(second[0].frequency - 440) < 20, "the first track's 440 Hz still")
    assert not [method for method in methods(client, mark) if method.endswith("Tracks")]


def test_the_watchdog_runs_and_never_acts_on_a_wedged_stream(bare_host, tmp_path):
    with StreamServer(make_hopeless(tmp_path / "streams")) as hopeless:
        host = bare_host()
        play(host.client, hopeless.url(f"{HOPELESS}.ts"))
        assert host.wait_for_log("[VLCPlayer] Started stall watchdog timer")
        # The pictures stop after 2 s. If the picture's size were known, a nudge would follow within 5 s.
        time.sleep(8)
        assert host.client.invoke("isPlaying") is True
        assert [line for line in host.log if "[StallDetector]" in line] == []


def test_a_tile_is_neither_replaced_nor_promoted(bare_host, server):
    host = bare_host()
    client = host.client
    play(client, server.url("red.ts"))
    assert client.invoke("enableMultiView") is True
    assert client.invoke("mvAddStream", {"url": server.url("green.ts"), "name": "green"}) is True
    assert client.invoke("mvSetActiveIndex", {"index": 1}) is True
    assert client.invoke("mvReplaceActive", {"url": server.url("blue.ts"), "name": "blue"}) is False
    assert client.invoke("mvPromoteActiveAndExit") is False
    host.wait_for_log("[MvReplaceActive] Missing libvlc functions (stop=0, set_media=1, play=1)")
    host.wait_for_log("[MvPromoteActiveAndExit] Missing VLC functions (stop=0, set_media=1)")
    assert client.invoke("disableMultiView") is True


def test_all_tiles_are_heard_or_none_is(bare_host, server, tmp_path):
    meters = Meters(tmp_path / "meters.jsonl")
    client = bare_host(environment=meters.environment).client
    play(client, server.url("red.ts"))
    assert client.invoke("enableMultiView") is True
    mark = client.mark()
    assert client.invoke("mvAddStream", {"url": server.url("green.ts"), "name": "green"}) is True
    client.wait_for("onPlaying", after=mark)
    for active in (1, 0):
        assert client.invoke("mvSetActiveIndex", {"index": active}) is True
        second = meters.wait(client, lambda readings: len(readings) == 2 and all(
            abs(reading.frequency - TONES[reading.stream]) < 5 for reading in readings), "both tones")
        assert len({reading.heard for reading in second}) == 1


@pytest.mark.parametrize("request_name, result", [("resizeVLCFull", True), ("pause", True), ("seek", True)])
def test_other_playback_requests_are_answered_as_with_the_adapter(bare_host, server, request_name, result):
    client = bare_host().client
    play(client, server.url("tracks.mp4"), isLiveStream=False)
    arguments = {"positionMs": 1000} if request_name == "seek" else None
    assert client.invoke(request_name, arguments) is result


def test_a_preview_frame_opens_libvlcs_own_window(bare_host, server):
    assert set(windows_while_a_frame_is_taken(bare_host(), server.url("tracks.mp4"))) == {"VLC development video"}
