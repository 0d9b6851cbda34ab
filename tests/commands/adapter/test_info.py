"""The info node: `get` in both forms."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.flash import components, memo
from zfc.host import (
    DAHLIA,
    ELM_ONLY,
    HAZEL,
    IDENTIFIER,
    IRIS,
    NO_LIST,
    Adapter,
    Fc,
    Host,
    Port,
    every_device,
    one,
)

GET = "-t adapter -s info get"
GETCLI = f"-t adapter -s info getcli {IDENTIFIER}"
USAGE = "Usage: get [adapter identifier]\r\n"

LIST_CALL = "TORPI_GetAdapterList()"
COMPONENTS_CALL = "TORPI_GetFlashComponentVersion(port, zeroed buffer)"
MEMO_CALL = "TORPI_GetAdapterFlashMemoBlock(port, zeroed buffer)"

WITH_MEMO = {*ELM_ONLY, *HAZEL, *IRIS, *DAHLIA}
WITH_MPI = {*HAZEL, *IRIS, *DAHLIA}

MPI_LABELS = [
    "Flash MPI Firmware Version",
    "Flash PEP Firmware Version",
    "Flash PEP Board Config Version",
    "Flash PEP SoftROM Version",
]
DAHLIA_LABELS = ["Flash MPI SoftROM Version", "Flash PCIE Serdes Version"]
FAMILY_LABEL = "Family Firmware Version"


def report(zfc, **options):
    """The labels and values of the text form's report; its document must be the report frame."""
    options = {"components": components(), "memo": memo(), **options}
    lines = zfc(GETCLI, **options).stdout.decode().split("\n")
    rule = "*" * 52
    head = ["AdapterInformation:", "Message: Success", "General Parameters: GeneralParametersList:"]
    assert lines[:4] == [rule, *head]
    assert lines[-2:] == [rule, ""]
    assert lines[4].startswith("Data: ")
    assert all(line.startswith("      ") for line in lines[5:-2])
    return dict(line[6:].split(": ", 1) for line in lines[4:-2])


# Whole documents, one for each set of lines that a family can have.
@pytest.mark.parametrize(
    "name, device, calls",
    [
        ("hazel", 0x3522, [LIST_CALL, COMPONENTS_CALL, MEMO_CALL]),
        ("dahlia", 0x3640, [LIST_CALL, COMPONENTS_CALL, MEMO_CALL]),
        ("elm", 0x3432, [LIST_CALL, COMPONENTS_CALL, MEMO_CALL]),
        ("aster", 0x3A02, [LIST_CALL, COMPONENTS_CALL]),
    ],
)
def test_report(zfc, name, device, calls):
    result = check_both(
        zfc, GET, f"adapter/info/{name}", words=[IDENTIFIER], host=one(device), components=components(), memo=memo()
    )
    assert result.command_calls == calls


def test_report_ignores_more_words(zfc):
    words = [IDENTIFIER, "more", "help", "-x", "?"]
    check_both(zfc, GET, "adapter/info/hazel", words=words, components=components(), memo=memo())


def test_report_of_a_bare_adapter(zfc):
    """Every text is empty, every number zero, and neither flash read gives anything."""
    adapter = Adapter(
        model="",
        serial="",
        manufacturer="",
        vendor=0,
        subsystem_vendor=0,
        subsystem_device=0,
        bus=0,
        chip_revision=0,
        type=0,
        multiboot="",
        firmware="",
        bios="",
        fcode="",
        efi="",
        ports=[Port(0, [Fc(device=0x3640)])],
    )
    check_both(zfc, GET, "adapter/info/bare", words=["Adapter_"], host=Host([adapter]))


def test_report_of_texts_without_terminator(zfc):
    """Each text fills its field, and each number has all bits set."""
    adapter = Adapter(
        model="ABCDEFGHIJKLMNOPQRSTUVWXYZ012345",
        serial="abcdefghijklmnopqrstuvwxyz678901",
        manufacturer="M" * 79 + "m",
        vendor=0xFFFF,
        subsystem_vendor=0xFFFF,
        subsystem_device=0xFFFF,
        bus=0xFFFF,
        chip_revision=0xFFFFFFFF,
        type=0xFFFFFFFF,
        multiboot="U" * 31 + "u",
        firmware="F" * 31 + "f",
        bios="B" * 31 + "b",
        fcode="C" * 31 + "c",
        efi="E" * 31 + "e",
        ports=[Port(0, [Fc(device=0x3432)])],
    )
    words = [f"Adapter_{adapter.model}_{adapter.serial}"]
    check_both(
        zfc,
        GET,
        "adapter/info/unterminated",
        words=words,
        host=Host([adapter]),
        components=components(),
        memo=memo(),
    )


def test_report_of_texts_with_percent_signs(zfc):
    """A complete conversion disappears, "%%" is one percent sign, any other percent sign is kept."""
    adapter = Adapter(
        model="ZX%%",
        serial="AB%n12%d",
        manufacturer="Sorvex %s Inc",
        multiboot="1%",
        firmware="%-08.3lx-%hhu",
        bios="100%!",
        fcode="%%%d",
        efi="%y",
        ports=[Port(0, [Fc(device=0x3A02)])],
    )
    words = [f"Adapter_{adapter.model}_{adapter.serial}"]
    check_both(
        zfc, GET, "adapter/info/percent", words=words, host=Host([adapter]), components=components()
    )


@pytest.mark.parametrize(
    "text, shown",
    [
        *[(f"[%{letter}]", "[]") for letter in "diouxXeEfFgGaAcspnmCS"],
        *[(f"[%{length}d]", "[]") for length in ("hh", "h", "l", "ll", "j", "z", "t")],
        ("[%Lf]", "[]"),
        ("[%5d]", "[]"),
        ("[%-5d]", "[]"),
        ("[%+d]", "[]"),
        ("[% d]", "[]"),
        ("[%#x]", "[]"),
        ("[%05d]", "[]"),
        ("[%.3s]", "[]"),
        ("[%.s]", "[]"),
        ("[%10.3s]", "[]"),
        ("[%-+ #012.34llx]", "[]"),
        ("5% off", "5ff"),
        ("%s%s%s", ""),
        ("%%", "%"),
        ("%%%%", "%%"),
        ("%%d", "%d"),
        ("%%%d", "%"),
        ("%d%%", "%"),
        ("%", "%"),
        ("100%", "100%"),
        ("%5", "%5"),
        ("%-", "%-"),
        ("%.", "%."),
        ("%l", "%l"),
        ("%ll", "%ll"),
        ("%y", "%y"),
        ("%!d", "%!d"),
        ("%-5!", "%-5!"),
        ("%ly", "%ly"),
        ("%y%d%y", "%y%y"),
    ],
)
def test_percent_signs_of_a_text(zfc, text, shown):
    assert report(zfc, host=one(0x3A02, multiboot=text))["Multiboot Version"] == shown


@pytest.mark.parametrize(
    "code, text",
    [
        (0, "Unknown"),
        (1, "Ethernet Adapter"),
        (2, "Fibre Channel Adapter"),
        (3, "iSCSI Adapter"),
        (4, "Tavora CNA"),
        (5, "Ethernet CNA"),
        (6, "FCoE CNA"),
        (7, "iSCSI CNA"),
        (8, "RDMA CNA"),
        (9, "Unknown"),
        (255, "Unknown"),
        (256 + 2, "Unknown"),
        (0xFFFFFFFF, "Unknown"),
    ],
)
def test_adapter_type(zfc, code, text):
    assert report(zfc, host=one(type=code))["Type"] == text


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_lines_and_calls_of_each_family(zfc, device):
    lines = report(zfc, host=one(device))
    shown = [label for label in (*MPI_LABELS, *DAHLIA_LABELS, FAMILY_LABEL) if label in lines]
    expected = [
        *(MPI_LABELS if device in WITH_MPI else []),
        *(DAHLIA_LABELS if device in DAHLIA else []),
        *([FAMILY_LABEL] if device in WITH_MEMO else []),
    ]
    assert shown == expected
    assert zfc.calls()[3:-1] == [LIST_CALL, COMPONENTS_CALL, *([MEMO_CALL] if device in WITH_MEMO else [])]


@pytest.mark.parametrize("device", [0x3522, 0x3640, 0x3150, 0x3432], ids=hex)
def test_device_of_another_vendor_is_of_no_family(zfc, device):
    lines = report(zfc, host=one(fc=Fc(device=device, vendor=0x1077)))
    assert not {*MPI_LABELS, *DAHLIA_LABELS, FAMILY_LABEL} & {*lines}
    assert zfc.calls()[3:-1] == [LIST_CALL, COMPONENTS_CALL]


# Rule A: all zero is "NA". Rule B: all 255 is "NA" as well.
A_LABELS = {"preload": "Flash Preload Firmware Area Version", "fc_board_config": "Flash FC Board Config Version"}
B_LABELS = {
    "mpi_firmware": "Flash MPI Firmware Version",
    "pep_firmware": "Flash PEP Firmware Version",
    "pep_board_config": "Flash PEP Board Config Version",
    "pep_softrom": "Flash PEP SoftROM Version",
    "mpi_softrom": "Flash MPI SoftROM Version",
    "pcie_serdes": "Flash PCIE Serdes Version",
}


@pytest.mark.parametrize("name", [*A_LABELS, *B_LABELS])
@pytest.mark.parametrize(
    "version, rule_a, rule_b",
    [
        ((0, 0, 0), "NA", "NA"),
        ((255, 255, 255), "255.255.255", "NA"),
        ((255, 255, 0), "255.255.00", "255.255.00"),
        ((0, 255, 255), "0.255.255", "0.255.255"),
        ((0, 0, 1), "0.00.01", "0.00.01"),
        ((0, 1, 0), "0.01.00", "0.01.00"),
        ((1, 0, 0), "1.00.00", "1.00.00"),
        ((12, 10, 99), "12.10.99", "12.10.99"),
        ((100, 101, 102), "100.101.102", "100.101.102"),
    ],
)
def test_component_version(zfc, name, version, rule_a, rule_b):
    lines = report(zfc, host=one(0x3640), components=components(**{name: version}))
    assert lines[{**A_LABELS, **B_LABELS}[name]] == (rule_a if name in A_LABELS else rule_b)


@pytest.mark.parametrize(
    "changes, shown",
    [
        ({}, "9.13.02"),
        ({"family": (0, 0, 1)}, "0.00.01"),
        ({"family": (255, 255, 255)}, "255.255.255"),
        ({"family": (0, 0, 0)}, None),
        ({"signature": b"FMBX"}, None),
        ({"signature": b"XMBS"}, None),
        ({"signature": b"SBMF"}, None),
        ({"signature": b"fmbs"}, None),
        ({"signature": b"\0\0\0\0"}, None),
    ],
    ids=str,
)
def test_family_firmware_version(zfc, changes, shown):
    """Unlike `flashinfo`, this report asks for the whole signature."""
    assert report(zfc, memo=memo(**changes)).get(FAMILY_LABEL) == shown


@pytest.mark.parametrize("call", ["TORPI_GetFlashComponentVersion", "TORPI_GetAdapterFlashMemoBlock"])
@pytest.mark.parametrize("device", [0x3640, 0x3522, 0x3150], ids=hex)
def test_what_a_failed_read_has_written_does_not_show(zfc, device, call):
    options = {"host": one(device), "results": {call: 1}}
    untouched = report(zfc, **options)
    assert report(zfc, env={"HOSTILE_FILL_FAILED": "1"}, **options) == untouched


def test_failed_memo_read_leaves_out_its_line_and_nothing_else(zfc):
    for result in (1, 13, 150):
        lines = report(zfc, results={"TORPI_GetAdapterFlashMemoBlock": result})
        assert FAMILY_LABEL not in lines
        assert lines["Flash PEP SoftROM Version"] == "0.00.01"


# Failures.
@pytest.mark.parametrize(
    "words, options, message, usage",
    [
        pytest.param([], {}, "Failed, Invalid parameter", USAGE, id="no identifier"),
        pytest.param(["nobody"], {}, "Failed, Invalid parameter", USAGE, id="bad identifier"),
        pytest.param(["help"], {}, "Failed, Unknown", USAGE, id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", "", id="no adapter list"),
    ],
)
def test_failure(zfc, words, options, message, usage):
    check_both(zfc, GET, "adapter/info/failed", words=words, values={"message": message}, usage=usage, **options)


class TestEdgeCases:
    def test_empty_version_word_shows_na(self, zfc):
        host = one(multiboot="", firmware="", bios="", fcode="", efi="")
        lines = report(zfc, host=host)
        for label in ("Multiboot", "Flash Firmware", "Flash BIOS", "Flash FCode", "Flash EFI"):
            assert lines[f"{label} Version"] == "NA"

    def test_another_family_has_no_mpi_lines(self, zfc):
        assert "MPI" not in str(report(zfc, host=one(0x3A02)).keys())

    def test_hazel_has_the_mpi_lines_without_the_two_dahlia_lines(self, zfc):
        lines = report(zfc, host=one(0x3522))
        assert {*MPI_LABELS} <= {*lines}
        assert not {*DAHLIA_LABELS} & {*lines}

    @pytest.mark.parametrize("result", [1, 2, 150, 0xFFFFFFFF])
    def test_failed_component_read_still_prints_the_report_with_na(self, zfc, result):
        lines = report(zfc, host=one(0x3640), results={"TORPI_GetFlashComponentVersion": result})
        assert {lines[label] for label in (*A_LABELS.values(), *B_LABELS.values())} == {"NA"}
        assert lines[FAMILY_LABEL] == "9.13.02"

    def test_getcli_with_a_bad_identifier_prints_the_failure_and_the_usage_line(self, zfc):
        result = zfc("-t adapter -s info getcli nobody")
        assert result.stdout.endswith(b"*" * 52 + b"\nUsage: get [adapter identifier]\r\n")
        assert b"Message: Failed, Invalid parameter\n" in result.stdout


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t adapter -s info {words}")
    documents.check(result.stdout, "adapter/info/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", ""), ("getcli ?", USAGE), ("GETCLI ? x", USAGE)])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t adapter -s info {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []


@pytest.mark.parametrize(
    "words",
    [
        f"-t adapter -s info getcli {IDENTIFIER}",
        f"-s info -t adapter getcli {IDENTIFIER}",
        f"-t adapter getcli -s info {IDENTIFIER}",
        f"-t adapter getcli {IDENTIFIER} -s info",
        f"getcli -S INFO {IDENTIFIER} -T Adapter",
        f"getcli {IDENTIFIER} more -s info words -t adapter",
    ],
)
def test_switch_pairs_may_be_anywhere(zfc, words):
    result = zfc(words, components=components(), memo=memo())
    documents.check(result.stdout, "adapter/info/hazel.txt")


def test_identifier_ahead_of_the_leaf_reaches_nothing(zfc):
    result = zfc(f"-t adapter -s info {IDENTIFIER} getcli")
    assert result.stdout == b"Unknown command or invalid target identifier!\r\n"


CLASS = "AdapterInfoCmdsProcessor"
LOOK_UP = "AdapterCmdsProcessor::GetPhyPortFromAdapterString"


@pytest.mark.parametrize(
    "words, options, failures",
    [
        (IDENTIFIER, {}, []),
        (
            "nobody",
            {},
            [f"{LOOK_UP}: Invalid Adapter identifier nobody", f"{CLASS}::CmdGetCommon: Get phy port failed err=6"],
        ),
        ("help", {}, [f"{CLASS}::CmdGetCommon: Get phy port failed err=5"]),
        (
            IDENTIFIER,
            {"host": NO_LIST},
            [f"{LOOK_UP}: Adapter List is NULL", f"{CLASS}::CmdGetCommon: Get phy port failed err=14"],
        ),
        (
            IDENTIFIER,
            {"spoil_log": "TORPI_Initialize:symlink"},
            [f"{CLASS}::CmdGetCommon: Failed to open /var/tmp/torpi-output.log file"],
        ),
        (
            IDENTIFIER,
            {"results": {"TORPI_GetFlashComponentVersion": 150, "TORPI_GetAdapterFlashMemoBlock": 0xFFFFFFFF}},
            [
                f"{CLASS}::CmdGetCommon: Get Flash Component Version failed err=150",
                f"{CLASS}::CmdGetCommon: Get Flash Memo Block failed err=-1",
            ],
        ),
    ],
)
def test_failures_in_the_log(zfc, words, options, failures):
    assert zfc(f"{GET} {words}", debug=4, **options).failures == failures


def test_steps_in_the_log(zfc):
    """Entry and exit of each function, and the message of a failure."""
    assert zfc(f"{GET} help", debug=1).steps == [
        f"{CLASS}::CmdGet: Entered",
        f"{CLASS}::CmdGetCommon: Entered",
        f"{LOOK_UP}: Entered",
        f"{LOOK_UP}: Invoking Help",
        f"{LOOK_UP}: Exiting",
        f"{CLASS}::DisplayError: Entered",
        f"{CLASS}::DisplayError: Message=Failed, Unknown",
        f"{CLASS}::DisplayError: Exiting",
        f"{CLASS}::CmdGetCommon: Exiting",
        f"{CLASS}::CmdGet: Exiting",
    ]
