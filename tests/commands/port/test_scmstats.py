"""The scmstats node of a port: `get` of both generations and `clear`, in both forms."""

import pytest

from zfc import documents
from zfc.congestion import (
    CLEAR_ERROR,
    DISABLED,
    ENABLED,
    ENABLED_CALL,
    FAMILY,
    FIRST,
    FREE_LIST,
    FREE_LIST_CALL,
    GET_LIST,
    GET_LIST_CALL,
    INVALID,
    LIST_CALL,
    MAINTENANCE,
    NO_FILE,
    NO_HOST,
    NOT_BY_DRIVER,
    OTHER_KIND,
    PORT_KIND,
    READ_ERROR,
    SECOND,
    SETTINGS_ERROR,
    TOP,
    VIRTUAL,
    WRONG_ADAPTER,
    element,
    marks,
    one_port,
    statistics_list,
    wide,
)
from zfc.documents import check_both
from zfc.host import DAHLIA, HAZEL, IRIS, NO_ADAPTERS, NO_LIST, every_device
from zfc.port import IDENTIFIER
from zfc.steps import around

GET = "-t port -s scmstats get"
CLEAR = "-t port -s scmstats clear"
GET_USAGE = "Usage: get [port identifier]\r\n"
CLEAR_USAGE = "Usage: clear [port identifier]\r\n"
RESET = "TORPI_SANCongMgmtResetStatistics"
RESET_CALL = f"{RESET}(port)"

# The counters that a port shows: all but the one of targets alone.
SHOWN = [offset for offset in range(48, 240, 8)] + [256]
COUNTERS = wide(10**10)
SECOND_CALLS = [LIST_CALL, ENABLED_CALL, GET_LIST_CALL, FREE_LIST_CALL]

FIRST_VALUES = {
    "state": "Online",
    "notification": "      Congestion Notification: Congestion, Delivery, Link Integrity",
    "link_event": "Primitive Sequence Protocol Error",
    "threshold": 4294967295,
    "c776": 1,
    "c780": 3,
    "c784": 5,
    "c788": 7,
    "c792": 12,
    "c796": 4294967295,
    "delivery": "Unable To Route",
    "event": "Oversubscription",
    "period": 1000,
    "severity": "Alarm",
    "c840": 5,  # the low 32 bits
    "c848": 4294967295,
}


def second_values(counters=None, state="Online"):
    return {"state": state, **marks(counters or COUNTERS, SHOWN)}


def check_first(zfc, values=None, words=(IDENTIFIER,), **fields):
    host = one_port(**{"capabilities": FIRST, **fields})
    values = {**FIRST_VALUES, **(values or {})}
    return check_both(zfc, GET, "port/scmstats/first", words=words, host=host, values=values)


def check_second(zfc, elements, values=None, name="second", words=(IDENTIFIER,), options=None, **fields):
    values = second_values() if values is None else values
    env = statistics_list(zfc, *elements)
    return check_both(
        zfc,
        GET,
        f"port/scmstats/{name}",
        words=words,
        host=one_port(**fields),
        env=env,
        values=values,
        **{"well_formed": "not-freed" not in name, **(options or {})},
    )


def check_failed(zfc, message, words=(IDENTIFIER,), **options):
    options = {"host": one_port(), **options}
    return check_both(zfc, GET, "port/scmstats/failed", words=words, values={"message": message}, **options)


def check_clear(zfc, message="Success", words=(IDENTIFIER,), **options):
    options = {"host": one_port(), **options}
    return check_both(zfc, CLEAR, "port/scmstats/clear", words=words, values={"message": message}, **options)


class TestFirstGeneration:
    def test_report(self, zfc):
        """The library is asked for nothing but the feature."""
        result = check_first(zfc)
        assert result.command_calls == [LIST_CALL, ENABLED_CALL]

    def test_ignores_more_words(self, zfc):
        check_first(zfc, words=[IDENTIFIER, "more", "help", "?"])

    @pytest.mark.parametrize(
        "mask, line",
        [
            (0, "      Congestion Notification: None"),
            (1, "      Congestion Notification: Congestion, "),
            (2, "      Congestion Notification: Delivery, "),
            (3, "      Congestion Notification: Congestion, Delivery, "),
            (4, "      Congestion Notification: Link Integrity"),
            (5, "      Congestion Notification: Congestion, Link Integrity"),
            (6, "      Congestion Notification: Delivery, Link Integrity"),
            (7, "      Congestion Notification: Congestion, Delivery, Link Integrity"),
            (8, ""),
            (0x8000, ""),
            (0xFFF8, ""),
            (9, "      Congestion Notification: Congestion, "),
            (0xFFFC, "      Congestion Notification: Link Integrity"),
            (0xFFFF, "      Congestion Notification: Congestion, Delivery, Link Integrity"),
        ],
    )
    def test_notification_line(self, zfc, mask, line):
        check_first(zfc, {"notification": line}, notifications=mask)

    @pytest.mark.parametrize(
        "code, text",
        [
            (0, "Unknown"),
            (1, "Link Failure"),
            (2, "Loss Of Sync"),
            (3, "Loss Of Signal"),
            (4, "Primitive Sequence Protocol Error"),
            (5, "Invalid Transmission Word"),
            (6, "Invalid CRC"),
            (7, "Reserved"),
            (14, "Reserved"),
            (15, "Device Specific"),
            (16, "Reserved"),
            (0x0101, "Reserved"),
            (65535, "Reserved"),
        ],
    )
    def test_link_event(self, zfc, code, text):
        check_first(zfc, {"link_event": text}, link_event=code)

    @pytest.mark.parametrize(
        "code, text",
        [
            (0, "Unknown"),
            (1, "Timeout"),
            (2, "Unable To Route"),
            (3, "Reserved"),
            (14, "Reserved"),
            (15, "Device Specific"),
            (16, "Reserved"),
            (0x0100, "Reserved"),
            (65535, "Reserved"),
        ],
    )
    def test_delivery_reason(self, zfc, code, text):
        check_first(zfc, {"delivery": text}, delivery=code)

    @pytest.mark.parametrize(
        "code, text",
        [
            (0, "Clear"),
            (1, "Lost Credit"),
            (2, "Credit Stall"),
            (3, "Oversubscription"),
            (4, "Reserved"),
            (14, "Reserved"),
            (15, "Device Specific"),
            (16, "Reserved"),
            (0x0101, "Reserved"),
            (65535, "Reserved"),
        ],
    )
    def test_congestion_event(self, zfc, code, text):
        check_first(zfc, {"event": text}, event=code)

    @pytest.mark.parametrize(
        "code, text",
        [(0, "None"), (0xF1, "Warning"), (0xF7, "Alarm"), (1, "Reserved"), (0xF0, "Reserved"), (0xFF, "Reserved")],
    )
    def test_severity(self, zfc, code, text):
        check_first(zfc, {"severity": text}, severity=code)

    @pytest.mark.parametrize(
        "code, text", [(1, "Online"), (3, "Offline"), (0, "Unknown"), (2, "Unknown"), (4, "Unknown"), (255, "Unknown")]
    )
    def test_port_state(self, zfc, code, text):
        check_first(zfc, {"state": text}, state=code)

    @pytest.mark.parametrize(
        "counter, text", [(0, 0), (2**32, 0), (2**32 - 1, 4294967295), (2**63 + 2**31, 2147483648)]
    )
    def test_signal_counters_are_cut_to_32_bits(self, zfc, counter, text):
        check_first(zfc, {"c840": text, "c848": 4294967295}, alarms=counter)
        check_first(zfc, {"c840": 5, "c848": text}, warnings=counter)


class TestSecondGeneration:
    def test_report(self, zfc):
        result = check_second(zfc, [element(counters=COUNTERS)])
        assert result.command_calls == SECOND_CALLS

    def test_ignores_more_words(self, zfc):
        check_second(zfc, [element(counters=COUNTERS)], words=[IDENTIFIER, "more", "help", "?"])

    def test_counters_of_64_bits_at_their_top(self, zfc):
        check_second(zfc, [element(counters=TOP)], second_values(TOP))

    def test_counters_at_zero(self, zfc):
        check_second(zfc, [element()], second_values(wide(0) | dict.fromkeys(SHOWN, 0)))

    @pytest.mark.parametrize("capabilities", [SECOND, FIRST | SECOND, 0xFFFFFFFF])
    def test_its_bit_wins_over_that_of_the_first(self, zfc, capabilities):
        result = check_second(zfc, [element(counters=COUNTERS)], capabilities=capabilities)
        assert result.command_calls == SECOND_CALLS

    @pytest.mark.parametrize("code, text", [(3, "Offline"), (0, "Unknown")])
    def test_port_state(self, zfc, code, text):
        check_second(zfc, [element(counters=COUNTERS)], second_values(state=text), state=code)

    @pytest.mark.parametrize("kind", [OTHER_KIND, 0, 0x81, 0x180, 0xFFFFFFFF])
    def test_first_element_of_another_kind_leads_to_the_second(self, zfc, kind):
        elements = [element(kind, counters=TOP), element(PORT_KIND, counters=COUNTERS)]
        assert check_second(zfc, elements).command_calls == SECOND_CALLS

    def test_second_element_is_taken_whatever_its_kind(self, zfc):
        elements = [element(OTHER_KIND), element(OTHER_KIND, counters=COUNTERS), element(PORT_KIND, counters=TOP)]
        check_second(zfc, elements)

    def test_first_element_is_taken_whatever_its_names(self, zfc):
        other = element(names="ff" * 16, counters=COUNTERS)
        check_second(zfc, [other, element(counters=TOP), element(counters=TOP)])

    @pytest.mark.parametrize("count", [1, 5000])
    def test_long_list(self, zfc, count):
        check_second(zfc, [element(counters=COUNTERS)] + [element(OTHER_KIND, counters=TOP)] * count)

    @pytest.mark.parametrize("kind", [OTHER_KIND, 0x81])
    def test_one_element_of_another_kind_shows_the_header_lines_alone(self, zfc, kind):
        result = check_second(zfc, [element(kind, counters=TOP)], {"state": "Online"}, "bare")
        assert result.command_calls == SECOND_CALLS

    @pytest.mark.parametrize("code", [1, 38, 39, 150, 0xFFFFFFFF])
    def test_freeing_that_fails_adds_a_second_document(self, zfc, code):
        values = {**second_values(), "message": CLEAR_ERROR}
        options = {"results": {FREE_LIST: code}}
        result = check_second(zfc, [element(counters=COUNTERS)], values, "not-freed", options=options)
        assert result.command_calls == SECOND_CALLS

    def test_freeing_that_fails_after_header_lines_alone(self, zfc):
        values = {"state": "Online", "message": CLEAR_ERROR}
        options = {"results": {FREE_LIST: 1}}
        check_second(zfc, [element(OTHER_KIND)], values, "bare-not-freed", options=options)

    def test_bracket_of_freeing_that_cannot_be_opened_adds_a_second_document(self, zfc):
        values = {**second_values(), "message": NO_FILE}
        options = {"spoil_log": f"{GET_LIST}:directory"}
        result = check_second(zfc, [element(counters=COUNTERS)], values, "not-freed", options=options)
        assert result.command_calls == SECOND_CALLS[:-1]

    @pytest.mark.parametrize("code", [39, 19])
    def test_code_of_a_failure_after_the_statistics(self, zfc, code):
        options = {"results": {FREE_LIST: 1}} if code == 39 else {"spoil_log": f"{GET_LIST}:directory"}
        env = statistics_list(zfc, element())
        assert zfc([*GET.split(), IDENTIFIER], host=one_port(), env=env, debug=1, **options).code == code

    @pytest.mark.parametrize(
        "code, message", [(150, MAINTENANCE), *[(code, READ_ERROR) for code in (1, 38, 149, 151, 0xFFFFFFFF)]]
    )
    def test_list_that_cannot_be_read(self, zfc, code, message):
        result = check_failed(zfc, message, results={GET_LIST: code}, env=statistics_list(zfc, element()))
        assert result.command_calls == SECOND_CALLS[:-1]

    def test_null_list_with_a_success_status(self, zfc):
        result = check_failed(zfc, READ_ERROR)
        assert result.command_calls == SECOND_CALLS[:-1]

    def test_bracket_of_the_list_that_cannot_be_opened(self, zfc):
        result = check_failed(zfc, NO_FILE, spoil_log=f"{ENABLED}:directory")
        assert result.command_calls == [LIST_CALL, ENABLED_CALL]


class TestClear:
    @pytest.mark.parametrize("device", FAMILY, ids=hex)
    def test_success(self, zfc, device):
        result = check_clear(zfc, host=one_port(device=device))
        assert result.command_calls == [LIST_CALL, ENABLED_CALL, RESET_CALL]

    def test_ignores_more_words(self, zfc):
        check_clear(zfc, words=[IDENTIFIER, "more", "help", "?"])

    @pytest.mark.parametrize(
        "code, message, program_code",
        [
            (40, "Failed, Memory Error", 42),
            (118, NOT_BY_DRIVER, 45),
            (150, MAINTENANCE, 60),
            *[(code, "Failed, Unknown", 50) for code in (1, 38, 42, 45, 60, 117, 119, 0xFFFFFFFF)],
        ],
    )
    def test_failed_reset(self, zfc, code, message, program_code):
        result = check_clear(zfc, message, results={RESET: code}, debug=1)
        assert result.command_calls == [LIST_CALL, ENABLED_CALL, RESET_CALL]
        assert result.xml.code == program_code

    def test_bracket_of_the_reset_that_cannot_be_opened(self, zfc):
        result = check_clear(zfc, NO_FILE, spoil_log=f"{ENABLED}:directory")
        assert result.command_calls == [LIST_CALL, ENABLED_CALL]


# The guard. Each row fails at one check and at all that follow, so its place in the order shows.
OFF = {"HOSTILE_VCLM_ENABLED": "0"}
GUARD = [
    pytest.param({"device": 0x3432, "capabilities": 0, "interface": 3}, WRONG_ADAPTER, [LIST_CALL], id="family"),
    pytest.param({"vendor": 0x1077, "capabilities": 0}, WRONG_ADAPTER, [LIST_CALL], id="vendor"),
    pytest.param({"capabilities": 0, "interface": 3}, NOT_BY_DRIVER, [LIST_CALL], id="capability"),
    pytest.param(
        {"capabilities": 0xFFFFFFFF & ~(FIRST | SECOND), "interface": 3}, NOT_BY_DRIVER, [LIST_CALL], id="other bits"
    ),
    pytest.param({"interface": 3}, VIRTUAL, [LIST_CALL], id="virtual port"),
    pytest.param({}, DISABLED, [LIST_CALL, ENABLED_CALL], id="feature off"),
]


class TestGuard:
    @pytest.mark.parametrize("check, usage", [(check_failed, GET_USAGE), (check_clear, CLEAR_USAGE)])
    @pytest.mark.parametrize(
        "words, host, message, shows_usage, calls",
        [
            pytest.param([], NO_LIST, INVALID, True, [], id="no identifier"),
            pytest.param([""], NO_LIST, INVALID, True, [], id="empty identifier"),
            pytest.param(["nobody"], NO_LIST, INVALID, True, [], id="bad identifier"),
            *[pytest.param([word], NO_LIST, "Failed, Unknown", True, [], id=word) for word in ("help", "/h", "-help", "/?")],
            pytest.param([IDENTIFIER], NO_LIST, NO_HOST, False, [LIST_CALL], id="no list"),
            pytest.param([IDENTIFIER], NO_ADAPTERS, INVALID, True, [LIST_CALL], id="no adapters"),
        ],
    )
    def test_identifier(self, zfc, check, usage, words, host, message, shows_usage, calls):
        result = check(zfc, message, words, host=host, usage=usage if shows_usage else "")
        assert result.command_calls == calls

    @pytest.mark.parametrize("check", [check_failed, check_clear])
    @pytest.mark.parametrize("fields, message, calls", GUARD)
    def test_order(self, zfc, check, fields, message, calls):
        assert check(zfc, message, host=one_port(**fields), env=OFF).command_calls == calls

    @pytest.mark.parametrize("check", [check_failed, check_clear])
    @pytest.mark.parametrize(
        "code, message", [(150, MAINTENANCE), *[(code, SETTINGS_ERROR) for code in (1, 13, 149, 151, 0xFFFFFFFF)]]
    )
    def test_feature_that_cannot_be_read(self, zfc, check, code, message):
        result = check(zfc, message, results={ENABLED: code}, env=OFF)
        assert result.command_calls == [LIST_CALL, ENABLED_CALL]

    @pytest.mark.parametrize("check", [check_failed, check_clear])
    def test_bracket_of_the_feature_that_cannot_be_opened(self, zfc, check):
        result = check(zfc, NO_FILE, spoil_log="TORPI_GetAdapterList:directory")
        assert result.command_calls == [LIST_CALL]

    @pytest.mark.parametrize("flag", [1, 2, 128, 255])
    def test_any_flag_but_zero_is_on(self, zfc, flag):
        check_clear(zfc, env={"HOSTILE_VCLM_ENABLED": str(flag)})

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_families(self, zfc, device):
        message = "Success" if device in HAZEL + IRIS + DAHLIA else WRONG_ADAPTER
        check_clear(zfc, message, host=one_port(device=device))

    @pytest.mark.parametrize("interface", [0, 1, 2, 4, 0x0103])
    def test_only_type_3_is_a_virtual_port(self, zfc, interface):
        check_clear(zfc, host=one_port(interface=interface))


class TestEdgeCases:
    def test_port_with_only_bit_23_has_a_report_and_cannot_be_cleared(self, zfc):
        check_first(zfc)
        result = check_clear(zfc, NOT_BY_DRIVER, host=one_port(capabilities=FIRST))
        assert result.command_calls == [LIST_CALL]

    def test_feature_switched_off(self, zfc):
        check_failed(zfc, DISABLED, env=OFF)
        check_clear(zfc, DISABLED, env=OFF)
        check_failed(zfc, DISABLED, env=OFF, host=one_port(capabilities=FIRST))


CLASS = "PhysicalPortSCMStatsCmdsProcessor"
NO_BRACKET = "Failed to open /var/tmp/torpi-output.log file"


@pytest.mark.parametrize("command, function", [(GET, "CmdGetCommon"), (CLEAR, "CmdClearCommon")])
@pytest.mark.parametrize(
    "identifier, host, options, lines",
    [
        ("help", NO_LIST, {}, ["Get phy port failed err=5"]),
        (IDENTIFIER, NO_ADAPTERS, {}, ["Get phy port failed err=6"]),
        (IDENTIFIER, one_port(device=0x3432), {}, ["Command not supported for this adapter"]),
        (IDENTIFIER, one_port(capabilities=0), {}, ["Driver/Firmware does not support SCM"]),
        (IDENTIFIER, one_port(interface=3), {}, ["Command not supported for vport"]),
        (IDENTIFIER, one_port(), {"results": {ENABLED: 150}}, ["Get VCLM feature failed err=150"]),
        (IDENTIFIER, one_port(), {"env": OFF}, ["SCM is disabled on the port"]),
        (IDENTIFIER, one_port(), {"spoil_log": "TORPI_GetAdapterList:directory"}, [NO_BRACKET]),
        (IDENTIFIER, one_port(), {"spoil_log": f"{ENABLED}:directory"}, [NO_BRACKET]),
    ],
)
def test_guard_in_the_debug_log(zfc, command, function, identifier, host, options, lines):
    result = zfc(f"{command} {identifier}", host=host, debug=65535, **options)
    assert result.failures == [f"{CLASS}::{function}: {line}" for line in lines]


@pytest.mark.parametrize(
    "words, elements, options, lines",
    [
        (GET, [element()], {}, []),
        (GET, [], {}, ["CmdGetCommon: SCM statistics list is NULL"]),
        (
            GET,
            [element(OTHER_KIND)],
            {},
            ["DisplayPortSCMStatsV2: No matching physical port found in SCM V2 stats"],
        ),
        (
            GET,
            [element()],
            {"results": {GET_LIST: 0xFFFFFFFF}},
            ["CmdGetCommon: Get SCM statistics list failed err=-1"],
        ),
        (GET, [element()], {"results": {FREE_LIST: 39}}, ["CmdGetCommon: Free SCM statistics list failed err=39"]),
        (GET, [element()], {"spoil_log": f"{GET_LIST}:directory"}, [f"CmdGetCommon: {NO_BRACKET}"]),
        (CLEAR, [], {"results": {RESET: 118}}, ["CmdClearCommon: Reset SCM statistics failed err=118"]),
    ],
)
def test_failures_in_the_debug_log(zfc, words, elements, options, lines):
    env = statistics_list(zfc, *elements)
    result = zfc(f"{words} {IDENTIFIER}", host=one_port(), env=env, debug=65535, **options)
    assert result.failures == [f"{CLASS}::{line}" for line in lines]


@pytest.mark.parametrize(
    "words, capabilities, command, display",
    [
        (f"{GET}cli", SECOND, ("CmdGetCli", "CmdGetCommon"), "DisplayPortSCMStatsV2"),
        (GET, FIRST, ("CmdGet", "CmdGetCommon"), "DisplayPortSCMStats"),
        (f"{CLEAR}cli", SECOND, ("CmdClearCli", "CmdClearCommon"), "DisplayClear"),
    ],
)
def test_steps_in_the_debug_log(zfc, words, capabilities, command, display):
    env = statistics_list(zfc, element())
    result = zfc(f"{words} {IDENTIFIER}", host=one_port(capabilities=capabilities), env=env, debug=65535)
    form, common = command
    assert result.steps_of(CLASS) == around(
        f"{CLASS}::{form}",
        *around(f"{CLASS}::{common}", *around(f"{CLASS}::{display}", f"{CLASS}::{display}: Message=Success")),
    )


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s scmstats {words}")
    documents.check(result.stdout, "port/scmstats/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize(
    "words, text",
    [("get ?", ""), ("clear ?", ""), ("getcli ?", GET_USAGE), ("clearcli ?", CLEAR_USAGE)],
)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port -s scmstats {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
