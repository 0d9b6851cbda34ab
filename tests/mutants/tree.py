"""The copy of the sources that gets the defects, and its build."""

import hashlib
import json
import multiprocessing
import os
import re
import shutil
import subprocess

import points
import schemata

FOLDERS = ("src", "simulator", "recording", "tools")
# Targets that no test of a defect needs.
NEEDLESS = re.compile(
    r".*fuzz.*|(un)?install.*|packages?|test|all|(edit|rebuild)_cache|list_install_components|reference_docs|cmake_object_.*"
)
ERROR = re.compile(r"^(\S+?):(\d+):\d+: (?:fatal )?error: (.*)", re.M)

# Defects need neither warnings nor an optimised build; and what a choice makes of a constant would not fit into braces.
COMPILER = """#!/bin/sh
case " $* " in *" -c "*) ;; *) exec "$@" ;; esac
exec %s "$@" -w -O0 -g0 -U_FORTIFY_SOURCE -Wno-narrowing -fpermissive
"""


def is_wanted(name):
    return name.split("/")[0] in FOLDERS


class Tree:
    def __init__(self, root, work, jobs):
        self.root = root
        self.work = work
        self.sources = work / "tree"
        self.build = work / "build"
        self.jobs = jobs
        self.header = work / "zfc_mutant.h"

    def copy(self):
        """Makes the copy what the sources are; keeps the planted files, which `write` brings up to date."""
        listed = subprocess.run(
            ["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=self.root, capture_output=True, check=True
        )
        names = {name for name in listed.stdout.decode().split("\0") if name and (self.root / name).is_file()}
        for name in names:
            if not (is_wanted(name) and name.endswith((".cpp", ".h"))):
                self.copy_one(name)
        if self.sources.exists():
            for path in self.sources.rglob("*"):
                if path.is_file() and str(path.relative_to(self.sources)) not in names:
                    path.unlink()
        self.names = sorted(name for name in names if is_wanted(name) and name.endswith((".cpp", ".h")))
        schemata.write_if_other(self.header, (self.root / "tests/mutants/zfc_mutant.h").read_bytes())

    def copy_one(self, name):
        schemata.write_if_other(self.sources / name, (self.root / name).read_bytes())
        shutil.copymode(self.root / name, self.sources / name)

    def configure(self):
        launcher = self.work / "compiler"
        schemata.write_if_other(launcher, (COMPILER % (shutil.which("ccache") or "")).encode())
        launcher.chmod(0o755)
        for name in self.names:
            if not (self.sources / name).exists():
                self.copy_one(name)
        if (self.build / "build.ninja").exists():
            return
        flags = [f"-DCMAKE_{language}_COMPILER_LAUNCHER={launcher}" for language in ("C", "CXX")]
        subprocess.run(
            ["cmake", "-G", "Ninja", "-S", self.sources, "-B", self.build, "-DCMAKE_BUILD_TYPE=Release", "-DZFC_BENCH=OFF",
             "-DCMAKE_CXX_FLAGS_RELEASE=-DNDEBUG", *flags],
            check=True, stdout=subprocess.DEVNULL,
        )  # fmt: skip

    # Points

    def find(self):
        """All points, functions and tables of the sources."""
        commands = {}
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            name = os.path.relpath(entry["file"], self.sources)
            if is_wanted(name):
                commands[name] = entry["command"].replace(str(self.sources), str(self.root))
        headers = hashlib.sha1()
        for name in self.names:
            if name.endswith(".h"):
                headers.update(name.encode() + (self.root / name).read_bytes())
        headers.update((self.root / "tests/mutants/points.py").read_bytes())
        found_in = self.work / "points"
        found_in.mkdir(parents=True, exist_ok=True)
        jobs = []
        for name, command in sorted(commands.items()):
            state = headers.copy()
            state.update(name.encode() + (self.root / name).read_bytes())
            jobs.append((self.root, name, command, found_in / f"{state.hexdigest()}.json"))
        missing = [job for job in jobs if not job[3].exists()]
        with multiprocessing.Pool(self.jobs) as pool:
            for _ in pool.imap_unordered(_find_one, missing):
                pass
        return _joined(job[3] for job in jobs)

    # Sources with defects

    def write(self, numbered, bodies):
        """Plants the points of `numbered` (number: point) and a mark in each function of `bodies`."""
        by_file = {name: ([], []) for name in self.names}
        for number, point in numbered.items():
            by_file[point.file][0].append((number, point))
        for number, body in bodies.items():
            by_file[body["file"]][1].append((number, body["offset"], body["constant"]))
        for name, (in_file, marks) in by_file.items():
            if not in_file and not marks:
                self.copy_one(name)
                continue
            text = (self.root / name).read_bytes().decode("latin-1")
            path = self.sources / name
            done = schemata.planted(text, in_file, marks, self.header, path)
            schemata.write_if_other(path, done.encode("latin-1"))

    def targets(self):
        """The programs of unit tests, and all that is built."""
        listed = subprocess.run(["ninja", "-C", self.build, "-t", "targets", "all"], capture_output=True, text=True, check=True)
        names = re.findall(r"^([\w-]+): phony$", listed.stdout, re.M)
        names = [name for name in names if not NEEDLESS.fullmatch(name)]
        return [name for name in names if name.endswith("_tests")], names

    def dependencies(self):
        """For each object the sources that it was made of."""
        listed = subprocess.run(["ninja", "-C", self.build, "-t", "deps"], capture_output=True, text=True, check=True).stdout
        for part in listed.split("\n\n"):
            paths = [os.path.normpath(os.path.join(self.build, line.strip())) for line in part.splitlines()[1:]]
            yield [os.path.relpath(path, self.sources) for path in paths if path.startswith(f"{self.sources}/")]

    def make(self, targets, keep_going=True):
        """Builds; gives nothing, or what the compiler said."""
        done = subprocess.run(
            ["nice", "ninja", "-C", self.build, f"-j{self.jobs}", *(["-k", "0"] if keep_going else []), *targets],
            capture_output=True, text=True, errors="replace",
        )  # fmt: skip
        return "" if done.returncode == 0 else done.stdout + done.stderr

    def errors(self, output):
        """The places that the compiler complained of: (file, line)."""
        places = set()
        for path, line, _ in ERROR.findall(output):
            name = os.path.relpath(os.path.normpath(os.path.join(self.build, path)), self.sources)
            places.add((name, int(line)))
        return places


def _find_one(job):
    root, name, command, out = job
    finder = points.find(root, root / name, command, is_wanted, set())
    data = {
        "files": sorted(finder.files),
        "points": [points.as_data(point) for point in finder.points],
        "bodies": finder.bodies,
        "tables": finder.tables,
    }
    part = out.with_suffix(".part")
    part.write_text(json.dumps(data))
    part.rename(out)


def _joined(paths):
    """The findings of all units; a header's are those of the first unit that has it."""
    done = set()
    all_points, bodies, tables = [], [], []
    for path in paths:
        data = json.loads(path.read_text())
        all_points += [points.Point(**point) for point in data["points"] if point["file"] not in done]
        for file, function, offset, constant, names in data["bodies"]:
            if file not in done:
                bodies.append({"file": file, "function": function, "offset": offset, "constant": constant, "names": names})
        tables += [(file, name, short, names) for file, name, short, names in data["tables"] if file not in done]
        done |= set(data["files"])
    unique = {}
    for point in all_points:  # a template's body may be read more than once
        unique.setdefault((point.file, point.start, point.end, point.mutated, point.form), point)
    return [*unique.values()], bodies, tables
