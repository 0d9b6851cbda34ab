"""Writes sources that hold many defects at once, each chosen by its number at run time; see zfc_mutant.h."""

import hashlib

OUTERMOST = ("statement", "jump", "status", "bool")


def write_if_other(path, content):
    if not path.exists() or path.read_bytes() != content:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)


def planted(text, numbered, bodies, header, name):
    """The text of a file with the points of `numbered`, a list of (number, point), and a mark at the head of each function:
    `bodies` are (number, offset, constant). Lines keep their numbers."""
    insertions = [(offset, f" zfc_mutant::Reach({number});") for number, offset, _ in bodies]
    order = sorted(numbered, key=lambda entry: (entry[1].start, -entry[1].end, not is_outer(entry[1]), entry[0]))
    body = _render(text, 0, len(text), order, sorted(insertions))
    return f'#include "{header}"\n#line 1 "{name}"\n{body}'


def is_outer(point):
    return point.form in OUTERMOST or ":" in point.form


def _render(text, start, end, points, insertions):
    """The text from `start` to `end`; the points all lie there, in the order of their starts, outer ones first."""
    out = []
    at = start
    index = 0
    while index < len(points):
        number, point = points[index]
        inside = index + 1
        while inside < len(points) and points[inside][1].start < point.end:
            assert points[inside][1].end <= point.end, (point, points[inside][1])
            inside += 1
        out.append(_plain(text, at, point.start, insertions))
        inner = _render(text, point.start, point.end, points[index + 1 : inside], insertions)
        out.append(_choice(number, point, inner))
        at = point.end
        index = inside
    out.append(_plain(text, at, end, insertions))
    return "".join(out)


def _plain(text, start, end, insertions):
    out = []
    for offset, inserted in insertions:
        if start <= offset < end:
            out.append(text[start:offset] + inserted)
            start = offset
    return "".join(out) + text[start:end]


def _choice(number, point, original):
    on = f"zfc_mutant::{'OnAtRunTime' if point.constant else 'On'}({number})"
    kind, _, name = point.form.partition(":")
    if kind == "statement":
        return f"({on} ? (void)0 : (void)({original}))"
    if kind == "jump":
        return f"if ({on}) {{}} else {original}"
    if kind == "bool":
        return f"({on} ? ({point.mutated}) : !!({original}))"
    if kind == "status":
        return f"({on} ? {point.mutated} : StatusCode({original}))"
    if kind == "cast":
        return f"({on} ? static_cast<{name}>({point.mutated}) : static_cast<{name}>({original}))"
    if kind == "make":
        return f"({on} ? {point.mutated} : {name}({original}))"
    return f"({on} ? ({point.mutated}) : ({original}))"


def digest(contents):
    """One short text for any number of contents."""
    state = hashlib.sha1()
    for content in contents:
        state.update(b"%d:" % len(content) + content)
    return state.hexdigest()
