"""Runs of zfc-json on documents given as bytes, and documents by the rules of the program's writer."""

import json
import os
import subprocess
from dataclasses import dataclass

from .documents import XML_HEAD
from .runner import ROOT, ZFC_JSON, reject_sanitizer_report

SCHEMAS = ROOT / "tools" / "json" / "schema"


def refuse(name):
    raise ValueError(f"{name} is no JSON")


def strict(line):
    """One JSON value: no NaN, no infinity, no name twice in an object."""

    def unique(pairs):
        assert len(dict(pairs)) == len(pairs), pairs
        return dict(pairs)

    return json.loads(line, parse_constant=refuse, object_pairs_hook=unique)


@dataclass
class Converted:
    stdout: bytes
    stderr: str
    status: int

    @property
    def values(self):
        """The value of each line."""
        assert self.stdout == b"" or self.stdout.endswith(b"\n")
        return [strict(line) for line in self.stdout.decode().split("\n")[:-1]]


def environment():
    names = ("PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")
    return {"LC_ALL": "C", **{name: os.environ[name] for name in names if name in os.environ}}


def convert(documents, *options, program=ZFC_JSON, **settings):
    done = subprocess.run(
        [program, *options], input=documents, capture_output=True, timeout=60, env=environment(), **settings
    )
    reject_sanitizer_report(done.stderr)
    return Converted(done.stdout, done.stderr.decode(), done.returncode)


def field(name, value):
    return b'<field name="%s">\n<string>%s</string></field>\n' % (name.encode(), value)


def structure(name, *fields):
    return b'<structure typeName="%s">\n%s</structure>\n' % (name.encode(), b"".join(fields))


def listed(*structures):
    return b'<list type="structure">\n%s</list>\n' % b"".join(structures)


def list_field(name, *structures):
    return b'<field name="%s">\n%s</field>\n' % (name.encode(), listed(*structures))


def document(content):
    return XML_HEAD + content + b"</output>\n"


def report(text):
    """A document with this report."""
    inner = structure("LunInfoList", field("Data", text))
    return document(structure("LunInformation", field("Message", b"Success"), list_field("LunInfo", inner)))


def lun_list(*identifiers):
    return document(listed(*(structure("LunList", field("LUNs/Namespaces", name)) for name in identifiers)))
