"""Libraries that tests preload into the executable."""

import pytest

from .runner import BUILD, SANITIZED

needs_preload = pytest.mark.skipif(
    SANITIZED, reason="the sanitizers' runtime has to be the first library of a process, so none can be preloaded"
)


def preloaded(name, **settings):
    """The environment of a run with the library `name` and its settings."""
    return {"LD_PRELOAD": f"$ORIGIN/../tests/{name}.so", **{key: str(value) for key, value in settings.items()}}
