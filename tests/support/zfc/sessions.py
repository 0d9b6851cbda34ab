"""Sessions in documents: fenced blocks marked `console`, in which "$ " begins a command, "> " continues it, and all
other lines are what it shows. A line of three dots among these is any number of lines."""

import re
import subprocess
from pathlib import Path

from .machine import without_staging_notice
from .runner import BUILD, ROOT

_FENCE = re.compile(r"^ *```console\n(.*?)^ *```$", re.MULTILINE | re.DOTALL)
_NEXT = "=== next command ==="
_ANY_LINES = "..."


def steps(text):
    """All commands of a document and what each shows, in order."""
    found = []
    for block in _FENCE.findall(text):
        commands = []
        for line in block.splitlines():
            if line.startswith("$ "):
                commands.append([line[2:] + "\n", ""])
            elif line.startswith("> ") or line == ">":
                assert commands and commands[-1][1] == "", f"a line that continues no command: {line}"
                commands[-1][0] += line[2:] + "\n"
            else:
                assert commands, f"output ahead of the first command: {line}"
                commands[-1][1] += line + "\n"
        found += [tuple(command) for command in commands]
    return found


def shows(expected, output):
    """Whether the output is that of the document. Line ends of a terminal count as plain ones; a last line may have none."""
    output = output.replace("\r\n", "\n")
    if output and not output.endswith("\n"):
        output += "\n"
    pattern = "".join(
        r"(?:.*\n)*" if line == _ANY_LINES + "\n" else re.escape(line) for line in expected.splitlines(keepends=True)
    )
    return re.fullmatch(pattern, output) is not None


def play(zfc, document):
    """Types the whole document into one shell, in a folder with the source's examples and the build, and returns the
    steps with what each showed."""
    typed = steps(Path(document).read_text())
    for name, place in (("examples", ROOT / "examples"), ("build/release", BUILD)):
        (zfc.work / name).parent.mkdir(exist_ok=True)
        (zfc.work / name).symlink_to(place)
    separator = f"echo '{_NEXT}'\n"
    script = "exec 2>&1\nunset TORPI_LAB_QUIET\n" + separator.join(command for command, _ in typed)
    argv, env = zfc.command(["-c", script], library="simulated", program="/bin/bash")
    done = subprocess.run(argv, capture_output=True, env=env, timeout=120)
    outputs = without_staging_notice(done.stdout).decode(errors="replace").split(f"{_NEXT}\n")
    assert len(outputs) == len(typed), f"the shell ended early: {outputs[-1]}"
    return [(command, expected, output) for (command, expected), output in zip(typed, outputs)]
