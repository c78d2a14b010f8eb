"""Runs a host under Wine in its own folder, together with the files that it needs, and connects an interface to it.

    with Prefix(folder) as prefix, Host(prefix, run_folder, libraries=scripted("full")) as host:
        host.start()
        host.client.invoke("getPosition")

No process outlives the objects: a host ends with the launcher's standard input, a prefix's processes with its server.
"""

import os
import pathlib
import re
import shutil
import subprocess
import time

from .client import Client, WaitTimeout

ROOT = pathlib.Path(__file__).resolve().parents[3]
BUILD = pathlib.Path(os.environ.get("VANTRO_BUILD", ROOT / "out/build/mingw"))
LAUNCHER = BUILD / "devkit/interface/host_launcher.exe"
WINE = "/usr/lib/wine/wine64"
WINESERVER = "/usr/lib/wine/wineserver64"
START_TIMEOUT = 30.0
LOG_TIME = re.compile(r"^\[(\w+)\] \d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} (.*)$")


def windows_path(path):
    return "Z:" + str(pathlib.Path(path).absolute()).replace("/", "\\")


def scripted(variant="full"):
    """The scripted libvlc with one of its export sets."""
    return {
        "libvlc.dll": BUILD / "scripted" / variant / "libvlc.dll",
        "libvlccore.dll": BUILD / "scripted/libvlccore.dll",
    }


def player_libraries(variant="events"):
    """The libraries that a user has: the runtime adapter, and below it the development library in the given variant."""
    folder = BUILD / "libvlc" / variant
    return {"libvlc.dll": BUILD / "runtime/libvlc.dll", "libvlc-real.dll": folder / "libvlc-real.dll",
            "libvlccore.dll": folder / "libvlccore.dll"}


def bare_libraries(variant="events"):
    """The development library without the adapter. The host loads it directly."""
    folder = BUILD / "libvlc" / variant
    return {name: folder / name for name in ("libvlc.dll", "libvlccore.dll")}


class Prefix:
    """A Wine prefix cloned for this object. The driver is "null" (no visible windows) or "x11" (on a display)."""

    def __init__(self, folder, driver="null", display=None):
        self.folder = pathlib.Path(folder)
        subprocess.run([ROOT / "devkit/wine/prefix", self.folder, driver], check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL)
        self.environment = {
            name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")
        }
        self.environment.update(
            WINEPREFIX=str(self.folder),
            WINEDEBUG=os.environ.get("WINEDEBUG", "-all"),
            WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=;winemenubuilder.exe=",
        )
        if driver == "x11":
            self.environment["DISPLAY"] = display or os.environ["DISPLAY"]
        self._keeper = subprocess.Popen([WINE, str(LAUNCHER), "--keep"], env=self.environment, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, start_new_session=True)
        if self._keeper.stdout.readline().strip() != b"kept":
            raise RuntimeError(f"Wine does not start in {self.folder}")

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    def close(self):
        self._keeper.stdin.close()
        subprocess.run([WINESERVER, "-k"], env=self.environment, check=False)
        subprocess.run([WINESERVER, "-w"], env=self.environment, check=False)
        self._keeper.wait()
        self._keeper.stdout.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    @property
    def user(self):
        folders = [path for path in (self.folder / "drive_c/users").iterdir() if path.name != "Public"]
        return folders[0]

    @property
    def temp(self):
        return self.user / "Temp"

    @property
    def local_app_data(self):
        return self.user / "AppData/Local"

    def run(self, *command, timeout=60):
        """Runs a Windows program until it ends. Returns its output as text; the output goes through a file."""
        output = self.folder / "run.out"
        with open(output, "wb") as file:
            subprocess.run([WINE, *map(str, command)], env=self.environment, stdin=subprocess.DEVNULL, stdout=file,
                           stderr=subprocess.STDOUT, timeout=timeout, check=False)
        return output.read_text(errors="replace")

    def remove_traces(self):
        """Removes what an earlier host left in the registry and the user's folders."""
        self.run("reg", "delete", r"HKCU\Software\Vantro", "/f")
        shutil.rmtree(self.local_app_data / "Vantro", ignore_errors=True)
        for path in self.temp.glob("vantro_*"):
            path.unlink()


class Host:
    """One run of a host's executable in a fresh folder."""

    def __init__(self, prefix, folder, *, libraries=None, executable=None, engine=True, bundle=True, log=True,
                 glass=False, environment=None, timeout=20.0, on_event=None):
        self.prefix = prefix
        self.folder = pathlib.Path(folder)
        self.timeout = timeout
        self.client = None
        self.process = None
        self._on_event = on_event
        self._status = self.folder / "status.txt"
        self._port = self.folder / "port.txt"
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        self.executable = self._place(executable or BUILD / "vantro.exe")
        if engine:
            self._place(BUILD / "devkit/engine/flutter_windows.dll")
        for name, source in (libraries or {}).items():
            self._place(source, name)
        if bundle:
            self._make_bundle()
        self.environment = dict(prefix.environment)
        self.environment.update(VANTRO_LOOPBACK_PORT="0", VANTRO_LOOPBACK_PORT_FILE=windows_path(self._port))
        if log:
            self.environment["VANTRO_LOOPBACK_LOG"] = "1"
        if glass:
            self.environment["VANTRO_LOOPBACK_GLASS"] = "1"
        self.environment.update(environment or {})

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    # Start and end.

    def start(self, *arguments, connect=True):
        """Starts the process. With connect it returns when an interface is connected and the message loop
        runs, otherwise at once."""
        self.launch(*arguments)
        if connect:
            self.connect().settle(START_TIMEOUT)
        return self

    def launch(self, *arguments):
        command = [WINE, str(LAUNCHER), windows_path(self._status), windows_path(self.executable), *arguments]
        with open(self.folder / "output.txt", "ab") as output:
            self.process = subprocess.Popen(command, cwd=self.folder, env=self.environment, stdin=subprocess.PIPE,
                                            stdout=output, stderr=subprocess.STDOUT, start_new_session=True)

    def connect(self, timeout=START_TIMEOUT):
        """Connects a new interface to the running host."""
        limit = time.monotonic() + timeout
        while not self._port.exists():
            if self.process.poll() is not None:
                raise RuntimeError(f"the host ended before it listened{self._last_lines()}")
            if time.monotonic() > limit:
                raise WaitTimeout(f"the host did not listen within {timeout} s{self._last_lines()}")
            time.sleep(0.01)
        self.client = Client(int(self._port.read_text()), timeout=self.timeout, on_event=self._on_event)
        return self.client

    def wait(self, timeout=None):
        """Waits until the process has ended and returns its whole exit code. Raises if it was never started."""
        try:
            self.process.wait(timeout or self.timeout)
        except subprocess.TimeoutExpired:
            raise WaitTimeout(f"the host did not end within {timeout or self.timeout} s{self._last_lines()}") from None
        if self.exit_code is None:
            raise RuntimeError(f"the host was not started, its launcher ended with {self.process.returncode}"
                               f"{self._last_lines()}")
        return self.exit_code

    def quit(self, timeout=None):
        """Closes the windows as a user would, the newest first, and returns the exit code."""
        for window in reversed(self.client.windows("VantroWindowClass")):
            self.client.post(window.handle, WM_CLOSE)
        return self.wait(timeout)

    def kill(self):
        """Ends the process abruptly, as a crash would."""
        self.process.stdin.close()
        self.process.wait(10)
        if self.client:
            self.client.close()  # Wine's server may keep the dead process's socket open

    def close(self):
        if self.client:
            self.client.close()
        if self.process and self.process.poll() is None:
            self.kill()

    @property
    def running(self):
        return self.process is not None and self.process.poll() is None

    @property
    def pid(self):
        """Returns the Windows process id once the process has started."""
        found = re.search(r"pid (\d+)", self._status_text())
        return int(found[1]) if found else None

    @property
    def exit_code(self):
        found = re.findall(r"exit (0x[0-9A-F]+)", self._status_text())
        return int(found[-1], 16) if found else None

    # Logs and output.

    @property
    def log(self):
        """Returns the log's lines as "LEVEL text", without their times."""
        path = self.folder / "vantro_debug.log"
        if not path.exists():
            return []
        lines = path.read_text(encoding="utf-8", errors="replace").splitlines()
        return [f"{match[1]} {match[2]}" if (match := LOG_TIME.match(line)) else line for line in lines]

    @property
    def output(self):
        """Returns standard output and standard error."""
        path = self.folder / "output.txt"
        return path.read_text(errors="replace") if path.exists() else ""

    def wait_for_log(self, fragment, timeout=None):
        """Returns the first line of the log that contains the fragment."""
        limit = time.monotonic() + (timeout or self.timeout)
        while True:
            for line in self.log:
                if fragment in line:
                    return line
            if time.monotonic() > limit:
                raise WaitTimeout(f"no log line with {fragment!r} within {timeout or self.timeout} s")
            time.sleep(0.02)

    def _status_text(self):
        return self._status.read_text() if self._status.exists() else ""

    def _last_lines(self):
        code = [f"; exit code {self.exit_code:#x}"] if self.exit_code is not None else []
        tail = (self.log or self.output.splitlines())[-5:]
        return "".join(code) + ("; last lines:\n  " + "\n  ".join(tail) if tail else "")

    def _place(self, source, name=None):
        # A copy and not a link: Wine names a module by its real path and looks for libraries beside that path.
        target = self.folder / (name or pathlib.Path(source).name)
        shutil.copy2(source, target)
        return target

    def _make_bundle(self):
        """Makes the files of a built interface that a host checks for. The engine reads none of them."""
        assets = self.folder / "data/flutter_assets"
        assets.mkdir(parents=True)
        (assets / "kernel_blob.bin").write_bytes(b"\0" * 64)
        (assets / "AssetManifest.json").write_text("{}")
        (self.folder / "data/icudtl.dat").write_bytes(b"\0" * 64)


WM_CLOSE = 0x10
