"""The examples in reference/: each is what the program prints on the built-in host, byte by byte."""

import pytest

from zfc.reference import REFERENCE, commands, example_path, play, runs_of

EXAMPLES = [
    pytest.param(node_id, word, runs_of(node, command), id=f"{node_id}-{word}")
    for node_id, word, command, node in commands()
    if command.get("example")
]


def test_there_are_examples():
    assert len(EXAMPLES) > 5


@pytest.mark.parametrize("node_id, word, runs", EXAMPLES)
def test_example_is_what_the_program_prints(zfc, node_id, word, runs):
    assert example_path(node_id, word).read_bytes() == play(zfc, runs)


def test_no_file_without_an_example():
    named = {example_path(node_id, word) for node_id, word, command, _ in commands() if command.get("example")}
    assert {*(REFERENCE / "examples").iterdir()} == named
