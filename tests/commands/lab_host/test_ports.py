"""The port commands with the simulated library: its built-in host, and lab hosts of their own."""

import re
import zlib

import pytest
import yaml
from lxml import etree

from zfc.runner import ROOT

HOST = yaml.safe_load((ROOT / "simulator" / "builtin_host.yaml").read_text())


def entries():
    """The ports of the built-in host in the order of its lists: identifier, adapter, and the port's own keys."""
    for adapter in HOST["adapters"]:
        for port in adapter["ports"]:
            for keys in [port, *({"link": port.get("link", "up"), **own, "virtual": True} for own in port.get("npiv", []))]:
                yield f"FC_{keys['wwpn']}", adapter, keys


ENTRIES = list(entries())
IDS = [identifier for identifier, _, _ in ENTRIES]


def run(zfc, words, lab=None, **variables):
    """One run with the simulated library, and its own host if one is given."""
    if lab is not None:
        variables["TORPI_LAB_HOST"] = str(zfc.file("lab.yaml", yaml.safe_dump(lab).encode()))
    return zfc(words, library="simulated", env=variables).stdout


def message_of(document):
    return etree.fromstring(document).xpath("//field[@name='Message']/string/text()")


def tags_of(document):
    """The tags and values of a VPD document in text form."""
    return dict(re.findall(r"TagList:\nTag: (.*)\nValue: (.*)\n", document.decode()))


def test_list_names_the_ports_in_order(zfc):
    document = run(zfc, "-t port list")
    assert etree.fromstring(document).xpath("//field[@name='Ports']/string/text()") == IDS


@pytest.mark.parametrize("identifier, adapter, keys", ENTRIES, ids=IDS)
def test_reports_of_each_port(zfc, identifier, adapter, keys):
    assert message_of(run(zfc, f"-t port -s info get {identifier}")) == ["Success"]
    assert message_of(run(zfc, f"-t port -s stats get {identifier} Driver")) == ["Success"]
    assert message_of(run(zfc, f"-t port -s stats reset {identifier} Firmware")) == ["Success"]
    vpd = run(zfc, f"-t port -s vpd getcli {identifier}")
    assert tags_of(vpd)["Serial Number"] == adapter["serial"]
    expected = (
        "Failed, Feature not supported for virtual port"
        if keys.get("virtual")
        else "Failed, Feature requires link up"
        if keys.get("link") == "down"
        else "Success"
    )
    assert message_of(run(zfc, f"-t port -s rdp get {identifier}")) == [expected]
    expected = "Failed, FW Dump Not Available" if keys.get("firmware-dump") == "none" else "Success"
    assert message_of(run(zfc, f"-t port -s fwdump get {identifier} dump")) == [expected]
    assert (zfc.work / "dump").exists() == (expected == "Success")


def test_values_of_the_host_file_show(zfc):
    port = {
        "wwpn": "21:00:00:11:22:33:44:55",
        "temperature": -1,
        "lockdown": {"config": "on", "firmware-update": "unsupported-driver", "mpi": 1},
        "speed": 16,
        "error-correction": True,
    }
    lab = {"adapters": [{"family": "hazel", "flash": {"pep-softrom": "none"}, "ports": [port]}]}
    text = run(zfc, "-t port -s info getcli FC_21:00:00:11:22:33:44:55", lab).decode()
    for line in (
        "Port State: Online (FEC)",
        "Temperature In Celsius: 4294967295",
        "Flash MPI SoftROM Version: NA",
        "Config Lockdown: false",
        "Firmware Update Lockdown: Unsupported Driver",
        "MPI Lockdown: Unknown",
    ):
        assert f"\n      {line}\n" in text


def test_counters_stay_reset_from_run_to_run(zfc):
    identifier = IDS[0]
    state = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml")}
    command = f"-t port -s stats getcli {identifier} Firmware"
    assert b"      Invalid CRC Count: 4\n" in run(zfc, command, **state)
    run(zfc, f"-t port -s stats reset {identifier} Firmware", **state)
    after = run(zfc, command, **state).decode()
    assert re.findall(r"Count: (\d+)$", after, re.MULTILINE) == ["0"] * 6
    driver = run(zfc, f"-t port -s stats getcli {identifier} Driver", **state)
    assert b"      IO Count: 184467\n" in driver


def test_nothing_of_one_ports_vpd_shows_in_the_next(zfc):
    """Two commands of one session: the second port's image lacks what the first one's has."""
    first = {"wwpn": "21:00:00:00:00:00:00:01", "vpd": {"items": {"RM": "of the first"}}}
    second = {"wwpn": "21:00:00:00:00:00:00:02", "vpd": {"bytes": "82:01:00:42:56:39:01:32:78"}}
    lab = zfc.file("lab.yaml", yaml.safe_dump({"adapters": [{"family": "elm", "ports": [first, second]}]}).encode())
    commands = [f"-t port -s vpd getcli FC_{port['wwpn']}" for port in (first, second, first)]
    done = zfc(
        stdin="\n".join([*commands, "q\n"]).encode(), library="simulated", env={"TORPI_LAB_HOST": str(lab)}
    ).stdout
    documents = done.split(b"$>")[1:-1]
    assert tags_of(documents[0])["Product Identifier"].startswith("Sorvex ZX100")
    assert tags_of(documents[1]) == {"Product Identifier": "B", "Multi Boot Version": "2"}
    assert documents[2] == documents[0]


def test_dump_is_the_file(zfc):
    content = bytes(range(256)) * 17
    zfc.file("memory", content)
    port = {"wwpn": "21:00:00:11:22:33:44:55", "firmware-dump": {"image": "memory"}}
    lab = {"adapters": [{"family": "elm", "ports": [port]}]}
    run(zfc, "-t port -s fwdump get FC_21:00:00:11:22:33:44:55 dump", lab)
    assert (zfc.work / "dump").read_bytes() == content


def test_response_given_as_bytes(zfc):
    port = {"wwpn": "21:00:00:11:22:33:44:55", "rdp": {"bytes": "00:00:00:0c:00:01:00:05:00:00:00:04:00:00:00:11"}}
    lab = {"adapters": [{"family": "elm", "ports": [port]}]}
    text = run(zfc, "-t port -s rdp runcli FC_21:00:00:11:22:33:44:55", lab)
    assert b"\nFEC Status Information\n" in text and b"\nCorrectable Blocks: 17\n" in text


def nvram(*lines):
    body = "".join(f"{line}\n" for line in ("ZNFC NVRAM image", *lines)).encode()
    return body + f"checksum: {zlib.crc32(body):08x}\n".encode()


class TestNvram:
    COMMAND = f"-t port updatenvramcli {IDS[0]} nvram"

    @pytest.mark.parametrize("lines", [(), ("families: hazel, elm",), ("# a remark", "serials: AB12345")])
    def test_image_is_taken(self, zfc, lines):
        zfc.file("nvram", nvram(*lines))
        output = run(zfc, self.COMMAND)
        assert b"UpdateNVRAM:\nReboot Required: true\nMessage: Success\n" in output

    @pytest.mark.parametrize(
        "content",
        [
            b"",
            b"ZNFC NVRAM image\n",
            nvram()[:-2],
            nvram("no key"),
            nvram("other: 1"),
            nvram("families: hazel"),
            nvram("serials: OTHER"),
            nvram("size: 1"),
            b"ZNFC flash image" + nvram()[16:],
        ],
    )
    def test_image_is_refused(self, zfc, content):
        zfc.file("nvram", content)
        output = run(zfc, self.COMMAND)
        assert b"UpdateNVRAM:\nReboot Required: false\nMessage: Failed, NVRAM update failed\n" in output

    def test_maintenance_mode(self, zfc):
        zfc.file("nvram", nvram())
        output = run(zfc, self.COMMAND, TORPI_LAB_FAULTS="TORPI_UpdateAdapterNVRAMFromFile=150")
        assert b"Message: Failed, Command not supported when adapter port in maintenance mode\n" in output

    def test_reboot_query_fails(self, zfc):
        zfc.file("nvram", nvram())
        output = run(zfc, self.COMMAND, TORPI_LAB_FAULTS="TORPI_IsRebootRequired=1")
        assert b"Reboot Required: true\nMessage: Success\n" in output


def test_calls_in_the_trace(zfc):
    trace = zfc.work / "trace"
    run(zfc, f"-t port -s info get {IDS[0]}", TORPI_LAB_TRACE=str(trace))
    port = f"port={IDS[0]}"
    assert trace.read_text().splitlines()[3:-1] == [
        "TORPI_GetAdapterList() -> list adapters=6",
        f"TORPI_GetAdapterAsicBoardTemperature({port}) -> 0 celsius=51",
        f"TORPI_GetLockdownStatus({port}) -> 121",
        f"TORPI_GetFlashComponentVersion({port}) -> 0",
    ]
