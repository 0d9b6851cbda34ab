"""The comparison of the descriptions with the program: it finds no difference, and it finds those that are made here."""

import re
import shutil
import subprocess

import pytest

from zfc.reference import REFERENCE
from zfc.runner import BUILD, ROOT

CHECK = BUILD / "reference" / "reference_check"


@pytest.fixture
def check(zfc):
    """Compares the descriptions of a project; returns status and lines. It runs the program's tree, which opens files at
    the program's fixed paths."""

    def run(root, *options):
        argv, env = zfc.command([*options, str(root)], library="simulated", program=CHECK, keep=[root])
        done = subprocess.run(argv, capture_output=True, text=True, env=env, timeout=60)
        return done.returncode, done.stderr.splitlines()

    return run


@pytest.fixture
def copy(tmp_path):
    """A project of the same sources with descriptions that a test may change."""
    (tmp_path / "src").symlink_to(ROOT / "src")
    shutil.copytree(REFERENCE, tmp_path / "reference")
    return tmp_path


def test_descriptions_fit_the_program(check):
    assert check(ROOT) == (0, [])


def test_copy_has_no_difference(check, copy):
    assert check(copy) == (0, [])


@pytest.mark.parametrize(
    "file, old, new, said",
    [
        pytest.param("nodes/port-fec.yaml", "-s fec", "-s fek", 'no node "-t port -s fek"', id="node"),
        pytest.param("nodes/port-fec.yaml", "  set:", "  sett:", 'program has "set"', id="word"),
        pytest.param("nodes/port-fec.yaml", "class: Phys", "class: Fys", 'described as "FysicalPortFEC', id="class"),
        pytest.param("nodes/port-fec.yaml", "usage: get", "usage: gett", "usage: described as", id="usage"),
        pytest.param("nodes/port-fec.yaml", "help: get Sor", "help: gets Sor", "get: help: described as", id="help"),
        pytest.param("nodes/port-fec.yaml", "FEC read failed", "FEC not read", "FEC read failed", id="message missing"),
        pytest.param("nodes/port-fec.yaml", "FEC read failed", "FEC not read", "no source", id="message too many"),
        pytest.param("nodes/port-fec.yaml", "  - virtual-port\n", "", "feature not supported for virtual", id="status"),
        pytest.param("nodes/port-fec.yaml", "list: FECList", "list: FecList", "no document has the frame", id="frame"),
        pytest.param("nodes/port-fec.yaml", "--reset:", "--clear:", "no option --clear", id="option too many"),
        pytest.param("nodes/port-fec.yaml", "--reset:", "--clear:", "not described: --reset", id="option missing"),
        pytest.param("nodes/port-fec.yaml", "short: -r", "short: -x", "no option --reset, -x", id="short name"),
        pytest.param("nodes/port-fec.yaml", "title:", "titel:", 'unknown key "titel"', id="key"),
        pytest.param("nodes/port-dmi.yaml", "  - {id: checksum-error, for: update}\n", "", "checksum", id="inner table"),
        pytest.param("messages.yaml", "status: 51", "status: 52", "has the number 51", id="number"),
    ],
)
def test_difference_is_found(check, copy, file, old, new, said):
    path = copy / "reference" / file
    text = path.read_text()
    assert old in text
    path.write_text(text.replace(old, new, 1))
    status, lines = check(copy)
    assert status == 1
    assert any(said.lower() in line.lower() and re.match(rf"{file}:\d+: ", line) for line in lines), lines


def test_node_without_a_description_is_found(check, copy):
    (copy / "reference" / "nodes" / "port-fec.yaml").unlink()
    status, lines = check(copy)
    assert status == 1 and any('"-t port -s fec" is not described' in line for line in lines)
    assert check(copy, "--partial") == (0, [])


def test_usage():
    assert subprocess.run([CHECK], capture_output=True).returncode == 2
