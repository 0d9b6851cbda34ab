"""Ports for the tests of the port commands: their records laid out byte by byte, and what reads of a port give."""

import struct

from .host import NOISE, Adapter, Fc, Host, Port

WWPN = bytes.fromhex("2100001122334455")
IDENTIFIER = "FC_21:00:00:11:22:33:44:55"
SD_HANDLE = 0x1234ABCD


def identifier(wwpn):
    """What `list` prints for a port of this name."""
    return "FC_" + ":".join(f"{octet:02x}" for octet in wwpn)


def fixed(text, width):
    """A text in its field; one that fills the field has no terminator."""
    raw = text.encode() if isinstance(text, str) else text
    assert len(raw) <= width
    return raw + b"\0" * (len(raw) < width)


# Fields of the record: offset, and how the value is written there.
_FIELDS = {
    "node_name": (0, bytes),
    "wwpn": (8, bytes),
    "sd_handle": (20, "<I"),
    "pci_capability": (78, "<H"),
    "pci_status": (80, "<H"),
    "driver": (108, 52),
    "running_firmware": (396, 32),
    "driver_flags": (180, "<B"),
    "bios": (428, 32),
    "flash_firmware": (476, bytes),
    "efi": (480, bytes),
    "fcode": (484, bytes),
    "running_mpi": (488, bytes),
    "running_pep": (492, bytes),
    "port_id": (608, bytes),
    "port_type": (611, "<B"),
    "state": (612, "<B"),
    "connection": (613, "<B"),
    "speed": (652, "<I"),
    "link_flags": (660, "<H"),
    "supported": (664, "<B"),
    "capabilities": (160, "<I"),
    "driver_flags": (180, "<B"),
    "target_count": (1992, "<I"),
    "principal": (668, bytes),
    "adjacent": (676, bytes),
    "driver_counters": (752, "<6I"),
    "firmware_counters": (776, "<6I"),
    "host_id": (2160, bytes),
    "host_nqn": (2176, 256),
    "pci_bus": (2672, "<B"),
    "pci_device": (2673, "<B"),
    "pci_function": (2674, "<B"),
}

# A port with its link up.
_DEFAULTS = {
    "node_name": bytes.fromhex("2000001122334455"),
    "wwpn": WWPN,
    "sd_handle": SD_HANDLE,
    "pci_capability": 0x0084,
    "pci_status": 0x0043,
    "driver": "5.4.81.2",
    "running_firmware": "9.15.05",
    "bios": "3.65",
    "flash_firmware": (9, 15, 5),
    "efi": (7, 24),
    "fcode": (4, 14),
    "running_mpi": (1, 40, 0),
    "running_pep": (1, 4, 12),
    "port_id": (0x01, 0x0A, 0xFF),
    "port_type": 1,
    "state": 1,
    "connection": 1,
    "speed": 22,
    "link_flags": 0x7FFF,
    "supported": 0x70,
    "principal": bytes.fromhex("1000c4f57c102001"),
    "adjacent": bytes.fromhex("1000c4f57c1020f2"),
    "driver_counters": (0, 2, 184467, 9213, 1, 73312),
    "firmware_counters": (1, 3, 5, 7, 12, 4294967295),
    "host_id": bytes.fromhex("6d1f402a9b7c4e158a335c0e71d246b8"),
    "host_nqn": "nqn.2014-08.org.nvmexpress:uuid:6d1f402a",
    "pci_bus": 0x5E,
    "pci_device": 0,
    "pci_function": 0xFF,
}


def raw_fields(table, values):
    """The bytes of a record's fields by their offset. The table has each field's offset and its form: bytes as
    they are, a text's width, or a format of struct."""
    raw = {}
    for key, value in values.items():
        offset, form = table[key]
        if form is bytes:
            raw[offset] = bytes(value)
        elif isinstance(form, int):
            raw[offset] = fixed(value, form)
        else:
            raw[offset] = struct.pack(form, *(value if isinstance(value, tuple) else (value,)))
    return raw


def entry(name="port", *, device=0x3522, vendor=0x1C9E, type=0, interface=1, targets=(), **fields):
    """A protocol entry with all its fields; the keywords are the fields that differ from the defaults."""
    raw = raw_fields(_FIELDS, {**_DEFAULTS, **fields})
    return Fc(name, device=device, vendor=vendor, type=type, interface=interface, targets=list(targets), raw=raw)


def one_port(*, number=0, model="ZX320", **fields):
    """A host with one adapter that has one port."""
    return Host([Adapter(model=model, ports=[Port(number, [entry(**fields)])])])


def temperature(celsius):
    """The temperature buffer."""
    return struct.pack("<h", celsius) + bytes([NOISE]) * 62


def lockdown(config=0, firmware_update=0, mpi=0, flags=(1, 1, 1)):
    """The lockdown buffer: the three status words, and the flags."""
    return bytes(flags) + bytes([NOISE]) + struct.pack("<III", config, firmware_update, mpi) + bytes([NOISE]) * 24


def vpd_string(text):
    """The identifier string resource."""
    return b"\x82" + struct.pack("<H", len(text)) + text


def vpd_item(keyword, value):
    """An item of a VPD resource."""
    return keyword + bytes([len(value)]) + value


def vpd_resource(tag, *items):
    """The read-only (0x90) or read-write (0x91) resource."""
    content = b"".join(items)
    return bytes([tag]) + struct.pack("<H", len(content)) + content


VPD_END = b"\x78"


def descriptor(tag, *words, length=None):
    """A descriptor of a Read Diagnostic Parameters response."""
    length = 4 * len(words) if length is None else length
    return struct.pack(f">II{len(words)}I", tag, length, *words)


def rdp(*descriptors, length=None):
    """A whole response."""
    content = b"".join(descriptors)
    return struct.pack(">I", len(content) if length is None else length) + content


def text_words(text):
    """The words of a text, four characters each."""
    assert len(text) % 4 == 0
    return struct.unpack(f">{len(text) // 4}I", text)
