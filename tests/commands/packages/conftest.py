import os
from pathlib import Path

import pytest

from zfc.packages import RELEASE, Unpacked, packed_once
from zfc.runner import SANITIZED


def pytest_collection_modifyitems(items):
    if RELEASE and not SANITIZED:
        return
    packed = pytest.mark.skip(reason="only an optimised build without sanitizers is packed")
    for item in items:
        if Path(__file__).parent in item.path.parents:
            item.add_marker(packed)


@pytest.fixture(scope="session")
def packages(tmp_path_factory):
    """The folder of the packages, the same for all workers of this run."""
    folder = tmp_path_factory.getbasetemp()
    return packed_once(folder.parent if "PYTEST_XDIST_WORKER" in os.environ else folder)


@pytest.fixture(scope="session")
def unpacked(packages, tmp_path_factory):
    return Unpacked(packages, tmp_path_factory.mktemp("unpacked"))
