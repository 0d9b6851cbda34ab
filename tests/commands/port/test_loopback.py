"""The loopback node: `run` in both forms."""

import pytest

from zfc import documents
from zfc.diag import (
    LIST_CALL,
    LOOKUP,
    NO_LOG,
    FreshLog,
    check_failures,
    loopback,
    no_output_file,
    one_port,
    port_failures,
    request,
    script,
    step,
)
from zfc.documents import check_both
from zfc.host import ASTER, BIRCH, FERN, NO_LIST, every_device
from zfc.port import IDENTIFIER
from zfc.terminal import errors_at_terminal

RUN = "-t port -s loopback run"
USAGE = "Usage: run\r\n"

INVALID = "Failed, Invalid parameter"
NO_TYPE = "Failed, Loopback type not supported for this adapter"
BAD_PATTERN = "Failed, Custom Data should be of 8 chars separated by '-' (hifen)"
MAINTENANCE = "Failed, Command not supported when adapter port in maintenance mode"
NO_FILE = "Failed, File not found"

SIZES = [8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 16384, 32768, 65535]

# The record's values for the words "Ignore" and "Internal".
IGNORE, STOP, LOOP = 0, 1, 2
INTERNAL = 4

GOOD = step(0, loopback())
FAILED = step(0, loopback("Failed", 1, 2, 3))

IN_MAINTENANCE = (0x04, 0x01)


@pytest.fixture
def zfc(zfc):
    return FreshLog(zfc)


def words(count="1", increment="1", size="8", on_error="Ignore", type="Internal", pattern="Random"):
    return [IDENTIFIER, count, increment, size, on_error, type, pattern]


def call(**fields):
    """The library call; the fields are those of the request that differ from what `words` asks for."""
    fields = {"type": INTERNAL, "connection": 7, **fields}
    return f"TORPI_DiagnosticsLoopBackTest(port, {request(**fields)})"


def passes(*steps):
    return script(DiagnosticsLoopBackTest=steps)


def check_run(zfc, arguments, *, status="Success", errors=(0, 0, 0), counters=(1, 1, 0), env=None, **options):
    """`errors`: CRC, disparity, frame length; `counters`: iteration, successes, failures."""
    options.setdefault("host", one_port())
    values = dict(zip(("crc", "disparity", "length"), errors))
    values |= dict(zip(("iteration", "good", "bad"), counters), status=status)
    env = env or passes(GOOD)
    return check_both(zfc, RUN, "port/loopback/report", words=arguments, values=values, env=env, **options)


def check_failed(zfc, message, arguments, **options):
    options.setdefault("host", one_port())
    return check_both(zfc, RUN, "port/loopback/failed", words=arguments, values={"message": message}, **options)


def test_success(zfc):
    made = check_run(zfc, words())
    assert made.command_calls == [LIST_CALL, call()]


@pytest.mark.parametrize("state", [0, 2, 3])
def test_needs_no_link(zfc, state):
    check_run(zfc, words(), host=one_port(state=state))


def test_more_words_are_left_aside(zfc):
    assert check_run(zfc, [*words(), "help", "more"]).command_calls == [LIST_CALL, call()]


# The checks in their order: each row fails at one check and at all that follow.
WRONG_TYPE = {"host": one_port(device=0x3522, flags=IN_MAINTENANCE), "spoil_log": "TORPI_GetAdapterList:directory"}


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
        pytest.param([IDENTIFIER], WRONG_TYPE, INVALID, USAGE, [LIST_CALL], id="no count"),
        pytest.param([IDENTIFIER, "1"], WRONG_TYPE, INVALID, USAGE, [LIST_CALL], id="no increment"),
        pytest.param([IDENTIFIER, "1", "1"], WRONG_TYPE, INVALID, USAGE, [LIST_CALL], id="no size"),
        pytest.param([IDENTIFIER, "1", "1", "8"], WRONG_TYPE, NO_TYPE, USAGE, [LIST_CALL], id="no type"),
        pytest.param(
            [*words(on_error="x", type="x", pattern="Custom"), "-d", "x"],
            WRONG_TYPE,
            NO_TYPE,
            USAGE,
            [LIST_CALL],
            id="wrong type",
        ),
        pytest.param(
            [*words(on_error="x", pattern="Custom"), "-d", "x"], WRONG_TYPE, BAD_PATTERN, "", [LIST_CALL], id="pattern"
        ),
        pytest.param(words(on_error="x", pattern="x"), WRONG_TYPE, MAINTENANCE, "", [LIST_CALL], id="maintenance"),
        pytest.param(
            words(), {"spoil_log": "TORPI_GetAdapterList:directory"}, NO_FILE, "", [LIST_CALL], id="no library log"
        ),
    ],
)
def test_failure(zfc, arguments, options, message, usage, calls):
    result = check_failed(zfc, message, arguments, usage=usage, **options)
    assert result.command_calls == calls


class TestCount:
    """Word 1, judged as a signed 32-bit number."""

    @pytest.mark.parametrize(
        "word, count",
        [
            ("1", 1),
            ("65535", 65535),
            ("-1", 0xFFFFFFFF),
            ("-2147483648", 0x80000000),
            ("2147483648", 0x80000000),
            ("4294967295", 0xFFFFFFFF),
            ("4294967297", 1),  # its low 32 bits
            ("4295032831", 65535),
            ("12abc", 12),
            ("010", 10),
        ],
    )
    def test_passes(self, zfc, word, count):
        made = check_run(zfc, words(count=word))
        assert made.command_calls == [LIST_CALL, call(count=count)]

    @pytest.mark.parametrize(
        "word", ["0", "65536", "2147483647", "4294967296", "-4294967296", "4295032832", "", "x", "0x10", "-0"]
    )
    def test_refused(self, zfc, word):
        made = check_failed(zfc, INVALID, words(count=word), usage=USAGE)
        assert made.command_calls == [LIST_CALL]


class TestIncrement:
    """Word 2: how often the library is called."""

    @pytest.mark.parametrize("word, calls", [("1", 1), ("2", 2), ("7x", 7)])
    def test_passes(self, zfc, word, calls):
        made = check_run(zfc, words(increment=word), counters=(calls, calls, 0))
        assert made.command_calls == [LIST_CALL, *[call()] * calls]

    def test_greatest(self, zfc):
        env = passes(FAILED)
        check_run(
            zfc,
            words(increment="65535", on_error="Stop"),
            status="Failed",
            errors=(1, 2, 3),
            counters=(0, 0, 1),
            env=env,
        )

    @pytest.mark.parametrize("word", ["0", "65536", "-1", "", "x", "2147483648", "4294967297"])
    def test_refused(self, zfc, word):
        made = check_failed(zfc, INVALID, words(increment=word), usage=USAGE)
        assert made.command_calls == [LIST_CALL]


class TestSize:
    @pytest.mark.parametrize("size", SIZES)
    def test_listed(self, zfc, size):
        made = check_run(zfc, words(size=str(size)))
        assert made.command_calls == [LIST_CALL, call(size=size)]

    @pytest.mark.parametrize("neighbour", [-1, 1])
    @pytest.mark.parametrize("size", SIZES)
    def test_beside_a_listed_one(self, zfc, size, neighbour):
        made = check_failed(zfc, INVALID, words(size=str(size + neighbour)), usage=USAGE)
        assert made.command_calls == [LIST_CALL]

    @pytest.mark.parametrize("word", ["0", "", "x", "-8", "4", "65536", "4294967304", "0x8"])
    def test_refused(self, zfc, word):
        check_failed(zfc, INVALID, words(size=word), usage=USAGE)


@pytest.mark.parametrize(
    "word, action",
    [("Ignore", IGNORE), ("stop", STOP), ("STOP", STOP), ("Loop", LOOP), ("lOOP", LOOP), ("", IGNORE), ("x", IGNORE)],
)
def test_on_error_action(zfc, word, action):
    made = check_run(zfc, words(on_error=word))
    assert made.command_calls == [LIST_CALL, call(on_error=action)]


class TestType:
    @pytest.mark.parametrize("word, type", [("Internal", 4), ("INTERNAL", 4), ("External", 2), ("external", 2)])
    @pytest.mark.parametrize("device", [0x3522, FERN[0], ASTER[0]], ids=hex)
    def test_on_every_family(self, zfc, word, type, device):
        made = check_run(zfc, words(type=word), host=one_port(device=device))
        assert made.command_calls == [LIST_CALL, call(type=type)]

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_fcoe_echo(self, zfc, device):
        self.check(zfc, "FCoE_Echo", 3, device, device in FERN)

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    @pytest.mark.parametrize("word", ["Internal_10bit", "unheard of"])
    def test_type_zero(self, zfc, word, device):
        self.check(zfc, word, 0, device, device in {*ASTER, *BIRCH})

    @pytest.mark.parametrize("word, type, device", [("fcoe_ECHO", 3, FERN[1]), ("INTERNAL_10BIT", 0, ASTER[1])])
    def test_mixed_case(self, zfc, word, type, device):
        self.check(zfc, word, type, device, True)

    def test_missing_word_is_type_zero(self, zfc):
        made = check_run(zfc, words()[:5], host=one_port(device=ASTER[0]))
        assert made.command_calls == [LIST_CALL, call(type=0)]

    @staticmethod
    def check(zfc, word, type, device, supported):
        host = one_port(device=device)
        if supported:
            made = check_run(zfc, words(type=word), host=host)
            assert made.command_calls == [LIST_CALL, call(type=type)]
        else:
            made = check_failed(zfc, NO_TYPE, words(type=word), host=host, usage=USAGE)
            assert made.command_calls == [LIST_CALL]


PATTERNS = [
    ("Random", 0, b""),
    ("random", 0, b""),
    ("CRPAT", 1, b""),
    ("crpat", 1, b""),
    ("CJTPAT", 2, b""),
    ("CSPAT", 3, b""),
    ("cSpAt", 3, b""),
    ("Custom", 4, b""),
    ("CUSTOM", 4, b""),
    ("00000000", 5, b"00000000"),
    ("01010101", 5, b"01010101"),
    ("01011010", 5, b"01011010"),
    ("10100101", 5, b"10100101"),
    ("10101010", 5, b"10101010"),
    ("11111111", 5, b"11111111"),
    ("11110000", 0, b""),
    ("0000000", 0, b""),
    ("000000000", 0, b""),
    ("", 0, b""),
    ("nothing", 0, b""),
]


class TestPattern:
    @pytest.mark.parametrize("word, kind, characters", PATTERNS)
    def test_word(self, zfc, word, kind, characters):
        made = check_run(zfc, words(pattern=word))
        assert made.command_calls == [LIST_CALL, call(kind=kind, pattern=characters)]

    def test_missing_word(self, zfc):
        made = check_run(zfc, words()[:6])
        assert made.command_calls == [LIST_CALL, call(kind=0)]

    @pytest.mark.parametrize("option", ["--data-pattern", "-d", "--DATA-Pattern", "-D"])
    @pytest.mark.parametrize(
        "value, characters",
        [
            ("a-b-c-d-e-f-g-h", b"abcdefgh"),
            ("0-1-2-3-4-5-6-7", b"01234567"),
            ("a-b-c-d-e-f-g-h-i-j", b"abcdefgh"),
            ("a-b-c-d-e-f-g-hxyz", b"abcdefgh"),
            ("a-b-c-d-e-f-g-", b"abcdefg"),  # all hyphens are there, the last character is missing
            ("-" * 15, b"-" * 8),
            (" - - - - - - - ", b" " * 8),
            ("%-n-s-%-0-9-x-%", b"%ns%09x%"),
        ],
    )
    def test_custom(self, zfc, option, value, characters):
        made = check_run(zfc, [*words(pattern="Custom"), option, value])
        assert made.command_calls == [LIST_CALL, call(kind=4, pattern=characters)]

    @pytest.mark.parametrize(
        "value",
        ["", "abcdefgh", "a-b-c-d-e-f-gh", "a-b-c-d-e-f-g", "ab-c-d-e-f-g-h", "a-b-c-dxe-f-g-h", "a_b-c-d-e-f-g-h"],
    )
    def test_bad_custom(self, zfc, value):
        made = check_failed(zfc, BAD_PATTERN, [*words(pattern="Custom"), "-d", value])
        assert made.command_calls == [LIST_CALL]

    @pytest.mark.parametrize("place", range(1, 15, 2))
    def test_every_hyphen_counts(self, zfc, place):
        value = "a-b-c-d-e-f-g-h"
        check_failed(zfc, BAD_PATTERN, [*words(pattern="Custom"), "-d", value[:place] + "+" + value[place + 1 :]])

    @pytest.mark.parametrize("tail", [[], ["-d"], ["--data-pattern"], ["more"]])
    def test_option_without_a_value_is_an_empty_pattern(self, zfc, tail):
        made = check_run(zfc, [*words(pattern="Custom"), *tail])
        assert made.command_calls == [LIST_CALL, call(kind=4)]

    def test_first_option_counts(self, zfc):
        tail = ["-d", "a-b-c-d-e-f-g-h", "--data-pattern", "x"]
        made = check_run(zfc, [*words(pattern="Custom"), *tail])
        assert made.command_calls == [LIST_CALL, call(kind=4, pattern=b"abcdefgh")]

    def test_option_in_a_words_place_is_found_too(self, zfc):
        """Words are read by their place, the option wherever it is."""
        arguments = [*words(on_error="-d", type="Internal", pattern="Custom")]
        made = check_failed(zfc, BAD_PATTERN, arguments)
        assert made.command_calls == [LIST_CALL]

    @pytest.mark.parametrize("pattern", ["Random", "CRPAT", "01010101", "x"])
    def test_option_counts_only_for_custom(self, zfc, pattern):
        check_run(zfc, [*words(pattern=pattern), "-d", "x"])


class TestMaintenance:
    @pytest.mark.parametrize("flags", [(0x04, 0x01), (0xFF, 0xFF)])
    def test_both_flags(self, zfc, flags):
        made = check_failed(zfc, MAINTENANCE, words(), host=one_port(flags=flags))
        assert made.command_calls == [LIST_CALL]

    @pytest.mark.parametrize("flags", [(0x04, 0x00), (0x00, 0x01), (0xFB, 0xFF), (0xFF, 0xFE)])
    def test_one_flag_alone(self, zfc, flags):
        check_run(zfc, words(), host=one_port(flags=flags))


@pytest.mark.parametrize("connection", [0, 1, 255])
def test_connection_mode_goes_along(zfc, connection):
    made = check_run(zfc, words(), host=one_port(connection=connection))
    assert made.command_calls == [LIST_CALL, call(connection=connection)]


class TestPasses:
    @pytest.mark.parametrize("on_error", ["Ignore", "Loop", "x"])
    def test_failures_in_between(self, zfc, on_error):
        env = passes(GOOD, FAILED, GOOD, FAILED, GOOD)
        check_run(zfc, words(increment="5", on_error=on_error), counters=(5, 3, 2), env=env)

    def test_last_pass_is_shown(self, zfc):
        env = passes(GOOD, FAILED)
        check_run(
            zfc, words(increment="2"), status="Failed", errors=(1, 2, 3), counters=(2, 1, 1), env=env
        )

    def test_stop(self, zfc):
        env = passes(GOOD, GOOD, FAILED, GOOD)
        made = check_run(
            zfc,
            words(increment="9", on_error="Stop"),
            status="Failed",
            errors=(1, 2, 3),
            counters=(2, 2, 1),
            env=env,
        )
        assert made.command_calls == [LIST_CALL, *[call(on_error=STOP)] * 3]

    @pytest.mark.parametrize(
        "status", ["", "success", "SUCCESS", "Success ", "Succes", "Successful", "Failed", "S" * 64]
    )
    def test_only_success_is_one(self, zfc, status):
        env = passes(step(0, loopback(status)))
        check_run(zfc, words(), status=status, counters=(1, 0, 1), env=env)

    def test_counters_are_unsigned(self, zfc):
        env = passes(step(0, loopback(crc=0xFFFFFFFF, disparity=0x80000000, length=0x7FFFFFFF)))
        check_run(zfc, words(), errors=(0xFFFFFFFF, 0x80000000, 0x7FFFFFFF), env=env)

    def test_percent_signs_stay_as_they_are(self, zfc):
        check_run(zfc, words(), status="%s%n%", counters=(1, 0, 1), env=passes(step(0, loopback("%s%n%"))))

    def test_library_log_lost_between_passes(self, zfc):
        """Nothing of the passes before it is shown."""
        env = passes(GOOD, step(0, loopback(), spoils=True), GOOD)
        made = check_failed(zfc, NO_FILE, words(increment="4"), env=env)
        assert made.command_calls == [LIST_CALL, call(), call()]


class TestEdgeCases:
    def test_greatest_size(self, zfc):
        check_failed(zfc, INVALID, words(size="65536"), usage=USAGE)
        check_run(zfc, words(size="65535"))

    def test_unknown_type(self, zfc):
        made = check_run(zfc, words(type="nothing"), host=one_port(device=BIRCH[1]))
        assert made.command_calls == [LIST_CALL, call(type=0)]
        check_failed(zfc, NO_TYPE, words(type="nothing"), usage=USAGE)

    def test_custom_value_with_and_without_hyphens(self, zfc):
        made = check_run(zfc, [*words(pattern="Custom"), "-d", "a-b-c-d-e-f-g-h"])
        assert made.command_calls == [LIST_CALL, call(kind=4, pattern=b"abcdefgh")]
        check_failed(zfc, BAD_PATTERN, [*words(pattern="Custom"), "-d", "abcdefgh"])

    def test_every_pass_failing_and_ignored(self, zfc):
        check_run(
            zfc,
            words(increment="3"),
            status="Failed",
            errors=(1, 2, 3),
            counters=(3, 0, 3),
            env=passes(FAILED),
        )

    def test_first_pass_failing_and_stop(self, zfc):
        check_run(
            zfc,
            words(increment="3", on_error="Stop"),
            status="Failed",
            errors=(1, 2, 3),
            counters=(0, 0, 1),
            env=passes(FAILED),
        )

    def test_maintenance_mode_comes_after_all_words(self, zfc):
        host = one_port(flags=IN_MAINTENANCE)
        check_failed(zfc, INVALID, words(count="0"), host=host, usage=USAGE)
        check_failed(zfc, NO_TYPE, words(type="x"), host=host, usage=USAGE)
        check_failed(zfc, BAD_PATTERN, [*words(pattern="Custom"), "-d", "x"], host=host)
        check_failed(zfc, MAINTENANCE, words(), host=host)


class TestProgress:
    def test_text_form_at_a_terminal(self, zfc):
        run = [*f"{RUN}cli".split(), *words(increment="2")]
        stdout, seen = errors_at_terminal(zfc, run, host=one_port(), env=passes(GOOD))
        values = {"crc": 0, "disparity": 0, "length": 0, "iteration": 2, "good": 2, "bad": 0, "status": "Success"}
        documents.check(stdout, "port/loopback/report.txt", **values)
        assert seen == b"\rpass 1 of 2\rpass 2 of 2\r" + b" " * 11 + b"\r"

    def test_xml_form_shows_nothing(self, zfc):
        run = [*RUN.split(), *words(increment="2")]
        assert errors_at_terminal(zfc, run, host=one_port(), env=passes(GOOD))[1] == b""


@pytest.mark.parametrize(
    "arguments, steps, code",
    [(words(), [GOOD], 0), (words(), [FAILED], 0), ([*words(pattern="Custom"), "-d", "x"], [GOOD], 12)],
)
def test_code(zfc, arguments, steps, code):
    assert zfc([*RUN.split(), *arguments], host=one_port(), env=passes(*steps), debug=1).code == code


def test_help(zfc):
    result = zfc("-t port -s loopback help")
    documents.check(result.stdout, "port/loopback/help.txt")
    assert result.command_calls == []


def test_question_mark_prints_the_usage_of_the_leaf(zfc):
    assert zfc(f"{RUN}cli ?").stdout == USAGE.encode()
    assert zfc(f"{RUN} ?").stdout == b""


class TestDebugLog:
    CLASS = "PhysicalPortLoopbackCmdsProcessor"
    FUNCTION = f"{CLASS}::CmdRunCommon"

    def test_failures(self, zfc):
        custom = [*words(pattern="Custom"), "-d", "abc%n"]
        rows = [
            *port_failures(self.FUNCTION, IDENTIFIER, *words()[1:]),
            (words(count="65536"), {}, [f"{self.FUNCTION}: Invalid test count 65536"]),
            (words(increment="0"), {}, [f"{self.FUNCTION}: Invalid test increment 0"]),
            (words(size="65536"), {}, [f"{self.FUNCTION}: Invalid data size 65536"]),
            (words()[:3], {}, [f"{self.FUNCTION}: Invalid data size "]),
            (words(type="FCoE_Echo"), {}, [f"{self.FUNCTION}: Loopback type not supported for this adapter"]),
            (custom, {}, [f"{self.FUNCTION}: Invalid data pattern abc%n"]),
            (
                words(),
                {"host": one_port(flags=IN_MAINTENANCE)},
                [f"{self.FUNCTION}: Port is in maintenance mode"],
            ),
            (words(), NO_LOG, no_output_file(self.FUNCTION)),
            (
                words(increment="3"),
                {"env": passes(GOOD, step(0, loopback(), spoils=True))},
                no_output_file(self.FUNCTION),
            ),
            (words(increment="2"), {"env": passes(GOOD, FAILED)}, []),  # the document has the failure
        ]
        check_failures(zfc, RUN, rows)

    @pytest.mark.parametrize("form, function", [("", "CmdRun"), ("cli", "CmdRunCli")])
    @pytest.mark.parametrize(
        "arguments, display, message",
        [(words(), "DisplayLoopbackTestResult", "Success"), (words(type="FCoE_Echo"), "DisplayError", NO_TYPE)],
    )
    def test_steps(self, zfc, form, function, arguments, display, message):
        made = zfc([*f"{RUN}{form}".split(), *arguments], host=one_port(), env=passes(GOOD), debug=1)
        usage = [f"{self.CLASS}::Usage: Entered", f"{self.CLASS}::Usage: Exiting"]
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
            *(usage if form and message == NO_TYPE else []),
        ]
