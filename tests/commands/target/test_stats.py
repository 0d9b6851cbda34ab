"""The stats node of a target: `get` in both forms."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST, every_device
from zfc.steps import around
from zfc.target import IDENTIFIER, one_target, statistics

GET = "-t target -v stats get"
USAGE = "Usage: get [port identifier]\r\n"

LIST_CALL = "TORPI_GetAdapterList()"
READ = "TORPI_GetPortStatisticsFC"
# The number of the port's handle, the kind and name of the target with zeros after them, and the record.
READ_CALL = f"{READ}(0x1234abcd, 0, 020050060160abcdef010000, zeroed buffer)"

COUNTERS = {"target_statistics": statistics(1, 22, 333, 4444, 4294967295, 0)}


def check_get(zfc, name, words=(IDENTIFIER,), **options):
    return check_both(zfc, GET, f"target/stats/{name}", words=words, **{"host": one_target(), **options})


def test_report(zfc):
    result = check_get(zfc, "report", buffers=COUNTERS)
    assert result.command_calls == [LIST_CALL, READ_CALL]


def test_library_that_stores_nothing_gives_zeros(zfc):
    check_get(zfc, "zero")


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_every_family_and_a_virtual_port(zfc, device):
    check_get(zfc, "report", host=one_target(device=device, interface=3), buffers=COUNTERS)


def test_report_ignores_more_words(zfc):
    check_get(zfc, "report", [IDENTIFIER, "more", "help", "?"], buffers=COUNTERS)


@pytest.mark.parametrize("code", [1, 13, 38, 150, 151, 0xFFFFFFFF])
def test_failed_read(zfc, code):
    values = {"message": "Failed, Statistics read error"}
    result = check_get(zfc, "failed", results={READ: code}, values=values, buffers=COUNTERS)
    assert result.command_calls == [LIST_CALL, READ_CALL]


@pytest.mark.parametrize(
    "words, host, message, usage, calls",
    [
        pytest.param([], NO_LIST, "Failed, Invalid parameter", USAGE, [], id="no identifier"),
        pytest.param(["nobody"], NO_LIST, "Failed, Invalid parameter", USAGE, [], id="bad identifier"),
        pytest.param(["help"], NO_LIST, "Failed, Unknown", USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], NO_LIST, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], NO_ADAPTERS, "Failed, Invalid parameter", USAGE, [LIST_CALL], id="empty list"),
        pytest.param([IDENTIFIER], one_target(), "Failed, File not found", "", [LIST_CALL], id="bracket"),
    ],
)
def test_failure(zfc, words, host, message, usage, calls):
    result = check_get(
        zfc,
        "failed",
        words,
        host=host,
        results={READ: 1},
        spoil_log="TORPI_SetToolVersion:directory",
        usage=usage,
        values={"message": message},
    )
    assert result.command_calls == calls


COMMON = "FCTargetStatsCmdsProcessor::CmdGetCommon: "
LOOK_UP = "FCTargetCmdsProcessor::GetTargetFromTargetString"


@pytest.mark.parametrize(
    "words, options, lines",
    [
        (IDENTIFIER, {}, []),
        (
            "nobody",
            {},
            [f"{LOOK_UP}: Invalid Port identifier nobody", f"{COMMON}Get target failed err=6"],
        ),
        ("help", {}, [f"{COMMON}Get target failed err=5"]),
        (
            IDENTIFIER,
            {"host": NO_LIST},
            [f"{LOOK_UP}: Adapter List is NULL", f"{COMMON}Get target failed err=14"],
        ),
        (IDENTIFIER, {"results": {READ: 9}}, [f"{COMMON}Get Port Stats FC failed err=9"]),
        (IDENTIFIER, {"results": {READ: 0xFFFFFFFF}}, [f"{COMMON}Get Port Stats FC failed err=-1"]),
        (
            IDENTIFIER,
            {"spoil_log": "TORPI_SetToolVersion:directory"},
            [f"{COMMON}Failed to open /var/tmp/torpi-output.log file"],
        ),
    ],
)
def test_failures_in_the_debug_log(zfc, words, options, lines):
    assert zfc(f"{GET} {words}", debug=65535, **{"host": one_target(), **options}).failures == lines


def test_steps_in_the_debug_log(zfc):
    result = zfc(f"{GET}cli {IDENTIFIER}", host=one_target(), debug=65535)
    name = "FCTargetStatsCmdsProcessor"
    assert result.steps_of(name, "FCTargetCmdsProcessor") == around(
        f"{name}::CmdGetCli",
        *around(
            f"{name}::CmdGetCommon",
            *around(LOOK_UP),
            *around(f"{name}::DisplayTargetStats", f"{name}::DisplayTargetStats: Message=Success"),
        ),
    )


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t target -v stats {words}")
    documents.check(result.stdout, "target/stats/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", b""), ("getcli ?", USAGE.encode())])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t target -v stats {words}")
    assert result.stdout == text
    assert result.command_calls == []
