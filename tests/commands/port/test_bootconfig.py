"""The bootconfig node: `get`, `setFile` and `set` in both forms.

Which option passes in which mode and on which adapter, and every form of a drive, is a matter of the unit tests; here
are whole documents, the calls, the staged file and the whole record that reaches the device.
"""

import pytest

from zfc import documents
from zfc.boot import (
    CHANGE,
    CHANGE_CALL,
    DISK,
    FILE,
    FLASH,
    MODE,
    MODE_CALL,
    NO_ROM_BIOS,
    NO_ROM_UEFI,
    NOT_IN_UEFI,
    READ,
    READ_CALL,
    READ_FAILED,
    REBOOT,
    THREE,
    UPDATE_FAILED,
    WRITE,
    bios,
    port,
    uefi,
)
from zfc.config import (
    BOOT_FLAGS,
    DRIVES,
    IDENTIFIER,
    INVALID,
    LIST_CALL,
    MAINTENANCE,
    NO_HOST,
    NO_LIBRARY_LOG,
    NO_NAME,
    NO_PORT,
    REBOOT_CALL,
    ROM_BIOS,
    ROM_UEFI,
    UNKNOWN,
    UNSUPPORTED,
    VIRTUAL,
    boot,
    changed,
    lines,
    logged,
    one_port,
    run_both,
    target,
    with_boot,
)
from zfc.host import ASTER, BIRCH, CEDAR, NO_LIST, every_device

NEEDS_UEFI = "Failed, Boot parameter requires UEFI boot mode option"
NO_UEFI = "Failed, UEFI boot mode not supported for this adapter"
NVME_TARGET = "Failed, Feature not supported for NVMe target"

UEFI_FILE = changed(FILE, Boot_Mode=1)


def run(zfc, command, name, options=(), *, words=None, record=None, **more):
    words = (IDENTIFIER, *options) if words is None else words
    more = {"host": port(), "buffers": {"boot": boot() if record is None else record}, **more}
    return run_both(zfc, "bootconfig", command, "BootConfig", f"port/bootconfig/{name}", words=words, **more)


def get(zfc, options, shown, **more):
    return run(zfc, "get", "report", options, values={"data": shown}, **more)


def set_file(zfc, options, shown, **more):
    return run(zfc, "setFile", "report", options, values={"data": shown}, **more)


def usage_after(command, message):
    """Statuses 4 and 6 have the usage text after the document of the "cli" form, as the help word has."""
    return f"Usage: {command}\r\n" if message in (INVALID, NEEDS_UEFI) else ""


def get_fails(zfc, options, message, **more):
    usage = usage_after("get", message)
    return run(zfc, "get", "failed", options, values={"message": message}, usage=usage, **more)


def set_file_fails(zfc, options, message, **more):
    usage = usage_after("setFile", message)
    return run(zfc, "setFile", "failed", options, values={"message": message}, usage=usage, **more)


def commit(zfc, staged, shown, *, required="true", **more):
    values = {"data": shown, "reboot": required}
    return run(zfc, "set", "set", staged=staged, values=values, **more)


def commit_fails(zfc, staged, message, **more):
    usage = usage_after("set", message)
    return run(zfc, "set", "set-failed", staged=staged, values={"message": message}, usage=usage, **more)


class TestGet:
    def test_in_the_legacy_mode(self, zfc):
        result = get(zfc, [], bios())
        assert result.calls == [LIST_CALL, MODE_CALL, READ_CALL]
        assert result.staged is None

    def test_in_uefi_mode(self, zfc):
        result = get(zfc, ["--boot-mode", "uefi"], uefi())
        assert result.calls == [LIST_CALL, MODE_CALL, CHANGE_CALL.format(2), READ_CALL]

    @pytest.mark.parametrize("word", ["BIOS", "bios", "Bios"])
    def test_legacy_mode_by_name(self, zfc, word):
        get(zfc, ["-b", word], bios())

    @pytest.mark.parametrize("value", [0, 1, 2, 0xFFFFFFFF])
    def test_flags(self, zfc, value):
        flags = {name: value for name in BOOT_FLAGS}
        get(zfc, [], bios(**flags), record=boot(**flags))
        get(zfc, ["-b", "UEFI"], uefi(**flags), record=boot(**flags))

    def test_numbers_and_names_at_their_ends(self, zfc):
        drives = {number: ("ff:ff:ff:ff:ff:ff:ff:ff", 65535) for number in range(8)}
        get(zfc, ["-b", "UEFI"], uefi(drives=drives), record=boot(drives=drives))
        drives = {number: (NO_NAME, 0) for number in range(8)}
        get(zfc, [], bios(drives=drives), record=boot(drives=drives))

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_families(self, zfc, device):
        host = port(device=device)
        fabric = device not in (*ASTER, *BIRCH, *CEDAR)
        result = get(zfc, [], bios(fabric=fabric), host=host)
        if device in THREE:
            assert result.calls == [LIST_CALL, MODE_CALL, READ_CALL]
            get(zfc, ["-b", "UEFI"], uefi(), host=host)
        else:
            assert result.calls == [LIST_CALL, READ_CALL]
            assert get_fails(zfc, ["-b", "UEFI"], NO_UEFI, host=host).calls == [LIST_CALL]

    def test_does_not_look_at_the_staged_file(self, zfc):
        staged = changed(FILE, Disable_BIOS=9, Boot_Mode=1)
        assert get(zfc, [], bios(), staged=staged).staged == staged


# The mode that the library is in, the one asked for, and the change that is made.
@pytest.mark.parametrize(
    "before, word, change",
    [
        (1, "BIOS", None),
        (2, "BIOS", 1),
        (4, "BIOS", None),
        (0, "BIOS", None),
        (0x102, "BIOS", 1),
        (1, "UEFI", 2),
        (2, "UEFI", None),
        (4, "UEFI", None),
        (3, "UEFI", None),
        (0x101, "UEFI", 2),
        (0x100, "UEFI", None),
    ],
)
def test_library_mode(zfc, before, word, change):
    shown = bios() if word == "BIOS" else uefi()
    changes = [] if change is None else [CHANGE_CALL.format(change)]
    result = get(zfc, ["-b", word], shown, results={MODE: before})
    assert result.calls == [LIST_CALL, MODE_CALL, *changes, READ_CALL]
    result = set_file(zfc, ["-b", word], shown, results={MODE: before})
    assert result.calls == [LIST_CALL, MODE_CALL, *changes, READ_CALL]


@pytest.mark.parametrize("fails", [get_fails, set_file_fails])
class TestModeStep:
    @pytest.mark.parametrize("word", ["NVME", "", "1", "UEFI2"])
    def test_unknown_word(self, zfc, fails, word):
        assert fails(zfc, ["-b", word], INVALID, results={CHANGE: 1, READ: 1}).calls == [LIST_CALL]

    @pytest.mark.parametrize("result, message", [(1, UPDATE_FAILED), (149, UPDATE_FAILED), (150, MAINTENANCE)])
    def test_failed_change(self, zfc, fails, result, message):
        found = fails(zfc, ["-b", "UEFI"], message, results={CHANGE: result}, host=port(rom=0))
        assert found.calls == [LIST_CALL, MODE_CALL, CHANGE_CALL.format(2)]
        assert found.staged is None

    def test_rom(self, zfc, fails):
        calls = [LIST_CALL, MODE_CALL]
        assert fails(zfc, [], NO_ROM_BIOS, host=port(rom=ROM_UEFI)).calls == calls
        found = fails(zfc, ["-b", "UEFI"], NO_ROM_UEFI, host=port(rom=ROM_BIOS), results={MODE: 2})
        assert found.calls == calls

    def test_rom_bits_are_looked_at_alone(self, zfc, fails):
        assert fails(zfc, [], NO_ROM_BIOS, host=port(rom=0xFFFFFFFF ^ ROM_BIOS)).calls[-1] == MODE_CALL
        found = fails(zfc, ["-b", "UEFI"], NO_ROM_UEFI, host=port(rom=0xFFFFFFFF ^ ROM_UEFI), results={MODE: 2})
        assert found.calls[-1] == MODE_CALL

    def test_bracket_that_cannot_be_opened(self, zfc, fails):
        """Status 19, for which this node has no text."""
        assert fails(zfc, [], UNKNOWN, spoil_log="TORPI_GetAdapterList:directory").calls == [LIST_CALL]

    def test_reading_and_changing_the_mode_share_a_bracket(self, zfc, fails):
        found = fails(zfc, ["-b", "UEFI"], UNKNOWN, spoil_log=f"{MODE}:directory")
        assert found.calls == [LIST_CALL, MODE_CALL, CHANGE_CALL.format(2)]

    @pytest.mark.parametrize("result, message", [(1, READ_FAILED), (150, MAINTENANCE), (151, READ_FAILED)])
    def test_read_failure(self, zfc, fails, result, message):
        found = fails(zfc, ["-e", "x"], message, results={READ: result})
        assert found.calls == [LIST_CALL, MODE_CALL, READ_CALL]
        assert found.staged is None


NAMES = {"get": "failed", "setFile": "failed", "set": "set-failed"}


@pytest.mark.parametrize("command", NAMES)
@pytest.mark.parametrize(
    "words, options, message, calls",
    [
        pytest.param([], {}, INVALID, [], id="no identifier"),
        pytest.param(["nobody"], {}, INVALID, [], id="bad identifier"),
        pytest.param(["help"], {}, UNKNOWN, [], id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, NO_HOST, [LIST_CALL], id="no list"),
        pytest.param(
            [IDENTIFIER, "-b", "x"], {"host": port(interface=3, rom=0)}, VIRTUAL, [LIST_CALL], id="virtual port"
        ),
    ],
)
def test_beginning(zfc, command, words, options, message, calls):
    usage = f"Usage: {command}\r\n" if message in (INVALID, UNKNOWN) else ""
    results = {CHANGE: 1, READ: 1, WRITE: 1}
    values = {"message": message}
    result = run(zfc, command, NAMES[command], words=words, usage=usage, values=values, results=results, **options)
    assert result.calls == calls
    assert result.staged is None


class TestSetFile:
    def test_creates_the_file_from_the_device(self, zfc):
        assert set_file(zfc, [], bios()).staged == FILE

    def test_creates_the_file_in_uefi_mode(self, zfc):
        assert set_file(zfc, ["-b", "UEFI"], uefi()).staged == UEFI_FILE

    def test_device_values_are_written_unsigned(self, zfc):
        result = set_file_fails(zfc, [], INVALID, record=boot(world_login=0xFFFFFFFF))
        assert result.staged == changed(FILE, World_Login=4294967295)

    def test_options_change_the_keys_they_name(self, zfc):
        options = ["-b", "UEFI", "-a", "false", "-e", "TRUE", "-c", "false", "-g", "true", "-f", "false"]
        options += ["--drive-7", f"{DISK.upper()}-3", "-j", f"{NO_NAME}-9"]
        drives = {7: (DISK, 3), 0: (NO_NAME, 0)}
        flags = {"disable_bios": 1, "selective_login": 1, "selective_lun": 0, "world_login": 1, "fabric_lun": 0}
        result = set_file(zfc, options, uefi(drives=drives, **flags))
        assert result.staged == changed(
            UEFI_FILE,
            Disable_BIOS=1,
            Selective_Login=1,
            Selective_LUN_Login=0,
            World_Login=1,
            Fabric_Assigned_Boot_Lun=0,
            Alternate_Boot_Target_7_WWPN=DISK,
            Alternate_Boot_Target_7_LUN=3,
            Primary_Boot_Target_WWPN=NO_NAME,
            Primary_Boot_Target_LUN=0,
        )

    def test_refused_option_leaves_the_file_as_it_was(self, zfc):
        assert set_file_fails(zfc, ["-a", "false", "-j", "x"], INVALID).staged == FILE
        found = set_file_fails(zfc, ["-b", "UEFI", "-a", "false", "-d", "true"], NOT_IN_UEFI, staged=FILE)
        assert found.staged == FILE

    def test_messages_of_the_other_checks(self, zfc):
        set_file_fails(zfc, ["-g", "true"], NEEDS_UEFI)
        set_file_fails(zfc, ["-n", f"{DISK}-3"], NEEDS_UEFI)
        set_file_fails(zfc, ["-f", "true"], UNSUPPORTED, host=port(device=0x3A02))
        set_file_fails(zfc, ["-j", f"{FLASH}-1"], NVME_TARGET)

    @pytest.mark.parametrize("key", ["Disable_BIOS", "Selectable_Boot", "Selective_LUN_Login", "World_Login"])
    def test_bad_value_in_the_file(self, zfc, key):
        staged = changed(FILE, **{key: 2})
        assert set_file_fails(zfc, [], INVALID, staged=staged).staged == staged

    def test_hand_edited_mode_in_another_case_decides_the_display(self, zfc):
        """The reader finds it, the writer appends a second line, and the reader keeps seeing the first."""
        staged = FILE.replace(b"Boot_Mode=0", b"boot_mode=1")
        result = set_file(zfc, [], uefi(), staged=staged)
        assert result.staged == staged + b"Boot_Mode=0\n"


class TestSet:
    def test_writes_the_record_with_nothing_but_the_files_values_changed(self, zfc):
        drives = {0: (DISK, 3), 5: ("01:02:03:04:05:06:07:08", 65535)}
        staged = changed(
            FILE,
            World_Login=1,
            Primary_Boot_Target_WWPN=DISK,
            Primary_Boot_Target_LUN=3,
            Alternate_Boot_Target_5_WWPN="01:02:03:04:05:06:07:08",
            Alternate_Boot_Target_5_LUN=65535,
        )
        result = commit(zfc, staged, bios(drives=drives, world_login=1))
        assert result.written == {WRITE: with_boot(boot(), drives=drives, world_login=1)}
        assert [call.split("(")[0] for call in result.calls] == ["TORPI_GetAdapterList", READ, WRITE, REBOOT]
        assert result.staged is None

    def test_every_flag_reaches_its_place(self, zfc):
        keys = {
            "Disable_BIOS": ("disable_bios", 1),
            "Selectable_Boot": ("selectable_boot", 0),
            "Selective_Login": ("selective_login", 1),
            "Selective_LUN_Login": ("selective_lun", 0),
            "World_Login": ("world_login", 1),
            "Fabric_Assigned_Boot_Lun": ("fabric_lun", 0),
        }
        for key, (field, value) in keys.items():
            result = commit(zfc, lines({key: value, "Boot_Mode": 1}), uefi(**{field: value}))
            assert result.written == {WRITE: with_boot(boot(), **{field: value})}, key

    @pytest.mark.parametrize("number", range(8))
    def test_every_drive_reaches_its_place(self, zfc, number):
        key = "Primary_Boot_Target" if number == 0 else f"Alternate_Boot_Target_{number}"
        drives = {number: (DISK, 258)}
        staged = lines({f"{key}_WWPN": DISK.upper(), f"{key}_LUN": 258, "Boot_Mode": 1})
        result = commit(zfc, staged, uefi(drives=drives))
        assert result.written == {WRITE: with_boot(boot(), drives=drives)}

    def test_incomplete_name_leaves_the_records(self, zfc):
        staged = lines({"Primary_Boot_Target_WWPN": "21:00:00", "Primary_Boot_Target_LUN": 65537})
        result = commit(zfc, staged, bios(drives={0: (DRIVES[0][0], 1)}))
        assert result.written == {WRITE: with_boot(boot(), drives={0: (DRIVES[0][0], 1)})}

    @pytest.mark.parametrize("mode, shown", [("0", bios()), ("1", uefi()), ("2", bios()), ("x", bios())])
    def test_files_mode_only_selects_the_display(self, zfc, mode, shown):
        result = commit(zfc, lines({"Boot_Mode": mode}), shown, host=port(rom=0), results={MODE: 2})
        assert result.written == {WRITE: boot()}
        assert MODE_CALL not in result.calls

    def test_file_without_mode_shows_the_legacy_one(self, zfc):
        commit(zfc, b"", bios())

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_any_family_writes(self, zfc, device):
        fabric = device not in (*ASTER, *BIRCH, *CEDAR)
        result = commit(zfc, FILE, bios(fabric=fabric), host=port(device=device))
        assert result.written == {WRITE: boot()}

    @pytest.mark.parametrize("flag, result, required", [(1, 0, "true"), (0, 0, "false"), (0, 9, "true")])
    def test_reboot(self, zfc, flag, result, required):
        found = commit(zfc, FILE, bios(), required=required, reboot=flag, results={REBOOT: result})
        assert found.calls[-1] == REBOOT_CALL

    def test_without_a_file_is_unknown_with_code_0(self, zfc):
        result = commit_fails(zfc, None, UNKNOWN, debug=4)
        assert result.code == 0
        assert result.calls == [LIST_CALL, READ_CALL]

    def test_bad_value_keeps_the_file(self, zfc):
        staged = changed(FILE, Selective_Login=2)
        result = commit_fails(zfc, staged, INVALID)
        assert result.calls == [LIST_CALL, READ_CALL]
        assert result.staged == staged

    @pytest.mark.parametrize("call", [READ, WRITE])
    @pytest.mark.parametrize("result", [1, 150, 151])
    def test_failure_keeps_the_file(self, zfc, call, result):
        own = READ_FAILED if call == READ else UPDATE_FAILED
        found = commit_fails(zfc, FILE, MAINTENANCE if result == 150 else own, results={call: result})
        assert found.calls[-1].startswith(call)
        assert found.staged == FILE

    def test_bracket_lost(self, zfc):
        assert commit_fails(zfc, FILE, UNKNOWN, spoil_log="TORPI_GetAdapterList:directory").calls == [LIST_CALL]
        found = commit_fails(zfc, FILE, UNKNOWN, spoil_log=f"{READ}:directory")
        assert found.calls == [LIST_CALL, READ_CALL]
        assert found.staged == FILE


class TestEdgeCases:
    @pytest.mark.parametrize("device", [0x3522, 0x3A02, 0x7102, 0x1234])
    def test_clearing_a_drive_needs_no_target(self, zfc, device):
        fabric = device not in (*ASTER, *CEDAR)
        host = port(device=device, targets=[])
        result = set_file(zfc, ["-j", f"{NO_NAME}-7"], bios(drives={0: (NO_NAME, 0)}, fabric=fabric), host=host)
        assert result.staged == changed(FILE, Primary_Boot_Target_WWPN=NO_NAME, Primary_Boot_Target_LUN=0)

    def test_port_name_is_stored_in_lower_case(self, zfc):
        name = "21:00:00:11:22:33:44:5F"
        host = port(targets=[target(name, [3])])
        result = set_file(zfc, ["-j", f"{name}-3"], bios(drives={0: (name.lower(), 3)}), host=host)
        assert f"Primary_Boot_Target_WWPN={name.lower()}\n".encode() in result.staged

    def test_lun_that_the_target_lacks(self, zfc):
        set_file_fails(zfc, ["-j", f"{DISK}-1"], INVALID)

    def test_nvme_target(self, zfc):
        set_file_fails(zfc, ["-j", f"{FLASH}-3"], NVME_TARGET)

    def test_options_of_the_other_mode(self, zfc):
        set_file_fails(zfc, ["--boot-mode", "UEFI", "-d", "true"], NOT_IN_UEFI)
        set_file_fails(zfc, ["-e", "true"], NEEDS_UEFI)

    @pytest.mark.parametrize("mode", ["BIOS", "UEFI"])
    def test_fifth_drive_outside_the_three_groups(self, zfc, mode):
        host = port(device=0x3432)
        message = UNSUPPORTED if mode == "BIOS" else NO_UEFI  # in the other mode the mode step comes first
        set_file_fails(zfc, ["-n", f"{DISK}-3", "-b", mode], message, host=host)

    def test_plain_set_file_puts_the_mode_back(self, zfc):
        staged = set_file(zfc, ["--boot-mode", "UEFI", "-e", "true"], uefi(selective_login=1)).staged
        assert staged == changed(UEFI_FILE, Selective_Login=1)
        result = set_file(zfc, ["-a", "true"], bios(selective_login=1), staged=staged)
        assert result.staged == changed(staged, Boot_Mode=0)


@pytest.mark.parametrize("node", ["bootconfig", "bootconfigext"])
@pytest.mark.parametrize("words", ["help", "HELP", "help ?"])
def test_help(zfc, node, words):
    result = zfc(f"-t port -s {node} {words}")
    documents.check(result.stdout, "port/bootconfig/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("node", ["bootconfig", "bootconfigext"])
@pytest.mark.parametrize("command", NAMES)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, node, command):
    assert zfc(f"-t port -s {node} {command} ?").stdout == b""
    assert zfc(f"-t port -s {node} {command}cli ?").stdout == f"Usage: {command}\r\n".encode()


CLASS = "PhysicalPortBootConfigCmdsProcessor::"
NOBODY = "50:06:01:60:3b:20:41:00"  # no target of the port
GET, SET_FILE, SET = f"{CLASS}CmdGetCommon: ", f"{CLASS}CmdSetFileCommon: ", f"{CLASS}CmdSetCommon: "


@pytest.mark.parametrize(
    "words, options, failures",
    [
        (["get", "FC_x"], {}, [f"{GET}{NO_PORT}"]),
        (["set", IDENTIFIER], {"host": one_port(interface=3)}, [f"{SET}Command not supported for vport"]),
        (["get", IDENTIFIER], {"spoil_log": "TORPI_GetAdapterList:directory"}, [f"{GET}{NO_LIBRARY_LOG}"]),
        (
            ["setFile", IDENTIFIER, "-b", "UEFI"],
            {"host": one_port(device=0x3432)},
            [f"{SET_FILE}boot mode not supported for this adapter"],
        ),
        (["get", IDENTIFIER], {"host": one_port(rom=ROM_UEFI)}, [f"{GET}Adapter has no ROM BIOS"]),
        (["get", IDENTIFIER, "-b", "UEFI"], {"host": one_port(rom=ROM_BIOS)}, [f"{GET}Adapter has no ROM UEFI"]),
        (
            ["get", IDENTIFIER, "-b", "UEFI"],
            {"results": {MODE: 1, CHANGE: 0xFFFFFFFF}},
            [f"{GET}Set boot mode failed err=-1"],
        ),
        (["get", IDENTIFIER], {"results": {MODE: 1, READ: 150}}, [f"{GET}Get boot device info failed err=150"]),
        (["set", IDENTIFIER], {}, [f"{SET}nothing is staged"]),
        (
            ["set", IDENTIFIER],
            {"staged": ("BootConfig", b"World_Login=2\n")},
            [f"{CLASS}ReadBootConfigFromFile: World_Login=2 is out of range"],
        ),
        (
            ["set", IDENTIFIER],
            {"staged": ("BootConfig", b"World_Login=1\n"), "results": {WRITE: 5}},
            [f"{SET}Set boot device info failed err=5"],
        ),
        (
            ["set", IDENTIFIER],
            {"staged": ("BootConfig", b"World_Login=1\n"), "results": {REBOOT: 5}},
            [f"{SET}Get Reboot Required failed err=5"],
        ),
    ],
)
def test_failure_lines(zfc, words, options, failures):
    assert logged(zfc, ["bootconfig", *words], **options).failures == failures


def test_the_record_has_its_own_names_in_the_log(zfc):
    read = ["DisableBIOS=0", "EnableFabricAssignBootLun=1", "EnableSelectableBoot=1", "EnableSelectiveLogin=0"]
    read += ["EnableSelectiveLUN=1", "ForceWorldLogin=0"]
    read += ["BootPortName=50:06:01:60:3b:20:41:00", "BootLunNumber=10"]
    for drive in range(1, 8):
        read += [f"Alt{drive}BootPortName=50:06:01:60:3b:20:41:0{drive}", f"Alt{drive}BootLunNumber={10 + drive}"]
    result = logged(zfc, ["bootconfig", "setFile", IDENTIFIER])
    assert result.steps_in(f"{CLASS}CmdSetFileCommon: ") == ["Entered", "uUserMode=1", *read, "Exiting"]
    assert result.steps_in(f"{CLASS}CreateBootConfigFile: ") == ["Entered", "Exiting"]
    assert result.steps_in(f"{CLASS}UpdateBootConfigInFile: ") == ["Entered", "Exiting"]
    assert result.steps_in(f"{CLASS}ReadBootConfigFromFile: ") == ["Entered", "uUserMode=1", *read, "Exiting"]
    assert result.steps_in(f"{CLASS}DisplayBootConfigInfo: ") == ["Entered", "Message=Success", "Exiting"]


@pytest.mark.parametrize(
    "options, fields, line",
    [
        (["-a", "maybe"], {}, "--enable-bfs=maybe: neither true nor false"),
        (["-f", "true"], {"device": 0x3A02}, "--fabric-assigned-boot-lun=true: not supported for this adapter"),
        (["-b", "UEFI", "-d", "true"], {}, "--selectable-boot=true: an option of the legacy boot mode"),
        (["-e", "true"], {}, "--selective-login=true: no option of the legacy boot mode"),
        (["-j", "50:06-1"], {}, "--drive-0=50:06-1: not a complete value"),
        (["-j", f"{NOBODY}-1"], {}, f"--drive-0={NOBODY}-1: the port sees no such target"),
        (["-j", f"{DISK}-9"], {}, f"--drive-0={DISK}-9: the target has no such LUN or namespace"),
        (["-k", f"{FLASH}-1"], {}, f"--drive-1={FLASH}-1: an NVMe target"),
    ],
)
def test_a_refused_option_is_a_step(zfc, options, fields, line):
    result = logged(zfc, ["bootconfig", "setFile", IDENTIFIER, *options], host=port(**fields))
    assert result.steps_in(f"{CLASS}UpdateBootConfigInFile: ") == ["Entered", line, "Exiting"]
    assert result.failures == []


def test_a_refused_mode_is_a_step(zfc):
    result = logged(zfc, ["bootconfig", "get", IDENTIFIER, "-b", "NVME"])
    assert result.steps_in(f"{CLASS}CmdGetCommon: ") == ["Entered", "--boot-mode=NVME: no boot mode", "Exiting"]
