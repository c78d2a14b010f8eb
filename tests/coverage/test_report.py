"""Tests of the coverage report: the lines that it counts, those that it leaves out, and those that it reports as
unexcused."""

import subprocess

import report

SOURCE = """#include "../tests/other.h"
struct Task { Task(int); ~Task(); };
void Start() {
  static const Task kTasks[] = {
      1,
  };
  Other();
}
"""


def test_lines_of_the_product_that_never_ran_are_counted_without_closing_braces(tmp_path, monkeypatch):
    monkeypatch.setattr(report, "ROOT", tmp_path)
    for folder in ("player", "tests", "build"):
        (tmp_path / folder).mkdir()
    (tmp_path / "tests/other.h").write_text("inline int Other() { return 1; }\n")
    (tmp_path / "player/a.cpp").write_text(SOURCE)
    subprocess.run(["x86_64-w64-mingw32-g++-posix", "--coverage", f"-ffile-prefix-map={tmp_path}/=", "-c",
                    tmp_path / "player/a.cpp"], cwd=tmp_path / "build", check=True)

    lines = report.lines_of(report.covered_files(tmp_path / "build"))

    assert lines == [("player/a.cpp", 3, "Start()", 0), ("player/a.cpp", 7, "Start()", 0)]


def test_a_line_belongs_to_the_last_function_that_begins_above_it():
    file = {"file": "player/a.cpp",
            "functions": [{"lineno": 9, "name": "Stop()"}, {"lineno": 4, "name": "Start()"}],
            "lines": [{"line_number": number, "count": 0, "gcovr/noncode": False} for number in (1, 4, 8, 9)]}

    assert [function for _, _, function, _ in report.lines_of([file])] == ["", "Start()", "Start()", "Stop()"]


def test_each_folder_has_its_own_row():
    rows = report.table([("shell/a.cpp", 1, "f", 1), ("common/b.cpp", 1, "f", 0), ("common/b.cpp", 2, "f", 5)])

    assert [row for row in rows if row[1]] == [("shell", 1, 1), ("common", 2, 1), ("all", 3, 2)]


def test_an_excuse_covers_the_stated_number_of_lines_of_a_function():
    reason = "| `shell/a.cpp` | `Start` | 1 | cannot be provoked |"
    one = [("shell/a.cpp", 7, "vantro::Start(int)")]

    assert report.without_excuse(one, reason) == []


def test_lines_beyond_the_excused_number_are_reported():
    reason = "| `shell/a.cpp` | `Start` | 1 | cannot be provoked |"
    two = [("shell/a.cpp", 7, "vantro::Start(int)"), ("shell/a.cpp", 8, "vantro::Start(int)")]

    assert report.without_excuse(two, reason) == two


def test_an_excuse_for_one_function_does_not_excuse_another():
    reason = "| `shell/a.cpp` | `Start` | 9 | cannot be provoked |"
    other = [("shell/a.cpp", 7, "vantro::Restart(int)"), ("shell/b.cpp", 7, "vantro::Start(int)")]

    assert report.without_excuse(other, reason) == other


def test_a_build_that_never_ran_has_no_data(tmp_path, capsys):
    assert report.main(tmp_path) == 1
    assert "no data" in capsys.readouterr().out
