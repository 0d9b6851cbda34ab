"""Snapshots of hosts whose library is not the lab's: records full of noise, odd lists, failing and lying calls."""

import random

import pytest

from zfc.host import DAHLIA, NO_ADAPTERS, NO_LIST, NOISE, Adapter, Fc, Host, Lun, Port, Target, every_device
from zfc.snapshots import all_reports, identifiers, played, shell, take

NOISY = bytes([NOISE])


def noise(seed, size):
    return random.Random(seed).randbytes(size)


def named(last, **fields):
    """An entry of this port name in records of noise, online and with everything that a driver can do."""
    raw = {8: bytes.fromhex("21000024ff4b9e") + bytes([last]), 612: b"\1", **fields.pop("raw", {})}
    return Fc(raw=raw, **fields)


def targets():
    luns = [Lun(0), Lun(3, {14: b"VENDOR  ", 43: noise(1, 32), 75: b"\x10"}), Lun(65535), Lun(3)]
    return [
        Target("50:00:00:00:00:00:00:01", luns=luns),
        Target("50:00:00:00:00:00:00:02", {192: b"\0\0\2\0\1\x08", 22: b"\7\0", 528: b"1.0\0"}, [Lun(1)]),
        Target("50:00:00:00:00:00:00:01", {0: bytes(8)}),
    ]


HOSTS = {
    "one adapter of noise": Host([Adapter(ports=[Port(0, [named(1, targets=targets())])])]),
    "every device": Host(
        [Adapter(serial=f"N{device}", ports=[Port(0, [named(i, device=device)])]) for i, device in enumerate(every_device())]
    ),
    "other protocols": Host([Adapter(ports=[Port(7, [named(1, type=2), named(2, type=1), named(3, type=99)])])]),
    "virtual ports": Host([Adapter(ports=[Port(0, [named(1), named(2, interface=3, targets=targets())])])]),
    "null and empty lists": Host(
        [Adapter(serial="A", ports=None), Adapter(serial="B", ports=[]), Adapter(ports=[Port(0, None), Port(1, [])])]
    ),
    "the same twice": Host([Adapter(ports=[Port(0, [named(1)]), Port(0, [named(1, device=DAHLIA[0])])]), Adapter()]),
    "texts without terminators": Host(
        [
            Adapter(
                serial=b"S" * 32,
                model=b"\xff\"'<" * 8,
                firmware=b"\0" + b"x" * 31,
                ports=[Port(2**32 - 1, [named(1, raw={108: b"D" * 52, 396: b"F" * 32, 2176: b"q" * 256})])],
            )
        ]
    ),
    "a count that is wrong": Host([Adapter(), Adapter(serial="Z")], count=4000000000),
    "no adapters": NO_ADAPTERS,
    "no list": NO_LIST,
}

BUFFERS = {
    "components": 256,
    "memo": 48,
    "temperature": 64,
    "lockdown": 40,
    "vpd": 1024,
    "rdp": 508,
    "sfp": 512,
    "params": 512,
    "boot": 512,
    "nvme": 2560,
    "bbcr": 68,
    "fw_stats": 528,
    "target_statistics": 184,
    "scmr_profile": 16,
}
FAILED = ["TORPI_GetVpd", "TORPI_GetSFPDataEx", "TORPI_GetHBAParamsInfo", "TORPI_GetBootDeviceInfo", "TORPI_IsMezzAdapter"]


def settings(seed):
    """All buffers of one kind: zeros for 0, else random bytes."""
    return {name: noise(seed, size) if seed else bytes(size) for name, size in BUFFERS.items()}


def check(zfc, host, env=None, without=(), **options):
    """The same reports from the library and from its snapshot."""
    options = {"host": host, "env": env or {}, **options}
    snapshot, said = take(zfc, "first.yaml", ["--with-rdp"], **options)
    assert said == ""
    found = identifiers(zfc, **options)
    commands = all_reports(found, 12, True, without)
    expected = shell(zfc, commands, **options)
    assert shell(zfc, commands, **played(snapshot)) == expected
    again, _ = take(zfc, "second.yaml", ["--with-rdp"], **played(snapshot))
    assert again.read_bytes() == snapshot.read_bytes()
    return expected


@pytest.mark.parametrize("name", HOSTS)
def test_host(zfc, name):
    check(zfc, HOSTS[name], buffers=settings(1))


WHOLE = Host(
    [
        Adapter(ports=[Port(number, [named(number, device=device, targets=targets())])])
        for number, device in enumerate([0x3432, 0x3522, 0x3640])
    ]
)


@pytest.mark.parametrize("seed", range(5))
def test_buffers_of_random_bytes(zfc, seed):
    env = {"HOSTILE_FEC": "3", "HOSTILE_BEACON": str(seed), "HOSTILE_LINK_SPEED": "0x32", "HOSTILE_REBOOT": "7"}
    output = check(zfc, WHOLE, env if seed else None, buffers=settings(seed), personality=seed)
    assert output.count(b"Success") > 40


def test_statistics_list(zfc):
    elements = b"".join(noise(i, 16) + (0x80 if i == 1 else i).to_bytes(4, "little") + noise(i, 956) for i in range(4))
    file = zfc.file("list", elements)
    output = check(zfc, WHOLE, {"HOSTILE_SCMR_LIST": str(file)}, buffers=settings(3))
    assert b"Congestion Alarm Count: " in output
    options = {"results": {"TORPI_FreeSCMRStatisticsList": 5}, "buffers": settings(3)}
    check(zfc, WHOLE, {"HOSTILE_SCMR_LIST": str(file)}, **options)


def test_refusals(zfc):
    results = dict.fromkeys(FAILED, 5) | {"TORPI_GetLockdownStatus": 150, "TORPI_FCGetFECSupportInfo": 4294967295}
    check(zfc, WHOLE, {"HOSTILE_FILL_FAILED": "1"}, results=results, buffers=settings(2))


def test_all_calls_fail(zfc):
    calls = ["TORPI_GetFlashComponentVersion", "TORPI_GetAdapterFlashMemoBlock", "TORPI_GetAdapterAsicBoardTemperature"]
    calls += ["TORPI_GetPersonalityType", "TORPI_GetNVMeBootDeviceEntries", "TORPI_GetAdapterBeaconStatus"]
    calls += ["TORPI_GetNVMeHostNQNStatus", "TORPI_IsVCLMFeatureEnabled", "TORPI_GetSCMRStatisticsList"]
    calls += ["TORPI_GetSCMRProfile", "TORPI_GetPortStatisticsFC", "TORPI_GetTargetLinkSpeed", "TORPI_GetFWPrivateStats"]
    calls += ["TORPI_DiagnosticsRDPTest", "TORPI_IsRebootRequired", "TORPI_FCGetBBCSupportInfoEx"]
    check(zfc, WHOLE, results=dict.fromkeys([*calls, *FAILED], 9))


def test_sizes_that_lie(zfc):
    check(zfc, WHOLE, sizes={"vpd": 4000000000, "rdp": 0}, buffers=settings(4))
    check(zfc, WHOLE, sizes={"vpd": 3, "rdp": 509}, buffers=settings(4))


def test_block_shorter_than_its_record(zfc):
    """What the program reads past its end is anything; the snapshot reads none of it."""
    take(zfc, "short.yaml", host=WHOLE, buffers={"fw_stats": b"\1" * 8})
    text = (zfc.work / "short.yaml").read_text()
    assert '0: 01*8' in text


def test_success_without_a_block(zfc):
    check(zfc, WHOLE, {"HOSTILE_FW_STATS": "null"})


def test_library_that_lacks_everything(zfc):
    snapshot, _ = take(zfc, "sparse.yaml", library="sparse")
    assert b"reboot-required: missing\nboot-mode: missing\n" in snapshot.read_bytes()
    commands = ["-t adapter list", "-t adapter listcli", "-t port list", "-t adapter -s info get Adapter_ZX100_SP00001"]
    assert shell(zfc, commands, **played(snapshot)) == shell(zfc, commands, library="sparse")
