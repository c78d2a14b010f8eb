"""Tests which components of others are found in a program, and how they are described."""

import os
import subprocess
import sys

import pytest

from tests.packaging.runtimes import ROOT, check_runtime  # noqa: F401  (puts packaging/ on the path)

import components
import licences

MODULES = """
Mod 0000 | `/usr/x86_64-w64-mingw32/lib/crt2.o`:
Obj: `/usr/x86_64-w64-mingw32/lib/crt2.o`:
Mod 0001 | `C:\\vantro\\shell\\CMakeFiles\\vantro.dir\\main.cpp.obj`:
Obj: `C:\\vantro\\shell\\CMakeFiles\\vantro.dir\\main.cpp.obj`:
Mod 0002 | `string-inst.o`:
Obj: `/usr/lib/gcc/x86_64-w64-mingw32/12-posix/libstdc++.a`:
Mod 0003 | `channel.cpp.obj`:
Obj: `C:\\vantro\\libvantro_core.a`:
{more}Mod 0009 | `* Linker *`:
Obj: ``:
"""
FOREIGN = "Mod 0005 | `inflate.o`:\nObj: `{path}`:\n"


def test_linked_files_are_used_archives_and_objects_outside_the_build():
    assert components.linked_files(MODULES.format(more="")) == {"libstdc++.a", "crt2.o"}


@pytest.mark.parametrize("path", ["/usr/x86_64-w64-mingw32/lib/libz.a", "C:/msys64/mingw64/lib/libz.a"])
def test_library_without_a_notice_is_named(path):
    names = components.linked_files(MODULES.format(more=FOREIGN.format(path=path)))
    with pytest.raises(components.Unknown, match="libz.a"):
        components.components_of(names)


def test_each_component_has_its_notice():
    for component in components.COMPONENTS:
        assert len(components.notice(component)) > 500, component["name"]
    assert {path.name for path in (ROOT / "packaging/notices").iterdir()} == {part["notice"] for part in components.COMPONENTS}


def describe(stage, folder, source="void start(void) {}", *libraries):
    """Describes a program that is linked by the compiler that ships, from this source and the libraries."""
    (folder / "program.c").write_text(source)
    subprocess.run(["clang", "--target=x86_64-w64-windows-gnu", "-c", "program.c"], cwd=folder, check=True)
    subprocess.run(["clang", "--target=x86_64-w64-windows-gnu", "-fuse-ld=lld", "-nostdlib", "-Wl,-e,start",
                    "-Wl,--pdb=program.pdb", "-Wl,-Xlink=-pdbsourcepath:C:/vantro", "program.o", *libraries, "-o",
                    "program.exe"], cwd=folder, check=True)
    return subprocess.run([sys.executable, ROOT / "packaging/describe_package.py", stage, "1.2.3",
                           "x86_64-w64-mingw32-g++-posix", f"vantro.exe={folder / 'program.pdb'}"], capture_output=True,
                          text=True, env=dict(os.environ, SOURCE_DATE_EPOCH="1700000000"))


@pytest.fixture
def stage(tmp_path):
    (tmp_path / "stage").mkdir()
    (tmp_path / "stage/vantro.exe").write_bytes(b"program")
    return tmp_path / "stage"


def test_description_of_the_same_files_has_the_same_bytes(stage, tmp_path):
    written = []
    for _ in range(2):
        assert describe(stage, tmp_path).returncode == 0
        written.append([(stage / name).read_bytes() for name in ("NOTICES.txt", "vantro.spdx.json")])
    assert written[0] == written[1]
    assert b"2023-11-14T22:13:20Z" in written[0][1]


def test_package_with_a_library_without_a_notice_is_not_described(stage, tmp_path):
    library = tmp_path / "elsewhere"
    library.mkdir()
    (library / "z.c").write_text("int inflate(void) { return 0; }")
    subprocess.run(["clang", "--target=x86_64-w64-windows-gnu", "-c", "z.c"], cwd=library, check=True)
    subprocess.run(["x86_64-w64-mingw32-ar", "rcs", "libz.a", "z.o"], cwd=library, check=True)
    result = describe(stage, tmp_path, "int inflate(void); void start(void) { inflate(); }", library / "libz.a")
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
