"""Runs that end at one of their steps on files, and the folders that they leave."""

import functools
import signal
import subprocess

import pytest

from .power_loss import FOLDER, read_steps
from .runner import BUILD, EXECUTABLE, SANITIZED

STEP_FILES = BUILD / "tests" / "step_files"
STAGING = "/opt/ZunaFcEsxcliPlugin/tmp"
VAR_TMP = "/var/tmp"
NOT_FOLLOWED = 125


@functools.cache
def can_follow():
    if SANITIZED:
        return False  # the leak sanitizer follows the process itself
    return subprocess.run([STEP_FILES, "/nowhere", "--", "true"], capture_output=True).returncode == 0


needs_following = pytest.mark.skipif(
    not can_follow(),
    reason="the leak sanitizer follows the process" if SANITIZED else "no process can be followed here (ptrace)",
)


class Folders:
    """Folders by the names that the program has for them: places for what an interrupted run left."""

    def __init__(self, places):
        self.places = places

    def tree(self):
        found = {}
        for name, place in self.places.items():
            for path in sorted(place.rglob("*")):
                found[f"{name}/{path.relative_to(place)}"] = FOLDER if path.is_dir() else path.read_bytes()
        return found

    def put(self, tree):
        """Makes the folders hold this and nothing else."""
        for place in self.places.values():
            for path in sorted(place.rglob("*"), reverse=True):
                path.rmdir() if path.is_dir() and not path.is_symlink() else path.unlink()
        for name, content in sorted(dict(tree).items()):
            path = self.place(name)
            path.mkdir() if content == FOLDER else path.write_bytes(content)

    def place(self, name):
        folder = next(folder for folder in self.places if name.startswith(folder + "/"))
        return self.places[folder] / name[len(folder) + 1 :]


class Stepped:
    """Runs of one command with each of its steps below some folders followed."""

    def __init__(self, zfc, words, folders, *, program=EXECUTABLE, stdin=b"", **options):
        self.zfc, self.words, self.folders, self.program = zfc, words, folders, program
        self.stdin, self.options = stdin, options

    def _run(self, *settings):
        words = self.words.split() if isinstance(self.words, str) else self.words
        words = [*settings, *self.folders.places, "--", str(self.program), *words]
        argv, env = self.zfc.command(words, program=STEP_FILES, **self.options)
        return subprocess.run(argv, input=self.stdin, capture_output=True, env=env, timeout=60)

    def steps(self):
        """Runs it to its end. What it printed, and its steps."""
        log = self.zfc.folder / "steps.log"
        done = self._run("--log", str(log))
        assert done.returncode == 0, done
        return done.stdout, read_steps(log.read_text())

    def end_at(self, number, how=signal.SIGKILL):
        """Runs it to the step with this number; the exit status, negative for a signal."""
        done = self._run("--end-at", str(number), "--signal", str(int(how)))
        assert done.returncode != NOT_FOLLOWED, done
        return done.returncode
