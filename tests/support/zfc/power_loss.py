"""What a kill or a loss of power leaves of the files that a run was changing, derived from the steps that it made.

A kill leaves what every other process saw: all steps up to it. A loss of power also loses what was not yet on the disk:

- The content of a file is on the disk as of its last sync. Without one after the last change the file may have the content
  of that sync, any content that it had since, nothing, or a part. A new file that was never synced may be empty.
- A name (made, renamed or removed) is on the disk as of the last sync of its folder. Changes of names since then may be
  there or not, each by itself, but not before an earlier change of the same name. A rename is there as a whole or not at
  all.
"""

from dataclasses import dataclass, field
from pathlib import PurePosixPath


@dataclass(frozen=True)
class Step:
    what: str
    path: str
    other: str = ""  # of a rename or a link: the new path
    content: bytes = b""  # of make, cut and write: what the file holds now

    def __str__(self):
        return " ".join(part for part in (self.what, self.path, self.other) if part)


def read_steps(text):
    """The steps of a log of tests/support/step_files.c, as a list; None for each that failed and changed nothing."""
    found = []
    for line in text.splitlines():
        what, result, path, *more = line.split("\t")
        if result != "0":
            found.append(None)
        elif what in ("rename", "link"):
            found.append(Step(what, path, other=more[0]))
        else:
            found.append(Step(what, path, content=bytes.fromhex(more[0]) if more else b""))
    return found


@dataclass(eq=False)
class File:
    contents: list = field(default_factory=lambda: [b""])  # the one on the disk, then those of every change since
    emptied: bool = False  # since the last sync: its length may be on the disk as 0

    def possible(self):
        """Every content that a loss of power may leave: the one on the disk first, that of the last change second."""
        last = self.contents[-1]
        if len(self.contents) == 1:
            return [last]
        parts = [last[: len(last) // 2], last[: max(len(last) - 2, 0)]]
        if not self.emptied:  # what grows keeps what it had
            parts = [part for part in parts if len(part) >= len(self.contents[0])]
        return list(dict.fromkeys([self.contents[0], last, *self.contents, *parts, *([b""] if self.emptied else [])]))


FOLDER = "folder"


@dataclass
class Change:
    """A change of names that its folder's sync puts on the disk: what each path names afterwards, None for nothing."""

    folder: str
    names: dict


class Disk:
    """Folders as a run changes them. `tree` has the content of each file by its path, and FOLDER for a folder."""

    def __init__(self, tree):
        self.on_disk = {path: content if content == FOLDER else File([content]) for path, content in tree.items()}
        self.seen = dict(self.on_disk)
        self.changes = []
        self.folders = {path for path, content in tree.items() if content == FOLDER}

    def _rename(self, names, path):
        self.changes.append(Change(str(PurePosixPath(path).parent), names))
        apply(self.seen, names)

    def make(self, step):
        """One step, as it is made."""
        if step.what in ("make", "cut", "write"):
            self._write(step)
        elif step.what == "mkdir":
            self.folders.add(step.path)
            self._rename({step.path: FOLDER}, step.path)
        elif step.what in ("unlink", "rmdir"):
            self._rename({step.path: None}, step.path)
        elif step.what == "link":
            self._rename({step.other: self.seen[step.path]}, step.other)
        elif step.what == "rename":
            assert PurePosixPath(step.path).parent == PurePosixPath(step.other).parent, step
            self._rename({step.path: None, step.other: self.seen[step.path]}, step.path)
        elif step.what == "sync":
            self._sync(step.path)
        else:
            assert step.what in ("open", "close", "chmod", "exit"), step

    def _write(self, step):
        if step.what == "make":
            self._rename({step.path: File()}, step.path)
        file = self.seen[step.path]
        file.emptied = file.emptied or step.what in ("make", "cut")
        if file.contents[-1] != step.content:
            file.contents.append(step.content)

    def _sync(self, path):
        if isinstance(self.seen.get(path), File):
            file = self.seen[path]
            file.contents, file.emptied = file.contents[-1:], False
            return
        for change in [change for change in self.changes if change.folder == path]:
            apply(self.on_disk, change.names)
            self.changes.remove(change)

    def after_kill(self):
        return tree_of(self.seen, lambda file: file.contents[-1])

    def after_power_loss(self, uncertain=8):
        """Every tree that a loss of power may leave now. Of changes of names the last `uncertain` ones are taken to be
        there: all, none, up to each of them, all but each one, and each one alone; older ones are all there."""
        settled = dict(self.on_disk)
        for change in self.changes[:-uncertain]:
            apply(settled, change.names)
        open_changes = self.changes[-uncertain:]
        for kept in subsets(len(open_changes)):
            names = dict(settled)
            for number in with_earlier(open_changes, kept):
                apply(names, open_changes[number].names)
            yield from self._with_contents(self._reachable(names))

    def _with_contents(self, names):
        """These names with contents: all files' of one kind, then each file's by itself beside the others' newest and
        oldest."""
        changed = [file for file in names.values() if file != FOLDER and len(file.contents) > 1]
        if not changed:
            yield tree_of(names, lambda file: file.contents[-1])
        for kind in range(max((len(file.possible()) for file in changed), default=0)):
            yield tree_of(names, lambda file: file.possible()[min(kind, len(file.possible()) - 1)])
        for alone in changed[1:] and changed:
            for content in alone.possible():
                yield tree_of(names, lambda file: content if file is alone else file.contents[-1])
                yield tree_of(names, lambda file: content if file is alone else file.contents[0])

    def _reachable(self, names):
        """Without what was in a folder that is not there."""
        lost = self.folders - {*names}
        return {path: entry for path, entry in names.items() if not lost & {str(up) for up in PurePosixPath(path).parents}}


def apply(names, change):
    for path, entry in change.items():
        if entry is None:
            names.pop(path, None)
        else:
            names[path] = entry


def subsets(count):
    """Which of so many changes are there: a prefix of them, all but one, one alone."""
    found = [tuple(range(end)) for end in range(count + 1)]
    found += [tuple(number for number in range(count) if number != lost) for lost in range(count)]
    found += [(kept,) for kept in range(count)]
    return list(dict.fromkeys(found))


def with_earlier(changes, kept):
    """The numbers of these changes and of all earlier ones that they follow on a name."""
    found = {*kept}
    for number in reversed(range(len(changes))):
        if any(changes[number].names.keys() & changes[later].names.keys() for later in found if later > number):
            found.add(number)
    return sorted(found)


def tree_of(names, content):
    return tuple(sorted((path, entry if entry == FOLDER else content(entry)) for path, entry in names.items()))


def after_kill(before, steps):
    """What is there after these steps, as long as the power stays on."""
    disk = Disk(before)
    for step in steps:
        if step is not None:
            disk.make(step)
    return disk.after_kill()


def states(before, steps, uncertain=8):
    """What may be there after an end before each step. Gives two maps from trees, as tuples of (path, content), to the
    number of the step before which the run ended first with that tree: after a kill and after a loss of power. The
    second one leaves out the end after the last step, which comes third: what a finished run may leave."""
    disk = Disk(before)
    killed, lost = {}, {}
    for number, step in enumerate(steps, 1):
        killed.setdefault(disk.after_kill(), number)
        for tree in disk.after_power_loss(uncertain):
            lost.setdefault(tree, number)
        if step is not None:
            disk.make(step)
    return killed, lost, set(disk.after_power_loss(uncertain))
