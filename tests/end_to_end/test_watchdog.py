"""Tests the stall watchdog with real streams: a wedged one is nudged, a wedged tile reloaded, a frozen one left alone.

One host plays everything at the same time, because each wedge takes 8 s of healthy stream and some seconds of checks:
window 1 a stream whose pictures stop, window 2 one whose sound stops, window 3 a grid whose original tile gets no more
data and whose other tiles are wedged in both ways, window 4 a grid with a tile that a reload repairs for only 2 s. The
tests check the record of this run. Their upper bounds leave room for a loaded machine. Unit tests check the exact
decisions with a scripted clock.
"""

import dataclasses
import datetime

import pytest

from vantro_interface.host import Host, player_libraries

from tests.end_to_end.stream_server import StreamServer
from tests.support.playback_events import times
from tests.support.wedged_stream import HOPELESS, make_hopeless

PICTURES_STOP, SOUND_STOPS, GRID, HOPELESS_GRID = 1, 2, 3, 4
WEDGED = [pytest.param(PICTURES_STOP, "video_wedged", id="pictures-stop"),
          pytest.param(SOUND_STOPS, "audio_wedged", id="sound-stops")]
TILES = [pytest.param("video", "video_wedged", id="pictures-stop"),
         pytest.param("audio", "audio_wedged", id="sound-stops")]
BYTES_BEFORE_FREEZING = 250000  # some 3 s of the test picture
GIVING_UP = "Playback issue detected. Please try again."


@dataclasses.dataclass
class Record:
    """The record of one run: its log lines as (seconds, text), its events, and the number of requests to the server."""

    lines: list
    events: list
    requests: dict  # the wedged tile's name: requests before its reload, and in total
    frozen_plays: bool  # read after the events, when the original tile was the single view again

    def stalls(self, fragment=""):
        return [(at, text) for at, text in self.lines if "[StallDetector]" in text and fragment in text]

    def stall(self, fragment):
        """Returns the seconds of the first such line."""
        assert self.stalls(fragment), f"no log line with {fragment!r}"
        return self.stalls(fragment)[0][0]

    def of(self, window, *methods):
        return [event for event in self.events if event.engine == window and event.method in methods]


def log_lines(host):
    lines = (host.folder / "vantro_debug.log").read_text(encoding="utf-8").splitlines()
    stamped = [line.split(" ", 3) for line in lines if line.startswith("[")]
    moments = [(datetime.datetime.fromisoformat(f"{day} {time}"), text) for _, day, time, text in stamped]
    return [((moment - moments[0][0]).total_seconds(), text) for moment, text in moments]


def open_window(prefix, folder, client):
    """Makes the running host open a window by a second launch."""
    count = len(client.engines)
    with Host(prefix, folder, libraries=player_libraries()) as launch:
        launch.start(connect=False).wait()
    client.wait_until(lambda: len(client.engines) == count + 1, "the window's engine")
    client.poll(lambda: len(client.windows("VantroWindowClass")), lambda windows: windows == count + 1, "the window")
    return client.engines[-1]


def request_count(server, tile):
    return sum(f"tile={tile} " in line for line in server.requests())


def enter_grid(client, window):
    client.wait_for("onPlaying", engine=window)
    assert client.invoke("enableMultiView", engine=window) is True


def play_all(client, server, hopeless):
    # The original tiles get no more data after a while. If one ended, its window's watchdog would be switched off.
    frozen = server.fault_url(f"stall?at={BYTES_BEFORE_FREEZING}&for=600")
    for window, url in ((PICTURES_STOP, server.url("video-stops.ts")), (SOUND_STOPS, server.url("audio-stops.ts")),
                        (GRID, frozen), (HOPELESS_GRID, frozen)):
        assert client.invoke("setMedia", {"url": url, "networkCacheMs": 300}, engine=window) is True
    enter_grid(client, GRID)
    for name in ("video", "audio"):
        address = server.url(f"{name}-stops.ts?tile={name}")
        assert client.invoke("mvAddStream", {"url": address, "name": name}, engine=GRID) is True
    enter_grid(client, HOPELESS_GRID)
    tile = {"url": hopeless.url(f"{HOPELESS}.ts"), "name": HOPELESS}
    assert client.invoke("mvAddStream", tile, engine=HOPELESS_GRID) is True


@pytest.fixture(scope="module")
def record(wine_prefix, streams, tmp_path_factory):
    wine_prefix.remove_traces()
    folder = tmp_path_factory.mktemp("wedged")
    with StreamServer(streams) as server, StreamServer(make_hopeless(folder / "streams")) as hopeless, \
            Host(wine_prefix, folder / "host", libraries=player_libraries(), timeout=90) as host:
        client = host.start().client
        for window in (SOUND_STOPS, GRID, HOPELESS_GRID):
            assert open_window(wine_prefix, folder / f"launch{window}", client) == window
        play_all(client, server, hopeless)
        before = {name: request_count(server, name) for name in ("video", "audio")}
        for name in before:
            host.wait_for_log(f"mv_{name} wedge persisted")
        for window in (PICTURES_STOP, SOUND_STOPS):
            client.wait_until(lambda: [event.method for event in client.events if event.engine == window].count(
                "onPaused") == 2, "a second nudge")
        counts = {}
        for name, count in before.items():
            client.poll(lambda: request_count(server, name), lambda now: now > count,
                        f"the tile {name}'s second request")
            counts[name] = (count, request_count(server, name))
        client.wait_for("onError", engine=HOPELESS_GRID)
        events = client.since()
        assert client.invoke("disableMultiView", engine=GRID) is True
        record = Record([], events, counts, frozen_plays=client.invoke("isPlaying", engine=GRID))
        assert host.quit() == 0
        record.lines = log_lines(host)
    return record


@pytest.mark.parametrize("window, reason", WEDGED)
def test_three_wedge_checks_lead_to_a_detection_and_a_nudge(record, window, reason):
    checks = record.stalls(f"primary wedge tick ({reason})")[:3]
    assert [text.rsplit("=", 1)[1] for _, text in checks] == ["1", "2", "3"]
    assert 1.5 < checks[2][0] - checks[0][0] < 6
    assert record.stall(f"primary wedge detected ({reason}) after 3 ticks") - checks[2][0] < 0.5
    assert record.stalls("primary wedge detected – performing cheap pause/resume nudge")


@pytest.mark.parametrize("window, reason", WEDGED)
def test_a_nudge_pauses_the_stream_for_300_ms_and_resumes_it(record, window, reason):
    first_pause, *_ = record.of(window, "onPaused")
    resumed = [event for event in record.of(window, "onPlaying") if event.time > first_pause.time]
    assert 0.25 < resumed[0].time - first_pause.time < 2


@pytest.mark.parametrize("window, reason", WEDGED)
def test_a_single_view_is_nudged_again_because_its_pause_clears_the_record(record, window, reason):
    first, second = record.of(window, "onPaused")[:2]
    assert 3 < second.time - first.time < 15
    assert record.stalls("primary wedge persisted") == []


@pytest.mark.parametrize("tile, reason", TILES)
def test_a_tile_is_nudged_and_then_reloaded_three_seconds_later(record, tile, reason):
    nudged = record.stall(f"mv_{tile} wedge detected – performing cheap pause/resume nudge")
    reloaded = record.stall(f"mv_{tile} wedge persisted after cheap nudge – restarting media")
    assert len(record.stalls(f"mv_{tile} wedge detected ({reason}) after 3 ticks")) >= 2
    assert 2.5 < reloaded - nudged < 10


@pytest.mark.parametrize("tile, reason", TILES)
def test_a_reloaded_tile_requests_its_stream_again(record, tile, reason):
    before, in_all = record.requests[tile]
    assert 0 < before < in_all


def test_a_reloaded_tile_reports_a_change_of_media(record):
    # One load comes before, the original's. A further tile's load is over before its events are attached.
    assert len(record.of(GRID, "onMediaChanged")) >= 3


def test_a_tiles_pause_is_not_reported_but_its_resume_is(record):
    assert record.of(GRID, "onPaused") == []
    assert len(record.of(GRID, "onPlaying")) >= 5


def test_a_stream_that_gets_no_more_data_is_left_alone(record):
    events = record.of(GRID, "onTimeChanged")
    assert record.frozen_plays is True
    assert record.events[-1].time - events[-1].time > 5, "it was not frozen"
    assert times(events)[-1] < BYTES_BEFORE_FREEZING / (2622976 / 30) * 1000 + 1000
    assert record.stalls("mv_primary") == []


def test_a_tile_is_given_up_after_three_reloads_within_a_minute(record):
    rungs = {"cheap pause/resume nudge": "nudge", "restarting media": "reload", "disabling stall watchdog": "end"}
    climbed = [rung for _, text in record.stalls(f"mv_{HOPELESS} ") for ending, rung in rungs.items()
               if text.endswith(ending)]
    assert climbed[:2] == ["nudge", "reload"]
    assert climbed.count("reload") == 3
    assert climbed.index("end") == len(climbed) - 1


def test_giving_up_is_reported_once_and_only_in_its_window(record):
    errors = [(event.engine, event.arguments) for event in record.events if event.method == "onError"]
    assert errors == [(HOPELESS_GRID, GIVING_UP)]
    assert len(record.stalls("restart budget exceeded")) == 1


def test_giving_up_stops_the_check_timer(record):
    texts = [text for _, text in record.lines]
    (gave_up,) = [place for place, text in enumerate(texts) if "restart budget exceeded" in text]
    # Other windows write to the same log.
    assert any(text.startswith("[VLCPlayer] Stopped stall watchdog timer") for text in texts[gave_up:gave_up + 4])
