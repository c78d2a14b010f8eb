"""Tests of the client, the frames and the loopback engine's socket, against a small host that echoes messages."""

import os
import threading

import pytest

from vantro_interface import codec, host as hosts
from vantro_interface.client import Client, ConnectionLost, NoListener, NotAnswered, WaitTimeout

pytestmark = pytest.mark.skipif(not (hosts.BUILD / "devkit/interface/echo_host.exe").exists(),
                                reason="the Windows programs are not built")
ECHO = {"channel": "echo"}
WM_KEYDOWN = 0x100
WM_GETTEXTLENGTH = 0x0E


@pytest.fixture(scope="module")
def prefix(tmp_path_factory):
    # In the same folder as the template, because clones are hard links.
    with hosts.Prefix(hosts.ROOT / f"out/wine/interface-{os.getpid()}") as prefix:
        yield prefix


@pytest.fixture
def echo(prefix, tmp_path):
    with hosts.Host(prefix, tmp_path / "echo", executable=hosts.BUILD / "devkit/interface/echo_host.exe") as host:
        yield host.start()


def test_an_answer_has_the_bytes_that_were_sent(echo):
    data = bytes(range(200)) * 1000
    assert echo.client.send_bytes(data, **ECHO) == data


def test_a_call_and_its_reply_are_encoded_by_the_codec(echo):
    answer = echo.client.send_bytes(codec.encode_success({"a": [1, 2.5]}), **ECHO)
    assert codec.decode_envelope(answer) == {"a": [1, 2.5]}


def test_an_empty_answer_is_not_implemented(echo):
    with pytest.raises(codec.NotImplementedByHost):
        codec.decode_envelope(echo.client.send_bytes(b"\xf2", **ECHO))


def test_a_message_that_the_host_leaves_unanswered_is_reported(echo):
    with pytest.raises(NotAnswered):
        echo.client.send_bytes(b"\xf0", **ECHO)


def test_a_second_answer_is_reported_as_a_violation(echo):
    echo.client.send_bytes(b"\xf1", **ECHO)
    echo.client.wait_until(lambda: echo.client.violations, "the violation")
    assert len(echo.client.violations) == 1


def test_a_channel_without_a_listener_is_reported(echo):
    with pytest.raises(NoListener):
        echo.client.send_bytes(b"", channel="nobody")


def test_an_unknown_engine_has_no_listener(echo):
    with pytest.raises(NoListener):
        echo.client.send_bytes(b"", engine=7, **ECHO)


def test_messages_sent_before_a_connection_are_kept(echo):
    echo.client.wait_until(lambda: echo.client.undecodable, "the first message")
    assert [(channel, data) for channel, data, _ in echo.client.undecodable] == [("said", b"")]


def test_an_event_carries_its_engine_and_the_sending_thread(echo):
    echo.client.send_bytes(b"\xf3" + codec.encode_method_call("onSomething", "argument"), **ECHO)
    event = echo.client.wait_for("onSomething")
    assert (event.engine, event.channel, event.arguments) == (1, "said", "argument")
    assert event.thread != echo.client.hello["thread"]


def test_a_wait_that_times_out_reports_the_events_that_came(echo):
    echo.client.send_bytes(b"\xf3" + codec.encode_method_call("onOther"), **ECHO)
    with pytest.raises(WaitTimeout, match="onOther"):
        echo.client.wait_for("onNever", timeout=0.2)


def test_calls_from_several_threads_get_their_own_answers(echo):
    answers = {}

    def call(number):
        answers[number] = [echo.client.send_bytes(bytes([number, n]), **ECHO) for n in range(50)]

    threads = [threading.Thread(target=call, args=(number,)) for number in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert answers == {number: [bytes([number, n]) for n in range(50)] for number in range(4)}


def test_a_second_interface_is_served_after_the_first_disconnects(echo):
    port = echo.client._socket.getpeername()[1]
    echo.client.close()
    with Client(port) as second:
        assert second.engines == [1]
        assert second.send_bytes(b"again", **ECHO) == b"again"


def test_the_windows_of_the_process_are_listed(echo):
    (top,) = echo.client.windows("EchoHost")
    (view,) = echo.client.windows("LoopbackEngineView")
    assert (top.title, top.rect, top.visible, view.parent) == ('echo "host"', (10, 20, 310, 220), True, top.handle)


def test_input_that_reaches_the_view_is_reported(echo):
    (view,) = echo.client.windows("LoopbackEngineView")
    assert echo.client.post(view.handle, WM_KEYDOWN, 0x7A, 1)
    echo.client.wait_until(lambda: echo.client.inputs, "the key")
    assert (echo.client.inputs[0].message, echo.client.inputs[0].wparam) == (WM_KEYDOWN, 0x7A)


def test_a_sent_message_returns_its_result(echo):
    (top,) = echo.client.windows("EchoHost")
    assert echo.client.send(top.handle, WM_GETTEXTLENGTH) == len('echo "host"')


def test_the_picture_of_a_window_is_captured(echo):
    (top,) = echo.client.windows("EchoHost")
    picture = echo.client.capture(top.handle)
    assert (picture[:2], len(picture)) == (b"BM", 54 + 300 * 200 * 4)


def test_the_whole_exit_code_is_reported(echo):
    echo.client.send_bytes(b"\xf4", **ECHO)
    assert echo.wait() == 0x1234


def test_the_last_frames_arrive_before_the_end(echo):
    echo.client.send_bytes(b"\xf4", **ECHO)
    echo.client.wait_closed()
    assert echo.client.engines == []


def test_a_call_to_a_killed_host_fails_as_connection_lost(echo):
    echo.kill()
    with pytest.raises(ConnectionLost):
        echo.client.send_bytes(b"", **ECHO)
    assert echo.exit_code == 0xDEAD
