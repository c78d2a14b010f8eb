"""Tests of the coverage report: the lines that it counts, those that it leaves out, and those that it reports as
unexcused."""

import report


def document(file, counts, function="f"):
    return {"files": [{"file": file,
                       "functions": [{"name": "_Zf", "demangled_name": function}],
                       "lines": [{"line_number": number, "count": count, "function_name": "_Zf"}
                                 for number, count in counts.items()]}]}


def test_a_line_in_several_objects_counts_once_and_is_visited_if_any_ran_it():
    files = report.merge([document("player/a.h", {1: 0, 2: 0}), document("player/a.h", {1: 3, 2: 0})])

    assert report.table(files)[-1] == ("all", 2, 1)
    assert report.unvisited(files) == [("player/a.h", 2, "f")]


def test_files_outside_the_product_are_left_out():
    files = report.merge([document("tests/unit/x.cpp", {1: 0}), document("/usr/include/c++/12/vector", {1: 0})])

    assert report.table(files)[-1] == ("all", 0, 0)


def test_each_folder_has_its_own_row():
    files = report.merge([document("shell/a.cpp", {1: 1}), document("common/b.cpp", {1: 0, 2: 5})])

    assert [row for row in report.table(files) if row[1]] == [("shell", 1, 1), ("common", 2, 1), ("all", 3, 2)]


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
    (tmp_path / "a.gcno").write_bytes(b"")

    assert report.main(tmp_path) == 1
    assert "no data" in capsys.readouterr().out
