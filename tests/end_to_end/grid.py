"""The required layout of the grid of tiles, computed independently, and its differences from a picture of the screen.

All coordinates are pixels of the main window's client area. Rectangles are (left, top, right, bottom).
"""

import subprocess

STREAM_SIZE = (640, 360)
GAP = 10
TITLE_BAR = 30  # height of the strip that shows the title bar wherever no tile covers it
BADGE = (-170, TITLE_BAR, 0, TITLE_BAR + 36)  # around the development interface's badge, from the right edge
EDGE = 3  # pixels on either side of an edge that are not compared
STEP = 16  # distance between the compared points

COLOURS = {"red": (True, False, False), "green": (False, True, False), "blue": (False, False, True),
           "yellow": (True, True, False), "black": (False, False, False)}


def cells(count, width, height):
    """Returns the cells of that many tiles, in their order."""
    half, low = GAP // 2, (0, width)
    left, right = (0, width // 2 - half), (width // 2 + half, width)
    top, bottom, high = (0, height // 2 - half), (height // 2 + half, height), (0, height)
    columns_and_rows = {
        1: [(low, high)],
        2: [(left, high), (right, high)],
        3: [(low, top), (left, bottom), (right, bottom)],
        4: [(left, top), (right, top), (left, bottom), (right, bottom)],
    }[min(count, 4)]
    shared = columns_and_rows + columns_and_rows[-1:] * (count - len(columns_and_rows))
    return [(across[0], down[0], across[1], down[1]) for across, down in shared]


def picture_in(cell):
    """Returns the rectangle of the picture in its cell: as large as fits, in its own proportions, centred."""
    left, top, right, bottom = cell
    scale = min((right - left) / STREAM_SIZE[0], (bottom - top) / STREAM_SIZE[1])
    width, height = (round(size * scale) for size in STREAM_SIZE)
    x, y = left + (right - left - width) // 2, top + (bottom - top - height) // 2
    return x, y, x + width, y + height


def client_area(client):
    """Returns the main window's client area on the screen. The overlay covers it except the title bar."""
    (overlay,) = [window for window in client.windows("VantroFlutterOverlay") if window.visible]
    left, top, right, bottom = overlay.rect
    return left, top - TITLE_BAR, right, bottom


class ScreenPart:
    """The pixels of a part of the screen. The screenshot is kept at the path."""

    def __init__(self, display, path, rect):
        left, top, right, bottom = rect
        self.width, self.height = right - left, bottom - top
        display.screenshot(path)
        subprocess.run(["convert-im6.q16", str(path), "-crop", f"{self.width}x{self.height}+{left}+{top}", "+repage",
                        str(path)], check=True, stdin=subprocess.DEVNULL, timeout=30)
        self._pixels = subprocess.run(["convert-im6.q16", str(path), "-depth", "8", "rgb:-"], check=True,
                                      stdin=subprocess.DEVNULL, capture_output=True, timeout=30).stdout

    def colour(self, x, y):
        """Returns the name of a plain colour, or the components of another."""
        at = (y * self.width + x) * 3
        pixel = tuple(self._pixels[at : at + 3])
        for name, wanted in COLOURS.items():
            if all(part > 150 if bright else part < 80 for part, bright in zip(pixel, wanted)):
                return name
        return pixel


def _inside(rect, x, y, margin):
    """Returns True inside, False outside, and None when the point is too near an edge."""
    left, top, right, bottom = rect
    depth = min(x - left, right - 1 - x, y - top, bottom - 1 - y)
    return depth >= 0 if not -margin <= depth < margin else None


def _expected(x, y, rects_and_colours):
    """Returns the colour of the last rectangle that contains the point; None where it is not known."""
    colour = "black"
    for rect, name in rects_and_colours:
        inside = _inside(rect, x, y, EDGE)
        if inside is None:
            return None
        if inside:
            colour = name
    return colour


def differences(part, rects_and_colours):
    """Returns the points at which a picture of the client area differs in colour from the rectangles in it; it must be
    black outside them. The badge, and the title bar where no rectangle covers it, are left out."""
    left, top, right, bottom = BADGE
    places = [(x, y) for y in [*range(EDGE, part.height, STEP), part.height // 2]
              for x in [*range(EDGE, part.width, STEP), part.width // 2]]
    found = []
    for x, y in places:
        expected = _expected(x, y, rects_and_colours)
        if expected is None or (y < TITLE_BAR and expected == "black"):
            continue
        if part.width + left <= x < part.width + right and top <= y < bottom:
            continue
        if part.colour(x, y) != expected:
            found.append((x, y, part.colour(x, y), expected))
    return found
