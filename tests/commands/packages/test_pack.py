"""Packing: the same bytes each time, what Debian's checker says, and what is said when something is missing."""

import os
import shutil
import subprocess

import pytest

from zfc.packages import BUILD, LAB_DEB, MADE, PROGRAM_DEB, VERSION, pack
from zfc.runner import ROOT

PACK = ROOT / "packaging" / "build-packages"


def test_packs_the_same_bytes_again(packages, tmp_path):
    """In another folder, with another time zone, language and file mask."""
    other = {"TZ": "Asia/Kolkata", "LC_ALL": "C.UTF-8", "HOME": "/"}
    again = pack(tmp_path / "a longer name", cwd="/", env=other, umask=0o077)
    different = [name for name in MADE if (packages / name).read_bytes() != (again / name).read_bytes()]
    for name in different:
        if shutil.which("diffoscope"):
            subprocess.run(["diffoscope", packages / name, again / name])
    assert different == []


@pytest.fixture(scope="module")
def lintian(packages):
    """What Debian's checker says, as (kind, tag) pairs, and its exit status."""
    options = ["--allow-root", "--fail-on", "error,warning", "--display-info"]
    done = subprocess.run(["lintian", *options, packages / PROGRAM_DEB, packages / LAB_DEB], capture_output=True, text=True)
    lines = [line.split() for line in done.stdout.splitlines() if line[1:3] == ": "]
    return {(line[0][0], line[2]) for line in lines}, done.returncode


def test_lintian_has_nothing_to_say(lintian):
    """But the remark on the staging folder, which shows that the checker ran."""
    said, status = lintian
    assert {tag for kind, tag in said if kind in "EW"} == set()
    assert status == 0
    assert ("I", "package-contains-empty-directory") in said


def test_overrides_are_used_and_have_reasons(lintian):
    files = [*(ROOT / "packaging" / "debian").glob("*.lintian-overrides")]
    assert len(files) == 2
    for path in files:
        lines = path.read_text().splitlines()
        assert all(before.startswith("#") for before, line in zip(["", *lines], lines) if not line.startswith("#"))
    assert not {tag for _, tag in lintian[0]} & {"unused-override", "mismatched-override", "malformed-override"}


def test_needs_a_section_of_the_changelog(tmp_path):
    done = subprocess.run([PACK, BUILD, tmp_path / "out", "0.0.1"], capture_output=True, text=True)
    assert done.returncode == 1 and done.stderr == "build-packages: CHANGELOG.md has no section [0.0.1]\n"


def test_names_the_tools_that_are_missing(tmp_path):
    tools = tmp_path / "tools"
    tools.mkdir()
    for tool in ("python3", "env", "tar", "ar"):
        os.symlink(shutil.which(tool, path="/usr/bin:/bin"), tools / tool)
    command = [PACK, BUILD, tmp_path / "out", VERSION]
    done = subprocess.run(command, capture_output=True, text=True, env={"PATH": str(tools)})
    assert done.returncode == 1 and done.stderr.startswith("build-packages: needs dh; scripts/setup packages ")
    assert not (tmp_path / "out").exists()


def test_usage():
    done = subprocess.run([PACK], capture_output=True, text=True)
    assert (done.returncode, done.stderr) == (2, "build-packages BUILD OUTPUT VERSION\n")
