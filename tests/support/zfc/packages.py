"""The packages of the build, made once for a test run, and their files."""

import fcntl
import os
import re
import subprocess
from contextlib import contextmanager
from pathlib import Path

from . import vib
from .runner import BUILD, ROOT

CACHE = (BUILD / "CMakeCache.txt").read_text() if (BUILD / "CMakeCache.txt").exists() else ""
RELEASE = "CMAKE_BUILD_TYPE:STRING=Release" in CACHE
VERSION = re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.*)$", CACHE, re.M)[1] if CACHE else ""
EPOCH = 1767323045  # 2026-01-02 03:04:05 UTC

PROGRAM_DEB = f"zfcesxcli_{VERSION}_amd64.deb"
LAB_DEB = f"zfcesxcli-lab_{VERSION}_amd64.deb"
HOST_VIB = f"zfcesxcli-{VERSION}.vib"
MADE = sorted(
    [PROGRAM_DEB, LAB_DEB, HOST_VIB]
    + [f"{name}.cdx.json" for name in (PROGRAM_DEB, LAB_DEB, HOST_VIB)]
    + [f"zfcesxcli-dbgsym_{VERSION}_amd64.deb", f"zfcesxcli-lab-dbgsym_{VERSION}_amd64.deb", "SHA256SUMS"]
)
PLUGIN = "opt/ZunaFcEsxcliPlugin"


def pack(output, **options):
    """Makes the packages in `output`."""
    environment = {**os.environ, "SOURCE_DATE_EPOCH": str(EPOCH), **options.pop("env", {})}
    command = [ROOT / "packaging" / "build-packages", BUILD, output, VERSION]
    done = subprocess.run(command, env=environment, capture_output=True, text=True, **options)
    assert done.returncode == 0, done.stderr
    return output


@contextmanager
def held(path):
    """Keeps other processes out of the block while this one is in it."""
    with open(path, "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield


def packed_once(folder):
    """The packages in `folder`, made by the first of several processes that ask."""
    output = Path(folder) / "packages"
    with held(f"{folder}/packages.lock"):
        if not (output / "SHA256SUMS").exists():
            pack(output)
    return output


class Unpacked:
    """The files of the packages, each package in a folder of its own."""

    def __init__(self, packages, folder):
        self.packages = packages
        self.program = self._deb(packages / PROGRAM_DEB, folder / "program")
        self.lab = self._deb(packages / LAB_DEB, folder / "lab")
        (folder / "host").mkdir()
        self.vib = vib.read(packages / HOST_VIB, folder / "host")
        self.host = folder / "host" / "root"

    @staticmethod
    def _deb(package, folder):
        subprocess.run(["dpkg-deb", "--raw-extract", package, folder], check=True)
        return folder


def files(folder):
    """The files and links below a folder by their paths from there, without a Debian package's own."""
    found = {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_symlink() or not path.is_dir()}
    return {name for name in found if not name.startswith("DEBIAN/")}


def programs(folder):
    """The programs and libraries below a folder, by their paths from there."""
    return {name for name in files(folder) if _is_elf(folder / name)}


def _is_elf(path):
    return not path.is_symlink() and path.read_bytes()[:4] == b"\x7fELF"
