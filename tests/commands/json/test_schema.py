"""The schemas of zfc-json, and the documents of every command against them."""

import json
import re

import jsonschema
import pytest

from zfc.documents import EXPECTED
from zfc.json_tool import SCHEMAS, convert, document, field, listed, lun_list, structure
from zfc.runner import BUILD, ROOT
from zfc.tree import TREE

DOCUMENT, ITEM = (json.loads((SCHEMAS / f"{name}.schema.json").read_text()) for name in ("document", "item"))
VALIDATORS = [jsonschema.Draft202012Validator(schema) for schema in (DOCUMENT, ITEM)]


def mistakes(value, validator=VALIDATORS[0]):
    return [f"{'/'.join(map(str, found.path))}: {found.message}" for found in validator.iter_errors(value)]


@pytest.mark.parametrize("schema", [DOCUMENT, ITEM], ids=["document", "item"])
def test_schemas_are_schemas(schema):
    jsonschema.Draft202012Validator.check_schema(schema)


def test_schemas_come_with_the_build():
    for path in SCHEMAS.iterdir():
        assert (BUILD / "share" / "schema" / path.name).read_bytes() == path.read_bytes()


def commands(identifiers):
    """Every plain command, without words and with every identifier of its node."""

    def below(path, node, words):
        for word, *_ in node["leaves"]:
            if word == "help" or word.endswith("cli"):
                continue
            yield f"{path} {word}"
            for identifier in words:
                yield f"{path} {word} {identifier}"
        for name, child in node.get("nodes", {}).items():
            yield from below(f"{path} {child['switch']} {name}", child, words)

    for name, node in TREE["nodes"].items():
        yield from below(f"{node['switch']} {name}", node, identifiers[name])


ELM, HAZEL, DAHLIA, BIRCH = (
    f"FC_21:00:{name}" for name in ("00:0e:1e:11:22:33", "f4:c7:aa:0b:10:20", "f4:c7:aa:64:00:10", "00:24:ff:4b:9e:01")
)
ELM_TARGET, DAHLIA_TARGET = "50:06:0b:00:3b:20:11:c0", "50:06:0b:00:3b:20:40:00"
# With all the words that they need, and what their documents say.
FULL_COMMANDS = {
    f"-t port -s dmi getraw {ELM}": "Success",
    f"-t port -s ctdiag run {ELM} CTPing {ELM_TARGET} 3 true": "Success",
    f"-t port -s fcping run {DAHLIA} {DAHLIA_TARGET} 2 true": "Success",
    f"-t port -s fcping run {DAHLIA} {ELM_TARGET} 2 true": "Failed, Target not found",
    f"-t port -s fcecho run {DAHLIA} {DAHLIA_TARGET} 9 true": "Failed, Diagnostic test failed",
    f"-t port -s loopback run {BIRCH} 5 3 64 Ignore External CRPAT": "Success",
    f"-t port -s rwbuffer run {ELM} 1 1 128 Loop CSPAT": "Success",
    f"-t port -s dportdiag run {DAHLIA}": "Success",
    f"-t port -s dportdiag run {HAZEL}": "Failed, Port not in diagnostics mode",
}


@pytest.fixture
def shell(zfc):
    """The documents of commands typed into one shell of the program."""

    def run(typed):
        result = zfc("", stdin="".join(f"{line}\n" for line in typed).encode() + b"q\n", library="simulated")
        return convert(result.stdout)

    return run


def test_documents_of_every_command_fit(shell):
    tops = [f"-t {name} list" for name in TREE["nodes"]]
    names = {
        name: [next(iter(item["fields"].values())) for item in value["list"]]
        for name, value in zip(TREE["nodes"], shell(tops).values)
    }
    assert {name: len(found) for name, found in names.items()} == {"adapter": 6, "port": 10, "target": 21, "lun": 78}
    names["target"], names["lun"] = names["target"][::4], names["lun"][::20]
    typed = [*FULL_COMMANDS, *commands(names)]  # before settings change
    result = shell(typed)
    assert result.status == 1  # some fail on this host
    assert len(result.values) == len(typed)
    wrong = {command: mistakes(value) for command, value in zip(typed, result.values)}
    assert {command: found for command, found in wrong.items() if found} == {}
    said = {command: value["message"] for command, value in zip(FULL_COMMANDS, result.values)}
    assert said == FULL_COMMANDS
    # What succeeds is not only lists.
    assert sum(value["success"] for value in result.values) > 100
    assert len({value["structure"] for value in result.values if value["success"]}) >= 20


def test_expected_documents_fit():
    """Those of the command tests: also what the built-in host does not show."""
    paths = [path for path in sorted(EXPECTED.rglob("*.xml")) if b"<?xml" in path.read_bytes()]
    assert len(paths) > 100
    seen = set()
    for path in paths:
        # A place for a value of a test holds a number where one is wanted; a label has one of two.
        text = re.sub(rb"<(int|bool)>@\w+@", lambda kind: b"<%s>%s" % (kind[1], b"7" if kind[1] == b"int" else b"true"), path.read_bytes())
        text = text.replace(b"@LABEL@", b"Test Result").replace(b"@MESSAGE@", b"Success")
        text = re.sub(rb'(name="(?:Message|Test Result)">\n<string>)@\w+@', rb"\1Success", text)
        text = re.sub(rb'(name="Reboot Required">\n<string>)@\w+@', rb"\1Cold Boot Required", text)
        result = convert(text)
        assert result.status in (0, 1), (path, result.stderr)
        for value in result.values:
            assert mistakes(value) == [], path
            seen.add(value["structure"])
    known = set(DOCUMENT["properties"]["structure"]["enum"]) - {None}
    assert known - seen == set()


def test_elements_fit():
    [*values] = convert(lun_list(b"a", b"\xff"), "--stream").values
    assert [mistakes(value, VALIDATORS[1]) for value in values] == [[], []]
    assert values[1]["latin1"] == ["LUNs/Namespaces"]


def good():
    [value] = convert(document(structure("BeaconInfo", field("Message", b"Success"), field("Beacon State", b"ON")))).values
    return value


@pytest.mark.parametrize(
    "change",
    [
        {"structure": "Other"},
        {"message": "Done"},
        {"success": False},
        {"success": "true"},
        {"rebootRequired": "true"},
        {"fields": []},
        {"fields": {"Beacon": "ON"}},
        {"fields": {"Beacon State": 1}},
        {"list": []},
        {"latin1": []},
        {"more": 1},
    ],
    ids=str,
)
def test_schema_refuses_what_is_no_document(change):
    assert mistakes(good()) == []
    assert mistakes({**good(), **change}) != []


def test_schema_wants_every_name():
    for name in good():
        assert mistakes({key: value for key, value in good().items() if key != name}) != []


def test_empty_documents_fit():
    for content in (b"", listed(), structure("BeaconInfo")):
        [value] = convert(document(content)).values
        assert mistakes(value) == []


def names_in(schema):
    """The names of structures and of fields that a part of the schema has, however deep."""
    if isinstance(schema, list):
        return set().union(*map(names_in, schema))
    if not isinstance(schema, dict):
        return set()
    own = {schema["const"]} if isinstance(schema.get("const"), str) else set()
    fields = schema.get("properties", {})
    own |= {*fields} if "structure" not in fields else set()
    return own.union(*map(names_in, schema.values()))


def test_document_lists_every_name():
    """The table in docs/json.md has the structures of the schema with their fields, and no others."""
    structures = {name for name in DOCUMENT["properties"]["structure"]["enum"] if name}
    wanted = structures | names_in([DOCUMENT["$defs"][name] for name in structures])
    assert len(wanted) > 120
    text = (ROOT / "docs" / "json.md").read_text().split("## Names")[1]
    assert {*re.findall(r"`([^`]+)`", text)} == wanted
