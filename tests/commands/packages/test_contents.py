"""The Debian packages: what they hold, what they need, what they say."""

import gzip
import hashlib
import os
import re
import subprocess

import pytest

from zfc.packages import LAB_DEB, MADE, PLUGIN, PROGRAM_DEB, VERSION, files, programs
from zfc.runner import ROOT
from zfc.tools import said

PROGRAM = {
    f"{PLUGIN}/bin/ZFC_ESXCLI_Readme.txt",
    f"{PLUGIN}/bin/zfc-json",
    f"{PLUGIN}/bin/zfc-snapshot",
    f"{PLUGIN}/bin/zfcesxcli",
    "usr/bin/zfc-json",
    "usr/bin/zfc-snapshot",
    "usr/bin/zfcesxcli",
    "usr/share/doc/zfcesxcli/changelog.gz",
    "usr/share/doc/zfcesxcli/copyright",
    "usr/share/lintian/overrides/zfcesxcli",
}
LAB = {
    f"{PLUGIN}/lab/bin/zfc-lab",
    f"{PLUGIN}/lab/bin/zfc-snapshot",
    f"{PLUGIN}/lab/bin/zfcesxcli",
    f"{PLUGIN}/lab/lib/libtorpifconly.so",
    f"{PLUGIN}/lab/lab-host.md",
    "usr/bin/zfc-lab",
    "usr/share/doc/zfcesxcli-lab/changelog.gz",
    "usr/share/doc/zfcesxcli-lab/copyright",
    "usr/share/lintian/overrides/zfcesxcli-lab",
}
# Where other parts of the build add their files.
SHARED = re.compile(rf"usr/share/(man|bash-completion|zsh)/|{PLUGIN}/(lab/)?share/")


def control(package):
    text = said("dpkg-deb", "--info", package, "control")
    return dict(line.split(": ", 1) for line in text.splitlines() if re.match(r"[A-Z]\S*: ", line))


def modes(package):
    """The mode of every entry of a package, with its owner, by its name."""
    listing = said("dpkg-deb", "--contents", package)
    rows = [line.split(None, 5) for line in listing.splitlines()]
    return {row[5].split(" -> ")[0].removeprefix("./"): f"{row[0]} {row[1]}" for row in rows if row[5] != "./"}


def pages_of(folder):
    """The manual pages of a package, by their paths from usr/share/man."""
    man = folder / "usr/share/man"
    return {str(path.relative_to(man)) for path in man.rglob("*") if path.is_file()}


def test_what_is_made(packages):
    assert sorted(path.name for path in packages.iterdir()) == MADE


def test_sums(packages):
    listed = dict(reversed(line.split("  ")) for line in (packages / "SHA256SUMS").read_text().splitlines())
    assert {*listed} == {*MADE} - {"SHA256SUMS"}
    for name, summed in listed.items():
        assert hashlib.sha256((packages / name).read_bytes()).hexdigest() == summed


class TestProgram:
    def test_files(self, unpacked):
        found = {name for name in files(unpacked.program) if not SHARED.match(name)}
        assert found == PROGRAM

    def test_no_device_library(self, unpacked):
        assert [name for name in files(unpacked.program) if ".so" in name] == []
        for name in programs(unpacked.program):
            command = ["nm", "-D", "--defined-only", unpacked.program / name]
            assert "TORPI_" not in subprocess.run(command, check=True, capture_output=True, text=True).stdout, name

    def test_staging_folder_is_empty_and_its_owners_alone(self, packages, unpacked):
        assert modes(packages / PROGRAM_DEB)[f"{PLUGIN}/tmp/"] == "drwx------ root/root"
        assert [*(unpacked.program / PLUGIN / "tmp").iterdir()] == []

    def test_needs_an_old_c_library_and_nothing_else(self, packages):
        assert control(packages / PROGRAM_DEB)["Depends"] == "libc6 (>= 2.17)"

    @pytest.mark.parametrize("command", ["zfcesxcli", "zfc-json", "zfc-snapshot"])
    def test_command_on_the_path_is_the_installed_one(self, unpacked, command):
        assert os.readlink(unpacked.program / "usr/bin" / command) == f"/{PLUGIN}/bin/{command}"

    def test_manual_pages(self, unpacked):
        """Those of the program's commands are compared with the descriptions elsewhere."""
        pages = pages_of(unpacked.program)
        assert {page for page in pages if not page.startswith("man1/zfcesxcli-")} == {
            "man1/zfc-json.1.gz",
            "man1/zfc-snapshot.1.gz",
            "man1/zfcesxcli.1.gz",
        }
        assert "man1/zfcesxcli-port-dmi.1.gz" in pages

    def test_description_says_what_a_missing_library_looks_like(self, packages, unpacked):
        """In the loader's own words."""
        shown = subprocess.run(["dpkg-deb", "-f", packages / PROGRAM_DEB, "Description"], capture_output=True, text=True)
        program = unpacked.program / PLUGIN / "bin" / "zfcesxcli"
        lost = subprocess.run([program, "help"], env={}, capture_output=True, text=True)
        message = re.search(r"error while loading shared libraries: libtorpifconly.so", lost.stderr)[0]
        text = " ".join(shown.stdout.split())
        assert f"status {lost.returncode} " in text and f'"{message}"' in text


class TestLab:
    def test_files(self, unpacked):
        found = {name for name in files(unpacked.lab) if not SHARED.match(name)}
        examples = {str(path.relative_to(ROOT)) for path in (ROOT / "examples").rglob("*") if path.is_file()}
        assert found == LAB | {f"{PLUGIN}/lab/{name}" for name in examples}

    def test_its_library_is_in_no_folder_that_a_loader_searches(self, unpacked):
        libraries = [name for name in files(unpacked.lab) if ".so" in name]
        assert libraries == [f"{PLUGIN}/lab/lib/libtorpifconly.so"]
        assert not any("ld.so.conf" in name for name in files(unpacked.lab))

    def test_needs_the_program_of_the_same_version(self, packages):
        needs = control(packages / LAB_DEB)["Depends"].split(", ")
        assert f"zfcesxcli (= {VERSION})" in needs
        (c_library,) = [need for need in needs if need.startswith("libc6 ")]
        assert c_library == "libc6 (>= 2.36)" and len(needs) == 2

    @pytest.mark.parametrize("command", ["zfcesxcli", "zfc-snapshot"])
    def test_starts_the_programs_beside_it(self, unpacked, command):
        assert os.readlink(unpacked.lab / PLUGIN / "lab/bin" / command) == f"../../bin/{command}"

    def test_manual_pages(self, unpacked):
        assert pages_of(unpacked.lab) == {"man1/zfc-lab.1.gz", "man5/zfc-lab-host.5.gz"}


@pytest.mark.parametrize("name", ["program", "lab"])
class TestBoth:
    def test_owner_and_modes(self, packages, name):
        for entry, mode in modes(packages / {"program": PROGRAM_DEB, "lab": LAB_DEB}[name]).items():
            assert mode.endswith(" root/root"), entry
            runs = "/bin/" in entry and not entry.endswith((".txt", "/"))
            expected = "drwxr-xr-x" if entry.endswith("/") else "-rwxr-xr-x" if runs else "-rw-r--r--"
            if entry != f"{PLUGIN}/tmp/" and not mode.startswith("l"):
                assert mode.split()[0] == expected, entry

    def test_manual_pages_are_compressed(self, unpacked, name):
        pages = [found for found in files(getattr(unpacked, name)) if "/man/man" in found]
        assert [page for page in pages if not page.endswith(".gz")] == []

    def test_copyright_says_that_no_licence_is_chosen(self, unpacked, name):
        folder = getattr(unpacked, name) / "usr/share/doc"
        (text,) = [path.read_text() for path in folder.rglob("copyright")]
        assert "no licence yet: none has been chosen" in text

    def test_changelog_has_this_version_and_its_entries(self, unpacked, name):
        (path,) = (getattr(unpacked, name) / "usr/share/doc").rglob("changelog.gz")
        text = gzip.decompress(path.read_bytes()).decode()
        assert text.startswith(f"zfcesxcli ({VERSION}) unstable; urgency=medium\n")
        assert text.endswith("  Fri, 02 Jan 2026 03:04:05 -0000\n")
        section = re.search(rf"^## \[{re.escape(VERSION)}\].*?(?=^## |\Z)", (ROOT / "CHANGELOG.md").read_text(), re.M | re.S)[0]
        assert len(re.findall(r"^- ", section, re.M)) == len(re.findall(r"^  \* ", text, re.M)) > 0

    def test_no_file_names_a_folder_of_the_build(self, unpacked, name):
        folder = getattr(unpacked, name)
        found = [path for path in folder.rglob("*") if path.is_file() and not path.is_symlink()]
        assert [path for path in found if str(ROOT).encode() in path.read_bytes()] == []


def test_debug_files_fit_the_programs(packages, unpacked, tmp_path):
    """By their build IDs, and without a folder of the build in them."""
    found = set()
    for name in ("zfcesxcli-dbgsym", "zfcesxcli-lab-dbgsym"):
        subprocess.run(["dpkg-deb", "-x", packages / f"{name}_{VERSION}_amd64.deb", tmp_path], check=True)
    for path in (tmp_path / "usr/lib/debug/.build-id").rglob("*.debug"):
        found.add(path.parent.name + path.stem)
        shown = said("readelf", "--debug-dump=info", "--wide", path)
        assert "DW_AT_comp_dir" in shown and str(ROOT) not in shown
    wanted = set()
    for folder in (unpacked.program, unpacked.lab, unpacked.host):
        for name in programs(folder):
            notes = said("readelf", "--notes", folder / name)
            wanted.add(re.search(r"Build ID: ([0-9a-f]+)", notes)[1])
    assert found == wanted and len(wanted) >= 3


def test_one_version(packages, zfc):
    assert {control(packages / name)["Version"] for name in MADE if name.endswith(".deb")} == {VERSION}
    assert f"v{VERSION}".encode() in zfc(stdin=b"version\nq\n").stdout
    assert re.search(rf"^project\(zfcesxcli VERSION {re.escape(VERSION)} ", (ROOT / "CMakeLists.txt").read_text(), re.M)
