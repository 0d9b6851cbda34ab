"""A pytest plugin: collects once, then runs what it is asked for, each time in a fresh child. scripts/mutants uses it.

Requests come as lines of JSON on the descriptor ZFC_MUTANTS_REQUESTS; for each, one line of JSON goes to
ZFC_MUTANTS_ANSWERS. A request names tests, the variables of their programs, how long each test may take, whether to stop at
the first failure, and a file that gets a line for each test.
"""

import gc
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import pytest


def pytest_runtestloop(session):
    items = {item.nodeid: item for item in session.items}
    answers = os.fdopen(int(os.environ["ZFC_MUTANTS_ANSWERS"]), "w", buffering=1)
    requests = os.fdopen(int(os.environ["ZFC_MUTANTS_REQUESTS"]))
    gc.collect()
    gc.freeze()  # else every child would copy all that is collected
    print(json.dumps(list(items)), file=answers)
    for line in requests:
        request = json.loads(line)
        tests = [items[name] for name in request["tests"] if name in items]
        folder = tempfile.mkdtemp(prefix="zfc-mutants-")
        child = os.fork()
        if child == 0:
            _child(session, tests, request, folder)
        os.waitpid(child, 0)
        try:
            os.killpg(child, signal.SIGKILL)  # what a stopped test has left running
        except ProcessLookupError:
            pass
        shutil.rmtree(folder, ignore_errors=True)
        print("{}", file=answers)
    return True


def _child(session, tests, request, folder):
    os.setsid()
    session.config._tmp_path_factory._basetemp = Path(folder)
    _give_programs(request["env"])
    seen = _Seen(request["env"].get("ZFC_MUTANT_SEEN"))
    with open(request["out"], "a", buffering=1) as out:
        watch = _Watch(seen)
        session.config.pluginmanager.register(watch)

        def too_late(*_):
            print(json.dumps({"test": watch.test, "failed": "time", "seen": ""}), file=out)
            os.killpg(0, signal.SIGKILL)

        signal.signal(signal.SIGALRM, too_late)
        for item, following in zip(tests, [*tests[1:], None]):
            watch.begin(item)
            signal.setitimer(signal.ITIMER_REAL, request["limit"] + 10 * request["durations"].get(item.nodeid, 0))
            item.config.hook.pytest_runtest_protocol(item=item, nextitem=following)
            signal.setitimer(signal.ITIMER_REAL, 0)
            print(json.dumps(watch.end(item)), file=out)
            if watch.failed and request["stop"]:
                break
    sys.stdout.flush()
    os._exit(0)


def _give_programs(variables):
    """All programs started from here get the variables, also those that get an environment of their own."""
    os.environ.update(variables)
    start = subprocess.Popen.__init__

    def wrapped(self, *arguments, env=None, **options):
        start(self, *arguments, env=None if env is None else {**env, **variables}, **options)

    subprocess.Popen.__init__ = wrapped
    execute = os.execve
    os.execve = lambda path, words, env: execute(path, words, {**env, **variables})


class _Seen:
    """The file that programs mark; what it has got since it was asked last."""

    def __init__(self, name):
        self.name = name

    def take(self):
        if not self.name:
            return b""
        with open(self.name, "r+b") as file:
            content = file.read()
            file.seek(0)
            file.write(bytes(len(content)))
        return content


class _Watch:
    def __init__(self, seen):
        self.seen = seen
        self.fixtures = {}

    def begin(self, item):
        self.test, self.failed, self.started = item.nodeid, "", time.monotonic()
        self.numbers = set()
        self.skipped = False

    def end(self, item):
        self.note()
        for name in item.fixturenames:  # a fixture of the module has run for the first test only
            self.numbers |= self.fixtures.get((name, item.nodeid.partition("::")[0]), set())
        took = time.monotonic() - self.started
        return {"test": self.test, "failed": self.failed, "skipped": self.skipped, "took": round(took, 4),
                "seen": " ".join(map(str, sorted(self.numbers)))}  # fmt: skip

    def note(self):
        content = self.seen.take()
        found = {at for at, byte in enumerate(content) if byte} if content.strip(b"\0") else set()
        self.numbers |= found
        return found

    @pytest.hookimpl(hookwrapper=True)
    def pytest_fixture_setup(self, fixturedef, request):
        self.note()
        yield
        if fixturedef.scope != "function":
            key = (fixturedef.argname, request.node.nodeid.partition("::")[0])
            self.fixtures.setdefault(key, set()).update(self.note())

    def pytest_runtest_logreport(self, report):
        if report.failed:
            self.failed = f"{report.when}: {getattr(report, 'longreprtext', '')[-300:]}"
        self.skipped = self.skipped or report.skipped
