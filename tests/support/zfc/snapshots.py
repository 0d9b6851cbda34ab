"""Snapshots made and played back in the tests' private folders."""

import re
import subprocess

from .runner import BUILD, reject_sanitizer_report
from .tree import TREE

SNAPSHOT = BUILD / "bin" / "zfc-snapshot"
READING_WORDS = ("get", "getcli", "getraw", "getrawcli", "list", "listcli")
# They make no reading call alone: a firmware dump writes a file, and is in no snapshot.
NOT_PLAYED = {"-t port -s fwdump"}
RDP = ("-t port -s rdp get", "-t port -s rdp runcli")
# What a list shows of its items, and which lists a node's own reports take their identifiers from.
LISTED = {"adapter": "Adapters", "port": "Ports", "target": "Targets", "lun": "LUNs/Namespaces"}


def _leaves(node, words):
    path = " ".join(words)
    for leaf in node.get("leaves", []):
        if leaf[0] in READING_WORDS and path not in NOT_PLAYED:
            yield f"{path} {leaf[0]}"
    for name, below in node.get("nodes", {}).items():
        yield from _leaves(below, [*words, below["switch"], name])


def reading_commands():
    """Every command of the tree that makes reading calls alone, without a link test."""
    return [leaf for leaf in _leaves(TREE, []) if leaf not in RDP]


def list_commands():
    return [command for command in reading_commands() if command.split()[2] in ("list", "listcli")]


def report_commands(kind):
    """The reports about one adapter, port, target or LUN."""
    return [command for command in reading_commands() if command.startswith(f"-t {kind} -")]


def shell(zfc, commands, **options):
    """The output of all commands, run in one process."""
    lines = [command if isinstance(command, bytes) else command.encode() for command in commands]
    argv, env = zfc.command([], chatter=(), **options)
    done = subprocess.run(argv, input=b"\n".join([*lines, b"q\n"]), capture_output=True, env=env, timeout=120)
    reject_sanitizer_report(done.stderr)
    assert done.returncode == 0, done.stderr.decode(errors="replace")
    return done.stdout


def identifiers(zfc, **options):
    """The identifiers of a host by kind, as the list commands show them."""
    output = shell(zfc, [f"-t {kind} listcli" for kind in LISTED], **options)
    return {
        kind: re.findall(rb"^" + field.encode() + rb": (.*)$", output, re.MULTILINE) for kind, field in LISTED.items()
    }


def sample(items, most):
    """At most so many, spread over all, the first and the last among them."""
    if len(items) <= most:
        return items
    return [items[place * (len(items) - 1) // (most - 1)] for place in range(most)]


def all_reports(named, most=12, rdp=False, without=()):
    """Every list and every report about every thing named; for each kind at most `most` of them."""
    commands = [command.encode() for command in list_commands()]
    for kind, items in named.items():
        leaves = [leaf for leaf in report_commands(kind) if not leaf.startswith(tuple(without) or "\0")]
        leaves += [*RDP] if rdp and kind == "port" else []
        commands += [leaf.encode() + b" " + item for item in sample(items, most) for leaf in leaves]
    return commands


def take(zfc, file, words=(), status=0, **options):
    """Makes a snapshot in the run's working folder and returns its path and what standard error has."""
    argv, env = zfc.command(["-o", file, "--force", *words], program=SNAPSHOT, **options)
    done = subprocess.run(argv, capture_output=True, env=env, timeout=120)
    reject_sanitizer_report(done.stderr)
    assert done.returncode == status, done.stderr.decode(errors="replace")
    assert done.stdout == b""
    return zfc.work / file, done.stderr.decode()


def played(file, **variables):
    """The options of a run that plays a file back."""
    return {"library": "simulated", "env": {"TORPI_LAB_HOST": str(file), **variables}}
