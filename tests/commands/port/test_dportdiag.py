"""The dportdiag node: `get`, `set` and `run` in both forms."""

import pytest

from zfc import documents
from zfc.diag import (
    LIST_CALL,
    LOOKUP,
    NO_LOG,
    SECOND_INTERFACE,
    FreshLog,
    check_failures,
    dport_record,
    no_output_file,
    one_port,
    port_failures,
    script,
    step,
)
from zfc.documents import check_both
from zfc.host import DAHLIA, ELM_ONLY, HAZEL, IRIS, NO_LIST, every_device
from zfc.port import IDENTIFIER
from zfc.preload import needs_preload, preloaded

NODE = "-t port -s dportdiag"
USAGES = {"get": "Usage: get\r\n", "set": "Usage: set\r\n", "run": "Usage: set\r\n"}

MEZZ_CALL = "TORPI_IsMezzAdapter(port, 0)"
OPTION_CALL = "TORPI_CheckAdapterDPortOption(port)"
ENABLE_CALL = "TORPI_ConfigureAdapterDPortSettings(port, 1, 0)"
DISABLE_CALL = "TORPI_ConfigureAdapterDPortSettings(port, 0, 0)"
REBOOT_CALL = "TORPI_IsRebootRequired(1)"
TEST_CALL = "TORPI_DiagnosticDPortTest(port, zeroed buffer)"
TEST_V2_CALL = "TORPI_DiagnosticDPortTestV2(port, zeroed buffer)"

GUARD_CALLS = [LIST_CALL, MEZZ_CALL]
RUN_CALLS = [*GUARD_CALLS, OPTION_CALL]

INVALID = "Failed, Invalid parameter"
UNSUPPORTED = "Failed, Feature not supported for this adapter"
READ_FAILED = "Failed, DPortDiag read failed"
NO_FILE = "Failed, File not found"

WITH_DPORT = {*ELM_ONLY, *HAZEL, *IRIS, *DAHLIA}

NOT_MEZZ = step(0, b"\0")
ENABLED = step(1)
DISABLED = step(0)


@pytest.fixture
def zfc(zfc):
    return FreshLog(zfc)


def answers(**calls):
    """A library whose port is no mezzanine card and is a diagnostic port, unless the calls say otherwise."""
    return script(**{"IsMezzAdapter": [NOT_MEZZ], "CheckAdapterDPortOption": [ENABLED], **calls})


def check_get(zfc, message="Success", enabled=True, words=(IDENTIFIER,), env=None, **options):
    values = {"message": message, "status": "true" if enabled else "false"}
    options.setdefault("host", one_port())
    return check_both(
        zfc, f"{NODE} get", "port/dportdiag/get", words=words, values=values, env=env or answers(), **options
    )


def check_set(zfc, words, message="Success", required=False, enabled=False, env=None, **options):
    values = {"message": message, "reboot": str(required).lower(), "status": str(enabled).lower()}
    options.setdefault("host", one_port())
    options.setdefault("reboot", 0)
    return check_both(
        zfc, f"{NODE} set", "port/dportdiag/set", words=words, values=values, env=env or answers(), **options
    )


def check_run(zfc, name, values=None, words=(IDENTIFIER,), env=None, **options):
    options.setdefault("host", one_port())
    return check_both(
        zfc, f"{NODE} run", f"port/dportdiag/{name}", words=words, values=values, env=env or answers(), **options
    )


def check_run_failed(zfc, message, **options):
    return check_run(zfc, "failed", {"message": message}, **options)


def run_v2(*steps):
    return answers(DiagnosticDPortTestV2=steps)


# The guard that the three commands share, check by check: each row fails at one check and at all that follow.
MEZZ = step(0, b"\1")
GUARD = [
    pytest.param([], {}, INVALID, True, [], id="no identifier"),
    pytest.param(["FCX_21:00:00:11:22:33:44:55"], {}, INVALID, True, [], id="another word"),
    pytest.param([IDENTIFIER.lower()], {}, INVALID, True, [LIST_CALL], id="lower-case word"),
    pytest.param(["help"], {}, "Failed, Unknown", True, [], id="help word"),
    pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", False, [LIST_CALL], id="no list"),
    pytest.param(
        [IDENTIFIER],
        {"host": one_port(interface=3, device=0x3A02), "env": answers(IsMezzAdapter=[step(13)])},
        "Failed, Feature not supported for virtual port",
        False,
        [LIST_CALL],
        id="virtual port",
    ),
    pytest.param(
        [IDENTIFIER],
        {"host": one_port(device=0x3A02), "spoil_log": "TORPI_GetAdapterList:directory"},
        NO_FILE,
        False,
        [LIST_CALL],
        id="no library log",
    ),
    *[
        pytest.param(
            [IDENTIFIER],
            {"host": one_port(device=0x3A02), "env": answers(IsMezzAdapter=[step(result)])},
            READ_FAILED,
            False,
            GUARD_CALLS,
            id=f"mezzanine flag fails with {result}",
        )
        for result in (1, 150, 151)
    ],
    pytest.param([IDENTIFIER], {"env": answers(IsMezzAdapter=[MEZZ])}, UNSUPPORTED, False, GUARD_CALLS, id="mezzanine"),
    pytest.param([IDENTIFIER], {"host": one_port(device=0x3A02)}, UNSUPPORTED, False, GUARD_CALLS, id="family"),
]


class TestGuard:
    @pytest.mark.parametrize("words, options, message, usage, calls", GUARD)
    def test_get(self, zfc, words, options, message, usage, calls):
        result = check_get(zfc, message, False, words, usage=USAGES["get"] if usage else "", **options)
        assert result.command_calls == calls

    @pytest.mark.parametrize("words, options, message, usage, calls", GUARD)
    def test_set(self, zfc, words, options, message, usage, calls):
        # The second word is wrong too: it is checked after the guard.
        words = [*words, "perhaps"] if words else words
        result = check_set(zfc, words, message, usage=USAGES["set"] if usage else "", **options)
        assert result.command_calls == calls

    @pytest.mark.parametrize("words, options, message, usage, calls", GUARD)
    def test_run(self, zfc, words, options, message, usage, calls):
        result = check_run_failed(zfc, message, words=words, usage=USAGES["run"] if usage else "", **options)
        assert result.command_calls == calls

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_families(self, zfc, device):
        if device in WITH_DPORT:
            check_get(zfc, host=one_port(device=device))
        else:
            check_get(zfc, UNSUPPORTED, False, host=one_port(device=device))

    def test_flag_other_than_one_is_no_mezzanine(self, zfc):
        check_get(zfc, env=answers(IsMezzAdapter=[step(0, b"\2")]))


class TestGet:
    @pytest.mark.parametrize("option, enabled", [(0, False), (1, True), (2, True), (255, True), (256, False)])
    def test_option(self, zfc, option, enabled):
        """Only the low 8 bits of the answer count."""
        result = check_get(zfc, enabled=enabled, env=answers(CheckAdapterDPortOption=[step(option)]))
        assert result.command_calls == [*GUARD_CALLS, OPTION_CALL]

    def test_needs_neither_link_nor_speed(self, zfc):
        check_get(zfc, host=one_port(state=3, speed=0))

    def test_ignores_more_words(self, zfc):
        check_get(zfc, words=[IDENTIFIER, "help", "more"])

    def test_library_log_lost_after_the_guard(self, zfc):
        env = answers(IsMezzAdapter=[step(0, b"\0", spoils=True)])
        result = check_get(zfc, NO_FILE, False, env=env)
        assert result.command_calls == GUARD_CALLS


class TestSet:
    @pytest.mark.parametrize("word, call", [("true", ENABLE_CALL), ("false", DISABLE_CALL)])
    @pytest.mark.parametrize("option, enabled", [(0, False), (1, True), (256, False)])
    def test_shows_what_is_read_back(self, zfc, word, call, option, enabled):
        env = answers(CheckAdapterDPortOption=[step(option)])
        result = check_set(zfc, [IDENTIFIER, word], enabled=enabled, env=env)
        assert result.command_calls == [*GUARD_CALLS, call, OPTION_CALL, REBOOT_CALL]

    @pytest.mark.parametrize(
        "flag, result, required", [(0, 0, False), (1, 0, True), (2, 0, False), (0, 1, True), (0, 150, True)]
    )
    def test_reboot(self, zfc, flag, result, required):
        """A failure of the call counts as a reboot that is needed."""
        results = {"TORPI_IsRebootRequired": result}
        check_set(zfc, [IDENTIFIER, "true"], enabled=True, required=required, reboot=flag, results=results)

    @pytest.mark.parametrize("words", [[], [""], ["yes"], ["1"], ["true "], ["tru"], ["truefalse"], ["help"]])
    def test_other_words(self, zfc, words):
        result = check_set(zfc, [IDENTIFIER, *words], INVALID, usage=USAGES["set"])
        assert result.command_calls == GUARD_CALLS

    @pytest.mark.parametrize(
        "result, message",
        [
            (150, "Failed, Command not supported when adapter port in maintenance mode"),
            (1, "Failed, DPortDiag update failed"),
            (151, "Failed, DPortDiag update failed"),
            (0xFFFFFFFF, "Failed, DPortDiag update failed"),
        ],
    )
    def test_change_fails(self, zfc, result, message):
        env = answers(ConfigureAdapterDPortSettings=[step(result)])
        made = check_set(zfc, [IDENTIFIER, "true"], message, env=env)
        assert made.command_calls == [*GUARD_CALLS, ENABLE_CALL]

    def test_library_log_lost_before_the_change(self, zfc):
        env = answers(IsMezzAdapter=[step(0, b"\0", spoils=True)])
        made = check_set(zfc, [IDENTIFIER, "true"], NO_FILE, env=env)
        assert made.command_calls == GUARD_CALLS

    def test_library_log_lost_after_the_change(self, zfc):
        env = answers(ConfigureAdapterDPortSettings=[step(0, spoils=True)])
        made = check_set(zfc, [IDENTIFIER, "true"], NO_FILE, env=env)
        assert made.command_calls == [*GUARD_CALLS, ENABLE_CALL]


class TestRunChecks:
    """The checks of `run` after the guard, in their order."""

    @pytest.mark.parametrize("option", [0, 256])
    def test_no_diagnostic_port(self, zfc, option):
        env = answers(CheckAdapterDPortOption=[step(option)])
        made = check_run_failed(
            zfc, "Failed, Port not in diagnostics mode", env=env, host=one_port(state=3, speed=0)
        )
        assert made.command_calls == RUN_CALLS

    @pytest.mark.parametrize("state", [0, 2, 3, 255])
    def test_link_down(self, zfc, state):
        made = check_run_failed(zfc, "Failed, Feature requires link up", host=one_port(state=state, speed=0))
        assert made.command_calls == RUN_CALLS

    @pytest.mark.parametrize("speed", [0, 8, 0x10, 0x15])
    def test_too_slow(self, zfc, speed):
        made = check_run_failed(
            zfc, "Failed, Feature supported for speeds 16 Gbps and above", host=one_port(speed=speed)
        )
        assert made.command_calls == RUN_CALLS

    @pytest.mark.parametrize("speed", [0x16, 0x32, 0x64, 0xFFFFFFFF])
    def test_fast_enough(self, zfc, speed):
        check_run(zfc, "passed", env=run_v2(step(0, dport_record())), host=one_port(speed=speed))

    def test_library_log_lost_before_the_option(self, zfc):
        env = answers(IsMezzAdapter=[step(0, b"\0", spoils=True)])
        assert check_run_failed(zfc, NO_FILE, env=env).command_calls == GUARD_CALLS

    def test_library_log_lost_before_the_test(self, zfc):
        env = answers(CheckAdapterDPortOption=[step(1, spoils=True)])
        assert check_run_failed(zfc, NO_FILE, env=env).command_calls == RUN_CALLS


class TestSecondInterface:
    def test_passed(self, zfc):
        made = check_run(zfc, "passed", env=run_v2(step(0, dport_record())))
        assert made.command_calls == [*RUN_CALLS, TEST_V2_CALL]

    def test_only_its_capability_bit_counts(self, zfc):
        env = run_v2(step(0, dport_record()))
        check_run(zfc, "passed", env=env, host=one_port(capabilities=SECOND_INTERFACE))
        check_run(zfc, "passed", env=env, host=one_port(capabilities=0xFFFFFFFF))

    def test_passed_without_any_light(self, zfc):
        """The local powers stay 0.0, those of the far end are the logarithm of zero."""
        record = dport_record(tx=0, rx=0, remote_tx=0, remote_rx=0, latency=0, length=0xFFFFFFFF)
        check_run(zfc, "passed-dark", env=run_v2(step(0, record)))

    @pytest.mark.parametrize(
        "code, reason, kept",
        [
            (0, "Reserved", True),
            (1, "Unexpected Reject Code", True),
            (2, "Unexpected Phase", True),
            (3, "Retry Exceeded", True),
            (4, "Test Timeout", True),
            (5, "Dynamic mode not supported by attached switch", False),
            (6, "Test stopped by user", True),
            (7, "Unknown", False),
            (8, "Unknown", False),
            (14, "Unknown", False),
            (15, "Unknown", False),
        ],
    )
    def test_failed_with_a_reason(self, zfc, code, reason, kept):
        # Only the low four bits of both registers count.
        record = self.failed((0xBCD2, 0x1230 | code))
        powers = ("-3.979400", "-6.020600") if kept else ("0.000000", "0.000000")
        values = {"reason": reason, "rx": powers[0], "tx": powers[1]}
        check_run(zfc, "failed-reason", values, env=run_v2(step(0, record)))

    @pytest.mark.parametrize("outcome", [0x4000, 0x0001, 0x0023, 0x4006, 0x400A])
    def test_failed_without_a_reason(self, zfc, outcome):
        """The reason in mailbox register 2 does not count, not even for the powers."""
        record = self.failed((outcome, 5), remote_tx=10000)
        check_run(zfc, "failed-no-reason", env=run_v2(step(0, record)))

    def test_failed_without_any_light(self, zfc):
        record = self.failed((0x4002, 4), remote_tx=0, remote_rx=0)
        values = {"reason": "Test Timeout", "rx": "-inf", "tx": "-inf"}
        check_run(zfc, "failed-reason", values, env=run_v2(step(0, record)))

    @staticmethod
    def failed(mailbox, remote_tx=2500, **fields):
        return dport_record(
            mailbox=mailbox,
            remote_tx=remote_tx,
            hba=(0x7, 3),
            electrical=(0, 1),
            optical=(0xFF, 71),
            traffic=(0, 0),
            **fields,
        )

    @pytest.mark.parametrize("hba", [0, 2, 3, 4, 5, 6, 71, 255])
    def test_only_status_one_has_passed(self, zfc, hba):
        record = dport_record(hba=(0, hba))
        text = zfc(f"{NODE} runcli {IDENTIFIER}", host=one_port(), env=run_v2(step(0, record))).stdout
        assert b"      Allowable Power Loss: 0\n" in text
        assert b"Mbx1" not in text and b"Mbx2" not in text

    @pytest.mark.parametrize(
        "status, label",
        [
            (0, "Not Started"),
            (1, "Passed"),
            (2, "Skipped"),
            (3, "Failed"),
            (4, "Running"),
            (5, "Remote Port"),
            (6, "Stopped"),
            (7, "Unknown"),
            (55, "Unknown"),
            (56, "Unexpected Reject"),
            (57, "Unexpected Phase"),
            (58, "Retry Exceeded"),
            (59, "Timeout"),
            (60, "Unknown"),
            (70, "Unknown"),
            (71, "Failed"),
            (72, "Unknown"),
            (77, "Unknown"),
            (78, "Not Supported"),
            (79, "Not Supported"),
            (80, "Unknown"),
            (114, "Unknown"),
            (115, "Memory Error"),
            (116, "Unknown"),
            (255, "Unknown"),
        ],
    )
    def test_phase_labels(self, zfc, status, label):
        phases = {"hba": (0, status), "electrical": (0, status), "optical": (0, status), "traffic": (0, status)}
        text = zfc(
            f"{NODE} runcli {IDENTIFIER}", host=one_port(), env=run_v2(step(0, dport_record(**phases)))
        ).stdout.decode()
        for phase in ("HBA Port", "Electrical Loopback", "Optical Loopback", "Link Traffic"):
            assert f"      {phase} Status: {status}\n      {phase} Result: {label}\n" in text

    @pytest.mark.parametrize(
        "result, message, usage",
        [
            (2, INVALID, True),
            (29, "Failed, Feature not supported for virtual port", False),
            (38, UNSUPPORTED, False),
            (129, "Failed, Port not in diagnostics mode", False),
            (130, "Failed, Feature requires link up", False),
            (131, "Failed, Feature supported for speeds 16 Gbps and above", False),
            (132, "Failed, Feature not supported in Boot-From-SAN mode", False),
            (150, "Failed, Command not supported when adapter port in maintenance mode", False),
            *[(other, "Failed, Unknown", False) for other in (1, 3, 28, 128, 133, 151, 0xFFFFFFFF)],
        ],
    )
    def test_refused_by_the_library(self, zfc, result, message, usage):
        # What the call has written does not count.
        env = run_v2(step(result, dport_record(mailbox=(0x4005, 7))))
        made = check_run_failed(zfc, message, env=env, usage=USAGES["run"] if usage else "")
        assert made.command_calls == [*RUN_CALLS, TEST_V2_CALL]

    @pytest.mark.parametrize("result, code", [(0, 0), (2, 6), (132, 40), (150, 60), (133, 50)])
    def test_codes(self, zfc, result, code):
        env = run_v2(step(result, dport_record()))
        assert zfc(f"{NODE} run {IDENTIFIER}", host=one_port(), env=env, debug=1).code == code


@needs_preload
def test_no_memory_for_the_report(zfc):
    """Its buffer of 2048 bytes cannot be allocated: a status without a message here."""
    env = {**run_v2(step(0, dport_record())), **preloaded("refuse_memory", REFUSE_BYTES=2048)}
    made = check_run_failed(zfc, "Failed, Unknown", env=env)
    assert made.command_calls == [*RUN_CALLS, TEST_V2_CALL]


class TestFirstInterface:
    HOST = one_port(capabilities=0xFFFFFFFF ^ SECOND_INTERFACE)

    def test_prints_no_power_lines(self, zfc):
        env = answers(DiagnosticDPortTest=[step(0, dport_record())])
        made = check_run(zfc, "first-interface", env=env, host=self.HOST)
        assert made.command_calls == [*RUN_CALLS, TEST_CALL]

    def test_has_no_status(self, zfc):
        env = answers(DiagnosticDPortTest=[step(150, dport_record())])
        check_run(zfc, "first-interface", env=env, host=self.HOST)

    def test_refused(self, zfc):
        env = answers(DiagnosticDPortTest=[step(0, dport_record(mailbox=(0x4005, 0x60)))])
        check_run_failed(zfc, "Failed, SFP does not support WRAP capability", env=env, host=self.HOST)


class TestRefusal:
    @pytest.mark.parametrize(
        "reason, message",
        [
            (0x0007, "Failed, Firmware not ready to execute requested command"),
            (0x0015, "Failed, Invalid Request"),
            (0x003A, "Failed, Mailbox command IOCB not allowed for this command"),
            (0x0047, "Failed, Incorrect state for this command"),
            (0x0060, "Failed, SFP does not support WRAP capability"),
            (0x8061, "Failed, Command not supported with Current Switch"),
            (0x0000, "Failed, Unknown"),
            (0x0061, "Failed, Unknown"),
            (0x1007, "Failed, Unknown"),
            (0xFFFF, "Failed, Unknown"),
        ],
    )
    def test_reason(self, zfc, reason, message):
        env = run_v2(step(0, dport_record(mailbox=(0x4005, reason))))
        check_run_failed(zfc, message, env=env)
        assert zfc(f"{NODE} run {IDENTIFIER}", host=one_port(), env=env, debug=1).code == 33

    @pytest.mark.parametrize("register", [0x4004, 0x4006, 0x0005, 0x5005])
    def test_another_register_value_is_no_refusal(self, zfc, register):
        env = run_v2(step(0, dport_record(mailbox=(register, 0x60))))
        text = zfc(f"{NODE} runcli {IDENTIFIER}", host=one_port(), env=env).stdout
        assert b"Message: Success\n" in text and f"      Mbx1: 0x{register:x}\n".encode() in text


class TestHostileRecords:
    def test_times_without_terminator_end_with_their_field(self, zfc):
        record = dport_record(start="S" * 64, stop="T" * 64)
        text = zfc(f"{NODE} runcli {IDENTIFIER}", host=one_port(), env=run_v2(step(0, record))).stdout.decode()
        assert f"Data: Start Time: {'S' * 64}      Stop Time: {'T' * 64}      HBA Port Value" in text

    def test_empty_times(self, zfc):
        record = dport_record(start="", stop="")
        text = zfc(f"{NODE} runcli {IDENTIFIER}", host=one_port(), env=run_v2(step(0, record))).stdout
        assert b"Data: Start Time:       Stop Time:       HBA Port Value: 0x89abcdef\n" in text

    def test_percent_signs_are_read_as_conversions(self, zfc):
        record = dport_record(start="%s%n%99d100%%\n", stop="50% off\n")
        text = zfc(f"{NODE} runcli {IDENTIFIER}", host=one_port(), env=run_v2(step(0, record))).stdout
        assert b"Data: Start Time: 100%\n      Stop Time: 50ff\n" in text

    @pytest.mark.parametrize(
        "raw, dbm", [(1, "-40.000000"), (7000, "-1.549019"), (12000, "0.791813"), (87, "-20.604809")]
    )
    def test_single_precision(self, zfc, raw, dbm):
        """Double precision would show -1.549020 and 0.791812, the factors in the other order -20.604805."""
        record = dport_record(remote_rx=raw, tx=10000)
        text = zfc(f"{NODE} runcli {IDENTIFIER}", host=one_port(), env=run_v2(step(0, record))).stdout
        assert f"      Egress Power: Tx: 0.000000 dBm, Rx: {dbm} dBm, Diff: ".encode() in text


class TestEdgeCases:
    def test_set_with_the_word_in_capitals(self, zfc):
        made = check_set(zfc, [IDENTIFIER, "TRUE"], enabled=True)
        assert ENABLE_CALL in made.command_calls
        made = check_set(zfc, [IDENTIFIER, "FaLsE"], enabled=True)
        assert DISABLE_CALL in made.command_calls

    def test_option_check_comes_before_the_link_check(self, zfc):
        env = answers(CheckAdapterDPortOption=[DISABLED])
        check_run_failed(zfc, "Failed, Port not in diagnostics mode", env=env, host=one_port(state=3))

    def test_ten_gbps_is_too_slow_and_sixteen_passes(self, zfc):
        message = "Failed, Feature supported for speeds 16 Gbps and above"
        check_run_failed(zfc, message, host=one_port(speed=0x10))
        check_run(zfc, "passed", host=one_port(speed=0x16), env=run_v2(step(0, dport_record())))

    def test_refused_test_gives_33(self, zfc):
        env = run_v2(step(0, dport_record(mailbox=(0x4005, 0x60))))
        check_run_failed(zfc, "Failed, SFP does not support WRAP capability", env=env)
        assert zfc(f"{NODE} runcli {IDENTIFIER}", host=one_port(), env=env, debug=1).code == 33

    def test_passed_with_no_local_transmit_power(self, zfc):
        env = run_v2(step(0, dport_record(tx=0)))
        text = zfc(f"{NODE} runcli {IDENTIFIER}", host=one_port(), env=env).stdout
        assert b"      Tx Power: 0x0\n" in text
        assert b"      Egress Power: Tx: 0.000000 dBm, Rx: -3.979400 dBm, Diff: 3.979400 dBm\n" in text


@pytest.mark.parametrize("words", ["help", "HELP ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"{NODE} {words}")
    documents.check(result.stdout, "port/dportdiag/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("command", USAGES)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, command):
    assert zfc(f"{NODE} {command}cli ?").stdout == USAGES[command].encode()
    assert zfc(f"{NODE} {command} ?").stdout == b""


@pytest.mark.parametrize("command", USAGES)
def test_help_word_prints_the_document_and_the_usage(zfc, command):
    result = zfc(f"{NODE} {command}cli help", host=one_port())
    assert result.stdout.endswith(b"*" * 52 + b"\n" + USAGES[command].encode())
    assert b"Message: Failed, Unknown\n" in result.stdout


class TestDebugLog:
    CLASS = "PhysicalPortDPortDiagCmdsProcessor"

    @pytest.mark.parametrize("command, after", [("get", []), ("set", ["true"]), ("run", [])])
    def test_failures_of_the_guard(self, zfc, command, after):
        function = f"{self.CLASS}::Cmd{command.capitalize()}Common"
        unsupported = [f"{function}: Command not supported for this adapter"]
        rows = [
            *port_failures(function, IDENTIFIER, *after),
            ([IDENTIFIER, *after], NO_LOG, no_output_file(function)),
            (
                [IDENTIFIER, *after],
                {"env": answers(IsMezzAdapter=[step(0xFFFFFFFF)])},
                [f"{function}: Is mezzanine adapter failed err=-1"],
            ),
            ([IDENTIFIER, *after], {"env": answers(IsMezzAdapter=[MEZZ])}, unsupported),
            ([IDENTIFIER, *after], {"env": answers(), "host": one_port(device=0x3A02)}, unsupported),
            (
                [IDENTIFIER, *after],
                {"env": answers(IsMezzAdapter=[step(0, b"\0", spoils=True)])},
                no_output_file(function),
            ),
        ]
        check_failures(zfc, f"{NODE} {command}", rows)

    def test_failures_of_get(self, zfc):
        check_failures(zfc, f"{NODE} get", [([IDENTIFIER], {"env": answers()}, [])])

    def test_failures_of_set(self, zfc):
        function = f"{self.CLASS}::CmdSetCommon"
        rows = [
            ([IDENTIFIER], {"env": answers()}, [f"{function}: Invalid DPort mode "]),
            ([IDENTIFIER, "perhaps%n"], {"env": answers()}, [f"{function}: Invalid DPort mode perhaps%n"]),
            (
                [IDENTIFIER, "true"],
                {"env": answers(ConfigureAdapterDPortSettings=[step(150)])},
                [f"{function}: Configure DPort failed err=150"],
            ),
            (
                [IDENTIFIER, "false"],
                {"env": answers(ConfigureAdapterDPortSettings=[step(0, spoils=True)])},
                no_output_file(function),
            ),
            ([IDENTIFIER, "true"], {"env": answers(), "reboot": 0}, []),
            (
                [IDENTIFIER, "true"],
                {"env": answers(), "results": {"TORPI_IsRebootRequired": 0xFFFFFFFF}},
                [f"{function}: Get Reboot Required failed err=-1"],
            ),
        ]
        check_failures(zfc, f"{NODE} set", rows)

    def test_failures_of_run(self, zfc):
        function = f"{self.CLASS}::CmdRunCommon"
        rows = [
            (
                [IDENTIFIER],
                {"env": answers(CheckAdapterDPortOption=[DISABLED])},
                [f"{function}: Port not in diagnostics mode"],
            ),
            (
                [IDENTIFIER],
                {"env": answers(), "host": one_port(state=3)},
                [f"{function}: Port is in Link Down state"],
            ),
            (
                [IDENTIFIER],
                {"env": answers(), "host": one_port(speed=0x10)},
                [f"{function}: Port speed 0x10 is below 16 Gbps"],
            ),
            (
                [IDENTIFIER],
                {"env": answers(CheckAdapterDPortOption=[step(1, spoils=True)])},
                no_output_file(function),
            ),
            ([IDENTIFIER], {"env": run_v2(step(132))}, [f"{function}: DPort test failed err=132"]),
            ([IDENTIFIER], {"env": run_v2(step(0xFFFFFFFF))}, [f"{function}: DPort test failed err=-1"]),
            (
                [IDENTIFIER],
                {"env": run_v2(step(0, dport_record(mailbox=(0x4005, 0x60))))},
                [f"{function}: DPort test refused reason=0x60"],
            ),
            ([IDENTIFIER], {"env": run_v2(step(0, dport_record()))}, []),
        ]
        check_failures(zfc, f"{NODE} run", rows)

    @needs_preload
    def test_no_memory_for_the_report(self, zfc):
        env = {**run_v2(step(0, dport_record())), **preloaded("refuse_memory", REFUSE_BYTES=2048)}
        lines = [f"{self.CLASS}::DisplayDPortDiagResult: Output memory alloc failed"]
        check_failures(zfc, f"{NODE} run", [([IDENTIFIER], {"env": env}, lines)])

    @pytest.mark.parametrize("form, end", [("", ""), ("cli", "Cli")])
    @pytest.mark.parametrize(
        "command, env, display, message",
        [
            ("get", answers(), "DisplayDPortDiagInfo", "Success"),
            ("get", answers(IsMezzAdapter=[MEZZ]), "DisplayDPortDiagInfo", UNSUPPORTED),
            ("set", answers(), "DisplayDPortDiagInfo", "Success"),
            ("set", answers(IsMezzAdapter=[MEZZ]), "DisplayDPortDiagInfo", UNSUPPORTED),
            ("run", answers(IsMezzAdapter=[MEZZ]), "DisplayError", UNSUPPORTED),
            (
                "run",
                run_v2(step(0, dport_record(mailbox=(0x4005, 0x15)))),
                "DisplayMbxError",
                "Failed, Invalid Request",
            ),
        ],
    )
    def test_steps(self, zfc, form, end, command, env, display, message):
        made = zfc(f"{NODE} {command}{form} {IDENTIFIER} true", host=one_port(), env=env, debug=1, reboot=0)
        function = f"{self.CLASS}::Cmd{command.capitalize()}"
        assert made.steps == [
            f"{function}{end}: Entered",
            f"{function}Common: Entered",
            f"{LOOKUP}: Entered",
            f"{LOOKUP}: Exiting",
            f"{self.CLASS}::{display}: Entered",
            f"{self.CLASS}::{display}: Message={message}",
            f"{self.CLASS}::{display}: Exiting",
            f"{function}Common: Exiting",
            f"{function}{end}: Exiting",
        ]

    def test_every_line_of_the_report_is_a_step(self, zfc):
        record = dport_record(start="first\n", stop="last\n", hba=(0x7, 3), mailbox=(0x4002, 4), length=25, latency=99)
        made = zfc(f"{NODE} run {IDENTIFIER}", host=one_port(), env=run_v2(step(0, record)), debug=1)
        display = f"{self.CLASS}::DisplayDPortDiagResult"
        lines = made.steps
        assert lines[lines.index(f"{display}: Entered") : lines.index(f"{display}: Exiting") + 1] == [
            f"{display}: Entered",
            "Start Time: first\n",
            "      Stop Time: last\n",
            "      HBA Port Value: 0x7\n",
            "      HBA Port Status: 3\n",
            "      HBA Port Result: Failed\n",
            "      Electrical Loopback Value: 0xa1\n",
            "      Electrical Loopback Status: 1\n",
            "      Electrical Loopback Result: Passed\n",
            "      Optical Loopback Value: 0xb2\n",
            "      Optical Loopback Status: 2\n",
            "      Optical Loopback Result: Skipped\n",
            "      Link Traffic Value: 0x3\n",
            "      Link Traffic Status: 1\n",
            "      Link Traffic Result: Passed\n",
            "      Tx Power: 0x1388\n",
            "      Rx Power: 0x9c4\n",
            "      Reason: Test Timeout\n",
            "      Roundtrip Link Latency: 99 ns\n",
            "      Cable Link Distance: 25 meters\n",
            "      Allowable Power Loss: 0\n",
            "      Egress Power: Tx: 0.000000 dBm, Rx: -3.979400 dBm, Diff: 0.000000 dBm\n",
            "      Ingress Power: Tx: 0.000000 dBm, Rx: 0.000000 dBm, Diff: 0.000000 dBm\n",
            f"{display}: Message=Success",
            f"{display}: Exiting",
        ]
