"""The fec node: `get` and `set` in both forms."""

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
    UNKNOWN,
    UNSUPPORTED,
    VIRTUAL,
    logged,
    one_port,
    run_both,
    statistics,
)
from zfc.host import DAHLIA, ELM_ONLY, HAZEL, IRIS, NO_LIST, every_device

SETTING_CALL = "TORPI_FCGetFECSupportInfo(port)"
MEZZ_CALL = "TORPI_IsMezzAdapter(port, 0)"
STATS_CALL = "TORPI_GetFWPrivateStats(port, null, 0)"
CHANGE_CALL = "TORPI_FCSetFECSupportInfo(port, {})"
RESET_CALL = "TORPI_ResetFECCounters(port)"
SETTING, MEZZ, STATS = "TORPI_FCGetFECSupportInfo", "TORPI_IsMezzAdapter", "TORPI_GetFWPrivateStats"
CHANGE, RESET = "TORPI_FCSetFECSupportInfo", "TORPI_ResetFECCounters"

GET_CALLS = [LIST_CALL, SETTING_CALL, MEZZ_CALL, STATS_CALL]
SET_CALLS = [LIST_CALL, SETTING_CALL, STATS_CALL, MEZZ_CALL]

READ_FAILED, UPDATE_FAILED = "Failed, FEC read failed", "Failed, FEC update failed"
READ_ONLY = "Failed, Read-Only parameter for non 16Gbps or Unknown speed or mezz adapter"
NO_FILE = "Failed, File not found"

COUNTERS = {"correctable": 7, "uncorrectable": 3}


def run(zfc, command, name, options=(), *, words=None, setting=0, mezz=0, block=None, env=None, **more):
    words = (IDENTIFIER, *options) if words is None else words
    env = {
        "HOSTILE_FEC": str(setting),
        "HOSTILE_SCRIPT_TORPI_IsMezzAdapter": f"0/{mezz:02x}",
        "HOSTILE_FW_STATS": (statistics(7, 3) if block is None else block).hex(),
        **(env or {}),
    }
    return run_both(zfc, "fec", command, "none", f"port/fec/{name}", words=words, env=env, **more)


def get(zfc, status, counters=None, **more):
    return run(zfc, "get", "report", values={"status": status, **(counters or COUNTERS)}, **more)


def change(zfc, options, status, *, reboot, **more):
    return run(zfc, "set", "set", options, values={"status": status, **COUNTERS, "reboot": reboot}, **more)


def change_fails(zfc, options, message, **more):
    usage = "Usage: set\r\n" if message == INVALID else ""
    return run(zfc, "set", "set-failed", options, values={"message": message}, usage=usage, **more)


UP, DOWN = 1, 3

# Mezzanine byte, port state, speed code, and what becomes of a setting of 0 and of 1.
CORRECTIONS = [
    (1, UP, 8, "true", "true"),
    (1, UP, 22, "true", "true"),
    (1, DOWN, 0, "true", "true"),
    (0, DOWN, 0, "false", "true"),
    (0, DOWN, 50, "false", "true"),
    (0, 0, 100, "false", "true"),
    (0, 2, 1, "false", "true"),
    (0, UP, 0, "false", "false"),
    (0, UP, 21, "false", "false"),
    (0, UP, 22, "false", "true"),
    (0, UP, 49, "false", "true"),
    (0, UP, 50, "true", "true"),
    (0, UP, 100, "true", "true"),
    (0, UP, 0xFFFFFFFF, "true", "true"),
    (2, UP, 21, "false", "false"),
    (255, DOWN, 21, "false", "true"),
]


@pytest.mark.parametrize("mezz, state, speed, off, on", CORRECTIONS)
class TestCorrection:
    def test_get(self, zfc, mezz, state, speed, off, on):
        host = one_port(state=state, speed=speed)
        result = get(zfc, off, setting=0, mezz=mezz, host=host)
        assert result.calls == GET_CALLS
        get(zfc, on, setting=1, mezz=mezz, host=host)

    def test_set_without_options(self, zfc, mezz, state, speed, off, on):
        host = one_port(state=state, speed=speed)
        result = change(zfc, [], off, reboot="false", setting=0, mezz=mezz, host=host)
        assert result.calls == SET_CALLS
        change(zfc, [], on, reboot="false", setting=1, mezz=mezz, host=host)

    def test_change(self, zfc, mezz, state, speed, off, on):
        host = one_port(state=state, speed=speed)
        allowed = mezz != 1 and (state != UP or 22 <= speed <= 49)
        for word, value in (("true", 1), ("false", 0)):
            if allowed:
                result = change(zfc, ["-f", word], word, reboot="true", setting=1 - value, mezz=mezz, host=host)
                assert result.calls == [*SET_CALLS, CHANGE_CALL.format(value)]
            else:
                result = change_fails(zfc, ["-f", word], READ_ONLY, mezz=mezz, host=host)
                assert result.calls == SET_CALLS


@pytest.mark.parametrize("setting, status", [(0, "false"), (1, "true"), (2, "true"), (0xFFFFFFFF, "true")])
def test_settings(zfc, setting, status):
    get(zfc, status, setting=setting)


@pytest.mark.parametrize(
    "stored, shown",
    [(0, 0), (1, 1), (0xFFFFFFFF, 4294967295), (0x100000000, 0), (0xFFFFFFFFFFFFFFFF, 4294967295)],
)
def test_counters_show_their_low_32_bits(zfc, stored, shown):
    get(zfc, "false", {"correctable": shown, "uncorrectable": 1}, block=statistics(stored, 1))
    get(zfc, "false", {"correctable": 2, "uncorrectable": shown}, block=statistics(2, stored))


NAMES = {"get": "failed", "set": "set-failed"}
ALL_FAIL = {SETTING: 1, STATS: 1, CHANGE: 1, RESET: 1}


@pytest.mark.parametrize("command", NAMES)
class TestBothCommands:
    @pytest.mark.parametrize(
        "words, options, message, calls",
        [
            pytest.param([], {}, INVALID, [], id="no identifier"),
            pytest.param(["nobody"], {}, INVALID, [], id="bad identifier"),
            pytest.param(["help"], {}, UNKNOWN, [], id="help word"),
            pytest.param([IDENTIFIER], {"host": NO_LIST}, NO_HOST, [LIST_CALL], id="no list"),
            pytest.param(
                [IDENTIFIER], {"host": one_port(device=0x3A02, interface=3)}, VIRTUAL, [LIST_CALL], id="virtual port"
            ),
            pytest.param([IDENTIFIER], {"host": one_port(device=0x3A02)}, UNSUPPORTED, [LIST_CALL], id="family"),
            pytest.param(
                [IDENTIFIER, "-f", "x", "-r", "x"], {}, READ_FAILED, [LIST_CALL, SETTING_CALL], id="setting"
            ),
        ],
    )
    def test_beginning(self, zfc, command, words, options, message, calls):
        """The checks in their order: each row fails at one and at all after it."""
        usage = f"Usage: {command}\r\n" if message in (INVALID, UNKNOWN) else ""
        values = {"message": message}
        result = run(
            zfc, command, NAMES[command], words=words, usage=usage, values=values, results=ALL_FAIL, mezz=1, **options
        )
        assert result.calls == calls

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_families(self, zfc, command, device):
        host = one_port(device=device)
        if device in (*ELM_ONLY, *HAZEL, *IRIS, *DAHLIA):
            values = {"status": "false", **COUNTERS}
            name = "report"
            if command == "set":
                name, values = "set", {**values, "reboot": "false"}
            run(zfc, command, name, values=values, host=host)
        else:
            result = run(zfc, command, NAMES[command], values={"message": UNSUPPORTED}, host=host)
            assert result.calls == [LIST_CALL]

    @pytest.mark.parametrize("call", [SETTING, STATS])
    @pytest.mark.parametrize("result, message", [(1, READ_FAILED), (149, READ_FAILED), (150, MAINTENANCE)])
    def test_read_failure(self, zfc, command, call, result, message):
        found = run(zfc, command, NAMES[command], values={"message": message}, results={call: result})
        calls = GET_CALLS if command == "get" else SET_CALLS
        ends = [made.split("(")[0] for made in calls].index(call)
        assert found.calls == calls[: ends + 1]

    @pytest.mark.parametrize("result", [1, 150, 151])
    def test_mezzanine_failure_is_a_read_failure_whatever_the_library_says(self, zfc, command, result):
        env = {"HOSTILE_SCRIPT_TORPI_IsMezzAdapter": f"{result}/01"}
        found = run(zfc, command, NAMES[command], values={"message": READ_FAILED}, env=env)
        assert found.calls == (GET_CALLS[:3] if command == "get" else SET_CALLS)

    def test_success_without_a_statistics_block(self, zfc, command):
        found = run(zfc, command, NAMES[command], values={"message": READ_FAILED}, env={"HOSTILE_FW_STATS": "null"})
        assert found.calls[-1] == STATS_CALL

    @pytest.mark.parametrize("place", range(3))
    def test_bracket_that_cannot_be_opened(self, zfc, command, place):
        """Every call has a bracket of its own."""
        calls = GET_CALLS if command == "get" else SET_CALLS
        name = calls[place].split("(")[0]
        found = run(zfc, command, NAMES[command], values={"message": NO_FILE}, spoil_log=f"{name}:directory")
        assert found.calls == calls[: place + 1]


class TestSet:
    @pytest.mark.parametrize("word, value", [("true", 1), ("TRUE", 1), ("false", 0), ("False", 0)])
    def test_status(self, zfc, word, value):
        for option in ("-f", "--fec-status", "--FEC-STATUS"):
            result = change(zfc, [option, word], "true" if value else "false", reboot="true", setting=1 - value)
            assert result.calls == [*SET_CALLS, CHANGE_CALL.format(value)]

    @pytest.mark.parametrize("word", ["maybe", "", "1", "on"])
    def test_bad_status(self, zfc, word):
        assert change_fails(zfc, ["-f", word], INVALID).calls == SET_CALLS

    def test_permission_goes_before_the_value(self, zfc):
        assert change_fails(zfc, ["-f", "maybe"], READ_ONLY, mezz=1).calls == SET_CALLS

    @pytest.mark.parametrize("word", ["reset", "RESET", "Reset"])
    def test_reset_shows_the_counters_from_before(self, zfc, word):
        for option in ("-r", "--reset"):
            result = change(zfc, [option, word], "false", reboot="true")
            assert result.calls == [*SET_CALLS, RESET_CALL]

    def test_reset_is_allowed_where_the_status_is_not(self, zfc):
        assert change(zfc, ["-r", "reset"], "true", reboot="true", mezz=1).calls == [*SET_CALLS, RESET_CALL]

    def test_both(self, zfc):
        result = change(zfc, ["-r", "reset", "-f", "true"], "true", reboot="true")
        assert result.calls == [*SET_CALLS, CHANGE_CALL.format(1), RESET_CALL]

    @pytest.mark.parametrize("options", [["-f"], ["-r"], ["--fec-status"], ["other", "words"]])
    def test_option_without_value_counts_as_not_given(self, zfc, options):
        assert change(zfc, options, "false", reboot="false").calls == SET_CALLS

    @pytest.mark.parametrize("call, options", [(CHANGE, ["-f", "true"]), (RESET, ["-r", "reset"])])
    @pytest.mark.parametrize("result, message", [(1, UPDATE_FAILED), (150, MAINTENANCE), (151, UPDATE_FAILED)])
    def test_failure(self, zfc, call, options, result, message):
        found = change_fails(zfc, options, message, results={call: result})
        assert found.calls[-1].startswith(call)

    def test_failed_status_leaves_the_counters_alone(self, zfc):
        found = change_fails(zfc, ["-f", "true", "-r", "reset"], UPDATE_FAILED, results={CHANGE: 1})
        assert found.calls == [*SET_CALLS, CHANGE_CALL.format(1)]

    @pytest.mark.parametrize("options, calls", [(["-f", "true"], []), (["-f", "true", "-r", "reset"], []), (["-r", "reset"], [])])
    def test_bracket_lost_ahead_of_the_first_change(self, zfc, options, calls):
        found = change_fails(zfc, options, NO_FILE, spoil_log=f"{MEZZ}:directory")
        assert found.calls == [*SET_CALLS, *calls]

    def test_bracket_lost_ahead_of_the_reset(self, zfc):
        found = change_fails(zfc, ["-f", "true", "-r", "reset"], NO_FILE, spoil_log=f"{CHANGE}:directory")
        assert found.calls == [*SET_CALLS, CHANGE_CALL.format(1)]


class TestEdgeCases:
    def test_set_without_options_shows_the_state_without_reboot(self, zfc):
        change(zfc, [], "true", reboot="false", setting=1)

    def test_mezzanine_adapter(self, zfc):
        get(zfc, "true", setting=0, mezz=1)
        change_fails(zfc, ["--fec-status", "false"], READ_ONLY, mezz=1)

    @pytest.mark.parametrize("speed", [0, 1, 21, 50, 100])
    def test_port_that_is_down_takes_a_change_at_any_speed(self, zfc, speed):
        host = one_port(state=DOWN, speed=speed)
        change(zfc, ["-f", "true"], "true", reboot="true", host=host)

    def test_speed_code_50(self, zfc):
        host = one_port(speed=50)
        get(zfc, "true", setting=0, host=host)
        change_fails(zfc, ["-f", "true"], READ_ONLY, host=host)

    def test_bad_reset_word_leaves_the_status_changed(self, zfc):
        result = change_fails(zfc, ["-f", "true", "-r", "clear"], INVALID)
        assert result.calls == [*SET_CALLS, CHANGE_CALL.format(1)]


@pytest.mark.parametrize("words", ["help", "HELP", "help ?"])
def test_help(zfc, words):
    result = zfc(f"-t port -s fec {words}")
    documents.check(result.stdout, "port/fec/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("command", NAMES)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, command):
    assert zfc(f"-t port -s fec {command} ?").stdout == b""
    assert zfc(f"-t port -s fec {command}cli ?").stdout == f"Usage: {command}\r\n".encode()


@pytest.mark.parametrize("words", [["get", IDENTIFIER], ["set", IDENTIFIER, "-f", "true"]], ids=["get", "set"])
def test_code_of_a_success_is_0(zfc, words):
    env = {"HOSTILE_FW_STATS": statistics(7, 3).hex()}
    assert zfc(["-t", "port", "-s", "fec", *words], host=one_port(state=DOWN), env=env, debug=65535).code == 0


CLASS = "PhysicalPortFECCmdsProcessor::"
COMMON = {"get": f"{CLASS}CmdGetCommon: ", "set": f"{CLASS}CmdSetCommon: "}


def fec_environment(mezz):
    return {
        "HOSTILE_FEC": "0",
        "HOSTILE_SCRIPT_TORPI_IsMezzAdapter": f"0/{mezz:02x}",
        "HOSTILE_FW_STATS": statistics().hex(),
    }


@pytest.mark.parametrize("command", COMMON)
@pytest.mark.parametrize(
    "options, failures",
    [
        ({"words": ["FC_x"]}, [NO_PORT]),
        ({"host": one_port(interface=3)}, ["Command not supported for vport"]),
        ({"host": one_port(device=0x3A02)}, ["Command not supported for this adapter"]),
        ({"spoil_log": "TORPI_GetAdapterList:directory"}, [NO_LIBRARY_LOG]),
        ({"env": {"HOSTILE_RESULT_TORPI_FCGetFECSupportInfo": "150"}}, ["Get FEC info failed err=150"]),
        ({"env": {"HOSTILE_SCRIPT_TORPI_IsMezzAdapter": "150/00"}}, ["Is mezzanine adapter failed err=150"]),
        ({"env": {"HOSTILE_RESULT_TORPI_GetFWPrivateStats": "4294967295"}}, ["Get firmware statistics failed err=-1"]),
        ({"env": {"HOSTILE_FW_STATS": "null"}}, ["Firmware statistics are NULL"]),
    ],
)
def test_failure_lines(zfc, command, options, failures):
    options = {**options, "env": {**fec_environment(0), **options.get("env", {})}}
    words = options.pop("words", [IDENTIFIER])
    assert logged(zfc, ["fec", command, *words], **options).failures == [COMMON[command] + line for line in failures]


@pytest.mark.parametrize(
    "words, mezz, results, failures",
    [
        (["-f", "on"], 0, {}, ["--fec-status=on: neither true nor false"]),
        (["-f", "true"], 1, {}, ["--fec-status=true: the setting cannot be changed"]),
        (["-r", "clear"], 0, {}, ["--reset=clear: not the word reset"]),
        (["-f", "true"], 0, {"TORPI_FCSetFECSupportInfo": 150}, ["Set FEC info failed err=150"]),
        (["-r", "reset"], 0, {"TORPI_ResetFECCounters": 3}, ["Reset FEC counters failed err=3"]),
    ],
)
def test_failure_lines_of_the_options(zfc, words, mezz, results, failures):
    host = one_port(speed=0x16)
    result = logged(
        zfc, ["fec", "set", IDENTIFIER, *words], env=fec_environment(mezz), results=results, host=host
    )
    assert result.failures == [COMMON["set"] + line for line in failures]


def test_steps_of_a_report(zfc):
    result = logged(zfc, ["fec", "get", IDENTIFIER], env=fec_environment(0))
    assert result.steps_in(f"{CLASS}CmdGetCommon: ") == ["Entered", "Exiting"]
    assert result.steps_in(f"{CLASS}DisplayFECInfo: ") == ["Entered", "Message=Success", "Exiting"]
