"""What somebody has put in the place of a file that is about to be written: links, pipes, folders, others' files.

PLACES says for every file that the program or a tool writes what comes of each plant:

    kept     the victim's file is as it was, or not made where the link led nowhere
    written  what the user named is followed, as by any tool
"""

import fcntl
import os
import stat
import subprocess
from dataclasses import dataclass, field

import pytest

from zfc.config import bbcr, params
from zfc.port import IDENTIFIER, one_port
from zfc.preload import needs_preload, preloaded
from zfc.runner import BUILD, EXECUTABLE

VICTIM = b"a victim's file\n"
LAB = BUILD / "bin" / "zfc-lab"
SNAPSHOT = BUILD / "bin" / "zfc-snapshot"
NO_FILE = "Failed, File not found"
SUCCESS = "Success"
DAHLIA = "FC_21:00:f4:c7:aa:64:00:10"  # of the built-in host
STAGED = b"BBCR_Count=5\n"
PLANTS = ("symlink", "dangling", "link", "pipe", "folder")


@dataclass
class Place:
    name: str
    path: str  # from the run's folder
    words: list
    follows: str = ""  # the plants that are followed, for the reasons in docs/security.md
    says: dict = field(default_factory=dict)  # what is printed, by plant; "" is for all others
    program: str = str(EXECUTABLE)
    env: dict = field(default_factory=dict)
    simulated: bool = False
    stdin: bytes = b""
    debug: int | None = None
    staged: bool = False  # there is a staged file
    calls: int = 99  # of the race: as many are tried

    def __str__(self):
        return self.name


HBA = ["-t", "port", "-s", "hbaparams"]
SET_FILE = ["-t", "port", "-s", "bbcr", "setFilecli", IDENTIFIER, "-c", "3"]
ANY_LINK = "symlink dangling link pipe"  # a file that the user names
THERE = "is there already"
PLACES = [
    # Nothing is printed without a library output file: that says that it was refused. A pipe takes what it has room for.
    Place("library output", "var_tmp/torpi-output.log", ["help"], follows="pipe", says={"pipe": "commands", "": None}),
    Place("debug log", "var_tmp/zfcesxcli.log", ["help"], follows="pipe", says={"": "commands"}, debug=2, calls=6),
    # A link to a file is read as the staged file, as described, and the new file takes its place.
    Place(
        "staged file",
        f"staging/BBCR_{IDENTIFIER}",
        SET_FILE,
        says={"symlink": SUCCESS, "link": SUCCESS, "": NO_FILE},
    ),
    Place(
        "temporary staged file",
        f"staging/BBCR_{IDENTIFIER}_tmp",
        SET_FILE,
        says={"": NO_FILE},
        staged=True,
    ),
    Place(
        "firmware dump",
        "work/file",
        ["-t", "port", "-s", "fwdump", "getcli", IDENTIFIER, "file"],
        follows=ANY_LINK,
        says={"folder": NO_FILE, "": SUCCESS},
    ),
    Place("mirror of the shell", "work/file", [], follows=ANY_LINK, stdin=b"log file\nversion\nq\n", says={"": "v1.9.0"}),
    Place(
        "saved parameters",
        "work/file",
        [*HBA, "savecli", DAHLIA, "file"],
        follows="symlink dangling pipe",  # one of two names is replaced
        simulated=True,
        says={"folder": "Failed, ", "": SUCCESS},
    ),
    Place(
        "saved module",
        "work/file",
        ["-t", "port", "-s", "dmi", "savecli", DAHLIA, "file", "binary"],
        follows="symlink dangling pipe",  # one of two names is replaced
        simulated=True,
        says={"folder": "Failed, ", "": SUCCESS},
    ),
    # A file that is no state is never replaced. A link is followed, so that a state can be kept elsewhere.
    Place(
        "state file",
        "work/file",
        ["-t", "port", "-s", "beacon", "setcli", DAHLIA, "on"],
        follows="dangling",
        simulated=True,
        env={"TORPI_LAB_STATE": "file"},
        says={"dangling": SUCCESS, "": "Failed, "},
    ),
    # The file is locked and never written.
    Place(
        "lock of the state file",
        "work/file.lock",
        ["-t", "port", "-s", "beacon", "setcli", DAHLIA, "on"],
        simulated=True,
        env={"TORPI_LAB_STATE": "file"},
        says={"symlink": "Failed, ", "dangling": "Failed, ", "": SUCCESS},
    ),
    Place(
        "trace of the library",
        "work/file",
        ["-t", "adapter", "listcli"],
        follows=ANY_LINK,
        simulated=True,
        env={"TORPI_LAB_TRACE": "file"},
        says={"": "Adapters: "},
    ),
]
for tool, words in (
    (SNAPSHOT, ["-o", "file"]),
    (LAB, ["new", "-o", "file"]),
    (LAB, ["map", "-o", "file"]),
):
    name = " ".join([tool.name, *words[:-2]])
    PLACES += [
        Place(name, "work/file", words, program=str(tool), simulated=True, says={"": THERE}),
        # A pipe is written to, since it can't be replaced.
        Place(
            f"{name} --force",
            "work/file",
            [*words, "--force"],
            follows="pipe",
            program=str(tool),
            simulated=True,
            says={"folder": "can't be written", "": ""},
        ),
    ]


def plant(kind, path, victim):
    """Puts something in the path's place. Returns a reader, for a pipe."""
    path.parent.mkdir(parents=True, exist_ok=True)
    if kind == "link":
        os.link(victim, path)
    elif kind in ("symlink", "dangling"):
        path.symlink_to(victim)
    elif kind == "folder":
        path.mkdir()
    else:
        os.mkfifo(path)
        reader = os.open(path, os.O_RDWR | os.O_NONBLOCK)
        fcntl.fcntl(reader, fcntl.F_SETPIPE_SZ, 1 << 20)  # room for all that is written
        return reader
    return None


def run(zfc, place, env=None, timeout=30):
    """The run of a place; what it prints on standard output and standard error."""
    buffers = {"params": params(), "bbcr": bbcr(), "dump": b"of a device\n"}
    argv, variables = zfc.command(
        place.words,
        program=place.program,
        library="simulated" if place.simulated else "hostile",
        host=one_port(),
        buffers=buffers,
        debug=place.debug,
        env={**place.env, **(env or {})},
    )
    done = subprocess.run(argv, input=place.stdin, capture_output=True, env=variables, timeout=timeout)
    return done.stdout + done.stderr


@pytest.fixture
def victim(zfc):
    """A file on the file system of the run's folders, so that it can have a second name there."""
    path = zfc.folder / "victim"
    path.write_bytes(VICTIM)
    return path


def prepare(zfc, place):
    if place.staged:
        (zfc.staging / f"BBCR_{IDENTIFIER}").write_bytes(STAGED)


@pytest.mark.parametrize("kind", PLANTS)
@pytest.mark.parametrize("place", PLACES, ids=str)
def test_plant(zfc, victim, place, kind):
    prepare(zfc, place)
    target = zfc.folder / "nowhere" if kind == "dangling" else victim
    reader = plant(kind, zfc.folder / place.path, target)
    printed = run(zfc, place)
    says = place.says.get(kind, place.says.get("", ""))
    assert says.encode() in printed if says is not None else printed == b""
    followed = kind in place.follows.split()
    assert (victim.read_bytes() == VICTIM) == (not followed or kind not in ("symlink", "link"))
    assert target.exists() == (kind != "dangling" or followed)
    if kind == "pipe":
        try:
            read = len(os.read(reader, 65536))
        except BlockingIOError:
            read = 0
        os.close(reader)
        assert (read > 0) == followed
    if kind == "folder":
        assert list((zfc.folder / place.path).iterdir()) == []
    if place.staged:
        assert (zfc.staging / f"BBCR_{IDENTIFIER}").read_bytes() == STAGED


@pytest.mark.parametrize("mode", [0o700, 0o777, 0o1777])
@pytest.mark.parametrize("kind", ["symlink", "link"])
@pytest.mark.parametrize("place", PLACES[:4], ids=str)
def test_fixed_places_do_not_count_on_the_mode_of_their_folder(zfc, victim, place, kind, mode):
    prepare(zfc, place)
    path = zfc.folder / place.path
    path.parent.chmod(mode)
    plant(kind, path, victim)
    run(zfc, place)
    assert victim.read_bytes() == VICTIM


@pytest.mark.parametrize("place", [PLACES[0], PLACES[1], PLACES[3]], ids=str)
def test_a_folder_that_is_a_link_is_followed(zfc, place):
    """Who may replace the folder itself has the rights of its owner: that is left to the system."""
    prepare(zfc, place)
    folder = (zfc.folder / place.path).parent
    folder.rename(zfc.folder / "elsewhere")
    folder.symlink_to("elsewhere")
    printed = run(zfc, place)
    assert (b"commands" if place.words == ["help"] else b"Success") in printed
    assert [*folder.iterdir()] != []


needs_root = pytest.mark.skipif(os.geteuid() != 0, reason="gives a file to another user, which takes root")


@needs_root
class TestFilesOfAnotherUser:
    NOBODY = 65534

    def planted(self, zfc, place, content=b"of another user\n"):
        path = zfc.folder / place.path
        path.write_bytes(content)
        os.chown(path, self.NOBODY, self.NOBODY)
        return path

    def test_library_output_is_appended_to(self, zfc):
        """Intended: whoever runs the program first on a machine makes the file for all."""
        path = self.planted(zfc, PLACES[0])
        assert b"commands" in run(zfc, PLACES[0])
        assert path.read_bytes().startswith(b"of another user\nFC ESXCLI Debug level = 0\n")

    def test_debug_log_is_left_alone(self, zfc):
        path = self.planted(zfc, PLACES[1])
        assert b"commands" in run(zfc, PLACES[1])
        assert path.read_bytes() == b"of another user\n"

    def test_temporary_staged_file_is_replaced(self, zfc):
        """It is stale; what its owner still holds open is not the new file."""
        prepare(zfc, PLACES[3])
        path = self.planted(zfc, PLACES[3])
        with path.open("rb") as held:
            assert b"Success" in run(zfc, PLACES[3])
            assert held.read() == b"of another user\n"
        staged = zfc.staging / f"BBCR_{IDENTIFIER}"
        assert staged.stat().st_uid == 0 and b"BBCR_Count=3\n" in staged.read_bytes()


# A device that has no room and no end.
DEVICES = list(zip(PLACES[:5], ["commands", "commands", NO_FILE, NO_FILE, SUCCESS]))


@needs_root
@pytest.mark.parametrize("place, says", DEVICES, ids=str)
def test_device(zfc, place, says):
    prepare(zfc, place)
    path = zfc.folder / place.path
    try:
        os.mknod(path, 0o666 | stat.S_IFCHR, os.makedev(1, 7))
    except PermissionError:
        pytest.skip("no right to make a device")
    assert says.encode() in run(zfc, place)
    assert stat.S_ISCHR(path.lstat().st_mode)


# Somebody changes the folder while the program works in it.


def swapped(zfc, place, at, how, victim):
    """The run with a link put in the place before the n-th call that names it; whether there was such a call."""
    done = zfc.folder / "swapped"
    done.unlink(missing_ok=True)
    fixed = {"staging": "/opt/ZunaFcEsxcliPlugin/tmp", "var_tmp": "/var/tmp", "work": ""}
    folder, _, name = place.path.partition("/")
    path = f"{fixed[folder]}/{name}".lstrip("/" if folder == "work" else "")
    env = preloaded("swap_at", SWAP_AT=at, SWAP_PATH=path, SWAP_WITH=victim, SWAP_HOW=how, SWAP_DONE=done)
    run(zfc, place, env)
    return done.exists()


RACES = [place for place in PLACES if place.name in ("library output", "debug log", "staged file", "temporary staged file")]
RACES += [place for place in PLACES if place.name.startswith(("zfc-snapshot", "zfc-lab new", "lock"))]


@needs_preload
@pytest.mark.parametrize("how", ["symlink", "link"])
@pytest.mark.parametrize("place", RACES, ids=str)
def test_swap_between_two_calls(zfc, victim, place, how):
    """At every call, with nothing in the place at first, with a file and with a pipe there."""
    counts = []
    for there in ("nothing", "file", "pipe"):
        for at in range(1, place.calls + 1):
            path = zfc.folder / place.path
            for left in (path, path.with_name(path.name.removesuffix("_tmp"))):
                left.unlink(missing_ok=True)
            prepare(zfc, place)
            if there == "file":
                path.write_bytes(STAGED)
            reader = plant("pipe", path, victim) if there == "pipe" else None
            has_swapped = swapped(zfc, place, at, how, victim)
            if reader is not None:
                os.close(reader)
            if not has_swapped:
                break
            assert victim.read_bytes() == VICTIM, (there, at)
        counts.append(at)
    assert min(counts) > 1  # there was one to swap at
