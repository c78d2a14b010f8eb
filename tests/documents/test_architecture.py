"""Tests that the product's includes follow the arrows between its folders in docs/architecture.md."""

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
ARROW = re.compile(r"^(\w+) +->((?: +\w+)*) *$", re.MULTILINE)


def drawn_arrows():
    """Returns for each folder the folders that it may include, from the document's only block with arrows from
    folders."""
    blocks = re.findall(r"```\n(.*?)```", (ROOT / "docs/architecture.md").read_text(), re.DOTALL)
    drawings = [dict((m[1], set(m[2].split())) for m in ARROW.finditer(block)) for block in blocks]
    drawings = [drawing for drawing in drawings if drawing]
    assert len(drawings) == 1, "the document draws the folders' arrows once"
    return drawings[0]


def included_folders(folder):
    """Returns every folder of the repository whose header a source of this folder includes, and which sources do."""
    found = {}
    for source in sorted((ROOT / folder).glob("**/*")):
        if source.suffix not in {".h", ".cpp"}:
            continue
        for target in INCLUDE.findall(source.read_text()):
            if "/" in target:
                found.setdefault(target.split("/")[0], []).append(str(source.relative_to(ROOT)))
    return found


def test_every_folder_of_the_product_is_drawn():
    listed = (ROOT / "CMakeLists.txt").read_text()
    folders = set(re.findall(r"^add_subdirectory\((\w+)\)", listed, re.MULTILINE)) - {"devkit"}
    assert set(drawn_arrows()) == folders


def test_includes_keep_to_the_arrows():
    against = []
    for folder, allowed in drawn_arrows().items():
        for target, sources in included_folders(folder).items():
            if target != folder and target not in allowed:
                against.append(f"{folder} -> {target}: {', '.join(sources)}")
    assert not against, "\n".join(against)


def test_every_arrow_is_used():
    unused = [f"{folder} -> {target}" for folder, targets in drawn_arrows().items()
              for target in sorted(targets) if target not in included_folders(folder)]
    assert not unused, "\n".join(unused)


def test_no_folders_include_each_other_in_a_circle():
    arrows = drawn_arrows()
    while arrows:
        ends = [folder for folder, targets in arrows.items() if not targets & set(arrows)]
        assert ends, f"a circle among {sorted(arrows)}"
        for folder in ends:
            del arrows[folder]


# A longer source file does more than one thing.
LONGEST_SOURCE = 350
# The window and the player's front only forward to their parts.
LONGEST_FRONT = 150


def test_no_source_file_of_the_product_is_too_long():
    sources = [path for folder in drawn_arrows() for path in sorted((ROOT / folder).rglob("*"))
               if path.suffix in {".h", ".cpp"}]
    assert sources, "the product has sources"
    lengths = {str(path.relative_to(ROOT)): len(path.read_text().splitlines()) for path in sources}
    long = {name: length for name, length in lengths.items() if length > LONGEST_SOURCE}
    assert not long, f"more than {LONGEST_SOURCE} lines: {long}"


def test_the_headers_of_window_and_player_stay_short():
    fronts = ("shell/vantro_window.h", "player/vlc_player.h")
    lengths = {name: len((ROOT / name).read_text().splitlines()) for name in fronts}
    long = {name: length for name, length in lengths.items() if length > LONGEST_FRONT}
    assert not long, f"more than {LONGEST_FRONT} lines: {long}"
