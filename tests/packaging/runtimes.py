"""Stand-in runtimes for the packages: Windows libraries that export the functions a test names and do nothing."""

import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "packaging"))

import check_runtime  # noqa: E402


def published(interface):
    """Returns the exports of a published libvlc 4 with that interface."""
    return {*check_runtime.needed_functions(), *interface}


def make_library(path, names):
    """Makes a 64-bit library with these exports."""
    source, definition = path.with_suffix(".c"), path.with_suffix(".def")
    source.write_text("".join(f"void {name}(void) {{}}\n" for name in sorted(names)))
    definition.write_text("EXPORTS\n" + "".join(f"  {name}\n" for name in sorted(names)))
    subprocess.run(["x86_64-w64-mingw32-gcc-posix", "-shared", "-nostdlib", "-Wl,-e,0", "-o", path, source, definition],
                   check=True)
    source.unlink()
    definition.unlink()


def make_runtime(folder, names):
    """Makes a runtime folder whose libvlc.dll has these exports."""
    (folder / "plugins").mkdir(parents=True)
    (folder / "plugins" / "plugin.dll").write_bytes(b"plugin")
    (folder / "libvlccore.dll").write_bytes(b"core")
    (folder / "COPYING.txt").write_text("the licence of libvlc")
    make_library(folder / "libvlc.dll", names)
