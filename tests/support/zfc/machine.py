"""What this machine allows the tests."""

import re
import subprocess

import pytest

from .runner import BUILD

# A run without a mount namespace has its private folders by a preloaded library.
HAS_NAMESPACE = (
    subprocess.run([BUILD / "tests" / "private_run", "--has-namespace"], stderr=subprocess.DEVNULL).returncode == 0
)
needs_mounts = pytest.mark.skipif(not HAS_NAMESPACE, reason="mounts are refused on this machine")

_NO_STAGING = re.compile(rb"zfc-lab run: no private staging folder \([^)\n]+\); staged files go to [^\n]*\n")


def without_staging_notice(stderr):
    """Standard error without what `zfc-lab run` says where mounts are refused, which it has to say there."""
    return stderr if HAS_NAMESPACE else _NO_STAGING.sub(b"", stderr)
