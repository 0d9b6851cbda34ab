"""The program's own memory gives out: one message, exit status 0, a document that is ended, no half-written file."""

import subprocess

import pytest
from lxml import etree

from zfc.config import IDENTIFIER as PORT
from zfc.config import Staging, bbcr, boot, nvme, one_port, params
from zfc.documents import RULER, XML_HEAD
from zfc.host import IDENTIFIER
from zfc.preload import needs_preload, preloaded

pytestmark = needs_preload

MESSAGE = b"zfcesxcli: out of memory\n"
# Where memory gives out: the first steps one by one, then ever wider ones, up to well past the last.
STEPS = [1, 2, 3, 5, 8, 13, 21, 34, 55, 89, 144, 233, 377, 610, 987, 10000]
ON_A_PORT = {"host": one_port(), "buffers": {"params": params(), "boot": boot(), "nvme": nvme(), "bbcr": bbcr()}}

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


def ended_at(zfc, step, words, options):
    """Runs the command with memory giving out at the executable's `step`-th request, and checks how it ends. Returns
    its output, and whether it got as far as that request."""
    argv, env = zfc.command(words, env=preloaded("refuse_memory", REFUSE_FROM=step), **options)
    done = subprocess.run(argv, env=env, capture_output=True, timeout=60)
    assert done.returncode == 0, step
    assert done.stderr in (b"", MESSAGE), step
    assert not list(zfc.staging.glob("*_tmp")), step
    return done.stdout, done.stderr == MESSAGE


def check_beginning(output, whole):
    """Of the whole output a beginning is left: nothing of a document, or a document that is ended."""
    if whole.startswith(XML_HEAD):
        if output:
            assert output.startswith(XML_HEAD)
            etree.fromstring(output)
    elif whole.startswith(RULER):
        if output:
            assert output.startswith(RULER) and output.count(RULER) == 2
        assert whole.startswith(output) or whole.startswith(output.removesuffix(RULER))
    else:
        assert whole.startswith(output)


@pytest.mark.parametrize("words, options", COMMANDS)
def test_ends_with_one_message(zfc, words, options):
    whole = zfc(words, **options).stdout
    ended = []
    for step in STEPS:
        output, is_ended = ended_at(zfc, step, words, options)
        if is_ended:
            check_beginning(output, whole)
        else:
            assert output == whole, step
        ended.append(is_ended)
    assert ended[0] and not ended[-1]
    assert ended == sorted(ended, reverse=True)


def test_every_step_of_a_report(zfc):
    """Somewhere in it memory gives out inside the document, which is then ended."""
    words, options = COMMANDS[3].values
    whole = zfc(words, **options).stdout
    outputs = set()
    for step in range(1, 10000):
        output, is_ended = ended_at(zfc, step, words, options)
        if not is_ended:
            break
        check_beginning(output, whole)
        outputs.add(output)
    assert output == whole
    assert outputs - {b"", whole}, "memory never gave out inside the document"


def test_every_step_of_a_rewrite_of_a_staged_file(zfc):
    """The staged file is there at every end, with a value for each key."""
    staging = Staging(zfc, "BBCR")
    words = ["-t", "port", "-s", "bbcr", "setFile", PORT, "-c", "3"]
    zfc(words, **ON_A_PORT)
    before = b"# a line that is longer than a short text\nBBCR_Count=4\nBBCR_Status=1\n"
    after = before.replace(b"Count=4", b"Count=3")
    found = set()
    for step in range(1, 10000):
        staging.write(before)
        if not ended_at(zfc, step, words, ON_A_PORT)[1]:
            break
        found.add(staging.read())
    assert found == {before, after}
