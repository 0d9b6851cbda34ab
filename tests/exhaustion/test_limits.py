"""Limits of the process: descriptors, address space, stack, size of files, and standard streams that are closed or do
not wait."""

import array
import fcntl
import os
import signal
import subprocess
import termios
import time

import pytest

from exhaustion import CALLS, LIBRARY, signal_name
from leaves import LEAVES
from outcomes import AGAIN, CUT, EMPTY, ENDED, SAME, SESSION, SILENT, TABLE, documents, is_whole, no_file
from zfc.host import Adapter, Host
from zfc.runner import Zfc

PLAIN = [leaf for leaf in LEAVES if leaf.is_xml]
STANDARD = 3  # descriptors of the standard streams
OPENAT = 257
PIPE = 4096
# One more is open at a time in a command, and two while a staged file is written anew.
FOR_COMMANDS, FOR_STAGING = STANDARD + 1, STANDARD + 2
MOST = 8


def library_opens(runs):
    """Whether the simulated library opens files in this leaf: its state, an image."""
    return any(event.owner == LIBRARY and event.what == OPENAT for event in runs.run(watch=CALLS).events)


def failures(run, runs):
    """Messages of failures that a library's answer may have led to."""
    return [end for end in TABLE["library_failures"] if end.encode() in run.stdout]


@pytest.mark.parametrize("leaf", PLAIN, ids=str)
def test_descriptors(bench, leaf):
    with bench.leaf(leaf) as runs:
        is_library_short = library_opens(runs)
        for count in range(MOST + 1):
            run = runs.run(files=count)
            if count < FOR_COMMANDS:
                allowed = [SILENT]
            elif leaf.plain == "setFile" and count < FOR_STAGING or leaf.variant == "-file" and count < FOR_COMMANDS:
                allowed = [no_file(leaf)]
            else:
                allowed = [SAME, *(failures(run, runs) if is_library_short and count < MOST else [])]
            assert (run.stderr == b"" or is_library_short) and not runs.verdict(quiet(run), allowed), (count, run)


def quiet(run):
    """The run without what the simulated library says on standard error."""
    said = (b"state.yaml: ", b"zfcesxcli: simulated host: out of memory")
    lines = run.stderr.splitlines(keepends=True)
    run.stderr = b"".join(line for line in lines if not any(text in line for text in said))
    return run


@pytest.mark.parametrize("leaf", PLAIN, ids=str)
def test_address_space(bench, leaf):
    """Nothing more may be mapped, or little: the heap still has what the process has mapped."""
    ends = {ENDED, SAME, SILENT, EMPTY, no_file(leaf), AGAIN + no_file(leaf)}
    ends.update(TABLE["buffers"].get(leaf.name, {}).values())
    with bench.leaf(leaf) as runs:
        for pages in (0, 1, 8, 33, 34, 40, 64, 1024):
            run = runs.run(space=pages * 4096)
            library_gave_out = run.stderr != b""
            allowed = [SESSION] if leaf.plain == "shell" else [*ends, *(failures(run, runs) if library_gave_out else [])]
            quiet(run)
            assert not (why := runs.verdict(run, allowed)), (pages, why, run)


@pytest.mark.parametrize("leaf", PLAIN, ids=str)
def test_stack(bench, leaf):
    """64 KiB do for every command, the simulated library's part of it included."""
    with bench.leaf(leaf) as runs:
        run = runs.run(stack=65536)
        assert not (why := runs.verdict(run, [SAME])), (why, run)


@pytest.mark.parametrize("leaf", PLAIN, ids=str)
def test_size_of_files(bench, leaf):
    """A file that would grow beyond the limit ends the process by the signal for it; the file that it was to replace is
    there."""
    with bench.leaf(leaf) as runs:
        for limit in (0, 64, 4096):
            run = runs.run(file_size=limit)
            assert run.status in (0, -signal.SIGXFSZ), (limit, signal_name(run.status))
            changing = [path for path in runs.found if path.endswith(("_tmp", ".dump", ".txt", ".nvram"))]
            may_stay = [path.rsplit("/", 1)[1] for path in changing]
            if run.status == 0:
                assert all(map(is_whole, documents(run.stdout))), (limit, run)
            elif not [path for path in runs.before if "/staging/" in path]:
                may_stay += [path for path in runs.found if "/staging/" in path]  # one in the making
            assert not (why := runs.mistake_in_files(run, may_stay)), (limit, why, run)


@pytest.mark.parametrize("leaf", PLAIN, ids=str)
def test_closed_streams(bench, leaf):
    """Which streams are closed shows in nothing but the text that then has nowhere to go."""
    with bench.leaf(leaf) as runs:
        for closed in range(1, 8):
            run = runs.run(closed=closed)
            is_read = closed & 1 and leaf.plain == "shell"
            allowed = [SILENT] if closed & 2 else [SESSION, CUT] if is_read else [SAME]
            assert not (why := runs.verdict(run, allowed)), (closed, why, run)
            if not is_read:
                assert {**runs.found} == {**runs.after}, closed


def test_no_descriptor_for_the_loader(tmp_path):
    """Without one the loader cannot open the device library: its status, and a line on standard error."""
    zfc = Zfc(tmp_path / "run")
    for count in range(STANDARD + 1):
        line = f"ulimit -n {count}; exec zfcesxcli version"
        argv, env = zfc.command(["-c", line], program="/bin/sh", library="simulated")
        done = subprocess.run(argv, env=env, capture_output=True, timeout=60)
        assert (done.returncode, done.stdout) == (127, b"") and b"cannot open" in done.stderr, count


def wait_until_full(reader, process):
    """Until the pipe holds all that it can, or the process has ended."""
    held = array.array("i", [0])
    while held[0] < PIPE and process.poll() is None:
        time.sleep(0.001)
        fcntl.ioctl(reader, termios.FIONREAD, held)


def test_pipe_that_does_not_wait(tmp_path):
    """Another process may have set the standard output's pipe so that a write into a full one fails at once: the
    document gets there whole."""
    zfc = Zfc(tmp_path / "run")
    host = Host([Adapter(model="M", serial=f"S{number:05}", ports=None) for number in range(500)])
    whole = zfc("-t adapter list", host=host).stdout
    argv, env = zfc.command("-t adapter list", host=host)
    reader, writer = os.pipe()
    fcntl.fcntl(writer, fcntl.F_SETPIPE_SZ, PIPE)
    os.set_blocking(writer, False)
    process = subprocess.Popen(argv, env=env, stdout=writer, stderr=subprocess.PIPE)
    os.close(writer)
    wait_until_full(reader, process)
    read = b""
    with os.fdopen(reader, "rb", buffering=0) as pipe:
        while piece := pipe.read(4096):
            read += piece
    assert process.wait(timeout=60) == 0 and process.stderr.read() == b""
    assert read == whole
