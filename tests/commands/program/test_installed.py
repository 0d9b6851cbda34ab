"""The installed plug-in: where everything lies, that it runs from there, and that its readme is complete."""

import re
import shutil
import subprocess

import pytest

from zfc.runner import BUILD, LIBRARIES, ROOT
from zfc.tree import TREE

README = (BUILD / "bin" / "ZFC_ESXCLI_Readme.txt").read_text()


PROGRAM = {
    ".installed",
    "bin",
    "bin/ZFC_ESXCLI_Readme.txt",
    "bin/zfc-json",
    "bin/zfc-snapshot",
    "bin/zfcesxcli",
    "tmp",
}


def install(folder, *words):
    subprocess.run(["cmake", "--install", str(BUILD), "--prefix", str(folder), *words], check=True, capture_output=True)


def uninstall(folder):
    script = ROOT / "packaging" / "uninstall.cmake"
    return subprocess.run(["cmake", "-D", f"PREFIX={folder}", "-P", script], capture_output=True, text=True)


def content(folder):
    """What is below a folder, without what the build makes into share/."""
    found = {str(path.relative_to(folder)) for path in folder.rglob("*")}
    return {name for name in found if not re.match(r"(lab/)?share(/|$)", name)}


@pytest.fixture
def installed(zfc):
    folder = zfc.folder / "installed"
    install(folder)
    return folder


def test_layout(installed):
    """The staging folder is empty, and there all the same: the program never creates it. No device library comes along."""
    assert content(installed) == PROGRAM
    assert (installed / "tmp").stat().st_mode & 0o7777 == 0o700


def test_has_what_the_build_makes_of_the_descriptions(installed):
    for name in (
        "bash-completion/completions/zfcesxcli",
        "esxcli/zfcesxcli.xml",
        "man/man1/zfcesxcli.1",
        "man/man1/zfcesxcli-port-dmi.1",
        "man/man1/zfc-json.1",
        "man/man1/zfc-snapshot.1",
        "zsh/site-functions/_zfcesxcli",
    ):
        assert (installed / "share" / name).is_file(), name


def test_the_lab_is_installed_by_its_name_only_and_apart(installed):
    install(installed, "--component", "lab")
    added = content(installed) - PROGRAM
    assert added >= {"lab/bin/zfc-lab", "lab/bin/zfcesxcli", "lab/lib/libtorpifconly.so", "lab/examples/small.yaml"}
    assert {name.split("/")[0] for name in added} == {"lab"}
    for name in ("man/man1/zfc-lab.1", "man/man5/zfc-lab-host.5"):
        assert (installed / "lab" / "share" / name).is_file() and not (installed / "share" / name).exists(), name


def test_takes_a_device_library_only_from_the_folder_that_is_for_it(zfc, installed):
    install(installed, "--component", "lab")
    program = installed / "bin" / "zfcesxcli"
    argv, env = zfc.command("-t adapter listcli", library="simulated", program=program)
    lost = subprocess.run(argv, env=env, capture_output=True)
    assert lost.returncode == 127 and b"error while loading shared libraries: libtorpifconly.so" in lost.stderr
    (installed / "lib").mkdir()
    shutil.copy(LIBRARIES["sparse"] / "libtorpifconly.so", installed / "lib")
    assert b"SP00001" in zfc("-t adapter listcli", library="simulated", program=program).stdout


@pytest.mark.parametrize("name", ["bin/zfcesxcli", "lab/bin/zfcesxcli"])
def test_runs_with_the_labs_library_when_its_folder_is_named(zfc, installed, name):
    install(installed, "--component", "lab")
    argv, env = zfc.command("-t adapter listcli", library="simulated", program=installed / name)
    env |= {"LD_LIBRARY_PATH": str(installed / "lab" / "lib"), "TORPI_LAB_QUIET": "1"}
    done = subprocess.run(argv, env=env, capture_output=True)
    assert (done.returncode, done.stderr) == (0, b"")
    assert done.stdout == zfc("-t adapter listcli", library="simulated", env={"TORPI_LAB_QUIET": "1"}).stdout
    assert b"Adapters: Adapter_" in done.stdout


def test_snapshot_of_the_lab_takes_its_library(zfc, installed):
    install(installed, "--component", "lab")
    lab = installed / "lab" / "bin" / "zfc-lab"
    made = zfc("snapshot", library="simulated", program=lab).stdout
    assert made == zfc("snapshot", library="simulated", program=BUILD / "bin" / "zfc-lab").stdout
    assert b"\nsnapshot: 1\n" in made and b"Adapter_ZX100_AB12345" in made


class TestUninstall:
    def test_leaves_nothing(self, installed):
        install(installed, "--component", "lab")
        done = uninstall(installed)
        assert (done.returncode, done.stdout, done.stderr) == (0, "", "")
        assert not installed.exists()

    def test_keeps_and_names_staged_settings(self, installed):
        staged = installed / "tmp" / "BBCR_FC_21:00:00:0e:1e:11:22:33"
        staged.write_text("BBCR_Status=1\n")
        done = uninstall(installed)
        assert done.returncode == 0 and done.stderr == f"Kept, with settings that were not set: {staged}\n"
        assert content(installed) == {"tmp", "tmp/BBCR_FC_21:00:00:0e:1e:11:22:33"}

    def test_keeps_the_hosts_device_library(self, installed):
        (installed / "lib").mkdir()
        (installed / "lib" / "libtorpifconly.so").write_bytes(b"")
        assert uninstall(installed).returncode == 0
        assert content(installed) == {"lib", "lib/libtorpifconly.so"}

    def test_touches_nothing_outside(self, installed):
        beside = installed.parent / "beside"
        beside.write_text("here")
        with open(installed / ".installed", "a") as names:
            names.write("../beside\n")
        assert uninstall(installed).returncode == 0
        assert beside.read_text() == "here"

    def test_says_when_nothing_is_there(self, tmp_path):
        done = uninstall(tmp_path)
        assert done.returncode == 1 and f"nothing is installed in {tmp_path}" in " ".join(done.stderr.split())


def test_help_names_the_readme(zfc):
    assert b"ZFC_ESXCLI_Readme.txt in the same folder" in zfc("help").stdout


def commands():
    """Every plain command as it is typed, up to its arguments."""

    def below(path, node):
        for word, *_ in node["leaves"]:
            if word != "help" and not word.endswith("cli"):
                yield f"{path} {word}"
        for word, child in node.get("nodes", {}).items():
            yield from below(f"{path} {child['switch']} {word}", child)

    for word, node in TREE["nodes"].items():
        yield from below(f"{node['switch']} {word}", node)


@pytest.mark.parametrize("command", commands())
def test_readme_names_every_command(command):
    assert re.search(rf"^    {re.escape(command)}(?= |$)", README, re.MULTILINE)


def options():
    """Both names of every option in the tables of the sources."""
    rows = re.compile(r'"(--[a-z0-9-]+)",\s*"(-[a-z])"')
    found = {row for path in (ROOT / "src").rglob("*.cpp") for row in rows.findall(path.read_text())}
    assert len(found) > 30
    return sorted(found)


@pytest.mark.parametrize("long_name, short_name", options())
def test_readme_names_every_option(long_name, short_name):
    assert re.search(rf"^ +{long_name}, {short_name}$|^ +{long_name}, {short_name} ", README, re.MULTILINE)
