"""The bootconfigext node: `get`, `setFile` and `set` in both forms, in its three modes."""

import pytest

from zfc import documents
from zfc.boot import (
    CHANGE,
    CHANGE_CALL,
    DISK,
    FLASH,
    FLASH_NODE,
    MODE,
    MODE_CALL,
    NO_ROM_BIOS,
    NO_ROM_UEFI,
    NOT_IN_UEFI,
    READ,
    READ_CALL,
    READ_FAILED,
    REBOOT,
    TARGETS,
    THREE,
    UPDATE_FAILED,
    WRITE,
    bios,
    port,
    truth,
    uefi,
)
from zfc.boot import FILE as PLAIN_FILE
from zfc.config import (
    BOOT_FLAGS,
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
    NvmeEntry,
    boot,
    changed,
    lines,
    logged,
    nvme,
    one_port,
    run_both,
    target,
    turns,
    with_boot,
    with_nvme,
)
from zfc.host import NO_LIST, every_device

NVME_READ_CALL = "TORPI_GetNVMeBootDeviceEntries(port, zeroed buffer)"
NVME_READ, NVME_WRITE = "TORPI_GetNVMeBootDeviceEntries", "TORPI_SetNVMeBootDeviceEntries"

NEEDS_MODE = "Failed, Boot parameter requires valid boot mode option"
NO_MODE = "Failed, UEFI/NVME boot mode not supported for this adapter"
NO_NVME = "Failed, NVMe Boot Config not present"
FCP_SET = "Failed, Tgt Num, Tgt WWPN, Disk Num required for FCP targets"
NVME_SET = "Failed, Tgt Num, Tgt WWPN, Disk Num, Tgt Enable required for NVMe targets"

ODD_FLASH = "50:06:01:60:3b:20:41:77"
ENTRY = NvmeEntry(FLASH, FLASH_NODE, namespace=3, controller=0x1234, enable=1, nqn=b"nqn.2014-08.org:flash")
# Two entries of the device; noise follows the second one's text.
OWN = {
    2: NvmeEntry("21:01:02:03:04:05:06:07", "20:01:02:03:04:05:06:07", 0xFFFFFFFF, 0xFFFF, 1, b"nqn.own:2"),
    7: NvmeEntry("21:11:12:13:14:15:16:17", "20:11:12:13:14:15:16:17", 70, 7, 0, b"nqn.own:7", b"\xa5" * 256),
}

HOST_NQN = "nqn.2014-08.org.nvmexpress:uuid:6d1f402a"
HOST_ID = "6d1f402a9b7c4e158a335c0e71d246b8"


def nvme_text(entries=None, *, enabled=None, host_nqn=HOST_NQN, host_id=HOST_ID, **flags):
    """What the NVMe mode shows; `enabled` is the staged flag, without it whether any entry is enabled."""
    entries = {**OWN, **(entries or {})}
    if enabled is None:
        enabled = any(entry.enable for entry in entries.values())
    flags = {**BOOT_FLAGS, **flags}
    text = f"Adapter Driver: {truth(flags['disable_bios'] == 0)}\n"
    text += f"      Selective Login: {truth(flags['selective_login'])}\n"
    text += f"      Selective LUN Login: {truth(flags['selective_lun'])}\n"
    text += f"      World Login: {truth(flags['world_login'])}\n"
    text += f"      Fabric Assigned Boot LUN: {truth(flags['fabric_lun'])}\n"
    text += f"      FC NVMe: {truth(enabled)}\n      Host NQN: {host_nqn}\n      Host ID: {host_id}\n"
    for number in range(8):
        entry = entries.get(number, NvmeEntry())
        nqn = entry.nqn.decode() or "NA"
        text += f"      Storage {number}:\n      Enable: {truth(entry.enable)}\n"
        text += f"      WWNN: {entry.wwnn}\n      WWPN: {entry.wwpn}\n      NQN: {nqn}\n"
        text += f"      ControllerID: {entry.controller}\n      NamespaceID: {entry.namespace}\n"
    return text


def entry_keys(number, entry):
    return {
        f"NVME_{number}_ControllerID": entry.controller,
        f"NVME_{number}_Enable": entry.enable,
        f"NVME_{number}_NQN": entry.nqn.decode(),
        f"NVME_{number}_NamespaceID": entry.namespace,
        f"NVME_{number}_WWNN": entry.wwnn,
        f"NVME_{number}_WWPN": entry.wwpn,
    }


def new_file(mode, *, enabled=0, entries=None, with_entries=True):
    """The file that a first `setFile` creates, in byte order of its keys."""
    values = dict(line.split("=", 1) for line in PLAIN_FILE.decode().splitlines())
    values.update({"Boot_Mode": mode, "NVMe_Enable": enabled})
    if with_entries:
        for number in range(8):
            values.update(entry_keys(number, (entries or {}).get(number, NvmeEntry())))
    return lines(dict(sorted(values.items())))


FILE = new_file(1)
NVME_FILE = new_file(4, enabled=1, entries=OWN)


def run(zfc, command, name, options=(), *, words=None, record=None, entries=None, buffers=None, **more):
    words = (IDENTIFIER, *options) if words is None else words
    records = {"boot": boot() if record is None else record, "nvme": nvme({**OWN, **(entries or {})})}
    more = {"host": port(), "buffers": {**records, **(buffers or {})}, **more}
    return run_both(zfc, "bootconfigext", command, "BootConfigExt", f"port/bootconfig/{name}", words=words, **more)


def get(zfc, options, shown, **more):
    return run(zfc, "get", "report", options, values={"data": shown}, **more)


def set_file(zfc, options, shown, **more):
    return run(zfc, "setFile", "report", options, values={"data": shown}, **more)


def usage_after(command, message):
    return f"Usage: {command}\r\n" if message in (INVALID, NEEDS_MODE) else ""


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


def names(result):
    return [call.split("(")[0] for call in result.calls]


class TestGet:
    def test_in_the_legacy_mode(self, zfc):
        assert get(zfc, [], bios()).calls == [LIST_CALL, MODE_CALL, READ_CALL]

    def test_in_uefi_mode(self, zfc):
        result = get(zfc, ["-b", "uefi"], uefi())
        assert result.calls == [LIST_CALL, MODE_CALL, CHANGE_CALL.format(2), READ_CALL]

    def test_in_nvme_mode(self, zfc):
        result = get(zfc, ["--boot-mode", "nvme"], nvme_text())
        assert result.calls == [LIST_CALL, MODE_CALL, CHANGE_CALL.format(4), READ_CALL, NVME_READ_CALL]

    def test_no_entry_enabled(self, zfc):
        disabled = {2: NvmeEntry(nqn=b"n" * 255)}
        get(zfc, ["-b", "NVME"], nvme_text(disabled, enabled=False), entries=disabled)

    @pytest.mark.parametrize("enable", [1, 2, 255])
    def test_one_entry_enabled(self, zfc, enable):
        entries = {2: NvmeEntry(), 5: NvmeEntry(enable=enable)}
        get(zfc, ["-b", "NVME"], nvme_text(entries, enabled=True), entries=entries)

    def test_text_that_fills_its_field(self, zfc):
        entries = {number: NvmeEntry(nqn=b"%d" * 128) for number in range(8)}
        shown = nvme_text({number: NvmeEntry(nqn=b"") for number in range(8)}).replace("NQN: NA", "NQN: ")
        get(zfc, ["-b", "NVME"], shown, entries=entries)
        entries = {number: NvmeEntry(nqn=b"n" * 256) for number in range(8)}
        get(zfc, ["-b", "NVME"], nvme_text(entries), entries=entries)

    def test_host_without_names(self, zfc):
        host = port(host_nqn="", host_id=bytes(16))
        get(zfc, ["-b", "NVME"], nvme_text(host_nqn="NA", host_id="NA"), host=host)
        host = port(host_nqn="h" * 256, host_id=bytes(15) + b"\x01")
        get(zfc, ["-b", "NVME"], nvme_text(host_nqn="h" * 256, host_id="0" * 31 + "1"), host=host)

    @pytest.mark.parametrize("result", [1, 150, 151])
    def test_entries_that_cannot_be_read_are_not_present(self, zfc, result):
        found = get_fails(zfc, ["-b", "NVME"], NO_NVME, results={NVME_READ: result})
        assert found.calls[-1] == NVME_READ_CALL

    def test_bracket_of_its_own_for_each_call(self, zfc):
        for lost, calls in ((READ, 4), (MODE, 3), (CHANGE, 3)):
            found = get_fails(zfc, ["-b", "NVME"], UNKNOWN, spoil_log=f"{lost}:directory")
            assert len(found.calls) == calls

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_families(self, zfc, device):
        host = port(device=device)
        if device in THREE:
            get(zfc, ["-b", "NVME"], nvme_text(), host=host)
        else:
            for word in ("UEFI", "NVME"):
                assert get_fails(zfc, ["-b", word], NO_MODE, host=host).calls == [LIST_CALL]


@pytest.mark.parametrize("before", [0, 1, 2, 3, 4, 0x101, 0x104])
@pytest.mark.parametrize("word, mode", [("BIOS", 1), ("UEFI", 2), ("NVME", 4)])
def test_library_mode(zfc, before, word, mode):
    """Whatever mode the library is in, it follows the wanted one."""
    shown = {1: bios(), 2: uefi(), 4: nvme_text()}[mode]
    changes = [] if before & 0xFF == mode else [CHANGE_CALL.format(mode)]
    reads = [READ_CALL, NVME_READ_CALL] if mode == 4 else [READ_CALL]
    result = get(zfc, ["-b", word], shown, results={MODE: before})
    assert result.calls == [LIST_CALL, MODE_CALL, *changes, *reads]


@pytest.mark.parametrize("fails", [get_fails, set_file_fails])
class TestModeStep:
    @pytest.mark.parametrize("word", ["", "4", "FC", "NVMEE"])
    def test_unknown_word(self, zfc, fails, word):
        assert fails(zfc, ["-b", word], INVALID).calls == [LIST_CALL]

    @pytest.mark.parametrize("result, message", [(1, UPDATE_FAILED), (150, MAINTENANCE)])
    def test_failed_change(self, zfc, fails, result, message):
        found = fails(zfc, ["-b", "NVME"], message, results={CHANGE: result}, host=port(rom=0))
        assert found.calls == [LIST_CALL, MODE_CALL, CHANGE_CALL.format(4)]

    def test_rom(self, zfc, fails):
        fails(zfc, [], NO_ROM_BIOS, host=port(rom=ROM_UEFI))
        for word in ("UEFI", "NVME"):
            fails(zfc, ["-b", word], NO_ROM_UEFI, host=port(rom=ROM_BIOS))

    @pytest.mark.parametrize("result, message", [(1, READ_FAILED), (150, MAINTENANCE)])
    def test_read_failure(self, zfc, fails, result, message):
        found = fails(zfc, ["-b", "NVME"], message, results={READ: result})
        assert found.calls == [LIST_CALL, MODE_CALL, CHANGE_CALL.format(4), READ_CALL]


COMMANDS = {"get": "failed", "setFile": "failed", "set": "set-failed"}


@pytest.mark.parametrize("command", COMMANDS)
@pytest.mark.parametrize(
    "words, options, message, calls",
    [
        pytest.param([], {}, INVALID, [], id="no identifier"),
        pytest.param(["help"], {}, UNKNOWN, [], id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, NO_HOST, [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER, "-b", "x"], {"host": port(interface=3)}, VIRTUAL, [LIST_CALL], id="virtual port"),
    ],
)
def test_beginning(zfc, command, words, options, message, calls):
    usage = f"Usage: {command}\r\n" if message in (INVALID, UNKNOWN) else ""
    values = {"message": message}
    result = run(zfc, command, COMMANDS[command], words=words, usage=usage, values=values, results={READ: 1}, **options)
    assert result.calls == calls
    assert result.staged is None


def entry_options(number, name, disk, enable=None):
    options = ["-n", str(number), "-p", name, "-o", str(disk)]
    return options if enable is None else [*options, "-l", enable]


class TestSetFile:
    def test_creates_the_file_without_entries_in_the_other_modes(self, zfc):
        """Only the NVMe mode reads the entries; in the others they are written as zeros."""
        result = set_file(zfc, [], bios())
        assert result.staged == FILE
        assert result.calls == [LIST_CALL, MODE_CALL, READ_CALL]
        assert set_file(zfc, ["-b", "UEFI"], uefi()).staged == new_file(2)

    def test_creates_the_file_with_the_devices_entries_in_nvme_mode(self, zfc):
        result = set_file(zfc, ["-b", "NVME"], nvme_text())
        assert result.staged == NVME_FILE
        assert result.calls == [LIST_CALL, MODE_CALL, CHANGE_CALL.format(4), READ_CALL, NVME_READ_CALL]

    def test_creates_a_file_without_entries_outside_the_three_groups(self, zfc):
        result = set_file(zfc, [], bios(), host=port(device=0x3432))
        assert result.staged == new_file(1, with_entries=False)

    @pytest.mark.parametrize("result", [1, 150])
    def test_entries_that_cannot_be_read_count_as_zero(self, zfc, result):
        empty = {number: NvmeEntry() for number in range(8)}
        found = set_file(zfc, ["-b", "NVME"], nvme_text(empty), results={NVME_READ: result})
        assert found.staged == new_file(4)

    def test_entry_in_nvme_mode(self, zfc):
        options = ["-b", "NVME", *entry_options(1, FLASH.upper(), 3, "TRUE")]
        result = set_file(zfc, options, nvme_text({1: ENTRY}, enabled=True))
        assert result.staged == changed(NVME_FILE, **entry_keys(1, ENTRY))

    def test_entry_in_the_other_modes(self, zfc):
        result = set_file(zfc, entry_options(0, DISK, 3), bios(drives={0: (DISK, 3)}))
        assert result.staged == changed(FILE, Primary_Boot_Target_WWPN=DISK, Primary_Boot_Target_LUN=3)
        result = set_file(zfc, ["-b", "UEFI", *entry_options(7, DISK, 0)], uefi(drives={7: (DISK, 0)}))
        assert result.staged == changed(new_file(2), Alternate_Boot_Target_7_WWPN=DISK, Alternate_Boot_Target_7_LUN=0)

    def test_cleared_entries(self, zfc):
        result = set_file(zfc, entry_options(2, NO_NAME, 9), bios(drives={2: (NO_NAME, 0)}))
        assert result.staged == changed(FILE, Alternate_Boot_Target_2_WWPN=NO_NAME, Alternate_Boot_Target_2_LUN=0)
        options = ["-b", "NVME", *entry_options(2, NO_NAME, 9, "false")]
        result = set_file(zfc, options, nvme_text({2: NvmeEntry()}, enabled=True))
        assert result.staged == changed(NVME_FILE, **entry_keys(2, NvmeEntry()))

    @pytest.mark.parametrize("word, enabled", [("true", 1), ("false", 0)])
    def test_fc_nvme_is_staged_and_shown_as_staged(self, zfc, word, enabled):
        result = set_file(zfc, ["-b", "NVME", "-m", word], nvme_text(enabled=bool(enabled)))
        assert result.staged == changed(NVME_FILE, NVMe_Enable=enabled)

    @pytest.mark.parametrize(
        "options, message",
        [
            (["-m", "true"], NEEDS_MODE),
            (["-b", "UEFI", "-m", "true"], NEEDS_MODE),
            (["-e", "true"], NEEDS_MODE),
            (["-b", "UEFI", "-d", "true"], NOT_IN_UEFI),
            (["-b", "NVME", "-d", "true"], NOT_IN_UEFI),
            (["-n", "4"], NEEDS_MODE),
            (["-b", "UEFI", "-n", "8"], NEEDS_MODE),
            (["-p", "50:06:01:60:3b:20:41:00"], INVALID),
            (["-n", "0", "-p", DISK], FCP_SET),
            (["-b", "NVME", "-l", "true"], NVME_SET),
            (entry_options(0, FLASH, 1), INVALID),
            (["-b", "NVME", *entry_options(0, DISK, 3, "true")], INVALID),
        ],
    )
    def test_refused_options_leave_the_file_as_it_was(self, zfc, options, message):
        assert set_file_fails(zfc, ["-a", "false", *options], message, staged=NVME_FILE).staged == NVME_FILE

    @pytest.mark.parametrize("option", ["-e", "-c", "-g", "-m"])
    def test_options_outside_the_three_groups(self, zfc, option):
        set_file_fails(zfc, [option, "true"], UNSUPPORTED, host=port(device=0x3432))

    @pytest.mark.parametrize("nqn", [b"nqn with blank", b"nqn#", b"#", b" ", b"nqn\x7f"])
    def test_nqn_that_cannot_be_in_a_file_is_left_out(self, zfc, nqn):
        own = {2: NvmeEntry(nqn=nqn)}
        result = set_file(zfc, ["-b", "NVME"], nvme_text(own), entries=own)
        with_it = new_file(4, entries={**OWN, **own})
        assert result.staged == with_it.replace(b"NVME_2_NQN=" + nqn + b"\n", b"")

    @pytest.mark.parametrize("nqn", [b"nqn with blank", b"nqn#", b"nqn\x7f", b"nqn\xc3\xa4", b"\x01"])
    def test_target_whose_nqn_cannot_be_in_a_file_is_refused(self, zfc, nqn):
        host = port(targets=[target(FLASH, [1], nvme=True, nqn=nqn)])
        options = ["-b", "NVME", *entry_options(1, FLASH, 1, "true")]
        assert set_file_fails(zfc, options, INVALID, host=host, staged=NVME_FILE).staged == NVME_FILE

    @pytest.mark.parametrize("key, value", [("Boot_Mode", 3), ("Boot_Mode", 0), ("NVMe_Enable", 2), ("NVME_7_Enable", 2)])
    def test_bad_value_in_the_file(self, zfc, key, value):
        """The mode is written by the command itself, so a bad one shows only where it is spelt in another case."""
        staged = changed(NVME_FILE, **{key: value})
        staged = staged.replace(b"Boot_Mode", b"boot_mode") if key == "Boot_Mode" else staged
        set_file_fails(zfc, ["-b", "NVME"], INVALID, staged=staged)

    def test_device_value_out_of_range(self, zfc):
        result = set_file_fails(zfc, ["-b", "NVME"], INVALID, entries={3: NvmeEntry(enable=2)})
        assert b"NVME_3_Enable=2\n" in result.staged


class TestSet:
    def test_in_the_other_modes_leaves_the_entries_alone(self, zfc):
        result = commit(zfc, changed(FILE, World_Login=1), bios(world_login=1))
        assert result.written == {WRITE: with_boot(boot(), world_login=1)}
        assert names(result) == ["TORPI_GetAdapterList", READ, WRITE, REBOOT]
        assert result.staged is None
        result = commit(zfc, new_file(2), uefi())
        assert names(result) == ["TORPI_GetAdapterList", READ, WRITE, REBOOT]

    def test_in_nvme_mode_writes_both_records_and_reads_the_entries_back(self, zfc):
        staged = changed(NVME_FILE, Disable_BIOS=1, **entry_keys(1, ENTRY))
        result = commit(zfc, staged, nvme_text({1: ENTRY}, enabled=True, disable_bios=1))
        assert names(result) == ["TORPI_GetAdapterList", READ, NVME_READ, WRITE, NVME_WRITE, NVME_READ, REBOOT]
        assert result.calls[2] == result.calls[5] == NVME_READ_CALL
        assert result.written[WRITE] == with_boot(boot(), disable_bios=1)
        assert result.written[NVME_WRITE] == with_nvme(nvme(OWN), {1: ENTRY})
        assert result.staged is None

    def test_file_that_changes_nothing_passes_every_byte_through(self, zfc):
        result = commit(zfc, NVME_FILE, nvme_text())
        assert result.written == {WRITE: boot(), NVME_WRITE: nvme(OWN)}
        result = commit(zfc, lines({"Boot_Mode": 4}), nvme_text())
        assert result.written == {WRITE: boot(), NVME_WRITE: nvme(OWN)}

    def test_key_that_was_left_out_keeps_the_records_text(self, zfc):
        own = {2: NvmeEntry(nqn=b"nqn with blank", enable=1)}
        staged = set_file(zfc, ["-b", "NVME"], nvme_text(own), entries=own).staged
        result = commit(zfc, staged, nvme_text(own), entries=own)
        assert result.written[NVME_WRITE] == nvme({**OWN, **own})

    def test_text_without_terminator_passes_through(self, zfc):
        own = {2: NvmeEntry(nqn=b"n" * 256)}
        staged = set_file(zfc, ["-b", "NVME"], nvme_text(own), entries=own).staged
        assert b"NVME_2_NQN=" + b"n" * 255 + b"\n" in staged
        assert commit(zfc, staged, nvme_text(own), entries=own).written[NVME_WRITE] == nvme({**OWN, **own})

    def test_every_key_of_an_entry_reaches_its_place(self, zfc):
        keys = {
            "WWPN": ("wwpn", "01:02:03:04:05:06:07:08"),
            "WWNN": ("wwnn", "11:12:13:14:15:16:17:18"),
            "NamespaceID": ("namespace", 0xFFFFFFFE),
            "ControllerID": ("controller", 0xFFFE),
            "Enable": ("enable", 1),
            "NQN": ("nqn", "nqn.new"),
        }
        for number in (0, 7):
            own = {**OWN, number: NvmeEntry(FLASH, FLASH_NODE, 5, 6, 0, b"nqn.an-older-and-longer-one")}
            for key, (field, value) in keys.items():
                stored = value.encode() if field == "nqn" else value
                entry = NvmeEntry(**{**vars(own[number]), field: stored})
                staged = lines({"Boot_Mode": 4, f"NVME_{number}_{key}": value})
                shown = nvme_text({**own, number: entry}, enabled=True)
                result = commit(zfc, staged, shown, entries=own)
                assert result.written[NVME_WRITE] == nvme({**own, number: entry}), key

    @pytest.mark.parametrize("value, enabled", [("0", False), ("1", True), (None, True)])
    def test_shows_the_staged_flag(self, zfc, value, enabled):
        staged = {"Boot_Mode": 4} if value is None else {"Boot_Mode": 4, "NVMe_Enable": value}
        result = commit(zfc, lines(staged), nvme_text(enabled=enabled))
        assert result.written[NVME_WRITE] == nvme(OWN)

    def test_shows_what_it_read_back(self, zfc):
        """The device keeps another entry than the one written."""
        kept = NvmeEntry(FLASH, FLASH_NODE, namespace=1, controller=7, enable=0, nqn=b"nqn.kept")
        staged = changed(NVME_FILE, **entry_keys(1, ENTRY))
        after = {"nvme_after": nvme({**OWN, 1: kept})}
        result = commit(zfc, staged, nvme_text({1: kept}, enabled=True), buffers=after)
        assert result.written[NVME_WRITE] == with_nvme(nvme(OWN), {1: ENTRY})

    def test_nvme_mode_outside_the_three_groups_touches_no_entry(self, zfc):
        empty = {number: NvmeEntry() for number in range(8)}
        result = commit(zfc, lines({"Boot_Mode": 4}), nvme_text(empty), host=port(device=0x3432))
        assert names(result) == ["TORPI_GetAdapterList", READ, WRITE, REBOOT]

    def test_does_not_run_the_mode_step(self, zfc):
        result = commit(zfc, NVME_FILE, nvme_text(), host=port(rom=0))
        assert MODE_CALL not in result.calls

    def test_file_without_mode_is_in_the_legacy_one(self, zfc):
        assert names(commit(zfc, b"", bios())) == ["TORPI_GetAdapterList", READ, WRITE, REBOOT]

    @pytest.mark.parametrize("flag, result, required", [(1, 0, "true"), (0, 0, "false"), (0, 9, "true")])
    def test_reboot(self, zfc, flag, result, required):
        found = commit(zfc, FILE, bios(), required=required, reboot=flag, results={REBOOT: result})
        assert found.calls[-1] == REBOOT_CALL

    def test_without_a_file_is_unknown_with_code_0(self, zfc):
        result = commit_fails(zfc, None, UNKNOWN, debug=4)
        assert result.code == 0
        assert result.calls == [LIST_CALL, READ_CALL]

    @pytest.mark.parametrize("value", ["0", "3", "5", "x", "-1"])
    def test_bad_mode_is_found_before_the_entries_are_read(self, zfc, value):
        found = commit_fails(zfc, changed(NVME_FILE, Boot_Mode=value), INVALID)
        assert found.calls == [LIST_CALL, READ_CALL]

    @pytest.mark.parametrize("key", ["NVMe_Enable", "NVME_0_Enable", "World_Login"])
    def test_bad_value_is_found_before_anything_is_written(self, zfc, key):
        staged = changed(NVME_FILE, **{key: 2})
        found = commit_fails(zfc, staged, INVALID)
        assert found.calls == [LIST_CALL, READ_CALL, NVME_READ_CALL]
        assert found.staged == staged

    @pytest.mark.parametrize("result", [1, 150, 151])
    def test_entries_that_cannot_be_read_ahead(self, zfc, result):
        found = commit_fails(zfc, NVME_FILE, NO_NVME, results={NVME_READ: result})
        assert found.calls == [LIST_CALL, READ_CALL, NVME_READ_CALL]
        assert found.staged == NVME_FILE

    @pytest.mark.parametrize("result, message", [(1, UPDATE_FAILED), (150, MAINTENANCE), (151, UPDATE_FAILED)])
    def test_failed_boot_record_ends_the_command(self, zfc, result, message):
        found = commit_fails(zfc, NVME_FILE, message, results={WRITE: result})
        assert names(found) == ["TORPI_GetAdapterList", READ, NVME_READ, WRITE]
        assert found.staged == NVME_FILE

    @pytest.mark.parametrize("result, message", [(1, UPDATE_FAILED), (150, MAINTENANCE), (151, UPDATE_FAILED)])
    def test_failed_entries(self, zfc, result, message):
        found = commit_fails(zfc, NVME_FILE, message, results={NVME_WRITE: result})
        assert names(found) == ["TORPI_GetAdapterList", READ, NVME_READ, WRITE, NVME_WRITE]
        assert found.staged == NVME_FILE

    @pytest.mark.parametrize("result, message", [(1, READ_FAILED), (150, MAINTENANCE), (151, READ_FAILED)])
    def test_failed_read_back_keeps_the_file(self, zfc, result, message):
        found = commit_fails(zfc, NVME_FILE, message, env=turns(GetNVMeBootDeviceEntries=[0, result]))
        assert names(found) == ["TORPI_GetAdapterList", READ, NVME_READ, WRITE, NVME_WRITE, NVME_READ]
        assert found.staged == NVME_FILE

    @pytest.mark.parametrize(
        "lost, calls", [("TORPI_GetAdapterList", 1), (READ, 2), (NVME_READ, 3), (WRITE, 4), (NVME_WRITE, 5)]
    )
    def test_bracket_of_its_own_for_each_call(self, zfc, lost, calls):
        found = commit_fails(zfc, NVME_FILE, UNKNOWN, spoil_log=f"{lost}:directory")
        assert len(found.calls) == calls
        assert found.staged == NVME_FILE


class TestEdgeCases:
    def test_nvme_entry_without_enable_flag(self, zfc):
        set_file_fails(zfc, ["--boot-mode", "NVME", *entry_options(1, FLASH, 1)], NVME_SET)

    def test_uefi_entry_without_port_name(self, zfc):
        set_file_fails(zfc, ["--boot-mode", "UEFI", "-n", "1", "-o", "1"], FCP_SET)

    def test_fifth_entry(self, zfc):
        set_file_fails(zfc, ["-n", "4"], NEEDS_MODE)
        set_file(zfc, ["--boot-mode", "UEFI", *entry_options(4, DISK, 0)], uefi(drives={4: (DISK, 0)}))

    def test_targets_of_the_other_protocol(self, zfc):
        set_file_fails(zfc, ["-b", "NVME", *entry_options(0, DISK, 0, "true")], INVALID)
        set_file_fails(zfc, ["-b", "UEFI", *entry_options(0, FLASH, 1)], INVALID)

    def test_failure_of_the_entries_leaves_the_boot_record_applied_and_the_file(self, zfc):
        found = commit_fails(zfc, NVME_FILE, UPDATE_FAILED, results={NVME_WRITE: 1})
        assert WRITE in found.written
        assert found.staged == NVME_FILE


def test_document_with_control_bytes_of_an_nqn_is_written_as_it_is(zfc):
    """Nothing is escaped: the XML form is not well-formed then."""
    own = {2: NvmeEntry(nqn=b"\x01")}
    result = zfc(
        ["-t", "port", "-s", "bootconfigext", "getcli", IDENTIFIER, "-b", "NVME"],
        host=port(),
        buffers={"boot": boot(), "nvme": nvme({**OWN, **own})},
    )
    documents.check(result.stdout, "port/bootconfig/report.txt", data=nvme_text(own))


CLASS = "PhysicalPortBootConfigExtCmdsProcessor::"
GET, SET_FILE, SET = f"{CLASS}CmdGetCommon: ", f"{CLASS}CmdSetFileCommon: ", f"{CLASS}CmdSetCommon: "
READ_ENTRIES, WRITE_ENTRIES = "TORPI_GetNVMeBootDeviceEntries", "TORPI_SetNVMeBootDeviceEntries"


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
            {"staged": ("BootConfigExt", b"World_Login=2\n")},
            [f"{CLASS}ReadBootConfigFromFile: World_Login=2 is out of range"],
        ),
        (
            ["set", IDENTIFIER],
            {"staged": ("BootConfigExt", b"World_Login=1\n"), "results": {WRITE: 5}},
            [f"{SET}Set boot device info failed err=5"],
        ),
        (
            ["set", IDENTIFIER],
            {"staged": ("BootConfigExt", b"World_Login=1\n"), "results": {REBOOT: 5}},
            [f"{SET}Get Reboot Required failed err=5"],
        ),
        *[
            (
                [command, IDENTIFIER, "-b", "NVME"],
                {"results": {READ_ENTRIES: 150}},
                [f"{head}Get NVMe boot entries failed err=150"],
            )
            for command, head in (("get", GET), ("setFile", SET_FILE))
        ],
        (
            ["set", IDENTIFIER],
            {"staged": ("BootConfigExt", b"Boot_Mode=4\n"), "results": {READ_ENTRIES: 9}},
            [f"{CLASS}ReadBootConfigFromFile: Get NVMe boot entries failed err=9"],
        ),
        (
            ["set", IDENTIFIER],
            {"staged": ("BootConfigExt", b"Boot_Mode=4\n"), "results": {WRITE_ENTRIES: 9}},
            [f"{SET}Set NVMe boot entries failed err=9"],
        ),
        (
            ["set", IDENTIFIER],
            {"staged": ("BootConfigExt", b"Boot_Mode=3\n")},
            [f"{CLASS}ReadBootConfigFromFile: Boot_Mode=3 is out of range"],
        ),
        (
            ["set", IDENTIFIER],
            {"staged": ("BootConfigExt", b"NVMe_Enable=2\n")},
            [f"{CLASS}ReadBootConfigFromFile: NVMe_Enable=2 is out of range"],
        ),
    ],
)
def test_failure_lines(zfc, words, options, failures):
    assert logged(zfc, ["bootconfigext", *words], **options).failures == failures


@pytest.mark.parametrize("word, mode", [("BIOS", 1), ("UEFI", 2), ("NVME", 4)])
def test_the_record_and_the_mode_have_their_own_names_in_the_log(zfc, word, mode):
    read = ["DisableBIOS=0", "EnableFabricAssignBootLun=1", "EnableSelectableBoot=1", "EnableSelectiveLogin=0"]
    read += ["EnableSelectiveLUN=1", "ForceWorldLogin=0"]
    read += ["BootPortName=50:06:01:60:3b:20:41:00", "BootLunNumber=10"]
    for drive in range(1, 8):
        read += [f"Alt{drive}BootPortName=50:06:01:60:3b:20:41:0{drive}", f"Alt{drive}BootLunNumber={10 + drive}"]
    result = logged(zfc, ["bootconfigext", "get", IDENTIFIER, "-b", word])
    assert result.steps_in(f"{CLASS}CmdGetCommon: ") == ["Entered", f"uUserMode={mode}", *read, "Exiting"]
    assert result.steps_in(f"{CLASS}DisplayBootConfigInfo: ") == ["Entered", "Message=Success", "Exiting"]


@pytest.mark.parametrize(
    "options, line",
    [
        (["-m", "true"], "--fc-nvme=true: an option of the NVMe boot mode"),
        (["-n", "4"], "--boot-target-num=4: no boot entry of this mode and adapter"),
        (["-p", "50:06"], "--boot-target-wwpn=50:06: not a complete value"),
        (["-l", "maybe"], "--boot-target-enable=maybe: neither true nor false"),
        (["-n", "1"], "boot entry=: the boot entry is not complete"),
        (["-b", "NVME", "-n", "1", "-p", FLASH, "-o", "1"], "boot entry=: the boot entry is not complete"),
        (["-n", "1", "-p", FLASH, "-o", "1"], "boot entry=1: a target of the other protocol"),
        (
            ["-b", "NVME", "-n", "1", "-p", ODD_FLASH, "-o", "1", "-l", "true"],
            "boot entry=1: the target's NQN cannot be staged",
        ),
        (["-n", "1", "-p", DISK, "-o", "9"], "boot entry=1: the target has no such LUN or namespace"),
    ],
)
def test_a_refused_option_is_a_step(zfc, options, line):
    targets = [*TARGETS, target(ODD_FLASH, [1], nvme=True, nqn=b"nqn with blank")]
    result = logged(zfc, ["bootconfigext", "setFile", IDENTIFIER, *options], host=port(targets=targets))
    assert result.steps_in(f"{CLASS}UpdateBootConfigInFile: ") == ["Entered", line, "Exiting"]
    assert result.failures == []
