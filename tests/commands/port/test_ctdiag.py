"""The ctdiag node: `run` in both forms."""

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
from zfc.host import NO_LIST, every_device
from zfc.port import IDENTIFIER

RUN = "-t port -s ctdiag run"
USAGE = "Usage: set\r\n"

INVALID = "Failed, Invalid parameter"
NO_TARGET = "Failed, Target not found"

WORDS = [IDENTIFIER, "CTPing", NAME, "5", "true"]


@pytest.fixture
def zfc(zfc):
    return FreshLog(zfc)


def call(name=NAME, count=5, stop=1, type=1):
    zeros = 32 - len(name)
    return (
        f'TORPI_DiagnosticsCTCommand(port, "{name}" and {zeros} zeros, {count}, {stop}, size 256, type {type},'
        " 0, zeroed buffer)"
    )


def words(**replaced):
    """The words of a run that works, some replaced."""
    places = {"port": 0, "type": 1, "name": 2, "count": 3, "stop": 4}
    made = list(WORDS)
    for key, value in replaced.items():
        made[places[key]] = value
    return made


def check_run(zfc, message="Success", test="CTPing", arguments=WORDS, label="Test Result", **options):
    options.setdefault("host", one_port())
    values = {"test": test, "label": label, "message": message}
    return check_both(zfc, RUN, "port/ctdiag/report", words=arguments, values=values, **options)


@pytest.mark.parametrize("word, type, test", [("CTPing", 1, "CTPing"), ("CTFCTraceRoute", 2, "CTFCTraceRoute")])
def test_success(zfc, word, type, test):
    result = check_run(zfc, test=test, arguments=words(type=word))
    assert result.command_calls == [LIST_CALL, call(type=type)]


@pytest.mark.parametrize("device", [every_device()[0], *every_device()[-3:]], ids=hex)
def test_any_family(zfc, device):
    check_run(zfc, host=one_port(device=device))


def test_more_words_are_left_aside(zfc):
    check_run(zfc, arguments=[*WORDS, "help", "?", "more"])


# The checks in their order: each row fails at one check and at all that follow.
@pytest.mark.parametrize(
    "arguments, options, message, test, usage, calls",
    [
        pytest.param([], {}, INVALID, "Unknown", USAGE, [], id="nothing"),
        pytest.param(["nobody"], {}, INVALID, "Unknown", USAGE, [], id="no test type"),
        pytest.param(["help"], {}, INVALID, "Unknown", USAGE, [], id="help word and no test type"),
        *[
            pytest.param(["nobody", word], {}, INVALID, "Unknown", USAGE, [], id=f"test type {word!r}")
            for word in ("", "CTPin", "CTPings", "Ping", "CTPing ", "1", "Unknown")
        ],
        pytest.param(["help", "CTPing"], {}, "Failed, Unknown", "CTPing", USAGE, [], id="help word"),
        pytest.param(["nobody", "ctfctraceroute"], {}, INVALID, "CTFCTraceRoute", USAGE, [], id="bad identifier"),
        pytest.param(
            [IDENTIFIER[:-1] + "6", "CTPing"], {}, INVALID, "CTPing", USAGE, [LIST_CALL], id="unknown identifier"
        ),
        pytest.param(
            [IDENTIFIER, "CTPing"], {"host": NO_LIST}, "Failed, Host not found", "CTPing", "", [LIST_CALL], id="no list"
        ),
        pytest.param(
            [IDENTIFIER, "CTPing"],
            {"host": one_port(interface=3, state=3)},
            "Failed, Feature not supported for virtual port",
            "CTPing",
            "",
            [LIST_CALL],
            id="virtual port",
        ),
        *[
            pytest.param(
                [IDENTIFIER, "CTPing"],
                {"host": one_port(state=state)},
                "Failed, Feature requires link up",
                "CTPing",
                "",
                [LIST_CALL],
                id=f"link state {state}",
            )
            for state in (0, 2, 3, 255)
        ],
        pytest.param([IDENTIFIER, "CTPing", "nobody"], {}, INVALID, "CTPing", USAGE, [LIST_CALL], id="no count"),
        pytest.param(
            [IDENTIFIER, "CTPing", "nobody", "0"], {}, INVALID, "CTPing", USAGE, [LIST_CALL], id="count and target"
        ),
        pytest.param(
            [IDENTIFIER, "CTPing", "nobody", "1"],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            NO_TARGET,
            "CTPing",
            "",
            [LIST_CALL],
            id="target",
        ),
        pytest.param(
            [IDENTIFIER, "CTPing", NAME, "1"],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            "Failed, File not found",
            "CTPing",
            "",
            [LIST_CALL],
            id="no library log",
        ),
    ],
)
def test_failure(zfc, arguments, options, message, test, usage, calls):
    result = check_run(zfc, message, test, arguments, usage=usage, **options)
    assert result.command_calls == calls


@pytest.mark.parametrize("result", [1, 6, 13, 149, 151, 0xFFFFFFFF])
def test_test_fails(zfc, result):
    env = script(DiagnosticsCTCommand=[step(result)])
    made = check_run(zfc, "Failed, Diagnostic test failed", env=env)
    assert made.command_calls == [LIST_CALL, call()]


@pytest.mark.parametrize(
    "word, count",
    [("1", 1), ("65535", 65535), ("010", 10), ("+7", 7), (" 7", 7), ("7x", 7), ("7.9", 7), ("7 8", 7)],
)
def test_count(zfc, word, count):
    made = check_run(zfc, arguments=words(count=word))
    assert made.command_calls == [LIST_CALL, call(count=count)]


@pytest.mark.parametrize(
    "word",
    [
        "0",
        "65536",
        "-1",
        "-65535",
        "",
        "x",
        "x7",
        "0x10",
        "4294967296",
        "4294967297",
        "18446744073709551615",
        "18446744073709551617",
        "-18446744073709551615",
        "9" * 400,
    ],
)
def test_count_out_of_bounds(zfc, word):
    made = check_run(zfc, INVALID, arguments=words(count=word), usage=USAGE)
    assert made.command_calls == [LIST_CALL]


@pytest.mark.parametrize("word, stop", [("true", 1), ("TRUE", 1), ("tRuE", 1), ("false", 0), ("FALSE", 0)])
def test_stop_on_error(zfc, word, stop):
    made = check_run(zfc, arguments=words(stop=word))
    assert made.command_calls == [LIST_CALL, call(stop=stop)]


def test_no_stop_word_means_false(zfc):
    made = check_run(zfc, arguments=WORDS[:4])
    assert made.command_calls == [LIST_CALL, call(stop=0)]


class TestTarget:
    """How the target's word reads: each row is found only under the name beside it."""

    ROWS = [
        ("50:01:43:80:2e:5f:a0:6c", "50:01:43:80:2e:5f:a0:6c"),
        ("5:1:2:3:4:a:b:c", "05:01:02:03:04:0a:0b:0c"),
        ("0x50:01:43:80:2e:5f:a0:6c", "50:01:43:80:2e:5f:a0:6c"),
        (" 50: 01:43:80:2e:5f:a0:6c", "50:01:43:80:2e:5f:a0:6c"),
        ("50:01:43:80:2e:5f:a0:6c:7d", "50:01:43:80:2e:5f:a0:6c"),
        ("50:01:43:80:2e:5f:a0:6cxyz", "50:01:43:80:2e:5f:a0:6c"),
        ("50:01:43:80:2e:5f:a0", "50:01:43:80:2e:5f:a0:00"),
        ("50:01:43", "50:01:43:00:00:00:00:00"),
        ("50:01:43:", "50:01:43:00:00:00:00:00"),
        ("50-01-43-80-2e-5f-a0-6c", "50:00:00:00:00:00:00:00"),
        ("50:xx:43:80:2e:5f:a0:6c", "50:00:00:00:00:00:00:00"),
        ("150:01:43:80:2e:5f:a0:6c", "50:01:43:80:2e:5f:a0:6c"),  # an octet keeps its low 8 bits
        ("", "00:00:00:00:00:00:00:00"),
        ("nobody", "00:00:00:00:00:00:00:00"),
        ("FC_50:01:43:80:2e:5f:a0:6c", "fc:00:00:00:00:00:00:00"),
    ]

    @pytest.mark.parametrize("word, name", ROWS)
    def test_reading(self, zfc, word, name):
        made = check_run(zfc, arguments=words(name=word), host=one_port(targets=[name]))
        assert made.command_calls == [LIST_CALL, call(name)]

    @pytest.mark.parametrize("word", [word for word, _ in ROWS])
    def test_another_target(self, zfc, word):
        host = one_port(targets=["50:01:43:80:2e:5f:a0:6d", "51:01:43:80:2e:5f:a0:6c"])
        made = check_run(zfc, NO_TARGET, arguments=words(name=word), host=host)
        assert made.command_calls == [LIST_CALL]

    @pytest.mark.parametrize("targets", [[NAME], [NAME, NAME], ["00:" * 7 + "00", "ff:" * 7 + "ff", NAME]])
    def test_place_in_the_list(self, zfc, targets):
        check_run(zfc, host=one_port(targets=targets))

    def test_fabric_is_no_target(self, zfc):
        check_run(zfc, NO_TARGET, arguments=words(name="10:00:c4:f5:7c:10:20:01"))


class TestEdgeCases:
    @pytest.mark.parametrize("word", ["ctping", "CTPING", "cTpInG"])
    def test_type_in_mixed_case(self, zfc, word):
        made = check_run(zfc, arguments=words(type=word))
        assert made.command_calls == [LIST_CALL, call()]

    def test_wrong_type_and_bad_port(self, zfc):
        made = check_run(zfc, INVALID, "Unknown", words(port="nobody", type="nothing"), usage=USAGE)
        assert made.command_calls == []

    def test_stop_word_that_is_neither(self, zfc):
        for word in ("perhaps", "1", "yes", "true ", ""):
            made = check_run(zfc, arguments=words(stop=word))
            assert made.command_calls == [LIST_CALL, call(stop=0)]

    def test_name_with_too_few_octets(self, zfc):
        check_run(zfc, NO_TARGET, arguments=words(name=NAME[:-3]))

    def test_upper_case_name_reaches_the_library_as_lower_case(self, zfc):
        made = check_run(zfc, arguments=words(name=NAME.upper()))
        assert made.command_calls == [LIST_CALL, call(NAME)]

    def test_port_without_targets(self, zfc):
        check_run(zfc, NO_TARGET, host=one_port(targets=[]))

    def test_maintenance_mode_is_under_message(self, zfc):
        message = "Failed, Command not supported when adapter port in maintenance mode"
        env = script(DiagnosticsCTCommand=[step(150)])
        made = check_run(zfc, message, label="Message", env=env)
        assert b"Test Result" not in made.xml.stdout + made.text.stdout


@pytest.mark.parametrize(
    "result, code", [(0, 0), (1, 34), (150, 60)], ids=["success", "failure", "maintenance mode"]
)
def test_code(zfc, result, code):
    env = script(DiagnosticsCTCommand=[step(result)])
    assert zfc([*RUN.split(), *WORDS], host=one_port(), env=env, debug=1).code == code


def test_help(zfc):
    result = zfc("-t port -s ctdiag help")
    documents.check(result.stdout, "port/ctdiag/help.txt")
    assert result.command_calls == []


def test_question_mark_prints_the_usage_of_the_leaf(zfc):
    assert zfc(f"{RUN}cli ?").stdout == USAGE.encode()
    assert zfc(f"{RUN} ?").stdout == b""


class TestDebugLog:
    CLASS = "PhysicalPortCTDiagCmdsProcessor"
    FUNCTION = f"{CLASS}::CmdRunCommon"

    def test_failures(self, zfc):
        missing = "50:01:43:80:2e:5f:a0:6f"
        rows = [
            ([], {}, [f"{self.FUNCTION}: Invalid test type "]),
            ([IDENTIFIER, "Ping %s"], {}, [f"{self.FUNCTION}: Invalid test type Ping %s"]),
            *port_failures(self.FUNCTION, IDENTIFIER, *WORDS[1:])[3:],
            (WORDS, {"host": one_port(state=3)}, [f"{self.FUNCTION}: Port is in Link Down state"]),
            (words(count="65536"), {}, [f"{self.FUNCTION}: Invalid test count 65536"]),
            (WORDS[:3], {}, [f"{self.FUNCTION}: Invalid test count "]),
            (words(name=missing.upper()), {}, [f"{self.FUNCTION}: Target {missing} not found"]),
            (WORDS, NO_LOG, no_output_file(self.FUNCTION)),
        ]
        check_failures(zfc, RUN, rows)

    @pytest.mark.parametrize("result, shown", [(0, None), (1, 1), (150, 150), (0xFFFFFFFF, -1)])
    def test_answer_of_the_library(self, zfc, result, shown):
        env = script(DiagnosticsCTCommand=[step(result)])
        lines = [] if shown is None else [f"{self.FUNCTION}: Diagnostic test failed err={shown}"]
        check_failures(zfc, RUN, [(WORDS, {"env": env}, lines)])

    @pytest.mark.parametrize("form, function", [("", "CmdRun"), ("cli", "CmdRunCli")])
    @pytest.mark.parametrize(
        "result, message",
        [
            (0, "Test Result=Success"),
            (1, "Test Result=Failed, Diagnostic test failed"),
            (150, "Message=Failed, Command not supported when adapter port in maintenance mode"),
        ],
    )
    def test_steps(self, zfc, form, function, result, message):
        env = script(DiagnosticsCTCommand=[step(result)])
        made = zfc([*f"{RUN}{form}".split(), *WORDS], host=one_port(), env=env, debug=65535)
        assert made.steps == [
            f"{self.CLASS}::{function}: Entered",
            f"{self.FUNCTION}: Entered",
            f"{LOOKUP}: Entered",
            f"{LOOKUP}: Exiting",
            f"{self.CLASS}::DisplayCTDiagResult: Entered",
            f"{self.CLASS}::DisplayCTDiagResult: {message}",
            f"{self.CLASS}::DisplayCTDiagResult: Exiting",
            f"{self.FUNCTION}: Exiting",
            f"{self.CLASS}::{function}: Exiting",
        ]
