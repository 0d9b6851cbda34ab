"""State files of the simulated library: shared by processes, and what keeps a run from writing them."""

import fcntl
import os
import shlex
import subprocess
import time

import pytest
import yaml

from zfc.runner import EXECUTABLE

DAHLIA = "FC_21:00:f4:c7:aa:64:00:10"
BEACON = f"-t port -s beacon setcli {DAHLIA} on"
UNSAVED = b"Message: Failed, Beacon update failed\n"
GOOD = b"Beacon State: ON\n"


def run(zfc, words, env, **options):
    """One command; standard output and error."""
    argv, variables = zfc.command(words, library="simulated", env=env, **options)
    done = zfc.run(argv, variables)
    assert done.returncode == 0
    return done.stdout, done.stderr


@pytest.fixture
def state(zfc):
    return {"TORPI_LAB_STATE": "state.yaml"}


def port(adapter, number):
    return f"21:00:00:00:00:{adapter:02x}:00:{number:02x}"


def target(number):
    return f"50:00:00:00:00:00:00:{number:02x}"


# Forty settings, half of them of one port: the words that change each, those that show it, and what these show then.
FIRST = f"FC_{port(0, 0)}"
CHANGES = (
    [
        (
            f"-t target -v tlsd setcli {FIRST}_Target_{target(number)} 16_Gbps",
            f"-t target -v tlsd getcli {FIRST}_Target_{target(number)}",
            b"Speed: 16_Gbps",
        )
        for number in range(15)
    ]
    + [
        (f"-t port -s beacon setcli {FIRST} on", f"-t port -s beacon getcli {FIRST}", b"Beacon State: ON"),
        (f"-t port -s dportdiag setcli {FIRST} true", f"-t port -s dportdiag getcli {FIRST}", b"Status: true"),
        (f"-t port -s hnqn registercli {FIRST}", f"-t port -s hnqn getcli {FIRST}", b"Status: Registered"),
        (
            f"-t port -s scmprofile setcli {FIRST} -a Defensive",
            f"-t port -s scmprofile getcli {FIRST}",
            b"Activation: Defensive",
        ),
        (
            f"-t port -s scmprofile setcli {FIRST} -r NVRAM",
            f"-t port -s scmprofile getcli {FIRST}",
            b"Management: NVRAM",
        ),
    ]
    + [
        (
            f"-t port -s beacon setcli FC_{port(0, number)} on",
            f"-t port -s beacon getcli FC_{port(0, number)}",
            b"Beacon State: ON",
        )
        for number in range(1, 11)
    ]
    + [
        (
            f"-t adapter -s personality setcli Adapter_ZX100_E{number} CNA",
            f"-t adapter -s personality getcli Adapter_ZX100_E{number}",
            b"CNA",
        )
        for number in range(10)
    ]
)


def host():
    ports = [{"wwpn": port(0, number)} for number in range(11)]
    ports[0]["targets"] = [{"wwpn": target(number)} for number in range(15)]
    adapters = [{"family": "dahlia", "serial": "D", "ports": ports}]
    adapters += [
        {"family": "elm", "model": "ZX100", "serial": f"E{number}", "ports": [{"wwpn": port(number + 1, 0)}]}
        for number in range(10)
    ]
    return yaml.safe_dump({"adapters": adapters}).encode()


def test_forty_changes_at_once_all_stay(zfc, state):
    assert len({change for change, _, _ in CHANGES}) == 40
    zfc.file("lab.yaml", host())
    env = {**state, "TORPI_LAB_HOST": "lab.yaml"}
    kept = lambda: sum(text in run(zfc, shown, env)[0] for _, shown, text in CHANGES)  # noqa: E731
    assert kept() == 0
    running = []
    for change, _, _ in CHANGES:
        argv, variables = zfc.command(change, library="simulated", env=env)
        running.append(subprocess.Popen(argv, env=variables, stdout=subprocess.PIPE, stderr=subprocess.PIPE))
    for process in running:
        assert process.communicate(timeout=60)[1] == b"" and process.returncode == 0
    assert kept() == 40
    assert sorted(path.name for path in zfc.work.iterdir()) == ["lab.yaml", "state.yaml", "state.yaml.lock"]


def test_twenty_ports_of_one_adapter_change_at_once(zfc, state):
    ports = [{"wwpn": port(0, number)} for number in range(20)]
    zfc.file("lab.yaml", yaml.safe_dump({"adapters": [{"family": "hazel", "serial": "H", "ports": ports}]}).encode())
    env = {**state, "TORPI_LAB_HOST": "lab.yaml"}
    running = []
    for number in range(20):
        argv, variables = zfc.command(f"-t port -s beacon setcli FC_{port(0, number)} on", library="simulated", env=env)
        running.append(subprocess.Popen(argv, env=variables, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE))
    assert [process.communicate(timeout=60)[1] for process in running] == [b""] * 20
    kept = yaml.load((zfc.work / "state.yaml").read_text(), yaml.BaseLoader)["adapters"]["ZX320/H"]["ports"]
    assert kept == {port(0, number): {"configuration": {"beacon": "1"}} for number in range(20)}


def test_lock_that_a_hung_process_holds(zfc, state):
    lock = zfc.file("state.yaml.lock", b"")
    with lock.open() as held:
        fcntl.flock(held, fcntl.LOCK_EX)
        began = time.monotonic()
        stdout, stderr = run(zfc, BEACON, state)
        assert time.monotonic() - began > 5
    assert UNSAVED in stdout
    reason = b"state.yaml: can't be written: state.yaml.lock: locked by another process, waited 6.0 s\n"
    assert stderr == reason
    assert not (zfc.work / "state.yaml").exists()


def test_lock_file_that_a_dead_process_left(zfc, state):
    zfc.file("state.yaml.lock", b"4711\n")
    stdout, stderr = run(zfc, BEACON, state)
    assert GOOD in stdout and stderr == b""


def in_opt(zfc, script):
    """Runs a shell script; /opt is a file system of the run's own, of one megabyte."""
    return run(zfc, ["-c", script], {"TORPI_LAB_STATE": "/opt/state.yaml"}, program="/bin/sh")


# Where mounts are refused, a preloaded library makes the folder so.
READ_ONLY = "mount -o remount,bind,ro /opt 2>/dev/null || export PRIVATE_PATHS_READ_ONLY=/opt"


@pytest.mark.parametrize(
    "before, reason",
    [
        ("", b"/opt/state.yaml.lock: can't be made or opened: Read-only file system\n"),
        ("touch /opt/state.yaml.lock", b"Read-only file system\n"),
    ],
    ids=["lock", "state"],
)
def test_read_only_folder(zfc, before, reason):
    stdout, stderr = in_opt(zfc, f"{before}\n{READ_ONLY}\n{shlex.quote(str(EXECUTABLE))} {BEACON}\nls /opt/state.yaml 2>&1 || true")
    assert UNSAVED in stdout and stderr == b"/opt/state.yaml: can't be written: " + reason
    assert b"No such file" in stdout


def test_full_disk(zfc):
    script = f"""
echo 'reboot-required: true' >/opt/state.yaml
if [ -z "$PRIVATE_PATHS_FOLDER" ]; then dd if=/dev/zero of=/opt/fill bs=4k count=1000 2>/dev/null; else touch /opt/fill; fi
PRIVATE_PATHS_FULL=/opt {shlex.quote(str(EXECUTABLE))} {BEACON}
cat /opt/state.yaml
ls /opt"""
    stdout, stderr = in_opt(zfc, script)
    assert UNSAVED in stdout and stderr == b"/opt/state.yaml: can't be written: No space left on device\n"
    after = stdout.decode().split("reboot-required: true\n")[1].split()
    assert after == ["ZunaFcEsxcliPlugin", "fill", "state.yaml", "state.yaml.lock"]


@pytest.mark.parametrize(
    "content, message",
    [
        (b"adapters:\n  - family: elm\n", b"state.yaml:"),
        (b"\x7fELF\x02\x01\x01", b"state.yaml:"),
        (b"root:x:0:0:root:/root:/bin/bash\n", b"state.yaml:"),
        (b"{", b"state.yaml:"),
    ],
)
def test_file_that_is_no_state_file_is_left_as_it_is(zfc, state, content, message):
    path = zfc.file("state.yaml", content)
    stdout, stderr = run(zfc, BEACON, state)
    assert b"Message: Failed, " in stdout and stderr.startswith(message) and stderr.count(b"\n") == 1
    assert path.read_bytes() == content


@pytest.mark.parametrize("device", ["/dev/null", "/dev/zero"])
def test_device_is_no_state_file(zfc, device):
    before = os.stat(device).st_rdev
    _, stderr = run(zfc, BEACON, {"TORPI_LAB_STATE": device})
    assert stderr == device.encode() + b": can't be read: not a regular file\n"
    assert os.stat(device).st_rdev == before


def test_link_to_a_state(zfc, state):
    (zfc.work / "far").mkdir()
    (zfc.work / "state.yaml").symlink_to("far/state.yaml")
    for _ in range(2):  # without its target, and with it
        assert GOOD in run(zfc, BEACON, state)[0]
    assert (zfc.work / "state.yaml").is_symlink() and not (zfc.work / "far/state.yaml").is_symlink()
    assert sorted(path.name for path in (zfc.work / "far").iterdir()) == ["state.yaml", "state.yaml.lock"]


def test_written_file_is_whole_and_holds_the_change_alone(zfc, state):
    run(zfc, BEACON, state)
    assert yaml.safe_load((zfc.work / "state.yaml").read_text()) == {
        "reboot-required": False,
        "adapters": {"ZX640/DH64003": {"ports": {DAHLIA[3:]: {"configuration": {"beacon": 1}}}}},
    }
