"""The program's own memory gives out: one message, exit status 0, and whatever was written of the document."""

import subprocess

import pytest

from zfc.config import IDENTIFIER as PORT
from zfc.config import boot, nvme, one_port, params
from zfc.host import IDENTIFIER
from zfc.preload import needs_preload, preloaded

pytestmark = needs_preload

MESSAGE = b"zfcesxcli: out of memory\n"
# Where memory gives out: the first steps one by one, then ever wider ones, up to well past the last.
STEPS = [1, 2, 3, 5, 8, 13, 21, 34, 55, 89, 144, 233, 377, 610, 987, 10000]
ON_A_PORT = {"host": one_port(), "buffers": {"params": params(), "boot": boot(), "nvme": nvme()}}

COMMANDS = [
    pytest.param(["help"], {}, id="help"),
    pytest.param(["-t", "adapter", "list"], {}, id="list"),
    pytest.param(["-t", "adapter", "listcli"], {}, id="listcli"),
    pytest.param(["-t", "adapter", "-s", "info", "get", IDENTIFIER], {}, id="adapter"),
    pytest.param(["-t", "adapter", "-s", "info", "getcli", "nobody"], {}, id="nobody"),
    pytest.param(["-t", "port", "-s", "info", "getcli", PORT], ON_A_PORT, id="port"),
    pytest.param(["-t", "port", "-s", "hbaparams", "get", PORT], ON_A_PORT, id="parameters"),
    pytest.param(["-t", "port", "-s", "hbaparams", "setFilecli", PORT, "-u", "3"], ON_A_PORT, id="staging"),
    pytest.param(["-t", "port", "-s", "bootconfig", "getcli", PORT, "-b", "BIOS"], ON_A_PORT, id="boot"),
    pytest.param(["no", "such", "command"], {}, id="unknown"),
]


@pytest.mark.parametrize("words, options", COMMANDS)
def test_ends_with_one_message(zfc, words, options):
    whole = zfc(words, **options).stdout
    ended = []
    for step in STEPS:
        argv, env = zfc.command(words, env=preloaded("refuse_memory", REFUSE_FROM=step), **options)
        done = subprocess.run(argv, env=env, capture_output=True, timeout=60)
        assert done.returncode == 0, step
        assert done.stderr in (b"", MESSAGE), step
        if done.stderr == b"":
            assert done.stdout == whole, step
        else:
            assert whole.startswith(done.stdout), step
        ended.append(done.stderr == MESSAGE)
    assert ended[0] and not ended[-1]
    assert ended == sorted(ended, reverse=True)
