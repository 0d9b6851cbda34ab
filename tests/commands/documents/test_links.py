"""Links between documents lead to a file that is there, and to one of its headings."""

import re

import pytest

from zfc.runner import BUILD, ROOT

DOCUMENTS = sorted(
    path
    for path in ROOT.rglob("*.md")
    if not {"build", ".git"} & set(path.relative_to(ROOT).parts) and BUILD not in path.parents
)
_FENCED = re.compile(r"^ *```.*?^ *```$", re.MULTILINE | re.DOTALL)
_CODE = re.compile(r"`[^`\n]*`")
_LINK = re.compile(r"\]\(([^)\s]+)\)")


def anchors(text):
    """The anchors of the headings, as the sites that show Markdown make them: the second of two equal ones ends in -1."""
    found = {}
    for heading in re.findall(r"^#+ +(.*?) *$", _FENCED.sub("", text), re.MULTILINE):
        heading = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading)
        anchor = re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")
        found[anchor] = found.get(anchor, -1) + 1
    return {anchor if not number else f"{anchor}-{number}" for anchor, last in found.items() for number in range(last + 1)}


def links(text):
    return _LINK.findall(_CODE.sub("", _FENCED.sub("", text)))


def broken(document):
    for link in links(document.read_text()):
        if re.match(r"[a-z]+:", link):
            continue
        name, _, anchor = link.partition("#")
        place = document.parent / name if name else document
        if not place.exists() or (anchor and anchor not in anchors(place.read_text())):
            yield link


@pytest.mark.parametrize("document", DOCUMENTS, ids=lambda document: str(document.relative_to(ROOT)))
def test_links_lead_somewhere(document):
    assert list(broken(document)) == []


def test_every_document_is_linked_from_the_first():
    """Following the links from README.md reaches everything below docs/."""
    reached, waiting = set(), [ROOT / "README.md"]
    while waiting:
        document = waiting.pop()
        if document in reached or document.suffix != ".md" or not document.is_file():
            continue
        reached.add(document)
        waiting += [(document.parent / link.partition("#")[0]).resolve() for link in links(document.read_text())]
    assert [path for path in DOCUMENTS if (ROOT / "docs") in path.parents and path not in reached] == []


def test_broken_links_are_found(tmp_path):
    document = tmp_path / "a.md"
    document.write_text("# A `b`, c\n## A `b`, c\n[x](#a-b-c-1) [y](#no) [z](no.md) `[n](no)`\n```\n[m](no)\n```\n[w](a.md#a-b-c)\n")
    assert list(broken(document)) == ["#no", "no.md"]
