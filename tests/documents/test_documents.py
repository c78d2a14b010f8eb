"""Tests that links in the documents have a target, and that each file that they name exists."""

import re
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
DOCUMENTS = sorted([*ROOT.glob("*.md"), *ROOT.glob("docs/**/*.md"), *ROOT.glob("interface/**/*.md")])

LINK = re.compile(r"!?\[[^\]]*\]\(([^)#\s]+)(#[^)]*)?\)")
# A name in backticks is a file or folder of this repository when it has a slash and starts with one of its folders.
NAMED = re.compile(r"`((?:" + "|".join(sorted(p.name for p in ROOT.iterdir() if p.is_dir() and p.name not in {"out", ".git"}))
                   + r")/[\w./-]*[\w/-])`")


def identifiers(paths):
    return [str(path.relative_to(ROOT)) for path in paths]


@pytest.mark.parametrize("document", DOCUMENTS, ids=identifiers(DOCUMENTS))
def test_every_link_points_to_an_existing_file(document):
    targets = [match.group(1) for match in LINK.finditer(document.read_text()) if "://" not in match.group(1)]
    missing = [target for target in targets if not (document.parent / target).exists()]
    assert not missing, f"{document.name} links to what does not exist: {missing}"


def anchors(document):
    """The anchors that a hosting service makes from the headings of a document."""
    prose = re.sub(r"^```.*?^```", "", document.read_text(), flags=re.DOTALL | re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading).strip().lower().replace(" ", "-")
            for heading in re.findall(r"^#+ (.+)$", prose, re.MULTILINE)}


@pytest.mark.parametrize("document", DOCUMENTS, ids=identifiers(DOCUMENTS))
def test_every_link_to_a_heading_finds_it(document):
    links = re.findall(r"\[[^\]]*\]\(([^)#\s]*)#([^)]+)\)", document.read_text())
    missing = [f"{target}#{anchor}" for target, anchor in links if "://" not in target
               and anchor not in anchors(document.parent / target if target else document)]
    assert not missing, f"{document.name} links to headings that do not exist: {missing}"


@pytest.mark.parametrize("document", DOCUMENTS, ids=identifiers(DOCUMENTS))
def test_every_file_named_in_a_document_exists(document):
    named = {match.group(1) for match in NAMED.finditer(document.read_text())}
    missing = sorted(name for name in named if not (ROOT / name).exists())
    assert not missing, f"{document.name} names what does not exist: {missing}"


def test_there_are_documents_to_check():
    names = {document.name for document in DOCUMENTS}
    assert {"README.md", "CONTRIBUTING.md", "CHANGELOG.md", "architecture.md", "channel.md", "testing.md",
            "performance.md", "building-on-windows.md", "shipping.md", "field-failures.md"} <= names


def test_version_is_stated_in_one_place():
    version = re.search(r"^project\(vantro VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(), re.M).group(1)
    suffixes = {".cpp", ".h", ".rc", ".in", ".py", ".nsi", ".cmake", ".json"}
    skipped = {"out", ".git"}
    elsewhere = [str(path.relative_to(ROOT)) for path in ROOT.rglob("*")
                 if path.is_file() and path.suffix in suffixes and not skipped & set(path.relative_to(ROOT).parts)
                 and re.search(rf"(?<![\d.]){re.escape(version)}(?![\d.])", path.read_text(errors="replace"))]
    assert not elsewhere, f"the version {version} is also in {elsewhere}"
def test_the_performance_page_is_its_template_with_the_tables_that_are_kept():
    kept = {path.stem: path.read_text().strip() for path in (ROOT / "bench/results").glob("*.md")}
    template = (ROOT / "bench/performance.md.in").read_text()
    expected = re.sub(r"^@(\w+)@$", lambda match: kept[match[1]], template, flags=re.MULTILINE)
    assert (ROOT / "docs/performance.md").read_text() == expected
