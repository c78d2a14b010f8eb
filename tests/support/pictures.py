"""Computes the share of each plain colour in a picture."""

import pathlib
import struct
import subprocess

PLAIN = {"red": (True, False, False), "green": (False, True, False), "blue": (False, False, True),
         "yellow": (True, True, False), "white": (True, True, True), "black": (False, False, False)}
_BRIGHT = 150
_DARK = 80
_SAMPLES = 2000


def _shares(pixels):
    """Returns the shares of (red, green, blue) pixels. A pixel that is neither plain nor dark is not counted."""
    counts = dict.fromkeys(PLAIN, 0)
    for pixel in pixels:
        for name, wanted in PLAIN.items():
            if all(part > _BRIGHT if bright else part < _DARK for part, bright in zip(pixel, wanted)):
                counts[name] += 1
    return {name: count / len(pixels) for name, count in counts.items()}


def bmp_colours(data):
    """Returns the shares of a BMP with 32 bits a pixel, the format of the loopback engine's capture."""
    (offset,) = struct.unpack_from("<I", data, 10)
    count = (len(data) - offset) // 4
    step = max(1, count // _SAMPLES)
    blue_green_red = [data[at : at + 3] for at in range(offset, offset + count * 4, step * 4)]
    return _shares([tuple(reversed(pixel)) for pixel in blue_green_red])


def screen_colours(display, path, rect):
    """Returns the shares of a part (left, top, right, bottom) of the screen. The screenshot is kept at the path."""
    display.screenshot(pathlib.Path(path))
    left, top, right, bottom = rect
    crop = f"{right - left}x{bottom - top}+{left}+{top}"
    command = ["convert-im6.q16", str(path), "-crop", crop, "+repage", "-sample", "50x40!", "-depth", "8", "rgb:-"]
    raw = subprocess.run(command, check=True, stdin=subprocess.DEVNULL, capture_output=True, timeout=30).stdout
    return _shares([tuple(raw[at : at + 3]) for at in range(0, len(raw), 3)])
