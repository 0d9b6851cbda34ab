"""The tools without memory, and with every system call failing: a message, a status of their own, and no file half
written."""

import errno
import tempfile
from dataclasses import dataclass, field
from pathlib import Path

import pytest
import yaml

from bench import Bench
from exhaustion import CALLS, FAILS, MEMORY, SHORT, signal_name
from leaves import Leaf
from test_memory import library_requests
from test_system_calls import CLOSE, FSTATAT, FSYNC, OPENAT, READ, RENAME, UNLINK, WRITE, Fault
from zfc.runner import BUILD, ROOT, Zfc

DOCUMENT = b"""<?xml version="1.0"?><output xmlns:esxcli="znfc">
<structure typeName="FECInfo">
<field name="Message">
<string>Success</string></field>
<field name="FEC">
<list type="structure">
<structure typeName="FECList">
<field name="Data">
<string>FEC Status: true
      Errors: 41
</string></field>
</structure>
</list>
</field>
</structure>
</output>
"""


@dataclass
class Tool:
    program: str
    words: list
    failed: int  # the status of a failure
    stdin: bytes = b""
    files: dict = field(default_factory=dict)  # those that are there at the start
    runs_others: bool = False  # the filter of system calls would end the other program
    taken: str = ""  # the file for whatever the device library answers, its failures included

    def __str__(self):
        return " ".join([self.program, *self.words])


HOST = """adapters:
  - family: elm
    model: ZX160
    serial: E1
    ports:
      - wwpn: 21:00:f4:c7:aa:00:00:01
"""
OTHER = HOST.replace("E1", "E2")
STATE = "reboot-required: true\n"
IMAGE = (ROOT / "examples/flash/damaged.img").read_text()


def lab(*words, **files):
    """A command of zfc-lab; the files by their names, with an underscore for the point."""
    return Tool("zfc-lab", list(words), 1, files={name.replace("_", "."): text for name, text in files.items()})


TOOLS = [
    Tool("zfc-json", [], 2, stdin=2 * DOCUMENT),
    Tool("zfc-json", ["--stream", "--parsed-only"], 2, stdin=DOCUMENT),
    Tool("zfc-json", ["--", "-t", "port", "list"], 2, runs_others=True),
    Tool("zfc-snapshot", ["-o", "host.yaml"], 1, taken="host.yaml"),
    Tool(
        "zfc-snapshot",
        ["-o", "host.yaml", "--force", "--anonymise"],
        1,
        files={"host.yaml": "old\n"},
        taken="host.yaml",
    ),
    lab("new", "-o", "new.yaml"),
    lab("check", "host.yaml", host_yaml=HOST),
    lab("map", "--text", "host.yaml", host_yaml=HOST),
    lab("map", "-o", "host.svg", "--force", "host.yaml", host_yaml=HOST, host_svg="old"),
    lab("diff", "--json", "host.yaml", "other.yaml", host_yaml=HOST, other_yaml=OTHER),
    lab("reboot", "state.yaml", "host.yaml", host_yaml=HOST, state_yaml=STATE),
    lab("flash-image", "a.img", a_img=IMAGE),
    Tool("zfc-lab", ["run", "host.yaml", "--", "version"], 1, files={"host.yaml": HOST}, runs_others=True),
    Tool("zfc-lab", ["snapshot", "-o", "taken.yaml"], 1, runs_others=True),
]


@pytest.fixture
def tool_runs(request):
    tool = request.param
    with tempfile.TemporaryDirectory() as folder:
        zfc = Zfc(Path(folder) / "run")
        for name, text in tool.files.items():
            zfc.file(name, text.encode())
        bench = Bench(zfc, program=BUILD / "bin" / tool.program)
        leaf = Leaf(tool.program, tool.program, "", tool.words, stdin=tool.stdin)
        try:
            yield tool, bench.runs(leaf, {0, 1})
        finally:
            bench.close()


def mistake(tool, runs, run, is_mute):
    """Why this is neither a good run nor a failure that says so and leaves no half of anything."""
    if run.status < 0:
        return f"ended with {signal_name(run.status)}"
    good = runs.good
    if (run.status, run.stdout, run.stderr) == (good.status, good.stdout, good.stderr):
        return None if runs.found == runs.after else "a success without its files"
    # A program that it runs has failures of its own, which it passes on.
    if run.status not in (tool.failed, good.status) and not tool.runs_others:
        return f"status {run.status}"
    if run.stderr == good.stderr and run.status == 0:
        return "a failure passes for a success"
    if not run.stderr and not run.stdout and not is_mute:
        return "nothing is said"
    return runs.mistake_in_files(run, [tool.taken] if tool.taken and is_snapshot(runs, tool.taken) else [])


def is_snapshot(runs, name):
    content = next((content for path, content in runs.found.items() if path.endswith(f"/{name}")), b"")
    return content.startswith(b"# A host as zfc-snapshot") and yaml.safe_load(content)["snapshot"] == 1


def failures(tool, runs, requests, options):
    is_mute = options.get("only") == WRITE and options["onward"]  # so that nothing can be said either
    wrong = []
    for number in requests:
        run = runs.run(at=number, **options)
        if why := mistake(tool, runs, run, is_mute):
            wrong.append(f"number {number} of {options}: {why}: {run.stdout[-100:]!r} {run.stderr!r}")
    return wrong


@pytest.mark.parametrize("tool_runs", TOOLS, indirect=True, ids=str)
def test_memory(tool_runs):
    tool, runs = tool_runs
    count = runs.run(watch=MEMORY).counted
    wrong = []
    for onward in (0, 1):
        wrong += failures(tool, runs, library_requests(count), {"watch": MEMORY, "onward": onward})
    assert not wrong, f"{len(wrong)}:\n" + "\n".join(wrong[:8])


FAULTS = [
    Fault(WRITE, errno.ENOSPC),
    Fault(WRITE, errno.ENOSPC, onward=1),
    Fault(WRITE, errno.EINTR),
    Fault(WRITE, onward=1),
    Fault(READ, errno.EIO),
    Fault(READ, errno.EINTR),
    Fault(READ, onward=1),
    Fault(OPENAT, errno.EMFILE),
    Fault(CLOSE, errno.EIO),
    Fault(FSTATAT, errno.EIO),
    Fault(FSYNC, errno.EIO),
    Fault(RENAME, errno.EIO),
]
ALONE = [tool for tool in TOOLS if not tool.runs_others]


@pytest.mark.parametrize("tool_runs", ALONE, indirect=True, ids=str)
def test_system_calls(tool_runs):
    tool, runs = tool_runs
    events = runs.run(watch=CALLS).events
    wrong = []
    for fault in FAULTS:
        count = sum(event.what == fault.call for event in events)
        wrong += failures(tool, runs, range(1, count + 1), fault.options)
    assert not wrong, f"{len(wrong)}:\n" + "\n".join(wrong[:8])
