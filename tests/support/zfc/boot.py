"""What the tests of the two forms of the boot configuration share."""

from .config import BOOT_FLAGS, DRIVES, lines, one_port, target
from .host import DAHLIA, HAZEL, IRIS

MODE_CALL = "TORPI_GetBfsConfigMode()"
CHANGE_CALL = "TORPI_SetBfsConfigMode({})"
READ_CALL = "TORPI_GetBootDeviceInfo(port, zeroed buffer, 0)"
MODE, CHANGE = "TORPI_GetBfsConfigMode", "TORPI_SetBfsConfigMode"
READ, WRITE, REBOOT = "TORPI_GetBootDeviceInfo", "TORPI_SetBootDeviceInfo", "TORPI_IsRebootRequired"

READ_FAILED, UPDATE_FAILED = "Failed, Boot Config read failed", "Failed, Boot Config update failed"
NOT_IN_UEFI = "Failed, Boot parameter not supported with UEFI boot mode option"
NO_ROM_BIOS, NO_ROM_UEFI = "Failed, Adapter does not have ROM BIOS", "Failed, Adapter does not have ROM UEFI"

DISK, FLASH = "50:06:01:60:3b:20:41:5f", "50:06:01:60:3b:20:41:99"
FLASH_NODE = "20:06:01:60:3b:20:41:99"
TARGETS = [
    target(DISK, [0, 3]),
    target(FLASH, [1, 3], nvme=True, node_name=FLASH_NODE, controller=0x1234, nqn=b"nqn.2014-08.org:flash"),
]
THREE = (*HAZEL, *IRIS, *DAHLIA)


def port(**fields):
    return one_port(**{"targets": TARGETS, **fields})


def truth(value):
    return "true" if value else "false"


def drive_lines(drives):
    return "".join(
        f"      Drive {number} WWPN: {name}\n      Drive {number} LUN: {lun}\n" for number, (name, lun) in enumerate(drives)
    )


def replaced(drives):
    return [(drives or {}).get(number, drive) for number, drive in enumerate(DRIVES)]


def bios(*, fabric=True, drives=None, **flags):
    """What the legacy mode shows of the default record with some fields replaced."""
    flags = {**BOOT_FLAGS, **flags}
    text = f"Adapter BIOS: {truth(flags['disable_bios'] == 0)}\n"
    text += f"      Selectable Boot: {truth(flags['selectable_boot'])}\n"
    if fabric:
        text += f"      Fabric Assigned Boot LUN: {truth(flags['fabric_lun'])}\n"
    return text + drive_lines(replaced(drives)[:4])


def uefi(*, drives=None, **flags):
    flags = {**BOOT_FLAGS, **flags}
    text = f"Adapter Driver: {truth(flags['disable_bios'] == 0)}\n"
    text += f"      Selective Login: {truth(flags['selective_login'])}\n"
    text += f"      Selective LUN Login: {truth(flags['selective_lun'])}\n"
    text += f"      World Login: {truth(flags['world_login'])}\n"
    text += f"      Fabric Assigned Boot LUN: {truth(flags['fabric_lun'])}\n"
    return text + drive_lines(replaced(drives))


# The file that a first `setFile` of the boot configuration creates from the default record.
FILE = lines(
    {
        "Alternate_Boot_Target_1_LUN": 11,
        "Alternate_Boot_Target_1_WWPN": "50:06:01:60:3b:20:41:01",
        "Alternate_Boot_Target_2_LUN": 12,
        "Alternate_Boot_Target_2_WWPN": "50:06:01:60:3b:20:41:02",
        "Alternate_Boot_Target_3_LUN": 13,
        "Alternate_Boot_Target_3_WWPN": "50:06:01:60:3b:20:41:03",
        "Alternate_Boot_Target_4_LUN": 14,
        "Alternate_Boot_Target_4_WWPN": "50:06:01:60:3b:20:41:04",
        "Alternate_Boot_Target_5_LUN": 15,
        "Alternate_Boot_Target_5_WWPN": "50:06:01:60:3b:20:41:05",
        "Alternate_Boot_Target_6_LUN": 16,
        "Alternate_Boot_Target_6_WWPN": "50:06:01:60:3b:20:41:06",
        "Alternate_Boot_Target_7_LUN": 17,
        "Alternate_Boot_Target_7_WWPN": "50:06:01:60:3b:20:41:07",
        "Boot_Mode": 0,
        "Disable_BIOS": 0,
        "Fabric_Assigned_Boot_Lun": 1,
        "Primary_Boot_Target_LUN": 10,
        "Primary_Boot_Target_WWPN": "50:06:01:60:3b:20:41:00",
        "Selectable_Boot": 1,
        "Selective_LUN_Login": 1,
        "Selective_Login": 0,
        "World_Login": 0,
    }
)
