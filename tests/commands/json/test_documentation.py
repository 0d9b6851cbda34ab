"""The sessions in docs/json.md: each command is run, and its output is that of the document."""

import re
import subprocess

import pytest

from zfc.runner import ROOT

BLOCKS = re.findall(r"^```console\n(.*?)^```$", (ROOT / "docs" / "json.md").read_text(), re.MULTILINE | re.DOTALL)
SESSIONS = [
    (command, output) for block in BLOCKS for command, output in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block, re.MULTILINE)
]


def test_there_are_sessions():
    assert len(SESSIONS) >= 8


@pytest.mark.parametrize("command, output", SESSIONS, ids=[command[:60] for command, _ in SESSIONS])
def test_session(zfc, command, output):
    argv, env = zfc.command(["-c", f"exec 2>&1; {command}"], program="/bin/bash", library="simulated")
    done = subprocess.run(argv, capture_output=True, env=env, timeout=60)
    assert done.stdout.decode() == output
