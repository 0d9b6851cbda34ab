"""Which calls of the device library the matrix crosses."""

import re

from zfc.runner import ROOT

from .walk import steps_of

_CALL = re.compile(r"\b(TORPI_\w+)\(")


def calls_of_library():
    header = ROOT / "src/framework/device_library/calls.h"
    return set(_CALL.findall(header.read_text()))


def uncrossed_calls(nodes, common):
    """Calls of the library that no command's data has, and calls in the data that the library does not have."""
    crossed = {*common["start"], *common["end"]}
    for node in nodes:
        for command in node.commands:
            crossed.update(step["call"] for step in steps_of(command) or [] if "call" in step)
    known = calls_of_library()
    excused = common["never made"]
    missing = [f"the library's call {call} is never crossed" for call in sorted(known - crossed - excused.keys())]
    missing += [f"the library has no call {call}" for call in sorted((crossed | excused.keys()) - known)]
    return missing + [f"{call} is made, and common.yaml says never" for call in sorted(excused.keys() & crossed)]


def unreached_steps(nodes, wanted, reached):
    """Steps that hold in no case: their data says nothing. `reached` has the steps that did, by node and command."""
    for node in nodes:
        for command in node.commands if wanted is None or node.name in wanted else ():
            for index, step in enumerate(steps_of(command) or []):
                if index not in reached.get((node.name, command.name), ()):
                    yield f"tests/faults/{node.name}.yaml: no case of {command.name} reaches step {index + 1}, {step}"
