"""Checks whether the runtime adapter can work with the libvlc of a folder.

    check_runtime.py FOLDER     prints the path of the library, or prints the reason for a refusal and exits with 1

The library is FOLDER/libvlc-real.dll if that file exists, as in a folder that already has an adapter. Otherwise it is
FOLDER/libvlc.dll. The needed functions are read from the adapter's own table, so this check and the adapter agree.
"""

import pathlib
import re
import sys

import pefile

ROOT = pathlib.Path(__file__).resolve().parents[1]
AMD64 = pefile.MACHINE_TYPE["IMAGE_FILE_MACHINE_AMD64"]


class Unfit(Exception):
    """The reason why a runtime is refused, as one sentence."""


def needed_functions():
    """The functions that the adapter needs from a libvlc 4 of either interface."""
    text = (ROOT / "runtime/real_library.h").read_text()
    table = text[text.index("#define RUNTIME_NEEDED_FUNCTIONS"):text.index("#define RUNTIME_OPTIONAL_FUNCTIONS")]
    return re.findall(r"X\((libvlc_\w+),", table)


def interfaces():
    """For each interface that the adapter supports, a list of the functions that only this interface has. The first
    function identifies the interface."""
    found = []
    for name in ("events_interface.cpp", "callbacks_interface.cpp"):
        text = (ROOT / "runtime" / name).read_text()
        mark = re.search(r'\.mark = "(\w+)"', text)[1]
        found.append(list(dict.fromkeys([mark, *re.findall(r'"(libvlc_\w+)"', text)])))
    return found


def exports_of(path):
    """The names that a 64-bit Windows library exports."""
    try:
        image = pefile.PE(path, fast_load=True)
    except pefile.PEFormatError as error:
        raise Unfit(f"it is not a Windows library ({error})") from None
    machine = image.FILE_HEADER.Machine
    if machine != AMD64:
        kind = pefile.MACHINE_TYPE.get(machine, hex(machine)).removeprefix("IMAGE_FILE_MACHINE_")
        raise Unfit(f"it is built for {kind}, and Vantro needs one for 64-bit Windows (AMD64)")
    image.parse_data_directories([pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_EXPORT"]])
    table = getattr(image, "DIRECTORY_ENTRY_EXPORT", None)
    return {symbol.name.decode() for symbol in table.symbols if symbol.name} if table else set()


def judge(exports):
    """Raises Unfit when the adapter can't work with a library of these exports."""
    if "vantro_runtime_adapter" in exports:
        raise Unfit("it is Vantro's runtime adapter, and not the libvlc 4 that it needs")
    if "libvlc_new" not in exports:
        raise Unfit("it is no libvlc: libvlc_new is not exported")
    if "libvlc_media_player_stop_async" not in exports:
        raise Unfit("it is a libvlc 3 or older: libvlc_media_player_stop_async is not exported, and Vantro needs a libvlc 4")
    known = [names for names in interfaces() if names[0] in exports]
    if not known:
        marks = " nor ".join(names[0] for names in interfaces())
        raise Unfit(f"it is a libvlc 4 with an interface that the adapter doesn't know: it exports neither {marks}")
    missing = [name for name in needed_functions() + known[0] if name not in exports]
    if missing:
        raise Unfit(f"it is a libvlc 4 that lacks {', '.join(missing)}")


def library_of(folder):
    """The library of a runtime folder. Raises Unfit when the adapter can't work with the folder."""
    folder = pathlib.Path(folder)
    library = next((folder / name for name in ("libvlc-real.dll", "libvlc.dll") if (folder / name).is_file()), None)
    if not library:
        raise Unfit("there is no libvlc.dll in it")
    try:
        judge(exports_of(library))
    except Unfit as reason:
        raise Unfit(f"{library.name}: {reason}") from None
    if not (folder / "libvlccore.dll").is_file():
        raise Unfit("there is no libvlccore.dll beside libvlc.dll")
    if not any((folder / "plugins").rglob("*.dll")):
        raise Unfit("there is no plugins folder with libraries beside libvlc.dll, so nothing would play")
    return library


def main(folder):
    try:
        print(library_of(folder))
    except Unfit as reason:
        print(f"the runtime {folder} won't do: {reason}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
