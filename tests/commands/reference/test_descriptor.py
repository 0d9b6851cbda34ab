"""The descriptor for the host's shell, used as the shell uses it, over every command of the built-in host."""

import json
import shlex

import pytest

from zfc.documents import is_plain
from zfc.esxcli import PROGRAM, Descriptor, Misfit, Refused, shown
from zfc.reference import NODES, commands, example_path, give_examples, identifiers, runs_of
from zfc.runner import BUILD, EXECUTABLE, ROOT

SHELL = Descriptor(BUILD / "share" / "esxcli" / "zfcesxcli.xml")


# Texts of the program that are no XML. Nothing in a document is escaped, and its texts are fixed.
ILL_FORMED = [b"SFF-8431 (8/4/2G Independent Rx & Tx Rate_select)"]

# A failure that comes when the document of the success is out has a document of its own.
TWO_DOCUMENTS = [
    ("zfcesxcli.target.scmstats.get", "TORPI_FreeSCMRStatisticsList"),
    ("zfcesxcli.port.scmstats.get", "TORPI_FreeSCMRStatisticsList"),
]


def path_of(node, word):
    return ".".join(["zfcesxcli", *node["node"].split()[1::2], word])


def has_document(node, command):
    return isinstance(command.get("document", node.get("document")), dict)


COMMANDS = [
    pytest.param(path_of(node, word), node, word, command, id=f"{node_id}-{word}")
    for node_id, word, command, node in commands()
    if "node" in node and has_document(node, command)
]
# Those without arguments of their own: what they print fits for every identifier.
READS = [
    pytest.param(path_of(node, word), kind, id=f"{node_id}-{word}")
    for node_id, word, command, node in commands()
    if "node" in node and has_document(node, command) and command.get("changes", "Nothing.") == "Nothing."
    for kind in [(command.get("arguments") or [None])[0]]
    if len(command.get("arguments") or []) <= 1 and kind in (None, "adapter", "port", "target", "lun")
]


def run(zfc, path, values, **options):
    """Runs a command as the shell does; what it prints, and the data when it fits."""
    words = path.split(".") + [f"--{name}={value}" for name, value in values.items()]
    command, parsed = SHELL.parse(words)
    line = command.line(parsed).replace(PROGRAM, shlex.quote(str(EXECUTABLE)))
    options = {"library": "simulated"} | options
    result = zfc(["sh", "-c", line], program="/usr/bin/busybox", **options)
    return command, result.stdout


def values_of_example(node, word, command):
    """The parameters by which the command's example runs."""
    given = runs_of(node, command)[-1].split()
    given = given[given.index(command.get("text-word", f"{word}cli")) + 1 :]
    names = [argument if isinstance(argument, str) else argument["name"] for argument in command.get("arguments") or []]
    values = dict(zip(names, given))
    options = {**(node.get("options") or {}), **(command.get("options") or {})}
    long_names = {name: name for name in options} | {option["short"]: name for name, option in options.items()}
    rest = given[len(names) :]
    for name, value in zip(rest[::2], rest[1::2]):
        values[long_names[name].removeprefix("--")] = value
    return values


def test_every_node_has_a_namespace():
    paths = {".".join(["zfcesxcli", *node.get("node", "").split()[1::2]]) for node in NODES.values()}
    assert {*SHELL.namespaces} == paths


def test_every_level_has_a_namespace():
    assert SHELL.missing_levels() == set()


def test_commands_are_those_with_a_document():
    assert {*SHELL.commands} == {path_of(node, word) for _, word, command, node in commands() if "node" in node and has_document(node, command)}


@pytest.mark.parametrize("path, node, word, command", COMMANDS)
def test_parameters_are_those_of_the_command(path, node, word, command):
    options = {**(command.get("options") or {}), **((node.get("options") or {}) if command.get("node-options") else {})}
    names = [argument if isinstance(argument, str) else argument["name"] for argument in command.get("arguments") or []]
    described = {parameter.name: parameter for parameter in SHELL.commands[path].parameters}
    assert {*described} == {*names, *(name.removeprefix("--") for name in options)}
    assert [name for name, parameter in described.items() if parameter.required] == names
    for name, option in options.items():
        parameter = described[name.removeprefix("--")]
        assert parameter.short == option["short"].removeprefix("-")
        assert parameter.constants == (["true", "false"] if option.get("type") == "bool" else option.get("choices", []))


@pytest.mark.parametrize("path, node, word, command", [p for p in COMMANDS if p.values[3].get("example")])
def test_example_fits_and_is_shown(zfc, path, node, word, command):
    node_id = "-".join(path.split(".")[1:-1])
    give_examples(zfc)
    env = {"TORPI_LAB_STATE": str(zfc.work / "state.yaml")}
    for words in runs_of(node, command)[:-1]:  # what has to come first
        zfc(words, library="simulated", env=env)
    described, output = run(zfc, path, values_of_example(node, word, command), env=env)
    data = described.check(output)
    assert json.loads(shown(described, data, "json")) == data
    assert shown(described, data).strip() and shown(described, data, "csv").count("\n") >= 1
    if isinstance(data, dict) and "Message" in data:
        assert f"\nMessage: {data['Message']}\n" in example_path(node_id, word).read_text()


@pytest.mark.parametrize("path, kind", READS)
def test_every_document_of_the_built_in_host_fits(zfc, path, kind):
    names = identifiers(zfc)[kind] if kind else [None]
    assert names
    fitting = 0
    for name in names:
        command, output = run(zfc, path, {kind: name} if kind else {})
        if any(text in output for text in ILL_FORMED):
            with pytest.raises(Misfit, match="not well-formed"):
                command.check(output)
        else:
            command.check(output)
            fitting += 1
    assert fitting > 0


@pytest.mark.parametrize("path, node, word, command", [p for p in COMMANDS if p.values[3].get("arguments") and p.values[3].get("example")])
def test_failure_fits(zfc, path, node, word, command):
    """An identifier that names nothing, and a host whose library has no list of adapters."""
    give_examples(zfc)
    values = values_of_example(node, word, command)
    kind = command["arguments"][0]
    for wrong, options in ((f"{values[kind]}0", {}), (values[kind], {"env": {"TORPI_LAB_FAULTS": "TORPI_GetAdapterList=null"}})):
        described, output = run(zfc, path, values | {kind: wrong}, **options)
        described.check(output)


HOSTS = ("all-families", "odd", "modules")
FIELDS = {"adapter": "Adapters", "port": "Ports", "target": "Targets", "lun": "LUNs/Namespaces"}


@pytest.mark.parametrize("host", HOSTS)
def test_documents_of_other_hosts_fit(zfc, host):
    """Or they are not well-formed, because a text in them is none that XML may have as it is."""
    env = {"TORPI_LAB_HOST": str(ROOT / "examples" / f"{host}.yaml")}
    names = {}
    for kind, field in FIELDS.items():
        text = zfc(f"-t {kind} listcli", library="simulated", env=env).stdout.decode(errors="surrogateescape")
        listed = [line.removeprefix(f"{field}: ") for line in text.split("\n") if line.startswith(f"{field}: ")]
        names[kind] = listed[:: max(1, len(listed) // 4)]  # a few of each
    fitting = 0
    for path, kind in (param.values for param in READS):
        for name in names[kind] if kind else [None]:
            command, output = run(zfc, path, {kind: name} if kind else {}, env=env)
            try:
                command.check(output)
                fitting += 1
            except Misfit as misfit:
                assert "not well-formed" in str(misfit) and not is_plain(output), (path, name, output)
    assert fitting > 50


# What a call can fail with: an answer without a meaning of its own, one that several commands translate, maintenance mode.
ANSWERS = (1, 113, 150)
KEPT = ("TORPI_Initialize", "TORPI_SetToolID", "TORPI_SetToolVersion", "TORPI_Uninitialize", "TORPI_GetAdapterList")
RECORD_CALLS = ("TORPI_DiagnosticsReadWriteBufferTest",)  # it answers a pointer


@pytest.mark.parametrize("path, node, word, command", [p for p in COMMANDS if p.values[3].get("example")])
def test_document_fits_whatever_a_call_answers(zfc, path, node, word, command):
    give_examples(zfc)
    state = zfc.work / "state.yaml"
    for words in runs_of(node, command)[:-1]:
        zfc(words, library="simulated", env={"TORPI_LAB_STATE": str(state)})
    kept = state.read_bytes() if state.exists() else None
    staged = {path: path.read_bytes() for path in zfc.staging.iterdir()}
    trace = zfc.work / "trace"
    values = values_of_example(node, word, command)

    def output_with(**env):
        if kept is not None:
            state.write_bytes(kept)
        for path, content in staged.items():
            path.write_bytes(content)
        return run(zfc, path_of(node, word), values, env={"TORPI_LAB_STATE": str(state)} | env)

    output_with(TORPI_LAB_TRACE=str(trace))
    calls = {line.split("(")[0] for line in trace.read_text().splitlines()} - {*KEPT}
    for call in sorted(calls):
        if call in RECORD_CALLS:
            continue
        for answer in ANSWERS:
            described, output = output_with(TORPI_LAB_FAULTS=f"{call}={answer}")
            if (path, call) in TWO_DOCUMENTS:
                with pytest.raises(Misfit, match="not well-formed"):
                    described.check(output)
                assert output.count(b"<?xml") == 2
            else:
                described.check(output)


NASTY = {
    "quote": "FC_'; touch touched; '",
    "two quotes": "FC_'' \" ' \"",
    "double quotes": 'FC_"; touch touched; "',
    "substitution": "FC_$(touch touched)",
    "backquotes": "FC_`touch touched`",
    "variable": "FC_$PATH ${IFS}",
    "brackets": "FC_) ; touch touched ; (",
    "backslash": "FC_\\' \\\\ \\$(touch touched)\\",
    "blanks": "  FC_a  b\t c  ",
    "line break": "FC_a\ntouch touched\n)",
    "here-document": "FC_a <<end\nend",
    "stars": "FC_* ? [a] ~ !! #",
}


@pytest.mark.parametrize("value", NASTY.values(), ids=NASTY.keys())
def test_value_reaches_the_program_as_it_is(zfc, value):
    """The program is a script here, which shows its words."""
    show = zfc.file("show", b'#!/bin/sh\nfor word in "$@"; do printf "<%s>\\n" "$word"; done\n')
    show.chmod(0o755)
    command, parsed = SHELL.parse(["zfcesxcli", "port", "dmi", "get", f"--port={value}", "--refresh=true"])
    line = command.line(parsed).replace(PROGRAM, shlex.quote(str(show)))
    result = zfc(["sh", "-c", line], program="/usr/bin/busybox")
    shown_words = ["-t", "port", "-s", "dmi", "get", value, "--refresh", "true"]
    assert result.stdout.decode() == "".join(f"<{word}>\n" for word in shown_words)
    assert not (zfc.work / "touched").exists()


@pytest.mark.parametrize(
    "words, said",
    [
        ("zfcesxcli port dmi", "Unknown command"),
        ("zfcesxcli port dmi help", "Unknown command"),
        ("zfcesxcli port dmi get", "Missing required parameter -p|--port"),
        ("zfcesxcli port dmi get --port=a --refresh=maybe", "Invalid value for --refresh"),
        ("zfcesxcli port dmi get --port=a --what=b", "Invalid option --what"),
        ("zfcesxcli port dmi get --port", "--port needs a value"),
    ],
)
def test_shell_refuses(words, said):
    with pytest.raises(Refused, match=said.replace("|", r"\|")):
        SHELL.parse(words.split())


def test_short_names_serve(zfc):
    command, parsed = SHELL.parse("zfcesxcli port dmi get -p FC_1 -r=true".split())
    assert parsed == {"port": "FC_1", "refresh": "true"}


DMI = SHELL.commands["zfcesxcli.port.dmi.get"]
FRAME = b'<output><structure typeName="DMIInformation">%s</structure></output>'
MESSAGE = b'<field name="Message"><string>Success</string></field>'
LIST = b'<field name="Dmi Info"><list type="structure">%s</list></field>'
TEXT = b'<structure typeName="DMIInfoList"><field name="Dmi Data"><string>%s</string></field></structure>'


@pytest.mark.parametrize(
    "output",
    [
        pytest.param(b"", id="nothing"),
        pytest.param(b"ERROR: no", id="error"),
        pytest.param(FRAME % (MESSAGE + LIST % (TEXT % b"a & b")), id="ill-formed"),
        pytest.param(FRAME % (LIST % b"" + MESSAGE), id="order"),
        pytest.param(FRAME % MESSAGE, id="missing field"),
        pytest.param(FRAME % (MESSAGE + LIST % b"<string/>"), id="kind"),
        pytest.param(FRAME.replace(b"DMI", b"DMX") % (MESSAGE + LIST % b""), id="structure"),
        pytest.param(FRAME % (MESSAGE + MESSAGE + LIST % b""), id="field twice"),
        pytest.param(FRAME % (MESSAGE + LIST % (TEXT % b"a" + TEXT.replace(b"Dmi Data", b"Data") % b"a")), id="inner field"),
    ],
)
def test_stand_in_finds_a_misfit(output):
    with pytest.raises(Misfit):
        DMI.check(output)


def test_stand_in_takes_what_fits():
    assert DMI.check(FRAME % (MESSAGE + LIST % (TEXT % b"a"))) == {"Message": "Success", "Dmi Info": [{"Dmi Data": "a"}]}
