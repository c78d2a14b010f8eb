"""Tests the server of the end-to-end tests, because with a broken server the broken streams could be healthy."""

import socket
import time
import urllib.error
import urllib.request

import pytest


def get(url, **headers):
    return urllib.request.urlopen(urllib.request.Request(url, headers=headers), timeout=20)


def received_before_the_end(url):
    """Returns the bytes of the body until the connection ends in any way, and whether it ended with a reset."""
    address = url.removeprefix("http://").split("/", 1)
    host, port = address[0].split(":")
    with socket.create_connection((host, int(port)), timeout=20) as connection:
        connection.sendall(f"GET /{address[1]} HTTP/1.1\r\nHost: {address[0]}\r\n\r\n".encode())
        received = b""
        try:
            while chunk := connection.recv(65536):
                received += chunk
        except ConnectionResetError:
            return received.split(b"\r\n\r\n", 1)[1], True
        return received.split(b"\r\n\r\n", 1)[1], False


@pytest.mark.parametrize("name", ["test.ts", "tracks.mp4", "hls/index.m3u8", "redirect/test.ts"])
def test_a_file_is_sent_completely(server, streams, name):
    assert get(server.url(name)).read() == (streams / name.removeprefix("redirect/")).read_bytes()


def test_only_the_requested_range_of_a_file_is_sent(server, streams):
    answer = get(server.url("tracks.mp4"), Range="bytes=100-199")
    assert answer.status == 206
    assert answer.read() == (streams / "tracks.mp4").read_bytes()[100:200]


def test_an_unknown_name_answers_404(server):
    with pytest.raises(urllib.error.HTTPError, match="404"):
        get(server.url("missing.ts"))


def test_the_live_playlist_slides_except_while_its_encoder_is_stopped(server):
    def sequence():
        lines = get(server.live_url()).read().decode().splitlines()
        return next(int(line.split(":")[1]) for line in lines if line.startswith("#EXT-X-MEDIA-SEQUENCE"))

    def wait_beyond(number):
        end = time.monotonic() + 20
        while sequence() <= number:
            assert time.monotonic() < end
        return sequence()

    first = wait_beyond(sequence())
    server.pause_live()
    stopped = sequence()
    end = time.monotonic() + 2.5
    while time.monotonic() < end:
        assert sequence() == stopped
    server.resume_live()
    assert wait_beyond(stopped) > first


def test_a_stall_delays_the_rest(server, streams):
    content = (streams / "test.ts").read_bytes()
    answer = get(server.fault_url("stall?at=1000&for=1"))
    start = time.monotonic()
    assert answer.read() == content
    assert time.monotonic() - start > 0.5


def test_a_reset_comes_after_the_bytes_before_it(server, streams):
    body, reset = received_before_the_end(server.fault_url("reset?at=50000"))
    assert reset
    assert body == (streams / "test.ts").read_bytes()[:50000]


def test_garbage_is_the_same_each_time_and_is_no_stream(server):
    first = get(server.fault_url("garbage?bytes=5000")).read()
    assert first == get(server.fault_url("garbage?bytes=5000")).read()
    assert len(first) == 5000
    assert any(first[offset] != 0x47 for offset in range(0, len(first), 188))


def test_a_slow_start_answers_late(server):
    start = time.monotonic()
    get(server.fault_url("slow?wait=1"))
    assert time.monotonic() - start > 0.9


def test_a_paced_stream_lasts_the_given_seconds(server, streams):
    start = time.monotonic()
    assert get(server.fault_url("paced?file=short.ts&seconds=1")).read() == (streams / "short.ts").read_bytes()
    assert time.monotonic() - start > 0.8


def test_a_fault_without_a_name_answers_404(server):
    with pytest.raises(urllib.error.HTTPError, match="404"):
        get(server.fault_url("nothing"))
