"""The fcping node: `run` in both forms."""

import pytest

from zfc import documents
from zfc.diag import (
    LIST_CALL,
    LOOKUP,
    NAME,
    NO_LOG,
    FreshLog,
    check_failures,
    no_output_file,
    one_port,
    port_failures,
    script,
    step,
)
from zfc.documents import check_both
from zfc.host import NO_LIST
from zfc.port import IDENTIFIER

RUN = "-t port -s fcping run"
USAGE = "Usage: set\r\n"

INVALID = "Failed, Invalid parameter"
NO_TARGET = "Failed, Target not found"
LINK_DOWN = "Failed, Feature requires link up"

WORDS = [IDENTIFIER, NAME, "5", "true"]


@pytest.fixture
def zfc(zfc):
    return FreshLog(zfc)


def call(name=NAME, count=5, stop=1):
    zeros = 32 - len(name)
    return (
        f'TORPI_DiagnosticsFCPingTest(port, "{name}" and {zeros} zeros, {count}, {stop}, size 256, 0, zeroed buffer)'
    )


def check_run(zfc, message="Success", arguments=WORDS, label="Test Result", **options):
    options.setdefault("host", one_port())
    return check_both(
        zfc, RUN, "port/fcping/report", words=arguments, values={"label": label, "message": message}, **options
    )


def test_success(zfc):
    assert check_run(zfc).command_calls == [LIST_CALL, call()]


def test_more_words_are_left_aside(zfc):
    assert check_run(zfc, arguments=[*WORDS, "help"]).command_calls == [LIST_CALL, call()]


# The checks in their order: each row fails at one check and at all that follow.
@pytest.mark.parametrize(
    "arguments, options, message, usage, calls",
    [
        pytest.param([], {}, INVALID, USAGE, [], id="nothing"),
        pytest.param(["help"], {}, "Failed, Unknown", USAGE, [], id="help word"),
        pytest.param(["nobody"], {}, INVALID, USAGE, [], id="bad identifier"),
        pytest.param([IDENTIFIER[:-1] + "6"], {}, INVALID, USAGE, [LIST_CALL], id="unknown identifier"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param(
            [IDENTIFIER],
            {"host": one_port(interface=3, state=3)},
            "Failed, Feature not supported for virtual port",
            "",
            [LIST_CALL],
            id="virtual port",
        ),
        pytest.param([IDENTIFIER], {"host": one_port(state=3)}, LINK_DOWN, "", [LIST_CALL], id="link down"),
        pytest.param([IDENTIFIER, "nobody"], {}, INVALID, USAGE, [LIST_CALL], id="no count"),
        pytest.param(
            [IDENTIFIER, "nobody", "1"],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            NO_TARGET,
            "",
            [LIST_CALL],
            id="target",
        ),
        pytest.param(
            [IDENTIFIER, NAME, "1"],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            "Failed, File not found",
            "",
            [LIST_CALL],
            id="no library log",
        ),
    ],
)
def test_failure(zfc, arguments, options, message, usage, calls):
    result = check_run(zfc, message, arguments, usage=usage, **options)
    assert result.command_calls == calls


@pytest.mark.parametrize("result", [1, 34, 149, 151, 0xFFFFFFFF])
def test_test_fails(zfc, result):
    made = check_run(zfc, "Failed, Diagnostic test failed", env=script(DiagnosticsFCPingTest=[step(result)]))
    assert made.command_calls == [LIST_CALL, call()]


def test_maintenance_mode_is_under_message(zfc):
    message = "Failed, Command not supported when adapter port in maintenance mode"
    made = check_run(zfc, message, label="Message", env=script(DiagnosticsFCPingTest=[step(150)]))
    assert b"Test Result" not in made.xml.stdout + made.text.stdout


@pytest.mark.parametrize("word, stop", [("true", 1), ("True", 1), ("false", 0), ("perhaps", 0), ("", 0), (None, 0)])
def test_stop_on_error(zfc, word, stop):
    made = check_run(zfc, arguments=[*WORDS[:3], *([] if word is None else [word])])
    assert made.command_calls == [LIST_CALL, call(stop=stop)]


@pytest.mark.parametrize("word, name", [(NAME.upper(), NAME), ("", "00:" * 7 + "00"), ("1:2", "01:02" + ":00" * 6)])
def test_name(zfc, word, name):
    made = check_run(zfc, arguments=[IDENTIFIER, word, "5", "true"], host=one_port(targets=[name]))
    assert made.command_calls == [LIST_CALL, call(name)]


class TestEdgeCases:
    @pytest.mark.parametrize("count", ["0", "65536", "x", ""])
    def test_bad_count_wins_over_an_unknown_target(self, zfc, count):
        check_run(zfc, INVALID, [IDENTIFIER, "nobody", count, "true"], usage=USAGE)

    def test_unknown_target_with_a_good_count(self, zfc):
        check_run(zfc, NO_TARGET, [IDENTIFIER, NAME[:-1] + "f", "1", "true"])

    @pytest.mark.parametrize("count", [1, 65535])
    def test_bounds_that_pass(self, zfc, count):
        made = check_run(zfc, arguments=[IDENTIFIER, NAME, str(count), "true"])
        assert made.command_calls == [LIST_CALL, call(count=count)]

    @pytest.mark.parametrize("count", ["0", "65536", "-1", "4294967297"])
    def test_bounds_that_do_not(self, zfc, count):
        made = check_run(zfc, INVALID, [IDENTIFIER, NAME, count, "true"], usage=USAGE)
        assert made.command_calls == [LIST_CALL]

    def test_link_down_with_a_bad_name_and_count(self, zfc):
        check_run(zfc, LINK_DOWN, [IDENTIFIER, "nobody", "0", "perhaps"], host=one_port(state=2))


@pytest.mark.parametrize("result, code", [(0, 0), (1, 34), (150, 60)])
def test_code(zfc, result, code):
    env = script(DiagnosticsFCPingTest=[step(result)])
    assert zfc([*RUN.split(), *WORDS], host=one_port(), env=env, debug=1).code == code


def test_help(zfc):
    result = zfc("-t port -s fcping help")
    documents.check(result.stdout, "port/fcping/help.txt")
    assert result.command_calls == []


def test_question_mark_prints_the_usage_of_the_leaf(zfc):
    assert zfc(f"{RUN}cli ?").stdout == USAGE.encode()
    assert zfc(f"{RUN} ?").stdout == b""


class TestDebugLog:
    CLASS = "PhysicalPortFCPingCmdsProcessor"
    FUNCTION = f"{CLASS}::CmdRunCommon"

    def test_failures(self, zfc):
        rows = [
            *port_failures(self.FUNCTION, IDENTIFIER, *WORDS[1:]),
            (WORDS, {"host": one_port(state=2)}, [f"{self.FUNCTION}: Port is in Link Down state"]),
            ([IDENTIFIER, NAME, "0x5"], {}, [f"{self.FUNCTION}: Invalid test count 0x5"]),
            ([IDENTIFIER, "1:2", "5"], {}, [f"{self.FUNCTION}: Target 01:02:00:00:00:00:00:00 not found"]),
            (WORDS, NO_LOG, no_output_file(self.FUNCTION)),
            (WORDS, {"env": script(DiagnosticsFCPingTest=[step()])}, []),
            (
                WORDS,
                {"env": script(DiagnosticsFCPingTest=[step(0xFFFFFFFF)])},
                [f"{self.FUNCTION}: Diagnostic test failed err=-1"],
            ),
            (
                WORDS,
                {"env": script(DiagnosticsFCPingTest=[step(150)])},
                [f"{self.FUNCTION}: Diagnostic test failed err=150"],
            ),
        ]
        check_failures(zfc, RUN, rows)

    @pytest.mark.parametrize("form, function", [("", "CmdRun"), ("cli", "CmdRunCli")])
    @pytest.mark.parametrize(
        "result, message",
        [
            (0, "Test Result=Success"),
            (150, "Message=Failed, Command not supported when adapter port in maintenance mode"),
        ],
    )
    def test_steps(self, zfc, form, function, result, message):
        env = script(DiagnosticsFCPingTest=[step(result)])
        made = zfc([*f"{RUN}{form}".split(), *WORDS], host=one_port(), env=env, debug=65535)
        assert made.steps == [
            f"{self.CLASS}::{function}: Entered",
            f"{self.FUNCTION}: Entered",
            f"{LOOKUP}: Entered",
            f"{LOOKUP}: Exiting",
            f"{self.CLASS}::DisplayFCPingResult: Entered",
            f"{self.CLASS}::DisplayFCPingResult: {message}",
            f"{self.CLASS}::DisplayFCPingResult: Exiting",
            f"{self.FUNCTION}: Exiting",
            f"{self.CLASS}::{function}: Exiting",
        ]
