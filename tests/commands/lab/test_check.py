"""zfc-lab check: mistakes of host files and state files, and what good ones hold."""

import os
import subprocess
import time

import pytest

from zfc.runner import BUILD, ROOT

LAB = BUILD / "bin" / "zfc-lab"


@pytest.fixture
def check(tmp_path):
    """Runs `zfc-lab check` in a folder of its own. Returns the exit status, standard output and standard error."""

    def run(*words):
        done = subprocess.run([LAB, "check", *words], capture_output=True, cwd=tmp_path, timeout=60)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    return run


def written(folder, name, content):
    path = folder / name
    path.write_bytes(content if isinstance(content, bytes) else content.encode())
    return name


GOOD = [
    pytest.param("adapters: []\n", "0 adapters, 0 ports, 0 targets, 0 LUNs", id="empty"),
    pytest.param(
        "adapters:\n  - family: elm\n    ports: [{targets: {luns: 0}}]\n",
        "1 adapter, 1 port, 1 target, 1 LUN",
        id="one of each",
    ),
    pytest.param(
        "adapters:\n  - {family: elm, ports: [{}, {targets: [{count: 3, luns: 0-15}, {luns: [1, 5-7]}]}]}\n"
        "  - {family: hazel, ports: [{npiv: [{}, {targets: {}}]}]}\n",
        "2 adapters, 3 ports, 2 virtual ports, 5 targets, 52 LUNs",
        id="several",
    ),
    pytest.param(
        "adapters: [{family: elm, ports: [{targets: {count: 128, luns: 0-16383}}]}]\n",
        "1 adapter, 1 port, 128 targets, 2097152 LUNs",
        id="millions of LUNs",
    ),
    pytest.param(
        "reboot-required: true\nadapters:\n  ZX100/A:\n    ports: {21:00:00:0e:1e:11:22:33: {}}\n",
        "state of 1 adapter and 1 port, reboot required",
        id="state",
    ),
    pytest.param("adapters: {}\n", "state of 0 adapters and 0 ports", id="empty state"),
]


@pytest.mark.parametrize("content, holds", GOOD)
def test_good_file_is_summed_up_in_a_line(check, tmp_path, content, holds):
    name = written(tmp_path, "lab.yaml", content)
    assert check(name) == (0, f"lab.yaml: good: {holds}\n", "")


def test_output_that_is_full():
    with open("/dev/full", "wb") as full:
        done = subprocess.run([LAB, "check", "--help"], stdout=full, stderr=subprocess.PIPE, timeout=60)
    assert (done.returncode, done.stderr) == (
        1,
        b"zfc-lab: standard output: can't be written: No space left on device\n",
    )


def test_pipe_as_image_is_refused(check, tmp_path):
    """Nobody writes to it: reading it would never end."""
    os.mkfifo(tmp_path / "pipe")
    name = written(tmp_path, "lab.yaml", "adapters: [{family: elm, ports: [{sfp: {image: pipe}}]}]\n")
    assert check(name) == (1, "lab.yaml:1:48: image: expected a regular file, got 'pipe'\n", "")


def test_millions_of_luns_take_no_memory(check, tmp_path):
    """They are counted, not built: a program with 100 MB of address space checks them."""
    name = written(tmp_path, "lab.yaml", "adapters: [{family: elm, ports: [{targets: {count: 256, luns: 0-16383}}]}]\n")
    limited = ["sh", "-c", 'ulimit -v 100000; exec "$0" check "$1"', LAB, name]
    if os.environ.get("ZFC_SANITIZE") == "1":
        pytest.skip("the sanitizer needs address space of its own")
    done = subprocess.run(limited, capture_output=True, cwd=tmp_path, timeout=60)
    assert done.returncode == 0 and done.stdout.endswith(b" 4194304 LUNs\n"), done


@pytest.mark.parametrize("name", sorted(path.name for path in (ROOT / "examples").glob("*.yaml")))
def test_examples_are_good(check, name):
    status, shown, _ = check(ROOT / "examples" / name)
    assert status == 0 and ": good: " in shown, shown


# Each with its lines, without the name of the file.
BAD = [
    pytest.param(
        "adapters:\n  - family: dahla\n    bus: 65536\n    seriel: A\n",
        [
            "2:13: family: expected one of aster, birch, cedar, ginkgo, elm, fern, hazel, iris, dahlia, got 'dahla'; "
            "did you mean 'dahlia'?",
            "3:10: bus: expected a number from 0 to 65535, got '65536'",
            "4:5: seriel: expected one of the keys family, model, serial, manufacturer, type, vendor-id, device-id, "
            "subsystem-vendor-id, subsystem-device-id, bus, chip-revision, personality, versions, flash, memo-block, "
            "personality-change-allowed, firmware-lockdown, mezzanine, ports; did you mean 'serial'?",
        ],
        id="all at once",
    ),
    pytest.param(
        "adapters:\n\t- family: elm\n\t  serial: A\n",
        ["2:1: a tab can't indent; use blanks", "3:1: a tab can't indent; use blanks"],
        id="tabs",
    ),
    pytest.param("adapters: []\nadapters: []\n", ["2:1: adapters: is here twice"], id="key twice"),
    pytest.param(
        "adapters:\n  - {family: elm\n",
        ["3:1: expected ',' or the end of the brackets that begin at line 2, column 5"],
        id="open bracket",
    ),
    pytest.param(b"adapters: \xff\n", ["1:11: expected UTF-8, got bytes that are none"], id="no UTF-8"),
    pytest.param(b"a\0: 1\n", ["1:2: expected text, got a NUL byte"], id="NUL byte"),
    pytest.param(
        "adapters: []\n".encode("utf-16"), ["1:1: expected UTF-8, got UTF-16 or UTF-32"], id="UTF-16"
    ),
    pytest.param(
        "adapters: [{family: elm, ports: [{sfp: {image: none.hex}}]}]\n",
        ["1:48: image: expected a file that can be read (No such file or directory), got 'none.hex'"],
        id="missing module file",
    ),
    pytest.param(
        "adapters: [{family: elm, ports: 3}, 4]\n",
        ["1:33: ports: expected a list, got '3'", "1:37: adapters: expected a map, got '4'"],
        id="wrong types",
    ),
    pytest.param("", ["1:1: file: expected a map, got nothing"], id="empty file"),
    pytest.param("a: 1\n---\nb: 2\n", ["2:1: a second document begins here; a file holds one"], id="two documents"),
    pytest.param(
        "reboot-required: maybe\nadapters:\n  ZX100/A: {personality: both}\n",
        [
            "1:18: reboot-required: expected true or false, got 'maybe'",
            "3:26: personality: expected one of fc, cna, or a number up to 255, got 'both'",
        ],
        id="state",
    ),
]


@pytest.mark.parametrize("content, mistakes", BAD)
def test_mistakes_are_the_result(check, tmp_path, content, mistakes):
    name = written(tmp_path, "lab.yaml", content)
    assert check(name) == (1, "".join(f"lab.yaml:{mistake}\n" for mistake in mistakes), "")


def test_hundred_mistakes_are_shown(check, tmp_path):
    lines = "".join(f"  - {{family: elm, bus: x{place}}}\n" for place in range(200))
    status, shown, _ = check(written(tmp_path, "lab.yaml", "adapters:\n" + lines))
    assert status == 1
    assert shown.splitlines()[99] == "lab.yaml:101:24: bus: expected a number from 0 to 65535, got 'x99'"
    assert shown.splitlines()[100:] == ["lab.yaml: and 100 more"]


def test_short_file_of_nested_aliases_ends_at_once(check, tmp_path):
    """A billion adapters in a dozen lines."""
    lines = ["a0: &a0 [1, 1, 1, 1, 1, 1, 1, 1, 1]"]
    lines += [f"a{level}: &a{level} [{', '.join([f'*a{level - 1}'] * 9)}]" for level in range(1, 12)]
    name = written(tmp_path, "lab.yaml", "\n".join(lines) + "\nadapters: *a11\n")
    begin = time.monotonic()
    result = check(name)
    assert time.monotonic() - begin < 1
    assert result == (1, "lab.yaml: more than 4000000 values after its aliases are resolved\n", "")


def test_large_file_is_not_read_in_part(check, tmp_path):
    name = written(tmp_path, "lab.yaml", b"adapters: []\n" + b"#" * (16 << 20))
    assert check(name) == (1, "lab.yaml: larger than 16777216 bytes\n", "")


def test_file_that_is_not_there_is_a_mistake(check, tmp_path):
    written(tmp_path, "good.yaml", "adapters: []\n")
    assert check("none.yaml", "good.yaml") == (
        1,
        "none.yaml: can't be read: No such file or directory\n"
        "good.yaml: good: 0 adapters, 0 ports, 0 targets, 0 LUNs\n",
        "",
    )


def test_library_shows_the_same_lines(check, tmp_path, zfc):
    content = b"adapters:\n  - family: dahla\n    bus: x\n"
    path = zfc.file("lab.yaml", content)
    _, shown, _ = check(path)
    argv, env = zfc.command("-t adapter listcli", library="simulated", env={"TORPI_LAB_HOST": str(path)})
    done = zfc.run(argv, {**env, "TORPI_LAB_QUIET": "1"})
    assert done.stderr.decode() == shown and shown.count("\n") == 2


def test_wrong_usage(check):
    assert check() == (2, "", "zfc-lab check: expected a file\nTry 'zfc-lab check --help'.\n")
    assert check("--quick")[0] == 2


def test_help(check):
    status, shown, _ = check("--help")
    assert status == 0 and shown.startswith("Usage: zfc-lab check FILE...\n")
