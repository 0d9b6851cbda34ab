"""The adapter node's `update`: four kinds of image, all results of the library, all failures."""

import pytest

from zfc.documents import check_both
from zfc.host import BIRCH, DAHLIA, ELM, HAZEL, IDENTIFIER, IRIS, NO_LIST, Fc, every_device, one

UPDATE = "-t adapter update"
USAGE = "Usage: [identifier] [flashfile]\r\n"
FILE = "image.bin"

LIST_CALL = "TORPI_GetAdapterList()"

# Image type: the call that writes it, the arguments after the handle, the families that may.
TYPES = {
    "MBI": ("TORPI_doOptionROMUpdate", f'"{FILE}", 0', every_device()),
    "BrdCfg": ("TORPI_UpdateSpecificFlashRegionFromFile", f'"{FILE}"', [*ELM, *HAZEL, *IRIS]),
    "FWPreload": ("TORPI_UpdateAdapterFirmwareTableFromFile", f'"{FILE}"', [*BIRCH, *ELM, *HAZEL, *IRIS]),
    "PEPCfg": ("TORPI_UpdateAdapterPEPCfgFromFile", f'"{FILE}"', [*HAZEL, *IRIS]),
}

SUCCESS = "Success"
TOO_FEW = "Failed, Invalid Number of parameters"
INVALID = "Failed, Invalid parameter"
UPDATE_ERROR = "Failed, Flash Update Error"
NO_HOST = "Failed, Host not found"
NO_FILE = "Failed, File not found"
UNSUPPORTED = "Failed, Feature not supported for this adapter"


def call_of(kind, entry="port"):
    name, arguments, _ = TYPES[kind]
    return f"{name}({entry}, {arguments})"


def check_update(zfc, words, reboot, message, *, usage="", **options):
    zfc.file(FILE)
    values = {"reboot": reboot, "message": message}
    return check_both(zfc, UPDATE, "adapter/update", words=words, values=values, usage=usage, **options)


def words_for(kind):
    return [IDENTIFIER, FILE, kind]


# Families. Every device is tried with every kind; a success shows the reboot state of result 0.
@pytest.mark.parametrize("kind", TYPES)
@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_families(zfc, kind, device):
    if device not in TYPES[kind][2]:
        result = check_update(zfc, words_for(kind), "false", UNSUPPORTED, host=one(device))
        assert result.command_calls == [LIST_CALL]
        return
    at_once = kind == "MBI" and device in (*HAZEL, *IRIS, *DAHLIA)
    result = check_update(zfc, words_for(kind), "false" if at_once else "true", SUCCESS, host=one(device))
    assert result.command_calls == [LIST_CALL, call_of(kind)]


@pytest.mark.parametrize(
    "kind, reboot, message",
    [
        ("MBI", "true", SUCCESS),
        ("BrdCfg", "false", UNSUPPORTED),
        ("FWPreload", "false", UNSUPPORTED),
        ("PEPCfg", "false", UNSUPPORTED),
    ],
)
def test_device_of_another_vendor_is_of_no_family(zfc, kind, reboot, message):
    host = one(fc=Fc(device=0x3522, vendor=0x1077))
    check_update(zfc, words_for(kind), reboot, message, host=host)


# Results that are a success, on a family whose MBI update needs no reboot and on one whose update does.
@pytest.mark.parametrize(
    "kind, device, result, reboot",
    [
        ("MBI", 0x3522, 0, "false"),
        ("MBI", 0x3522, 201, "true"),
        ("MBI", 0x3522, 205, "Cold Boot Required"),
        ("MBI", 0x3432, 0, "true"),
        ("MBI", 0x3432, 201, "true"),
        ("MBI", 0x3432, 205, "Cold Boot Required"),
        ("BrdCfg", 0x3522, 0, "true"),
        ("BrdCfg", 0x3522, 201, "true"),
        ("BrdCfg", 0x3522, 205, "true"),
        ("FWPreload", 0x3522, 0, "true"),
        ("FWPreload", 0x3522, 201, "true"),
        ("FWPreload", 0x3522, 205, "true"),
        ("PEPCfg", 0x3522, 0, "true"),
        ("PEPCfg", 0x3522, 201, "true"),
        ("PEPCfg", 0x3522, 205, "true"),
    ],
)
def test_success(zfc, kind, device, result, reboot):
    done = check_update(
        zfc, words_for(kind), reboot, SUCCESS, host=one(device), results={TYPES[kind][0]: result}
    )
    assert done.command_calls == [LIST_CALL, call_of(kind)]


# The translation of all other results.
TRANSLATION = {
    3: NO_FILE,
    40: "Failed, Memory Error",
    101: "Failed, File Open Error",
    102: "Failed, File read Error",
    103: "Failed, File not Valid",
    104: "Failed, Invalid SSID",
    105: "Failed, Corrupted File",
    106: "Failed, Invalid File Size",
    107: "Failed, Checksum Error",
    108: "Failed, Invalid data",
    110: "Failed, Invalid Serial Number",
    111: "Failed, Invalid Signature",
    113: UNSUPPORTED,
    114: "Failed, Adapter not found",
    121: UNSUPPORTED,
    133: "Failed, Flash Update disabled as FW lockdown mode enabled",
    150: "Failed, Command not supported when adapter port in maintenance mode",
    152: "Failed, Image set validation error",
    153: "Failed, Image set config error",
    522: "Failed, Flash Image Components Validation Error",
    **dict.fromkeys(
        [1, 2, 4, 5, 6, 11, 14, 19, 35, 39, 41, 60, 100, 109, 112, 115, 120, 122, 132, 134, 149, 151, 154, 197, 200]
        + [202, 203, 204, 206, 521, 523, 0x000000C9 + 256, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF],
        UPDATE_ERROR,
    ),
}


@pytest.mark.parametrize("result", TRANSLATION)
def test_translation(zfc, result):
    done = check_update(
        zfc, words_for("MBI"), "false", TRANSLATION[result], results={TYPES["MBI"][0]: result}
    )
    assert done.command_calls == [LIST_CALL, call_of("MBI")]


@pytest.mark.parametrize("kind", ["BrdCfg", "FWPreload", "PEPCfg"])
@pytest.mark.parametrize("result", [3, 111, 150, 522, 0xFFFFFFFF])
def test_translation_is_the_same_for_all_kinds(zfc, kind, result):
    check_update(zfc, words_for(kind), "false", TRANSLATION[result], results={TYPES[kind][0]: result})


# The checks in their order: each row fails at one check and at all after it.
@pytest.mark.parametrize(
    "words, host, message, usage, calls",
    [
        pytest.param([], NO_LIST, TOO_FEW, USAGE, [], id="no words"),
        pytest.param(["nobody"], NO_LIST, TOO_FEW, USAGE, [], id="one word"),
        pytest.param(["help"], NO_LIST, TOO_FEW, USAGE, [], id="one word, a help word"),
        pytest.param([""], NO_LIST, TOO_FEW, USAGE, [], id="one word, empty"),
        pytest.param(["help", "none"], NO_LIST, "Failed, Unknown", USAGE, [], id="help word as identifier"),
        pytest.param(["/?", "none", "x"], NO_LIST, "Failed, Unknown", USAGE, [], id="help word of three"),
        pytest.param(["nobody", "none", "x"], NO_LIST, INVALID, USAGE, [], id="text of another type"),
        pytest.param([IDENTIFIER, "none", "x"], NO_LIST, NO_HOST, "", [LIST_CALL], id="no adapter list"),
        pytest.param(["Adapter_A_B", "none", "x"], None, INVALID, USAGE, [LIST_CALL], id="no such adapter"),
        pytest.param([IDENTIFIER, "none", "x"], None, NO_FILE, "", [LIST_CALL], id="missing file"),
        pytest.param([IDENTIFIER, "none"], None, NO_FILE, "", [LIST_CALL], id="missing file and type"),
        pytest.param([IDENTIFIER, ""], None, NO_FILE, "", [LIST_CALL], id="empty file name"),
        pytest.param([IDENTIFIER, "no/folder", "MBI"], None, NO_FILE, "", [LIST_CALL], id="missing folder"),
        pytest.param([IDENTIFIER, FILE + "/x", "MBI"], None, NO_FILE, "", [LIST_CALL], id="file as a folder"),
        pytest.param([IDENTIFIER, "n" * 300, "MBI"], None, NO_FILE, "", [LIST_CALL], id="name too long"),
        pytest.param([IDENTIFIER, "none", "PEPCfg"], one(0x3432), NO_FILE, "", [LIST_CALL], id="file before family"),
        pytest.param(words_for("PEPCfg"), one(0x3432), UNSUPPORTED, "", [LIST_CALL], id="family"),
        pytest.param([IDENTIFIER, FILE], None, UPDATE_ERROR, "", [LIST_CALL], id="missing type"),
        pytest.param([IDENTIFIER, FILE, ""], None, UPDATE_ERROR, "", [LIST_CALL], id="empty type"),
        pytest.param([IDENTIFIER, FILE, "MB"], None, UPDATE_ERROR, "", [LIST_CALL], id="unknown type"),
        pytest.param([IDENTIFIER, FILE, "MBIX"], None, UPDATE_ERROR, "", [LIST_CALL], id="type with more after it"),
        pytest.param([IDENTIFIER, FILE, "help"], None, UPDATE_ERROR, "", [LIST_CALL], id="help word as type"),
        pytest.param([IDENTIFIER, "MBI", FILE], None, NO_FILE, "", [LIST_CALL], id="file and type swapped"),
    ],
)
def test_failure(zfc, words, host, message, usage, calls):
    results = {name: 150 for name, _, _ in TYPES.values()}
    result = check_update(zfc, words, "false", message, usage=usage, host=host, results=results)
    assert result.command_calls == calls


@pytest.mark.parametrize("words", [["more"], ["more", "words", "help", "?"]])
def test_more_words_are_ignored(zfc, words):
    result = check_update(zfc, [*words_for("MBI"), *words], "false", SUCCESS)
    assert result.command_calls == [LIST_CALL, call_of("MBI")]


@pytest.mark.parametrize("name", ["with blank.bin", "%s%n.bin", "-x", "a'b.bin", "./image.bin", "."])
def test_file_is_named_to_the_library_as_typed(zfc, name):
    """A folder passes too: the check is that the name exists."""
    if name != ".":
        zfc.file(name)
    result = check_update(zfc, [IDENTIFIER, name, "MBI"], "false", SUCCESS)
    assert result.command_calls == [LIST_CALL, f'TORPI_doOptionROMUpdate(port, "{name}", 0)']


def test_file_with_a_full_path(zfc):
    path = str(zfc.file("full.bin"))
    result = check_update(zfc, [IDENTIFIER, path, "MBI"], "false", SUCCESS)
    assert result.command_calls == [LIST_CALL, f'TORPI_doOptionROMUpdate(port, "{path}", 0)']


class TestEdgeCases:
    def test_updatecli_with_one_word(self, zfc):
        check_update(zfc, [IDENTIFIER], "false", TOO_FEW, usage=USAGE)

    def test_missing_file_is_found_before_any_flash_call(self, zfc):
        result = check_update(zfc, [IDENTIFIER, "none", "MBI"], "false", NO_FILE)
        assert result.command_calls == [LIST_CALL]

    def test_unknown_type_is_an_update_error(self, zfc):
        check_update(zfc, [IDENTIFIER, FILE, "Firmware"], "false", UPDATE_ERROR)

    def test_result_205_with_mbi_asks_for_a_cold_boot(self, zfc):
        results = {"TORPI_doOptionROMUpdate": 205}
        check_update(zfc, words_for("MBI"), "Cold Boot Required", SUCCESS, results=results)

    def test_result_0_with_mbi_on_hazel_needs_no_reboot(self, zfc):
        check_update(zfc, words_for("MBI"), "false", SUCCESS, host=one(0x3522))

    @pytest.mark.parametrize("kind", ["mbi", "Mbi", "brdcfg", "BRDCFG", "fwpreload", "pepcfg", "PEPCFG"])
    def test_type_word_in_another_case(self, zfc, kind):
        named = next(name for name in TYPES if name.lower() == kind.lower())
        result = check_update(zfc, words_for(kind), "false" if named == "MBI" else "true", SUCCESS)
        assert result.command_calls == [LIST_CALL, call_of(named)]

    def test_update_with_q_as_the_file_runs_nothing_on_the_command_line(self, zfc):
        result = zfc("-t adapter update x q")
        assert result.stdout == b""
        assert result.command_calls == []

    def test_update_with_q_as_the_file_runs_at_the_shell(self, zfc):
        output = zfc(stdin=b"-t adapter updatecli x q\nq\n").stdout.decode()
        assert output.startswith(f"$>{'*' * 52}\nFlashUpdate:\nReboot Required: false\nMessage: {INVALID}\n")

    def test_unsupported_family_leaves_standard_output_in_place_for_the_next_command(self, zfc):
        zfc.file(FILE)
        lines = [f"-t adapter updatecli {IDENTIFIER} {FILE} PEPCfg", "version", "q", ""]
        output = zfc(stdin="\n".join(lines).encode(), host=one(0x3432)).stdout.decode()
        rule = "*" * 52
        document = f"{rule}\nFlashUpdate:\nReboot Required: false\nMessage: {UNSUPPORTED}\n{rule}\n"
        assert output == f"$>{document}$>Halcyr Sorvex Meridot FC ESXCLI Plugin v1.9.0\r\n$>"


COMMON = "AdapterCmdsProcessor::CmdUpdateCommon"
ALLOWED_NOWHERE = one(0x3A02)


@pytest.mark.parametrize(
    "words, options, failures",
    [
        ("", {}, [f"{COMMON}: Invalid number of arguments"]),
        ("help image", {}, [f"{COMMON}: GetPhyPortFromAdapterString failed with error=5"]),
        (f"{IDENTIFIER} none MBI", {}, [f"{COMMON}: Firmware file [none] does not exist"]),
        *[
            (
                f"{IDENTIFIER} image {word}",
                {"host": ALLOWED_NOWHERE},
                [f"{COMMON}: {name} update not supported for this adapter"],
            )
            for word, name in {
                "BrdCfg": "Board Config",
                "FWPreload": "FW Preload Table",
                "PEPCfg": "PEP Config",
            }.items()
        ],
        (f"{IDENTIFIER} image", {}, [f"{COMMON}: Update operation failed. uReturnCode=-1"]),
        (
            f"{IDENTIFIER} image MBI",
            {"results": {"TORPI_doOptionROMUpdate": 107}},
            [f"{COMMON}: Update operation failed. uReturnCode=107"],
        ),
        (
            f"{IDENTIFIER} image MBI",
            {"spoil_log": "TORPI_Initialize:symlink"},
            [f"{COMMON}: Failed to open /var/tmp/torpi-output.log file"],
        ),
        (f"{IDENTIFIER} image MBI", {}, []),
    ],
)
def test_failures_in_the_log(zfc, words, options, failures):
    zfc.file("image")
    assert zfc(f"-t adapter update {words}", debug=4, **options).failures == failures


def test_success_in_the_log(zfc):
    zfc.file("image")
    result = zfc(f"-t adapter update {IDENTIFIER} image MBI", debug=1)
    assert f"{COMMON}: Update operation successful" in result.steps


@pytest.mark.parametrize("words, message", [(f"{IDENTIFIER} image MBI", SUCCESS), (f"{IDENTIFIER} none MBI", NO_FILE)])
def test_document_in_the_log(zfc, words, message):
    zfc.file("image")
    display = "AdapterCmdsProcessor::DisplayUpdateInfo: "
    steps = zfc(f"-t adapter update {words}", debug=1).steps_in(display)
    assert steps == ["Entered", f"Message={message}", "Exiting"]
