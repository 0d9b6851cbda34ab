"""The pages of the tools, compared with what their --help shows and their sources take, both ways."""

import re
import subprocess
from collections import namedtuple

import pytest
import yaml

from zfc.machine import without_staging_notice
from zfc.reference import REFERENCE
from zfc.runner import BUILD, ROOT

BIN = BUILD / "bin"
PAGES = {path.stem: yaml.safe_load(path.read_text()) for path in sorted((REFERENCE / "tools").glob("zfc-*.yaml"))}
HELP_OPTION = frozenset({"-h", "--help"})

# A page, with the command that a part of it is about.
About = namedtuple("About", "page command source")
LAB_COMMANDS = ("run", "new", "check", "reboot", "snapshot", "diff", "map", "flash-image")
ABOUT = [About("zfc-json", None, "tools/json/main.cpp"), About("zfc-snapshot", None, "tools/snapshot/main.cpp")]
ABOUT += [About("zfc-lab", word, f"tools/lab/{word.replace('-', '_')}.cpp") for word in LAB_COMMANDS]
each = pytest.mark.parametrize("about", ABOUT, ids=["-".join(filter(None, about[:2])) for about in ABOUT])


def help_of(page, command=None):
    words = [BIN / page, *filter(None, [command]), "--help"]
    return subprocess.run(words, capture_output=True, text=True, check=True).stdout


def items_of(page, heading):
    """The items of a part as {term: text}; none where there is no such part."""
    parts = [part for part in PAGES[page]["parts"] if part["heading"] == heading]
    return {str(term): str(text) for part in parts for item in part.get("items", []) for term, text in item.items()}


def text_of(page, heading):
    (part,) = [part for part in PAGES[page]["parts"] if part["heading"] == heading]
    return part.get("text", "")


def options(terms):
    """{"-o, --output FILE": text} as {({"-o", "--output"}, "FILE"): the numbers in the text}."""
    found = {}
    for term, text in terms.items():
        words = term.replace(",", "").split()
        names = frozenset(word for word in words if word.startswith("-"))
        found[names, " ".join(word for word in words if word not in names)] = re.findall(r"\d+", text)
    return found


def options_of_page(page, command):
    return options(items_of(page, f"Options of {command}" if command else "Options"))


def options_of_help(page, command):
    terms = {}
    for line in help_of(page, command).splitlines():
        if found := re.match(r" {2,6}(-.*?)  +(.*)", line):
            terms[found[1]] = found[2]
        elif line.startswith(" " * 12) and terms:
            terms[[*terms][-1]] += line
    return options(terms)


def options_of_source(path):
    """Those that the tool's reader of words is given."""
    given = re.findall(r'\{"(--[a-z-]+)"(?:, "(-\w)?"(?:, "([A-Z=]+)")?)?\}', (ROOT / path).read_text())
    return {(frozenset(filter(None, names[:2])), names[2]) for names in given}


def without_help(found, command):
    """zfc-lab takes --help for every command, so its page has it once."""
    return {option for option in found if not (command and option[0] == HELP_OPTION)}


@each
def test_page_has_the_options_of_the_help(about):
    on_page, shown = options_of_page(about.page, about.command), options_of_help(about.page, about.command)
    assert without_help(on_page, about.command) == without_help(shown, about.command)
    for option in without_help(shown, about.command):
        assert on_page[option] == shown[option], option


@each
def test_help_has_the_options_of_the_source(about):
    shown = options_of_help(about.page, about.command)
    assert without_help(shown, about.command) == without_help(options_of_source(about.source), about.command)


def test_help_has_options_at_all():
    """What the comparisons above find: short and long names, with and without values."""
    assert (frozenset({"-f", "--fault"}), "CALL=RESULT") in options_of_help("zfc-lab", "run")
    assert options_of_help("zfc-lab", "new")[frozenset({"--luns"}), "N"] == ["0", "16384", "4"]
    assert [len(options_of_help(*about[:2])) for about in ABOUT] == [5, 6, 3, 7, 1, 0, 0, 1, 3, 0]


@pytest.mark.parametrize("command", LAB_COMMANDS)
def test_every_command_of_the_lab_shows_its_help(command):
    assert help_of("zfc-lab", command) == subprocess.run(
        [BIN / "zfc-lab", command, "-h"], capture_output=True, text=True, check=True
    ).stdout
    assert (frozenset(HELP_OPTION), "") in options_of_page("zfc-lab", None)


def test_commands_are_those_of_the_help():
    listed = re.search(r"^Commands:\n(.*?)\n\n", help_of("zfc-lab"), re.M | re.S)[1]
    shown = [line.split()[0] for line in listed.splitlines()]
    assert shown == [*LAB_COMMANDS] == [*items_of("zfc-lab", "Commands")]
    assert shown == [line.split()[1] for line in PAGES["zfc-lab"]["synopsis"]]


def synopses(about):
    return [line for line in PAGES[about.page]["synopsis"] if about.command in (None, line.split()[1])]


@each
def test_synopsis_has_the_words_of_the_usage(about):
    """But for the options, which the usage need not name."""
    usage = re.findall(r"^(?:Usage:| {6}) (?:.* \| )?(zfc-.*)", help_of(about.page, about.command), re.M)
    optional = re.compile(r" \[(OPTION\.\.\.|--?\w[^]]*)\](\.\.\.)?")
    assert [optional.sub("", line) for line in synopses(about)] == [optional.sub("", line) for line in usage] != []


@each
def test_synopsis_has_the_options(about):
    """By one of their names; --help and --version are uses of their own."""
    page, command = ("zfc-snapshot", None) if about.command == "snapshot" else about[:2]
    wanted = {names for names, _ in options_of_page(page, command)} - {HELP_OPTION, frozenset({"--version"})}
    for line in synopses(about):
        named = re.findall(r"(?<=[\[|])--?\w[\w-]*", line)
        assert [sum(name in names for names in wanted) for name in named] == [1] * len(wanted)


@pytest.mark.parametrize("page", ["zfc-lab", "zfc-json", "zfc-snapshot"])
def test_exit_status_is_that_of_the_help(page):
    shown = {*re.findall(r"\b\d\b", help_of(page).split("Exit status")[1])}
    on_page = {*re.findall(r"\b\d\b", text_of(page, "Exit status")), *items_of(page, "Exit status")}
    assert on_page == shown >= {"0", "1", "2"}


def test_variables_are_those_of_the_library():
    library = (BUILD / "lib" / "libtorpifconly.so").read_bytes()
    assert {*items_of("zfc-lab", "Environment")} == {name.decode() for name in re.findall(rb"TORPI_LAB_[A-Z]+", library)}


def check(path):
    return subprocess.run([BIN / "zfc-lab", "check", path], capture_output=True, text=True).stdout


def test_keys_are_those_of_a_host_file(tmp_path):
    (tmp_path / "lab.yaml").write_text("no-such-key: 1\n")
    known = re.search(r"expected one of the keys (.*?)(;|$)", check(tmp_path / "lab.yaml"), re.M)[1].split(", ")
    assert sorted(items_of("zfc-lab-host", "Keys of the file")) == sorted(known)


def literals(text):
    return "\n".join(line[4:] for line in text.splitlines() if line.startswith("    "))


HOST = literals(text_of("zfc-lab-host", "Description"))


def test_host_of_the_page_is_good(tmp_path):
    (tmp_path / "lab.yaml").write_text(HOST)
    assert check(tmp_path / "lab.yaml").endswith(": good: 1 adapter, 2 ports, 1 target, 4 LUNs\n")


@pytest.mark.parametrize("page", ["zfc-lab", "zfc-lab-host", "zfc-snapshot"])
def test_examples_run(zfc, page):
    if page == "zfc-lab-host":
        zfc.file("lab.yaml", HOST.encode())
    script = "set -e\n" + literals(text_of(page, "Examples"))
    argv, env = zfc.command(["-c", script], library="simulated", program="/bin/bash")
    env["PATH"] = f"{BIN}:{env['PATH']}"
    done = subprocess.run(argv, capture_output=True, env=env, timeout=60)
    assert (done.returncode, without_staging_notice(done.stderr)) == (0, b"") and b": good: " in done.stdout
    assert done.stdout.count(b"Failed") == (page == "zfc-lab")  # whose examples have a fault
    if page != "zfc-snapshot":
        return
    shown = done.stdout[done.stdout.index(b"*****") :].count(b"Adapters: ")
    assert shown == len(yaml.safe_load((ROOT / "simulator" / "builtin_host.yaml").read_text())["adapters"])
