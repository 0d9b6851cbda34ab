"""Staged files after a run that was killed, got a signal or lost its power at any of its steps on files.

Not everything can be old or new, by the fixed order in which these files are written:

- An update removes the old file before it renames the new one. Between the two there is no file, and the whole new one as
  FILE_tmp.
- A new file is written under its own name, key by key, and is on the disk when `setFile` ends. Until then it has some of its
  lines, and after a loss of power the last one may be cut. It has nothing of the user's before.
"""

import itertools
import signal

import pytest

from zfc.config import IDENTIFIER, INVALID, UNKNOWN, changed
from zfc.interrupted import STAGING, Folders, Stepped, needs_following
from zfc.power_loss import after_kill, states
from zfc.staged import BBCR, BOOT, EXT, NODES, OPTIONS, message, run, writes

pytestmark = needs_following


class Staged:
    """One node's staged file in a folder that holds nothing else."""

    def __init__(self, zfc, node):
        self.zfc, self.node = zfc, node
        self.folders = Folders({STAGING: zfc.staging})
        self.file = f"{STAGING}/{node.family}_{IDENTIFIER}"
        self.temporary = self.file + "_tmp"

    def put(self, content=None, temporary=None):
        given = {self.file: content, self.temporary: temporary}
        self.folders.put({path: content for path, content in given.items() if content is not None})

    def command(self, command, options=()):
        words = ["-t", "port", "-s", self.node.word, f"{command}cli", IDENTIFIER, *options]
        return Stepped(self.zfc, words, self.folders, **OPTIONS)

    def split(self, tree):
        """The contents of the file and of its copy; None for one that is not there. Nothing else may be."""
        tree = dict(tree)
        found = tree.pop(self.file, None), tree.pop(self.temporary, None)
        assert tree == {}
        return found

    def left(self):
        return self.split(self.folders.tree())


def chain(content, changes):
    """The contents that a file has while these changes are written into it, one key after the other."""
    found = [content]
    for key, value in sorted(changes.items()):
        found.append(changed(found[-1], **{key: value}))
    return found


def created(node):
    """The contents of a new file, line by line, then with the changes."""
    growing = [*itertools.accumulate(node.created.splitlines(keepends=True))]
    return growing + chain(node.created, node.changes)[1:]


def before(node):
    """A staged file in which all that the node's options change has another value."""
    return changed(node.created, **{key: 1 - value if value in (0, 1) else value + 1 for key, value in node.changes.items()})


def with_changes(node, content):
    """What `setFile` makes of a file of whole lines: values at their places, missing keys at the end, in their order."""
    values = dict(line.split("=", 1) for line in content.decode().splitlines())
    changes = dict(node.changes)
    if node in (BOOT, EXT):  # these two write the mode of their run each time
        changes["Boot_Mode"] = dict(line.split("=", 1) for line in node.created.decode().splitlines())["Boot_Mode"]
    values.update({key: str(value) for key, value in sorted(changes.items())})
    return "".join(f"{key}={value}\n" for key, value in values.items()).encode()


def check_update(state, contents):
    """What an interrupted update may leave. Returns its name."""
    content, temporary = state
    if content is None:
        assert temporary in contents
        return "gap"
    assert content in contents
    # The copy is never longer than what it is made of, and has nothing else in it.
    assert temporary is None or any(whole.startswith(temporary) for whole in contents)
    return "old" if content == contents[0] else "new" if content == contents[-1] else "between"


def check_creation(state, contents):
    content, temporary = state
    for found in state:
        assert found is None or any(whole.startswith(found) for whole in contents)
    if content is None:
        return "none" if temporary is None else "gap"
    return "whole" if content in contents else "cut"


def check_next_commands(staged, fresh, state):
    """`get`, `setFile` and `set` after an interrupted run, each from the same state; then a change that is set."""
    node, zfc = staged.node, staged.zfc
    content, _ = state
    whole = content is None or content == b"" or content.endswith(b"\n")
    staged.put(*state)
    assert run(zfc, node, "get").stdout == fresh
    assert staged.left() == state

    result = run(zfc, node, "set")
    if content is None:
        assert message(result) == UNKNOWN and writes(node, result) == [] and staged.left() == state
    elif message(result) == "Success":
        assert len(writes(node, result)) == 1 and staged.left()[0] is None
    else:  # of a cut value alone
        assert not whole and message(result) == INVALID and writes(node, result) == [] and staged.left() == state

    staged.put(*state)
    result = run(zfc, node, "setFile", node.options)
    if not whole:  # the way out of a cut file is to remove it
        assert message(result) in ("Success", INVALID)
        staged.put(None, state[1])
        result = run(zfc, node, "setFile", node.options)
    assert message(result) == "Success"
    again = chain(node.created, node.changes)[-1] if content is None or not whole else with_changes(node, content)
    assert staged.left() == (again, None)
    result = run(zfc, node, "set")
    assert message(result) == "Success" and len(writes(node, result)) == 1
    assert staged.left() == (None, None)


def one_of_each(found, check):
    """The states by what `check` says of them and of the copy; of each kind the first and the last."""
    kinds = {}
    for state in sorted(found, key=repr):
        copy = "no copy" if state[1] is None else "empty copy" if state[1] == b"" else "copy"
        kinds.setdefault((check(state), copy), []).append(state)
    return {kind: {members[0], members[-1]} for kind, members in kinds.items()}


@pytest.mark.parametrize("node", NODES, ids=str)
class TestUpdate:
    def states(self, zfc, node):
        staged = Staged(zfc, node)
        staged.put(before(node))
        stdout, steps = staged.command("setFile", node.options).steps()
        assert b"Message: Success" in stdout and None not in steps
        return staged, [{staged.split(tree) for tree in trees} for trees in states({staged.file: before(node)}, steps)]

    def test_old_or_new_content_and_the_next_commands(self, zfc, node):
        """In both models the same: a loss of power adds parts of copies, and nothing to the file itself."""
        staged, (killed, lost, finished) = self.states(zfc, node)
        contents = chain(before(node), node.changes)
        check = lambda state: check_update(state, contents)  # noqa: E731
        assert finished == {(contents[-1], None)}
        assert {check(state) for state in killed} >= {"old", "gap", "new"}
        fresh = run(zfc, node, "get").stdout
        for some in one_of_each(killed | lost, check).values():
            for state in some:
                check_next_commands(staged, fresh, state)


@pytest.mark.parametrize("node", NODES, ids=str)
class TestCreation:
    def test_lines_of_the_new_file_and_the_next_commands(self, zfc, node):
        staged = Staged(zfc, node)
        contents = created(node)
        check = lambda state: check_creation(state, contents)  # noqa: E731
        staged.put()
        stdout, steps = staged.command("setFile", node.options).steps()
        assert b"Message: Success" in stdout and None not in steps
        killed, lost, finished = ({staged.split(tree) for tree in trees} for trees in states({}, steps))
        assert finished == {(contents[-1], None)}
        # A kill cuts nothing: the file is empty, or has whole lines, or its successor has.
        for content, temporary in killed:
            assert content in (None, b"", *contents)
            assert content is not None or temporary in (None, *contents)
        kinds = one_of_each(killed | lost, check)
        assert {kind for kind, _ in kinds} == {"none", "gap", "whole", "cut"}
        fresh = run(zfc, node, "get").stdout
        for some in kinds.values():
            for state in some:
                check_next_commands(staged, fresh, state)

    def test_refused_option(self, zfc, node):
        """The new file stays, with the device's values, also after a loss of power."""
        staged = Staged(zfc, node)
        staged.put()
        stdout, steps = staged.command("setFile", node.refused).steps()
        assert b"Message: Failed" in stdout
        assert {staged.split(tree) for tree in states({}, steps)[2]} == {(node.created, None)}


@pytest.mark.parametrize("node", NODES, ids=str)
def test_commit(zfc, node):
    """The file is there until the device has its values, and gone for good when `set` has ended."""
    staged = Staged(zfc, node)
    content = before(node)
    staged.put(content)
    stdout, steps = staged.command("set").steps()
    assert b"Message: Success" in stdout and None not in steps
    killed, lost, finished = ({staged.split(tree) for tree in trees} for trees in states({staged.file: content}, steps))
    assert killed == lost == {(content, None), (None, None)}
    assert finished == {(None, None)}
    # Killed at the removal, the first step on the folder: the device has the record, and a second `set` writes it again.
    staged.put(content)
    assert staged.command("set").end_at(1) == -signal.SIGKILL
    assert staged.left() == (content, None)
    assert len([call for call in zfc.calls() if call.startswith(node.write + "(")]) == 1
    result = run(zfc, node, "set")
    assert message(result) == "Success" and len(writes(node, result)) == 1 and staged.left() == (None, None)


COMMANDS = {
    "update": ("setFile", BBCR.options, before(BBCR)),
    "creation": ("setFile", BBCR.options, None),
    "commit": ("set", [], before(BBCR)),
}


@pytest.mark.parametrize("name", COMMANDS)
class TestRealEnds:
    """Runs that are really ended, at each of their steps: the folder is as the model has it."""

    def prepare(self, zfc, name):
        command, options, content = COMMANDS[name]
        staged = Staged(zfc, BBCR)
        staged.put(content)
        stepped = staged.command(command, options)
        _, steps = stepped.steps()
        return staged, content, stepped, steps

    @staticmethod
    def expected(staged, content, steps, number):
        """What is there once all steps before this one are made."""
        return staged.split(after_kill({} if content is None else {staged.file: content}, steps[: number - 1]))

    def test_killed_before_each_step(self, zfc, name):
        staged, content, stepped, steps = self.prepare(zfc, name)
        assert len(steps) >= 3 and steps[-1].what == "exit"
        for number in range(1, len(steps) + 1):
            staged.put(content)
            assert stepped.end_at(number) == -signal.SIGKILL
            assert staged.left() == self.expected(staged, content, steps, number), steps[number - 1]
        staged.put(content)
        assert stepped.end_at(len(steps) + 1) == 0

    @pytest.mark.parametrize(
        "how, end",
        [
            (signal.SIGINT, signal.SIGINT),
            (signal.SIGTERM, signal.SIGINT),  # the handler ends every run by SIGINT
            (signal.SIGABRT, signal.SIGINT),
            (signal.SIGHUP, signal.SIGHUP),
            (signal.SIGPIPE, signal.SIGPIPE),
        ],
    )
    def test_signal_at_each_step_ends_the_run(self, zfc, name, how, end):
        """The step itself is made: what is left is what a kill before the next one leaves."""
        staged, content, stepped, steps = self.prepare(zfc, name)
        for number in range(1, len(steps)):
            staged.put(content)
            assert stepped.end_at(number, how) == -end
            assert staged.left() == self.expected(staged, content, steps, number + 1), steps[number - 1]

    def test_sigquit_at_each_step_changes_nothing(self, zfc, name):
        staged, content, stepped, steps = self.prepare(zfc, name)
        for number in range(1, len(steps)):
            staged.put(content)
            assert stepped.end_at(number, signal.SIGQUIT) == 0
            assert staged.left() == self.expected(staged, content, steps, len(steps) + 1)
