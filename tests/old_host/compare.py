"""Runs the program under two C libraries, this machine's and that of another root file system, and compares.

usage: compare.py BUILD ROOT

Both sides get the same executable, build the same device library with their own compiler, and run the same commands in
the same order from the same folder. Of every command the standard output, the standard error, the exit status, what is
in the staging folder, the library's own output and the files the command wrote are compared, byte by byte.
"""

import itertools
import shlex
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

import yaml

HERE = Path(__file__).resolve().parent
TREE = HERE.parent / "commands" / "command_tree.yaml"
PLUGIN = "/opt/ZunaFcEsxcliPlugin"
WORK = "/opt/try"
PROGRAM = f"{PLUGIN}/bin/zfcesxcli"
SNAPSHOT = f"{PLUGIN}/bin/zfc-snapshot"

# What the device library's host has, see device_library.c.
ADAPTERS = ["Adapter_ZX640_OLD0001", "Adapter_ZX100_OLD0002"]
PORTS = ["FC_21:00:00:00:0a:00:00:01", "FC_21:00:00:00:0a:00:00:02"]
TARGETS = [f"{PORTS[0]}_Target_50:06:01:60:00:0{i}:00:01" for i in (0, 1)]
LUNS = [f"{TARGETS[0]}_LUN_3", f"{TARGETS[1]}_NSID_3"]
IDENTIFIERS = {"adapter": ADAPTERS, "port": PORTS, "target": TARGETS, "lun": LUNS}
NAME = "50:06:01:60:00:00:00:01"
BIOS = ["-b", "BIOS"]

# The words that follow the identifier, by node and leaf; several lists where a leaf has several kinds of work.
WORDS = {
    ("adapter", "update"): [[f"{WORK}/image"], [f"{WORK}/image", "MBI"]],
    ("personality", "set"): [["CNA"]],
    ("port", "updatenvram"): [[f"{WORK}/image"]],
    ("stats", "get"): [["Driver"], ["Firmware"]],
    ("stats", "reset"): [["Firmware"]],
    ("dmi", "save"): [[f"{WORK}/made-module", "Text"], [f"{WORK}/made-module", "Binary"]],
    ("dmi", "update"): [[f"{WORK}/image", "WTD"]],
    ("hbaparams", "setFile"): [["-u", "3", "-y", "7"], ["-u", "4", "-b", "maybe"]],
    ("hbaparams", "save"): [[f"{WORK}/made-nvram"]],
    ("bbcr", "setFile"): [["-c", "3", "-b", "false"], ["-c", "16"]],
    ("bootconfig", "get"): [BIOS, ["-b", "UEFI"]],
    ("bootconfig", "setFile"): [[*BIOS, "-a", "false", "-d", "false"]],
    ("bootconfigext", "get"): [BIOS, ["-b", "UEFI"], ["-b", "NVME"]],
    ("bootconfigext", "setFile"): [[*BIOS, "-a", "false", "-d", "false"]],
    ("fec", "set"): [["-f", "true"], ["-r", "reset"]],
    ("fwdump", "get"): [[f"{WORK}/made-dump"]],
    ("beacon", "set"): [["ON"]],
    ("scmprofile", "set"): [["-r", "0"]],
    ("dportdiag", "set"): [["true"]],
    ("ctdiag", "run"): [["CTPing", NAME, "5", "true"]],
    ("fcping", "run"): [[NAME, "5", "true"]],
    ("fcecho", "run"): [[NAME, "2", "true"]],
    ("loopback", "run"): [["2", "1", "8", "Ignore", "Internal", "Random"]],
    ("rwbuffer", "run"): [["2", "1", "8", "Ignore", "Random"]],
    ("tlsd", "set"): [["16_Gbps"]],
}
SHELL_INPUTS = [
    "version\nhelp\nq\n",
    "-t adapter listcli\n-t port -s info getcli " + PORTS[0] + "\nno such command\nq\n",
    f"log {WORK}/made-log\n-t adapter\n-t lun list\nlog\nq\n",
    "-t adapter list",
]
# Texts that some command's output has when the reports have content; otherwise two empty sides would be equal.
EXPECTED = ["constructed: 1", "destroyed", "Message: Success", "Egress Power: Tx: ", "Login Retry Count: 3", "$>"]
EXPECTED += ["snapshot: 1\n", "# FC_21:00:00:00:0a:00:00:01\n", "Usage: zfc-snapshot"]


def leaves(words, name, node):
    """Every leaf of the tree: the switch pairs ahead of it, its node, and its word."""
    for leaf in node.get("leaves", []):
        yield words, name, leaf[0]
    for child, below in (node.get("nodes") or {}).items():
        yield from leaves([*words, below["switch"], child], child, below)


def commands():
    """Every run: the words, and what standard input holds."""
    tree = yaml.safe_load(TREE.read_text())
    for words, node, leaf in leaves([], "", {**tree["root"], "nodes": tree["nodes"]}):
        command = [*words, leaf]
        yield command, ""
        yield [*command, "?"], ""
        if not words:
            continue
        yield [*command, "nobody"], ""
        for identifier in IDENTIFIERS[words[1]]:
            yield [*command, identifier], ""
            for extra in WORDS.get((node, leaf.removesuffix("cli")), []):
                yield [*command, identifier, *extra], ""
    for text in SHELL_INPUTS:
        yield [], text


def script():
    """The shell script of one side: command number i leaves its files in out/i."""
    lines = [
        f"cd {WORK}",
        "mkdir out",
        f"gcc -O2 -shared -fPIC -o {PLUGIN}/lib/libtorpifconly.so device_library.c",
        "ldd --version | head -1 >version",
        "look() { for file in $(ls -d /opt/*/tmp/* /var/tmp/* made-* 2>/dev/null); do",
        '  echo "== $file"; case $file in */zfcesxcli.log) ;; *) cat "$file"; esac; done; }',
        "run() { number=$1; status=0; shift; mkdir out/$number",
        '  "$@" <input >out/$number/stdout 2>out/$number/stderr || status=$?',
        "  echo $status >out/$number/status; look >out/$number/files; rm -f /var/tmp/*; }",
    ]
    shown = []
    runs = [([f"{WORK}/start_probe", "word"], ""), (["env", "ZNFC_DEBUG_LEVEL=65535", PROGRAM, "help"], "")]
    runs += [([PROGRAM, *words], text) for words, text in commands()]
    runs += [([SNAPSHOT, *words], "") for words in ([], ["--help"], ["--with-rdp", "-o", "made-snapshot"])]
    runs += [([SNAPSHOT, "--anonymise"], "")]
    for number, (command, text) in enumerate(runs):
        lines.append(f"printf %s {shlex.quote(text)} >input")
        lines.append(f"run {number} {shlex.join(command)}")
        shown.append(shlex.join(command) + (f" <<< {text!r}" if text else ""))
    return "\n".join(lines) + "\n", shown


def run_side(build, root, text, folder):
    """Runs all commands under `root` and answers each file they left, and the name of the C library."""
    for part in ("bin", "lib", "tmp"):
        (folder / "ZunaFcEsxcliPlugin" / part).mkdir(parents=True)
    work = folder / "try"
    work.mkdir()
    for program in (PROGRAM, SNAPSHOT):
        shutil.copy(build / "bin" / Path(program).name, folder / "ZunaFcEsxcliPlugin/bin")
    shutil.copy(build / "tests/start_probe", work)
    shutil.copy(HERE / "device_library.c", work)
    (work / "image").write_bytes(b"image")
    (work / "run.sh").write_text(text)
    # The loader asks /proc for the executable's own folder, which the path to its library starts from.
    steps = [
        'mount --bind "$1" "$2/opt"',
        'mount -t tmpfs tmpfs "$2/var/tmp"',
        'mount -t proc proc "$2/proc"',
        f'exec chroot "$2" /bin/sh -e {WORK}/run.sh',
    ]
    command = ["unshare", "--mount", "sh", "-c", " && ".join(steps), "sh", folder, root]
    environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C"}
    subprocess.run(command, check=True, env=environment, stdin=subprocess.DEVNULL)
    found = {path.relative_to(work / "out"): path.read_bytes() for path in (work / "out").rglob("*") if path.is_file()}
    return found, (work / "version").read_text().strip()


def main(build, root):
    text, shown = script()
    with tempfile.TemporaryDirectory() as folder:
        here, this_library = run_side(build, Path("/"), text, Path(folder) / "here")
        there, that_library = run_side(build, root, text, Path(folder) / "there")
    everything = b"".join(here.values()).decode(errors="replace")
    missing = [expected for expected in EXPECTED if expected not in everything]
    failed = [i for i in range(len(shown)) if here[Path(str(i)) / "status"] != b"0\n"]
    if missing or failed:
        print(f"The runs on this machine are not as they should be: {missing} {[shown[i] for i in failed]}")
        return 1
    differing = sorted({int(path.parts[0]) for path in {*here, *there} if here.get(path) != there.get(path)})
    for number in itertools.islice(differing, 10):
        print(f"differs: {shown[number]}")
    print(f"{this_library} beside {that_library}:")
    print(f"{len(shown)} commands, {len(differing)} differ")
    return 1 if differing else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()))
