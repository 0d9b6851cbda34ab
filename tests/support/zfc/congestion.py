"""Congestion management for the tests: fields of ports and targets, and the statistics list, laid out byte by byte."""

import struct

from .host import NOISE, Adapter, Host, Port
from .port import entry, raw_fields
from .target import target

FIRST, SECOND = 1 << 23, 1 << 26  # capability bits: the generations of the statistics
PORT_KIND, OTHER_KIND = 0x80, 0x01

LIST_CALL = "TORPI_GetAdapterList()"
ENABLED = "TORPI_IsVCLMFeatureEnabled"
ENABLED_CALL = f"{ENABLED}(port, 0)"
GET_LIST = "TORPI_GetSCMRStatisticsList"
GET_LIST_CALL = f"{GET_LIST}(port, null)"
FREE_LIST = "TORPI_FreeSCMRStatisticsList"
FREE_LIST_CALL = f"{FREE_LIST}(the list)"

MAINTENANCE = "Failed, Command not supported when adapter port in maintenance mode"
SETTINGS_ERROR = "Failed, VCLM settings read error"
WRONG_ADAPTER = "Failed, Feature not supported for this adapter"
NOT_BY_DRIVER = "Failed, Driver/Firmware does not support this feature"
VIRTUAL = "Failed, Feature not supported for virtual port"
DISABLED = "Failed, Feature disabled on the port"
READ_ERROR = "Failed, Statistics read error"
CLEAR_ERROR = "Failed, Statistics list clear error"
INVALID = "Failed, Invalid parameter"
NO_FILE = "Failed, File not found"
NO_HOST = "Failed, Host not found"

# The adapters with congestion management, and one of each other kind: another family, another vendor.
FAMILY = [0x3522, 0x3150, 0x3640]

_PORT = {
    "notifications": (684, "<H"),
    "link_event": (686, "<H"),
    "threshold": (688, "<I"),
    "delivery": (692, "<H"),
    "event": (694, "<H"),
    "period": (696, "<I"),
    "severity": (700, "<B"),
    "fabric": (701, "<B"),
    "congestion": (702, "<B"),
    "lane": (703, "<B"),
    "seconds": (704, "<I"),
    "integrity": (708, "<B"),
    "delivery_events": (709, "<B"),
    "throttling": (710, "<B"),
    "alarms": (840, "<Q"),
    "warnings": (848, "<Q"),
}

PORT_DEFAULTS = {
    "notifications": 7,
    "link_event": 4,
    "threshold": 4294967295,
    "delivery": 2,
    "event": 3,
    "period": 1000,
    "severity": 0xF7,
    "fabric": 7,
    "congestion": 1,
    "lane": 1,
    "seconds": 4294967295,
    "integrity": 1,
    "delivery_events": 255,
    "throttling": 2,
    "alarms": 0x1_0000_0005,
    "warnings": 2**64 - 1,
}

_TARGET = {
    "notifications": (30, "<H"),
    "link_event": (32, "<H"),
    "threshold": (36, "<I"),
    "delivery": (40, "<H"),
    "event": (42, "<H"),
    "period": (44, "<I"),
    "integrity": (49, "<B"),
    "seconds": (52, "<I"),
}

TARGET_DEFAULTS = {
    "notifications": 14,
    "link_event": 5,
    "threshold": 4294967295,
    "delivery": 1,
    "event": 2,
    "period": 2000,
    "integrity": 1,
    "seconds": 4294967295,
}


def _split(fields, table):
    """The fields of the table, and all others."""
    inside = {name: value for name, value in fields.items() if name in table}
    return inside, {name: value for name, value in fields.items() if name not in table}


def port(*, capabilities=SECOND, **fields):
    """A port with its congestion fields; the keywords are the fields that differ from the defaults."""
    own, others = _split(fields, _PORT)
    made = entry(capabilities=capabilities, **others)
    made.raw |= raw_fields(_PORT, {**PORT_DEFAULTS, **own})
    return made


def one_port(**fields):
    """A host with one such port."""
    return Host([Adapter(ports=[Port(0, [port(**fields)])])])


def congested_target(**fields):
    """A target with its congestion fields."""
    own, others = _split(fields, _TARGET)
    made = target(**others)
    made.raw |= raw_fields(_TARGET, {**TARGET_DEFAULTS, **own})
    return made


def one_target(found=None, **fields):
    """A host with one port, which sees this target; the keywords are the port's."""
    return one_port(targets=[found or congested_target()], **fields)


# The offsets of the counters in an element of the statistics list.
COUNTERS = [*range(48, 240, 8), 248, 256]


def element(kind=PORT_KIND, *, names="", counters=None):
    """An element of the statistics list: both names in one text, its counters by their offset (zeros without them),
    and noise elsewhere."""
    raw = bytearray([NOISE]) * 976
    octets = bytes.fromhex(names.replace(":", ""))
    raw[: len(octets)] = octets
    struct.pack_into("<I", raw, 16, kind)
    for offset in COUNTERS:
        struct.pack_into("<Q", raw, offset, (counters or {}).get(offset, 0))
    return bytes(raw)


def wide(base):
    """Counters that all differ, from this number on."""
    return {offset: base + offset for offset in COUNTERS}


TOP = dict.fromkeys(COUNTERS, 2**64 - 1)


def marks(counters, only=None):
    """The values of an expected document for counters by their offset."""
    return {f"c{offset}": value for offset, value in counters.items() if only is None or offset in only}


def statistics_list(zfc, *elements):
    """The environment that makes the library serve this list."""
    path = zfc.folder / "scmr.list"
    path.write_bytes(b"".join(elements))
    return {"HOSTILE_SCMR_LIST": str(path)}
