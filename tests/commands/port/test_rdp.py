"""The rdp node of a port: `get` and `runcli`."""

import struct

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST
from zfc.port import IDENTIFIER, descriptor, one_port, rdp, text_words
from zfc.preload import needs_preload, preloaded

GET = "-t port -s rdp get"
RUNCLI = "-t port -s rdp runcli"
USAGE = "Usage: get\r\n"
LIST_CALL = "TORPI_GetAdapterList()"
RDP = "TORPI_DiagnosticsRDPTest"
RDP_CALL = f"{RDP}(port, zeroed buffer, 508)"
SIZE = 508
RULE = "-" * 33

DIAG_PARAMS = 0x00000001
SFP_DIAG = 0x00010000
PORT_SPEED = 0x00010001
LINK_ERROR = 0x00010002
PORT_NAME = 0x00010003
FEC_STATUS = 0x00010005
CREDITS = 0x00010006
ELEMENT = 0x00010007
PRODUCT = 0x00010008

HEADINGS = {
    DIAG_PARAMS: "Diagnostics Parameters Information",
    SFP_DIAG: "SFP Diagnostics Param Information",
    PORT_SPEED: "Port Speed Information",
    LINK_ERROR: "Link Error Status Block Information",
    PORT_NAME: "Port Name Information",
    FEC_STATUS: "FEC Status Information",
    CREDITS: "Buffer Credits Status Information",
    ELEMENT: "Optical Element Data Information",
    PRODUCT: "Optical Product Data Information",
}

PRODUCT_TEXT = b"SORVEX          SX-32G-SW       SVX0123456789   A1  260114  "

# Each descriptor once, in the order of the expected document.
ALL = rdp(
    descriptor(DIAG_PARAMS, 0x18000000),
    descriptor(SFP_DIAG, 0x2D008101, 0x0E12177D, 0x15D38051),
    descriptor(PORT_SPEED, 0x0E000200),
    descriptor(LINK_ERROR, 1, 2, 3, 4, 0xFFFFFFFF, 6, 0x40000000),
    descriptor(PORT_NAME, 0x1000C4F5, 0x7C102001, 0x200AC4F5, 0x7C1020FF),
    descriptor(FEC_STATUS, 17, 2),
    descriptor(CREDITS, 32, 80, 250),
    descriptor(ELEMENT, 75 << 16 | 251, 70 << 16, 0x10000000),
    descriptor(PRODUCT, *text_words(PRODUCT_TEXT)),
)


def check_rdp(zfc, name, response, *, size=None, words=(IDENTIFIER,), **options):
    result = check_both(
        zfc,
        GET,
        f"port/rdp/{name}",
        cli=RUNCLI,
        words=words,
        host=one_port(),
        buffers={"rdp": response},
        sizes={} if size is None else {"rdp": size},
        **options,
    )
    assert result.command_calls == [LIST_CALL, RDP_CALL]
    return result


def report(zfc, response, **options):
    """The text of the report, as the text form shows it. After the response the buffer holds zeros."""
    output = zfc(f"{RUNCLI} {IDENTIFIER}", host=one_port(), buffers={"rdp": response}, **options).stdout
    rule = "*" * 52
    head = f"{rule}\nRDPInformation:\nMessage: Success\nRead Diagnostics Parameters Data: RDPDataList:\nRDPInfo: "
    text = output.decode()
    assert text.startswith(head) and text.endswith(f"{rule}\n")
    return text[len(head) : -len(rule) - 1]


def block(tag, *lines):
    """What a descriptor shows: its heading between the rules, and its lines."""
    lead = "\n" if tag == DIAG_PARAMS else ""
    return lead + "".join(f"{line}\n" for line in (RULE, HEADINGS[tag], RULE, *lines))


def shown(zfc, tag, *words, **options):
    """The lines of one descriptor, alone in a response."""
    text = report(zfc, rdp(descriptor(tag, *words)), **options)
    head = block(tag)
    assert text.startswith(head)
    return text[len(head) :].split("\n")[:-1]


@pytest.mark.parametrize("size", [None, 0, 7, len(ALL), SIZE, SIZE + 1, 0xFFFFFFFF])
def test_all_descriptors(zfc, size):
    """The list gives its own length: the size that the library gives back does not count."""
    result = check_rdp(zfc, "all", ALL, size=size)
    assert b"<TORPI_DiagnosticsRDPTest> chatters" in result.xml.library_log


def test_more_words_are_ignored(zfc):
    check_rdp(zfc, "all", ALL, words=[IDENTIFIER, "more", "help"])


def test_order_of_the_response_is_that_of_the_report(zfc):
    text = report(zfc, rdp(descriptor(FEC_STATUS, 1), descriptor(DIAG_PARAMS), descriptor(FEC_STATUS, 2)))
    length = "Descriptor Len: 0 Bytes"
    tag = "Descriptor Tag: Link Service Request Information"
    assert text == (
        block(FEC_STATUS, "Correctable Blocks: 1")
        + block(DIAG_PARAMS, tag, length)
        + block(FEC_STATUS, "Correctable Blocks: 2")
    )


def at_the_end(tag, length, *words):
    """A response that fills the buffer: this descriptor is the last, after as many empty ones as it takes."""
    last = descriptor(tag, *words, length=length)
    empty, rest = divmod(SIZE - 4 - len(last), 8)
    response = rdp(*[descriptor(CREDITS)] * empty, b"\0" * rest, last, length=0xFFFFFFFF)
    assert len(response) == SIZE
    return response, block(CREDITS) * empty


class TestListLength:
    @pytest.mark.parametrize("length", [0, 1, 4])
    def test_of_4_or_less(self, zfc, length):
        check_rdp(zfc, "empty", rdp(descriptor(FEC_STATUS, 1), length=length))

    @pytest.mark.parametrize("response", [b"", b"\0", b"\0\0\0\xff"])
    def test_of_a_response_with_nothing_after_it(self, zfc, response):
        check_rdp(zfc, "empty", response)

    @pytest.mark.parametrize("length", [5, 8])
    def test_bounds_the_positions_of_tags(self, zfc, length):
        """At 5 to 8 one position counts; the words of its descriptor may lie beyond."""
        response = rdp(descriptor(FEC_STATUS, 1, 2), descriptor(FEC_STATUS, 3), length=length)
        expected = block(FEC_STATUS, "Correctable Blocks: 1", "UnCorreatable Blocks: 2")
        assert report(zfc, response) == expected

    @pytest.mark.parametrize("length, found", [(20, False), (21, True), (24, True)])
    def test_counts_from_the_start_of_the_response(self, zfc, length, found):
        """The second tag is at position 20."""
        response = rdp(descriptor(FEC_STATUS, 1, 2), descriptor(CREDITS, 3), length=length)
        assert (HEADINGS[CREDITS] in report(zfc, response)) == found

    @pytest.mark.parametrize("length", [SIZE, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF])
    def test_that_is_huge(self, zfc, length):
        response = rdp(descriptor(FEC_STATUS, 1), length=length)
        assert report(zfc, response) == block(FEC_STATUS, "Correctable Blocks: 1")

    def test_that_is_huge_with_tags_up_to_the_end(self, zfc):
        """126 words follow the length: 63 descriptors without data."""
        response = rdp(*[descriptor(CREDITS)] * 63, length=0xFFFFFFFF)
        assert len(response) == SIZE
        assert report(zfc, response) == block(CREDITS) * 63


class TestDescriptorLength:
    @pytest.mark.parametrize("tag", [SFP_DIAG, PORT_SPEED, LINK_ERROR, PORT_NAME, FEC_STATUS, CREDITS])
    @pytest.mark.parametrize("length", [0, 1, 3])
    def test_below_4_reads_no_word(self, zfc, tag, length):
        """What follows is then read as a tag, word by word."""
        response = rdp(descriptor(tag, 7, CREDITS, 4, 9, length=length))
        assert report(zfc, response) == block(tag) + block(CREDITS, "FC Port Buffer To Buffer Credits: 9")

    @pytest.mark.parametrize("length, words", [(4, 1), (5, 1), (7, 1), (8, 2), (11, 2)])
    def test_that_is_odd(self, zfc, length, words):
        response = rdp(descriptor(FEC_STATUS, 1, 2, 3, length=length), length=20)
        lines = ["Correctable Blocks: 1", "UnCorreatable Blocks: 2"]
        assert report(zfc, response) == block(FEC_STATUS, *lines[:words])

    @pytest.mark.parametrize("length", [0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 508, 16])
    def test_that_leads_outside(self, zfc, length):
        """The descriptor decodes the words that the buffer has."""
        response, before = at_the_end(FEC_STATUS, length, 1, 2, 3)
        lines = ["Correctable Blocks: 1", "UnCorreatable Blocks: 2", "FEC Status Block Value: 3"]
        assert report(zfc, response) == before + block(FEC_STATUS, *lines)

    @pytest.mark.parametrize("tag", HEADINGS)
    @pytest.mark.parametrize("words", [0, 1])
    def test_that_leads_outside_in_every_descriptor(self, zfc, tag, words):
        """What is there shows; the rest is no mistake of the program."""
        response, before = at_the_end(tag, 0xFFFFFFFF, *[0x41424344] * words)
        text = report(zfc, response)
        assert text.startswith(before + block(tag))
        if tag not in (DIAG_PARAMS, ELEMENT, PRODUCT) and words == 0:
            assert text == before + block(tag)

    def test_of_the_whole_buffer(self, zfc):
        response = rdp(descriptor(FEC_STATUS, *range(124), length=0xFFFFFFFF))
        assert len(response) == SIZE
        lines = [f"FEC Status Block Value: {number}" for number in range(2, 124)]
        assert report(zfc, response) == block(FEC_STATUS, "Correctable Blocks: 0", "UnCorreatable Blocks: 1", *lines)

    def test_tag_at_the_very_end_has_no_length(self, zfc):
        response = rdp(*[descriptor(CREDITS)] * 62, struct.pack(">II", 0, DIAG_PARAMS), length=0xFFFFFFFF)
        assert len(response) == SIZE
        last = ["Descriptor Tag: Link Service Request Information", "Descriptor Len: 0 Bytes"]
        assert report(zfc, response) == block(CREDITS) * 62 + block(DIAG_PARAMS, *last)


@pytest.mark.parametrize("unknown", [0, 2, 0x00010004, 0x00010009, 0x00020000, 0x01000100, 0xFFFFFFFF])
def test_word_that_is_no_tag_is_logged_and_passed_over(zfc, unknown):
    response = rdp(struct.pack(">I", unknown), descriptor(FEC_STATUS, 1))
    assert report(zfc, response, debug=1) == block(FEC_STATUS, "Correctable Blocks: 1")
    log = (zfc.var_tmp / "zfcesxcli.log").read_bytes()
    assert f"Unknown Descriptor Tag/Value 0x{unknown:08X}".encode() in log


@pytest.mark.parametrize("length, value", [(4, "4"), (5, "5"), (0x80000000, "-2147483648"), (0xFFFFFFFF, "-1")])
def test_diagnostics_parameters(zfc, length, value):
    response, before = at_the_end(DIAG_PARAMS, length, 0xDEADBEEF)
    lines = [
        "Descriptor Tag: Link Service Request Information",
        f"Descriptor Len: {value} Bytes",
        "Descriptor Value: 0xDEADBEEF",
    ]
    assert report(zfc, response) == before + block(DIAG_PARAMS, *lines)


class TestPortSpeed:
    CAPABILITIES = {6: 256, 7: 128, 8: 64, 9: 32, 10: 16, 11: 8, 12: 10, 13: 4, 14: 2, 15: 1}
    OPERATING = {6: 256, 7: 128, 8: 64, 9: 32, 10: 16, 11: 10, 12: 8, 13: 4, 14: 2, 15: 1}

    @pytest.mark.parametrize("bit", range(16))
    def test_each_bit(self, zfc, bit):
        capability = f"{self.CAPABILITIES[bit]} Gbps" if bit in self.CAPABILITIES else "Gbps"
        assert shown(zfc, PORT_SPEED, 1 << bit << 16 | 1 << bit) == [
            f"Port Speed Capabilities: {capability}",
            f"Port Operating Speed: {self.OPERATING.get(bit, 0)} Gbps",
        ]

    @pytest.mark.parametrize(
        "word, capabilities, operating",
        [
            (0x00000000, "Gbps", 0),
            (0xFFFFFFFF, "256 128 64 32 16 8 10 4 2 1 Gbps", 0),
            (0xFFC0FFC0, "256 128 64 32 16 8 10 4 2 1 Gbps", 256),
            (0x1800E000, "8 10 Gbps", 4),
            (0x003F0020, "Gbps", 0),
            (0xE0001800, "4 2 1 Gbps", 10),
            (0x0E003000, "32 16 8 Gbps", 8),
        ],
    )
    def test_several_bits(self, zfc, word, capabilities, operating):
        """All capabilities show; of the operating speed the lowest bit counts."""
        assert shown(zfc, PORT_SPEED, word, 0xFFFFFFFF) == [
            f"Port Speed Capabilities: {capabilities}",
            f"Port Operating Speed: {operating} Gbps",
        ]


class TestLinkErrorStatus:
    LABELS = [
        "Link Failure Count",
        "Loss Of Sync Count",
        "Loss Of Signal Count",
        "Primary Sequence Error Count",
        "Invalid Transmit Word Count",
        "Invalid CRC Count",
    ]

    @pytest.mark.parametrize("number, text", [(0, "0"), (2**31 - 1, "2147483647"), (2**31, "-2147483648"), (2**32 - 1, "-1")])
    def test_counts_are_signed(self, zfc, number, text):
        assert shown(zfc, LINK_ERROR, *[number] * 6) == [f"{label}: {text}" for label in self.LABELS]

    @pytest.mark.parametrize(
        "word, lines",
        [
            (0x00000000, ["\tNo information about Phy Type provided"]),
            (0x3FFFFFFF, ["\tNo information about Phy Type provided"]),
            (0x40000000, ["\tThe sending VN_Port uses an FC-FS-3 PN_Port or PF Port"]),
            (0x7FFFFFFF, ["\tThe sending VN_Port uses an FC-FS-3 PN_Port or PF Port"]),
            (0x80000000, ["\tThe sending VN_Port uses a lossless Ethernet MAC"]),
            (0xBFFFFFFF, ["\tThe sending VN_Port uses a lossless Ethernet MAC"]),
            (0xC0000000, []),
            (0xFFFFFFFF, []),
        ],
    )
    def test_physical_type(self, zfc, word, lines):
        text = shown(zfc, LINK_ERROR, 0, 0, 0, 0, 0, 0, word)
        assert text[6:] == [f"PN Port Physical Type: 0x{word:08X}", *lines]

    def test_further_words(self, zfc):
        text = shown(zfc, LINK_ERROR, *[0] * 6, 0xC0000000, 0x1A, 0xFFFFFFFF)
        assert text[7:] == ["Link Error Status Block Value: 0x0000001A", "Link Error Status Block Value: 0xFFFFFFFF"]


class TestPortName:
    NODE = "Node WWN: 10:00:c4:f5:7c:10:20:01"
    PORT = "Port WWN: 20:0a:c4:f5:7c:10:20:ff"
    WORDS = [0x1000C4F5, 0x7C102001, 0x200AC4F5, 0x7C1020FF, 0x12345678, 0x9ABCDEF0]

    @pytest.mark.parametrize(
        "count, lines",
        [
            (1, []),
            (2, [NODE]),
            (3, [NODE]),
            (4, [NODE, PORT]),
            (5, [NODE, PORT, "Descriptor Value (4): 0x12345678"]),
            (6, [NODE, PORT, "Descriptor Value (4): 0x12345678", "Descriptor Value (5): 0x9ABCDEF0"]),
        ],
    )
    def test_words(self, zfc, count, lines):
        assert shown(zfc, PORT_NAME, *self.WORDS[:count]) == lines


class TestSfpDiagnostics:
    @pytest.mark.parametrize(
        "word, lines",
        [
            (0x00000000, ["Temperature: 0 (C)", "Vcc: 0.000000000 V"]),
            (0x2D008101, ["Temperature: 45 (C)", "Vcc: 3.302500000 V"]),
            (0x2DFF0001, ["Temperature: 45 (C)", "Vcc: 0.000100000 V"]),
            (0xFFFFFFFF, ["Temperature: 255 (C)", "Vcc: 6.553500000 V"]),
        ],
    )
    def test_first_word(self, zfc, word, lines):
        assert shown(zfc, SFP_DIAG, word) == lines

    @pytest.mark.parametrize(
        "word, lines",
        [
            (0x00000000, ["Tx Bias: 0.000000000 mA", "Tx Power: 0.000000000 mW"]),
            (0x00010001, ["Tx Bias: 0.002000000 mA", "Tx Power: 0.000100000 mW"]),
            (0xFFFFFFFF, ["Tx Bias: 131.070000000 mA", "Tx Power: 6.553500000 mW"]),
        ],
    )
    def test_second_word(self, zfc, word, lines):
        assert shown(zfc, SFP_DIAG, 0, word)[2:] == lines

    def test_third_word(self, zfc):
        lines = shown(zfc, SFP_DIAG, 0, 0, 0xFFFF0080)[4:]
        assert lines[:2] == ["Rx Power: 6.553500000 mW", "SFP Flag: 0x0080"]

    def test_further_words(self, zfc):
        lines = shown(zfc, SFP_DIAG, 0, 0, 0x80, 0x1A, 0xFFFFFFFF)
        assert lines[-2:] == ["Descriptor Value: 0x0000001A", "Descriptor Value: 0xFFFFFFFF"]

    @pytest.mark.parametrize(
        "flags, transmitter, first, optical, invalid, second, fec",
        [
            # No bit at all.
            (0x0000, None, "Other", "Off", "Off", "Other", "FEC Active: Off"),
            (0xFFFF, "Long Wave Laser LC 1310 nm", "SFP+", "On", "On", None, "FEC Active Port: On"),
            # The transmitter.
            (0x0001, "Short Wave Laser", "Other", "Off", "Off", "Other", "FEC Active: Off"),
            (0x0002, "Long Wave Laser LC 1310 nm", "Other", "Off", "Off", "Other", "FEC Active: Off"),
            (0x0003, "Long Wave Laser LC 1310 nm", "Other", "Off", "Off", "Other", "FEC Active: Off"),
            (0x0004, None, "Other", "Off", "Off", "Other", "FEC Active: Off"),
            (0x0005, None, "Other", "Off", "Off", "Other", "FEC Active: Off"),
            (0x0006, "Long Wave Laser LC 1310 nm", "Other", "Off", "Off", "Other", "FEC Active: Off"),
            (0x0009, None, "Other", "Off", "Off", "Other", "FEC Active: Off"),
            (0x000B, "Long Wave Laser LC 1310 nm", "Other", "Off", "Off", "Other", "FEC Active: Off"),
            # Connector and optical port.
            (0x0010, None, "Other", "On", "Off", "Other", "FEC Active: Off"),
            (0x0040, None, "Other", "Off", "Off", "SFP+", "FEC Active: Off"),
            (0x0050, None, "SFP+", "On", "Off", "SFP+", "FEC Active: Off"),
            (0x00D0, None, "SFP+", "On", "Off", None, "FEC Active: Off"),
            (0x0080, None, "Other", "Off", "Off", None, "FEC Active: Off"),
            (0x00C0, None, "Other", "Off", "Off", None, "FEC Active: Off"),
            # The two single bits.
            (0x0020, None, "Other", "Off", "On", "Other", "FEC Active: Off"),
            (0x8000, None, "Other", "Off", "Off", "Other", "FEC Active Port: On"),
            (0x7F00, None, "Other", "Off", "Off", "Other", "FEC Active: Off"),
        ],
    )
    def test_flags(self, zfc, flags, transmitter, first, optical, invalid, second, fec):
        assert shown(zfc, SFP_DIAG, 0, 0, flags)[6:] == [
            *([f"\tPort Tx Type: {transmitter}"] if transmitter else []),
            f"\tConnector Type: {first}",
            f"\tOptical Port: {optical}",
            f"\tSFP Diagnostics Parameters not valid: {invalid}",
            *([f"\tConnector Type: {second}"] if second else []),
            f"\t{fec}",
        ]

    def test_long_wave_1550_is_never_shown(self, zfc):
        for low in range(16):
            assert not [line for line in shown(zfc, SFP_DIAG, 0, 0, low) if "1550" in line]


def test_fec_status(zfc):
    assert shown(zfc, FEC_STATUS, 0xFFFFFFFF, 2**31, 3, 0xFFFFFFFE) == [
        "Correctable Blocks: -1",
        "UnCorreatable Blocks: -2147483648",
        "FEC Status Block Value: 3",
        "FEC Status Block Value: -2",
    ]


def test_buffer_credits(zfc):
    assert shown(zfc, CREDITS, 0xFFFFFFFF, 2**31, 0xFFFFFF00, 26, 0xFFFFFFFF) == [
        "FC Port Buffer To Buffer Credits: -1",
        "Attached FC Port Buffer To Buffer Credits: -2147483648",
        "Nominal FC Port RTT: -256 ns",
        "Buffer Credits Status Value: 0x0000001A",
        "Buffer Credits Status Value: 0xFFFFFFFF",
    ]


LIMITS = ["High Alarm", "Low Alarm", "High Warning", "Low Warning"]


def limits(high_alarm, low_alarm, high_warning, low_warning, function):
    return high_alarm << 16 | low_alarm, high_warning << 16 | low_warning, function


class TestOpticalElement:
    @pytest.mark.parametrize(
        "raw, high, low",
        [
            (0, "0.00", "0.00"),
            (1, "1.00", "-255.00"),
            (75, "75.00", "-181.00"),
            (251, "251.00", "-5.00"),
            (255, "255.00", "-1.00"),
            (0x0100, "-128.00", "0.00"),
            (0x0101, "-127.50", "-255.00"),
            (0x01FF, "-0.50", "-1.00"),
            (0x02FF, "255.00", "-1.00"),
            (0x0200, "0.00", "0.00"),
            (0xFFFF, "32511.50", "-1.00"),
        ],
    )
    def test_temperature(self, zfc, raw, high, low):
        """Above the low 8 bits, bit 8 alone makes a high value another: half the number, less 256."""
        lines = shown(zfc, ELEMENT, *limits(raw, raw, raw, raw, 0x10000000))
        assert lines == [f"Temperature {limit}: {high if 'High' in limit else low}" for limit in LIMITS]

    @pytest.mark.parametrize(
        "function, name, values",
        [
            (0x20000000, "Voltage", ["6.553500000", "0.000100000", "3.300000000", "0.000000000"]),
            (0x30000000, "Tx Bias", ["131.070000000", "0.002000000", "66.000000000", "0.000000000"]),
            (0x40000000, "Tx Power", ["6.553500000", "0.000100000", "3.300000000", "0.000000000"]),
            (0x50000000, "Rx Power", ["6.553500000", "0.000100000", "3.300000000", "0.000000000"]),
        ],
    )
    def test_scales(self, zfc, function, name, values):
        lines = shown(zfc, ELEMENT, *limits(0xFFFF, 1, 33000, 0, function))
        assert lines == [f"{name} {limit}: {value}" for limit, value in zip(LIMITS, values)]

    @pytest.mark.parametrize(
        "function, text",
        [
            (0, "0x00"),
            (1, "0x01"),
            (0x60000000, "0x60000000"),
            (0x10000001, "0x10000001"),
            (0xFFFFFFFF, "0xffffffff"),
        ],
    )
    def test_another_function_word_shows_the_raw_numbers(self, zfc, function, text):
        lines = shown(zfc, ELEMENT, *limits(0xFFFF, 10, 0xABCD, 0, function))
        values = ["0xffff", "0x0a", "0xabcd", "0x00"]
        assert lines == [
            f"Optical Element Function Flag [{text}] {limit}: {value}" for limit, value in zip(LIMITS, values)
        ]

    def test_further_words_come_first(self, zfc):
        lines = shown(zfc, ELEMENT, *limits(1, 2, 3, 4, 0x20000000), 0x1A, 0xFFFFFFFF)
        head = "Optical Element Data Descriptor Value: 0x"
        assert lines[:2] == [f"{head}0000001A", f"{head}FFFFFFFF"]
        assert lines[2] == "Voltage High Alarm: 0.000100000"

    @pytest.mark.parametrize("words, values", [([], [0, 0, 0, 0]), ([0x00010002], [1, 2, 0, 0])])
    def test_words_that_are_not_there_are_0(self, zfc, words, values):
        lines = shown(zfc, ELEMENT, *words)
        assert lines == [
            f"Optical Element Function Flag [0x00] {limit}: 0x{value:02x}" for limit, value in zip(LIMITS, values)
        ]


class TestOpticalProduct:
    def product(self, zfc, text):
        return "\n".join(shown(zfc, PRODUCT, *text_words(text)))

    def test_texts(self, zfc):
        text = bytes(range(0x41, 0x41 + 16)) + bytes(range(0x30, 0x40)) + bytes(range(0x61, 0x71)) + b"rev1" + b"20260114"
        assert self.product(zfc, text) == (
            "Vendor Name: ABCDEFGHIJKLMNOP\nPart Number: 0123456789:;<=>?\nSerial Number: abcdefghijklmnop\n"
            "Revision: rev1\nDate: 20260114"
        )

    def test_text_ends_at_its_terminator(self, zfc):
        text = b"SOR\0VEX".ljust(16, b"\0") + b"PN".ljust(16, b"\0") + bytes(16) + b"A\0\0\0" + b"26\0\0\x00\x0014"
        expected = "Vendor Name: SOR\nPart Number: PN\nSerial Number: \nRevision: A\nDate: 26"
        assert self.product(zfc, text) == expected

    def test_percent_signs_are_read_as_conversions(self, zfc):
        text = b"%s%n%d 100%     " + b"%".ljust(16) + b"%%%%".ljust(16) + b"%%%n" + b"%5.3lx%%"
        expected = "Vendor Name:  100%     \nPart Number: %               \nSerial Number: %%            \nRevision: %\nDate: %"
        assert self.product(zfc, text) == expected

    @pytest.mark.parametrize(
        "count, expected",
        [
            (0, ["", "", "", "", ""]),
            (1, ["AAAA", "", "", "", ""]),
            (4, ["AAAA" * 4, "", "", "", ""]),
            (9, ["AAAA" * 4, "AAAA" * 4, "AAAA", "", ""]),
            (13, ["AAAA" * 4, "AAAA" * 4, "AAAA" * 4, "AAAA", ""]),
            (14, ["AAAA" * 4, "AAAA" * 4, "AAAA" * 4, "AAAA", "AAAA"]),
            (17, ["AAAA" * 4, "AAAA" * 4, "AAAA" * 4, "AAAA", "AAAA" * 2]),
        ],
    )
    def test_words_that_are_not_there(self, zfc, count, expected):
        labels = ["Vendor Name", "Part Number", "Serial Number", "Revision", "Date"]
        lines = shown(zfc, PRODUCT, *text_words(b"AAAA" * count))
        assert lines == [f"{label}: {value}" for label, value in zip(labels, expected)]

    @pytest.mark.parametrize(
        "vendor, cisco",
        [
            (b"CISCO-FINISAR   ", 1),
            (b"     MY CISCO   ", 1),
            (b"CISC", 0),
            (b"cisco           ", 0),
            (b"SORVEX          ", 0),
        ],
    )
    def test_vendor_of_the_switch_changes_nothing_but_the_log(self, zfc, vendor, cisco):
        words = text_words(vendor.ljust(60))
        response = rdp(descriptor(FEC_STATUS, 1), descriptor(PRODUCT, *words))
        assert report(zfc, response, debug=1).startswith(block(FEC_STATUS, "Correctable Blocks: 1") + block(PRODUCT))
        log = (zfc.var_tmp / "zfcesxcli.log").read_bytes()
        assert f"Cisco switch: {cisco}".encode() in log


@pytest.mark.parametrize("byte", [0x00, 0x01, 0xFF])
def test_response_of_one_byte_all_over(zfc, byte):
    """It holds no tag."""
    check_rdp(zfc, "empty", bytes([byte]) * SIZE)


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
        *[
            pytest.param(
                [IDENTIFIER],
                {"host": one_port(interface=3, state=state)},
                "Failed, Feature not supported for virtual port",
                "",
                [LIST_CALL],
                id=f"virtual port in state {state}",
            )
            for state in (1, 3)
        ],
        *[
            pytest.param(
                [IDENTIFIER],
                {"host": one_port(state=state), "spoil_log": "TORPI_GetAdapterList:directory"},
                "Failed, Feature requires link up",
                "",
                [LIST_CALL],
                id=f"state {state}",
            )
            for state in (0, 2, 3, 4, 255)
        ],
        pytest.param(
            [IDENTIFIER],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            "Failed, File not found",
            "",
            [LIST_CALL],
            id="no log",
        ),
        pytest.param(
            [IDENTIFIER],
            {"results": {RDP: 150}},
            "Failed, Command not supported when adapter port in maintenance mode",
            "",
            [LIST_CALL, RDP_CALL],
            id="maintenance",
        ),
        *[
            pytest.param(
                [IDENTIFIER],
                {"results": {RDP: code}},
                "Failed, Diagnostic test failed",
                "",
                [LIST_CALL, RDP_CALL],
                id=f"{code}",
            )
            for code in (1, 34, 149, 151, 0xFFFFFFFF)
        ],
    ],
)
def test_failure(zfc, words, options, message, usage, calls):
    options = {"host": one_port(), "buffers": {"rdp": ALL}, **options}
    values = {"message": message}
    result = check_both(zfc, GET, "port/rdp/failed", cli=RUNCLI, words=words, values=values, usage=usage, **options)
    assert result.command_calls == calls


CLASS = "PhysicalPortRDPCmdsProcessor::"


@pytest.mark.parametrize("form", [GET, RUNCLI])
@pytest.mark.parametrize(
    "words, options, lines",
    [
        ([IDENTIFIER], {}, []),
        (["FC_nobody"], {}, ["CmdGetCommon: Get phy port failed err=6"]),
        ([IDENTIFIER], {"host": one_port(interface=3)}, ["CmdGetCommon: Command not supported for vport"]),
        ([IDENTIFIER], {"host": one_port(state=3)}, ["CmdGetCommon: Port is in Link Down state"]),
        (
            [IDENTIFIER],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            ["CmdGetCommon: Failed to open /var/tmp/torpi-output.log file before RDP"],
        ),
        ([IDENTIFIER], {"results": {RDP: 150}}, ["CmdGetCommon: RDP Test Failed"]),
        ([IDENTIFIER], {"results": {RDP: 0xFFFFFFFF}}, ["CmdGetCommon: RDP Test Failed"]),
        pytest.param(
            [IDENTIFIER],
            # The log is spoiled too: the buffer comes first.
            {"env": preloaded("refuse_memory", REFUSE_BYTES=SIZE), "spoil_log": "TORPI_GetAdapterList:directory"},
            ["CmdGetCommon: pRdpData malloc failed"],
            marks=needs_preload,
        ),
        pytest.param(
            [IDENTIFIER],
            {"env": preloaded("refuse_memory", REFUSE_BYTES=16384)},
            ["DisplayRDPInfo: Output memory alloc failed"],
            marks=needs_preload,
        ),
    ],
)
def test_failure_lines(zfc, form, words, options, lines):
    options = {"host": one_port(), "buffers": {"rdp": ALL}, **options}
    result = zfc([*form.split(), *words], debug=65535, **options)
    assert [line.removeprefix(CLASS) for line in result.failures] == lines


@needs_preload
def test_response_without_memory(zfc):
    """The class has no message of its own for that."""
    env = preloaded("refuse_memory", REFUSE_BYTES=SIZE)
    options = {"words": [IDENTIFIER], "values": {"message": "Failed, Unknown"}, "host": one_port()}
    result = check_both(zfc, GET, "port/rdp/failed", cli=RUNCLI, env=env, debug=4, **options)
    assert result.xml.code == 42
    assert result.command_calls == [LIST_CALL]


@needs_preload
def test_report_without_memory(zfc):
    """By then the document has begun: it says "Success" and its field has no text."""
    env = preloaded("refuse_memory", REFUSE_BYTES=16384)
    result = zfc(f"{GET} {IDENTIFIER}", host=one_port(), buffers={"rdp": ALL}, env=env, debug=4)
    empty = (documents.EXPECTED / "port/rdp/empty.xml").read_bytes()
    assert result.stdout == empty.replace(b"<string></string>", b"")
    assert result.code == 42


def steps(zfc, response):
    """What the log says from the document's head on, without the lines of the report."""
    result = zfc(f"{GET} {IDENTIFIER}", host=one_port(), buffers={"rdp": response}, debug=65535)
    lines = result.steps_in(CLASS)
    return lines[lines.index("DisplayRDPInfo: Entered") : lines.index("DisplayRDPInfo: Exiting")]


def decoded(function, tag, words, *inner):
    """What one decoder logs."""
    return [
        f"{function}: Entered",
        f"{function}: Tag 0x{tag:08X} Length {4 * words}",
        *inner,
        f"{function}: Exiting",
    ]


def called(function):
    return [f"{function}: Entered", f"{function}: Exiting"]


def test_steps_in_the_debug_log(zfc):
    """The first pass decodes the vendor alone; the second one all descriptors. The zeros after them are past the
    list's end."""
    vendor = "DecodeSwitchVendorFromOpticalProductDescriptor"
    assert steps(zfc, ALL) == [
        "DisplayRDPInfo: Entered",
        "DisplayRDPInfo: Message=Success",
        "ParseRDPDataBuffer: Entered",
        *decoded(vendor, PRODUCT, 15),
        *decoded("DecodeDiagParamsDescriptorData", DIAG_PARAMS, 1),
        *decoded("DecodeSFPDiagParamDescriptorData", SFP_DIAG, 3, *called("DecodeSFPFlagInfo")),
        *decoded(
            "DecodePortSpeedDescriptorData",
            PORT_SPEED,
            1,
            *called("DecodePortSpeedCapabilities"),
            *called("DecodePortOperatingSpeed"),
        ),
        *decoded("DecodeLinkErrorStatusDescriptorData", LINK_ERROR, 7, *called("DecodePNPortPhysicalType")),
        *decoded("DecodePortNameDescriptorData", PORT_NAME, 4),
        *decoded("DecodeFECStatusDescriptorData", FEC_STATUS, 2),
        *decoded("DecodeBufferCreditsStatusDescriptorData", CREDITS, 3),
        *decoded("DecodeOpticalElementData", ELEMENT, 3),
        *decoded("DecodeOpticalProductDataDescriptor", PRODUCT, 15),
        "ParseRDPDataBuffer: Exiting",
        "DisplayRDPInfo: Cisco switch: 0",
    ]


def test_unknown_words_in_the_debug_log(zfc):
    """The last word is past the list's end, since the length counts its own four bytes."""
    assert steps(zfc, rdp(b"word", descriptor(FEC_STATUS, 1), b"\xff\x00\x00\x01", b"last")) == [
        "DisplayRDPInfo: Entered",
        "DisplayRDPInfo: Message=Success",
        "ParseRDPDataBuffer: Entered",
        "ParseRDPDataBuffer: Unknown Descriptor Tag/Value 0x776F7264",
        *decoded("DecodeFECStatusDescriptorData", FEC_STATUS, 1),
        "ParseRDPDataBuffer: Unknown Descriptor Tag/Value 0xFF000001",
        "ParseRDPDataBuffer: Exiting",
        "DisplayRDPInfo: Cisco switch: 0",
    ]


class TestEdgeCases:
    def test_list_length_of_4_or_less(self, zfc):
        check_rdp(zfc, "empty", rdp(descriptor(FEC_STATUS, 1), length=4))

    def test_word_that_is_not_a_tag(self, zfc):
        assert report(zfc, rdp(b"word", descriptor(FEC_STATUS, 1))) == block(FEC_STATUS, "Correctable Blocks: 1")

    def test_bit_12_is_8_gbps_in_the_operating_speed_and_10_in_the_capabilities(self, zfc):
        assert shown(zfc, PORT_SPEED, 0x10001000) == [
            "Port Speed Capabilities: 10 Gbps",
            "Port Operating Speed: 8 Gbps",
        ]

    def test_port_in_link_down_state(self, zfc):
        values = {"message": "Failed, Feature requires link up"}
        result = check_both(
            zfc, GET, "port/rdp/failed", cli=RUNCLI, words=[IDENTIFIER], values=values, host=one_port(state=3)
        )
        assert result.command_calls == [LIST_CALL]

    def test_getcli_is_no_command(self, zfc):
        result = zfc(f"-t port -s rdp getcli {IDENTIFIER}", host=one_port())
        assert result.stdout == b"Unknown command or invalid target identifier!\r\n"


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s rdp {words}")
    documents.check(result.stdout, "port/rdp/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", ""), ("runcli ?", USAGE)])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port -s rdp {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
