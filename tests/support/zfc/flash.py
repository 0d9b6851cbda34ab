"""What the flash reads of the device library give, laid out byte by byte, with noise wherever a test gives nothing."""

import struct

from .host import NOISE

_COMPONENTS = {
    "pep_firmware": 19,
    "pep_softrom": 25,
    "pep_board_config": 31,
    "preload": 37,
    "fc_board_config": 43,
    "mpi_firmware": 49,
    "mpi_softrom": 55,
    "pcie_serdes": 61,
}

VERSIONS = {
    "preload": (9, 12, 1),
    "fc_board_config": (2, 3, 4),
    "mpi_firmware": (1, 5, 6),
    "pep_firmware": (8, 0, 9),
    "pep_board_config": (10, 20, 30),
    "pep_softrom": (0, 0, 1),
    "mpi_softrom": (3, 100, 200),
    "pcie_serdes": (255, 255, 254),
}


def components(**versions):
    """The component buffer with VERSIONS, some replaced."""
    buffer = bytearray([NOISE]) * 256
    for name, version in {**VERSIONS, **versions}.items():
        struct.pack_into("BBB", buffer, _COMPONENTS[name], *version)
    return bytes(buffer)


def memo(
    signature=b"FMBS",
    family=(9, 13, 2),
    mbi=(9, 12, 3),
    date=b"20240317",
    tool=b"ECLI",
    updated=(2024, 6, 5, 7, 8, 9),
    tool_version=(1, 9, 0, 255),
):
    """The flash memo block."""
    block = bytearray([NOISE]) * 48
    struct.pack_into("4s", block, 0, signature)
    struct.pack_into("BBB", block, 16, *family)
    struct.pack_into("BBB", block, 20, *mbi)
    struct.pack_into("8s4s", block, 24, date, tool)
    struct.pack_into("<HBBBBB", block, 36, *updated)
    struct.pack_into("BBBB", block, 44, *tool_version)
    return bytes(block)
