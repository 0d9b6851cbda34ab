"""What a run may end with, by the table outcomes.yaml, and whether it did."""

import os
import re
import shutil
from pathlib import Path

import yaml
from lxml import etree

from exhaustion import FUNCTIONS, signal_name
from zfc.documents import RULER, XML_HEAD, is_plain
from zfc.reference import message_of

TABLE = yaml.safe_load(Path(__file__).with_name("outcomes.yaml").read_text())
MESSAGE = b"zfcesxcli: out of memory\n"

# Ends of a run: as the good one; without memory; an empty report; nothing at all. A text is the message of a document.
SAME, ENDED, EMPTY, SILENT = "@same", "@ended", "@empty", "@silent"
CUT, HOLED = "@cut", "@holed"  # the good output up to some byte, or without some bytes in a row
TEXT = "@text: "  # the text that follows and nothing else
SESSION = "@session"  # each answer at the prompt as ever or a sentence of the prompt
PROMPT = b"$>"
AGAIN = "@again: "  # the good document, then one with the message that follows


def no_file(leaf):
    if leaf.name in TABLE["no_file_text"]:
        return TEXT + TABLE["no_file_text"][leaf.name]
    return TABLE["no_file_of"].get(leaf.node, TABLE["no_file"])


def no_stream(leaf, number, count):
    """What the failed opening of the library output file, the `number`th of `count`, leads to."""
    if number == 1:
        return SILENT  # the session's own: nothing is printed in it any more
    return (AGAIN if leaf.name in TABLE["freed_after_report"] and number == count else "") + no_file(leaf)


def of_memory(leaf, event, streams):
    """How the run of a leaf ends when this request for memory is refused."""
    if FUNCTIONS[event.what] == "calloc" and event.via == "":
        return TABLE["buffers"].get(leaf.name, {}).get(event.size, EMPTY)
    if event.via == "":
        return ENDED
    if event.via == "fdopen":
        return no_stream(leaf, streams.index(event.number) + 1, len(streams))
    return no_file(leaf) if event.via == "fopen" else SAME


class Folders:
    """The files of the folders that a run sees, to compare and to put back."""

    IGNORED = {"torpi-output.log"}  # grows with each run

    def __init__(self, zfc):
        self._roots = [zfc.work, zfc.tmp, zfc.var_tmp, zfc.staging]

    def read(self):
        found = {}
        for root in self._roots:
            self._read(root, found)
        return found

    def _read(self, folder, found):
        with os.scandir(folder) as entries:
            for entry in entries:
                if entry.name in self.IGNORED or entry.is_symlink():
                    continue
                if entry.is_dir():
                    found[entry.path] = None
                    self._read(entry.path, found)
                else:
                    found[entry.path] = Path(entry.path).read_bytes()

    def restore(self, wanted, found):
        for path in found.keys() - wanted.keys():
            if found[path] is None:
                shutil.rmtree(path, ignore_errors=True)
            else:
                Path(path).unlink(missing_ok=True)
        for path, content in wanted.items():
            if content is not None and found.get(path) != content:
                Path(path).unlink(missing_ok=True)  # whatever its mode has become
                Path(path).write_bytes(content)


def _structure(output):
    if output.startswith(XML_HEAD):
        found = re.search(rb'<structure typeName="([^"]*)">', output)
        return found and found[1]
    return output.removeprefix(RULER).split(b":\n")[0]


def _message(output):
    if output.startswith(XML_HEAD):
        found = re.search(rb'<field name="(?:Message|Test Result)">\n<string>([^<]*)</string>', output)
        return found and found[1].decode()
    return message_of(output)


def is_whole(output):
    """Whether this is one well-formed document, or no document at all."""
    if output.startswith(b"<?xml"):
        if not output.startswith(XML_HEAD) or output.count(b"<?xml") != 1:
            return False
        try:
            etree.fromstring(output)
        except etree.XMLSyntaxError:
            return not is_plain(output)
        return True
    if output.startswith(b"*"):
        return output.startswith(RULER) and output.endswith(RULER) and output.count(RULER) == 2
    return True


def documents(output):
    """The output cut where a document begins."""
    if output.startswith(XML_HEAD):
        return [XML_HEAD + rest for rest in output.split(XML_HEAD)[1:]]
    parts = output.split(RULER)
    if parts[0] or len(parts) % 2 == 0:
        return [output]
    return [RULER + text + RULER for text in parts[1::2]] + [text for text in parts[2::2] if text]


_CLOSING = re.compile(rb"(?:</(?:string|field|structure|list|output)>\n?)*")


def _is_ended(output, whole):
    """A beginning of the whole output, or of a document that is then ended."""
    if whole.startswith(output):
        return not output or is_whole(output)
    if not is_whole(output):
        return False
    now, then = _lines(output), _lines(whole)
    same = next((i for i, pair in enumerate(zip(now, then)) if pair[0] != pair[1]), min(len(now), len(then)))
    rest = b"".join(now[same:])
    if whole.startswith(XML_HEAD):
        return _CLOSING.fullmatch(rest) is not None
    # A field's name has no line of its own, so the ruler may follow it.
    return rest.endswith(RULER) and whole.startswith(b"".join(now[:same]) + rest.removesuffix(RULER))


def _is_empty(output, whole):
    """The whole document without one text."""
    length = len(os.path.commonprefix([output, whole]))
    tail = whole[len(whole) - (len(output) - length) :]
    cut = whole[length : len(whole) - len(tail)]
    if output[length:] != tail or len(output) >= len(whole):
        return False
    return is_whole(output) and re.search(rb"</?(?!string>)[a-z]+", cut.replace(b"<string>", b"")) is None


def _mistake_in_session(run, good):
    """Each line is answered as ever, or with one of the sentences of the prompt; only the last answer may be cut."""
    answers = run.stdout.split(PROMPT)
    for place, (answer, then) in enumerate(zip(answers, good.stdout.split(PROMPT))):
        is_said = any(answer == text.encode() for text in TABLE["said_at_prompt"])
        is_last = place == len(answers) - 1 and run.stderr == MESSAGE
        if answer != then and not is_said and not (is_last and _is_ended(answer, then)):
            return f"answer {place}: {answer[-200:]!r}"
    return None


def _is_cut(output, whole, may_go_on):
    if not may_go_on:
        return whole.startswith(output)
    length = len(os.path.commonprefix([output, whole]))
    return len(output) < len(whole) and whole.endswith(output[length:])


def _is_failed(output, whole, message):
    """A document of the same structure with this message and nothing that was read."""
    if _message(output) != message or not is_whole(output) or _structure(output) != _structure(whole):
        return False
    # What earlier passes of a test gave may follow; nothing else has a value.
    values = re.compile(rb": .|<(?:string|int)>")
    shown = _lines(output.replace(RULER, b"\n"))
    new = [line for line in set(shown) - set(_lines(whole)) if values.search(line)]
    fixed = [message, *TABLE["in_failures"]]
    return all(any(text.encode() in line for text in fixed) for line in new)


def _is_again(output, whole, message, may_be_empty):
    """The whole document, or without its text, and after it that of a failure."""
    parts = documents(output)
    if len(parts) != 2:
        return False
    first, second = parts
    is_report = first == whole or may_be_empty and (_is_empty(first, whole) or "Failed" in (_message(first) or ""))
    return is_report and _is_failed(second, whole, message)


def mistake(run, good, allowed):
    """Why the run did not end in one of the allowed ways; None when it did."""
    if run.status != 0:
        return f"ended with {signal_name(run.status)}"
    for end in allowed:
        if end == ENDED:
            failures = [end for end in allowed if not end.startswith("@")]
            is_failed = any(_is_failed(run.stdout, good.stdout, message) for message in failures)
            if run.stderr == MESSAGE and (_is_ended(run.stdout, good.stdout) or is_failed):
                return None
        elif end != SESSION and run.stderr != good.stderr:
            continue
        elif end == SAME:
            if run.stdout == good.stdout:
                return None
        elif end == SILENT:
            if not run.stdout:
                return None
        elif end == EMPTY:
            if _is_empty(run.stdout, good.stdout):
                return None
        elif end in (CUT, HOLED):
            if _is_cut(run.stdout, good.stdout, end == HOLED):
                return None
        elif end == SESSION:
            if run.stderr == MESSAGE or run.stderr == good.stderr:
                return _mistake_in_session(run, good)
        elif end.startswith(TEXT):
            if run.stdout == end.removeprefix(TEXT).encode():
                return None
        elif end.startswith(AGAIN):
            if _is_again(run.stdout, good.stdout, end.removeprefix(AGAIN), EMPTY in allowed):
                return None
        elif _is_failed(run.stdout, good.stdout, end):
            return None
    return f"none of {', '.join(allowed)}"


def _lines(content):
    return content.splitlines(keepends=True)


def _keys(content):
    return {line.split(b"=")[0] for line in _lines(content)}


def is_same(run, good):
    """Whether the run printed what a good one prints."""
    return run.stdout != b"" and (run.stdout, run.stderr, run.status) == (good.stdout, good.stderr, good.status)


def mistake_in_files(found, before, after, may_stay=()):
    """Why the files are neither those from before the run nor those from after a good one; of a staged file some lines
    may be the old ones and some the new ones, but each is there, whole. Files whose names end as `may_stay` says are
    left as a failure has to leave them."""
    for path in sorted(found.keys() | before.keys() | after.keys()):
        if path.endswith(tuple(may_stay)):
            continue
        now, old, new = (files.get(path, b"") for files in (found, before, after))
        if now == old or now == new:
            if path in found or path not in before or path not in after:
                continue
            return f"{path} is lost"
        if "_tmp" in path.rsplit("/", 1)[1]:
            return f"{path} is left"
        if "/staging/" not in path:
            return f"{path} is half written"
        # A file in the making has the lines that were written until then, with the values of the device.
        allowed = _keys(old) | _keys(new) if path not in before else set(_lines(old)) | set(_lines(new))
        written = _keys(now) if path not in before else set(_lines(now))
        if not written <= allowed or len(_keys(now)) < len(_lines(now)) or not now.endswith(b"\n"):
            return f"{path} has a broken line"
        if not _keys(old) <= _keys(now):
            return f"{path} has lost a line"
    return None
