"""Compares the page of the log's lines with the log statements of the sources. The texts of the log are part of what
users rely on: support searches for them."""

import pathlib
import re
import shutil
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "devkit"))

import log_lines  # noqa: E402

SOURCE = "services/database_key_store.cpp"


def test_the_page_lists_each_line_of_the_log_with_its_level_and_source():
    assert (ROOT / log_lines.PAGE).read_text() == log_lines.page(), "Run devkit/log_lines.py."


def test_each_folder_of_the_product_that_writes_to_the_log_is_on_the_page():
    writing = {path.parent.name for path in ROOT.glob("*/*.cpp") if log_lines.STATEMENT.search(path.read_text())}
    assert writing <= set(log_lines.FOLDERS)


def test_no_header_writes_to_the_log():
    for folder in log_lines.FOLDERS:
        for path in (ROOT / folder).glob("*.h"):
            assert path.name == "log.h" or not log_lines.STATEMENT.search(path.read_text()), path


def test_the_redaction_is_tested_with_each_line_that_contains_an_address():
    table = (ROOT / "tests/unit/log_tool/address_lines.h").read_text()
    tested = ["".join(log_lines.LITERAL.findall(row)) for row in re.findall(r'Line\{((?:\s*"[^"]*")+), *\s*"[AT]+"\}', table)]
    lines = [line for _, rows in log_lines.statements() for _, line, _ in rows]
    found = [line for line in lines if re.search(r"(?i)(url|mediaId|for path|location for).*%s", line)]
    assert sorted(tested) == sorted(found)


@pytest.fixture
def changed(tmp_path):
    """Returns a function that makes the page from a copy of the tree in which one source has a changed text."""
    for folder in log_lines.FOLDERS:
        shutil.copytree(ROOT / folder, tmp_path / folder)

    def make(before, after):
        text = (tmp_path / SOURCE).read_text()
        assert before in text
        (tmp_path / SOURCE).write_text(text.replace(before, after, 1))
        return log_lines.page(tmp_path)

    return make


@pytest.mark.parametrize("before, after", [("LOG_ERROR(", "LOG_WARNING("), ("LOG_ERROR(", "(void)("),
                                           ('LOG_ERROR("', 'LOG_ERROR("~')], ids=["level", "statement", "text"])
def test_a_changed_log_statement_changes_the_page(changed, before, after):
    assert changed(before, after) != log_lines.page()


def test_a_text_of_several_literals_is_one_line():
    assert log_lines.lines_of('LOG_INFO("a, (b) "\n    "c", Name(x, 1));') == [("INFO", "a, (b) c", [])]


def test_the_words_that_a_line_chooses_from_belong_to_it():
    statements = 'LOG_INFO("is %s", Is(a, b) ? "on" : "off");\nLOG_DEBUG("end");'
    assert log_lines.lines_of(statements) == [("INFO", "is %s", ["on", "off"]), ("DEBUG", "end", [])]


def test_a_text_that_is_not_a_literal_is_an_error():
    with pytest.raises(ValueError, match="not a literal"):
        log_lines.lines_of("LOG_INFO(text);")
