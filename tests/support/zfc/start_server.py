"""Runs by a server that forks for each, at a third of the cost of private_run: they are given by its words and environment,
and come out as from there. The server is private_run itself, whose forks start the program anew; or the program, which
waits ahead of its main(). See run_server.h and start_server.c."""

import atexit
import os
import re
import socket
import struct
import subprocess
from pathlib import Path

# What the loader, the sanitizers and the C library read before main(): a server serves runs that have it alike.
_READ_AT_START = re.compile(r"LD_.*|.*SAN_OPTIONS|GLIBC_TUNABLES|MALLOC_.*")
_MOST_INPUT = 60000  # what a pipe holds, and some room
_REQUEST = struct.Struct("<5q")
_REPLY = struct.Struct("<3q")

_MOST_SERVERS = 8

_servers = {}  # by process, program and what is read at the start; None: this machine refuses private mounts


def serves(argv, env, stdin=b"", *, anew):
    """Whether a server can make this run. Mutants have variables of their own in each process that starts."""
    return (
        "ZFC_MUTANTS_REQUESTS" not in os.environ
        and len(stdin) <= _MOST_INPUT
        and (anew or _can_wait(argv, env))
        and _server(argv, env, anew) is not None
    )


def run(argv, env, stdin=b"", timeout=None, *, anew):
    """Makes the run and returns a CompletedProcess. anew: the program is started anew."""
    try:
        return _server(argv, env, anew).run(argv, env, stdin, timeout)
    except BaseException:
        _end(_key(argv, env, anew))
        raise


def _program(argv):
    at = 1
    while argv[at].startswith("--"):
        at += 2 if argv[at] == "--keep" else 1
    return argv[at + 1]


def _can_wait(argv, env):
    """Whether the program can wait ahead of its main(). The library that makes it wait is named from its folder: a path
    may have a blank or a colon."""
    return "LD_PRELOAD" not in env and Path(_program(argv)).parent == Path(argv[0]).parents[1] / "bin"


def _key(argv, env, anew):
    if anew:
        return os.getpid(), argv[0], None
    at_start = sorted((name, value) for name, value in env.items() if _READ_AT_START.fullmatch(name))
    return os.getpid(), _program(argv), tuple(at_start)


def _server(argv, env, anew):
    key = _key(argv, env, anew)
    if key not in _servers:
        if len(_servers) == _MOST_SERVERS:
            _end(next(iter(_servers)))
        server = _Server(key[1], key[2])
        if not server.allowed:
            server.end()
            server = None
        _servers[key] = server
    return _servers[key]


def _end(key):
    server = _servers.pop(key)
    if server and key[0] == os.getpid():
        server.end()


@atexit.register
def _end_all():
    for key in [*_servers]:
        _end(key)


def _waiting(variables, socket_number):
    options = filter(None, [variables.get("ASAN_OPTIONS"), "verify_asan_link_order=0"])
    return {
        **variables,
        "ASAN_OPTIONS": ":".join(options),
        "LD_PRELOAD": "$ORIGIN/../tests/start_server.so",
        "START_SERVER": str(socket_number),
    }


class _Server:
    def __init__(self, program, variables):
        self._program = program
        self._socket, theirs = socket.socketpair()
        argv, env = [program], {}
        if variables is None:
            argv += ["--serve", str(theirs.fileno())]
        else:
            env = _waiting(dict(variables), theirs.fileno())
        with theirs:
            files = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "pass_fds": [theirs.fileno()]}
            self._process = subprocess.Popen(argv, env=env, **files)
        self.allowed = self._read(1) == b"\1"

    def end(self):
        self._socket.close()
        self._process.kill()
        self._process.wait()

    def run(self, argv, env, stdin, timeout):
        lists = [argv[1:], [f"{name}={value}" for name, value in env.items()]]
        texts = b"".join(os.fsencode(text) + b"\0" for texts in lists for text in texts)
        mask = os.umask(0o022)
        os.umask(mask)
        self._socket.settimeout(timeout)
        try:
            head = _REQUEST.pack(len(stdin) + len(texts), len(stdin), len(lists[0]), len(lists[1]), mask)
            self._socket.sendall(head + stdin + texts)
            status, output, errors = _REPLY.unpack(self._read(_REPLY.size))
            stdout, stderr = self._read(output), self._read(errors)
        except TimeoutError:
            raise subprocess.TimeoutExpired(argv, timeout) from None
        return subprocess.CompletedProcess(argv, os.waitstatus_to_exitcode(status), stdout, stderr)

    def _read(self, size):
        content = b""
        while len(content) < size:
            piece = self._socket.recv(size - len(content))
            assert piece, f"the start server of {self._program} has ended"
            content += piece
        return content
