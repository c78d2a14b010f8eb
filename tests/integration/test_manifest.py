"""Tests the program's manifest in the built executable."""

import xml.etree.ElementTree as ElementTree

import pefile

from vantro_interface import host as hosts

MANIFEST = 24  # RT_MANIFEST
V1, V3 = "{urn:schemas-microsoft-com:asm.v1}", "{urn:schemas-microsoft-com:asm.v3}"


def manifests(executable):
    program = pefile.PE(executable, fast_load=True)
    program.parse_data_directories([pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_RESOURCE"]])
    for kind in program.DIRECTORY_ENTRY_RESOURCE.entries:
        if kind.id == MANIFEST:
            for name in kind.directory.entries:
                for language in name.directory.entries:
                    place = language.data.struct
                    yield name.id, program.get_data(place.OffsetToData, place.Size)


def test_manifest_asks_for_the_invokers_rights_and_declares_nothing_else():
    ((name, text),) = manifests(hosts.BUILD / "vantro.exe")
    assert name == 1
    declared = [(element.tag, element.attrib) for element in ElementTree.fromstring(text).iter()]
    assert declared == [
        (V1 + "assembly", {"manifestVersion": "1.0"}),
        (V3 + "trustInfo", {}),
        (V3 + "security", {}),
        (V3 + "requestedPrivileges", {}),
        (V3 + "requestedExecutionLevel", {"level": "asInvoker", "uiAccess": "false"}),
    ]
