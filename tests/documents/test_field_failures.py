"""Compares the page about failures at customers with the sources, so that a search for its log texts finds them."""

import pathlib
import re

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs/field-failures.md").read_text()
SOURCES = [file for folder in ("shell", "channel", "player", "services", "flutter_host", "runtime")
           for file in sorted((ROOT / folder).glob("*.*")) if file.suffix in (".cpp", ".h")]


def texts(files):
    """Returns the concatenated string literals of the files."""
    return "\n".join(literal for file in files for literal in re.findall(r'"((?:[^"\\\n]|\\.)*)"', file.read_text()))


def section(name):
    return re.split(r"\n## ", PAGE.split(f"\n## {name}\n")[1])[0]


def tables(name):
    """Returns the tables of a section, each as a list of rows, each row as a list of cells, without the headings."""
    found = [[]]
    for line in section(name).splitlines():
        if line.startswith("|"):
            found[-1].append([cell.strip() for cell in line.strip("|").split(" | ")])
        elif found[-1]:
            found.append([])
    return [table[2:] for table in found if table]


def quoted(text):
    """Returns the quoted texts, which may continue on the next line, each up to its first "..."."""
    return [" ".join(found.split()).split("...")[0].strip() for found in re.findall(r'"([^"]+)"', text)]


SYMPTOMS = tables("The log")[-1]


@pytest.mark.parametrize("row", SYMPTOMS, ids=[row[0] for row in SYMPTOMS])
def test_the_log_texts_of_a_symptom_are_in_the_files_of_its_row(row):
    files = [ROOT / path for path in re.findall(r"`([\w/]+\.cpp)`", row[2])]
    assert files and quoted(row[1]), row
    assert [file for file in files if not file.is_file()] == []
    found = texts(files)
    assert [text for text in quoted(row[1]) if text not in found] == []


def test_the_table_of_symptoms_has_rows():
    assert len(SYMPTOMS) >= 10


OTHERS = {"?", "Start in"}  # quoted, but not texts of the product


@pytest.mark.parametrize("name", ["The start boxes", "The log", "The crash", "The database key"])
def test_the_texts_that_a_section_quotes_are_those_of_the_product(name):
    found = texts(SOURCES)
    wanted = [text for text in quoted(section(name)) if text not in OTHERS]
    assert wanted
    assert [text for text in wanted if text not in found] == []


def test_the_name_of_the_marker_and_the_toast_are_those_of_the_product():
    found = texts(SOURCES)
    for text in ("vantro_windows_fullscreen_native_marker.txt", "Recovered from crash (last: "):
        assert text in found and text in PAGE
