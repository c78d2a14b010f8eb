"""Tests the host on a libvlc 4 of 2026, with callbacks passed at a player's creation and microseconds: shorter playback
tests."""

from tests.end_to_end.stream_server import StreamServer
from tests.support.meters import Meters
from tests.support.playback_events import broken_rules, times
from tests.support.preview import windows_while_a_frame_is_taken
from tests.support.wedged_stream import HOPELESS, make_hopeless

TONES = {"red": 330, "green": 440}  # hertz


def load(client, url, **options):
    """Loads the stream and waits until its time rises. Returns the mark before the load."""
    mark = client.mark()
    assert client.invoke("setMedia", {"url": url, "networkCacheMs": 300, **options}) is True
    client.wait_for("onPlaying", after=mark)
    client.wait_for("onTimeChanged", after=client.mark())
    return mark


def test_a_stream_plays_pauses_resumes_and_the_process_ends_with_0(callbacks_host, server):
    host = callbacks_host()
    client = host.client
    mark = load(client, server.url("test.ts"))
    client.wait_for("onTimeChanged", lambda event: 800 <= int(event.arguments) < 10000, after=mark)
    assert 800 <= client.invoke("getPosition") < 10000
    assert broken_rules(client.since(mark), client.hello["thread"]) == []
    assert client.invoke("pause") is True
    client.wait_for("onPaused", after=mark)
    again = client.mark()
    assert client.invoke("play") is True
    client.wait_for("onPlaying", after=again)
    assert host.quit() == 0


def test_each_change_of_stream_reports_a_change_an_opening_and_playing(callbacks_host, server):
    client = callbacks_host().client
    load(client, server.url("red.ts"))
    for stream in ("green", "blue", "red"):
        mark = load(client, server.url(f"{stream}.ts"))
        methods = [event.method for event in client.since(mark)]
        assert [methods.count(name) for name in ("onMediaChanged", "onOpening", "onPlaying", "onStopped")] == [1, 1, 1, 0]


def test_an_unavailable_stream_is_reported_as_error_and_then_as_stopped(callbacks_host, server):
    client = callbacks_host().client
    mark = client.mark()
    assert client.invoke("setMedia", {"url": server.url("missing.ts")}) is True
    client.wait_for("onStopped", after=mark)
    methods = [event.method for event in client.since(mark)]
    assert methods.count("onError") == 1 and methods.index("onError") < methods.index("onStopped")


def test_a_film_starts_at_its_initial_position_reports_its_length_and_seeks(callbacks_host, server):
    client = callbacks_host().client
    load(client, server.url("red.ts"))
    mark = load(client, server.url("tracks.mp4"), isLiveStream=False, initialSeekPositionMs=20000)
    began = client.events.index(client.wait_for("onPlaying", after=mark))
    assert 19000 <= times(client.since(began))[0] <= 22000
    assert client.invoke("getDuration") == 60000
    sought = client.mark()
    assert client.invoke("seekTo", {"positionMs": 40000}) is True
    client.wait_for("onTimeChanged", lambda event: 39000 <= int(event.arguments) <= 43000, after=sought)


def test_the_selected_audio_track_is_heard_and_both_track_events_are_sent(callbacks_host, server, tmp_path):
    meters = Meters(tmp_path / "meters.jsonl")
    client = callbacks_host(environment=meters.environment).client
    load(client, server.url("tracks.mp4"), isLiveStream=False)
    mark = client.mark()
    assert client.invoke("getTracksInfo") is True
    assert [event.method for event in client.since(mark) if event.method.endswith("Tracks")] == ["spuTracks",
                                                                                                "audioTracks"]
    meters.wait(client, lambda second: abs(second[0].frequency - 440) < 20, "the first track's 440 Hz")
    assert client.invoke("setAudioTrack", {"index": 1}) is True
    meters.wait(client, lambda second: abs(second[0].frequency - 880) < 20, "the second track's 880 Hz")


def test_a_wedged_stream_is_nudged(callbacks_host, tmp_path):
    with StreamServer(make_hopeless(tmp_path / "streams")) as hopeless:
        host = callbacks_host()
        mark = load(host.client, hopeless.url(f"{HOPELESS}.ts"))
        host.wait_for_log("primary wedge detected – performing cheap pause/resume nudge")
        paused = host.client.wait_for("onPaused", after=mark)
        resumed = host.client.wait_for("onPlaying", after=host.client.events.index(paused))
        assert 0.25 < resumed.time - paused.time < 2


def test_only_the_active_tile_is_heard_and_leaving_the_grid_is_heard(callbacks_host, server, tmp_path):
    meters = Meters(tmp_path / "meters.jsonl")
    client = callbacks_host(environment=meters.environment).client
    load(client, server.url("red.ts"))
    assert client.invoke("enableMultiView") is True
    mark = client.mark()
    assert client.invoke("mvAddStream", {"url": server.url("green.ts"), "name": "green"}) is True
    client.wait_for("onPlaying", after=mark)
    for index, stream in ((1, "green"), (0, "red"), (1, "green")):
        assert client.invoke("mvSetActiveIndex", {"index": index}) is True
        meters.wait(client, lambda second: [reading.stream for reading in second if reading.heard] == [stream]
                    and len(second) == 2, f"{stream} alone")
    assert client.invoke("mvReplaceActive", {"url": server.url("blue.ts"), "name": "blue"}) is True
    meters.wait(client, lambda second: [reading.stream for reading in second if reading.heard] == ["blue"], "blue alone")
    assert client.invoke("disableMultiView") is True
    meters.wait(client, lambda second: [reading.stream for reading in second if reading.heard] == ["red"],
                "the single view's sound")


def test_a_preview_frame_is_taken_without_a_window(callbacks_host, server):
    assert windows_while_a_frame_is_taken(callbacks_host(), server.url("tracks.mp4")) == []
