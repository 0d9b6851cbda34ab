"""The dmi node with the simulated library: examples/modules.yaml has a module of every kind, port by port."""

import shutil

import pytest

from zfc import documents
from zfc.runner import ROOT
from zfc.sfp import REAL_QSFP


@pytest.fixture
def run(zfc):
    shutil.copytree(ROOT / "examples" / "modules", zfc.work / "modules")
    shutil.copy(ROOT / "examples" / "modules.yaml", zfc.work)
    env = {"TORPI_LAB_HOST": "modules.yaml", "TORPI_LAB_STATE": "state.yaml"}

    def run(command, port, *words):
        identifier = f"FC_21:00:f4:c7:aa:64:01:{port:02x}"
        return zfc([*f"-t port -s dmi {command}".split(), identifier, *words], library="simulated", env=env).stdout

    return run


@pytest.mark.parametrize("port, name", [(0, "sfp"), (1, "qsfp")])
def test_real_modules(run, port, name):
    documents.check(run("get", port), f"port/dmi/{name}.xml")
    documents.check(run("getcli", port), f"port/dmi/{name}.txt")


def test_raw_bytes_of_a_real_module(run):
    documents.check(run("getraw", 0), "port/dmi/raw.xml")


def test_refresh_is_seen_by_later_runs(run):
    """72 degrees before, 81 after."""
    assert b"\n        Value      72.00 " in run("getcli", 3)
    assert b"\n        Value      81.00 " in run("getcli", 3, "--refresh", "true")
    assert b"\n        Value      81.00 " in run("getcli", 3, "--refresh", "false")


def test_saved_text_is_the_file_that_was_read(zfc, run):
    documents.check(run("save", 0, "saved.hex", "Text"), "port/dmi/save.xml", message="Success")
    original = ROOT / "examples" / "modules" / "sfpp-10g-sr-finisar-a.hex"
    assert (zfc.work / "saved.hex").read_bytes() == original.read_bytes()


def test_saved_binary_is_the_memory(zfc, run):
    documents.check(run("save", 1, "saved.bin", "Binary"), "port/dmi/save.xml", message="Success")
    assert (zfc.work / "saved.bin").read_bytes() == REAL_QSFP


def test_save_where_nothing_can_be_written(run):
    documents.check(run("save", 1, "none/saved", "Text"), "port/dmi/save.xml", message="Failed, File not found")


def test_update_changes_the_version(run):
    assert b"SFP Firmware Version: 0x02 0x07 \n" in run("getcli", 2)
    documents.check(run("update", 2, "modules/wtd-firmware.fw", "WTD"), "port/dmi/update.xml", message="Success")
    assert b"SFP Firmware Version: 0x02 0x08 \n" in run("getcli", 2)


def test_update_of_a_module_of_another_maker(run):
    update = run("update", 5, "modules/wtd-firmware.fw", "WTD")
    documents.check(update, "port/dmi/update.xml", message="Failed, SFP FW update not supported for this SFP vendor")


def test_module_without_diagnostics_has_no_table(run):
    report = run("getcli", 6)
    assert b"Part Number: SX-DAC-3M\n" in report and b"Temperature   Voltage" not in report


def test_empty_cage(run):
    for command in ("get", "getraw"):
        documents.check(run(command, 7), "port/dmi/failed.xml", message="Failed, Data not available")
