"""The data of the matrix: messages.yaml, common.yaml and a file for each node; README.md says what they hold."""

from dataclasses import dataclass, field
from pathlib import Path

import yaml
from zfc.tree import TREE

FOLDER = Path(__file__).resolve().parents[1]
_LOADER = getattr(yaml, "CSafeLoader", yaml.SafeLoader)


def load(name):
    return yaml.load((FOLDER / name).read_text(), _LOADER)


def listed(value):
    """A value, or a list of them, as a list."""
    return value if isinstance(value, list) else [value]


@dataclass
class Leaf:
    """One form of a command as the command tree has it."""

    word: str
    form: str  # "xml" or "text"
    usage: str


@dataclass
class Command:
    """One command of a node: the data that its look-up, its node and it itself have, the last one first."""

    node: str  # the file's name
    name: str
    path: list  # the words that lead to it
    leaves: list
    data: dict
    own: dict  # that of the node and the command alone
    statuses: dict  # [code, message] by name

    def get(self, name, default=None):
        value = self.data.get(name, default)
        return default if value is None else value

    def message(self, status):
        """What a document of this command says of a status: classes list their own, and know no other."""
        return "Failed, Unknown" if status in self.get("unlisted", []) else self.statuses[status][1]

    def code(self, status):
        return self.statuses[status][0]


@dataclass
class Node:
    """A node class: a file of data, and its place in the command tree."""

    name: str
    path: list
    tree: dict
    help: str
    commands: list = field(default_factory=list)


def _merge(*layers):
    """Later layers go first; mappings of one key are merged (an entry's with its raw bytes); null takes a name out."""
    merged = {}
    for layer in layers:
        for key, value in layer.items():
            if isinstance(value, dict) and isinstance(merged.get(key), dict):
                inner = _merge(merged[key], value) if key == "entry" else {**merged[key], **value}
                merged[key] = {name: item for name, item in inner.items() if item is not None}
            else:
                merged[key] = value
    return merged


HELP = (
    "\r\nFollowing is the list of available commands{mode}.\r\n"
    "For detailed information of each command, please type 'command ?'\r\n"
    "All commands are case insensitive.\r\n\r\n"
)


def _help(tree, words):
    """What the help of a node prints."""
    hidden = tree.get("hidden", [])
    children = [(row[0], row[2]) for row in tree["leaves"] if row[0] not in hidden]
    children += [(name, below["description"]) for name, below in tree.get("nodes", {}).items()]
    mode = f" in the {words} command mode" if words else ""
    return HELP.format(mode=mode) + "".join(f"{name:<12}: {description}\r\n" for name, description in children)


def _all_nodes():
    """Each node of the command tree by its name: words that lead to it, and its table."""
    root = {"leaves": TREE["root"]["leaves"], "hidden": TREE["root"]["hidden"], "nodes": TREE["nodes"], "help": ""}
    yield "root", [], root

    def below(name, path, nodes):
        for word, tree in nodes.items():
            inner = [*path, tree["switch"], word]
            whole = f"{name}-{word}" if name else word
            yield whole, inner, tree
            yield from below(whole, inner, tree.get("nodes", {}))

    yield from below("", [], TREE["nodes"])


def read_nodes():
    """All nodes with their commands, and what is missing: leaves without data, and files without a node."""
    common = load("common.yaml")
    statuses = load("messages.yaml")
    nodes, missing = [], []
    files = {path.stem for path in FOLDER.glob("*.yaml")} - {"common", "messages"}
    for name, path, tree in _all_nodes():
        node = Node(name, path, tree, _help(tree, tree["help"]))
        nodes.append(node)
        if name not in files:
            missing.append(f"tests/faults/{name}.yaml is missing")
            continue
        files.remove(name)
        missing += _read_commands(node, load(f"{name}.yaml"), common, statuses)
    for node in nodes:
        node.commands += _help_commands(node, statuses)
    missing += [f"tests/faults/{name}.yaml has no node" for name in sorted(files)]
    return nodes, common, missing


def _read_commands(node, data, common, statuses):
    """Fills the node's commands; gives what is missing."""
    rows = {row[0]: row for row in node.tree["leaves"] if row[3] != "help"}
    taken = set()
    missing = []
    for name, own in data["commands"].items():
        shared = {key: value for key, value in data.items() if key != "commands"}
        lookup = common["look-ups"][{**shared, **own}["look-up"]]
        leaves = []
        forms = [(name, "xml"), (own.get("text form", f"{name}cli"), "text")] if node.path else [(name, "text")]
        for word, form in forms:
            if word in rows:
                taken.add(word)
                leaves.append(Leaf(word, form, rows[word][3]))
            elif node.path:
                missing.append(f"tests/faults/{node.name}.yaml: the command tree has no leaf {word}")
            else:
                leaves.append(Leaf(word, form, ""))
        merged = _merge(lookup, shared, own)
        missing += _taken_names(f"tests/faults/{node.name}.yaml: {name}", lookup, {**shared, **own})
        if "steps" in own:
            merged["steps"] = [*own.get("first steps", []), *lookup.get("steps", []), *own["steps"]]
        _complete_words(merged)
        node.commands.append(Command(node.name, name, node.path, leaves, merged, {**shared, **own}, statuses))
        missing += _mistakes(node.commands[-1])
    forgotten = [word for word in rows if word not in taken]
    return missing + [f"tests/faults/{node.name}.yaml has no data for the leaf {word}" for word in forgotten]


def _help_commands(node, statuses):
    """The leaves of a node that print its help: they need no data."""
    after = "" if node.path else "\nFor a complete help. Please refer to ZFC_ESXCLI_Readme.txt in the same folder.\r\n"
    for row in node.tree["leaves"]:
        if row[3] == "help":
            data = {"prints": {"ordinary": node.help + after}}
            yield Command(node.name, row[0], node.path, [Leaf(row[0], "text", node.help)], data, {}, statuses)


def _complete_words(data):
    """REST in odd words is what follows the first of the ordinary ones."""
    rest = str(data.get("words") or "").partition(" ")[2]
    odd = data.get("odd words") or {}
    data["odd words"] = {name: str(text or "").replace("REST", rest) for name, text in odd.items()}


OUTCOME_KEYS = {"status", "status at the end", "also success", "set", "shows", "writes", "clears", "as", "answer"}
STEP_KEYS = OUTCOME_KEYS | {
    "if", "unless", "call", "with", "answers", "odd", "gives", "bracket", "unopened", "times",
}  # fmt: skip
COMMAND_KEYS = {
    "look-up", "identifier", "words", "odd words", "hosts", "odd hosts", "entry", "first steps", "steps", "document",
    "unlisted", "silent", "values", "settings", "files", "text form", "prints", "codes",
    "not well formed",
}  # fmt: skip


def _mistakes(command):
    """Names in the data that mean nothing."""
    where = f"tests/faults/{command.node}.yaml: {command.name}"
    for key in command.data.keys() - COMMAND_KEYS:
        yield f"{where}: unknown key {key}"
    for step in command.get("steps", []):
        for key in step.keys() - STEP_KEYS:
            yield f"{where}: unknown key {key} of a step"
        for name in _unknown_conditions(command, step):
            yield f"{where}: unknown {name} in a condition"
        for outcome in [step, *step.get("answers", {}).values(), *step.get("odd", {}).values()]:
            outcome = {} if outcome is None else outcome
            named = isinstance(outcome, dict)
            # Settings of the library have capital letters.
            for key in outcome.keys() - STEP_KEYS if named else ():
                if key == key.lower():
                    yield f"{where}: unknown key {key} of an outcome"
            name = outcome.get("status") if named else outcome
            if name not in (None, "go on", "success") and name not in command.statuses:
                yield f"{where}: unknown status {name}"


def _taken_names(where, lookup, own):
    """Odd words and hosts that a look-up has under the same name with another meaning."""
    if "hosts" in own:
        yield f"{where}: a command's own hosts are odd hosts"
    for kind in ("odd words", "odd hosts"):
        for name, value in own.get(kind, {}).items():
            theirs = lookup.get(kind.removeprefix("odd ") if kind == "odd hosts" else kind, {})
            if value is not None and name in theirs and theirs[name] != value:
                yield f"{where}: the look-up has other {kind} of the name {name}"


def _unknown_conditions(command, step):
    """Names of words, hosts and odd results that a step asks for and that the command does not have."""
    odd = {name for other in command.get("steps") for name in other.get("odd", {})}
    answers = [answer for other in command.get("steps") for answer in other.get("answers", {}).values()]
    odd |= {name for answer in answers if isinstance(answer, dict) for name in listed(answer.get("as", []))}
    known = {
        "words": {*command.get("odd words", {}), "ordinary"},
        "host": {*command.get("hosts", {}), *command.get("odd hosts", {}), "ordinary"},
        "odd": {*odd, "ordinary"},
    }
    for case in [*listed(step.get("if", [])), *listed(step.get("unless", []))]:
        for kind, names in case.items():
            yield from (f"{kind} {name}" for name in listed(names) if kind in known and name not in known[kind])
