"""Bills of materials in the form of CycloneDX 1.5: the parts of a package, and what each was linked from.

What was linked is read off the maps that the linker wrote: whole object files, and archives of which a member was taken.
Those from outside the project belong to packages of the build machine, which dpkg names with their versions.
"""

import hashlib
import json
import os
import re
import subprocess
import uuid
from datetime import datetime, timezone
from functools import cache
from pathlib import Path

OBJECT = re.compile(r"^LOAD (\S+\.o)$", re.M)
MEMBER = re.compile(r"^(/\S+\.a)\(\S+\)$", re.M)


def linked_files(map_file):
    """The files from outside the project that went into a link, by their paths."""
    text = map_file.read_text(errors="replace")
    taken = text.split("Discarded input sections")[0].split("\nMemory Configuration")[0]
    found = {*OBJECT.findall(text), *MEMBER.findall(taken)}
    return sorted({os.path.realpath(path) for path in found if path.startswith("/")})


@cache
def package_of(path):
    """The Debian package that a file of the system comes from, as (name, version, architecture)."""
    # A system with a merged /usr knows some files by the old path alone.
    for known in (path, path.removeprefix("/usr")):
        done = subprocess.run(["dpkg-query", "--search", known], capture_output=True, text=True)
        if done.returncode == 0:
            owner = done.stdout.split(": ")[0].split(",")[0]
            form = "${Package}\t${Version}\t${Architecture}"
            shown = subprocess.run(["dpkg-query", "--show", f"--showformat={form}", owner], capture_output=True, text=True)
            return tuple(shown.stdout.split("\t"))
    raise SystemExit(f"sbom: no package holds {path}, which was linked")


def outside(paths, project):
    return [path for path in paths if not Path(path).is_relative_to(project)]


def package_component(package):
    name, version, architecture = package
    return {
        "type": "library",
        "bom-ref": f"{name}@{version}",
        "name": name,
        "version": version,
        "purl": f"pkg:deb/debian/{name}@{version.replace('+', '%2B')}?arch={architecture}&distro=debian-12",
    }


def bill(package, version, parts, maps, project, epoch):
    """The bill of one package.

    package: the file, whose sum it holds; parts: what it ships and was linked, as (path in the package, file); maps: the
    folder with a linker's map for each; project: the folder below which files are the project's own."""
    dependencies, packages, shipped = [], {}, []
    for name, path in parts:
        used = {package_of(found) for found in outside(linked_files(maps / f"{path.name}.map"), project)}
        packages.update({f"{found[0]}@{found[1]}": found for found in used})
        shipped.append(
            {
                "type": "library" if ".so" in path.name else "application",
                "bom-ref": name,
                "name": path.name,
                "version": version,
                "hashes": [{"alg": "SHA-256", "content": hashlib.sha256(path.read_bytes()).hexdigest()}],
                "properties": [{"name": "path", "value": f"/{name}"}],
            }
        )
        dependencies.append({"ref": name, "dependsOn": sorted(f"{found[0]}@{found[1]}" for found in used)})

    summed = hashlib.sha256(package.read_bytes()).hexdigest()
    document = {
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "serialNumber": f"urn:uuid:{uuid.uuid5(uuid.NAMESPACE_URL, f'sha256:{summed}')}",
        "version": 1,
        "metadata": {
            "timestamp": datetime.fromtimestamp(epoch, timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ"),
            "component": {
                "type": "file",
                "bom-ref": package.name,
                "name": package.name,
                "version": version,
                "hashes": [{"alg": "SHA-256", "content": summed}],
            },
        },
        "components": [*shipped, *(package_component(packages[ref]) for ref in sorted(packages))],
        "dependencies": [
            {"ref": package.name, "dependsOn": sorted(part["bom-ref"] for part in shipped)},
            *dependencies,
            *({"ref": ref} for ref in sorted(packages)),
        ],
    }
    return json.dumps(document, indent=2) + "\n"
