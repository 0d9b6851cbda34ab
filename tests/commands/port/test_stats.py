"""The stats node of a port: `get` and `reset` in both forms."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST
from zfc.port import IDENTIFIER, one_port
from zfc.preload import needs_preload, preloaded

GET = "-t port -s stats get"
RESET = "-t port -s stats reset"
GET_USAGE = "Usage: get [port identifier]\r\n"
RESET_USAGE = "Usage: reset [port identifier]\r\n"

LIST_CALL = "TORPI_GetAdapterList()"
RESET_CALL = "TORPI_ResetDeviceStats(port)"
INVALID = "Failed, Invalid parameter"
WRONG_MODES = ["", "x", "Drive", "Drivers", "Firmwar", "Firmwares", "Driver ", "%s", "help", "?", "both", "x" * 100_000]


@pytest.mark.parametrize("mode", ["driver", "firmware"])
@pytest.mark.parametrize("change", [str.title, str.lower, str.upper, str.swapcase])
def test_get(zfc, mode, change):
    result = check_both(zfc, GET, f"port/stats/{mode}", words=[IDENTIFIER, change(mode)], host=one_port())
    assert result.command_calls == [LIST_CALL]


def test_get_ignores_more_words(zfc):
    check_both(zfc, GET, "port/stats/driver", words=[IDENTIFIER, "Driver", "Firmware"], host=one_port())


@pytest.mark.parametrize("set", ["driver", "firmware"])
@pytest.mark.parametrize("number", [0, 1, 2**31 - 1, 2**31, 2**32 - 1])
def test_counters_are_unsigned(zfc, set, number):
    counters = (number, number ^ 1, number, number ^ 2, number, number ^ 3)
    output = zfc(f"{GET}cli {IDENTIFIER} {set}", host=one_port(**{f"{set}_counters": counters})).stdout.decode()
    values = [line.rsplit(": ", 1)[1] for line in output.split("\n")[4:10]]
    assert values == [str(value) for value in counters]


@pytest.mark.parametrize("words", [[IDENTIFIER], *([IDENTIFIER, mode] for mode in WRONG_MODES)])
def test_get_with_an_unknown_mode_fails_with_status_0(zfc, words):
    """So the text form has no usage text."""
    options = {"values": {"message": INVALID}, "host": one_port(), "debug": 4}
    result = check_both(zfc, GET, "port/stats/failed", words=words, **options)
    assert result.xml.code == 0
    assert result.command_calls == [LIST_CALL]


@pytest.mark.parametrize("mode", ["Firmware", "firmware", "FIRMWARE", "fIRMWARE"])
def test_reset(zfc, mode):
    words = [IDENTIFIER, mode]
    result = check_both(zfc, RESET, "port/stats/reset", words=words, values={"message": "Success"}, host=one_port())
    assert result.command_calls == [LIST_CALL, RESET_CALL]
    assert b"<TORPI_ResetDeviceStats> chatters" in result.xml.library_log


def check_reset_failed(zfc, message, words=(IDENTIFIER, "Firmware"), **options):
    options = {"host": one_port(), **options}
    return check_both(zfc, RESET, "port/stats/reset", words=words, values={"message": message}, **options)


@pytest.mark.parametrize("words", [[IDENTIFIER], *([IDENTIFIER, mode] for mode in [*WRONG_MODES, "Driver", "driver"])])
def test_reset_of_anything_but_the_firmware_is_refused(zfc, words):
    result = check_reset_failed(zfc, INVALID, words, usage=RESET_USAGE, debug=4)
    assert b"Program Exit Code: (6)" in result.xml.debug_log
    assert result.command_calls == [LIST_CALL]


@pytest.mark.parametrize(
    "result, message",
    [
        (150, "Failed, Command not supported when adapter port in maintenance mode"),
        *[(code, "Failed, Statistics clear error") for code in (1, 39, 149, 151, 0xFFFFFFFF)],
    ],
)
def test_failed_reset(zfc, result, message):
    done = check_reset_failed(zfc, message, results={"TORPI_ResetDeviceStats": result})
    assert done.command_calls == [LIST_CALL, RESET_CALL]


# The look-up, which both commands do before they read the mode.
@pytest.mark.parametrize("mode", [[], ["Firmware"], ["nothing"]])
@pytest.mark.parametrize(
    "words, options, message, usage",
    [
        pytest.param(["nobody"], {}, INVALID, True, id="bad identifier"),
        pytest.param(["help"], {}, "Failed, Unknown", True, id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", False, id="no list"),
        pytest.param([IDENTIFIER], {"host": NO_ADAPTERS}, INVALID, True, id="no adapters"),
    ],
)
def test_failed_look_up(zfc, words, options, message, usage, mode):
    values = {"message": message}
    options = {"host": one_port(), "words": [*words, *mode], "values": values, **options}
    check_both(zfc, GET, "port/stats/failed", usage=GET_USAGE if usage else "", **options)
    check_both(zfc, RESET, "port/stats/reset", usage=RESET_USAGE if usage else "", **options)


def test_no_words_at_all(zfc):
    check_both(zfc, GET, "port/stats/failed", values={"message": INVALID}, usage=GET_USAGE)
    check_both(zfc, RESET, "port/stats/reset", values={"message": INVALID}, usage=RESET_USAGE)


def test_log_that_cannot_be_opened(zfc):
    """`get` needs no bracket."""
    spoiled = {"spoil_log": "TORPI_GetAdapterList:directory"}
    result = check_reset_failed(zfc, "Failed, File not found", **spoiled)
    assert result.command_calls == [LIST_CALL]
    check_both(zfc, GET, "port/stats/driver", words=[IDENTIFIER, "Driver"], host=one_port(), **spoiled)


def test_order_of_the_checks_of_reset(zfc):
    """The mode is checked before the log is opened."""
    words = [IDENTIFIER, "Driver"]
    check_reset_failed(zfc, INVALID, words, usage=RESET_USAGE, spoil_log="TORPI_GetAdapterList:directory")


def test_virtual_port_has_counters(zfc):
    host = one_port(interface=3)
    check_both(zfc, GET, "port/stats/firmware", words=[IDENTIFIER, "Firmware"], host=host)
    check_reset_failed(zfc, "Success", host=host)


CLASS = "PhysicalPortFCStatsCmdsProcessor::"
BAD_IDENTIFIER = "PhysicalPortCmdsProcessor::GetPhyPortFromPortString: Invalid Port identifier nobody"


@pytest.mark.parametrize(
    "command, words, options, lines",
    [
        ("get", [IDENTIFIER, "Driver"], {}, []),
        ("get", ["nobody"], {}, [BAD_IDENTIFIER, "CmdGetCommon: Get phy port failed err=6"]),
        ("get", [IDENTIFIER, "all %s"], {}, ["CmdGetCommon: Invalid mode=all %s"]),
        ("get", [IDENTIFIER], {}, ["CmdGetCommon: Invalid mode="]),
        ("reset", [IDENTIFIER, "Firmware"], {}, []),
        ("reset", ["help"], {}, ["CmdResetCommon: Get phy port failed err=5"]),
        ("reset", [IDENTIFIER, "Driver"], {}, ["CmdResetCommon: Invalid mode=Driver"]),
        (
            "reset",
            [IDENTIFIER, "Firmware"],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            ["CmdResetCommon: Failed to open /var/tmp/torpi-output.log file"],
        ),
        (
            "reset",
            [IDENTIFIER, "Firmware"],
            {"results": {"TORPI_ResetDeviceStats": 0xFFFFFFFF}},
            ["CmdResetCommon: Reset device stats failed err=-1"],
        ),
    ],
)
def test_failure_lines(zfc, command, words, options, lines):
    options = {"host": one_port(), **options}
    result = zfc(["-t", "port", "-s", "stats", command, *words], debug=65535, **options)
    assert [line.removeprefix(CLASS) for line in result.failures] == lines


@needs_preload
@pytest.mark.parametrize("mode, display", [("Driver", "DisplayFCDriverStats"), ("Firmware", "DisplayFCFWStats")])
def test_report_without_memory(zfc, mode, display):
    options = {"words": [IDENTIFIER, mode], "values": {"message": "Failed, Memory Error"}, "host": one_port()}
    env = preloaded("refuse_memory", REFUSE_BYTES=2048)
    result = check_both(zfc, GET, "port/stats/failed", env=env, debug=4, **options)
    assert result.xml.failures == [f"{CLASS}{display}: Output memory alloc failed"]
    assert result.xml.code == 42


@pytest.mark.parametrize(
    "words, steps",
    [
        (f"get {IDENTIFIER} Driver", ["DisplayFCDriverStats: Message=Success"]),
        (f"get {IDENTIFIER} Firmware", ["DisplayFCFWStats: Message=Success"]),
        (f"get {IDENTIFIER} x", ["DisplayError: Message=Failed, Invalid parameter"]),
        (f"reset {IDENTIFIER} Firmware", ["CmdResetCommon: Message=Success"]),
        (f"reset {IDENTIFIER} Driver", ["DisplayResetError: Message=Failed, Invalid parameter"]),
    ],
)
def test_function_that_writes_the_document(zfc, words, steps):
    result = zfc(f"-t port -s stats {words}", host=one_port(), debug=65535)
    assert [line for line in result.steps_in(CLASS) if "Message=" in line] == steps


class TestEdgeCases:
    @pytest.mark.parametrize("mode", ["firmware", "FIRMWARE"])
    def test_get_of_the_firmware_in_any_case(self, zfc, mode):
        check_both(zfc, GET, "port/stats/firmware", words=[IDENTIFIER, mode], host=one_port())

    def test_unknown_mode_of_get_and_of_reset(self, zfc):
        words = [IDENTIFIER, "x"]
        for command, code in ((GET, 0), (RESET, 6)):
            zfc(f"{command} {' '.join(words)}", host=one_port(), debug=1)
            log = (zfc.var_tmp / "zfcesxcli.log").read_bytes()
            assert log.rstrip().endswith(f"main: Program Exit Code: ({code})".encode())

    def test_reset_of_the_driver_is_refused(self, zfc):
        check_reset_failed(zfc, INVALID, [IDENTIFIER, "Driver"], usage=RESET_USAGE)

    def test_maintenance_mode(self, zfc):
        message = "Failed, Command not supported when adapter port in maintenance mode"
        check_reset_failed(zfc, message, results={"TORPI_ResetDeviceStats": 150})

    def test_greatest_counter_prints_in_full(self, zfc):
        check_both(zfc, GET, "port/stats/firmware", words=[IDENTIFIER, "Firmware"], host=one_port())


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s stats {words}")
    documents.check(result.stdout, "port/stats/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize(
    "words, text", [("get ?", ""), ("reset ?", ""), ("getcli ?", GET_USAGE), ("resetcli ?", RESET_USAGE)]
)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port -s stats {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
