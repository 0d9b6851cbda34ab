"""The scmchk node of a port: `get` in both forms."""

import pytest

from zfc import documents
from zfc.congestion import (
    DISABLED,
    ENABLED,
    ENABLED_CALL,
    FIRST,
    INVALID,
    LIST_CALL,
    MAINTENANCE,
    NO_FILE,
    NO_HOST,
    NOT_BY_DRIVER,
    SECOND,
    SETTINGS_ERROR,
    VIRTUAL,
    WRONG_ADAPTER,
    one_port,
)
from zfc.documents import check_both
from zfc.host import DAHLIA, HAZEL, IRIS, NO_ADAPTERS, NO_LIST, every_device
from zfc.port import IDENTIFIER
from zfc.steps import around

GET = "-t port -s scmchk get"
USAGE = "Usage: get [port identifier]\r\n"
OFF = {"HOSTILE_VCLM_ENABLED": "0"}

DEVICE = 0x3640  # has virtual lanes
VALUES = {
    "state": "Online",
    "congestion": "Congested",
    "severity": "Alarm",
    "integrity": "Yes",
    "delivery": "Yes",
    "seconds": 4294967295,
    "fabric": "RDF Completed (Brocade)",
    "lane": "Operational",
    "throttling": "Active",
}


def check_get(zfc, values=None, words=(IDENTIFIER,), **fields):
    return check_both(
        zfc,
        GET,
        "port/scmchk/report",
        words=words,
        host=one_port(**{"device": DEVICE, **fields}),
        values={**VALUES, **(values or {})},
    )


def check_failed(zfc, message, words=(IDENTIFIER,), **options):
    options = {"host": one_port(), **options}
    return check_both(zfc, GET, "port/scmchk/failed", words=words, values={"message": message}, **options)


def test_report(zfc):
    """All values come from the port's record."""
    result = check_get(zfc, words=[IDENTIFIER, "more", "help", "?"])
    assert result.command_calls == [LIST_CALL, ENABLED_CALL]


@pytest.mark.parametrize(
    "code, text", [(1, "Online"), (3, "Offline"), (0, "Unknown"), (2, "Unknown"), (255, "Unknown")]
)
def test_port_state(zfc, code, text):
    check_get(zfc, {"state": text}, state=code)


@pytest.mark.parametrize("code, text", [(0, "Healthy"), (1, "Congested"), (2, "Unknown"), (255, "Unknown")])
def test_congestion_state(zfc, code, text):
    check_get(zfc, {"congestion": text}, congestion=code)


@pytest.mark.parametrize(
    "code, text",
    [(0, "None"), (0xF1, "Warning"), (0xF7, "Alarm"), (1, "Reserved"), (0xF2, "Reserved"), (255, "Reserved")],
)
def test_severity(zfc, code, text):
    check_get(zfc, {"severity": text}, severity=code)


@pytest.mark.parametrize("code, text", [(0, "No"), (1, "Yes"), (2, "Yes"), (255, "Yes")])
def test_events(zfc, code, text):
    check_get(zfc, {"integrity": text}, integrity=code)
    check_get(zfc, {"delivery": text}, delivery_events=code)


@pytest.mark.parametrize("seconds", [0, 1, 2**31, 2**32 - 1])
def test_seconds(zfc, seconds):
    check_get(zfc, {"seconds": seconds}, seconds=seconds)


@pytest.mark.parametrize(
    "flags, text",
    [
        *[(flags, "RDF Reject") for flags in (0x00, 0x02, 0x04, 0x06, 0xFE)],
        *[(flags, "RDF Completed (Brocade)") for flags in (0x03, 0x07, 0xFB, 0xFF)],
        *[(flags, "RDF Completed (Cisco)") for flags in (0x05, 0xFD)],
        *[(flags, "RDF Completed") for flags in (0x01, 0xF9)],
    ],
)
def test_fabric_connection_flags(zfc, flags, text):
    check_get(zfc, {"fabric": text}, fabric=flags)


@pytest.mark.parametrize(
    "code, text", [(0, "Disabled"), (1, "Operational"), (2, "Non-Operational"), (3, "Disabled"), (255, "Disabled")]
)
@pytest.mark.parametrize("capabilities", [SECOND, 0xFFFFFFFF])
def test_virtual_lane(zfc, code, text, capabilities):
    check_get(zfc, {"lane": text}, lane=code, capabilities=capabilities)


@pytest.mark.parametrize("code", [0, 1, 2, 3, 255])
@pytest.mark.parametrize("device", [0x3522, 0x3150], ids=hex)
def test_virtual_lane_of_other_adapters_is_disabled(zfc, device, code):
    check_get(zfc, {"lane": "Disabled"}, device=device, lane=code)


@pytest.mark.parametrize("bit_31, unset", [(0, "None"), (1 << 31, "Disabled")])
@pytest.mark.parametrize("state", [0, 1, 2, 3, 255])
def test_throttling(zfc, bit_31, unset, state):
    text = {1: "None", 2: "Active"}.get(state, unset)
    check_get(zfc, {"throttling": text}, throttling=state, capabilities=SECOND | bit_31)


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_families(zfc, device):
    if device in HAZEL + IRIS + DAHLIA:
        check_get(zfc, {"lane": "Operational" if device in DAHLIA else "Disabled"}, device=device)
    else:
        check_failed(zfc, WRONG_ADAPTER, host=one_port(device=device))


# Each row fails at one check and at all that follow, so its place in the order shows.
@pytest.mark.parametrize(
    "words, host, message, usage, calls",
    [
        pytest.param([], NO_LIST, INVALID, USAGE, [], id="no identifier"),
        pytest.param(["nobody"], NO_LIST, INVALID, USAGE, [], id="bad identifier"),
        pytest.param(["help"], NO_LIST, "Failed, Unknown", USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], NO_LIST, NO_HOST, "", [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], NO_ADAPTERS, INVALID, USAGE, [LIST_CALL], id="no adapters"),
        pytest.param(
            [IDENTIFIER], one_port(device=0x3432, capabilities=0, interface=3), WRONG_ADAPTER, "", [LIST_CALL], id="family"
        ),
        pytest.param(
            [IDENTIFIER], one_port(capabilities=FIRST, interface=3), NOT_BY_DRIVER, "", [LIST_CALL], id="capability"
        ),
        pytest.param([IDENTIFIER], one_port(interface=3), VIRTUAL, "", [LIST_CALL], id="virtual port"),
        pytest.param([IDENTIFIER], one_port(), DISABLED, "", [LIST_CALL, ENABLED_CALL], id="feature off"),
    ],
)
def test_failure(zfc, words, host, message, usage, calls):
    result = check_failed(zfc, message, words, host=host, usage=usage, env=OFF)
    assert result.command_calls == calls


@pytest.mark.parametrize(
    "code, message", [(150, MAINTENANCE), *[(code, SETTINGS_ERROR) for code in (1, 13, 149, 151, 0xFFFFFFFF)]]
)
def test_feature_that_cannot_be_read(zfc, code, message):
    result = check_failed(zfc, message, results={ENABLED: code})
    assert result.command_calls == [LIST_CALL, ENABLED_CALL]


def test_bracket_that_cannot_be_opened(zfc):
    result = check_failed(zfc, NO_FILE, spoil_log="TORPI_GetAdapterList:directory")
    assert result.command_calls == [LIST_CALL]


CLASS = "PhysicalPortSCMChkCmdsProcessor"


@pytest.mark.parametrize(
    "identifier, host, options, lines",
    [
        ("help", NO_LIST, {}, ["Get phy port failed err=5"]),
        (IDENTIFIER, NO_ADAPTERS, {}, ["Get phy port failed err=6"]),
        (IDENTIFIER, one_port(device=0x3432), {}, ["Command not supported for this adapter"]),
        (IDENTIFIER, one_port(capabilities=FIRST), {}, ["Driver/Firmware does not support SCM"]),
        (IDENTIFIER, one_port(interface=3), {}, ["Command not supported for vport"]),
        (IDENTIFIER, one_port(), {"results": {ENABLED: 0xFFFFFFFF}}, ["Get VCLM feature failed err=-1"]),
        (IDENTIFIER, one_port(), {"env": OFF}, ["SCM is disabled on the port"]),
        (
            IDENTIFIER,
            one_port(),
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            ["Failed to open /var/tmp/torpi-output.log file"],
        ),
    ],
)
def test_failures_in_the_debug_log(zfc, identifier, host, options, lines):
    result = zfc(f"{GET} {identifier}", host=host, debug=65535, **options)
    assert result.failures == [f"{CLASS}::CmdGetCommon: {line}" for line in lines]


def test_bad_identifier_in_the_debug_log(zfc):
    assert zfc(f"{GET} nobody", debug=65535).failures == [
        "PhysicalPortCmdsProcessor::GetPhyPortFromPortString: Invalid Port identifier nobody",
        f"{CLASS}::CmdGetCommon: Get phy port failed err=6",
    ]


def test_steps_in_the_debug_log(zfc):
    result = zfc(f"{GET} {IDENTIFIER}", host=one_port(), debug=65535)
    display = f"{CLASS}::DisplayPortSCMChk"
    assert result.steps_of(CLASS) == around(
        f"{CLASS}::CmdGet", *around(f"{CLASS}::CmdGetCommon", *around(display, f"{display}: Message=Success"))
    )
    assert result.failures == []


class TestEdgeCases:
    def test_flags_without_the_completion_bit_are_a_reject(self, zfc):
        check_get(zfc, {"fabric": "RDF Reject"}, fabric=0x02)

    def test_flags_0x07_are_of_brocade(self, zfc):
        check_get(zfc, {"fabric": "RDF Completed (Brocade)"}, fabric=0x07)

    def test_flags_0x01_name_no_switch(self, zfc):
        check_get(zfc, {"fabric": "RDF Completed"}, fabric=0x01)

    def test_throttling_state_0_with_bit_31_clear_is_none(self, zfc):
        check_get(zfc, {"throttling": "None"}, throttling=0, capabilities=0x7FFFFFFF)

    def test_current_state_of_2_is_unknown(self, zfc):
        check_get(zfc, {"congestion": "Unknown"}, congestion=2)


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s scmchk {words}")
    documents.check(result.stdout, "port/scmchk/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", ""), ("getcli ?", USAGE)])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port -s scmchk {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
