#!/usr/bin/env python3
"""installer_files.py FOLDER NSH: writes the installer's lists of files to install and to remove.

The uninstaller removes only the installed files: each file by its name, and then the folders that are empty. A file
that the user added to the folder stays.
"""

import sys
from pathlib import Path


def windows(path: Path) -> str:
    text = str(path).replace("/", "\\").replace("$", "$$")
    return "" if text == "." else text


def lists(folder: Path) -> str:
    files = sorted(path.relative_to(folder) for path in folder.rglob("*") if path.is_file())
    folders = sorted({parent for file in files for parent in file.parents}, key=lambda path: (len(path.parts), path))
    lines = ["!macro InstallFiles"]
    for directory in folders:
        lines.append(f'  SetOutPath "$INSTDIR\\{windows(directory)}"'.replace('\\"', '"'))
        lines += [f'  File "{folder / file}"' for file in files if file.parent == directory]
    lines += ["!macroend", "!macro RemoveFiles"]
    lines += [f'  Delete "$INSTDIR\\{windows(file)}"' for file in files]
    lines += [f'  RMDir "$INSTDIR\\{windows(directory)}"' for directory in reversed(folders) if directory.parts]
    lines.append("!macroend")
    return "\n".join(lines) + "\n"


if __name__ == "__main__":
    Path(sys.argv[2]).write_text(lists(Path(sys.argv[1]).resolve()))
