"""Compares preview frames of a real film over the thumbnail channel with ffmpeg's frames at the same times."""

import os
import subprocess

import pytest

from tests.support.preview import windows_while_a_frame_is_taken
from vantro_interface.client import THUMBNAIL_CHANNEL
from vantro_interface.codec import MethodError, NotImplementedByHost

WIDTH, HEIGHT = 320, 180
# The film's grey rises by 3 levels a second, which is 3.5 in the full range. A frame one second off exceeds this bound,
# while the two decoders' rounding is well within it.
BOUND = 1.5


def request(client, method, arguments=None):
    return client.invoke(method, arguments, channel=THUMBNAIL_CHANNEL)


def get_frame(client, url, time_seconds, **other):
    return request(client, "getFrame", {"mediaId": "film", "proxyUrl": url, "timeSeconds": time_seconds, "width": WIDTH,
                                        "height": HEIGHT, **other})


def pixels(*source, picture=None):
    """Returns the one frame that ffmpeg decodes, as bytes of red, green, blue."""
    command = ["ffmpeg", "-hide_banner", "-loglevel", "error", *source, "-frames:v", "1", "-vf",
               f"scale={WIDTH}:{HEIGHT}", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"]
    return subprocess.run(command, input=picture, check=True, capture_output=True, timeout=30).stdout


def mean_difference(first, second):
    assert len(first) == len(second) == WIDTH * HEIGHT * 3
    return sum(abs(one - other) for one, other in zip(first, second)) / len(first)


def png_size(data):
    return int.from_bytes(data[16:20], "big"), int.from_bytes(data[20:24], "big")


@pytest.fixture
def worker(player_host):
    """Returns the client of a host whose thumbnail worker is ready."""
    client = player_host().client
    assert request(client, "initialize") is True
    return client


# Times between two full seconds, because the film plays on during the half second that the worker waits after its seek.
# The long form takes one frame of each second.
TIMES = [second + 0.2 for second in range(58)] if os.environ.get("VANTRO_EVERY_FRAME") else [0.0, 10.2, 33.3, 57.2]


@pytest.mark.parametrize("time_seconds", TIMES)
def test_a_frame_is_the_one_that_ffmpeg_takes_at_that_time(worker, server, streams, time_seconds):
    reply = get_frame(worker, server.url("tracks.mp4"), time_seconds)
    assert reply.get("error") is None and reply["success"] is True
    taken = pixels("-f", "png_pipe", "-i", "-", picture=reply["bytes"])
    expected = pixels("-ss", str(time_seconds), "-i", str(streams / "tracks.mp4"))
    assert mean_difference(taken, expected) < BOUND


def test_the_bytes_are_a_png_of_the_requested_size_and_no_file_is_left(worker, server, wine_prefix):
    picture = get_frame(worker, server.url("tracks.mp4"), 5.2)["bytes"]
    assert picture.startswith(b"\x89PNG\r\n\x1a\n")
    assert png_size(picture) == (WIDTH, HEIGHT)
    assert list(wine_prefix.temp.glob("vantro_thumb_*")) == []


def test_the_film_continues_in_the_window_while_frames_are_taken(worker, server):
    mark = worker.mark()
    assert worker.invoke("setMedia", {"url": server.url("test.ts"), "networkCacheMs": 500}) is True
    worker.wait_for("onTimeChanged", after=mark)
    assert get_frame(worker, server.url("tracks.mp4"), 20.2)["success"] is True
    taken = worker.mark()
    worker.wait_for("onTimeChanged", after=taken)
    assert worker.invoke("isPlaying") is True


def test_no_window_appears_while_a_frame_is_taken(screen_host, screen, server, tmp_path):
    host = screen_host()

    def look():
        screen.screenshot(tmp_path / "while-a-frame-is-taken.png")

    assert windows_while_a_frame_is_taken(host, server.url("tracks.mp4"), look) == []
    assert (tmp_path / "while-a-frame-is-taken.png").exists()


def test_an_address_without_a_film_returns_no_frame_but_the_next_request_does(worker, server):
    # libvlc 4 reports success for a snapshot without a picture, but writes no file.
    assert get_frame(worker, server.url("missing.mp4"), 1.0) == {"success": False, "error": "Failed to read snapshot"}
    assert get_frame(worker, server.url("tracks.mp4"), 1.2)["success"] is True


def test_frames_are_taken_only_between_initialize_and_dispose(player_host, server):
    client = player_host().client
    not_ready = {"success": False, "error": "Worker not initialized"}
    url = server.url("tracks.mp4")
    assert get_frame(client, url, 1.2) == not_ready
    assert [request(client, "initialize"), request(client, "initialize")] == [True, True]
    assert [request(client, "dispose"), request(client, "dispose")] == [None, None]
    assert get_frame(client, url, 1.2) == not_ready
    assert request(client, "initialize") is True
    assert get_frame(client, url, 1.2)["success"] is True


def test_bad_requests_are_refused(worker):
    for arguments, message in ((None, "Invalid arguments"), (["film"], "Invalid arguments"),
                               ({"mediaId": "film"}, "Missing required arguments")):
        with pytest.raises(MethodError) as refused:
            request(worker, "getFrame", arguments)
        assert refused.value == MethodError("INVALID_ARGS", message)
    with pytest.raises(NotImplementedByHost):
        request(worker, "getframe")
