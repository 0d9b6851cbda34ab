"""The scmchk node of a target: `get` in both forms."""

import pytest

from zfc import documents
from zfc.congestion import (
    DISABLED,
    ENABLED,
    ENABLED_CALL,
    FIRST,
    INVALID,
    LIST_CALL,
    NO_FILE,
    NO_HOST,
    NOT_BY_DRIVER,
    SECOND,
    SETTINGS_ERROR,
    VIRTUAL,
    WRONG_ADAPTER,
    congested_target,
    one_target,
)
from zfc.documents import check_both
from zfc.host import DAHLIA, HAZEL, IRIS, NO_ADAPTERS, NO_LIST, every_device
from zfc.steps import around
from zfc.target import IDENTIFIER

GET = "-t target -v scmchk get"
USAGE = "Usage: get [port identifier]\r\n"
OFF = {"HOSTILE_VCLM_ENABLED": "0"}

DEVICE = 0x3640  # has virtual lanes
VALUES = {
    "congestion": "Congested",
    "integrity": "Yes",
    "seconds": 4294967295,
    "lane": "Fast",
    "throttling": "Active",
}


def check_get(zfc, values=None, words=(IDENTIFIER,), port=None, **fields):
    """`port` are the fields of the target's port."""
    found = congested_target(**{"congestion": 1, "lane": 3, **fields})
    return check_both(
        zfc,
        GET,
        "target/scmchk/report",
        words=words,
        host=one_target(found, **{"device": DEVICE, **(port or {})}),
        values={**VALUES, **(values or {})},
    )


def check_failed(zfc, message, words=(IDENTIFIER,), **options):
    options = {"host": one_target(), **options}
    return check_both(zfc, GET, "target/scmchk/failed", words=words, values={"message": message}, **options)


def test_report(zfc):
    """All values come from the target's record."""
    result = check_get(zfc, words=[IDENTIFIER, "more", "help", "?"])
    assert result.command_calls == [LIST_CALL, ENABLED_CALL]


@pytest.mark.parametrize("code, text", [(0, "Healthy"), (1, "Congested"), (2, "Unknown"), (255, "Unknown")])
def test_congestion_state(zfc, code, text):
    check_get(zfc, {"congestion": text}, congestion=code)


@pytest.mark.parametrize("code, text", [(0, "No"), (1, "Yes"), (2, "Yes"), (255, "Yes")])
def test_link_integrity_events(zfc, code, text):
    check_get(zfc, {"integrity": text}, integrity=code)


@pytest.mark.parametrize("seconds", [0, 1, 2**31, 2**32 - 1])
def test_seconds(zfc, seconds):
    check_get(zfc, {"seconds": seconds}, seconds=seconds)


@pytest.mark.parametrize("bit, unset", [(0, "NA"), (0x40 << 24, "Non-Operational")])
@pytest.mark.parametrize("lane", [0, 1, 2, 3, 4, 255])
def test_virtual_lane(zfc, lane, bit, unset):
    """The bit 0x40 of the byte at 163 decides about a lane without a word."""
    text = {1: "Slow", 2: "Normal", 3: "Fast"}.get(lane, unset)
    check_get(zfc, {"lane": text}, lane=lane, port={"capabilities": SECOND | bit})


@pytest.mark.parametrize("lane", [0, 1, 2, 3, 255])
@pytest.mark.parametrize("device", [0x3522, 0x3150], ids=hex)
def test_other_adapters_have_no_virtual_lane(zfc, device, lane):
    check_get(zfc, {"lane": "NA"}, lane=lane, port={"device": device, "capabilities": 0x7FFFFFFF})


@pytest.mark.parametrize("bit, unset", [(0, "None"), (1 << 31, "Disabled")])
@pytest.mark.parametrize("state", [0, 1, 2, 3, 255])
def test_throttling(zfc, state, bit, unset):
    text = {1: "None", 2: "Active"}.get(state, unset)
    check_get(zfc, {"throttling": text}, throttling=state, port={"capabilities": SECOND | bit})


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_families(zfc, device):
    if device in HAZEL + IRIS + DAHLIA:
        check_get(zfc, {"lane": "Fast" if device in DAHLIA else "NA"}, port={"device": device})
    else:
        check_failed(zfc, WRONG_ADAPTER, host=one_target(device=device))


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
            [IDENTIFIER],
            one_target(device=0x3432, capabilities=0, interface=3),
            WRONG_ADAPTER,
            "",
            [LIST_CALL],
            id="family",
        ),
        pytest.param(
            [IDENTIFIER], one_target(capabilities=FIRST, interface=3), NOT_BY_DRIVER, "", [LIST_CALL], id="capability"
        ),
        pytest.param([IDENTIFIER], one_target(interface=3), VIRTUAL, "", [LIST_CALL], id="virtual port"),
        pytest.param([IDENTIFIER], one_target(), DISABLED, "", [LIST_CALL, ENABLED_CALL], id="feature off"),
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


def test_bracket_that_cannot_be_opened(zfc):
    result = check_failed(zfc, NO_FILE, spoil_log="TORPI_GetAdapterList:directory")
    assert result.command_calls == [LIST_CALL]


CLASS = "FCTargetSCMChkCmdsProcessor"


@pytest.mark.parametrize(
    "identifier, host, options, lines",
    [
        ("help", NO_LIST, {}, ["Get target failed err=5"]),
        (IDENTIFIER, NO_ADAPTERS, {}, ["Get target failed err=6"]),
        (IDENTIFIER, one_target(device=0x3432), {}, ["Command not supported for this adapter"]),
        (IDENTIFIER, one_target(capabilities=FIRST), {}, ["Driver/Firmware does not support SCM"]),
        (IDENTIFIER, one_target(interface=3), {}, ["Command not supported for vport"]),
        (IDENTIFIER, one_target(), {"results": {ENABLED: 0xFFFFFFFF}}, ["Get VCLM feature failed err=-1"]),
        (IDENTIFIER, one_target(), {"env": OFF}, ["SCM is disabled on the port"]),
        (
            IDENTIFIER,
            one_target(),
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            ["Failed to open /var/tmp/torpi-output.log file"],
        ),
    ],
)
def test_failures_in_the_debug_log(zfc, identifier, host, options, lines):
    result = zfc(f"{GET} {identifier}", host=host, debug=65535, **options)
    assert result.failures == [f"{CLASS}::CmdGetCommon: {line}" for line in lines]


def test_steps_in_the_debug_log(zfc):
    result = zfc(f"{GET}cli {IDENTIFIER}", host=one_target(), debug=65535)
    display = f"{CLASS}::DisplayTargetSCMChk"
    assert result.steps_of(CLASS) == around(
        f"{CLASS}::CmdGetCli", *around(f"{CLASS}::CmdGetCommon", *around(display, f"{display}: Message=Success"))
    )
    assert result.failures == []


class TestEdgeCases:
    def test_virtual_lane_2_is_normal_for_a_target_and_non_operational_for_a_port(self, zfc):
        check_get(zfc, {"lane": "Normal"}, lane=2)
        host = one_target(device=DEVICE, lane=2)
        result = zfc("-t port -s scmchk getcli FC_21:00:00:11:22:33:44:55", host=host)
        assert b"      Virtual Lane: Non-Operational\n" in result.stdout


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t target -v scmchk {words}")
    documents.check(result.stdout, "target/scmchk/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", ""), ("getcli ?", USAGE)])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t target -v scmchk {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
