"""Tests several real streams in one window: the places of their pictures, which of them is heard, and the return to the
single view. Each stream has its own colour and tone, which identify it in picture and sound."""

import pytest

from tests.end_to_end.grid import ScreenPart, TITLE_BAR, cells, client_area, differences, picture_in
from tests.soak.multi_view_rounds import Rounds
from tests.support.meters import Meters

TONES = {"red": 330, "green": 440, "blue": 550, "yellow": 660}  # hertz
FIVE = ("red", "green", "blue", "yellow", "green")  # the fifth covers the fourth
WM_SYSCOMMAND, SC_MAXIMIZE, SC_RESTORE = 0x112, 0xF030, 0xF120


class Grid:
    """A host on the screen, controlled as an interface controls it, with checks of its picture and sound."""

    def __init__(self, host, screen, server, folder):
        self.meters = Meters(folder / "meters.jsonl")
        self.client = host(environment=self.meters.environment).client
        self._screen, self._server, self._folder = screen, server, folder

    def url(self, stream):
        return self._server.url(f"{stream}.ts")

    def play(self, stream):
        """Plays the stream in the single view. Returns the mark before its events."""
        mark = self.client.mark()
        assert self.client.invoke("setMedia", {"url": self.url(stream), "networkCacheMs": 500}) is True
        self.client.wait_for("onPlaying", after=mark)
        return mark

    def open(self, *streams):
        """Changes the single view to a grid of these streams. Each tile plays when this returns."""
        mark = self.play(streams[0])
        assert self.client.invoke("enableMultiView") is True
        for stream in streams[1:]:
            self.add(stream)
        return mark

    def add(self, stream):
        mark = self.client.mark()
        assert self.client.invoke("mvAddStream", {"url": self.url(stream), "name": stream}) is True
        self.client.wait_for("onPlaying", after=mark)

    def activate(self, index):
        assert self.client.invoke("mvSetActiveIndex", {"index": index}) is True

    def video_windows(self):
        return self.client.windows("VantroVlcHostWindow")

    def assert_window_shows(self, rects_and_colours, picture="screen.png"):
        """rects_and_colours is a function of the client area's width and height."""

        def look():
            part = ScreenPart(self._screen, self._folder / picture, client_area(self.client))
            return differences(part, rects_and_colours(part.width, part.height))

        self.client.poll(look, lambda found: not found, "the picture", timeout=12, pause=0.1)

    def assert_tiles_show(self, *streams, **options):
        def rects_and_colours(width, height):
            return [(picture_in(cell), name) for cell, name in zip(cells(len(streams), width, height), streams)]

        self.assert_window_shows(rects_and_colours, **options)

    def assert_only(self, heard, among):
        """Checks that all of these streams have sound and that only one is heard, with its tone."""

        def is_so(second):
            return (sorted(reading.stream for reading in second) == sorted(among)
                    and all(abs(reading.frequency - TONES[reading.stream]) < 5 for reading in second)
                    and [reading.stream for reading in second if reading.heard] == [heard])

        second = self.meters.wait(self.client, is_so, f"{heard} alone to be heard among {among}", timeout=15)
        assert [(reading.volume, reading.mute) for reading in second if reading.heard] == [(100, False)]
        assert {(reading.volume, reading.mute) for reading in second if not reading.heard} <= {(0, True)}


@pytest.fixture
def grid(screen_host, screen, server, tmp_path):
    return Grid(screen_host, screen, server, tmp_path)


# The places of the pictures.


def test_the_first_tile_keeps_the_place_of_the_single_view(grid):
    grid.open("red")
    grid.assert_window_shows(lambda width, height: [(picture_in((0, TITLE_BAR, width, height)), "red")])


def test_two_to_five_tiles_show_their_streams_in_their_cells_with_black_gaps(grid):
    grid.open(FIVE[0])
    for count in (2, 3, 4, 5):
        grid.add(FIVE[count - 1])
        grid.assert_tiles_show(*FIVE[:count])


def test_a_single_tile_fills_the_window(grid):
    grid.open("red")
    assert grid.client.invoke("resizeVLCFull") is True
    grid.assert_tiles_show("red")


def test_playing_tiles_follow_the_windows_new_size(grid):
    grid.open("red", "green", "blue")
    (window,) = grid.client.windows("VantroWindowClass")
    for command in (SC_MAXIMIZE, SC_RESTORE):
        before = client_area(grid.client)
        grid.client.post(window.handle, WM_SYSCOMMAND, command)
        grid.client.poll(lambda: client_area(grid.client), lambda area: area != before, "another size")
        grid.assert_tiles_show("red", "green", "blue")


# Which tile is heard.


def test_only_the_active_tile_is_heard_whichever_it_is(grid):
    streams = ("red", "green", "blue", "yellow")
    grid.open(*streams)
    grid.assert_only("red", among=streams)
    for index in (2, 3, 1, 0):
        grid.activate(index)
        grid.assert_only(streams[index], among=streams)


# Changing the tiles.


def test_swapped_tiles_change_places_and_the_active_one_is_still_heard(grid):
    streams = ("red", "green", "blue")
    grid.open(*streams)
    assert grid.client.invoke("mvSwapTiles", {"from": 0, "to": 2}) is True
    grid.assert_tiles_show("blue", "green", "red")
    grid.assert_only("red", among=streams)


def test_a_replaced_tile_plays_its_new_stream_in_the_same_place(grid):
    grid.open("red", "green")
    grid.activate(1)
    windows = [window.handle for window in grid.video_windows()]
    assert grid.client.invoke("mvReplaceActive", {"url": grid.url("yellow"), "name": "yellow"}) is True
    grid.assert_tiles_show("red", "yellow")
    grid.assert_only("yellow", among=("red", "yellow"))
    assert [window.handle for window in grid.video_windows()] == windows


def test_after_a_removed_tile_later_ones_move_up_and_the_one_before_is_heard(grid):
    grid.open("red", "green", "blue", "yellow")
    grid.activate(2)
    assert grid.client.invoke("mvRemoveActive") is True
    grid.assert_tiles_show("red", "green", "yellow")
    grid.assert_only("green", among=("red", "green", "yellow"))
    assert len(grid.video_windows()) == 3


# Leaving the grid.


def test_the_original_stream_continues_without_a_gap_when_the_grid_ends(grid):
    client, began = grid.client, grid.open("red", "green", "blue")
    grid.assert_tiles_show("red", "green", "blue")
    left = client.mark()
    assert client.invoke("disableMultiView") is True
    client.wait_for("hideMultiViewOverlay", after=left)
    grid.assert_window_shows(lambda width, height: [(picture_in((0, 0, width, height)), "red")])
    known = int(client.wait_for("onTimeChanged", after=left).arguments)
    client.wait_for("onTimeChanged", lambda event: int(event.arguments) >= known + 1000, after=left)
    events = client.since(began)
    assert [event.method for event in events].count("onOpening") == 1
    assert not {"onStopped", "onPaused", "onEndReached", "onError"} & {event.method for event in events}
    times = [(event.time * 1000, int(event.arguments)) for event in events if event.method == "onTimeChanged"]
    # The stream's time against the clock: it neither stops, jumps nor goes back.
    lags = [clock - time for clock, time in times]
    assert [time for _, time in times] == sorted(time for _, time in times)
    assert max(lags) - min(lags) < 2000, times
    grid.assert_only("red", among=("red",))
    assert len(grid.video_windows()) == 1


def test_leaving_fullscreen_ends_the_grid_and_hides_no_overlay(grid):
    grid.open("red", "green")
    grid.assert_tiles_show("red", "green")  # the tiles are scaled after onPlaying, on libvlc's thread
    mark = grid.client.mark()
    assert grid.client.invoke("mvExitFullscreen") is True
    grid.assert_window_shows(lambda width, height: [(picture_in((0, 0, width, height)), "red")])
    assert "hideMultiViewOverlay" not in [event.method for event in grid.client.since(mark)]


def test_a_promoted_stream_is_opened_again_in_the_single_view(grid):
    grid.open("red", "green", "blue")
    grid.assert_tiles_show("red", "green", "blue")
    grid.activate(2)
    mark = grid.client.mark()
    assert grid.client.invoke("mvPromoteActiveAndExit") is True
    grid.client.wait_for("onOpening", after=mark)
    grid.assert_window_shows(lambda width, height: [(picture_in((0, 0, width, height)), "blue")])
    (reading,) = grid.meters.wait(grid.client, lambda second: [one.stream for one in second] == ["blue"], "blue alone")
    assert reading.state == "playing"
    assert len(grid.video_windows()) == 1


def test_an_original_that_was_not_the_active_tile_is_heard_when_the_grid_ends(grid):
    grid.open("red", "green")
    grid.activate(1)
    assert grid.client.invoke("disableMultiView") is True
    grid.assert_only("red", among=("red",))


# Players and windows of the tiles.


def test_rounds_of_grid_changes_leave_one_player_and_one_window(grid):
    rounds = Rounds(grid.client, grid.meters, grid.url)
    rounds.begin()
    for number in range(1, 10):
        rounds.play(count_players=number % 3 == 0)


def test_a_tile_swapped_to_the_front_leaves_its_window_but_no_player(grid):
    grid.open("red", "green", "blue")
    assert grid.client.invoke("mvSwapTiles", {"from": 0, "to": 1}) is True
    assert grid.client.invoke("disableMultiView") is True
    assert len(grid.video_windows()) == 2  # the single view's own and the former tile's
    assert grid.client.invoke("setMedia", {"url": grid.url("red")}) is False
    grid.add("yellow")  # outside the grid: a player that would be visible beside leftover ones
    grid.meters.wait(grid.client, lambda second: [one.stream for one in second] == ["yellow"], "no player but yellow's")


def test_a_stream_added_outside_the_grid_is_silent_and_keeps_its_window(grid):
    grid.play("red")
    grid.add("green")
    grid.meters.wait(grid.client, lambda second: {one.stream: (one.volume, one.heard) for one in second}
                     == {"red": (100, True), "green": (0, False)}, "green at volume 0 beside red")
    assert grid.client.invoke("enableMultiView") is True
    grid.meters.wait(grid.client, lambda second: [one.stream for one in second] == ["red"], "no player but red's")
    assert len(grid.video_windows()) == 2
    assert grid.client.invoke("disableMultiView") is True
    assert len(grid.video_windows()) == 2
