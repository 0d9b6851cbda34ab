"""Measures the program beside plain C programs: `table` prints everything, `check` compares the instruction counts with
bench/ceilings.txt, `--update` writes that file. bench/run and bench/check build first and then call this."""

import hashlib
import os
import re
import subprocess
import sys
import time
from pathlib import Path
from statistics import median

ROOT = Path(__file__).resolve().parents[1]
BENCH = Path(os.environ.get("ZFC_BUILD_DIR", ROOT / "build" / "release")).resolve() / "bench"
CEILINGS = ROOT / "bench" / "ceilings.txt"
ROOM = 1.03

ADAPTERS = [str(BENCH / "bare/bin/zfcesxcli"), "-t", "adapter", "list"]
PLAIN_ADAPTERS = [str(BENCH / "bare/bin/plain_adapter_list")]
LUN_PROGRAM = str(BENCH / "luns/bin/zfcesxcli")
LUNS = [LUN_PROGRAM, "-t", "lun", "list"]
TARGETS = [LUN_PROGRAM, "-t", "target", "list"]
LAST_LUN = "FC_50:00:0e:11:07:00:00:00_Target_50:00:0e:11:07:00:00:ff_LUN_63"
LOOK_UP = [LUN_PROGRAM, "-t", "lun", "-v", "info", "get", LAST_LUN]
BY_HAND = [str(BENCH / "luns/bin/plain_lun_list_by_hand")]
BY_PRINTF = [str(BENCH / "luns/bin/plain_lun_list")]
WALK = [str(BENCH / "luns/bin/plain_walk")]

TARGETS_IN_ALL = 8 * 256
SMALL, USUAL, LARGE = 16, 64, 1024  # LUNs of a target

# The same instructions on every processor: the C library's functions for this one alone are left out.
PLAIN_PROCESSOR = "glibc.cpu.hwcaps=-AVX2,-AVX512F,-AVX512VL,-AVX_Fast_Unaligned_Load,-ERMS,-FSRM"


def environment(luns=USUAL, **more):
    return {"PATH": "/usr/bin:/bin", "BENCH_LUNS": str(luns), **more}


class Run:
    """One run with standard output thrown away: milliseconds from start to exit, page faults, peak memory in KiB."""

    def __init__(self, command, luns=USUAL):
        nowhere = [(os.POSIX_SPAWN_OPEN, 1, "/dev/null", os.O_WRONLY, 0)]
        begin = time.perf_counter()
        child = os.posix_spawn(command[0], command, environment(luns), file_actions=nowhere)
        _, status, usage = os.wait4(child, 0)
        self.ms = (time.perf_counter() - begin) * 1e3
        if status != 0:
            sys.exit(f"{command} ended with {status}")
        self.faults = usage.ru_minflt
        self.peak = usage.ru_maxrss


def measured(rounds, *commands):
    """The runs of each command, given as (command, LUNs of a target); in turns, so that all have the same noise."""
    runs = [[] for _ in commands]
    for _ in range(rounds):
        for made, (command, luns) in zip(runs, commands):
            made.append(Run(command, luns))
    return runs


def instructions(command, luns=USUAL):
    """Instructions in user space, counted by valgrind."""
    counted = subprocess.run(
        ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *command],
        env=environment(luns, GLIBC_TUNABLES=PLAIN_PROCESSOR),
        stdout=subprocess.DEVNULL,
        stderr=subprocess.PIPE,
        text=True,
        check=True,
    )
    return int(re.search(r"Collected : (\d+)", counted.stderr)[1])


def digest(command):
    """Of the output. Keeping the output itself would raise this process's peak memory, which its children start from."""
    with subprocess.Popen(command, env=environment(), stdout=subprocess.PIPE) as running:
        return hashlib.file_digest(running.stdout, "sha256").digest()


def least(runs):
    return min(run.ms for run in runs)


ROWS = []


def row(what, program, other, wanted="", *, unit="", ratio=None, digits=0):
    shown = f"{program / other:.2f}" if ratio is None else ratio
    ROWS.append((what, f"{program:,.{digits}f}{unit}", f"{other:,.{digits}f}{unit}", shown, wanted))


def times(what, program, other, wanted):
    row(f"{what}: time", least(program), least(other), wanted, unit=" ms", digits=2)
    row(f"{what}: time, median", median(r.ms for r in program), median(r.ms for r in other), unit=" ms", digits=2)


def measure_start():
    program, plain = measured(300, (ADAPTERS, USUAL), (PLAIN_ADAPTERS, USUAL))
    times("`adapter list` / plain C", program, plain, "1.10")
    row("`adapter list` / plain C: instructions", instructions(ADAPTERS), instructions(PLAIN_ADAPTERS), "1.25")
    faults, plain_faults = (int(median(run.faults for run in runs)) for runs in (program, plain))
    row("`adapter list` / plain C: page faults", faults, plain_faults, "+10", ratio=f"{faults - plain_faults:+}")


def measure_list():
    program, hand, printf, walk = measured(101, (LUNS, USUAL), (BY_HAND, USUAL), (BY_PRINTF, USUAL), (WALK, USUAL))
    times("`lun list` / by hand", program, hand, "1.20")
    row("`lun list` / by hand: instructions", instructions(LUNS), instructions(BY_HAND))
    times("`lun list` / with printf", program, printf, "")
    times("`lun list` / bare walk", program, walk, "")
    row("`lun list` / with printf: instructions", instructions(LUNS), instructions(BY_PRINTF))
    peak, bare = (int(median(run.peak for run in runs)) for runs in (program, walk))
    row("`lun list` / bare walk: peak memory", peak, bare, "+2,048 KiB", unit=" KiB", ratio=f"{peak - bare:+,} KiB")


def measure_growth():
    large, small, walk = measured(9, (LUNS, LARGE), (LUNS, SMALL), (WALK, LARGE))
    of_large, of_small = TARGETS_IN_ALL * LARGE, TARGETS_IN_ALL * SMALL
    row(
        "`lun list` of 2,097,152 / of 32,768: time of a LUN",
        least(large) / of_large * 1e6,
        least(small) / of_small * 1e6,
        "1.10",
        unit=" ns",
    )
    row(
        "`lun list` of 2,097,152 / of 32,768: instructions of a LUN",
        instructions(LUNS, LARGE) / of_large,
        instructions(LUNS, SMALL) / of_small,
        "1.10",
    )
    peak, bare = (int(median(run.peak for run in runs)) for runs in (large, walk))
    what = "`lun list` of 2,097,152 / bare walk: peak memory"
    row(what, peak, bare, "+2,048 KiB", unit=" KiB", ratio=f"{peak - bare:+,} KiB")


def measure_others():
    targets, walk_targets, look_up, walk_last = measured(
        101, (TARGETS, USUAL), ([*WALK, "targets"], USUAL), (LOOK_UP, USUAL), ([*WALK, "last"], USUAL)
    )
    times("`target list` / bare walk", targets, walk_targets, "1.05")
    times("look-up of the last LUN / bare walk", look_up, walk_last, "1.05")


def print_table():
    assert digest(ADAPTERS) == digest(PLAIN_ADAPTERS)
    assert digest(LUNS) == digest(BY_HAND) == digest(BY_PRINTF)
    found = subprocess.run(LOOK_UP, env=environment(), stdout=subprocess.PIPE, check=True).stdout
    assert b"<string>Success</string>" in found
    for measure in (measure_start, measure_list, measure_growth, measure_others):
        measure()
    print("| What | Program | Other side | Ratio | Wanted at most |")
    print("|---|---:|---:|---:|---:|")
    for cells in ROWS:
        print("| " + " | ".join(cells) + " |")


COUNTED = {"start": ADAPTERS, "list": LUNS, "look-up": LOOK_UP}


def update_ceilings():
    head = [line for line in CEILINGS.read_text().splitlines() if line.startswith("#")] if CEILINGS.exists() else []
    counts = [f"{name} {instructions(command)}" for name, command in COUNTED.items()]
    CEILINGS.write_text("\n".join(head + counts) + "\n")
    print("\n".join(counts))


def check_ceilings():
    lines = [line for line in CEILINGS.read_text().splitlines() if line and not line.startswith("#")]
    ceilings = {name: int(count) for name, count in (line.split() for line in lines)}
    if ceilings.keys() != COUNTED.keys():
        sys.exit(f"{CEILINGS} has to name {', '.join(COUNTED)}")
    failed = False
    for name, command in COUNTED.items():
        count, ceiling = instructions(command), ceilings[name]
        is_above = count > ceiling * ROOM
        failed = failed or is_above
        verdict = f"more than {ROOM - 1:.0%} above" if is_above else "holds"
        print(f"{name}: {count:,} instructions, {count - ceiling:+,} ({count / ceiling - 1:+.1%}) to {ceiling:,}: {verdict}")
    if failed:
        sys.exit("bench/check: too many instructions. If they are worth it: bench/check --update")


if __name__ == "__main__":
    actions = {"table": print_table, "check": check_ceilings, "--update": update_ceilings}
    if len(sys.argv) != 2 or sys.argv[1] not in actions:
        sys.exit("usage: bench/run, or bench/check [--update]")
    missing = [program for program in (ADAPTERS[0], PLAIN_ADAPTERS[0], LUN_PROGRAM, WALK[0]) if not Path(program).exists()]
    if missing:
        sys.exit(f"bench: not built: {', '.join(missing)}; bench/build makes them")
    actions[sys.argv[1]]()
