"""zfc-lab run: the program against a lab host, with nothing of the machine in its way."""

import shlex
import shutil

import pytest

from zfc.machine import needs_mounts, without_staging_notice
from zfc.runner import BUILD, EXECUTABLE

ZFC_LAB = BUILD / "bin" / "zfc-lab"
ELM = "FC_21:00:00:0e:1e:11:22:33"
PARAMETERS = "-t port -s hbaparams"
HOST = b"adapters: [{family: elm, serial: ALONE, ports: [{wwpn: 21:00:00:0e:1e:11:22:33}]}]\n"


@pytest.fixture
def lab(zfc):
    """Runs zfc-lab run; returns status, standard output and standard error."""

    def run(words, *, stdin=b"", env=None, program=ZFC_LAB):
        words = ["run", *(words.split() if isinstance(words, str) else words)]
        argv, variables = zfc.command(words, library="simulated", program=program, env=env)
        done = zfc.run(argv, variables, stdin)
        return done.returncode, done.stdout, without_staging_notice(done.stderr)

    return run


@pytest.fixture
def script(zfc):
    """Runs a shell script in which $lab is zfc-lab; returns the same."""

    def run(text):
        text = f"lab={shlex.quote(str(ZFC_LAB))}\n{text}"
        argv, variables = zfc.command(["-c", text], library="simulated", program="/bin/sh")
        done = zfc.run(argv, variables)
        return done.returncode, done.stdout, done.stderr

    return run


@pytest.mark.parametrize("words", ["-t adapter listcli", f"-t port -s info get {ELM}", "help", "-t nothing"])
def test_document_is_that_of_the_program(lab, zfc, words):
    assert lab(f"-- {words}") == (0, zfc(words, library="simulated").stdout, b"")


def test_host_file(lab, zfc):
    zfc.file("lab.yaml", HOST)
    status, stdout, stderr = lab("lab.yaml -- -t adapter listcli", env={"TORPI_LAB_QUIET": ""})
    assert status == 0 and b"Adapters: Adapter_ZX100_ALONE\n" in stdout and stdout.count(b"Adapters: ") == 1
    assert stderr == b"zfcesxcli: simulated host (lab.yaml)\n"


def test_without_words_it_is_the_shell(lab, zfc):
    typed = f"-t port -s beacon setcli {ELM} off\n-t port -s beacon getcli {ELM}\nq\n".encode()
    for words in ("", "--", "lab.yaml"):
        zfc.file("lab.yaml", HOST)
        status, stdout, _ = lab(words, stdin=typed)
        assert status == 0 and stdout.count(b"Beacon State: OFF\n") == 2  # what it sets lasts for the run


def test_state_ends_with_the_run(lab, zfc):
    env = {"TORPI_LAB_STATE": "state.yaml", "TORPI_LAB_HOST": "none.yaml", "TORPI_LAB_FAULTS": "TORPI_GetVpd=150"}
    assert b"Beacon State: OFF\n" in lab(f"-- -t port -s beacon setcli {ELM} off", env=env)[1]
    assert b"Beacon State: ON\n" in lab(f"-- -t port -s beacon getcli {ELM}", env=env)[1]
    assert b"Message: Success\n" in lab(f"-- -t port -s vpd getcli {ELM}", env=env)[1]
    assert sorted(zfc.work.iterdir()) == []


@needs_mounts
def test_state_and_staged_files_that_are_kept(lab, zfc):
    keep = "--state state.yaml --"
    assert b"Login Retry Count: 77\n" in lab(f"{keep} {PARAMETERS} setFilecli {ELM} -u 77")[1]
    staged = zfc.work / "state.yaml.staged"
    assert [path.name for path in staged.iterdir()] == [f"HBAParams_{ELM}"]
    assert b"Reboot Required: true\n" in lab(f"{keep} {PARAMETERS} setcli {ELM}")[1]
    assert [*staged.iterdir()] == []
    assert b"Login Retry Count: 77\n" in lab(f"{keep} {PARAMETERS} getcli {ELM}")[1]
    assert b"Login Retry Count: 8\n" in lab(f"-- {PARAMETERS} getcli {ELM}")[1]
    assert [*zfc.staging.iterdir()] == []


@needs_mounts
def test_staged_files_end_with_the_run(lab, zfc):
    assert b"Message: Success\n" in lab(f"-- {PARAMETERS} setFilecli {ELM} -u 77")[1]
    assert b"Message: Success\n" not in lab(f"-- {PARAMETERS} setcli {ELM}")[1]
    assert [*zfc.staging.iterdir()] == []
    typed = f"{PARAMETERS} setFilecli {ELM} -u 77\n{PARAMETERS} setcli {ELM}\nq\n".encode()
    assert lab("", stdin=typed)[1].count(b"Login Retry Count: 77\n") == 2


# The staging folder is not there, and what is beside it stays in reach.
@needs_mounts
@pytest.mark.parametrize(
    "before",
    [
        "umount /opt/ZunaFcEsxcliPlugin/tmp; rm -r /opt/ZunaFcEsxcliPlugin; mkdir /opt/beside",
        "umount /opt/ZunaFcEsxcliPlugin/tmp; rmdir /opt/ZunaFcEsxcliPlugin/tmp; mkdir /opt/ZunaFcEsxcliPlugin/bin",
        "umount /opt/ZunaFcEsxcliPlugin/tmp; rmdir /opt/ZunaFcEsxcliPlugin/tmp; ln -s x /opt/ZunaFcEsxcliPlugin/link",
    ],
)
def test_machine_without_a_staging_folder(script, before):
    text = f"""{before}
find /opt >/tmp/before
"$lab" run -- {PARAMETERS} setFilecli {ELM} -u 77
find /opt | diff /tmp/before -"""
    status, stdout, stderr = script(text)
    assert status == 0 and b"Login Retry Count: 77\n" in stdout and stderr == b""


@needs_mounts
def test_what_is_beside_a_missing_staging_folder(script):
    host = HOST.decode().strip()
    text = f"""umount /opt/ZunaFcEsxcliPlugin/tmp; rm -r /opt/ZunaFcEsxcliPlugin
mkdir /opt/hosts; echo '{host}' >/opt/hosts/lab.yaml; cp /opt/hosts/lab.yaml /opt/lab.yaml; ln -s hosts /opt/more
for file in /opt/lab.yaml /opt/hosts/lab.yaml /opt/more/lab.yaml; do "$lab" run $file -- -t adapter listcli; done"""
    status, stdout, stderr = script(text)
    assert status == 0 and stdout.count(b"Adapters: Adapter_ZX100_ALONE\n") == 3 and stderr == b""


@needs_mounts
@pytest.mark.parametrize("file", ["/opt/ZunaFcEsxcliPlugin/tmp", "/opt/ZunaFcEsxcliPlugin"])
def test_file_in_place_of_a_folder(script, file):
    """Nothing can be mounted on it, and nothing made in its place."""
    text = f"""umount /opt/ZunaFcEsxcliPlugin/tmp; rm -r {file}; echo kept >{file}
"$lab" run -- {PARAMETERS} setFilecli {ELM} -u 77
cat {file}"""
    status, stdout, stderr = script(text)
    assert status == 0 and b"Message: Success\n" not in stdout and stdout.endswith(b"\nkept\n")
    reason = f"zfc-lab run: no private staging folder ({file}: File exists); "
    advice = "commands with staged files fail until someone does: sudo mkdir -p -m 777 /opt/ZunaFcEsxcliPlugin/tmp\n"
    assert stderr.decode() == reason + advice


# A user namespace in which nobody may make another namespace for mounts.
CLOSED = "exec unshare -U -r sh -c 'echo 0 >/proc/sys/user/max_mnt_namespaces; exec {} {}'"


@needs_mounts
def test_machine_without_namespaces(script, zfc):
    words = f"{shlex.quote(str(ZFC_LAB))} run -- {PARAMETERS} setFilecli {ELM} -u 77".replace("'", "'\\''")
    reason = b"zfc-lab run: no private staging folder (unshare: No space left on device); "
    status, stdout, stderr = script(CLOSED.format(words, ""))
    assert status == 0 and b"Login Retry Count: 77\n" in stdout
    assert stderr == reason + b"staged files go to /opt/ZunaFcEsxcliPlugin/tmp\n"
    assert [path.name for path in zfc.staging.iterdir()] == [f"HBAParams_{ELM}"]

    gone = "umount /opt/ZunaFcEsxcliPlugin/tmp; rm -r /opt/ZunaFcEsxcliPlugin\n"
    status, stdout, stderr = script(gone + CLOSED.format(words, ""))
    assert status == 0 and b"Message: Success\n" not in stdout
    advice = b"commands with staged files fail until someone does: sudo mkdir -p -m 777 /opt/ZunaFcEsxcliPlugin/tmp\n"
    assert stderr == reason + advice


@needs_mounts
def test_namespace_that_gets_no_users(script, zfc):
    """Without the right to mount, and with a map of users that nobody can write."""
    text = f"""map=/proc/$$/uid_map; mount -o bind $map $map && mount -o remount,bind,ro,nosuid,nodev,noexec $map
exec setpriv --bounding-set -sys_admin "$lab" run -- {PARAMETERS} setFilecli {ELM} -u 77"""
    status, stdout, stderr = script(text)
    assert status == 0 and b"Login Retry Count: 77\n" in stdout
    reason = b"zfc-lab run: no private staging folder (/proc/self/uid_map: Read-only file system); "
    assert stderr == reason + b"staged files go to /opt/ZunaFcEsxcliPlugin/tmp\n"
    assert [path.name for path in zfc.staging.iterdir()] == [f"HBAParams_{ELM}"]


@needs_mounts
def test_folder_in_place_of_the_library_output(script):
    """No file can be mounted on it."""
    text = f"""output=/var/tmp/torpi-output.log; rm -f $output; mkdir $output
mount -o bind,ro $output $output || mount -o remount,bind,ro $output
"$lab" run -- {PARAMETERS} setFilecli {ELM} -u 77"""
    stderr = script(text)[2]
    assert stderr.startswith(
        b"zfc-lab run: no private staging folder (mount /var/tmp/torpi-output.log: Not a directory); "
    )


@needs_mounts
def test_library_output_of_another_user(script):
    """A run can't do without it; the machine's is left as it is."""
    text = f"""echo kept >/var/tmp/torpi-output.log; chmod 600 /var/tmp/torpi-output.log
mount -o bind,ro /var/tmp/torpi-output.log /var/tmp/torpi-output.log || mount -o remount,bind,ro /var/tmp/torpi-output.log
"$lab" run -- -t port -s beacon getcli {ELM}
cat /var/tmp/torpi-output.log"""
    status, stdout, stderr = script(text)
    assert status == 0 and b"Beacon State: ON\n" in stdout and stdout.endswith(b"\nkept\n") and stderr == b""


@pytest.mark.parametrize(
    "faults, words, shown",
    [
        ("--fault TORPI_GetVpd=150", f"-t port -s vpd getcli {ELM}", b"when adapter port in maintenance mode\n"),
        ("-f TORPI_GetVpd=150:once -f TORPI_GetAdapterBeaconStatus=9", f"-t port -s vpd getcli {ELM}", b"maintenance"),
        ("--fault=TORPI_GetAdapterList=null", "-t adapter -s info getcli Adapter_ZX100_AB12345", b"Failed, "),
    ],
)
def test_faults(lab, faults, words, shown):
    status, stdout, stderr = lab(f"{faults} -- {words}")
    assert status == 0 and shown in stdout and stderr == b""


TRACE = [
    "TORPI_Initialize(0, 0) -> 0",
    "TORPI_SetToolID(11) -> 0",
    "TORPI_SetToolVersion(1, 9, 0, 0) -> 0",
    "TORPI_GetAdapterList() -> list adapters=6",
    f"TORPI_IsMezzAdapter(port={ELM}) -> 0 mezzanine=0",
    f"TORPI_GetAdapterBeaconStatus(port={ELM}) -> 0 state=1",
    "TORPI_Uninitialize() -> 0",
]


def test_trace(lab):
    status, stdout, stderr = lab(f"--trace -- -t port -s beacon getcli {ELM}")
    assert status == 0 and b"Beacon State: ON\n" in stdout
    assert stderr.decode().splitlines() == TRACE


def test_trace_among_other_lines_of_a_file(script, zfc):
    text = f"echo first >&2; TORPI_LAB_QUIET= {shlex.quote(str(ZFC_LAB))} run --trace -- -t port -s beacon getcli {ELM}; echo last >&2"
    status, _, _ = script(f"{{ {text}; }} 2>errors")
    notice = "zfcesxcli: simulated host (built-in)"
    assert status == 0
    errors = without_staging_notice((zfc.work / "errors").read_bytes()).decode()
    assert errors.splitlines() == ["first", *TRACE[:3], notice, *TRACE[3:], "last"]


@pytest.mark.parametrize(
    "words, message",
    [
        ("-t adapter list", "unknown option '-t'"),
        ("one.yaml two.yaml -- help", "expected one host file; the words of zfcesxcli follow after '--'"),
        ("--state", "--state needs a value: FILE"),
        ("--state= -- help", "--state: expected the name of a file"),
        ("--fault TORPI_Nothing=1 -- help", "--fault: expected the name of a library call, got 'TORPI_Nothing'"),
        ("--fault TORPI_GetVpd -- help", "--fault: expected <call>=<result>, got 'TORPI_GetVpd'"),
        ("--trace=1 -- help", "--trace takes no value"),
    ],
)
def test_wrong_usage(lab, words, message):
    assert lab(words) == (2, b"", f"zfc-lab run: {message}\nTry 'zfc-lab run --help'.\n".encode())


def test_help(lab):
    status, stdout, stderr = lab("--help")
    assert status == 0 and stdout.startswith(b"Usage: zfc-lab run ") and stderr == b""
    assert lab("-- --help")[1] != stdout  # that one is the program's word


def test_folder_of_the_state_is_missing(lab):
    status, stdout, stderr = lab("--state none/state.yaml -- help")
    assert (status, stdout) == (1, b"")
    assert stderr == b"zfc-lab run: none/state.yaml.staged: can't be made: No such file or directory\n"


@pytest.fixture
def installed(zfc):
    """A copy of the commands and the library that can be changed; returns its folder."""
    folder = zfc.folder / "installed"
    for name in ("bin", "lib"):
        (folder / name).mkdir(parents=True)
    for program in (ZFC_LAB, EXECUTABLE):
        shutil.copy(program, folder / "bin")
    shutil.copy(BUILD / "lib/libtorpifconly.so", folder / "lib")
    return folder


def test_library_is_the_one_beside_the_program(lab, installed):
    hostile = {"LD_LIBRARY_PATH": str(BUILD / "tests" / "hostile")}
    status, stdout, _ = lab("-- -t adapter listcli", program=installed / "bin/zfc-lab", env=hostile)
    assert status == 0 and b"Adapter_ZX640_DH64003\n" in stdout


def test_library_of_real_adapters_is_not_touched(lab, installed):
    library = installed / "lib/libtorpifconly.so"
    shutil.copy(BUILD / "tests/hostile/libtorpifconly.so", library)
    status, stdout, stderr = lab("-- -t adapter list", program=installed / "bin/zfc-lab")
    assert (status, stdout) == (1, b"")
    assert stderr.endswith(b"lib/libtorpifconly.so: not the simulated library; nothing was run\n")
    library.unlink()
    status, stdout, stderr = lab("-- -t adapter list", program=installed / "bin/zfc-lab")
    assert (status, stdout) == (1, b"") and stderr.endswith(b": can't be read: No such file or directory\n")


def test_program_is_missing(lab, installed):
    (installed / "bin/zfcesxcli").unlink()
    status, stdout, stderr = lab("-- -t adapter list", program=installed / "bin/zfc-lab")
    assert (status, stdout) == (1, b"") and stderr.endswith(b"zfcesxcli: can't be run: No such file or directory\n")
