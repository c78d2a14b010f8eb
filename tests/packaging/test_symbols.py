"""The PDBs: each belongs to its shipped program, and reads the dump of a crash of it."""

import re
import subprocess
import sys
import uuid
import zipfile

import pefile
import pytest

from vantro_interface import host as hosts

DUMP = "Vantro_Crash.dmp"
ACCESS_VIOLATION = 0xC0000005
DUMP_LIMIT = 90  # seconds; a dump takes its time on a busy machine
TOOL = hosts.BUILD / "devkit/interface/process_tool.exe"

PDB_OF = {"vantro.exe": "vantro.pdb", "vantro-log.exe": "vantro_log.pdb", "libvlc.dll": "runtime_adapter.pdb"}

# A function that reads a member of the object that it is called for, and what Windows debuggers call it.
MANGLED = "_ZN6vantro9VLCPlayer11GetPositionEv"
FUNCTION = "vantro::VLCPlayer::GetPosition"
SOURCE = "vlc_player_transport.cpp"


def pdbutil(*arguments):
    return subprocess.run(["llvm-pdbutil", "dump", *map(str, arguments)], check=True, capture_output=True, text=True).stdout


def code_view_record(program):
    """The id and the name of the PDB that the program asks for."""
    image = pefile.PE(program)
    [record] = [entry.entry for entry in image.DIRECTORY_ENTRY_DEBUG if entry.entry]
    data = record.__pack__()
    assert data[:4] == b"RSDS"
    return uuid.UUID(bytes_le=data[4:20]), record.PdbFileName.rstrip(b"\0").decode()


@pytest.mark.parametrize("name", PDB_OF)
def test_program_names_the_pdb_of_its_id_without_a_folder(package, stage, name):
    wanted, file = code_view_record(stage / name)
    assert file == PDB_OF[name]
    [found] = re.findall(r"GUID: \{(.+)\}", pdbutil("-summary", package / "symbols" / file))
    assert uuid.UUID(found) == wanted


def test_symbols_are_in_a_zip_of_their_own(package, stage):
    [archive] = package.glob("vantro-*-symbols.zip")
    assert set(zipfile.ZipFile(archive).namelist()) == {f"symbols/{name}" for name in PDB_OF.values()}
    assert not list(stage.rglob("*.pdb"))


def test_shipped_executable_holds_no_symbols_itself(stage):
    listed = subprocess.run(["x86_64-w64-mingw32-nm", stage / "vantro.exe"], capture_output=True, text=True)
    assert "no symbols" in listed.stderr


def offset_of(pdb, program, name):
    """The place of a function in the loaded program, in bytes from its start."""
    symbol = re.search(rf"`{re.escape(name)}`\n +flags = function, addr = (\d+):(\d+)", pdbutil("-publics", pdb))
    section, offset = map(int, symbol.groups())
    return pefile.PE(program, fast_load=True).sections[section - 1].VirtualAddress + offset


def symbolize(program, pdb, offset, folder):
    """Returns what llvm-symbolizer prints for an offset, with only the shipped program and its PDB in the folder."""
    for file in (program, pdb):
        (folder / file.name).write_bytes(file.read_bytes())
    return subprocess.run(["llvm-symbolizer", "--relative-address", "--no-inlines", f"--obj={folder / program.name}", offset],
                          check=True, capture_output=True, text=True).stdout


def code_and_place(dump):
    """Returns the code, the module and the offset that the command of docs/field-failures.md prints for a dump."""
    command = [sys.executable, "-m", "tests.support.minidump", dump]
    printed = subprocess.run(command, cwd=hosts.ROOT, check=True, capture_output=True, text=True).stdout
    code, place = printed.strip().split(" ", 1)
    module, offset = place.rsplit(" ", 1)
    return int(code, 0), module, offset


@pytest.mark.time_limit(240)
def test_pdb_names_the_function_where_the_shipped_executable_crashed(host, package, stage, tmp_path):
    host.allow_violations = True
    program, pdb = stage / "vantro.exe", package / "symbols/vantro.pdb"
    vantro = host(executable=program)
    preferred = pefile.PE(program, fast_load=True).OPTIONAL_HEADER.ImageBase
    start = preferred + offset_of(pdb, program, MANGLED)
    vantro.prefix.run(TOOL, "fault", vantro.pid, hex(start))
    assert vantro.client.poll(lambda: vantro.client.windows("#32770"), len, "a message box", DUMP_LIMIT)

    code, module, offset = code_and_place(vantro.folder / DUMP)
    assert code == ACCESS_VIOLATION
    assert module.split("\\")[-1] == "vantro.exe"
    named = symbolize(program, pdb, offset, tmp_path)
    assert named.splitlines()[0].startswith(FUNCTION), named
    assert re.search(rf"{SOURCE}:\d+", named)


def test_document_names_the_commands_that_read_a_dump():
    page = (hosts.ROOT / "docs/field-failures.md").read_text()
    assert "python3 -m tests.support.minidump Vantro_Crash.dmp" in page
    assert "llvm-symbolizer --relative-address --obj=FOLDER/vantro.exe OFFSET" in page
