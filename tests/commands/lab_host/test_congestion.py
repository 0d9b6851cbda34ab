"""The congestion commands with the simulated library: its built-in host, and what its state keeps from run to run."""

import pytest

from zfc.runner import ROOT

PORT = "FC_21:00:f4:c7:aa:64:00:10"
TARGET = f"{PORT}_Target_50:06:0b:00:3b:20:40:00"
FIRST_GENERATION = "FC_21:00:f4:c7:aa:0b:10:21"
SWITCHED_OFF = "FC_21:00:f4:c7:aa:2c:00:08"


def text(zfc, command, **options):
    return zfc(command, library="simulated", **options).stdout.decode()


@pytest.mark.parametrize(
    "command, lines",
    [
        (
            f"-t port -s scmstats getcli {PORT}",
            ["Message: Success", "Congestion Alarm Count: 2", "Congestion Oversubscription Count: 8"],
        ),
        (
            f"-t port -s scmstats getcli {FIRST_GENERATION}",
            ["Congestion Notification: Congestion, Link Integrity", "Congestion Severity: Warning"],
        ),
        (f"-t port -s scmstats getcli {SWITCHED_OFF}", ["Message: Failed, Feature disabled on the port"]),
        (
            f"-t port -s scmchk getcli {PORT}",
            ["Congestion Current State: Congested", "Fabric Connection Flags: RDF Completed (Cisco)"],
        ),
        (
            f"-t port -s scmprofile getcli {PORT}",
            ["VCLM Profile Management: NVRAM", "VCLM Profile Activation: Aggressive"],
        ),
        (f"-t target -v scmstats getcli {TARGET}", ["Loss Of Signal Count: 3", "PUN Count: 0"]),
        (f"-t target -v scmchk getcli {TARGET}", ["Virtual Lane: Slow", "Seconds Since Last Event: 42"]),
    ],
)
def test_built_in_host(zfc, command, lines):
    shown = [line.strip() for line in text(zfc, command).splitlines()]
    assert [line for line in lines if line not in shown] == []


def test_clearing_lasts(zfc):
    env = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml")}
    assert "      Bottomed Out Count: 1\n" in text(zfc, f"-t port -s scmstats getcli {PORT}", env=env)
    assert "Message: Success\n" in text(zfc, f"-t port -s scmstats clearcli {PORT}", env=env)
    for command, identifier in (("port -s", PORT), ("target -v", TARGET)):
        report = text(zfc, f"-t {command} scmstats getcli {identifier}", env=env)
        assert "      Bottomed Out Count: 0\n" in report
        assert all(line.endswith(": 0") for line in report.splitlines() if " Count: " in line)


def test_profile_lasts(zfc):
    env = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml")}
    command = f"-t port -s scmprofile setcli {PORT}"
    assert "Activation: Defensive\n" in text(zfc, f"{command} -a Defensive", env=env)
    shown = text(zfc, f"{command} -r Driver_Settings", env=env)
    assert shown == text(zfc, f"-t port -s scmprofile getcli {PORT}", env=env)
    assert "Management: Driver_Settings\n      VCLM Profile Activation: Defensive\n" in shown


def test_freeing_that_fails_on_demand(zfc):
    env = {"TORPI_LAB_FAULTS": "TORPI_FreeSCMRStatisticsList=5"}
    shown = text(zfc, f"-t port -s scmstats getcli {PORT}", env=env)
    assert shown.count("Message: Success\n") == shown.count("Message: Failed, Statistics list clear error\n") == 1


def test_thousands_of_targets(zfc):
    host = zfc.file(
        "lab.yaml",
        b"adapters:\n  - family: hazel\n    ports:\n      - wwpn: 21:00:00:0e:1e:11:22:33\n"
        b"        targets: {count: 4096, wwpn: 50:00:00:00:00:00:00:00}\n        congestion:\n          statistics:\n"
        b"            targets: {50:00:00:00:00:00:0f:ff: {pun: 99}}\n            departed-targets: 5000\n",
    )
    last = "FC_21:00:00:0e:1e:11:22:33_Target_50:00:00:00:00:00:0f:ff"
    report = text(zfc, f"-t target -v scmstats getcli {last}", env={"TORPI_LAB_HOST": str(host)})
    assert "      Target Number: 4095\n" in report
    assert "      PUN Count: 99\n" in report


def test_documented_host(zfc):
    """The example of the host file's description is a host."""
    document = (ROOT / "docs" / "lab-host.md").read_text()
    example = document.split("### Congestion management")[1].split("```yaml\n")[1].split("```")[0]
    env = {"TORPI_LAB_HOST": str(zfc.file("lab.yaml", example.encode()))}
    assert "      Throttled Down Count: 9\n" in text(zfc, f"-t target -v scmstats getcli {TARGET}", env=env)
