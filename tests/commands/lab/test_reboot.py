"""zfc-lab reboot: what the reports show before a restart of the host, and after it."""

import fcntl
import subprocess

import pytest

from zfc.runner import BUILD, ROOT

ZFC_LAB = BUILD / "bin" / "zfc-lab"
ELM = "FC_21:00:00:0e:1e:11:22:33"
HAZEL = "FC_21:00:f4:c7:aa:0b:10:21"
ADAPTER = "Adapter_ZX100_AB12345"
STATE = {"TORPI_LAB_STATE": "state.yaml"}


@pytest.fixture
def show(zfc):
    """Runs a command with the state file; returns its lines by the text ahead of the first colon of each."""

    def run(words, host=""):
        env = {**STATE, "TORPI_LAB_HOST": host, "TORPI_LAB_TIME": "2026-03-14 09:26:53"}
        output = zfc(words, library="simulated", env=env).stdout.decode()
        lines = [line.strip().removeprefix("Data: ").split(": ", 1) for line in output.splitlines()]
        return {line[0]: line[1] for line in reversed(lines) if len(line) == 2}

    return run


@pytest.fixture
def reboot(zfc):
    """Runs zfc-lab reboot; returns its status and standard error."""

    def run(*words):
        argv, env = zfc.command(["reboot", *words], library="simulated", program=ZFC_LAB)
        done = zfc.run(argv, env)
        assert done.stdout == b"" or "--help" in words
        return done.returncode, done.stderr.decode()

    return run


def changes(before, after):
    return {key: (before.get(key), after.get(key)) for key in before | after if before.get(key) != after.get(key)}


def test_update_of_the_flash(show, reboot):
    info = f"-t port -s info getcli {ELM}"
    start = show(info)
    image = str(ROOT / "examples/flash/elm-mbi.img")
    assert show(["-t", "adapter", "updatecli", ADAPTER, image, "MBI"])["Reboot Required"] == "true"
    updated = show(info)
    assert updated["Flash Firmware Version"] == "9.14.02"
    assert updated["Running Firmware Version"] == start["Running Firmware Version"] == "9.12.01"
    assert reboot("state.yaml") == (0, "")
    assert changes(updated, show(info)) == {"Running Firmware Version": ("9.12.01", "9.14.02")}
    assert show(f"-t adapter -s info getcli {ADAPTER}")["Flash Firmware Version"] == "9.14.02"


def test_link_speed(show, reboot):
    info = f"-t port -s info getcli {ELM}"
    start = show(info)
    assert start["Port Speed"] == "16 Gbps"
    show(f"-t port -s hbaparams setFilecli {ELM} -d 8_Gbps")
    assert show(f"-t port -s hbaparams setcli {ELM}")["Reboot Required"] == "true"
    assert show(info) == start
    assert reboot("state.yaml") == (0, "")
    after = changes(start, show(info))
    assert after == {"Port Speed": ("16 Gbps", "8 Gbps"), "Port State": ("Online (FEC)", "Online")}
    assert show(f"-t port -s hbaparams getcli {ELM}")["Data Rate"] == "8_Gbps"


def test_error_correction(show, reboot):
    """Off at a link that stays at 16 Gbps: the restart takes it out of use, and on puts it back."""
    info = f"-t port -s info getcli {ELM}"
    start = show(info)
    assert (start["Port Speed"], start["Port State"]) == ("16 Gbps", "Online (FEC)")
    for setting, state in (("false", "Online"), ("true", "Online (FEC)")):
        assert show(f"-t port -s fec setcli {ELM} -f {setting}")["Message"] == "Success"
        assert reboot("state.yaml") == (0, "")
        assert show(info) == {**start, "Port State": state}


@pytest.mark.parametrize(
    "word, mode",
    [
        ("Loop_Only", "Loop"),
        ("Point_To_Point_Only", "Point to Point"),
        ("Loop_Preferred_Otherwise_Point_To_Point", "Point to Point"),  # no connection of its own: the host file's
    ],
)
def test_connection(show, reboot, word, mode):
    info = f"-t port -s info getcli {ELM}"
    for option in ("-d 8_Gbps", f"-c {word}"):  # a loop needs the slower rate in the file
        assert show(f"-t port -s hbaparams setFilecli {ELM} {option}")["Message"] == "Success"
    assert show(f"-t port -s hbaparams setcli {ELM}")["Message"] == "Success"
    assert show(info)["Port Connection Mode"] == "Point to Point"
    assert reboot("state.yaml") == (0, "")
    assert show(info)["Port Connection Mode"] == mode


def test_reboot_required_is_answered_anew(show, reboot):
    def flag():
        """As a command that needs none itself shows it."""
        return show(f"-t port -s dportdiag setcli {HAZEL} true")["Reboot Required"]

    assert flag() == "false"
    assert show(f"-t adapter -s personality setcli {ADAPTER} CNA")["Reboot Required"] == "true"
    assert flag() == "true"
    assert reboot("state.yaml") == (0, "")
    assert flag() == "false"
    assert show(f"-t adapter -s personality getcli {ADAPTER}")["Personality"] == "CNA"


def test_what_lasts_until_the_next_start(show, reboot, zfc):
    assert show(f"-t port -s beacon getcli {ELM}")["Beacon State"] == "ON"
    assert show(f"-t port -s hnqn getcli {HAZEL}")["Host Nqn Registration Status"] == "Registered"
    zfc.file("state.yaml", b"")
    assert reboot("state.yaml") == (0, "")
    assert show(f"-t port -s beacon getcli {ELM}")["Beacon State"] == "OFF"
    assert show(f"-t port -s hnqn getcli {HAZEL}")["Host Nqn Registration Status"] == "Not Registered"
    assert show(f"-t port -s dportdiag getcli {HAZEL}")["Diagnostics Port Status"] == "true"


@pytest.mark.parametrize(
    "words, some",
    [
        (f"-t port -s stats getcli {ELM} Driver", "184467"),
        (f"-t port -s stats getcli {ELM} Firmware", "12"),
        (f"-t port -s fec getcli {ELM}", "41"),
        ("-t port -s scmstats getcli FC_21:00:f4:c7:aa:64:00:10", "17"),
        (f"-t target -v stats getcli {ELM}_Target_50:06:0b:00:3b:20:11:c0", "41"),
    ],
)
def test_counters_begin_at_zero(show, reboot, zfc, words, some):
    assert some in show(words).values()
    zfc.file("state.yaml", b"")
    assert reboot("state.yaml") == (0, "")
    counts = {key: value for key, value in show(words).items() if value.isdigit()}
    assert len(counts) > 1 and {*counts.values()} <= {"0"} | {
        value for key, value in counts.items() if key in ("Target Number", "Seconds Since Last Event")
    }


def test_module_is_read_anew(show, reboot, zfc):
    dmi = "-t port -s dmi getcli FC_21:00:f4:c7:aa:2c:00:08"
    before = show(dmi)
    zfc.file("state.yaml", b"")
    assert reboot("state.yaml") == (0, "")
    # From 71.5 to 76 degrees, which is above the alarm's limit of 75.
    assert changes(before, show(dmi)) == {
        "Temperature MSB": ("0x47", "0x4c"),
        "Temperature LSB": ("0x80", "0x00"),
        "-Temp High Alarm": ("0x0", "0x1"),
    }


def test_host_of_a_file(show, reboot, zfc):
    zfc.file("lab.yaml", b"adapters: [{family: hazel, serial: H, ports: [{wwpn: 21:00:00:00:00:00:00:01}]}]\n")
    port = "FC_21:00:00:00:00:00:00:01"
    show(f"-t port -s hbaparams setFilecli {port} -d 16_Gbps", "lab.yaml")
    show(f"-t port -s hbaparams setcli {port}", "lab.yaml")
    assert reboot("state.yaml") == (0, "")  # of the built-in host, which the file's adapter is not part of
    assert show(f"-t port -s info getcli {port}", "lab.yaml")["Port Speed"] == "32 Gbps"
    assert reboot("state.yaml", "lab.yaml") == (0, "")
    assert show(f"-t port -s info getcli {port}", "lab.yaml")["Port Speed"] == "16 Gbps"


def test_second_reboot_changes_nothing_more(show, reboot, zfc):
    show(f"-t port -s beacon setcli {ELM} off")
    states = []
    for _ in range(3):
        assert reboot("state.yaml") == (0, "")
        states.append((zfc.work / "state.yaml").read_bytes())
    assert states[0] == states[1] == states[2]


def test_state_that_is_missing_or_no_state(reboot, zfc):
    assert reboot("state.yaml") == (1, "state.yaml: can't be read: No such file or directory\n")
    zfc.file("lab.yaml", b"adapters: []\n")
    status, message = reboot("lab.yaml")
    assert status == 1 and message.startswith("lab.yaml:1:") and "adapters: expected a map" in message
    zfc.file("state.yaml", b"")
    status, message = reboot("state.yaml", "none.yaml")
    assert status == 1 and message == "none.yaml: can't be read: No such file or directory\n"
    assert (zfc.work / "lab.yaml").read_bytes() == b"adapters: []\n"


def test_state_in_use(reboot, zfc):
    zfc.file("state.yaml", b"")
    with zfc.file("state.yaml.lock", b"").open() as held:
        fcntl.flock(held, fcntl.LOCK_EX)
        argv, env = zfc.command(["reboot", "state.yaml"], library="simulated", program=ZFC_LAB)
        with subprocess.Popen(argv, env=env, stderr=subprocess.PIPE) as waiting:
            with pytest.raises(subprocess.TimeoutExpired):
                waiting.wait(0.5)
            assert (zfc.work / "state.yaml").read_bytes() == b""
            fcntl.flock(held, fcntl.LOCK_UN)
            assert waiting.communicate(timeout=10)[1] == b"" and waiting.returncode == 0
    assert b"restarted: true" in (zfc.work / "state.yaml").read_bytes()


@pytest.mark.parametrize(
    "words, message",
    [
        ([], "expected a state file, and at most one host file"),
        (["a", "b", "c"], "expected a state file, and at most one host file"),
        (["--force", "a"], "unknown option '--force'"),
    ],
)
def test_wrong_usage(reboot, words, message):
    assert reboot(*words) == (2, f"zfc-lab reboot: {message}\nTry 'zfc-lab reboot --help'.\n")


def test_help(reboot):
    assert reboot("--help") == (0, "")
