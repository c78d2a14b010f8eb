"""Tests that the channel layer's reports are in the file of standard error completely and at once."""

import pytest

from vantro_interface import codec
from vantro_interface.codec import MethodError

DUPLICATE = ("Error: Only one of Success, Error, or NotImplemented can be called, and it can be called exactly once. "
             "Ignoring duplicate result.")
NO_NAME = ["Invalid method call; method name is not a string.",
           "Unable to construct method call from message on channel org.vantro.player/communicate"]


def answer_twice(client):
    """Makes the host answer a request with an error and then decline it. Returns after the second answer was made."""
    with pytest.raises(MethodError):
        client.invoke("mvSetActiveIndex", {"index": -1})
    client.invoke("isPlaying")


def reported(host):
    return [line for line in host.output.splitlines() if not line.startswith("loopback")]


def test_a_line_is_in_the_file_of_a_running_process_at_once(host):
    running = host()
    answer_twice(running.client)
    assert reported(running).count(DUPLICATE) == 1
    running.client.send_bytes(b"\x01")
    assert reported(running)[-2:] == NO_NAME
    assert running.running


def test_each_of_many_lines_is_complete(host):
    running = host()
    for _ in range(50):
        answer_twice(running.client)
    assert reported(running) == [DUPLICATE] * 50


def test_the_lines_of_a_killed_process_are_not_lost(host):
    killed = host()
    answer_twice(killed.client)
    killed.kill()
    assert reported(killed) == [DUPLICATE]


def test_a_message_nested_too_deeply_is_refused_as_a_whole(host):
    running = host()
    nested = b"\x0c\x01" * 257 + b"\x00"
    assert running.client.send_bytes(codec.encode_method_call("sendProviderData")[:-1] + nested) == b""
    assert reported(running) == ["Value nested too deeply in StandardCodecSerializer::ReadValueOfType", NO_NAME[1]]
