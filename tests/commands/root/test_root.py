"""The root node: its own commands, its help, the leading flags and the words that lead to no command."""

import pytest

from zfc import documents
from zfc.host import NO_ADAPTERS
from zfc.runner import UNKNOWN_COMMAND

HELP = "root/help.txt"

# Words on the command line and the file that holds their whole output.
PRINTS = {
    "help": HELP,
    "?": HELP,
    "/h": HELP,
    "/help": HELP,
    "/?": HELP,
    "HELP": HELP,
    "/H": HELP,
    "/Help": HELP,
    "help ?": HELP,
    "? ?": HELP,
    "/? ?": HELP,
    "help me please": HELP,
    "help -t adapter list": HELP,
    "-eng help": HELP,
    "-debug ?": HELP,
    "log ?": "root/usage-log.txt",
    "LOG ?": "root/usage-log.txt",
    "log ? more": "root/usage-log.txt",
}

# Words that start a command which has nothing to say there.
SILENT = [
    "version",
    "VERSION",
    "q",
    "Q",
    "version ?",
    "q ?",
    "version now",
    "q now",
    "help q",
    "help version",
    "-t adapter list q",
    "-t adapter list Version",
    "-t adapter update x q",
    "-t adapter -s info getcli VERSION",
    "no such command q",
    "-debug version",
    "-debug -eng q",
    "log",
]

UNKNOWN = [
    "list",
    "adapter",
    "adapter list",
    "-h",
    "-help",
    "--help",
    "h",
    "-t",
    "-s",
    "-t adapter",
    "-t nosuch",
    "-t nosuch list",
    "-t adapter nosuch",
    "-t adapter listcl",
    "-t adapter listcli2",
    "-t list",
    "-s adapter list",
    "adapter -t list",
    "-t info get",
    "-s info get",
    "-tadapter list",
    "-t=adapter list",
    "-t adapter ?",
    "-t adapter /?",
    "-t adapter -s",
    "-t adapter -s info",
    "-t adapter -s info ?",
    "-t adapter -s nosuch get",
    "-t adapter -t info get",
    "-t adapter info get",
    "listed",
    "helper",
    "main",
]

LIST_WITHOUT_ADAPTERS = "adapter/list-empty.xml"

# Switch pairs may be anywhere; what remains must begin with the leaf's name.
LISTS = [
    "-t adapter list",
    "-T ADAPTER LIST",
    "-t Adapter lIsT",
    "list -t adapter",
    "list -t adapter more words",
    "list more -t adapter words",
    "-t adapter list -s info",
    "-t adapter list -t port",
    "-DEBUG -Eng -t adapter list",
    "-debug -t adapter list",
    "-eng -eng -debug -t adapter list",
    "-ENG -t adapter list -debug",
]


@pytest.mark.parametrize("words", PRINTS)
def test_prints(zfc, words):
    result = zfc(words)
    documents.check(result.stdout, PRINTS[words])
    assert result.command_calls == []


@pytest.mark.parametrize("words", SILENT)
def test_is_silent(zfc, words):
    result = zfc(words)
    assert result.stdout == b""
    assert result.command_calls == []


@pytest.mark.parametrize("words", UNKNOWN)
def test_is_unknown(zfc, words):
    result = zfc(words)
    assert result.stdout == UNKNOWN_COMMAND
    assert result.command_calls == []


@pytest.mark.parametrize("words", LISTS)
def test_reaches_the_list(zfc, words):
    result = zfc(words, host=NO_ADAPTERS)
    documents.check(result.stdout, LIST_WITHOUT_ADAPTERS)
    assert result.command_calls == ["TORPI_GetAdapterList()"]


class TestEdgeCases:
    def test_adapter_pair_alone_prints_the_unknown_command_message(self, zfc):
        assert zfc("-t adapter").stdout == UNKNOWN_COMMAND

    def test_first_t_without_its_pair_stays_so_list_is_not_the_first_word(self, zfc):
        assert zfc("-t -t adapter list").stdout == UNKNOWN_COMMAND

    def test_debug_after_a_command_word_is_an_ordinary_word(self, zfc):
        assert zfc("-t adapter -debug list").stdout == UNKNOWN_COMMAND

    def test_eng_after_the_first_pair_word_is_an_ordinary_word(self, zfc):
        assert zfc("-t -eng adapter list").stdout == UNKNOWN_COMMAND

    def test_list_with_a_question_mark_prints_nothing(self, zfc):
        result = zfc("-t adapter list ?")
        assert result.stdout == b""
        assert result.command_calls == []

    def test_list_runs_when_the_question_mark_is_not_its_first_word(self, zfc):
        documents.check(zfc("-t adapter list x ?", host=NO_ADAPTERS).stdout, LIST_WITHOUT_ADAPTERS)

    def test_hidden_node_runs_when_named(self, zfc):
        documents.check(zfc("/?").stdout, HELP)

    def test_help_does_not_list_the_hidden_nodes(self, zfc):
        rows = [line.split(b":")[0].strip() for line in zfc("help").stdout.split(b"\r\n") if b" : " in line]
        assert rows == [b"q", b"log", b"version", b"help", b"adapter", b"port", b"target", b"lun"]

    def test_engineering_flag_changes_nothing_visible(self, zfc):
        assert zfc("-eng help").stdout == zfc("help").stdout
        assert zfc("-eng -t adapter help").stdout == zfc("-t adapter help").stdout

    def test_empty_word_is_unknown(self, zfc):
        assert zfc([""]).stdout == UNKNOWN_COMMAND
        assert zfc(["", "-t", "adapter", "list"]).stdout == UNKNOWN_COMMAND
        assert zfc(["-t", "adapter", ""]).stdout == UNKNOWN_COMMAND

    def test_flags_alone_start_the_shell(self, zfc):
        for flags in ("-debug", "-eng", "-Debug -ENG"):
            assert zfc(flags, stdin=b"q\n").stdout == b"$>"

    def test_erased_pair_is_not_put_back_for_the_next_nodes(self, zfc):
        # The info node is entered first and does not know "-s"; the personality node gets the shortened words.
        result = zfc("-t adapter -s info -s personality getcli nobody")
        assert result.stdout.split(b"\n")[1] == b"AdapterPersonality:"

    def test_log_on_the_command_line_creates_the_file_and_prints_nothing(self, zfc):
        result = zfc("log mirror.txt")
        assert result.stdout == b""
        mirror = zfc.work / "mirror.txt"
        assert mirror.stat().st_size == 0
        assert mirror.stat().st_mode & 0o777 == 0o200

    def test_log_that_cannot_be_created_says_so(self, zfc):
        assert zfc("log nowhere/mirror.txt").stdout == b"Failed to create file nowhere/mirror.txt\n"
        assert zfc("log .").stdout == b"Failed to create file .\n"


def test_session_calls_are_around_every_command(zfc):
    session = [
        "TORPI_Initialize(0, 0)",
        "TORPI_SetToolID(11)",
        "TORPI_SetToolVersion(1, 9, 0, 0)",
        "TORPI_Uninitialize()",
    ]
    for words in ("help", "version", "no such command", "-t adapter help"):
        assert zfc(words).calls == session
