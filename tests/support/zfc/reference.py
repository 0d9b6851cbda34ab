"""The descriptions of the commands in reference/, and runs of their examples."""

import yaml

from .runner import ROOT

REFERENCE = ROOT / "reference"
NODES = {path.stem: yaml.safe_load(path.read_text()) for path in sorted((REFERENCE / "nodes").glob("*.yaml"))}
MESSAGES = yaml.safe_load((REFERENCE / "messages.yaml").read_text())

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


def give_examples(zfc):
    """Makes examples/ reachable from the folder in which the program runs."""
    folder = zfc.work / "examples"
    if not folder.exists():
        folder.symlink_to(ROOT / "examples")


def play(zfc, runs):
    """What the runs print on the built-in host, each after the line that starts it. Changes last from run to run."""
    give_examples(zfc)
    shown = b""
    for words in runs:
        env = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml"), "TORPI_LAB_TIME": CLOCK}
        shown += f"$ zfcesxcli {words}\n".encode() + zfc(words, library="simulated", env=env).stdout
    return shown


HOST = yaml.safe_load((ROOT / "simulator" / "builtin_host.yaml").read_text())


def listed(zfc, node, field):
    """The identifiers that `list` of a node prints on the built-in host."""
    text = zfc(f"-t {node} listcli", library="simulated").stdout.decode()
    return [line.removeprefix(f"{field}: ") for line in text.splitlines() if line.startswith(f"{field}: ")]


_identifiers = {}


def identifiers(zfc):
    """The identifiers of the built-in host by their kinds: all of them, but of the LUNs, which are many and alike, every
    fifth."""
    if not _identifiers:
        _identifiers.update(
            adapter=listed(zfc, "adapter", "Adapters"),
            port=listed(zfc, "port", "Ports"),
            target=listed(zfc, "target", "Targets"),
            lun=listed(zfc, "lun", "LUNs/Namespaces")[::5],
        )
    return _identifiers


def family_of(identifier):
    """The family of the adapter that an identifier of the built-in host belongs to; a virtual port has none."""
    for adapter in HOST["adapters"]:
        names = [f"_{adapter['serial']}"] + [f"FC_{port['wwpn']}" for port in adapter["ports"]]
        if identifier.endswith(names[0]) or any(identifier.startswith(name) for name in names[1:]):
            return adapter["family"]
    return None


def text_word(word, command):
    return command.get("text-word", f"{word}cli")


def families_of(node, *inner):
    """The families of the innermost of the descriptions that names them; None for all."""
    for described in reversed((node, *inner)):
        if described.get("families"):
            return described["families"]
    return None


def message_of(output):
    """The message of a document as text, which the verdict of a test has under another name; None without one."""
    for line in output.decode(errors="replace").splitlines():
        name, _, value = line.partition(": ")
        if name in ("Message", "Test Result"):
            return value
    return None
