"""The tests: the cases of the unit test programs, and the command tests in a pytest that stays warm."""

import json
import os
import re
import shutil
import subprocess
import tempfile

LEFT_OUT = (  # what reads sources or documents, or measures the build, and shows no defect of a function
    "documents", "packages", "examples", "program/test_budget.py", "program/test_structure.py",
    "program/test_symbol_floor.py", "program/test_mutants.py", "program/test_executable.py", "program/test_installed.py",
)  # fmt: skip


class UnitTests:
    def __init__(self, sources, build, names):
        self.sources = sources
        self.build = build
        self.names = names

    def cases(self):
        """All cases, as "program:Suite.Case"."""
        found = []
        for name in self.names:
            done = subprocess.run([self.build / "tests" / name, "--gtest_list_tests"], capture_output=True, text=True, check=True)
            suite = ""
            for line in done.stdout.splitlines():
                line = line.partition("#")[0].rstrip()
                if line.startswith("  "):
                    if "DISABLED_" not in line:
                        found.append(f"{name}:{suite}{line.strip()}")
                elif re.fullmatch(r"[\w/]+\.", line):
                    suite = line
        return found

    def run(self, name, cases, env, timeout):
        """What failed: nothing, the cases, or "time"."""
        folder = tempfile.mkdtemp(prefix="zfc-mutants-")
        for inner in ("tmp", "var_tmp", "staging", "work"):
            os.mkdir(os.path.join(folder, inner))
        tests = self.build / "tests"
        chosen = ":".join(case.partition(":")[2] for case in cases)
        argv = ["nice", "-n", "19", tests / "private_run", "--keep", self.sources, "--keep", self.build, folder, tests / name,
                f"--gtest_filter={chosen}" if len(chosen) < 100000 else "--gtest_filter=*", "--gtest_fail_fast"]  # fmt: skip
        try:
            done = subprocess.run(argv, stdin=subprocess.DEVNULL, capture_output=True, env={**os.environ, **env},
                                  timeout=timeout)  # fmt: skip
        except subprocess.TimeoutExpired:
            return "time"
        finally:
            shutil.rmtree(folder, ignore_errors=True)
        if done.returncode == 0:
            return ""
        failed = re.findall(rb"\[  FAILED  \] (\S+?)(?:,| \()", done.stdout)
        return failed[0].decode() if failed else f"status {done.returncode}"


class CommandTests:
    """One warm pytest. `run` gives an answer for each test that was run."""

    def __init__(self, root, build, out, paths=()):
        self.out = out
        requests, self._requests = os.pipe()
        self._answers, answers = os.pipe()
        env = {
            **os.environ,
            "ZFC_BUILD_DIR": str(build),
            "PYTHONDONTWRITEBYTECODE": "1",
            "PYTEST_DISABLE_PLUGIN_AUTOLOAD": "1",  # nothing here spreads or shuffles tests
            "PYTHONPATH": str(root / "tests/mutants"),
            "ZFC_MUTANTS_REQUESTS": str(requests),
            "ZFC_MUTANTS_ANSWERS": str(answers),
        }
        commands = root / "tests/commands"
        ignored = [f"--ignore={commands / name}" for name in LEFT_OUT]
        self.process = subprocess.Popen(
            ["nice", "-n", "19", "pytest-3", "-q", "-p", "no:cacheprovider", "-p", "warm_pytest", "--capture=sys",
             *ignored, *(paths or [commands])],
            cwd=root, env=env, pass_fds=(requests, answers), stdin=subprocess.DEVNULL, stdout=open(out.with_suffix(".log"), "w"),
            stderr=subprocess.STDOUT,
        )  # fmt: skip
        os.close(requests)
        os.close(answers)
        self._to = os.fdopen(self._requests, "w", buffering=1)
        self._from = os.fdopen(self._answers)
        line = self._from.readline()
        if not line:
            raise SystemExit(f"mutants: pytest did not start: {out.with_suffix('.log').read_text()[-2000:]}")
        self.tests = json.loads(line)

    def run(self, tests, env, durations=None, stop=True, limit=20):
        self.out.write_text("")
        own = {name: durations[name] for name in tests if durations and name in durations}
        request = {"tests": tests, "env": env, "durations": own, "stop": stop, "limit": limit, "out": str(self.out)}
        self._to.write(json.dumps(request) + "\n")
        if not self._from.readline():
            raise SystemExit(f"mutants: pytest has ended: {self.out.with_suffix('.log').read_text()[-2000:]}")
        return [json.loads(line) for line in self.out.read_text().splitlines()]

    def close(self):
        self._to.close()
        self.process.wait()
