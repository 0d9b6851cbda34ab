"""The whole command tree against command_tree.yaml, a table of its own: no node, child, usage index or description is
missing, added, or in another place."""

from dataclasses import dataclass, field

import pytest

from zfc.runner import BUILD
from zfc.tree import TREE

LISTING = BUILD / "tests" / "tree_listing"

HEAD = (
    "\r\nFollowing is the list of available commands{mode}.\r\n"
    "For detailed information of each command, please type 'command ?'\r\n"
    "All commands are case insensitive.\r\n\r\n"
)


@dataclass
class Leaf:
    word: str
    index: int
    description: str
    usage: str  # "help": the node's help


@dataclass
class Node:
    word: str
    switch: str
    description: str
    help_words: str
    leaves: list
    nodes: list
    hidden: list = field(default_factory=list)
    path: tuple = ()  # the words that lead here from the root

    @property
    def help(self):
        """What the node's help prints. The root's alone leaves out what is hidden."""
        mode = f" in the {self.help_words} command mode" if self.help_words else ""
        children = [child for child in self.leaves + self.nodes if child.word not in self.hidden]
        return HEAD.format(mode=mode) + "".join(f"{child.word:<12}: {child.description}\r\n" for child in children)

    def listing(self, depth=0):
        """The lines of tests/support/tree_listing.cpp for what is below the node."""
        for leaf in self.leaves:
            hidden = int(leaf.word in self.hidden)
            yield f"{depth}\t\t{leaf.word}\tleaf\t{leaf.index}\t{hidden}\t0\t{leaf.description}"
        for node in self.nodes:
            yield f"{depth}\t{node.switch}\t{node.word}\tnode\t0\t0\t0\t{node.description}"
            yield from node.listing(depth + 1)

    def below(self):
        """All nodes below this one."""
        for node in self.nodes:
            yield node
            yield from node.below()


def _node(word, table, path=()):
    path = (*path, table["switch"], word)
    return Node(
        word=word,
        switch=table["switch"],
        description=table["description"],
        help_words=table["help"],
        leaves=[Leaf(*row) for row in table["leaves"]],
        nodes=[_node(name, below, path) for name, below in table.get("nodes", {}).items()],
        path=path,
    )


def _root():
    return Node(
        word="main",
        switch="",
        description="",
        help_words="",
        leaves=[Leaf(*row) for row in TREE["root"]["leaves"]],
        nodes=[_node(name, node) for name, node in TREE["nodes"].items()],
        hidden=TREE["root"]["hidden"],
    )


ROOT = _root()
NODES = list(ROOT.below())
LEAVES = [(node, leaf) for node in NODES for leaf in node.leaves]


def _id(value):
    if isinstance(value, Node):
        return "-".join(value.path[1::2]) or "root"
    return value.word


def test_table_is_whole():
    """The four nodes at the top and 31 below them."""
    assert [node.word for node in ROOT.nodes] == ["adapter", "port", "target", "lun"]
    assert [len(node.nodes) for node in ROOT.nodes] == [3, 22, 5, 1]
    assert len(LEAVES) == len({(node.path, leaf.word) for node, leaf in LEAVES})


def test_listing(zfc):
    """Everything at once, the fields that no command shows included."""
    result = zfc(program=LISTING)
    assert result.stdout.decode().splitlines() == list(ROOT.listing())


@pytest.mark.parametrize("node", NODES, ids=_id)
def test_help(zfc, node):
    result = zfc([*node.path, "help"])
    assert result.stdout.decode() == node.help
    assert result.command_calls == []


@pytest.mark.parametrize("node, leaf", LEAVES, ids=_id)
def test_usage(zfc, node, leaf):
    result = zfc([*node.path, leaf.word, "?"])
    assert result.stdout.decode() == (node.help if leaf.usage == "help" else leaf.usage)
    assert result.command_calls == []


@pytest.mark.parametrize("node", NODES, ids=_id)
def test_node_alone_and_with_another_word_reaches_nothing(zfc, node):
    for words in ([], ["nothing"]):
        result = zfc([*node.path, *words])
        assert result.stdout == b"Unknown command or invalid target identifier!\r\n"


@pytest.mark.parametrize("leaf", ROOT.leaves, ids=_id)
def test_root_usage(zfc, leaf):
    """At the shell, where all commands of the root work."""
    result = zfc(stdin=f"{leaf.word} ?\nq\n".encode())
    assert result.stdout.decode() == "$>" + (ROOT.help if leaf.usage == "help" else leaf.usage) + "$>"


def test_root_help(zfc):
    assert zfc(stdin=b"help\nq\n").stdout.decode() == f"$>{ROOT.help}$>"
