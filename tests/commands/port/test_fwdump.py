"""The fwdump node of a port: `get` in both forms."""

import os
from pathlib import Path

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST
from zfc.port import IDENTIFIER, SD_HANDLE, one_port
from zfc.runner import SANITIZED
from zfc.terminal import Session

GET = "-t port -s fwdump get"
USAGE = "Usage: get\r\n"
LIST_CALL = "TORPI_GetAdapterList()"
DUMP = "TORPI_SDGetFwDump2"
DUMP_CALL = f"{DUMP}(0x{SD_HANDLE:08x}, 0, null)"
NO_FILE = "Failed, File not found"
PROMPT = b"$>"

CONTENT = bytes(range(256)) * 100  # bytes of every kind, line ends and nulls among them


def check_dump(zfc, message, words=(IDENTIFIER, "dump"), **options):
    options = {"host": one_port(), "buffers": {"dump": CONTENT}, **options}
    return check_both(zfc, GET, "port/fwdump/report", words=words, values={"message": message}, **options)


def test_dump_is_written(zfc):
    result = check_dump(zfc, "Success")
    assert result.command_calls == [LIST_CALL, DUMP_CALL]
    assert (zfc.work / "dump").read_bytes() == CONTENT
    assert b"<TORPI_SDGetFwDump2> chatters" in result.xml.library_log


def test_file_that_is_there_is_replaced(zfc):
    zfc.file("dump", b"x" * 100_000)
    check_dump(zfc, "Success")
    assert (zfc.work / "dump").read_bytes() == CONTENT


def test_more_words_are_ignored(zfc):
    check_dump(zfc, "Success", [IDENTIFIER, "dump", "more", "help"])
    assert [path.name for path in zfc.work.iterdir()] == ["dump"]


def test_dump_of_no_bytes(zfc):
    check_dump(zfc, "Success", buffers={})
    assert (zfc.work / "dump").read_bytes() == b""


def test_size_without_a_buffer(zfc):
    check_dump(zfc, "Success", buffers={}, sizes={"dump": 5000})
    assert (zfc.work / "dump").read_bytes() == b""


def test_size_0_of_a_buffer(zfc):
    check_dump(zfc, "Success", sizes={"dump": 0})
    assert (zfc.work / "dump").read_bytes() == b""


def test_virtual_port_has_a_dump(zfc):
    check_dump(zfc, "Success", host=one_port(interface=3, state=3))


class TestPath:
    @pytest.mark.parametrize("word", ["no/such/folder/dump", "", "n" * 5000, "file/dump", "/proc/dump"])
    def test_that_cannot_be_opened(self, zfc, word):
        """The dump has been fetched by then; it is not reported as written."""
        zfc.file("file")
        result = check_dump(zfc, NO_FILE, [IDENTIFIER, word])
        assert result.command_calls == [LIST_CALL, DUMP_CALL]
        assert [path.name for path in zfc.work.iterdir()] == ["file"]

    def test_that_is_a_folder(self, zfc):
        (zfc.work / "dump").mkdir()
        check_dump(zfc, NO_FILE)

    def test_in_a_place_that_takes_no_file(self, zfc):
        """The kernel's own folder refuses even the superuser."""
        check_dump(zfc, NO_FILE, [IDENTIFIER, "/sys/dump"])

    def test_that_loops(self, zfc):
        os.symlink("dump", zfc.work / "dump")
        check_dump(zfc, NO_FILE)

    def test_that_is_missing(self, zfc):
        """No dump is fetched for nothing."""
        result = check_dump(zfc, "Failed, Invalid parameter", [IDENTIFIER], usage=USAGE)
        assert result.command_calls == [LIST_CALL]

    def test_that_is_missing_with_no_log(self, zfc):
        options = {"usage": USAGE, "spoil_log": "TORPI_GetAdapterList:directory"}
        check_dump(zfc, "Failed, Invalid parameter", [IDENTIFIER], **options)

    def test_on_a_full_device(self, zfc):
        """How much could be written does not count."""
        check_dump(zfc, "Success", [IDENTIFIER, "/dev/full"])

    def test_with_percent_signs(self, zfc):
        check_dump(zfc, "Success", [IDENTIFIER, "%s%n"], debug=65535)
        assert (zfc.work / "%s%n").read_bytes() == CONTENT

    def test_that_is_a_help_word(self, zfc):
        check_dump(zfc, "Success", [IDENTIFIER, "help"])
        assert (zfc.work / "help").read_bytes() == CONTENT


READ_FAILED = ("Failed, FW Dump read failed", "", 13)
ANSWERS = {
    0x20000064: ("Failed, Invalid parameter", USAGE, 6),
    0x20000072: ("Failed, Memory Error", "", 42),
    0x20000073: ("Failed, Parameter Error", USAGE, 4),
    0x2000007B: ("Failed, FW Dump Not Available", "", 46),
}


@pytest.mark.parametrize(
    "answer",
    [*range(0x20000063, 0x2000007D), 1, 13, 0x64, 0x7B, 150, 151, 0x20000000, 0x20000072 & 0xFFFF, 0xFFFFFFFF],
    ids=hex,
)
def test_answer_of_the_library(zfc, answer):
    message, usage, code = ANSWERS.get(answer, READ_FAILED)
    result = check_dump(zfc, message, usage=usage, results={DUMP: answer}, debug=1)
    assert result.xml.code == code
    assert result.command_calls == [LIST_CALL, DUMP_CALL]
    assert not (zfc.work / "dump").exists()


def test_failure_without_a_buffer(zfc):
    check_dump(zfc, "Failed, FW Dump read failed", results={DUMP: 1}, buffers={})


@pytest.mark.parametrize(
    "words, options, message, usage, calls",
    [
        pytest.param([], {}, "Failed, Invalid parameter", USAGE, [], id="no identifier"),
        pytest.param(["nobody", "dump"], {}, "Failed, Invalid parameter", USAGE, [], id="bad identifier"),
        pytest.param(["help"], {}, "Failed, Unknown", USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param(
            [IDENTIFIER], {"host": NO_ADAPTERS}, "Failed, Invalid parameter", USAGE, [LIST_CALL], id="no adapters"
        ),
        pytest.param(
            [IDENTIFIER, "dump"],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            NO_FILE,
            "",
            [LIST_CALL],
            id="no log",
        ),
    ],
)
def test_failure(zfc, words, options, message, usage, calls):
    result = check_dump(zfc, message, words, usage=usage, **options)
    assert result.command_calls == calls
    assert [*zfc.work.iterdir()] == []


@pytest.mark.skipif(SANITIZED, reason="the sanitizers keep freed memory; they find what is not freed by themselves")
@pytest.mark.parametrize("result", [0, 1])
def test_dump_is_freed(zfc, result):
    """Of 40 dumps of 50 KB in one process none is left."""
    options = {"host": one_port(), "buffers": {"dump": CONTENT * 2}, "results": {DUMP: result}}
    with Session(zfc, terminal=False, **options) as session:
        session.expect(PROMPT)

        def fetch(times):
            for _ in range(times):
                session.send(f"{GET} {IDENTIFIER} dump\n".encode())
                session.expect(PROMPT)
            return data_bytes(session)

        before = fetch(2)
        assert fetch(40) - before < 10 * len(CONTENT)


def data_bytes(session):
    """What the process has of private memory that can be written."""
    for line in Path(f"/proc/{session.process.pid}/status").read_text().splitlines():
        if line.startswith("VmData:"):
            return int(line.split()[1]) * 1024
    raise AssertionError("no VmData")


CLASS = "PhysicalPortFwDumpCmdsProcessor::"


@pytest.mark.parametrize(
    "words, options, lines",
    [
        ([IDENTIFIER, "dump"], {}, []),
        (["FC_nobody", "dump"], {}, ["CmdGetCommon: Get phy port failed err=6"]),
        ([IDENTIFIER], {}, ["CmdGetCommon: dump file not given"]),
        (
            [IDENTIFIER, "dump"],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            ["CmdGetCommon: Failed to open /var/tmp/torpi-output.log file"],
        ),
        # 536871012 is 0x20000064.
        (
            [IDENTIFIER, "dump"],
            {"results": {DUMP: 0x20000064}},
            ["CmdGetCommon: Get Firmware Dump failed err=536871012"],
        ),
        ([IDENTIFIER, "dump"], {"results": {DUMP: 0xFFFFFFFF}}, ["CmdGetCommon: Get Firmware Dump failed err=-1"]),
        ([IDENTIFIER, "no/%s"], {}, ["CmdGetCommon: Failed to open no/%s file"]),
    ],
)
def test_failure_lines(zfc, words, options, lines):
    options = {"host": one_port(), "buffers": {"dump": CONTENT}, **options}
    result = zfc([*GET.split(), *words], debug=65535, **options)
    assert [line.removeprefix(CLASS) for line in result.failures] == lines


@pytest.mark.parametrize(
    "word, step",
    [("dump", "DisplayFwDumpInfo: Message=Success"), ("no/dump", "DisplayError: Message=Failed, File not found")],
)
def test_function_that_writes_the_document(zfc, word, step):
    result = zfc(f"{GET} {IDENTIFIER} {word}", host=one_port(), debug=65535)
    assert [line for line in result.steps if "Message=" in line] == [f"{CLASS}{step}"]


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s fwdump {words}")
    documents.check(result.stdout, "port/fwdump/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", ""), ("getcli ?", USAGE)])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port -s fwdump {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
