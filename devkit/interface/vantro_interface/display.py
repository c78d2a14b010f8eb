"""A screen for hosts with the x11 driver, and pictures of it. It is the user's own when DISPLAY is set, else an
Xvfb."""

import os
import pathlib
import subprocess

SIZE = "1600x900"  # of an Xvfb; VANTRO_DESKTOP overrides it, as it does for the desktop of a prefix
DESKTOP_TITLE = "vantro - Wine desktop"


class Display:
    def __init__(self, use_existing=True):
        self._server = None
        self.name = os.environ.get("DISPLAY") if use_existing else None
        if self.name:
            return
        size = os.environ.get("VANTRO_DESKTOP", SIZE)
        read_end, write_end = os.pipe()
        # In a session of its own, so that Ctrl-C does not end the screen before the host.
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{size}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write_end], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            start_new_session=True)
        os.close(write_end)
        with os.fdopen(read_end) as number:
            line = number.readline().strip()
        if not line:
            raise RuntimeError("Xvfb does not start")
        self.name = f":{line}"

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    def close(self):
        if self._server:
            self._server.terminate()
            self._server.wait()
            self._server = None

    def screenshot(self, path, rect=None):
        """Saves the screen, or its part (left, top, right, bottom), as a PNG. On a user's own display only the Wine
        desktop's window is saved."""
        path = pathlib.Path(path)
        window = "root" if self._server else DESKTOP_TITLE
        part = []
        if rect:
            left, top, right, bottom = rect
            part = ["-crop", f"{right - left}x{bottom - top}+{left}+{top}", "+repage"]
        subprocess.run(["import-im6.q16", "-window", window, *part, str(path)], check=True, stdin=subprocess.DEVNULL,
                       env={**os.environ, "DISPLAY": self.name}, timeout=30)
        return path


def region_colours(path, rect):
    """Returns the number of colours in a part (left, top, right, bottom) of a picture, and its mean as (r, g, b)."""
    left, top, right, bottom = rect
    crop = f"{right - left}x{bottom - top}+{left}+{top}"
    output = subprocess.run(
        ["convert-im6.q16", str(path), "-crop", crop, "+repage", "-depth", "8", "-format",
         "%k %[fx:255*mean.r] %[fx:255*mean.g] %[fx:255*mean.b]", "info:"],
        check=True, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=30).stdout
    colours, *mean = output.split()
    return int(colours), tuple(round(float(part)) for part in mean)
