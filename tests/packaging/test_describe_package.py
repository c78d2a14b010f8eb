"""What of others is found in a program, and what is said of it."""

import os
import subprocess
import sys

import pytest

from tests.packaging.runtimes import ROOT, check_runtime  # noqa: F401  (puts packaging/ on the path)

import components
import licences

MAP = """Archive member included to satisfy reference by file (symbol)

/usr/lib/gcc/x86_64-w64-mingw32/12-posix/libstdc++.a(string-inst.o)
                              libvantro_core.a(channel.cpp.obj) (std::string)
{more}libvantro_core.a(channel.cpp.obj)
                              main.cpp.obj (Channel)

Discarded input sections

LOAD /usr/x86_64-w64-mingw32/lib/crt2.o
LOAD shell/CMakeFiles/vantro.dir/main.cpp.obj
LOAD /usr/x86_64-w64-mingw32/lib/libuser32.a
"""


def test_linked_is_what_a_member_was_taken_from_and_each_object_outside_the_build():
    assert components.linked_files(MAP.format(more="")) == {"libstdc++.a", "crt2.o"}


@pytest.mark.parametrize("path", ["/usr/x86_64-w64-mingw32/lib/libz.a", "C:/msys64/mingw64/lib/libz.a"])
def test_library_without_a_notice_is_named(path):
    names = components.linked_files(MAP.format(more=f"{path}(inflate.o)\n"))
    with pytest.raises(components.Unknown, match="libz.a"):
        components.components_of(names)


def test_each_component_has_its_notice():
    for component in components.COMPONENTS:
        assert len(components.notice(component)) > 500, component["name"]
    assert {path.name for path in (ROOT / "packaging/notices").iterdir()} == {part["notice"] for part in components.COMPONENTS}


def describe(stage, tmp_path, more=""):
    (tmp_path / "map").write_text(MAP.format(more=more))
    return subprocess.run([sys.executable, ROOT / "packaging/describe_package.py", stage, "1.2.3",
                           "x86_64-w64-mingw32-g++-posix", f"vantro.exe={tmp_path / 'map'}"], capture_output=True, text=True,
                          env=dict(os.environ, SOURCE_DATE_EPOCH="1700000000"))


@pytest.fixture
def stage(tmp_path):
    (tmp_path / "stage").mkdir()
    (tmp_path / "stage/vantro.exe").write_bytes(b"program")
    return tmp_path / "stage"


def test_description_of_the_same_files_is_the_same_bytes(stage, tmp_path):
    written = []
    for _ in range(2):
        assert describe(stage, tmp_path).returncode == 0
        written.append([(stage / name).read_bytes() for name in ("NOTICES.txt", "vantro.spdx.json")])
    assert written[0] == written[1]
    assert b"2023-11-14T22:13:20Z" in written[0][1]


def test_package_with_a_library_without_a_notice_is_not_described(stage, tmp_path):
    result = describe(stage, tmp_path, more="/usr/x86_64-w64-mingw32/lib/libz.a(inflate.o)\n")
    assert result.returncode == 1
    assert result.stderr.startswith("make-package: no notice covers what is linked in from libz.a")
    assert not (stage / "NOTICES.txt").exists()


def test_licences_and_credits_of_a_runtime_are_copied(tmp_path):
    for name in ("COPYING.LIB", "AUTHORS.txt", "NEWS.txt"):
        (tmp_path / name).write_text(name)
    assert licences.main("runtime", tmp_path, tmp_path / "stage") == 0
    assert {path.name for path in (tmp_path / "stage/licenses/libvlc").iterdir()} == {"COPYING.LIB", "AUTHORS.txt"}


def test_bundle_without_flutters_notices_gets_a_warning(tmp_path, capsys):
    (tmp_path / "data/flutter_assets").mkdir(parents=True)
    assert licences.main("bundle", tmp_path) == 0
    assert "has no data/flutter_assets/NOTICES.Z" in capsys.readouterr().err
    (tmp_path / "data/flutter_assets/NOTICES.Z").write_bytes(b"")
    assert licences.main("bundle", tmp_path) == 0
    assert not capsys.readouterr().err
