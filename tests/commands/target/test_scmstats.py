"""The scmstats node of a target: `get` of both generations, in both forms."""

import struct

import pytest

from zfc import documents
from zfc.congestion import (
    CLEAR_ERROR,
    DISABLED,
    ENABLED,
    ENABLED_CALL,
    FIRST,
    FREE_LIST,
    FREE_LIST_CALL,
    GET_LIST,
    GET_LIST_CALL,
    INVALID,
    LIST_CALL,
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
    congested_target,
    element,
    marks,
    one_target,
    statistics_list,
    wide,
)
from zfc.documents import check_both
from zfc.host import DAHLIA, HAZEL, IRIS, NO_ADAPTERS, NO_LIST, NOISE, every_device
from zfc.steps import around
from zfc.target import IDENTIFIER

GET = "-t target -v scmstats get"
USAGE = "Usage: get [port identifier]\r\n"
OFF = {"HOSTILE_VCLM_ENABLED": "0"}

READ = "TORPI_GetPortStatisticsFC"
# The number of the port's handle, the kind and name of the target with zeros after them, and the record.
READ_CALL = f"{READ}(0x1234abcd, 0, 020050060160abcdef010000, zeroed buffer)"
FIRST_CALLS = [LIST_CALL, ENABLED_CALL, READ_CALL]
SECOND_CALLS = [LIST_CALL, ENABLED_CALL, GET_LIST_CALL, FREE_LIST_CALL]

NODE, NAME = "200050060160abcd", "50060160abcdef01"
NAMES = NODE + NAME
PORT_ELEMENT = element(PORT_KIND, names="20000011223344552100001122334455", counters=TOP)

# The counters that a target shows: no signals (48, 56) and no delivery failures (168 to 192).
SHOWN = [*range(64, 168, 8), *range(200, 240, 8), 248, 256]
COUNTERS = wide(10**10)

FIRST_OFFSETS = [*range(24, 84, 4), 104, 108]
FIRST_VALUES = {
    "notification": "      Congestion Notification: Delivery, Link Integrity, Peer Congestion",
    "link_event": "Invalid Transmission Word",
    "threshold": 4294967295,
    "delivery": "Timeout",
    "event": "Credit Stall",
    "period": 2000,
    **{f"c{offset}": 1000 + offset for offset in FIRST_OFFSETS},
}


def statistics(counters):
    """The statistics of a target: counters by their offset, noise elsewhere."""
    raw = bytearray([NOISE]) * 184
    for offset, value in counters.items():
        struct.pack_into("<I", raw, offset, value)
    return bytes(raw)


FIRST_STATISTICS = {"target_statistics": statistics({offset: 1000 + offset for offset in FIRST_OFFSETS})}


def check_first(zfc, values=None, words=(IDENTIFIER,), buffers=FIRST_STATISTICS, **fields):
    host = one_target(congested_target(**fields), capabilities=FIRST)
    values = {**FIRST_VALUES, **(values or {})}
    name = "target/scmstats/first"
    return check_both(zfc, GET, name, words=words, host=host, buffers=buffers, values=values)


def check_second(zfc, elements, values=None, name="second", words=(IDENTIFIER,), options=None, **fields):
    values = marks(COUNTERS, SHOWN) if values is None else values
    env = statistics_list(zfc, *elements)
    return check_both(
        zfc,
        GET,
        f"target/scmstats/{name}",
        words=words,
        host=one_target(**fields),
        env=env,
        values=values,
        **{"well_formed": "not-freed" not in name, **(options or {})},
    )


def check_failed(zfc, message, words=(IDENTIFIER,), **options):
    options = {"host": one_target(), **options}
    return check_both(zfc, GET, "target/scmstats/failed", words=words, values={"message": message}, **options)


class TestFirstGeneration:
    def test_report(self, zfc):
        result = check_first(zfc, words=[IDENTIFIER, "more", "help", "?"])
        assert result.command_calls == FIRST_CALLS

    @pytest.mark.parametrize("counter", [0, 2**31, 2**32 - 1])
    def test_counters(self, zfc, counter):
        counters = dict.fromkeys(FIRST_OFFSETS, counter)
        check_first(zfc, marks(counters), buffers={"target_statistics": statistics(counters)})

    @pytest.mark.parametrize(
        "mask, line",
        [
            (0, "      Congestion Notification: None"),
            (2, "      Congestion Notification: Delivery, "),
            (4, "      Congestion Notification: Link Integrity, "),
            (6, "      Congestion Notification: Delivery, Link Integrity, "),
            (8, "      Congestion Notification: Peer Congestion"),
            (10, "      Congestion Notification: Delivery, Peer Congestion"),
            (12, "      Congestion Notification: Link Integrity, Peer Congestion"),
            (14, "      Congestion Notification: Delivery, Link Integrity, Peer Congestion"),
            (1, ""),  # a port's bit
            (16, ""),
            (0xFFF1, ""),
            (3, "      Congestion Notification: Delivery, "),
            (0xFFFF, "      Congestion Notification: Delivery, Link Integrity, Peer Congestion"),
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
            (15, "Device Specific"),
            (16, "Reserved"),
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
            (15, "Reserved"),  # unlike a port's
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
            (15, "Device Specific"),
            (65535, "Reserved"),
        ],
    )
    def test_peer_congestion_event(self, zfc, code, text):
        check_first(zfc, {"event": text}, event=code)

    @pytest.mark.parametrize("code", [1, 38, 150, 151, 0xFFFFFFFF])
    def test_failed_read(self, zfc, code):
        """One status for all, maintenance mode included."""
        result = check_failed(zfc, READ_ERROR, host=one_target(capabilities=FIRST), results={READ: code})
        assert result.command_calls == FIRST_CALLS

    def test_bracket_of_the_read_that_cannot_be_opened(self, zfc):
        host = one_target(capabilities=FIRST)
        result = check_failed(zfc, NO_FILE, host=host, spoil_log=f"{ENABLED}:directory")
        assert result.command_calls == FIRST_CALLS[:-1]


class TestSecondGeneration:
    def test_report(self, zfc):
        elements = [PORT_ELEMENT, element(OTHER_KIND, names=NAMES, counters=COUNTERS)]
        result = check_second(zfc, elements, words=[IDENTIFIER, "more", "help", "?"])
        assert result.command_calls == SECOND_CALLS

    def test_counters_of_64_bits_at_their_top(self, zfc):
        check_second(zfc, [PORT_ELEMENT, element(OTHER_KIND, names=NAMES, counters=TOP)], marks(TOP, SHOWN))

    @pytest.mark.parametrize("capabilities", [SECOND, FIRST | SECOND, 0xFFFFFFFF])
    def test_its_bit_wins_over_that_of_the_first(self, zfc, capabilities):
        elements = [PORT_ELEMENT, element(OTHER_KIND, names=NAMES, counters=COUNTERS)]
        check_second(zfc, elements, capabilities=capabilities)

    @pytest.mark.parametrize("kind", [PORT_KIND, OTHER_KIND, 0, 0xFFFFFFFF])
    def test_the_kind_of_an_element_does_not_matter(self, zfc, kind):
        check_second(zfc, [element(kind), element(kind, names=NAMES, counters=COUNTERS)])

    @pytest.mark.parametrize(
        "names",
        [
            NODE + "50060160abcdef02",
            NODE + "ff060160abcdef01",
            "200050060160abce" + NAME,
            "ff0050060160abcd" + NAME,
            NAME + NODE,
            "00" * 16,
        ],
    )
    def test_both_names_have_to_match(self, zfc, names):
        other = element(OTHER_KIND, names=names, counters=TOP)
        check_second(zfc, [PORT_ELEMENT, other, element(OTHER_KIND, names=NAMES, counters=COUNTERS)])
        check_second(zfc, [PORT_ELEMENT, other], {}, "bare")

    def test_names_are_compared_beyond_a_zero_octet(self, zfc):
        node, name = "0000000000000001", "50000000000000aa"
        found = congested_target(node_name=bytes.fromhex(node), wwpn=bytes.fromhex(name))
        others = [element(OTHER_KIND, names=names, counters=TOP) for names in (node + "5" + "0" * 15, "0" * 16 + name)]
        env = statistics_list(zfc, PORT_ELEMENT, *others, element(OTHER_KIND, names=node + name, counters=COUNTERS))
        identifier = "FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:aa"
        result = zfc([*f"{GET}cli".split(), identifier], host=one_target(found), env=env)
        assert b"      PUN Count: 10000000248\n" in result.stdout

    def test_first_of_several_counts(self, zfc):
        elements = [element(OTHER_KIND, names=NAMES, counters=counters) for counters in (COUNTERS, TOP)]
        check_second(zfc, [PORT_ELEMENT, *elements])

    @pytest.mark.parametrize("count", [1, 5000])
    def test_last_of_a_long_list(self, zfc, count):
        others = [element(OTHER_KIND, names=f"{place:032x}", counters=TOP) for place in range(count)]
        check_second(zfc, [PORT_ELEMENT, *others, element(OTHER_KIND, names=NAMES, counters=COUNTERS)])

    @pytest.mark.parametrize("elements", [[PORT_ELEMENT], [PORT_ELEMENT, PORT_ELEMENT]])
    def test_target_without_an_element(self, zfc, elements):
        assert check_second(zfc, elements, {}, "bare").command_calls == SECOND_CALLS

    @pytest.mark.parametrize("code", [1, 38, 39, 150, 0xFFFFFFFF])
    def test_freeing_that_fails_adds_a_second_document(self, zfc, code):
        elements = [PORT_ELEMENT, element(OTHER_KIND, names=NAMES, counters=COUNTERS)]
        values = {**marks(COUNTERS, SHOWN), "message": CLEAR_ERROR}
        result = check_second(zfc, elements, values, "not-freed", options={"results": {FREE_LIST: code}})
        assert result.command_calls == SECOND_CALLS

    def test_bracket_of_freeing_that_cannot_be_opened_adds_a_second_document(self, zfc):
        elements = [PORT_ELEMENT, element(OTHER_KIND, names=NAMES, counters=COUNTERS)]
        values = {**marks(COUNTERS, SHOWN), "message": NO_FILE}
        options = {"spoil_log": f"{GET_LIST}:directory"}
        result = check_second(zfc, elements, values, "not-freed", options=options)
        assert result.command_calls == SECOND_CALLS[:-1]

    @pytest.mark.parametrize("code", [1, 38, 149, 150, 151, 0xFFFFFFFF])
    def test_list_that_cannot_be_read(self, zfc, code):
        """One status for all, maintenance mode included: unlike a port."""
        env = statistics_list(zfc, PORT_ELEMENT)
        result = check_failed(zfc, READ_ERROR, results={GET_LIST: code}, env=env)
        assert result.command_calls == SECOND_CALLS[:-1]

    def test_null_list_with_a_success_status(self, zfc):
        assert check_failed(zfc, READ_ERROR).command_calls == SECOND_CALLS[:-1]

    def test_bracket_of_the_list_that_cannot_be_opened(self, zfc):
        result = check_failed(zfc, NO_FILE, spoil_log=f"{ENABLED}:directory")
        assert result.command_calls == [LIST_CALL, ENABLED_CALL]


# Each row fails at one check and at all that follow, so its place in the order shows.
@pytest.mark.parametrize(
    "words, host, message, usage, calls",
    [
        pytest.param([], NO_LIST, INVALID, USAGE, [], id="no identifier"),
        pytest.param(["nobody"], NO_LIST, INVALID, USAGE, [], id="bad identifier"),
        pytest.param(["FC_21:00:00:11:22:33:44:55"], NO_LIST, INVALID, USAGE, [], id="port"),
        pytest.param(["help"], NO_LIST, "Failed, Unknown", USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], NO_LIST, NO_HOST, "", [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], NO_ADAPTERS, INVALID, USAGE, [LIST_CALL], id="no adapters"),
        pytest.param(
            [IDENTIFIER],
            one_target(device=0x3432, capabilities=0, interface=3),
            WRONG_ADAPTER,
            "",
            [LIST_CALL],
            id="family",
        ),
        pytest.param(
            [IDENTIFIER],
            one_target(capabilities=0xFFFFFFFF & ~(FIRST | SECOND), interface=3),
            NOT_BY_DRIVER,
            "",
            [LIST_CALL],
            id="capability",
        ),
        pytest.param([IDENTIFIER], one_target(interface=3), VIRTUAL, "", [LIST_CALL], id="virtual port"),
        pytest.param([IDENTIFIER], one_target(), DISABLED, "", [LIST_CALL, ENABLED_CALL], id="feature off"),
        pytest.param(
            [IDENTIFIER], one_target(capabilities=FIRST), DISABLED, "", [LIST_CALL, ENABLED_CALL], id="feature off, first"
        ),
    ],
)
def test_failure(zfc, words, host, message, usage, calls):
    result = check_failed(zfc, message, words, host=host, usage=usage, env=OFF)
    assert result.command_calls == calls


@pytest.mark.parametrize("code", [1, 13, 149, 150, 151, 0xFFFFFFFF])
def test_feature_that_cannot_be_read(zfc, code):
    """One status for all, maintenance mode included: unlike a port."""
    result = check_failed(zfc, SETTINGS_ERROR, results={ENABLED: code})
    assert result.command_calls == [LIST_CALL, ENABLED_CALL]


def test_bracket_of_the_feature_that_cannot_be_opened(zfc):
    result = check_failed(zfc, NO_FILE, spoil_log="TORPI_GetAdapterList:directory")
    assert result.command_calls == [LIST_CALL]


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_families(zfc, device):
    if device in HAZEL + IRIS + DAHLIA:
        check_second(zfc, [PORT_ELEMENT], {}, "bare", device=device)
    else:
        check_failed(zfc, WRONG_ADAPTER, host=one_target(device=device))


class TestEdgeCases:
    def test_target_at_the_head_of_the_list_is_not_found(self, zfc):
        head = element(OTHER_KIND, names=NAMES, counters=TOP)
        check_second(zfc, [head], {}, "bare")
        check_second(zfc, [head, PORT_ELEMENT], {}, "bare")
        check_second(zfc, [head, element(OTHER_KIND, names=NAMES, counters=COUNTERS)])

    def test_delivery_reason_15_is_reserved(self, zfc):
        check_first(zfc, {"delivery": "Reserved"}, delivery=15)


CLASS = "FCTargetSCMStatsCmdsProcessor"
FOUND = element(OTHER_KIND, names=NAMES, counters=COUNTERS)


@pytest.mark.parametrize(
    "identifier, fields, options, lines",
    [
        (IDENTIFIER, {}, {}, []),
        ("help", {}, {}, ["CmdGetCommon: Get target failed err=5"]),
        (IDENTIFIER, {"device": 0x3432}, {}, ["CmdGetCommon: Command not supported for this adapter"]),
        (IDENTIFIER, {"capabilities": 0}, {}, ["CmdGetCommon: Driver/Firmware does not support SCM"]),
        (IDENTIFIER, {"interface": 3}, {}, ["CmdGetCommon: Command not supported for vport"]),
        (IDENTIFIER, {}, {"results": {ENABLED: 150}}, ["CmdGetCommon: Get VCLM feature failed err=150"]),
        (IDENTIFIER, {}, {"results": {GET_LIST: 150}}, ["CmdGetCommon: Get SCM statistics list failed err=150"]),
        (IDENTIFIER, {}, {"results": {FREE_LIST: 1}}, ["CmdGetCommon: Free SCM statistics list failed err=1"]),
        (
            IDENTIFIER,
            {"capabilities": FIRST},
            {"results": {READ: 0xFFFFFFFF}},
            ["CmdGetCommon: Get Port Stats FC failed err=-1"],
        ),
        (
            IDENTIFIER,
            {},
            {"spoil_log": f"{ENABLED}:directory"},
            ["CmdGetCommon: Failed to open /var/tmp/torpi-output.log file"],
        ),
    ],
)
def test_failures_in_the_debug_log(zfc, identifier, fields, options, lines):
    env = statistics_list(zfc, PORT_ELEMENT, FOUND)
    result = zfc(f"{GET} {identifier}", host=one_target(**fields), env=env, debug=65535, **options)
    assert result.failures == [f"{CLASS}::{line}" for line in lines]


@pytest.mark.parametrize(
    "elements, line",
    [
        ([PORT_ELEMENT], "DisplayTargetSCMStatsV2: No matching target found in SCM V2 stats"),
        ([FOUND], "DisplayTargetSCMStatsV2: No matching target found in SCM V2 stats"),
        ([], "CmdGetCommon: SCM statistics list is NULL"),
    ],
)
def test_list_without_the_target_in_the_debug_log(zfc, elements, line):
    env = statistics_list(zfc, *elements)
    result = zfc(f"{GET} {IDENTIFIER}", host=one_target(), env=env, debug=65535)
    assert result.failures == [f"{CLASS}::{line}"]


@pytest.mark.parametrize(
    "capabilities, display", [(FIRST, "DisplayTargetSCMStats"), (SECOND, "DisplayTargetSCMStatsV2")]
)
def test_steps_in_the_debug_log(zfc, capabilities, display):
    env = statistics_list(zfc, PORT_ELEMENT, FOUND)
    result = zfc(f"{GET} {IDENTIFIER}", host=one_target(capabilities=capabilities), env=env, debug=65535)
    assert result.steps_of(CLASS) == around(
        f"{CLASS}::CmdGet",
        *around(
            f"{CLASS}::CmdGetCommon", *around(f"{CLASS}::{display}", f"{CLASS}::{display}: Message=Success")
        ),
    )


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t target -v scmstats {words}")
    documents.check(result.stdout, "target/scmstats/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", ""), ("getcli ?", USAGE)])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t target -v scmstats {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
