import itertools
import os
import random
import shutil
import sys
from pathlib import Path

import pytest

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))

pytest.register_assert_rewrite("zfc.documents", "zfc.runner", "zfc.terminal")

from zfc.runner import BUILD, EXECUTABLE, ZFC_JSON, Zfc  # noqa: E402


_folders = itertools.count()
_PASSED = pytest.StashKey[bool]()


def pytest_sessionstart(session):
    made = [BUILD / "tests" / name for name in ("private_run", "start_server.so", "step_files", "hostile", "sparse")]
    parts = [EXECUTABLE, ZFC_JSON, *made]
    missing = [str(part) for part in parts if not part.exists()]
    if missing:
        pytest.exit(f"not built: {', '.join(missing)}; ZFC_BUILD_DIR names the build folder", returncode=3)


def pytest_collection_modifyitems(items):
    """ZFC_TEST_ORDER is the seed of a random order."""
    if seed := os.environ.get("ZFC_TEST_ORDER"):
        random.Random(seed).shuffle(items)


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    outcome = yield
    if call.when == "call":
        item.stash[_PASSED] = outcome.get_result().passed


@pytest.fixture
def tmp_path(tmp_path_factory, request):
    """A new folder, which only a failed test leaves. pytest's own fixture lists all earlier ones to find a free number:
    that costs thousands of tests more than their commands do."""
    folder = tmp_path_factory.getbasetemp() / str(next(_folders))
    folder.mkdir()
    yield folder
    if request.node.stash.get(_PASSED, False):
        shutil.rmtree(folder, ignore_errors=True)


@pytest.fixture
def zfc(tmp_path):
    """Runs the executable in private folders; see tests/support/zfc/runner.py."""
    return Zfc(tmp_path / "run")
