"""The hbaparams node: `get`, `setFile`, `set`, `restoreDefaults` and `save` in both forms.

Which option passes on which adapter and with which value is a matter of the unit tests; here are whole documents, the
calls, the staged file and the whole record that reaches the device.
"""

import struct

import pytest

from zfc import documents
from zfc.config import (
    IDENTIFIER,
    INVALID,
    LIST_CALL,
    MAINTENANCE,
    NO_HOST,
    NO_LIBRARY_LOG,
    NO_PORT,
    PARAMS,
    REBOOT_CALL,
    UNKNOWN,
    VIRTUAL,
    changed,
    lines,
    logged,
    one_port,
    params,
    run_both,
    turns,
    with_params,
)
from zfc.host import CEDAR, DAHLIA, FERN, NO_LIST, every_device
from zfc.staged import PARAMS_FILE as FILE

READ_CALL = "TORPI_GetHBAParamsInfo(port, zeroed buffer, zeroed buffer)"
RESTORE_CALL = "TORPI_RestoreDefaultNVRAM(port)"
READ, WRITE = "TORPI_GetHBAParamsInfo", "TORPI_UpdateHBAParameters"
RESTORE, SAVE, REBOOT = "TORPI_RestoreDefaultNVRAM", "TORPI_SaveSingleAdapterNVRAMToFile", "TORPI_IsRebootRequired"

READ_FAILED, UPDATE_FAILED = "Failed, NVRAM read failed", "Failed, NVRAM update failed"
DELAY = (
    "Failed, Interrupt Delay Timer value > 0 not supported for Operation Mode value "
    "Interrupt_For_Every_I/O_Completion"
)
LOOP = "Failed, Connection Options value Loop_Only not supported for data rate value 16 Gbps and above"

EVERY_COMPLETION = "Interrupt_For_Every_I/O_Completion"
TIMER = "Interrupt_When_Interrupt_Delay_Timer_Expires"
TIMER_OR_IDLE = "Interrupt_When_Interrupt_Delay_Timer_Expires_Or_No_Active_I/O"

# What the default record shows on the default port, of the Hazel family.
SHOWN = {
    "connection_options": "Point_To_Point_Only",
    "data_rate": "Auto",
    "operation_mode": TIMER_OR_IDLE,
    "frame_size": "2048",
    "enable_hard_loop_id": "false",
    "hard_loop_id": "17",
    "loop_reset_delay_in_seconds": "5",
    "interrupt_delay_timer_in_100us": "100",
    "execution_throttle": "65535",
    "login_retry_count": "8",
    "port_down_retry_count": "30",
    "link_down_timeout_in_seconds": "29",
    "luns_per_target": "128",
    "enable_lr": "false",
    "enable_host_hba_bios": "false",
    "enable_fc_tape_support": "true",
    "enable_lip_full_login": "true",
    "enable_target_reset": "false",
    "enable_fabric_assigned_wwn": "true",
    "enable_vclm": "false",
    "virtual_lane": "NA",
}

def run(zfc, command, name, options=(), *, words=None, record=None, reboot_flag=None, **more):
    words = (IDENTIFIER, *options) if words is None else words
    buffers = {"params": params() if record is None else record}
    more["reboot"] = reboot_flag
    document = f"port/hbaparams/{name}"
    return run_both(zfc, "hbaparams", command, "HBAParams", document, words=words, buffers=buffers, **more)


def get(zfc, shown=None, **more):
    return run(zfc, "get", "report", values={**SHOWN, **(shown or {})}, **more)


def set_file(zfc, options=(), shown=None, **more):
    return run(zfc, "setFile", "report", options, values={**SHOWN, **(shown or {})}, **more)


def set_file_fails(zfc, options, message, **more):
    """Status 6 has the usage text after the document of the "cli" form."""
    usage = "Usage: setFile\r\n" if message == INVALID else ""
    return run(zfc, "setFile", "failed", options, values={"message": message}, usage=usage, **more)


def commit(zfc, staged, shown=None, *, reboot="true", **more):
    values = {**SHOWN, **(shown or {}), "reboot": reboot}
    return run(zfc, "set", "set", staged=staged, values=values, **more)


def commit_fails(zfc, staged, message, **more):
    usage = "Usage: set\r\n" if message == INVALID else ""
    return run(zfc, "set", "set-failed", staged=staged, values={"message": message}, usage=usage, **more)


class TestGet:
    def test_shows_the_device(self, zfc):
        result = get(zfc)
        assert result.calls == [LIST_CALL, READ_CALL]
        assert result.staged is None

    def test_does_not_look_at_the_staged_file(self, zfc):
        staged = changed(FILE, Data_Rate=5, Frame_Size=99)
        assert get(zfc, staged=staged).staged == staged

    @pytest.mark.parametrize(
        "value, text",
        [
            (0, "Loop_Only"),
            (1, "Point_To_Point_Only"),
            (2, "Loop_Preferred_Otherwise_Point_To_Point"),
            (3, "Unknown"),
            (0xFFFFFFFF, "Unknown"),
        ],
    )
    def test_connection_options(self, zfc, value, text):
        get(zfc, {"connection_options": text}, record=params(connection_options=value))

    RATES = ["1_Gbps", "2_Gbps", "Auto", "4_Gbps", "8_Gbps", "16_Gbps", "32_Gbps", "64_Gbps", "Unknown"]

    @pytest.mark.parametrize("value", range(9))
    def test_data_rate(self, zfc, value):
        get(zfc, {"data_rate": self.RATES[value]}, record=params(data_rate=value))

    @pytest.mark.parametrize("value, text", [(0, EVERY_COMPLETION), (5, TIMER), (6, TIMER_OR_IDLE), (1, "Unknown")])
    def test_operation_mode(self, zfc, value, text):
        get(zfc, {"operation_mode": text}, record=params(operation_mode=value))

    def test_numbers_are_unsigned(self, zfc):
        record = params(
            **{
                name: 0xFFFFFFFF
                for name in (
                    "frame_size",
                    "hard_loop_id",
                    "loop_reset_delay",
                    "interrupt_delay_timer",
                    "execution_throttle",
                    "login_retry_count",
                    "port_down_retry_count",
                    "link_down_timeout",
                    "luns_per_target",
                )
            }
        )
        shown = {name: "4294967295" for name, value in SHOWN.items() if value.isdigit()}
        assert len(shown) == 9
        get(zfc, shown, record=record)

    @pytest.mark.parametrize("value, flag", [(0, "false"), (1, "true"), (2, "true"), (0x100, "true")])
    def test_flags(self, zfc, value, flag):
        names = ("enable_hard_loop_id", "lr", "fc_tape", "lip_full_login", "target_reset", "fabric_wwn")
        record = params(**{name: value for name in names}, disable_bios=value, disable_scm=value, virtual_lane=value & 0xFF)
        inverse = "true" if value == 0 else "false"
        shown = {
            "enable_hard_loop_id": flag,
            "enable_lr": flag,
            "enable_fc_tape_support": flag,
            "enable_lip_full_login": flag,
            "enable_target_reset": flag,
            "enable_fabric_assigned_wwn": flag,
            "enable_host_hba_bios": inverse,
            "enable_vclm": inverse,
        }
        get(zfc, shown, record=record)

    @pytest.mark.parametrize("value, shown", [(0, "false"), (1, "true"), (255, "true")])
    def test_virtual_lane(self, zfc, value, shown):
        get(zfc, {"virtual_lane": shown}, record=params(virtual_lane=value), host=one_port(device=0x3640))

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_families(self, zfc, device):
        """What an adapter lacks is shown as "NA" or 0."""
        ginkgo, aster = device == 0x7122, device in (0x3A02, 0x3A12, 0x5C02, 0x5C12)
        birch, dahlia = device in (0x3B40, 0x3B41), device in DAHLIA
        three = dahlia or device in (0x3522, 0x3D22, 0x3D62, 0x3150, 0x3350, 0x3850, 0x3950)
        shown = {"data_rate": "10_Gbps" if device in FERN else "16_Gbps"}
        if ginkgo:
            shown.update(operation_mode="NA", interrupt_delay_timer_in_100us="0")
        if device in CEDAR:
            shown.update(enable_hard_loop_id="NA", hard_loop_id="0", enable_lip_full_login="NA")
        if device in FERN:
            shown.update(execution_throttle="0")
        if aster or ginkgo:
            shown.update(enable_lr="NA")
        if aster or birch or device in CEDAR:
            shown.update(enable_fabric_assigned_wwn="NA")
        shown["enable_vclm"] = "false" if three else "NA"
        shown["virtual_lane"] = "true" if dahlia else "NA"
        get(zfc, shown, record=params(data_rate=5, virtual_lane=1), host=one_port(device=device))


# How each command begins: the checks in their order, each row failing at one and at all after it.
ALL_FAIL = {READ: 1, WRITE: 1, RESTORE: 1, SAVE: 1, REBOOT: 1}
BEGINNINGS = [
    pytest.param([], {}, INVALID, [], id="no identifier"),
    pytest.param(["nobody"], {}, INVALID, [], id="bad identifier"),
    pytest.param(["FC_21:00:00:11:22:33:44:56"], {}, INVALID, [LIST_CALL], id="no such port"),
    pytest.param(["help"], {}, UNKNOWN, [], id="help word"),
    pytest.param([IDENTIFIER], {"host": NO_LIST}, NO_HOST, [LIST_CALL], id="no list"),
    pytest.param([IDENTIFIER, "file"], {"host": one_port(interface=3)}, VIRTUAL, [LIST_CALL], id="virtual port"),
]
NAMES = {
    "get": "failed",
    "setFile": "failed",
    "set": "set-failed",
    "restoreDefaults": "restore-failed",
    "save": "save",
}


@pytest.mark.parametrize("command", NAMES)
@pytest.mark.parametrize("words, options, message, calls", BEGINNINGS)
def test_beginning(zfc, command, words, options, message, calls):
    usage = f"Usage: {command}\r\n" if message in (INVALID, UNKNOWN) else ""
    values = {"message": message}
    result = run(zfc, command, NAMES[command], words=words, usage=usage, values=values, results=ALL_FAIL, **options)
    assert result.calls == calls
    assert result.staged is None


@pytest.mark.parametrize("command", NAMES)
def test_bracket_that_cannot_be_opened(zfc, command):
    """Status 19, for which this node has no text; nothing is asked of the device."""
    values = {"message": UNKNOWN}
    words = [IDENTIFIER, "file"]
    spoil = "TORPI_GetAdapterList:directory"
    result = run(zfc, command, NAMES[command], words=words, values=values, staged=FILE, spoil_log=spoil)
    assert result.calls == [LIST_CALL]
    assert result.staged == FILE


def test_bracket_lost_ahead_of_the_write(zfc):
    result = commit_fails(zfc, FILE, UNKNOWN, spoil_log=f"{READ}:directory")
    assert result.calls == [LIST_CALL, READ_CALL]
    assert result.staged == FILE


class TestSetFile:
    def test_with_no_options_creates_the_file_from_the_device_and_displays_it(self, zfc):
        result = set_file(zfc)
        assert result.calls == [LIST_CALL, READ_CALL]
        assert result.staged == FILE

    def test_leaves_a_file_that_is_there_as_it_is(self, zfc):
        staged = changed(FILE, Data_Rate=4)
        result = set_file(zfc, staged=staged, shown={"data_rate": "8_Gbps", "luns_per_target": "128"})
        assert result.staged == staged

    @pytest.mark.parametrize("value, text", [(0xFFFFFFFF, "-1"), (0x80000000, "-2147483648"), (0x7FFFFFFF, "2147483647")])
    def test_device_values_are_written_signed_and_refused_when_out_of_range(self, zfc, value, text):
        result = set_file_fails(zfc, [], INVALID, record=params(login_retry_count=value))
        assert result.staged == changed(FILE, Login_Retry_Count=text)

    def test_options_change_the_keys_they_name(self, zfc):
        options = ["-c", "loop_only", "-d", "8_Gbps", "-b", "true", "-y", "256", "-o", "240", "-l", "125", "--enable-vclm", "TRUE"]
        shown = {
            "connection_options": "Loop_Only",
            "data_rate": "8_Gbps",
            "enable_host_hba_bios": "true",
            "luns_per_target": "256",
            "link_down_timeout_in_seconds": "240",
            "hard_loop_id": "125",
            "enable_vclm": "true",
        }
        result = set_file(zfc, options, shown)
        expected = changed(
            FILE,
            Connection_Options=0,
            Data_Rate=4,
            Disable_BIOS=0,
            Luns_Per_Target=256,
            Link_Down_Timeout=240,
            Hard_Loop_ID=125,
            Disable_SCM=0,
        )
        assert result.staged == expected
        assert result.calls == [LIST_CALL, READ_CALL]

    def test_refused_option_leaves_the_file_it_created(self, zfc):
        assert set_file_fails(zfc, ["-u", "3", "-y", "257"], INVALID).staged == FILE

    def test_refused_option_leaves_the_file_that_was_there(self, zfc):
        staged = changed(FILE, Login_Retry_Count=200)
        assert set_file_fails(zfc, ["-u", "3", "-b", "maybe"], INVALID, staged=staged).staged == staged

    @pytest.mark.parametrize(
        "options, device, message",
        [
            (["-k", "true"], 0x3A02, "Failed, Feature not supported for this adapter"),
            (["-d", "auto"], 0x7102, "Failed, Read-Only parameter"),
            (["-m", EVERY_COMPLETION, "-e", "1"], 0x3522, DELAY),
            (["-c", "Loop_Only", "-d", "16_Gbps"], 0x3522, LOOP),
        ],
    )
    def test_messages_of_the_other_checks(self, zfc, options, device, message):
        set_file_fails(zfc, options, message, host=one_port(device=device))

    @pytest.mark.parametrize("result, message", [(1, READ_FAILED), (149, READ_FAILED), (150, MAINTENANCE), (151, READ_FAILED)])
    def test_read_failure(self, zfc, result, message):
        found = set_file_fails(zfc, ["-u", "3"], message, results={READ: result}, staged=FILE)
        assert found.calls == [LIST_CALL, READ_CALL]
        assert found.staged == FILE

    def test_read_failure_creates_no_file(self, zfc):
        assert set_file_fails(zfc, [], READ_FAILED, results={READ: 5}).staged is None

    def test_bad_value_in_the_file(self, zfc):
        staged = changed(FILE, Frame_Size=2000)
        found = set_file_fails(zfc, ["-u", "3"], INVALID, staged=staged)
        assert found.staged == changed(staged, Login_Retry_Count=3)

    def test_code_of_a_failure(self, zfc):
        assert set_file_fails(zfc, ["-k", "x"], INVALID, debug=4).code == 6


@pytest.mark.parametrize("result, message", [(1, READ_FAILED), (150, MAINTENANCE), (0xFFFFFFFF, READ_FAILED)])
def test_get_read_failure(zfc, result, message):
    found = run(zfc, "get", "failed", values={"message": message}, results={READ: result})
    assert found.calls == [LIST_CALL, READ_CALL]


class TestSet:
    def test_writes_the_record_with_nothing_but_the_files_values_changed(self, zfc):
        staged = changed(FILE, Data_Rate=5, Disable_BIOS=0, Enable_Virtual_Lane=1, Enable_Receive_Out_Of_Order_Frames=0)
        shown = {"data_rate": "16_Gbps", "enable_host_hba_bios": "true"}
        result = commit(zfc, staged, shown)
        expected = with_params(params(), data_rate=5, disable_bios=0, virtual_lane=1, out_of_order=0)
        assert result.written == {WRITE: expected}
        assert [call.split("(")[0] for call in result.calls] == ["TORPI_GetAdapterList", READ, WRITE, REBOOT]
        assert result.staged is None

    def test_every_key_reaches_its_place(self, zfc):
        keys = {
            "Data_Rate": ("data_rate", 3, {"data_rate": "4_Gbps"}),
            "Connection_Options": ("connection_options", 2, {"connection_options": "Loop_Preferred_Otherwise_Point_To_Point"}),
            "Enable_Fibre_Channel_Tape_Support": ("fc_tape", 0, {"enable_fc_tape_support": "false"}),
            "Luns_Per_Target": ("luns_per_target", 255, {"luns_per_target": "255"}),
            "Enable_Hard_Loop_Id": ("enable_hard_loop_id", 1, {"enable_hard_loop_id": "true"}),
            "Hard_Loop_ID": ("hard_loop_id", 124, {"hard_loop_id": "124"}),
            "Frame_Size": ("frame_size", 2112, {"frame_size": "2112"}),
            "Enable_Lip_Full_Login": ("lip_full_login", 0, {"enable_lip_full_login": "false"}),
            "Enable_Target_Reset": ("target_reset", 1, {"enable_target_reset": "true"}),
            "Loop_Reset_Delay": ("loop_reset_delay", 254, {"loop_reset_delay_in_seconds": "254"}),
            "Login_Retry_Count": ("login_retry_count", 253, {"login_retry_count": "253"}),
            "Port_Down_Retry_Count": ("port_down_retry_count", 252, {"port_down_retry_count": "252"}),
            "Execution_Throttle": ("execution_throttle", 65534, {"execution_throttle": "65534"}),
            "Operation_Mode": ("operation_mode", 5, {"operation_mode": TIMER}),
            "Interrupt_Delay_Timer": ("interrupt_delay_timer", 251, {"interrupt_delay_timer_in_100us": "251"}),
            "Link_Down_Timeout": ("link_down_timeout", 239, {"link_down_timeout_in_seconds": "239"}),
            "Disable_BIOS": ("disable_bios", 0, {"enable_host_hba_bios": "true"}),
            "Enable_Receive_Out_Of_Order_Frames": ("out_of_order", 0, {}),
            "Enable_LR": ("lr", 1, {"enable_lr": "true"}),
            "Enable_Fabric_Assign_WWN": ("fabric_wwn", 0, {"enable_fabric_assigned_wwn": "false"}),
            "Disable_SCM": ("disable_scm", 0, {"enable_vclm": "true"}),
            "Enable_Virtual_Lane": ("virtual_lane", 1, {}),
        }
        assert len(keys) == len(PARAMS) == 22
        for key, (field, value, shown) in keys.items():
            result = commit(zfc, lines({key: value}), shown)
            assert result.written == {WRITE: with_params(params(), **{field: value})}, key

    @pytest.mark.parametrize(
        "flag, result, reboot", [(1, 0, "true"), (0, 0, "false"), (2, 0, "false"), (0, 1, "true"), (0, 150, "true")]
    )
    def test_reboot(self, zfc, flag, result, reboot):
        found = commit(zfc, FILE, reboot_flag=flag, reboot=reboot, results={REBOOT: result})
        assert found.calls[-1] == REBOOT_CALL
        assert found.staged is None

    @pytest.mark.parametrize("debug", [4])
    def test_without_a_file_is_unknown_with_code_0(self, zfc, debug):
        result = commit_fails(zfc, None, UNKNOWN, debug=debug)
        assert result.code == 0
        assert result.calls == [LIST_CALL, READ_CALL]

    @pytest.mark.parametrize("result, message", [(1, READ_FAILED), (150, MAINTENANCE)])
    def test_read_failure(self, zfc, result, message):
        found = commit_fails(zfc, FILE, message, results={READ: result, WRITE: 1})
        assert found.calls == [LIST_CALL, READ_CALL]
        assert found.staged == FILE

    def test_the_read_goes_before_the_file(self, zfc):
        assert commit_fails(zfc, None, READ_FAILED, results={READ: 1}).calls == [LIST_CALL, READ_CALL]

    def test_bad_value_keeps_the_file_and_writes_nothing(self, zfc):
        staged = changed(FILE, Data_Rate=8)
        result = commit_fails(zfc, staged, INVALID)
        assert result.calls == [LIST_CALL, READ_CALL]
        assert result.staged == staged

    @pytest.mark.parametrize("result, message", [(1, UPDATE_FAILED), (149, UPDATE_FAILED), (150, MAINTENANCE), (151, UPDATE_FAILED)])
    def test_write_failure_keeps_the_file(self, zfc, result, message):
        found = commit_fails(zfc, FILE, message, results={WRITE: result})
        assert found.written == {WRITE: params()}
        assert len(found.calls) == 3
        assert found.staged == FILE

    def test_takes_no_options(self, zfc):
        result = run(zfc, "set", "set", ["-d", "8_Gbps"], staged=FILE, values={**SHOWN, "reboot": "true"})
        assert result.written == {WRITE: params()}


class TestRestoreDefaults:
    @pytest.mark.parametrize(
        "flag, result, reboot", [(1, 0, "true"), (0, 0, "false"), (255, 0, "false"), (0, 7, "true")]
    )
    def test_success(self, zfc, flag, result, reboot):
        staged = changed(FILE, Data_Rate=5)
        found = run(
            zfc,
            "restoreDefaults",
            "restored",
            staged=staged,
            values={"reboot": reboot},
            reboot_flag=flag,
            results={REBOOT: result},
        )
        assert found.calls == [LIST_CALL, RESTORE_CALL, REBOOT_CALL]
        assert found.staged == staged

    @pytest.mark.parametrize("result, message", [(1, UPDATE_FAILED), (149, UPDATE_FAILED), (150, MAINTENANCE)])
    def test_failure(self, zfc, result, message):
        values = {"message": message}
        found = run(zfc, "restoreDefaults", "restore-failed", values=values, results={RESTORE: result})
        assert found.calls == [LIST_CALL, RESTORE_CALL]


class TestSave:
    @pytest.mark.parametrize("name", ["params.txt", "/no/such/folder/file", "", "%s%n", "two words"])
    def test_success(self, zfc, name):
        found = run(zfc, "save", "save", [name], values={"message": "Success"})
        assert found.calls == [LIST_CALL, f'TORPI_SaveSingleAdapterNVRAMToFile(port, "{name}")']

    @pytest.mark.parametrize("result, message", [(1, READ_FAILED), (150, MAINTENANCE), (151, READ_FAILED)])
    def test_failure(self, zfc, result, message):
        found = run(zfc, "save", "save", ["file"], values={"message": message}, results={SAVE: result})
        assert found.calls == [LIST_CALL, 'TORPI_SaveSingleAdapterNVRAMToFile(port, "file")']

    def test_without_a_file_name_asks_nothing_of_the_device(self, zfc):
        found = run(zfc, "save", "save", values={"message": INVALID}, usage="Usage: save\r\n")
        assert found.calls == [LIST_CALL]

    def test_leaves_the_staged_file(self, zfc):
        staged = changed(FILE, Data_Rate=5)
        assert run(zfc, "save", "save", ["f"], staged=staged, values={"message": "Success"}).staged == staged


class TestEdgeCases:
    def test_no_delay_in_the_mode_without_one(self, zfc):
        options = ["-m", EVERY_COMPLETION, "-e", "5"]
        assert set_file_fails(zfc, options, DELAY, staged=FILE).staged == FILE

    def test_delay_against_the_files_operation_mode(self, zfc):
        staged = changed(FILE, Operation_Mode=0)
        assert set_file_fails(zfc, ["-e", "5"], DELAY, staged=staged).staged == staged
        staged = changed(FILE, Operation_Mode=5)
        shown = {"operation_mode": TIMER, "interrupt_delay_timer_in_100us": "5"}
        assert set_file(zfc, ["-e", "5"], shown, staged=staged).staged == changed(staged, Interrupt_Delay_Timer=5)

    def test_mode_without_delay_alone_sets_both_keys_to_0(self, zfc):
        shown = {"operation_mode": EVERY_COMPLETION, "interrupt_delay_timer_in_100us": "0"}
        result = set_file(zfc, ["-m", EVERY_COMPLETION], shown)
        assert result.staged == changed(FILE, Operation_Mode=0, Interrupt_Delay_Timer=0)

    def test_loop_only_looks_at_the_files_rate_alone(self, zfc):
        staged = changed(FILE, Data_Rate=5)
        assert set_file_fails(zfc, ["-c", "Loop_Only", "-d", "8_Gbps"], LOOP, staged=staged).staged == staged

    def test_the_commands_own_connection_is_what_counts_for_a_rate(self, zfc):
        staged = changed(FILE, Connection_Options=0)
        shown = {"data_rate": "16_Gbps"}
        result = set_file(zfc, ["-d", "16_Gbps", "-c", "Point_To_Point_Only"], shown, staged=staged)
        assert result.staged == changed(FILE, Connection_Options=1, Data_Rate=5)

    def test_rate_that_the_port_lacks(self, zfc):
        set_file_fails(zfc, ["-d", "32_Gbps"], INVALID, host=one_port(supported=0xBF))

    def test_auto_passes_on_any_port_and_stores_2(self, zfc):
        staged = changed(FILE, Data_Rate=5)
        assert set_file(zfc, ["-d", "auto"], staged=staged, host=one_port(supported=0)).staged == FILE

    def test_2112_byte_frames(self, zfc):
        set_file_fails(zfc, ["-z", "2112"], INVALID)
        encryption = one_port(device=0x3648, subsystem=(0x1C9E, 0x0B03))
        shown = {"frame_size": "2112", "virtual_lane": "false"}
        assert set_file(zfc, ["-z", "2112"], shown, host=encryption).staged == changed(FILE, Frame_Size=2112)
        set_file(zfc, [], {"frame_size": "2112"}, staged=changed(FILE, Frame_Size=2112))

    @pytest.mark.parametrize("option, passes, fails", [("-y", 256, 257), ("-o", 240, 241), ("-l", 125, 126)])
    def test_limits(self, zfc, option, passes, fails):
        shown = {"-y": "luns_per_target", "-o": "link_down_timeout_in_seconds", "-l": "hard_loop_id"}[option]
        key = {"-y": "Luns_Per_Target", "-o": "Link_Down_Timeout", "-l": "Hard_Loop_ID"}[option]
        assert set_file(zfc, [option, str(passes)], {shown: str(passes)}).staged == changed(FILE, **{key: passes})
        assert set_file_fails(zfc, [option, str(fails)], INVALID).staged == FILE

    def test_bios_off_is_stored_as_1_and_shown_by_the_next_get(self, zfc):
        record = params(disable_bios=0)
        created = changed(FILE, Disable_BIOS=0)
        result = set_file(zfc, ["-b", "false"], record=record, staged=created)
        assert result.staged == FILE
        written = commit(zfc, result.staged, record=record).written[WRITE]
        assert written == params(disable_bios=1)
        get(zfc, {"enable_host_hba_bios": "false"}, record=written)

    def test_neither_true_nor_false_drops_the_earlier_options(self, zfc):
        assert set_file_fails(zfc, ["-z", "512", "-b", "maybe"], INVALID, staged=FILE).staged == FILE

    def test_hand_edited_file_can_reach_the_device_with_broken_rules(self, zfc):
        staged = lines({"Connection_Options": 0, "Data_Rate": 7, "Operation_Mode": 0, "Interrupt_Delay_Timer": 200})
        shown = {
            "connection_options": "Loop_Only",
            "data_rate": "64_Gbps",
            "operation_mode": EVERY_COMPLETION,
            "interrupt_delay_timer_in_100us": "200",
        }
        written = commit(zfc, staged, shown).written[WRITE]
        assert struct.unpack_from("<II", written) == (7, 0)

    def test_two_reads_of_one_set_answer_in_turn(self, zfc):
        """The record that is written is the one read by this very run."""
        result = commit(zfc, lines({}), env=turns(GetHBAParamsInfo=[0, 1]))
        assert result.written == {WRITE: params()}


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s hbaparams {words}")
    documents.check(result.stdout, "port/hbaparams/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("command", ["get", "setFile", "set", "restoreDefaults", "save"])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, command):
    assert zfc(f"-t port -s hbaparams {command} ?").stdout == b""
    result = zfc(f"-t port -s hbaparams {command}cli ?")
    assert result.stdout == f"Usage: {command}\r\n".encode()
    assert result.command_calls == []


CLASS = "PhysicalPortHBAParamsCmdsProcessor::"
COMMON = {name: f"{CLASS}Cmd{name[0].upper()}{name[1:]}Common: " for name in ("get", "setFile", "set", "restoreDefaults", "save")}


@pytest.mark.parametrize(
    "words, options, failures",
    [
        *[([name, "FC_x", "f"], {}, [f"{head}{NO_PORT}"]) for name, head in COMMON.items()],
        *[
            ([name, IDENTIFIER, "f"], {"host": one_port(interface=3)}, [f"{head}Command not supported for vport"])
            for name, head in COMMON.items()
        ],
        *[
            ([name, IDENTIFIER, "f"], {"spoil_log": "TORPI_GetAdapterList:directory"}, [f"{head}{NO_LIBRARY_LOG}"])
            for name, head in COMMON.items()
        ],
        *[
            ([name, IDENTIFIER], {"results": {READ: 150}}, [f"{COMMON[name]}Get HBA params failed err=150"])
            for name in ("get", "setFile", "set")
        ],
        (
            ["restoreDefaults", IDENTIFIER],
            {"results": {"TORPI_RestoreDefaultNVRAM": 0xFFFFFFFF}},
            [f"{COMMON['restoreDefaults']}Restore default NVRAM failed err=-1"],
        ),
        (
            ["restoreDefaults", IDENTIFIER],
            {"results": {"TORPI_IsRebootRequired": 5}},
            [f"{COMMON['restoreDefaults']}Get Reboot Required failed err=5"],
        ),
        (
            ["save", IDENTIFIER, "f"],
            {"results": {"TORPI_SaveSingleAdapterNVRAMToFile": 9}},
            [f"{COMMON['save']}Save NVRAM to file failed err=9"],
        ),
        (["save", IDENTIFIER], {}, [f"{COMMON['save']}file name not given"]),
        (["set", IDENTIFIER], {}, [f"{COMMON['set']}nothing is staged"]),
        (
            ["set", IDENTIFIER],
            {"staged": ("HBAParams", changed(FILE, Frame_Size=2000))},
            [f"{CLASS}ReadHBAParamsFromFile: Frame_Size=2000 is out of range"],
        ),
        (
            ["set", IDENTIFIER],
            {"staged": ("HBAParams", FILE), "results": {"TORPI_UpdateHBAParameters": 150}},
            [f"{COMMON['set']}Update HBA params failed err=150"],
        ),
        (
            ["set", IDENTIFIER],
            {"staged": ("HBAParams", FILE), "results": {"TORPI_IsRebootRequired": 5}},
            [f"{COMMON['set']}Get Reboot Required failed err=5"],
        ),
    ],
)
def test_failure_lines(zfc, words, options, failures):
    assert logged(zfc, ["hbaparams", *words], **options).failures == failures


def test_the_record_has_its_own_names_in_the_log(zfc):
    """ConnetionOptions is meant."""
    read = [
        "ConnetionOptions=1",
        "DataRate=2",
        "OperationMode=6",
        "FrameSize=2048",
        "HardLoopId=17",
        "LoopResetDelay=5",
        "InterruptDelayTimer=100",
        "ExecutionThrottle=65535",
        "LoginRetryCount=8",
        "PortDownRetryCount=30",
        "LinkDownTimeout=29",
        "MaxLunsPerTarget=128",
        "DisableBIOS=1",
        "EnableHardLoopId=0",
        "EnableFibreChannelTapeSupport=1",
        "EnableLipFullLogin=1",
        "EnableTargetReset=0",
        "RecvOutOfOrderDataBit=1",
        "EnableLRBit=0",
        "EnableFabricAssignWWN=1",
        "DisableSCM=1",
        "EnableVirtualLane=0",
    ]
    result = logged(zfc, ["hbaparams", "setFile", IDENTIFIER, "-u", "3"])
    assert result.steps_in(f"{CLASS}CmdSetFileCommon: ") == ["Entered", *read, "Exiting"]
    assert result.steps_in(f"{CLASS}CreateHBAParamsFile: ") == ["Entered", "Exiting"]
    assert result.steps_in(f"{CLASS}UpdateHBAParamsInFile: ") == ["Entered", "Exiting"]
    staged = ["LoginRetryCount=3" if line == "LoginRetryCount=8" else line for line in read]
    assert result.steps_in(f"{CLASS}ReadHBAParamsFromFile: ") == ["Entered", *staged, "Exiting"]
    assert result.steps_in(f"{CLASS}DisplayHBAParamsInfo: ") == ["Entered", "Message=Success", "Exiting"]


@pytest.mark.parametrize(
    "words, function, message",
    [
        (["get", "FC_x"], "DisplayError", INVALID),
        (["restoreDefaults", "FC_x"], "DisplayRestoreDefaultsError", INVALID),
        (["save", IDENTIFIER], "DisplaySaveError", INVALID),
    ],
)
def test_each_failure_document_has_its_function(zfc, words, function, message):
    result = logged(zfc, ["hbaparams", *words])
    assert result.steps_in(f"{CLASS}{function}: ") == ["Entered", f"Message={message}", "Exiting"]


@pytest.mark.parametrize(
    "options, fields, line",
    [
        (["-u", "256"], {}, "--login-retry-count=256: out of range"),
        (["-b", "maybe"], {}, "--enable-bios=maybe: neither true nor false"),
        (["--enable-lr", "true"], {"device": 0x3A02}, "--enable-lr=true: not supported for this adapter"),
        (["-d", "Auto"], {"device": 0x7102}, "--data-rate=Auto: the data rate is fixed"),
        (["-d", "fast"], {}, "--data-rate=fast: no value of this option"),
        (["-z", "2112"], {}, "--frame-size=2112: out of range"),
        (["-c", "Loop_Only"], {"supported": 0x80}, "--connection-options=Loop_Only: loop and a data rate of 16 Gbps or more"),
        (
            ["-c", "Loop_Only"],
            {"device": 0x3432, "subsystem": (0x1D4A, 0x0A12)},
            "--connection-options=Loop_Only: this model has no loop",
        ),
        (["-m", EVERY_COMPLETION, "-e", "1"], {}, "--interrupt-delay-timer=1: the operation mode has no delay"),
    ],
)
def test_a_refused_option_is_a_step(zfc, options, fields, line):
    result = logged(zfc, ["hbaparams", "setFile", IDENTIFIER, *options], host=one_port(**fields))
    assert result.steps_in(f"{CLASS}UpdateHBAParamsInFile: ") == ["Entered", line, "Exiting"]
    assert result.failures == []
