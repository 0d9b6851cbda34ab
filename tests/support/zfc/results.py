"""What the tests of a build came to, from the JUnit files that each program of them writes.

    results.py clear BUILD...   before a run
    results.py show BUILD...    after it: each reason for skipped tests with its count, and what the build leaves out
"""

import sys
from collections import Counter
from dataclasses import dataclass, field
from pathlib import Path
from xml.etree import ElementTree


@dataclass
class Results:
    passed: int = 0
    failed: list = field(default_factory=list)  # names
    skipped: Counter = field(default_factory=Counter)  # reasons

    @property
    def total(self):
        return self.passed + len(self.failed) + self.skipped.total()


def files(build):
    return sorted(Path(build, "Testing", "results").glob("*.xml"))


def read(paths):
    results = Results()
    for path in paths:
        for case in ElementTree.parse(path).iter("testcase"):
            skipped = case.find("skipped")
            if skipped is not None:
                results.skipped[_reason(skipped.get("message", ""))] += 1
            elif case.find("failure") is not None or case.find("error") is not None:
                results.failed.append(f"{case.get('classname')}.{case.get('name')}")
            elif case.get("status") != "notrun":  # what a test starts in a process of its own
                results.passed += 1
    return results


def _reason(message):
    """GoogleTest puts the place in the source on a line of its own before the reason."""
    return " ".join(message.splitlines()[-1].split()) if message else "no reason given"


def shown(build):
    """The lines for a person."""
    results = read(files(build))
    yield f"Skipped in build/{Path(build).name}: {results.skipped.total():,} of {results.total:,} test cases"
    for reason, count in sorted(results.skipped.items(), key=lambda item: (-item[1], item[0])):
        yield f"{count:6,}  {reason}"
    left_out = Path(build, "tests", "left_out")
    for line in left_out.read_text().splitlines() if left_out.exists() else ():
        yield f"Left out: {line}"


def main(verb, *builds):
    for build in builds:
        if verb == "clear":
            for path in files(build):
                path.unlink()
        else:
            print(*shown(build), sep="\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
