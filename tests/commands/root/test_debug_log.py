"""The debug log: its file, levels and line form, and the command's code, which is nowhere else."""

import re

import pytest

from zfc.host import IDENTIFIER, NO_ADAPTERS, NO_LIST, Fc, one
from zfc.runner import EXECUTABLE

NOBODY = "-t adapter -s info getcli nobody"
TIME = rb"\d{1,2}/\d{1,2}/\d{4} \d\d:\d\d:\d\d\.\d{3} "
ENTRY = re.compile(TIME + rb"CIM Provider (?:(INFORMATION|WARNING    |DEBUG      |DIAG_ERROR ) )?(\d+): ")


def tags(log):
    """The tags of all lines; an empty one for lines without."""
    return {match[1] or b"" for match in ENTRY.finditer(log)}


def test_no_level_no_file(zfc):
    for level in (None, "", "0", "none"):
        result = zfc(NOBODY, debug=level)
        assert result.debug_log is None
        assert result.library_files == ["torpi-output.log"]


@pytest.mark.parametrize(
    "level, shown, hidden",
    [
        (1, {b"", b"INFORMATION"}, {b"DEBUG      "}),
        (4, {b"", b"DEBUG      "}, {b"INFORMATION"}),
        (5, {b"", b"DEBUG      ", b"INFORMATION"}, set()),
        (2, {b""}, {b"INFORMATION", b"DEBUG      "}),
        (8, {b""}, {b"INFORMATION", b"DEBUG      "}),
        (65535, {b"", b"DEBUG      ", b"INFORMATION"}, set()),
    ],
)
def test_levels(zfc, level, shown, hidden):
    """The command fails, so that there is a line of each level in use."""
    seen = tags(zfc(NOBODY, debug=level).debug_log)
    assert shown <= seen
    assert not hidden & seen


@pytest.mark.parametrize("level", [1, 65535])
def test_every_line_has_the_form(zfc, level):
    log = zfc(f"-t adapter -s info getcli {IDENTIFIER}", debug=level).debug_log
    assert ENTRY.match(log)
    starts = [match.start() for match in ENTRY.finditer(log)]
    lines = [log[start:end] for start, end in zip(starts, [*starts[1:], len(log)])]
    assert b"".join(lines) == log
    assert all(line.endswith(b"\r\n") for line in lines)


def test_lines_hold_the_process_id(zfc):
    log = zfc("help", debug=1).debug_log
    assert len({match[2] for match in ENTRY.finditer(log)}) == 1


def test_file_grows_from_run_to_run(zfc):
    first = zfc("help", debug=1).debug_log
    second = zfc("help", debug=1).debug_log
    assert second.startswith(first) and len(second) > len(first)


def test_name_comes_from_the_executable(zfc):
    """Its last path component; without a path there is a fixed name."""
    link = zfc.work / "renamed.so.1"
    link.symlink_to(EXECUTABLE)
    assert zfc("help", debug=1, program=link).library_files == ["renamed.log", "torpi-output.log"]
    bare = zfc("help", debug=1, program="zfcesxcli").library_files
    assert "viplugin.log" in bare


def test_nothing_of_the_log_reaches_the_output(zfc):
    for words in ("help", NOBODY, f"-t adapter -s info get {IDENTIFIER}"):
        assert zfc(words, debug=65535).stdout == zfc(words).stdout


def test_line_ends_at_1024_characters_without_a_line_end(zfc):
    name = "/" + "n" * 1500
    log = zfc(stdin=f"log {name}\nq\n".encode(), debug=1).debug_log
    at = log.index(b"open() /nnn")
    start = log.rindex(b"CIM Provider ", 0, at)
    line = log[start : start + 1024]
    assert line.endswith(b"nnnn")
    assert re.match(TIME, log[start + 1024 :])


def test_failed_open_of_the_mirror_is_logged(zfc):
    log = zfc("log nowhere/mirror", debug=1).debug_log
    assert b"open() nowhere/mirror failed 2 (No such file or directory)\n" in log


def test_quit_is_logged(zfc):
    assert b"Exiting the program...\r\n" in zfc(stdin=b"q\n", debug=1).debug_log


@pytest.mark.parametrize(
    "name",
    [
        "AdapterCmdsProcessor",
        "AdapterInfoCmdsProcessor",
        "AdapterPersonalityCmdsProcessor",
        "AdapterFlashInfoCmdsProcessor",
    ],
)
def test_constructor_and_destructor_are_timed(zfc, name):
    log = zfc("help", debug=65535).debug_log
    for method in (f"{name}::{name}()", f"{name}::~{name}()"):
        started, ended = log.index(f"STARTING {method}".encode()), log.index(f"RETURNING {method}".encode())
        assert started < ended


def test_root_traces_its_functions_around_the_command(zfc):
    log = zfc("-t adapter help", debug=1).debug_log
    lines = re.findall(rb"(\w+CmdsProcessor::\w+: (?:Entered|Exiting))\r\n", log)
    assert lines == [
        b"MainCmdsProcessor::Initialize: Entered",
        b"MainCmdsProcessor::Initialize: Exiting",
        b"MainCmdsProcessor::Execute: Entered",
        b"AdapterCmdsProcessor::CmdHelp: Entered",
        b"AdapterCmdsProcessor::CmdHelp: Exiting",
        b"MainCmdsProcessor::Execute: Exiting",
        b"MainCmdsProcessor::Uninitialize: Entered",
        b"MainCmdsProcessor::Uninitialize: Exiting",
    ]


def test_read_only_folder_loses_the_lines_and_nothing_else(zfc):
    """The library output file is blocked as well then, so nothing is printed; but the run ends as ever."""
    result = zfc(NOBODY, debug=65535, read_only_var_tmp=True)
    assert result.stdout == b""
    assert result.library_files == []


def test_log_file_that_is_a_folder_leaves_the_command_working(zfc):
    (zfc.var_tmp / "zfcesxcli.log").mkdir()
    assert zfc(NOBODY, debug=65535).stdout == zfc(NOBODY).stdout


def test_texts_from_outside_are_no_formats(zfc):
    for text in ("%s%s%s%n", "%", "%1000000000d", "%5$s"):
        result = zfc(["-t", "adapter", "-s", "info", "getcli", text], debug=65535)
        assert b"Message: Failed, Invalid parameter\n" in result.stdout
    host = one(model="%s%n", serial="%n%s")
    for words in ("-t adapter list", "-t adapter -s info get Adapter_%s%n_%n%s"):
        assert zfc(words, host=host, debug=65535).stdout == zfc(words, host=host).stdout


# Every code that a command of these nodes can end with.
ELM = one(0x3432)
MBI = "TORPI_doOptionROMUpdate"
MEMO = "TORPI_GetAdapterFlashMemoBlock"
CODES = [
    ("help", {}, 0),
    ("version", {}, 0),
    ("log", {}, 0),
    ("log nowhere/mirror", {}, 0),
    ("-t adapter list", {}, 0),
    ("-t adapter list", {"host": NO_ADAPTERS}, 0),
    ("-t adapter list", {"host": NO_LIST}, 14),
    ("-t adapter listcli", {"host": NO_LIST}, 14),
    ("-t adapter list help", {}, 5),
    ("-t adapter listcli help", {}, 5),
    ("-t adapter list ?", {}, 0),
    ("-t adapter listcli ?", {}, 0),
    ("-t adapter help", {}, 0),
    ("no such command", {}, 7),
    ("-t adapter", {}, 7),
    (f"-t adapter -s info get {IDENTIFIER}", {}, 0),
    ("-t adapter -s info get nobody", {}, 6),
    ("-t adapter -s info get help", {}, 5),
    (f"-t adapter -s info get {IDENTIFIER}", {"host": NO_LIST}, 14),
    (f"-t adapter -s info get {IDENTIFIER}", {"spoil_log": "TORPI_Initialize:symlink"}, 19),
    (f"-t adapter -s info get {IDENTIFIER}", {"results": {"TORPI_GetFlashComponentVersion": 150}}, 0),
    (f"-t adapter -s flashinfo get {IDENTIFIER}", {"memo": b"FMBS"}, 0),
    (f"-t adapter -s flashinfo get {IDENTIFIER}", {"memo": b"none"}, 31),
    (f"-t adapter -s flashinfo get {IDENTIFIER}", {"host": one(0x3A02)}, 35),
    (f"-t adapter -s flashinfo get {IDENTIFIER}", {"results": {MEMO: 150}}, 13),
    (f"-t adapter -s personality get {IDENTIFIER}", {}, 0),
    (f"-t adapter -s personality get {IDENTIFIER}", {"host": one(fc=Fc(interface=3))}, 51),
    (
        f"-t adapter -s personality get {IDENTIFIER}",
        {"host": ELM, "results": {"TORPI_GetPersonalityType": 150}},
        13,
    ),
    (f"-t adapter -s personality set {IDENTIFIER}", {}, 35),
    (f"-t adapter -s personality set {IDENTIFIER}", {"host": ELM}, 6),
    (f"-t adapter -s personality set {IDENTIFIER} CNA", {"host": ELM}, 0),
    (
        f"-t adapter -s personality set {IDENTIFIER} CNA",
        {"host": ELM, "results": {"TORPI_CheckOrindaPersonalityChangeOption": 0}},
        24,
    ),
    (
        f"-t adapter -s personality set {IDENTIFIER} CNA",
        {"host": ELM, "results": {"TORPI_ChangePersonalityType": 1}},
        20,
    ),
    (
        f"-t adapter -s personality set {IDENTIFIER} CNA",
        {"host": ELM, "results": {"TORPI_ChangePersonalityType": 150}},
        60,
    ),
    ("-t adapter update", {}, 4),
    ("-t adapter update help", {}, 4),
    ("-t adapter update help file", {}, 5),
    ("-t adapter update nobody file", {}, 6),
    (f"-t adapter update {IDENTIFIER} none MBI", {}, 19),
    (f"-t adapter update {IDENTIFIER} image", {}, 11),
    (f"-t adapter update {IDENTIFIER} image MBI", {}, 0),
    (f"-t adapter update {IDENTIFIER} image PEPCfg", {"host": ELM}, 35),
    *[
        (f"-t adapter update {IDENTIFIER} image MBI", {"results": {MBI: result}}, code)
        for result, code in {
            0: 0, 3: 19, 40: 42, 101: 22, 102: 25, 103: 23, 104: 26, 105: 27, 106: 29, 107: 30, 108: 17, 110: 18,
            111: 31, 113: 35, 114: 21, 121: 35, 133: 32, 150: 60, 152: 61, 153: 62, 201: 0, 205: 0, 522: 16, 523: 11,
        }.items()
    ],
]  # fmt: skip


@pytest.mark.parametrize("words, options, code", CODES)
def test_code(zfc, words, options, code):
    zfc.file("image")
    assert zfc(words, debug=65535, **options).code == code


@pytest.mark.parametrize("stdin, code", [(b"q\n", 0), (b"version\nno such command\nQ\n", 0)])
def test_code_of_the_shell(zfc, stdin, code):
    assert zfc(stdin=stdin, debug=65535).code == code
