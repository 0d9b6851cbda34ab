"""What the executable asks of the host's C library, and how it is hardened, read off the file."""

import re
import subprocess

import pytest

from zfc.runner import BUILD, EXECUTABLE, ROOT, SANITIZED, ZFC_JSON
from zfc.tools import PLAIN, said

pytestmark = pytest.mark.skipif(SANITIZED, reason="the sanitizers' runtime needs the build machine's C library")

FLOOR = (2, 17)
LIST = ROOT / "cmake" / "old_c_library" / "symbols_2.17.list"
PROBE = BUILD / "tests" / "start_probe"
SNAPSHOT = BUILD / "bin" / "zfc-snapshot"
# What runs on a host: each loads the device library.
HOST_PROGRAMS = pytest.mark.parametrize("path", [EXECUTABLE, SNAPSHOT], ids=lambda path: path.name)
# Asked for without a version, and not missed where no library has them.
WEAK = {"__gmon_start__", "_ITM_registerTMCloneTable", "_ITM_deregisterTMCloneTable", "__pthread_mutex_trylock"}


def lines(*command):
    return said(*command).splitlines()


def version(name):
    """"GLIBC_2.3.4" as numbers; None for a name that is no version of the C library."""
    match = re.fullmatch(r"GLIBC_(\d+(?:\.\d+)*)", name)
    return tuple(int(part) for part in match[1].split(".")) if match else None


def needed_symbols(path):
    """Every symbol that the file asks for, with its version or None."""
    found = {}
    for line in lines("nm", "-D", "--undefined-only", "--with-symbol-versions", str(path)):
        name, _, wanted = line.split()[-1].partition("@")
        found[name] = wanted.lstrip("@") or None
    return found


def listed_symbols():
    """The symbols of the stand-in C library, by name."""
    found, current = {}, None
    for line in LIST.read_text().splitlines():
        if line.startswith("<"):
            current = line.strip("<>")
        elif not line.startswith("#"):
            for word in line.split():
                name = word.partition(":")[0]
                assert name not in found, name
                found[name] = current
    return found


@pytest.mark.parametrize("path", [EXECUTABLE, SNAPSHOT, PROBE], ids=lambda path: path.name)
def test_needs_no_symbol_above_the_floor(path):
    needed = needed_symbols(path)
    versioned = {name: wanted for name, wanted in needed.items() if wanted}
    assert len(versioned) >= 10
    above = {name: wanted for name, wanted in versioned.items() if not version(wanted) or version(wanted) > FLOOR}
    assert above == {}


@HOST_PROGRAMS
def test_other_symbols_are_those_of_the_device_library(path):
    others = {name for name, wanted in needed_symbols(path).items() if wanted is None}
    assert {name for name in others if not name.startswith("TORPI_")} <= WEAK
    weak = {line.split()[-1] for line in lines("nm", "-D", "--undefined-only", str(path)) if " w " in line}
    assert others & WEAK <= weak


def test_snapshot_asks_the_device_library_for_reading_calls_alone():
    """All but those of every session are weak: a library that lacks one is read all the same."""
    calls = [line.split() for line in lines("nm", "-D", "--undefined-only", str(SNAPSHOT)) if "TORPI_" in line]
    names = {words[-1].removeprefix("TORPI_"): words[0] for words in calls}
    assert {name for name, kind in names.items() if kind == "U"} == {
        "Initialize",
        "SetToolID",
        "SetToolVersion",
        "Uninitialize",
        "GetAdapterList",
    }
    reading = {"DiagnosticsRDPTest", "FreeSCMRStatisticsList"}
    others = {name for name, kind in names.items() if kind == "w"} - reading
    assert len(others) == 25 and all(re.match("Get|FCGet|Is|Check", name) for name in others)


@HOST_PROGRAMS
def test_needs_no_other_library(path):
    dynamic = lines("readelf", "--dynamic", "--wide", str(path))
    needed = {re.search(r"\[(.*)\]", line)[1] for line in dynamic if "(NEEDED)" in line}
    assert needed == {"libtorpifconly.so", "libc.so.6"}
    assert any("(RUNPATH)" in line and "[$ORIGIN/../lib]" in line for line in dynamic)
    assert not any("BIND_NOW" in line or re.search(r"FLAGS_1.*\bNOW\b", line) for line in dynamic)


@HOST_PROGRAMS
def test_file_is_one_that_an_old_loader_reads(path):
    dynamic = "\n".join(lines("readelf", "--dynamic", "--wide", str(path)))
    assert "(HASH)" in dynamic and "(GNU_HASH)" in dynamic
    assert "RELR" not in dynamic
    kinds = {line.split()[2] for line in lines("readelf", "--relocs", "--wide", str(path)) if "R_X86_64_" in line}
    assert kinds == {"R_X86_64_RELATIVE", "R_X86_64_GLOB_DAT", "R_X86_64_JUMP_SLOT", "R_X86_64_64"} & kinds
    assert any("UNIX - System V" in line for line in lines("readelf", "--file-header", str(path)))


def test_list_holds_what_the_c_library_has():
    """Every listed symbol exists under its version in this machine's C library, and none is above the floor."""
    listed = listed_symbols()
    assert len(listed) > 1000
    assert {name: wanted for name, wanted in listed.items() if version(wanted) > FLOOR} == {}
    here = lines("nm", "-D", "--defined-only", "--with-symbol-versions", "/lib/x86_64-linux-gnu/libc.so.6")
    known = {line.split()[-1].replace("@@", "@") for line in here}
    assert {f"{name}@{wanted}" for name, wanted in listed.items()} - known == set()


def test_link_fails_on_a_newer_function_and_names_it(tmp_path):
    stub = BUILD / "cmake" / "old_c_library" / "lib"
    source = tmp_path / "newer.c"
    for function, works in {"getentropy": False, "fmemopen": False, "dlopen": False, "log10f": False, "getppid": True}.items():
        source.write_text(f"void {function}(void);\nint main(void) {{ {function}(); return 0; }}\n")
        command = ["gcc", "-fno-builtin", "-o", tmp_path / "out", source, f"-L{stub}", "-lm", "-ldl"]
        done = subprocess.run(command, capture_output=True, text=True, env=PLAIN)
        assert (done.returncode == 0) == works, done.stderr
        assert works or f"undefined reference to `{function}'" in done.stderr


def test_constructors_run_once():
    done = subprocess.run([PROBE, "word"], check=True, capture_output=True, text=True)
    assert done.stdout.splitlines() == [
        "arguments: 2, word",
        "constructed: 1",
        "mutex: yes",
        "signal: yes",
        "stat: yes",
        "thread: yes",
        "destroyed",
    ]


class TestHardening:
    def test_loads_anywhere(self):
        assert any(re.search(r"Type:\s+DYN", line) for line in lines("readelf", "--file-header", str(EXECUTABLE)))
        assert any("FLAGS_1" in line and "PIE" in line for line in lines("readelf", "--dynamic", str(EXECUTABLE)))

    def test_stack_is_not_executable(self):
        segments = lines("readelf", "--segments", "--wide", str(EXECUTABLE))
        stack = [line.split() for line in segments if line.split()[:1] == ["GNU_STACK"]]
        assert [fields[6] for fields in stack] == ["RW"]

    def test_no_segment_is_writable_and_executable(self):
        segments = [line.split() for line in lines("readelf", "--segments", "--wide", str(EXECUTABLE))]
        flags = ["".join(fields[6:-1]) for fields in segments if fields[:1] == ["LOAD"]]
        assert len(flags) >= 3
        assert [flag for flag in flags if "W" in flag and "E" in flag] == []

    def test_relocated_data_is_read_only(self):
        """Up to the table of the device library's calls, which are bound at their first use."""
        text = "\n".join(lines("readelf", "--segments", "--wide", str(EXECUTABLE)))
        assert "GNU_RELRO" in text
        relro = text.split("Section to Segment mapping")[1].splitlines()[-1]
        assert ".data.rel.ro" in relro and ".init_array" in relro and ".got" in relro.split()

    def test_overruns_end_the_program(self):
        needed = needed_symbols(EXECUTABLE)
        assert "__stack_chk_fail" in needed
        if "CMAKE_BUILD_TYPE:STRING=Release" in (BUILD / "CMakeCache.txt").read_text():
            assert {"__snprintf_chk", "__memcpy_chk"} <= {*needed}


class TestJson:
    """zfc-json runs on the same hosts, and loads no device library."""

    def test_needs_no_symbol_above_the_floor(self):
        needed = needed_symbols(ZFC_JSON)
        versions = {wanted for wanted in needed.values() if wanted}
        assert len(versions) >= 2 and all(version(wanted) <= FLOOR for wanted in versions)
        assert {name for name, wanted in needed.items() if wanted is None} <= WEAK

    def test_file(self):
        dynamic = lines("readelf", "--dynamic", "--wide", str(ZFC_JSON))
        assert [re.search(r"\[(.*)\]", line)[1] for line in dynamic if "(NEEDED)" in line] == ["libc.so.6"]
        text = "\n".join(dynamic)
        assert "(HASH)" in text and "(GNU_HASH)" in text and "RELR" not in text
        assert any("UNIX - System V" in line for line in lines("readelf", "--file-header", str(ZFC_JSON)))
        assert any("FLAGS_1" in line and "PIE" in line for line in dynamic)
        assert "__stack_chk_fail" in needed_symbols(ZFC_JSON)
