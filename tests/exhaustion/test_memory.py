"""Every request for memory of every leaf is refused: alone, and with all that follow."""

import pytest

from bench import places
from exhaustion import FUNCTIONS, LIBRARY, MEMORY, PROGRAM, signal_name
from leaves import LEAVES
from outcomes import AGAIN, EMPTY, ENDED, SAME, SESSION, SILENT, TABLE, documents, is_whole, no_file, of_memory


# Of a change that the library saves there are many thousands, most of them of its YAML reader: the first, and from
# there ever wider steps.
ALL_UP_TO = 60
STEP = 1.25


def library_requests(count):
    number = 1
    while number <= count:
        yield number
        number = number + 1 if number < ALL_UP_TO else int(number * STEP)


def first_request(leaf, events):
    """The text form of `setFile` is the plain form up to the report: what comes before it, with many hundred requests,
    is tried in the plain form alone."""
    if leaf.is_xml or leaf.plain != "setFile":
        return 1
    return max(event.number for event in events if event.via == "fopen")


def failures_of(runs, numbers, allowed_at, **options):
    """What went wrong at each refused request, as lines; and how many runs there were."""
    wrong = []
    made = 0
    for number in numbers:
        for onward in (0, 1):
            run = runs.run(watch=MEMORY, at=number, onward=onward, **options)
            made += 1
            if why := runs.verdict(run, allowed_at(number, run, onward)):
                wrong.append(described(runs, number, onward, why, options))
            if run.counted == number:
                break  # nothing was asked for afterwards, so there is nothing more to refuse
    return wrong, made


def described(runs, number, onward, why, options):
    run = runs.run(watch=MEMORY, at=number, onward=onward, callers=1, **options)
    event = run.event and (FUNCTIONS[run.event.what], run.event.size, run.event.via)
    head = f"request {number}{' and all after' if onward else ''}: {event}: {why}"
    return "\n    ".join([head, f"{run.stdout[-300:]!r} {run.stderr!r}", *places(run.callers)[:8]])


@pytest.mark.parametrize("leaf", LEAVES, ids=str)
def test_of_the_program(bench, leaf, record_property):
    with bench.leaf(leaf) as runs:
        events = [event for event in runs.run(watch=MEMORY).events if event.owner == PROGRAM]
        streams = [event.number for event in events if event.via == "fdopen"]
        all_later = {ENDED, SAME, SILENT, EMPTY, no_file(leaf), AGAIN + no_file(leaf)}
        all_later.update(TABLE["buffers"].get(leaf.name, {}).values())

        def allowed_at(number, run, onward):
            assert run.event is not None, "the runs differ"
            first = of_memory(leaf, events[number - 1], streams)
            if leaf.plain == "shell":
                return [SESSION]
            return sorted({first, *all_later}) if onward else [first]

        numbers = range(first_request(leaf, events), len(events) + 1)
        wrong, made = failures_of(runs, numbers, allowed_at)
        record_property("requests", len(events))
        record_property("runs", made)
        assert not wrong, f"{len(wrong)} of {made}:\n" + "\n".join(wrong[:8])


@pytest.mark.parametrize("leaf", [leaf for leaf in LEAVES if not leaf.is_xml], ids=str)
def test_of_the_device_library(bench, leaf, record_property):
    """The simulated library, when it has no memory, says so or answers with a failure; whatever the program then
    prints is whole."""
    with bench.leaf(leaf) as runs:
        count = runs.run(watch=MEMORY, owners=LIBRARY).counted
        wrong = []
        for number in library_requests(count):
            for onward in (0, 1):
                run = runs.run(watch=MEMORY, owners=LIBRARY, at=number, onward=onward)
                why = None if run.status == 0 else f"ended with {signal_name(run.status)}"
                why = why or (None if all(map(is_whole, documents(run.stdout))) else "not whole")
                if why := why or runs.mistake_in_files(run):
                    wrong.append(described(runs, number, onward, why, {"owners": LIBRARY}))
        record_property("requests", count)
        assert not wrong, f"{len(wrong)} of {count}:\n" + "\n".join(wrong[:4])
