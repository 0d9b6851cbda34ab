"""Writes the package of an ESXi host: an ar archive of a descriptor, an empty signature, and a compressed tar of files."""

import gzip
import hashlib
import os
import shutil
import subprocess
import xml.etree.ElementTree as xml
from datetime import datetime, timezone
from pathlib import Path

NAME = "zfcesxcli"
PAYLOAD = "zfcesx"  # at most 8 characters
PROGRAM = "opt/ZunaFcEsxcliPlugin"
FIRST_REVISION = "1"  # of the package, after the program's version

SUMMARY = "Command-line management of Sorvex Fibre Channel adapters"
DESCRIPTION = (
    "Lists and describes adapters, ports, targets and LUNs, stages and sets parameters, reads modules, runs link tests and "
    "updates flash. The device library libtorpifconly.so is not part of this package: it comes with the adapter maker's own."
)

# A folder comes with the files in it. This one makes the staging folder, which is empty otherwise.
STAGING_NOTE = """zfcesxcli keeps settings of ports in this folder, one file for each port and kind, between "setFile" and "set".
The host brings this folder back at every boot, and not what was staged in it.
"""


def lay_out(program, manifest, root):
    """Lays the files of the host's package out below `root`, a new folder: the program's from `program`, an installed
    /opt/ZunaFcEsxcliPlugin. Gives their paths from there, sorted."""
    files = {f"{PROGRAM}/bin/{path.name}": path for path in sorted((program / "bin").iterdir())}
    files["etc/vmware/vm-support/zfcesxcli.mfx"] = manifest
    descriptor = program / "share" / "esxcli" / "zfcesxcli.xml"
    if descriptor.exists():
        files["usr/lib/vmware/esxcli/ext/zfcesxcli.xml"] = descriptor
    for name, source in files.items():
        path = root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(source, path)
        path.chmod(0o555 if os.access(source, os.X_OK) else 0o444)

    note = root / PROGRAM / "tmp" / "README"
    note.parent.mkdir()
    note.write_text(STAGING_NOTE)
    note.chmod(0o444)
    note.parent.chmod(0o700)
    return sorted([*files, str(note.relative_to(root))])


def payload(root, files, epoch):
    """The tar of the files. A folder that the package makes has an entry, with its mode; the system's have none."""
    members = [f"{PROGRAM}/tmp", *files]
    command = ["tar", "--create", "--format=gnu", "--no-recursion", "--numeric-owner", "--owner=0", "--group=0"]
    done = subprocess.run([*command, f"--mtime=@{epoch}", "--", *sorted(members)], cwd=root, check=True, capture_output=True)
    return done.stdout


def descriptor(version, files, packed, tar, epoch):
    """The text of descriptor.xml."""
    vib = xml.Element("vib", version="5.0")

    def add(parent, tag, text=None, **attributes):
        element = xml.SubElement(parent, tag, attributes)
        element.text = text
        return element

    add(vib, "type", "bootbank")
    add(vib, "name", NAME)
    add(vib, "version", f"{version}-{FIRST_REVISION}")
    add(vib, "vendor", "Sorvex")
    add(vib, "summary", SUMMARY)
    add(vib, "description", DESCRIPTION)
    released = datetime.fromtimestamp(epoch, timezone.utc)
    add(vib, "release-date", released.strftime("%Y-%m-%dT%H:%M:%S.000000+00:00"))
    add(vib, "urls")
    relationships = add(vib, "relationships")
    for kind in ("depends", "conflicts", "replaces", "provides", "compatibleWith"):
        add(relationships, kind)
    add(vib, "software-tags")
    add(add(vib, "system-requires"), "maintenance-mode", "false")
    file_list = add(vib, "file-list")
    for name in files:
        add(file_list, "file", name)
    add(vib, "acceptance-level", "community")
    add(vib, "live-install-allowed", "true")
    add(vib, "live-remove-allowed", "true")
    add(vib, "cimom-restart", "false")
    add(vib, "stateless-ready", "true")
    add(vib, "overlay", "false")
    listed = add(add(vib, "payloads"), "payload", name=PAYLOAD, type="tgz", size=str(len(packed)))
    add(listed, "checksum", hashlib.sha256(packed).hexdigest(), **{"checksum-type": "sha-256"})
    for kind, made in (("sha-256", hashlib.sha256(tar)), ("sha-1", hashlib.sha1(tar))):
        add(listed, "checksum", made.hexdigest(), **{"checksum-type": kind, "verify-process": "gunzip"})
    xml.indent(vib)
    return xml.tostring(vib, encoding="unicode") + "\n"


def write(path, version, program, manifest, work, epoch):
    """Writes the package to `path`. `work` is a folder that is not there yet."""
    root = work / "root"
    root.mkdir(parents=True)
    files = lay_out(program, manifest, root)
    tar = payload(root, files, epoch)
    packed = gzip.compress(tar, compresslevel=9, mtime=0)
    (work / PAYLOAD).write_bytes(packed)
    (work / "sig.pkcs7").write_bytes(b"")  # not signed
    (work / "descriptor.xml").write_text(descriptor(version, files, packed, tar, epoch))
    path.unlink(missing_ok=True)
    # Members in this order, without names, times or a symbol table of this machine.
    subprocess.run(["ar", "qcDS", path.resolve(), "descriptor.xml", "sig.pkcs7", PAYLOAD], cwd=work, check=True)
