"""The packages as a user meets them: the zip is unpacked, the installer runs silently, and both go away again."""

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

from tests.packaging.runtimes import check_runtime, make_runtime, published

ROOT = Path(__file__).resolve().parents[2]
BUILD = ROOT / "out" / "build" / "mingw"


@pytest.fixture(scope="module")
def package(tmp_path_factory):
    """The packages, made with a stand-in bundle and a stand-in runtime."""
    base = tmp_path_factory.mktemp("package")
    bundle, runtime = base / "bundle", base / "runtime"
    (bundle / "data" / "flutter_assets").mkdir(parents=True)
    (bundle / "data" / "icudtl.dat").write_bytes(b"icu")
    (bundle / "data" / "flutter_assets" / "asset name with blanks.txt").write_text("asset")
    make_runtime(runtime, published(check_runtime.interfaces()[0]))
    subprocess.run([ROOT / "packaging" / "make-package", "--bundle", bundle, "--runtime", runtime, "--out", base / "out"],
                   check=True, stdout=subprocess.DEVNULL)
    return base / "out"


def contents(folder: Path) -> set[str]:
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file()}


EXPECTED = {"vantro.exe", "LICENSE.txt", "README.txt", "CHANGELOG.txt", "NOTICES.txt", "vantro.spdx.json",
            "licenses/libvlc/COPYING.txt", "libvlc.dll", "libvlc-real.dll", "libvlccore.dll",
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


def test_adapter_is_libvlc_and_the_runtime_lies_under_it(package):
    [stage] = [folder for folder in package.glob("vantro-*") if folder.is_dir()]
    assert "libvlc_media_player_stop" in check_runtime.exports_of(stage / "libvlc.dll")
    assert check_runtime.exports_of(stage / "libvlc-real.dll") == published(check_runtime.interfaces()[0])


@pytest.fixture(scope="module")
def stage(package):
    [folder] = [folder for folder in package.glob("vantro-*") if folder.is_dir()]
    return folder


def test_notices_hold_the_licence_of_each_linked_library_and_say_where_those_of_the_runtime_are(stage):
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


def test_bill_of_materials_is_whole(stage):
    bill = json.loads((stage / "vantro.spdx.json").read_text())
    assert bill["spdxVersion"] == "SPDX-2.3"
    names = {entry["SPDXID"] for entry in bill["packages"] + bill["files"]}
    assert len(names) == len(bill["packages"]) + len(bill["files"])
    used = {relation[end] for relation in bill["relationships"] for end in ("spdxElementId", "relatedSpdxElement")}
    assert used == names | {"SPDXRef-DOCUMENT"}
    by_id = {entry["SPDXID"]: entry.get("fileName") for entry in bill["files"]}
    linked = {(by_id[relation["spdxElementId"]], relation["relatedSpdxElement"]) for relation in bill["relationships"]
              if relation["relationshipType"] == "STATIC_LINK"}
    assert linked == {(f"./{image}", f"SPDXRef-{part}") for image in ("vantro.exe", "libvlc.dll")
                      for part in ("GCC", "mingw-w64", "winpthreads")}
    versions = {entry["name"]: entry.get("versionInfo", "") for entry in bill["packages"]}
    for name in ("GCC runtime libraries", "mingw-w64 runtime", "winpthreads", "NSIS"):
        assert re.match(r"\d+\.\d+", versions[name]), versions
    assert {"libvlc and its plugins", "the interface and Flutter"} <= set(versions)
    refs = {entry["licenseId"] for entry in bill["hasExtractedLicensingInfos"]}
    assert refs == {"LicenseRef-mingw-w64", "LicenseRef-NSIS"}


def test_version_resource_states_the_copyright_of_the_licence(stage):
    image = pefile.PE(stage / "vantro.exe")
    texts = {key.decode(): value.decode() for part in image.FileInfo[0] if hasattr(part, "StringTable")
             for table in part.StringTable for key, value in table.entries.items()}
    line = next(line for line in (ROOT / "LICENSE").read_text().splitlines() if line.startswith("Copyright"))
    assert texts["LegalCopyright"] == f"{line}. MIT License."


@pytest.mark.parametrize("name", ["vantro.exe", "libvlc.dll"])
def test_shipped_program_links_no_network_library(stage, name):
    libraries = {entry.dll.decode().lower() for entry in pefile.PE(stage / name).DIRECTORY_ENTRY_IMPORT}
    assert "kernel32.dll" in libraries
    assert not libraries & {"ws2_32.dll", "wsock32.dll", "winhttp.dll", "wininet.dll", "urlmon.dll", "webio.dll", "dnsapi.dll"}


def test_shipped_executable_is_stripped_and_its_symbols_stand_apart(package):
    [exe] = package.glob("vantro-*/vantro.exe")
    [symbols] = package.glob("vantro-*-symbols.zip")
    assert exe.stat().st_size < zipfile.ZipFile(symbols).getinfo("symbols/vantro.exe.debug").file_size
    listed = subprocess.run(["x86_64-w64-mingw32-nm", exe], capture_output=True, text=True)
    assert "no symbols" in listed.stderr


def test_silent_install_puts_every_file_in_place_and_silent_uninstall_takes_only_these_away(package, prefix):
    [setup] = package.glob("vantro-*-setup.exe")
    assert run(prefix, setup, "/S") == 0
    [exe] = find(prefix, "vantro.exe")
    folder = exe.parent
    assert contents(folder) == EXPECTED | {"uninstall.exe"}

    kept = folder / "notes of the user.txt"
    kept.write_text("mine")
    # In place (_?=): without it the uninstaller copies itself away and ends before it is done.
    target = "Z:" + str(folder).replace("/", "\\")
    assert run(prefix, folder / "uninstall.exe", "/S", f"_?={target}") == 0
    # An uninstaller that runs in place cannot delete itself.
    assert contents(folder) - {"uninstall.exe"} == {"notes of the user.txt"}
    shutil.rmtree(folder)


def test_same_commit_gives_the_same_executable(package, tmp_path):
    environment = dict(os.environ, SOURCE_DATE_EPOCH="1700000000")
    images = []
    for attempt in ("first", "second"):
        build = tmp_path / attempt
        subprocess.run(["cmake", "-S", ROOT, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                        "-DVANTRO_BUILD_TESTS=OFF", f"-DCMAKE_TOOLCHAIN_FILE={ROOT}/cmake/mingw-w64.cmake"],
                       check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", build, "--target", "vantro", "-j2"], check=True, env=environment,
                       stdout=subprocess.DEVNULL)
        # As it ships: the symbols name the build's folder.
        subprocess.run(["x86_64-w64-mingw32-strip", "--strip-all", "-p", build / "vantro.exe"], check=True)
        images.append((build / "vantro.exe").read_bytes())
    assert images[0] == images[1], "the executables differ"
