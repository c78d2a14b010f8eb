"""Copies the licence files of the bundle and the runtime that --bundle and --runtime add to a package.

    licences.py runtime FOLDER STAGE    refuses a runtime without a licence: exits with 1
    licences.py bundle FOLDER STAGE     warns when a bundle has no collected notices of Flutter

libvlc and its plugins are under the LGPL and the GPL: a package that contains them must contain their licences too.
Without STAGE nothing is copied.
"""

import re
import shutil
import sys
from pathlib import Path

LICENCE = re.compile(r"(COPYING|LICEN[CS]E)", re.IGNORECASE)
CREDIT = re.compile(r"(AUTHORS|THANKS|NOTICE)", re.IGNORECASE)


def licence_files(folder):
    return sorted(path for path in folder.iterdir() if path.is_file() and LICENCE.match(path.name))


def copy(folder, target):
    files = licence_files(folder) + sorted(path for path in folder.iterdir() if path.is_file() and CREDIT.match(path.name))
    if files:
        target.mkdir(parents=True, exist_ok=True)
    for path in files:
        shutil.copyfile(path, target / path.name)


def main(kind, folder, stage=None):
    folder = Path(folder)
    if kind == "runtime" and not licence_files(folder):
        print(f"the runtime {folder} has no licence file (COPYING.txt or the like): put those of its build there. "
              "libvlc and its plugins may not be passed on without them", file=sys.stderr)
        return 1
    if kind == "bundle" and not any((folder / "data/flutter_assets").glob("NOTICES*")):
        print(f"warning: the bundle {folder} has no data/flutter_assets/NOTICES.Z: the licences of Flutter and of the "
              "interface's packages are missing", file=sys.stderr)
    if stage:
        copy(folder, Path(stage) / "licenses" / {"runtime": "libvlc", "bundle": "interface"}[kind])
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
