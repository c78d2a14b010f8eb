"""Finds the third-party code in the programs: reads their PDBs and looks the files up in packaging/components.json."""

import json
import re
import subprocess
from pathlib import Path

HERE = Path(__file__).resolve().parent
COMPONENTS = json.loads((HERE / "components.json").read_text())


class Unknown(Exception):
    """A linked library without a notice, as one sentence."""


def linked_files(modules):
    """The names of the libraries and objects outside the build folder whose code is in a program. The text is the output
    of llvm-pdbutil for the modules in the program's PDB."""
    paths = re.findall(r"^ *Obj: `(.+)`", modules, re.MULTILINE)
    # The build passes its own files to the linker as relative paths. The linker records them under this folder.
    foreign = [path for path in paths if not re.match(r"C:[/\\]vantro[/\\]", path)]
    return {re.split(r"[/\\]", path)[-1] for path in foreign if re.search(r"\.(a|lib|o|obj)$", path)}


def modules_of(pdb):
    """The output of llvm-pdbutil for the modules in a PDB."""
    return subprocess.run(["llvm-pdbutil", "dump", "-modules", pdb], check=True, capture_output=True, text=True).stdout


def components_of(names):
    """The components that the linked files belong to, in the order of components.json."""
    known = {name for component in COMPONENTS for name in component["linked"]}
    unknown = sorted(names - known)
    if unknown:
        raise Unknown(f"no notice covers what is linked in from {', '.join(unknown)}: add it to packaging/components.json")
    return [component for component in COMPONENTS if names & set(component["linked"])]


def notice(component):
    return (HERE / "notices" / component["notice"]).read_text()


def versions(compiler):
    """The version of each component by its id, as the compiler and makensis report it."""
    def output(*command, stdin=""):
        return subprocess.run(command, input=stdin, check=True, capture_output=True, text=True).stdout.strip()

    macros = "#include <_mingw.h>\n__GNUC__.__GNUC_MINOR__.__GNUC_PATCHLEVEL__\n__MINGW64_VERSION_STR\n"
    lines = output(compiler, "-E", "-P", "-", stdin=macros).splitlines()[-2:]
    gcc, mingw = (line.replace('"', "").replace(" ", "") for line in lines)
    return {"GCC": gcc, "mingw-w64": mingw, "winpthreads": mingw,
            "NSIS": output("makensis", "-VERSION").removeprefix("v")}
