"""No text from outside makes a line of its own in the debug log, or commands the terminal that shows it."""

import re

import pytest

from zfc.config import bbcr, boot, nvme, params
from zfc.host import Adapter, Host, one
from zfc.port import IDENTIFIER, one_port

LEAD = "1/2/2026 03:04:05.006 CIM Provider DEBUG       1: "
FORGED = f"\r\n{LEAD}FORGED\x1b[2J\x9b\x7f\b\r\n{LEAD}FORGED"
SHOWN = FORGED.encode()
for byte in (0x0D, 0x0A, 0x1B, 0xC2, 0x9B, 0x7F, 0x08):
    SHOWN = SHOWN.replace(bytes([byte]), b"\\x%02x" % byte)
HEAD = rb"\d{1,2}/\d{1,2}/\d{4} \d\d:\d\d:\d\d\.\d{3} CIM Provider "
# Line ends of the log, of messages whose text ends with one, and of the two messages that begin with one. A line that was
# cut at its limit has none, and the next one follows.
LINE = re.compile(rb"(?:%s[ -~]*(?:\r\n|\n\r\n|$)|(?:Breaking|Closing)\.\.\.[\r\n]+|\r\n)" % HEAD)


def check(log):
    assert log and not re.sub(LINE, b"", log), re.sub(LINE, b"", log)[:200]
    assert b"\n" + LEAD.encode() not in b"\n" + log


def logged(zfc, words, **options):
    return zfc(words, debug=65535, **options).debug_log


WORDS = [
    ("-t adapter -s info getcli", []),
    ("-t port -s info getcli", []),
    ("-t target -v info getcli", []),
    ("-t lun -v info getcli", []),
    ("-t adapter -s personality setcli", ["Adapter_ZX100_AB12345"]),
    ("-t port -s beacon setcli", [IDENTIFIER]),
    ("-t port updatenvramcli", [IDENTIFIER]),
    ("-t port -s fwdump getcli", [IDENTIFIER]),
    ("-t port -s hbaparams setFilecli", [IDENTIFIER, "-u"]),
    ("-t port -s bootconfigext setFilecli", [IDENTIFIER, "--boot-mode"]),
    ("log", []),
    ("no such command", []),
]


@pytest.mark.parametrize("command, words", WORDS, ids=[command for command, _ in WORDS])
def test_words_of_the_user(zfc, command, words):
    host = one_port(device=0x3640)
    buffers = {"params": params(), "bbcr": bbcr(), "boot": boot(), "nvme": nvme()}
    check(logged(zfc, [*command.split(), *words, FORGED], host=host, buffers=buffers))


def test_identifier_is_shown_as_numbers(zfc):
    log = logged(zfc, ["-t", "adapter", "-s", "info", "getcli", FORGED])
    assert b"Invalid Adapter identifier " + SHOWN + b"\r\n" in log


def test_texts_of_a_device(zfc):
    """Each line of a report is logged."""
    maker = FORGED.replace(LEAD, "")
    log = logged(zfc, ["-t", "adapter", "-s", "info", "getcli", "Adapter_ZX100_AB12345"], host=one(manufacturer=maker))
    shown = SHOWN.replace(LEAD.encode(), b"")
    assert b"Manufacturer: " + shown + b"\n\r\n" in log
    check(log)


def test_vital_product_data(zfc):
    text = b"\n" + LEAD.encode() + b"FORGED"
    image = b"\x82" + len(text).to_bytes(2, "little") + text + b"\x78"
    log = logged(zfc, f"-t port -s vpd getcli {IDENTIFIER}", host=one_port(), buffers={"vpd": image}, sizes={"vpd": len(image)})
    assert b'"\\x0a' + text[1:] + b'"' in log
    check(log)


def test_model_and_serial_number(zfc):
    host = Host([Adapter(model=b"\r\nFORGED", serial=b"\x1b\nFORGED")])
    check(logged(zfc, "-t adapter listcli", host=host))
    check(logged(zfc, ["-t", "adapter", "-s", "info", "getcli", "Adapter_\r\nFORGED_\x1b\nFORGED"], host=host))


@pytest.mark.parametrize("content", [f"BBCR_Count={FORGED}\n", f"BBCR_Count=3\x1b[2J\b\n", f"{FORGED}=1\n"])
def test_staged_file(zfc, content):
    (zfc.staging / f"BBCR_{IDENTIFIER}").write_text(content, newline="")
    for word in ("setFilecli", "setcli"):
        check(logged(zfc, f"-t port -s bbcr {word} {IDENTIFIER}", host=one_port(), buffers={"bbcr": bbcr()}))


def test_lines_of_the_shell(zfc):
    typed = "".join(f"log no/\x1b[2J\x9b\b\r{number}\n" for number in range(3)) + "q\n"
    check(zfc(stdin=typed.encode(), debug=65535).debug_log)


@pytest.mark.parametrize("bad", [f"{LEAD}x\r\n", "FORGED\r\n", f"\r\n{LEAD}x\r\n", "\x1b[2J\r\n"], ids=repr)
def test_check_sees_a_forged_line(bad):
    good = LEAD.replace("2026", "2025").encode() + b"text\n\r\n"
    check(good)
    with pytest.raises(AssertionError):
        check(good + bad.encode() + good)
