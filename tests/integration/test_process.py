"""Tests the process: one instance, windows opened by second launches, the end, and the dump of a crash."""

import contextlib
import itertools
import subprocess
import threading

import pytest

from tests.support.messages import WM_CLOSE, WM_COMMAND
from vantro_interface import host as hosts
from vantro_interface.client import THUMBNAIL_CHANNEL, ConnectionLost

MAIN_WINDOW = "VantroWindowClass"
BOX = "#32770"
DUMP = "Vantro_Crash.dmp"
IDOK = 1
ACCESS_VIOLATION = 0xC0000005
CPP_EXCEPTION = 0xE06D7363
DUMP_LIMIT = 90  # seconds; writing a dump takes long on a busy machine
TOOL = hosts.BUILD / "devkit/interface/process_tool.exe"

NO_WINDOW_FOUND = "WARNING Could not find existing Vantro window - no instance running?"


def second_launch(host, *arguments):
    launch = host.make()
    launch.start(*arguments, connect=False)
    return launch


def wait_for_windows(client, count):
    return client.poll(lambda: client.windows(MAIN_WINDOW), lambda windows: len(windows) == count, f"{count} windows")


def wait_for_crash_box(vantro):
    # The log comes first, because all other threads of the process are suspended while the dump is written.
    vantro.wait_for_log(" minidump file" if (vantro.folder / DUMP).is_dir() else "Minidump generated", DUMP_LIMIT)
    (box,) = vantro.client.poll(lambda: vantro.client.windows(BOX), lambda boxes: len(boxes) == 1, "a message box")
    return box


def box_text(client, box):
    """Returns the text of the message box: its label beside the icon's."""
    return "".join(window.title for window in client.windows("Static") if window.parent == box.handle)


def dismiss(client, box):
    client.post(box.handle, WM_COMMAND, IDOK)


# One instance.


def test_a_second_launch_opens_a_window_in_the_first_process_and_ends_with_0(host):
    first = host()
    launch = second_launch(host)
    assert launch.wait() == 0
    wait_for_windows(first.client, 2)
    assert "INFO PostMessage result: SUCCESS" in launch.log
    assert not any("COM initialized" in line for line in launch.log)


def test_two_second_launches_in_quick_succession_open_two_windows(host):
    first = host()
    launches = [second_launch(host), second_launch(host)]
    assert [launch.wait() for launch in launches] == [0, 0]
    wait_for_windows(first.client, 3)


def test_a_second_launch_before_the_first_has_a_window_warns_and_opens_none(host, wine_prefix):
    holder = subprocess.Popen([hosts.WINE, str(TOOL), "hold", "Vantro_SingleInstance_Mutex"],
                              env=wine_prefix.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL)
    try:
        assert holder.stdout.readline().strip() == b"held"
        launch = second_launch(host)
        assert launch.wait() == 0
        assert NO_WINDOW_FOUND in launch.log
        assert not any("Window instance created" in line for line in launch.log)
    finally:
        holder.stdin.close()
        holder.wait(10)


def test_arguments_change_nothing(host):
    vantro = host("--new-window", "http://host/stream.ts", "/?")
    wait_for_windows(vantro.client, 1)
    assert vantro.quit() == 0


# Starts that fail.


def test_a_player_that_fails_to_start_shows_a_box_and_ends_with_1(host):
    libraries = {"libvlc.dll": hosts.scripted("full")["libvlc.dll"]}  # no libvlccore.dll beside it
    vantro = host.make(libraries=libraries)
    vantro.start(connect=False)
    vantro.wait_for_log("ERROR Failed to initialize application window")
    assert any("ERROR: libvlccore.dll not found at: " in line for line in vantro.log)
    vantro.prefix.run(TOOL, "answer", "Error")
    assert vantro.wait() == 1


def test_an_adapter_that_is_its_own_real_library_shows_the_box_and_ends_with_1(host):
    adapter = hosts.player_libraries()["libvlc.dll"]
    vantro = host.make(libraries=hosts.scripted() | {"libvlc.dll": adapter, "libvlc-real.dll": adapter})
    vantro.start(connect=False)
    vantro.wait_for_log("ERROR Failed to initialize application window")
    assert any("VLC error: libvlc-real.dll is the runtime adapter itself" in line for line in vantro.log)
    assert "vantro runtime: libvlc-real.dll is the runtime adapter itself" in vantro.output
    vantro.prefix.run(TOOL, "answer", "Error")
    assert vantro.wait() == 1


# The end.


@pytest.mark.parametrize("order", list(itertools.permutations(range(3))), ids=lambda order: "".join(map(str, order)))
def test_three_windows_closed_in_any_order_end_the_process_once_with_0(host, order):
    vantro = host()
    for count in (2, 3):
        assert second_launch(host).wait() == 0
        wait_for_windows(vantro.client, count)
    windows = sorted(vantro.client.windows(MAIN_WINDOW), key=lambda window: window.handle)
    for position, index in enumerate(order):
        vantro.client.post(windows[index].handle, WM_CLOSE)
        if position < 2:
            wait_for_windows(vantro.client, 2 - position)
    assert vantro.wait() == 0
    ends = [line for line in vantro.log if "WM_CLOSE: No active windows remain - exiting application" in line]
    assert len(ends) == 1
    assert sum("~VantroWindow: Destructor called for window" in line for line in vantro.log) == 3
    assert vantro.log[-1] == "INFO Application terminated"


# The crash.

CRASH_TEXT = ("Vantro has encountered a fatal error and needs to close. "
              "A crash report (Vantro_Crash.dmp) has been generated.")


def crash_on_another_thread(vantro):
    vantro.prefix.run(TOOL, "fault", vantro.pid)


def crash_on_the_main_thread(vantro):
    vantro.client.command("fault")


class UnansweredRequest(threading.Thread):
    """A request that a separate thread waits for until the connection ends."""

    def __init__(self, client, method, arguments, channel):
        super().__init__(daemon=True)
        self._ask = lambda: client.invoke(method, arguments, channel=channel, timeout=2 * DUMP_LIMIT)
        self.start()

    def run(self):
        with contextlib.suppress(ConnectionLost):
            self._ask()


def crash_by_an_exception_that_nothing_catches(vantro):
    frame = {"mediaId": "film", "proxyUrl": "http://host/film.mp4", "timeSeconds": 42, "width": 320, "height": 180}
    vantro.client.invoke("initialize", channel=THUMBNAIL_CHANNEL)
    UnansweredRequest(vantro.client, "getFrame", frame, THUMBNAIL_CHANNEL)  # an integer in place of a double


CRASHES = [(crash_on_the_main_thread, ACCESS_VIOLATION), (crash_on_another_thread, ACCESS_VIOLATION),
           (crash_by_an_exception_that_nothing_catches, CPP_EXCEPTION)]


@pytest.mark.time_limit(180)
@pytest.mark.parametrize("crash, code", CRASHES)
def test_a_crash_writes_a_minidump_shows_a_box_and_ends_with_its_code(host, crash, code):
    host.allow_violations = True
    vantro = host()
    crash(vantro)
    box = wait_for_crash_box(vantro)
    assert box.title == "Fatal Error"
    assert box_text(vantro.client, box) == CRASH_TEXT
    assert (vantro.folder / DUMP).read_bytes()[:4] == b"MDMP"
    dismiss(vantro.client, box)
    assert vantro.wait() == code
    assert "ERROR CRASH DETECTED! Generating minidump..." in vantro.log
    assert "ERROR Minidump generated: Vantro_Crash.dmp" in vantro.log


@pytest.mark.parametrize("crash, code", CRASHES)
def test_a_crash_without_a_writable_dump_still_shows_a_box(host, crash, code):
    host.allow_violations = True
    vantro = host.make()
    (vantro.folder / DUMP).mkdir()  # in place of a folder that cannot be written to
    vantro.start()
    crash(vantro)
    box = wait_for_crash_box(vantro)
    dismiss(vantro.client, box)
    assert vantro.wait() == code
    assert "ERROR Failed to create minidump file" in vantro.log
    assert "ERROR Minidump generated: Vantro_Crash.dmp" not in vantro.log
