"""Runs of the real executable, each with private folders for the fixed paths that it uses."""

import os
import re
import subprocess
from dataclasses import dataclass
from pathlib import Path

from . import host as hosts
from . import start_server

ROOT = Path(__file__).resolve().parents[3]
BUILD = Path(os.environ.get("ZFC_BUILD_DIR", ROOT / "build" / "release")).resolve()
EXECUTABLE = BUILD / "bin" / "zfcesxcli"
ZFC_JSON = BUILD / "bin" / "zfc-json"
SANITIZED = os.environ.get("ZFC_SANITIZE") == "1"
if SANITIZED:  # of each allocation the function alone that made it: whole stacks cost a quarter of a run
    os.environ.setdefault("ASAN_OPTIONS", "malloc_context_size=2")
LIBRARIES = {
    "hostile": BUILD / "tests" / "hostile",
    "sparse": BUILD / "tests" / "sparse",
    "simulated": None,  # the one that the executable finds by itself
}

# The calls whose prints must never reach standard output.
BRACKETED = (
    "TORPI_Initialize",
    "TORPI_SetToolID",
    "TORPI_SetToolVersion",
    "TORPI_doOptionROMUpdate",
    "TORPI_UpdateSpecificFlashRegionFromFile",
    "TORPI_UpdateAdapterFirmwareTableFromFile",
    "TORPI_UpdateAdapterPEPCfgFromFile",
    "TORPI_GetFlashComponentVersion",
    "TORPI_GetAdapterFlashMemoBlock",
    "TORPI_UpdateAdapterNVRAMFromFile",
    "TORPI_GetAdapterAsicBoardTemperature",
    "TORPI_GetLockdownStatus",
    "TORPI_ResetDeviceStats",
    "TORPI_GetVpd",
    "TORPI_DiagnosticsRDPTest",
    "TORPI_SDGetFwDump2",
    "TORPI_GetSFPDataEx",
    "TORPI_SaveSFPDataToFile",
    "TORPI_SaveSFPDataToTextFile",
    "TORPI_SfpModuleFirmwareUpdate",
    "TORPI_CheckAdapterDPortOption",
    "TORPI_ConfigureAdapterDPortSettings",
    "TORPI_DiagnosticDPortTest",
    "TORPI_DiagnosticDPortTestV2",
    "TORPI_DiagnosticsCTCommand",
    "TORPI_DiagnosticsFCPingTest",
    "TORPI_DiagnosticsEchoElsTest",
    "TORPI_DiagnosticsLoopBackTest",
    "TORPI_DiagnosticsReadWriteBufferTest",
    "TORPI_GetNVMeHostNQNStatus",
    "TORPI_RegisterDeregisterNVMeHostNQN",
    "TORPI_IsMezzAdapter",
    "TORPI_IsVCLMFeatureEnabled",
    "TORPI_GetSCMRStatisticsList",
    "TORPI_FreeSCMRStatisticsList",
    "TORPI_SANCongMgmtResetStatistics",
    "TORPI_GetSCMRProfile",
    "TORPI_SetSCMRProfile",
    "TORPI_GetPortStatisticsFC",
    "TORPI_GetTargetLinkSpeed",
    "TORPI_SetTargetLinkSpeed",
)

SESSION_START = ["TORPI_Initialize(0, 0)", "TORPI_SetToolID(11)", "TORPI_SetToolVersion(1, 9, 0, 0)"]
SESSION_END = ["TORPI_Uninitialize()"]
UNKNOWN_COMMAND = b"Unknown command or invalid target identifier!\r\n"

_LOG_HEAD = re.compile(
    rb"\d{1,2}/\d{1,2}/\d{4} \d\d:\d\d:\d\d\.\d{3} CIM Provider (?:(INFORMATION|WARNING    |DEBUG      |DIAG_ERROR |) )?\d+: "
)
_LOG_LEVELS = {None: 0, b"INFORMATION": 1, b"WARNING    ": 2, b"DEBUG      ": 4, b"": 8, b"DIAG_ERROR ": 16}

_SANITIZER_REPORT = re.compile(rb"(Address|Leak|UndefinedBehavior)Sanitizer|runtime error:")


def chatter(*calls):
    """What these calls print on standard output when they chatter."""
    return b"".join(b"<%s> chatters & is 100%% sure\n" % call.encode() for call in calls)


def reject_sanitizer_report(text):
    assert not _SANITIZER_REPORT.search(text), text.decode(errors="replace")


@dataclass
class Result:
    stdout: bytes
    stderr: bytes
    status: int  # negative: the signal that ended the process
    calls: list  # every call of the session, with its arguments
    library_log: bytes | None  # /var/tmp/torpi-output.log; None when there is no such file
    debug_log: bytes | None  # /var/tmp/zfcesxcli.log
    library_files: list  # the names of all files in /var/tmp

    @property
    def command_calls(self):
        """The calls between the start and the end of the session, which are the same for all commands."""
        assert self.calls[:3] == SESSION_START and self.calls[3:][-1:] == SESSION_END, self.calls
        return self.calls[3:-1]

    @property
    def log(self):
        """The lines of the debug log as (level, message): level 1 for steps, 4 for failures, 8 for the steps of a
        calculation, 0 for lines of no level. The messages come without the line end that the log adds. What the root
        logs around a command is left out."""
        starts = list(_LOG_HEAD.finditer(self.debug_log or b""))
        ends = [match.start() for match in starts[1:]] + [len(self.debug_log or b"")]
        return [
            (_LOG_LEVELS[match[1]], self.debug_log[match.end() : end].removesuffix(b"\r\n").decode(errors="replace"))
            for match, end in zip(starts, ends)
            if not self.debug_log.startswith(b"MainCmdsProcessor::", match.end())
        ]

    @property
    def steps(self):
        """The messages of the lines at the level of steps."""
        return [message for level, message in self.log if level == 1]

    def steps_of(self, *classes):
        """The steps that these classes head."""
        heads = tuple(f"{name}::" for name in classes)
        return [message for message in self.steps if message.startswith(heads)]

    def steps_in(self, head):
        """The steps that begin with this text, without it."""
        return [message.removeprefix(head) for message in self.steps if message.startswith(head)]

    @property
    def failures(self):
        """The messages of the lines at the failure level."""
        return [message for level, message in self.log if level == 4]

    @property
    def code(self):
        """The command's code as the debug log shows it; the run must have been made with the log on."""
        found = re.findall(rb"main: Program Exit Code: \((\d+)\)", self.debug_log or b"")
        assert len(found) == 1, self.debug_log
        return int(found[0])


class Zfc:
    """Calling it runs the executable; the private folders last for all runs of one object."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.work = self.folder / "work"
        self.tmp = self.folder / "tmp"
        self.var_tmp = self.folder / "var_tmp"
        self.staging = self.folder / "staging"
        self._image = self.folder / "host.image"
        self._trace = self.folder / "calls.trace"
        for made in (self.work, self.tmp, self.var_tmp, self.staging):
            made.mkdir(parents=True)
        self._handles = {}
        self._runs = 0

    def file(self, name, content=b"image"):
        """A file in the folder in which the executable runs."""
        path = self.work / name
        path.write_bytes(content)
        return path

    def __call__(self, words="", *, stdin=b"", status=0, timeout=120, **options):
        """Runs one command to its end. `words` is a text split at blanks, or a list. The other arguments are those
        of `command`. The process must end with `status` and leave standard error empty."""
        argv, env = self.command(words, **options)
        done = self.run(argv, env, stdin, timeout)
        result = self.result(done.stdout, done.stderr, done.returncode)
        assert result.stderr == b"" and result.status == status, (
            f"status {result.status}, standard error: {result.stderr.decode(errors='replace')}"
        )
        return result

    def run(self, argv, env, stdin=b"", timeout=120):
        """Makes the run that `command` has described and returns a CompletedProcess. Without sanitizers the first run of a
        test starts the program anew; others are a fork of one that waits."""
        anew = not SANITIZED and self._runs == 1 or not start_server.serves(argv, env, stdin, anew=False)
        if start_server.serves(argv, env, stdin, anew=anew):
            return start_server.run(argv, env, stdin, timeout, anew=anew)
        return subprocess.run(argv, input=stdin, capture_output=True, env=env, timeout=timeout)

    def command(
        self,
        words="",
        *,
        host=None,
        results=None,
        components=None,
        memo=None,
        personality=None,
        buffers=None,
        sizes=None,
        reboot=None,
        chatter=BRACKETED,
        pause=None,
        spoil_log=None,
        services=False,
        debug=None,
        library="hostile",
        program=EXECUTABLE,
        read_only_var_tmp=False,
        keep=(),
        env=None,
    ):
        """The argument vector and the environment of one run.

        host: what the library serves, by default one adapter of the Hazel family; results: results of calls by
        name; components, memo: bytes that the flash reads give; personality: the one in force; buffers, sizes: bytes
        that further reads give, and the sizes they report, by the names of the library's settings; reboot: the reboot
        flag that the library stores; chatter: the calls that print; pause, spoil_log: "<call>:<how>"; debug:
        ZNFC_DEBUG_LEVEL; keep: more folders that the run sees; env: more variables.
        """
        image, self._handles = (hosts.one() if host is None else host).image()
        self._image.write_bytes(image)
        self._trace.write_bytes(b"")
        variables = {
            "PATH": f"{EXECUTABLE.parent}:/usr/sbin:/usr/bin:/sbin:/bin",
            "LC_ALL": "C",
            "TZ": "UTC",
            "TORPI_LAB_QUIET": "1",  # most tests want nothing at all on standard error
            "HOSTILE_HOST": str(self._image),
            "HOSTILE_TRACE": str(self._trace),
            "HOSTILE_CHATTER": chatter if isinstance(chatter, str) else ",".join(chatter),
        }
        for name in ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"):
            if name in os.environ:
                variables[name] = os.environ[name]
        if SANITIZED and self._runs > 0:  # half of the time of a run: the first one of a test has to do
            variables["ASAN_OPTIONS"] = ":".join([*filter(None, [variables.get("ASAN_OPTIONS")]), "detect_leaks=0"])
        self._runs += 1
        if LIBRARIES[library]:
            variables["LD_LIBRARY_PATH"] = str(LIBRARIES[library])
        for call, value in (results or {}).items():
            variables[f"HOSTILE_RESULT_{call}"] = str(value)
        if components is not None:
            variables["HOSTILE_COMPONENTS"] = components.hex()
        if memo is not None:
            variables["HOSTILE_MEMO"] = memo.hex()
        if personality is not None:
            variables["HOSTILE_PERSONALITY"] = str(personality)
        for name, content in (buffers or {}).items():
            variables[f"HOSTILE_{name.upper()}"] = content.hex()
        for name, size in (sizes or {}).items():
            variables[f"HOSTILE_{name.upper()}_SIZE"] = str(size)
        if reboot is not None:
            variables["HOSTILE_REBOOT"] = str(reboot)
        if pause:
            variables["HOSTILE_PAUSE"] = pause
        if spoil_log:
            variables["HOSTILE_SPOIL_LOG"] = spoil_log
        if services:
            variables["HOSTILE_SERVICES"] = "1"
        if debug is not None:
            variables["ZNFC_DEBUG_LEVEL"] = str(debug)
        variables.update(env or {})

        argv = [str(BUILD / "tests" / "private_run")]
        if read_only_var_tmp:
            argv.append("--read-only-var-tmp")
        for path in (ROOT, BUILD, *keep):
            argv += ["--keep", str(path)]
        argv += [str(self.folder), str(program)]
        argv += words.split() if isinstance(words, str) else words
        return argv, variables

    def mend_log(self):
        """Takes away what a spoiled run left in place of the library output file."""
        log = self.var_tmp / "torpi-output.log"
        log.unlink() if log.is_symlink() else log.rmdir()

    def result(self, stdout, stderr, status):
        """What a finished run left."""
        reject_sanitizer_report(stderr)
        return Result(
            stdout=stdout,
            stderr=stderr,
            status=status,
            calls=self.calls(),
            library_log=_content(self.var_tmp / "torpi-output.log"),
            debug_log=_content(self.var_tmp / "zfcesxcli.log"),
            library_files=sorted(found.name for found in self.var_tmp.iterdir()),
        )

    def calls(self):
        """The calls made so far, handles by the names of their entries."""
        text = self._trace.read_bytes().decode(errors="surrogateescape")
        named = re.sub(r"@(\d+)", lambda match: self._handles[int(match.group(1))], text)
        return named.splitlines()


def _content(path):
    return path.read_bytes() if path.is_file() and not path.is_symlink() else None
