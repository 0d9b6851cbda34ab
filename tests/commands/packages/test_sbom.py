"""The bills of materials: valid by the public schema of CycloneDX 1.5, and true."""

import copy
import hashlib
import json
import subprocess
from pathlib import Path

import jsonschema
import pytest

from zfc.packages import HOST_VIB, LAB_DEB, PROGRAM_DEB, VERSION, programs

SCHEMA = Path(__file__).parent / "schema" / "bom-1.5.schema.json"
RUNTIME = {"libc6-dev", "libgcc-12-dev", "libstdc++-12-dev"}
PACKAGES = {PROGRAM_DEB: "program", LAB_DEB: "lab", HOST_VIB: "host"}


@pytest.fixture(scope="module")
def validator():
    schema = json.loads(SCHEMA.read_text())
    # Of licences and signatures, which the bills do not have. An absent schema would be asked for over the network.
    absent = {f"http://cyclonedx.org/schema/{name}.SNAPSHOT.schema.json": False for name in ("spdx", "jsf-0.82")}
    resolver = jsonschema.RefResolver.from_schema(schema, store=absent)
    return jsonschema.Draft7Validator(schema, resolver=resolver)


@pytest.fixture(params=PACKAGES)
def name(request):
    return request.param


@pytest.fixture
def bill(packages, name):
    return json.loads((packages / f"{name}.cdx.json").read_text())


def test_is_valid(bill, validator):
    assert [error.message for error in validator.iter_errors(bill)] == []


def test_schema_refuses_damage(bill, validator):
    for damage in ({"bomFormat": "Other"}, {"serialNumber": "1"}, {"version": 0}, {"components": [{"name": "a"}]}, {"more": 1}):
        assert not validator.is_valid({**copy.deepcopy(bill), **damage}), damage


def test_names_the_package_and_its_sum(bill, packages, name):
    shown = bill["metadata"]["component"]
    assert (shown["name"], shown["version"]) == (name, VERSION)
    assert shown["hashes"] == [{"alg": "SHA-256", "content": hashlib.sha256((packages / name).read_bytes()).hexdigest()}]
    assert bill["metadata"]["timestamp"] == "2026-01-02T03:04:05Z"


def test_lists_every_program_with_its_sum(bill, unpacked, name):
    folder = getattr(unpacked, PACKAGES[name])
    listed = {part["bom-ref"]: part["hashes"][0]["content"] for part in bill["components"] if "hashes" in part}
    assert listed == {part: hashlib.sha256((folder / part).read_bytes()).hexdigest() for part in programs(folder)}


def test_lists_what_is_linked_with_the_versions_of_this_machine(bill, name):
    linked = {part["name"]: part for part in bill["components"] if "purl" in part}
    assert {*linked} == RUNTIME | ({"libyaml-cpp-dev"} if name == LAB_DEB else set())
    for package, part in linked.items():
        command = ["dpkg-query", "--show", "--showformat=${Version}", package]
        assert part["version"] == subprocess.run(command, check=True, capture_output=True, text=True).stdout
        assert part["purl"].startswith(f"pkg:deb/debian/{package}@")


def test_parts_hang_together(bill, name):
    known = {part["bom-ref"] for part in bill["components"]} | {name}
    rows = {row["ref"]: row.get("dependsOn", []) for row in bill["dependencies"]}
    assert {*rows} == known and {ref for refs in rows.values() for ref in refs} <= known
    reached, open_ends = set(), [name]
    while open_ends:
        ref = open_ends.pop()
        if ref not in reached:
            reached.add(ref)
            open_ends += rows[ref]
    assert reached == known
