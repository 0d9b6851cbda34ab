"""The fcecho node: `run` in both forms."""

import pytest

from zfc import documents
from zfc.diag import (
    FABRIC_NAME,
    LIST_CALL,
    LOOKUP,
    LOST,
    NAME,
    NO_LOG,
    FreshLog,
    check_failures,
    echo,
    no_output_file,
    one_port,
    port_failures,
    script,
    step,
)
from zfc.documents import check_both
from zfc.host import NO_LIST
from zfc.port import IDENTIFIER
from zfc.terminal import errors_at_terminal

RUN = "-t port -s fcecho run"
USAGE = "Usage: set\r\n"

INVALID = "Failed, Invalid parameter"
NO_TARGET = "Failed, Target not found"
TEST_FAILED = "Failed, Diagnostic test failed"
MAINTENANCE = "Failed, Command not supported when adapter port in maintenance mode"
NO_FILE = "Failed, File not found"
LINK_DOWN = "Failed, Feature requires link up"

TARGET, FABRIC = 2, 3
GOOD = step(0, echo())
FAILED = step(0, LOST)


@pytest.fixture
def zfc(zfc):
    return FreshLog(zfc)


def call(name=NAME, stop=0, kind=TARGET):
    zeros = 32 - len(name)
    return (
        f'TORPI_DiagnosticsEchoElsTest(port, "{name}" and {zeros} zeros, 1, {stop}, kind {kind}, zeroed buffer)'
    )


def words(count=1, stop="false", name=NAME):
    return [IDENTIFIER, name, str(count), stop]


def echoes(*steps):
    return script(DiagnosticsEchoElsTest=steps)


def check_run(zfc, name, arguments, env=None, destination=NAME, message=None, **options):
    """Compares with a document of this name; those of failed runs have a message."""
    options.setdefault("host", one_port())
    values = {"destination": destination} if destination else {}
    if message:
        values["message"] = message
    return check_both(zfc, RUN, f"port/fcecho/{name}", words=arguments, values=values, env=env, **options)


def check_failed(zfc, message, arguments, **options):
    return check_run(zfc, "failed", arguments, destination=None, message=message, **options)


def test_three_passes_that_end_in_a_failure(zfc):
    made = check_run(zfc, "three", words(3), echoes(GOOD, GOOD, FAILED), message=TEST_FAILED)
    assert made.command_calls == [LIST_CALL, call(), call(), call()]


def test_passes_go_on_to_the_count(zfc):
    text = zfc([*f"{RUN}cli".split(), *words(300)], host=one_port(), env=echoes(GOOD))
    assert text.command_calls == [LIST_CALL, *[call()] * 300]
    assert text.stdout.count(b"FCEchoTestResultList:\n") == 300
    assert b"Ping Sequence Number: 300\n" in text.stdout


def test_more_words_are_left_aside(zfc):
    check_run(zfc, "one", [*words(), "help"], echoes(GOOD))


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
        *[
            pytest.param(
                [IDENTIFIER, "nobody", *count], {}, INVALID, USAGE, [LIST_CALL], id=f"count {''.join(count) or None}"
            )
            for count in ([], [""], ["0"], ["65536"], ["-1"], ["x"], ["4294967297"])
        ],
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
            NO_FILE,
            "",
            [LIST_CALL],
            id="no library log",
        ),
    ],
)
def test_failure(zfc, arguments, options, message, usage, calls):
    result = check_failed(zfc, message, arguments, usage=usage, **options)
    assert result.command_calls == calls


class TestDestination:
    def test_target(self, zfc):
        made = check_run(zfc, "one", words(name=NAME.upper()), echoes(GOOD))
        assert made.command_calls == [LIST_CALL, call()]

    def test_fabric_in_capitals(self, zfc):
        made = check_run(zfc, "one", words(name=FABRIC_NAME.upper()), echoes(GOOD), FABRIC_NAME)
        assert made.command_calls == [LIST_CALL, call(FABRIC_NAME, kind=FABRIC)]

    def test_fabric_wins_over_a_target_of_its_name(self, zfc):
        host = one_port(targets=[FABRIC_NAME])
        made = check_run(zfc, "one", words(name=FABRIC_NAME), echoes(GOOD), FABRIC_NAME, host=host)
        assert made.command_calls == [LIST_CALL, call(FABRIC_NAME, kind=FABRIC)]

    def test_adjacent_fabric_is_not_the_principal_one(self, zfc):
        check_failed(zfc, NO_TARGET, words(name="10:00:c4:f5:7c:10:20:f2"))

    def test_nobody(self, zfc):
        check_failed(zfc, NO_TARGET, words(name=NAME[:-1] + "f"), host=one_port(targets=[]))

    def test_short_name_has_zero_octets(self, zfc):
        name = "50:01" + ":00" * 6
        made = check_run(zfc, "one", words(name="50:1"), echoes(GOOD), name, host=one_port(targets=[name]))
        assert made.command_calls == [LIST_CALL, call(name)]


class TestStop:
    """What follows a failed pass."""

    @pytest.mark.parametrize("failed", [FAILED, step(0, echo(outcome=0xFFFFFFFF)), step(1), step(151), step(34)])
    def test_stop_on_error(self, zfc, failed):
        made = zfc([*RUN.split(), *words(4, "true")], host=one_port(), env=echoes(GOOD, failed, GOOD))
        assert made.command_calls == [LIST_CALL, call(stop=1), call(stop=1)]
        assert f"<string>{TEST_FAILED}</string>".encode() in made.stdout
        assert made.stdout.count(b"FCEchoTestResultList") == 2

    def test_stop_in_maintenance_mode(self, zfc):
        env = echoes(GOOD, step(150, echo()))
        made = check_run(zfc, "two", words(4, "TRUE"), env, message=MAINTENANCE)
        assert made.command_calls == [LIST_CALL, call(stop=1), call(stop=1)]

    @pytest.mark.parametrize("word", ["false", "perhaps", ""])
    def test_no_stop(self, zfc, word):
        made = zfc([*RUN.split(), *words(3, word)], host=one_port(), env=echoes(FAILED))
        assert made.command_calls == [LIST_CALL, *[call()] * 3]

    def test_no_stop_word_means_false(self, zfc):
        made = zfc([*RUN.split(), *words(3)[:3]], host=one_port(), env=echoes(FAILED))
        assert made.command_calls == [LIST_CALL, *[call()] * 3]

    def test_outcome_does_not_count_when_the_call_fails(self, zfc):
        check_run(zfc, "two", words(2), echoes(GOOD, step(150, echo(outcome=1))), message=MAINTENANCE)

    def test_library_log_lost_between_passes(self, zfc):
        env = echoes(GOOD, step(0, echo(), spoils=True), FAILED)
        made = check_run(zfc, "two", words(4), env, message=NO_FILE)
        assert made.command_calls == [LIST_CALL, call(), call()]


class TestRecords:
    @pytest.mark.parametrize(
        "word, text",
        [
            (0.0, "  0.00 (ms)"),
            (0.004, "  0.00 (ms)"),
            (-1.5, " -1.50 (ms)"),
            (123.456, "123.46 (ms)"),
            (98765.4321, "98765.43 (ms)"),  # in single precision
            (b"\0\0\x80\x7f", "   inf (ms)"),
            (b"\0\0\x80\xff", "  -inf (ms)"),
            (b"\0\0\xc0\x7f", "   nan (ms)"),
            (b"\xff\xff\x7f\x7f", "340282346638528859811704183484516925440.00 (ms)"),
        ],
    )
    def test_extremes(self, zfc, word, text):
        record = echo(sent=0xFFFFFFFF, received=0x80000000, length=0xDEADBEEF, status="A" * 72, time=word)
        made = zfc([*f"{RUN}cli".split(), *words()], host=one_port(), env=echoes(step(0, record)))
        documents.check(made.stdout, "port/fcecho/extremes.txt", destination=NAME, time=text)
        made = zfc([*RUN.split(), *words()], host=one_port(), env=echoes(step(0, record)))
        documents.check(made.stdout, "port/fcecho/extremes.xml", destination=NAME, time=text)

    def test_percent_signs_stay_as_they_are(self, zfc):
        made = zfc([*f"{RUN}cli".split(), *words()], host=one_port(), env=echoes(step(0, echo(status="%s%n 50%"))))
        assert b"Echo Status: %s%n 50%\n" in made.stdout

    def test_record_is_cleared_for_each_pass(self, zfc):
        """A call that writes nothing leaves zeros, not what the pass before it had."""
        made = zfc([*f"{RUN}cli".split(), *words(2)], host=one_port(), env=echoes(GOOD, step(1)))
        assert made.stdout.endswith(
            b"Ping Sequence Number: 2\nFrame Sent: 0\nFrame Received: 0\nResponse Length: 0\n"
            b"Response Time:   0.00 (ms)\nEcho Status: \n" + b"*" * 52 + b"\n"
        )


class TestEdgeCases:
    def test_principal_fabric_is_no_target_and_passes(self, zfc):
        made = check_run(zfc, "one", words(name=FABRIC_NAME), echoes(GOOD), FABRIC_NAME, host=one_port(targets=[]))
        assert made.command_calls == [LIST_CALL, call(FABRIC_NAME, kind=FABRIC)]

    def test_failing_first_pass_without_stop_holds_every_pass(self, zfc):
        made = check_run(zfc, "recovered", words(3), echoes(FAILED, FAILED, GOOD))
        assert made.command_calls == [LIST_CALL, *[call()] * 3]

    def test_failing_third_pass_with_stop(self, zfc):
        env = echoes(GOOD, GOOD, FAILED, GOOD)
        made = check_run(zfc, "three", words(9, "true"), env, message=TEST_FAILED)
        assert made.command_calls == [LIST_CALL, *[call(stop=1)] * 3]

    def test_maintenance_mode_in_a_middle_pass_without_stop(self, zfc):
        check_run(zfc, "recovered", words(3), echoes(FAILED, step(150, LOST), GOOD))

    def test_one_pass(self, zfc):
        check_run(zfc, "one", words(), echoes(GOOD))


class TestProgress:
    def test_text_form_at_a_terminal(self, zfc):
        env = echoes(GOOD, GOOD, FAILED)
        stdout, seen = errors_at_terminal(zfc, [*f"{RUN}cli".split(), *words(3)], host=one_port(), env=env)
        documents.check(stdout, "port/fcecho/three.txt", destination=NAME, message=TEST_FAILED)
        blank = b" " * len(b"pass 3 of 3")
        assert seen == b"\rpass 1 of 3\rpass 2 of 3\rpass 3 of 3\r" + blank + b"\r"

    def test_line_is_removed_after_an_early_end(self, zfc):
        env = echoes(GOOD, GOOD, FAILED)
        stdout, seen = errors_at_terminal(zfc, [*f"{RUN}cli".split(), *words(10000, "true")], host=one_port(), env=env)
        documents.check(stdout, "port/fcecho/three.txt", destination=NAME, message=TEST_FAILED)
        assert seen.endswith(b"\rpass 3 of 10000\r" + b" " * len(b"pass 3 of 10000") + b"\r")

    def test_line_is_removed_when_the_library_log_is_lost(self, zfc):
        env = echoes(GOOD, step(0, echo(), spoils=True))
        stdout, seen = errors_at_terminal(zfc, [*f"{RUN}cli".split(), *words(4)], host=one_port(), env=env)
        documents.check(stdout, "port/fcecho/two.txt", destination=NAME, message=NO_FILE)
        assert seen.endswith(b"\r" + b" " * len(b"pass 3 of 4") + b"\r")

    def test_widest_line_is_removed(self, zfc):
        _, seen = errors_at_terminal(zfc, [*f"{RUN}cli".split(), *words(12)], host=one_port(), env=echoes(GOOD))
        assert seen.endswith(b"\rpass 9 of 12\rpass 10 of 12\rpass 11 of 12\rpass 12 of 12\r" + b" " * 13 + b"\r")

    def test_xml_form_shows_nothing(self, zfc):
        stdout, seen = errors_at_terminal(zfc, [*RUN.split(), *words()], host=one_port(), env=echoes(GOOD))
        documents.check(stdout, "port/fcecho/one.xml", destination=NAME)
        assert seen == b""

    def test_failed_checks_show_nothing(self, zfc):
        _, seen = errors_at_terminal(zfc, [*f"{RUN}cli".split(), *words(0)], host=one_port(), env=echoes(GOOD))
        assert seen == b""


@pytest.mark.parametrize("steps, code", [([GOOD], 0), ([FAILED], 34), ([step(150)], 60), ([FAILED, GOOD], 0)])
def test_code(zfc, steps, code):
    run = [*RUN.split(), *words(len(steps))]
    assert zfc(run, host=one_port(), env=echoes(*steps), debug=1).code == code


def test_help(zfc):
    result = zfc("-t port -s fcecho help")
    documents.check(result.stdout, "port/fcecho/help.txt")
    assert result.command_calls == []


def test_question_mark_prints_the_usage_of_the_leaf(zfc):
    assert zfc(f"{RUN}cli ?").stdout == USAGE.encode()
    assert zfc(f"{RUN} ?").stdout == b""


class TestDebugLog:
    CLASS = "PhysicalPortFCEchoCmdsProcessor"
    FUNCTION = f"{CLASS}::CmdRunCommon"

    def test_failures(self, zfc):
        missing = "50:01:43:80:2e:5f:a0:6f"
        rows = [
            *port_failures(self.FUNCTION, IDENTIFIER, *words()[1:]),
            (words(), {"host": one_port(state=0)}, [f"{self.FUNCTION}: Port is in Link Down state"]),
            (words(0), {}, [f"{self.FUNCTION}: Invalid test count 0"]),
            (words(name=missing), {}, [f"{self.FUNCTION}: Target {missing} not found"]),
            (words(name=FABRIC_NAME), {"env": echoes(GOOD)}, []),
            (words(), NO_LOG, no_output_file(self.FUNCTION)),
        ]
        check_failures(zfc, RUN, rows)

    def test_every_failed_pass_has_its_line(self, zfc):
        env = echoes(GOOD, FAILED, step(150), step(0xFFFFFFFF), step(0, echo(), spoils=True))
        lines = [
            f"{self.FUNCTION}: Echo failed outcome=1",
            f"{self.FUNCTION}: Diagnostic test failed err=150",
            f"{self.FUNCTION}: Diagnostic test failed err=-1",
            *no_output_file(self.FUNCTION),
        ]
        check_failures(zfc, RUN, [(words(9), {"env": env}, lines)])

    @pytest.mark.parametrize("form, function", [("", "CmdRun"), ("cli", "CmdRunCli")])
    @pytest.mark.parametrize("answer, message", [(GOOD, "Success"), (FAILED, TEST_FAILED), (step(150), MAINTENANCE)])
    def test_steps(self, zfc, form, function, answer, message):
        made = zfc([*f"{RUN}{form}".split(), *words()], host=one_port(), env=echoes(answer), debug=65535)
        assert made.steps == [
            f"{self.CLASS}::{function}: Entered",
            f"{self.FUNCTION}: Entered",
            f"{LOOKUP}: Entered",
            f"{LOOKUP}: Exiting",
            f"{self.CLASS}::DisplayFCEchoResult: Entered",
            f"{self.CLASS}::DisplayFCEchoResult: Message={message}",
            f"{self.CLASS}::DisplayFCEchoResult: Exiting",
            f"{self.FUNCTION}: Exiting",
            f"{self.CLASS}::{function}: Exiting",
        ]
