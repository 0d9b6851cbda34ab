"""Hosts for the device library of the tests, laid out byte by byte.

The offsets are written here a second time, apart from the program's own headers, so that a
field at a wrong place shows.
Whatever a record does not name is filled with noise, after a text's terminator too: a program that reads another
place, or past the end of a text, shows noise instead of a value.

    Host([Adapter(model="ZX100", serial="AB12345", ports=[Port(0, [Fc(device=0x3522)])])])

None in place of a list is a null pointer to it; an empty list is a list record whose first pointer is null.
"""

import struct
from dataclasses import dataclass, field

NOISE = 0xA5
SORVEX = 0x1C9E

# Devices of each family, the bits that the family ignores included.
ASTER = [0x3A02, 0x3A12, 0x5C02, 0x5C12]
BIRCH = [0x3B41, 0x3B40]  # 0x3B40 is of the Dahlia family as well
CEDAR = [0x7102, 0x7122, 0x7132, 0x7932]  # the last two are of the Elm family as well
DAHLIA = [0x3640, 0x3648, 0x3740, 0x3748, 0x3A40, 0x3A48, 0x3B40, 0x3B48, 0x3E40, 0x3E48, 0x3F40, 0x3F48]
ELM_ONLY = [0x3432, 0x3C32]
FERN = [0x7132, 0x7932]
ELM = ELM_ONLY + FERN
HAZEL = [0x3522, 0x3D22, 0x3D62]
IRIS = [0x3150, 0x3350, 0x3850, 0x3950]
STRANGERS = [0x0000, 0x1234, 0x3522 ^ 0x0001, 0x3562, 0x3442, 0x3250, 0x3750, 0xFFFF]  # of no family


def every_device():
    """Each device once."""
    return sorted({*ASTER, *BIRCH, *CEDAR, *DAHLIA, *ELM, *HAZEL, *IRIS, *STRANGERS})


@dataclass
class Lun:
    """One LUN or namespace of a target."""

    number: int = 0
    raw: dict = field(default_factory=dict)  # bytes laid over the record, by their offset


@dataclass
class Target:
    """One remote target of a port."""

    name: str = "50:00:00:00:00:00:00:01"  # its port name
    raw: dict = field(default_factory=dict)  # bytes laid over the record, by their offset
    luns: list = field(default_factory=list)


@dataclass
class Fc:
    """One protocol entry of a port. `name` is what the handle is called in the list of calls."""

    name: str = "port"
    device: int = 0x3522
    vendor: int = SORVEX
    type: int = 0  # 0 FC, 1 FCoE, 2 and above: another protocol
    interface: int = 1  # 1 physical, 3 virtual
    targets: list = field(default_factory=list)
    raw: dict = field(default_factory=dict)  # bytes laid over the record, by their offset


@dataclass
class Port:
    number: int = 0
    entries: list | None = field(default_factory=lambda: [Fc()])


@dataclass
class Adapter:
    serial: str | bytes = "AB12345"
    model: str | bytes = "ZX100"
    ports: list | None = field(default_factory=lambda: [Port()])
    type: int = 2
    manufacturer: str | bytes = "Sorvex"
    vendor: int = SORVEX
    subsystem_vendor: int = 0x1D4A
    subsystem_device: int = 0x0B02
    bus: int = 0x5E
    bios: str | bytes = "3.62"
    fcode: str | bytes = "4.11"
    efi: str | bytes = "7.35"
    firmware: str | bytes = "9.12.01"
    multiboot: str | bytes = "09.12.03"
    chip_revision: int = 3


@dataclass
class Host:
    adapters: list | None = field(default_factory=lambda: [Adapter()])
    count: int | None = None  # what the list claims; the true count without it

    def image(self):
        """The bytes of the image file, and the names of all handles by their place in it."""
        if self.adapters is None:
            return struct.pack("<QQQ", 2**64 - 1, 0, 0), {}
        writer = _Writer()
        count = len(self.adapters) if self.count is None else self.count
        listed = writer.record(16)
        writer.put(listed, "<I", count)
        writer.chain(listed + 8, self.adapters, writer.adapter, 392)
        return writer.bytes(listed), writer.handles


def one(device=0x3522, *, fc=None, **fields):
    """A host with one adapter that has one port: an entry of this device, or the entry given."""
    return Host([Adapter(ports=[Port(0, [fc or Fc(device=device)])], **fields)])


NO_LIST = Host(None)
NO_ADAPTERS = Host([])
IDENTIFIER = "Adapter_ZX100_AB12345"  # of the default adapter


class _Writer:
    def __init__(self):
        self._bytes = bytearray()
        self._pointers = []
        self.handles = {}

    def bytes(self, listed):
        header = struct.pack("<QQQ", listed, len(self._pointers), len(self._bytes))
        return header + struct.pack(f"<{len(self._pointers)}Q", *self._pointers) + bytes(self._bytes)

    def record(self, size):
        at = len(self._bytes)
        self._bytes += bytes([NOISE]) * (size + -size % 8)
        return at

    def put(self, at, form, *values):
        struct.pack_into(form, self._bytes, at, *values)

    def text(self, at, width, text):
        """A text that fills its field has no terminator."""
        raw = text.encode() if isinstance(text, str) else text
        assert len(raw) <= width, f"{raw!r} is longer than its field of {width} bytes"
        self._bytes[at : at + len(raw)] = raw
        if len(raw) < width:
            self._bytes[at + len(raw)] = 0

    def lay(self, at, raw):
        """Lays bytes over a record, by their offset."""
        for offset, content in raw.items():
            self._bytes[at + offset : at + offset + len(content)] = content

    def point(self, at, target):
        """Null without a target."""
        self.put(at, "<Q", 0 if target is None else target)
        if target is not None:
            self._pointers.append(at)

    def chain(self, at, items, write, next_at):
        """Writes the items; the pointer at `at` leads to the first, that at `next_at` of each to the next."""
        self.point(at, None)
        for item in items:
            entry = write(item)
            self.point(at, entry)
            at = entry + next_at
            self.point(at, None)

    def list_of(self, items, write, next_at):
        """A list record: its first pointer is at 8. None gives no record."""
        if items is None:
            return None
        listed = self.record(16)
        self.chain(listed + 8, items, write, next_at)
        return listed

    def adapter(self, adapter):
        at = self.record(400)
        self.text(at, 32, adapter.serial)
        self.put(at + 32, "<I", adapter.type)
        self.text(at + 36, 80, adapter.manufacturer)
        self.put(at + 116, "<HHHH", adapter.vendor, adapter.subsystem_vendor, adapter.subsystem_device, adapter.bus)
        self.text(at + 156, 32, adapter.model)
        self.text(at + 188, 32, adapter.bios)
        self.text(at + 220, 32, adapter.fcode)
        self.text(at + 252, 32, adapter.efi)
        self.text(at + 284, 32, adapter.firmware)
        self.text(at + 316, 32, adapter.multiboot)
        self.put(at + 348, "<I", adapter.chip_revision)
        self.point(at + 384, self.list_of(adapter.ports, self.port, 16))
        return at

    def port(self, port):
        at = self.record(24)
        self.put(at, "<I", port.number)
        self.point(at + 8, self.list_of(port.entries, self.entry, 2680))
        return at

    def entry(self, entry):
        at = self.record(2688)
        self.handles[at + 16] = entry.name
        self.put(at + 28, "<HH", entry.vendor, entry.device)
        self.put(at + 462, "<H", entry.interface)
        self.put(at + 1992, "<I", len(entry.targets))
        self.put(at + 2676, "<I", entry.type)
        self.lay(at, entry.raw)
        self.chain(at + 2000, entry.targets, self.target, 1488)
        return at

    def target(self, target):
        at = self.record(1496)
        self.put(at + 224, "<I", len(target.luns))
        self.lay(at, {8: bytes.fromhex(target.name.replace(":", "")), **target.raw})
        self.chain(at + 232, target.luns, self.lun, 384)
        return at

    def lun(self, lun):
        at = self.record(392)
        self.put(at, "<H", lun.number)
        self.lay(at, lun.raw)
        return at
