"""Programs of the machine whose text tests read: they speak English, in one time zone, whatever the user has."""

import os
import subprocess

PLAIN = {**{name: value for name, value in os.environ.items() if name != "LANGUAGE"}, "LC_ALL": "C.UTF-8", "TZ": "UTC"}


def said(*command):
    """What a program prints on standard output, as text; it has to succeed."""
    return subprocess.run(command, check=True, capture_output=True, text=True, env=PLAIN).stdout
