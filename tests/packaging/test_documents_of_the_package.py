"""Tests the documents in a package: each link leads to a packed file, and what is not packed is not linked."""

import re

import pytest

from tests.packaging.runtimes import ROOT, check_runtime  # noqa: F401  (puts packaging/ on the path)

import documents

LINK = re.compile(r"\]\(([^)\s]+)\)")
PAGES = sorted(documents.PACKED.values())


@pytest.fixture(scope="module")
def packed(tmp_path_factory):
    folder = tmp_path_factory.mktemp("stage")
    documents.pack(folder)
    return folder


def text_of(packed, page):
    return (packed / page).read_bytes().decode()


@pytest.mark.parametrize("page", PAGES)
def test_every_link_leads_to_a_packed_file(packed, page):
    targets = [target.split("#")[0] for target in LINK.findall(text_of(packed, page)) if "://" not in target]
    missing = [target for target in targets if target and not ((packed / page).parent / target).is_file()]
    assert not missing
    if page == "README.txt":
        assert {"docs/shipping.txt", "docs/field-failures.txt", "docs/pictures/grid-4.png", "LICENSE.txt"} <= set(targets)


@pytest.mark.parametrize("page", PAGES)
def test_no_page_calls_a_packed_page_by_its_name_in_the_repository(packed, page):
    labels = re.findall(r"\[([^\]]*)\]\([^)]*\)", text_of(packed, page))
    assert [label for label in labels if label.endswith(".md")] == []


@pytest.mark.parametrize("page", PAGES)
def test_packed_page_has_the_line_ends_of_windows(packed, page):
    text = text_of(packed, page)
    assert text.count("\n") == text.count("\r\n") > 10


def test_every_page_of_the_readme_for_those_who_ship_or_support_is_packed():
    rows = dict(re.findall(r"^\| ([^|]+) \| ([^|]+) \|$", (ROOT / "README.md").read_text(), re.MULTILINE))
    for purpose in ("ship an interface with this host", "write the interface", "find out what failed at a customer's",
                    "switch the log on, redact a log", "find where a line of the log comes from",
                    "know the environment variables"):
        assert set(re.findall(r"\]\(([\w./-]+)", rows[purpose])) <= set(documents.PACKED), purpose


@pytest.mark.parametrize("name, text, wanted", [
    ("README.md", "# T\n[docs/libvlc.md](docs/libvlc.md#builds)\n", "# T\n[docs/libvlc.txt](docs/libvlc.txt#builds)\n"),
    ("docs/libvlc.md", "# T\n[this\npage](../README.md)\n", "# T\n[this\npage](../README.txt)\n"),
    ("docs/libvlc.md", "# T\n[a](#b) [c](https://host/d.md)\n", "# T\n[a](#b) [c](https://host/d.md)\n"),
    ("docs/libvlc.md", "# T\n\n[x.md](testing.md#a)\n", f"# T\n\n{documents.NOTE}\n\nx.md\n"),
    ("docs/libvlc.md", "# T\n\n[`shell/main.cpp`](../shell/main.cpp)\n", f"# T\n\n{documents.NOTE}\n\n`shell/main.cpp`\n"),
    ("README.md", "# T\nA line: `[Name] text (%s)`\n", "# T\nA line: `[Name] text (%s)`\n")])
def test_links_become_those_of_the_package(name, text, wanted):
    assert documents.packed_text(name, text) == (wanted, [])


def test_pictures_of_a_page_are_packed_with_it():
    text = "# T\n![a](pictures/b.png)\n"
    assert documents.packed_text("docs/libvlc.md", text) == (text, ["docs/pictures/b.png"])
