"""The lines of every report that the built-in host gives, against the labels that the descriptions have."""

import re
from itertools import product

import pytest

from zfc.reference import commands, identifiers, message_of, text_word

REPORTS = [
    pytest.param(node, word, command, document["report"], id=f"{node_id}-{word}")
    for node_id, word, command, node in commands()
    if isinstance(document := command.get("document") or node.get("document") or {}, dict)
    if document.get("report") and command.get("changes", "Nothing.") == "Nothing."
]


def labels(lines, conditional=False):
    """Every label as (label, whether it is a section's head, whether it is only there in some cases)."""
    for line in lines:
        if "section" in line:
            depends = conditional or "when" in line
            yield line["section"], True, depends
            yield from labels(line.get("lines") or [], depends)
        else:
            (label, about), = line.items()
            yield label, False, conditional or (isinstance(about, dict) and "when" in about)


def pattern(label):
    """What a line with the label begins with: the label, then a colon, or blanks where it heads a row of a table."""
    text = re.escape(label).replace(re.escape("<n>"), r"\d+")
    return re.compile(rf"{text}(\s*:|\s\s|\s*$)")


def rows(output, data_field):
    """The nonblank lines of the report's text, without what surrounds them."""
    lines = output.decode(errors="replace").split(f"{data_field}: ", 1)[1].splitlines()
    return [line.strip() for line in lines if line.strip() and not line.startswith("*****")]


def is_known(row, described):
    if any(pattern(label).match(row) for label, _, _ in described):
        return True
    if any(is_section and len(row) > 5 and row in label for label, is_section, _ in described):
        return True  # the head of a section, or a line of it
    heads = {head for label, is_section, _ in described if is_section for head in label.split(", ")}
    cells = re.split(r"\s\s+", row)
    return (
        all(cell in heads or re.fullmatch(r"\(\w+\)|-+|=+", cell) for cell in cells)
        or row.startswith("-")  # a flag, or one of several values of the line above
        or re.fullmatch(r"(0x[0-9a-f]{2}\s*)+|[-=]+", row) is not None  # more bytes of the line above
    )


def choices_of_options(command):
    """For each option with choices: without it, and with each of them, since a report can have another form with each."""
    options = (command.get("options") or {}).items()
    return [
        ["", *(f"{name} {choice}" for choice in option["choices"])] for name, option in options if "choices" in option
    ]


@pytest.mark.parametrize("node, word, command, report", REPORTS)
def test_report_has_the_described_lines(zfc, node, word, command, report):
    described = list(labels(report))
    document = command.get("document") or node["document"]
    field = document["frame"][3] if len(document["frame"]) > 3 else "Data"
    kind, *others = command["arguments"]
    reports = 0
    choices = [other["choices"] for other in others] + choices_of_options(command)
    for words in product(identifiers(zfc)[kind], *choices):
        identifier = " ".join(words)
        output = zfc(f"{node['node']} {text_word(word, command)} {identifier}", library="simulated").stdout
        if message_of(output) != "Success":
            continue
        reports += 1
        printed = rows(output, field)
        assert [row for row in printed if not is_known(row, described)] == [], identifier
        missing = [
            label
            for label, is_section, conditional in described
            if not conditional and not is_section and not any(pattern(label).match(row) for row in printed)
        ]
        assert missing == [], identifier
    assert reports > 0
