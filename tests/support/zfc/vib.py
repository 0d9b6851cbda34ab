"""Reads a package of an ESXi host as its installer would: with busybox, and by the rules of the format alone. It shares
nothing with the code that writes such packages."""

import hashlib
import re
import subprocess
from dataclasses import dataclass

from lxml import etree

from .tools import PLAIN

MEMBERS = ("descriptor.xml", "sig.pkcs7")  # then the payload
ELEMENTS = (
    "type name version vendor summary description release-date urls relationships software-tags system-requires file-list "
    "acceptance-level live-install-allowed live-remove-allowed cimom-restart stateless-ready overlay payloads"
).split()
RELATIONSHIPS = "depends conflicts replaces provides compatibleWith".split()
VALUES = {
    "type": "bootbank",
    "acceptance-level": "community",
    "live-install-allowed": "true",
    "live-remove-allowed": "true",
    "cimom-restart": "false",
    "stateless-ready": "true",
    "overlay": "false",
    "system-requires/maintenance-mode": "false",
}
# Folders of the host: a package has no entries for them.
SYSTEM_FOLDERS = {"etc", "etc/vmware", "etc/vmware/vm-support", "opt", "usr", "usr/lib", "usr/lib/vmware"} | {
    "usr/lib/vmware/esxcli",
    "usr/lib/vmware/esxcli/ext",
}


@dataclass
class Entry:
    mode: str  # as "-r-xr-xr-x"
    owner: str  # as "0/0"
    size: int
    time: str
    name: str


@dataclass
class Vib:
    members: list
    descriptor: etree._Element
    payload: bytes  # compressed
    tar: bytes
    entries: list


def busybox(*words, data=None, folder=None):
    return subprocess.run(["busybox", *words], input=data, cwd=folder, check=True, capture_output=True, env=PLAIN).stdout


def read(path, folder):
    """Unpacks the archive into an empty folder, and the payload into root/ there."""
    members = busybox("ar", "t", str(path)).decode().split()
    busybox("ar", "x", str(path), folder=folder)
    packed = (folder / members[-1]).read_bytes()
    tar = busybox("gzip", "-dc", data=packed)
    listing = busybox("tar", "-tv", data=tar).decode().splitlines()
    entries = []
    for line in listing:
        mode, owner, size, day, hour, name = line.split(None, 5)
        entries.append(Entry(mode, owner, int(size), f"{day} {hour}", name))
    (folder / "root").mkdir()
    busybox("tar", "-xp", data=tar, folder=folder / "root")
    return Vib(members, etree.fromstring((folder / "descriptor.xml").read_bytes()), packed, tar, entries)


def descriptor_faults(vib):
    root = vib.descriptor
    if root.tag != "vib" or root.get("version") != "5.0":
        yield "root is not <vib version=\"5.0\">"
    if [child.tag for child in root] != ELEMENTS:
        yield f"elements: {[child.tag for child in root]}"
    if [child.tag for child in root.findall("relationships/*")] != RELATIONSHIPS:
        yield "relationships"
    for path, value in VALUES.items():
        if root.findtext(path) != value:
            yield f"{path}: {root.findtext(path)}"
    if not re.fullmatch(r"\d+(\.\d+)+-\d+", root.findtext("version") or ""):
        yield f"version: {root.findtext('version')}"
    if not re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{6}\+00:00", root.findtext("release-date") or ""):
        yield f"release-date: {root.findtext('release-date')}"


def payload_faults(vib):
    listed = vib.descriptor.findall("payloads/payload")
    if len(listed) != 1:
        yield f"{len(listed)} payloads"
        return
    payload = listed[0]
    if payload.get("name") != vib.members[-1] or not 0 < len(payload.get("name") or "") <= 8:
        yield f"payload name: {payload.get('name')}"
    if payload.get("type") != "tgz" or payload.get("size") != str(len(vib.payload)):
        yield f"payload type and size: {payload.get('type')}, {payload.get('size')}"
    sums = [(c.get("checksum-type"), c.get("verify-process"), c.text) for c in payload.findall("checksum")]
    if sums != [
        ("sha-256", None, hashlib.sha256(vib.payload).hexdigest()),
        ("sha-256", "gunzip", hashlib.sha256(vib.tar).hexdigest()),
        ("sha-1", "gunzip", hashlib.sha1(vib.tar).hexdigest()),
    ]:
        yield f"check sums: {sums}"


def file_faults(vib):
    files = [entry.name for entry in vib.entries if not entry.mode.startswith("d")]
    folders = [entry.name.rstrip("/") for entry in vib.entries if entry.mode.startswith("d")]
    listed = [element.text for element in vib.descriptor.findall("file-list/file")]
    if sorted(files) != sorted(listed) or len({*listed}) != len(listed):
        yield f"listed and not there, or there and not listed: {sorted({*files} ^ {*listed})}"
    for name in files + folders:
        if name.startswith(("/", "./")) or ".." in name.split("/"):
            yield f"not relative to /: {name}"
    yield from (f"entry of a system folder: {name}" for name in folders if name in SYSTEM_FOLDERS)
    for entry in vib.entries:
        if entry.owner != "0/0":
            yield f"owner {entry.owner}: {entry.name}"
        if entry.mode[0] not in "-d" or entry.mode[8] == "w" or entry.mode[5] == "w":
            yield f"mode {entry.mode}: {entry.name}"
        if entry.name.startswith("usr/lib/vmware/esxcli/ext/") and entry.mode != "-r--r--r--":
            yield f"mode {entry.mode}: {entry.name}"


def faults(vib):
    """Everything that an installer would stumble over, one text each."""
    found = []
    if len(vib.members) != 3 or tuple(vib.members[:2]) != MEMBERS:
        found.append(f"members: {vib.members}")
    return [*found, *descriptor_faults(vib), *payload_faults(vib), *file_faults(vib)]
