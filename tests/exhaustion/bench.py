"""Runs of leaves on the built-in host by one server, each from the same files."""

from contextlib import contextmanager

from exhaustion import Server
from outcomes import Folders, is_same, mistake, mistake_in_files
from zfc.reference import CLOCK, give_examples
from zfc.runner import SANITIZED, EXECUTABLE
import subprocess


class Bench:
    def __init__(self, zfc, program=EXECUTABLE):
        self.zfc = zfc
        if program == EXECUTABLE:
            give_examples(zfc)
        env = {"TORPI_LAB_TIME": CLOCK, "TORPI_LAB_STATE": str(zfc.work / "state.yaml")}
        self.env = zfc.command([], library="simulated", env=env)[1]
        self.server = Server(zfc, program, imports=program == EXECUTABLE, library="simulated")
        self.folders = Folders(zfc)
        self.server.run(["--help"], self.env, warm=1)  # from here on the private folders are laid out
        self._clean = self.folders.read()

    def close(self):
        self.server.close()

    def runs(self, leaf, statuses=frozenset({0})):
        return Runs(self, leaf, {"warm": 1}, statuses)

    @contextmanager
    def leaf(self, leaf):
        """The files as the runs that come first leave them, for the runs of a test."""
        for words in leaf.before:
            done = self.server.run(words, self.env, warm=1)
            assert done.status == 0 and done.stderr == b"", (words, done)
        try:
            yield self.runs(leaf)
        finally:
            self.folders.restore(self._clean, self.folders.read())


class Runs:
    """Runs of one leaf; each starts from the same files."""

    def __init__(self, bench, leaf, options, statuses):
        self._bench = bench
        self.leaf = leaf
        self._options = options
        self.before = bench.folders.read()
        self.good = self.run()
        self.after = self.found
        assert self.good.status in statuses and self.good.stderr == b"", self.good
        self._verdicts = {}

    def run(self, **options):
        options = {**self._options, **options}
        run = self._bench.server.run(self.leaf.words, self._bench.env, stdin=self.leaf.stdin, **options)
        self.found = self._bench.folders.read()
        if self.found != self.before:
            self._bench.folders.restore(self.before, self.found)
        return run

    def verdict(self, run, allowed, may_stay=()):
        """Why the run did not end in one of the allowed ways; None when it did."""
        key = (run.status, run.stdout, run.stderr, tuple(allowed), tuple(may_stay), tuple(self.found.items()))
        if key not in self._verdicts:
            self._verdicts[key] = mistake(run, self.good, allowed) or self.mistake_in_files(run, may_stay)
        return self._verdicts[key]

    def mistake_in_files(self, run, may_stay=()):
        # Whoever reads a success relies on the files of a success.
        before = self.after if is_same(run, self.good) else self.before
        # The mirror of a session is written line by line.
        mirror = ["session.txt"] if self.leaf.plain == "shell" else []
        return mistake_in_files(self.found, before, self.after, [*may_stay, *mirror])


def places(addresses):
    """Functions and lines of addresses in the program."""
    words = ["addr2line", "-Cfse", str(EXECUTABLE), *(hex(address - 1) for address in addresses)]
    lines = subprocess.run(words, capture_output=True, text=True).stdout.splitlines()
    return [f"{name.split('(')[0][-60:]} {place}" for name, place in zip(lines[::2], lines[1::2])]
