"""The configuration commands with the simulated library: its built-in host, and what its state keeps from run to run."""

import zlib

import pytest

ELM = "FC_21:00:00:0e:1e:11:22:33"
HAZEL = "FC_21:00:f4:c7:aa:0b:10:20"
SECOND_HAZEL = "FC_21:00:f4:c7:aa:0b:10:21"
IRIS = "FC_21:00:f4:c7:aa:2c:00:08"
DAHLIA = "FC_21:00:f4:c7:aa:64:00:10"
CEDAR = "FC_21:00:00:c0:dd:1a:52:60"
BIRCH = "FC_21:00:00:24:ff:4b:9e:01"
VIRTUAL = "FC_21:01:00:0e:1e:11:22:33"


@pytest.fixture
def lab(zfc):
    """Runs commands with one state file and returns the lines they show, without the blanks around them."""
    env = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml"), "TORPI_LAB_TRACE": str(zfc.work / "trace")}

    def run(command, identifier, *options):
        words = ["-t", "port", "-s", *command.split(), identifier, *options]
        output = zfc(words, library="simulated", env=env).stdout.decode()
        return [line.strip().removeprefix("Data: ") for line in output.splitlines()]

    return run


def assert_shown(shown, *expected):
    assert [line for line in expected if line not in shown] == []


@pytest.mark.parametrize(
    "command, identifier, expected",
    [
        ("hbaparams getcli", ELM, ["Message: Success", "Connection Options: Point_To_Point_Only", "Data Rate: 16_Gbps"]),
        ("hbaparams getcli", HAZEL, ["Interrupt Delay Timer In 100us: 50", "Login Retry Count: 12", "Enable VCLM: true"]),
        ("hbaparams getcli", CEDAR, ["Enable Hard Loop Id: NA", "Enable VCLM: NA", "Virtual Lane: NA"]),
        ("bbcr getcli", SECOND_HAZEL, ["BBCR Configured: 5", "BBCR State: Online", "BBCR Negotiated: 4"]),
        ("bbcr getcli", IRIS, ["BBCR State: Offline", "BBCR Offline Reason Code: Switch does not support BB_SC_N"]),
        ("bbcr getcli", BIRCH, ["Message: Failed, Feature not supported for this adapter"]),
        ("fec getcli", ELM, ["FEC_Status: true", "Correctable FEC errors: 41", "Uncorrectable FEC errors: 2"]),
        ("beacon getcli", ELM, ["Beacon State: ON"]),
        ("beacon getcli", BIRCH, ["Beacon State: OFF"]),
        ("bootconfig getcli", ELM, ["Adapter BIOS: true", "Drive 0 WWPN: 50:06:0b:00:3b:20:11:c0", "Drive 0 LUN: 2"]),
        ("bootconfigext getcli", HAZEL, ["Adapter BIOS: true", "Drive 0 WWPN: 50:06:0b:00:3b:20:20:00"]),
        ("hbaparams getcli", VIRTUAL, ["Message: Failed, Feature not supported for virtual port"]),
    ],
)
def test_built_in_host(lab, command, identifier, expected):
    assert_shown(lab(command, identifier), *expected)


def test_entries_of_the_nvme_mode(lab):
    shown = lab("bootconfigext getcli", HAZEL, "-b", "NVME")
    assert_shown(shown, "FC NVMe: true", "NQN: nqn.2026-01.lab:subsystem:va-4000", "NamespaceID: 4")
    shown = lab("bootconfigext getcli", IRIS, "-b", "NVME")
    assert_shown(shown, "Message: Failed, NVMe Boot Config not present")


def test_parameters_are_staged_committed_and_shown_in_three_runs(lab):
    assert_shown(lab("hbaparams setFilecli", HAZEL, "-d", "16_Gbps", "-b", "false"), "Message: Success", "Data Rate: 16_Gbps")
    assert_shown(lab("hbaparams getcli", HAZEL), "Data Rate: Auto")
    assert_shown(lab("hbaparams setcli", HAZEL), "Message: Success", "Reboot Required: true")
    assert_shown(lab("hbaparams getcli", HAZEL), "Data Rate: 16_Gbps", "Enable Host Hba Bios: false")
    # One record: the boot configuration sees the same.
    assert_shown(lab("bootconfig getcli", HAZEL), "Adapter BIOS: false")


def test_save_restore_and_take_back(lab, zfc):
    lab("hbaparams setFilecli", ELM, "-u", "77", "-d", "8_Gbps")
    assert_shown(lab("hbaparams setcli", ELM), "Message: Success")
    assert_shown(lab("hbaparams savecli", ELM, "nvram.txt"), "Message: Success")
    image = (zfc.work / "nvram.txt").read_bytes()
    body, checksum = image.rsplit(b"checksum: ", 1)
    assert body.startswith(b"ZNFC NVRAM image\nfamilies: elm\nparameters.data-rate: 4\n")
    assert int(checksum, 16) == zlib.crc32(body)
    assert_shown(lab("hbaparams restoreDefaultscli", ELM), "Message: Success", "Reboot Required: true")
    assert_shown(lab("hbaparams getcli", ELM), "Login Retry Count: 8", "Data Rate: Auto")

    env = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml")}
    update = ["-t", "port", "updatenvramcli", ELM, "nvram.txt"]
    assert b"Message: Success\n" in zfc(update, library="simulated", env=env).stdout
    assert_shown(lab("hbaparams getcli", ELM), "Login Retry Count: 77", "Data Rate: 8_Gbps")
    update[3] = HAZEL
    assert b"Message: Failed, NVRAM update failed\n" in zfc(update, library="simulated", env=env).stdout


def test_credit_recovery_lasts(lab):
    lab("bbcr setFilecli", HAZEL, "-c", "15", "-b", "false")
    assert_shown(lab("bbcr setcli", HAZEL), "Reboot Required: true")
    assert_shown(
        lab("bbcr getcli", HAZEL), "BBCR Status: false", "BBCR Configured: 15", "BBCR Offline Reason Code: Feature disabled"
    )


def test_error_correction_lasts(lab):
    assert_shown(lab("fec setcli", ELM, "-f", "false", "-r", "reset"), "FEC_Status: false", "Correctable FEC errors: 41")
    assert_shown(lab("fec getcli", ELM), "FEC_Status: false", "Correctable FEC errors: 0", "Uncorrectable FEC errors: 0")


def test_beacon_lasts(lab):
    assert_shown(lab("beacon setcli", BIRCH, "on"), "Beacon State: ON")
    assert_shown(lab("beacon getcli", BIRCH), "Beacon State: ON")


def test_drive_lasts(lab):
    lab("bootconfig setFilecli", HAZEL, "-b", "UEFI", "-q", "50:06:0b:00:3b:20:20:00-15", "-g", "true")
    assert_shown(lab("bootconfig setcli", HAZEL), "Message: Success", "World Login: true")
    shown = lab("bootconfig getcli", HAZEL, "-b", "UEFI")
    assert_shown(shown, "Drive 7 WWPN: 50:06:0b:00:3b:20:20:00", "Drive 7 LUN: 15", "World Login: true")


def test_nvme_entry_lasts(lab):
    options = ["-b", "NVME", "-n", "6", "-p", "50:06:0b:00:3b:20:20:10", "-o", "100", "-l", "true", "-m", "true"]
    assert_shown(lab("bootconfigext setFilecli", HAZEL, *options), "Message: Success")
    assert_shown(lab("bootconfigext setcli", HAZEL), "Message: Success", "NamespaceID: 100")
    shown = lab("bootconfigext getcli", HAZEL, "-b", "NVME")
    assert shown[shown.index("Storage 6:") + 6] == "NamespaceID: 100"
    # The built-in host has the first entry on, and the command puts the seventh on; the state holds all eight.
    on = [line == "Enable: true" for line in shown if line.startswith("Enable: ")]
    assert on == [True, False, False, False, False, False, True, False]


def test_mode_ends_with_the_run(lab, zfc):
    lab("bootconfig getcli", HAZEL, "-b", "UEFI")
    lab("bootconfig getcli", HAZEL)
    modes = [line for line in (zfc.work / "trace").read_text().splitlines() if "BfsConfigMode" in line]
    assert modes == [
        "TORPI_GetBfsConfigMode() -> 1",
        "TORPI_SetBfsConfigMode(2) -> 0",
        "TORPI_GetBfsConfigMode() -> 1",
    ]


def test_record_that_reaches_the_library_is_the_one_read_but_for_the_change(lab, zfc):
    lab("hbaparams setFilecli", DAHLIA, "-j", "true")
    lab("hbaparams setcli", DAHLIA)
    trace = (zfc.work / "trace").read_text().splitlines()
    read = [line.split("record=")[1] for line in trace if line.startswith("TORPI_GetHBAParamsInfo")][-1]
    written = [line.split('"')[1] for line in trace if line.startswith("TORPI_UpdateHBAParameters")]
    assert len(written) == 1
    expected = bytearray.fromhex(read)
    assert expected[286] == 0
    expected[286] = 1
    assert bytes.fromhex(written[0]) == expected
