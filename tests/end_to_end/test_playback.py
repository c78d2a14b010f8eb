"""Tests that streams of every kind play through the built host: replies, events, and that the host still answers."""

import dataclasses
import itertools

import pytest

from tests.support.meters import Meters
from tests.support.playback_events import broken_rules, times

CACHE_MS = 300
TEST_TS_BYTES_A_SECOND = 2622976 / 30


@dataclasses.dataclass
class Stream:
    name: str
    address: object  # a function of the server
    options: dict = dataclasses.field(default_factory=dict)
    steady: bool = True  # its times never fall; those of a playlist's first segments do

    def __str__(self):
        return self.name


PLAYING = [
    Stream("mpeg-ts", lambda server: server.url("test.ts")),
    Stream("live-playlist", lambda server: server.live_url(), steady=False),
    Stream("playlist-with-an-end", lambda server: server.url("hls/index.m3u8"), {"isLiveStream": False}, steady=False),
    Stream("seekable-mp4", lambda server: server.url("tracks.mp4"), {"isLiveStream": False}),
    Stream("audio-only", lambda server: server.url("audio.ts")),
    Stream("redirect", lambda server: server.url("redirect/test.ts")),
    Stream("late-answer", lambda server: server.fault_url("slow?wait=1")),
]
ENDING = [
    Stream("ends", lambda server: server.url("short.ts")),
    Stream("reset", lambda server: server.fault_url("reset?at=150000")),
    Stream("garbage", lambda server: server.fault_url("garbage")),
]
FAILING = [
    Stream("404", lambda server: server.url("missing.ts")),
    Stream("refused", lambda _: "http://127.0.0.1:9/nobody.ts"),
]


def each(streams):
    return pytest.mark.parametrize("stream", streams, ids=str)


def load(client, url, **options):
    """Loads the stream. Returns the position in the events where it begins."""
    mark = client.mark()
    assert client.invoke("setMedia", {"url": url, "networkCacheMs": CACHE_MS, **options}) is True
    return mark


def load_and_wait_for_change(client, url, **options):
    """Like load, but returns the stream's first own event, after late ones of the previous stream."""
    return client.wait_for("onMediaChanged", after=load(client, url, **options))


def wait_for_time(client, milliseconds, mark):
    client.wait_for("onTimeChanged", lambda event: int(event.arguments) >= milliseconds, after=mark)


def assert_normal_end(host, mark):
    """Checks that the events since the mark keep the rules, that the host answers, and that it ends with 0."""
    client = host.client
    assert broken_rules(client.since(mark), client.hello["thread"]) == []
    assert isinstance(client.invoke("getPosition"), int)
    assert host.quit() == 0


@each(PLAYING)
def test_a_stream_plays_and_its_time_runs(player_host, server, stream):
    host = player_host()
    mark = load(host.client, stream.address(server), **stream.options)
    wait_for_time(host.client, 800, mark)
    assert host.client.invoke("isPlaying") is True
    assert host.client.invoke("getPosition") >= 800
    ran = times(host.client.since(mark))
    assert ran == sorted(ran) or not stream.steady
    assert_normal_end(host, mark)


@each(ENDING)
def test_every_end_of_a_stream_is_reported_once_as_stopped(player_host, server, stream):
    host = player_host()
    mark = load(host.client, stream.address(server), **stream.options)
    host.client.wait_for("onStopped", after=mark)
    assert host.client.invoke("isPlaying") is False
    assert host.client.invoke("getPosition") == 0
    assert "onError" not in [event.method for event in host.client.since(mark)]
    assert_normal_end(host, mark)


@each(FAILING)
def test_an_unavailable_stream_is_reported_as_error_and_then_as_stopped(player_host, server, stream):
    host = player_host()
    mark = load(host.client, stream.address(server), **stream.options)
    host.client.wait_for("onStopped", after=mark)
    methods = [event.method for event in host.client.since(mark)]
    assert methods.count("onError") == 1 and methods.index("onError") < methods.index("onStopped")
    assert "onPlaying" not in methods and "onTimeChanged" not in methods
    assert host.client.invoke("isPlaying") is False
    assert_normal_end(host, mark)


def test_a_stream_stops_while_the_network_stalls_and_then_continues(player_host, server):
    host = player_host()
    held_back_at = 150000
    mark = load(host.client, server.fault_url(f"stall?at={held_back_at}&for=3.5"))
    wait_for_time(host.client, held_back_at / TEST_TS_BYTES_A_SECOND * 1000 + 1000, mark)
    events = [event for event in host.client.since(mark) if event.method == "onTimeChanged"]
    longest = max(later.time - earlier.time for earlier, later in itertools.pairwise(events))
    assert longest > 1.5
    assert times(events) == sorted(times(events))
    assert "onPaused" not in [event.method for event in host.client.since(mark)]
    assert_normal_end(host, mark)


def test_a_host_plays_streams_after_others_failed(player_host, server):
    host = player_host()
    for stream in [*FAILING, *FAILING]:
        mark = load(host.client, stream.address(server))
        host.client.wait_for("onError", after=mark)
    mark = host.client.events.index(load_and_wait_for_change(host.client, server.url("test.ts")))
    wait_for_time(host.client, 500, mark)
    assert_normal_end(host, mark)


def test_a_load_after_a_stop_does_not_hide_the_next_stop(player_host, server):
    # A load stops the player without an event. A player that had already stopped reports that stop itself, so the next
    # one is reported.
    client = player_host().client
    for _ in range(3):
        mark = load(client, server.url("missing.ts"))
        client.wait_for("onStopped", after=mark)
        assert [event.method for event in client.since(mark)].count("onStopped") == 1


def test_a_change_of_stream_is_not_reported_as_a_stop(player_host, server):
    host = player_host()
    mark = load(host.client, server.url("red.ts"))
    wait_for_time(host.client, 500, mark)
    mark = host.client.mark()
    changed = host.client.events.index(load_and_wait_for_change(host.client, server.url("green.ts")))
    wait_for_time(host.client, 500, changed)
    assert "onStopped" not in [event.method for event in host.client.since(mark)]
    assert_normal_end(host, changed)


def test_a_stop_is_reported_and_the_stream_can_be_played_again(player_host, server):
    host = player_host()
    mark = load(host.client, server.url("test.ts"))
    wait_for_time(host.client, 500, mark)
    assert host.client.invoke("stop") is True
    host.client.wait_for("onStopped", after=mark)
    assert host.client.invoke("isPlaying") is False
    again = host.client.mark()
    assert host.client.invoke("play") is True
    host.client.wait_for("onPlaying", after=again)


def test_a_film_starts_at_its_initial_position(player_host, server):
    host = player_host()
    mark = load(host.client, server.url("tracks.mp4"), isLiveStream=False, initialSeekPositionMs=20000)
    host.client.wait_for("onTimeChanged", after=mark)
    assert 19000 <= min(times(host.client.since(mark))) <= 22000
    assert_normal_end(host, mark)


def test_a_film_reports_its_length_and_seeks(player_host, server):
    host = player_host()
    mark = load(host.client, server.url("tracks.mp4"), isLiveStream=False)
    host.client.wait_for("onTimeChanged", after=mark)
    assert host.client.invoke("getDuration") == 60000
    for position in (40000, 10000, 55000):
        sought = host.client.mark()
        assert host.client.invoke("seekTo", {"positionMs": position}) is True
        host.client.wait_for("onTimeChanged", lambda event: position - 1000 <= int(event.arguments) <= position + 3000,
                             after=sought)
    assert_normal_end(host, mark)


def test_requesting_tracks_raises_both_track_events_without_arguments(player_host, server):
    host = player_host()
    mark = load(host.client, server.url("tracks.mp4"), isLiveStream=False)
    host.client.wait_for("onTimeChanged", after=mark)
    asked = host.client.mark()
    assert host.client.invoke("getTracksInfo") is True
    raised = [event for event in host.client.since(asked) if event.method.endswith("Tracks")]
    assert [(event.method, event.arguments) for event in raised] == [("spuTracks", None), ("audioTracks", None)]
    assert {event.thread for event in raised} == {host.client.hello["thread"]}


def test_the_selected_audio_track_is_heard(player_host, server, tmp_path):
    meters = Meters(tmp_path / "meters.txt")
    client = player_host(environment=meters.environment).client
    mark = load(client, server.url("tracks.mp4"), isLiveStream=False)
    client.wait_for("onTimeChanged", after=mark)
    meters.wait(client, lambda second: abs(second[0].frequency - 440) < 20, "the first track's 440 Hz")
    assert client.invoke("setAudioTrack", {"index": 1}) is True
    meters.wait(client, lambda second: abs(second[0].frequency - 880) < 20, "the second track's 880 Hz")


def test_the_selected_subtitles_are_in_the_picture(player_host, server):
    host = player_host()
    mark = load(host.client, server.url("tracks.mp4"), isLiveStream=False)
    host.client.wait_for("onTimeChanged", after=mark)
    (window,) = host.client.windows("VantroVlcHostWindow")

    def brightest():
        # The film is no brighter than 60 in its first seconds; a line of text is white.
        picture = host.client.capture(window.handle)
        return max(picture[int.from_bytes(picture[10:14], "little")::4])

    host.client.poll(brightest, lambda level: 30 < level < 100, "the picture without a line")
    assert host.client.invoke("setSpu", {"id": 0}) is True
    # Only lines that begin after the selection are shown. The next one begins at 10 s.
    assert host.client.invoke("seek", {"positionMs": 10000}) is True
    host.client.poll(brightest, lambda level: level > 200, "a white line in the picture")


def test_a_stream_is_opened_without_the_user_agent_that_was_set(player_host, server):
    host = player_host()
    assert host.client.invoke("setUserAgent", {"UA": "Telltale/1.0"}) is True
    mark = load(host.client, server.url("test.ts"))
    host.client.wait_for("onPlaying", after=mark)
    lines = server.requests()
    assert any("/test.ts" in line for line in lines)
    assert not any("Telltale" in line for line in lines)
