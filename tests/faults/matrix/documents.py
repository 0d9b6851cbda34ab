"""The documents that a command prints, by the operations that write them."""

import re

RULER = "*" * 52 + "\n"
ANY = re.compile(r"(?s:.*)")
ANY_NUMBER = re.compile(r"-?\d+")


class _Form:
    """Writes the parts of a document as a regular expression: fixed parts are literal."""

    def __init__(self, form):
        self.xml = form == "xml"
        self.text = ""

    def literal(self, xml, text):
        self.text += re.escape(xml if self.xml else text)

    def open(self):
        self.literal('<?xml version="1.0"?><output xmlns:esxcli="znfc">\n', RULER)

    def close(self):
        self.literal("</output>\n", RULER)

    def begin_list(self):
        self.literal('<list type="structure">\n', "")

    def end_list(self):
        self.literal("</list>\n", "")

    def begin_structure(self, name):
        self.literal(f'<structure typeName="{name}">\n', f"{name}:\n")

    def end_structure(self):
        self.literal("</structure>\n", "")

    def begin_field(self, name):
        self.literal(f'<field name="{name}">\n', f"{name}: ")

    def end_field(self):
        self.literal("</field>\n", "")

    def value(self, kind, value, end):
        """`value` is a text, or a pattern."""
        pattern = value.pattern if isinstance(value, re.Pattern) else re.escape(value)
        self.text += f"<{kind}>{pattern}</{kind}>" if self.xml else pattern + re.escape(end)

    def field(self, kind, name, value):
        self.begin_field(name)
        self.value(kind, value, "\n")
        self.end_field()


def _pattern(value):
    """A value of the data: "*" is any text, and /.../ is a regular expression."""
    if value == "*":
        return ANY
    if isinstance(value, str) and len(value) > 1 and value[0] == value[-1] == "/":
        return re.compile(value[1:-1])
    return value


def _write_field(out, item, values):
    if isinstance(item, str):
        item = {item: "*"}
    for name, shape in item.items():
        given = values.get(name, shape)
        if isinstance(given, bool):
            out.field("bool", name, "true" if given else "false")
        elif isinstance(given, int) or given == "#":
            out.field("int", name, ANY_NUMBER if given == "#" else str(given))
        elif isinstance(given, list):
            out.begin_field(name)
            out.begin_list()
            for structure in given:
                _write_structure(out, structure, values)
            out.end_list()
            out.end_field()
        else:
            out.field("string", name, _pattern(given))


def _write_structure(out, structure, values):
    for name, fields in structure.items():
        out.begin_structure(name)
        if isinstance(fields, str):
            out.begin_field(fields.removeprefix("report").strip() or "Data")
            out.value("string", ANY, "")
            out.end_field()
        else:
            for item in fields:
                _write_field(out, item, values)
        out.end_structure()


def document(form, shape, values):
    """The pattern of a document: a structure with its fields, those in `values` with these values.

    A field is its name alone (any text), or has a text, true or false (a bool), a number or "#" (an int), or a list of
    structures; a structure is its fields, or "report" for the field "Data" that has a report's text, "report X" for one
    of another name.
    """
    out = _Form(form)
    out.open()
    _write_structure(out, shape, values)
    out.close()
    return out.text


def list_document(form, structure, name, identifiers):
    """The pattern of a list of identifiers."""
    out = _Form(form)
    out.open()
    out.begin_list()
    for identifier in identifiers:
        out.begin_structure(structure)
        out.field("string", name, identifier)
        out.end_structure()
    out.end_list()
    out.close()
    return out.text
