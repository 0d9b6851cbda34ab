"""The tlsd node of a target: `get` and `set` in both forms."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import CEDAR, NO_ADAPTERS, NO_LIST, every_device
from zfc.steps import around
from zfc.target import IDENTIFIER, one_target, target

GET = "-t target -v tlsd get"
SET = "-t target -v tlsd set"
CLASS = "FCTargetTLSDCmdsProcessor"
GET_USAGE = "Usage: get [port identifier]\r\n"
SET_USAGE = "Usage: set [port identifier]\r\n"

LIST_CALL = "TORPI_GetAdapterList()"
READ = "TORPI_GetTargetLinkSpeed"
WRITE = "TORPI_SetTargetLinkSpeed"
READ_CALL = f"{READ}(port, 300)"
FIRST_CALL = "TORPI_SetToolVersion"


def write_call(code):
    return f"{WRITE}(port, 300, {code})"


INVALID = "Failed, Invalid parameter"
UNSUPPORTED = "Failed, Speed not supported for this adapter"
READ_ONLY = "Failed, Read-Only feature for this adapter"
VIRTUAL = "Failed, Feature not supported for virtual port"
READ_FAILED = "Failed, TLSD read failed"
SET_FAILED = "Failed, TLSD set failed"
NO_FILE = "Failed, File not found"

# Speeds of the library, their texts, and the bit of the port's mask that allows them; 10 Gbps has none that counts.
SPEEDS = [
    (1, "1_Gbps", 0x01),
    (2, "2_Gbps", 0x02),
    (4, "4_Gbps", 0x08),
    (8, "8_Gbps", 0x10),
    (22, "16_Gbps", 0x20),
    (50, "32_Gbps", 0x40),
    (100, "64_Gbps", 0x80),
]
TEN = (16, "10_Gbps")


def run(zfc, command, name, words, *, mask=0xFF, speed=None, host=None, env=None, **options):
    host = host or one_target(supported=mask)
    env = {**(env or {}), **({} if speed is None else {"HOSTILE_LINK_SPEED": str(speed)})}
    return check_both(zfc, command, f"target/tlsd/{name}", words=words, host=host, env=env, **options)


def check_speed(zfc, command, shown, words=(IDENTIFIER,), **options):
    return run(zfc, command, "report", words, values={"speed": shown}, **options)


def check_failed(zfc, command, message, words=(IDENTIFIER,), **options):
    return run(zfc, command, "failed", words, values={"message": message}, **options)


class TestGet:
    @pytest.mark.parametrize("code, text", [*[row[:2] for row in SPEEDS], TEN])
    def test_speed(self, zfc, code, text):
        result = check_speed(zfc, GET, text, speed=code)
        assert result.command_calls == [LIST_CALL, READ_CALL]

    @pytest.mark.parametrize("code", [0, 3, 5, 7, 9, 15, 17, 21, 23, 32, 49, 51, 64, 99, 101, 122, 0x10016, 0xFFFFFFFF])
    def test_other_code(self, zfc, code):
        check_speed(zfc, GET, "Unknown", speed=code)

    def test_library_that_stores_nothing_gives_no_speed(self, zfc):
        check_speed(zfc, GET, "Unknown")

    @pytest.mark.parametrize("rank, maximum", enumerate(SPEEDS, 1))
    def test_speed_above_the_maximum_shows_the_maximum(self, zfc, rank, maximum):
        for other_rank, (code, text, _) in enumerate(SPEEDS, 1):
            shown = text if other_rank <= rank else maximum[1]
            check_speed(zfc, GET, shown, speed=code, mask=maximum[2])

    def test_highest_bit_of_the_mask_decides(self, zfc):
        check_speed(zfc, GET, "16_Gbps", speed=100, mask=0x3F)
        check_speed(zfc, GET, "4_Gbps", speed=100, mask=0x0F)
        check_speed(zfc, GET, "2_Gbps", speed=100, mask=0x07)

    @pytest.mark.parametrize("mask", [0x00, 0x04])
    @pytest.mark.parametrize("code", [row[0] for row in SPEEDS])
    def test_port_without_a_maximum_has_no_speed_to_show(self, zfc, mask, code):
        check_speed(zfc, GET, "Unknown", speed=code, mask=mask)

    @pytest.mark.parametrize("mask", [0x00, 0x01, 0x04, 0x70])
    def test_code_without_a_rank_is_shown_as_it_is(self, zfc, mask):
        check_speed(zfc, GET, "10_Gbps", speed=16, mask=mask)

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_every_family(self, zfc, device):
        check_speed(zfc, GET, "16_Gbps", speed=22, host=one_target(device=device, supported=0xFF))

    def test_target_number_is_the_record_s(self, zfc):
        host = one_target(target(number=65535), supported=0xFF)
        result = zfc(f"{GET} {IDENTIFIER}", host=host)
        assert result.command_calls == [LIST_CALL, f"{READ}(port, 65535)"]
        assert b"      Target Number: 65535\n" in result.stdout

    @pytest.mark.parametrize(
        "mask, lines",
        [
            (0x20, [f"{CLASS}::CmdGetCommon: Got TgtSpeed 7 > MaxSpeed 5"]),
            (0x00, [f"{CLASS}::CmdGetCommon: Got TgtSpeed 7 > MaxSpeed 0"]),
            (0x80, []),
        ],
    )
    def test_debug_log_shows_a_speed_above_the_maximum(self, zfc, mask, lines):
        host = one_target(supported=mask)
        result = zfc(f"{GET} {IDENTIFIER}", host=host, env={"HOSTILE_LINK_SPEED": "100"}, debug=65535)
        assert result.steps_of(CLASS) == around(
            f"{CLASS}::CmdGet",
            *around(
                f"{CLASS}::CmdGetCommon",
                *lines,
                *around(f"{CLASS}::DisplayTargetTLSD", f"{CLASS}::DisplayTargetTLSD: Message=Success"),
            ),
        )
        assert result.failures == []


class TestSet:
    @pytest.mark.parametrize("code, text, mask", SPEEDS)
    def test_speed(self, zfc, code, text, mask):
        result = check_speed(zfc, SET, text, [IDENTIFIER, text], speed=0, mask=mask)
        assert result.command_calls == [LIST_CALL, READ_CALL, write_call(code)]

    @pytest.mark.parametrize("code, text, mask", SPEEDS)
    def test_case_does_not_matter(self, zfc, code, text, mask):
        for word in (text.upper(), text.lower()):
            result = check_speed(zfc, SET, text, [IDENTIFIER, word], speed=0)
            assert result.command_calls[-1] == write_call(code)

    @pytest.mark.parametrize(
        "word", ["fast", "", "16", "16Gbps", " 16_Gbps", "16_Gbps ", "128_Gbps", "help", "?", "%n"]
    )
    def test_unknown_word_asks_for_the_lowest_speed(self, zfc, word):
        result = check_speed(zfc, SET, "1_Gbps", [IDENTIFIER, word], speed=22)
        assert result.command_calls == [LIST_CALL, READ_CALL, write_call(1)]

    @pytest.mark.parametrize("code, text, mask", SPEEDS)
    def test_speed_that_is_in_force_is_not_written(self, zfc, code, text, mask):
        result = check_speed(zfc, SET, text, [IDENTIFIER, text], speed=code, mask=mask)
        assert result.command_calls == [LIST_CALL, READ_CALL]

    @pytest.mark.parametrize("rank", range(1, 7))
    def test_speed_above_the_maximum_is_refused(self, zfc, rank):
        mask = SPEEDS[rank - 1][2]
        for place, (code, text, _) in enumerate(SPEEDS, 1):
            if place <= rank:
                check_speed(zfc, SET, text, [IDENTIFIER, text], speed=0, mask=mask)
            else:
                result = check_failed(zfc, SET, UNSUPPORTED, [IDENTIFIER, text], mask=mask)
                assert result.command_calls == [LIST_CALL]

    @pytest.mark.parametrize("mask", [0x00, 0x04])
    @pytest.mark.parametrize("word", ["1_Gbps", "64_Gbps", "fast"])
    def test_port_without_a_maximum_refuses_every_speed(self, zfc, mask, word):
        check_failed(zfc, SET, UNSUPPORTED, [IDENTIFIER, word], mask=mask)

    @pytest.mark.parametrize("mask", [0x04, 0xFF])
    @pytest.mark.parametrize("word", ["10_Gbps", "10_gbps"])
    def test_ten_gbps_can_never_be_set(self, zfc, mask, word):
        result = check_failed(zfc, SET, UNSUPPORTED, [IDENTIFIER, word], mask=mask, speed=16)
        assert result.command_calls == [LIST_CALL]

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_every_family(self, zfc, device):
        host = one_target(device=device, supported=0xFF)
        if device in CEDAR:
            result = check_failed(zfc, SET, READ_ONLY, [IDENTIFIER, "16_Gbps"], host=host)
            assert result.command_calls == [LIST_CALL]
        else:
            check_speed(zfc, SET, "16_Gbps", [IDENTIFIER, "16_Gbps"], host=host)

    def test_current_speed_above_the_maximum_is_written_over(self, zfc):
        result = check_speed(zfc, SET, "8_Gbps", [IDENTIFIER, "8_Gbps"], speed=100, mask=0x10)
        assert result.command_calls == [LIST_CALL, READ_CALL, write_call(8)]

    def test_more_words_are_ignored(self, zfc):
        check_speed(zfc, SET, "8_Gbps", [IDENTIFIER, "8_Gbps", "more", "?"])


class TestEdgeCases:
    def test_get_on_a_target_above_the_mask_shows_the_adapter_s_maximum(self, zfc):
        check_speed(zfc, GET, "32_Gbps", speed=100, mask=0x70)

    def test_set_with_8_gbps_in_lower_case_works(self, zfc):
        check_speed(zfc, SET, "8_Gbps", [IDENTIFIER, "8_gbps"])

    def test_set_with_fast_sets_1_gbps(self, zfc):
        result = check_speed(zfc, SET, "1_Gbps", [IDENTIFIER, "fast"])
        assert result.command_calls[-1] == write_call(1)

    def test_set_with_the_speed_in_force_makes_no_write(self, zfc):
        result = check_speed(zfc, SET, "16_Gbps", [IDENTIFIER, "16_Gbps"], speed=22)
        assert WRITE not in "".join(result.command_calls)

    def test_set_without_a_speed_changes_nothing(self, zfc):
        result = check_failed(zfc, SET, INVALID, usage=SET_USAGE)
        assert result.command_calls == [LIST_CALL]


# The checks in their order: each row fails at one check and at all that follow.
WORSE = {"results": {READ: 1, WRITE: 1}, "spoil_log": f"{FIRST_CALL}:directory"}


@pytest.mark.parametrize(
    "words, options, message, usage, calls",
    [
        pytest.param([], {"host": NO_LIST}, INVALID, GET_USAGE, [], id="no identifier"),
        pytest.param(["nobody"], {"host": NO_LIST}, INVALID, GET_USAGE, [], id="bad identifier"),
        pytest.param(["help"], {"host": NO_LIST}, "Failed, Unknown", GET_USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], {"host": NO_ADAPTERS}, INVALID, GET_USAGE, [LIST_CALL], id="empty list"),
        pytest.param([IDENTIFIER], {"host": one_target(interface=3)}, VIRTUAL, "", [LIST_CALL], id="virtual port"),
        pytest.param([IDENTIFIER], {}, NO_FILE, "", [LIST_CALL], id="bracket"),
    ],
)
def test_failure_of_get(zfc, words, options, message, usage, calls):
    result = check_failed(zfc, GET, message, words, usage=usage, **{**WORSE, **options})
    assert result.command_calls == calls


@pytest.mark.parametrize("code", [1, 13, 20, 113, 150, 151, 0xFFFFFFFF])
def test_failed_read(zfc, code):
    result = check_failed(zfc, GET, READ_FAILED, results={READ: code}, speed=22)
    assert result.command_calls == [LIST_CALL, READ_CALL]


VIRTUAL_CEDAR = one_target(device=0x7102, interface=3, supported=0)
CEDAR_PORT = one_target(device=0x7102, supported=0)
SLOW = one_target(supported=0x01)


@pytest.mark.parametrize(
    "words, options, message, usage, calls",
    [
        pytest.param([], {"host": NO_LIST}, INVALID, SET_USAGE, [], id="no identifier"),
        pytest.param(["nobody"], {"host": NO_LIST}, INVALID, SET_USAGE, [], id="bad identifier"),
        pytest.param(["/?", "8_Gbps"], {"host": NO_LIST}, "Failed, Unknown", SET_USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], {"host": VIRTUAL_CEDAR}, VIRTUAL, "", [LIST_CALL], id="virtual port"),
        pytest.param([IDENTIFIER], {"host": CEDAR_PORT}, READ_ONLY, "", [LIST_CALL], id="read-only"),
        pytest.param([IDENTIFIER], {"host": SLOW}, INVALID, SET_USAGE, [LIST_CALL], id="no speed"),
        pytest.param([IDENTIFIER, "64_Gbps"], {"host": SLOW}, UNSUPPORTED, "", [LIST_CALL], id="speed"),
        pytest.param([IDENTIFIER, "64_Gbps"], {}, NO_FILE, "", [LIST_CALL], id="bracket"),
    ],
)
def test_failure_of_set(zfc, words, options, message, usage, calls):
    result = check_failed(zfc, SET, message, words, usage=usage, **{**WORSE, **options})
    assert result.command_calls == calls


@pytest.mark.parametrize("code", [1, 13, 20, 113, 150, 151, 0xFFFFFFFF])
def test_failed_read_of_set(zfc, code):
    result = check_failed(zfc, SET, READ_FAILED, [IDENTIFIER, "8_Gbps"], results={READ: code, WRITE: 1})
    assert result.command_calls == [LIST_CALL, READ_CALL]


@pytest.mark.parametrize("code", [1, 13, 20, 113, 150, 151, 0xFFFFFFFF])
def test_failed_write(zfc, code):
    result = check_failed(zfc, SET, SET_FAILED, [IDENTIFIER, "8_Gbps"], results={WRITE: code})
    assert result.command_calls == [LIST_CALL, READ_CALL, write_call(8)]


def test_file_that_cannot_be_opened_for_the_write(zfc):
    result = check_failed(zfc, SET, NO_FILE, [IDENTIFIER, "8_Gbps"], spoil_log=f"{READ}:directory")
    assert result.command_calls == [LIST_CALL, READ_CALL]


NO_BRACKET = "Failed to open /var/tmp/torpi-output.log file"


@pytest.mark.parametrize(
    "words, options, function, lines",
    [
        (f"{GET} help", {}, "CmdGetCommon", ["Get target failed err=5"]),
        (f"{GET} {IDENTIFIER}", {"host": one_target(interface=3)}, "CmdGetCommon", ["Command not supported for vport"]),
        (f"{GET} {IDENTIFIER}", {"results": {READ: 7}}, "CmdGetCommon", ["Get Link Speed failed err=7"]),
        (f"{GET} {IDENTIFIER}", {"results": {READ: 0xFFFFFFFF}}, "CmdGetCommon", ["Get Link Speed failed err=-1"]),
        (f"{GET} {IDENTIFIER}", {"spoil_log": f"{FIRST_CALL}:directory"}, "CmdGetCommon", [NO_BRACKET]),
        (f"{SET} help 8_Gbps", {}, "CmdSetCommon", ["Get target failed err=5"]),
        (f"{SET} {IDENTIFIER} 8_Gbps", {"host": one_target(interface=3)}, "CmdSetCommon", ["Command not supported for vport"]),
        (f"{SET} {IDENTIFIER}", {"host": CEDAR_PORT}, "CmdSetCommon", ["Command not supported for this adapter"]),
        (f"{SET} {IDENTIFIER}", {}, "CmdSetCommon", ["speed not given"]),
        (f"{SET} {IDENTIFIER} 64_Gbps", {"host": SLOW}, "CmdSetCommon", ["speed not supported for this adapter"]),
        (f"{SET} {IDENTIFIER} 10_Gbps", {}, "CmdSetCommon", ["speed not supported for this adapter"]),
        (f"{SET} {IDENTIFIER} 8_Gbps", {"results": {READ: 7}}, "CmdSetCommon", ["Get Link Speed failed err=7"]),
        # A failed write has the wording of a read.
        (f"{SET} {IDENTIFIER} 8_Gbps", {"results": {WRITE: 7}}, "CmdSetCommon", ["Get Link Speed failed err=7"]),
        (f"{SET} {IDENTIFIER} 8_Gbps", {"spoil_log": f"{READ}:directory"}, "CmdSetCommon", [NO_BRACKET]),
        (f"{SET} {IDENTIFIER} 8_Gbps", {}, "CmdSetCommon", []),
    ],
)
def test_failures_in_the_debug_log(zfc, words, options, function, lines):
    result = zfc(words, debug=65535, **{"host": one_target(supported=0xFF), **options})
    assert result.failures == [f"{CLASS}::{function}: {line}" for line in lines]


def test_bad_identifier_in_the_debug_log(zfc):
    assert zfc(f"{GET} nobody", debug=65535).failures == [
        "FCTargetCmdsProcessor::GetTargetFromTargetString: Invalid Port identifier nobody",
        f"{CLASS}::CmdGetCommon: Get target failed err=6",
    ]


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t target -v tlsd {words}")
    documents.check(result.stdout, "target/tlsd/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize(
    "words, text", [("get ?", ""), ("set ?", ""), ("getcli ?", GET_USAGE), ("setcli ?", SET_USAGE)]
)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t target -v tlsd {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
