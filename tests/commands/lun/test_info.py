"""The info node of a LUN: `get` in both forms."""

import re

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST, Adapter, Host, Port
from zfc.port import entry
from zfc.steps import around
from zfc.target import IDENTIFIER as TARGET
from zfc.target import lun, luns, one_target, target

GET = "-t lun -v info get"
USAGE = "Usage: get [port identifier]\r\n"
LIST_CALL = "TORPI_GetAdapterList()"

LUN = f"{TARGET}_LUN_0"
NAMESPACE = f"{TARGET}_NSID_0"


def check_get(zfc, name, words=(LUN,), **options):
    return check_both(zfc, GET, f"lun/info/{name}", words=words, **options)


def with_lun(nvme=False, **fields):
    return one_target(target([lun(0, **fields)], nvme=nvme))


def line(zfc, label, host, identifier=LUN):
    """What follows a label of the report."""
    text = zfc(f"{GET}cli {identifier}", host=host).stdout
    found = re.findall(rb"\n(?:Data: |      )" + re.escape(label.encode()) + rb": (.*)\n", text)
    assert len(found) == 1, text
    return found[0].decode()


def test_report_of_a_lun(zfc):
    host = one_target(target([lun(0), lun(65535)]))
    assert check_get(zfc, "fcp", [f"{TARGET}_LUN_65535"], host=host).command_calls == [LIST_CALL]


def test_report_of_a_namespace(zfc):
    host = one_target(target([lun(0), lun(65535)], nvme=True))
    assert check_get(zfc, "nvme", [f"{TARGET}_NSID_65535"], host=host).command_calls == [LIST_CALL]


def test_report_ignores_more_words(zfc):
    check_get(zfc, "fcp", [f"{TARGET}_LUN_65535", "more", "help", "?"], host=one_target(target([lun(65535)])))


def test_texts_without_terminator_and_greatest_numbers(zfc):
    host = with_lun(
        vendor="VENDOR-8",
        product="PRODUCT-WITH--16",
        revision="REV4",
        size=0xFFFFFFFF,
        unique_id=bytes([*range(31), 255]),
        length=32,
    )
    check_get(zfc, "unterminated", host=host)


def test_lun_that_has_next_to_nothing(zfc):
    check_get(zfc, "bare", host=with_lun(vendor="", product="", revision="", size=0, length=0))


@pytest.mark.parametrize("size", [0, 1, 2**32, 2**64 - 1])
def test_size_of_a_namespace(zfc, size):
    assert line(zfc, "Namespace Size In MB", with_lun(True, nvme_size=size), NAMESPACE) == str(size)


@pytest.mark.parametrize("text", ["12345678", "1", ""])
def test_revision_of_a_namespace(zfc, text):
    assert line(zfc, "Product Revision", with_lun(True, nvme_revision=text), NAMESPACE) == text


def test_percent_signs_are_read_as_conversions(zfc):
    host = with_lun(vendor="%%5%d", product="100%n-x", revision="%s")
    text = zfc(f"{GET}cli {LUN}", host=host).stdout
    assert b"Data: Vendor ID: %5\n      Product ID: 100-x\n      Product Revision: \n" in text


OCTETS = bytes(range(0xA0, 0xC0))


class TestUniqueId:
    @pytest.mark.parametrize("nvme", [False, True])
    @pytest.mark.parametrize("length", [1, 2, 8, 16, 31, 32, 33, 64, 128, 255])
    def test_has_the_length_that_the_record_gives_up_to_its_field(self, zfc, nvme, length):
        own, other = ("nvme_length", "length") if nvme else ("length", "nvme_length")
        host = with_lun(nvme, unique_id=OCTETS, **{own: length, other: 3})
        shown = line(zfc, "Lun Worldwide Unique ID", host, NAMESPACE if nvme else LUN)
        assert shown == OCTETS[: min(length, 32)].hex(":")

    @pytest.mark.parametrize("nvme", [False, True])
    def test_length_0_is_none(self, zfc, nvme):
        host = with_lun(nvme, unique_id=OCTETS, **{"nvme_length" if nvme else "length": 0})
        assert line(zfc, "Lun Worldwide Unique ID", host, NAMESPACE if nvme else LUN) == "NA"

    @pytest.mark.parametrize("length", [0, 1, 16, 32, 255])
    def test_all_zero_is_none(self, zfc, length):
        host = with_lun(unique_id=bytes(32), length=length)
        assert line(zfc, "Lun Worldwide Unique ID", host) == "NA"

    def test_zeros_ahead_of_something_are_shown(self, zfc):
        host = with_lun(unique_id=bytes(31) + b"\x01", length=3)
        assert line(zfc, "Lun Worldwide Unique ID", host) == "00:00:00"

    def test_single_octet_has_no_colon(self, zfc):
        assert line(zfc, "Lun Worldwide Unique ID", with_lun(unique_id=OCTETS, length=1)) == "a0"


# The LUN that an identifier names.
def test_first_of_two_equal_numbers_is_shown(zfc):
    host = one_target(target([lun(0, size=1), lun(0, size=2)]))
    assert line(zfc, "Lun Size In MB", host) == "1"


def test_search_goes_on_after_an_equal_target_without_the_lun(zfc):
    targets = [target(luns(1)), target(luns(0), nvme=True), target([lun(0, size=3)])]
    host = Host([Adapter(ports=[Port(0, [entry()]), Port(1, [entry(targets=targets)])])])
    assert line(zfc, "Lun Size In MB", host) == "3"


@pytest.mark.parametrize("nvme, wrong", [(False, NAMESPACE), (True, LUN)])
def test_kind_in_the_identifier_is_that_of_the_target(zfc, nvme, wrong):
    values = {"message": "Failed, Invalid parameter"}
    check_get(zfc, "failed", [wrong], host=with_lun(nvme), usage=USAGE, values=values)


@pytest.mark.parametrize(
    "words, host, message, usage, calls",
    [
        pytest.param([], NO_LIST, "Failed, Invalid parameter", USAGE, [], id="no identifier"),
        pytest.param(["nobody"], NO_LIST, "Failed, Invalid parameter", USAGE, [], id="bad identifier"),
        pytest.param(["help"], NO_LIST, "Failed, Unknown", USAGE, [], id="help word"),
        pytest.param([LUN], NO_LIST, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param([LUN], NO_ADAPTERS, "Failed, Invalid parameter", USAGE, [LIST_CALL], id="empty list"),
        pytest.param([LUN], one_target(), "Failed, Invalid parameter", USAGE, [LIST_CALL], id="no LUN"),
    ],
)
def test_failure(zfc, words, host, message, usage, calls):
    result = check_get(zfc, "failed", words, host=host, usage=usage, values={"message": message})
    assert result.command_calls == calls


CLASS = "FCLunInfoCmdsProcessor"
LOOK_UP = "FCLunCmdsProcessor::GetLunFromLunString"


@pytest.mark.parametrize(
    "identifier, lines, code",
    [
        (f"{TARGET}_Disk_3", [f"{LOOK_UP}: Invalid Lun identifier {TARGET}_Disk_3"], 6),
        ("Adapter_x", [f"{LOOK_UP}: Invalid Port identifier Adapter_x"], 6),
        ("help", [], 5),
        (LUN, [f"{LOOK_UP}: Adapter List is NULL"], 14),
    ],
)
def test_failures_in_the_debug_log(zfc, identifier, lines, code):
    result = zfc(f"{GET} {identifier}", host=NO_LIST, debug=65535)
    assert result.failures == [*lines, f"{CLASS}::CmdGetCommon: Get lun failed err={code}"]


def test_steps_in_the_debug_log(zfc):
    result = zfc(f"{GET} {LUN}", host=with_lun(), debug=65535)
    assert result.steps_of(CLASS, "FCLunCmdsProcessor") == around(
        f"{CLASS}::CmdGet",
        *around(
            f"{CLASS}::CmdGetCommon",
            *around(LOOK_UP),
            *around(f"{CLASS}::DisplayLunInfo", f"{CLASS}::DisplayLunInfo: Message=Success"),
        ),
    )
    assert result.failures == []


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t lun -v info {words}")
    documents.check(result.stdout, "lun/info/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", b""), ("getcli ?", USAGE.encode())])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t lun -v info {words}")
    assert result.stdout == text
    assert result.command_calls == []
