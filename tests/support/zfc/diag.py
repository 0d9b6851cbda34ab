"""Ports for the tests of the diagnostic commands, and what the diagnostic calls answer."""

import struct

from .host import NO_LIST, NOISE, Adapter, Host, Port, Target
from .port import entry

LIST_CALL = "TORPI_GetAdapterList()"

# The target that the ports of these tests see after another one, and the name of their fabric.
NAME = "50:01:43:80:2e:5f:a0:6c"
OTHER_NAME = "50:01:43:80:2e:5f:a0:6d"
FABRIC_NAME = "10:00:c4:f5:7c:10:20:01"

SECOND_INTERFACE = 0x20000000  # capability bit


def port(*, targets=(OTHER_NAME, NAME), capabilities=SECOND_INTERFACE, flags=(0, 0), connection=7, **fields):
    """A port with its link up and its targets. `flags` are the driver flags and the port flags."""
    made = entry(connection=connection, **fields)
    made.raw[160] = struct.pack("<I", capabilities)
    made.raw[180] = bytes([flags[0]])
    made.raw[184] = bytes([flags[1]])
    made.targets = [Target(name) for name in targets]
    return made


def one_port(**fields):
    """A host with one such port."""
    return Host([Adapter(model="ZX320", ports=[Port(0, [port(**fields)])])])


def step(result=0, *records, null=False, spoils=False):
    """One answer of a call: its result, and the records that it writes. `null` is a list of none; `spoils` keeps the
    next bracket from being opened."""
    text = ("!" if spoils else "") + str(result)
    if records or null:
        text += "/" + ",".join(record.hex() for record in records)
    return text


def script(**calls):
    """The environment that makes calls answer step by step: the names without "TORPI_", a list of steps for each."""
    return {f"HOSTILE_SCRIPT_TORPI_{call}": ";".join(steps) for call, steps in calls.items()}


def _record(size, **fields):
    """A record with noise outside its fields. A field is an offset and its bytes."""
    record = bytearray([NOISE]) * size
    for offset, content in fields.values():
        record[offset : offset + len(content)] = content
    return bytes(record)


def _text(width, text):
    """A text that fills its field has no terminator."""
    raw = text.encode() if isinstance(text, str) else text
    assert len(raw) <= width
    return raw + b"\0" * (len(raw) < width)


def dport_record(
    *,
    hba=(0x89ABCDEF, 1),
    electrical=(0xA1, 1),
    optical=(0xB2, 2),
    traffic=(0x03, 1),
    start="Sat Mar 14 09:26:53 2026\n",
    stop="Sat Mar 14 09:27:11 2026\n",
    mailbox=(0x4000, 0xFEDC),
    tx=5000,
    rx=2500,
    remote_tx=10000,
    remote_rx=4000,
    latency=0x12345678,
    length=25,
):
    """What a link test finds. Powers are in units of 0.1 microwatt."""
    return _record(
        240,
        distance=(8, struct.pack(">II", latency, length)),
        phases=(52, struct.pack("<IBBBBBBB", *hba, *electrical, *optical, *traffic)),
        start=(64, _text(64, start)),
        stop=(128, _text(64, stop)),
        mailbox=(192, struct.pack("<HH", *mailbox)),
        remote=(196, struct.pack(">HH", remote_rx, remote_tx)),
        local=(202, struct.pack(">HH", rx, tx)),
    )


def echo(*, sent=1, received=1, length=116, outcome=0, status="Echo received", time=0.42):
    """What one echo came to; `time` is a number of milliseconds, or the four bytes that stand for it."""
    time_word = struct.pack("<f", time) if isinstance(time, float) else time
    return _record(
        92,
        counts=(0, struct.pack("<IIII", sent, received, length, outcome)),
        status=(16, _text(72, status)),
        time=(88, time_word),
    )


LOST = echo(received=0, length=0, outcome=1, status="No response", time=0.0)


def loopback(status="Success", crc=0, disparity=0, length=0):
    """What a pass of the loopback test found."""
    return _record(
        420, status=(4, _text(64, status)), errors=(68, struct.pack("<III", crc, disparity, length))
    )


def rw_node(status="Success", port_id=(0x01, 0x0A, 0xEF), counters=(0, 1, 2, 3, 4)):
    """What a pass of the read/write buffer test found at one remote port, as far as it is read."""
    return _record(
        288,
        status=(4, _text(260, status)),
        port_id=(264, bytes(port_id)),
        counters=(268, struct.pack("<5I", *counters)),
    )


def request(*, count=1, on_error=0, kind=0, type=0, size=8, pattern=b"", connection=0):
    """The request record of the data tests in the trace: hexadecimal digits of all its bytes."""
    record = bytearray(144)
    struct.pack_into("<I", record, 4, count)
    struct.pack_into("<I", record, 12, on_error)
    struct.pack_into("<IIII", record, 20, count, kind, type, size)
    struct.pack_into("8s", record, 40, pattern)
    record[123] = connection
    return record.hex()


class FreshLog:
    """Runs the executable as its `zfc` does, each time without what an answer that spoils has left."""

    def __init__(self, zfc):
        self._zfc = zfc

    def __call__(self, words, **options):
        if (self._zfc.var_tmp / "torpi-output.log").is_dir():
            self._zfc.mend_log()
        return self._zfc(words, **options)

    def __getattr__(self, name):
        return getattr(self._zfc, name)


LOOKUP = "PhysicalPortCmdsProcessor::GetPhyPortFromPortString"
NO_LOG = {"spoil_log": "TORPI_GetAdapterList:directory"}  # no bracket can be opened


def port_failures(function, identifier, *after):
    """Rows for check_failures: what a command's function logs when the look-up of its port fails, or when the port is
    a virtual one. `after` are the words that follow the identifier."""
    unknown = identifier[:-1] + "6"
    return [
        ([], {}, [f"{LOOKUP}: Invalid Port identifier ", f"{function}: Get phy port failed err=6"]),
        (["help"], {}, [f"{function}: Get phy port failed err=5"]),
        (["nobody"], {}, [f"{LOOKUP}: Invalid Port identifier nobody", f"{function}: Get phy port failed err=6"]),
        ([unknown, *after], {}, [f"{function}: Get phy port failed err=6"]),
        (
            [identifier, *after],
            {"host": NO_LIST},
            [f"{LOOKUP}: Adapter List is NULL", f"{function}: Get phy port failed err=14"],
        ),
        ([identifier, *after], {"host": one_port(interface=3)}, [f"{function}: Command not supported for vport"]),
    ]


def no_output_file(function):
    return [f"{function}: Failed to open /var/tmp/torpi-output.log file"]


def check_failures(zfc, command, rows):
    """Runs `command` with the words and the options of each row, and compares all lines of the debug log at the
    failure level with those of the row."""
    for words, options, lines in rows:
        options = {"host": one_port(), **options}
        (zfc.var_tmp / "zfcesxcli.log").unlink(missing_ok=True)  # each row has a log of its own
        assert zfc([*command.split(), *words], debug=65535, **options).failures == lines, words
