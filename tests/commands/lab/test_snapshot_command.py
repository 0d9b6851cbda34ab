"""zfc-snapshot and `zfc-lab snapshot` as commands: their words, files, messages and exit statuses."""

import os
import shutil
import subprocess

import pytest

from zfc.host import NO_LIST, Adapter, Fc, Host, Port, Target
from zfc.preload import needs_preload, preloaded
from zfc.runner import BUILD
from zfc.snapshots import SNAPSHOT, identifiers, take

LAB = BUILD / "bin" / "zfc-lab"
SIMULATED = {"library": "simulated"}
# A port with a target, and a statistics block as long as its record.
HOSTILE = {"host": Host([Adapter(ports=[Port(0, [Fc(targets=[Target()])])])]), "buffers": {"fw_stats": bytes(528)}}

# One adapter more than a snapshot holds.
LONG = Host([Adapter(serial=f"S{number}", ports=[]) for number in range(257)])


@pytest.fixture
def snapshot(zfc):
    def run(*words, program=SNAPSHOT, before=None, stdout=subprocess.PIPE, **options):
        argv, env = zfc.command([str(word) for word in words], program=program, **{**SIMULATED, **options})
        if not before and stdout == subprocess.PIPE:
            return zfc.run(argv, env)
        return subprocess.run(argv, stdout=stdout, stderr=subprocess.PIPE, env=env, timeout=60, preexec_fn=before)

    return run


@pytest.mark.parametrize("words", [["--help"], ["-h"], ["-o", "x", "--help"]])
def test_help(zfc, snapshot, words):
    done = snapshot(*words)
    assert done.returncode == 0 and done.stderr == b""
    assert done.stdout.startswith(b"Usage: zfc-snapshot [-o FILE]")
    assert zfc.calls() == [] and not (zfc.work / "x").exists()


def test_version(snapshot):
    assert snapshot("--version").stdout == b"zfc-snapshot 1.9.0\n"


@pytest.mark.parametrize(
    ("words", "reason"),
    [
        (["--output"], "--output needs a value: FILE"),
        (["--anonymize"], "unknown option '--anonymize'"),
        (["--force=1"], "--force takes no value"),
        (["file.yaml"], "unexpected word 'file.yaml'"),
    ],
)
def test_wrong_usage(snapshot, words, reason):
    done = snapshot(*words)
    assert (done.returncode, done.stdout) == (2, b"")
    assert done.stderr.decode() == f"zfc-snapshot: {reason}\nTry 'zfc-snapshot --help'.\n"


def test_standard_output_and_a_file_get_the_same(zfc, snapshot):
    direct = snapshot()
    assert direct.returncode == 0 and direct.stdout.endswith(b"\n")
    assert snapshot("-o", "-").stdout == direct.stdout
    assert take(zfc, "it.yaml", **SIMULATED)[0].read_bytes() == direct.stdout


def test_library_prints_nothing_into_the_snapshot(zfc, snapshot):
    quiet = snapshot().stdout
    chatty = snapshot(env={"TORPI_LAB_CHATTER": "1"})
    assert chatty.stdout == quiet
    chatty = snapshot(library="hostile", chatter="all", **HOSTILE)
    assert chatty.stdout == snapshot(library="hostile", chatter=(), **HOSTILE).stdout != b""


class TestFiles:
    def test_one_that_is_there_stays(self, zfc, snapshot):
        file = zfc.file("there.yaml", b"mine")
        done = snapshot("-o", "there.yaml")
        assert (done.returncode, done.stderr) == (1, b"# zfc-snapshot: there.yaml: is there already; --force replaces it\n")
        assert file.read_bytes() == b"mine" and zfc.calls() == []
        assert snapshot("-o", "there.yaml", "--force").returncode == 0
        assert b"snapshot: 1\n" in file.read_bytes()

    def test_folder_that_is_not_there(self, snapshot):
        done = snapshot("-o", "nowhere/it.yaml")
        assert (done.returncode, done.stdout) == (1, b"")
        assert done.stderr == b"# zfc-snapshot: nowhere/it.yaml: can't be written: No such file or directory\n"

    def test_full_disk(self, snapshot):
        with open("/dev/full", "wb") as full:
            done = snapshot(stdout=full)
        assert done.returncode == 1
        assert done.stderr == b"# zfc-snapshot: standard output: can't be written: No space left on device\n"

    def test_standard_output_that_is_closed(self, snapshot):
        done = snapshot(before=lambda: os.close(1), stdout=None)
        assert (done.returncode, done.stderr) == (1, b"# zfc-snapshot: standard output is closed\n")


def test_messages_beside_the_snapshot_are_remarks_of_it(zfc, snapshot):
    """As in a support bundle, whose files have standard output and standard error."""
    both = zfc.work / "both.yaml"
    with both.open("wb") as file:
        argv, env = zfc.command([], program=SNAPSHOT, library="hostile", host=LONG)
        done = subprocess.run(argv, stdout=file, stderr=subprocess.STDOUT, env=env, timeout=60)
    assert done.returncode == 1
    remarks = [line for line in both.read_text().splitlines() if "zfc-snapshot: " in line]
    assert len(remarks) == 1 and remarks[0].startswith("# zfc-snapshot: ")
    argv, env = zfc.command(["check", str(both)], program=LAB)
    checked = zfc.run(argv, env)
    assert checked.returncode == 0 and b"good: snapshot of 256 adapters, " in checked.stdout


class TestMemory:
    @needs_preload
    @pytest.mark.parametrize("call", [1, 50, 500])
    def test_gives_out(self, zfc, snapshot, call):
        done = snapshot("-o", "it.yaml", env=preloaded("refuse_memory", REFUSE_FROM=call))
        assert done.returncode == 1 and not (zfc.work / "it.yaml").exists()
        assert done.stderr == b"# zfc-snapshot: out of memory; nothing is written\n"


class TestReadsAlone:
    CHANGES = ("Set", "Update", "Reset", "Restore", "Save", "Configure", "Change", "doOption", "Register", "Diagnos")

    def test_calls(self, zfc):
        take(zfc, "it.yaml", **HOSTILE)
        made = [call.removeprefix("TORPI_").partition("(") for call in zfc.calls()]
        session = {"Initialize", "SetToolID", "SetToolVersion", "Uninitialize"}
        names = {name for name, _, _ in made} - session
        assert len(names) == 26 and not any(name.removeprefix("FC").startswith(self.CHANGES) for name in names)
        assert [rest for name, _, rest in made if name == "GetSFPDataEx"] == [
            "port, zeroed buffer, 0, 0)",
            "port, zeroed buffer, 3, 0)",
        ]

    def test_link_test_only_when_it_is_asked_for(self, zfc):
        take(zfc, "it.yaml", ["--with-rdp"], **HOSTILE)
        assert [call for call in zfc.calls() if "Diagnos" in call] == [
            "TORPI_DiagnosticsRDPTest(port, zeroed buffer, 508)"
        ]

    def test_session_is_that_of_the_program(self, zfc):
        take(zfc, "it.yaml", **HOSTILE)
        assert zfc.calls()[:3] == ["TORPI_Initialize(0, 0)", "TORPI_SetToolID(11)", "TORPI_SetToolVersion(1, 9, 0, 0)"]
        assert zfc.calls()[-1] == "TORPI_Uninitialize()"


def test_lab_command_runs_it(zfc, snapshot):
    assert snapshot("snapshot", program=LAB).stdout == snapshot().stdout
    done = snapshot("snapshot", "--nonsense", program=LAB)
    assert done.returncode == 2 and b"unknown option '--nonsense'" in done.stderr
    assert b"Usage: zfc-lab snapshot" in snapshot("snapshot", "--help", program=LAB).stdout


def test_lab_command_gives_the_library_beside_it(snapshot, zfc):
    """As installed: the program is a link to another folder, from where no library is found."""
    lab, elsewhere = zfc.work / "lab", zfc.work / "elsewhere"
    for folder in (lab / "bin", lab / "lib", elsewhere / "bin"):
        folder.mkdir(parents=True)
    shutil.copy(LAB, lab / "bin")
    shutil.copy(BUILD / "lib/libtorpifconly.so", lab / "lib")
    shutil.copy(SNAPSHOT, elsewhere / "bin")
    (lab / "bin/zfc-snapshot").symlink_to(elsewhere / "bin/zfc-snapshot")
    assert snapshot(program=elsewhere / "bin/zfc-snapshot").returncode == 127
    done = snapshot("snapshot", program=lab / "bin/zfc-lab")
    assert done.returncode == 0 and done.stdout == snapshot().stdout


def test_host_without_a_list(snapshot):
    done = snapshot(library="hostile", host=NO_LIST)
    assert done.returncode == 0 and done.stdout.endswith(b"no-list: true\n")


def test_check_reads_a_snapshot(zfc, snapshot):
    take(zfc, "it.yaml", **SIMULATED)
    done = snapshot("check", "it.yaml", program=LAB)
    assert done.returncode == 0
    named = {kind: len(items) for kind, items in identifiers(zfc, **SIMULATED).items()}
    counted = f"{named['port']} protocol entries, {named['target']} targets, {named['lun']} LUNs\n"
    assert done.stdout.startswith(b"it.yaml: good: snapshot of 6 adapters, ") and done.stdout.endswith(counted.encode())
    host = zfc.file("lab.yaml", b"adapters: [{family: elm, ports: [{}, {targets: {luns: 0-2}}, {}]}, {family: hazel}]\n")
    take(zfc, "small.yaml", env={"TORPI_LAB_HOST": host}, **SIMULATED)
    done = snapshot("check", "small.yaml", program=LAB)
    summary = b"snapshot of 2 adapters, 3 ports, 3 protocol entries, 1 target, 3 LUNs\n"
    assert done.returncode == 0 and done.stdout == b"small.yaml: good: " + summary
    bad = zfc.file("bad.yaml", b"snapshot: 1\nlist: |\n  0: zz\nboot-mode: -1\n")
    done = snapshot("check", bad, program=LAB)
    assert done.returncode == 1 and done.stdout.count(b"\n") == 2


def test_library_finds_the_services_of_the_program(zfc):
    take(zfc, "it.yaml", services=True, **HOSTILE)
    calls = zfc.calls()
    assert [call for call in calls if "missing" in call] == []
    assert "CoreMalloc(64) gives a block" in calls and "CoreZMalloc(64) gives zeros" in calls
