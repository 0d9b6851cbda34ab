"""The modes of all files that are made, under several file creation masks: docs/security.md has the same table."""

import os
import re
import stat
import subprocess

import pytest

from zfc.config import bbcr, params
from zfc.port import IDENTIFIER, one_port
from zfc.runner import BUILD, EXECUTABLE, ROOT

DAHLIA = "FC_21:00:f4:c7:aa:64:00:10"  # of the built-in host
MASKS = (0o000, 0o022, 0o077)

# By the file's name in the document: the mode that the mask is taken off, where the file is, and the run that makes it.
# A mode of None is that of the file, whatever the mask.
MADE = {
    "library output file": (0o664, "var_tmp/torpi-output.log", "help", {}),
    "debug log": (0o664, "var_tmp/zfcesxcli.log", "help", {"debug": 1}),
    "staged file": (0o666, f"staging/BBCR_{IDENTIFIER}", f"-t port -s bbcr setFilecli {IDENTIFIER}", {}),
    "firmware dump": (0o666, "work/file", f"-t port -s fwdump getcli {IDENTIFIER} file", {}),
    "mirror of the shell": (0o200, "work/file", "", {"stdin": b"log file\nq\n"}),
    "saved by the simulated library": (0o664, "work/file", f"-t port -s hbaparams savecli {DAHLIA} file", {"library": "simulated"}),
    "state file": (0o644, "work/file", f"-t port -s beacon setcli {DAHLIA} on", {"env": {"TORPI_LAB_STATE": "file"}}),
    "lock of the state file": (
        0o664,
        "work/file.lock",
        f"-t port -s beacon setcli {DAHLIA} on",
        {"env": {"TORPI_LAB_STATE": "file"}},
    ),
    "trace": (0o664, "work/file", "-t adapter listcli", {"env": {"TORPI_LAB_TRACE": "file"}}),
    "staging folder of a state": (0o775, "work/file.staged", "run --state file -- help", {"tool": "zfc-lab"}),
    "output of a tool": (0o664, "work/file", "new -o file", {"tool": "zfc-lab"}),
    "snapshot": (0o664, "work/file", "-o file", {"tool": "zfc-snapshot"}),
}
WHATEVER_THE_MASK = {"state file"}


def make(zfc, words, mask, *, stdin=b"", debug=None, library="hostile", env=None, tool=None):
    simulated = tool or env or library == "simulated"
    argv, variables = zfc.command(
        words,
        program=BUILD / "bin" / tool if tool else EXECUTABLE,
        library="simulated" if simulated else "hostile",
        host=one_port(),
        buffers={"params": params(), "bbcr": bbcr(), "dump": b"of a device\n"},
        debug=debug,
        env=env,
    )
    subprocess.run(argv, input=stdin, capture_output=True, env=variables, timeout=60, check=True, umask=mask)


def mode_of(path):
    return stat.S_IMODE(os.lstat(path).st_mode)


@pytest.mark.parametrize("mask", MASKS, ids=oct)
@pytest.mark.parametrize("name", MADE)
def test_mode(zfc, name, mask):
    mode, path, words, options = MADE[name]
    make(zfc, words, mask, **options)
    expected = mode if name in WHATEVER_THE_MASK else mode & ~mask
    assert oct(mode_of(zfc.folder / path)) == oct(expected)


@pytest.mark.parametrize("mode", [0o600, 0o640, 0o666])
def test_a_replaced_state_file_keeps_its_mode(zfc, mode):
    _, path, words, options = MADE["state file"]
    make(zfc, words, 0o022, **options)
    (zfc.folder / path).chmod(mode)
    make(zfc, words.replace(" on", " off"), 0o022, **options)
    assert oct(mode_of(zfc.folder / path)) == oct(mode)


def test_document_has_the_same_modes():
    text = (ROOT / "docs" / "security.md").read_text()
    rows = dict(re.findall(r"^\| ([^|]+?) \| (0[0-7]{3})(?:, whatever the umask)? \|", text, re.MULTILINE))
    assert rows == {name: f"{row[0]:04o}" for name, row in MADE.items()}
