"""The installed plug-in: where everything lies, that it runs from there, and that its readme is complete."""

import re
import subprocess

import pytest

from zfc.runner import BUILD, ROOT
from zfc.tree import TREE

README = (BUILD / "bin" / "ZFC_ESXCLI_Readme.txt").read_text()


@pytest.fixture
def installed(zfc):
    folder = zfc.folder / "installed"
    subprocess.run(["cmake", "--install", str(BUILD), "--prefix", str(folder)], check=True, capture_output=True)
    return folder


def test_layout(installed):
    """The staging folder is empty, and there all the same: the program never creates it."""
    files = {str(path.relative_to(installed)) for path in installed.rglob("*")}
    assert {name for name in files if not name.startswith("share/")} == {
        "bin",
        "bin/zfcesxcli",
        "bin/ZFC_ESXCLI_Readme.txt",
        "lib",
        "lib/libtorpifconly.so",
        "share",
        "tmp",
    }
    assert files >= {
        "share/bash-completion/completions/zfcesxcli",
        "share/esxcli/zfcesxcli.xml",
        "share/man/man1/zfcesxcli.1",
        "share/man/man1/zfcesxcli-port-dmi.1",
        "share/zsh/site-functions/_zfcesxcli",
    }


def test_runs_from_there_with_its_own_library(zfc, installed):
    options = {"library": "simulated"}
    result = zfc("-t adapter listcli", program=installed / "bin" / "zfcesxcli", **options)
    assert result.stdout == zfc("-t adapter listcli", **options).stdout
    assert b"Adapters: Adapter_" in result.stdout


def test_help_names_the_readme(zfc):
    assert b"ZFC_ESXCLI_Readme.txt in the same folder" in zfc("help").stdout


def commands():
    """Every plain command as it is typed, up to its arguments."""

    def below(path, node):
        for word, *_ in node["leaves"]:
            if word != "help" and not word.endswith("cli"):
                yield f"{path} {word}"
        for word, child in node.get("nodes", {}).items():
            yield from below(f"{path} {child['switch']} {word}", child)

    for word, node in TREE["nodes"].items():
        yield from below(f"{node['switch']} {word}", node)


@pytest.mark.parametrize("command", commands())
def test_readme_names_every_command(command):
    assert re.search(rf"^    {re.escape(command)}(?= |$)", README, re.MULTILINE)


def options():
    """Both names of every option in the tables of the sources."""
    rows = re.compile(r'"(--[a-z0-9-]+)",\s*"(-[a-z])"')
    found = {row for path in (ROOT / "src").rglob("*.cpp") for row in rows.findall(path.read_text())}
    assert len(found) > 30
    return sorted(found)


@pytest.mark.parametrize("long_name, short_name", options())
def test_readme_names_every_option(long_name, short_name):
    assert re.search(rf"^ +{long_name}, {short_name}$|^ +{long_name}, {short_name} ", README, re.MULTILINE)
