"""Device texts that make ill-formed XML: what zfc-json makes of them is JSON all the same, and says what they are."""

import random
import subprocess

import pytest

from zfc.host import one
from zfc.json_tool import convert, document, field, list_field, lun_list, report, strict, structure
from zfc.runner import ZFC_JSON


def as_text(value):
    """These bytes as zfc-json writes them."""
    try:
        return value.decode()
    except UnicodeDecodeError:
        return value.decode("latin-1")


TAGS = [
    b"</string>",
    b"</string></field>\n",
    b"</structure>\n",
    b"</list>\n",
    b"</field>\n",
    b"</output>\n",
    b"<string>",
    b'<field name="Message">\n',
    b"</string></field>\n</structure>\n</list>\n</field>\n</structure>\n</output>\n",
    b"<?xml",
    b"&",
    b"]]>",
]


def hostile_texts(count):
    """Bytes but for NUL, which ends a text, among them tags."""
    numbers = random.Random(19)

    def piece():
        kind = numbers.randrange(4)
        if kind == 0:
            return numbers.choice(TAGS)
        if kind == 1:
            return bytes(numbers.randrange(1, 256) for _ in range(numbers.randrange(6)))
        if kind == 2:
            return bytes(numbers.randrange(1, 128) for _ in range(numbers.randrange(20)))
        return chr(numbers.choice([0x80, 0x9F, 0xE9, 0x2028, 0xFFFD, 0xFFFF, 0x10FFFF])).encode()

    return [b"".join(piece() for _ in range(numbers.randrange(8))) for _ in range(count)]


@pytest.mark.parametrize("option", [[], ["--parsed-only"], ["--raw-only"]])
def test_texts_come_back(option):
    texts = hostile_texts(400)
    documents = [
        document(structure("T", field("Message", b"Success"), field("A", text), list_field("L", structure("E", field("B", text)))))
        for text in texts
    ]
    result = convert(b"".join(documents), *option)
    assert (result.status, result.stderr) == (0, "")
    assert len(result.values) == len(texts)
    for value, text in zip(result.values, texts):
        expected = as_text(text)
        assert value["fields"]["A"] == expected
        assert value["fields"]["L"][0]["fields"]["B"] == expected
        is_latin1 = expected.encode() != text
        assert value.get("latin1") == (["A"] if is_latin1 else None)
        assert value["fields"]["L"][0].get("latin1") == (["B"] if is_latin1 else None)


def test_reports_and_lists_come_back():
    texts = hostile_texts(200)
    result = convert(b"".join(report(text) + lun_list(text, b"next", text) for text in texts))
    assert (result.status, result.stderr) == (0, "")
    for text, reported, listed in zip(texts, result.values[::2], result.values[1::2]):
        assert reported["fields"]["LunInfo"][0]["fields"]["Data"]["text"] == as_text(text)
        names = [item["fields"]["LUNs/Namespaces"] for item in listed["list"]]
        assert names == [as_text(text), "next", as_text(text)]


def test_jq_reads_every_line():
    texts = hostile_texts(200)
    result = convert(b"".join(report(text) for text in texts))
    path = '.fields.LunInfo[0].fields.Data.text | @json'
    done = subprocess.run(["jq", "-r", path], input=result.stdout, capture_output=True, check=True)
    found = [strict(line) for line in done.stdout.decode().split("\n")[:-1]]
    assert found == [as_text(text) for text in texts]


@pytest.mark.parametrize(
    "model, shown",
    [
        (b"R&D <b>", "R&D <b>"),
        (b"</string></field>\n", "</string></field>\n"),
        (b"A\xe9\x9b\x01\x7f", "A\xe9\x9b\x01\x7f"),
        (b"A\xc3\xa9", "A\xe9"),
        (b'"\\', '"\\'),
    ],
)
def test_text_of_a_device(zfc, model, shown):
    argv, env = zfc.command("-- -t adapter list", program=ZFC_JSON, host=one(model=model))
    done = subprocess.run(argv, capture_output=True, env=env, timeout=60)
    assert done.returncode == 0
    value = strict(done.stdout)
    assert [item["fields"]["Adapters"] for item in value["list"]] == [f"Adapter_{shown}_AB12345"]


def test_controls_are_escaped():
    """No byte of the output is a control character, C1 included."""
    text = bytes(range(1, 256)) + "".join(map(chr, range(0x80, 0x100))).encode()
    for value in (bytes(range(1, 128)), text, "".join(map(chr, range(1, 0x100))).encode()):
        result = convert(report(value))
        assert result.values[0]["fields"]["LunInfo"][0]["fields"]["Data"]["text"] == as_text(value)
        shown = result.stdout.decode()
        assert [found for found in shown[:-1] if ord(found) < 0x20 or 0x7F <= ord(found) < 0xA0] == []
