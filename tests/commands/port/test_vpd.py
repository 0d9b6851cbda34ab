"""The vpd node of a port: `get` in both forms."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST
from zfc.port import IDENTIFIER, VPD_END, one_port, vpd_item, vpd_resource, vpd_string
from zfc.preload import needs_preload, preloaded

GET = "-t port -s vpd get"
USAGE = "Usage: get\r\n"
LIST_CALL = "TORPI_GetAdapterList()"
VPD = "TORPI_GetVpd"
VPD_CALL = f"{VPD}(port, 0, zeroed buffer, 1024)"
SIZE = 1024
HEADER = b"\x90\x00\x00"  # three bytes that show nothing

# Every keyword that the document has, in an order that is not that of the keywords.
ALL = (
    vpd_string(b"Sorvex ZX320 32Gb FC Dual Port")
    + vpd_resource(
        0x90,
        vpd_item(b"PN", b"HD8310405-18"),
        vpd_item(b"SN", b"HZ20417"),
        vpd_item(b"EC", b"AD0210402-05"),
        vpd_item(b"MN", b"0006"),
        vpd_item(b"V9", b"02.12.14"),
        vpd_item(b"V0", b"PWRSLT=10.5"),
        vpd_item(b"RV", b"\x5a"),
    )
    + vpd_resource(
        0x91,
        vpd_item(b"V5", b"04.14"),
        vpd_item(b"V4", b"03.65"),
        vpd_item(b"V3", b"09.15.05"),
        vpd_item(b"V1", b"07.24"),
        vpd_item(b"RM", b"RM 1.2"),
        vpd_item(b"V7", b"not shown"),
        vpd_item(b"RW", bytes(100)),
    )
    + VPD_END
)


def check_vpd(zfc, name, image, *, size=None, words=(IDENTIFIER,), host=None, **options):
    result = check_both(
        zfc,
        GET,
        f"port/vpd/{name}",
        words=words,
        host=host or one_port(),
        buffers={"vpd": image},
        sizes={"vpd": len(image) if size is None else size},
        **options,
    )
    assert result.command_calls == [LIST_CALL, VPD_CALL]
    return result


def check_one(zfc, image, tag, value, **options):
    check_vpd(zfc, "one", image, values={"tag": tag, "value": value}, **options)


@pytest.mark.parametrize("size", [len(ALL), SIZE, SIZE + 1, 5000, 0xFFFFFFFF])
def test_all_keywords(zfc, size):
    """What the library says beyond the buffer's size does not count."""
    result = check_vpd(zfc, "all", ALL, size=size)
    assert b"<TORPI_GetVpd> chatters" in result.xml.library_log


def test_more_words_are_ignored(zfc):
    check_vpd(zfc, "all", ALL, words=[IDENTIFIER, "more", "help"])


def test_size_that_the_library_leaves_alone(zfc):
    check_both(zfc, GET, "port/vpd/all", words=[IDENTIFIER], host=one_port(), buffers={"vpd": ALL})


class TestNothingToShow:
    @pytest.mark.parametrize(
        "image",
        [
            b"",
            VPD_END,
            VPD_END + ALL,
            vpd_resource(0x90) + VPD_END + ALL,
            b"\0" * SIZE,
            b"\xff" * SIZE,
            b"\x90",
            b"\x91\xff",
            HEADER * 341,
            vpd_item(b"V7", b"x") + VPD_END,
            vpd_item(b"pn", b"x") + VPD_END,
            vpd_item(b"P\0", b"x") + VPD_END,
            vpd_item(b"\0N", b"x") + VPD_END,
            vpd_item(b"RV", b"\x5a") + vpd_item(b"RW", b"") + VPD_END,
            b"P",
            b"RV",
            b"RW\x00",
        ],
    )
    def test_image(self, zfc, image):
        check_vpd(zfc, "empty", image)

    def test_size_0(self, zfc):
        check_vpd(zfc, "empty", ALL, size=0)


class TestLengthsThatLeadOutside:
    """What lies outside does not exist."""

    def test_item_longer_than_the_image(self, zfc):
        check_one(zfc, b"PN\xffABC", "Part Number", "ABC")

    def test_item_at_the_very_end_of_the_buffer(self, zfc):
        image = HEADER * 340 + b"PN\xffA"
        assert len(image) == SIZE
        check_one(zfc, image, "Part Number", "A")

    def test_keyword_at_the_very_end_of_the_buffer(self, zfc):
        image = vpd_item(b"V7", b"xx") + HEADER * 339 + b"PN"
        assert len(image) == SIZE
        check_one(zfc, image, "Part Number", "")

    def test_item_cut_after_its_keyword_has_no_data(self, zfc):
        check_one(zfc, b"PN", "Part Number", "")

    def test_item_cut_after_its_length_has_no_data(self, zfc):
        check_one(zfc, b"PN\x05", "Part Number", "")

    def test_size_from_the_library_cuts_an_item(self, zfc):
        check_one(zfc, b"PN\x05ABCDE" + VPD_END, "Part Number", "ABC", size=6)

    def test_string_longer_than_the_image(self, zfc):
        check_one(zfc, b"\x82\xff\xffName", "Product Identifier", "Name")

    def test_string_that_fills_the_buffer(self, zfc):
        check_one(zfc, b"\x82\xff\xff" + b"N" * (SIZE - 3), "Product Identifier", "N" * (SIZE - 3))

    def test_string_cut_in_its_length(self, zfc):
        check_one(zfc, b"\x82\x05", "Product Identifier", "")
        check_one(zfc, b"\x82", "Product Identifier", "")

    def test_no_end_tag(self, zfc):
        check_vpd(zfc, "all", ALL[:-1])

    def test_headers_count_for_nothing(self, zfc):
        """Whatever length a header gives, the items are walked one by one."""
        for length in (b"\x00\x00", b"\xff\xff", b"\x01\x00"):
            check_one(zfc, b"\x90" + length + vpd_item(b"PN", b"A") + VPD_END, "Part Number", "A")


@pytest.mark.parametrize(
    "value, shown",
    [
        (b"", ""),
        (b"A" * 255, "A" * 255),
        (b"AB\0CD", "AB"),
        (b"\0AB", ""),
        (b"%s%n%d 100%", "%s%n%d 100%"),
        (b" x ", " x "),
        (b"a\nb", "a\nb"),
        (b"<&>", "<&>"),
    ],
)
def test_value(zfc, value, shown):
    """It ends at a terminator; nothing is escaped, and a percent sign is one."""
    check_one(zfc, vpd_item(b"PN", value) + VPD_END, "Part Number", shown, well_formed=b"<" not in value)


def test_two_byte_length_of_the_string(zfc):
    check_one(zfc, vpd_string(b"N" * 700) + VPD_END, "Product Identifier", "N" * 700)


@pytest.mark.parametrize("first, second, shown", [(b"A", b"B", "B"), (b"long", b"", ""), (b"x" * 200, b"y", "y")])
def test_keyword_that_comes_again(zfc, first, second, shown):
    image = vpd_item(b"SN", first) + vpd_item(b"V7", b"between") + vpd_item(b"SN", second) + VPD_END
    check_one(zfc, image, "Serial Number", shown)


def test_keyword_pi_and_identifier_string_are_one(zfc):
    check_one(zfc, vpd_string(b"string") + vpd_item(b"PI", b"item") + VPD_END, "Product Identifier", "item")
    check_one(zfc, vpd_item(b"PI", b"item") + vpd_string(b"string") + VPD_END, "Product Identifier", "string")


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
        pytest.param(
            [IDENTIFIER],
            {"results": {VPD: 150}},
            "Failed, Command not supported when adapter port in maintenance mode",
            "",
            [LIST_CALL, VPD_CALL],
            id="maintenance",
        ),
        *[
            pytest.param(
                [IDENTIFIER], {"results": {VPD: code}}, "Failed, VPD failed", "", [LIST_CALL, VPD_CALL], id=f"{code}"
            )
            for code in (1, 41, 149, 151, 0xFFFFFFFF)
        ],
    ],
)
def test_failure(zfc, words, options, message, usage, calls):
    options = {"host": one_port(), "buffers": {"vpd": ALL}, **options}
    result = check_both(
        zfc, GET, "port/vpd/failed", words=words, values={"message": message}, usage=usage, **options
    )
    assert result.command_calls == calls


CLASS = "PhysicalPortVPDCmdsProcessor::"


@pytest.mark.parametrize(
    "words, options, lines",
    [
        ([IDENTIFIER], {}, []),
        (["FC_nobody"], {}, ["CmdGetCommon: Get phy port failed err=6"]),
        (
            [IDENTIFIER],
            {"spoil_log": "TORPI_GetAdapterList:directory"},
            ["CmdGetCommon: Failed to open /var/tmp/torpi-output.log file"],
        ),
        ([IDENTIFIER], {"results": {VPD: 0xFFFFFFFF}}, ["CmdGetCommon: Get VPD Data failed err=-1"]),
        pytest.param(
            [IDENTIFIER],
            {"env": preloaded("refuse_memory", REFUSE_BYTES=SIZE)},
            ["CmdGetCommon: pVpd malloc failed"],
            marks=needs_preload,
        ),
    ],
)
def test_failure_lines(zfc, words, options, lines):
    result = zfc([*GET.split(), *words], debug=65535, **{"host": one_port(), **options})
    assert [line.removeprefix(CLASS) for line in result.failures] == lines


@needs_preload
def test_image_without_memory(zfc):
    """The class has no message of its own for that."""
    env = preloaded("refuse_memory", REFUSE_BYTES=SIZE)
    options = {"words": [IDENTIFIER], "values": {"message": "Failed, Unknown"}, "host": one_port()}
    result = check_both(zfc, GET, "port/vpd/failed", env=env, debug=4, **options)
    assert result.xml.code == 42
    assert result.command_calls == [LIST_CALL]


def test_steps_in_the_debug_log(zfc):
    """A line for each field of the image, and the functions that read it."""
    image = vpd_string(b"Board") + vpd_resource(0x90, vpd_item(b"PN", b"A 1"), vpd_item(b"RV", b"\x5a\xff")) + VPD_END
    result = zfc(f"{GET} {IDENTIFIER}", host=one_port(), buffers={"vpd": image}, sizes={"vpd": len(image)}, debug=65535)
    lines = result.steps
    first = lines.index(f"{CLASS}DisplayVPDInfo: Entered")

    def field(line):
        return [f"{CLASS}MapFieldData: Entered", line, f"{CLASS}MapFieldData: Exiting"]

    assert lines[first:-2] == [
        f"{CLASS}DisplayVPDInfo: Entered",
        f"{CLASS}DisplayVPDInfo: Message=Success",
        f"{CLASS}MapVpdData: Entered",
        *field(' 0x82  "Board"\n'),
        *field(" 0x90\n"),
        *field(' "PN"  "A 1"\n'),
        *field(' "RV"  5a\n'),
        *field(" 0x78\n"),
        f"{CLASS}MapVpdData: Exiting",
        f"{CLASS}DisplayVPDInfo: Exiting",
    ]
    assert lines[-2:] == [f"{CLASS}CmdGetCommon: Exiting", f"{CLASS}CmdGet: Exiting"]


@pytest.mark.parametrize("size", [SIZE, 5000, 0xFFFFFFFF])
def test_image_without_an_end_is_read_to_the_end_of_the_buffer(zfc, size):
    """128 items of 8 bytes fill the buffer; what the library says beyond it is not looked for."""
    image = vpd_item(b"PN", b"ABCDE") * 128
    result = zfc(f"{GET} {IDENTIFIER}", host=one_port(), buffers={"vpd": image}, sizes={"vpd": size}, debug=1)
    assert [line for line in result.steps if line.startswith(" ")] == [' "PN"  "ABCDE"\n'] * 128


class TestEdgeCases:
    def test_image_that_starts_with_the_end_tag(self, zfc):
        check_vpd(zfc, "empty", VPD_END + ALL)

    def test_vendor_keyword_that_the_table_lacks(self, zfc):
        check_one(
            zfc, vpd_item(b"V7", b"hidden") + vpd_item(b"V9", b"shown") + VPD_END, "Multi Boot Version", "shown"
        )

    def test_order_is_that_of_the_keywords(self, zfc):
        check_vpd(zfc, "all", ALL)

    def test_debug_line_of_a_long_value_is_cut(self, zfc):
        """The line of the debug log holds 511 characters of it; the document has all of the value."""
        image = vpd_string(b"N" * 1000) + VPD_END
        zfc(f"{GET} {IDENTIFIER}", host=one_port(), buffers={"vpd": image}, debug=1)
        log = (zfc.var_tmp / "zfcesxcli.log").read_bytes()
        assert b' 0x82  "' + b"N" * (511 - 8) + b"\r\n" in log


def test_virtual_port_has_vpd(zfc):
    check_vpd(zfc, "all", ALL, host=one_port(interface=3))


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s vpd {words}")
    documents.check(result.stdout, "port/vpd/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", ""), ("getcli ?", USAGE)])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port -s vpd {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
