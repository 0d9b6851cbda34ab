"""The info node of a target: `get` in both forms."""

import re

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import DAHLIA, HAZEL, IRIS, NO_ADAPTERS, NO_LIST, Adapter, Host, Port, every_device
from zfc.port import entry
from zfc.steps import around
from zfc.target import (
    IDENTIFIER,
    current_record,
    luns,
    older_record,
    one_target,
    state_flags,
    target,
)

GET = "-t target -v info get"
CLASS = "FCTargetInfoCmdsProcessor"
USAGE = "Usage: get [port identifier]\r\n"
LIST_CALL = "TORPI_GetAdapterList()"

CURRENT = {"driver_flags": 0x01}  # the driver fills the current remote-port records
LANE_CAPABILITY = 1 << 30
THROTTLING_CAPABILITY = 1 << 31


def check_get(zfc, name, words=(IDENTIFIER,), **options):
    return check_both(zfc, GET, f"target/info/{name}", words=words, **options)


def line(zfc, label, host):
    """What follows a label of the report."""
    text = zfc(f"{GET}cli {IDENTIFIER}", host=host).stdout
    found = re.findall(rb"\n(?:Data: |      )" + re.escape(label.encode()) + rb": (.*)\n", text)
    assert len(found) == 1, text
    return found[0].decode()


def test_report_of_an_fcp_target(zfc):
    host = one_target(target(luns(0, 1, 65535), **current_record()), **CURRENT)
    assert check_get(zfc, "fcp", host=host).command_calls == [LIST_CALL]


def test_report_of_an_nvme_target(zfc):
    found = target(
        luns(1, 4096),
        flags=state_flags(online=(False, True), unconfigured=True, nvme=True),
        congestion=1,
        lane=1,
        throttling=1,
        **current_record(roles=3, session=2, secure=False),
    )
    assert check_get(zfc, "nvme", host=one_target(found, device=0x3640, **CURRENT)).command_calls == [LIST_CALL]


def test_report_of_a_target_that_has_next_to_nothing(zfc):
    found = target(
        node_name=bytes(8),
        port_id=bytes(3),
        number=0,
        vendor="",
        product="",
        revision="",
        product_type=2,
        serial="",
        congestion=2,
        flags=bytes(6),
    )
    check_get(zfc, "bare", host=one_target(found, device=0x3A02))


def test_texts_without_terminator_and_greatest_numbers(zfc):
    found = target(
        luns(7),
        node_name=b"\xff" * 8,
        port_id=b"\xff" * 3,
        number=65535,
        vendor="VENDOR-8",
        product="PRODUCT-WITH--16",
        revision="REV4",
        product_type=0xFFFFFFFF,
        serial="SERIAL-NUMBER-WITH-64-CHARACTERS-AND-NO-TERMINATOR-BEHIND-THEM-X",
        congestion=255,
        throttling=255,
        lun_count=0xFFFFFFFF,
        **older_record(role=9, secure=2, port_id=b"\xff" * 3),
    )
    host = one_target(found, capabilities=THROTTLING_CAPABILITY, driver_flags=0xFE)
    check_get(zfc, "unterminated", host=host)


def test_percent_signs_are_read_as_conversions(zfc):
    found = target(vendor="%%5%d", product="100%n-x", revision="%s", serial="50%")
    check_get(zfc, "percent", host=one_target(found))


@pytest.mark.parametrize("count", [0, 1, 2, 0xFFFFFFFF])
def test_lun_count_is_the_record_s_and_the_list_is_the_chain_s(zfc, count):
    host = one_target(target(luns(4, 5), lun_count=count))
    assert line(zfc, "Lun Count", host) == str(count)
    assert line(zfc, "Luns", host) == "LUN_4, LUN_5"


@pytest.mark.parametrize("text", ["", "n" * 255, "n" * 256])
def test_nqn_of_any_length(zfc, text):
    assert line(zfc, "Storage NQN", one_target(target(nvme=True, nqn=text))) == text


@pytest.mark.parametrize("text", ["12345678", "1", ""])
def test_revision_of_an_nvme_target(zfc, text):
    assert line(zfc, "Product Revision", one_target(target(nvme=True, nvme_revision=text))) == text


def test_text_with_markup_is_shown_as_it_is(zfc):
    found = target(vendor="<a>&\"'")
    text = zfc(f"{GET} {IDENTIFIER}", host=one_target(found)).stdout
    assert b"      Vendor ID: <a>&\"'\n" in text


@pytest.mark.parametrize(
    "code, text",
    [
        (1, "Tape"),
        (2, "Device"),
        (3, "Device"),
        (4, "Optical"),
        (5, "CDROM"),
        (6, "Device"),
        (7, "Device"),
        (8, "Changer"),
        (9, "Device"),
        (10, "Device"),
        (11, "Device"),
        (12, "RAID"),
        (13, "SAF-TE"),
        (14, "Device"),
        (0x100, "Device"),
        (0xFFFFFFFF, "Device"),
    ],
)
def test_product_type(zfc, code, text):
    for nvme in (False, True):
        assert line(zfc, "Product Type", one_target(target(nvme=nvme, product_type=code))) == text


@pytest.mark.parametrize("nvme, text", [(False, "FCP Disk"), (True, "NVMe Disk")])
def test_product_type_of_a_disk(zfc, nvme, text):
    assert line(zfc, "Product Type", one_target(target(nvme=nvme, product_type=0))) == text


def remote(zfc, host):
    return tuple(line(zfc, label, host) for label in ("Remote Type", "Session State", "Secure Mode"))


NO_RECORD = ("Unknown", "NA", "Disabled")


class TestCurrentRecord:
    @pytest.mark.parametrize(
        "roles, text", [(0, "Unknown"), (1, "Initiator"), (2, "Target"), (3, "Initiator-Target")]
    )
    def test_remote_type(self, zfc, roles, text):
        host = one_target(target(**current_record(roles=roles)), **CURRENT)
        assert line(zfc, "Remote Type", host) == text

    @pytest.mark.parametrize(
        "session, text",
        [
            (0, "NA"),
            (1, "NA"),
            (2, "Auth Pending"),
            (3, "Auth Failed"),
            (4, "Auth Complete"),
            (5, "Auth Terminate"),
            (6, "Auth Unknown"),
            (0x104, "Auth Unknown"),
            (0xFFFFFFFF, "Auth Unknown"),
        ],
    )
    def test_session_state(self, zfc, session, text):
        host = one_target(target(**current_record(session=session)), **CURRENT)
        assert line(zfc, "Session State", host) == text

    @pytest.mark.parametrize("secure, text", [(True, "Enabled"), (False, "Disabled")])
    def test_secure_mode(self, zfc, secure, text):
        host = one_target(target(**current_record(secure=secure)), **CURRENT)
        assert line(zfc, "Secure Mode", host) == text

    def test_goes_ahead_of_the_older_one(self, zfc):
        found = target(**current_record(roles=1, session=5), **older_record(role=3))
        result = zfc(f"{GET} {IDENTIFIER}", host=one_target(found, **CURRENT))
        assert b"      Remote Type: Initiator\n" in result.stdout

    @pytest.mark.parametrize("fits", [True, False])
    def test_is_named_in_the_debug_log(self, zfc, fits):
        found = target(**(current_record() if fits else older_record()))
        result = zfc(f"{GET} {IDENTIFIER}", host=one_target(found, **CURRENT), debug=65535)
        display = f"{CLASS}::DisplayTargetInfo"
        lines = [f"{display}: Got Remote Port Info"] if fits else []
        assert result.steps_of(CLASS, "FCTargetCmdsProcessor") == around(
            f"{CLASS}::CmdGet",
            *around(
                f"{CLASS}::CmdGetCommon",
                *around("FCTargetCmdsProcessor::GetTargetFromTargetString"),
                *around(display, *lines, f"{display}: Message=Success"),
            ),
        )
        assert result.failures == []

    @pytest.mark.parametrize("octet", range(8))
    def test_does_not_fit_with_another_name(self, zfc, octet):
        name = bytearray.fromhex("50060160abcdef01")
        name[octet] ^= 0x10
        found = target(**current_record(wwpn=name), **older_record())
        assert remote(zfc, one_target(found, **CURRENT)) == ("Target", "NA", "Disabled")

    @pytest.mark.parametrize("octet", range(3))
    def test_does_not_fit_with_another_port_id(self, zfc, octet):
        port_id = [0x01, 0x0B, 0xFF]
        port_id[octet] ^= 0x80
        found = target(**current_record(port_id=port_id))
        assert remote(zfc, one_target(found, **CURRENT)) == NO_RECORD


class TestOlderRecord:
    @pytest.mark.parametrize(
        "role, text",
        [
            (0, "Unknown"),
            (1, "Target"),
            (2, "Initiator"),
            (3, "Initiator-Target"),
            (4, "Unknown"),
            (255, "Unknown"),
        ],
    )
    def test_remote_type(self, zfc, role, text):
        assert line(zfc, "Remote Type", one_target(target(**older_record(role=role)))) == text

    @pytest.mark.parametrize(
        "secure, session, state, mode",
        [
            (0, 0, "NA", "Disabled"),
            (0, 1, "NA", "Disabled"),
            (0, 2, "Auth Pending", "Disabled"),
            (0, 3, "Auth Pending", "Disabled"),
            (0, 4, "Auth Failed", "Disabled"),
            (0, 5, "Auth Failed", "Disabled"),
            (0, 255, "Auth Failed", "Disabled"),
            (1, 0, "Auth Complete", "Enabled"),
            (1, 5, "Auth Complete", "Enabled"),
            (1, 6, "Auth Unknown", "Disabled"),
            (1, 255, "Auth Unknown", "Disabled"),
            (2, 0, "Auth Unknown", "Disabled"),
            (2, 5, "Auth Unknown", "Disabled"),
            (255, 4, "Auth Unknown", "Disabled"),
        ],
    )
    def test_session_state_and_secure_mode(self, zfc, secure, session, state, mode):
        found = target(**older_record(secure=secure, session=session))
        assert remote(zfc, one_target(found)) == ("Target", state, mode)

    @pytest.mark.parametrize("octet", range(8))
    def test_does_not_fit_with_another_name(self, zfc, octet):
        name = bytearray.fromhex("50060160abcdef01")
        name[octet] ^= 0x10
        assert remote(zfc, one_target(target(**older_record(wwpn=name)))) == NO_RECORD

    @pytest.mark.parametrize("octet", range(3))
    def test_does_not_fit_with_another_port_id(self, zfc, octet):
        port_id = [0x01, 0x0B, 0xFF]
        port_id[octet] ^= 0x80
        assert remote(zfc, one_target(target(**older_record(port_id=port_id)))) == NO_RECORD


class TestEdgeCases:
    def test_target_that_fits_neither_record(self, zfc):
        assert remote(zfc, one_target(target(), **CURRENT)) == NO_RECORD

    def test_older_record_is_the_only_one_tried_while_the_driver_flag_is_clear(self, zfc):
        found = target(**current_record(roles=1), **older_record(role=3))
        assert remote(zfc, one_target(found, driver_flags=0xFE)) == ("Initiator-Target", "NA", "Disabled")
        assert remote(zfc, one_target(target(**current_record()), driver_flags=0xFE)) == NO_RECORD

    def test_help_word_in_place_of_an_identifier_is_a_failure_without_a_message(self, zfc):
        result = check_get(
            zfc, "failed", ["help"], host=one_target(), usage=USAGE, values={"message": "Failed, Unknown"}
        )
        assert result.command_calls == []


@pytest.mark.parametrize("state, text", [(0, "Healthy"), (1, "Congested"), (2, "Unknown"), (255, "Unknown")])
def test_congestion_state(zfc, state, text):
    assert line(zfc, "Congestion Current State", one_target(target(congestion=state))) == text


LANES = {0: None, 1: "Slow", 2: "Normal", 3: "Fast", 4: None, 255: None}


@pytest.mark.parametrize("lane", LANES)
def test_virtual_lane_of_the_dahlia_family(zfc, lane):
    for capabilities, otherwise in ((LANE_CAPABILITY, "Non-Operational"), (~LANE_CAPABILITY & 0xFFFFFFFF, "NA")):
        host = one_target(target(lane=lane), device=0x3640, capabilities=capabilities)
        assert line(zfc, "Virtual Lane", host) == (LANES[lane] or otherwise)


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_virtual_lane_of_every_family(zfc, device):
    host = one_target(target(lane=3), device=device, capabilities=LANE_CAPABILITY)
    assert line(zfc, "Virtual Lane", host) == ("Fast" if device in DAHLIA else "NA")


THROTTLING = {0: None, 1: "None", 2: "Active", 3: None, 255: None}


@pytest.mark.parametrize("state", THROTTLING)
def test_throttling(zfc, state):
    both = ((THROTTLING_CAPABILITY, "Disabled"), (~THROTTLING_CAPABILITY & 0xFFFFFFFF, "None"))
    for capabilities, otherwise in both:
        host = one_target(target(throttling=state), capabilities=capabilities)
        assert line(zfc, "I/O Throttling", host) == (THROTTLING[state] or otherwise)


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_throttling_of_every_family(zfc, device):
    host = one_target(target(throttling=2), device=device, capabilities=THROTTLING_CAPABILITY)
    assert line(zfc, "I/O Throttling", host) == ("Active" if device in {*HAZEL, *IRIS, *DAHLIA} else "None")


def test_another_vendor_is_of_no_family(zfc):
    host = one_target(target(lane=3, throttling=2), device=0x3640, vendor=0x1077, capabilities=0xFFFFFFFF)
    assert line(zfc, "Virtual Lane", host) == "NA"
    assert line(zfc, "I/O Throttling", host) == "None"


@pytest.mark.parametrize(
    "online, unconfigured, text",
    [
        ((True, True), False, "Online"),
        ((True, True), True, "Online"),
        ((True, False), False, "Offline"),
        ((False, True), False, "Offline"),
        ((False, False), False, "Offline"),
        ((True, False), True, "Unconfigured"),
        ((False, True), True, "Unconfigured"),
        ((False, False), True, "Unconfigured"),
    ],
)
def test_status(zfc, online, unconfigured, text):
    for nvme in (False, True):
        found = target(flags=state_flags(online, unconfigured, nvme))
        assert line(zfc, "Status", one_target(found)) == text


# The text has room for 4095 characters. What does not fit is left out piece by piece; what follows can still fit.
TEXT_BYTES = 4096


def fitted(pieces):
    text = ""
    for piece in pieces:
        if len(text) + len(piece) < TEXT_BYTES:
            text += piece
    return text


def overflowing(serial, numbers):
    """The text of the default target with this serial number and these LUNs, in pieces."""
    return [
        "Target Node Name: 20:00:50:06:01:60:ab:cd\n",
        "      Target Port Name: 50:06:01:60:ab:cd:ef:01\n",
        "      Target Port ID: 01:0b:ff\n",
        "      Target Number: 300\n",
        "      Vendor ID: LABSTOR\n",
        "      Product ID: VirtualArray\n",
        "      Product Revision: 2.10\n",
        "      Product Type: FCP Disk\n",
        f"      Serial Number: {serial}\n",
        f"      Lun Count: {len(numbers)}\n",
        "      Luns: ",
        *[f"{', ' if place else ''}LUN_{number}" for place, number in enumerate(numbers)],
        "\n",
        "      Remote Type: Unknown\n",
        "      Session State: NA\n",
        "      Secure Mode: Disabled\n",
        "      Congestion Current State: Healthy\n",
        "      Virtual Lane: NA\n",
        "      I/O Throttling: Active\n",
        "      Status: Online\n",
    ]


class TestListOfLunsThatDoesNotFit:
    def check(self, zfc, serial, numbers):
        host = one_target(target(luns(*numbers), serial=serial))
        expected = fitted(overflowing(serial, numbers))
        assert len(expected) < TEXT_BYTES
        text = zfc(f"{GET}cli {IDENTIFIER}", host=host).stdout.decode()
        assert text.split("Data: ", 1)[1] == expected + "*" * 52 + "\n"
        return expected

    @pytest.mark.parametrize("more", range(12))
    def test_last_pieces_are_dropped_and_the_line_end_comes_last(self, zfc, more):
        text = self.check(zfc, "s" * more, [65535] * 400)
        assert text.count("LUN_65535") < 400
        assert TEXT_BYTES - 12 <= len(text)

    @pytest.mark.parametrize("more", range(12))
    def test_shorter_piece_after_dropped_ones_still_fits(self, zfc, more):
        self.check(zfc, "s" * more, [65535] * 400 + [7] * 4)

    @pytest.mark.parametrize("count", range(325, 348))
    def test_later_lines_that_fit_are_kept_and_others_dropped(self, zfc, count):
        self.check(zfc, "SN-0042", [65535] * count)

    def test_cases_reach_all_that_can_happen(self):
        texts = [fitted(overflowing("SN-0042", [65535] * count)) for count in range(325, 348)]
        assert any(text.endswith("Status: Online\n") for text in texts)
        assert any("I/O Throttling" in text and "Status" not in text for text in texts)
        assert any("Status" in text and "Congestion" not in text for text in texts)
        assert any("Remote Type" in text and "Session State" not in text for text in texts)
        ends = [fitted(overflowing("s" * more, [65535] * 400)) for more in range(12)]
        assert any(not text.endswith("\n") for text in ends)
        assert any(len(text) == TEXT_BYTES - 1 for text in ends)

    def test_chain_of_a_hundred_thousand(self, zfc):
        host = one_target(target(luns(*[number % 65536 for number in range(100000)])))
        text = zfc(f"{GET}cli {IDENTIFIER}", host=host).stdout.decode()
        expected = fitted(overflowing("SN-0042", [number % 65536 for number in range(100000)]))
        assert text.split("Data: ", 1)[1] == expected + "*" * 52 + "\n"


# The target that an identifier names.
def test_first_of_two_equal_names_is_shown(zfc):
    ports = [Port(place, [entry(targets=[target(number=1 + place), target(number=9)])]) for place in range(2)]
    assert line(zfc, "Target Number", Host([Adapter(ports=ports)])) == "1"


def test_target_is_sought_at_the_port_that_is_named(zfc):
    other = entry(wwpn=bytes.fromhex("2100001122334456"), targets=[target(number=1)])
    foreign = entry(type=2, targets=[target(number=2)])
    ports = [Port(0, None), Port(1, [other, foreign]), Port(2, [entry(type=1, targets=[target(number=3)])])]
    assert line(zfc, "Target Number", Host([Adapter(ports=None), Adapter(ports=ports)])) == "3"


def test_virtual_port_has_targets_too(zfc):
    assert line(zfc, "Target Number", one_target(interface=3)) == "300"


def test_report_ignores_more_words(zfc):
    host = one_target(target(luns(0, 1, 65535), **current_record()), **CURRENT)
    check_get(zfc, "fcp", [IDENTIFIER, "more", "help", "?"], host=host)


@pytest.mark.parametrize(
    "words, host, message, usage, calls",
    [
        pytest.param([], NO_LIST, "Failed, Invalid parameter", USAGE, [], id="no identifier"),
        pytest.param(["nobody"], NO_LIST, "Failed, Invalid parameter", USAGE, [], id="bad identifier"),
        pytest.param(["-h"], NO_LIST, "Failed, Unknown", USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], NO_LIST, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], NO_ADAPTERS, "Failed, Invalid parameter", USAGE, [LIST_CALL], id="empty list"),
    ],
)
def test_failure(zfc, words, host, message, usage, calls):
    result = check_get(zfc, "failed", words, host=host, usage=usage, values={"message": message})
    assert result.command_calls == calls


LOOK_UP = "FCTargetCmdsProcessor::GetTargetFromTargetString: "


@pytest.mark.parametrize(
    "identifier, host, lines, code",
    [
        ("port_x", NO_LIST, [f"{LOOK_UP}Invalid Port identifier port_x"], 6),
        ("FC_21:00:00:11:22:33:44:55_Tgt", NO_LIST, [f"{LOOK_UP}Invalid Tgt identifier FC_21:00:00:11:22:33:44:55_Tgt"], 6),
        ("/h", NO_LIST, [], 5),
        (IDENTIFIER, NO_LIST, [f"{LOOK_UP}Adapter List is NULL"], 14),
        (IDENTIFIER, NO_ADAPTERS, [], 6),
    ],
)
def test_failures_in_the_debug_log(zfc, identifier, host, lines, code):
    result = zfc(f"{GET} {identifier}", host=host, debug=65535)
    assert result.failures == [*lines, f"{CLASS}::CmdGetCommon: Get target failed err={code}"]


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t target -v info {words}")
    documents.check(result.stdout, "target/info/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", b""), ("getcli ?", USAGE.encode())])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t target -v info {words}")
    assert result.stdout == text
    assert result.command_calls == []
