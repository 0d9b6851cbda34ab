"""A recorded host: what it refuses, how faults and the trace go with it, and mistakes in its file."""

import re

import pytest

from zfc.runner import ROOT
from zfc.snapshots import identifiers, played, shell, take

PORT = "FC_21:00:00:0e:1e:11:22:33"
ADAPTER = "Adapter_ZX100_AB12345"


@pytest.fixture
def recorded(zfc):
    """The snapshot of the built-in host."""
    return take(zfc, "host.yaml", library="simulated")[0]


def run(zfc, words, file, **variables):
    return shell(zfc, [words], **played(file, TORPI_LAB_TRACE=str(zfc.work / "trace"), **variables)).decode()


def trace(zfc):
    return (zfc.work / "trace").read_text()


@pytest.mark.parametrize(
    ("words", "call"),
    [
        (f"-t adapter -s personality setcli {ADAPTER} CNA", "TORPI_ChangePersonalityType"),
        (f"-t port -s beacon setcli {PORT} ON", "TORPI_UpdateAdapterBeaconStatus"),
        (f"-t port -s stats resetcli {PORT} Firmware", "TORPI_ResetDeviceStats"),
        (f"-t port -s hbaparams restoreDefaultscli {PORT}", "TORPI_RestoreDefaultNVRAM"),
        (f"-t port -s dportdiag setcli {PORT} false", "TORPI_ConfigureAdapterDPortSettings"),
        (f"-t target -v tlsd setcli {PORT}_Target_50:06:0b:00:3b:20:11:c0 8_Gbps", "TORPI_SetTargetLinkSpeed"),
        (f"-t port -s fcping runcli {PORT} 50:06:0b:00:3b:20:11:c0 1 true", "TORPI_DiagnosticsFCPingTest"),
        ("-t port -s bootconfig getcli FC_21:00:f4:c7:aa:0b:10:20 -b UEFI", "TORPI_SetBfsConfigMode"),
    ],
)
def test_changes_and_tests_are_refused(zfc, recorded, words, call):
    output = run(zfc, words, recorded)
    assert re.search(rf"^{call}\(.*\) -> 909$", trace(zfc), re.MULTILINE), trace(zfc)
    assert "Message: Success" not in output


def test_what_a_recording_lacks(zfc, recorded):
    run(zfc, f"-t port -s rdp runcli {PORT}", recorded)
    assert "TORPI_DiagnosticsRDPTest(port=FC_21:00:00:0e:1e:11:22:33, 508) -> 910" in trace(zfc)
    run(zfc, f"-t port -s fwdump getcli {PORT} /tmp/dump", recorded)
    assert "-> 536871035" in trace(zfc)  # 0x2000007B


def test_module_read_anew_is_as_the_module_answered(zfc, recorded):
    raw = run(zfc, f"-t port -s dmi getcli {PORT} --refresh true", recorded)
    assert "Message: Success" in raw and "TORPI_GetSFPDataEx(port=FC_21:00:00:0e:1e:11:22:33, 1, 0) -> 0" in trace(zfc)


def test_loopback_gives_no_result(zfc, recorded):
    run(zfc, f"-t port -s loopback runcli {PORT} 1 1 8 Ignore Internal Random", recorded)
    assert re.search(r"TORPI_DiagnosticsLoopBackTest\(.*\) -> 909", trace(zfc))


def test_faults_go_first(zfc, recorded):
    words = f"-t adapter -s personality getcli {ADAPTER}"
    assert "Message: Success" in run(zfc, words, recorded)
    assert "Message: Failed" in run(zfc, words, recorded, TORPI_LAB_FAULTS="TORPI_GetPersonalityType=150")
    assert "-> 150" in trace(zfc)


def test_chatter(zfc, recorded):
    output = run(zfc, f"-t adapter -s personality getcli {ADAPTER}", recorded, TORPI_LAB_CHATTER="1")
    assert "TORPI_GetPersonalityType: enter\nTORPI_GetPersonalityType: exit, status 0\n" in output


def test_state_file_is_left_alone(zfc, recorded):
    run(zfc, f"-t port -s beacon setcli {PORT} ON", recorded, TORPI_LAB_STATE=str(zfc.work / "state"))
    assert not (zfc.work / "state").exists()


def test_edited_file_plays_what_it_says(zfc, recorded):
    text = recorded.read_text()
    assert text.count('"AB12345"  # serial number') == 1
    text = text.replace('"AB12345"  # serial number', '"NEW" 2d "1"')
    recorded.write_text(text.replace("mezzanine: 0", "mezzanine: {result: 7}"))
    assert identifiers(zfc, **played(recorded))["adapter"][0] == b"Adapter_ZX100_NEW-1"
    assert "Message: Failed" in run(zfc, f"-t port -s beacon getcli {PORT}", recorded)


def mistake(zfc, text):
    file = zfc.file("bad.yaml", text.encode())
    argv, env = zfc.command("-t adapter list", **played(file))
    done = zfc.run(argv, env)
    assert done.returncode == 0
    return done.stderr.decode()


@pytest.mark.parametrize(
    ("text", "line", "what"),
    [
        ("snapshot: 2\n", 1, "snapshot: expected 1, got '2'"),
        (
            "snapshot: 1\nadapter: []\n",
            2,
            "adapter: expected one of the keys snapshot, reboot-required, boot-mode, no-list, list, adapters; "
            "did you mean 'adapters'?",
        ),
        (
            "snapshot: 1\nadapters: [{rekord: zeros}]\n",
            2,
            "rekord: expected one of the keys record, port-list, ports; did you mean 'record'?",
        ),
        ("snapshot: 1\nboot-mode: {reslt: 1}\n", 2, "reslt: expected one of the keys result, value; did you mean 'result'?"),
        ("snapshot: 1\nlist: |\n  0: 1\n", 2, "list: an odd number of hexadecimal digits, in line 1 of its text"),
        ("snapshot: 1\nlist: |\n  0: 01\n  16: 02\n", 2, "list: an offset outside the record, in line 2 of its text"),
        ("snapshot: 1\nlist: 15:\n", 2, None),
        ("snapshot: 1\nlist: '15: 0102'\n", 2, "list: more bytes than the record has, in line 1 of its text"),
        ("snapshot: 1\nlist: '0: \"abc'\n", 2, "list: a text without its closing quote, in line 1 of its text"),
        ("snapshot: 1\nlist: '0: xy'\n", 2, "list: expected hexadecimal digits, in line 1 of its text"),
        ("snapshot: 1\nlist: '0: aabb*3'\n", 2, "list: expected a byte in front of '*' and a number after it, in line 1"),
        ("snapshot: 1\nlist: '0: aa*99999999999999999999'\n", 2, "list: expected a byte in front of '*'"),
        ("snapshot: 1\nlist: [1]\n", 2, "list: expected bytes or the word zeros, got a list"),
        ("snapshot: 1\nboot-mode: soon\n", 2, "boot-mode: expected a number from 0 to 4294967295, got 'soon'"),
        ("snapshot: 1\nboot-mode: {result: -1}\n", 2, "result: expected a number from 0 to 4294967295, got '-1'"),
        (
            "snapshot: 1\nlist: zeros\nadapters:\n  - ports:\n    - protocols:\n      - vpd: 1\n",
            6,
            "vpd: expected a map with size and bytes, got '1'",
        ),
    ],
)
def test_mistakes(zfc, text, line, what):
    said = mistake(zfc, text)
    assert re.search(rf"bad\.yaml:{line}:(\d+: )? ?{re.escape(what or '')}", said), said


def test_luns_beyond_what_a_target_can_have(zfc):
    head = "snapshot: 1\nlist: zeros\nadapters:\n  - ports:\n    - protocols:\n      - targets:\n        - luns: |\n"
    assert mistake(zfc, head + "            same\n" * 16384) == ""
    said = mistake(zfc, head + "            same\n" * 16385)
    assert "luns: more than a recording holds, in line 16385 of its text" in said


class TestDescription:
    TEXT = (ROOT / "docs" / "snapshots.md").read_text()

    def test_example_plays(self, zfc):
        example = zfc.file("example.yaml", re.search(r"```yaml\n(.*?)```", self.TEXT, re.DOTALL)[1].encode())
        named = identifiers(zfc, **played(example))
        assert [len(named[kind]) for kind in ("adapter", "port", "target", "lun")] == [1, 1, 1, 3]

    def test_answers_are_those_of_the_code(self):
        code = (ROOT / "recording" / "recording.h").read_text()
        known = re.findall(r'visit\("([a-z-]+)", "(TORPI_\w+)"', code)
        rows = re.findall(r"^\| (`[a-z-]+`(?:, `[a-z-]+`)?)(?:, of a target)? \| `(TORPI_\w+)`", self.TEXT, re.MULTILINE)
        described = [(key, call) for keys, call in rows for key in re.findall(r"[a-z-]+", keys)]
        assert described[2:] == known and len(known) == 25


def test_boot_mode_is_that_of_the_host(zfc):
    host = zfc.file("uefi.yaml", b"boot-mode: uefi\nadapters: [{family: hazel, ports: [{wwpn: 21:00:00:00:00:00:00:01}]}]")
    file, _ = take(zfc, "host.yaml", **played(host))
    output = run(zfc, "-t port -s bootconfig getcli FC_21:00:00:00:00:00:00:01", file)
    assert "TORPI_GetBfsConfigMode() -> 2\n" in trace(zfc) and "TORPI_SetBfsConfigMode(1) -> 909\n" in trace(zfc)
    assert "Message: Failed" in output
