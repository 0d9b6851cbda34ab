"""Messages of the tools and of the simulated library about hostile words, file names and texts of files: nothing in them
commands a terminal."""

import subprocess

import pytest

from zfc.runner import BUILD, EXECUTABLE, reject_sanitizer_report

LAB, SNAPSHOT, JSON = (BUILD / "bin" / name for name in ("zfc-lab", "zfc-snapshot", "zfc-json"))
# An escape sequence, C1 in UTF-8 and in one byte, direction marks, backspace, bell, delete; UTF-8 that is none.
HOSTILE = b"\x1b[2J" + "\u009b1m\u202e\u2066\u200f\u061c".encode() + b"\x9b\b\a\x7f\xc0\xaf\xed\xa0\x80"
# The same where text has to be UTF-8.
IN_UTF8 = b"\x1b[2J" + "\u009b1m\u202e\u2066\u200f\u061c".encode() + b"\b\a\x7f"
FORBIDDEN = [*range(0x20), 0x7F, *range(0x80, 0xA0), 0x61C, 0x200E, 0x200F, *range(0x2028, 0x202F), *range(0x2066, 0x206A)]
HOST = b"""adapters:
  - family: dahlia
    model: ZX640
    serial: LAB0001
    ports:
      - wwpn: 21:00:f4:c7:aa:00:00:01
        link: up
"""


def harmful(printed):
    """Characters that no message may hold; a byte that is no UTF-8 raises an error."""
    return {character for character in printed.decode() if ord(character) in FORBIDDEN and character != "\n"}


@pytest.fixture
def printed(zfc):
    """What a run prints on both streams."""

    def run(program, *words, stdin=b"", env=None):
        argv, variables = zfc.command(list(words), library="simulated", program=program, env={"TORPI_LAB_QUIET": "", **(env or {})})
        done = subprocess.run(argv, input=stdin, capture_output=True, env=variables, timeout=60)
        reject_sanitizer_report(done.stderr)
        return done.stdout, done.stderr

    return run


# Host files with a hostile text at every kind of place that a message can quote.
FILES = {
    "a key": HOST.replace(b"model:", b'"mo%s":' % IN_UTF8),
    "a word": HOST.replace(b"dahlia", b'"da%s"' % IN_UTF8),
    "octets": HOST.replace(b"21:00:f4:c7:aa:00:00:01", b'"21:%s"' % IN_UTF8),
    "a choice": HOST.replace(b"up", b'"%s"' % IN_UTF8),
    "a key that is there twice": HOST.replace(b"model: ZX640", b'"%s": 1\n    "%s": 2' % (IN_UTF8, IN_UTF8)),
    "a tag": HOST.replace(b"ZX640", b"!%s x" % IN_UTF8),
    "an anchor": HOST.replace(b"ZX640", b"&%s x" % IN_UTF8),
    "an alias": HOST.replace(b"ZX640", b"*%s" % IN_UTF8),
    "a fault": HOST + b'faults: {"%s": 1}\n' % IN_UTF8,
    "the answer of a fault": HOST + b'faults: {TORPI_GetVpd: "%s"}\n' % IN_UTF8,
    "a key at the top": b'"%s": 1\n' % IN_UTF8,
    "what follows": HOST + IN_UTF8,
    "no UTF-8": HOST.replace(b"ZX640", HOSTILE),
    "an escaped text": HOST.replace(b"ZX640", b'"\\e[2J\\x9b\\u202e"'),
}
READERS = {
    "zfc-lab check": (LAB, "check", "file"),
    "zfc-lab map": (LAB, "map", "file"),
    "zfc-lab diff": (LAB, "diff", "file", "file"),
    "zfc-lab reboot": (LAB, "reboot", "file"),
    "zfc-lab flash-image": (LAB, "flash-image", "file"),
}


@pytest.mark.parametrize("name", FILES)
def test_text_of_a_file(zfc, printed, name):
    zfc.file("file", FILES[name])
    shown = 0
    for program, *words in READERS.values():
        for stream in printed(program, *words):
            assert not harmful(stream)
            shown += b"file:" in stream
    assert shown > 0
    for variable in ("TORPI_LAB_HOST", "TORPI_LAB_STATE"):
        assert not harmful(printed(EXECUTABLE, "version", env={variable: "file"})[1])
        assert not harmful(printed(EXECUTABLE, "-t", "adapter", "-s", "info", "get", "nobody", env={variable: "file"})[1])


NAME = b"no" + HOSTILE
WORDS = [
    (LAB, NAME),
    (LAB, "check", NAME),
    (LAB, "map", NAME),
    (LAB, "diff", NAME, NAME),
    (LAB, "reboot", NAME),
    (LAB, "flash-image", NAME),
    (LAB, "new", NAME),
    (LAB, "new", b"--" + NAME),
    (LAB, "new", "-o", b"no/" + NAME),
    (LAB, "new", b"--ports=" + NAME),
    (LAB, "map", "-o", b"no/" + NAME),
    (LAB, "run", "--fault", NAME),
    (LAB, "run", "--state", b"no/" + NAME, "--", "help"),
    (LAB, "run", NAME, "--", "-t", "adapter", "-s", "info", "get", "nobody"),
    (LAB, "snapshot", NAME),
    (SNAPSHOT, NAME),
    (SNAPSHOT, "-o", b"no/" + NAME),
    (JSON, NAME),
    (JSON, b"--" + NAME),
]


@pytest.mark.parametrize("words", WORDS, ids=lambda words: " ".join(map(str, words[:2])).split("/")[-1])
def test_words(printed, words):
    stdout, stderr = printed(*words)
    assert stdout + stderr != b""
    if b"<?xml" not in stdout:
        assert not harmful(stdout)
    assert not harmful(stderr)


@pytest.mark.parametrize("words", [("check",), ("reboot",), ("flash-image",)], ids=str)
def test_name_of_a_file_that_is_read(zfc, printed, words):
    (zfc.work / NAME.decode(errors="surrogateescape")).write_bytes(b"x\n")
    for stream in printed(LAB, *words, NAME):
        assert not harmful(stream)


@pytest.mark.parametrize("variable", ["HOST", "STATE", "TRACE", "TIME", "CHATTER", "FAULTS"])
def test_variable_of_the_simulated_library(printed, variable):
    value = HOSTILE if variable in ("TIME", "CHATTER", "FAULTS") else b"no/" + HOSTILE
    _, stderr = printed(
        EXECUTABLE,
        *"-t port -s beacon set FC_21:00:f4:c7:aa:64:00:10 on".split(),
        env={f"TORPI_LAB_{variable}": value.decode(errors="surrogateescape")},
    )
    assert stderr != b"" and not harmful(stderr)


@pytest.mark.parametrize(
    "text", [HOSTILE, b"<%s>" % HOSTILE, b'<?xml version="1.0"?><output xmlns:esxcli="znfc">\n<%s>\n' % HOSTILE], ids=range(3)
)
def test_document(printed, text):
    _, stderr = printed(JSON, stdin=text)
    assert stderr.startswith(b"zfc-json: ") and not harmful(stderr)


def test_ordinary_texts_are_shown_as_they_are(zfc, printed):
    name = "Prüfstand 試験 – 1"
    assert f"zfc-lab: unknown command '{name}'\n".encode() in printed(LAB, name)[1]
    zfc.file("file", HOST.replace(b"dahlia", name.encode()))
    assert name.encode() in printed(LAB, "check", "file")[0]
