"""Prints a bill of materials, SPDX 2.3, of files that are given away.

Usage: bill_of_materials.py VERSION FILE... <LINKED

Each line of LINKED names a file, a Debian package that is linked into its programs, and of this
package the processor, the version, and the source package with its version. The time is that of
SOURCE_DATE_EPOCH; all else follows from the input, so that one input gives one document."""

import datetime
import hashlib
import json
import os
import pathlib
import re
import sys
import urllib.parse
import uuid

# By source package: the licence of what is taken, and what that is. The texts lie in the archives.
TAKEN = {
    "gcc": ("GPL-3.0-or-later WITH GCC-exception-3.1", "libgcc and what begins and ends a program"),
    "glibc": ("LGPL-2.1-or-later", "in archives the C library, in packages what starts a program"),
    "libargs": ("MIT", "the header args.hxx"),
    "llvm-toolchain": ("Apache-2.0 WITH LLVM-exception", "libc++, and libc++abi, which is in it"),
    "nlohmann-json3": ("MIT", "headers"),
}


def taken_of(source):
    name = re.sub(r"-\d+$", "", source)
    if name not in TAKEN:
        sys.exit(f"{source} is linked in: say its licence in {sys.argv[0]}")
    return TAKEN[name]


def identifier(*parts):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.]+", "-", "-".join(parts))


def package(name, version, licence, **more):
    return {"name": name, "versionInfo": version, "downloadLocation": "NOASSERTION",
            "filesAnalyzed": False, "licenseConcluded": "NOASSERTION",
            "licenseDeclared": licence, "copyrightText": "NOASSERTION", **more}


def given_away(path, version):
    """A file that users get, with its checksum."""
    checksum = hashlib.sha256(path.read_bytes()).hexdigest()
    return package("qln-fp-cleaner", version, "NOASSERTION", SPDXID=identifier("File", path.name),
                   packageFileName=path.name, primaryPackagePurpose="APPLICATION",
                   checksums=[{"algorithm": "SHA256", "checksumValue": checksum}])


def library(name, processor, version, source, source_version):
    """A Debian package that the linker, or the compiler, took parts of."""
    where = "/".join(urllib.parse.quote(part, safe="~.") for part in (distribution(), name))
    locator = f"pkg:deb/{where}@{urllib.parse.quote(version, safe='~.')}?arch={processor}"
    licence, what = taken_of(source)
    return package(name, version, licence, comment=what,
                   SPDXID=identifier("Library", name, version, processor),
                   sourceInfo=f"built from the source package {source} {source_version}",
                   primaryPackagePurpose="LIBRARY",
                   externalRefs=[{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                                  "referenceLocator": locator}])


def distribution():
    lines = pathlib.Path("/etc/os-release").read_text().splitlines()
    return next(line[3:].strip('"') for line in lines if line.startswith("ID="))


def main():
    version, *files = sys.argv[1:]
    applications = {path.name: given_away(path, version) for path in map(pathlib.Path, files)}
    libraries = {}
    relationships = [("SPDXRef-DOCUMENT", "DESCRIBES", application["SPDXID"])
                     for application in applications.values()]
    for file, *fields in map(str.split, sys.stdin):
        linked = library(*fields)
        libraries[linked["SPDXID"]] = linked
        relationships.append((applications[file]["SPDXID"], "STATIC_LINK", linked["SPDXID"]))
    created = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    body = {
        "packages": [*applications.values(), *(libraries[key] for key in sorted(libraries))],
        "relationships": [{"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
                          for one, kind, other in relationships]}
    json.dump({
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"qln-fp-cleaner-{version}",
        "documentNamespace": f"urn:uuid:{uuid.uuid5(uuid.NAMESPACE_OID, json.dumps(body))}",
        "creationInfo": {"created": created.strftime("%Y-%m-%dT%H:%M:%SZ"),
                         "creators": ["Organization: Quillon FP Cleaner developers",
                                      "Tool: scripts/package"]},
        **body}, sys.stdout, indent=2)
    print()


main()
