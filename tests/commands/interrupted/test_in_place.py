"""Files that a command writes under their own names, a part at a time, because that is what they are for:

| File | Why not replaced at once |
|---|---|
| a firmware dump | opened by its name, emptied and written: the name may be a device or a pipe too |
| the mirror of the shell (`log FILE`) | grows line by line, and is to be read while it does |
| /var/tmp/torpi-output.log, the debug log, the trace of the lab | grow, and several runs write them |

Whatever is left of one, the next command works. Only a dump is data that nothing else has: it is on the disk when its
command has ended."""

import signal

import pytest

from zfc.config import IDENTIFIER
from zfc.interrupted import VAR_TMP, Folders, Stepped, needs_following
from zfc.port import one_port
from zfc.power_loss import after_kill, states

pytestmark = needs_following

DUMP = bytes(range(256)) * 64
OLD = b"an older dump\n" * 300
DUMP_OPTIONS = {"host": one_port(), "buffers": {"dump": DUMP}}
LIST = "-t adapter listcli"
LIBRARY_LOG = f"{VAR_TMP}/torpi-output.log"
DEBUG_LOG = f"{VAR_TMP}/zfcesxcli.log"


def of_work(zfc):
    return Folders({str(zfc.work): zfc.work})


@pytest.mark.parametrize("old", [None, OLD], ids=["new", "over an old one"])
class TestDump:
    WORDS = f"-t port -s fwdump getcli {IDENTIFIER} dump"

    def prepare(self, zfc, old):
        folders = of_work(zfc)
        before = {} if old is None else {f"{zfc.work}/dump": old}
        folders.put(before)
        stepped = Stepped(zfc, self.WORDS, folders, **DUMP_OPTIONS)
        stdout, steps = stepped.steps()
        assert b"Message: Success" in stdout and (zfc.work / "dump").read_bytes() == DUMP
        return folders, before, stepped, steps

    def test_old_or_a_part_of_the_new_one(self, zfc, old):
        folders, before, stepped, steps = self.prepare(zfc, old)
        killed, lost, finished = states(before, steps)
        assert finished == {((f"{zfc.work}/dump", DUMP),)}
        for tree in {*killed, *lost}:
            content = dict(tree).get(f"{zfc.work}/dump")
            assert len(dict(tree)) <= 1 and (content == old or DUMP.startswith(content))
            folders.put(tree)
            assert b"Message: Success" in zfc(self.WORDS, **DUMP_OPTIONS).stdout
            assert folders.tree() == {f"{zfc.work}/dump": DUMP}

    def test_ended_at_each_step(self, zfc, old):
        folders, before, stepped, steps = self.prepare(zfc, old)
        for number in range(1, len(steps) + 1):
            folders.put(before)
            assert stepped.end_at(number) == -signal.SIGKILL
            assert folders.tree() == dict(after_kill(before, steps[: number - 1]))
        for how, end in ((signal.SIGINT, signal.SIGINT), (signal.SIGTERM, signal.SIGINT), (signal.SIGHUP, signal.SIGHUP)):
            for number in range(1, len(steps)):
                folders.put(before)
                assert stepped.end_at(number, how) == -end
                assert folders.tree() == dict(after_kill(before, steps[:number]))


class TestLogs:
    """The library's output and the debug log: in any state that an interrupted run leaves them, the next one prints what it
    prints without them, and adds to them."""

    @pytest.mark.parametrize("before", [{}, {LIBRARY_LOG: b"older\n", DEBUG_LOG: b"older\n"}], ids=["new", "old"])
    def test_next_command(self, zfc, before):
        folders = Folders({VAR_TMP: zfc.var_tmp})
        expected = zfc(LIST).stdout
        folders.put(before)
        zfc(LIST, debug=4)
        left = [{}, before]
        for path in (LIBRARY_LOG, DEBUG_LOG):
            content = folders.place(path).read_bytes()
            assert len(content) > 20
            left += [{path: part} for part in (b"", content[: len(content) // 2], content[:-1], content)]
        for tree in left:
            folders.put(tree)
            assert zfc(LIST, debug=4).stdout == expected
            for path, content in tree.items():
                assert folders.place(path).read_bytes().startswith(content)
                assert folders.place(path).stat().st_size > len(content)

    def test_killed_before_each_step(self, zfc):
        folders = Folders({VAR_TMP: zfc.var_tmp})
        expected = zfc(LIST).stdout
        folders.put({})
        stepped = Stepped(zfc, LIST, folders)
        steps = stepped.steps()[1]
        for number in range(1, len(steps) + 1):
            folders.put({})
            assert stepped.end_at(number) == -signal.SIGKILL
            assert folders.tree() == dict(after_kill({}, steps[: number - 1]))
            assert zfc(LIST).stdout == expected


def test_mirror_of_the_shell(zfc):
    """It has whole prints up to the end of the run, and what it held before only until it is opened."""
    folders = of_work(zfc)
    before = {f"{zfc.work}/mirror": b"older\n"}
    folders.put(before)
    stepped = Stepped(zfc, "", folders, stdin=b"log mirror\nhelp\nq\n")
    stdout, steps = stepped.steps()
    final = (zfc.work / "mirror").read_bytes()
    assert final and b"Following is the list of available commands." in final and b"Following is" in stdout
    for number in range(1, len(steps) + 1):
        folders.put(before)
        assert stepped.end_at(number) == -signal.SIGKILL
        left = (zfc.work / "mirror").read_bytes()
        assert left == b"older\n" if number == 1 else final.startswith(left)
        assert folders.tree() == dict(after_kill(before, steps[: number - 1]))
