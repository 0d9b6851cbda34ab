"""What the executable may cost before it does anything: the loader relocates each address in its data, and touches
the pages that hold one, at every start of every command."""

import re
import subprocess

import pytest

from zfc.runner import BUILD, EXECUTABLE

BUILD_TYPE = re.search(r"^CMAKE_BUILD_TYPE:\w+=(\w*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE)[1]
pytestmark = pytest.mark.skipif(BUILD_TYPE != "Release", reason="the budget is that of the release build")

# The build of today has 138 relocations and 495,656 bytes; a table of texts by address adds hundreds at once.
MOST_RELOCATIONS = 200
MOST_BYTES = 520_000


def test_relocations():
    table = subprocess.run(["readelf", "-rW", EXECUTABLE], capture_output=True, text=True, check=True).stdout
    assert 0 < len(re.findall(r"\bR_X86_64_RELATIVE\b", table)) <= MOST_RELOCATIONS


def test_file_size():
    assert EXECUTABLE.stat().st_size <= MOST_BYTES
