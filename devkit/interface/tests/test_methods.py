"""Tests that the console completes the names in the description of the channels."""

from vantro_interface import client, methods


def test_methods_come_with_the_keys_of_their_arguments_in_order():
    assert list(methods.PLAYER_METHODS)[:2] == ["setMedia", "play"]
    assert methods.PLAYER_METHODS["mvSwapTiles"] == ["from", "to"]
    assert methods.PLAYER_METHODS["toggleFullscreen"] == []
    assert list(methods.THUMBNAIL_METHODS) == ["initialize", "getFrame", "dispose"]


def test_the_client_uses_the_described_channels():
    names = [channel["name"] for channel in methods.DESCRIPTION["channels"]]
    assert names == [client.PLAYER_CHANNEL, client.THUMBNAIL_CHANNEL]
