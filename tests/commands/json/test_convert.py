"""zfc-json: what it makes of documents from its standard input and of a program that it runs."""

import json
import os
import resource
import shutil
import shlex
import subprocess

import pytest

from zfc.host import NO_LIST
from zfc.json_tool import convert, document, environment, field, list_field, lun_list, report, strict, structure
from zfc.runner import SANITIZED, ZFC_JSON

PORT = "FC_21:00:00:0e:1e:11:22:33"
TEXT_FORM = (
    "zfc-json: no document: this is the text form of a command. The XML form is needed: the word without 'cli'\n"
)


def run(zfc, words, *options, status=0, **more):
    """The values of a command that zfc-json runs with the simulated library."""
    argv, env = zfc.command([*options, "--", *words.split()], program=ZFC_JSON, library="simulated", **more)
    done = subprocess.run(argv, stdin=subprocess.DEVNULL, capture_output=True, env=env, timeout=60)
    assert (done.returncode, done.stderr) == (status, b"")
    return [strict(line) for line in done.stdout.splitlines()]


class TestBuiltInHost:
    def test_list(self, zfc):
        names = ["ZX100_AB12345", "ZX320_HZ20417", "ZX325_IR30512", "ZX640_DH64003", "ZX081C_CD81007", "ZX080_BR80991"]
        items = [{"structure": "AdapterList", "fields": {"Adapters": f"Adapter_{name}"}} for name in names]
        assert run(zfc, "-t adapter list") == [
            {
                "structure": "AdapterList",
                "message": None,
                "success": True,
                "rebootRequired": None,
                "fields": None,
                "list": items,
            }
        ]
        assert run(zfc, "-t adapter list", "--stream") == items

    def test_report(self, zfc):
        lines = [
            ("Node Name", "50:06:0b:00:bb:20:11:c0", None),
            ("Port Name", "50:06:0b:00:3b:20:11:c0", None),
            ("Port Id", "01:0a:40", None),
            ("Target Number", "0", 0),
            ("Target Maximum Link Speed", "16_Gbps", None),
        ]
        data = {
            "text": "\n      ".join(f"{label}: {value}" for label, value, _ in lines) + "\n",
            "lines": [
                {"section": None, "group": None, "label": label, "value": value, "unit": None, "number": number}
                for label, value, number in lines
            ],
        }
        words = f"-t target -v tlsd get {PORT}_Target_50:06:0b:00:3b:20:11:c0"
        for options, names in (([], ["text", "lines"]), (["--raw-only"], ["text"]), (["--parsed-only"], ["lines"])):
            element = {
                "structure": "TargetTLSDInfoList",
                "fields": {"Data": {name: data[name] for name in names}},
            }
            [found] = run(zfc, words, *options)
            assert found["fields"] == {"Message": "Success", "Target TLSD Info": [element]}
            assert list(found["fields"]["Target TLSD Info"][0]["fields"]["Data"]) == names

    def test_failure(self, zfc):
        assert run(zfc, "-t port -s info get FC_00", status=1) == [
            {
                "structure": "PortInformation",
                "message": "Failed, Invalid parameter",
                "success": False,
                "rebootRequired": None,
                "fields": {"Message": "Failed, Invalid parameter", "PortInfo": []},
                "list": None,
            }
        ]

    @pytest.mark.parametrize("options, status", [([], 0), (["--reboot-status"], 3)])
    def test_reboot(self, zfc, options, status):
        [found] = run(zfc, f"-t port -s hbaparams restoreDefaults {PORT}", *options, status=status)
        assert (found["success"], found["rebootRequired"]) == (True, True)

    def test_words_of_the_program_that_look_like_options(self, zfc):
        [found] = run(zfc, f"-t port -s beacon get {PORT} --help")
        assert found["structure"] == "BeaconInfo"


def texts(name):
    return [(f"-t port list{name}", TEXT_FORM), (f"-t port -s info get{name} FC_00", TEXT_FORM)]


@pytest.mark.parametrize(
    "words, message",
    [
        *texts("cli"),
        ("-t port lits", 'zfc-json: no document, but "Unknown command or invalid target identifier!"\n'),
        ("version", "zfc-json: no document: there is no output at all\n"),
    ],
)
def test_commands_without_document(zfc, words, message):
    argv, env = zfc.command(["--", *words.split()], program=ZFC_JSON, library="simulated")
    done = subprocess.run(argv, capture_output=True, env=env, timeout=60)
    assert (done.returncode, done.stdout, done.stderr.decode()) == (2, b"", message)


def test_host_without_adapter_list(zfc):
    """Its lists print nothing."""
    argv, env = zfc.command("-- -t adapter list", program=ZFC_JSON, host=NO_LIST, chatter=())
    done = subprocess.run(argv, capture_output=True, env=env, timeout=60)
    assert (done.returncode, done.stdout) == (2, b"")
    assert done.stderr == b"zfc-json: no document: there is no output at all\n"


GOOD = document(structure("UpdateNVRAM", field("Message", b"Success")))
FAILED = document(structure("UpdateNVRAM", field("Message", b"Failed, File not found")))
REBOOT = document(structure("FlashUpdate", field("Reboot Required", b"Cold Boot Required"), field("Message", b"Success")))


@pytest.mark.parametrize(
    "documents, status, with_reboot",
    [
        (GOOD, 0, 0),
        (FAILED, 1, 1),
        (REBOOT, 0, 3),
        (GOOD + FAILED + GOOD, 1, 1),
        (REBOOT + GOOD, 0, 3),
        (REBOOT + FAILED, 1, 1),
        (lun_list(), 0, 0),
        (b"", 2, 2),
        (FAILED + GOOD[:-1], 2, 2),
    ],
)
def test_exit_status(documents, status, with_reboot):
    assert convert(documents).status == status
    assert convert(documents, "--reboot-status").status == with_reboot


def test_documents_in_a_row_are_a_line_each():
    result = convert(GOOD + lun_list(b"a", b"b") + FAILED)
    assert [value["structure"] for value in result.values] == ["UpdateNVRAM", "LunList", "UpdateNVRAM"]
    assert result.stderr == ""


def test_broken_document_leaves_what_came_before():
    result = convert(GOOD + report(b"Model: ZX100\n")[:260] + GOOD)
    assert result.stdout == convert(GOOD).stdout
    assert result.stderr == "zfc-json: broken document: byte 424: expected the end of a text ahead of the next document\n"


def test_other_text_is_passed_over_and_counted():
    result = convert(b"library says & more\n" + GOOD + b"$>" + GOOD + b"\n")
    assert len(result.values) == 2 and result.status == 0
    assert result.stderr == "zfc-json: passed over 18 bytes outside of documents\n"


@pytest.mark.parametrize(
    "options, message",
    [
        (["--wrong"], "unknown option '--wrong'"),
        (["--stream=1"], "--stream takes no value"),
        (["port"], "'port': the words of a command follow '--'"),
        (["--"], "no words after '--'"),
        (["--raw-only", "--parsed-only"], "--raw-only and --parsed-only leave nothing"),
    ],
)
def test_wrong_usage(options, message):
    result = convert(GOOD, *options)
    assert (result.status, result.stdout) == (2, b"")
    assert result.stderr == f"zfc-json: {message}\nTry 'zfc-json --help'.\n"


@pytest.mark.parametrize("option", ["--help", "-h"])
def test_help(option):
    result = convert(b"", option)
    assert (result.status, result.stderr) == (0, "")
    for name in ("--raw-only", "--parsed-only", "--stream", "--reboot-status", "Exit status"):
        assert name.encode() in result.stdout


class TestProgramBesideIt:
    """zfc-json runs the zfcesxcli of its own folder, here a script."""

    @pytest.fixture
    def beside(self, tmp_path):
        shutil.copy(ZFC_JSON, tmp_path / "zfc-json")

        def runs(script, *words):
            if script is not None:
                program = tmp_path / "zfcesxcli"
                program.write_text("#!/bin/sh\n" + script)
                program.chmod(0o755)
            return convert(b"", "--", *words, program=tmp_path / "zfc-json")

        (tmp_path / "good.xml").write_bytes(GOOD)
        return runs

    def test_there_is_none(self, beside, tmp_path):
        result = beside(None, "help")
        assert (result.status, result.stdout) == (2, b"")
        assert result.stderr == f"zfc-json: {tmp_path}/zfcesxcli: No such file or directory\n"

    def test_gets_the_words_as_they_are(self, beside, tmp_path):
        words = ["-t", "port list", "", "--", "a'b\"c\n$d", "*"]
        beside(f'printf "%s\\0" "$@" > {shlex.quote(str(tmp_path))}/words', *words)
        assert (tmp_path / "words").read_bytes() == b"".join(word.encode() + b"\0" for word in words)

    @pytest.mark.parametrize(
        "end, message", [("exit 5", "zfcesxcli ended with 5"), ("kill -9 $$", "zfcesxcli was ended by signal 9")]
    )
    def test_ends_badly(self, beside, tmp_path, end, message):
        result = beside(f"cat {shlex.quote(str(tmp_path))}/good.xml; {end}", "x")
        assert (result.status, result.stderr) == (2, f"zfc-json: {message}\n")
        assert result.stdout == convert(GOOD).stdout

    def test_is_not_cut_off_by_a_broken_document(self, beside, tmp_path):
        script = f"cat {shlex.quote(str(tmp_path))}/good.xml; echo '{GOOD[:70].decode()}'; head -c 300000 /dev/zero; touch {shlex.quote(str(tmp_path))}/finished"
        result = beside(script, "x")
        assert result.status == 2 and result.stderr.startswith("zfc-json: broken document: byte ")
        assert (tmp_path / "finished").exists()


def test_output_that_fails():
    with open("/dev/full", "wb") as full:
        done = subprocess.run([ZFC_JSON], input=GOOD, stdout=full, stderr=subprocess.PIPE, env=environment())
    assert done.returncode == 2
    assert done.stderr == b"zfc-json: standard output can't be written: No space left on device\n"


@pytest.mark.parametrize("words", ["", " -- -t port list"])
def test_output_that_is_closed(words):
    done = subprocess.run(f"{shlex.quote(str(ZFC_JSON))}{words} >&-", shell=True, input=GOOD, stderr=subprocess.PIPE, env=environment())
    assert (done.returncode, done.stderr) == (2, b"zfc-json: standard output is closed\n")


def test_input_that_fails(tmp_path):
    folder = os.open(tmp_path, os.O_RDONLY)
    done = subprocess.run([ZFC_JSON], stdin=folder, capture_output=True, env=environment())
    os.close(folder)
    assert done.returncode == 2
    assert done.stderr == b"zfc-json: the input can't be read: Is a directory\n"


@pytest.mark.skipif(SANITIZED, reason="the sanitizers need address space of their own")
def test_memory_that_gives_out():
    limit = 30 << 20
    result = convert(
        lun_list(*[b"x" * 1000] * 60000), preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit))
    )
    assert (result.status, result.stdout, result.stderr) == (2, b"", "zfc-json: out of memory\n")


@pytest.mark.skipif(SANITIZED, reason="the sanitizers need memory of their own")
def test_stream_takes_constant_memory(tmp_path):
    """Also with an address space that the document alone would fill."""
    limit = 16 << 20
    count = 200000
    result = convert(
        lun_list(*(b"FC_21:00:00:0e:1e:11:22:33_Target_50:06:0b:00:3b:20:11:c0_LUN_%d" % n for n in range(count))),
        "--stream",
        preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)),
    )
    assert (result.status, result.stderr) == (0, "")
    lines = result.stdout.splitlines()
    assert len(lines) == count
    name = f"{PORT}_Target_50:06:0b:00:3b:20:11:c0_LUN_{count - 1}"
    assert json.loads(lines[-1]) == {"structure": "LunList", "fields": {"LUNs/Namespaces": name}}


def test_stream_leaves_other_documents_alone():
    other = document(structure("FECInfo", field("Message", b"Success"), list_field("FEC", structure("FECList"))))
    assert convert(other, "--stream").stdout == convert(other).stdout
