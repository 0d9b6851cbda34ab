"""Compares what a run did with what its case expects."""

import re

from lxml import etree

from .cases import OUTPUT_FILE
from .documents import document, list_document
from .server import Server
from .walk import setting

_EXIT_CODE = re.compile(rb"main: Program Exit Code: \((\d+)\)")
_HANDLE = re.compile(r"^@(\d+)")
_USAGE_CODES = (4, 5, 6)


def check(case, ran, common):
    """What is wrong, one text each; none when all is as it has to be."""
    wrong = [f"ended with {ran.end}"] if ran.end else []
    # Without its file at the start, standard output is lost for the whole run.
    wrong += [what for what in ran.left if case.situation.unopened != -1 or what == Server.LEFT[0]]
    if ran.stderr:
        wrong.append(f"standard error: {ran.stderr.decode(errors='replace')[:4000]}")
    wrong += _check_calls(case, ran, common)
    wrong += _check_output(case, ran)
    wrong += _check_files(case, ran, common)
    return wrong


def _names(trace):
    return [line.split("(", 1)[0] for line in trace]


def expected_calls(case, common):
    if case.situation.unopened == -1:
        return common["end"]
    return [*common["start"], *(call for _, _, call, _ in case.expected.made), *common["end"]]


def _check_calls(case, ran, common):
    expected = expected_calls(case, common)
    if _names(ran.trace) != expected:
        yield f"calls: expected {' '.join(expected)}\n        got      {' '.join(ran.trace)}"
        return
    wanted = [None] * len(common["start"]) + [_arguments(case, made) for made in case.expected.made] + [None]
    for line, arguments in zip(ran.trace, wanted):
        given = line.partition("(")[2].removesuffix(")")
        named = _HANDLE.sub(lambda found: case.handles.get(int(found[1]), "a strange handle"), given)
        if arguments is not None and named != arguments:
            yield f"{line.partition('(')[0]}: expected the arguments {arguments!r}, got {named!r}"
        elif _HANDLE.match(given) and not named.startswith("port"):
            yield f"{line}: the handle is not that of the port, but of {named!r}"


def _arguments(case, made):
    """What the data says of a call's arguments, if anything."""
    arguments = case.command.get("steps")[made[0]].get("with")
    return None if arguments is None else setting(arguments)


def _shape(case, status):
    shapes = case.command.get("document")
    return shapes["success"] if status == "" else shapes.get(status, shapes.get("failure"))


def _document(case, status):
    """The pattern of the document for a status; none for one that prints none."""
    command, form = case.command, case.leaf.form
    if status in command.get("silent", []):
        return ""
    shapes = command.get("document")
    if status == "" and "list" in shapes:
        return list_document(form, *shapes["list"], _identifiers(case))
    if status == "":
        return document(form, shapes["success"], {"Message": "Success", **case.expected.values})
    values = {name: value for name, value in case.expected.values.items() if name in shapes.get("of the words", [])}
    label = shapes.get("label", {}).get(status, shapes.get("label", {}).get("else", "Message"))
    return document(form, _shape(case, status), {**values, label: command.message(status)})


def _identifiers(case):
    host = case.command.get("hosts", {}).get(case.situation.host, {})
    return host.get("identifiers", [case.command.get("identifier")])


def expected_output(case):
    """The pattern of all that is printed."""
    if case.situation.unopened == -1:
        return ""
    if case.prints is not None:
        return re.escape(case.prints)
    expected = case.expected
    pattern = _document(case, "") if expected.also_success else ""
    pattern += _document(case, expected.status)
    if expected.status and case.command.code(expected.status) in _USAGE_CODES:
        pattern += re.escape(case.leaf.usage)
    return pattern


def _check_output(case, ran):
    output = ran.stdout.decode(errors="surrogateescape")
    pattern = expected_output(case)
    if not re.fullmatch(pattern, output):
        shown = re.sub(r"\\(.)", r"\1", pattern, flags=re.DOTALL)
        yield f"printed: expected {shown!r}\n         got      {output!r}"
    elif absent := [text for text in case.expected.shown if text not in output and not case.expected.status]:
        yield f"printed: {absent} are not in {output!r}"
    elif case.leaf.form == "xml" and case.prints is None and output and not _excused(case):
        if output.count("<?xml") != 1 + case.expected.also_success:
            yield f"{output.count('<?xml')} documents"
        for one in output.split("<?xml")[1:]:
            try:
                etree.fromstring(b"<?xml" + one.encode(errors="surrogateescape"))
            except etree.XMLSyntaxError as mistake:
                yield f"not well-formed: {mistake}: {output!r}"


def _excused(case):
    """Whether the data says, with the reason, that the document holds what is no XML."""
    names = case.command.get("not well formed", {})
    now = case.situation
    return any(name in names for name in (now.words, now.host, *(choice for _, _, choice in now.choices)))


def _check_files(case, ran, common):
    files = dict(ran.files)
    logs = [path for path in files if path.startswith("/var/tmp/") and path != OUTPUT_FILE and path.endswith(".log")]
    if case.leaf.form == "text":
        yield from _check_debug_log(case, [files.pop(path) for path in logs])
    yield from _check_output_file(case, files.pop(OUTPUT_FILE, None), common)
    expected = {**case.files, **dict.fromkeys(case.folders, b"folder"), **case.expected.written}
    expected.pop(OUTPUT_FILE, None)
    for path in case.expected.cleared:
        expected.pop(path, None)
    for path in sorted({*files, *expected}):
        if path not in expected:
            yield f"wrote {path}: {files[path][:200]!r}"
        elif path not in files:
            yield f"{path} is missing"
        elif isinstance(expected[path], bytes):
            if files[path] != expected[path]:
                yield f"{path} holds {files[path][:400]!r} in place of {expected[path]!r}"
        elif not re.fullmatch(expected[path].encode(), files[path], re.DOTALL):
            yield f"{path} holds {files[path][:400]!r}"


def _check_debug_log(case, logs):
    codes = _EXIT_CODE.findall(b"".join(logs))
    status = case.expected.status
    words = case.situation.words or "ordinary"
    expected = case.command.code(status) if status else case.command.get("codes", {}).get(words, 0)
    if case.situation.unopened == -1:
        expected = 3
    if codes != [b"%d" % expected]:
        yield f"status: expected {expected}, got {b' '.join(codes).decode() or 'none'}"


def _check_output_file(case, content, common):
    """The library's prints, and nothing else, are in its file."""
    if case.situation.unopened is not None:
        if content != b"folder":
            yield "the folder in the place of the library output file is gone"
        return
    level = case.settings.get("ZNFC_DEBUG_LEVEL", "0")
    printed = common["start"] + [call for _, _, call, bracketed in case.expected.made if bracketed]
    expected = f"FC ESXCLI Debug level = {level}\nTORPI Debug level = 0\n"
    expected += "".join(f"<{call}> chatters & is 100% sure\n" for call in printed)
    if content != expected.encode():
        yield f"library output file: expected {expected!r}\n                     got      {content!r}"
