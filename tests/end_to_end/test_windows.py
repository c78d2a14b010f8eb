"""Tests three windows in one process, opened by second launches, each with its own stream."""

import pytest

from tests.support.messages import WM_CLOSE
from tests.support.pictures import screen_colours
from vantro_interface.chrome import MAIN_WINDOW

COLOURS = ("red", "green", "blue")


def open_windows(starter, server):
    """Returns a host with three windows, in which red, green and blue play, and the windows in the order of their
    opening."""
    host = starter()
    client = host.client
    opened = [window.handle for window in client.windows(MAIN_WINDOW)]
    for count in (2, 3):
        assert starter(connect=False).wait() == 0
        client.wait_until(lambda: len(client.engines) == count, f"engine {count}")
        seen = client.poll(lambda: client.windows(MAIN_WINDOW), lambda seen: len(seen) == count, f"{count} windows")
        opened += [window.handle for window in seen if window.handle not in opened]  # the order of handles is arbitrary
    for engine, colour in enumerate(COLOURS, 1):
        url = server.url(f"{colour}.ts")
        assert client.invoke("setMedia", {"url": url, "networkCacheMs": 500}, engine=engine) is True
        client.wait_for("onPlaying", engine=engine)
    return host, sorted(client.windows(MAIN_WINDOW), key=lambda window: opened.index(window.handle))


def video_in(client, window):
    (video,) = [found for found in client.windows("VantroVlcHostWindow") if found.parent == window.handle]
    return video


@pytest.fixture
def three_windows(player_host, server):
    return open_windows(player_host, server)


@pytest.mark.parametrize("order", [(0, 1, 2), (1, 2, 0)], ids=lambda order: "-".join(map(str, order)))
def test_three_playing_windows_close_in_any_order_and_the_process_ends_with_0(three_windows, order):
    host, windows = three_windows
    for closed, number in enumerate(order[:-1], 1):
        host.client.post(windows[number].handle, WM_CLOSE)
        host.client.poll(lambda: host.client.windows(MAIN_WINDOW), lambda seen: len(seen) == 3 - closed, "the close")
    assert host.running
    host.client.post(windows[order[-1]].handle, WM_CLOSE)
    assert host.wait() == 0
    assert [line for line in host.log if line.endswith("Application terminated")] == ["INFO Application terminated"]


def test_three_windows_show_their_video_on_one_screen(screen_host, screen, server, tmp_path):
    host, windows = open_windows(screen_host, server)

    def strips():
        """Returns the colours at the lower edge of each video, where no later window covers it."""
        seen = []
        for window in windows:
            left, _, _, bottom = video_in(host.client, window).rect
            strip = (left + 40, bottom - 120, left + 80, bottom - 80)  # right of the black edge that the shape leaves
            shares = screen_colours(screen, tmp_path / "three-windows.png", strip)
            seen.append(max(shares, key=shares.get))
        return seen

    host.client.poll(strips, lambda seen: seen == list(COLOURS), "red, green and blue", pause=0.3)
