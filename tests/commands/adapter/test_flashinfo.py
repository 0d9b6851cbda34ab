"""The flashinfo node: `get` in both forms."""

import re

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.flash import memo
from zfc.host import DAHLIA, ELM_ONLY, HAZEL, IDENTIFIER, IRIS, NO_LIST, Fc, every_device, one

GET = "-t adapter -s flashinfo get"
USAGE = "Usage: get [adapter identifier]\r\n"

LIST_CALL = "TORPI_GetAdapterList()"
MEMO_CALL = "TORPI_GetAdapterFlashMemoBlock(port, zeroed buffer)"
MEMO = "TORPI_GetAdapterFlashMemoBlock"

INVALID = "Failed, Invalid parameter"
UNSUPPORTED = "Failed, Feature not supported for this adapter"
WITH_MEMO = {*ELM_ONLY, *HAZEL, *IRIS, *DAHLIA}


def check_get(zfc, name, words=(IDENTIFIER,), **options):
    return check_both(zfc, GET, f"adapter/flashinfo/{name}", words=words, **options)


def check_failed(zfc, message, words=(IDENTIFIER,), **options):
    return check_get(zfc, "failed", words, values={"message": message}, **options)


@pytest.mark.parametrize(
    "name, block",
    [
        pytest.param("report", memo(), id="flashinfo"),
        pytest.param("no-family", memo(family=(0, 0, 0)), id="flashinfo-no-family"),
        pytest.param(
            "extremes",
            memo(
                family=(0, 0, 1),
                mbi=(0, 100, 255),
                date=b"00000000",
                tool=b"ABCD",
                tool_version=(0, 0, 0, 0),
                updated=(65535, 255, 255, 255, 255, 255),
            ),
            id="flashinfo-extremes",
        ),
        # Percent signs in the date are read as conversions like all others.
        pytest.param("percent", memo(date=b"%%%d%1%n", tool=b"%s%n"), id="flashinfo-percent"),
    ],
)
def test_report(zfc, name, block):
    result = check_get(zfc, name, memo=block)
    assert result.command_calls == [LIST_CALL, MEMO_CALL]


def test_report_ignores_more_words(zfc):
    check_get(zfc, "report", [IDENTIFIER, "more", "help", "?"], memo=memo())


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_families(zfc, device):
    if device in WITH_MEMO:
        check_get(zfc, "report", host=one(device), memo=memo())
    else:
        result = check_failed(zfc, UNSUPPORTED, host=one(device), memo=memo())
        assert result.command_calls == [LIST_CALL]


@pytest.mark.parametrize("device", [0x3522, 0x3640, 0x3150, 0x3432], ids=hex)
def test_device_of_another_vendor_is_of_no_family(zfc, device):
    check_failed(zfc, UNSUPPORTED, host=one(fc=Fc(device=device, vendor=0x1077)), memo=memo())


@pytest.mark.parametrize(
    "tool, text",
    [
        ("ZCLI", "Meridot CLI"),
        ("ZGUI", "Meridot GUI"),
        ("ZMFG", "Manufacturing Tool"),
        ("ZNFS", "DOS Flash Update Utility"),
        ("PLDM", "Platform Management Firmware"),
        ("EFLS", "UEFI Flash Tool"),
        ("EFMP", "UEFI Firmware Management Protocol Driver"),
        ("VIPL", "ESXi Plugin"),
        ("HPFL", "Flash Update Library"),
        ("ZNFL", "ZNFL"),
        ("ECLI", "ESX CLI Plugin"),
        ("FCLK", "FC Lumakit"),
        ("CMPR", "CIM Provider"),
        ("IBMD", "IBM AIX Driver"),
        ("zcli", "Meridot CLI"),
        ("znfl", "ZNFL"),
        ("eFmP", "UEFI Firmware Management Protocol Driver"),
        ("ZCL", "Unknown"),
        ("", "Unknown"),
        ("ZCL ", "Unknown"),
        ("XCLI", "Unknown"),
        ("FMBS", "Unknown"),
    ],
)
def test_tool_id(zfc, tool, text):
    result = zfc(f"-t adapter -s flashinfo getcli {IDENTIFIER}", memo=memo(tool=tool.encode()))
    assert re.search(rb"\n      Flash Tool ID: (.*)\n", result.stdout)[1] == text.encode()


@pytest.mark.parametrize(
    "date, text",
    [
        (b"20240229", "2024-02-29"),
        (b"2024\0\x0029", "2024--"),
        (b"20\x0040229", "20--"),
        (b"202402\x009", "2024-02-"),
        (b"\0" * 8, "--"),
    ],
)
def test_build_date_ends_at_its_terminator(zfc, date, text):
    result = zfc(f"-t adapter -s flashinfo getcli {IDENTIFIER}", memo=memo(date=date))
    assert re.search(rb"\n      MBI Build Date: (.*)\n", result.stdout)[1] == text.encode()


@pytest.mark.parametrize(
    "signature, passes",
    [
        (b"FMBS", True),
        (b"Fxxx", True),
        (b"xMxx", True),
        (b"xxBx", True),
        (b"xxxS", True),
        (b"F\0\0\0", True),
        (b"xMBS", True),
        (b"xxxx", False),
        (b"SFMB", False),
        (b"MBSF", False),
        (b"fmbs", False),
        (b"\0\0\0\0", False),
        (b"\xff\xff\xff\xff", False),
    ],
)
def test_signature_passes_with_one_byte_at_its_place(zfc, signature, passes):
    if passes:
        check_get(zfc, "report", memo=memo(signature=signature))
    else:
        result = check_failed(zfc, "Failed, Invalid Signature", memo=memo(signature=signature))
        assert result.command_calls == [LIST_CALL, MEMO_CALL]


# The checks in their order: each row fails at one check and at all after it.
@pytest.mark.parametrize(
    "words, options, message, usage, calls",
    [
        pytest.param([], {"host": one(0x3A02)}, INVALID, USAGE, [], id="no identifier"),
        pytest.param(["nobody"], {"host": one(0x3A02)}, INVALID, USAGE, [], id="bad identifier"),
        pytest.param(["help"], {"host": one(0x3A02)}, "Failed, Unknown", USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], {"host": one(0x3A02)}, UNSUPPORTED, "", [LIST_CALL], id="family"),
        *[
            pytest.param(
                [IDENTIFIER],
                {"results": {MEMO: result}},
                "Failed, Flash Info read failed",
                "",
                [LIST_CALL, MEMO_CALL],
                id=f"read fails with {result}",
            )
            for result in (1, 13, 150, 151, 0xFFFFFFFF)
        ],
    ],
)
def test_failure(zfc, words, options, message, usage, calls):
    result = check_failed(zfc, message, words, usage=usage, **options)
    assert result.command_calls == calls


class TestEdgeCases:
    def test_family_without_memo_block(self, zfc):
        check_failed(zfc, UNSUPPORTED, host=one(0x3A02))

    def test_all_four_signature_bytes_wrong(self, zfc):
        check_failed(zfc, "Failed, Invalid Signature", memo=memo(signature=b"ABCD"))

    def test_block_that_starts_with_f_and_nothing_else_of_the_signature_passes(self, zfc):
        check_get(zfc, "report", memo=memo(signature=b"FABC"))

    def test_read_that_gives_nothing_has_no_signature(self, zfc):
        check_failed(zfc, "Failed, Invalid Signature")

    def test_unknown_tool_id_prints_unknown(self, zfc):
        result = zfc(f"-t adapter -s flashinfo getcli {IDENTIFIER}", memo=memo(tool=b"WHAT"))
        assert b"      Flash Tool ID: Unknown\n" in result.stdout


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t adapter -s flashinfo {words}")
    documents.check(result.stdout, "adapter/flashinfo/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", b""), ("getcli ?", USAGE.encode())])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t adapter -s flashinfo {words}")
    assert result.stdout == text
    assert result.command_calls == []


COMMON = "AdapterFlashInfoCmdsProcessor::CmdGetCommon"


@pytest.mark.parametrize(
    "options, failures",
    [
        ({"host": one(0x3A02)}, [f"{COMMON}: Command not supported for this adapter"]),
        ({"results": {"TORPI_GetAdapterFlashMemoBlock": 150}}, [f"{COMMON}: Get Flash Memo Block failed err=150"]),
        (
            {"spoil_log": "TORPI_Initialize:symlink"},
            [f"{COMMON}: Failed to open /var/tmp/torpi-output.log file"],
        ),
    ],
)
def test_failures_in_the_log(zfc, options, failures):
    assert zfc(f"-t adapter -s flashinfo getcli {IDENTIFIER}", debug=4, **options).failures == failures
