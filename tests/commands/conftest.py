import itertools
import os
import random
import sys
from pathlib import Path

import pytest

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))

pytest.register_assert_rewrite("zfc.documents", "zfc.runner", "zfc.terminal")

from zfc.runner import BUILD, EXECUTABLE, ZFC_JSON, Zfc  # noqa: E402


def pytest_sessionstart(session):
    made = [BUILD / "tests" / name for name in ("private_run", "step_files", "hostile", "sparse")]
    parts = [EXECUTABLE, ZFC_JSON, *made]
    missing = [str(part) for part in parts if not part.exists()]
    if missing:
        pytest.exit(f"not built: {', '.join(missing)}; ZFC_BUILD_DIR names the build folder", returncode=3)


def pytest_collection_modifyitems(items):
    """ZFC_TEST_ORDER is the seed of a random order."""
    if seed := os.environ.get("ZFC_TEST_ORDER"):
        random.Random(seed).shuffle(items)


_folders = itertools.count()


@pytest.fixture
def tmp_path(tmp_path_factory):
    """A new folder. pytest's own fixture lists all earlier ones to find a free number, which costs thousands of tests more
    than their commands do."""
    folder = tmp_path_factory.getbasetemp() / str(next(_folders))
    folder.mkdir()
    return folder


@pytest.fixture
def zfc(tmp_path):
    """Runs the executable in private folders; see tests/support/zfc/runner.py."""
    return Zfc(tmp_path / "run")
