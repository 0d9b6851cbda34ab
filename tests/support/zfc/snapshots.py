"""Snapshots made and played back in the tests' private folders."""

import re

import yaml

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
    done = zfc.run(argv, env, b"\n".join([*lines, b"q\n"]))
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
    done = zfc.run(argv, env)
    reject_sanitizer_report(done.stderr)
    assert done.returncode == status, done.stderr.decode(errors="replace")
    assert done.stdout == b""
    return zfc.work / file, done.stderr.decode()


def played(file, **variables):
    """The options of a run that plays a file back."""
    return {"library": "simulated", "env": {"TORPI_LAB_HOST": str(file), **variables}}


_TOKEN = re.compile(r"(\d+):(?= |$)|([0-9a-f]{2})\*(\d+)|((?:[0-9a-f]{2})+)|\"([^\"]*)\"")


def decoded(text, size):
    """The bytes that a text of the file stands for, by the description in docs/snapshots.md."""
    found = bytearray(size)
    at = 0
    for line in ("" if text == "zeros" else text).splitlines():
        while line and not line.startswith("#"):
            token = _TOKEN.match(line)
            assert token, line
            offset, byte, times, digits, quoted = token.groups()
            if offset:
                at = int(offset)
            else:
                put = bytes.fromhex(byte) * int(times) if byte else bytes.fromhex(digits) if digits else quoted.encode()
                assert at + len(put) <= size
                found[at : at + len(put)] = put
                at += len(put)
            line = line[token.end() :].lstrip(" ")
    return bytes(found)


def ports_of(file):
    """The protocol entries in a file, as maps."""
    host = yaml.load(file.read_text(), Loader=getattr(yaml, "CSafeLoader", yaml.SafeLoader))
    adapters = host.get("adapters", [])
    return [entry for adapter in adapters for port in adapter.get("ports", []) for entry in port.get("protocols", [])]


def all_bytes(file):
    """Every text of bytes in a file, decoded: whole, and of LUNs each line."""

    def visit(value, key):
        if isinstance(value, (dict, list)):
            for below, item in value.items() if isinstance(value, dict) else [(key, item) for item in value]:
                yield from visit(item, below)
        elif key == "luns":
            yield from (decoded(line, 392) for line in value.splitlines() if line != "same")
        elif isinstance(value, str) and "\n" in value:
            yield decoded(value, 4096)

    return [*visit(yaml.load(file.read_text(), Loader=getattr(yaml, "CSafeLoader", yaml.SafeLoader)), "")]
