"""scripts/fuzz with targets of a few lines, and the fuzz targets that there are against what the documents say of them."""

import os
import re
import shutil
import signal
import subprocess
import time

import pytest

from zfc.runner import ROOT

SCRIPT = ROOT / "scripts/fuzz"
FUZZ = ROOT / "tests/fuzz"

# Ends on any input with a "B" in it, where it is built to. Each "a" at the front is a branch of its own.
TARGET = """
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
volatile int depth;
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 0 && data[0] == 'a') depth = 1;
  if (size > 1 && data[0] == 'a' && data[1] == 'b') depth = 2;
#ifdef DEFECT
  if (size > 0 && std::memchr(data, 'B', size) != nullptr) std::abort();
#endif
  return 0;
}
"""


@pytest.fixture(scope="module")
def programs(tmp_path_factory):
    """The targets good and bad."""
    folder = tmp_path_factory.mktemp("programs") / "with blanks & 'signs'"
    folder.mkdir()
    source = folder / "target.cpp"
    source.write_text(TARGET)
    compiler = shutil.which("clang++") or shutil.which("clang++-14")
    for name, defect in (("good", []), ("bad", ["-DDEFECT"])):
        subprocess.run([compiler, "-fsanitize=fuzzer", *defect, source, "-o", folder / f"{name}_fuzz"], check=True)
    return folder


@pytest.fixture
def kept(tmp_path):
    """The folder of corpora: libFuzzer starts itself through a shell, so its path has what a shell would take apart."""
    return tmp_path / "kept; $HOME 'here'"


def fuzz(programs, corpus, *words):
    return subprocess.run([SCRIPT, "--programs", programs, "--corpus", corpus, "--jobs", "1", "--runs", "20000", *words],
                          capture_output=True, text=True)


def rows(output):
    """The figures by the target's name."""
    lines = output.splitlines()
    assert lines[0].split() == ["target", "executions", "a", "second", "edges", "corpus", "findings"]
    return {line.split()[0]: line.split()[1:] for line in lines[1:] if re.match(r"\w+ ", line)}


def test_a_target_without_findings(programs, kept):
    done = fuzz(programs, kept, "good")
    assert (done.returncode, done.stderr) == (0, "")
    executions, _, edges, corpus, findings = rows(done.stdout)["good"]
    assert (executions, findings) == ("20,000", "0")
    assert int(edges) > 0
    # Nothing, an "a" and "ab": each reaches something of its own.
    inputs = list((kept / "good/corpus").iterdir())
    assert int(corpus) == len(inputs) >= 2
    assert any(one.read_bytes().startswith(b"ab") for one in inputs)
    assert list((kept / "good/findings").iterdir()) == []


def test_a_run_begins_with_what_earlier_runs_kept(programs, kept):
    corpus = kept / "good/corpus"
    corpus.mkdir(parents=True)
    (corpus / "mine").write_bytes(b"ab")
    (corpus / "again").write_bytes(b"ab and more")  # which reaches nothing else
    assert fuzz(programs, kept, "--runs", "0", "good").returncode == 0
    assert [one.read_bytes() for one in corpus.iterdir()] == [b"ab"]
    assert {one.name for one in (kept / "good").iterdir()} == {"corpus", "findings", "log", "merge.log"}


def cells(table):
    return [[cell.strip() for cell in line.strip("|").split("|")] for line in table.read_text().splitlines()]


def test_a_finding_is_made_small_and_kept(programs, kept, tmp_path):
    table = tmp_path / "table"
    done = fuzz(programs, kept, "--table", table)
    assert done.returncode == 1
    figures = rows(done.stdout)
    assert (figures["bad"][-1], figures["good"][-1]) == ("1", "0")
    finding, = (kept / "bad/findings").iterdir()
    assert finding.read_bytes() == b"B"
    assert done.stdout.splitlines()[-1] == f"bad: {finding}"
    assert cells(table) == [[f"`{name}`", *figures[name]] for name in ("bad", "good")]


def test_rows_of_other_targets_stay(programs, kept, tmp_path):
    table = tmp_path / "table"
    table.write_text("| `alone` | 1 | 2 | 3 | 4 | 0 |\n| `good` | old |\n| `other` | 5 | 6 | 7 | 8 | 0 |\n")
    figures = rows(fuzz(programs, kept, "--table", table, "good").stdout)
    assert cells(table) == [["`alone`", "1", "2", "3", "4", "0"], ["`good`", *figures["good"]],
                            ["`other`", "5", "6", "7", "8", "0"]]


def test_an_interrupted_run_keeps_the_rows_of_what_has_ended(programs, kept, tmp_path):
    folder, table = tmp_path / "programs", tmp_path / "table"
    folder.mkdir()
    (folder / "good_fuzz").symlink_to(programs / "good_fuzz")
    (folder / "slow_fuzz").write_text("#!/bin/sh\n: >begun\nexec sleep 600\n")
    (folder / "slow_fuzz").chmod(0o755)
    run = subprocess.Popen([SCRIPT, "--programs", folder, "--corpus", kept, "--jobs", "1", "--runs", "100", "--table", table],
                           stdout=subprocess.PIPE, text=True, start_new_session=True)
    head, good = run.stdout.readline(), run.stdout.readline()
    while not (kept / "slow/begun").exists():
        time.sleep(0.01)
    os.killpg(run.pid, signal.SIGINT)
    assert (run.communicate()[0], run.returncode) == ("", 130)
    assert cells(table) == [["`good`", *rows(head + good)["good"]]]


def test_a_target_that_does_not_run(kept, tmp_path):
    broken = tmp_path / "programs"
    broken.mkdir()
    (broken / "broken_fuzz").write_text("#!/bin/sh\nexit 9\n")
    (broken / "broken_fuzz").chmod(0o755)
    done = fuzz(broken, kept)
    assert done.returncode == 2
    assert f"ended with 9, see {kept}/broken/log" in done.stdout


def test_a_target_that_is_not_there(programs, kept):
    done = fuzz(programs, kept, "better")
    assert done.returncode == 2
    assert done.stderr.endswith("no target better; there are bad good\n")


def targets():
    return sorted(path.name.removesuffix("_fuzz.cpp") for path in FUZZ.glob("*_fuzz.cpp"))


def test_every_target_has_a_corpus():
    for name in targets():
        assert any((FUZZ / "corpus" / name).iterdir()), name
    assert {path.name for path in (FUZZ / "dictionaries").iterdir()} <= set(targets())


def test_the_document_says_what_every_target_reads_and_has_its_figures():
    section = (ROOT / "docs/testing.md").read_text().split("## Fuzz targets\n")[1].split("\n## ")[0]
    described, measured = [re.findall(r"^\| `(\w+)` \|(.*)\|$", table, re.MULTILINE)
                           for table in section.split("\n|---")[1:]]
    assert [name for name, _ in described] == targets()
    assert [name for name, _ in measured] == targets()
    for name, cells in described + measured:
        assert all(cell.strip() for cell in cells.split("|")), name
