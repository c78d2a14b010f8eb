"""Tests the packages as a user gets them: the zip is unpacked, and the installer runs silently and is uninstalled
again."""

import hashlib
import json
import os
import re
import shutil
import subprocess
import zipfile
from pathlib import Path

import pefile
import pytest

from tests.packaging.conftest import COMMIT_TIME
from tests.packaging.runtimes import check_runtime, published

ROOT = Path(__file__).resolve().parents[2]
BUILD = ROOT / "out" / "build" / "mingw"


def contents(folder: Path) -> set[str]:
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file()}


PROGRAMS = ["vantro.exe", "vantro-log.exe", "libvlc.dll"]
PAGES = ["shipping", "libvlc", "channel", "field-failures", "log-tool", "log-lines", "environment"]
PICTURES = ["single-view", "grid-1", "grid-2", "grid-3", "grid-4", "grid-5"]
DOCUMENTS = {"LICENSE.txt", "README.txt", "CHANGELOG.txt", *(f"docs/{page}.txt" for page in PAGES),
             *(f"docs/pictures/{picture}.png" for picture in PICTURES)}
EXPECTED = {*PROGRAMS, *DOCUMENTS, "NOTICES.txt", "vantro.spdx.json",
            "licenses/libvlc/COPYING.txt", "libvlc-real.dll", "libvlccore.dll",
            "plugins/plugin.dll", "data/icudtl.dat", "data/flutter_assets/asset name with blanks.txt"}


@pytest.fixture(scope="module")
def prefix(tmp_path_factory):
    folder = tmp_path_factory.mktemp("wine") / "prefix"
    subprocess.run([ROOT / "devkit" / "wine" / "prefix", folder], check=True)
    return folder


def run(prefix: Path, *command) -> int:
    environment = dict(os.environ, VANTRO_WINEPREFIX=str(prefix))
    return subprocess.run([ROOT / "devkit" / "wine" / "run", *map(str, command)], env=environment, timeout=120).returncode


def find(prefix: Path, name: str) -> list[Path]:
    return [path for path in (prefix / "drive_c").rglob(name)]


def test_zip_holds_the_host_its_texts_the_bundle_and_the_runtime(package, tmp_path):
    [archive] = package.glob("vantro-*-windows-x86-64.zip")
    zipfile.ZipFile(archive).extractall(tmp_path)
    assert contents(tmp_path / archive.stem) == EXPECTED


def test_adapter_is_libvlc_dll_and_the_runtime_is_libvlc_real_dll(package):
    [stage] = [folder for folder in package.glob("vantro-*") if folder.is_dir()]
    assert "libvlc_media_player_stop" in check_runtime.exports_of(stage / "libvlc.dll")
    assert check_runtime.exports_of(stage / "libvlc-real.dll") == published(check_runtime.interfaces()[0])


def test_notices_hold_each_linked_librarys_licence_and_point_to_the_runtimes(stage):
    text = (stage / "NOTICES.txt").read_bytes().decode()
    assert text.count("\n") == text.count("\r\n")
    for phrase in ("GCC RUNTIME LIBRARY EXCEPTION", "the mingw-w64 project", "Lucent Technologies", "Lockless Inc.", "NSIS",
                   "Hewlett-Packard Company", "licenses/libvlc", "NOTICES.Z"):
        assert phrase in text, phrase


def test_bill_of_materials_lists_every_file_with_its_checksum(stage, package):
    bill = json.loads((stage / "vantro.spdx.json").read_text())
    listed = {entry["fileName"]: entry["checksums"][1]["checksumValue"] for entry in bill["files"]}
    assert listed == {f"./{name}": hashlib.sha256((stage / name).read_bytes()).hexdigest()
                      for name in EXPECTED - {"vantro.spdx.json"}}
    [beside] = package.glob("vantro-*.spdx.json")
    assert json.loads(beside.read_text()) == bill


def test_bill_of_materials_says_that_programs_and_documents_are_vantros_own(stage):
    bill = json.loads((stage / "vantro.spdx.json").read_text())
    own = {entry["fileName"] for entry in bill["files"] if entry["licenseConcluded"] == "MIT"}
    assert own == {f"./{name}" for name in {*PROGRAMS, *DOCUMENTS}}


def test_every_link_in_a_packed_document_leads_to_a_packed_file(stage):
    texts = [path for path in stage.rglob("*.txt") if "flutter_assets" not in path.parts]
    links = [(path, target.split("#")[0]) for path in texts
             for target in re.findall(r"\]\(([^)\s]+)\)", path.read_bytes().decode()) if not re.match("https?:|#", target)]
    assert len(links) > 20
    assert [(path.name, target) for path, target in links if not (path.parent / target).is_file()] == []


def test_bill_of_materials_is_complete(stage):
    bill = json.loads((stage / "vantro.spdx.json").read_text())
    assert bill["spdxVersion"] == "SPDX-2.3"
    names = {entry["SPDXID"] for entry in bill["packages"] + bill["files"]}
    assert len(names) == len(bill["packages"]) + len(bill["files"])
    used = {relation[end] for relation in bill["relationships"] for end in ("spdxElementId", "relatedSpdxElement")}
    assert used == names | {"SPDXRef-DOCUMENT"}
    by_id = {entry["SPDXID"]: entry.get("fileName") for entry in bill["files"]}
    linked = {(by_id[relation["spdxElementId"]], relation["relatedSpdxElement"]) for relation in bill["relationships"]
              if relation["relationshipType"] == "STATIC_LINK"}
    assert linked == {(f"./{image}", f"SPDXRef-{part}") for image in PROGRAMS
                      for part in ("GCC", "mingw-w64", "winpthreads")}
    versions = {entry["name"]: entry.get("versionInfo", "") for entry in bill["packages"]}
    for name in ("GCC runtime libraries", "mingw-w64 runtime", "winpthreads", "NSIS"):
        assert re.match(r"\d+\.\d+", versions[name]), versions
    assert {"libvlc and its plugins", "the interface and Flutter"} <= set(versions)
    refs = {entry["licenseId"] for entry in bill["hasExtractedLicensingInfos"]}
    assert refs == {"LicenseRef-mingw-w64", "LicenseRef-NSIS"}


@pytest.mark.parametrize("name", PROGRAMS)
def test_version_resource_states_name_version_and_the_copyright_of_the_licence(stage, name):
    image = pefile.PE(stage / name)
    texts = {key.decode(): value.decode() for part in image.FileInfo[0] if hasattr(part, "StringTable")
             for table in part.StringTable for key, value in table.entries.items()}
    line = next(line for line in (ROOT / "LICENSE").read_text().splitlines() if line.startswith("Copyright"))
    assert texts["LegalCopyright"] == f"{line}. MIT License."
    version = re.search(r"^project\(vantro VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
    assert (texts["OriginalFilename"], texts["FileVersion"], texts["ProductVersion"]) == (name, version, version)
    fixed = image.VS_FIXEDFILEINFO[0]
    assert [fixed.FileVersionMS >> 16, fixed.FileVersionMS & 0xFFFF, fixed.FileVersionLS >> 16] == list(map(int, version.split(".")))
    kinds = {".exe": 1, ".dll": 2}  # VFT_APP, VFT_DLL
    assert fixed.FileType == kinds[name[-4:]]


@pytest.mark.parametrize("name", PROGRAMS)
def test_shipped_program_links_no_network_library(stage, name):
    libraries = {entry.dll.decode().lower() for entry in pefile.PE(stage / name).DIRECTORY_ENTRY_IMPORT}
    assert "kernel32.dll" in libraries
    assert not libraries & {"ws2_32.dll", "wsock32.dll", "winhttp.dll", "wininet.dll", "urlmon.dll", "webio.dll", "dnsapi.dll"}


def test_silent_install_places_every_file_and_silent_uninstall_removes_only_these(package, prefix):
    [setup] = package.glob("vantro-*-setup.exe")
    assert run(prefix, setup, "/S") == 0
    [exe] = find(prefix, "vantro.exe")
    folder = exe.parent
    assert contents(folder) == EXPECTED | {"uninstall.exe"}

    kept = folder / "notes of the user.txt"
    kept.write_text("mine")
    # In place (_?=): otherwise the uninstaller copies itself elsewhere and the first process ends too early.
    target = "Z:" + str(folder).replace("/", "\\")
    assert run(prefix, folder / "uninstall.exe", "/S", f"_?={target}") == 0
    # An uninstaller that runs in place cannot delete itself.
    assert contents(folder) - {"uninstall.exe"} == {"notes of the user.txt"}
    shutil.rmtree(folder)


@pytest.mark.time_limit(1200)
def test_same_commit_gives_the_same_executable_and_symbols_when_built_again(tmp_path):
    # Without ccache, which would return the objects of the first build. In one folder, because the symbols name the files
    # from which the linker made them.
    environment = dict(os.environ, SOURCE_DATE_EPOCH=COMMIT_TIME, CCACHE_DISABLE="1")
    made = []
    build = tmp_path / "build"
    for _ in range(2):
        shutil.rmtree(build, ignore_errors=True)
        subprocess.run(["cmake", "-S", ROOT, "--preset", "mingw-ship", "-B", build], check=True, env=environment,
                       stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", build, "--target", "vantro", "-j2"], check=True, env=environment,
                       stdout=subprocess.DEVNULL)
        made.append([(build / name).read_bytes() for name in ("vantro.exe", "vantro.pdb")])
    assert made[0] == made[1], "the executables or their symbols differ"
    assert b"Nov 14 2023 22:13:20" in made[0][0]
