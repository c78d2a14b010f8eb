"""Tests the main path: a request is sent, a real stream plays in a real window, and events come back."""

from tests.support.pictures import bmp_colours, screen_colours


def video_window(client):
    """Returns the child window of the main window in which libvlc draws."""
    (window,) = client.windows("VantroVlcHostWindow")
    return window


def playing(client, url, **options):
    mark = client.mark()
    assert client.invoke("setMedia", {"url": url, "networkCacheMs": 500, **options}) is True
    client.wait_for("onPlaying", after=mark)
    return mark


def test_a_stream_over_http_opens_plays_and_its_time_rises(player_host, server):
    client = player_host().client
    mark = playing(client, server.url("test.ts"))
    client.wait_for("onTimeChanged", lambda event: int(event.arguments) >= 1000, after=mark)
    methods = [event.method for event in client.since(mark)]
    times = [int(event.arguments) for event in client.since(mark) if event.method == "onTimeChanged"]
    assert methods.index("onOpening") < methods.index("onPlaying") < methods.index("onTimeChanged")
    assert times == sorted(times) and len(times) > 2


def test_the_picture_is_in_the_video_window(player_host, server):
    client = player_host().client
    playing(client, server.url("red.ts"))
    red = client.poll(lambda: bmp_colours(client.capture(video_window(client).handle)),
                      lambda colours: colours["red"] > 0.5, "red in the video window")
    assert red["green"] == red["blue"] == 0


def test_the_picture_is_on_the_screen_below_the_title_bar(screen_host, screen, server, tmp_path):
    client = screen_host().client
    playing(client, server.url("red.ts"))
    rect = video_window(client).rect
    client.poll(lambda: screen_colours(screen, tmp_path / "screen.png", rect), lambda colours: colours["red"] > 0.5,
                "red on the screen")


def test_an_address_that_answers_404_raises_on_error(player_host, server):
    client = player_host().client
    mark = client.mark()
    assert client.invoke("setMedia", {"url": server.url("missing.ts")}) is True
    error = client.wait_for("onError", after=mark)
    assert error.arguments == "Media player encountered an error"


def test_events_come_from_threads_of_libvlc_and_not_from_the_main_thread(player_host, server):
    client = player_host().client
    mark = playing(client, server.url("test.ts"))
    assert client.wait_for("onPlaying", after=mark).thread != client.hello["thread"]


def test_a_paused_streams_time_stops_and_then_continues(player_host, server):
    client = player_host().client
    mark = playing(client, server.url("test.ts"))
    client.wait_for("onTimeChanged", after=mark)
    assert client.invoke("pause") is True
    paused = client.mark()
    client.wait_for("onPaused", after=mark)
    assert client.invoke("isPlaying") is False
    assert client.invoke("play") is True
    client.wait_for("onPlaying", after=paused)


def test_a_seek_changes_the_time_of_a_file(player_host, server):
    client = player_host().client
    playing(client, server.url("tracks.mp4"), isLiveStream=False)
    client.poll(lambda: client.invoke("getDuration"), lambda duration: duration == 60000, "the length")
    mark = client.mark()
    assert client.invoke("seek", {"positionMs": 40000}) is True
    client.wait_for("onTimeChanged", lambda event: int(event.arguments) >= 39000, after=mark)
    assert client.invoke("getPosition") >= 39000


def test_a_live_playlist_plays(player_host, server):
    client = player_host().client
    mark = playing(client, server.live_url())
    client.wait_for("onTimeChanged", after=mark)


def test_closing_the_window_while_a_stream_plays_ends_the_process_with_0(player_host, server):
    host = player_host()
    playing(host.client, server.url("test.ts"))
    assert host.quit() == 0
