"""describe_package.py STAGE VERSION COMPILER IMAGE=PDB ...: writes NOTICES.txt and vantro.spdx.json into a package's folder.

Each PDB belongs to the program IMAGE in STAGE. The same content gives the same bytes: the time in the bill of
materials is SOURCE_DATE_EPOCH, or the time of the last commit if that is not set.
"""

import datetime
import hashlib
import json
import os
import subprocess
import sys
from pathlib import Path

import components

BILL = "vantro.spdx.json"
OWN = {"vantro.exe", "vantro-log.exe", "libvlc.dll", "LICENSE.txt", "README.txt", "CHANGELOG.txt"}
RULE = "=" * 100
ADDED = {
    "libvlc-real.dll": ("libvlc", "libvlc and its plugins", "libvlc-real.dll, libvlccore.dll and plugins",
                        "Their licences are in the folder licenses/libvlc."),
    "data": ("interface", "the interface and Flutter", "flutter_windows.dll and data",
             "Their licences are in data/flutter_assets/NOTICES.Z and, if there is one, in the folder licenses/interface."),
}


def added_parts(stage):
    return [part for name, part in ADDED.items() if (stage / name).exists()]


def notices(stage, used):
    """The text of NOTICES.txt."""
    parts = ["Vantro is under the MIT licence in LICENSE.txt. The packages also hold what is listed here."]
    for component in used:
        parts.append(f"{RULE}\n{component['name']} ({component['where']})\n{component['license']}\n"
                     f"{component['source']}\n{RULE}\n\n{components.notice(component).strip()}")
    for _, name, files, where in added_parts(stage):
        parts.append(f"{RULE}\n{name} ({files})\n{RULE}\n\n{where}")
    return "\n\n".join(parts) + "\n"


def moment():
    stamp = os.environ.get("SOURCE_DATE_EPOCH")
    if not stamp:
        commit = subprocess.run(["git", "log", "-1", "--format=%ct"], cwd=components.HERE, capture_output=True, text=True)
        stamp = commit.stdout.strip() or datetime.datetime.now().timestamp()
    return datetime.datetime.fromtimestamp(int(stamp), datetime.timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")


def package_entry(identifier, name, license_, copyright_, version=None, source="NOASSERTION"):
    entry = {"SPDXID": identifier, "name": name, "downloadLocation": source, "filesAnalyzed": False,
             "licenseConcluded": license_, "licenseDeclared": license_, "copyrightText": copyright_}
    return entry | ({"versionInfo": version} if version else {})


def file_entry(stage, path, number):
    data = path.read_bytes()
    name = path.relative_to(stage).as_posix()
    own = name in OWN or name.startswith("docs/")
    return {"SPDXID": f"SPDXRef-File-{number}", "fileName": f"./{name}",
            "checksums": [{"algorithm": "SHA1", "checksumValue": hashlib.sha1(data).hexdigest()},
                          {"algorithm": "SHA256", "checksumValue": hashlib.sha256(data).hexdigest()}],
            "licenseConcluded": "MIT" if own else "NOASSERTION", "licenseInfoInFiles": ["NOASSERTION"],
            "copyrightText": "Copyright (c) 2026 The Vantro developers" if own else "NOASSERTION"}


def relation(one, kind, other):
    return {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}


def bill(stage, version, linked, numbers):
    """The bill of materials (SPDX 2.3) of the folder. `linked` maps each program to its components."""
    paths = sorted(path for path in stage.rglob("*") if path.is_file() and path.name != BILL)
    files = [file_entry(stage, path, number) for number, path in enumerate(paths)]
    by_name = {entry["fileName"]: entry["SPDXID"] for entry in files}
    sums = sorted(entry["checksums"][0]["checksumValue"] for entry in files)
    code = hashlib.sha1("".join(sums).encode()).hexdigest()
    main = package_entry("SPDXRef-Vantro", "vantro", "MIT", "Copyright (c) 2026 The Vantro developers", version)
    main |= {"filesAnalyzed": True, "packageVerificationCode": {"packageVerificationCodeValue": code},
             "licenseInfoFromFiles": ["NOASSERTION"]}
    packages = [main]
    relations = [relation("SPDXRef-DOCUMENT", "DESCRIBES", main["SPDXID"])]
    relations += [relation(main["SPDXID"], "CONTAINS", entry["SPDXID"]) for entry in files]
    for component in components.COMPONENTS:
        identifier = f"SPDXRef-{component['id']}"
        users = [image for image, used in linked.items() if component in used]
        packages.append(package_entry(identifier, component["name"], component["license"], component["copyright"],
                                      numbers[component["id"]], component["source"]))
        relations += [relation(by_name[f"./{image}"], "STATIC_LINK", identifier) for image in users]
        if not users:  # a component of the installer, which is built from this folder
            relations.append(relation(identifier, "BUILD_TOOL_OF", main["SPDXID"]))
    for part, name, _, where in added_parts(stage):
        packages.append(package_entry(f"SPDXRef-{part}", name, "NOASSERTION", "NOASSERTION") | {"comment": where})
        relations.append(relation(main["SPDXID"], "CONTAINS", f"SPDXRef-{part}"))
    own_texts = [{"licenseId": f"LicenseRef-{component['id']}", "name": component["name"],
                  "extractedText": components.notice(component)}
                 for component in components.COMPONENTS if f"LicenseRef-{component['id']}" in component["license"]]
    return {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
            "name": f"vantro-{version}",
            "documentNamespace": f"https://spdx.org/spdxdocs/vantro-{version}-{code}",
            "creationInfo": {"created": moment(), "creators": ["Tool: vantro-make-package"]},
            "packages": packages, "files": files, "relationships": relations,
            "hasExtractedLicensingInfos": own_texts}


def main(stage, version, compiler, *pdbs):
    stage = Path(stage)
    try:
        linked = {image: components.components_of(components.linked_files(components.modules_of(path)))
                  for image, path in (pair.split("=", 1) for pair in pdbs)}
    except components.Unknown as reason:
        print(f"make-package: {reason}", file=sys.stderr)
        return 1
    (stage / "NOTICES.txt").write_text(notices(stage, components.COMPONENTS), newline="\r\n")
    described = bill(stage, version, linked, components.versions(compiler))
    (stage / BILL).write_text(json.dumps(described, indent=1) + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
