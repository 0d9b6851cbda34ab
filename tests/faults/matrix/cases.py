"""The crossing: from the data of a command to its cases."""

from dataclasses import dataclass, field, replace
from functools import cache

from zfc import host as hosts

from .data import Command, Leaf
from .walk import Expected, Situation, Walk, setting, steps_of

USAGE = "?"  # asks any leaf for its usage
OUTPUT_FILE = "/var/tmp/torpi-output.log"


@dataclass
class Case:
    """One run, and what it has to do."""

    command: Command
    leaf: Leaf
    situation: Situation
    expected: Expected
    argv: list
    image: bytes  # the host
    handles: dict  # names of the handles in it
    settings: dict
    files: dict = field(default_factory=dict)
    folders: list = field(default_factory=list)
    prints: str | None = None  # the whole output, where it is no document

    @property
    def name(self):
        now = self.situation
        parts = [f"{self.command.node} {self.leaf.word}"]
        parts += [f"words: {now.words}"] if now.words else []
        parts += [f"host: {now.host}"] if now.host else []
        parts += [f"device {now.vendor:04x}:{now.device:04x}"] if now.device is not None else []
        parts += ["virtual port"] if now.virtual else []
        steps = steps_of(self.command) or []
        for step, turn, choice in now.choices:
            what = f"answers {_number(choice)}" if isinstance(choice, int) else choice
            time = f", time {turn + 1}" if steps[step].get("times", 1) > 1 or turn else ""
            parts.append(f"step {step + 1} {steps[step]['call']}{time}: {what}")
        parts += [f"{call} answers {_number(answer)}" for call, answer in now.ends]
        if now.unopened is not None:
            parts.append(f"no output file at {f'step {now.unopened + 1}' if now.unopened >= 0 else 'the start'}")
        return " | ".join(parts)


def _number(answer):
    return str(answer) if answer < 1000 else f"0x{answer:08x}"


def devices(common):
    """All devices that are crossed, as (vendor, device): those of each family with and without the bits that it
    ignores, and strangers."""
    found = dict.fromkeys(common["strangers"])
    for rules in common["families"].values():
        for rule in rules:
            for device in rule["is"]:
                found.update(dict.fromkeys((device, device | rule["clear"])))
    return [(common["vendor"], device) for device in found] + [tuple(pair) for pair in common["other vendors"]]


def representatives(common):
    """A device of each rule of each family."""
    return list(dict.fromkeys(rule["is"][0] for rules in common["families"].values() for rule in rules))


class Crossing:
    """All situations of one command."""

    def __init__(self, command, common):
        self._command = command
        self._common = common
        entry = command.get("entry", {})
        self._ordinary = Situation(device=entry.get("device", common["device"]), vendor=common["vendor"])

    def situations(self):
        """Each one once, in a fixed order."""
        return list(dict.fromkeys(self._all()))

    def _all(self):
        ordinary = self._ordinary
        yield ordinary
        yield replace(ordinary, unopened=-1)
        if self._command.path:
            yield replace(ordinary, words=USAGE)
        for call in self._common["start"] + self._common["end"]:
            for answer in self._common["answers"]:
                yield replace(ordinary, ends=((call, answer),))
        if not steps_of(self._command):
            for name in self._command.get("odd words", {}):
                yield replace(ordinary, words=name)
            return
        # What the look-up has is crossed with no failure of a call; the command's own words and hosts, and a device of
        # each family, with all.
        yield from self._named(self._command.get("odd words", {}), self._command.get("hosts", {}))
        if not self._command.get("hosts"):
            return
        adapters = [replace(ordinary, vendor=vendor, device=device) for vendor, device in devices(self._common)]
        yield from adapters
        yield from (replace(context, virtual=True) for context in [ordinary, *adapters])
        known = self._command.get("odd words", {})
        own_words = [name for name in self._command.own.get("odd words", {}) if name in known]
        named = self._named(own_words, self._command.get("odd hosts", {}))
        families = representatives(self._common)
        yield from (replace(context, device=device) for context in named for device in families)
        contexts = named + [replace(ordinary, device=device) for device in families]
        yield from contexts
        for context in [ordinary, *contexts]:
            yield from self._single(context)
        yield from self._pairs(ordinary)

    def _named(self, words, names):
        found = [replace(self._ordinary, words=name) for name in words]
        return found + [replace(self._ordinary, host=name) for name in names]

    def _walk(self, situation):
        return Walk(self._command, self._common, situation).run()

    def _choices(self, step, context):
        """What a call of a step may do beside what is ordinary."""
        answers = step.get("answers", {})
        if answers:
            named = [answer for answer in answers if answer != "else"]
            ordinary = replace(context, choices=()) == self._ordinary
            yield from dict.fromkeys([*named, *self._common["answers" if ordinary else "answers elsewhere"]])
        yield from step.get("odd", {})

    def _single(self, context, after=-1):
        """One call that does something else, for every call that is made; then one bracket that does not open."""
        made = self._walk(context).made
        calls = [call for _, _, call, _ in made]
        for at, (index, turn, call, bracketed) in enumerate(made):
            step = steps_of(self._command)[index]
            if index <= after:
                continue
            for choice in self._choices(step, context):
                yield replace(context, choices=(*context.choices, (index, turn, choice)))
            opens = bracketed and step.get("bracket") != "same" and turn == 0
            if opens and at > 0 and calls.count(calls[at - 1]) == 1 and not context.choices:
                yield replace(context, unopened=index)

    def _pairs(self, context):
        """Two calls that do something else."""
        for first in self._single(context):
            if first.unopened is None:
                yield from self._single(first, after=first.choices[0][0])


def odd_host(command, situation):
    """The data of the situation's odd host; none for the ordinary one."""
    both = {**command.get("hosts", {}), **command.get("odd hosts", {})}
    return both.get(situation.host) or {}


def place(path, identifier):
    """A path of the data: STAGED is the folder of the staged files, ID the identifier."""
    return path.replace("STAGED", "/opt/ZunaFcEsxcliPlugin/tmp").replace("ID", identifier)


class Maker:
    """Makes cases of situations."""

    def __init__(self, common):
        self._common = common
        self._image = cache(self._make_image)

    def plan(self, nodes, wanted=None):
        """All cases of these nodes, unmade: what `case` takes."""
        for node in nodes:
            for command in node.commands if wanted is None or node.name in wanted else ():
                for situation in Crossing(command, self._common).situations():
                    for leaf in command.leaves:
                        yield command, leaf, situation

    def case(self, command, leaf, situation):
        now = situation
        walks = steps_of(command) and now.words != USAGE and now.unopened != -1
        expected = Walk(command, self._common, now).run() if walks else Expected()
        host = odd_host(command, now)
        image, handles = self._host(command, now)
        identifier = host.get("identifier", command.get("identifier", ""))
        odd = {**command.get("odd words", {}), USAGE: USAGE}
        text = odd[now.words] if now.words else command.get("words", "")
        words = [{"ID": identifier, "EMPTY": ""}.get(word, word) for word in (text or "").split()]
        case = Case(
            command=command,
            leaf=leaf,
            situation=now,
            expected=expected,
            argv=[*command.path, leaf.word, *words],
            image=image,
            handles=handles,
            settings={f"HOSTILE_{name}": value for name, value in expected.settings.items()},
        )
        for path, content in {**command.get("files", {}), **host.get("files", {})}.items():
            if content is not None:
                case.files[place(path, identifier)] = content.encode()
        case.folders = [place(path, identifier) for path in host.get("folders", [])]
        expected.written = {place(path, identifier): pattern for path, pattern in expected.written.items()}
        expected.cleared = [place(path, identifier) for path in expected.cleared]
        chattering = {*self._common["start"], *(call for _, _, call, bracketed in expected.made if bracketed)}
        case.settings["HOSTILE_CHATTER"] = ",".join(sorted(chattering))
        for call, answer in now.ends:
            case.settings[f"HOSTILE_RESULT_{call}"] = str(answer)
        if now.unopened == -1:
            case.folders.append(OUTPUT_FILE)
        elif now.unopened is not None:
            case.settings["HOSTILE_SPOIL_LOG"] = f"{expected.made[-1][2]}:directory"
        if leaf.form == "text":
            case.settings["ZNFC_DEBUG_LEVEL"] = str(self._common["debug level"])
        prints = command.get("prints")
        if now.words == USAGE:
            case.prints = leaf.usage
        elif prints is not None:
            case.prints = prints.get(now.words or "ordinary", "")
        return case

    def _host(self, command, now):
        shape = odd_host(command, now)
        entry = {**command.get("entry", {}), **shape.get("entry", {})}
        entry["raw"] = {**command.get("entry", {}).get("raw", {}), **shape.get("entry", {}).get("raw", {})}
        entry.setdefault("device", now.device)
        if not shape.get("entry", {}).get("device"):
            entry["device"] = now.device
        entry["vendor"] = now.vendor
        if now.virtual:
            entry["interface"] = 3
        return self._image(_Key(shape.get("shape", {}), entry))

    @staticmethod
    def _make_image(key):
        return build_host(key.shape, key.entry).image()


class _Key:
    """A host's data as a key of a cache."""

    def __init__(self, shape, entry):
        self.shape = shape
        self.entry = entry
        self._text = repr((shape, sorted(entry.items(), key=lambda item: item[0])))

    def __hash__(self):
        return hash(self._text)

    def __eq__(self, other):
        return self._text == other._text


def _text(value):
    """A text of the data: {bytes: hexadecimal digits} for one that is none."""
    return bytes.fromhex(value["bytes"]) if isinstance(value, dict) else value


def _raw(raw):
    return {offset: bytes.fromhex(setting(value)) for offset, value in raw.items()}


def _fields(data, **made):
    return {**{name: _text(value) for name, value in data.items() if name not in made}, **made}


def _target(data):
    luns = [hosts.Lun(**_fields(lun, raw=_raw(lun.get("raw", {})))) for lun in data.get("luns", [])]
    return hosts.Target(**_fields(data, raw=_raw(data.get("raw", {})), luns=luns))


def _entry(data, ordinary):
    merged = {**ordinary, **data, "raw": {**ordinary.get("raw", {}), **data.get("raw", {})}}
    targets = [_target(target) for target in merged.get("targets", [])]
    return hosts.Fc(**_fields(merged, raw=_raw(merged["raw"]), targets=targets))


def _port(data, ordinary):
    entries = data.get("entries", [{}])
    made = None if entries is None else [_entry(entry, ordinary) for entry in entries]
    return hosts.Port(data.get("number", 0), made)


def _adapter(data, ordinary):
    ports = data.get("ports", [{}])
    return hosts.Adapter(**_fields(data, ports=None if ports is None else [_port(port, ordinary) for port in ports]))


def build_host(shape, entry):
    """A host of zfc.host by its data; what the shape leaves out is ordinary, and every entry begins as `entry`."""
    adapters = shape.get("adapters", [{}])
    made = None if adapters is None else [_adapter(adapter, entry) for adapter in adapters]
    return hosts.Host(made, shape.get("count"))
