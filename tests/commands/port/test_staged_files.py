"""Staged files: what a `setFile` leaves for the next `set`, whatever a person or a full disk does in between.

What an interrupted run leaves is in interrupted/."""

import os
import subprocess

import pytest

from zfc import config, documents, port
from zfc.boot import bios
from zfc.config import IDENTIFIER, INVALID, PARAMS, UNKNOWN, Staging, changed, params, with_params
from zfc.host import Adapter, Host, Port
from zfc.runner import EXECUTABLE
from zfc.staged import BBCR, BOOT, EXT, HBA, NODES, OPTIONS, message, run, writes


@pytest.mark.parametrize("node", NODES, ids=str)
class TestStates:
    """Every arrow of the staged file's two states, absent and present."""

    def test_absent_and_valid_options(self, zfc, node):
        assert message(run(zfc, node, "setFile", node.options)) == "Success"
        assert Staging(zfc, node.family).read() == changed(node.created, **node.changes)

    def test_absent_and_no_options(self, zfc, node):
        assert message(run(zfc, node, "setFile")) == "Success"
        assert Staging(zfc, node.family).read() == node.created

    def test_absent_and_a_refused_option(self, zfc, node):
        assert message(run(zfc, node, "setFile", node.refused)) != "Success"
        assert Staging(zfc, node.family).read() == node.created

    def test_absent_and_set(self, zfc, node):
        result = run(zfc, node, "set", debug=4)
        assert message(result) == UNKNOWN
        assert result.code == 0
        assert writes(node, result) == []
        assert Staging(zfc, node.family).read() is None

    def test_present_and_valid_options(self, zfc, node):
        staging = Staging(zfc, node.family)
        staging.write(node.created)
        result = run(zfc, node, "setFile", node.options)
        assert message(result) == "Success"
        assert writes(node, result) == []
        assert staging.read() == changed(node.created, **node.changes)

    def test_present_and_a_refused_option(self, zfc, node):
        staging = Staging(zfc, node.family)
        staged = changed(node.created, **node.changes)
        staging.write(staged)
        assert message(run(zfc, node, "setFile", node.refused)) != "Success"
        assert staging.read() == staged

    def test_present_and_set(self, zfc, node):
        staging = Staging(zfc, node.family)
        staging.write(changed(node.created, **node.changes))
        result = run(zfc, node, "set")
        assert message(result) == "Success"
        assert len(writes(node, result)) == 1
        assert staging.read() is None

    def test_present_and_set_with_a_bad_value(self, zfc, node):
        staging = Staging(zfc, node.family)
        staged = changed(node.created, **node.bad)
        staging.write(staged)
        result = run(zfc, node, "set")
        assert message(result) == INVALID
        assert writes(node, result) == []
        assert staging.read() == staged

    @pytest.mark.parametrize("result", [1, 150])
    def test_present_and_set_on_a_device_that_fails(self, zfc, node, result):
        staging = Staging(zfc, node.family)
        staging.write(node.created)
        assert message(run(zfc, node, "set", results={node.write: result})) != "Success"
        assert staging.read() == node.created
        assert message(run(zfc, node, "set")) == "Success"
        assert staging.read() is None

    def test_get_in_both_states(self, zfc, node):
        staging = Staging(zfc, node.family)
        fresh = run(zfc, node, "get")
        assert message(fresh) == "Success"
        assert staging.read() is None
        staged = changed(changed(node.created, **node.changes), **node.bad)
        staging.write(staged)
        assert run(zfc, node, "get").stdout == fresh.stdout
        assert staging.read() == staged

    def test_two_forms_of_the_port_would_be_two_files(self, zfc, node):
        """The file is named after the word as typed; any other spelling names no port at all."""
        assert message(run(zfc, node, "setFile", identifier=IDENTIFIER.lower())) == INVALID
        assert list(zfc.staging.iterdir()) == []


class TestStatesOfHbaParams:
    @pytest.mark.parametrize("command, options", [("restoreDefaults", []), ("save", ["file"])])
    def test_other_commands_leave_the_file_alone(self, zfc, command, options):
        staging = Staging(zfc, HBA.family)
        assert message(run(zfc, HBA, command, options)) == "Success"
        assert staging.read() is None
        staged = changed(HBA.created, **HBA.bad)
        staging.write(staged)
        assert message(run(zfc, HBA, command, options)) == "Success"
        assert staging.read() == staged

    def test_old_file_goes_over_restored_defaults(self, zfc):
        staging = Staging(zfc, HBA.family)
        staging.write(changed(HBA.created, Data_Rate=5))
        run(zfc, HBA, "restoreDefaults")
        defaults = params(**{name: 0 for name in PARAMS})
        result = run(zfc, HBA, "set", buffers={"params": defaults})
        written = bytes.fromhex(writes(HBA, result)[0].split(", ")[1].rstrip(")"))
        assert written == params(data_rate=5)

    def test_values_of_the_device_are_sampled_when_the_file_is_made(self, zfc):
        run(zfc, HBA, "setFile", ["-u", "3"])
        later = params(login_retry_count=99, frame_size=512)
        result = run(zfc, HBA, "set", buffers={"params": later})
        written = bytes.fromhex(writes(HBA, result)[0].split(", ")[1].rstrip(")"))
        assert written == params(login_retry_count=3)


def test_file_operations_are_traced_with_their_values(zfc):
    """At the trace level; the failures of a folder that is missing are at the other one."""
    run(zfc, BBCR, "setFile", ["-c", "3"], debug=1)
    log = run(zfc, BBCR, "set", debug=1).debug_log
    path = f"{FOLDER}/BBCR_{IDENTIFIER}".encode()
    for line in (
        b"FileOps::IsFilePresent: " + path,
        b"FileOps::UpdateKeyValueInFile: " + path + b": BBCR_Count=3",
        b"FileOps::GetKeyValueFromFile: " + path + b": BBCR_Status",
        b"FileOps::GetKeyValueFromFile: BBCR_Count=3",
        b"FileOps::RemoveFile: " + path,
    ):
        assert b": " + line + b"\r\n" in log, line
    (zfc.var_tmp / "zfcesxcli.log").unlink()
    run(zfc, BBCR, "setFile", debug=4)
    assert b"FileOps" not in run(zfc, BBCR, "set", debug=4).debug_log
    assert b"FileOps::UpdateKeyValueInFile: cannot create " in run_in(zfc, MISSING, BBCR, "setFile", debug=4).debug_log


class TestEdgeCases:
    def test_no_options_create_the_file_and_display_the_device(self, zfc):
        result = run(zfc, HBA, "setFile")
        assert result.stdout == run(zfc, HBA, "get").stdout
        assert Staging(zfc, HBA.family).read() == HBA.created

    def test_second_value_of_a_key_is_at_its_old_place(self, zfc):
        run(zfc, HBA, "setFile", ["-u", "3"])
        run(zfc, HBA, "setFile", ["-u", "4"])
        assert Staging(zfc, HBA.family).read() == changed(HBA.created, Login_Retry_Count=4)

    def test_file_with_some_keys(self, zfc):
        staging = Staging(zfc, HBA.family)
        staging.write(b"Frame_Size=512\n")
        assert b"\nFrame Size: 512\n" in run(zfc, HBA, "setFile", ["-u", "3"]).stdout
        assert staging.read() == b"Frame_Size=512\nLogin_Retry_Count=3\n"
        result = run(zfc, HBA, "set")
        written = bytes.fromhex(writes(HBA, result)[0].split(", ")[1].rstrip(")"))
        assert written == with_params(params(), frame_size=512, login_retry_count=3)

    def test_comments_are_skipped_by_the_reader_and_overwritten_by_the_writer(self, zfc):
        staging = Staging(zfc, HBA.family)
        staging.write(b"# Login_Retry_Count stays at 8\nno separator\nFrame_Size=512\n")
        run(zfc, HBA, "setFile", ["-y", "7"])
        assert staging.read() == b"# Login_Retry_Count stays at 8\nno separator\nFrame_Size=512\nLuns_Per_Target=7\n"
        run(zfc, HBA, "setFile", ["-u", "3"])
        assert staging.read() == b"Login_Retry_Count=3\nno separator\nFrame_Size=512\nLuns_Per_Target=7\n"

    def test_key_in_another_case(self, zfc):
        staging = Staging(zfc, HBA.family)
        staging.write(b"data_rate=3\n")
        for _ in range(2):
            assert b"\nData Rate: 4_Gbps\n" in run(zfc, HBA, "setFile", ["-d", "8_Gbps"]).stdout
            assert staging.read() == b"data_rate=3\nData_Rate=4\n"

    def test_trailing_comment(self, zfc):
        Staging(zfc, HBA.family).write(b"Data_Rate=3 # fixed\n")
        assert b"\nData Rate: 4_Gbps\n" in run(zfc, HBA, "set").stdout

    @pytest.mark.parametrize("node", NODES, ids=str)
    def test_stale_temporary_file_is_reused(self, zfc, node):
        staging = Staging(zfc, node.family)
        temporary = zfc.staging / f"{node.family}_{IDENTIFIER}_tmp"
        temporary.write_bytes(b"stale=1\n" * 10000)
        run(zfc, node, "setFile", node.options)
        assert staging.read() == changed(node.created, **node.changes)
        assert not temporary.exists()

    @pytest.mark.parametrize("node", NODES, ids=str)
    def test_folder_in_the_files_place(self, zfc, node):
        path = Staging(zfc, node.family).path
        path.mkdir()
        result = run(zfc, node, "setFile", debug=4)
        assert message(result) == node.failed_file
        assert b"file ops failed" in result.debug_log
        assert message(run(zfc, node, "set")) == UNKNOWN
        assert path.is_dir() and list(path.iterdir()) == []


HAND_EDITED = [
    pytest.param(b"Data_Rate=3\r\nFrame_Size=512\r\n", id="line ends of another system"),
    pytest.param(b"   Data_Rate \t =  3  \n\tFrame_Size=512 x y\n", id="blanks"),
    pytest.param(b"DATA_RATE=3\nframe_size=512\n", id="other case"),
    pytest.param(b"Data_Rate=3\nData_Rate=99\nFrame_Size=512\nframe_size=1\n", id="duplicate keys"),
    pytest.param(b"Data_Rate=3abc\nFrame_Size=512.5\n", id="text after the number"),
    pytest.param(b"Data_Rate=4294967299\nFrame_Size=+512\n", id="low 32 bits"),
    pytest.param(b"# " + b"x" * 5000 + b"\nData_Rate=3\nFrame_Size=512\n", id="long comment"),
    pytest.param(b"y" * 100000 + b"\nData_Rate=3\nFrame_Size=512\n", id="very long line"),
    pytest.param(bytes(range(256)) * 20 + b"\nData_Rate=3\nFrame_Size=512\n", id="binary"),
    pytest.param(b"\0\0\nData_Rate=3\0\nFrame_Size=512\0x\n\xff\xfe=\n", id="null characters"),
    pytest.param(b"Data_Rate=3\nFrame_Size=512", id="no line end"),
    pytest.param(b"=\n==\n=3\n#=\nData_Rate=3\nFrame_Size=512\n" + b"\n" * 50, id="odd lines"),
    pytest.param(b"Frame_Size=512\n" + b"Unknown=1\n" * 5000 + b"Data_Rate=3", id="many lines"),
    pytest.param(b"\xef\xbb\xbf#\nData_Rate=3\nFrame_Size=512\n", id="byte order mark"),
]


@pytest.mark.parametrize("content", HAND_EDITED)
class TestHandEdited:
    """Every one of these files says data rate 3 and frame size 512, and nothing else."""

    def test_set(self, zfc, content):
        Staging(zfc, HBA.family).write(content)
        result = run(zfc, HBA, "set")
        assert message(result) == "Success"
        written = bytes.fromhex(writes(HBA, result)[0].split(", ")[1].rstrip(")"))
        assert written == params(data_rate=3, frame_size=512)

    def test_set_file_keeps_what_it_does_not_know(self, zfc, content):
        staging = Staging(zfc, HBA.family)
        staging.write(content)
        assert message(run(zfc, HBA, "setFile", ["-u", "3"])) == "Success"
        assert staging.read() == content + b"Login_Retry_Count=3\n"


@pytest.mark.parametrize(
    "content",
    [b"Data_Rate=8\n", b"Data_Rate=-1\n", b"Frame_Size=abc\n", b"Frame_Size=\n", b"Frame_Size==512\n", b"Operation_Mode=#5\n\nFrame_Size=1\n"],
)
def test_value_that_is_caught(zfc, content):
    staging = Staging(zfc, HBA.family)
    staging.write(content)
    assert message(run(zfc, HBA, "set")) == INVALID
    assert message(run(zfc, HBA, "setFile")) == INVALID
    assert staging.read() == content


# The staging folder itself. The scripts run inside the private namespace of the run. Where mounts are refused, the run has
# a preloaded library that can do the same.
FOLDER = "/opt/ZunaFcEsxcliPlugin/tmp"
MISSING = f"umount {FOLDER} 2>/dev/null; rmdir {FOLDER} 2>/dev/null; [ ! -e {FOLDER} ] && exec \"$@\""
READ_ONLY = (
    f"mount -o remount,bind,ro {FOLDER} 2>/dev/null || export PRIVATE_PATHS_READ_ONLY={FOLDER}\n"
    f"! touch {FOLDER}/made 2>/dev/null && exec \"$@\""
)
FULL = f"""cp -a {FOLDER} before
if mount -t tmpfs -o size=8k none {FOLDER} 2>/dev/null; then
  cp -a before/. {FOLDER}
  head -c 8192 /dev/zero >{FOLDER}/filler 2>/dev/null
  "$@"
else
  : >{FOLDER}/filler
  PRIVATE_PATHS_FULL={FOLDER} "$@"
fi
cp -a {FOLDER}/. after
"""


def run_in(zfc, script, node, command, options=(), **more):
    words = ["-c", script, "sh", str(EXECUTABLE), "-t", "port", "-s", node.word, f"{command}cli", IDENTIFIER, *options]
    return zfc(words, program="/bin/sh", **{**OPTIONS, **more})


@pytest.mark.parametrize("node", NODES, ids=str)
class TestFolder:
    def test_missing(self, zfc, node):
        result = run_in(zfc, MISSING, node, "setFile", node.options, debug=4)
        assert message(result) == node.failed_file
        assert result.code == 19
        assert b"file ops failed" in result.debug_log
        assert message(run_in(zfc, MISSING, node, "set")) == UNKNOWN
        assert message(run_in(zfc, MISSING, node, "get")) == "Success"

    def test_read_only_without_a_file(self, zfc, node):
        assert message(run_in(zfc, READ_ONLY, node, "setFile", node.options)) == node.failed_file
        assert list(zfc.staging.iterdir()) == []

    def test_read_only_with_a_file(self, zfc, node):
        staging = Staging(zfc, node.family)
        staging.write(node.created)
        assert message(run_in(zfc, READ_ONLY, node, "setFile", node.options)) == node.failed_file
        assert staging.read() == node.created

    def test_read_only_set_succeeds_and_the_file_stays(self, zfc, node):
        staging = Staging(zfc, node.family)
        staging.write(node.created)
        result = run_in(zfc, READ_ONLY, node, "set", debug=4)
        assert message(result) == "Success"
        assert len(writes(node, result)) == 1
        assert b"cannot remove" in result.debug_log
        assert staging.read() == node.created

    def test_full_without_a_file(self, zfc, node):
        assert message(run_in(zfc, FULL, node, "setFile", node.options)) == node.failed_file
        assert {found.name for found in (zfc.work / "after").iterdir()} == {"filler"}

    def test_full_with_a_file(self, zfc, node):
        staging = Staging(zfc, node.family)
        staging.write(node.created)
        assert message(run_in(zfc, FULL, node, "setFile", node.options)) == node.failed_file
        assert (zfc.work / "after" / staging.path.name).read_bytes() == node.created
        assert {found.name for found in (zfc.work / "after").iterdir()} == {"filler", staging.path.name}


def test_read_only_folder_needs_no_write_without_changes(zfc):
    Staging(zfc, HBA.family).write(HBA.created)
    assert message(run_in(zfc, READ_ONLY, HBA, "setFile")) == "Success"


# Two runs at once.


def at_once(zfc, commands, **options):
    """Runs several commands at the same time and returns what each prints; none may fail as a process."""
    prepared = [zfc.command(["-t", "port", "-s", *words], **{**OPTIONS, **options}) for words in commands]
    runs = [
        subprocess.Popen(argv, env=variables, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        for argv, variables in prepared
    ]
    printed = []
    for running in runs:
        stdout, stderr = running.communicate(timeout=60)
        assert running.returncode == 0 and stderr == b""
        printed.append(stdout.decode())
    return printed


def test_two_runs_on_one_port_end_and_the_next_one_works(zfc):
    """Nothing guards the file: their keys may mix, and a file operation may fail. Neither run hangs or dies."""
    staging = Staging(zfc, HBA.family)
    allowed = {"Success", UNKNOWN, INVALID}
    for _ in range(25):
        staging.clear()
        options = (["-u", "3"], ["-y", "7"], ["-o", "9"])
        for document in at_once(zfc, [["hbaparams", "setFilecli", IDENTIFIER, *given] for given in options]):
            shown = [line for line in document.split("\n") if line.startswith("Message: ")]
            assert len(shown) == 1 and shown[0].removeprefix("Message: ") in allowed
        staging.clear()
        assert message(run(zfc, HBA, "setFile", HBA.options)) == "Success"
        assert staging.read() == changed(HBA.created, **HBA.changes)


def test_runs_on_two_ports_do_not_meet(zfc):
    names = [bytes.fromhex(f"210000112233440{number}") for number in range(2)]
    entries = [config.entry(f"port{number}", wwpn=name) for number, name in enumerate(names)]
    host = Host([Adapter(ports=[Port(number, [entry]) for number, entry in enumerate(entries)])])
    for _ in range(10):
        for found in zfc.staging.iterdir():
            found.unlink()
        commands = [
            ["hbaparams", "setFilecli", port.identifier(name), "-u", str(number)] for number, name in enumerate(names)
        ]
        for document in at_once(zfc, commands, host=host):
            assert "\nMessage: Success\n" in document
        for number, name in enumerate(names):
            staged = Staging(zfc, HBA.family, port.identifier(name)).read()
            assert staged == changed(HBA.created, Login_Retry_Count=number)


def test_nodes_of_one_port_have_files_of_their_own(zfc):
    for node in NODES:
        run(zfc, node, "setFile", node.options)
    for node in NODES:
        assert Staging(zfc, node.family).read() == changed(node.created, **node.changes)
    result = run(zfc, BOOT, "set")
    data = bios(disable_bios=1, selectable_boot=0)
    documents.check(result.stdout, "port/bootconfig/set.txt", data=data, reboot="true")
    assert sorted(os.listdir(zfc.staging)) == sorted(
        f"{node.family}_{IDENTIFIER}" for node in (HBA, BBCR, EXT)
    )
