"""The dmi node: `get` and `getraw` in both forms, and its help."""

import re

import pytest

from zfc import documents
from zfc.documents import EXPECTED, check_both
from zfc.host import NO_LIST
from zfc.port import IDENTIFIER, one_port
from zfc.preload import needs_preload, preloaded
from zfc.sfp import EXTERNAL, NO_MODULE, REAL_QSFP, REAL_SFP, changed, laid_out

GET = "-t port -s dmi get"
GETRAW = "-t port -s dmi getraw"
GET_USAGE = "Usage: get [port identifier]\r\n"
GETRAW_USAGE = "Usage: getraw [port identifier]\r\n"
UPDATE_USAGE = "Usage: update [port identifier]\r\n"
SAVE_USAGE = "Usage: save [port identifier] [sfpfile] [mode]\r\n"

READ = "TORPI_GetSFPDataEx"
LIST_CALL = "TORPI_GetAdapterList()"


def read_call(mode):
    return f"{READ}(port, zeroed buffer, {mode}, 0)"


INVALID = "Failed, Invalid parameter"
NO_DATA = "Failed, Data not available"
READ_FAILED = "Failed, SFP DMI data read failed"
NO_HOST = "Failed, Host not found"
NO_FILE = "Failed, File not found"
MAINTENANCE = "Failed, Command not supported when adapter port in maintenance mode"
UNKNOWN = "Failed, Unknown"

HOST = one_port()
SPOILED = "TORPI_SetToolVersion:directory"  # the library output file can be opened at the start and no more after it


def check_get(zfc, name, image, words=(IDENTIFIER,), **options):
    return check_both(zfc, GET, f"port/dmi/{name}", words=words, **{"host": HOST, "buffers": {"sfp": image}, **options})


def check_failed(zfc, command, message, words=(IDENTIFIER,), **options):
    options = {"host": HOST, "buffers": {"sfp": REAL_SFP}, **options}
    return check_both(zfc, command, "port/dmi/failed", words=words, values={"message": message}, **options)


def report_of(zfc, image):
    """The report in text form."""
    result = zfc([*f"{GET}cli".split(), IDENTIFIER], host=HOST, buffers={"sfp": image})
    begin = b"Dmi Info: DMIInfoList:\nDmi Data: "
    assert begin in result.stdout
    return result.stdout.split(begin)[1].rsplit(b"*" * 52, 1)[0]


def row(zfc, image, label):
    """The five words of one row of the table of measured values."""
    lines = [line for line in report_of(zfc, image).split(b"\n") if line.strip().startswith(label + b" ")]
    assert len(lines) == 1, lines
    return lines[0].strip()[len(label) :].split()


# The measured values of the real SFP+ module. Its slope fields hold 1.0 as the standard writes it, 01 00, which the
# program reads as 1.0 for temperature, voltage and transmit power, but as 0 for the bias, whose last byte alone
# counts.
#
#   Temperature  value 0a 1a: 10 + 26/256 = 10.10; thresholds 4e, 49, f8, f3 with fraction 0: 78, 73, 248-256 = -8,
#                243-256 = -13; each times 1.0 plus 0
#   Voltage      818a = 33162 * 0.0001 = 3.3162; 9088 = 37000, 8ca0 = 36000, 7530 = 30000, 7148 = 29000: 3.70, 3.60,
#                3.00, 2.90; times 1.0 plus 0
#   Bias         0e04 = 3588 * 0.002 = 7.176; 19c8 = 6600, 189c = 6300, 09c4 = 2500, 07d0 = 2000: 13.20, 12.60, 5.00,
#                4.00
#   Tx power     16d6 = 5846 * 0.0001 = 0.5846; 2710 = 10000, 1f07 = 7943, 0c5a = 3162, 09d0 = 2512: 1.0000, 0.7943,
#                0.3162, 0.2512. The offset is the slope's field with its four bytes reversed: 00000100, 00010000 =
#                65536. Up there single-precision numbers are 1/128 apart: 65536.5846 is nearest to 65536 + 75/128 =
#                65536.5859, 65536.7943 to 65536 + 102/128 = 65536.7969, 65536.3162 to + 40/128 = .3125, 65536.2512 to
#                + 32/128 = .2500
#   Rx power     value 0, thresholds 2710, 1f07, 009e, 0064: 1.0000, 0.7943, 0.0158, 0.0100. Rx_PWR(1) is 3f800000 =
#                1.0, the other coefficients 0: each number times 1.0. The Low Alarm 0.01 is above 0: a fault
@pytest.mark.parametrize(
    "name, image",
    [
        ("sfp", REAL_SFP),
        ("qsfp", REAL_QSFP),
        # An externally calibrated module.
        #
        #   Temperature  slope 02 00 is 2.0, offset 05 00 is 5. Value 23 40: 35.25 * 2 + 5 = 75.50. High Alarm 4b 01:
        #                014b is 331, bit 8 is set: 331/2 - 256 = -90.5; -181 + 5 = -176.00: the value is above it, a
        #                fault. High Warning 46: 70; 145.00. Low Warning 0: 5.00. Low Alarm fb: 251 - 256 = -5; -5.00
        #   Voltage      slope 03 00 is 3.0, offset fffe is -2. 33000, 36000, 35000, 31000, 30000 ten-thousandths,
        #                times 3, less 2: 7.90, 8.80, 8.50, 7.30, 7.00
        #   Bias         slope xx 02 is 2.0, offset xx 03 is 3. 3500, 6000, 5500, 1500, 1000 times 0.002 are 7, 12,
        #                11, 3, 2: 17.00, 27.00, 25.00, 9.00, 7.00
        #   Tx power     slope 00 02: 0200 is 512, "512.2". Offset 00000002 reversed: 02000000 = 33554432. 0.5, 1.0,
        #                0.8, 0.2, 0.1 times 512.2 are 256.1, 512.2, 409.76, 102.44, 51.22; single-precision numbers
        #                are 4 apart up there: + 256, + 512, + 408, + 104, + 52
        #   Rx power     (1/16 - 1/32 + 1/8 + 2) = 2.15625 times 0.2, 1.0, 0.8, 0.2, 0.1, plus 0.01: 0.44125, 2.16625,
        #                1.735, 0.44125, 0.225625. The Low Warning is at the value: a warning
        ("external", EXTERNAL),
    ],
)
def test_get(zfc, name, image):
    result = check_get(zfc, name, image)
    assert result.command_calls == [LIST_CALL, read_call(0)]


# Receive power without coefficients is four times the stored value: the thresholds are 4 * 1.0 = 4.0000,
# 4 * 0.7943 = 3.1772, 4 * 0.0158 = 0.0632, 4 * 0.01 = 0.0400; a stored 0.01 shows 0.0400 and is at the Low Alarm.
def test_internally_calibrated_receive_power(zfc):
    image = changed(REAL_SFP, {324: bytes(4), 360: bytes([0x00, 0x64])})
    column = [row(zfc, image, label)[4] for label in (b"Value", b"High Alarm", b"High Warning", b"Low Warning")]
    assert column == [b"0.0400", b"4.0000", b"3.1772", b"0.0632"]
    assert row(zfc, image, b"Low Alarm")[4] == b"0.0400"
    assert row(zfc, image, b"Status")[4] == b"Fault"


# All slopes 0: nothing is added to the transmit power.
def test_internally_calibrated_module(zfc):
    image = changed(REAL_SFP, {324: bytes(4), 332: bytes(16)})
    assert row(zfc, image, b"Value") == [b"10.10", b"3.32", b"7.18", b"0.5846", b"0.0000"]
    assert row(zfc, image, b"High Alarm") == [b"78.00", b"3.70", b"13.20", b"1.0000", b"4.0000"]
    assert row(zfc, image, b"High Warning") == [b"73.00", b"3.60", b"12.60", b"0.7943", b"3.1772"]
    assert row(zfc, image, b"Low Warning") == [b"-8.00", b"3.00", b"5.00", b"0.3162", b"0.0632"]
    assert row(zfc, image, b"Low Alarm") == [b"-13.00", b"2.90", b"4.00", b"0.2512", b"0.0400"]
    assert row(zfc, image, b"Status") == [b"Normal"] * 4 + [b"Fault"]


class TestEdgeCasesOfTheCalculation:
    def test_temperature_msb_ff_and_lsb_0_is_255(self, zfc):
        assert row(zfc, changed(REAL_SFP, {352: b"\xff\x00"}), b"Value")[0] == b"255.00"

    def test_temperature_low_warning_of_zeros_is_0(self, zfc):
        assert row(zfc, changed(REAL_SFP, {262: b"\x00\x00"}), b"Low Warning")[0] == b"0.00"

    def test_temperature_low_warning_f6_00_is_minus_10(self, zfc):
        assert row(zfc, changed(REAL_SFP, {262: b"\xf6\x00"}), b"Low Warning")[0] == b"-10.00"

    def test_temperature_high_alarm_5a_00_is_90(self, zfc):
        assert row(zfc, changed(REAL_SFP, {256: b"\x5a\x00"}), b"High Alarm")[0] == b"90.00"

    def test_temperature_high_alarm_with_an_even_fraction_is_a_large_number(self, zfc):
        assert row(zfc, changed(REAL_SFP, {256: b"\x55\x80"}), b"High Alarm")[0] == b"32853.00"

    def test_slope_not_0_takes_value_and_thresholds_through_the_same_line(self, zfc):
        """Slope 02 00 is 2.0, offset 0a 00 is 10."""
        image = changed(REAL_SFP, {340: b"\x02\x00\x0a\x00", 352: b"\x14\x00"})
        labels = (b"Value", b"High Alarm", b"High Warning", b"Low Warning", b"Low Alarm")
        assert [row(zfc, image, label)[0] for label in labels] == [b"50.00", b"166.00", b"156.00", b"-6.00", b"-16.00"]

    def test_receive_power_pattern_of_1_gives_the_stored_value(self, zfc):
        image = changed(REAL_SFP, {324: b"\x3f\x80\x00\x00", 360: b"\x16\xd6"})
        assert row(zfc, image, b"Value")[4] == b"0.5846"

    def test_pattern_with_exponent_255_is_the_largest_number(self, zfc):
        """Rx_PWR(0) is added unchanged."""
        image = changed(REAL_SFP, {324: bytes(4), 328: b"\x7f\x80\x00\x00"})
        assert b"340282346638528859811704183484516925440.0000" in report_of(zfc, image)

    def test_no_table_without_the_bit_while_the_calculation_has_run(self, zfc):
        image = changed(REAL_SFP, {92: b"\xb0"})
        result = zfc([*f"{GET}cli".split(), IDENTIFIER], host=HOST, buffers={"sfp": image}, debug=8)
        assert b"Temperature   Voltage" not in result.stdout
        assert b"CalculateDetailsDMIData done." in result.debug_log

    def test_module_read_as_sfp_by_its_first_byte(self, zfc):
        """QSFP-DD and microQSFP are none of the four that are read as QSFP."""
        for identifier in (b"\x17", b"\x18"):
            assert b"Address A2" in report_of(zfc, changed(REAL_SFP, {0: identifier}))
        for identifier in (b"\x0c", b"\x0d", b"\x11", b"\x12"):
            report = report_of(zfc, changed(REAL_SFP, {0: identifier}))
            assert b"Address A2" not in report and b"Temperature   Voltage" not in report


# Those of the module EXTERNAL with a Low Warning of the temperature whose byte of degrees is the second one.
STEPS_OF_THE_CALCULATION = [
    "Temperature (C) Value (valueArray[0][0]): 35.25",
    "Temp High Alaram: -90.50",
    "Temp High Warning: 70.00",
    "Temp Low Warning(before swap): 63489.00",
    "Temp Low Warning(after swap): 504.00",
    "Temp Low Warning: -8.00",
    "Temp Low Alaram: -5.00",
    "Call buildSlope with intValue=2",
    "Temperature Slope (slopeArray[0]): 2.000",
    "Temperature Offset (offsetArray[0]): 5.000",
    "Voltage (V) Value (valueArray[1][0]): 3.300",
    "Voltage High Alaram: 3.600",
    "Voltage High Warning: 3.500",
    "Voltage Low Warning: 3.100",
    "Voltage Low Alaram: 3.000",
    "Call buildSlope with intValue=3",
    "Voltage Slope (slopeArray[1]): 3.000",
    "Voltage Offset (offsetArray[1]): -2.000",
    "Tx Bias (mA) Value (valueArray[2][0]): 7.000",
    "Tx Bias High Alaram: 12.000",
    "Tx Bias High Warning: 11.000",
    "Tx Bias Low Warning: 3.000",
    "Tx Bias Low Alaram: 2.000",
    "Call buildSlope with intValue=2",
    "Tx Bias Slope (slopeArray[2]): 2.000",
    "Tx Bias Offset (offsetArray[2]): 3.000",
    "Tx Power (mW) Value (valueArray[3][0]): 0.500",
    "Tx Power High Alaram: 1.000",
    "Tx Power High Warning: 0.800",
    "Tx Power Low Warning: 0.200",
    "Tx Power Low Alaram: 0.100",
    "Call buildSlope with intValue=512",
    "Tx Power Slope (slopeArray[3]): 512.200",
    "Tx Power Offset (offsetArray[3]): 33554432.000",
    "Rx Power (mW) Value (valueArray[4][0]): 0.200",
    "Rx Power High Alaram: 1.000",
    "Rx Power High Warning: 0.800",
    "Rx Power Low Warning: 0.200",
    "Rx Power Low Alaram: 0.100",
    "Rx_PWR(0): 0.01",
    "Rx_PWR(1): 2",
    "Rx_PWR(2): 0.125",
    "Rx_PWR(3): -0.03125",
    "Rx_PWR(4): 0.0625",
    "CalculateDetailsDMIData done.",
]


class TestDebugLog:
    def lines(self, zfc, image, debug=8):
        result = zfc([*f"{GET}cli".split(), IDENTIFIER], host=HOST, buffers={"sfp": image}, debug=debug)
        return result.debug_log

    def test_calculation_logs_its_steps(self, zfc):
        image = changed(EXTERNAL, {262: b"\xf8\x01"})
        result = zfc([*f"{GET}cli".split(), IDENTIFIER], host=HOST, buffers={"sfp": image}, debug=8)
        assert [line for level, line in result.log if level == 8] == STEPS_OF_THE_CALCULATION

    def test_qsfp_module_is_not_calculated(self, zfc):
        assert b"CalculateDetailsDMIData" not in self.lines(zfc, REAL_QSFP)

    def test_other_levels_do_not_log_them(self, zfc):
        assert b"Alaram" not in self.lines(zfc, REAL_SFP, debug=7)


# Percent signs in a module's texts are read as conversions: %d and %5.3f disappear, %% is one, a lone one stays.
@pytest.mark.parametrize("form, ending", [("", "xml"), ("cli", "txt")])
def test_percent_signs(zfc, form, ending):
    image = changed(REAL_SFP, {20: b"A%dB%%C%5.3fD%  "})
    expected = (EXPECTED / f"port/dmi/sfp.{ending}").read_bytes()
    expected = expected.replace(b" Vendor: FINISAR CORP.\n", b" Vendor: AB%CD%\n")
    expected = expected.replace(b"Vendor name: FINISAR CORP.    \n", b"Vendor name: AB%CD%   \n")
    result = zfc([*f"{GET}{form}".split(), IDENTIFIER], host=HOST, buffers={"sfp": image})
    assert result.stdout == expected


def test_texts_of_a_module_end_with_their_field(zfc):
    """No text of this module has a terminator, and all have bytes of every kind."""
    texts = {20: b"\xff<&>" + b"V" * 12, 40: b"P" * 16, 56: b"RRRR", 68: b"S" * 16, 84: b"D" * 8, 92: b"DDDD"}
    report = report_of(zfc, laid_out(texts))
    for line in (
        b"                        Vendor: \xff<&>VVVVVVVVVVVV\n",
        b"                   Part Number: PPPPPPPPPPPPPPPP\n",
        b"                      Revision: RRRR\n",
        b"                 Serial Number: SSSSSSSSSSSSSSSS\n",
        b"                     Date code: DDDDDDDD \n",
    ):
        assert line in report


@pytest.mark.parametrize("byte", [0x01, 0x20, 0x25, 0x41, 0x7F, 0x80, 0xFF])
@pytest.mark.parametrize("identifier", [0x03, 0x0D])
def test_module_of_one_byte_all_over(zfc, byte, identifier):
    report = report_of(zfc, changed(bytes([byte]) * 512, {0: bytes([identifier])}))
    assert report.startswith(b"Media Information:\n") and report.endswith(b"\n")
    assert len(report) < 16384


# The option of `get`, and the read mode that it gives.
@pytest.mark.parametrize(
    "words, mode",
    [
        ([], 0),
        (["--refresh", "true"], 1),
        (["--refresh", "false"], 0),
        (["-r", "TRUE"], 1),
        (["-r", "FALSE"], 0),
        (["-R", "True"], 1),
        (["--REFRESH", "tRUE"], 1),
        (["more", "--refresh", "true", "words"], 1),
        (["--refresh"], 0),
        (["-r"], 0),
        (["true"], 0),
        (["--refresh", "true", "-r", "false"], 1),
        (["-r", "false", "--refresh", "maybe"], 0),
    ],
)
def test_refresh(zfc, words, mode):
    result = check_get(zfc, "sfp", REAL_SFP, [IDENTIFIER, *words])
    assert result.command_calls == [LIST_CALL, read_call(mode)]


@pytest.mark.parametrize("value", ["maybe", "", "1", "truee", "tru", "-r", "yes"])
@pytest.mark.parametrize("option", ["--refresh", "-r"])
@pytest.mark.parametrize("form, output", [("", ""), ("cli", GET_USAGE)])
def test_other_value_of_refresh_is_status_6_without_a_document(zfc, form, output, option, value):
    words = [*f"{GET}{form}".split(), IDENTIFIER, option, value]
    result = zfc(words, host=HOST, buffers={"sfp": REAL_SFP}, spoil_log=SPOILED, debug=4)
    assert result.stdout == output.encode()
    assert result.code == 6
    assert result.command_calls == [LIST_CALL]


def test_getraw(zfc):
    options = {"host": HOST, "buffers": {"sfp": REAL_SFP}}
    for more in ([], ["--refresh", "true"], ["--refresh", "maybe"]):
        result = check_both(zfc, GETRAW, "port/dmi/raw", words=[IDENTIFIER, *more], **options)
        assert result.command_calls == [LIST_CALL, read_call(3)]


@pytest.mark.parametrize("command", [GET, GETRAW])
class TestRead:
    def test_image_of_zeros_has_no_data_and_is_a_success(self, zfc, command):
        mode = 3 if command == GETRAW else 0
        result = check_failed(zfc, command, NO_DATA, buffers={"sfp": NO_MODULE}, debug=4)
        assert result.command_calls == [LIST_CALL, read_call(mode)]
        assert result.xml.code == 0

    @pytest.mark.parametrize("offset", [0, 255, 256, 511])
    def test_one_byte_is_data(self, zfc, command, offset):
        image = changed(NO_MODULE, {offset: b"\x03"})
        result = zfc([*command.split(), IDENTIFIER], host=HOST, buffers={"sfp": image})
        assert b"<string>Success</string>" in result.stdout

    @pytest.mark.parametrize(
        "words, options, message, usage, calls",
        [
            pytest.param([], {}, INVALID, True, [], id="no identifier"),
            pytest.param(["nobody"], {}, INVALID, True, [], id="bad identifier"),
            pytest.param(["FC_21:00:00:11:22:33:44:56"], {}, INVALID, True, [LIST_CALL], id="identifier of nobody"),
            pytest.param(["help"], {}, UNKNOWN, True, [], id="help word"),
            pytest.param(["nobody", "--refresh", "maybe"], {}, INVALID, True, [], id="identifier before option"),
            pytest.param([IDENTIFIER], {"host": NO_LIST}, NO_HOST, False, [LIST_CALL], id="no list"),
            pytest.param([IDENTIFIER], {"spoil_log": SPOILED}, NO_FILE, False, [LIST_CALL], id="no bracket"),
            *[
                pytest.param(
                    [IDENTIFIER], {"results": {READ: result}}, message, False, None, id=f"read fails with {result}"
                )
                for result, message in (
                    (1, READ_FAILED),
                    (8, READ_FAILED),
                    (113, READ_FAILED),
                    (149, READ_FAILED),
                    (150, MAINTENANCE),
                    (151, READ_FAILED),
                    (0xFFFFFFFF, READ_FAILED),
                )
            ],
        ],
    )
    def test_failure(self, zfc, command, words, options, message, usage, calls):
        text = {GET: GET_USAGE, GETRAW: GETRAW_USAGE}[command] if usage else ""
        result = check_failed(zfc, command, message, words, usage=text, **options)
        expected = [LIST_CALL, read_call(3 if command == GETRAW else 0)] if calls is None else calls
        assert result.command_calls == expected

    def test_virtual_port_is_read(self, zfc, command):
        result = zfc([*command.split(), IDENTIFIER], host=one_port(interface=3), buffers={"sfp": REAL_SFP})
        assert b"<string>Success</string>" in result.stdout


CLASS = "PhysicalPortDMICmdsProcessor::"


@pytest.mark.parametrize(
    "command, common, display",
    [(GET, "CmdGetCommon", "DisplayDMIInfo"), (GETRAW, "CmdGetRawCommon", "DisplayRawDMIInfo")],
)
@pytest.mark.parametrize(
    "identifier, options, lines",
    [
        (IDENTIFIER, {}, []),
        ("FC_nobody", {}, ["{common}: Get phy port failed err=6"]),
        (IDENTIFIER, {"spoil_log": SPOILED}, ["{common}: Failed to open /var/tmp/torpi-output.log file"]),
        (IDENTIFIER, {"results": {READ: 0xFFFFFFFF}}, ["{common}: Get SFP data failed err=-1"]),
        (IDENTIFIER, {"buffers": {"sfp": NO_MODULE}}, ["{display}: Got all 0's data"]),
    ],
)
def test_failure_lines(zfc, command, common, display, identifier, options, lines):
    options = {"host": HOST, "buffers": {"sfp": REAL_SFP}, **options}
    result = zfc([*command.split(), identifier], debug=65535, **options)
    expected = [CLASS + line.format(common=common, display=display) for line in lines]
    assert result.failures == expected


@needs_preload
def test_report_without_memory(zfc):
    """By then the document has begun: it says "Success" and its field has no text."""
    env = preloaded("refuse_memory", REFUSE_BYTES=16384)
    result = zfc([*GET.split(), IDENTIFIER], host=HOST, buffers={"sfp": REAL_SFP}, env=env, debug=4)
    whole = (EXPECTED / "port/dmi/sfp.xml").read_bytes()
    begin, end = whole.index(b"<string>Media"), whole.rindex(b"</field>\n</structure>\n</list>")
    assert result.stdout == whole[:begin] + whole[end:]
    assert result.failures == [f"{CLASS}DisplayDMIInfo: Output memory alloc failed"]
    assert result.code == 42


def test_get_with_refresh_maybe_is_status_6_and_nothing_on_the_output(zfc):
    result = zfc([*GET.split(), IDENTIFIER, "--refresh", "maybe"], host=HOST, debug=4)
    assert (result.stdout, result.code) == (b"", 6)
    assert result.failures == [f"{CLASS}CmdGetCommon: refresh=maybe not supported"]


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s dmi {words}")
    documents.check(result.stdout, "port/dmi/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize(
    "words, text",
    [
        ("get ?", ""),
        ("getraw ?", ""),
        ("save ?", ""),
        ("update ?", ""),
        ("getcli ?", GET_USAGE),
        ("getrawcli ?", GETRAW_USAGE),
        ("savecli ?", SAVE_USAGE),
        ("updatecli ?", UPDATE_USAGE),
    ],
)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port -s dmi {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []


def test_columns_of_the_table_line_up(zfc):
    """Every number and status word ends in the same column, whatever the row."""
    lines = report_of(zfc, changed(REAL_SFP, {332: bytes(16)})).split(b"\n")
    rows = [line for line in lines if re.match(rb" +(Value|Status|High|Low) ", line)]
    cell = re.compile(rb"(?<= )(-?[\d.]+|Normal|Fault|Warning)(?= |$)")
    ends = {tuple(match.end() for match in cell.finditer(line))[-5:] for line in rows}
    assert len(rows) == 6
    assert ends == {(24, 37, 49, 61, 73)}
