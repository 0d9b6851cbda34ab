"""What the tests of a port's configuration need: records laid out byte by byte, staged files, and runs of both forms
of a command from the same staged file.

The offsets are here a second time, apart from the program's own headers. Whatever a record does not name is noise, so
that a byte that does not pass through shows.
"""

import struct
from dataclasses import dataclass

from . import documents, port
from .host import NOISE, Adapter, Host, Lun, Port, Target

IDENTIFIER = port.IDENTIFIER
# The calls of the configuration commands whose prints must never reach standard output.
BRACKETED = tuple(
    f"TORPI_{name}"
    for name in (
        "GetHBAParamsInfo",
        "UpdateHBAParameters",
        "RestoreDefaultNVRAM",
        "SaveSingleAdapterNVRAMToFile",
        "FCGetBBCSupportInfoEx",
        "FCSetBBCSupportInfo",
        "FCGetFECSupportInfo",
        "FCSetFECSupportInfo",
        "GetFWPrivateStats",
        "ResetFECCounters",
        "IsMezzAdapter",
        "GetBfsConfigMode",
        "SetBfsConfigMode",
        "GetBootDeviceInfo",
        "SetBootDeviceInfo",
        "GetNVMeBootDeviceEntries",
        "SetNVMeBootDeviceEntries",
        "GetAdapterBeaconStatus",
        "UpdateAdapterBeaconStatus",
    )
)

# Statuses of any command, and what their documents say.
INVALID = "Failed, Invalid parameter"
UNKNOWN = "Failed, Unknown"
NO_HOST = "Failed, Host not found"
UNSUPPORTED = "Failed, Feature not supported for this adapter"
VIRTUAL = "Failed, Feature not supported for virtual port"
MAINTENANCE = "Failed, Command not supported when adapter port in maintenance mode"

LIST_CALL = "TORPI_GetAdapterList()"
REBOOT_CALL = "TORPI_IsRebootRequired(1)"

ROM_BIOS, ROM_UEFI = 0x08, 0x02

_PARAMS = {
    "data_rate": 0,
    "connection_options": 4,
    "fc_tape": 8,
    "luns_per_target": 12,
    "enable_hard_loop_id": 16,
    "hard_loop_id": 20,
    "frame_size": 24,
    "lip_full_login": 32,
    "target_reset": 36,
    "loop_reset_delay": 44,
    "login_retry_count": 48,
    "port_down_retry_count": 52,
    "execution_throttle": 56,
    "operation_mode": 68,
    "interrupt_delay_timer": 72,
    "link_down_timeout": 76,
    "disable_bios": 100,
    "out_of_order": 148,
    "lr": 208,
    "fabric_wwn": 212,
    "disable_scm": 236,
}
_VIRTUAL_LANE = 286

PARAMS = {
    "data_rate": 2,
    "connection_options": 1,
    "fc_tape": 1,
    "luns_per_target": 128,
    "enable_hard_loop_id": 0,
    "hard_loop_id": 17,
    "frame_size": 2048,
    "lip_full_login": 1,
    "target_reset": 0,
    "loop_reset_delay": 5,
    "login_retry_count": 8,
    "port_down_retry_count": 30,
    "execution_throttle": 65535,
    "operation_mode": 6,
    "interrupt_delay_timer": 100,
    "link_down_timeout": 29,
    "disable_bios": 1,
    "out_of_order": 1,
    "lr": 0,
    "fabric_wwn": 1,
    "disable_scm": 1,
    "virtual_lane": 0,
}


def with_params(record, **fields):
    """The record with some of its parameters replaced."""
    record = bytearray(record)
    for name, value in fields.items():
        if name == "virtual_lane":
            record[_VIRTUAL_LANE] = value
        else:
            struct.pack_into("<I", record, _PARAMS[name], value & 0xFFFFFFFF)
    return bytes(record)


def params(**fields):
    """The record of the HBA parameters."""
    return with_params(bytes([NOISE]) * 512, **{**PARAMS, **fields})


_BOOT_FLAGS = {
    "disable_bios": 100,
    "selectable_boot": 104,
    "selective_login": 128,
    "selective_lun": 140,
    "world_login": 144,
    "fabric_lun": 216,
}
DRIVE_OFFSETS = (116, 168, 180, 192, 244, 254, 264, 274)

NO_NAME = "00:00:00:00:00:00:00:00"
BOOT_FLAGS = {
    "disable_bios": 0,
    "selectable_boot": 1,
    "selective_login": 0,
    "selective_lun": 1,
    "world_login": 0,
    "fabric_lun": 1,
}
DRIVES = [(f"50:06:01:60:3b:20:41:0{drive}", 10 + drive) for drive in range(8)]


def octets(name):
    return bytes.fromhex(name.replace(":", ""))


def with_boot(record, *, drives=None, **flags):
    """The boot record with some flags and drives replaced; drives: (port name, LUN) by number."""
    record = bytearray(record)
    for name, value in flags.items():
        struct.pack_into("<I", record, _BOOT_FLAGS[name], value)
    for drive, (name, lun) in (drives or {}).items():
        struct.pack_into("<8sH", record, DRIVE_OFFSETS[drive], octets(name), lun)
    return bytes(record)


def boot(*, drives=None, **flags):
    """The boot record."""
    record = with_boot(bytes([NOISE]) * 512, drives=dict(enumerate(DRIVES)), **BOOT_FLAGS)
    return with_boot(record, drives=drives, **flags)


@dataclass
class NvmeEntry:
    wwpn: str = NO_NAME
    wwnn: str = NO_NAME
    namespace: int = 0
    controller: int = 0
    enable: int = 0
    nqn: bytes = b""
    after: bytes = bytes(256)  # what follows the NQN's terminator


def with_nvme(record, entries):
    """The NVMe record with some entries replaced, by their number."""
    record = bytearray(record)
    for number, entry in entries.items():
        at = 16 + 284 * number
        struct.pack_into("<8s8sIH", record, at, octets(entry.wwpn), octets(entry.wwnn), entry.namespace, entry.controller)
        record[at + 24] = entry.enable
        nqn = entry.nqn if len(entry.nqn) == 256 else (entry.nqn + b"\0" + entry.after)[:256]
        record[at + 28 : at + 284] = nqn
    return bytes(record)


def nvme(entries=None):
    """The NVMe record: the entries given, and empty ones."""
    record = with_nvme(bytes([NOISE]) * 2560, {number: NvmeEntry() for number in range(8)})
    return with_nvme(record, entries or {})


def bbcr(status=1, configured=5, state=1, negotiated=7, reason=b""):
    return bytes([status, configured, state, negotiated]) + reason + b"\0" * (64 - len(reason))


def statistics(correctable=0, uncorrectable=0):
    """The firmware's statistics block, with something after the last counter."""
    block = bytearray([NOISE]) * 600
    struct.pack_into("<Q", block, 256, correctable)
    struct.pack_into("<Q", block, 520, uncorrectable)
    return bytes(block)


def target(name, luns=(), *, nvme=False, node_name=NO_NAME, controller=0, nqn=b""):
    """A remote target with LUNs or namespaces of these numbers."""
    raw = {
        0: octets(node_name),
        197: bytes([0x08 if nvme else 0x00]),
        542: struct.pack("<H", controller),
        560: nqn if len(nqn) == 256 else nqn + b"\0",
    }
    return Target(name=name, luns=[Lun(number=number) for number in luns], raw=raw)


def entry(name="port", *, subsystem=(0x1C9E, 0x0001), rom=ROM_BIOS | ROM_UEFI, targets=(), **fields):
    """A protocol entry as in zfc.port; also its subsystem identifiers, ROM flags and targets."""
    made = port.entry(name, **fields)
    made.raw[32] = struct.pack("<HH", *subsystem)
    made.raw[472] = struct.pack("<I", rom)
    made.targets = list(targets)
    return made


def one_port(**fields):
    """A host with one adapter that has one port."""
    return Host([Adapter(ports=[Port(0, [entry(**fields)])])])


@dataclass
class Both:
    """The two forms of a command, each run from the same staged file."""

    calls: list  # of the command; the same for both
    staged: bytes | None  # the staged file after it; the same for both
    code: int | None  # the command's code; None unless the runs logged it

    @property
    def written(self):
        """The records that reached the device, by the name of the call."""
        found = [call for call in self.calls if call.startswith(("TORPI_Update", "TORPI_Set")) and len(call) > 200]
        return {call.split("(")[0]: bytes.fromhex(call.split(", ")[1].rstrip(")")) for call in found}


class Staging:
    """The staged file of one family for one port."""

    def __init__(self, zfc, family, identifier=IDENTIFIER):
        self.folder = zfc.staging
        self.path = zfc.staging / f"{family}_{identifier}"

    def clear(self):
        for found in self.folder.iterdir():
            found.unlink()

    def write(self, content):
        self.path.write_bytes(content)

    def read(self):
        return self.path.read_bytes() if self.path.exists() else None


def lines(values):
    """The content of a staged file: one line for each pair."""
    return "".join(f"{key}={value}\n" for key, value in values.items()).encode()


def changed(content, **values):
    """A staged file with the values of some keys replaced at their places."""
    found = dict(line.split("=", 1) for line in content.decode().splitlines())
    assert set(values) <= set(found), f"no such keys: {set(values) - set(found)}"
    return lines({**found, **{key: str(value) for key, value in values.items()}})


def turns(**results):
    """The environment in which calls answer results in turn, the last one for all further times."""
    return {f"HOSTILE_TURNS_TORPI_{call}": ",".join(map(str, answers)) for call, answers in results.items()}


def run_both(zfc, node, command, family, name, *, words=(IDENTIFIER,), staged=None, usage="", values=None, **options):
    """Runs both forms of a command of a node, each from the staged file given (None: no file), and compares each whole
    output with `name`.xml and `name`.txt. `usage` follows the document of the "cli" form. Nothing but the staged file
    may be left in the staging folder."""
    options = {"host": one_port(), "chatter": BRACKETED, **options}
    staging = Staging(zfc, family)
    results, files = [], []
    for form, ending, usage_shown in (("", ".xml", ""), ("cli", ".txt", usage)):
        staging.clear()
        if staged is not None:
            staging.write(staged)
        result = zfc(["-t", "port", "-s", node, command + form, *words], **options)
        documents.check(result.stdout, name + ending, usage=usage_shown, **(values or {}))
        if "spoil_log" in options:
            zfc.mend_log()
        assert {found.name for found in staging.folder.iterdir()} <= {staging.path.name}
        results.append(result)
        files.append(staging.read())
    assert results[0].calls == results[1].calls
    assert files[0] == files[1]
    code = results[0].code if options.get("debug") else None
    return Both(results[0].command_calls, files[0], code)


def logged(zfc, words, *, staged=None, **options):
    """The run of a text command with the whole debug log. words: the node, the command without "cli", its arguments;
    staged: a file's family and content."""
    if staged is not None:
        Staging(zfc, staged[0]).write(staged[1])
    node, command, *arguments = words
    buffers = {"params": params(), "bbcr": bbcr(), "boot": boot(), "nvme": nvme(), **options.pop("buffers", {})}
    options = {"host": one_port(), "chatter": BRACKETED, "buffers": buffers, **options}
    return zfc(["-t", "port", "-s", node, f"{command}cli", *arguments], debug=65535, **options)


NO_LIBRARY_LOG = "Failed to open /var/tmp/torpi-output.log file"
NO_PORT = "Get phy port failed err=6"
