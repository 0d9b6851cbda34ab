"""The library's prints stay out of the documents; what happens when they have no file to go to."""

import pytest

from zfc.documents import check, check_both
from zfc.flash import components, memo
from zfc.host import IDENTIFIER, one
from zfc.preload import needs_preload, preloaded
from zfc.runner import SESSION_END, SESSION_START, chatter

HEAD = b"FC ESXCLI Debug level = 0\nTORPI Debug level = 0\n"
START = HEAD + chatter("TORPI_Initialize", "TORPI_SetToolID", "TORPI_SetToolVersion")
NO_FILE = "Failed, File not found"

# Commands that keep the library's prints in its file, and the calls that print there.
INFO = f"-t adapter -s info getcli {IDENTIFIER}"
FLASHINFO = f"-t adapter -s flashinfo getcli {IDENTIFIER}"
BRACKETS = [
    ("help", []),
    ("-t adapter list", []),
    (INFO, ["TORPI_GetFlashComponentVersion", "TORPI_GetAdapterFlashMemoBlock"]),
    (FLASHINFO, ["TORPI_GetAdapterFlashMemoBlock"]),
    (f"-t adapter update {IDENTIFIER} image MBI", ["TORPI_doOptionROMUpdate"]),
    (f"-t adapter update {IDENTIFIER} image BrdCfg", ["TORPI_UpdateSpecificFlashRegionFromFile"]),
    (f"-t adapter update {IDENTIFIER} image FWPreload", ["TORPI_UpdateAdapterFirmwareTableFromFile"]),
    (f"-t adapter update {IDENTIFIER} image PEPCfg", ["TORPI_UpdateAdapterPEPCfgFromFile"]),
    (f"-t adapter update {IDENTIFIER} image none", []),
    (f"-t adapter -s personality get {IDENTIFIER}", []),
]


@pytest.mark.parametrize("words, calls", BRACKETS)
def test_prints_of_the_calls_are_in_the_file_and_not_in_the_document(zfc, words, calls):
    zfc.file("image")
    result = zfc(words, components=components(), memo=memo())
    assert b"chatters" not in result.stdout
    assert result.library_log == START + chatter(*calls)


@pytest.mark.parametrize("words, calls", BRACKETS)
def test_nothing_else_is_left(zfc, words, calls):
    image = zfc.file("image")
    assert zfc(words, memo=memo()).library_files == ["torpi-output.log"]
    assert [path for path in zfc.tmp.rglob("*") if path.is_file()] == []
    assert [*zfc.staging.iterdir()] == []
    assert [*zfc.work.iterdir()] == [image]


def test_file_grows_from_run_to_run(zfc):
    zfc("help")
    assert zfc("help").library_log == START + START


def test_file_grows_from_command_to_command_of_a_session(zfc):
    result = zfc(stdin=f"{FLASHINFO}\n{FLASHINFO}\nq\n".encode(), memo=memo())
    assert result.library_log == START + 2 * chatter("TORPI_GetAdapterFlashMemoBlock")


def test_file_that_is_there_already_is_appended_to(zfc):
    (zfc.var_tmp / "torpi-output.log").write_bytes(b"of an earlier run\n")
    assert zfc("help").library_log == b"of an earlier run\n" + START


def test_adapter_list_is_asked_for_without_the_bracket(zfc):
    result = zfc("-t adapter listcli", chatter=["TORPI_GetAdapterList"])
    document = zfc("-t adapter listcli", chatter=[]).stdout
    assert result.stdout == chatter("TORPI_GetAdapterList") + document
    assert result.library_log == HEAD


@pytest.mark.parametrize(
    "level, program, library",
    [
        (None, "0", 0),
        ("", "0", 0),
        ("0", "0", 0),
        ("1", "1", 0),
        ("4", "4", 0),
        ("65534", "65534", 0),
        ("65535", "65535", 31),
        ("65536", "65536", 0),
        ("none", "0", 0),
        ("0xffff", "0", 0),
        ("7 of them", "7", 0),
        ("-1", "-1", 0),
    ],
)
def test_debug_level_of_program_and_library(zfc, level, program, library):
    result = zfc("help", debug=level, chatter=[])
    expected = f"FC ESXCLI Debug level = {program}\nTORPI Debug level = {library}\n"
    assert result.library_log == expected.encode()
    assert result.calls[0] == f"TORPI_Initialize({library}, 0)"


@pytest.mark.parametrize("result", [1, 150, 0xFFFFFFFF])
def test_results_of_the_session_calls_are_ignored(zfc, result):
    calls = ("TORPI_Initialize", "TORPI_SetToolID", "TORPI_SetToolVersion", "TORPI_Uninitialize")
    check(zfc("help", results=dict.fromkeys(calls, result)).stdout, "root/help.txt")


# The file cannot be opened at the start.
def block_with_folder(zfc):
    (zfc.var_tmp / "torpi-output.log").mkdir()
    return {}


def block_with_link(zfc):
    (zfc.var_tmp / "elsewhere").write_bytes(b"")
    (zfc.var_tmp / "torpi-output.log").symlink_to("/var/tmp/elsewhere")
    return {}


def block_with_dangling_link(zfc):
    (zfc.var_tmp / "torpi-output.log").symlink_to("/var/tmp/elsewhere")
    return {}


def block_with_read_only_folder(zfc):
    return {"read_only_var_tmp": True}


@pytest.mark.parametrize(
    "block", [block_with_folder, block_with_link, block_with_dangling_link, block_with_read_only_folder]
)
class TestUnopenableAtTheStart:
    @pytest.mark.parametrize(
        "words",
        ["help", "version", "no such command", "log mirror", "-t adapter list", "-t adapter listcli help", INFO],
    )
    def test_nothing_is_printed_and_no_command_runs(self, zfc, block, words):
        result = zfc(words, chatter="all", **block(zfc))
        assert result.stdout == b""
        assert result.calls == SESSION_END
        assert not (zfc.work / "mirror").exists()

    def test_shell_does_not_start(self, zfc, block):
        result = zfc(stdin=b"version\nq\n", chatter="all", **block(zfc))
        assert result.stdout == b""
        assert result.calls == SESSION_END

    def test_debug_log_says_why(self, zfc, block):
        options = block(zfc)
        result = zfc("help", debug=65535, **options)
        if options:  # the debug log has no place either
            assert result.debug_log is None
        else:
            assert b"/var/tmp/torpi-output.log" in result.debug_log
            assert result.code == 3

    def test_what_is_in_the_way_is_left_alone(self, zfc, block):
        result = zfc("help", **block(zfc))
        assert result.library_log is None
        elsewhere = zfc.var_tmp / "elsewhere"
        assert not elsewhere.exists() or elsewhere.read_bytes() == b""


@needs_preload
@pytest.mark.parametrize("words", ["help", "version", "-t adapter list", INFO])
def test_nothing_is_printed_where_not_even_dev_null_can_be_opened(zfc, words):
    result = zfc(words, chatter="all", env=preloaded("refuse_dev_null"), **block_with_folder(zfc))
    assert result.stdout == b""
    assert result.calls == SESSION_END


# The file can be opened at the start and no more when a command needs it.
SPOILED = ["TORPI_SetToolVersion:directory", "TORPI_SetToolVersion:symlink"]


@pytest.mark.parametrize("spoil_log", SPOILED)
class TestUnopenableLater:
    def test_info_is_a_failure(self, zfc, spoil_log):
        self.check(zfc, spoil_log, "-t adapter -s info get", "adapter/info/failed", [IDENTIFIER])

    def test_flashinfo_is_a_failure(self, zfc, spoil_log):
        self.check(zfc, spoil_log, "-t adapter -s flashinfo get", "adapter/flashinfo/failed", [IDENTIFIER])

    @pytest.mark.parametrize("kind", ["MBI", "PEPCfg", "none"])
    def test_update_is_a_failure(self, zfc, spoil_log, kind):
        words = [zfc.file("image").name, kind]
        self.check(zfc, spoil_log, "-t adapter update", "adapter/update", [IDENTIFIER, *words], reboot="false")

    def test_unsupported_family_is_found_before_flashinfo_needs_the_file(self, zfc, spoil_log):
        self.check(
            zfc,
            spoil_log,
            "-t adapter -s flashinfo get",
            "adapter/flashinfo/failed",
            [IDENTIFIER],
            host=one(0x3A02),
            message="Failed, Feature not supported for this adapter",
        )

    def test_update_needs_the_file_before_it_looks_at_the_family(self, zfc, spoil_log):
        words = [IDENTIFIER, zfc.file("image").name, "PEPCfg"]
        self.check(
            zfc, spoil_log, "-t adapter update", "adapter/update", words, host=one(0x3A02), reboot="false"
        )

    def test_commands_that_do_not_need_the_file_work(self, zfc, spoil_log):
        check(self.run(zfc, spoil_log, "help").stdout, "root/help.txt")
        output = self.run(zfc, spoil_log, "-t adapter listcli").stdout
        check(output, "adapter/list-one.txt", identifier=IDENTIFIER)
        words = f"-t adapter -s personality getcli {IDENTIFIER}"
        output = self.run(zfc, spoil_log, words, host=one(0x3432)).stdout
        check(output, "adapter/personality/report.txt", message="Success", personality="FC")

    def test_standard_output_is_in_place_for_the_next_command(self, zfc, spoil_log):
        stdin = f"{INFO}\nversion\nq\n".encode()
        output = zfc(stdin=stdin, spoil_log=spoil_log).stdout
        assert output.startswith(b"$>" + b"*" * 52 + b"\nAdapterInformation:\nMessage: Failed, File not found\n")
        assert output.endswith(b"$>Halcyr Sorvex Meridot FC ESXCLI Plugin v1.9.0\r\n$>")

    @staticmethod
    def run(zfc, spoil_log, words, **options):
        """The run before may have left something in the file's place; this one starts with nothing there."""
        path = zfc.var_tmp / "torpi-output.log"
        if path.is_symlink() or path.is_file():
            path.unlink()
        elif path.is_dir():
            path.rmdir()
        return zfc(words, spoil_log=spoil_log, **options)

    def check(self, zfc, spoil_log, command, name, words, *, host=None, message=NO_FILE, **values):
        for form, ending in (("", ".xml"), ("cli", ".txt")):
            result = self.run(zfc, spoil_log, [*f"{command}{form}".split(), *words], host=host)
            check(result.stdout, name + ending, message=message, **values)
            assert result.calls == [*SESSION_START, "TORPI_GetAdapterList()", *SESSION_END]


def test_file_that_can_be_opened_again_serves_the_next_command(zfc):
    """A failed bracket leaves nothing that would keep the next one from working."""
    path = zfc.var_tmp / "torpi-output.log"
    check_both(zfc, "-t adapter -s flashinfo get", "adapter/flashinfo/report", words=[IDENTIFIER], memo=memo())
    path.unlink()
    path.mkdir()
    assert zfc(FLASHINFO, memo=memo()).stdout == b""
    path.rmdir()
    check_both(zfc, "-t adapter -s flashinfo get", "adapter/flashinfo/report", words=[IDENTIFIER], memo=memo())
