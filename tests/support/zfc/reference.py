"""The descriptions of the commands in reference/, and runs of their examples."""

import yaml

from .runner import ROOT

REFERENCE = ROOT / "reference"
NODES = {path.stem: yaml.safe_load(path.read_text()) for path in sorted((REFERENCE / "nodes").glob("*.yaml"))}

# What makes the examples the same on every day.
CLOCK = "2026-03-14 09:26:53"


def commands():
    """Every described command as (id of the node, word, its description, the node's description)."""
    return [
        (node_id, word, command, node)
        for node_id, node in NODES.items()
        for word, command in (node.get("commands") or {}).items()
    ]


def runs_of(node, command):
    """The words of the runs that make the command's example."""
    example = command.get("example") or []
    return [f"{node.get('node', '')} {words}".strip() for words in ([example] if isinstance(example, str) else example)]


def example_path(node_id, word):
    return REFERENCE / "examples" / f"{node_id}-{word}.txt"


def play(zfc, runs):
    """What the runs print on the built-in host, each after the line that starts it. Changes last from run to run."""
    (zfc.work / "examples").symlink_to(ROOT / "examples")
    shown = b""
    for words in runs:
        env = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml"), "TORPI_LAB_TIME": CLOCK}
        shown += f"$ zfcesxcli {words}\n".encode() + zfc(words, library="simulated", env=env).stdout
    return shown
