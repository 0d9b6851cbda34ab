"""Every leaf of the command tree with words that make it succeed on the built-in host."""

from dataclasses import dataclass, field

from zfc.reference import NODES, runs_of, text_word
from zfc.tree import TREE


@dataclass
class Leaf:
    node: str  # id of the node: port-dmi
    word: str  # as it is typed: getcli
    plain: str  # that of the plain form: get
    words: list
    before: list = field(default_factory=list)  # words of the runs that come first
    variant: str = ""
    stdin: bytes = b""

    def __str__(self):
        return f"{self.node}-{self.word}{self.variant}"

    @property
    def name(self):
        return f"{self.node} {self.plain}"

    @property
    def is_xml(self):
        return self.word == self.plain


def _in_tree():
    """(id of the node, words of the node, leaf's word) of every leaf."""

    def below(node_id, words, node):
        for leaf in node["leaves"]:
            yield node_id, words, str(leaf[0])
        for name, inner in (node.get("nodes") or {}).items():
            yield from below(f"{node_id}-{name}", [*words, inner["switch"], name], inner)

    for leaf in TREE["root"]["leaves"]:
        yield "root", [], str(leaf[0])
    for name, node in TREE["nodes"].items():
        yield from below(name, [node["switch"], name], node)


def _described():
    """The runs of the example of each described leaf, by node and word as it is typed; those of the plain form too."""
    runs = {}
    for node_id, node in NODES.items():
        for word, command in (node.get("commands") or {}).items():
            typed = [run.split() for run in runs_of(node, command)]
            shown = text_word(word, command)
            for form in {word, shown}:
                runs[node_id, form] = (word, typed)
                if typed:
                    last = [form if part in (word, shown) else part for part in typed[-1]]
                    runs[node_id, form] = (word, [*typed[:-1], last])
    return runs


def leaves():
    described = _described()
    for node_id, words, word in _in_tree():
        plain, runs = described.get((node_id, word), (word, []))
        typed = runs[-1] if runs else [*words, word]
        yield Leaf(node_id, word, plain, typed, runs[:-1])
        if plain == "setFile":
            yield Leaf(node_id, word, plain, typed, [typed], "-again")
        if (node_id, word) == ("root", "log"):
            yield Leaf(node_id, word, plain, [word, "session.txt"], variant="-file")


# What is typed at the prompt; the end of the input ends the second one.
SHELL = [
    Leaf("root", "shell", "shell", [], variant=variant, stdin=typed)
    for variant, typed in (
        ("", b"version\n\n-t adapter list\nlog session.txt\nversion\nlog\n'no end\nq\n"),
        ("-end", b"-t port listcli\nno such command\nq now\n"),
    )
]

LEAVES = [*leaves(), *SHELL]
