"""No text from outside is ever a format. The C library ends a program that gives it "%n" from memory that can be written, so
that a run that ends well has not done so."""

import subprocess

import pytest

from zfc import sfp
from zfc.config import bbcr
from zfc.host import Adapter, Fc, Host, Lun, Port, Target
from zfc.port import IDENTIFIER, one_port
from zfc.runner import BUILD
from zfc.tree import TREE

TEXT = "%n%s%1$n%999999999d"
PROMPT = b"$>"
STATISTICS_SIZE = 1024  # of the firmware's block, which holds all that is read of it: up to byte 528


def leaves(node, words=()):
    for leaf in node.get("leaves", []):
        yield [*words, leaf[0]]
    for name, below in node.get("nodes", {}).items():
        yield from leaves(below, (*words, below["switch"], name))


COMMANDS = [" ".join(words) for words in leaves(TREE)]


def typed(zfc, lines, **options):
    """One session in which all lines are typed; each gives its prompt back."""
    result = zfc(stdin="".join(f"{line}\n" for line in [*lines, "q"]).encode(), debug=65535, **options)
    assert result.stdout.count(PROMPT) == len(lines) + 1
    return result


def test_there_are_commands_of_both_forms():
    assert len(COMMANDS) > 150
    assert sum(command.endswith("cli") for command in COMMANDS) > 60


def test_words_of_every_command(zfc):
    result = typed(zfc, [f"{command} {TEXT} {TEXT} {TEXT}" for command in COMMANDS if not command.startswith(("q", "log"))])
    assert TEXT.encode() in result.debug_log


def test_words_after_an_identifier_of_every_command(zfc):
    lines = [f"{command} {IDENTIFIER} {TEXT} {TEXT}" for command in COMMANDS if command.startswith("-t port")]
    typed(zfc, lines, host=one_port(), buffers={"bbcr": bbcr(), "fw_stats": bytes(STATISTICS_SIZE)})


@pytest.mark.parametrize("command", ["-t adapter -s info getcli", "-t port -s dmi savecli", "log", "no-such", "-t", "-s"])
def test_words_of_a_command_line(zfc, command):
    zfc([*command.split(), f"no/{TEXT}"], debug=65535)


def filled(size):
    """Bytes that are this text over and over."""
    return (TEXT.encode() * size)[:size]


def test_every_text_of_a_device(zfc):
    """In all that is read, wherever a text may be."""
    name = "50:00:00:00:00:00:00:01"
    lun = Lun(raw={offset: filled(48) for offset in (8, 80, 130, 200, 300)})
    target = Target(name=name, raw={16: filled(200)}, luns=[lun])
    raw = {offset: filled(52) for offset in (108, 396, 428, 2176)}
    entry = Fc(raw={8: bytes.fromhex("2100001122334455"), **raw}, targets=[target])
    texts = {key: TEXT for key in ("serial", "model", "manufacturer", "bios", "fcode", "efi", "firmware", "multiboot")}
    host = Host([Adapter(**texts, ports=[Port(0, [entry])])])
    buffers = {name: filled(512) for name in ("vpd", "sfp", "params", "boot", "nvme", "dump")}
    buffers["fw_stats"] = filled(STATISTICS_SIZE)
    identifiers = {
        "adapter": f"Adapter_{TEXT}_{TEXT}",
        "port": IDENTIFIER,
        "target": f"{IDENTIFIER}_Target_{name}",
        "lun": f"{IDENTIFIER}_Target_{name}_LUN_0",
    }
    lines = [
        f"{command} {identifiers[command.split()[1]]} x"
        for command in COMMANDS
        if command.startswith("-t ") and "set" not in command and "update" not in command
    ]
    result = typed(zfc, lines, host=host, buffers=buffers)
    # Lists show it whole; in a report each complete conversion is taken out, of which "%1$n" is none here.
    assert f"Adapter_{TEXT}_{TEXT}".encode() in result.stdout
    assert b"Manufacturer: %1$n\n" in result.stdout


@pytest.mark.parametrize("family, word", [("BBCR", "bbcr"), ("HBAParams", "hbaparams"), ("BootConfig", "bootconfig")])
def test_staged_file(zfc, family, word):
    (zfc.staging / f"{family}_{IDENTIFIER}").write_text(f"{TEXT}={TEXT}\nBBCR_Count={TEXT}\nData_Rate={TEXT}\n")
    for command in ("setFilecli", "setcli"):
        zfc(f"-t port -s {word} {command} {IDENTIFIER}", host=one_port(), buffers={"bbcr": bbcr()}, debug=65535)


def test_module(zfc):
    """The vendor's texts of a module."""
    image = bytearray(sfp.REAL_SFP)
    image[20:36], image[40:56], image[68:84] = filled(16), filled(16), filled(16)
    for word in ("get", "getcli", "getraw", "getrawcli"):
        zfc(f"-t port -s dmi {word} {IDENTIFIER}", host=one_port(), buffers={"sfp": bytes(image)}, debug=65535)


def test_host_file(zfc):
    zfc.file("lab.yaml", f"adapters: [{{family: elm, serial: '{TEXT[:12]}', manufacturer: '{TEXT}'}}]\n".encode())
    out = zfc("-t adapter listcli", library="simulated", env={"TORPI_LAB_HOST": "lab.yaml"}, debug=65535).stdout
    assert f"_{TEXT[:12]}\n".encode() in out
    zfc.file("lab.yaml", f"'{TEXT}': '{TEXT}'\n".encode())
    argv, env = zfc.command(["check", "lab.yaml"], library="simulated", program=BUILD / "bin" / "zfc-lab")
    done = subprocess.run(argv, capture_output=True, env=env, timeout=60)
    assert done.returncode == 1 and TEXT.encode() in done.stdout
