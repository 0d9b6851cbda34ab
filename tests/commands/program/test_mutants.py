"""The planting of defects by scripts/mutants: which defects it finds in a few lines, and a build that holds them all."""

import os
import re
import subprocess
import sys

import pytest
from zfc.runner import ROOT

sys.path.append(str(ROOT / "tests" / "mutants"))

import points  # noqa: E402
import sample  # noqa: E402
import schemata  # noqa: E402

SOURCE = """\
enum Answer { kNo, kYes = 4 };
constexpr int kSteps[] = {3, 5};

int Clamp(int value, int low, int high) {
  if (value < low) return low;
  return value > high  // the end
             ? high : value;
}

void Count(int& counter) { counter += kSteps[0]; }

Answer Judge(const char* word, bool strict) {
  int counter = 0;
  for (; *word == 'a' && counter < 9; ++word) Count(counter);
  if (!strict) return kYes;
  return Clamp(counter, 3, 6) == 6 ? kYes : kNo;
}
"""

# Each with the operator, the line before and after.
DEFECTS = [
    ("constant", "enum Answer { kNo, kYes = 4 };", "enum Answer { kNo, kYes = # };"),
    ("constant", "constexpr int kSteps[] = {3, 5};", "constexpr int kSteps[] = {#, 5};"),
    ("constant", "constexpr int kSteps[] = {3, 5};", "constexpr int kSteps[] = {3, #};"),
    ("compare", "if (value < low) return low;", "if (value <= low) return low;"),
    ("condition", "if (value < low) return low;", "if (!(value < low)) return low;"),
    ("return", "if (value < low) return low;", "if (value < low) return static_cast<int>((low) + 1);"),
    ("compare", "return value > high", "return value >= high"),
    ("condition", "return value > high", "return !(value > high)"),
    ("return", "return value > high ? high : value;", "return static_cast<int>((value > high ? high : value) + 1);"),
    ("assignment", "void Count(int& counter) { counter += kSteps[0]; }", "void Count(int& counter) { ; }"),
    ("constant", "void Count(int& counter) { counter += kSteps[0]; }", "void Count(int& counter) { counter += kSteps[1]; }"),
    ("constant", "int counter = 0;", "int counter = 1;"),
    ("logic", "LOOP", "for (; *word == 'a' || counter < 9; ++word) Count(counter);"),
    ("compare", "LOOP", "for (; *word != 'a' && counter < 9; ++word) Count(counter);"),
    ("constant", "LOOP", "for (; *word == 'x' && counter < 9; ++word) Count(counter);"),
    ("compare", "LOOP", "for (; *word == 'a' && counter <= 9; ++word) Count(counter);"),
    ("constant", "LOOP", "for (; *word == 'a' && counter < #; ++word) Count(counter);"),
    ("call", "LOOP", "for (; *word == 'a' && counter < 9; ++word) ;"),
    ("condition", "if (!strict) return kYes;", "if (!(!strict)) return kYes;"),
    ("enumerator", "if (!strict) return kYes;", "if (!strict) return kNo;"),
    ("compare", "JUDGED", "return Clamp(counter, 3, 6) != 6 ? kYes : kNo;"),
    ("arguments", "JUDGED", "return Clamp(3, counter, 6) == 6 ? kYes : kNo;"),
    ("arguments", "JUDGED", "return Clamp(counter, 6, 3) == 6 ? kYes : kNo;"),
    ("constant", "JUDGED", "return Clamp(counter, #, 6) == 6 ? kYes : kNo;"),
    ("constant", "JUDGED", "return Clamp(counter, 3, #) == 6 ? kYes : kNo;"),
    ("constant", "JUDGED", "return Clamp(counter, 3, 6) == # ? kYes : kNo;"),
    ("enumerator", "JUDGED", "return Clamp(counter, 3, 6) == 6 ? kNo : kNo;"),
    ("enumerator", "JUDGED", "return Clamp(counter, 3, 6) == 6 ? kYes : kYes;"),
]
LINES = {
    "LOOP": "for (; *word == 'a' && counter < 9; ++word) Count(counter);",
    "JUDGED": "return Clamp(counter, 3, 6) == 6 ? kYes : kNo;",
}

# Only what reaches 6 counts, in steps of 3: where the counter starts, its lower bound, and the loop's at 9 may be one off;
# and Clamp at a bound gives the bound, whichever way the comparison goes.
CHECK = """
int main() {
  if (Clamp(4, 5, 7) != 5 || Clamp(8, 5, 7) != 7 || Clamp(6, 5, 7) != 6 || Clamp(5, 5, 7) != 5 || Clamp(7, 5, 7) != 7) return 1;
  int counter = 1;
  Count(counter);
  if (counter != 4) return 2;
  return Judge("aaab", true) == kYes && Judge("aab", true) == kYes && Judge("ab", true) == kNo && Judge("", true) == kNo &&
                 Judge("b", false) == kYes ? 0 : 3;
}
"""


@pytest.fixture(scope="module")
def found(tmp_path_factory):
    """The points of the source, and its functions."""
    folder = tmp_path_factory.mktemp("sources").resolve()
    (folder / "judge.cpp").write_text(SOURCE)
    return points.find(folder, folder / "judge.cpp", "c++ -std=c++20", lambda name: True, set())


def test_defects_of_a_source(found):
    made = sorted((point.operator, point.was, point.becomes) for point in found.points)
    wanted = []
    for operator, was, becomes in DEFECTS:
        was = LINES.get(was, was)
        if "#" in becomes:  # a number is one more, or one less
            head, tail = becomes.split("#")
            number = int(was[len(head) : len(was) - len(tail)])
            either = [f"{head}{number + 1}{tail}", f"{head}{number - 1}{tail}"]
            becomes = next((line for line in either if (operator, was, line) in made), either[0])
        wanted.append((operator, was, becomes))
    assert made == sorted(wanted)


def test_one_build_holds_all_defects(found, tmp_path):
    """Of the choices made at run time the check finds all but the six that change nothing."""
    chosen = dict(enumerate([point for point in found.points if point.form != "edit"], 1))
    bodies = [(100 + at, body[2], body[3]) for at, body in enumerate(found.bodies)]
    text = schemata.planted(SOURCE, list(chosen.items()), bodies, ROOT / "tests/mutants/zfc_mutant.h", "judge.cpp")
    assert [line.count("zfc_mutant::Reach") for line in text.splitlines()[2:]] == [
        line.endswith("{") or line.startswith("void Count") for line in SOURCE.splitlines()
    ]
    (tmp_path / "judge.cpp").write_text(text + CHECK)
    subprocess.run(["c++", "-std=c++20", "-w", "-o", tmp_path / "judge", tmp_path / "judge.cpp"], check=True)
    seen = tmp_path / "seen"
    seen.write_bytes(bytes(110))

    def status(number):
        env = {**os.environ, "ZFC_MUTANT": str(number), "ZFC_MUTANT_SEEN": str(seen)}
        return subprocess.run([tmp_path / "judge"], env=env, stdin=subprocess.DEVNULL).returncode

    assert status(0) == 0
    assert {at for at, byte in enumerate(seen.read_bytes()) if byte} == {*chosen, 100, 101, 102}
    survivors = {point.becomes for number, point in chosen.items() if status(number) == 0}
    either = {point.becomes for point in found.points if re.search(r"counter < (8|10)|Clamp\(counter, [24], 6", point.becomes)}
    assert len(either) == 2
    assert survivors == either | {
        "for (; *word == 'a' && counter <= 9; ++word) Count(counter);",
        "if (value <= low) return low;",
        "int counter = 1;",
        "return value >= high",
    }


def test_samples_repeat_and_listed_defects_are_known(found, tmp_path):
    first, again = (sample.Sample(found.points, [("judge.cpp", 10)], "7") for _ in range(2))
    other = sample.Sample(found.points, [("judge.cpp", 10)], "8")
    assert [point.key for point in first.chosen] == [point.key for point in again.chosen]
    assert {point.key for point in first.chosen} != {point.key for point in other.chosen}
    assert len(first.chosen) == 10 and sum(point.form == "edit" for point in first.chosen) == 2
    listed = tmp_path / "equivalent.yaml"
    listed.write_text(
        "- file: judge.cpp\n  function: Clamp\n  was: if (value < low) return low;\n"
        "  becomes: if (value <= low) return low;\n  why: both return low\n"
    )
    known = sample.Equivalent(listed)
    assert [point.operator for point in found.points if known.why(point) == "both return low"] == ["compare"]
