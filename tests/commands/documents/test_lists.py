"""Lists in documents against what they list: unit test programs, rooms of tests, examples, commands, scripts."""

import re
import subprocess

import pytest

from zfc.runner import BUILD, ROOT
from zfc.tools import PLAIN

DOCS = ROOT / "docs"


def text(name):
    return (ROOT / name).read_text()


def test_unit_test_programs():
    made = re.findall(r"^zfc_unit_tests\((\w+) .*?FOLDERS ([\w/ ]+?) USES", text("tests/CMakeLists.txt"), re.MULTILINE)
    section = text("docs/testing.md").split("## Unit test programs")[1].split("\n## ")[0]
    described = {}
    for programs, folders in re.findall(r"^\| (`\w+_tests`.*?) \| (.*?) \|$", section, re.MULTILINE):
        for program in re.findall(r"`(\w+)`", programs):
            described[program] = re.findall(r"`([\w/]+)`", folders) or [program.removesuffix("_tests")]
    assert described == {program: folders.split() for program, folders in made} != {}


def test_every_folder_of_unit_tests_has_a_program():
    """A new file in any other folder would not be found."""
    folders = re.findall(r"FOLDERS ([\w/ ]+?) USES", text("tests/CMakeLists.txt"))
    named = [ROOT / "tests/unit" / folder for line in folders for folder in line.split()]
    lost = [path for path in (ROOT / "tests/unit").rglob("*.cpp") if not any(folder in path.parents for folder in named)]
    assert lost == []


def test_rooms_of_the_command_tests():
    table = text("tests/commands/README.md").split("| Room |")[1].split("\n\n")[0]
    described = {room for row in re.findall(r"^\| (`.*?) \|", table, re.MULTILINE) for room in re.findall(r"`(\w+)/`", row)}
    rooms = {path.name for path in (ROOT / "tests/commands").iterdir() if path.is_dir() and path.name[0] not in "._"}
    assert described == rooms


def test_examples_of_hosts():
    described = text("docs/lab-host.md")
    assert [path.name for path in sorted((ROOT / "examples").glob("*.yaml")) if f"`examples/{path.name}`" not in described] == []


def test_commands_of_zfc_lab():
    listed = subprocess.run([BUILD / "bin" / "zfc-lab", "--help"], capture_output=True, text=True, check=True).stdout
    commands = re.findall(r"^  ([a-z-]+)  ", listed, re.MULTILINE)
    table = text("docs/lab-host.md").split("\n## zfc-lab\n")[1].split("\n## ")[0]
    assert sorted(re.findall(r"^\| `([a-z-]+) ", table, re.MULTILINE)) == sorted(commands) != []


def test_arguments_of_the_setup():
    script = text("scripts/setup")
    used = set(re.findall(r'"\$\{1:-\}" = ([\w-]+)', script))
    explained = set(re.findall(r"^#   scripts/setup +([\w-]+) ", script, re.MULTILINE)) - {"what"}
    assert used == explained and len(used) >= 5
    done = subprocess.run([ROOT / "scripts/setup", "nothing"], capture_output=True, text=True, env=PLAIN)
    assert (done.returncode, done.stdout) == (2, "") and done.stderr.startswith("usage: scripts/setup [")


@pytest.mark.parametrize("document", ["README.md", "CONTRIBUTING.md", *sorted(f"docs/{path.name}" for path in DOCS.glob("*.md"))])
def test_files_that_are_named_are_there(document):
    """Those with a folder of the sources in front."""
    folders = "bench|cmake|docs|examples|packaging|recording|reference|scripts|simulator|src|tests|tools"
    names = set(re.findall(rf"`((?:{folders})/[\w./-]+)`", text(document)))
    assert [name for name in sorted(names) if not (ROOT / name).exists()] == []


def test_version_is_that_of_the_build():
    version = re.search(r"^project\(zfcesxcli VERSION (\S+)", text("CMakeLists.txt"), re.MULTILINE)[1]
    for name in ("README.md", "docs/esxi.md", "docs/packages.md", "docs/troubleshooting.md"):
        named = re.findall(r"(?:zfcesxcli(?:-lab)?[_-]|Plugin v)(\d+\.\d+\.\d+)", text(name))
        assert set(named) == {version}, name
