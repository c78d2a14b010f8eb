"""What the console completes is what the channel's description names, in its order."""

import pathlib
import re

import pytest

from vantro_interface import methods

CHANNEL = (pathlib.Path(__file__).resolve().parents[3] / "docs/channel.md").read_text()


def described(heading):
    section = CHANNEL.split(f"\n## {heading}\n")[1].split("\n## ")[0]
    table = section.partition("\n|---")[2].partition("\n\n")[0]
    return re.findall(r"^\| `(\w+)` \|", table, re.MULTILINE)


@pytest.mark.parametrize("heading,table", [("Player channel: requests", methods.PLAYER_METHODS),
                                           ("Thumbnail channel: requests", methods.THUMBNAIL_METHODS)],
                         ids=["player", "thumbnail"])
def test_the_methods_are_those_that_the_channel_has(heading, table):
    assert list(table) == described(heading)
