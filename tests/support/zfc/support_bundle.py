"""A stand-in for the host's collector of support bundles: reads a manifest by its grammar and does what its rows say."""

import re
import signal
import subprocess
from dataclasses import dataclass
from fnmatch import translate

HEADS = ("Manifest name", "Manifest group", "Manifest default")
ACTIONS = {"copy": {"RECURSE"}, "safecopy": {"RECURSE"}, "run": {"TIMEOUT"}}


class Refused(Exception):
    """A line that the grammar does not have."""


@dataclass
class Row:
    action: str
    options: dict
    what: str  # a command, or a file that may hold "*"


@dataclass
class Manifest:
    name: str
    group: str
    enabled: bool
    rows: list


def _options(action, text):
    if text == "-":
        return {}
    name, _, value = text.partition("=")
    if name not in ACTIONS[action] or (name == "TIMEOUT") != value.isdecimal():
        raise Refused(f"option: {text}")
    return {name: int(value) if value else True}


def read(text):
    lines = text.splitlines()
    head = []
    for name, line in zip(HEADS, lines):
        if not line.startswith(f"# {name}: "):
            raise Refused(f"expected {name}: {line}")
        head.append(line.removeprefix(f"# {name}: "))
    if len(head) < len(HEADS) or not all(re.fullmatch("[A-Za-z]+", word) for word in head):
        raise Refused(f"head: {head}")
    if head[2] not in ("Enabled", "Disabled"):
        raise Refused(f"default: {head[2]}")
    rows = []
    for line in lines[len(HEADS) :]:
        if not line or line.startswith("#"):
            continue
        action, options, what = [*line.split(None, 2), "", ""][:3]
        if action not in ACTIONS or not what:
            raise Refused(f"row: {line}")
        if action != "run" and (" " in what or re.search(r"[][?{}]", what) or not what.startswith("/")):
            raise Refused(f"file: {what}")
        rows.append(Row(action, _options(action, options), what))
    return Manifest(head[0], head[1], head[2] == "Enabled", rows)


def _copied(what, folders):
    """The files that a row names: "*" is the only wildcard, and folders are not copied."""
    for place, folder in folders.items():
        if what.startswith(f"{place}/"):
            name = re.compile(translate(what.removeprefix(f"{place}/").replace("[", "[[]")))
            for path in sorted(folder.iterdir()):
                if name.match(path.name) and path.is_file():
                    yield f"{place}/{path.name}", path.read_bytes()
            return
    raise Refused(f"no such place: {what}")


def collect(manifest, folders, command, faster=1):
    """The bundle: the content of its files, by the commands and the paths that gave them.

    folders: where the folders of the host are here; command: makes an argument vector and an environment of the words of
    a command; faster: by what every time limit is divided."""
    bundle = {}
    for row in manifest.rows:
        if row.action != "run":
            bundle.update(_copied(row.what, folders))
            continue
        argv, environment = command(row.what.split())
        process = subprocess.Popen(argv, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        try:
            said, _ = process.communicate(timeout=row.options["TIMEOUT"] / faster if "TIMEOUT" in row.options else 600)
        except subprocess.TimeoutExpired:
            process.send_signal(signal.SIGKILL)
            said, _ = process.communicate()
        bundle[row.what] = said
    return bundle
