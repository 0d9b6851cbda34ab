"""Runs of zfc-lab that read hosts: what they print, and the hosts that they read."""

import os
import subprocess

from .runner import BUILD, ROOT, reject_sanitizer_report

LAB = BUILD / "bin" / "zfc-lab"
BUILTIN_HOST = ROOT / "simulator" / "builtin_host.yaml"
EXAMPLES = ROOT / "examples"


def lab(*words, status=0, **variables):
    """Runs zfc-lab and returns what it printed on standard output and standard error, as texts."""
    clean = {name: value for name, value in os.environ.items() if not name.startswith("TORPI_")}
    run = subprocess.run(
        [LAB, *map(str, words)], env={**clean, **variables}, capture_output=True, timeout=60, stdin=subprocess.DEVNULL
    )
    reject_sanitizer_report(run.stderr)
    assert run.returncode == status, (run.returncode, run.stderr.decode(errors="replace"))
    return run.stdout.decode(), run.stderr.decode(errors="replace")


def changed(text, *changes):
    """The text with each (old, new) pair replaced, which must be there once."""
    for old, new in changes:
        assert text.count(old) == 1, (old, text.count(old))
        text = text.replace(old, new)
    return text
