"""Runs of a program by the server of exhaust_server.c, a fork for each, with resources that give out when asked."""

import os
import signal
import struct
import subprocess
from dataclasses import dataclass, field

from zfc.runner import BUILD, EXECUTABLE

MEMORY, CALLS = 1, 2  # what is watched
PROGRAM, LIBRARY = 1, 2  # whose events count
FAILS, SHORT = 1, 2

_FIELDS = (
    "watch owners at onward fault error only files space stack file_size closed warm callers"
    " input_bytes words word_bytes variables variable_bytes"
).split()
_DEFAULTS = {**dict.fromkeys(_FIELDS, 0), "owners": PROGRAM, "only": -1}
_DEFAULTS.update(files=-1, space=-1, stack=-1, file_size=-1)
_REQUEST = struct.Struct(f"<{len(_FIELDS)}q")
_REPLY = struct.Struct("<8q")
_EVENT = struct.Struct("<IIIIq")
FUNCTIONS = ("malloc", "calloc", "realloc", "aligned")


@dataclass
class Event:
    """A use of a resource: a request for memory, or a system call."""

    what: int
    owner: int
    via: str  # the function of another library that the program had called; "" for none
    number: int
    size: int


@dataclass
class Run:
    status: int  # negative: the signal that ended it
    stdout: bytes
    stderr: bytes
    counted: int  # how often the resource was asked for by those whose requests count
    failed: int  # how often it was refused
    event: Event | None  # the first that failed
    events: list = field(default_factory=list)
    callers: list = field(default_factory=list)  # addresses in the program


class Server:
    """One process that serves runs of one program with one device library."""

    def __init__(self, zfc, program=EXECUTABLE, *, imports=True, **options):
        preload = [f"LD_PRELOAD={BUILD / 'tests' / 'exhaust_server.so'}"] + (["EXHAUST_IMPORTS=1"] if imports else [])
        argv, env = zfc.command([*preload, str(program)], program="/usr/bin/env", **options)
        requests, self._requests = os.pipe()
        self._replies, replies = os.pipe()
        env.update(EXHAUST_REQUESTS=str(requests), EXHAUST_REPLIES=str(replies), LD_BIND_NOW="1")
        self._process = subprocess.Popen(argv, env=env, pass_fds=(requests, replies))
        os.close(requests)
        os.close(replies)
        self._in = os.fdopen(self._replies, "rb")
        (size,) = struct.unpack("<q", self._in.read(8))
        self._names = self._in.read(size).decode().split("\0")[:-1]
        self.program = str(program)
        self.runs = 0

    def close(self):
        os.close(self._requests)
        self._in.close()
        self._process.wait(timeout=60)

    def run(self, words, env, *, stdin=b"", **options):
        """One run. `options`: the fields of a request."""
        self.runs += 1
        word_block = b"".join(os.fsencode(word) + b"\0" for word in (self.program, *words))
        variable_block = b"".join(os.fsencode(f"{name}={value}") + b"\0" for name, value in env.items())
        fields = {
            **_DEFAULTS,
            **options,
            "input_bytes": len(stdin),
            "words": len(words) + 1,
            "word_bytes": len(word_block),
            "variables": len(env),
            "variable_bytes": len(variable_block),
        }
        request = _REQUEST.pack(*(fields[name] for name in _FIELDS)) + stdin + word_block + variable_block
        view = memoryview(request)
        while view:
            view = view[os.write(self._requests, view) :]
        return self._reply()

    def _reply(self):
        head = self._in.read(_REPLY.size)
        if len(head) < _REPLY.size:
            raise AssertionError(f"the server ended: {self._process.wait(timeout=60)}")
        status, counted, failed, last, output_bytes, error_bytes, count, callers = _REPLY.unpack(head)
        stdout = self._in.read(output_bytes)
        stderr = self._in.read(error_bytes)
        raw = self._in.read(count * _EVENT.size)
        addresses = [value for (value,) in struct.iter_unpack("<Q", self._in.read(8 * callers))]
        events = [Event(what, owner, self._names[via], *rest) for what, owner, via, *rest in _EVENT.iter_unpack(raw)]
        ended = -os.WTERMSIG(status) if os.WIFSIGNALED(status) else os.WEXITSTATUS(status)
        return Run(ended, stdout, stderr, counted, failed, events[0] if last >= 0 else None, events, addresses)


def signal_name(status):
    return signal.Signals(-status).name if status < 0 else str(status)
