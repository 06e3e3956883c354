#!/usr/bin/env python3
"""Writes the software bill of materials of a release in the form SPDX 2.3.

What Nivora is compiled with comes from the build (libraries.txt). What it is linked with at run time comes from the
dependencies of the Debian package, with the versions of the packages that it was built against.
"""

import argparse
import datetime
import hashlib
import json
import os
import pathlib
import re
import subprocess


def output(*command: str) -> str:
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def installed(package: str) -> str:
    """The version of a package on the machine that builds; empty if it is not there."""
    asked = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], capture_output=True, text=True)
    return asked.stdout.strip() if asked.returncode == 0 else ""


def part(name: str, version: str, licence: str, comment: str, supplier: str, reference: str = "") -> dict:
    described = {
        "SPDXID": "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]", "-", name),
        "name": name,
        "versionInfo": version,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": licence,
        "licenseDeclared": licence,
        "copyrightText": "NOASSERTION",
        "supplier": supplier,
        "comment": comment,
    }
    if reference:
        described["externalRefs"] = [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                                      "referenceLocator": reference}]
    return described


def main() -> None:
    reader = argparse.ArgumentParser()
    for option in ("--version", "--libraries", "--package", "--out"):
        reader.add_argument(option, required=True)
    given = reader.parse_args()

    content = pathlib.Path(given.package).read_bytes()
    digest = hashlib.sha256(content).hexdigest()
    own = part("nivora", given.version, "Apache-2.0", "This program", "Organization: The Nivora developers",
               f"pkg:deb/nivora@{given.version}?arch=amd64")
    own["packageFileName"] = pathlib.Path(given.package).name
    own["checksums"] = [{"algorithm": "SHA256", "checksumValue": digest}]
    parts, relations = [own], [("SPDXRef-DOCUMENT", "DESCRIBES", own["SPDXID"])]

    for line in pathlib.Path(given.libraries).read_text().splitlines():
        name, version, licence, use = line.split("|")
        described = part("source-" + name, version, licence, "Compiled with; " + use, "NOASSERTION")
        parts.append(described)
        relations.append((own["SPDXID"], "DEPENDS_ON", described["SPDXID"]))

    depends = output("dpkg-deb", "-f", given.package, "Depends")
    for name in sorted({re.split(r"[ (|]", entry.strip())[0] for entry in depends.split(",")}):
        version = installed(name)
        if not version:
            raise SystemExit(f"make_bill: the package {name}, on which Nivora depends, is not installed")
        described = part(name, version, "NOASSERTION", "Linked at run time, from the distribution",
                         "Organization: Debian", f"pkg:deb/debian/{name}@{version}?arch=amd64")
        parts.append(described)
        relations.append((own["SPDXID"], "DEPENDS_ON", described["SPDXID"]))

    seconds = int(os.environ["SOURCE_DATE_EPOCH"])
    created = datetime.datetime.fromtimestamp(seconds, datetime.timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")
    bill = {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"nivora-{given.version}",
        "documentNamespace": f"https://example.org/nivora/spdx/{given.version}-{digest[:16]}",
        "creationInfo": {"created": created, "creators": ["Organization: The Nivora developers",
                                                          "Tool: make_bill.py"]},
        "packages": parts,
        "relationships": [{"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
                          for one, kind, other in relations],
    }
    pathlib.Path(given.out).write_text(json.dumps(bill, indent=2) + "\n")


if __name__ == "__main__":
    main()
