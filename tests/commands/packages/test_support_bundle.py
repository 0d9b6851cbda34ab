"""The manifest for the host's support bundles, read and run by a stand-in for the host's collector."""

import os
import time

import pytest

from zfc import support_bundle
from zfc.config import IDENTIFIER, one_port
from zfc.packages import PLUGIN
from zfc.runner import BUILD
from zfc.support_bundle import Refused

MANIFEST = "etc/vmware/vm-support/zfcesxcli.mfx"
SNAPSHOT = f"/{PLUGIN}/bin/zfc-snapshot"
LISTS = [f"/{PLUGIN}/bin/zfcesxcli -t {kind} listcli" for kind in ("adapter", "port", "target", "lun")]
LOGS = {"/var/tmp/zfcesxcli.log": b"debug\n", "/var/tmp/torpi-output.log": b"library\n"}
STAGED = {
    f"/{PLUGIN}/tmp/{family}_{IDENTIFIER}": family.encode() for family in ("HBAParams", "BBCR", "BootConfig", "BootConfigExt")
}


@pytest.fixture
def manifest(unpacked):
    return support_bundle.read((unpacked.host / MANIFEST).read_text())


@pytest.fixture
def collected(zfc, unpacked, manifest):
    """Collects a bundle on a host whose programs are those of the package."""

    def collect(faster=1, **options):
        def command(words):
            program = unpacked.host / words[0].removeprefix("/")
            return zfc.command(words[1:], program=program, keep=[unpacked.host], **options)

        folders = {"/var/tmp": zfc.var_tmp, f"/{PLUGIN}/tmp": zfc.staging}
        return support_bundle.collect(manifest, folders, command, faster)

    return collect


def put(zfc, contents):
    for name, content in contents.items():
        folder = zfc.var_tmp if name.startswith("/var/tmp/") else zfc.staging
        (folder / name.rsplit("/", 1)[1]).write_bytes(content)


def test_is_one_that_the_collector_takes(manifest):
    assert (manifest.name, manifest.group, manifest.enabled) == ("Zfcesxcli", "Storage", True)
    assert [row.what for row in manifest.rows if row.action == "run"] == [SNAPSHOT, *LISTS]


def test_every_command_is_in_the_package_and_bounded(manifest, unpacked):
    runs = [row for row in manifest.rows if row.action == "run"]
    for row in runs:
        assert os.access(unpacked.host / row.what.split()[0].removeprefix("/"), os.X_OK), row
    assert sum(row.options["TIMEOUT"] for row in runs) <= 300


def test_holds_lists_logs_and_staged_files(zfc, collected):
    put(zfc, {**LOGS, **STAGED, f"/{PLUGIN}/tmp/README": b"", f"/{PLUGIN}/tmp/other": b""})
    options = {"host": one_port(), "chatter": ()}
    bundle = collected(**options)
    assert {*bundle} == {SNAPSHOT, *LISTS, *LOGS, *STAGED}
    for row in LISTS:
        assert bundle[row] == zfc(row.split(None, 1)[1], **options).stdout
    assert IDENTIFIER.encode() in bundle[LISTS[1]]
    assert {name: bundle[name] for name in (*STAGED, "/var/tmp/zfcesxcli.log")} == {
        **STAGED,
        "/var/tmp/zfcesxcli.log": b"debug\n",
    }
    assert bundle["/var/tmp/torpi-output.log"].startswith(b"library\n")


def test_plays_the_host_back(zfc, collected):
    """The snapshot in a bundle is the host: what it lists is what the host lists."""
    lab = {"LD_LIBRARY_PATH": str(BUILD / "lib"), "TORPI_LAB_QUIET": "1"}
    bundle = collected(library="simulated", env=lab)
    case = zfc.file("case.yaml", bundle[SNAPSHOT])
    played = {"library": "simulated", "env": {**lab, "TORPI_LAB_HOST": str(case)}}
    for row in LISTS:
        assert bundle[row].count(b"\n") > 3
        assert zfc(row.split(None, 1)[1], **played).stdout == bundle[row]


@pytest.mark.parametrize("call", ["TORPI_Initialize", "TORPI_GetAdapterList"])
def test_library_that_hangs_costs_its_time_and_nothing_else(zfc, collected, call):
    put(zfc, STAGED)
    begun = time.monotonic()
    bundle = collected(faster=100, pause=f"{call}:600000")
    assert time.monotonic() - begun < 120  # limits of 2.4 seconds in all, on a busy machine
    assert {*bundle} >= {SNAPSHOT, *LISTS, *STAGED}
    assert all(b"Adapter_" not in bundle[row] for row in LISTS)
    assert {name: bundle[name] for name in STAGED} == STAGED


def test_library_that_fails(zfc, collected):
    put(zfc, STAGED)
    bundle = collected(results={"TORPI_Initialize": 1, "TORPI_GetAdapterList": 5}, chatter=())
    assert {*bundle} >= {SNAPSHOT, *LISTS, *STAGED}
    assert {name: bundle[name] for name in STAGED} == STAGED


def test_library_that_is_not_there(zfc, collected, tmp_path):
    put(zfc, STAGED)
    bundle = collected(env={"LD_LIBRARY_PATH": str(tmp_path)})
    for row in (SNAPSHOT, *LISTS):
        assert b"error while loading shared libraries: libtorpifconly.so" in bundle[row]
    assert {name: bundle[name] for name in STAGED} == STAGED


class TestStandIn:
    HEAD = "# Manifest name: Name\n# Manifest group: Group\n# Manifest default: Disabled\n"

    def test_reads_rows(self):
        text = self.HEAD + "# a note\n\nrun TIMEOUT=10 /bin/true with words\ncopy RECURSE /etc/*\nsafecopy - /var/log/a\n"
        manifest = support_bundle.read(text)
        assert [(row.action, row.options, row.what) for row in manifest.rows] == [
            ("run", {"TIMEOUT": 10}, "/bin/true with words"),
            ("copy", {"RECURSE": True}, "/etc/*"),
            ("safecopy", {}, "/var/log/a"),
        ]
        assert not manifest.enabled

    @pytest.mark.parametrize(
        "text",
        [
            "",
            HEAD.replace("Name", "Name1"),
            HEAD.replace("Disabled", "On"),
            HEAD.replace("# Manifest group: Group\n", ""),
            HEAD + "move - /etc/a\n",
            HEAD + "copy /etc/a\n",
            HEAD + "copy - etc/a\n",
            HEAD + "copy - /etc/[ab]\n",
            HEAD + "copy - /etc/a?\n",
            HEAD + "run RECURSE /bin/true\n",
            HEAD + "run TIMEOUT=soon /bin/true\n",
            HEAD + "copy TIMEOUT=10 /etc/a\n",
        ],
    )
    def test_refuses(self, text):
        with pytest.raises(Refused):
            support_bundle.read(text)
