"""The package of an ESXi host, read by a checker of its own; and the checker, which finds what is wrong with damaged ones."""

import copy
import shutil
import subprocess

import pytest
from lxml import etree

from zfc import vib
from zfc.packages import EPOCH, HOST_VIB, PLUGIN, VERSION, files
from zfc.runner import ROOT

ENTRIES = {
    "etc/vmware/vm-support/zfcesxcli.mfx": "-r--r--r--",
    f"{PLUGIN}/bin/ZFC_ESXCLI_Readme.txt": "-r--r--r--",
    f"{PLUGIN}/bin/zfc-json": "-r-xr-xr-x",
    f"{PLUGIN}/bin/zfc-snapshot": "-r-xr-xr-x",
    f"{PLUGIN}/bin/zfcesxcli": "-r-xr-xr-x",
    f"{PLUGIN}/tmp/": "drwx------",
    f"{PLUGIN}/tmp/README": "-r--r--r--",
    "usr/lib/vmware/esxcli/ext/zfcesxcli.xml": "-r--r--r--",
}


def test_an_installer_finds_nothing_wrong(unpacked):
    assert vib.faults(unpacked.vib) == []


def test_holds_the_program_and_no_device_library(unpacked):
    assert {entry.name: entry.mode for entry in unpacked.vib.entries} == ENTRIES


def test_descriptor(unpacked):
    descriptor = unpacked.vib.descriptor
    assert descriptor.findtext("name") == "zfcesxcli"
    assert descriptor.findtext("version") == f"{VERSION}-1"
    assert descriptor.findtext("release-date") == "2026-01-02T03:04:05.000000+00:00"
    assert {entry.time for entry in unpacked.vib.entries} == {"2026-01-02 03:04:05"}
    assert EPOCH == 1767323045


def test_signature_is_empty(packages):
    assert vib.busybox("ar", "p", str(packages / HOST_VIB), "sig.pkcs7") == b""


def test_installed_files_are_those_of_the_debian_package(unpacked):
    for name in files(unpacked.host):
        if name.startswith(f"{PLUGIN}/bin/"):
            assert (unpacked.host / name).read_bytes() == (unpacked.program / name).read_bytes(), name


def test_program_runs_from_it(zfc, unpacked):
    packed = zfc("-t adapter listcli", program=unpacked.host / PLUGIN / "bin" / "zfcesxcli", keep=[unpacked.host])
    assert packed.stdout == zfc("-t adapter listcli").stdout and b"Adapter_" in packed.stdout


class TestChecker:
    """Each damage is found, and only that one."""

    @pytest.fixture
    def damaged(self, unpacked):
        good = unpacked.vib
        return vib.Vib([*good.members], copy.deepcopy(good.descriptor), good.payload, good.tar, copy.deepcopy(good.entries))

    @staticmethod
    def only(found, text):
        assert len(found) == 1 and text in found[0], found

    def test_other_order_of_members(self, damaged):
        damaged.members[:2] = reversed(damaged.members[:2])
        self.only(vib.faults(damaged), "members")

    def test_missing_element(self, damaged):
        damaged.descriptor.remove(damaged.descriptor.find("vendor"))
        self.only(vib.faults(damaged), "elements")

    def test_wrong_value(self, damaged):
        damaged.descriptor.find("acceptance-level").text = "partner"
        self.only(vib.faults(damaged), "acceptance-level")

    @pytest.mark.parametrize("number", range(3))
    def test_wrong_sum(self, damaged, number):
        damaged.descriptor.findall("payloads/payload/checksum")[number].text = "00"
        self.only(vib.faults(damaged), "check sums")

    def test_wrong_size(self, damaged):
        damaged.descriptor.find("payloads/payload").set("size", "1")
        self.only(vib.faults(damaged), "size")

    def test_long_payload_name(self, damaged):
        damaged.members[2] = "zfcesxcli"
        damaged.descriptor.find("payloads/payload").set("name", "zfcesxcli")
        self.only(vib.faults(damaged), "payload name")

    def test_file_that_is_not_listed(self, damaged):
        files = damaged.descriptor.find("file-list")
        files.remove(files[0])
        self.only(vib.faults(damaged), "not listed")

    def test_listed_file_that_is_missing(self, damaged):
        etree.SubElement(damaged.descriptor.find("file-list"), "file").text = "opt/more"
        self.only(vib.faults(damaged), "opt/more")

    def test_absolute_path(self, damaged):
        damaged.entries.append(vib.Entry("drwxr-xr-x", "0/0", 0, "", "/opt/more/"))
        self.only(vib.faults(damaged), "not relative")

    def test_entry_of_a_system_folder(self, damaged):
        damaged.entries.append(vib.Entry("drwxr-xr-x", "0/0", 0, "", "opt/"))
        self.only(vib.faults(damaged), "system folder")

    @pytest.mark.parametrize("field, value", [("owner", "1000/0"), ("mode", "-rw-rw-rw-")])
    def test_entry_that_others_may_change(self, damaged, field, value):
        setattr(damaged.entries[0], field, value)
        self.only(vib.faults(damaged), value)

    def test_archive_with_members_missing(self, packages, tmp_path):
        shutil.copy(packages / HOST_VIB, tmp_path / "cut.vib")
        subprocess.run(["ar", "d", "cut.vib", "sig.pkcs7"], cwd=tmp_path, check=True)
        (tmp_path / "out").mkdir()
        self.only(vib.faults(vib.read(tmp_path / "cut.vib", tmp_path / "out")), "members")


def test_checker_is_independent():
    text = (ROOT / "tests" / "support" / "zfc" / "vib.py").read_text()
    assert "packaging" not in text and "build-packages" not in text
