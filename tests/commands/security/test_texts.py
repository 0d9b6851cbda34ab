"""What passes from a device into documents: every byte, as it is. No document escapes anything, and a terminal obeys what
a text form shows it. docs/security.md says so, and what to do: `cat -v`, or zfc-json."""

import itertools
import subprocess

import pytest

from zfc.documents import RULER, XML_HEAD
from zfc.flash import components, memo
from zfc.host import IDENTIFIER, Adapter, Host, one
from zfc.json_tool import convert
from zfc.port import one_port

BYTES = [bytes([byte]) for byte in range(1, 256)]  # a zero ends a text
# What XML, a format or a terminal takes for more than a character.
SPECIALS = [
    b"&",
    b"<",
    b">",
    b'"',
    b"'",
    b"%",
    b"]]>",
    b"\\",
    b"&amp;",
    b"\r",
    b"\n",
    b"\t",
    b"\b",
    b"\a",
    b"\x7f",
    b"\x1b[2J",  # erases a screen
    b"\x1b]0;title\a",  # names a window
    "\x9b1m".encode(),  # C1: control sequence
    b"\x9b1m",  # the same in one byte
    "\u202e".encode(),  # turns the direction
    "\u2028".encode(),  # ends a line
]


def host_of(texts):
    return Host([Adapter(model=text, serial=f"S{number}", ports=[]) for number, text in enumerate(texts)])


def names(texts):
    return [b"Adapter_%s_S%d" % (text, number) for number, text in enumerate(texts)]


def list_of(texts):
    item = b'<structure typeName="AdapterList">\n<field name="Adapters">\n<string>%s</string></field>\n</structure>\n'
    return XML_HEAD + b'<list type="structure">\n' + b"".join(item % name for name in names(texts)) + b"</list>\n</output>\n"


def text_list_of(texts):
    return RULER + b"".join(b"AdapterList:\nAdapters: %s\n" % name for name in names(texts)) + RULER


TEXTS = [
    pytest.param(BYTES, id="every byte"),
    pytest.param([b"".join(pair) for pair in itertools.product(SPECIALS, repeat=2)], id="pairs"),
]


@pytest.mark.parametrize("texts", TEXTS)
def test_lists(zfc, texts):
    host = host_of(texts)
    assert zfc("-t adapter list", host=host).stdout == list_of(texts)
    assert zfc("-t adapter listcli", host=host).stdout == text_list_of(texts)


@pytest.mark.parametrize("start", range(1, 256, 79))
def test_reports(zfc, start):
    """A report takes percent conversions out; those of this text are none, since none is complete."""
    text = bytes(range(start, min(start + 79, 256)))
    options = {"host": one(manufacturer=text), "components": components(), "memo": memo()}
    for word in ("get", "getcli"):
        assert b"Manufacturer: " + text + b"\n" in zfc(f"-t adapter -s info {word} {IDENTIFIER}", **options).stdout


@pytest.mark.parametrize("special", SPECIALS, ids=repr)
def test_words_of_the_user(zfc, special):
    """The one message that shows a word."""
    path = b"no/" + special
    shown = zfc([b"log", path]).stdout
    assert shown == b"Failed to create file " + path + b"\n"


def harmful(output):
    """Bytes outside printable ASCII and line ends."""
    return bytes(set(output) - set(range(0x20, 0x7F)) - {0x0A})


@pytest.mark.parametrize("texts", TEXTS)
def test_cat_v_shows_what_a_terminal_would_obey(zfc, texts):
    output = zfc("-t adapter listcli", host=host_of(texts)).stdout
    assert harmful(output)
    shown = subprocess.run(["cat", "-v"], input=output, capture_output=True, check=True).stdout
    assert harmful(shown) in (b"", b"\t")


def test_zfc_json_shows_control_codes_as_numbers(zfc):
    """Texts alone that are no markup: tests of zfc-json have the rest."""
    texts = [text for text in BYTES if text not in b"&<>"]
    done = convert(zfc("-t adapter list", host=host_of(texts)).stdout)
    assert done.status == 0
    control = {*map(chr, range(0x20)), *map(chr, range(0x7F, 0xA0))} - {"\n"}
    assert not control & {*done.stdout.decode()}
    shown = [fields["fields"]["Adapters"] for fields in done.values[0]["list"]]
    assert shown == [name.decode("latin-1") for name in names(texts)]
