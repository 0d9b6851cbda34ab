"""The info node of a port: `get` in both forms."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.flash import components
from zfc.host import DAHLIA, ELM, HAZEL, IRIS, NO_ADAPTERS, NO_LIST, every_device
from zfc.port import IDENTIFIER, WWPN, lockdown, one_port, temperature
from zfc.preload import needs_preload, preloaded

GET = "-t port -s info get"
GETCLI = f"-t port -s info getcli {IDENTIFIER}"
USAGE = "Usage: get [port identifier]\r\n"

TEMPERATURE = "TORPI_GetAdapterAsicBoardTemperature"
LOCKDOWN = "TORPI_GetLockdownStatus"
COMPONENTS = "TORPI_GetFlashComponentVersion"
LIST_CALL = "TORPI_GetAdapterList()"
CALLS = [LIST_CALL, *(f"{call}(port, zeroed buffer)" for call in (TEMPERATURE, LOCKDOWN, COMPONENTS))]

WITH_MPI = {*HAZEL, *IRIS, *DAHLIA}
FOUR_GROUPS = {*WITH_MPI, *ELM}

COMMON_LABELS = [
    "Model",
    "Port Number",
    "PCI Bus Number",
    "PCI Device Number",
    "PCI Function Number",
    "PCI Bus Max Width",
    "PCI Bus Negotiated Width",
    "PCI Bus Max Speed",
    "PCI Bus Negotiated Speed",
    "Driver Version",
    "Node Name",
    "Port Name",
    "Principal Fabric WWN",
    "Adjacent Fabric WWN",
    "Maximum Speed",
    "Supported Speeds",
    "Port Interface Type",
    "Protocol Type",
    "Port Type",
    "Port State",
    "Port Connection Mode",
    "Port Speed",
    "Port ID",
    "Flash Firmware Version",
    "Flash BIOS Version",
    "Flash FCode Version",
    "Flash EFI Version",
    "Flash Preload Firmware Area Version",
    "Flash FC Board Config Version",
    "Running Firmware Version",
]
MPI_LABELS = [
    "Host NQN",
    "Host ID",
    "Flash MPI Firmware Version",
    "Flash PEP Firmware Version",
    "Flash PEP Board Config Version",
    "Flash PEP SoftROM Version",
    "Running MPI Firmware Version",
    "Running PEP Firmware Version",
    "Config Lockdown",
    "Firmware Update Lockdown",
    "MPI Lockdown",
]
DAHLIA_LABELS = ["Flash MPI SoftROM Version", "Flash PCIE Serdes Version"]
TEMPERATURE_LABEL = "Temperature In Celsius"

BUFFERS = {"temperature": temperature(57), "lockdown": lockdown(0, 0x76, 0x86)}
READS = {"buffers": BUFFERS, "components": components()}


def lines_of(zfc, words=GETCLI, **options):
    """The labels and values of the text form's report, in order; its document must be the report frame."""
    lines = zfc(words, **{**READS, **options}).stdout.decode().split("\n")
    rule = "*" * 52
    assert lines[:4] == [rule, "PortInformation:", "Message: Success", "PortInfo: PortInfoList:"]
    assert lines[-2:] == [rule, ""]
    assert lines[4].startswith("Data: Model: ")
    assert all(line.startswith("      ") for line in lines[5:-2])
    return [tuple(line[6:].split(": ", 1)) for line in lines[4:-2]]


def report(zfc, device=0x3640, *, reads=None, **fields):
    """The report of one port with these fields, as a dictionary."""
    lines = lines_of(zfc, host=one_port(device=device, **fields), **(reads or {}))
    assert len({label for label, _ in lines}) == len(lines)
    return dict(lines)


# Whole documents, one for each set of lines that a family can have.
@pytest.mark.parametrize(
    "name, device", [("dahlia", 0x3640), ("hazel", 0x3522), ("hazel", 0x3150), ("elm", 0x3432), ("aster", 0x3A02)]
)
def test_report(zfc, name, device):
    result = check_both(zfc, GET, f"port/info/{name}", words=[IDENTIFIER], host=one_port(device=device), **READS)
    assert result.command_calls == CALLS


def test_report_ignores_more_words(zfc):
    words = [IDENTIFIER, "more", "help", "?"]
    check_both(zfc, GET, "port/info/hazel", words=words, host=one_port(), **READS)


def zeros(count):
    return bytes(count)


def test_report_of_a_port_of_zeros(zfc):
    """Every text is empty, every number zero, and no read gives anything."""
    host = one_port(
        device=0x3640,
        interface=0,
        model="",
        wwpn=zeros(8),
        node_name=zeros(8),
        pci_capability=0,
        pci_status=0,
        driver="",
        running_firmware="",
        bios="",
        flash_firmware=zeros(4),
        efi=zeros(4),
        fcode=zeros(4),
        running_mpi=zeros(4),
        running_pep=zeros(4),
        port_id=zeros(3),
        port_type=0,
        state=0,
        connection=0,
        speed=0,
        link_flags=0,
        supported=0,
        principal=zeros(8),
        adjacent=zeros(8),
        host_id=zeros(16),
        host_nqn="",
        pci_bus=0,
        pci_function=0,
    )
    check_both(zfc, GET, "port/info/bare", words=["FC_00:00:00:00:00:00:00:00"], host=host)


def ones(count):
    return b"\xff" * count


def test_report_of_a_port_of_ones(zfc):
    """Each text fills its field without a terminator, and each number has all bits set."""
    host = one_port(
        number=0xFFFFFFFF,
        device=0x3640,
        interface=0xFFFF,
        type=1,
        model="M" * 31 + "m",
        wwpn=ones(8),
        node_name=ones(8),
        pci_capability=0xFFFF,
        pci_status=0xFFFF,
        driver="D" * 51 + "d",
        running_firmware="R" * 31 + "r",
        bios="B" * 31 + "b",
        flash_firmware=ones(4),
        efi=ones(4),
        fcode=ones(4),
        running_mpi=ones(4),
        running_pep=ones(4),
        port_id=ones(3),
        port_type=0xFF,
        state=0xFF,
        connection=0xFF,
        speed=0xFFFFFFFF,
        link_flags=0xFFFF,
        supported=0xFF,
        principal=ones(8),
        adjacent=ones(8),
        host_id=ones(16),
        host_nqn="N" * 255 + "n",
        pci_bus=0xFF,
        pci_device=0xFF,
    )
    buffers = {"temperature": ones(64), "lockdown": ones(40)}
    words = ["FC_ff:ff:ff:ff:ff:ff:ff:ff"]
    check_both(zfc, GET, "port/info/extremes", words=words, host=host, buffers=buffers, components=ones(256))


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_lines_of_each_family(zfc, device):
    shown = report(zfc, device)
    expected = {
        *COMMON_LABELS,
        *(MPI_LABELS if device in WITH_MPI else []),
        *(DAHLIA_LABELS if device in DAHLIA else []),
        *([TEMPERATURE_LABEL] if device in FOUR_GROUPS else []),
    }
    assert {*shown} == expected
    assert zfc.calls()[3:-1] == CALLS


@pytest.mark.parametrize("device", [0x3640, 0x3522, 0x3150, 0x3432], ids=hex)
def test_device_of_another_vendor_is_of_no_family(zfc, device):
    assert {*report(zfc, device, vendor=0x1077)} == {*COMMON_LABELS}
    assert zfc.calls()[3:-1] == CALLS


@pytest.mark.parametrize("number, shown", [(0, "0"), (1, "1"), (255, "255"), (256, "0"), (0x101, "1")])
def test_port_number_is_one_byte(zfc, number, shown):
    assert dict(lines_of(zfc, host=one_port(number=number)))["Port Number"] == shown


@pytest.mark.parametrize("key, label", [("bus", "Bus"), ("device", "Device"), ("function", "Function")])
@pytest.mark.parametrize("number, shown", [(0, "0x0"), (9, "0x9"), (10, "0xa"), (255, "0xff")])
def test_pci_position(zfc, key, label, number, shown):
    assert report(zfc, **{f"pci_{key}": number})[f"PCI {label} Number"] == shown


WIDTHS = {1: "x1", 2: "x2", 4: "x4", 8: "x8", 16: "x16", 24: "x32"}
SPEEDS = {1: "2.5 Gtps", 2: "5 Gtps", 3: "8 Gtps", 4: "16 Gtps", 8: "32 Gtps"}


@pytest.mark.parametrize("key, label", [("pci_capability", "Max"), ("pci_status", "Negotiated")])
class TestPciLink:
    @pytest.mark.parametrize("code", [*range(0, 34), 48, 63])
    def test_width(self, zfc, key, label, code):
        """The bits around the width's do not count. 24 shows x32; 32 is unknown."""
        for around in (0, 0xFC0F):
            shown = report(zfc, **{key: code << 4 | around})[f"PCI Bus {label} Width"]
            assert shown == WIDTHS.get(code, "Unknown")

    @pytest.mark.parametrize("code", range(16))
    def test_speed(self, zfc, key, label, code):
        for around in (0, 0xFFF0):
            shown = report(zfc, **{key: code | around})[f"PCI Bus {label} Speed"]
            assert shown == SPEEDS.get(code, "Unknown")


@pytest.mark.parametrize(
    "mask, maximum, supported",
    [
        (0x00, "Unknown", "Gbps"),
        (0x01, "Unknown", "1 Gbps"),
        (0x02, "Unknown", "2 Gbps"),
        (0x03, "Unknown", "1 2 Gbps"),
        (0x04, "10 Gbps", "10 Gbps"),
        (0x08, "4 Gbps", "4 Gbps"),
        (0x10, "8 Gbps", "8 Gbps"),
        (0x14, "10 Gbps", "8 10 Gbps"),
        (0x18, "8 Gbps", "4 8 Gbps"),
        (0x1F, "10 Gbps", "1 2 4 8 10 Gbps"),
        (0x20, "16 Gbps", "16 Gbps"),
        (0x24, "16 Gbps", "10 16 Gbps"),
        (0x40, "32 Gbps", "32 Gbps"),
        (0x80, "64 Gbps", "64 Gbps"),
        (0xE0, "64 Gbps", "16 32 64 Gbps"),
        (0xFF, "64 Gbps", "1 2 4 8 10 16 32 64 Gbps"),
    ],
)
def test_supported_speeds(zfc, mask, maximum, supported):
    shown = report(zfc, supported=mask)
    assert (shown["Maximum Speed"], shown["Supported Speeds"]) == (maximum, supported)


PORT_TYPES = [
    "Unknown",
    "Node Port",
    "Loop Port",
    "Fabric Private Loop Port",
    "Node Or Loop Port",
    "Fabric Port",
    "Fabric Public Loop Port",
    "Loop Transport Port",
    "Expansion Port",
    "Bridge Port",
    "Unknown",
]


@pytest.mark.parametrize("code, text", [*enumerate(PORT_TYPES), (255, "Unknown")])
def test_port_type(zfc, code, text):
    assert report(zfc, port_type=code)["Port Type"] == text


@pytest.mark.parametrize(
    "code, text", [(0, "Unknown"), (1, "Physical Port"), (2, "Unknown"), (3, "NPIV Virtual Port"), (0x0101, "Unknown")]
)
def test_interface_type(zfc, code, text):
    assert report(zfc, interface=code)["Port Interface Type"] == text


@pytest.mark.parametrize("code, text", [(0, "FC"), (1, "FCoE")])
def test_protocol_type(zfc, code, text):
    assert report(zfc, type=code)["Protocol Type"] == text


@pytest.mark.parametrize("code, text", [(0, "Unknown"), (1, "Point to Point"), (2, "Loop"), (3, "Unknown")])
def test_connection_mode(zfc, code, text):
    assert report(zfc, connection=code)["Port Connection Mode"] == text


PORT_SPEEDS = {
    1: "1 Gbps",
    2: "2 Gbps",
    4: "4 Gbps",
    8: "8 Gbps",
    16: "10 Gbps",
    22: "16 Gbps",
    50: "32 Gbps",
    100: "64 Gbps",
}


@pytest.mark.parametrize("code", [*range(0, 24), 32, 49, 50, 51, 64, 99, 100, 101, 0x100 + 22, 0xFFFFFFFF])
def test_port_speed(zfc, code):
    assert report(zfc, speed=code)["Port Speed"] == PORT_SPEEDS.get(code, "Unknown")


@pytest.mark.parametrize("device", [0x3640, 0x3522, 0x3150, 0x3432, 0x7132, 0x3A02, 0x1234], ids=hex)
@pytest.mark.parametrize(
    "speed, flags, everywhere, in_the_groups",
    [
        (22, 0x7FFF, "Online", "Online"),
        (22, 0x8000, "Online", "Online (FEC)"),
        (22, 0xFFFF, "Online", "Online (FEC)"),
        (21, 0xFFFF, "Online", "Online"),
        (23, 0xFFFF, "Online", "Online"),
        (0, 0xFFFF, "Online", "Online"),
        (49, 0xFFFF, "Online", "Online"),
        (50, 0, "Online (FEC)", "Online (FEC)"),
        (100, 0, "Online (FEC)", "Online (FEC)"),
        (0xFFFFFFFF, 0, "Online (FEC)", "Online (FEC)"),
    ],
)
def test_online(zfc, device, speed, flags, everywhere, in_the_groups):
    expected = in_the_groups if device in FOUR_GROUPS else everywhere
    assert report(zfc, device, speed=speed, link_flags=flags)["Port State"] == expected


@pytest.mark.parametrize("state, text", [(0, "Unknown"), (2, "Unknown"), (3, "Offline"), (4, "Unknown"), (255, "Unknown")])
def test_other_states(zfc, state, text):
    for speed in (22, 100):
        assert report(zfc, state=state, speed=speed, link_flags=0xFFFF)["Port State"] == text


@pytest.mark.parametrize(
    "celsius, shown", [(0, "0"), (57, "57"), (32767, "32767"), (-1, "4294967295"), (-32768, "4294934528")]
)
def test_temperature(zfc, celsius, shown):
    reads = {"buffers": {"temperature": temperature(celsius)}}
    assert report(zfc, reads=reads)[TEMPERATURE_LABEL] == shown


@pytest.mark.parametrize(
    "host_id, shown",
    [
        (bytes(16), "NA"),
        (bytes(15) + b"\x01", "00000000000000000000000000000001"),
        (b"\x01" + bytes(15), "01000000000000000000000000000000"),
        (bytes(range(0xF0, 0x100)), "f0f1f2f3f4f5f6f7f8f9fafbfcfdfeff"),
    ],
)
def test_host_id(zfc, host_id, shown):
    assert report(zfc, host_id=host_id)["Host ID"] == shown


@pytest.mark.parametrize("key, label", [("host_nqn", "Host NQN"), ("bios", "Flash BIOS Version"), ("running_firmware", "Running Firmware Version")])
def test_empty_text_shows_na(zfc, key, label):
    assert report(zfc, **{key: ""})[label] == "NA"
    assert report(zfc, **{key: "x"})[label] == "x"


def test_empty_driver_version_stays_empty(zfc):
    assert report(zfc, driver="")["Driver Version"] == ""


@pytest.mark.parametrize("text, shown", [("100%", "100%"), ("%s%n%d", ""), ("%%", "%"), ("a%5.3lxb", "ab")])
@pytest.mark.parametrize(
    "key, label",
    [("driver", "Driver Version"), ("host_nqn", "Host NQN"), ("bios", "Flash BIOS Version"), ("running_firmware", "Running Firmware Version")],
)
def test_percent_signs_of_a_text(zfc, key, label, text, shown):
    assert report(zfc, **{key: text})[label] == shown


def test_percent_signs_of_the_model(zfc):
    assert dict(lines_of(zfc, host=one_port(model="ZX%d100%")))["Model"] == "ZX100%"


# Rule A: all zero is "NA". Rule B: all 255 is "NA" as well.
VERSIONS = [
    ((0, 0, 0), "NA", "NA"),
    ((255, 255, 255), "255.255.255", "NA"),
    ((255, 255, 0), "255.255.00", "255.255.00"),
    ((0, 255, 255), "0.255.255", "0.255.255"),
    ((0, 0, 1), "0.00.01", "0.00.01"),
    ((0, 1, 0), "0.01.00", "0.01.00"),
    ((12, 10, 99), "12.10.99", "12.10.99"),
    ((100, 101, 102), "100.101.102", "100.101.102"),
]
A_LABELS = {"preload": "Flash Preload Firmware Area Version", "fc_board_config": "Flash FC Board Config Version"}
B_LABELS = {
    "mpi_firmware": "Flash MPI Firmware Version",
    "pep_firmware": "Flash PEP Firmware Version",
    "pep_board_config": "Flash PEP Board Config Version",
    "mpi_softrom": "Flash MPI SoftROM Version",
    "pcie_serdes": "Flash PCIE Serdes Version",
}


@pytest.mark.parametrize("name", [*A_LABELS, *B_LABELS])
@pytest.mark.parametrize("version, rule_a, rule_b", VERSIONS)
def test_component_version(zfc, name, version, rule_a, rule_b):
    shown = report(zfc, reads={"components": components(**{name: version})})
    assert shown[{**A_LABELS, **B_LABELS}[name]] == (rule_a if name in A_LABELS else rule_b)


@pytest.mark.parametrize("version, rule_a, rule_b", VERSIONS)
def test_version_of_the_record(zfc, version, rule_a, rule_b):
    for fourth in (0, 0xFF):
        raw = (*version, fourth)
        shown = report(zfc, flash_firmware=raw, running_mpi=raw, running_pep=raw)
        assert shown["Flash Firmware Version"] == rule_a
        assert shown["Running MPI Firmware Version"] == rule_b
        assert shown["Running PEP Firmware Version"] == rule_b


@pytest.mark.parametrize(
    "version, shown",
    [((0, 0), "NA"), ((0, 1), "0.01"), ((1, 0), "1.00"), ((7, 24), "7.24"), ((255, 255), "255.255")],
)
@pytest.mark.parametrize("key, label", [("fcode", "FCode"), ("efi", "EFI")])
def test_two_part_version(zfc, key, label, version, shown):
    for rest in ((0, 0), (0xFF, 0xFF)):
        assert report(zfc, **{key: (*version, *rest)})[f"Flash {label} Version"] == shown


@pytest.mark.parametrize("version", [(0, 0, 0), (255, 255, 255)])
@pytest.mark.parametrize("device", [0x3640, 0x3522, 0x3150], ids=hex)
def test_absent_pep_softrom_has_the_label_of_the_mpi_softrom(zfc, device, version):
    """On a Dahlia adapter two lines then have this label."""
    lines = lines_of(zfc, host=one_port(device=device), components=components(pep_softrom=version))
    softroms = [line for line in lines if "SoftROM" in line[0]]
    own = [("Flash MPI SoftROM Version", "3.100.200")] if device in DAHLIA else []
    assert softroms == [("Flash MPI SoftROM Version", "NA"), *own]
    labels = [label for label, _ in lines]
    assert labels[labels.index("Flash PEP Board Config Version") + 1] == "Flash MPI SoftROM Version"


@pytest.mark.parametrize("flag", [0, 1, ord("t"), 255])
@pytest.mark.parametrize(
    "status, shown",
    [
        (0, "false"),
        (0x76, "Unsupported Driver"),
        (0x86, "Unsupported Firmware"),
        (1, "Unknown"),
        (0x77, "Unknown"),
        (0x176, "Unknown"),
        (0xFFFFFFFF, "Unknown"),
    ],
)
def test_lockdown_flag_never_shows_true(zfc, status, shown, flag):
    others = {"Config Lockdown": 0, "Firmware Update Lockdown": 1, "MPI Lockdown": 2}
    for label, place in others.items():
        words = [0x76, 0x76, 0x76]
        words[place] = status
        lines = report(zfc, reads={"buffers": {"lockdown": lockdown(*words, flags=(flag, flag, flag))}})
        assert [lines[name] for name in others] == [
            shown if name == label else "Unsupported Driver" for name in others
        ]


class TestFailedReads:
    """The report shows what the other reads gave."""

    @pytest.mark.parametrize("result", [1, 13, 150, 0xFFFFFFFF])
    def test_each_alone(self, zfc, result):
        assert report(zfc, reads={"results": {TEMPERATURE: result}})[TEMPERATURE_LABEL] == "0"
        lines = report(zfc, reads={"results": {LOCKDOWN: result}})
        assert {lines[label] for label in MPI_LABELS[-3:]} == {"false"}
        assert lines[TEMPERATURE_LABEL] == "57"

    @pytest.mark.parametrize("result", [1, 150])
    def test_flash_components(self, zfc, result):
        lines = dict(lines_of(zfc, host=one_port(device=0x3640), results={COMPONENTS: result}))
        assert {lines[label] for label in (*A_LABELS.values(), *B_LABELS.values())} == {"NA"}
        assert lines[TEMPERATURE_LABEL] == "57"

    @pytest.mark.parametrize("device", [0x3640, 0x3522, 0x3150], ids=hex)
    def test_what_a_failed_read_has_written_does_not_show(self, zfc, device):
        results = dict.fromkeys((TEMPERATURE, LOCKDOWN, COMPONENTS), 1)
        host = one_port(device=device)
        untouched = lines_of(zfc, host=host, results=results)
        assert lines_of(zfc, host=host, results=results, env={"HOSTILE_FILL_FAILED": "1"}) == untouched

    def test_all(self, zfc):
        results = dict.fromkeys((TEMPERATURE, LOCKDOWN, COMPONENTS), 150)
        lines = dict(lines_of(zfc, host=one_port(device=0x3640), results=results))
        assert lines[TEMPERATURE_LABEL] == "0"
        assert zfc.calls()[3:-1] == CALLS


@pytest.mark.parametrize(
    "words, options, message, usage, calls",
    [
        pytest.param([], {}, "Failed, Invalid parameter", USAGE, [], id="no identifier"),
        pytest.param(["nobody"], {}, "Failed, Invalid parameter", USAGE, [], id="bad identifier"),
        pytest.param(["help"], {}, "Failed, Unknown", USAGE, [], id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", "", [LIST_CALL], id="no list"),
        pytest.param(
            [IDENTIFIER], {"host": NO_ADAPTERS}, "Failed, Invalid parameter", USAGE, [LIST_CALL], id="no adapters"
        ),
        pytest.param(
            [IDENTIFIER],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            "Failed, File not found",
            "",
            [LIST_CALL],
            id="no log",
        ),
    ],
)
def test_failure(zfc, words, options, message, usage, calls):
    options = {"host": one_port(), **options}
    result = check_both(
        zfc, GET, "port/info/failed", words=words, values={"message": message}, usage=usage, **options
    )
    assert result.command_calls == calls


CLASS = "PhysicalPortInfoCmdsProcessor::"
ALL_READS_FAIL = {TEMPERATURE: 1, LOCKDOWN: 150, COMPONENTS: 0xFFFFFFFF}


@pytest.mark.parametrize("form", [GET, f"{GET}cli"])
@pytest.mark.parametrize(
    "words, options, lines",
    [
        ([IDENTIFIER], {}, []),
        (
            ["nobody"],
            {},
            [
                "PhysicalPortCmdsProcessor::GetPhyPortFromPortString: Invalid Port identifier nobody",
                f"{CLASS}CmdGetCommon: Get phy port failed err=6",
            ],
        ),
        (["help"], {}, [f"{CLASS}CmdGetCommon: Get phy port failed err=5"]),
        (
            [IDENTIFIER],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            [f"{CLASS}CmdGetCommon: Failed to open /var/tmp/torpi-output.log file"],
        ),
        (
            [IDENTIFIER],
            {"results": ALL_READS_FAIL},
            [
                f"{CLASS}CmdGetCommon: Get phy port temperature failed err=1",
                f"{CLASS}CmdGetCommon: Get Lockdown status failed err=150",
                f"{CLASS}CmdGetCommon: Get Flash Component Version failed err=-1",
            ],
        ),
    ],
)
def test_failure_lines(zfc, form, words, options, lines):
    result = zfc([*form.split(), *words], debug=65535, **{"host": one_port(), **options})
    assert result.failures == lines


@pytest.mark.parametrize(
    "word, display, message",
    [(IDENTIFIER, "DisplayPortInfo", "Success"), ("nobody", "DisplayError", "Failed, Invalid parameter")],
)
def test_functions_in_the_debug_log(zfc, word, display, message):
    result = zfc(f"{GET} {word}", host=one_port(), debug=65535)
    assert result.steps_in(CLASS) == [
        "CmdGet: Entered",
        "CmdGetCommon: Entered",
        f"{display}: Entered",
        f"{display}: Message={message}",
        f"{display}: Exiting",
        "CmdGetCommon: Exiting",
        "CmdGet: Exiting",
    ]


@needs_preload
def test_report_without_memory(zfc):
    env = preloaded("refuse_memory", REFUSE_BYTES=4096)
    options = {"words": [IDENTIFIER], "values": {"message": "Failed, Memory Error"}, "host": one_port()}
    result = check_both(zfc, GET, "port/info/failed", env=env, debug=4, **options)
    assert result.xml.failures == [f"{CLASS}DisplayPortInfo: Output memory alloc failed"]
    assert result.xml.code == 42


def test_lines_of_the_report_are_in_the_debug_log(zfc):
    result = zfc(f"{GET} {IDENTIFIER}", host=one_port(model="ZX9"), debug=65535)
    assert "Model: ZX9\n" in result.steps
    assert "      Port Type: Node Port\n" in result.steps


class TestEdgeCases:
    def test_mask_with_only_bits_0_and_1(self, zfc):
        shown = report(zfc, supported=3)
        assert (shown["Maximum Speed"], shown["Supported Speeds"]) == ("Unknown", "1 2 Gbps")

    def test_16_gbps_outside_the_four_groups_is_online_whatever_the_flag_word_says(self, zfc):
        assert report(zfc, 0x3A02, speed=22, link_flags=0xFFFF)["Port State"] == "Online"

    @pytest.mark.parametrize("speed", [50, 100])
    def test_32_and_64_gbps_are_online_fec_on_every_adapter(self, zfc, speed):
        assert report(zfc, 0x3A02, speed=speed, link_flags=0)["Port State"] == "Online (FEC)"

    def test_temperature_of_minus_1(self, zfc):
        reads = {"buffers": {"temperature": temperature(-1)}}
        assert report(zfc, reads=reads)[TEMPERATURE_LABEL] == "4294967295"

    def test_all_ff_counts_as_absent_only_for_some_lines(self, zfc):
        raw = b"\xff" * 4
        all_ff = {"preload": (255,) * 3, "fc_board_config": (255,) * 3}
        lines = report(zfc, flash_firmware=raw, reads={"components": components(**all_ff)})
        labels = ("Flash Firmware Version", *A_LABELS.values())
        assert {lines[label] for label in labels} == {"255.255.255"}

    def test_failed_component_read_gives_success_with_na(self, zfc):
        lines = report(zfc, 0x3432, reads={"results": {COMPONENTS: 1}})
        assert {lines[label] for label in A_LABELS.values()} == {"NA"}

    def test_help_word_in_get(self, zfc):
        options = {"values": {"message": "Failed, Unknown"}, "usage": USAGE, "debug": 1}
        result = check_both(zfc, GET, "port/info/failed", words=["help"], **options)
        assert b"Program Exit Code: (5)" in result.xml.debug_log

    def test_virtual_port_has_a_report(self, zfc):
        assert report(zfc, interface=3)["Port Interface Type"] == "NPIV Virtual Port"

    def test_library_prints_stay_out(self, zfc):
        result = check_both(zfc, GET, "port/info/hazel", words=[IDENTIFIER], host=one_port(), **READS)
        for call in (TEMPERATURE, LOCKDOWN, COMPONENTS):
            assert f"<{call}> chatters".encode() in result.xml.library_log


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s info {words}")
    documents.check(result.stdout, "port/info/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", b""), ("getcli ?", USAGE.encode())])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port -s info {words}")
    assert result.stdout == text
    assert result.command_calls == []


def test_only_the_bytes_of_the_identifier_count(zfc):
    """A port beside it with the same name but one bit is another port."""
    other = bytes([*WWPN[:7], WWPN[7] ^ 1])
    result = zfc(GETCLI, host=one_port(wwpn=other))
    assert b"Message: Failed, Invalid parameter\n" in result.stdout
