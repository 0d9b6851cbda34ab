"""The scmprofile node of a port: `get` and `set` in both forms."""

import pytest

from zfc import documents
from zfc.congestion import (
    FIRST,
    INVALID,
    LIST_CALL,
    MAINTENANCE,
    NO_FILE,
    NO_HOST,
    SECOND,
    VIRTUAL,
    WRONG_ADAPTER,
    one_port,
)
from zfc.documents import check_both
from zfc.host import DAHLIA, HAZEL, IRIS, NO_ADAPTERS, NO_LIST, every_device
from zfc.port import IDENTIFIER
from zfc.steps import around

GET = "-t port -s scmprofile get"
SET = "-t port -s scmprofile set"
READ = "TORPI_GetSCMRProfile"
READ_CALL = f"{READ}(port)"
WRITE = "TORPI_SetSCMRProfile"
READ_FAILED = "Failed, NVRAM read failed"
EXCLUSIVE = "Failed, Restore and Activation command-line options are mutually exclusive"
USAGE = {GET: "Usage: get\r\n", SET: "Usage: set\r\n"}

REST = bytes(range(0xB1, 0xBE))  # the bytes that mean nothing here and pass through
WORDS = {0: "Monitor_Only", 1: "Conservative", 2: "Moderate", 3: "Aggressive", 4: "Defensive"}


def profile(status=0, management=1, activation=2):
    return bytes([status, management, activation]) + REST


def write_call(record):
    return f"{WRITE}(port, {record.hex()})"


def values(configured="true", management="NVRAM", activation="Moderate", state="Online"):
    return {"configured": configured, "management": management, "activation": activation, "state": state}


def run(zfc, command, name, words=(), before=None, **options):
    options = {"host": one_port(), "env": {"HOSTILE_SCMR_PROFILE": (before or profile()).hex()}, **options}
    return check_both(zfc, command, f"port/scmprofile/{name}", words=words, **options)


def check_get(zfc, shown, before=None, words=(IDENTIFIER,), **options):
    return run(zfc, GET, "report", words, before, values=shown, **options)


def check_set(zfc, words, shown, written, before=None, **options):
    """`written` is the record that reaches the library."""
    result = run(zfc, SET, "report", [IDENTIFIER, *words], before, values=shown, **options)
    assert result.command_calls == [LIST_CALL, READ_CALL, write_call(written), READ_CALL]


def check_failed(zfc, command, message, words=(IDENTIFIER,), **options):
    return run(zfc, command, "failed", words, values={"message": message}, **options)


class TestGet:
    def test_report(self, zfc):
        """Whether the feature is on is not asked."""
        result = check_get(zfc, values(), words=[IDENTIFIER, "-r", "help", "?"])
        assert result.command_calls == [LIST_CALL, READ_CALL]

    @pytest.mark.parametrize("status, text", [(0, "true"), (1, "false"), (2, "false"), (255, "false")])
    def test_configuration_status(self, zfc, status, text):
        check_get(zfc, values(configured=text), profile(status=status))

    @pytest.mark.parametrize(
        "management, text", [(0, "Driver_Settings"), (1, "NVRAM"), (2, "NVRAM"), (255, "NVRAM")]
    )
    def test_management(self, zfc, management, text):
        check_get(zfc, values(management=text), profile(management=management))

    @pytest.mark.parametrize("activation, text", [*WORDS.items(), (5, "Unknown"), (255, "Unknown")])
    def test_activation(self, zfc, activation, text):
        check_get(zfc, values(activation=text), profile(activation=activation))

    @pytest.mark.parametrize("code, text", [(3, "Offline"), (0, "Unknown")])
    def test_port_state(self, zfc, code, text):
        check_get(zfc, values(state=text), host=one_port(state=code))

    @pytest.mark.parametrize("code, message", [(150, MAINTENANCE), *[(n, READ_FAILED) for n in (1, 13, 151, 2**32 - 1)]])
    def test_failed_read(self, zfc, code, message):
        result = check_failed(zfc, GET, message, results={READ: code})
        assert result.command_calls == [LIST_CALL, READ_CALL]

    def test_bracket_that_cannot_be_opened(self, zfc):
        result = check_failed(zfc, GET, NO_FILE, spoil_log="TORPI_GetAdapterList:directory")
        assert result.command_calls == [LIST_CALL]


class TestSet:
    @pytest.mark.parametrize("name", ["--activation", "-a", "--Activation", "-A"])
    @pytest.mark.parametrize("number", WORDS)
    def test_activation(self, zfc, name, number):
        before = profile(status=7, management=0, activation=9)
        shown = values(configured="false", activation=WORDS[number])
        check_set(zfc, [name, WORDS[number]], shown, profile(7, 1, number), before)

    @pytest.mark.parametrize("name", ["--restore", "-r", "--RESTORE", "-R"])
    def test_restore_leaves_the_profile_byte(self, zfc, name):
        shown = values(management="Driver_Settings", activation="Aggressive")
        check_set(zfc, [name, "Driver_Settings"], shown, profile(0, 0, 3), profile(0, 1, 3))

    @pytest.mark.parametrize("value", ["driver_settings", "DRIVER_SETTINGS"])
    def test_restore_value_in_any_case(self, zfc, value):
        check_set(zfc, ["-r", value], values(management="Driver_Settings"), profile(0, 0, 2))

    @pytest.mark.parametrize("value", ["defensive", "DEFENSIVE", "DeFenSive"])
    def test_activation_value_in_any_case(self, zfc, value):
        check_set(zfc, ["-a", value], values(activation="Defensive"), profile(0, 1, 4))

    @pytest.mark.parametrize(
        "words",
        [
            [],
            ["more", "words"],
            ["-a"],
            ["--restore"],
            ["Moderate"],
            ["--activation=Defensive"],
            ["-activation", "Defensive"],
            ["--", "-x", "Driver_Settings"],
        ],
    )
    def test_no_option_writes_what_was_read(self, zfc, words):
        record = profile(3, 5, 200)
        check_set(zfc, words, values("false", "NVRAM", "Unknown"), record, record)

    def test_first_of_several_counts(self, zfc):
        check_set(zfc, ["-a", "Defensive", "-a", "nonsense"], values(activation="Defensive"), profile(0, 1, 4))

    def test_other_words_between(self, zfc):
        check_set(zfc, ["x", "-a", "Defensive", "y", "-z"], values(activation="Defensive"), profile(0, 1, 4))

    def test_last_word_as_an_option_has_no_value(self, zfc):
        check_set(zfc, ["-a", "Defensive", "-r"], values(activation="Defensive"), profile(0, 1, 4))

    @pytest.mark.parametrize(
        "words",
        [
            ["-r", "driver"],
            ["-r", ""],
            ["-r", "Driver_Settings "],
            ["-r", "Moderate"],
            ["-r", "-a"],
            ["-r", "-a", "Moderate"],
            ["-a", "Driver_Settings"],
            ["-a", "moderat"],
            ["-a", "Unknown"],
            ["-a", "2"],
            ["-a", ""],
            ["-a", "-r"],
            ["-a", "%s%n"],
            ["-a", "x" * 5000],
            ["-r", "nonsense", "-a", "nonsense"],
            ["-r", "Driver_Settings", "-a", "nonsense"],
            ["-r", "nonsense", "-a", "Moderate"],
        ],
    )
    def test_invalid_value(self, zfc, words):
        result = check_failed(zfc, SET, INVALID, [IDENTIFIER, *words], usage=USAGE[SET])
        assert result.command_calls == [LIST_CALL, READ_CALL]

    @pytest.mark.parametrize("code, message", [(150, MAINTENANCE), *[(n, READ_FAILED) for n in (1, 13, 151, 2**32 - 1)]])
    def test_failed_read_ahead_of_the_options(self, zfc, code, message):
        result = check_failed(zfc, SET, message, [IDENTIFIER, "-a", "nonsense"], results={READ: code})
        assert result.command_calls == [LIST_CALL, READ_CALL]

    @pytest.mark.parametrize(
        "code, message",
        [(150, MAINTENANCE), *[(n, "Failed, NVRAM update failed") for n in (1, 20, 151, 2**32 - 1)]],
    )
    def test_failed_write(self, zfc, code, message):
        result = check_failed(zfc, SET, message, [IDENTIFIER, "-a", "Defensive"], results={WRITE: code})
        assert result.command_calls == [LIST_CALL, READ_CALL, write_call(profile(0, 1, 4))]

    @pytest.mark.parametrize("code, message", [(150, MAINTENANCE), *[(n, READ_FAILED) for n in (1, 13, 151, 2**32 - 1)]])
    def test_failed_read_after_the_write(self, zfc, code, message):
        env = {"HOSTILE_SCMR_PROFILE": profile().hex(), "HOSTILE_SCMR_READ_AGAIN": str(code)}
        result = check_failed(zfc, SET, message, [IDENTIFIER, "-a", "Defensive"], env=env)
        assert result.command_calls == [LIST_CALL, READ_CALL, write_call(profile(0, 1, 4)), READ_CALL]

    @pytest.mark.parametrize("spoiled, made", [("TORPI_GetAdapterList", 0), (READ, 1), (WRITE, 2)])
    def test_bracket_that_cannot_be_opened(self, zfc, spoiled, made):
        result = check_failed(zfc, SET, NO_FILE, spoil_log=f"{spoiled}:directory")
        assert result.command_calls == [LIST_CALL, READ_CALL, write_call(profile())][: made + 1]


# Each row fails at one check and at all that follow, so its place in the order shows.
@pytest.mark.parametrize("command", [GET, SET])
@pytest.mark.parametrize(
    "words, host, message, shows_usage, calls",
    [
        pytest.param([], NO_LIST, INVALID, True, [], id="no identifier"),
        pytest.param(["nobody"], NO_LIST, INVALID, True, [], id="bad identifier"),
        pytest.param(["help"], NO_LIST, "Failed, Unknown", True, [], id="help word"),
        pytest.param([IDENTIFIER], NO_LIST, NO_HOST, False, [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], NO_ADAPTERS, INVALID, True, [LIST_CALL], id="no adapters"),
        pytest.param(
            [IDENTIFIER],
            one_port(device=0x3432, capabilities=0, interface=3),
            WRONG_ADAPTER,
            False,
            [LIST_CALL],
            id="family",
        ),
        pytest.param(
            [IDENTIFIER], one_port(capabilities=0, interface=3), VIRTUAL, False, [LIST_CALL], id="virtual port"
        ),
        pytest.param(
            [IDENTIFIER], one_port(capabilities=FIRST), "Failed, Unknown", False, [LIST_CALL], id="capability"
        ),
    ],
)
def test_failure(zfc, command, words, host, message, shows_usage, calls):
    usage = USAGE[command] if shows_usage else ""
    result = check_failed(zfc, command, message, words, host=host, usage=usage, results={READ: 1})
    assert result.command_calls == calls


@pytest.mark.parametrize("device", every_device(), ids=hex)
def test_families(zfc, device):
    if device in HAZEL + IRIS + DAHLIA:
        check_get(zfc, values(), host=one_port(device=device))
    else:
        check_failed(zfc, GET, WRONG_ADAPTER, host=one_port(device=device))


class TestEdgeCases:
    def test_both_options_with_valid_values_exclude_each_other(self, zfc):
        for words in (["-r", "Driver_Settings", "-a", "Moderate"], ["--activation", "Moderate", "-r", "driver_settings"]):
            result = check_failed(zfc, SET, EXCLUSIVE, [IDENTIFIER, *words])
            assert result.command_calls == [LIST_CALL, READ_CALL]

    def test_both_options_with_another_restore_value(self, zfc):
        words = [IDENTIFIER, "--activation", "Moderate", "--restore", "Defaults"]
        check_failed(zfc, SET, INVALID, words, usage=USAGE[SET])

    def test_short_and_long_name_are_one_option(self, zfc):
        check_set(zfc, ["-a", "Defensive", "--activation", "Moderate"], values(activation="Defensive"), profile(0, 1, 4))

    def test_set_without_options_rewrites_the_current_profile(self, zfc):
        check_set(zfc, [], values(), profile())

    def test_monitor_only_is_0_under_nvram(self, zfc):
        check_set(zfc, ["-a", "Monitor_Only"], values(activation="Monitor_Only"), profile(0, 1, 0), profile(0, 0, 4))

    def test_driver_settings_leave_the_profile_as_it_was(self, zfc):
        shown = values(management="Driver_Settings", activation="Defensive")
        check_set(zfc, ["-r", "Driver_Settings"], shown, profile(0, 0, 4), profile(0, 1, 4))

    def test_stored_value_of_5_is_unknown(self, zfc):
        check_get(zfc, values(activation="Unknown"), profile(activation=5))

    def test_feature_that_is_off_does_not_matter(self, zfc):
        env = {"HOSTILE_SCMR_PROFILE": profile().hex(), "HOSTILE_VCLM_ENABLED": "0"}
        check_get(zfc, values(), env=env)
        check_set(zfc, [], values(), profile(), env=env)


CLASS = "PhysicalPortSCMProfileCmdsProcessor"
NO_BRACKET = "Failed to open /var/tmp/torpi-output.log file"
SPOILED = {"spoil_log": "TORPI_GetAdapterList:directory"}


@pytest.mark.parametrize("command, function", [(GET, "CmdGetCommon"), (SET, "CmdSetCommon")])
@pytest.mark.parametrize(
    "identifier, host, options, lines, code",
    [
        ("help", NO_LIST, {}, ["Get phy port failed err=5"], 5),
        (IDENTIFIER, one_port(device=0x3432, interface=3), {}, ["Command not supported for this adapter"], 35),
        (IDENTIFIER, one_port(capabilities=FIRST, interface=3), {}, ["Command not supported for vport"], 51),
        (IDENTIFIER, one_port(capabilities=~SECOND & 0xFFFFFFFF), {}, ["Driver/Firmware does not support SCM"], 45),
        (IDENTIFIER, one_port(), {"results": {READ: 150}}, ["Get SCM profile failed err=150"], 60),
        (IDENTIFIER, one_port(), {"results": {READ: 0xFFFFFFFF}}, ["Get SCM profile failed err=-1"], 13),
        (IDENTIFIER, one_port(), SPOILED, [NO_BRACKET], 19),
        (IDENTIFIER, one_port(), {}, [], 0),
    ],
)
def test_failures_in_the_debug_log(zfc, command, function, identifier, host, options, lines, code):
    result = zfc(f"{command} {identifier}", host=host, debug=65535, **options)
    assert result.failures == [f"{CLASS}::{function}: {line}" for line in lines]
    assert result.code == code


@pytest.mark.parametrize(
    "words, options, lines",
    [
        (["-r", "nothing"], {}, ["Invalid value nothing of --restore"]),
        (["-a", "%s%n"], {}, ["Invalid value %s%n of --activation"]),
        (
            ["-a", "Moderate", "--restore", "Driver_Settings"],
            {},
            ["Restore and Activation options are mutually exclusive"],
        ),
        (["-a", "Moderate"], {"results": {WRITE: 20}}, ["Set SCM profile failed err=20"]),
        (["-a", "Moderate"], {"env": {"HOSTILE_SCMR_READ_AGAIN": "13"}}, ["Get SCM profile failed err=13"]),
        (["-a", "Moderate"], {"spoil_log": f"{READ}:directory"}, [NO_BRACKET]),
    ],
)
def test_failures_of_a_change_in_the_debug_log(zfc, words, options, lines):
    result = zfc([*SET.split(), IDENTIFIER, *words], host=one_port(), debug=65535, **options)
    assert result.failures == [f"{CLASS}::CmdSetCommon: {line}" for line in lines]


@pytest.mark.parametrize(
    "results, display, message", [({}, "DisplaySCMProfile", "Success"), ({READ: 1}, "DisplayError", READ_FAILED)]
)
def test_steps_in_the_debug_log(zfc, results, display, message):
    result = zfc(f"{SET}cli {IDENTIFIER}", host=one_port(), results=results, debug=65535)
    assert result.steps_of(CLASS) == around(
        f"{CLASS}::CmdSetCli",
        *around(f"{CLASS}::CmdSetCommon", *around(f"{CLASS}::{display}", f"{CLASS}::{display}: Message={message}")),
    )


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port -s scmprofile {words}")
    documents.check(result.stdout, "port/scmprofile/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("get ?", ""), ("set ?", ""), ("getcli ?", USAGE[GET]), ("setcli ?", USAGE[SET])])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port -s scmprofile {words}")
    assert result.stdout == text.encode()
    assert result.command_calls == []
