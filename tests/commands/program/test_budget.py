"""What the executable may grow to. Every command is a start of its own, so a start has to stay cheap."""

import re
import subprocess

import pytest

from zfc.runner import BUILD, EXECUTABLE, SANITIZED
from zfc.tools import said

RELEASE = "CMAKE_BUILD_TYPE:STRING=Release" in (BUILD / "CMakeCache.txt").read_text()

pytestmark = [
    pytest.mark.skipif(SANITIZED, reason="sanitizers add code and tables of their own"),
    pytest.mark.skipif(not RELEASE, reason="the tables are out of the data in an optimised build alone"),
]

# The budgets, each a little above what is needed: 495,888 bytes, 122 relocations in 1,632 bytes, 3 constructors. More of
# something is no mistake as such: raise the number in the change that needs it, and say there why.

# Symbols included, debug information not: that is in packages of its own. The stack unwinder and the name demangler of
# the C++ library would add a tenth.
FILE_BYTES = 520_000

# Addresses in data that the loader has to fix at every start: those of virtual functions and of a few small tables. A
# table of texts has them as InlineText, and one with addresses is read out with TableOf; plain pointers add hundreds.
RELOCATIONS = 140

# What these addresses lie in. Each page of it is copied for the process at every start, which takes longer than the
# relocations themselves.
RELOCATED_BYTES = 4096

# Static objects with a constructor or a destructor: the root of the command tree, the logging lock, and the compiler's
# own start function.
CONSTRUCTORS = 3


def lines(*command):
    return said(*command, str(EXECUTABLE)).splitlines()


def section_bytes(name):
    """The size of a section; 0 when the file has none of this name."""
    found = [re.split(r"\]\s+", line)[1].split() for line in lines("readelf", "--sections", "--wide") if f" {name} " in line]
    return sum(int(fields[4], 16) for fields in found)


def test_file_is_small(tmp_path):
    lean = tmp_path / "lean"
    subprocess.run(["strip", "--strip-debug", "-o", lean, EXECUTABLE], check=True)
    assert lean.stat().st_size <= FILE_BYTES


def test_few_addresses_are_relocated():
    count = sum("R_X86_64_RELATIVE" in line for line in lines("readelf", "--relocs", "--wide"))
    assert 0 < count <= RELOCATIONS


def test_relocated_data_fits_on_a_page():
    assert 0 < section_bytes(".data.rel.ro") <= RELOCATED_BYTES


def test_few_objects_are_constructed_before_main():
    assert 0 < section_bytes(".init_array") <= 8 * CONSTRUCTORS
