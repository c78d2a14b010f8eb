"""Tests how the console reads a typed line and what it completes."""

import pytest

from vantro_interface.console import completions, parse_request


@pytest.mark.parametrize("line,request_", [
    ("play", ("play", None)),
    ("seek positionMs=5000", ("seek", {"positionMs": 5000})),
    ("setMedia url=http://a/b?c=d isLiveStream=false", ("setMedia", {"url": "http://a/b?c=d", "isLiveStream": False})),
    ("setMediaTitle title='two words'", ("setMediaTitle", {"title": "two words"})),
    ('getFrame {"timeSeconds": 4.0}', ("getFrame", {"timeSeconds": 4.0})),
    ("play 5", ("play", 5)),
])
def test_a_line_is_a_method_and_its_arguments(line, request_):
    assert parse_request(line) == request_


def test_a_word_without_a_key_is_refused():
    with pytest.raises(ValueError, match="word"):
        parse_request("seek positionMs=1 word")


@pytest.mark.parametrize("line,text,offered", [
    ("mvS", "mvS", ["mvSetActiveIndex", "mvSwapTiles"]),
    (".q", ".q", [".quiet", ".quit"]),
    ("seek p", "p", ["positionMs="]),
    ("mvSwapTiles ", "", ["from=", "to="]),
    ("unknown x", "x", []),
])
def test_names_and_keys_are_completed(line, text, offered):
    assert completions(line, text) == offered
