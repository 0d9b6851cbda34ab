"""The lines of the debug log that say why a command fails: log_lines.yaml has a run for every one of their texts.

The keys of a row, beside `text`, `run` and `lines`:

    host           fields of the port that differ from the defaults (zfc.port, zfc.config), or none for no adapter list
    results        results of library calls; turns: results one after the other; scripts: answers as in zfc.diag
    spoil          the call during which the library output file becomes a folder
    refuse         the size of the buffer that is not to be had
    env            settings of the library
    file           a file that is there
    staged         content of the port's staged files, by their family
    staging_links  symbolic links in the staging folder
    statistics     the kinds of the elements of the congestion statistics
    memo           the signature of the flash memo block
    no_module      the port has no module
    lost_echo      the echo does not come back
    link_test_refused  why the link test was refused
    unit           in place of a run: the unit test that has the line
"""

import re
import shlex
from collections import Counter
from pathlib import Path

import pytest
import yaml

from zfc import flash, sfp
from zfc.config import bbcr, boot, entry, nvme, params, statistics, turns
from zfc.congestion import SECOND, element, statistics_list
from zfc.diag import LOST, SECOND_INTERFACE, dport_record, script, step
from zfc.host import IDENTIFIER as ADAPTER
from zfc.host import NO_LIST, Adapter, Host, Port
from zfc.port import IDENTIFIER as PORT
from zfc.preload import needs_preload, preloaded
from zfc.runner import ROOT
from zfc.target import IDENTIFIER as TARGET
from zfc.target import luns, target

SRC = ROOT / "src"
TABLE = yaml.safe_load((Path(__file__).parent / "log_lines.yaml").read_text())
ROWS = [(source, row) for source, rows in TABLE.items() for row in rows]

# Where a function that logs a failure has the text, counted from 0. RefuseWord and those after it take a piece of it.
TEXT_ARGUMENTS = {
    "Refuse": 1,
    "LogFailure": 0,
    "DebugLogLevel": 1,
    "CallLibrary": 1,
    "CallLibraryWithOneStatus": 1,
    "ClearUnlessRead": 1,
    "StatusOfCall": 1,
    "RefuseWord": 2,
    "ReadCount": 2,
    "LogLookup": 1,
    "ChangeRegistration": 1,
    "Fail": 2,
}
CALL = re.compile(rf"\b({'|'.join(TEXT_ARGUMENTS)})\s*\(")

# Parameters that functions of the table hand on: their callers have the texts.
HANDED_ON = {
    ("config/staged/file_ops.cpp", "const char* what"),
    ("diag/diagnostic_words.cpp", "what"),
    ("diag/diagnostic_words.cpp", "const char* what"),
    ("diag/diagnostic_words.h", "const char* what"),
    ("diag/physical_port_host_nqn_cmds_processor.cpp", "step"),
    ("diag/physical_port_host_nqn_cmds_processor.cpp", "const char* step"),
    ("discovery/port_lookup.cpp", "const char* what"),
    *[
        (f"framework/{name}", text)
        for name in ("command_run.h", "command_run.cpp", "library_call.h", "library_call.cpp")
        for text in ("const char* format", "const char* step", "step")
    ],
    ("framework/command_run.cpp", '"%s::%s: %s"'),
}


def arguments(source, at):
    """The arguments of a call, up to its closing parenthesis; `at` is the place after the opening one."""
    found, depth, start, in_text = [], 0, at, False
    while True:
        character = source[at]
        if in_text:
            in_text = character != '"' or source[at - 1] == "\\"
        elif character == '"':
            in_text = True
        elif character in "([{":
            depth += 1
        elif character in ")]}" and depth > 0:
            depth -= 1
        elif character in ",)" and depth == 0:
            found.append(" ".join(source[start:at].split()))
            start = at + 1
            if character == ")":
                return found
        at += 1


def texts_of_the_sources():
    """How often every source begins such a line with a text."""
    found = Counter()
    constants = {}
    sources = {str(path.relative_to(SRC)): path.read_text() for path in sorted(SRC.rglob("*.[ch]*"))}
    for source in sources.values():
        constants |= dict(re.findall(r'constexpr (?:const )?char\b[* ]+(\w+)(?:\[\])? = ("[^"]*");', source))
    for name, source in sources.items():
        if name.startswith("runtime/"):
            continue
        for call in CALL.finditer(source):
            words = arguments(source, call.end())
            if call[1] == "DebugLogLevel" and words[0] in ("kDebugTrace", "kDebugDetail"):
                continue
            text = words[TEXT_ARGUMENTS[call[1]]]
            if (name, text) in HANDED_ON:
                continue
            text = constants.get(text, text)
            assert text[0] == text[-1] == '"', f"{name}: the text of {call[1]}({', '.join(words)}) is not seen"
            found[name, text[1:-1]] += 1
    return found


def test_every_text_of_the_sources_has_a_row():
    """And no row is left of a text that has gone. A text that a source has twice has two rows at least."""
    demanded = texts_of_the_sources()
    rows = Counter((source, row["text"]) for source, row in ROWS)
    assert demanded - rows == Counter()
    assert rows.keys() == demanded.keys()


def named(text):
    """The text with the identifiers in the places of their names."""
    names = {"adapter": ADAPTER, "port": PORT, "target": TARGET, "lun": f"{TARGET}_LUN_0", "wwn": TARGET[-23:]}
    for name, identifier in names.items():
        text = text.replace(f"{{{name}}}", identifier)
    return text


def host_of(row):
    fields = row.get("host", {})
    if fields == "none":
        return NO_LIST
    fields = {"capabilities": SECOND | SECOND_INTERFACE, "driver_flags": 0, "supported": 0xFF, **fields}
    port_flags = fields.pop("port_flags", 0)
    made = entry(targets=[target(luns(0))], **fields)
    made.raw[184] = bytes([port_flags])
    return Host([Adapter(ports=[Port(0, [made])])])


def environment_of(zfc, row):
    """What the library answers."""
    scripts = {name: [str(answer)] for name, answer in row.get("scripts", {"IsMezzAdapter": "0/00"}).items()}
    if row.get("lost_echo"):
        scripts["DiagnosticsEchoElsTest"] = [step(0, LOST)]
    if "link_test_refused" in row:
        refused = dport_record(mailbox=(0x4005, row["link_test_refused"]))
        scripts["DiagnosticDPortTestV2"] = [step(0, refused)]
    env = {"HOSTILE_FEC": "0", "HOSTILE_FW_STATS": statistics().hex()}
    env |= script(**scripts) | turns(**row.get("turns", {}))
    if "statistics" in row:
        env |= statistics_list(zfc, *(element(kind) for kind in row["statistics"]))
    if "refuse" in row:
        env |= preloaded("refuse_memory", REFUSE_BYTES=row["refuse"])
    return env | row.get("env", {})


def run(zfc, row):
    if "file" in row:
        zfc.file(row["file"])
    for family, content in row.get("staged", {}).items():
        (zfc.staging / f"{family}_{PORT}").write_text(content)
    for name, path in row.get("staging_links", {}).items():
        (zfc.staging / named(name)).symlink_to(named(path))
    module = sfp.NO_MODULE if row.get("no_module") else sfp.REAL_SFP
    options = {
        "buffers": {"params": params(), "bbcr": bbcr(), "boot": boot(), "nvme": nvme(), "sfp": module},
        "results": {f"TORPI_{call}": result for call, result in row.get("results", {}).items()},
        "memo": flash.memo(signature=row.get("memo", "FMBS").encode()),
        "components": flash.components(),
    }
    if "spoil" in row:
        options["spoil_log"] = f"TORPI_{row['spoil']}:directory"
    words = shlex.split(named(row["run"]))
    return zfc(words, host=host_of(row), env=environment_of(zfc, row), debug=4, **options)


def pattern_of(text):
    """What a line holds of a text, each conversion being any text."""
    return re.compile(".*".join(map(re.escape, re.split(r"%(?:0|\.\*|\d)*[sudx]", text))))


RUNS = [
    pytest.param(row, id=f"{source}: {row['text']}", marks=[needs_preload] if "refuse" in row else [])
    for source, row in ROWS
    if "unit" not in row
]


@pytest.mark.parametrize("row", RUNS)
def test_line(zfc, row):
    lines = [named(line) for line in row["lines"]]
    assert any(pattern_of(row["text"]).search(line) for line in lines)
    assert run(zfc, row).failures == lines


@pytest.mark.parametrize("source, row", [found for found in ROWS if "unit" in found[1]])
def test_line_of_a_unit_test(source, row):
    assert (ROOT / "tests/unit" / row["unit"]).exists()
    pieces = [piece for piece in re.split(r"%s", row["text"]) if piece.strip(": ")]
    assert all(piece in (ROOT / "tests/unit" / row["unit"]).read_text() for piece in pieces), source
