"""docs/lab-host.md and the reader of host files know the same keys.

The reader lists the keys of a map when it meets an unknown one. So it is asked, from the top of a file down into every
map that is found, and what it says is compared with the tables of the document.
"""

import re
import subprocess

import pytest

from zfc.runner import BUILD, ROOT

LAB = BUILD / "bin" / "zfc-lab"
NAME = "50:06:0b:00:3b:20:11:c0"
UNKNOWN = "no-such-key"
LISTED = re.compile(rf"^(\d+)\.yaml:.*: {UNKNOWN}: expected one of the keys ([^;]*)")
TABLE_HEAD = re.compile(r"\| Key of (the file|`.*`) \| Value \| Default \|$")

VIRTUAL_PORT = "ports[].npiv[]"

# A file whose adapters are a map is a state file. These maps are its own, all others are those of host files.
STATE = "adapters{}"
STATE_MAPS = [STATE, *(f"{STATE}.ports{{}}" + place for place in ("", ".congestion", ".reports", ".sfp"))]

# A single item need not be in a list.
ITEMS = {"targets": "targets[]", "luns": "luns[]", "namespaces": "namespaces[]"}


def canonical(path):
    """The path as the document has it: from the last port or target on."""
    steps = [ITEMS.get(step, step) for step in path]
    begins = [place for place, step in enumerate(steps) if step in ("ports[]", "targets[]")]
    return ".".join(steps[max(begins, default=0) :])


def document_of(path):
    """A host file with an unknown key in the map at this path. A step is a key of a map, with [] for a list in which the
    next map is, with {} for a map of names."""
    text = f"{{{UNKNOWN}: 1}}"
    for step in reversed(path):
        if step.endswith("[]"):
            text = f"[{text}]"
        elif step.endswith("{}"):
            text = f"{{{NAME}: {text}}}"
        text = f"{{{step.removesuffix('[]').removesuffix('{}')}: {text}}}"
    return text


def keys_at(folder, paths):
    """The keys that the reader lists for the paths at which there is a map."""
    for place, path in enumerate(paths):
        (folder / f"{place}.yaml").write_text(document_of(path))
    names = [f"{place}.yaml" for place in range(len(paths))]
    shown = subprocess.run([LAB, "check", *names], capture_output=True, cwd=folder, timeout=60).stdout.decode()
    listed = [match for match in map(LISTED.match, shown.splitlines()) if match]
    keys = {paths[int(match[1])]: match[2].split(", ") for match in listed}
    return {path: keys[path] for path in paths if path in keys}


@pytest.fixture(scope="module")
def all_maps(tmp_path_factory):
    """The keys that the reader knows, by the canonical path of their map."""
    folder = tmp_path_factory.mktemp("reference")
    known = {}
    paths = [()]
    while paths:
        found = {path: keys for path, keys in keys_at(folder, paths).items() if canonical(path) not in known}
        known.update({canonical(path): keys for path, keys in found.items()})
        maps = [path for path in found if canonical(path) != VIRTUAL_PORT]  # below it all is as below a port
        paths = [path + (key + kind,) for path in maps for key in found[path] for kind in ("", "[]", "{}")]
    return known


@pytest.fixture(scope="module")
def read(all_maps):
    """Those of host files but for virtual ports."""
    maps = {path: keys for path, keys in all_maps.items() if path != VIRTUAL_PORT and not path.startswith(STATE)}
    # The reader asks for `image` first; with it the map has other keys. See the last test.
    maps["ports[].sfp"] = maps["ports[].sfp"] + ["image"]
    return maps


@pytest.fixture(scope="module")
def documented():
    """The keys of the document's tables, by the paths at their heads."""
    tables = {}
    heads = []
    for line in (ROOT / "docs" / "lab-host.md").read_text().splitlines():
        if head := TABLE_HEAD.match(line):
            heads = [""] if head[1] == "the file" else re.findall(r"`([^`]*)`", head[1])
        elif not line.startswith("|"):
            heads = []
        elif heads:
            first_cell = line.split("|")[1]
            for path in heads:
                tables.setdefault(path, []).extend(re.findall(r"`([^`]*)`", first_cell))
    return tables


def test_every_map_has_a_table(read, documented):
    assert {*read} == {*documented}


def test_every_key_is_in_the_table_of_its_map(read, documented):
    missing = {path: {*keys} - {*documented.get(path, [])} for path, keys in read.items()}
    assert {path: keys for path, keys in missing.items() if keys} == {}


def test_every_key_of_a_table_is_read(read, documented):
    unknown = {path: {*keys} - {*read.get(path, [])} for path, keys in documented.items()}
    assert {path: keys for path, keys in unknown.items() if keys} == {}


def test_no_key_is_in_a_table_twice(documented):
    twice = {path: [key for key in keys if keys.count(key) > 1] for path, keys in documented.items()}
    assert {path: keys for path, keys in twice.items() if keys} == {}


def test_virtual_ports_have_the_keys_of_ports_but_four(all_maps):
    assert {*all_maps["ports[]"]} - {*all_maps[VIRTUAL_PORT]} == {"sfp", "number", "no-protocols", "npiv"}


def test_state_section_names_the_keys_of_state_files(all_maps):
    section = (ROOT / "docs" / "lab-host.md").read_text().split("\n## State\n")[1].split("\n## ")[0]
    named = {*re.findall(r"`([^`]*)`", section)}
    unnamed = {path: {*all_maps[path]} - named for path in STATE_MAPS}
    assert {path: keys for path, keys in unnamed.items() if keys} == {}


def test_module_from_a_file_has_one_more_key(tmp_path):
    """What the table says of `image`."""
    (tmp_path / "lab.yaml").write_text("adapters: [{family: elm, ports: [{sfp: {image: x, vendor: y}}]}]")
    shown = subprocess.run([LAB, "check", "lab.yaml"], capture_output=True, cwd=tmp_path, timeout=60).stdout
    assert b"vendor: expected one of the keys image, update-fails\n" in shown
