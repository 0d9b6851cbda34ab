"""The values of arguments and options that the descriptions name, tried on the built-in host: some adapter, port or target
must take each, and none may take any other. A value of an old model is taken on a host of all families."""

import pytest

from zfc.reference import (
    MESSAGES,
    commands,
    families_of,
    family_of,
    give_examples,
    identifiers,
    message_of,
    runs_of,
    text_word,
)
from zfc.runner import ROOT

ALL_FAMILIES = str(ROOT / "examples" / "all-families.yaml")
KINDS = ("adapter", "port", "target", "lun")


def values_of(described):
    """The values to take and the values to refuse."""
    if "choices" in described:
        return described["choices"], ["no-such-word"]
    if "range" in described:
        least, most = described["range"]
        return [least, most], [most + 1] + ([least - 1] if least > 0 else [])
    if described.get("type") == "bool":
        return ["true", "false", "TRUE"], ["maybe", "1"]
    return [], []


OPTIONS = [
    pytest.param(node, word, command, name, option, id=f"{node_id}-{word}{name}")
    for node_id, word, command, node in commands()
    for name, option in {**(command.get("options") or {}), **((node.get("options") or {}) if command.get("node-options") else {})}.items()
    if any(values_of(option))
]
ARGUMENTS = [
    pytest.param(node, word, command, place, argument, id=f"{node_id}-{word}-{argument['name']}")
    for node_id, word, command, node in commands()
    for place, argument in enumerate(command.get("arguments") or [])
    if isinstance(argument, dict) and any(values_of(argument))
]


def words_of_example(node, word, command):
    """The words of the command in its example after its own word, the identifier first."""
    last = runs_of(node, command)[-1].split()
    return last[last.index(text_word(word, command)) + 1 :]


def answer(zfc, node, word, command, words, **options):
    """The message that the command answers the words with; None without a document."""
    output = zfc(node["node"].split() + [text_word(word, command), *words], library="simulated", **options).stdout
    return message_of(output)


def answer_to_a_wrong_value(node, described):
    """The message that a value which is none leads to."""
    status = described.get("wrong", "invalid-parameter")
    own = [row for row in node["statuses"] if isinstance(row, dict) and row["id"] == status and "message" in row]
    return own[0]["message"] if own else MESSAGES[status]["message"]


def hosts_of(zfc, node, command, kind, *described):
    """The identifiers of the kind whose adapters have what is described."""
    families = families_of(node, command, *described)
    return [name for name in identifiers(zfc)[kind] if family_of(name) in (families or [family_of(name)])]


def modes_of(command, described):
    """What an option is tried with: each boot mode, since many belong to one of them."""
    mode = (command.get("options") or {}).get("--boot-mode")
    return [[]] if mode in (None, described) else [["--boot-mode", choice] for choice in mode["choices"]]


def all_families_ports(zfc):
    """The ports of a host that has adapters which the built-in host lacks."""
    text = zfc("-t port listcli", library="simulated", env={"TORPI_LAB_HOST": ALL_FAMILIES}).stdout.decode()
    return [line.removeprefix("Ports: ") for line in text.splitlines() if line.startswith("Ports: ")]


def check_values(zfc, node, word, command, described, words_with):
    taken, refused = values_of(described)
    kind = command["arguments"][0]
    assert kind in KINDS
    names = hosts_of(zfc, node, command, kind, described)
    wrong = described.get("wrong")
    give_examples(zfc)
    if wrong == "none":  # every other value means one of these
        refused = []
    no_value = {None} if wrong == "no-document" else {answer_to_a_wrong_value(node, described)} if refused else set()

    def answers(value):
        for name in names:
            for mode in modes_of(command, described):
                yield answer(zfc, node, word, command, words_with(name, str(value)) + mode)

    def is_taken(value):
        return any(message not in {*no_value, None} for message in answers(value))

    def is_taken_elsewhere(value):
        ports = [words_with(name, str(value)) for name in all_families_ports(zfc)] if kind == "port" else []
        env = {"TORPI_LAB_HOST": ALL_FAMILIES}
        return "Success" in {answer(zfc, node, word, command, words, env=env) for words in ports}

    assert [value for value in taken if not is_taken(value) and not is_taken_elsewhere(value)] == []
    assert [value for value in refused if "Success" in (got := {*answers(value)}) or not got & no_value] == []


@pytest.mark.parametrize("node, word, command, name, option", OPTIONS)
def test_values_of_an_option(zfc, node, word, command, name, option):
    example = words_of_example(node, word, command)
    positions = [text for text in example[1 : len(command["arguments"])]]
    for spelled in (name, option["short"]):
        check_values(
            zfc, node, word, command, option, lambda identifier, value: [identifier, *positions, spelled, value]
        )


@pytest.mark.parametrize("node, word, command, place, argument", ARGUMENTS)
def test_values_of_an_argument(zfc, node, word, command, place, argument):
    example = words_of_example(node, word, command)

    def words_with(identifier, value):
        return [identifier, *example[1:place], value, *example[place + 1 :]]

    check_values(zfc, node, word, command, argument, words_with)
