"""The session marker in the temporary folder, and the report of a start that finds the marker of a dead session."""

import threading
import time

from vantro_interface.client import ConnectionLost

FILE_NAME = "vantro_windows_fullscreen_native_marker.txt"

# Requests that a host without a media answers. The marker names each of them while it runs.
NAMES = ["getPosition", "isPlaying", "getDuration", "getWindowInfo", "getTracksInfo", "play", "pause", "getSpuTracks"]


class MarkerFile:
    def __init__(self, temporary_folder):
        self.path = temporary_folder / FILE_NAME

    def read(self):
        """Returns (running, last action, its time in ms), or None when the marker is empty."""
        if not self.path.exists():
            return None
        lines = self.path.read_bytes().decode().split("\r\n")
        if lines == [""]:
            return None
        keys, values = zip(*(line.split("=", 1) for line in lines[:3]))
        assert (keys, lines[3:]) == (("running", "lastAction", "lastActionTs"), [""]), lines
        return values[0] == "1", values[1], int(values[2])

    def write(self, text):
        self.path.write_text(text)


def expected_report(last_action):
    """Returns the host's first two calls after a death during this action."""
    return [("showToast", {"message": f"Recovered from crash (last: {last_action})", "short": "false"}),
            ("appEvent", {"type": "nativeCrashRecovered", "platform": "windows", "lastAction": last_action})]


def reports(client):
    """Returns the host's reports of an earlier death on this connection."""
    client.settle()
    return [(event.method, event.arguments) for event in client.since() if event.method in ("showToast", "appEvent")]


def kill_during_calls(host, moments):
    """Calls one method after the other until the host is killed at a moment from the random generator. Returns the
    names that its marker may then hold: that of the last answered method, and that of the next one."""

    def kill():
        time.sleep(delay)
        host.kill()

    delay = moments.uniform(0.0, 0.2)
    last, position = "startup", 0
    killer = threading.Thread(target=kill)
    killer.start()
    try:
        while True:
            following = NAMES[position % len(NAMES)]
            host.client.invoke(following)
            last, position = following, position + 1
    except ConnectionLost:
        killer.join()
    return last, following
