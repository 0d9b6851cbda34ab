"""Runs of single cases: through a fault server, or through the real executable."""

import hashlib
import os
import signal
import struct
import subprocess
from dataclasses import dataclass
from pathlib import Path

from zfc.runner import BUILD, EXECUTABLE, LIBRARIES, ROOT

FOLDERS = {"/tmp": "tmp", "/var/tmp": "var_tmp", "/opt/ZunaFcEsxcliPlugin/tmp": "staging", ".": "work"}


@dataclass
class Ran:
    """What one run did and left."""

    end: str  # "" after an ordinary end with status 0
    left: list  # what is not as it was before the run
    stdout: bytes
    stderr: bytes
    trace: list  # the calls with their arguments
    files: dict  # content by path


def make_folders(folder):
    for name in FOLDERS.values():
        (folder / name).mkdir(parents=True)


def private(folder, program, *words):
    """The argument vector of a program in private folders."""
    keep = ["--keep", str(ROOT), "--keep", str(BUILD)]
    return [str(BUILD / "tests/private_run"), *keep, str(folder), str(program), *words]


def environment(settings):
    """The environment of a run: the settings, and what every run has."""
    kept = {name: os.environ[name] for name in ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS") if name in os.environ}
    return {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C", "TZ": "UTC", **kept, **settings}


def _end(status):
    if os.WIFSIGNALED(status):
        return f"signal {signal.Signals(os.WTERMSIG(status)).name}"
    code = os.WEXITSTATUS(status)
    return f"exit status {code}" if code else ""


def _lines(trace):
    return trace.decode(errors="surrogateescape").splitlines()


def keep_image(folder, image):
    """The file in the folder that has this host's image."""
    path = folder / f"{hashlib.sha256(image).hexdigest()[:16]}.image"
    if not path.exists():
        path.write_bytes(image)
    return path


class Server:
    """A fault server in a mount namespace of its own."""

    LEFT = ["main has not returned", "standard output is another stream", "descriptor 1 is another file", "descriptors"]

    def __init__(self, folder):
        make_folders(folder)
        self._hosts = folder / "hosts"
        self._hosts.mkdir()
        env = environment({"LD_BIND_NOW": "1"})  # once, not in each fork
        # A quarantine that holds what a case frees, but not what the server has freed between all cases: each fork copies
        # it, and the search for leaks visits it.
        env["ASAN_OPTIONS"] = ":".join(filter(None, ["quarantine_size_mb=16", env.get("ASAN_OPTIONS")]))
        self._process = subprocess.Popen(
            private(folder, BUILD / "tests/fault_server"), stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=env, bufsize=0
        )

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.stdin.close()
        self._process.wait()

    def send(self, image, words, settings, folders, files):
        """Starts a case; `receive` then gives what it did."""
        settings = {**settings, "HOSTILE_HOST": str(keep_image(self._hosts, image))}
        parts = [
            words,
            [f"{name}={value}" for name, value in settings.items()],
            folders,
            [text for path, content in files.items() for text in (path, content)],
        ]
        request = bytearray()
        for texts in parts:
            request += struct.pack("<I", len(texts))
            for text in texts:
                raw = os.fsencode(text) if isinstance(text, str) else text
                request += struct.pack("<I", len(raw)) + raw
        self._process.stdin.write(request)

    def receive(self):
        status, left = self._number(), self._number()
        stdout, stderr, trace = self._text(), self._text(), self._text()
        texts = [self._text() for _ in range(self._number())]
        return Ran(
            end=_end(status),
            left=[what for bit, what in enumerate(self.LEFT) if left >> bit & 1],
            stdout=stdout,
            stderr=stderr,
            trace=_lines(trace),
            files={os.fsdecode(path): content for path, content in zip(texts[::2], texts[1::2])},
        )

    def _read(self, size):
        content = b""
        while len(content) < size:
            piece = self._process.stdout.read(size - len(content))
            if not piece:
                raise RuntimeError(f"the fault server has ended with status {self._process.wait()}")
            content += piece
        return content

    def _number(self):
        return struct.unpack("<I", self._read(4))[0]

    def _text(self):
        return self._read(self._number())


def _content(path):
    """The mirror of the shell's output is made for writing alone, which keeps an ordinary user from reading it."""
    path.chmod(0o600)
    return path.read_bytes()


def run_really(folder, image, words, settings, folders, files):
    """One case through the real executable, with the tests' device library, in private folders that are made for it."""
    make_folders(folder)
    host = folder / "host.image"
    host.write_bytes(image)
    trace = folder / "trace"
    trace.write_bytes(b"")

    def place(path):
        for inside, outside in FOLDERS.items():
            if path.startswith(inside + "/"):
                return folder / outside / path[len(inside) + 1 :]
        raise ValueError(path)

    for path in folders:
        place(path).mkdir()
    for path, content in files.items():
        place(path).write_bytes(content)
    library = {"LD_LIBRARY_PATH": str(LIBRARIES["hostile"]), "HOSTILE_HOST": str(host), "HOSTILE_TRACE": str(trace)}
    variables = {**library, **settings}
    done = subprocess.run(
        private(folder, EXECUTABLE, *words),
        stdin=subprocess.DEVNULL,
        capture_output=True,
        env=environment(variables),
        timeout=60,
    )
    kept = [f"{path}/" for path in (ROOT, BUILD, folder)]  # the ways to them are in the private folders too
    found = {}
    for inside, outside in FOLDERS.items():
        for path in (folder / outside).iterdir():
            name = f"{inside}/{path.name}"
            if not any(place.startswith(f"{name}/") for place in kept):
                found[name] = _content(path) if path.is_file() else b"folder"
    end = f"signal {-done.returncode}" if done.returncode < 0 else f"exit status {done.returncode}"
    return Ran(
        end=end if done.returncode else "",
        left=[],
        stdout=done.stdout,
        stderr=done.stderr,
        trace=_lines(trace.read_bytes()),
        files=found,
    )
