"""The dmi node: `save` and `update` in both forms."""

import pytest

from zfc.documents import check_both
from zfc.host import DAHLIA, NO_LIST, every_device
from zfc.port import IDENTIFIER, one_port

SAVE = "-t port -s dmi save"
UPDATE = "-t port -s dmi update"
UPDATE_USAGE = "Usage: update [port identifier]\r\n"
SAVE_USAGE = "Usage: save [port identifier] [sfpfile] [mode]\r\n"

SAVE_BINARY, SAVE_TEXT, UPDATE_FIRMWARE = (
    f"TORPI_{name}" for name in ("SaveSFPDataToFile", "SaveSFPDataToTextFile", "SfpModuleFirmwareUpdate")
)
LIST_CALL = "TORPI_GetAdapterList()"

INVALID = "Failed, Invalid parameter"
READ_FAILED = "Failed, SFP DMI data read failed"
NO_HOST = "Failed, Host not found"
NO_FILE = "Failed, File not found"
NO_ADAPTER = "Failed, Adapter not found"
NOT_OPENED = "Failed, File Open Error"
UNSUPPORTED = "Failed, Feature not supported for this adapter"
NOT_BY_DRIVER = "Failed, Feature not supported by driver"
OTHER_VENDOR = "Failed, SFP FW update not supported for this SFP vendor"
MAINTENANCE = "Failed, Command not supported when adapter port in maintenance mode"
UNKNOWN = "Failed, Unknown"

HOST = one_port()
SPOILED = "TORPI_SetToolVersion:directory"  # the library output file can be opened at the start and no more after it


def check_save(zfc, message, words, **options):
    options = {"host": HOST, **options}
    return check_both(zfc, SAVE, "port/dmi/save", words=words, values={"message": message}, **options)


@pytest.mark.parametrize(
    "mode, call",
    [
        ("Binary", SAVE_BINARY),
        ("binary", SAVE_BINARY),
        ("BINARY", SAVE_BINARY),
        ("Text", SAVE_TEXT),
        ("text", SAVE_TEXT),
        ("tExT", SAVE_TEXT),
    ],
)
def test_save(zfc, mode, call):
    result = check_save(zfc, "Success", [IDENTIFIER, "/tmp/module %s.bin", mode, "more"])
    assert result.command_calls == [LIST_CALL, f'{call}(port, "/tmp/module %s.bin")']


@pytest.mark.parametrize(
    "words", [[], ["/tmp/file"], ["/tmp/file", "csv"], ["/tmp/file", ""], ["Binary"], ["/tmp/file", "Texts"]]
)
def test_save_without_a_known_mode(zfc, words):
    result = check_save(zfc, READ_FAILED, [IDENTIFIER, *words], debug=4)
    assert result.command_calls == [LIST_CALL]
    assert result.xml.code == 13


SAVE_TRANSLATION = {
    3: NO_FILE,
    40: "Failed, Memory Error",
    100: "Failed, Feature not supported for virtual port",
    101: NOT_OPENED,
    113: UNSUPPORTED,
    114: NO_ADAPTER,
    121: UNSUPPORTED,
    150: MAINTENANCE,
    **dict.fromkeys(
        [1, 2, 6, 8, 13, 14, 19, 22, 42, 51, 60, 99, 102, 107, 118, 144, 149, 151, 0xFFFFFFFF], READ_FAILED
    ),
}


@pytest.mark.parametrize("mode, call", [("Binary", SAVE_BINARY), ("Text", SAVE_TEXT)])
@pytest.mark.parametrize("result", SAVE_TRANSLATION)
def test_save_translation(zfc, mode, call, result):
    done = check_save(zfc, SAVE_TRANSLATION[result], [IDENTIFIER, "file", mode], results={call: result})
    assert done.command_calls == [LIST_CALL, f'{call}(port, "file")']


# The checks in their order: each row fails at one check and at all that follow.
@pytest.mark.parametrize(
    "words, options, message, usage, calls",
    [
        pytest.param([], {"spoil_log": SPOILED}, INVALID, SAVE_USAGE, [], id="no identifier"),
        pytest.param(["nobody", "file", "csv"], {"spoil_log": SPOILED}, INVALID, SAVE_USAGE, [], id="bad identifier"),
        pytest.param(["?x", "file", "csv"], {}, INVALID, SAVE_USAGE, [], id="not quite a help word"),
        pytest.param(["help", "file", "csv"], {}, UNKNOWN, SAVE_USAGE, [], id="help word"),
        pytest.param([IDENTIFIER, "file", "csv"], {"host": NO_LIST}, NO_HOST, "", [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER, "file", "csv"], {"spoil_log": SPOILED}, NO_FILE, "", [LIST_CALL], id="no bracket"),
        pytest.param([IDENTIFIER, "file", "csv"], {}, READ_FAILED, "", [LIST_CALL], id="mode"),
    ],
)
def test_save_failure(zfc, words, options, message, usage, calls):
    result = check_save(zfc, message, words, usage=usage, **options)
    assert result.command_calls == calls


DAHLIA_PORT = {"device": 0x3640, "driver_flags": 0x02}


def check_update(zfc, message, words=None, *, host=None, **options):
    words = [IDENTIFIER, zfc.file("sfp.img").name, "WTD"] if words is None else words
    options = {"host": host or one_port(**DAHLIA_PORT), **options}
    return check_both(zfc, UPDATE, "port/dmi/update", words=words, values={"message": message}, **options)


UPDATE_CALL = f'{UPDATE_FIRMWARE}(port, "sfp.img", 2)'


@pytest.mark.parametrize("vendor", ["WTD", "wtd", "wTd"])
def test_update(zfc, vendor):
    result = check_update(zfc, "Success", [IDENTIFIER, zfc.file("sfp.img").name, vendor, "more"])
    assert result.command_calls == [LIST_CALL, UPDATE_CALL]


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_update_of_each_family(zfc, device):
    host = one_port(device=device, driver_flags=0x02)
    if device in DAHLIA:
        check_update(zfc, "Success", host=host)
    else:
        assert check_update(zfc, UNSUPPORTED, host=host).command_calls == [LIST_CALL]


def test_update_of_another_maker_s_adapter(zfc):
    check_update(zfc, UNSUPPORTED, host=one_port(**DAHLIA_PORT, vendor=0x1077))


@pytest.mark.parametrize("flags", [0x00, 0x01, 0x02, 0x03, 0xFD, 0xFF])
def test_update_needs_the_driver(zfc, flags):
    host = one_port(device=0x3640, driver_flags=flags)
    if flags & 0x02:
        check_update(zfc, "Success", host=host)
    else:
        assert check_update(zfc, NOT_BY_DRIVER, host=host).command_calls == [LIST_CALL]


UPDATE_TRANSLATION = {
    101: NOT_OPENED,
    107: "Failed, Checksum Error",
    113: UNSUPPORTED,
    114: NO_ADAPTER,
    118: NOT_BY_DRIVER,
    144: "Failed, SFP FW update failed",
    145: OTHER_VENDOR,
    146: "Failed, SFP FW file not supported for this SFP",
    150: MAINTENANCE,
    **dict.fromkeys([1, 3, 6, 8, 13, 14, 40, 50, 58, 100, 121, 143, 147, 149, 151, 0xFFFFFFFF], UNKNOWN),
}


@pytest.mark.parametrize("result", UPDATE_TRANSLATION)
def test_update_translation(zfc, result):
    done = check_update(zfc, UPDATE_TRANSLATION[result], results={UPDATE_FIRMWARE: result})
    assert done.command_calls == [LIST_CALL, UPDATE_CALL]


# The checks in their order: each row fails at one check and at all that follow.
OTHER_HOST = one_port(device=0x3522, driver_flags=0xFD)


@pytest.mark.parametrize(
    "words, options, message, usage, calls",
    [
        pytest.param([], {}, INVALID, UPDATE_USAGE, [], id="no identifier"),
        pytest.param(["nobody", "missing", "X"], {}, INVALID, UPDATE_USAGE, [], id="bad identifier"),
        pytest.param(["help", "missing", "X"], {}, UNKNOWN, UPDATE_USAGE, [], id="help word"),
        pytest.param([IDENTIFIER, "missing", "X"], {"host": NO_LIST}, NO_HOST, "", [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], {}, NO_FILE, "", [LIST_CALL], id="no file"),
        pytest.param([IDENTIFIER, ""], {}, NO_FILE, "", [LIST_CALL], id="empty file"),
        pytest.param([IDENTIFIER, "missing", "X"], {}, NO_FILE, "", [LIST_CALL], id="missing file"),
        pytest.param([IDENTIFIER, "sfp.img"], {}, OTHER_VENDOR, "", [LIST_CALL], id="no vendor"),
        pytest.param([IDENTIFIER, "sfp.img", "X"], {}, OTHER_VENDOR, "", [LIST_CALL], id="other vendor"),
        pytest.param([IDENTIFIER, "sfp.img", "WTD"], {}, UNSUPPORTED, "", [LIST_CALL], id="family"),
        pytest.param(
            [IDENTIFIER, "sfp.img", "WTD"],
            {"host": one_port(device=0x3640, driver_flags=0xFD)},
            NOT_BY_DRIVER,
            "",
            [LIST_CALL],
            id="driver",
        ),
        pytest.param(
            [IDENTIFIER, "sfp.img", "WTD"],
            {"host": one_port(**DAHLIA_PORT)},
            NO_FILE,
            "",
            [LIST_CALL],
            id="no bracket",
        ),
    ],
)
def test_update_failure(zfc, words, options, message, usage, calls):
    zfc.file("sfp.img")
    options = {"host": OTHER_HOST, "spoil_log": SPOILED, "results": {UPDATE_FIRMWARE: 1}, **options}
    result = check_update(zfc, message, words, usage=usage, **options)
    assert result.command_calls == calls


CLASS = "PhysicalPortDMICmdsProcessor::"
NO_DRIVER = one_port(device=0x3640, driver_flags=0xFD)
READY = one_port(**DAHLIA_PORT)


@pytest.mark.parametrize(
    "command, words, options, lines",
    [
        (SAVE, ["file", "text"], {}, []),
        (SAVE, ["file", "text"], {"host": NO_LIST}, ["CmdSaveCommon: Get phy port failed err=14"]),
        (SAVE, ["file", "csv"], {}, ["CmdSaveCommon: Invalid mode 1"]),
        (f"{SAVE}cli", ["file", "csv"], {}, ["CmdSaveCommon: Invalid mode 2"]),
        (
            SAVE,
            ["file", "csv"],
            {"spoil_log": SPOILED},
            ["CmdSaveCommon: Failed to open /var/tmp/torpi-output.log file"],
        ),
        (SAVE, ["file", "text"], {"results": {SAVE_TEXT: 0xFFFFFFFF}}, ["CmdSaveCommon: SFP data save failed err=-1"]),
        (UPDATE, ["sfp.img", "WTD"], {"host": READY}, []),
        (UPDATE, [], {"host": NO_LIST}, ["CmdUpdateCommon: Get phy port failed err=14"]),
        (UPDATE, ["no %s", "X"], {}, ["CmdUpdateCommon: SFP Image file [no %s] does not exist"]),
        (UPDATE, ["sfp.img", "X"], {}, ["CmdUpdateCommon: SFP Firmware update not supported for this vendor"]),
        (UPDATE, ["sfp.img", "WTD"], {}, ["CmdUpdateCommon: SFP Firmware update not supported for this adapter"]),
        (
            UPDATE,
            ["sfp.img", "WTD"],
            {"host": NO_DRIVER},
            ["CmdUpdateCommon: SFP Firmware update not supported by the driver"],
        ),
        (
            UPDATE,
            ["sfp.img", "WTD"],
            {"host": READY, "spoil_log": SPOILED},
            ["CmdUpdateCommon: Failed to open /var/tmp/torpi-output.log file"],
        ),
        (
            UPDATE,
            ["sfp.img", "WTD"],
            {"host": READY, "results": {UPDATE_FIRMWARE: 147}},
            ["CmdUpdateCommon: SFP FW update failed err=147"],
        ),
    ],
)
def test_failure_lines(zfc, command, words, options, lines):
    zfc.file("sfp.img")
    result = zfc([*command.split(), IDENTIFIER, *words], debug=65535, **{"host": OTHER_HOST, **options})
    own = [line.removeprefix(CLASS) for line in result.failures if line.startswith(CLASS)]
    assert own == lines
    others = [line for line in result.failures if not line.startswith(CLASS)]
    no_list = "PhysicalPortCmdsProcessor::GetPhyPortFromPortString: Adapter List is NULL"
    assert others == ([no_list] if options.get("host") is NO_LIST else [])


class TestEdgeCasesOfTheCommands:
    def test_save_with_mode_text_works_and_with_csv_fails(self, zfc):
        check_save(zfc, "Success", [IDENTIFIER, "file", "text"])
        check_save(zfc, READ_FAILED, [IDENTIFIER, "file", "csv"])

    def test_update_with_a_missing_file_and_a_wrong_vendor_reports_the_file(self, zfc):
        check_update(zfc, NO_FILE, [IDENTIFIER, "missing", "X"])

    def test_update_answered_with_147_is_status_50_and_unknown(self, zfc):
        result = check_update(zfc, UNKNOWN, results={UPDATE_FIRMWARE: 147}, debug=4)
        assert result.xml.code == 50
