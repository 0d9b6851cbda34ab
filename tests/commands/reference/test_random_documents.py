"""The documents of random hosts, checked as the host's shell takes them.

Each host answers every reading command in one process, the program's own shell: about all of its adapters and ports, and
about twelve of its targets and LUNs, spread over all. Adapters whose names this shell would divide or change are asked through
the stand-in of the host's shell.
"""

import os
import re
import shlex

import pytest

from zfc.documents import is_plain
from zfc.esxcli import PROGRAM, Descriptor, Misfit
from zfc.random_hosts import random_host
from zfc.reference import commands
from zfc.runner import BUILD, EXECUTABLE
from zfc.snapshots import identifiers, played, sample, shell

SHELL = Descriptor(BUILD / "share" / "esxcli" / "zfcesxcli.xml")
RANDOM_HOSTS = int(os.environ.get("ZFC_RANDOM_HOSTS", "100"))
BATCH = 10  # of them in one test
MOST = {"adapter": 100, "port": 100, "target": 12, "lun": 12}  # of a host; no random one has so many adapters or ports


def reading_commands():
    """(the path of the host's shell, the words of the program, the kind of the one argument or None)."""
    for _, word, command, node in commands():
        document = command.get("document", node.get("document"))
        arguments = command.get("arguments") or []
        if "node" not in node or not isinstance(document, dict) or command.get("changes", "Nothing.") != "Nothing.":
            continue
        if len(arguments) <= 1 and {*map(str, arguments)} <= {*MOST}:
            path = ".".join(["zfcesxcli", *node["node"].split()[1::2], word])
            yield path, f"{node['node']} {word}", arguments[0] if arguments else None


READS = [*reading_commands()]


def test_reads_are_most_commands():
    kinds = [kind for _, _, kind in READS]
    assert kinds.count(None) == 4 and kinds.count("adapter") >= 3 and kinds.count("port") >= 16
    assert kinds.count("target") == 5 and kinds.count("lun") == 1


def is_one_word(name):
    return re.fullmatch(rb"[!#-&(-\[\]-~\x80-\xff]+", name) is not None


def in_own_shell(zfc, lines, **options):
    """What each line prints in the program's shell."""
    shown = shell(zfc, lines, **options).split(b"$>")
    assert shown[0] == b"" and len(shown) == len(lines) + 2, "a prompt for each line and for the end"
    return shown[1:-1]


def through_the_stand_in(zfc, path, kind, name, **options):
    command, values = SHELL.parse([*path.split("."), f"--{kind}={name.decode(errors='surrogateescape')}"])
    line = command.line(values).replace(PROGRAM, shlex.quote(str(EXECUTABLE)))
    return zfc(["sh", "-c", line], program="/usr/bin/busybox", **options).stdout


def documents(zfc, **options):
    """(the path, the name that it is about, what was printed) of one host."""
    named = identifiers(zfc, **options)
    assert all(map(is_one_word, named["port"] + named["target"] + named["lun"]))  # they have no texts of devices
    words = {kind: sample([*filter(is_one_word, named[kind])], most) for kind, most in MOST.items()}
    asked = [(path, line.encode(), name) for path, line, kind in READS for name in words.get(kind, [b""])]
    printed = in_own_shell(zfc, [line + b" " + name for _, line, name in asked], **options)
    yield from ((path, name, output) for (path, _, name), output in zip(asked, printed))
    odd = [name for name in named["adapter"] if not is_one_word(name)]
    for path, name in [(path, name) for path, _, kind in READS if kind == "adapter" for name in odd]:
        yield path, name, through_the_stand_in(zfc, path, kind="adapter", name=name, **options)


@pytest.mark.parametrize("first", range(0, RANDOM_HOSTS, BATCH))
def test_documents_of_random_hosts_fit(zfc, first):
    """Or they are not well-formed, because a text in them is none that XML may have as it is."""
    fitting = 0
    numbers = range(first, min(first + BATCH, RANDOM_HOSTS))
    for number in numbers:
        text = random_host(number)
        host = zfc.file(f"host{number}.yaml", text.encode())
        for path, name, output in documents(zfc, **played(host)):
            # A failure that comes when the document of the success is out has a document of its own.
            is_freed_in_vain = path.endswith(".scmstats.get") and "TORPI_FreeSCMRStatisticsList" in text
            shown = output.split(b"<?xml") if is_freed_in_vain else [b"", output.removeprefix(b"<?xml")]
            assert shown[0] == b"" and len(shown) in (2, 3), (number, path, name, output)
            for document in (b"<?xml" + part for part in shown[1:]):
                try:
                    SHELL.commands[path].check(document)
                    fitting += 1
                except Misfit as misfit:
                    assert "not well-formed" in str(misfit) and not is_plain(document), (number, path, name, output)
    assert fitting > 100 or len(numbers) < BATCH
