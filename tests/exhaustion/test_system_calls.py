"""Every system call of every leaf that can fail for want of something fails, or does less than it was asked for."""

import errno
import os
from collections import Counter
from dataclasses import dataclass

import pytest

from exhaustion import CALLS, FAILS, LIBRARY, PROGRAM, SHORT, signal_name
from leaves import LEAVES
from outcomes import AGAIN, CUT, HOLED, SAME, SESSION, SILENT, documents, is_whole, no_file, no_stream

READ, WRITE, CLOSE, STAT, FSTAT, IOCTL, NANOSLEEP, FLOCK, FSYNC, RENAME, UNLINK, READLINK, FCHMOD = (
    0, 1, 3, 4, 5, 16, 35, 73, 74, 82, 87, 89, 91,
)  # fmt: skip
OPENAT, FSTATAT, PPOLL = 257, 262, 271
STANDARD_OUTPUT = 1


@dataclass
class Fault:
    call: int
    error: int = 0  # 0: the call does half of what it was asked for
    onward: int = 0  # so do all later calls of this kind

    def __str__(self):
        what = errno.errorcode[self.error] if self.error else "short"
        return f"call {self.call}: {what}{' from then on' if self.onward else ''}"

    @property
    def options(self):
        kind = {"fault": FAILS, "error": self.error} if self.error else {"fault": SHORT}
        return {"watch": CALLS, "only": self.call, "onward": self.onward, **kind}


OF_PROGRAM = [
    Fault(WRITE, errno.ENOSPC),
    Fault(WRITE, errno.ENOSPC, onward=1),
    Fault(WRITE),
    Fault(WRITE, onward=1),
    Fault(READ, errno.EIO),
    Fault(READ, errno.EINTR),
    Fault(READ, onward=1),
    Fault(PPOLL, errno.EINTR),
    Fault(NANOSLEEP, errno.EINTR),
    Fault(OPENAT, errno.EMFILE),
    Fault(OPENAT, errno.EMFILE, onward=1),
    Fault(CLOSE, errno.EIO),
    Fault(FSTATAT, errno.EIO),
    Fault(IOCTL, errno.EIO),
    Fault(FSYNC, errno.EIO),
    Fault(RENAME, errno.EIO),
    Fault(UNLINK, errno.EIO),
]
OF_LIBRARY = [
    Fault(WRITE, errno.ENOSPC),
    Fault(WRITE, errno.EINTR),
    Fault(WRITE),
    Fault(READ, errno.EIO),
    Fault(READ, errno.EINTR),
    Fault(READ),
    Fault(OPENAT, errno.EMFILE),
    Fault(OPENAT, errno.EINTR),
    *(Fault(call, errno.EIO) for call in (CLOSE, FSTATAT, FLOCK, FSYNC, RENAME, READLINK, FCHMOD)),
    Fault(FLOCK, errno.EINTR),
    Fault(NANOSLEEP, errno.EINTR),
]


def is_quiet_loss(leaf, fault):
    """A firmware dump is a success however much of it could be written."""
    return leaf.name == "port-fwdump get" and fault.call in (WRITE, CLOSE)


def is_for_sync(event):
    """Whether a file or a folder is opened only to be waited for; streams are opened for writing, or by fopen."""
    return event.via == "open" and event.size & os.O_ACCMODE == os.O_RDONLY


def ends_of(leaf, fault, event, streams):
    """How the run may end. Where the text of the document itself is lost, nobody is left to say so."""
    is_document_lost = event.what == WRITE and event.size == STANDARD_OUTPUT and fault.error != 0
    if is_document_lost:
        return [CUT if fault.onward else HOLED]
    if leaf.plain == "shell":
        return [CUT, SESSION] if fault.call == WRITE and fault.onward else [SESSION]  # the mirror comes first
    if fault.error == 0:
        return [SAME]
    if event.what == OPENAT and is_for_sync(event):
        return [SAME]  # what can't be opened is not waited for
    if event.what == OPENAT and event.via == "open":
        number = streams.index(event.number) + 1
        end = no_stream(leaf, number, len(streams))
        return [end, SILENT] if fault.onward and number > 1 else [end]
    if event.what == FSYNC:
        return [no_file(leaf) if leaf.plain == "setFile" else SAME]  # a removal and a dump are done all the same
    if event.what in (OPENAT, READ, RENAME, UNLINK):
        ends = [no_file(leaf)]
        # The removal of a staged file after its commit, whose failure is logged.
        return [*ends, SAME] if event.what == UNLINK and leaf.plain == "set" else ends
    # What the library printed, or a file that was only read, is lost unseen; a staged file that is lost is a failure,
    # and a success is one for its files too.
    return [SAME, no_file(leaf)] if event.what in (WRITE, CLOSE) else [SAME]


def stays(fault, leaf):
    """Files that a failure has to leave: what could not be renamed or removed."""
    names = ["_tmp"] if fault.call in (RENAME, UNLINK) else []
    if fault.call == UNLINK and leaf.plain == "set" or fault.call == RENAME:
        names.append(leaf.words[-1] if leaf.plain == "set" else "".join(w for w in leaf.words if w.startswith("FC_")))
    return names + ([leaf.words[-1]] if is_quiet_loss(leaf, fault) else [])


@pytest.mark.parametrize("leaf", [leaf for leaf in LEAVES if leaf.is_xml], ids=str)
def test_of_the_program(bench, leaf, record_property):
    with bench.leaf(leaf) as runs:
        wrong, made = [], 0
        events = runs.run(watch=CALLS).events
        for fault in OF_PROGRAM:
            counted = [event for event in events if event.owner == PROGRAM and event.what == fault.call]
            numbers = range(1, len(counted) + 1)
            for number, event in zip(numbers, counted):
                event.number = number
            streams = [event.number for event in counted if event.via == "open" and not is_for_sync(event)]
            for number, event in zip(numbers, counted):
                run = runs.run(at=number, **fault.options)
                made += 1
                assert run.failed, "the runs differ"
                allowed = ends_of(leaf, fault, event, streams)
                if fault.onward and fault.error:
                    allowed = [*allowed, no_file(leaf), SILENT, AGAIN + no_file(leaf)]
                if why := runs.verdict(run, allowed, stays(fault, leaf)):
                    place = f"number {number} ({event.via}, {event.size})"
                    wrong.append(f"{fault}, {place}: {why}: {run.stdout[-200:]!r} {run.stderr!r}")
        record_property("runs", made)
        assert not wrong, f"{len(wrong)} of {made}:\n" + "\n".join(wrong[:12])


@pytest.mark.parametrize("leaf", [leaf for leaf in LEAVES if leaf.is_xml], ids=str)
def test_of_the_device_library(bench, leaf, record_property):
    """Whatever the simulated library answers then, the program prints whole documents, and files are whole."""
    with bench.leaf(leaf) as runs:
        wrong, made = [], 0
        kinds = Counter(event.what for event in runs.run(watch=CALLS).events if event.owner == LIBRARY)
        for fault in OF_LIBRARY:
            for number in range(1, kinds[fault.call] + 1):
                run = runs.run(at=number, owners=LIBRARY, **fault.options)
                made += 1
                why = None if run.status == 0 else f"ended with {signal_name(run.status)}"
                why = why or (None if all(map(is_whole, documents(run.stdout))) else "not whole")
                if why := why or runs.mistake_in_files(run):
                    wrong.append(f"{fault}, number {number}: {why}: {run.stdout[-200:]!r} {run.stderr!r}")
        record_property("runs", made)
        assert not wrong, f"{len(wrong)} of {made}:\n" + "\n".join(wrong[:12])
