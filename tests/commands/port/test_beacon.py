"""The beacon node: `get` and `set` in both forms."""

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
    turns,
)
from zfc.host import ASTER, BIRCH, DAHLIA, ELM_ONLY, HAZEL, IRIS, NO_LIST, every_device

MEZZ_CALL = "TORPI_IsMezzAdapter(port, 0)"
READ_CALL = "TORPI_GetAdapterBeaconStatus(port)"
WRITE_CALL = "TORPI_UpdateAdapterBeaconStatus(port, {})"
MEZZ, READ, WRITE = "TORPI_IsMezzAdapter", "TORPI_GetAdapterBeaconStatus", "TORPI_UpdateAdapterBeaconStatus"

READ_FAILED, UPDATE_FAILED = "Failed, Beacon read failed", "Failed, Beacon update failed"
NO_FILE = "Failed, File not found"


def run(zfc, command, words, state, *, message="Success", beacon=0, mezz=0, env=None, **more):
    usage = f"Usage: {command}\r\n" if message in (INVALID, UNKNOWN) else ""
    env = {
        "HOSTILE_BEACON": str(beacon),
        "HOSTILE_SCRIPT_TORPI_IsMezzAdapter": f"0/{mezz:02x}",
        **(env or {}),
    }
    values = {"message": message, "state": state}
    options = {"words": words, "usage": usage, "values": values, "env": env, **more}
    return run_both(zfc, "beacon", command, "none", "port/beacon/report", **options)


def fails(zfc, command, words, message, **more):
    return run(zfc, command, words, "Unknown", message=message, **more)


WORDS = {"get": [IDENTIFIER], "set": [IDENTIFIER, "ON"]}


@pytest.mark.parametrize("beacon, state", [(0, "OFF"), (1, "ON"), (2, "Unknown"), (0xFFFFFFFF, "Unknown")])
def test_get(zfc, beacon, state):
    result = run(zfc, "get", [IDENTIFIER], state, beacon=beacon)
    assert result.calls == [LIST_CALL, MEZZ_CALL, READ_CALL]


@pytest.mark.parametrize("word, value", [("ON", 1), ("on", 1), ("On", 1), ("OFF", 0), ("off", 0), ("oFf", 0)])
def test_set(zfc, word, value):
    result = run(zfc, "set", [IDENTIFIER, word], "ON" if value else "OFF", beacon=1 - value)
    assert result.calls == [LIST_CALL, MEZZ_CALL, WRITE_CALL.format(value), READ_CALL]


@pytest.mark.parametrize("word", ["blink", "", "1", "ONN", "O"])
def test_set_to_another_word(zfc, word):
    result = fails(zfc, "set", [IDENTIFIER, word], INVALID)
    assert result.calls == [LIST_CALL, MEZZ_CALL]


def test_set_ignores_more_words(zfc):
    run(zfc, "set", [IDENTIFIER, "OFF", "ON", "?"], "OFF", beacon=1)


ALL_FAIL = {READ: 1, WRITE: 1}
ELM_MEZZ = {"host": one_port(device=0x3432), "mezz": 1}


@pytest.mark.parametrize("command", WORDS)
class TestBothCommands:
    @pytest.mark.parametrize(
        "words, options, message, calls",
        [
            pytest.param([], {}, INVALID, [], id="no identifier"),
            pytest.param(["nobody", "ON"], {}, INVALID, [], id="bad identifier"),
            pytest.param(["help", "ON"], {}, UNKNOWN, [], id="help word"),
            pytest.param([IDENTIFIER, "ON"], {"host": NO_LIST}, NO_HOST, [LIST_CALL], id="no list"),
            pytest.param(
                [IDENTIFIER, "ON"],
                {"host": one_port(device=0x7102, interface=3), "mezz": 1},
                VIRTUAL,
                [LIST_CALL],
                id="virtual port",
            ),
            pytest.param([IDENTIFIER, "x"], ELM_MEZZ, UNSUPPORTED, [LIST_CALL, MEZZ_CALL], id="mezzanine"),
            pytest.param(
                [IDENTIFIER, "x"], {"host": one_port(device=0x7102)}, UNSUPPORTED, [LIST_CALL, MEZZ_CALL], id="family"
            ),
        ],
    )
    def test_beginning(self, zfc, command, words, options, message, calls):
        """The checks in their order: each row fails at one and at all after it."""
        assert fails(zfc, command, words, message, results=ALL_FAIL, **options).calls == calls

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_families(self, zfc, command, device):
        host = one_port(device=device)
        if device in (*ASTER, *BIRCH, *ELM_ONLY, *HAZEL, *IRIS, *DAHLIA):
            run(zfc, command, WORDS[command], "ON", host=host, beacon=1)
        else:
            result = fails(zfc, command, WORDS[command], UNSUPPORTED, host=host)
            assert result.calls == [LIST_CALL, MEZZ_CALL]

    @pytest.mark.parametrize("result", [1, 149, 150, 0xFFFFFFFF])
    def test_mezzanine_failure_is_a_read_failure_whatever_the_library_says(self, zfc, command, result):
        env = {"HOSTILE_SCRIPT_TORPI_IsMezzAdapter": f"{result}/01"}
        found = fails(zfc, command, WORDS[command], READ_FAILED, env=env)
        assert found.calls == [LIST_CALL, MEZZ_CALL]

    @pytest.mark.parametrize("mezz", [0, 2, 255])
    def test_only_1_is_a_mezzanine_adapter(self, zfc, command, mezz):
        run(zfc, command, WORDS[command], "ON", beacon=1, mezz=mezz)

    @pytest.mark.parametrize("result, message", [(1, READ_FAILED), (149, READ_FAILED), (150, MAINTENANCE), (151, READ_FAILED)])
    def test_read_failure(self, zfc, command, result, message):
        found = fails(zfc, command, WORDS[command], message, results={READ: result})
        assert found.calls[-1] == READ_CALL

    def test_bracket_that_cannot_be_opened(self, zfc, command):
        found = fails(zfc, command, WORDS[command], NO_FILE, spoil_log="TORPI_GetAdapterList:directory")
        assert found.calls == [LIST_CALL]
        found = fails(zfc, command, WORDS[command], NO_FILE, spoil_log=f"{MEZZ}:directory")
        assert found.calls == [LIST_CALL, MEZZ_CALL]


@pytest.mark.parametrize("result, message", [(1, UPDATE_FAILED), (149, UPDATE_FAILED), (150, MAINTENANCE), (151, UPDATE_FAILED)])
def test_write_failure(zfc, result, message):
    found = fails(zfc, "set", [IDENTIFIER, "ON"], message, results={WRITE: result})
    assert found.calls == [LIST_CALL, MEZZ_CALL, WRITE_CALL.format(1)]


def test_bracket_lost_ahead_of_the_read_back(zfc):
    found = fails(zfc, "set", [IDENTIFIER, "ON"], NO_FILE, spoil_log=f"{WRITE}:directory")
    assert found.calls == [LIST_CALL, MEZZ_CALL, WRITE_CALL.format(1)]


class TestEdgeCases:
    def test_small_letters_work_and_another_word_does_not_touch_the_device(self, zfc):
        run(zfc, "set", [IDENTIFIER, "on"], "ON")
        assert WRITE not in str(fails(zfc, "set", [IDENTIFIER, "blink"], INVALID).calls)

    def test_failed_read_back_is_reported_although_the_state_has_changed(self, zfc):
        found = fails(zfc, "set", [IDENTIFIER, "ON"], READ_FAILED, env=turns(GetAdapterBeaconStatus=[5]))
        assert found.calls == [LIST_CALL, MEZZ_CALL, WRITE_CALL.format(1), READ_CALL]

    @pytest.mark.parametrize("command", WORDS)
    def test_mezzanine_adapter_refuses_both(self, zfc, command):
        fails(zfc, command, WORDS[command], UNSUPPORTED, mezz=1)

    def test_other_state_is_unknown_together_with_success(self, zfc):
        run(zfc, "get", [IDENTIFIER], "Unknown", beacon=7)

    def test_missing_state_asks_nothing_of_the_device(self, zfc):
        assert fails(zfc, "set", [IDENTIFIER], INVALID).calls == [LIST_CALL]


@pytest.mark.parametrize("words", ["help", "HELP", "help ?"])
def test_help(zfc, words):
    result = zfc(f"-t port -s beacon {words}")
    documents.check(result.stdout, "port/beacon/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("command", WORDS)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, command):
    assert zfc(f"-t port -s beacon {command} ?").stdout == b""
    assert zfc(f"-t port -s beacon {command}cli ?").stdout == f"Usage: {command}\r\n".encode()


CLASS = "PhysicalPortBeaconCmdsProcessor::"
COMMON = {"get": f"{CLASS}CmdGetCommon: ", "set": f"{CLASS}CmdSetCommon: "}


@pytest.mark.parametrize("command", COMMON)
@pytest.mark.parametrize(
    "options, failures",
    [
        ({"words": ["FC_x", "ON"]}, [NO_PORT]),
        ({"host": one_port(interface=3)}, ["Command not supported for vport"]),
        ({"host": one_port(device=0x7102)}, ["Command not supported for this adapter"]),
        ({"spoil_log": "TORPI_GetAdapterList:directory"}, [NO_LIBRARY_LOG]),
        ({"env": {"HOSTILE_RESULT_TORPI_IsMezzAdapter": "150"}}, ["Is mezzanine adapter failed err=150"]),
        ({"env": {"HOSTILE_RESULT_TORPI_GetAdapterBeaconStatus": "9"}}, ["Get beacon status failed err=9"]),
    ],
)
def test_failure_lines(zfc, command, options, failures):
    options = {**options}
    words = options.pop("words", [IDENTIFIER, "ON"])
    assert logged(zfc, ["beacon", command, *words], **options).failures == [COMMON[command] + line for line in failures]


@pytest.mark.parametrize(
    "words, results, failures",
    [
        ([], {}, ["beacon state not given"]),
        (["blink"], {}, ["beacon state blink is unknown"]),
        (["ON"], {"TORPI_UpdateAdapterBeaconStatus": 0xFFFFFFFF}, ["Update beacon status failed err=-1"]),
    ],
)
def test_failure_lines_of_set(zfc, words, results, failures):
    result = logged(zfc, ["beacon", "set", IDENTIFIER, *words], results=results)
    assert result.failures == [COMMON["set"] + line for line in failures]


def test_documents_have_their_functions(zfc):
    assert logged(zfc, ["beacon", "get", IDENTIFIER]).steps_in(f"{CLASS}DisplayBeaconInfo: ") == [
        "Entered",
        "Message=Success",
        "Exiting",
    ]
    zfc.var_tmp.joinpath("zfcesxcli.log").unlink()
    assert logged(zfc, ["beacon", "set", IDENTIFIER]).steps_in(f"{CLASS}DisplayError: ") == [
        "Entered",
        f"Message={INVALID}",
        "Exiting",
    ]
