"""Which variables of the environment are read, and that no other decides anything."""

import re

import pytest

from zfc.documents import check
from zfc.runner import ROOT

READ = re.compile(r'\b(?:getenv|Variable)\(\s*"(\w+)"')
FOLDERS = ("src", "simulator", "tools", "recording")


def sources():
    return [path for folder in FOLDERS for path in (ROOT / folder).rglob("*") if path.suffix in (".cpp", ".h")]


def documented():
    section = (ROOT / "docs" / "security.md").read_text().split("\n## Environment\n")[1].split("\n## ")[0]
    return set(re.findall(r"^\| `(\w+)` \|", section, re.MULTILINE))


def test_document_has_every_variable_that_is_read():
    found = {name for path in sources() for name in READ.findall(path.read_text())} - {"LD_LIBRARY_PATH"}
    assert len(found) == 8
    assert documented() - {"LD_LIBRARY_PATH"} == found


def test_every_read_of_the_environment_is_one_that_the_pattern_sees():
    """All but the simulated library's own function, which gets the name from its callers."""
    calls = {
        str(path.relative_to(ROOT)): re.findall(r"\b(?:secure_)?getenv\(([^)]*)\)", path.read_text()) for path in sources()
    }
    others = {name: given for name, given in calls.items() if any(not word.startswith('"') for word in given)}
    assert others == {"simulator/lab.cpp": ["name"]}


OTHERS = ["PATH", "HOME", "TMPDIR", "IFS", "LANG", "LC_ALL", "SHELL", "PWD", "COLUMNS", "TORPI_DEBUG", "ZNFC_DEBUG"]


@pytest.mark.parametrize("value", ["", "/nowhere", "%n%s\x1b[2J", "x" * 100_000], ids=lambda value: value[:9])
def test_other_variables_decide_nothing(zfc, value):
    result = zfc("help", env=dict.fromkeys(OTHERS, value))
    check(result.stdout, "root/help.txt")
    assert result.library_files == ["torpi-output.log"]


@pytest.mark.parametrize("value", ["%n%s", "x" * 100_000, "\x1b[2J", "9" * 5000, "-" * 5000], ids=lambda value: value[:9])
def test_a_level_that_is_none(zfc, value):
    check(zfc("help", debug=value).stdout, "root/help.txt")


def test_no_program_is_looked_up_in_the_path():
    """Nothing starts another program but by a path, and no shell is started."""
    names = re.compile(r"\b(execlp|execvp|execvpe|popen|system|posix_spawnp)\s*\(")
    assert [str(path) for path in sources() if names.search(path.read_text())] == []
