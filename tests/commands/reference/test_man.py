"""The manual pages: clean by the rules of mdoc, complete, and found by their one-line descriptions."""

import re
import shutil
import subprocess

import pytest

from zfc.reference import NODES, commands, example_path
from zfc.runner import BUILD

MAN = BUILD / "share" / "man"
PAGES = sorted(MAN.rglob("*.[15]"))


def shown(path):
    """The page as a terminal of 200 columns shows it, without overstrikes."""
    done = subprocess.run(["mandoc", "-Tascii", "-Owidth=200", path], check=True, capture_output=True, text=True)
    return re.sub(r".\x08", "", done.stdout)


def words(text):
    return " ".join(text.split())


@pytest.mark.parametrize("path", PAGES, ids=[path.name for path in PAGES])
def test_page_is_clean(path):
    done = subprocess.run(["mandoc", "-Tlint", "-W", "warning", path], capture_output=True, text=True)
    assert (done.returncode, done.stdout + done.stderr) == (0, "")


def test_there_is_a_page_for_every_node_and_tool():
    tools = {"zfcesxcli.1", "zfc-lab.1", "zfc-json.1", "zfc-snapshot.1", "zfc-lab-host.5"}
    assert {path.name for path in PAGES} == {f"zfcesxcli-{node_id}.1" for node_id in NODES} | tools


@pytest.mark.parametrize("node_id, word, command, node", commands())
def test_page_has_the_command(node_id, word, command, node):
    page = words(shown(MAN / "man1" / f"zfcesxcli-{node_id}.1"))
    assert words(f"zfcesxcli {node.get('node', '')} {word}") in page
    assert words(command["does"].replace("`", "")) in page
    for name, option in (command.get("options") or {}).items():
        assert f"{name}, {option['short']}" in page
    if command.get("example"):
        for line in example_path(node_id, word).read_text().splitlines():
            assert words(line) in page


def test_break_follows_lines_that_are_shown_as_they_are():
    page = (MAN / "man5" / "zfc-lab-host.5").read_text()
    assert ".Ed\n.Pp\nNumbers are decimal" in page


@pytest.mark.parametrize("node_id", NODES)
def test_apropos_finds_the_page(tmp_path, node_id):
    shutil.copytree(MAN, tmp_path / "man")
    subprocess.run(["makewhatis", tmp_path / "man"], check=True, capture_output=True)
    done = subprocess.run(
        ["mapropos", "-M", tmp_path / "man", f"Nm=zfcesxcli-{node_id}"], capture_output=True, text=True
    )
    assert f"zfcesxcli-{node_id}(1)" in done.stdout and NODES[node_id]["title"] in words(done.stdout)


def test_references_lead_to_pages():
    names = {path.name for path in PAGES}
    for path in PAGES:
        references = re.findall(r"^\.(?:It )?Xr (\S+) (\d)", path.read_text(), re.MULTILINE)
        assert references and {f"{name}.{section}" for name, section in references} <= names
