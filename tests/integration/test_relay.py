"""Tests that windows share the provider data of the first one: three and eight windows in one process, over real
channels."""

import array

import pytest

from tests.support.messages import WM_CLOSE, WM_COMMAND
from vantro_interface.codec import Int64, MethodError

MAIN_WINDOW = "VantroWindowClass"
NEW_WINDOW_COMMAND = 40001

NESTED = {
    "chunkType": "channels",
    "index": 3,
    "wide": Int64(2**40),
    "list": [None, True, False, -1, 2.5, "ünïcode", [[], [1, [2, [3]]], {}]],
    "map": {"inner": {"deep": [{"id": 7, "name": "seven"}, {"id": 8, "tags": ["a", "b"]}]}, 5: "a number as key"},
    "bytes": bytes(range(256)) * 4,
    "numbers": array.array("d", [0.0, -1.5, 1e300]),
}


def with_windows(host, count):
    """Returns the client of a host with that many windows, the later ones opened by second launches."""
    client = host().client
    for expected in range(2, count + 1):
        assert host(connect=False).wait() == 0
        client.poll(lambda: client.windows(MAIN_WINDOW), lambda windows: len(windows) == expected, f"{expected} windows")
    return client


def main_window_of(client, engine):
    """Engines are numbered in the order of their windows, and handles rise in it while none has been closed."""
    return sorted(client.windows(MAIN_WINDOW), key=lambda window: window.handle)[engine - 1]


def received(client, mark, engine=None):
    client.settle()
    return [event for event in client.since(mark)
            if event.method == "providerDataReceived" and engine in (None, event.engine)]


def close(client, engine):
    count = len(client.windows(MAIN_WINDOW))
    client.post(main_window_of(client, engine).handle, WM_CLOSE)
    client.poll(lambda: client.windows(MAIN_WINDOW), lambda windows: len(windows) == count - 1, "one window less")


def test_only_the_first_window_is_the_master_and_every_window_has_a_unique_id(host):
    client = with_windows(host, 3)
    infos = [client.invoke("getWindowInfo", engine=engine) for engine in (1, 2, 3)]
    assert [info["isMasterWindow"] for info in infos] == [True, False, False]
    assert len({info["windowId"] for info in infos}) == 3


def test_a_clients_request_reaches_only_the_master(host):
    client = with_windows(host, 3)
    mark = client.mark()
    assert client.invoke("requestProviderData", engine=3) is True
    requested = [(event.engine, event.arguments) for event in client.since(mark)
                 if event.method == "providerDataRequested"]
    assert requested == [(1, None)]


@pytest.mark.parametrize("count", [3, 8])
def test_a_nested_chunk_arrives_unchanged_once_at_every_client_but_not_the_master(host, count):
    client = with_windows(host, count)
    mark = client.mark()
    assert client.invoke("sendProviderData", NESTED, engine=1) is True
    chunks = received(client, mark)
    assert sorted(chunk.engine for chunk in chunks) == list(range(2, count + 1))
    assert all(chunk.arguments == NESTED for chunk in chunks)


def test_a_hundred_chunks_keep_their_order_at_every_client(host):
    client = with_windows(host, 4)
    mark = client.mark()
    for number in range(100):
        assert client.invoke("sendProviderData", {"chunkType": "part", "number": number}, engine=1) is True
    for engine in (2, 3, 4):
        assert [chunk.arguments["number"] for chunk in received(client, mark, engine)] == list(range(100))


def test_a_large_chunk_arrives_complete(host):
    client = with_windows(host, 2)
    chunk = {"chunkType": "logos", "data": bytes(range(256)) * 20000}
    mark = client.mark()
    assert client.invoke("sendProviderData", chunk, engine=1) is True
    assert [event.arguments for event in received(client, mark, 2)] == [chunk]


def test_a_clients_chunk_reaches_all_clients_and_itself_but_not_the_master(host):
    client = with_windows(host, 3)
    mark = client.mark()
    assert client.invoke("sendProviderData", {"chunkType": "mine"}, engine=3) is True
    assert sorted(chunk.engine for chunk in received(client, mark)) == [2, 3]


def test_a_closed_master_still_receives_requests(host):
    client = with_windows(host, 2)
    close(client, 1)
    mark = client.mark()
    assert client.invoke("requestProviderData", engine=2) is True
    assert client.wait_for("providerDataRequested", after=mark).engine == 1


def test_a_closed_client_still_receives_chunks(host):
    client = with_windows(host, 3)
    close(client, 2)
    mark = client.mark()
    assert client.invoke("sendProviderData", {"chunkType": "part"}, engine=1) is True
    assert sorted(chunk.engine for chunk in received(client, mark)) == [2, 3]


def test_a_window_opened_from_the_menu_is_a_client(host):
    client = host().client
    client.post(main_window_of(client, 1).handle, WM_COMMAND, NEW_WINDOW_COMMAND)
    client.wait_until(lambda: len(client.engines) == 2, "the second engine")
    client.settle()
    mark = client.mark()
    assert client.invoke("sendProviderData", NESTED, engine=1) is True
    assert [chunk.engine for chunk in received(client, mark)] == [2]


def test_a_lone_master_sends_to_no_window_and_receives_its_own_request(host):
    client = host().client
    mark = client.mark()
    assert client.invoke("sendProviderData", NESTED) is True
    assert client.invoke("requestProviderData") is True
    assert [(event.engine, event.method) for event in client.since(mark)] == [(1, "providerDataRequested")]


@pytest.mark.parametrize("arguments, error", [
    ({"chunkType": 7}, MethodError("INVALID_CHUNK", "Chunk type is missing", False)),
    ({"chunkType": ""}, MethodError("INVALID_CHUNK", "Chunk type is missing", False)),
    ({"data": 1}, MethodError("INVALID_CHUNK", "Chunk type is missing", False)),
    (["chunkType"], MethodError("INVALID_ARGUMENTS", "Arguments must be a map", False)),
    (None, MethodError("INVALID_ARGUMENTS", "Arguments must be a map", False)),
], ids=["a number", "empty", "missing", "a list", "nothing"])
def test_arguments_without_a_chunk_are_refused_and_not_sent(host, arguments, error):
    client = with_windows(host, 2)
    mark = client.mark()
    with pytest.raises(MethodError) as refused:
        client.invoke("sendProviderData", arguments, engine=1)
    assert refused.value == error
    assert received(client, mark) == []
