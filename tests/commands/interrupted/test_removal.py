"""Removals that are interrupted: the script of the Debian package, and the one of an installation from sources. Run again,
they end as one that was never interrupted. A package of an ESXi host has no script: the host's own installer does all."""

import signal
import subprocess

import pytest

from zfc.interrupted import STEP_FILES, Folders, Stepped, needs_following
from zfc.machine import needs_mounts
from zfc.power_loss import FOLDER
from zfc.runner import ROOT

pytestmark = needs_following

PLUGIN = "/opt/ZunaFcEsxcliPlugin"
PORT = "FC_21:00:00:0e:1e:11:22:33"
STAGED = [f"{family}_{PORT}" for family in ("HBAParams", "BBCR", "BootConfig", "BootConfigExt")]
OURS = [*(f"tmp/{name}" for name in STAGED), f"tmp/BBCR_{PORT}_tmp"]
LOGS = ["torpi-output.log", "zfcesxcli.log"]
POSTRM = ROOT / "packaging" / "debian" / "zfcesxcli.postrm"

# The plug-in's folder is a real one in the run's namespace; `end` steps of the script are made, then it is run again.
SCRIPT = f"""
umount {PLUGIN}/tmp && cd / || exit 99
for name in $OURS $KEPT; do echo staged >{PLUGIN}/$name || exit 99; done
for name in $LOGS; do echo log >/var/tmp/$name || exit 99; done
"$STEPS" --log "$LOG" --end-at $END {PLUGIN} /opt /var/tmp -- sh "$POSTRM" $WORD >/dev/null
echo $?
sh "$POSTRM" $WORD
echo $?
find {PLUGIN} /var/tmp -mindepth 1 | sort
"""


def removed(zfc, word, end, kept=()):
    """What the script's two runs end with: the first one's status, what the second one prints, its status, what is left."""
    env = {
        "OURS": " ".join(OURS),
        "KEPT": " ".join(kept),
        "LOGS": " ".join(LOGS),
        "STEPS": str(STEP_FILES),
        "LOG": str(zfc.folder / "steps.log"),
        "POSTRM": str(POSTRM),
        "WORD": word,
        "END": str(end),
    }
    argv, env = zfc.command(["-c", SCRIPT], program="/bin/sh", env=env)
    done = subprocess.run(argv, capture_output=True, env=env, text=True, timeout=60)
    assert "find: " not in done.stderr.replace(f"find: '{PLUGIN}': No such file or directory", ""), done.stderr
    lines = done.stdout.splitlines()
    status = next(number for number, line in enumerate(lines[1:], 1) if line.isdigit())
    return int(lines[0]), lines[1:status], int(lines[status]), lines[status + 1 :]


def count(zfc):
    return len((zfc.folder / "steps.log").read_text().splitlines())


@needs_mounts  # what the preloaded library gives in place of the plug-in's folder is two folders
class TestDebianPackage:
    def test_purge(self, zfc):
        """Every staged file, what interrupted runs left of one, both folders, both logs."""
        assert removed(zfc, "purge", 0) == (0, [], 0, [])
        total = count(zfc)
        assert total >= len(OURS) + len(LOGS) + 2
        for end in range(1, total + 1):
            assert removed(zfc, "purge", end) == (128 + signal.SIGKILL, [], 0, [])

    def test_purge_keeps_what_is_not_the_programs(self, zfc):
        kept = [f"{PLUGIN}/tmp", f"{PLUGIN}/tmp/NOTES"]
        assert removed(zfc, "purge", 0, ["tmp/NOTES"]) == (0, [], 0, kept)
        for end in range(1, count(zfc) + 1):
            assert removed(zfc, "purge", end, ["tmp/NOTES"]) == (128 + signal.SIGKILL, [], 0, kept)

    def test_remove_changes_nothing(self, zfc):
        first, said, second, left = removed(zfc, "remove", 0)
        assert (first, second) == (0, 0)
        assert said == [f"zfcesxcli: kept, with settings that were not set: {PLUGIN}/{name}" for name in sorted(OURS)]
        names = [f"{PLUGIN}/tmp", *(f"{PLUGIN}/{name}" for name in OURS), *(f"/var/tmp/{name}" for name in LOGS)]
        assert left == sorted(names)
        assert (zfc.folder / "steps.log").read_text().splitlines() == ["exit\t0\t"]


FILES = ["bin/zfcesxcli", "bin/zfc-json", "share/man/man1/zfcesxcli.1"]
LAB_FILES = ["lab/bin/zfc-lab", "lab/lib/libtorpifconly.so"]
UNINSTALL = ROOT / "packaging" / "uninstall.cmake"


@pytest.fixture(params=["nothing", "staged settings"])
def installed(request, zfc):
    """An installation of both components, in the folder `installed`; also what of it stays."""
    folders = Folders({str(zfc.work): zfc.work})
    for name in [*FILES, *LAB_FILES]:
        path = zfc.work / "installed" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(name)
    (zfc.work / "installed" / "tmp").mkdir()
    (zfc.work / "installed" / ".installed").write_text("".join(f"{name}\n" for name in FILES))
    (zfc.work / "installed" / "lab" / ".installed").write_text("".join(f"{name}\n" for name in LAB_FILES))
    stays = {}
    if request.param != "nothing":
        (zfc.work / "installed" / "tmp" / f"BBCR_{PORT}").write_text("BBCR_Count=5\n")
        stays = {name for name in folders.tree() if name.endswith(("/installed", "/tmp", f"/BBCR_{PORT}"))}
    return folders, {name: content for name, content in folders.tree().items() if name in stays}


def test_uninstall(zfc, installed):
    folders, stays = installed
    before = folders.tree()
    words = ["-D", f"PREFIX={zfc.work}/installed", "-P", str(UNINSTALL)]
    stepped = Stepped(zfc, words, folders, program="cmake")
    steps = stepped.steps()[1]
    assert folders.tree() == stays
    assert len(steps) > len(FILES) + len(LAB_FILES) + 2
    ends = set()
    for number in range(1, len(steps) + 1):
        folders.put(before)
        assert stepped.end_at(number) == -signal.SIGKILL
        listed = any(name.endswith("/.installed") for name in folders.tree())
        argv, env = zfc.command(words, program="cmake")
        done = subprocess.run(argv, capture_output=True, env=env, timeout=60)
        # Without a list the second run has nothing to go by, and touches nothing: an empty folder is all that is left.
        empty = {} if stays or listed else {f"{zfc.work}/installed": FOLDER}
        assert folders.tree() in (stays, empty), steps[number - 1]
        assert (done.returncode == 0) == listed
        ends.add(listed)
    assert ends == {True, False}
