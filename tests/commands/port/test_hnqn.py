"""The hnqn node: `get`, `register` and `deregister` in both forms."""

import pytest

from zfc import documents
from zfc.diag import (
    LIST_CALL,
    LOOKUP,
    NO_LOG,
    FreshLog,
    check_failures,
    no_output_file,
    one_port,
    port_failures,
    script,
    step,
)
from zfc.documents import check_both
from zfc.host import DAHLIA, HAZEL, IRIS, NO_LIST, every_device
from zfc.port import IDENTIFIER

NODE = "-t port -s hnqn"
COMMANDS = ("get", "register", "deregister")
NQN = "nqn.2014-08.org.nvmexpress:uuid:6d1f402a"

STATUS = "GetNVMeHostNQNStatus"
CHANGE = "RegisterDeregisterNVMeHostNQN"
CALLS = {
    "get": f"TORPI_{STATUS}(port, 0)",
    "register": f"TORPI_{CHANGE}(port, 1)",
    "deregister": f"TORPI_{CHANGE}(port, 0)",
}
CALL_NAMES = {"get": STATUS, "register": CHANGE, "deregister": CHANGE}

INVALID = "Failed, Invalid parameter"
UNSUPPORTED = "Failed, Feature not supported for this adapter"
LINK_DOWN = "Failed, Feature requires link up"
NO_FILE = "Failed, File not found"
DEFAULTS = {
    "get": "Failed, Host NQN settings read failed.",
    "register": "Failed, Host NQN settings update failed.",
    "deregister": "Failed, Host NQN settings update failed.",
}

NVME = {*HAZEL, *IRIS, *DAHLIA}


@pytest.fixture
def zfc(zfc):
    return FreshLog(zfc)


def usage_of(command):
    return f"Usage: {command}\r\n"


def check(zfc, command, registered, nqn=NQN, words=(IDENTIFIER,), **options):
    options.setdefault("host", one_port())
    values = {"nqn": nqn, "registered": "Registered" if registered else "Not Registered"}
    made = check_both(zfc, f"{NODE} {command}", "port/hnqn/report", words=words, values=values, **options)
    assert made.command_calls == [LIST_CALL, CALLS[command]]


def check_failed(zfc, command, message, calls, words=(IDENTIFIER,), **options):
    options.setdefault("host", one_port())
    values = {"message": message}
    made = check_both(zfc, f"{NODE} {command}", "port/hnqn/failed", words=words, values=values, **options)
    assert made.command_calls == calls


@pytest.mark.parametrize("flag, registered", [(0, False), (1, True), (2, True), (255, True)])
def test_get(zfc, flag, registered):
    check(zfc, "get", registered, env=script(GetNVMeHostNQNStatus=[step(0, bytes([flag]))]))


def test_get_from_a_library_that_leaves_the_flag(zfc):
    check(zfc, "get", False)


def test_register(zfc):
    check(zfc, "register", True)


def test_deregister(zfc):
    check(zfc, "deregister", False)


@pytest.mark.parametrize("command", COMMANDS)
class TestGuard:
    """The checks in their order: each fails at one check and at all that follow."""

    @pytest.mark.parametrize(
        "words, options, message, usage, calls",
        [
            pytest.param([], {}, INVALID, True, [], id="nothing"),
            pytest.param(["help"], {}, "Failed, Unknown", True, [], id="help word"),
            pytest.param(["nobody"], {}, INVALID, True, [], id="bad identifier"),
            pytest.param([IDENTIFIER[:-1] + "6"], {}, INVALID, True, [LIST_CALL], id="unknown identifier"),
            pytest.param([IDENTIFIER], {"host": NO_LIST}, "Failed, Host not found", False, [LIST_CALL], id="no list"),
            pytest.param(
                [IDENTIFIER],
                {"host": one_port(interface=3, device=0x3432, state=3)},
                "Failed, Feature not supported for virtual port",
                False,
                [LIST_CALL],
                id="virtual port",
            ),
            pytest.param(
                [IDENTIFIER], {"host": one_port(device=0x3432, state=3)}, UNSUPPORTED, False, [LIST_CALL], id="family"
            ),
            pytest.param(
                [IDENTIFIER],
                {"host": one_port(state=3), "spoil_log": "TORPI_GetAdapterList:directory"},
                LINK_DOWN,
                False,
                [LIST_CALL],
                id="link down",
            ),
            pytest.param(
                [IDENTIFIER],
                {"spoil_log": "TORPI_GetAdapterList:directory"},
                NO_FILE,
                False,
                [LIST_CALL],
                id="no library log",
            ),
        ],
    )
    def test_check(self, zfc, command, words, options, message, usage, calls):
        text = usage_of(command) if usage else ""
        check_failed(zfc, command, message, calls, words, usage=text, **options)

    @pytest.mark.parametrize("device", every_device(), ids=hex)
    def test_families(self, zfc, command, device):
        if device in NVME:
            check(zfc, command, command == "register", host=one_port(device=device))
        else:
            check_failed(zfc, command, UNSUPPORTED, [LIST_CALL], host=one_port(device=device))

    @pytest.mark.parametrize(
        "result, message",
        [
            (150, "Failed, Command not supported when adapter port in maintenance mode"),
            (158, "Failed, Host NQN is already registered"),
            (159, "Failed, Host NQN is not registered"),
            *[(other, None) for other in (1, 149, 151, 152, 153, 154, 155, 156, 157, 160, 0xFFFFFFFF)],
        ],
    )
    def test_library_fails(self, zfc, command, result, message):
        env = script(**{CALL_NAMES[command]: [step(result)]})
        check_failed(zfc, command, message or DEFAULTS[command], [LIST_CALL, CALLS[command]], env=env)

    @pytest.mark.parametrize("result, code", [(0, 0), (150, 60), (158, 68), (159, 69)])
    def test_code(self, zfc, command, result, code):
        env = script(**{CALL_NAMES[command]: [step(result)]})
        assert zfc(f"{NODE} {command} {IDENTIFIER}", host=one_port(), env=env, debug=1).code == code

    def test_more_words_are_left_aside(self, zfc, command):
        check(zfc, command, command == "register", words=[IDENTIFIER, "help", "more"])

    @pytest.mark.parametrize(
        "name, shown",
        [("", "NA"), ("N" * 256, "N" * 256), ("%s%n%", "%s%n%"), (" ", " "), ("a" * 255, "a" * 255)],
        ids=["empty", "without terminator", "percent signs", "blank", "longest with terminator"],
    )
    def test_name(self, zfc, command, name, shown):
        check(zfc, command, command == "register", shown, host=one_port(host_nqn=name))

    def test_question_mark_prints_the_usage_of_the_leaf(self, zfc, command):
        assert zfc(f"{NODE} {command}cli ?").stdout == usage_of(command).encode()
        assert zfc(f"{NODE} {command} ?").stdout == b""


class TestEdgeCases:
    def test_register_on_a_port_with_an_empty_name(self, zfc):
        check(zfc, "register", True, "NA", host=one_port(host_nqn=""))

    def test_register_twice(self, zfc):
        env = script(RegisterDeregisterNVMeHostNQN=[step(158)])
        check_failed(
            zfc, "register", "Failed, Host NQN is already registered", [LIST_CALL, CALLS["register"]], env=env
        )

    def test_deregister_when_not_registered(self, zfc):
        env = script(RegisterDeregisterNVMeHostNQN=[step(159)])
        check_failed(
            zfc, "deregister", "Failed, Host NQN is not registered", [LIST_CALL, CALLS["deregister"]], env=env
        )

    @pytest.mark.parametrize("command", COMMANDS)
    @pytest.mark.parametrize("state", [0, 2, 3, 255])
    def test_link_down_reaches_no_library(self, zfc, command, state):
        check_failed(zfc, command, LINK_DOWN, [LIST_CALL], host=one_port(state=state))


def test_help(zfc):
    result = zfc(f"{NODE} help")
    documents.check(result.stdout, "port/hnqn/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize(
    "command, functions, library_step",
    [
        ("get", "CmdGet", "Get host NQN status"),
        ("register", "CmdRegister", "Register host NQN"),
        ("deregister", "CmdDeregister", "Deregister host NQN"),
    ],
)
class TestDebugLog:
    CLASS = "PhysicalPortHostNQNCmdsProcessor"

    def test_failures(self, zfc, command, functions, library_step):
        function = f"{self.CLASS}::{functions}Common"
        rows = [
            *port_failures(function, IDENTIFIER),
            (
                [IDENTIFIER],
                {"host": one_port(device=0x3432, state=3)},
                [f"{function}: Command not supported for this adapter"],
            ),
            ([IDENTIFIER], {"host": one_port(state=3)}, [f"{function}: Port is in Link Down state"]),
            ([IDENTIFIER], NO_LOG, no_output_file(function)),
            *[
                ([IDENTIFIER], {"env": script(**{CALL_NAMES[command]: [step(result)]})}, lines)
                for result, lines in (
                    (0, []),
                    (158, [f"{function}: {library_step} failed err=158"]),
                    (0xFFFFFFFF, [f"{function}: {library_step} failed err=-1"]),
                )
            ],
        ]
        check_failures(zfc, f"{NODE} {command}", rows)

    @pytest.mark.parametrize("form, end", [("", ""), ("cli", "Cli")])
    @pytest.mark.parametrize(
        "result, display, message",
        [
            (0, "DisplayHostNQNInfo", "Success"),
            (159, "DisplayError", "Failed, Host NQN is not registered"),
        ],
    )
    def test_steps(self, zfc, command, functions, library_step, form, end, result, display, message):
        env = script(**{CALL_NAMES[command]: [step(result)]})
        made = zfc(f"{NODE} {command}{form} {IDENTIFIER}", host=one_port(), env=env, debug=1)
        assert made.steps == [
            f"{self.CLASS}::{functions}{end}: Entered",
            f"{self.CLASS}::{functions}Common: Entered",
            f"{LOOKUP}: Entered",
            f"{LOOKUP}: Exiting",
            f"{self.CLASS}::{display}: Entered",
            f"{self.CLASS}::{display}: Message={message}",
            f"{self.CLASS}::{display}: Exiting",
            f"{self.CLASS}::{functions}Common: Exiting",
            f"{self.CLASS}::{functions}{end}: Exiting",
        ]
