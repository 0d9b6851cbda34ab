"""Packing: the same bytes each time, what Debian's checker says, and what is said when something is missing."""

import os
import shutil
import subprocess

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


def test_lintian_has_nothing_to_say(packages):
    """But of manual pages, until the build makes them."""
    command = ["lintian", "--allow-root", "--fail-on", "error,warning", packages / PROGRAM_DEB, packages / LAB_DEB]
    done = subprocess.run(command, capture_output=True, text=True)
    without_pages = not (BUILD / "share" / "man").exists()
    expected = {"no-manual-page"} if without_pages else set()
    assert {line.split()[2] for line in done.stdout.splitlines()} == expected, done.stdout
    assert done.returncode == (2 if without_pages else 0)


def test_overrides_are_used_and_have_reasons(packages):
    for path in (ROOT / "packaging" / "debian").glob("*.lintian-overrides"):
        lines = path.read_text().splitlines()
        assert all(before.startswith("#") for before, line in zip(["", *lines], lines) if not line.startswith("#"))
    shown = subprocess.run(
        ["lintian", "--allow-root", "--tags", "unused-override", packages / PROGRAM_DEB, packages / LAB_DEB],
        capture_output=True,
        text=True,
    )
    assert shown.stdout == ""


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
