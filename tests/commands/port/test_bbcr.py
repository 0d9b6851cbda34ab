"""The bbcr node: `get`, `setFile` and `set` in both forms."""

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
    bbcr,
    lines,
    logged,
    one_port,
    run_both,
)
from zfc.host import DAHLIA, HAZEL, IRIS, NO_LIST, every_device

READ_CALL = "TORPI_FCGetBBCSupportInfoEx(port, zeroed buffer, 64)"
WRITE_CALL = "TORPI_FCSetBBCSupportInfo(port, {}, {})"
READ, WRITE = "TORPI_FCGetBBCSupportInfoEx", "TORPI_FCSetBBCSupportInfo"
READ_FAILED, UPDATE_FAILED = "Failed, NVRAM read failed", "Failed, NVRAM update failed"
NO_FILE = "Failed, File not found"


def data(status="true", configured=5, *, online=True, negotiated=7, reason=None):
    text = f"BBCR Status: {status}\n      BBCR Configured: {configured}\n"
    if online:
        text += f"      BBCR State: Online\n      BBCR Negotiated: {negotiated}\n"
    else:
        text += "      BBCR State: Offline\n"
        if reason is not None:
            text += f"      BBCR Offline Reason Code: {reason}\n"
    return text


FILE = lines({"BBCR_Count": 5, "BBCR_Status": 1})


def run(zfc, command, name, options=(), *, words=None, record=None, **more):
    words = (IDENTIFIER, *options) if words is None else words
    buffers = {"bbcr": bbcr() if record is None else record}
    return run_both(zfc, "bbcr", command, "BBCR", f"port/bbcr/{name}", words=words, buffers=buffers, **more)


def get(zfc, shown, **more):
    return run(zfc, "get", "report", values={"data": shown}, **more)


def set_file(zfc, options, shown, **more):
    return run(zfc, "setFile", "report", options, values={"data": shown}, **more)


def set_file_fails(zfc, options, message, **more):
    usage = "Usage: setFile\r\n" if message == INVALID else ""
    return run(zfc, "setFile", "failed", options, values={"message": message}, usage=usage, **more)


def commit(zfc, staged, shown, **more):
    return run(zfc, "set", "set", staged=staged, values={"data": shown, "reboot": "true"}, **more)


def commit_fails(zfc, staged, message, **more):
    usage = "Usage: set\r\n" if message == INVALID else ""
    return run(zfc, "set", "set-failed", staged=staged, values={"message": message}, usage=usage, **more)


class TestGet:
    @pytest.mark.parametrize(
        "record, shown",
        [
            (bbcr(), data()),
            (bbcr(status=0), data("false")),
            (bbcr(status=255, configured=255, negotiated=255), data("true", 255, negotiated=255)),
            (bbcr(state=2), data()),
            (bbcr(state=255, reason=b"never shown"), data()),
            (bbcr(state=0), data(online=False)),
            (bbcr(state=0, reason=b"Link down"), data(online=False, reason="Link down")),
            (bbcr(state=0, reason=b"r" * 64), data(online=False, reason="r" * 64)),
            (bbcr(state=0, reason=b"100%% %s"), data(online=False, reason="100% ")),
        ],
    )
    def test_shows_the_device(self, zfc, record, shown):
        result = get(zfc, shown, record=record)
        assert result.calls == [LIST_CALL, READ_CALL]
        assert result.staged is None

    def test_does_not_look_at_the_staged_file(self, zfc):
        staged = lines({"BBCR_Count": 99, "BBCR_Status": 0})
        assert get(zfc, data(), staged=staged).staged == staged


NAMES = {"get": "failed", "setFile": "failed", "set": "set-failed"}
ASTER_VIRTUAL = one_port(device=0x3A02, interface=3)


@pytest.mark.parametrize("command", NAMES)
@pytest.mark.parametrize(
    "words, options, message, calls",
    [
        pytest.param([], {}, INVALID, [], id="no identifier"),
        pytest.param(["nobody"], {}, INVALID, [], id="bad identifier"),
        pytest.param(["?"], {}, UNKNOWN, None, id="question mark"),
        pytest.param(["help"], {}, UNKNOWN, [], id="help word"),
        pytest.param([IDENTIFIER], {"host": NO_LIST}, NO_HOST, [LIST_CALL], id="no list"),
        pytest.param([IDENTIFIER], {"host": ASTER_VIRTUAL}, VIRTUAL, [LIST_CALL], id="virtual port"),
        pytest.param([IDENTIFIER], {"host": one_port(device=0x3A02)}, UNSUPPORTED, [LIST_CALL], id="family"),
        pytest.param([IDENTIFIER], {}, READ_FAILED, [LIST_CALL, READ_CALL], id="read"),
    ],
)
def test_beginning(zfc, command, words, options, message, calls):
    """The checks in their order: each row fails at one and at all after it."""
    if calls is None:
        assert zfc(["-t", "port", "-s", "bbcr", command, *words]).stdout == b""
        return
    usage = f"Usage: {command}\r\n" if message in (INVALID, UNKNOWN) else ""
    result = run(zfc, command, NAMES[command], words=words, usage=usage, values={"message": message}, results={READ: 1}, **options)
    assert result.calls == calls
    assert result.staged is None


@pytest.mark.parametrize("command", NAMES)
class TestAllCommands:
    @pytest.mark.parametrize("result, message", [(1, READ_FAILED), (149, READ_FAILED), (150, MAINTENANCE), (151, READ_FAILED)])
    def test_read_failure(self, zfc, command, result, message):
        found = run(zfc, command, NAMES[command], staged=FILE, values={"message": message}, results={READ: result})
        assert found.calls == [LIST_CALL, READ_CALL]
        assert found.staged == FILE

    def test_bracket_that_cannot_be_opened(self, zfc, command):
        spoil = "TORPI_GetAdapterList:directory"
        found = run(zfc, command, NAMES[command], staged=FILE, values={"message": NO_FILE}, spoil_log=spoil)
        assert found.calls == [LIST_CALL]

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_families(self, zfc, command, device):
        has = device in (*HAZEL, *IRIS, *DAHLIA)
        if not has:
            values = {"message": UNSUPPORTED}
            found = run(zfc, command, NAMES[command], staged=FILE, values=values, host=one_port(device=device))
            assert found.calls == [LIST_CALL]
            return
        values = {"data": data(), "reboot": "true"} if command == "set" else {"data": data()}
        name = "set" if command == "set" else "report"
        run(zfc, command, name, staged=FILE, values=values, host=one_port(device=device))


class TestSetFile:
    def test_creates_the_file_from_the_device(self, zfc):
        result = set_file(zfc, [], data())
        assert result.staged == FILE
        assert result.calls == [LIST_CALL, READ_CALL]

    def test_shows_the_files_values_with_the_devices_state(self, zfc):
        record = bbcr(status=0, configured=2, state=0, reason=b"Not negotiated")
        staged = lines({"BBCR_Count": 9, "BBCR_Status": 1})
        result = set_file(zfc, [], data("true", 9, online=False, reason="Not negotiated"), record=record, staged=staged)
        assert result.staged == staged

    def test_options(self, zfc):
        result = set_file(zfc, ["--bbcr-configured", "12", "--bbcr-status", "False"], data("false", 12))
        assert result.staged == lines({"BBCR_Count": 12, "BBCR_Status": 0})

    @pytest.mark.parametrize("options", [["-b", "maybe"], ["-b", "1"], ["-c", "16"], ["-c", "-1"], ["-c", "3", "-b", "x"]])
    def test_refused(self, zfc, options):
        assert set_file_fails(zfc, options, INVALID).staged == FILE

    def test_device_value_out_of_range(self, zfc):
        result = set_file_fails(zfc, [], INVALID, record=bbcr(configured=16))
        assert result.staged == lines({"BBCR_Count": 16, "BBCR_Status": 1})

    def test_failed_file_is_reported_as_such(self, zfc):
        (zfc.staging / f"BBCR_{IDENTIFIER}_tmp").mkdir()
        staged = zfc.staging / f"BBCR_{IDENTIFIER}"
        staged.write_bytes(FILE)
        result = zfc(["-t", "port", "-s", "bbcr", "setFile", IDENTIFIER, "-c", "1"], host=one_port(), buffers={"bbcr": bbcr()})
        documents.check(result.stdout, "port/bbcr/failed.xml", message=NO_FILE)
        assert staged.read_bytes() == FILE


class TestSet:
    def test_sends_the_two_bytes(self, zfc):
        result = commit(zfc, lines({"BBCR_Count": 15, "BBCR_Status": 0}), data("false", 15))
        assert result.calls == [LIST_CALL, READ_CALL, WRITE_CALL.format(0, 15)]
        assert result.staged is None

    def test_never_asks_whether_a_reboot_is_needed(self, zfc):
        result = commit(zfc, FILE, data(), reboot=0)
        assert result.calls == [LIST_CALL, READ_CALL, WRITE_CALL.format(1, 5)]

    def test_missing_keys_keep_the_devices_values(self, zfc):
        result = commit(zfc, b"# nothing here\n", data())
        assert result.calls[-1] == WRITE_CALL.format(1, 5)

    def test_without_a_file_is_unknown_with_code_0(self, zfc):
        result = commit_fails(zfc, None, UNKNOWN, debug=4)
        assert result.code == 0
        assert result.calls == [LIST_CALL, READ_CALL]

    @pytest.mark.parametrize("staged", [{"BBCR_Status": 2}, {"BBCR_Count": 16}, {"BBCR_Status": 257}, {"BBCR_Count": 256}])
    def test_bad_value_keeps_the_file(self, zfc, staged):
        result = commit_fails(zfc, lines(staged), INVALID)
        assert result.calls == [LIST_CALL, READ_CALL]
        assert result.staged == lines(staged)

    @pytest.mark.parametrize("result, message", [(1, UPDATE_FAILED), (150, MAINTENANCE), (151, UPDATE_FAILED)])
    def test_write_failure_keeps_the_file(self, zfc, result, message):
        found = commit_fails(zfc, FILE, message, results={WRITE: result})
        assert found.calls == [LIST_CALL, READ_CALL, WRITE_CALL.format(1, 5)]
        assert found.staged == FILE

    def test_bracket_lost_ahead_of_the_write(self, zfc):
        found = commit_fails(zfc, FILE, NO_FILE, spoil_log=f"{READ}:directory")
        assert found.calls == [LIST_CALL, READ_CALL]
        assert found.staged == FILE


class TestEdgeCases:
    @pytest.mark.parametrize("command", NAMES)
    def test_port_outside_the_three_groups(self, zfc, command):
        values = {"message": UNSUPPORTED}
        run(zfc, command, NAMES[command], values=values, host=one_port(device=0x3432))

    def test_count_of_15_passes_and_16_does_not(self, zfc):
        assert set_file(zfc, ["-c", "15"], data(configured=15)).staged == lines({"BBCR_Count": 15, "BBCR_Status": 1})
        set_file_fails(zfc, ["-c", "16"], INVALID)

    def test_true_in_capitals_stores_1(self, zfc):
        assert set_file(zfc, ["-b", "TRUE"], data(), record=bbcr(status=0)).staged == FILE

    def test_offline_port_without_reason_shows_neither_reason_nor_negotiated_value(self, zfc):
        get(zfc, data(online=False), record=bbcr(state=0, negotiated=9))

    def test_reboot_is_required_even_when_nothing_changes(self, zfc):
        commit(zfc, FILE, data())


@pytest.mark.parametrize("words", ["help", "HELP", "help ?"])
def test_help(zfc, words):
    result = zfc(f"-t port -s bbcr {words}")
    documents.check(result.stdout, "port/bbcr/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("command", NAMES)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, command):
    assert zfc(f"-t port -s bbcr {command} ?").stdout == b""
    assert zfc(f"-t port -s bbcr {command}cli ?").stdout == f"Usage: {command}\r\n".encode()


CLASS = "PhysicalPortBBCRCmdsProcessor::"
GET, SET_FILE, SET = f"{CLASS}CmdGetCommon: ", f"{CLASS}CmdSetFileCommon: ", f"{CLASS}CmdSetCommon: "


@pytest.mark.parametrize(
    "words, options, failures",
    [
        (["get", "FC_x"], {}, [f"{GET}{NO_PORT}"]),
        (["get"], {"host": one_port(interface=3)}, [f"{GET}Command not supported for vport"]),
        (["setFile"], {"host": one_port(device=0x3432)}, [f"{SET_FILE}Command not supported for this adapter"]),
        (["set"], {"spoil_log": "TORPI_GetAdapterList:directory"}, [f"{SET}{NO_LIBRARY_LOG}"]),
        (["get"], {"results": {READ: 150}}, [f"{GET}Get BBCR info failed err=150"]),
        (["setFile"], {"results": {READ: 0xFFFFFFFF}}, [f"{SET_FILE}Get BBCR info failed err=-1"]),
        (["set"], {}, [f"{SET}nothing is staged"]),
        (
            ["set"],
            {"staged": ("BBCR", lines({"BBCR_Count": 16}))},
            [f"{CLASS}ReadBBCRFromFile: BBCR_Count=16 is out of range"],
        ),
        (
            ["set"],
            {"staged": ("BBCR", FILE), "results": {WRITE: 7}},
            [f"{SET}Set BBCR info failed err=7"],
        ),
    ],
)
def test_failure_lines(zfc, words, options, failures):
    command, identifier = (words + [IDENTIFIER])[:2]
    assert logged(zfc, ["bbcr", command, identifier], **options).failures == failures


def test_steps_of_a_staged_change(zfc):
    result = logged(zfc, ["bbcr", "setFile", IDENTIFIER, "-c", "3"])
    assert result.steps_in(f"{CLASS}CmdSetFileCommon: ") == ["Entered", "BBCR_Status=1", "BBCR_Count=5", "Exiting"]
    assert result.steps_in(f"{CLASS}CreateBBCRFile: ") == ["Entered", "Exiting"]
    assert result.steps_in(f"{CLASS}UpdateBBCRInFile: ") == ["Entered", "Exiting"]
    assert result.steps_in(f"{CLASS}ReadBBCRFromFile: ") == ["Entered", "BBCR_Status=1", "BBCR_Count=3", "Exiting"]
    assert result.steps_in(f"{CLASS}DisplayBBCRInfo: ") == ["Entered", "Message=Success", "Exiting"]
    assert result.failures == []


def test_a_refused_option_is_a_step(zfc):
    result = logged(zfc, ["bbcr", "setFile", IDENTIFIER, "-c", "16"])
    assert result.steps_in(f"{CLASS}UpdateBBCRInFile: ") == ["Entered", "--bbcr-configured=16: out of range", "Exiting"]
    assert result.steps_in(f"{CLASS}DisplayError: ") == ["Entered", f"Message={INVALID}", "Exiting"]
    assert result.failures == []
