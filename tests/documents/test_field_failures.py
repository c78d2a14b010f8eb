"""Compares the page about failures at customers with the sources, so that a search for its log texts finds them."""

import pathlib
import re

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs/field-failures.md").read_text()
SOURCES = [*ROOT.glob("shell/*.cpp"), *ROOT.glob("channel/*.cpp"), *ROOT.glob("player/*.cpp"),
           *ROOT.glob("services/*.cpp"), *ROOT.glob("flutter_host/*.cpp")]


def texts(files):
    """Returns the concatenated string literals of the files."""
    return "\n".join(literal for file in files for literal in re.findall(r'"((?:[^"\\\n]|\\.)*)"', file.read_text()))


def rows(section):
    """Returns the rows of the last table of a section, each as a list of cells."""
    body = re.split(r"\n## ", PAGE.split(f"\n## {section}\n")[1])[0]
    table = [line for line in body.splitlines() if line.startswith("|")]
    return [[cell.strip() for cell in line.strip("|").split(" | ")] for line in table if not line.startswith("|---")][1:]


def quoted(cell):
    return re.findall(r'"([^"]+)"', cell)


SYMPTOMS = [row for row in rows("The log") if quoted(row[1])]


@pytest.mark.parametrize("row", SYMPTOMS, ids=[row[0] for row in SYMPTOMS])
def test_the_log_texts_of_a_symptom_are_in_its_folders_sources(row):
    folders = {path.split("/")[0] for path in re.findall(r"`([\w/.]+)`", row[2])}
    assert folders, row
    found = texts(file for file in SOURCES if file.parent.name in folders)
    assert [text for text in quoted(row[1]) if text not in found] == []


def test_the_table_of_symptoms_has_rows():
    assert len(SYMPTOMS) >= 8


def test_the_texts_of_boxes_and_starts_are_those_of_the_host():
    found = texts(SOURCES)
    for text in ("Failed to initialize COM", "Failed to initialize application", "Vantro has encountered a fatal error",
                 "ERROR: Failed to create Flutter controller (nullptr returned)",
                 "SyncFlutterOverlayPosition: ERROR - flutterHostWindow_ is NULL!", "ERROR: libvlccore.dll not found at:",
                 "Note: app.so not found (JIT mode)",
                 "CRITICAL ERROR: Neither kernel_blob.bin (JIT) nor app.so/app.elf (AOT) found!"):
        assert text in found and text in " ".join(PAGE.split())
