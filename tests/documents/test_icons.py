"""Tests that the icon files have a picture for each size at which Windows shows them, so that none is scaled."""

import struct
from pathlib import Path

import pytest

RESOURCES = Path(__file__).resolve().parents[2] / "resources"


def pictures(name):
    """Returns the picture's bytes for each side in pixels, from the file's directory."""
    data = (RESOURCES / name).read_bytes()
    reserved, kind, count = struct.unpack_from("<HHH", data)
    assert (reserved, kind) == (0, 1)
    found = {}
    for entry in range(count):
        width, height, *_, size, offset = struct.unpack_from("<BBBBHHII", data, 6 + 16 * entry)
        assert width == height and offset + size <= len(data)
        found[width or 256] = data[offset:offset + size]
    return found


# The title bar shows the first at 16 pixels, and larger with larger system fonts. The taskbar starts at 32.
@pytest.mark.parametrize("name, sizes", [
    ("vantro.ico", {16, 20, 24, 32, 48, 64, 128, 256}),
    ("vantro-small.ico", {16, 20, 24, 32}),
])
def test_each_shown_size_has_its_picture(name, sizes):
    assert set(pictures(name)) == sizes


def test_the_small_sizes_of_both_files_are_the_same_drawing():
    large, small = pictures("vantro.ico"), pictures("vantro-small.ico")
    for size in (16, 20, 24):
        assert large[size] == small[size], f"{size} pixels"
