"""The system's figures of a host's process: memory, threads, open files, and where its threads wait."""

import dataclasses
import pathlib

from vantro_interface.host import windows_path

_PROC = pathlib.Path("/proc")


@dataclasses.dataclass(frozen=True)
class Usage:
    resident_kib: int
    written_kib: int  # private pages that it wrote; unaffected by whether another process maps program code
    threads: int
    files: int  # sockets, files and libvlc's pipes; Wine's object handles are in its server


def process_of(executable):
    """Returns the folder in /proc of the process that runs this executable."""
    name = windows_path(executable).encode() + b"\0"
    for entry in _PROC.glob("[0-9]*"):
        try:
            # The launcher's command line also contains the name, as an argument.
            if (entry / "cmdline").read_bytes().startswith(name):
                return entry
        except OSError:
            pass  # It ended meanwhile.
    raise ProcessLookupError(f"no process runs {executable}")


def usage(process):
    rollup = dict(line.split(":", 1) for line in (process / "smaps_rollup").read_text().splitlines()[1:])
    kib = {name: int(value.split()[0]) for name, value in rollup.items()}
    return Usage(kib["Rss"], kib["Private_Dirty"], len(list((process / "task").iterdir())),
                 len(list((process / "fd").iterdir())))


def thread_states(process):
    """Returns one line for each thread: its name, its state, and the kernel function in which it waits."""
    lines = []
    for task in sorted((process / "task").iterdir()):
        try:
            state = (task / "stat").read_text().rsplit(")", 1)[1].split()[0]
            lines.append(f"{task.name} {(task / 'comm').read_text().strip()}: {state} {(task / 'wchan').read_text()}")
        except OSError:
            pass  # It ended meanwhile.
    return lines
