"""The diagnostic commands with the simulated library: its built-in host, and what its state keeps from run to run."""

import time

import pytest

from zfc.runner import ROOT
from zfc.terminal import errors_at_terminal

ELM = "FC_21:00:00:0e:1e:11:22:33"
HAZEL = "FC_21:00:f4:c7:aa:0b:10:20"
DAHLIA = "FC_21:00:f4:c7:aa:64:00:10"
BIRCH = "FC_21:00:00:24:ff:4b:9e:01"
ELM_TARGET = "50:06:0b:00:3b:20:11:c0"
DAHLIA_TARGET = "50:06:0b:00:3b:20:40:00"


def text(zfc, command, **env):
    return zfc(f"-t port -s {command}", library="simulated", env=env).stdout.decode()


def missing(shown, lines):
    """The lines that a document lacks; those of a report begin with blanks."""
    there = [line.strip() for line in shown.splitlines()]
    return [line for line in lines if line not in there]


@pytest.mark.parametrize(
    "command, lines",
    [
        (f"dportdiag getcli {HAZEL}", ["Message: Success", "Diagnostics Port Status: false"]),
        (f"dportdiag runcli {HAZEL}", ["Message: Failed, Port not in diagnostics mode"]),
        (f"ctdiag runcli {ELM} CTPing {ELM_TARGET} 3 true", ["Test Result: Success"]),
        (f"fcping runcli {DAHLIA} {DAHLIA_TARGET} 2 true", ["Test Result: Success"]),
        (f"fcping runcli {DAHLIA} {ELM_TARGET} 2 true", ["Test Result: Failed, Target not found"]),
        (
            f"loopback runcli {BIRCH} 5 3 64 Ignore External CJTPAT",
            ["Test Status: Failed", "Crc Error: 10", "Test Iteration: 3", "Success Count: 0", "Failure Count: 3"],
        ),
        (
            f"loopback runcli {BIRCH} 5 3 64 Ignore External CRPAT",
            ["Test Status: Success", "Crc Error: 0", "Test Iteration: 3", "Success Count: 3", "Failure Count: 0"],
        ),
        (
            f"rwbuffer runcli {BIRCH} 1 9 8 Stop Random",
            ["Port ID: 00:00:d6", "Data Miscompare: 8", "Test Iteration: 2", "Success Count: 2", "Failure Count: 1"],
        ),
        (f"rwbuffer runcli {ELM} 1 1 128 Loop CSPAT", ["Port ID: 01:0a:41", "Link Failure: 1", "Invalid CRC: 2"]),
    ],
)
def test_built_in_host(zfc, command, lines):
    assert missing(text(zfc, command), lines) == []


def test_link_test_of_the_first_interface(zfc):
    shown = text(zfc, f"dportdiag runcli {ELM}", TORPI_LAB_TIME="2026-03-14 09:26:53")
    assert "Data: Start Time: 2026-03-14 09:26:53\n      Stop Time: 2026-03-14 09:26:53\n" in shown
    assert missing(shown, ["HBA Port Result: Passed", "Link Traffic Result: Passed"]) == []
    assert "Power" not in shown


def test_link_test_of_the_second_interface(zfc):
    lines = [
        "HBA Port Result: Failed",
        "Optical Loopback Result: Failed",
        "Link Traffic Result: Not Started",
        "Tx Power: 0x18a6",  # 6310
        "Reason: Test Timeout",
        "Egress Power: Tx: 0.000000 dBm, Rx: -29.208187 dBm, Diff: 0.000000 dBm",  # of 1.2 microwatts
    ]
    assert missing(text(zfc, f"dportdiag runcli {DAHLIA}"), lines) == []


def test_echo_fails_in_its_third_pass(zfc):
    shown = text(zfc, f"fcecho runcli {DAHLIA} {DAHLIA_TARGET} 9 true")
    assert "Message: Failed, Diagnostic test failed\n" in shown
    assert shown.count("Echo Status: Echo received\n") == 2
    assert shown.count("Echo Status: No response\n") == 1


def test_diagnostic_port_lasts(zfc):
    env = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml")}
    shown = text(zfc, f"dportdiag setcli {HAZEL} true", **env)
    assert missing(shown, ["Message: Success", "Reboot Required: true", "Diagnostics Port Status: true"]) == []
    assert "Diagnostics Port Status: true\n" in text(zfc, f"dportdiag getcli {HAZEL}", **env)
    assert "HBA Port Result: Passed\n" in text(zfc, f"dportdiag runcli {HAZEL}", **env)


def test_registration_lasts(zfc):
    env = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml")}
    status = "Host Nqn Registration Status: "
    assert f"{status}Not Registered\n" in text(zfc, f"hnqn getcli {HAZEL}", **env)
    assert "Message: Failed, Host NQN is not registered\n" in text(zfc, f"hnqn deregistercli {HAZEL}", **env)
    assert f"{status}Registered\n" in text(zfc, f"hnqn registercli {HAZEL}", **env)
    assert "Message: Failed, Host NQN is already registered\n" in text(zfc, f"hnqn registercli {HAZEL}", **env)
    assert f"{status}Registered\n" in text(zfc, f"hnqn getcli {HAZEL}", **env)


MAINTENANCE_HOST = f"""\
adapters:
  - family: hazel
    ports:
      - wwpn: {HAZEL[3:]}
        maintenance: true
        targets: {{wwpn: {ELM_TARGET}}}
"""


@pytest.mark.parametrize(
    "command",
    [
        f"hnqn getcli {HAZEL}",
        f"ctdiag runcli {HAZEL} CTPing {ELM_TARGET} 1",
        f"fcecho runcli {HAZEL} {ELM_TARGET} 1",
        f"loopback runcli {HAZEL} 1 1 8 Ignore External",
        f"rwbuffer runcli {HAZEL} 1 1 8",
    ],
)
def test_port_in_maintenance_mode(zfc, command):
    lab = zfc.file("lab.yaml", MAINTENANCE_HOST.encode())
    shown = text(zfc, command, TORPI_LAB_HOST=str(lab))
    assert "Message: Failed, Command not supported when adapter port in maintenance mode\n" in shown


def test_long_test_can_be_seen(zfc):
    """The example's passes take 300 ms each."""
    env = {"TORPI_LAB_HOST": str(ROOT / "examples" / "diagnostics.yaml")}
    words = f"-t port -s rwbuffer runcli {HAZEL} 1 3 8 Ignore Random"
    started = time.monotonic()
    stdout, seen = errors_at_terminal(zfc, words, library="simulated", env=env)
    assert time.monotonic() - started >= 0.9
    assert seen == b"\rpass 1 of 3\rpass 2 of 3\rpass 3 of 3\r" + b" " * 11 + b"\r"
    assert b"Success Count: 2\nFailure Count: 1\n" in stdout
