#!/usr/bin/env python3
"""zip_folder.py FOLDER ZIP: zips a folder including its name. Equal content gives equal bytes."""

import sys
import zipfile
from pathlib import Path

# The earliest time that the format supports. Each file gets it, so that the bytes don't depend on the time of packing.
FIXED_TIME = (1980, 1, 1, 0, 0, 0)


def zip_folder(folder: Path, archive: Path) -> None:
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as out:
        for file in sorted(path for path in folder.rglob("*") if path.is_file()):
            entry = zipfile.ZipInfo(str(file.relative_to(folder.parent)), FIXED_TIME)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            out.writestr(entry, file.read_bytes())


if __name__ == "__main__":
    zip_folder(Path(sys.argv[1]).resolve(), Path(sys.argv[2]))
