"""Files that are replaced at once: the lab's state, images, snapshots, host files and pictures, and what the simulated
library saves. Wherever a run ends, the file has its old or its new content, whole. At most the new file that was being
written is left beside it, under a name that nothing reads."""

import re
import signal
import subprocess
from dataclasses import dataclass, field

import pytest

from zfc.interrupted import STAGING, Folders, Stepped, needs_following
from zfc.power_loss import FOLDER, Step, after_kill, states
from zfc.runner import BUILD, EXECUTABLE

pytestmark = needs_following

ZFC_LAB = BUILD / "bin" / "zfc-lab"
ZFC_SNAPSHOT = BUILD / "bin" / "zfc-snapshot"
ELM = "FC_21:00:00:0e:1e:11:22:33"
DAHLIA = "FC_21:00:f4:c7:aa:64:00:10"
STATE = {"env": {"TORPI_LAB_STATE": "file"}}
IMAGE = b"ZNFC flash image\nsignature: Sorvex\nkind: MBI\nversion: 2.02.10\n"
OFF = "-t port -s beacon setcli {} off".format(DAHLIA)


@dataclass
class Command:
    """A command that writes the file `file` in its working folder."""

    words: str
    program: object = EXECUTABLE
    old: bytes | None = None  # what the file holds before; None: it is not there
    first: str = ""  # a run of zfcesxcli that makes the old file, in place of `old`
    options: dict = field(default_factory=dict)
    again: str | None = None  # what runs after it where the same words would be refused
    beside: tuple = ()  # more files that it makes
    proof: tuple | None = None  # words of zfcesxcli, and what they show where the new file is there, and where it is not


BEACON = (f"-t port -s beacon getcli {DAHLIA}", b"Beacon State: ON", b"Beacon State: OFF")
COMMANDS = {
    "state, new": Command(f"-t port -s beacon setcli {DAHLIA} on", options=STATE, beside=("file.lock",), proof=BEACON),
    "state, changed": Command(
        f"-t port -s beacon setcli {DAHLIA} on",
        first=f"-t port -s beacon setcli {ELM} on",
        options=STATE,
        beside=("file.lock",),
        proof=BEACON,
    ),
    "state, restart": Command(
        "reboot file",
        ZFC_LAB,
        first=f"-t port -s bbcr setcli {DAHLIA}",
        options=STATE,
        beside=("file.lock",),
    ),
    "flash-image": Command("flash-image file", ZFC_LAB, old=IMAGE),
    "new": Command("new -o file", ZFC_LAB, again="new -o file --force"),
    "new --force": Command("new -o file --force", ZFC_LAB, old=b"old\n"),
    "map": Command("map -o file", ZFC_LAB, again="map -o file --force"),
    "map --force": Command("map -o file --force", ZFC_LAB, old=b"old\n"),
    "snapshot": Command("-o file", ZFC_SNAPSHOT, again="-o file --force"),
    "snapshot --force": Command("-o file --force", ZFC_SNAPSHOT, old=b"old\n"),
    "hbaparams save": Command(f"-t port -s hbaparams savecli {ELM} file"),
    "hbaparams save, over": Command(f"-t port -s hbaparams savecli {ELM} file", old=b"old\n"),
    "dmi save, binary": Command(f"-t port -s dmi savecli {ELM} file Binary", old=b"old\n"),
    "dmi save, text": Command(f"-t port -s dmi savecli {ELM} file Text", old=b"old\n"),
}


class Replaced:
    def __init__(self, zfc, command):
        self.zfc, self.command = zfc, command
        self.folders = Folders({str(zfc.work): zfc.work})
        self.path = f"{zfc.work}/file"
        self.options = {"library": "simulated", **command.options}
        if command.first:
            if " setcli " in command.first and "bbcr" in command.first:
                zfc(command.first.replace("setcli", "setFilecli"), **self.options)
            zfc(command.first, **self.options)
            assert (zfc.work / "file").exists()
        elif command.old is not None:
            zfc.file("file", command.old)
        self.before = self.folders.tree()
        self.old = self.before.get(self.path)
        self.stepped = Stepped(zfc, command.words, self.folders, program=command.program, **self.options)
        _, self.steps = self.stepped.steps()
        self.new = self.folders.tree()[self.path]
        assert self.new != self.old and self.new

    def check(self, tree):
        """The old or the new content, and nothing that a next run would take for anything. Returns whether it is new."""
        tree = dict(tree)
        assert tree.get(self.path) in (self.old, self.new)
        known = {self.path, *(f"{self.path}.{name.split('.')[1]}" for name in self.command.beside)}
        for path in tree.keys() - known:
            assert re.fullmatch(re.escape(self.path) + r"\.\w{6}", path), path
        return tree.get(self.path) == self.new

    def run_again(self, is_new):
        """The next command, in whatever is left."""
        command = self.command
        if command.proof:
            words, shown, not_shown = command.proof
            assert (shown if is_new else not_shown) in self.zfc(words, **self.options).stdout
        words = command.words if command.again is None else command.again
        argv, env = self.zfc.command(words, program=command.program, **self.options)
        done = subprocess.run(argv, capture_output=True, env=env, timeout=60)
        assert done.returncode == 0 and done.stderr == b"", done
        assert self.check(self.folders.tree())
        if command.proof:
            assert command.proof[1] in self.zfc(command.proof[0], **self.options).stdout
            self.zfc(OFF, **self.options)
            assert command.proof[2] in self.zfc(command.proof[0], **self.options).stdout


@pytest.fixture(params=COMMANDS)
def replaced(request, zfc):
    return Replaced(zfc, COMMANDS[request.param])


def test_old_or_new_in_both_models(replaced):
    """And the new one alone once the command has ended, with nothing beside it."""
    killed, lost, finished = states(replaced.before, replaced.steps)
    assert {replaced.check(tree) for tree in {*killed, *lost}} == {False, True}
    names = {replaced.path, *(f"{replaced.path.removesuffix('file')}{name}" for name in replaced.command.beside)}
    for tree in finished:
        assert dict(tree)[replaced.path] == replaced.new
        assert dict(tree).keys() <= names
    for tree in {*killed, *lost}:
        replaced.folders.put(tree)
        replaced.run_again(replaced.check(tree))


def test_killed_before_each_step(replaced):
    """Really ended, there is what the model has; a new file has another name in each run."""
    for number in range(1, len(replaced.steps) + 1):
        replaced.folders.put(replaced.before)
        assert replaced.stepped.end_at(number) == -signal.SIGKILL
        left = replaced.folders.tree()
        expected = dict(after_kill(replaced.before, replaced.steps[: number - 1]))
        assert left.get(replaced.path) == expected.get(replaced.path)
        assert sorted(left.values()) == sorted(expected.values())
        replaced.check(left)


@pytest.mark.parametrize("how", [signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGPIPE])
def test_signal_at_each_step(replaced, how):
    for number in range(1, len(replaced.steps)):
        replaced.folders.put(replaced.before)
        status = replaced.stepped.end_at(number, how)
        handled = replaced.command.program == EXECUTABLE and how == signal.SIGTERM
        assert status == -(signal.SIGINT if handled else how)
        replaced.check(replaced.folders.tree())


def test_staged_folder_of_a_lab_run(zfc):
    """It is made for the first run with a state file; what is staged in it is there for good when the run has ended."""
    folders = Folders({str(zfc.work): zfc.work, STAGING: zfc.staging})
    words = ["run", "--state", "s.yaml", "--", "-t", "port", "-s", "bbcr", "setFilecli", DAHLIA, "--bbcr-configured", "5"]
    stepped = Stepped(zfc, words, folders, program=ZFC_LAB, library="simulated")
    steps = stepped.steps()[1]
    if not (zfc.work / "s.yaml.staged").exists() or list(zfc.staging.iterdir()):
        pytest.skip("zfc-lab run has no private staging folder here")
    staged = f"{zfc.work}/s.yaml.staged"

    def there(path):
        return staged + path.removeprefix(STAGING) if path == STAGING or path.startswith(STAGING + "/") else path

    # The folder is mounted where the program looks for it, over one of its own in memory.
    steps = [step for step in steps if step.path != STAGING + "/staging"]
    steps = [Step(step.what, there(step.path), there(step.other), step.content) for step in steps]
    file = f"{staged}/BBCR_{DAHLIA}"
    finished = states({}, steps)[2]
    assert finished == {((staged, FOLDER), (file, b"BBCR_Count=5\nBBCR_Status=1\n"))}
