"""A user's hands on a display: the pointer and the keyboard, by Debian's xdotool.

What they do is queued by the X server in its order; when the host has taken it is for the caller to wait for.
"""

import os
import subprocess


class User:
    def __init__(self, display):
        """The display is a Display."""
        self._environment = {**os.environ, "DISPLAY": display.name}

    def move(self, x, y):
        self._do("mousemove", x, y)

    def press(self, x, y):
        """Holds the left button down at that place of the screen."""
        self._do("mousemove", x, y, "mousedown", 1)

    def release(self):
        self._do("mouseup", 1)

    def click(self, x, y):
        self._do("mousemove", x, y, "click", 1)

    def key(self, *names):
        """One key after the other, by the names of X: "Escape", "F11", "f"."""
        self._do("key", *names)

    def type(self, text):
        self._do("type", text)

    def _do(self, *words):
        subprocess.run(["xdotool", *map(str, words)], check=True, env=self._environment, stdin=subprocess.DEVNULL,
                       timeout=20)


def centre(window):
    """The middle of a Window of the client, on the screen."""
    left, top, right, bottom = window.rect
    return (left + right) // 2, (top + bottom) // 2
