"""The sections of CHANGELOG.md, whose headings are "## [VERSION]" or "## [VERSION] - DATE"."""

import re
from pathlib import Path


def section(path, version):
    """The text of a version's section without its heading; None where there is none."""
    found = re.search(rf"^## \[{re.escape(version)}\].*?$\n(.*?)(?=^## \[|\Z)", Path(path).read_text(), re.M | re.S)
    return found[1].strip() if found else None


def entries(text):
    """The list entries of a section, each on one line."""
    joined = []
    for line in text.splitlines():
        if line.startswith("- "):
            joined.append(line[2:])
        elif line.startswith("  ") and joined:
            joined[-1] += " " + line.strip()
    return joined
