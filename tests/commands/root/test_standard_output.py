"""Where standard output leads: nowhere, to a full disk, to a reader that is slow or gone."""

import fcntl
import os
import signal
import subprocess
import time

from zfc.host import IDENTIFIER, Adapter, Host
from zfc.runner import SESSION_END

ADAPTERS = 2000  # a document of 200 KB: more than the stream and a pipe hold
MANY = Host([Adapter(model="M", serial=f"S{number:05}", ports=None) for number in range(ADAPTERS)])


def shell(zfc, line, **options):
    return zfc(["-c", line], program="/bin/sh", **options)


def test_full_disk_ends_as_ever(zfc):
    result = shell(zfc, "exec zfcesxcli -t adapter list >/dev/full", host=MANY)
    assert result.stdout == b"" and result.calls[-1:] == SESSION_END


def test_full_disk_stops_no_change(zfc):
    image = zfc.file("image")
    result = shell(zfc, f"exec zfcesxcli -t adapter update {IDENTIFIER} {image.name} MBI >/dev/full")
    assert any(call.startswith("TORPI_doOptionROMUpdate") for call in result.calls)


def test_closed_standard_output_ends_as_ever(zfc):
    whole = zfc("-t adapter list")
    result = shell(zfc, "exec zfcesxcli -t adapter list >&-")
    assert result.stdout == b"" and result.calls == whole.calls


def test_closed_standard_output_leaves_its_number_to_no_file(zfc):
    """The mirror stays open while documents are printed."""
    lines = f"log mirror\n-t adapter list\n-t adapter -s info getcli {IDENTIFIER}\nq\n".encode()
    mirror = zfc.work / "mirror"
    contents = []
    for closed in ("", ">&-", ">&- 2>&-", "<&- <mirror.in >&-"):
        (zfc.work / "mirror.in").write_bytes(lines)
        shell(zfc, f"exec zfcesxcli <mirror.in {closed}")
        mirror.chmod(0o600)
        contents.append(mirror.read_bytes())
        mirror.unlink()
    assert contents[0].count(b"log mirror") <= 1 and b"q\n" in contents[0]
    assert contents == contents[:1] * len(contents)


def start(zfc, **options):
    """A list whose reader has not read yet: a pipe that holds one page."""
    argv, env = zfc.command("-t adapter list", host=MANY)
    reader, writer = os.pipe()
    fcntl.fcntl(writer, fcntl.F_SETPIPE_SZ, 4096)
    process = subprocess.Popen(argv, env=env, stdout=writer, stderr=subprocess.PIPE, **options)
    os.close(writer)
    return process, reader


def test_slow_reader_gets_everything(zfc):
    whole = zfc("-t adapter list", host=MANY).stdout
    process, reader = start(zfc)
    read = b""
    with os.fdopen(reader, "rb", buffering=0) as pipe:
        while piece := pipe.read(1500):
            read += piece
            time.sleep(0.002)
    assert process.wait(timeout=60) == 0 and process.stderr.read() == b""
    assert read == whole


def test_reader_that_goes_away_ends_the_program(zfc):
    process, reader = start(zfc)
    assert os.read(reader, 100)
    os.close(reader)
    assert process.wait(timeout=60) == -signal.SIGPIPE and process.stderr.read() == b""
