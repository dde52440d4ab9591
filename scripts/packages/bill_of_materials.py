#!/usr/bin/env python3
"""Prints the bill of materials of a release as CycloneDX 1.5: the packages, the libraries that they are linked to, and the
packages whose headers were compiled into them, each in the version that this machine has.
usage: bill_of_materials.py VERSION BUILD RELEASE   (the build folder of the packages, the folder with the .deb files)
"""

import hashlib
import json
import os
import platform
import re
import subprocess
import sys
import uuid
from datetime import datetime, timezone
from pathlib import Path
from urllib.parse import quote

OUR_PACKAGES = ("kelvinbar", "kelvinbar-snapshot")


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def dependencies(package_file):
    """The packages that a .deb needs, without versions; of alternatives, the first."""
    field = run("dpkg-deb", "--field", package_file, "Depends")
    names = (re.match(r"[a-z0-9][a-z0-9+.-]*", entry.strip()).group() for entry in field.split(","))
    return sorted(set(names))


def included_headers(build):
    """The files of the system that the build's compilers have read."""
    paths = (line.strip() for line in run("ninja", "-C", build, "-t", "deps").splitlines() if line.startswith("    "))
    return sorted({os.path.normpath(path) for path in paths if path.startswith("/usr/")})


def owners(files):
    """The packages that the files are from."""
    found = subprocess.run(["dpkg-query", "--search", *files], capture_output=True, text=True).stdout
    lists = (line.rsplit(": ", 1)[0] for line in found.splitlines() if not line.startswith("diversion "))
    return sorted({name.split(":")[0].strip() for names in lists for name in names.split(",")})


def installed(name, role):
    """The component for a package of the distribution; None if it is not on this machine."""
    wanted = "${db:Status-Abbrev}\t${Version}\t${Architecture}\t${Homepage}\n"
    shown = subprocess.run(
        ["dpkg-query", "--show", "--showformat", wanted, name], capture_output=True, text=True
    ).stdout
    rows = [line.split("\t") for line in shown.splitlines() if line.startswith("ii")]
    if not rows:
        return None
    _, version, architecture, homepage = rows[0]
    distribution = platform.freedesktop_os_release()["ID"]
    address = f"pkg:deb/{distribution}/{quote(name)}@{quote(version)}?arch={architecture}"
    component = {
        "type": "library",
        "bom-ref": f"{name}@{version}",
        "name": name,
        "version": version,
        "purl": address,
        "properties": [{"name": "kelvinbar:role", "value": role}],
    }
    if homepage:
        component["externalReferences"] = [{"type": "website", "url": homepage}]
    return component


def released_package(file):
    name, version, architecture = file.stem.split("_")
    return {
        "type": "application",
        "bom-ref": file.name,
        "name": name,
        "version": version,
        "hashes": [{"alg": "SHA-256", "content": hashlib.sha256(file.read_bytes()).hexdigest()}],
        "licenses": [{"license": {"id": "MIT"}}],
        "properties": [{"name": "kelvinbar:role", "value": f"package for {architecture}"}],
    }


def bill_of_materials(version, build, release):
    files = sorted(Path(release).glob("*.deb"))
    if not files:
        sys.exit(f"bill_of_materials.py: no packages in {release}")
    needed = {file: [name for name in dependencies(file) if name not in OUR_PACKAGES] for file in files}
    linked = {name: installed(name, "linked or loaded") for names in needed.values() for name in names}
    missing = [name for name, component in linked.items() if component is None]
    if missing:
        sys.exit("bill_of_materials.py: not installed here: " + ", ".join(missing))
    headers = [installed(name, "headers compiled in") for name in owners(included_headers(build))]
    moment = datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), timezone.utc)
    source = {
        "type": "application",
        "bom-ref": f"kelvinbar@{version}",
        "name": "kelvinbar",
        "version": version,
        "licenses": [{"license": {"id": "MIT"}}],
    }
    packages = [released_package(file) for file in files]
    content = packages + [linked[name] for name in sorted(linked)] + [component for component in headers if component]
    references = [
        {"ref": source["bom-ref"], "dependsOn": [package["bom-ref"] for package in packages]},
        *({"ref": file.name, "dependsOn": [linked[name]["bom-ref"] for name in needed[file]]} for file in files),
    ]
    identity = uuid.uuid5(uuid.NAMESPACE_URL, "kelvinbar " + json.dumps(content, sort_keys=True))
    return {
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "serialNumber": f"urn:uuid:{identity}",
        "version": 1,
        "metadata": {"timestamp": moment.strftime("%Y-%m-%dT%H:%M:%SZ"), "component": source},
        "components": content,
        "dependencies": references,
    }


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    print(json.dumps(bill_of_materials(*sys.argv[1:]), indent=2))
