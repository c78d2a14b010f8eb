"""The coverage report: what it counts, what it leaves out, and which lines it holds against the tree."""

import report


def document(file, counts, function="f"):
    return {"files": [{"file": file,
                       "functions": [{"name": "_Zf", "demangled_name": function}],
                       "lines": [{"line_number": number, "count": count, "function_name": "_Zf"}
                                 for number, count in counts.items()]}]}


def test_a_line_that_several_objects_hold_counts_once_and_is_visited_if_one_ran_it():
    files = report.merge([document("player/a.h", {1: 0, 2: 0}), document("player/a.h", {1: 3, 2: 0})])

    assert report.table(files)[-1] == ("all", 2, 1)
    assert report.unvisited(files) == [("player/a.h", 2, "f")]


def test_what_is_not_of_the_product_is_left_out():
    files = report.merge([document("tests/unit/x.cpp", {1: 0}), document("/usr/include/c++/12/vector", {1: 0})])

    assert report.table(files)[-1] == ("all", 0, 0)


def test_each_folder_has_a_row_of_its_own():
    files = report.merge([document("shell/a.cpp", {1: 1}), document("common/b.cpp", {1: 0, 2: 5})])

    assert [row for row in report.table(files) if row[1]] == [("shell", 1, 1), ("common", 2, 1), ("all", 3, 2)]


def test_a_written_reason_excuses_as_many_lines_of_a_function_as_it_says():
    reason = "| `shell/a.cpp` | `Start` | 1 | cannot be provoked |"
    one = [("shell/a.cpp", 7, "vantro::Start(int)")]

    assert report.without_excuse(one, reason) == []


def test_lines_beyond_what_is_excused_are_held_against_the_function():
    reason = "| `shell/a.cpp` | `Start` | 1 | cannot be provoked |"
    two = [("shell/a.cpp", 7, "vantro::Start(int)"), ("shell/a.cpp", 8, "vantro::Start(int)")]

    assert report.without_excuse(two, reason) == two


def test_a_reason_for_one_function_says_nothing_of_another():
    reason = "| `shell/a.cpp` | `Start` | 9 | cannot be provoked |"
    other = [("shell/a.cpp", 7, "vantro::Restart(int)"), ("shell/b.cpp", 7, "vantro::Start(int)")]

    assert report.without_excuse(other, reason) == other


def test_a_build_that_never_ran_has_no_data(tmp_path, capsys):
    (tmp_path / "a.gcno").write_bytes(b"")

    assert report.main(tmp_path) == 1
    assert "no data" in capsys.readouterr().out
