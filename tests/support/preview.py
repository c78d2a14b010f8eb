"""Requests a preview frame and watches the process's windows meanwhile."""

import subprocess
from concurrent.futures import ThreadPoolExecutor

from vantro_interface import host as hosts
from vantro_interface.client import THUMBNAIL_CHANNEL

PROCESS_TOOL = hosts.BUILD / "devkit/interface/process_tool.exe"
FRAME_SECONDS = 0.8  # the worker waits at least this long between its play and its snapshot


def windows_while_a_frame_is_taken(host, url, look=None):
    """Requests a frame of the film at the address. Returns the classes of the visible top-level windows that appeared
    during the request. `look`, if given, is called halfway. The host's main thread is busy meanwhile, so another
    process watches the windows."""
    client = host.client
    assert client.invoke("initialize", channel=THUMBNAIL_CHANNEL) is True
    arguments = {"mediaId": "film", "proxyUrl": url, "timeSeconds": 5.2, "width": 320, "height": 180}
    watcher = subprocess.Popen([hosts.WINE, str(PROCESS_TOOL), "windows", str(host.pid)], env=host.environment,
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    before = list(iter(lambda: watcher.stdout.readline().strip(), "watching"))
    assert "VantroWindowClass" in before
    with ThreadPoolExecutor(1) as pool:
        frame = pool.submit(client.invoke, "getFrame", arguments, channel=THUMBNAIL_CHANNEL, timeout=30)
        if look:
            try:
                frame.exception(timeout=FRAME_SECONDS / 2)
            except TimeoutError:
                look()
        reply = frame.result()
    seen, _ = watcher.communicate()
    assert reply["success"] is True and reply["bytes"].startswith(b"\x89PNG")
    return seen.splitlines()
