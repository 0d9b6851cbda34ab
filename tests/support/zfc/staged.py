"""The four nodes with a staged file, as the tests of staged files run them."""

from dataclasses import dataclass

from . import config
from .boot import FILE as BOOT_FILE
from .config import IDENTIFIER, UNKNOWN, bbcr, boot, changed, lines, nvme, one_port, params

BUFFERS = {"params": params(), "bbcr": bbcr(), "boot": boot(), "nvme": nvme()}
OPTIONS = {"host": one_port(), "buffers": BUFFERS}


@dataclass
class Node:
    word: str
    family: str
    created: bytes  # what a `setFile` without options creates
    options: list  # valid ones
    changes: dict  # what they change in the file
    refused: list  # options of which one fails its check
    bad: dict  # a value that no file may hold
    write: str  # the call that takes the record
    failed_file: str = UNKNOWN  # what a failed file operation shows

    def __str__(self):
        return self.word


# The file that a first `setFile` of hbaparams creates from the default record.
PARAMS_FILE = lines(
    {
        "Connection_Options": 1,
        "Data_Rate": 2,
        "Disable_BIOS": 1,
        "Disable_SCM": 1,
        "Enable_Fabric_Assign_WWN": 1,
        "Enable_Fibre_Channel_Tape_Support": 1,
        "Enable_Hard_Loop_Id": 0,
        "Enable_LR": 0,
        "Enable_Lip_Full_Login": 1,
        "Enable_Receive_Out_Of_Order_Frames": 1,
        "Enable_Target_Reset": 0,
        "Enable_Virtual_Lane": 0,
        "Execution_Throttle": 65535,
        "Frame_Size": 2048,
        "Hard_Loop_ID": 17,
        "Interrupt_Delay_Timer": 100,
        "Link_Down_Timeout": 29,
        "Login_Retry_Count": 8,
        "Loop_Reset_Delay": 5,
        "Luns_Per_Target": 128,
        "Operation_Mode": 6,
        "Port_Down_Retry_Count": 30,
    }
)

_ENTRY = {"ControllerID": 0, "Enable": 0, "NQN": "", "NamespaceID": 0, "WWNN": config.NO_NAME, "WWPN": config.NO_NAME}
_EXT = dict(line.split("=", 1) for line in BOOT_FILE.decode().splitlines())
_EXT.update({"Boot_Mode": 1, "NVMe_Enable": 0})
_EXT.update({f"NVME_{number}_{key}": value for number in range(8) for key, value in _ENTRY.items()})
EXT_FILE = lines(dict(sorted(_EXT.items())))

HBA = Node(
    "hbaparams",
    "HBAParams",
    PARAMS_FILE,
    ["-u", "3", "-y", "7"],
    {"Login_Retry_Count": 3, "Luns_Per_Target": 7},
    ["-u", "4", "-b", "maybe"],
    {"Data_Rate": 8},
    "TORPI_UpdateHBAParameters",
)
BBCR = Node(
    "bbcr",
    "BBCR",
    lines({"BBCR_Count": 5, "BBCR_Status": 1}),
    ["-c", "3", "-b", "false"],
    {"BBCR_Count": 3, "BBCR_Status": 0},
    ["-b", "true", "-c", "16"],
    {"BBCR_Count": 16},
    "TORPI_FCSetBBCSupportInfo",
    "Failed, File not found",
)
BOOT = Node(
    "bootconfig",
    "BootConfig",
    BOOT_FILE,
    ["-a", "false", "-d", "false"],
    {"Disable_BIOS": 1, "Selectable_Boot": 0},
    ["-a", "true", "-e", "true"],
    {"World_Login": 2},
    "TORPI_SetBootDeviceInfo",
)
EXT = Node(
    "bootconfigext",
    "BootConfigExt",
    EXT_FILE,
    ["-a", "false", "-d", "false"],
    {"Disable_BIOS": 1, "Selectable_Boot": 0},
    ["-a", "true", "-o", "1"],
    {"NVME_3_Enable": 2},
    "TORPI_SetBootDeviceInfo",
)
NODES = [HBA, BBCR, BOOT, EXT]


def run(zfc, node, command, options=(), *, identifier=IDENTIFIER, **more):
    return zfc(["-t", "port", "-s", node.word, f"{command}cli", identifier, *options], **{**OPTIONS, **more})


def message(result):
    """What the document says; a command writes exactly one."""
    found = [line for line in result.stdout.decode().split("\n") if line.startswith("Message: ")]
    assert len(found) == 1, result.stdout
    return found[0].removeprefix("Message: ").rstrip("\r")


def writes(node, result):
    return [call for call in result.command_calls if call.startswith(node.write + "(")]
