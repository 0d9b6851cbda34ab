"""Reports whose text has no memory: status 42, in a document that never mentions a reboot."""

import pytest

from zfc.boot import FILE, WRITE, port
from zfc.config import IDENTIFIER as PORT
from zfc.config import boot, changed, nvme, run_both, with_boot
from zfc.documents import check_both
from zfc.flash import components, memo
from zfc.host import IDENTIFIER
from zfc.preload import needs_preload, preloaded
from zfc.target import IDENTIFIER as TARGET
from zfc.target import luns, one_target, target

pytestmark = needs_preload

NO_MEMORY = {"message": "Failed, Memory Error"}
RECORDS = {"boot": boot(), "nvme": nvme()}


def refusing(size):
    """No zeroed buffer of exactly this size is to be had."""
    return preloaded("refuse_memory", REFUSE_BYTES=size)


@pytest.mark.parametrize("node, size", [("info", 4096), ("flashinfo", 1024)])
def test_adapter_report(zfc, node, size):
    command = f"-t adapter -s {node} get"
    options = {"words": [IDENTIFIER], "values": NO_MEMORY, "components": components(), "memo": memo()}
    check_both(zfc, command, f"adapter/{node}/failed", env=refusing(size), **options)


@pytest.mark.parametrize(
    "command, identifier, document, size",
    [
        ("-t target -v info get", TARGET, "target/info/failed", 4096),
        ("-t target -v tlsd get", TARGET, "target/tlsd/failed", 4096),
        ("-t target -v tlsd set", TARGET, "target/tlsd/failed", 4096),
        ("-t target -v stats get", TARGET, "target/stats/failed", 2048),
        ("-t lun -v info get", f"{TARGET}_LUN_0", "lun/info/failed", 4096),
    ],
)
def test_report_of_a_target_or_a_lun(zfc, command, identifier, document, size):
    options = {"words": [identifier, "16_Gbps"], "host": one_target(target(luns(0)), supported=0xFF)}
    check_both(zfc, command, document, values=NO_MEMORY, env=refusing(size), **options)


@pytest.mark.parametrize(
    "command, identifier, size, function",
    [
        ("-t target -v info get", TARGET, 4096, "FCTargetInfoCmdsProcessor::DisplayTargetInfo"),
        ("-t target -v tlsd get", TARGET, 4096, "FCTargetTLSDCmdsProcessor::DisplayTargetTLSD"),
        ("-t target -v stats get", TARGET, 2048, "FCTargetStatsCmdsProcessor::DisplayTargetStats"),
        ("-t lun -v info get", f"{TARGET}_LUN_0", 4096, "FCLunInfoCmdsProcessor::DisplayLunInfo"),
    ],
)
def test_debug_log_of_a_target_or_a_lun(zfc, command, identifier, size, function):
    options = {"host": one_target(target(luns(0)), supported=0xFF), "env": refusing(size), "debug": 65535}
    assert zfc(f"{command} {identifier}", **options).failures == [f"{function}: Output memory alloc failed"]


def run_boot(zfc, node, command, family, size, mode=(), **options):
    options = {"host": port(), "buffers": RECORDS, "values": NO_MEMORY, "env": refusing(size), **options}
    return run_both(zfc, node, command, family, "port/bootconfig/failed", words=(PORT, *mode), **options)


@pytest.mark.parametrize("command", ["get", "setFile"])
def test_boot_report(zfc, command):
    for mode in ("BIOS", "UEFI"):
        run_boot(zfc, "bootconfig", command, "BootConfig", 2048, ("-b", mode))
        run_boot(zfc, "bootconfigext", command, "BootConfigExt", 2048, ("-b", mode))
    run_boot(zfc, "bootconfigext", command, "BootConfigExt", 8192, ("-b", "NVME"))


def test_boot_settings_are_committed_all_the_same(zfc):
    staged = changed(FILE, World_Login=1)
    result = run_boot(zfc, "bootconfig", "set", "BootConfig", 2048, staged=staged)
    assert result.written == {WRITE: with_boot(boot(), world_login=1)}
    assert result.staged is None
