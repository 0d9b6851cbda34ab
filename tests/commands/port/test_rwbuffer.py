"""The rwbuffer node: `run` in both forms."""

import pytest

from zfc import documents
from zfc.diag import (
    LIST_CALL,
    LOOKUP,
    NO_LOG,
    FreshLog,
    check_failures,
    no_output_file,
    one_port,
    port_failures,
    request,
    rw_node,
    script,
    step,
)
from zfc.documents import check_both
from zfc.host import NO_LIST, every_device
from zfc.port import IDENTIFIER
from zfc.runner import SESSION_START, chatter
from zfc.terminal import errors_at_terminal

RUN = "-t port -s rwbuffer run"
USAGE = "Usage: run\r\n"

INVALID = "Failed, Invalid parameter"
BAD_PATTERN = "Failed, Custom Data should be of 8 chars separated by '-' (hifen)"
MAINTENANCE = "Failed, Command not supported when adapter port in maintenance mode"
NO_FILE = "Failed, File not found"
NO_RESPONSE = "Failed, Response data not available"

SIZES = [8, 16, 32, 64, 128]
IN_MAINTENANCE = (0x04, 0x01)

GOOD = step(0, rw_node())
FAILED = step(0, rw_node("Failed"))
NULL = step(0, null=True)


@pytest.fixture
def zfc(zfc):
    return FreshLog(zfc)


def words(count="1", increment="1", size="8", on_error="Ignore", pattern="Random"):
    return [IDENTIFIER, count, increment, size, on_error, pattern]


def call(**fields):
    return f"TORPI_DiagnosticsReadWriteBufferTest(port, {request(**fields)})"


def free(number):
    return f"TORPI_FreeRWBufferTestResultList(list {number})"


def all_calls(made, **fields):
    """The calls of a run of so many passes that each answer a list."""
    calls = [LIST_CALL, call(**fields)]
    for number in range(1, made):
        calls += [call(**fields), free(number)]
    return [*calls, free(made)]


def passes(*steps):
    return script(DiagnosticsReadWriteBufferTest=steps)


def check_run(zfc, arguments, *, name="report", status="Success", counters=(1, 1, 0), env=None, **options):
    """`counters`: iteration, successes, failures."""
    options.setdefault("host", one_port())
    values = dict(zip(("iteration", "good", "bad"), counters))
    if name == "report":
        values["status"] = status
    env = env or passes(GOOD)
    return check_both(zfc, RUN, f"port/rwbuffer/{name}", words=arguments, values=values, env=env, **options)


def check_failed(zfc, message, arguments, **options):
    options.setdefault("host", one_port())
    return check_both(zfc, RUN, "port/rwbuffer/failed", words=arguments, values={"message": message}, **options)


def test_success(zfc):
    assert check_run(zfc, words()).command_calls == all_calls(1)


@pytest.mark.parametrize("device", every_device()[::4], ids=hex)
def test_any_family_without_a_link(zfc, device):
    check_run(zfc, words(), host=one_port(device=device, state=3))


def test_more_words_are_left_aside(zfc):
    assert check_run(zfc, [*words(), "help", "more"]).command_calls == all_calls(1)


# The checks in their order: each row fails at one check and at all that follow.
LAST_CHECKS = {"host": one_port(flags=IN_MAINTENANCE), "spoil_log": "TORPI_GetAdapterList:directory"}


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
            {"host": one_port(interface=3)},
            "Failed, Feature not supported for virtual port",
            "",
            [LIST_CALL],
            id="virtual port",
        ),
        pytest.param([IDENTIFIER], LAST_CHECKS, INVALID, USAGE, [LIST_CALL], id="no count"),
        pytest.param([IDENTIFIER, "1"], LAST_CHECKS, INVALID, USAGE, [LIST_CALL], id="no increment"),
        pytest.param([IDENTIFIER, "1", "1"], LAST_CHECKS, INVALID, USAGE, [LIST_CALL], id="no size"),
        pytest.param(
            [*words(on_error="x", pattern="Custom"), "-d", "x"], LAST_CHECKS, BAD_PATTERN, "", [LIST_CALL], id="pattern"
        ),
        pytest.param([IDENTIFIER, "1", "1", "8"], LAST_CHECKS, MAINTENANCE, "", [LIST_CALL], id="maintenance"),
        pytest.param(
            words(), {"spoil_log": "TORPI_GetAdapterList:directory"}, NO_FILE, "", [LIST_CALL], id="no library log"
        ),
    ],
)
def test_failure(zfc, arguments, options, message, usage, calls):
    result = check_failed(zfc, message, arguments, usage=usage, **options)
    assert result.command_calls == calls


@pytest.mark.parametrize("word, count", [("1", 1), ("10000", 10000), ("12abc", 12)])
def test_count(zfc, word, count):
    assert check_run(zfc, words(count=word)).command_calls == all_calls(1, count=count)


@pytest.mark.parametrize("word", ["0", "10001", "65535", "-1", "2147483648", "4294967297", "", "x", "0x10"])
@pytest.mark.parametrize("place", ["count", "increment"])
def test_count_or_increment_out_of_bounds(zfc, place, word):
    made = check_failed(zfc, INVALID, words(**{place: word}), usage=USAGE)
    assert made.command_calls == [LIST_CALL]


@pytest.mark.parametrize("increment", [1, 2, 5])
def test_increment(zfc, increment):
    made = check_run(zfc, words(increment=str(increment)), counters=(increment, increment, 0))
    assert made.command_calls == all_calls(increment)


def test_greatest_increment(zfc):
    env = passes(FAILED)
    check_run(
        zfc, words(increment="10000", on_error="Stop"), status="Failed", counters=(0, 0, 1), env=env
    )


@pytest.mark.parametrize("size", SIZES)
def test_size(zfc, size):
    assert check_run(zfc, words(size=str(size))).command_calls == all_calls(1, size=size)


@pytest.mark.parametrize("word", ["7", "9", "15", "17", "127", "129", "256", "65535", "0", "", "x", "4294967304"])
def test_other_size(zfc, word):
    made = check_failed(zfc, INVALID, words(size=word), usage=USAGE)
    assert made.command_calls == [LIST_CALL]


@pytest.mark.parametrize("word, action", [("IGNORE", 0), ("stop", 1), ("Stop", 1), ("loop", 2), ("", 0), ("x", 0)])
def test_on_error_action(zfc, word, action):
    assert check_run(zfc, words(on_error=word)).command_calls == all_calls(1, on_error=action)


@pytest.mark.parametrize(
    "word, kind, characters",
    [
        ("random", 0, b""),
        ("CRPAT", 1, b""),
        ("cjtpat", 2, b""),
        ("CSPAT", 3, b""),
        ("custom", 4, b""),
        ("00000000", 5, b"00000000"),
        ("01010101", 5, b"01010101"),
        ("01011010", 5, b"01011010"),
        ("10100101", 5, b"10100101"),
        ("10101010", 5, b"10101010"),
        ("11111111", 5, b"11111111"),
        ("nothing", 0, b""),
    ],
)
def test_pattern(zfc, word, kind, characters):
    made = check_run(zfc, words(pattern=word))
    assert made.command_calls == all_calls(1, kind=kind, pattern=characters)


@pytest.mark.parametrize("arguments", [words()[:4], words()[:5]])
def test_missing_action_and_pattern(zfc, arguments):
    assert check_run(zfc, arguments).command_calls == all_calls(1)


@pytest.mark.parametrize("option", ["-d", "--data-pattern", "-D"])
def test_custom_pattern(zfc, option):
    made = check_run(zfc, [*words(pattern="Custom"), option, "1-a-2-b-3-c-4-d"])
    assert made.command_calls == all_calls(1, kind=4, pattern=b"1a2b3c4d")


@pytest.mark.parametrize("value", ["12345678", "1-a-2-b-3-c-4d", ""])
def test_bad_custom_pattern(zfc, value):
    made = check_failed(zfc, BAD_PATTERN, [*words(pattern="Custom"), "-d", value])
    assert made.command_calls == [LIST_CALL]


def test_connection_mode_does_not_go_along(zfc):
    made = check_run(zfc, words(), host=one_port(connection=255))
    assert made.command_calls == all_calls(1)


class TestPasses:
    @pytest.mark.parametrize("on_error", ["Ignore", "Loop", "x"])
    def test_failures_in_between(self, zfc, on_error):
        env = passes(GOOD, FAILED, GOOD, FAILED, GOOD)
        check_run(zfc, words(increment="5", on_error=on_error), counters=(5, 3, 2), env=env)

    def test_stop(self, zfc):
        env = passes(GOOD, GOOD, FAILED, GOOD)
        made = check_run(
            zfc, words(increment="9", on_error="Stop"), status="Failed", counters=(2, 2, 1), env=env
        )
        assert made.command_calls == all_calls(3, on_error=1)

    @pytest.mark.parametrize("status", ["", "success", "Success ", "Succes", "Failed"])
    def test_only_success_is_one(self, zfc, status):
        env = passes(step(0, rw_node(status)))
        check_run(zfc, words(), status=status, counters=(1, 0, 1), env=env)

    def test_first_node_decides(self, zfc):
        nodes = [
            rw_node("Success", (0x01, 0x0A, 0x00), (0, 0, 0, 0, 0)),
            rw_node("B" * 260, (0xFF, 0xFE, 0xFD), (0xFFFFFFFF, 0x80000000, 3, 4, 5)),
            rw_node("", (0, 0, 0), (0, 0, 0, 0, 0xFFFFFFFF)),
        ]
        check_run(zfc, words(), name="three", env=passes(step(0, *nodes)))
        env = passes(step(0, rw_node("Failed")), step(0, *nodes))
        check_run(zfc, words(increment="2"), name="three", counters=(2, 1, 1), env=env)

    def test_last_list_is_shown(self, zfc):
        env = passes(step(0, rw_node(port_id=(9, 9, 9)), rw_node()), GOOD)
        made = check_run(zfc, words(increment="2"), counters=(2, 2, 0), env=env)
        assert made.command_calls == all_calls(2)

    @pytest.mark.parametrize("on_error", ["Ignore", "Stop", "Loop"])
    def test_null_in_the_first_pass(self, zfc, on_error):
        made = check_failed(zfc, NO_RESPONSE, words(increment="3", on_error=on_error), env=passes(NULL))
        assert len(made.command_calls) == 2

    def test_library_log_lost_between_passes(self, zfc):
        """Nothing of the passes before it is shown, and their last list is freed all the same."""
        env = passes(GOOD, step(0, rw_node(), spoils=True), GOOD)
        made = check_failed(zfc, NO_FILE, words(increment="4"), env=env)
        assert made.command_calls == [LIST_CALL, call(), call(), free(1), free(2)]

    def test_percent_signs_are_kept_as_they_are(self, zfc):
        check_run(zfc, words(), status="%s%n%", counters=(1, 0, 1), env=passes(step(0, rw_node("%s%n%"))))


class TestFreeing:
    FREE = "TORPI_FreeRWBufferTestResultList"

    def test_outside_any_bracket_after_the_document(self, zfc):
        made = zfc([*RUN.split(), *words()], host=one_port(), env=passes(GOOD), chatter=self.FREE)
        assert made.stdout.endswith(b"</output>\n" + chatter(self.FREE))

    def test_list_of_an_earlier_pass_is_freed_before_the_document(self, zfc):
        run = [*RUN.split(), *words(increment="3")]
        made = zfc(run, host=one_port(), env=passes(GOOD), chatter=self.FREE)
        assert made.stdout.startswith(chatter(self.FREE, self.FREE) + b"<?xml")
        assert made.stdout.endswith(b"</output>\n" + chatter(self.FREE))
        assert made.calls[:3] == SESSION_START

    def test_result_does_not_count(self, zfc):
        check_run(zfc, words(), results={self.FREE: 150})


class TestEdgeCases:
    def test_greatest_count(self, zfc):
        check_run(zfc, words(count="10000"))
        check_failed(zfc, INVALID, words(count="10001"), usage=USAGE)

    def test_size_that_only_the_loopback_test_knows(self, zfc):
        check_failed(zfc, INVALID, words(size="256"), usage=USAGE)

    def test_null_list_in_the_third_pass(self, zfc):
        env = passes(GOOD, GOOD, NULL, GOOD)
        made = check_failed(zfc, NO_RESPONSE, words(increment="9"), env=env)
        assert made.command_calls == [LIST_CALL, call(), call(), free(1), call(), free(2)]

    def test_maintenance_mode_comes_before_the_first_bracket(self, zfc):
        made = check_failed(zfc, MAINTENANCE, words(), **LAST_CHECKS)
        assert made.command_calls == [LIST_CALL]


class TestMaintenance:
    @pytest.mark.parametrize("flags", [(0x04, 0x00), (0x00, 0x01), (0xFB, 0xFF), (0xFF, 0xFE)])
    def test_one_flag_alone(self, zfc, flags):
        check_run(zfc, words(), host=one_port(flags=flags))


class TestProgress:
    def test_text_form_at_a_terminal(self, zfc):
        run = [*f"{RUN}cli".split(), *words(increment="2")]
        stdout, seen = errors_at_terminal(zfc, run, host=one_port(), env=passes(GOOD))
        documents.check(stdout, "port/rwbuffer/report.txt", status="Success", iteration=2, good=2, bad=0)
        assert seen == b"\rpass 1 of 2\rpass 2 of 2\r" + b" " * 11 + b"\r"

    def test_xml_form_shows_nothing(self, zfc):
        run = [*RUN.split(), *words(increment="2")]
        assert errors_at_terminal(zfc, run, host=one_port(), env=passes(GOOD))[1] == b""


@pytest.mark.parametrize("steps, code", [([GOOD], 0), ([FAILED], 0), ([NULL], 46)])
def test_code(zfc, steps, code):
    assert zfc([*RUN.split(), *words()], host=one_port(), env=passes(*steps), debug=1).code == code


def test_help(zfc):
    result = zfc("-t port -s rwbuffer help")
    documents.check(result.stdout, "port/rwbuffer/help.txt")
    assert result.command_calls == []


def test_question_mark_prints_the_usage_of_the_leaf(zfc):
    assert zfc(f"{RUN}cli ?").stdout == USAGE.encode()
    assert zfc(f"{RUN} ?").stdout == b""


class TestDebugLog:
    CLASS = "PhysicalPortRWBufferCmdsProcessor"
    FUNCTION = f"{CLASS}::CmdRunCommon"

    def test_failures(self, zfc):
        custom = [*words(pattern="Custom"), "-d", "abc"]
        rows = [
            *port_failures(self.FUNCTION, IDENTIFIER, *words()[1:]),
            (words(count="10001"), {}, [f"{self.FUNCTION}: Invalid test count 10001"]),
            (words(increment="-1"), {}, [f"{self.FUNCTION}: Invalid test increment -1"]),
            (words(size="256"), {}, [f"{self.FUNCTION}: Invalid data size 256"]),
            (custom, {}, [f"{self.FUNCTION}: Invalid data pattern abc"]),
            (
                words(),
                {"host": one_port(flags=IN_MAINTENANCE)},
                [f"{self.FUNCTION}: Port is in maintenance mode"],
            ),
            (words(), NO_LOG, no_output_file(self.FUNCTION)),
            (words(), {"env": passes(NULL)}, [f"{self.FUNCTION}: Response data not available"]),
            (words(increment="3"), {"env": passes(GOOD, NULL)}, [f"{self.FUNCTION}: Response data not available"]),
            (words(increment="2"), {"env": passes(GOOD, FAILED)}, []),  # the document has the failure
        ]
        check_failures(zfc, RUN, rows)

    @pytest.mark.parametrize("form, function", [("", "CmdRun"), ("cli", "CmdRunCli")])
    @pytest.mark.parametrize(
        "answer, display, message",
        [(GOOD, "DisplayRWBufferTestResult", "Success"), (NULL, "DisplayError", NO_RESPONSE)],
    )
    def test_steps(self, zfc, form, function, answer, display, message):
        made = zfc([*f"{RUN}{form}".split(), *words()], host=one_port(), env=passes(answer), debug=1)
        assert made.steps == [
            f"{self.CLASS}::{function}: Entered",
            f"{self.FUNCTION}: Entered",
            f"{LOOKUP}: Entered",
            f"{LOOKUP}: Exiting",
            f"{self.CLASS}::{display}: Entered",
            f"{self.CLASS}::{display}: Message={message}",
            f"{self.CLASS}::{display}: Exiting",
            f"{self.FUNCTION}: Exiting",
            f"{self.CLASS}::{function}: Exiting",
        ]
