#!/usr/bin/env python3
"""documents.py STAGE: writes the documents for users into a package's folder.

They become text files with the line ends of Windows. A link to another packed document leads to its text file. A link to
a file that is not packed becomes plain text, and the page says under its title where such files are. The pictures that a
page shows are packed.
"""

import posixpath
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]

PAGES = ("shipping", "libvlc", "channel", "field-failures", "log-tool", "log-lines", "environment")
# The documents of the repository and their names in the package.
PACKED = {"LICENSE": "LICENSE.txt", "README.md": "README.txt", "CHANGELOG.md": "CHANGELOG.txt",
          **{f"docs/{page}.md": f"docs/{page}.txt" for page in PAGES}}

LINK = re.compile(r"(?P<picture>!?)\[(?P<label>[^\]]*)\]\((?P<target>[^)#\s]*)(?P<anchor>#[^)\s]*)?\)")
NOTE = "This page also names files that are not in the package. They are in Vantro's repository."


def packed_text(name, text):
    """Returns the packed text of a document of the repository, and the names of the pictures that it shows."""
    pictures, dropped = [], []

    def replaced(link):
        picture, label, target, anchor = link["picture"], link["label"], link["target"], link["anchor"] or ""
        if not target or "://" in target:
            return link[0]
        path = posixpath.normpath(posixpath.join(posixpath.dirname(name), target))
        if picture:
            pictures.append(path)
            return link[0]
        if path not in PACKED:
            dropped.append(path)
            return label
        there = posixpath.relpath(PACKED[path], posixpath.dirname(name) or ".")
        return f"[{label.replace('.md', '.txt')}]({there}{anchor})"

    text = LINK.sub(replaced, text)
    if dropped:
        title, rest = text.split("\n", 1)
        text = f"{title}\n\n{NOTE}\n{rest}"
    return text, pictures


def pack(stage, root=ROOT):
    """Writes the documents and their pictures into the folder."""
    for name, packed in PACKED.items():
        text, pictures = packed_text(name, (root / name).read_text(encoding="utf-8"))
        (stage / packed).parent.mkdir(parents=True, exist_ok=True)
        (stage / packed).write_bytes(text.replace("\n", "\r\n").encode())
        for picture in pictures:
            (stage / picture).parent.mkdir(parents=True, exist_ok=True)
            (stage / picture).write_bytes((root / picture).read_bytes())


if __name__ == "__main__":
    pack(Path(sys.argv[1]))
