"""Targets and LUNs for the tests: their records laid out byte by byte, and what the statistics of a target give."""

import struct

from .host import NOISE, Adapter, Host, Lun, Port, Target
from .port import IDENTIFIER as PORT
from .port import entry, raw_fields

WWPN = bytes.fromhex("50060160abcdef01")
IDENTIFIER = f"{PORT}_Target_50:06:01:60:ab:cd:ef:01"
NVME = {"nvme": True}

_TARGET_FIELDS = {
    "node_name": (0, bytes),
    "wwpn": (8, bytes),
    "port_id": (16, bytes),
    "number": (22, "<H"),
    "congestion": (48, "<B"),
    "lane": (50, "<B"),
    "throttling": (51, "<B"),
    "vendor": (164, 8),
    "product": (172, 16),
    "revision": (188, 4),
    "flags": (192, bytes),
    "lun_count": (224, "<I"),
    "product_type": (248, "<I"),
    "serial": (260, 64),
    "old_port_id": (328, bytes),
    "old_wwpn": (332, bytes),
    "old_type": (340, "<B"),
    "old_secure": (341, "<B"),
    "old_session": (342, "<B"),
    "remote_port_id": (400, bytes),
    "remote_flags": (404, "<B"),
    "remote_wwpn": (408, bytes),
    "remote_session": (432, "<I"),
    "nvme_revision": (528, 8),
    "controller_id": (542, "<H"),
    "nqn": (560, 256),
}

_TARGET_DEFAULTS = {
    "node_name": bytes.fromhex("200050060160abcd"),
    "wwpn": WWPN,
    "port_id": (0x01, 0x0B, 0xFF),
    "number": 300,
    "congestion": 0,
    "lane": 2,
    "throttling": 2,
    "vendor": "LABSTOR",
    "product": "VirtualArray",
    "revision": "2.10",
    "product_type": 0,
    "serial": "SN-0042",
    "nvme_revision": "7.24.1",
    "controller_id": 0x01AB,
    "nqn": "nqn.2026-01.lab:subsystem:0042",
}

_LUN_FIELDS = {
    "vendor": (14, 8),
    "product": (22, 16),
    "size": (38, "<I"),
    "unique_id": (43, bytes),
    "length": (75, "<B"),
    "nvme_revision": (80, 8),
    "revision": (88, 4),
    "nvme_length": (364, "<B"),
    "nvme_size": (365, "<Q"),
}

_LUN_DEFAULTS = {
    "vendor": "LABSTOR",
    "product": "VirtualDisk",
    "size": 102400,
    "unique_id": bytes.fromhex("600508b4000971ca0000f0000b2c00ff") + bytes(16),
    "length": 16,
    "nvme_revision": "7.24.1",
    "revision": "2.10",
    "nvme_length": 8,
    "nvme_size": 5000000000,
}


def state_flags(online=(True, True), unconfigured=False, nvme=False):
    """The state bytes of a target. All bits without a meaning here are set."""
    return bytes(
        [
            0xFF if unconfigured else 0xBF,
            0xFF,
            0xFF if online[0] else 0xFD,
            0xFF,
            0xFF if online[1] else 0xFE,
            0xFF if nvme else 0xF7,
        ]
    )


def current_record(roles=2, session=4, secure=True, wwpn=WWPN, port_id=(0x01, 0x0B, 0xFF)):
    """The fields of the current remote-port record. Bits without a meaning here are set."""
    return {
        "remote_port_id": (*port_id, 0xFF),
        "remote_flags": 0xEC | roles | (0x10 if secure else 0),
        "remote_wwpn": wwpn,
        "remote_session": session,
    }


def older_record(role=1, secure=0, session=0, wwpn=WWPN, port_id=(0x01, 0x0B, 0xFF)):
    """The fields of the older remote-port record."""
    return {
        "old_port_id": (*port_id, 0xFF),
        "old_wwpn": wwpn,
        "old_type": role,
        "old_secure": secure,
        "old_session": session,
    }


def target(luns=(), *, nvme=False, **fields):
    """A target with the fields that every report shows; the keywords are the fields that differ from the defaults."""
    values = {**_TARGET_DEFAULTS, "flags": state_flags(nvme=nvme), **fields}
    return Target(raw=raw_fields(_TARGET_FIELDS, values), luns=list(luns))


def lun(number=0, **fields):
    """A LUN or namespace; the keywords are the fields that differ from the defaults."""
    return Lun(number, raw=raw_fields(_LUN_FIELDS, {**_LUN_DEFAULTS, **fields}))


def luns(*numbers):
    return [Lun(number) for number in numbers]


def one_target(found=None, **fields):
    """A host with one port, which sees this target; the keywords are the port's."""
    return Host([Adapter(model="ZX320", ports=[Port(0, [entry(targets=[found or target()], **fields)])])])


def statistics(*counters):
    """The statistics of a target with six counters; noise all around them."""
    return bytes([NOISE]) * 24 + struct.pack("<6I", *counters) + bytes([NOISE]) * 136
