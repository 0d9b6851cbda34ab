"""What a command has to do in a situation, by the steps of its data."""

import re
from dataclasses import dataclass, field

from .data import listed

_OCTETS = re.compile(r"[0-9a-fA-F]{2}(?: [0-9a-fA-F]{2})*")


@dataclass(frozen=True)
class Situation:
    """What a case meets. Without a name it is what the command's data has as the ordinary one."""

    words: str = ""  # name of odd words
    host: str = ""  # name of an odd host
    device: int | None = None
    vendor: int | None = None
    virtual: bool = False
    choices: tuple = ()  # (index of a step, turn, answer or name of an odd result)
    ends: tuple = ()  # (call of the start or the end, answer)
    unopened: int | None = None  # the step whose bracket cannot open; -1: that of the start


@dataclass
class Expected:
    """What a command does in a situation."""

    status: str = ""  # name; "" is success
    also_success: bool = False  # the document of success precedes that of the failure
    reached: set = field(default_factory=set)  # the steps that held
    made: list = field(default_factory=list)  # (index of the step, turn, call, whether it is in a bracket)
    values: dict = field(default_factory=dict)  # of the fields of the document
    shown: list = field(default_factory=list)  # texts of the document of success
    settings: dict = field(default_factory=dict)  # of the library
    written: dict = field(default_factory=dict)  # files that are there, and the pattern of their content
    cleared: list = field(default_factory=list)  # files that are gone


class _End(Exception):
    """A step has decided the status."""


def steps_of(command):
    return command.get("steps")


def rule_holds(rule, device):
    """Whether a device is one of a rule's: those that, with some bits cleared, are one of its identifiers."""
    return device & ~rule["clear"] in rule["is"]


class Walk:
    """One walk through the steps of a command."""

    def __init__(self, command, common, situation):
        self._command = command
        self._common = common
        self._situation = situation
        self._choices = {(step, turn): choice for step, turn, choice in situation.choices}
        self._at_end = ""  # the status that the end of the steps has
        self._odd = set()  # the names of the odd results that were given
        self._scripts = {}
        self._results = {}
        self.expected = Expected(values=dict(command.get("values", {})), settings=dict(command.get("settings", {})))

    def run(self):
        try:
            for index, step in enumerate(steps_of(self._command)):
                if self._holds(step):
                    self.expected.reached.add(index)
                    self._step(index, step)
            self.expected.status = self._at_end
        except _End:
            pass
        for call, results in self._results.items():
            turns = [str(result) for result in results]
            name = f"TURNS_{call}" if len(turns) > 1 else f"RESULT_{call}"
            self.expected.settings[name] = ",".join(turns)
        for name, turns in self._scripts.items():
            self.expected.settings[name] = ";".join(turns)
        return self.expected

    def _holds(self, step):
        if "if" in step and not any(self._meets(case) for case in listed(step["if"])):
            return False
        return not ("unless" in step and any(self._meets(case) for case in listed(step["unless"])))

    def _meets(self, case):
        now = self._situation
        facts = {
            "words": lambda names: (now.words or "ordinary") in names,
            "host": lambda names: (now.host or "ordinary") in names,
            "odd": lambda names: any(name in (self._odd or {"ordinary"}) for name in names),
            "family": lambda names: any(self._is(name) for name in names),
            "virtual": lambda values: now.virtual in values,
        }
        return all(facts[name](listed(value)) for name, value in case.items())

    def _is(self, family):
        if self._situation.vendor != self._common["vendor"]:
            return False
        return any(rule_holds(rule, self._situation.device) for rule in self._common["families"][family])

    def _step(self, index, step):
        if "call" in step:
            for turn in range(step.get("times", 1)):
                self._call(index, turn, step)
        else:
            self._outcome(step)

    def _call(self, index, turn, step):
        call = step["call"]
        bracketed = call not in self._common["outside brackets"] and step.get("bracket") != "none"
        if bracketed and self._situation.unopened == index:
            self._outcome(step.get("unopened") or "file not found")
        self.expected.made.append((index, turn, call, bracketed))
        choice = self._choices.get((index, turn))
        answers = step.get("answers", {})
        given = dict(step.get("gives", {}))
        odd = step["odd"][choice] or {} if isinstance(choice, str) else {}
        answer = choice if isinstance(choice, int) else odd.get("answer", good_answer(step))
        if isinstance(choice, str):
            self._odd.add(choice)
            given.update({name: value for name, value in odd.items() if name != name.lower()})
        if answers:
            self._results.setdefault(call, []).append(answer)
        for name, value in given.items():
            text = setting(value).replace("{answer}", str(answer))
            if name.startswith("SCRIPT_"):
                self._scripts.setdefault(name, []).append(text)
            else:
                self.expected.settings[name] = text
        if answers:
            self._outcome(answers[answer] if answer in answers else answers["else"])
        self._outcome(odd)

    def _outcome(self, outcome):
        if outcome == "go on":
            return
        if isinstance(outcome, str):
            self._end(outcome)
        self._odd.update(listed(outcome.get("as", [])))
        self.expected.values.update(outcome.get("set", {}))
        self.expected.shown += listed(outcome.get("shows", []))
        self.expected.written.update(outcome.get("writes", {}))
        self.expected.cleared += listed(outcome.get("clears", []))
        if "status at the end" in outcome:
            self._at_end = outcome["status at the end"].replace("success", "")
        if "status" in outcome:
            self.expected.also_success = outcome.get("also success", False)
            self._end(outcome["status"].replace("success", ""))

    def _end(self, status):
        self.expected.status = status
        raise _End


def good_answer(step):
    """The answer with which the command goes on: the first one of the data that says so."""
    answers = step.get("answers", {})
    return next((answer for answer, outcome in answers.items() if outcome == "go on" and answer != "else"), 0)


def setting(value):
    """A value of the library's settings. Bytes are hexadecimal digits, with blanks between them or without; or they are
    given by their offsets: {size: 48, fill: 255, 0: "464d4253"}. The parts of a list are joined."""
    if isinstance(value, list):
        return "".join(setting(part) for part in value)
    if not isinstance(value, dict):
        text = str(value)
        return text.replace(" ", "") if _OCTETS.fullmatch(text) else text
    content = bytearray([value.get("fill", 0)]) * value["size"]
    for offset, digits in value.items():
        if isinstance(offset, int):
            raw = bytes.fromhex(digits.replace(" ", "").replace(":", ""))
            content[offset : offset + len(raw)] = raw
    return bytes(content).hex()
