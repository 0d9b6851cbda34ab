"""The shape of the sources: which folder may include which, and what no source may hold."""

import re
from collections import Counter
from pathlib import Path

import pytest

from zfc.runner import ROOT

SRC = ROOT / "src"
SIMULATOR = ROOT / "simulator"
RECORDING = ROOT / "recording"
TOOLS = ROOT / "tools"
REFERENCE = ROOT / "reference"

# From top to bottom. A folder includes nothing of a folder above it, nor of another folder on its own floor.
FLOORS = [
    {"main.cpp"},
    {"adapter", "port", "target", "lun"},
    {"config", "diag", "congestion"},
    {"discovery"},
    {"framework"},
    {"runtime"},
]
FLOOR_OF = {folder: floor for floor, folders in enumerate(FLOORS) for folder in folders}

# The rooms of the simulated library, from top to bottom. A room includes itself and rooms after it; TOP is the files
# directly in simulator/.
TOP = "simulator"
ROOMS = ["calls", TOP, "state", "recorded", "host_file", "yaml", "images", "device", "base"]

# What a tool's folder may include besides itself, common/ and the record headers. The simulator's own names begin at
# simulator/.
TOOL_USES = {
    "common": ["recording/disk.h"],
    "snapshot": ["recording/", "runtime/out_of_memory.h"],
    "json": ["runtime/out_of_memory.h"],
    "lab": ["recording/", "tools/snapshot/", "simulator"],
}

# How many sources a folder may hold, and the folders that may hold more.
FOLDER_SIZE = 25
LARGE_FOLDERS = {"src/framework": 45, "src/diag": 30}

STREAM_HEADERS = {"iostream", "ostream", "istream", "fstream", "sstream", "iomanip"}
INCLUDE = re.compile(r'^\s*#\s*include\s+(["<])([^">]+)[">]', re.MULTILINE)


def sources(folder):
    return sorted(path for path in folder.rglob("*") if path.suffix in (".cpp", ".h", ".c", ".in"))


def includes(path):
    """The names that a source includes, of its own project and of the system."""
    found = INCLUDE.findall(path.read_text())
    return [name for mark, name in found if mark == '"'], [name for mark, name in found if mark == "<"]


def name_of(path):
    return str(path.relative_to(ROOT))


def folder_of(path):
    """The folder of a source below src, or its own name when it is at the top."""
    return path.relative_to(SRC).parts[0]


def room_of(name):
    """The room of a source by its name from simulator/."""
    parts = Path(name).parts
    return parts[0] if len(parts) > 1 else TOP


def offences(paths, offends):
    """Every source with what it holds against a rule; nothing when it holds nothing."""
    found = {name_of(path): offends(path) for path in paths}
    return {name: what for name, what in found.items() if what}


def test_there_are_sources():
    """The rules below have something to hold for."""
    assert {folder_of(path) for path in sources(SRC)} >= {"main.cpp", "adapter", "discovery", "framework", "runtime"}
    assert len(sources(SRC)) > 20 and len(sources(SIMULATOR)) > 5
    assert sum(len(includes(path)[0]) for path in sources(SRC)) > 20


def test_every_folder_has_a_floor():
    assert {folder_of(path) for path in sources(SRC)} - {*FLOOR_OF} == set()


def test_includes_point_down():
    def offends(path):
        here = folder_of(path)
        targets = {name: Path(name).parts[0] for name in includes(path)[0]}
        return [
            name for name, there in targets.items() if there != here and FLOOR_OF.get(there, -1) <= FLOOR_OF[here]
        ]

    assert offences(sources(SRC), offends) == {}


def test_includes_are_named_from_src():
    def offends(path):
        return [name for name in includes(path)[0] if not (SRC / name).is_file()]

    assert offences(sources(SRC), offends) == {}


def test_record_headers_include_nothing_else():
    """The simulated library builds on them, so they lead to nothing else."""

    def offends(path):
        return [name for name in includes(path)[0] if not name.startswith("framework/device_library/")]

    assert offences(sources(SRC / "framework" / "device_library"), offends) == {}


def test_spare_classes_of_the_runtime_are_used_by_nothing():
    def offends(path):
        return [name for name in includes(path)[0] if name.startswith("runtime/extras/")]

    assert offences([path for path in sources(SRC) if "extras" not in path.parts], offends) == {}


def is_record_header(name):
    return name.startswith("framework/device_library/") and (SRC / name).is_file()


def test_simulated_library_uses_the_record_headers_only():
    """Its own includes are named from simulator/."""

    def offends(path):
        return [
            name
            for name in includes(path)[0]
            if not (SIMULATOR / name).is_file() and not is_record_header(name) and not is_recording(name)
        ]

    assert offences(sources(SIMULATOR), offends) == {}


def is_recording(name):
    return name.startswith("recording/") and (ROOT / name).is_file()


def test_recordings_use_the_record_headers_only():
    def offends(path):
        return [name for name in includes(path)[0] if not is_record_header(name) and not is_recording(name)]

    assert offences(sources(RECORDING), offends) == {}


def test_tools_include_what_their_folder_may():
    def offends(path):
        here = path.relative_to(TOOLS).parts[0]
        prefixes = (f"tools/{here}/", "tools/common/", *TOOL_USES[here])
        from_simulator = "simulator" in TOOL_USES[here]
        return [
            name
            for name in includes(path)[0]
            if not is_record_header(name)
            and not name.startswith(prefixes)
            and not (from_simulator and (SIMULATOR / name).is_file())
        ]

    assert offences(sources(TOOLS), offends) == {}


def test_only_the_comparison_of_the_reference_uses_the_program():
    def offends(path):
        return [name for name in includes(path)[0] if not name.startswith("reference/")]

    assert offences(sources(REFERENCE), offends) == {"reference/check/program_tree.cpp": ["src/main.cpp"]}


def test_every_room_of_the_simulated_library_has_its_place():
    assert {room_of(path.relative_to(SIMULATOR)) for path in sources(SIMULATOR)} <= {*ROOMS}


def test_rooms_of_the_simulated_library_include_downwards():
    def offends(path):
        allowed = ROOMS[ROOMS.index(room_of(path.relative_to(SIMULATOR))) :]
        return [
            name
            for name in includes(path)[0]
            if not is_record_header(name) and not is_recording(name) and room_of(name) not in allowed
        ]

    assert offences(sources(SIMULATOR), offends) == {}


def test_no_folder_is_too_full():
    held = Counter(name_of(path.parent) for path in sources(SRC) + sources(SIMULATOR) + sources(RECORDING) + sources(TOOLS) + sources(REFERENCE))
    too_full = {name: count for name, count in held.items() if count > LARGE_FOLDERS.get(name, FOLDER_SIZE)}
    assert too_full == {}


def test_no_stream_classes_in_the_program():
    """They cost time at the start."""

    def offends(path):
        used = re.findall(r"\bstd::(?:cout|cerr|clog|cin|\w*stringstream|\w*fstream)\b", path.read_text())
        return used + sorted(STREAM_HEADERS & {*includes(path)[1]})

    assert offences(sources(SRC), offends) == {}


@pytest.mark.parametrize(
    "pattern",
    [
        pytest.param(r"\b(TODO|FIXME|XXX|HACK)\b", id="open ends"),
        pytest.param(r"/home/|/root/|/Users/", id="somebody's machine"),
        pytest.param(r"\busing namespace\b", id="using namespace"),
        pytest.param(r"[\t\r]| +$", id="stray blanks"),
    ],
)
def test_no_source_holds(pattern):
    def offends(path):
        return [line for line in path.read_bytes().decode().split("\n") if re.search(pattern, line)]

    assert offences(sources(SRC) + sources(SIMULATOR) + sources(RECORDING) + sources(TOOLS) + sources(REFERENCE), offends) == {}
