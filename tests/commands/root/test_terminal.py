"""The program while it runs: at a terminal, between commands, and when signals reach it."""

import os
import signal
import time

import pytest

from zfc import documents
from zfc.host import IDENTIFIER, NO_ADAPTERS
from zfc.runner import SESSION_END, UNKNOWN_COMMAND, chatter
from zfc.terminal import Session

PROMPT = b"$>"
VERSION = b"Halcyr Sorvex Meridot FC ESXCLI Plugin v1.9.0\r\n"
AT_ONCE = 2.0  # seconds; the wait at the end of input takes five


def ask(session, line):
    """Types a line and gives the answer, without the prompt that follows."""
    session.send(line + b"\n")
    return session.expect(PROMPT)[0][: -len(PROMPT)]


def test_prompt_comes_before_anything_is_typed(zfc):
    with Session(zfc) as session:
        assert session.expect(PROMPT)[0] == PROMPT
        session.send(b"q\n")
        rest, result = session.end()
        assert rest == b""
        assert result.status == 0
        assert result.calls[-1:] == SESSION_END


def test_lines_are_answered_one_by_one(zfc):
    with Session(zfc, host=NO_ADAPTERS) as session:
        session.expect(PROMPT)
        assert ask(session, b"version") == VERSION
        assert ask(session, b"nonsense") == UNKNOWN_COMMAND
        assert ask(session, b"-t adapter listcli") == (b"*" * 52 + b"\n") * 2
        assert ask(session, b'"open') == b"Error parsing command input string!\n"
        assert ask(session, b"adapter") == b""
        assert ask(session, b"") == b""
        documents.check(ask(session, b"?"), "root/help-shell.txt")


def test_terminal_as_a_person_has_it(zfc):
    """The terminal echoes what is typed and turns line feeds into line ends of its own."""
    with Session(zfc, echo=True) as session:
        session.expect(PROMPT)
        session.send(b"version\n")
        assert session.expect(PROMPT)[0] == b"version\r\n" + VERSION.replace(b"\n", b"\r\n") + PROMPT


def test_mirror_is_written_while_the_shell_runs(zfc):
    with Session(zfc) as session:
        session.expect(PROMPT)
        ask(session, b"log mirror")
        ask(session, b"version")
        (zfc.work / "mirror").chmod(0o600)
        assert (zfc.work / "mirror").read_bytes() == PROMPT + b"version\n" + VERSION + PROMPT


def test_second_log_leaves_the_first_descriptor_open(zfc):
    with Session(zfc) as session:
        session.expect(PROMPT)
        ask(session, b"log first")
        ask(session, b"log second")
        assert open_files(session) == {"first", "second"}
        ask(session, b"log")
        assert open_files(session) == {"first"}


def open_files(session):
    """The names of the open files that lie in the work folder."""
    folder = f"/proc/{session.process.pid}/fd"
    paths = [os.readlink(f"{folder}/{number}") for number in os.listdir(folder)]
    return {os.path.basename(path) for path in paths if os.path.dirname(path).endswith("/work")}


def test_end_of_input_at_the_terminal(zfc):
    with Session(zfc) as session:
        session.expect(PROMPT)
        session.send(b"\x04")
        text, passed = session.expect(b"Unknown input problem!\r\nQuit...\r\n")
        assert text == b"Unknown input problem!\r\nQuit...\r\n"
        assert 4.5 < passed < 10
        assert session.end()[1].status == 0


class TestQuitSignal:
    def test_fresh_prompt_at_once(self, zfc):
        with Session(zfc) as session:
            session.expect(PROMPT)
            for _ in range(20):
                session.signal(signal.SIGQUIT)
                text, passed = session.expect(PROMPT)
                assert text == PROMPT
                assert passed < AT_ONCE
            assert ask(session, b"version") == VERSION
            session.send(b"q\n")
            assert session.end()[1].status == 0

    def test_from_the_keyboard(self, zfc):
        with Session(zfc) as session:
            session.expect(PROMPT)
            session.send(b"\x1c")
            text, passed = session.expect(PROMPT)
            assert text == PROMPT
            assert passed < AT_ONCE
            assert ask(session, b"version") == VERSION

    def test_line_that_was_begun_is_dropped_from_the_keyboard(self, zfc):
        with Session(zfc) as session:
            session.expect(PROMPT)
            session.send(b"nonsense\x1c")
            assert session.expect(PROMPT)[0] == PROMPT
            assert ask(session, b"version") == VERSION

    def test_ends_the_wait_at_the_end_of_input(self, zfc):
        with Session(zfc, terminal=False) as session:
            session.close_input()
            time.sleep(1)  # the shell is in its wait by now
            started = time.monotonic()
            session.signal(signal.SIGQUIT)
            rest, result = session.end()
            passed = time.monotonic() - started
            # A fresh prompt, an end of input again, and the whole wait again.
            assert rest == PROMPT * 2 + b"Unknown input problem!\r\nQuit...\r\n"
            assert 4.5 < passed < 10
            assert result.status == 0

    def test_during_a_call_lets_the_command_finish(self, zfc):
        options = {"host": NO_ADAPTERS, "pause": "TORPI_GetAdapterList:1000", "debug": 1}
        with Session(zfc, "-t adapter list", terminal=False, **options) as session:
            wait_for_call(zfc, "TORPI_GetAdapterList()")
            session.signal(signal.SIGQUIT)
            rest, result = session.end()
        documents.check(rest, "adapter/list-empty.xml")
        assert result.status == 0
        assert b"\r\nBreaking...\r\n" in result.debug_log


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM, signal.SIGABRT])
class TestClosingSignals:
    def test_at_the_prompt_the_process_dies_by_sigint(self, zfc, number):
        with Session(zfc, debug=1) as session:
            session.expect(PROMPT)
            session.signal(number)
            rest, result = session.end()
        assert rest == b""
        assert result.status == -signal.SIGINT
        self.check_no_uninitialize(result)

    def test_during_a_call_the_call_is_abandoned(self, zfc, number):
        options = {"pause": "TORPI_GetFlashComponentVersion:60000", "debug": 1}
        words = f"-t adapter -s info get {IDENTIFIER}"
        with Session(zfc, words, terminal=False, **options) as session:
            wait_for_call(zfc, "TORPI_GetFlashComponentVersion(port, zeroed buffer)")
            started = time.monotonic()
            session.signal(number)
            rest, result = session.end()
        assert time.monotonic() - started < 5
        assert rest == b""
        assert result.status == -signal.SIGINT
        self.check_no_uninitialize(result)

    @staticmethod
    def check_no_uninitialize(result):
        assert "TORPI_Uninitialize()" not in result.calls
        assert b"\r\nClosing...\r\n" in result.debug_log
        assert b"Program Exit Code" not in result.debug_log


def wait_for_call(zfc, call):
    deadline = time.monotonic() + 20
    while call not in zfc.calls():
        assert time.monotonic() < deadline, zfc.calls()
        time.sleep(0.01)


def test_chatter_of_a_command_stays_out_of_the_terminal(zfc):
    with Session(zfc) as session:
        session.expect(PROMPT)
        answer = ask(session, f"-t adapter -s info getcli {IDENTIFIER}".encode())
        assert chatter("TORPI_GetFlashComponentVersion") not in answer
        assert answer.startswith(b"*" * 52) and answer.endswith(b"*" * 52 + b"\n")
