"""Every session in a document is typed as it is, and shows what the document says."""

import pytest

from zfc.machine import needs_mounts
from zfc.runner import ROOT
from zfc.sessions import play, shows, steps

DOCUMENTS = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]
WITH_SESSIONS = [document for document in DOCUMENTS if steps(document.read_text())]
# Shows staged files that `zfc-lab run` keeps in a folder of its own, which it mounts.
MOUNTS = {"staging.md"}


@pytest.mark.parametrize(
    "document",
    [pytest.param(document, marks=needs_mounts if document.name in MOUNTS else (), id=document.name) for document in WITH_SESSIONS],
)
def test_sessions(zfc, document):
    for command, expected, output in play(zfc, document):
        assert shows(expected, output), f"$ {command}\n--- the document\n{expected}\n--- the program\n{output}"


def test_documents_that_have_sessions():
    names = {document.name for document in WITH_SESSIONS}
    assert names >= {"README.md", "tour.md", "staging.md", "scripting.md", "troubleshooting.md", "json.md", "lab-host.md"}


@pytest.mark.parametrize(
    "expected, output, same",
    [
        ("a\nb\n", "a\nb\n", True),
        ("a\nb\n", "a\r\nb\r\n", True),
        ("a\n", "a", True),
        ("a\n", "a\nb\n", False),
        ("a.\n", "ab\n", False),
        ("a\n...\nd\n", "a\nb\nc\nd\n", True),
        ("a\n...\nd\n", "a\nb\nc\n", False),
        ("...\n", "", True),
        ("", "a\n", False),
    ],
)
def test_comparison(expected, output, same):
    assert shows(expected, output) == same


def test_taking_a_document_apart():
    text = "```console\n$ cat <<END\n> x\n> END\nx\n$ true\n```\n```\n$ no session\n```\n```console\n$ echo\n\n```\n"
    assert steps(text) == [("cat <<END\nx\nEND\n", "x\n"), ("true\n", ""), ("echo\n", "\n")]
