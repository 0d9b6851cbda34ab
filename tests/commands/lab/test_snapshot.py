"""A snapshot plays its host back: every report, in both forms, about everything in it."""

import os

import pytest

from zfc.random_hosts import random_host
from zfc.runner import ROOT
from zfc.snapshots import all_reports, identifiers, played, report_commands, sample, shell, take

EXAMPLES = sorted((ROOT / "examples").glob("*.yaml"))
# How many random hosts are tried; a longer run may name more.
RANDOM_HOSTS = int(os.environ.get("ZFC_RANDOM_HOSTS", "100"))
BATCH = 5  # of them in one test
BOOT = ("-t port -s bootconfig ", "-t port -s bootconfigext ")


def check_round_trip(zfc, most=12, rdp=False, without=(), **options):
    """The same output from the host and from its snapshot, and the same file again. Returns what is named and the
    output."""
    words = ["--with-rdp"] if rdp else []
    snapshot, said = take(zfc, "first.yaml", words, **options)
    assert said == ""
    named = identifiers(zfc, **options)
    commands = all_reports(named, most, rdp, without)
    expected = shell(zfc, commands, **options)
    assert shell(zfc, commands, **played(snapshot)) == expected
    again, _ = take(zfc, "second.yaml", words, **played(snapshot))
    assert again.read_bytes() == snapshot.read_bytes()
    return named, expected


def test_reports_cover_the_tree():
    assert len(report_commands("adapter")) == 6 and len(report_commands("port")) >= 30
    assert len(report_commands("target")) == 10 and len(report_commands("lun")) == 2


def test_sample_has_both_ends():
    assert sample([*range(100)], 4) == [0, 33, 66, 99] and sample([1, 2], 4) == [1, 2]


def test_built_in_host(zfc):
    named, output = check_round_trip(zfc, rdp=True, library="simulated")
    assert all(named[kind] for kind in ("adapter", "port", "target", "lun"))
    assert output.count(b"Success") > 300 and output.count(b"Failed") > 50


@pytest.mark.parametrize("file", EXAMPLES, ids=lambda file: file.stem)
def test_example(zfc, file):
    # Prints of the library are no answer, and neither is a fault that comes only once.
    without = ["-t adapter -s personality"] if file.stem == "failing" else []
    options = played(file, TORPI_LAB_CHATTER="0")
    check_round_trip(zfc, most=4 if file.stem == "many-luns" else 12, without=without, **options)


@pytest.mark.parametrize("first", range(0, RANDOM_HOSTS, BATCH))
def test_random_hosts(zfc, first):
    for number in range(first, min(first + BATCH, RANDOM_HOSTS)):
        host = zfc.file(f"host{number}.yaml", random_host(number).encode())
        check_round_trip(zfc, most=6, rdp=number % 2 == 0, **played(host))
