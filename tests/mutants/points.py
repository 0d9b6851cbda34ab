"""Finds the places where a defect can be planted, with clang's syntax tree.

A point replaces the text of one expression by another. In a function the build can hold both and choose at run time; what
the compiler evaluates (a table, an enumerator, a consteval function) needs an edit and a build of its own.
"""

import hashlib
import locale
import re
import shlex
from dataclasses import asdict, dataclass
from pathlib import Path

from clang import cindex
from clang.cindex import CursorKind as Kind
from clang.cindex import TypeKind

SWAPS = {  # operator: (group, what it becomes)
    "<": ("compare", "<="),
    "<=": ("compare", "<"),
    ">": ("compare", ">="),
    ">=": ("compare", ">"),
    "==": ("compare", "!="),
    "!=": ("compare", "=="),
    "&&": ("logic", "||"),
    "||": ("logic", "&&"),
    "+": ("arithmetic", "-"),
    "-": ("arithmetic", "+"),
    "*": ("arithmetic", "/"),
    "/": ("arithmetic", "*"),
    "%": ("arithmetic", "/"),
    "<<": ("arithmetic", ">>"),
    ">>": ("arithmetic", "<<"),
    "&": ("arithmetic", "|"),
    "|": ("arithmetic", "&"),
}
FUNCTIONS = (
    Kind.FUNCTION_DECL,
    Kind.CXX_METHOD,
    Kind.CONSTRUCTOR,
    Kind.DESTRUCTOR,
    Kind.CONVERSION_FUNCTION,
    Kind.FUNCTION_TEMPLATE,
)
SCOPES = (Kind.NAMESPACE, Kind.CLASS_DECL, Kind.STRUCT_DECL, Kind.UNION_DECL, Kind.CLASS_TEMPLATE, Kind.ENUM_DECL)
INTEGERS = {
    TypeKind.CHAR_U, TypeKind.UCHAR, TypeKind.USHORT, TypeKind.UINT, TypeKind.ULONG, TypeKind.ULONGLONG, TypeKind.CHAR_S,
    TypeKind.SCHAR, TypeKind.SHORT, TypeKind.INT, TypeKind.LONG, TypeKind.LONGLONG,
}  # fmt: skip
NUMBERS = INTEGERS | {TypeKind.FLOAT, TypeKind.DOUBLE, TypeKind.LONGDOUBLE}
_COMMENT = re.compile(r'("(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)+\')|//[^\n]*|/\*.*?\*/', re.S)
_INTEGER = re.compile(r"(0[xX][0-9a-fA-F']+|0[bB][01']+|[0-9][0-9']*)([uUlLzZ]*)")
_FLOAT = re.compile(r"[0-9.]+(?:[eE][-+]?[0-9]+)?([fFlL]?)")


@dataclass
class Point:
    file: str
    function: str
    operator: str
    start: int  # offsets in bytes of the file
    end: int
    line: int
    end_line: int
    was: str  # the lines, blanks joined
    becomes: str
    mutated: str  # the text in place of [start, end)
    form: str  # "value": a choice of two expressions; "statement": the text is dropped; "jump"; "edit"
    constant: bool  # in a constexpr function

    @property
    def key(self):
        return (self.file, self.function, self.was, self.becomes)

    @property
    def folder(self):
        return self.file.split("/")[0] + ("/" + self.file.split("/")[1] if self.file.count("/") > 1 else "")

    def rank(self, seed):
        text = f"{seed}|{self.operator}|{'|'.join(self.key)}"
        return hashlib.sha1(text.encode()).hexdigest()


def flat(text):
    """A text on one line, without comments."""
    return " ".join(_COMMENT.sub(lambda match: match[1] or " ", text).split())


class Finder:
    """Collects the points and the functions of the files below `root` that one translation unit has."""

    def __init__(self, root, wanted):
        self.root = root
        self.wanted = wanted  # says of a path below the root whether it takes part
        self.texts = {}
        self.points = []
        self.bodies = []  # (file, function, offset after the brace, constant, names in the body)
        self.tables = []  # (file, function, name of a variable, names in its initialiser)

    def text(self, file):
        if file not in self.texts:
            self.texts[file] = (self.root / file).read_bytes().decode("latin-1")
        return self.texts[file]

    def file_of(self, cursor):
        where = cursor.location.file
        if where is None:
            return None
        path = Path(where.name)
        try:
            name = str(path.resolve().relative_to(self.root))
        except ValueError:
            return None
        return name if self.wanted(name) else None

    def unit(self, translation_unit, done):
        """All files of the unit that are not in `done`."""
        files = {}
        for cursor in translation_unit.cursor.get_children():
            where = cursor.location.file
            name = where.name if where else None
            if name not in files:
                files[name] = self.file_of(cursor)
            if files[name] and files[name] not in done:
                self.file = files[name]
                self.source = self.text(self.file)
                self.declaration(cursor, "")
        return {file for file in files.values() if file}

    # Declarations

    def declaration(self, cursor, scope):
        if cursor.kind in FUNCTIONS:
            self.function(cursor, scope)
        elif cursor.kind in SCOPES or cursor.kind in (Kind.LINKAGE_SPEC, Kind.UNEXPOSED_DECL):
            inner = f"{scope}{cursor.spelling}::" if cursor.kind in SCOPES and cursor.spelling else scope
            for child in cursor.get_children():
                self.declaration(child, inner)
        elif cursor.kind in (Kind.VAR_DECL, Kind.FIELD_DECL):
            name = f"{scope}{cursor.spelling}"
            self.tables.append((self.file, name, cursor.spelling, sorted(self.names(cursor))))
            self.constants(cursor, name)
        elif cursor.kind == Kind.ENUM_CONSTANT_DECL:
            self.constants(cursor, f"{scope}{cursor.spelling}")

    def names(self, cursor):
        return set(re.findall(r"[A-Za-z_]\w*", self.source[cursor.extent.start.offset : cursor.extent.end.offset]))

    def function(self, cursor, scope):
        body = next((child for child in cursor.get_children() if child.kind == Kind.COMPOUND_STMT), None)
        if body is None:
            return
        name = f"{scope}{cursor.spelling}"
        start = cursor.extent.start.offset
        head = self.source[start : body.extent.start.offset]
        before = self.source[max(0, start - 40) : start].rpartition("\n")[2]  # `template <...>` is in the extent
        if "consteval" in head or "consteval" in before:
            self.bodies_names(cursor, name, None)
            self.constants(body, name)
            return
        constant = re.search(r"\bconstexpr\b", before + head) is not None
        at = body.extent.start.offset
        if self.source[at] != "{":
            return  # `= default`, or made by a macro
        self.bodies_names(cursor, name, (at + 1, constant))
        self.current = (name, constant)
        self.returned = cursor.result_type
        for child in cursor.get_children():
            if child.kind != Kind.COMPOUND_STMT and cursor.kind == Kind.CONSTRUCTOR:
                self.expression(child, cursor)  # initialisers of members
        self.statement(body, cursor)

    def bodies_names(self, cursor, name, place):
        self.bodies.append((self.file, name, *(place or (None, True)), sorted(self.names(cursor))))

    # Points

    def add(self, cursor, operator, mutated, form="value", start=None, end=None, function=None, constant=None):
        start = cursor.extent.start.offset if start is None else start
        end = cursor.extent.end.offset if end is None else end
        if start >= end or "#" in self.source[start:end].replace("#0", "") and "\n" in self.source[start:end]:
            return
        first = self.source.rfind("\n", 0, start) + 1
        last = self.source.find("\n", end)
        last = len(self.source) if last < 0 else last
        mutated = flat(mutated)
        shown = "" if form == "statement" else mutated
        was = flat(self.source[first:last])
        becomes = flat(self.source[first:start] + shown + self.source[end:last])
        if was == becomes:
            return
        if function is None:
            function, constant = self.current
        self.points.append(
            Point(
                file=self.file,
                function=function,
                operator=operator,
                start=start,
                end=end,
                line=self.source.count("\n", 0, start) + 1,
                end_line=self.source.count("\n", 0, end) + 1,
                was=was,
                becomes=becomes,
                mutated=mutated,
                form=form,
                constant=bool(constant),
            )
        )

    def slice(self, cursor):
        return self.source[cursor.extent.start.offset : cursor.extent.end.offset]

    # What the compiler evaluates

    def constants(self, cursor, name):
        self.current = (name, True)
        children = list(cursor.get_children())
        if cursor.kind == Kind.INIT_LIST_EXPR and len(children) > 1:
            rows = [child for child in children if child.kind in (Kind.INIT_LIST_EXPR, Kind.CALL_EXPR)]
            if len(rows) == len(children):
                for one, two in zip(rows, rows[1:]):
                    text = self.slice(two) + self.source[one.extent.end.offset : two.extent.start.offset] + self.slice(one)
                    self.add(one, "rows", text, "edit", end=two.extent.end.offset)
        self.literal(cursor, "edit")
        for child in children:
            if child.kind in (Kind.TYPE_REF, Kind.TEMPLATE_REF, Kind.PARM_DECL, Kind.LAMBDA_EXPR):
                continue
            if child.kind == Kind.INTEGER_LITERAL and self.is_type_argument(child):
                continue
            self.constants(child, name)

    def is_type_argument(self, cursor):
        """Of a template or an array's type: another type, not another value."""
        before = self.source[: cursor.extent.start.offset].rstrip()
        after = self.source[cursor.extent.end.offset :].lstrip()
        return before[-1:] in "[<" or after[:1] in "]>"

    def literal(self, cursor, form):
        text = self.slice(cursor)
        if cursor.kind == Kind.INTEGER_LITERAL and (match := _INTEGER.fullmatch(text)):
            number = int(match[1].replace("'", "").lower().removeprefix("0x"), 16 if match[1][:2] in ("0x", "0X") else 10) \
                if match[1][:2] not in ("0b", "0B") else int(match[1].replace("'", ""), 0)
            less = number > 1 and int(hashlib.sha1(str(cursor.extent.start.offset).encode()).hexdigest(), 16) % 2
            other = number - 1 if less else number + 1
            self.add(cursor, "constant", (hex(other) if match[1][1:2] in "xX" and len(match[1]) > 1 else str(other)) + match[2], form)
        elif cursor.kind == Kind.FLOATING_LITERAL and (match := _FLOAT.fullmatch(text)):
            number = text.rstrip("fFlL")
            self.add(cursor, "constant", f"{float(number) * 1.5 + (float(number) == 0)!r}{match[1]}", form)
        elif cursor.kind == Kind.CXX_BOOL_LITERAL_EXPR and text in ("true", "false"):
            self.add(cursor, "constant", "false" if text == "true" else "true", form)
        elif cursor.kind == Kind.STRING_LITERAL and re.fullmatch(r'"(?:[^"\\\n]|\\.)+"', text):
            self.text_literal(cursor, text, form)
        elif cursor.kind == Kind.CHARACTER_LITERAL and re.fullmatch(r"'[ -~]'", text) and text[1] != "\\":
            other = "x" if text[1] != "x" else "y"
            self.add(cursor, "constant", f"'{other}'", form)
        elif cursor.kind == Kind.DECL_REF_EXPR and cursor.referenced is not None:
            self.enumerator(cursor, text, form)

    def text_literal(self, cursor, text, form):
        """Another letter, at a place that is no conversion and no escape: the length stays, so the type does."""
        spared = {at for match in re.finditer(r"%[-+ #0-9.*]*[hlzjt]*[a-zA-Z%]|\\x[0-9a-fA-F]+|\\[0-7]+|\\.", text)
                  for at in range(*match.span())}
        places = [at for at in range(1, len(text) - 1) if text[at].isalnum() and at not in spared]
        if not places:
            places = [at for at in range(1, len(text) - 1) if at not in spared and text[at] != '"']
        if places:
            at = places[int(hashlib.sha1(text.encode()).hexdigest(), 16) % len(places)]
            other = "Q" if text[at] not in "qQ" else "Z"
            self.add(cursor, "text", text[:at] + other + text[at + 1 :], form)

    def enumerator(self, cursor, text, form):
        named = cursor.referenced
        if named.kind != Kind.ENUM_CONSTANT_DECL or not re.fullmatch(r"[\w:]+", text) or not text.endswith(named.spelling):
            return
        all_of_it = [child for child in named.semantic_parent.get_children() if child.kind == Kind.ENUM_CONSTANT_DECL]
        others = [child for child in all_of_it if child.enum_value != named.enum_value]
        later = [child for child in others if child.enum_value > named.enum_value] or others
        if later:
            self.add(cursor, "enumerator", text[: len(text) - len(named.spelling)] + later[0].spelling, form)

    # What runs

    def statement(self, cursor, parent):
        kind = cursor.kind
        if kind in (Kind.STATIC_ASSERT, Kind.TYPE_REF, Kind.TEMPLATE_REF, Kind.TYPEDEF_DECL, Kind.TYPE_ALIAS_DECL):
            return
        if kind == Kind.VAR_DECL and re.search(r"\bconstexpr\b|\bstatic const\b", self.slice(cursor).partition("=")[0]):
            before = self.current
            self.constants(cursor, f"{before[0]}")
            self.current = before
            return
        if kind == Kind.CASE_STMT:
            children = list(cursor.get_children())
            for child in children[1:]:
                self.statement(child, cursor)
            return
        if kind in (Kind.BREAK_STMT, Kind.CONTINUE_STMT):
            if parent.kind not in (Kind.SWITCH_STMT, Kind.CASE_STMT, Kind.DEFAULT_STMT) and not self.in_switch(cursor):
                self.add(cursor, "jump", self.slice(cursor), "jump")
            return
        if kind == Kind.RETURN_STMT:
            self.return_value(cursor)
        if kind.is_expression():
            if self.is_statement(cursor, parent):
                self.dropped(cursor)
            self.expression(cursor, parent)
            return
        if kind in (Kind.IF_STMT, Kind.WHILE_STMT, Kind.DO_STMT):
            self.condition(cursor)
        for child in cursor.get_children():
            self.statement(child, cursor)

    def in_switch(self, cursor):
        """A break at the end of a case: the lines before say so well enough."""
        before = self.source[max(0, cursor.extent.start.offset - 200) : cursor.extent.start.offset]
        return cursor.kind == Kind.BREAK_STMT and re.search(r"\b(case\b|default:)[^{}]*$", before) is not None

    def is_statement(self, cursor, parent):
        after = self.source[cursor.extent.end.offset :].lstrip()
        if not after.startswith(";"):
            return False
        if parent.kind in (Kind.COMPOUND_STMT, Kind.CASE_STMT, Kind.DEFAULT_STMT):
            return True
        before = self.source[: cursor.extent.start.offset].rstrip()
        return parent.kind in (Kind.IF_STMT, Kind.WHILE_STMT, Kind.FOR_STMT, Kind.CXX_FOR_RANGE_STMT) and (
            before.endswith(")") or re.search(r"\belse$", before) is not None
        )

    def dropped(self, cursor):
        text = self.slice(cursor)
        inner = self.plain(cursor)
        if text.startswith("(void)") or inner.spelling in ("reserve", "shrink_to_fit"):
            return
        if inner.kind == Kind.CALL_EXPR:
            assigns = re.match(r"operator(=|\+=|-=)$", inner.spelling or "")
            self.add(cursor, "assignment" if assigns else "call", text, "statement")
        elif inner.kind in (Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR, Kind.UNARY_OPERATOR):
            self.add(cursor, "assignment", text, "statement")

    def plain(self, cursor):
        """Without what the compiler wraps around an expression: conversions, temporaries."""
        while cursor.kind == Kind.UNEXPOSED_EXPR:
            children = list(cursor.get_children())
            if len(children) != 1:
                break
            cursor = children[0]
        return cursor

    def condition(self, cursor):
        children = list(cursor.get_children())
        found = [child for child in children if child.kind.is_expression()]
        if cursor.kind == Kind.DO_STMT:
            found = found[-1:]
        if not found or any(child.kind == Kind.VAR_DECL for child in children):
            return
        condition = found[0]
        head = self.source[cursor.extent.start.offset : condition.extent.start.offset]
        if "constexpr" in head:
            return
        inner = self.plain(condition)
        # Where the comparison alone is the condition, its own point says the same.
        if inner.kind == Kind.BINARY_OPERATOR and self.operator_of(inner)[0] in ("==", "!="):
            return
        self.add(condition, "condition", f"!({self.slice(condition)})", "bool")

    def return_value(self, cursor):
        children = list(cursor.get_children())
        if len(children) != 1:
            return
        value = children[0]
        text = self.slice(value)
        kind = self.returned.get_canonical()
        if kind.kind == TypeKind.BOOL:
            if text not in ("true", "false") and self.operator_of(self.plain(value))[0] not in ("==", "!="):
                self.add(value, "return", f"!({text})", "bool")
        elif kind.kind == TypeKind.ENUM and kind.spelling == "StatusCode":
            self.add(value, "return", "StatusCode{kInvalidData}" if text == "kSuccess" else "StatusCode{kSuccess}", "status")
        elif kind.kind in INTEGERS:
            if not _INTEGER.fullmatch(text):
                self.add(value, "return", f"static_cast<{kind.spelling}>(({text}) + 1)", "cast:" + kind.spelling)
        elif kind.kind == TypeKind.POINTER:
            if text != "nullptr":
                self.add(value, "return", "nullptr", "cast:" + kind.spelling)
        elif kind.spelling.startswith(("std::basic_string", "std::optional", "std::__cxx11::basic_string")):
            if text not in ("{}", "std::nullopt"):
                name = self.returned.spelling
                if "type-parameter" not in name:
                    self.add(value, "return", f"{name}{{}}", "make:" + name)

    def operator_of(self, cursor):
        """The operator between two operands, and the operands; nothing for another expression."""
        if cursor.kind == Kind.BINARY_OPERATOR:
            children = list(cursor.get_children())
        elif cursor.kind == Kind.CALL_EXPR and (cursor.spelling or "").startswith("operator"):
            children = [child for child in cursor.get_arguments() if child is not None]
        else:
            return None, []
        if len(children) != 2:
            return None, []
        between = flat(self.source[children[0].extent.end.offset : children[1].extent.start.offset])
        return between, children

    def expression(self, cursor, parent):
        kind = cursor.kind
        if kind in (Kind.TYPE_REF, Kind.TEMPLATE_REF, Kind.SIZE_OF_PACK_EXPR, Kind.CXX_UNARY_EXPR):
            return
        if kind == Kind.LAMBDA_EXPR:
            returned = self.returned
            for child in cursor.get_children():
                if child.kind == Kind.COMPOUND_STMT:
                    self.returned = child.type  # of no use: the type of a lambda's result is not at hand
                    self.statement(child, cursor)
            self.returned = returned
            return
        operator, operands = self.operator_of(cursor)
        if operator in SWAPS:
            self.swapped_operator(cursor, operator, operands)
        elif kind == Kind.CALL_EXPR:
            if cursor.spelling == "reserve":
                return  # how much is asked for ahead changes nothing but the time
            self.call(cursor)
        elif kind == Kind.CONDITIONAL_OPERATOR:
            children = list(cursor.get_children())
            if len(children) == 3 and self.operator_of(self.plain(children[0]))[0] not in ("==", "!="):
                self.add(children[0], "condition", f"!({self.slice(children[0])})", "bool")
        self.literal(cursor, "value")
        for child in cursor.get_children():
            if child.kind.is_statement():
                self.statement(child, cursor)
            elif child.kind.is_expression() or child.kind == Kind.INIT_LIST_EXPR:
                self.expression(child, cursor)

    def swapped_operator(self, cursor, operator, operands):
        group, other = SWAPS[operator]
        if group == "arithmetic":
            kinds = {operand.type.get_canonical().kind for operand in operands}
            if not kinds <= NUMBERS or not operands:
                return
            if operator in ("*",) and kinds & INTEGERS and not kinds - INTEGERS:
                other = "+"
            if kinds - INTEGERS and other in ("%", "|", "&", "<<", ">>"):
                return
        left, right = (self.slice(operand) for operand in operands)
        self.add(cursor, group, f"{left} {other} {right}")

    def call(self, cursor):
        named = cursor.referenced
        text = self.slice(cursor)
        if re.match(r"std::(min|max)\b", text):
            self.add(cursor, "bound", ("std::max" if text.startswith("std::min") else "std::min") + text[8:])
        if named is None or named.kind in (Kind.CONSTRUCTOR, Kind.DESTRUCTOR) or (cursor.spelling or "").startswith("operator"):
            return
        arguments = [argument for argument in cursor.get_arguments() if argument is not None]
        for one, two in zip(arguments, arguments[1:]):
            if self.type_name(one) != self.type_name(two) or self.slice(one) == self.slice(two) or not self.slice(two):
                continue
            base = cursor.extent.start.offset
            spans = [argument.extent.start.offset - base for argument in (one, two)]
            ends = [argument.extent.end.offset - base for argument in (one, two)]
            if not 0 < spans[0] < ends[0] <= spans[1] < ends[1] <= len(text):
                continue
            swapped = (text[: spans[0]] + self.slice(two) + text[ends[0] : spans[1]] + self.slice(one) + text[ends[1] :])
            self.add(cursor, "arguments", swapped)

    def type_name(self, cursor):
        kind = self.plain(cursor).type.get_canonical()
        if kind.kind in (TypeKind.LVALUEREFERENCE, TypeKind.RVALUEREFERENCE):
            kind = kind.get_pointee()
        name = kind.spelling.replace("const ", "")
        return re.sub(r"char ?\[\d+\]", "char *", name)


def arguments_of(command):
    """What clang needs of the compiler's command line."""
    words = shlex.split(command)[1:]
    kept = []
    skip = False
    for word in words:
        if skip:
            skip = False
        elif word in ("-o", "-include"):
            skip = True
        elif word == "-c" or word.startswith(("-W", "-f", "-g", "-O", "-D_FORTIFY")) or word.endswith((".cpp", ".c")):
            continue
        else:
            kept.append(word)
    return [*kept, "-w", "-O0"]


def find(root, path, command, wanted, done):
    """The finder that has read one translation unit; `done` are files that need no reading."""
    finder = Finder(root, wanted)
    # In Turkish, where I has another small letter, clang does not find its option -I.
    locale.setlocale(locale.LC_CTYPE, "C.UTF-8")
    unit = cindex.Index.create().parse(str(path), args=arguments_of(command))
    errors = [str(found) for found in unit.diagnostics if found.severity >= cindex.Diagnostic.Error]
    if errors:
        raise RuntimeError(f"mutants: clang can't read {path}: {errors[0]}")
    finder.files = finder.unit(unit, done)
    return finder


def as_data(point):
    return asdict(point)
