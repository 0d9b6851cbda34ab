"""The file itself: what it needs, what it exports, and which device library it takes."""

import re
import shutil
import subprocess

import pytest

from zfc.documents import check
from zfc.runner import BUILD, EXECUTABLE, LIBRARIES, ROOT, SANITIZED, SESSION_END, SESSION_START
from zfc.tools import said

SERVICES = {"CoreLogMessage", "CoreMalloc", "CoreZMalloc", "CoreFree", "TranslateMessageTypeToString"}
# They came with the tables of the SFP report.
ARRAYS = {"valueArray", "slopeArray", "offsetArray", "rxPowerArray"} if (ROOT / "src/port/sfp").is_dir() else set()

release_only = pytest.mark.skipif(SANITIZED, reason="sanitizers add libraries and symbols of their own")


def tool_lines(*command):
    return said(*command, str(EXECUTABLE)).splitlines()


def dynamic(tag):
    """The values of all entries of the dynamic section with this tag."""
    lines = tool_lines("readelf", "--dynamic", "--wide")
    return [line.split(f"({tag})")[1].strip() for line in lines if f"({tag})" in line]


@release_only
def test_exports_the_services_and_arrays_and_nothing_else():
    symbols = {line.split()[-1].split("@")[0] for line in tool_lines("nm", "-D", "--defined-only")}
    assert symbols == SERVICES | ARRAYS


@pytest.mark.skipif(not SANITIZED, reason="the release build is held to the exact set")
def test_exports_the_services_and_arrays():
    symbols = {line.split()[-1].split("@")[0] for line in tool_lines("nm", "-D", "--defined-only")}
    assert SERVICES | ARRAYS <= symbols


def test_exported_arrays_are_plain_data_of_their_size():
    """25 and three times 5 single-precision numbers."""
    lines = [line.split() for line in tool_lines("readelf", "--dyn-syms", "--wide")]
    sizes = {line[-1]: int(line[2]) for line in lines if line[3:6] == ["OBJECT", "GLOBAL", "DEFAULT"] and line[-1] in ARRAYS}
    assert sizes == {"valueArray": 100, "slopeArray": 20, "offsetArray": 20, "rxPowerArray": 20}


def test_has_a_runpath_that_the_environment_overrides():
    assert dynamic("RPATH") == []
    assert len(dynamic("RUNPATH")) == 1
    assert "$ORIGIN" in dynamic("RUNPATH")[0]


def test_binds_lazily():
    assert dynamic("BIND_NOW") == []
    assert [flags for flags in dynamic("FLAGS") + dynamic("FLAGS_1") if "NOW" in flags] == []


def test_environment_chooses_the_library(zfc):
    assert zfc("-t adapter listcli").calls == [*SESSION_START, "TORPI_GetAdapterList()", *SESSION_END]
    sparse = zfc("-t adapter listcli", library="sparse")
    assert sparse.calls == []
    check(sparse.stdout, "adapter/list-one.txt", identifier="Adapter_ZX100_SP00001")


def test_finds_its_own_library_from_wherever_it_is_started(zfc):
    """The library is looked for beside the executable's folder, not in the working folder."""
    result = zfc("-t adapter listcli", library="simulated")
    assert result.calls == []
    assert b"Adapters: Adapter_" in result.stdout


def test_moved_build_finds_its_library(zfc):
    """The path to the library is relative: a copy of bin and lib works elsewhere."""
    for folder in ("bin", "lib"):
        shutil.copytree(BUILD / folder, zfc.folder / "moved" / folder)
    options = {"library": "simulated", "program": zfc.folder / "moved" / "bin" / "zfcesxcli"}
    moved = zfc("-t adapter listcli", **options)
    assert moved.stdout == zfc("-t adapter listcli", library="simulated").stdout
    for library in (zfc.folder / "moved" / "lib").iterdir():
        library.unlink()
    argv, env = zfc.command("-t adapter listcli", **options)
    lost = subprocess.run(argv, env=env, capture_output=True)
    assert lost.returncode == 127 and b"libtorpifconly.so" in lost.stderr


class TestLibraryWithoutTheRareCalls:
    """Only the session calls and the adapter list: all that needs no other call works."""

    def test_lacks_them(self):
        symbols = subprocess.run(
            ["nm", "-D", "--defined-only", str(LIBRARIES["sparse"] / "libtorpifconly.so")],
            check=True,
            capture_output=True,
            text=True,
        ).stdout
        assert "TORPI_GetAdapterList" in symbols and "TORPI_GetFlashComponentVersion" not in symbols

    def test_help(self, zfc):
        check(zfc("help", library="sparse").stdout, "root/help.txt")
        check(zfc("-t adapter -s flashinfo help", library="sparse").stdout, "adapter/flashinfo/help.txt")

    def test_list(self, zfc):
        output = zfc("-t adapter list", library="sparse").stdout
        check(output, "adapter/list-one.xml", identifier="Adapter_ZX100_SP00001")

    def test_command_that_fails_before_its_calls(self, zfc):
        output = zfc("-t adapter -s info get Adapter_ZX100_SP00001", library="sparse").stdout
        check(output, "adapter/info/failed.xml", message="Failed, Invalid parameter")

    def test_shell(self, zfc):
        output = zfc(stdin=b"version\nq\n", library="sparse").stdout
        assert output == b"$>Halcyr Sorvex Meridot FC ESXCLI Plugin v1.9.0\r\n$>"


@pytest.mark.parametrize("debug", [None, 65535])
def test_library_calls_the_services(zfc, debug):
    """The library finds them by name in the running program. By default the message log prints nothing."""
    result = zfc("version", services=True, debug=debug)
    assert result.stdout == b""
    assert b"port 7 is down" not in result.library_log
    level = 0 if debug is None else 31
    assert result.calls == [
        f"TORPI_Initialize({level}, 0)",
        "CoreLogMessage gives 0",
        "CoreMalloc(0) gives null",
        "CoreMalloc(64) gives a block",
        "CoreZMalloc(64) gives zeros",
        "CoreZMalloc(0) gives null",
        "message types: Info Warning Error Debug Unknown Unknown Unknown",
        *SESSION_START[1:],
        *SESSION_END,
    ]
