"""A stand-in for the host's shell: reads a plug-in's descriptor by its grammar, runs a command's execute line through
busybox sh, checks that the document fits the command's output-spec, and shows it.

What no text about the shell says is decided here for the strict side: a value goes into the execute line as it is, and
nothing is escaped.
"""

import csv
import io
import json
import re

from lxml import etree

NAMESPACE = "{http://www.vmware.com/Products/ESX/5.0/esxcli/}"
PROGRAM = "/opt/ZunaFcEsxcliPlugin/bin/zfcesxcli"
TYPES = ("string", "int", "bool", "string-list")
VALUES = {
    "string": lambda text: True,
    "int": lambda text: re.fullmatch(r"-?\d+", text) is not None,
    "bool": lambda text: text in ("true", "false"),
}


class Refused(Exception):
    """What the shell says about words that name no command, or parameters that it does not take."""


class Misfit(Exception):
    """A document that the shell cannot take."""


def _only(element, *names):
    """The children of an element, which are exactly these, in this order."""
    assert [child.tag for child in element] == [NAMESPACE + name for name in names], (element.tag, element.attrib)
    return list(element)


def _text(element):
    assert len(element) == 0
    return element.text or ""


class Descriptor:
    def __init__(self, path):
        root = etree.parse(str(path)).getroot()
        assert root.tag == NAMESPACE + "plugin"
        version, namespaces, commands = _only(root, "version", "namespaces", "commands")
        assert re.fullmatch(r"\d+\.\d+\.\d+", _text(version))
        self.namespaces = {}
        for namespace in namespaces:
            assert namespace.tag == NAMESPACE + "namespace" and [*namespace.attrib] == ["path"]
            (description,) = _only(namespace, "description")
            assert namespace.get("path") not in self.namespaces and _text(description).strip()
            self.namespaces[namespace.get("path")] = _text(description)
        self.commands = {}
        for element in commands:
            command = Command(element)
            assert command.path not in self.commands
            self.commands[command.path] = command

    def missing_levels(self):
        """Every level of a path that no namespace has."""
        levels = set()
        for path in [*self.namespaces, *(command.rpartition(".")[0] for command in self.commands)]:
            parts = path.split(".")
            levels |= {".".join(parts[:depth]) for depth in range(1, len(parts) + 1)}
        return levels - {*self.namespaces}

    def parse(self, words):
        """The command that the words name, and the values of its parameters."""
        names = []
        rest = list(words)
        while rest and not rest[0].startswith("-"):
            names.append(rest.pop(0))
        command = self.commands.get(".".join(names))
        if command is None:
            raise Refused(f"Unknown command or namespace {' '.join(names)}")
        return command, command.values(rest)


class Command:
    def __init__(self, element):
        self.path = element.get("path")
        assert element.tag == NAMESPACE + "command" and re.fullmatch(r"\w+(\.\w+)+", self.path)
        description, inputs, output, form, execute = _only(
            element, "description", "input-spec", "output-spec", "format-parameters", "execute"
        )
        assert _text(description).strip()
        self.parameters = [Parameter(child) for child in inputs]
        for names in ([p.name for p in self.parameters], [p.short for p in self.parameters]):
            assert len(names) == len({*names}), (self.path, names)
        (self.output,) = output
        _check_spec(self.output)
        self.formatter = _text(form[0])
        assert form[0].tag == NAMESPACE + "formatter" and self.formatter in ("simple", "table", "list")
        self.hints = {child.tag.removeprefix(NAMESPACE): _text(child) for child in form[1:]}
        self.execute = _text(execute)

    def values(self, words):
        """The values of `--name=value`, `--name value`, `-n value` and `-n=value`."""
        values = {}
        rest = list(words)
        while rest:
            word, equals, value = rest.pop(0).partition("=")
            found = [p for p in self.parameters if word in (f"--{p.name}", f"-{p.short}")]
            if not found:
                raise Refused(f"Invalid option {word}")
            if not equals:
                if not rest:
                    raise Refused(f"{word} needs a value")
                value = rest.pop(0)
            values[found[0].name] = found[0].checked(value)
        for parameter in self.parameters:
            if parameter.required and parameter.name not in values:
                raise Refused(f"Missing required parameter -{parameter.short}|--{parameter.name}")
        return values

    def line(self, values):
        """The line that goes to the shell. A parameter that is not given has no text."""
        return _expanded(self.execute, values)

    def check(self, output):
        """The document of a run, checked against the output-spec, as plain data. Misfit when it does not fit."""
        if output.startswith(b"ERROR:"):
            raise Misfit(output.decode(errors="replace"))
        try:
            document = etree.fromstring(output)
        except etree.XMLSyntaxError as error:
            raise Misfit(f"not well-formed: {error}") from error
        if document.tag != "output" or len(document) != 1:
            raise Misfit(f"<{document.tag}> with {len(document)} elements")
        return _fitted(document[0], self.output, self.path)


class Parameter:
    def __init__(self, element):
        assert element.tag == NAMESPACE + "parameter"
        assert {*element.attrib} == {"name", "shortname", "type", "required"}
        self.name, self.short = element.get("name"), element.get("shortname")
        assert re.fullmatch(r"[a-z][a-z0-9-]*", self.name) and re.fullmatch(r"[a-zA-Z]", self.short)
        self.type = element.get("type")
        assert self.type in TYPES and element.get("required") in ("true", "false")
        self.required = element.get("required") == "true"
        assert element[0].tag == NAMESPACE + "description" and _text(element[0]).strip()
        assert all(child.tag == NAMESPACE + "constant" for child in element[1:])
        self.constants = [_text(child) for child in element[1:]]

    def checked(self, value):
        if self.constants and value not in self.constants:
            raise Refused(f"Invalid value for --{self.name}: {value}")
        if not VALUES[self.type](value):
            raise Refused(f"--{self.name} is no {self.type}: {value}")
        return value


def _expanded(text, values):
    """The text with $val{name} and $if{name, text} replaced; braces within an $if nest."""
    out = []
    at = 0
    while at < len(text):
        if text.startswith("$val{", at):
            end = text.index("}", at)
            out.append(values.get(text[at + 5 : end], ""))
            at = end + 1
        elif text.startswith("$if{", at):
            end, depth = at + 4, 1
            while depth:
                depth += {"{": 1, "}": -1}.get(text[end], 0)
                end += 1
            name, _, inner = text[at + 4 : end - 1].partition(",")
            if name.strip() in values:
                out.append(_expanded(inner, values))
            at = end
        else:
            out.append(text[at])
            at += 1
    return "".join(out)


def _check_spec(spec):
    """An output-spec is made of structures, lists of structures and plain types."""
    name = spec.tag.removeprefix(NAMESPACE)
    if name == "structure":
        assert spec.get("typeName")
        fields = [field.get("name") for field in spec]
        assert fields and len(fields) == len({*fields}) and all(field.tag == NAMESPACE + "field" for field in spec)
        for field in spec:
            (inner,) = field
            _check_spec(inner)
    elif name == "list":
        assert spec.get("type") == "structure" and len(spec) == 1
        _check_spec(spec[0])
    else:
        assert name in ("string", "int", "bool") and len(spec) == 0


def _fitted(element, spec, place):
    """The element as data: a list, a dict of fields, or a value."""
    name = spec.tag.removeprefix(NAMESPACE)
    if element.tag != name:
        raise Misfit(f"{place}: <{element.tag}> in place of <{name}>")
    if name == "list":
        if element.get("type") != spec.get("type"):
            raise Misfit(f"{place}: a list of {element.get('type')}")
        return [_fitted(child, spec[0], f"{place}[{number}]") for number, child in enumerate(element)]
    if name == "structure":
        return _fitted_structure(element, spec, place)
    text = element.text or ""
    if len(element) or not VALUES[name](text):
        raise Misfit(f"{place}: {text!r} is no {name}")
    return text


def _fitted_structure(element, spec, place):
    if element.get("typeName") != spec.get("typeName"):
        raise Misfit(f"{place}: structure {element.get('typeName')} in place of {spec.get('typeName')}")
    here = [field.get("name") for field in element]
    wanted = [field.get("name") for field in spec]
    if not is_order_fine(element, here, wanted):
        raise Misfit(f"{place}: fields {here} in place of {wanted}")
    inner = {field.get("name"): field[0] for field in spec}
    data = {}
    for field in element:
        if len(field) != 1:
            raise Misfit(f"{place}/{field.get('name')}: {len(field)} values")
        data[field.get("name")] = _fitted(field[0], inner[field.get("name")], f"{place}/{field.get('name')}")
    return data


def is_order_fine(structure, here, wanted):
    """A success has all fields in their order. A failure may lack those after the message, and says first whether a
    reboot is needed."""
    if here == wanted:
        return True
    message = structure.xpath("field[@name='Message']/string/text()")
    if message == ["Success"] or not {*here} <= {*wanted}:
        return False
    if here[:1] == ["Reboot Required"]:
        here = here[1:]
        wanted = [name for name in wanted if name != "Reboot Required"]
    return here == [name for name in wanted if name in here]


def shown(command, data, formatter=None):
    """The data as the shell shows it: as the command wants it, or as csv or json."""
    formatter = formatter or command.formatter
    if formatter == "json":
        return json.dumps(data)
    rows = data if isinstance(data, list) else [data]
    if formatter in ("csv", "table"):
        columns = command.hints.get("table-columns", ",".join(rows[0]) if rows else "").split(",")
        if formatter == "csv":
            stream = io.StringIO()
            writer = csv.writer(stream)
            writer.writerow(columns)
            writer.writerows([row.get(column, "") for column in columns] for row in rows)
            return stream.getvalue()
        widths = [max([len(column), *(len(str(row.get(column, ""))) for row in rows)]) for column in columns]
        lines = [columns, ["-" * width for width in widths], *([str(row.get(c, "")) for c in columns] for row in rows)]
        return "".join("  ".join(cell.ljust(w) for cell, w in zip(line, widths)).rstrip() + "\n" for line in lines)
    return "".join(_listed(row, 0) for row in rows)


def _listed(data, depth):
    lines = []
    for name, value in data.items():
        if isinstance(value, list):
            lines.append(f"{'   ' * depth}{name}:\n")
            lines += [_listed(row, depth + 1) for row in value]
        else:
            lines.append(f"{'   ' * depth}{name}: {value}\n")
    return "".join(lines)
