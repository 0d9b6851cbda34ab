import sys
import tempfile
from pathlib import Path

import pytest

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
sys.path.insert(0, str(Path(__file__).resolve().parent))

from zfc.runner import BUILD, EXECUTABLE, Zfc  # noqa: E402


def pytest_sessionstart(session):
    parts = [EXECUTABLE, BUILD / "tests/private_run", BUILD / "tests/exhaust_server.so"]
    missing = [str(part) for part in parts if not part.exists()]
    if missing:
        pytest.exit(f"not built: {', '.join(missing)}; ZFC_BUILD_DIR names the build folder", returncode=3)


@pytest.fixture(scope="session")
def bench():
    """A server of the program with the built-in host, for all tests of this process; see bench.py."""
    from bench import Bench

    with tempfile.TemporaryDirectory() as folder:
        made = Bench(Zfc(Path(folder) / "run"))
        yield made
        made.close()
