"""The methods of the channels with the keys of their arguments, read from interface/channel.json."""

import json
import pathlib

DESCRIPTION = json.loads((pathlib.Path(__file__).resolve().parents[3] / "interface/channel.json").read_text())


def keys_by_method(channel):
    return {method["name"]: [argument["key"] for argument in method.get("arguments", [])]
            for method in channel["methods"]}


PLAYER_METHODS, THUMBNAIL_METHODS = map(keys_by_method, DESCRIPTION["channels"])
