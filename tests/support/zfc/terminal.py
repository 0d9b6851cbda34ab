"""The executable at a terminal of its own, or at pipes, while it runs."""

import os
import select
import signal
import subprocess
import termios
import time

from .runner import reject_sanitizer_report


class Session:
    """A running executable. `terminal` gives it a terminal that neither echoes nor changes line ends, so that what
    is read is what the program wrote; `echo` leaves the terminal as a person has it."""

    def __init__(self, zfc, words="", *, terminal=True, echo=False, **options):
        self._zfc = zfc
        argv, env = zfc.command(words, **options)
        self.output = b""
        if terminal:
            self._reader, program_end = os.openpty()
            self._writer = self._reader
            if not echo:
                _make_plain(program_end)
            self.process = subprocess.Popen(argv, env=env, preexec_fn=lambda: os.login_tty(program_end))
            os.close(program_end)
        else:
            self.process = subprocess.Popen(
                argv, env=env, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT
            )
            self._reader = self.process.stdout.fileno()
            self._writer = self.process.stdin.fileno()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
        self.process.wait()
        if self.process.stdout:
            self.process.stdout.close()
            self.process.stdin.close()
        else:
            os.close(self._reader)

    def send(self, text):
        os.write(self._writer, text)

    def signal(self, number):
        self.process.send_signal(number)

    def close_input(self):
        self.process.stdin.close()

    def expect(self, text, timeout=20):
        """Waits until the output ends with `text`; returns what came up to it and the time that it took."""
        return self._read(lambda: self.output.endswith(text), timeout, f"output ending in {text!r}")

    def end(self, timeout=20):
        """Waits for the process; returns the rest of the output and what the run left."""
        rest, _ = self._read(lambda: False, timeout, "the end of the run", until_end=True)
        return rest, self._zfc.result(rest, rest, self.process.wait(timeout=timeout))

    def _read(self, done, timeout, what, until_end=False):
        started = time.monotonic()
        while not done():
            left = started + timeout - time.monotonic()
            assert left > 0, f"waited {timeout} s for {what}, got {self.output!r}"
            if not select.select([self._reader], [], [], left)[0]:
                continue
            try:
                piece = os.read(self._reader, 65536)
            except OSError:  # a terminal whose other end is closed
                piece = b""
            if not piece:
                assert until_end, f"the run ended before {what}, got {self.output!r}"
                break
            self.output += piece
        text, self.output = self.output, b""
        reject_sanitizer_report(text)
        return text, time.monotonic() - started


def errors_at_terminal(zfc, words, timeout=60, **options):
    """Runs one command with a terminal for standard error alone; returns standard output and what the terminal got."""
    argv, env = zfc.command(words, **options)
    reader, program_end = os.openpty()
    _make_plain(program_end)
    with subprocess.Popen(argv, env=env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=program_end) as process:
        os.close(program_end)
        seen = b""
        try:
            while piece := os.read(reader, 65536):
                seen += piece
        except OSError:  # the other end is closed
            pass
        stdout = process.stdout.read()
        assert process.wait(timeout=timeout) == 0
    os.close(reader)
    reject_sanitizer_report(seen)
    return stdout, seen


def _make_plain(terminal):
    attributes = termios.tcgetattr(terminal)
    attributes[1] &= ~termios.OPOST
    attributes[3] &= ~(termios.ECHO | termios.ECHOCTL)
    termios.tcsetattr(terminal, termios.TCSANOW, attributes)
