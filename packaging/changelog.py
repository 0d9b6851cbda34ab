"""The sections of CHANGELOG.md, whose headings are "## [VERSION]" or "## [VERSION] - DATE"."""

import re
import sys
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


if __name__ == "__main__":  # changelog.py FILE VERSION: prints the section
    found = section(sys.argv[1], sys.argv[2])
    if not found:
        sys.exit(f"changelog.py: {sys.argv[1]} has no section [{sys.argv[2]}] with text in it")
    print(found)
