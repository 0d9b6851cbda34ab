"""Expected documents: files under tests/commands/expected, compared byte for byte.

A name ends in .xml or .txt for the two forms of a command. "@NAME@" in a file stands for a value that the test
gives, so that a table of statuses needs one file. With ZFC_RENEW set, files without such values are rewritten from
what the program printed (see tests/commands/renew).
"""

import os
import re
from dataclasses import dataclass
from pathlib import Path

from lxml import etree

from .runner import ROOT, Result

XML_HEAD = b'<?xml version="1.0"?><output xmlns:esxcli="znfc">\n'
RULER = b"*" * 52 + b"\n"  # begins and ends a text document

COMMANDS = ROOT / "tests" / "commands"
EXPECTED = COMMANDS / "expected"


def check(actual, name, *, well_formed=True, usage="", **values):
    """Compares an output with an expected file; `usage` is a text that follows the document."""
    path = Path(EXPECTED, name)
    if os.environ.get("ZFC_RENEW") and not values and not usage:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(actual)
    expected = path.read_bytes()
    for key, value in values.items():
        mark = f"@{key.upper()}@".encode()
        assert mark in expected, f"{name} has no place for {key}"
        expected = expected.replace(mark, value if isinstance(value, bytes) else str(value).encode())
    expected += usage.encode()
    assert actual == expected
    if name.endswith(".xml") and well_formed:
        etree.fromstring(actual)


@dataclass
class BothForms:
    xml: Result
    text: Result

    @property
    def command_calls(self):
        return self.xml.command_calls


def check_both(
    zfc, command, name, *, words=(), cli=None, well_formed=True, usage="", values=None, prefix=b"", **options
):
    """Runs both forms of a command and compares each whole output with `name`.xml and `name`.txt.

    The last word of `command` is the plain form's; "cli" is added for the other, unless `cli` is its command.
    `words` are the arguments; `usage` follows the document of the "cli" form; `prefix` comes before both. Both
    must make the same calls in the same order. The other arguments are those of a run.
    """
    values = values or {}
    results = []
    for form, ending, after in ((command, ".xml", ""), (cli or f"{command}cli", ".txt", usage)):
        result = zfc([*form.split(), *words], **options)
        assert result.stdout.startswith(prefix)
        document = result.stdout[len(prefix) :]
        check(document, name + ending, well_formed=well_formed, usage=after, **values)
        results.append(result)
        if options.get("spoil_log"):
            zfc.mend_log()
    assert results[0].calls == results[1].calls
    return BothForms(*results)


def is_plain(output):
    """Whether nothing but the tags of a document has characters that XML does not take in a text."""
    tags = rb"</?(?:output|list|structure|field|string|int|bool)(?: [a-zA-Z:]+=\"[^\"]*\")*/?>|<\?xml version=\"1.0\"\?>"
    text = re.sub(tags, b"", output)
    try:
        text.decode()
    except UnicodeDecodeError:
        return False
    return re.search(rb"[<&\x00-\x08\x0b\x0c\x0e-\x1f]|\]\]>", text) is None
