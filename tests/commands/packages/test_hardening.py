"""How the shipped programs and libraries are hardened, read off the files in the packages."""

import re
import subprocess

import pytest

from zfc.packages import PLUGIN, programs
from zfc.tools import said

SERVICES = {"CoreLogMessage", "CoreMalloc", "CoreZMalloc", "CoreFree", "TranslateMessageTypeToString"}
ARRAYS = {"valueArray", "slopeArray", "offsetArray", "rxPowerArray"}
EXPORTS = {
    # What a device library looks up in the program that loads it.
    "zfcesxcli": SERVICES | ARRAYS,
    "zfc-snapshot": SERVICES | ARRAYS,
    "zfc-json": set(),
    "zfc-lab": set(),
}
FLOOR = (2, 17)  # of the C library, for everything but the lab


def shown(path, *words):
    return said(*words, str(path))


def exports(path):
    """The symbols that a file defines for others. A copy of the C library's own data is not one: it has a version."""
    names = [line.split()[-1] for line in shown(path, "nm", "-D", "--defined-only", "--with-symbol-versions").splitlines()]
    return {name for name in names if "@GLIBC_" not in name}


def softness(path):
    """Everything in which a file is less hard than it is to be, one word each."""
    header = shown(path, "readelf", "--file-header")
    dynamic = shown(path, "readelf", "--dynamic", "--wide")
    segments = [line.split() for line in shown(path, "readelf", "--segments", "--wide").splitlines()]
    undefined = {line.split()[-1].split("@")[0] for line in shown(path, "nm", "-D", "--undefined-only").splitlines()}
    flags = {fields[0]: "".join(fields[6:-1]) for fields in segments if fields[:1] and len(fields) > 7}
    load = ["".join(fields[6:-1]) for fields in segments if fields[:1] == ["LOAD"]]

    if not re.search(r"Type:\s+DYN", header) or (".so" not in path.name and "PIE" not in dynamic):
        yield "fixed"
    if flags.get("GNU_STACK") != "RW":
        yield "stack"
    if not load or any("W" in flag and "E" in flag for flag in load) or "TEXTREL" in dynamic:
        yield "text"
    if "GNU_RELRO" not in flags:
        yield "relro"
    if "__stack_chk_fail" not in undefined:
        yield "protector"
    if not any(name.startswith("__") and name.endswith("_chk") for name in undefined):
        yield "fortify"
    if "(RPATH)" in dynamic or any("$ORIGIN/../lib" != found for found in re.findall(r"\(RUNPATH\).*\[(.*)\]", dynamic)):
        yield "path"
    if "not stripped" in shown(path, "file"):
        yield "symbols"


def test_there_are_programs(unpacked):
    assert programs(unpacked.program) >= {f"{PLUGIN}/bin/zfcesxcli", f"{PLUGIN}/bin/zfc-snapshot"}
    assert programs(unpacked.host) == programs(unpacked.program)
    assert programs(unpacked.lab) == {f"{PLUGIN}/lab/bin/zfc-lab", f"{PLUGIN}/lab/lib/libtorpifconly.so"}


@pytest.mark.parametrize("package", ["program", "lab", "host"])
def test_nothing_is_soft(unpacked, package):
    folder = getattr(unpacked, package)
    found = {name: [*softness(folder / name)] for name in programs(folder)}
    assert {name: soft for name, soft in found.items() if soft} == {}


@pytest.mark.parametrize("package", ["program", "lab", "host"])
def test_exports_nothing_needless(unpacked, package):
    folder = getattr(unpacked, package)
    for name in programs(folder):
        found = exports(folder / name)
        if name.endswith(".so"):
            assert len(found) > 50 and {symbol for symbol in found if not symbol.startswith("TORPI_")} == set()
        else:
            assert found <= EXPORTS[name.split("/")[-1]], name
    assert exports(unpacked.program / PLUGIN / "bin/zfcesxcli") == SERVICES | ARRAYS


def test_the_hosts_programs_need_an_old_c_library_only(unpacked):
    for name in programs(unpacked.host):
        wanted = re.findall(r"GLIBC_([0-9.]+)", shown(unpacked.host / name, "nm", "-D", "--undefined-only"))
        assert wanted and max(tuple(map(int, version.split("."))) for version in wanted) <= FLOOR, name
        assert "UNIX - System V" in shown(unpacked.host / name, "readelf", "--file-header")


SOURCE = """
#include <stdio.h>
int main(int n, char** v) { char t[40]; snprintf(t, n, v[0]); return t[0]; }
#ifdef ADDRESS_IN_TEXT
__asm__(".data\\nspot: .long 0\\n.text\\nmovabs $spot, %rax");
#endif
"""
HARD = "-O2 -fPIE -pie -D_FORTIFY_SOURCE=2 -fstack-protector-strong -Wl,-z,relro -Wl,-z,noexecstack -s"


@pytest.mark.parametrize(
    "options, soft",
    [
        ("-fno-stack-protector", {"protector"}),
        ("-U_FORTIFY_SOURCE", {"fortify"}),
        ("-no-pie -fno-pie", {"fixed"}),
        ("-Wl,-z,execstack", {"stack"}),
        ("-Wl,-z,norelro", {"relro"}),
        ("-Wl,-rpath,/tmp", {"path"}),
        ("-Wl,-rpath,$ORIGIN/../lib", set()),
        ("-DADDRESS_IN_TEXT -Wl,-z,notext", {"text"}),
    ],
)
def test_a_soft_program_is_found(tmp_path, options, soft):
    source = tmp_path / "soft.c"
    source.write_text(SOURCE)
    command = ["gcc", *HARD.split(), *options.split(), "-w", "-o", tmp_path / "soft", source]
    subprocess.run(command, check=True, capture_output=True)
    assert soft <= {*softness(tmp_path / "soft")} and (soft or not [*softness(tmp_path / "soft")])


def test_symbols_are_found(tmp_path):
    (tmp_path / "soft.c").write_text("int main(void) { return 0; }")
    subprocess.run(["gcc", "-o", tmp_path / "soft", tmp_path / "soft.c"], check=True)
    assert "symbols" in [*softness(tmp_path / "soft")]
