"""What the generator makes of the descriptions: the committed pages and the readme."""

import re
import subprocess

import pytest

from zfc.reference import NODES, REFERENCE, commands
from zfc.runner import BUILD, ROOT

PAGES = BUILD / "reference" / "reference_pages"
DOCS = ROOT / "docs" / "reference"


def contents(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def generate(*words):
    subprocess.run([PAGES, REFERENCE, *words], check=True, capture_output=True)


def test_committed_pages_are_those_of_the_generator(tmp_path):
    """After a change of the descriptions: ninja -C build/release reference_docs."""
    generate("--docs", tmp_path)
    assert contents(DOCS) == contents(tmp_path)


def test_all_is_made_the_same_twice(tmp_path):
    for folder in ("a", "b"):
        generate("--readme", tmp_path / folder / "readme", "--share", tmp_path / folder / "share")
    assert contents(tmp_path / "a") == contents(tmp_path / "b") != {}


def test_build_has_what_the_descriptions_give_now(tmp_path):
    generate("--readme", tmp_path / "readme")
    assert (BUILD / "bin" / "ZFC_ESXCLI_Readme.txt").read_bytes() == (tmp_path / "readme").read_bytes()


def test_index_names_every_node_and_task():
    index = (DOCS / "README.md").read_text()
    for node_id, node in NODES.items():
        assert f"]({node_id}.md)" in index
        for task in node.get("tasks") or []:
            assert f"| {task} |" in index


def test_readme_has_at_most_80_columns():
    """But for words that are longer than a line can be."""
    lines = (BUILD / "bin" / "ZFC_ESXCLI_Readme.txt").read_text().splitlines()
    assert [line for line in lines if len(line) > 80 and " " in line.strip()] == []


@pytest.mark.parametrize("node_id, word, command, node", commands())
def test_readme_has_every_command(node_id, word, command, node):
    readme = (BUILD / "bin" / "ZFC_ESXCLI_Readme.txt").read_text()
    assert re.search(rf"^    {re.escape(f'''{node.get('node', '')} {word}'''.strip())}( |$)", readme, re.MULTILINE)


@pytest.mark.parametrize("words", [[], [REFERENCE, "--share"], [REFERENCE, "--what", "x"]])
def test_wrong_usage(words):
    done = subprocess.run([PAGES, *words], capture_output=True, text=True)
    assert (done.returncode, done.stderr.split(":")[0]) == (2, "usage")


def test_mistake_in_a_description_stops_it(tmp_path):
    (tmp_path / "nodes").mkdir()
    (tmp_path / "nodes" / "port.yaml").write_text("node: -t port\ncommand: x\n")
    done = subprocess.run([PAGES, tmp_path, "--docs", tmp_path / "docs"], capture_output=True, text=True)
    assert done.returncode == 1 and not (tmp_path / "docs").exists()
    assert 'nodes/port.yaml:2: unknown key "command"' in done.stderr
