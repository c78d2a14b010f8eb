"""A user's pointer and keyboard on a display, through Debian's xdotool.

The X server queues the input in order. The caller has to wait until the host has handled it.
"""

import os
import subprocess


class User:
    def __init__(self, display):
        """Takes a Display."""
        self._environment = {**os.environ, "DISPLAY": display.name}

    def move(self, x, y):
        self._do("mousemove", x, y)

    def press(self, x, y):
        """Presses and holds the left button at that place of the screen."""
        self._do("mousemove", x, y, "mousedown", 1)

    def release(self):
        self._do("mouseup", 1)

    def click(self, x, y):
        self._do("mousemove", x, y, "click", 1)

    def key(self, *names):
        """Presses one key after the other, by the names of X: "Escape", "F11", "f"."""
        self._do("key", *names)

    def type(self, text):
        self._do("type", text)

    def _do(self, *words):
        subprocess.run(["xdotool", *map(str, words)], check=True, env=self._environment, stdin=subprocess.DEVNULL,
                       timeout=20)


def centre(window):
    """Returns the middle of a Window of the client, in screen coordinates."""
    left, top, right, bottom = window.rect
    return (left + right) // 2, (top + bottom) // 2
