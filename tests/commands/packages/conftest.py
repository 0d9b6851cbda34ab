import os

import pytest

from zfc.packages import RELEASE, Unpacked, packed_once
from zfc.runner import SANITIZED

# Only an optimised build without sanitizers is packed.
collect_ignore_glob = [] if RELEASE and not SANITIZED else ["test_*.py"]


@pytest.fixture(scope="session")
def packages(tmp_path_factory):
    """The folder of the packages, the same for all workers of this run."""
    folder = tmp_path_factory.getbasetemp()
    return packed_once(folder.parent if "PYTEST_XDIST_WORKER" in os.environ else folder)


@pytest.fixture(scope="session")
def unpacked(packages, tmp_path_factory):
    return Unpacked(packages, tmp_path_factory.mktemp("unpacked"))
