"""How the programs and the simulated library are hardened, read off the files: the table in docs/security.md."""

import re

import pytest

from zfc.runner import BUILD, ROOT, SANITIZED
from zfc.tools import said

pytestmark = pytest.mark.skipif(SANITIZED, reason="a build with sanitizers is not shipped")

FILES = {
    "zfcesxcli": "bin/zfcesxcli",
    "zfc-snapshot": "bin/zfc-snapshot",
    "zfc-json": "bin/zfc-json",
    "zfc-lab": "bin/zfc-lab",
    "libtorpifconly.so": "lib/libtorpifconly.so",
}
files = pytest.mark.parametrize("name", FILES)
IS_RELEASE = "CMAKE_BUILD_TYPE:STRING=Release" in (BUILD / "CMakeCache.txt").read_text()


def read(name, *options):
    return said("readelf", "--wide", *options, str(BUILD / FILES[name]))


def probes(name):
    """A frame of more than a page touches each of its pages, so that none skips the guard below the stack."""
    code = said("objdump", "--disassemble", "--no-show-raw-insn", str(BUILD / FILES[name]))
    return len(re.findall(r"\bor[lq] +\$0x0,(?:0x[0-9a-f]+)?\(%rsp\)", code))


def properties(name):
    dynamic = read(name, "--dynamic")
    symbols = said("nm", "-D", "--undefined-only", str(BUILD / FILES[name]))
    flags = re.search(r"\(FLAGS_1\).*", dynamic)
    pie = flags is not None and "PIE" in flags[0]
    return {
        "Loads anywhere": "Type:                              DYN" in read(name, "--file-header")
        and (pie or name.endswith(".so")),
        "Relocations read-only": "GNU_RELRO" in read(name, "--segments"),
        "All bound at the start": flags is not None and "NOW" in flags[0],
        "Overruns end it": "__stack_chk_fail" in symbols and ("_chk@" in symbols or not IS_RELEASE),
        "Stack probed": probes(name) > 0,
    }


def table():
    section = (ROOT / "docs" / "security.md").read_text().split("\n## How the files are built\n")[1]
    head, _, *rows = [[cell.strip() for cell in line.strip("|").split("|")] for line in section.split("\n\n")[0].splitlines() if line]
    return {row[0].strip("`"): dict(zip(head[1:], (cell == "yes" for cell in row[1:]))) for row in rows}


@files
def test_file_is_as_the_document_says(name):
    assert properties(name) == table()[name]


def test_document_has_every_file():
    assert {*table()} == {*FILES}


@files
def test_no_memory_is_writable_and_executable(name):
    segments = [line.split() for line in read(name, "--segments").splitlines()]
    assert [fields[6] for fields in segments if fields[:1] == ["GNU_STACK"]] == ["RW"]
    loaded = ["".join(fields[6:-1]) for fields in segments if fields[:1] == ["LOAD"]]
    assert len(loaded) >= 3 and [flags for flags in loaded if "W" in flags and "E" in flags] == []
    assert "TEXTREL" not in read(name, "--dynamic")


@files
def test_libraries_are_looked_for_beside_the_program_alone(name):
    dynamic = read(name, "--dynamic")
    assert "(RPATH)" not in dynamic
    paths = re.findall(r"\(RUNPATH\).*\[(.*)\]", dynamic)
    assert paths == ["$ORIGIN/../lib"]
