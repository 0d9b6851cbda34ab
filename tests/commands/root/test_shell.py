"""The shell at a pipe: what each line gives, the words of a line, the log mirror, the end of input."""

import time

import pytest

from zfc import documents
from zfc.host import IDENTIFIER, NO_ADAPTERS, NO_LIST
from zfc.runner import UNKNOWN_COMMAND

PROMPT = b"$>"
VERSION = b"Halcyr Sorvex Meridot FC ESXCLI Plugin v1.9.0\r\n"
HELP = (documents.EXPECTED / "root" / "help-shell.txt").read_bytes()
ADAPTER_HELP = (documents.EXPECTED / "adapter" / "help.txt").read_bytes()
EMPTY_LIST = (documents.EXPECTED / "adapter" / "list-empty.txt").read_bytes()
USAGE_Q = (documents.EXPECTED / "root" / "usage-q.txt").read_bytes()
USAGE_LOG = (documents.EXPECTED / "root" / "usage-log.txt").read_bytes()
USAGE_VERSION = (documents.EXPECTED / "root" / "usage-version.txt").read_bytes()
PARAMETER_ERROR = b"Command parameter Error!\r\n"
UNTERMINATED = b"Error parsing command input string!\n"
NOTHING = b""


def answers(zfc, *lines, end=b"q\n", **options):
    """What the shell prints between its prompts; the last line ends the shell."""
    output = zfc(stdin=b"".join(line + b"\n" for line in lines) + end, **options).stdout
    first, *parts = output.split(PROMPT)
    assert first == b"" and parts[-1] == b""
    return parts[:-1]


# One line and what it gives.
LINES = [
    (b"version", VERSION),
    (b"VERSION", VERSION),
    (b"help", HELP),
    (b"?", HELP),
    (b"/h", HELP),
    (b"/HELP", HELP),
    (b"/?", HELP),
    (b"help me", HELP),
    (b"help ?", HELP),
    (b"? ?", HELP),
    (b"version ?", USAGE_VERSION),
    (b"version now", PARAMETER_ERROR + USAGE_VERSION),
    (b"version version", PARAMETER_ERROR + USAGE_VERSION),
    (b"q ?", USAGE_Q),
    (b"q now", PARAMETER_ERROR + USAGE_Q),
    (b"Q Q", PARAMETER_ERROR + USAGE_Q),
    (b"log ?", USAGE_LOG),
    (b"log", NOTHING),
    (b"log nowhere/mirror", b"Failed to create file nowhere/mirror\n"),
    (b"log %s%n", NOTHING),
    (b"log no%swhere/%n", b"Failed to create file no%swhere/%n\n"),
    # A single word is matched by name, without its switch word; a node with children is matched and runs nothing.
    (b"adapter", NOTHING),
    (b"ADAPTER", NOTHING),
    (b"port", NOTHING),
    (b"target", NOTHING),
    (b"lun", NOTHING),
    (b"list", UNKNOWN_COMMAND),
    (b"info", UNKNOWN_COMMAND),
    (b"nonsense", UNKNOWN_COMMAND),
    (b"-t", UNKNOWN_COMMAND),
    (b"-debug", UNKNOWN_COMMAND),
    (b"main", UNKNOWN_COMMAND),
    # Two words and more need the switch words.
    (b"adapter list", UNKNOWN_COMMAND),
    (b"adapter ?", UNKNOWN_COMMAND),
    (b"-t adapter", UNKNOWN_COMMAND),
    (b"-t adapter list nothing", None),
    (b"-t adapter listcli", EMPTY_LIST),
    (b"-T ADAPTER LISTCLI", EMPTY_LIST),
    (b"listcli -t adapter", EMPTY_LIST),
    (b"-t adapter listcli version", EMPTY_LIST),
    (b"-t adapter listcli q", EMPTY_LIST),
    (b"-t adapter list ?", NOTHING),
    (b"-t adapter listcli ?", b"Usage: list\r\n"),
    (b"-t adapter listcli help", b"Usage: list\r\n"),
    (b"-t adapter help", ADAPTER_HELP),
    # Blank lines.
    (b"", NOTHING),
    (b" ", NOTHING),
    (b" \t \r", NOTHING),
    (b"\r", NOTHING),
    # Words are split at blanks, tabs and carriage returns.
    (b"  version  ", VERSION),
    (b"\tversion\t", VERSION),
    (b"version\r", VERSION),
    (b"\r\rversion", VERSION),
    (b"-t\tadapter\r listcli", EMPTY_LIST),
    (b"version\x0b", UNKNOWN_COMMAND),
    # Quotes.
    (b'"version"', VERSION),
    (b'ver"sion"', VERSION),
    (b'"ver"sion', VERSION),
    (b'v"e"r"s"i"o"n', VERSION),
    (b'version""', VERSION),
    (b'""version', VERSION),
    (b'"" version', UNKNOWN_COMMAND),
    (b'version ""', PARAMETER_ERROR + USAGE_VERSION),
    (b'""', UNKNOWN_COMMAND),
    (b'"version "', UNKNOWN_COMMAND),
    (b'"-t" "adapter" "listcli"', EMPTY_LIST),
    (b'"-t adapter listcli"', UNKNOWN_COMMAND),
    (b'"-t"adapter listcli', UNKNOWN_COMMAND),
    (b"'version'", UNKNOWN_COMMAND),
    (b'\\"version\\"', UNKNOWN_COMMAND),
    (b'"', UNTERMINATED),
    (b'"version', UNTERMINATED),
    (b'version"', UNTERMINATED),
    (b'"version" "', UNTERMINATED),
    (b'version " now', UNTERMINATED),
    (b'log "my file', UNTERMINATED),
    (b'"""', UNTERMINATED),
]


@pytest.mark.parametrize("line, expected", LINES, ids=[repr(line)[1:] for line, _ in LINES])
def test_line(zfc, line, expected):
    """The shell goes on after it, whatever it was."""
    if expected is None:
        expected = (documents.EXPECTED / "adapter" / "list-empty.xml").read_bytes()
    assert answers(zfc, line, b"version", host=NO_ADAPTERS) == [expected, VERSION]


@pytest.mark.parametrize("line", [b"q", b"Q", b" q ", b'"q"', b"q\r"])
def test_q_ends_the_shell(zfc, line):
    result = zfc(stdin=line + b"\nversion\n")
    assert result.stdout == PROMPT
    assert result.command_calls == []


def test_one_session_serves_all_lines(zfc):
    result = zfc(stdin=b"-t adapter list\n-t adapter listcli\nno such\n-t adapter list\nq\n")
    assert result.command_calls == ["TORPI_GetAdapterList()"] * 3


def test_command_without_document_gives_the_prompt_alone(zfc):
    assert answers(zfc, b"-t adapter list", b"-t adapter listcli", host=NO_LIST) == [b"", b""]


def test_failing_command_leaves_the_shell_running(zfc):
    first, second = answers(zfc, b"-t adapter -s info getcli nobody", b"version")
    assert b"Message: Failed, Invalid parameter\n" in first
    assert first.endswith(b"Usage: get [adapter identifier]\r\n")
    assert second == VERSION


# The buffer holds 2047 characters of a line; the rest of the line is the next command.
@pytest.mark.parametrize(
    "line, expected",
    [
        pytest.param(b"version" + b" " * 2039, [VERSION], id="2046 characters and the line end"),
        pytest.param(b"version" + b" " * 2040, [VERSION, NOTHING], id="2047 characters: the line end is left"),
        pytest.param(b"version" + b" " * 2040 + b"version", [VERSION, VERSION], id="the rest is a command"),
        pytest.param(b" " * 2040 + b"version" + b"version", [VERSION, VERSION], id="cut between two words"),
        pytest.param(b" " * 2043 + b"version", [UNKNOWN_COMMAND, UNKNOWN_COMMAND], id="cut in a word"),
        pytest.param(b" " * 2043 + b'""version', [UNKNOWN_COMMAND, UNKNOWN_COMMAND], id="cut after a quoted word"),
        pytest.param(b" " * 2040 + b'"version"', [UNTERMINATED, UNTERMINATED], id="cut in quotes"),
        pytest.param(b"x" * 2047 * 3, [UNKNOWN_COMMAND] * 3 + [NOTHING], id="three buffers of one word"),
    ],
)
def test_line_longer_than_the_buffer(zfc, line, expected):
    assert answers(zfc, line, b"version") == [*expected, VERSION]


class TestLogMirror:
    def test_what_is_typed_and_printed_is_mirrored_and_documents_are_not(self, zfc):
        answers(zfc, b"log mirror", b"version", b"-t adapter listcli", b"no such", b"", b"log", b"version")
        expected = (
            PROMPT + b"version\n" + VERSION
            + PROMPT + b"-t adapter listcli\n"
            + PROMPT + b"no such\n" + UNKNOWN_COMMAND
            + PROMPT + b"\n"
            + PROMPT + b"log\n"
        )  # fmt: skip
        assert self.mirror(zfc) == expected

    def test_help_is_mirrored(self, zfc):
        answers(zfc, b"log mirror", b"help", b"-t adapter help", b"-t adapter listcli ?")
        expected = (
            PROMPT + b"help\n" + HELP
            + PROMPT + b"-t adapter help\n" + ADAPTER_HELP
            + PROMPT + b"-t adapter listcli ?\n" + b"Usage: list\r\n"
            + PROMPT + b"q\n"
        )  # fmt: skip
        assert self.mirror(zfc) == expected

    def test_usage_after_a_document_is_mirrored_without_it(self, zfc):
        answers(zfc, b"log mirror", b"-t adapter -s info getcli nobody")
        expected = (
            PROMPT + b"-t adapter -s info getcli nobody\n" + b"Usage: get [adapter identifier]\r\n" + PROMPT + b"q\n"
        )
        assert self.mirror(zfc) == expected

    def test_file_is_for_its_owner_to_write_only(self, zfc):
        answers(zfc, b"log mirror")
        assert (zfc.work / "mirror").stat().st_mode & 0o7777 == 0o200

    def test_file_that_exists_is_emptied(self, zfc):
        zfc.file("mirror", b"of an earlier run\n" * 100)
        answers(zfc, b"log mirror")
        assert self.mirror(zfc) == PROMPT + b"q\n"

    def test_lines_are_mirrored_as_read(self, zfc):
        answers(zfc, b"log mirror", b' "version"  \r', b'"open')
        expected = PROMPT + b' "version"  \r\n' + VERSION + PROMPT + b'"open\n' + UNTERMINATED + PROMPT + b"q\n"
        assert self.mirror(zfc) == expected

    def test_percent_signs_are_mirrored_as_typed(self, zfc):
        answers(zfc, b"log mirror", b"%s%n%d", b"log %s/%n")
        mirror = self.mirror(zfc)
        assert mirror.startswith(PROMPT + b"%s%n%d\n" + UNKNOWN_COMMAND + PROMPT + b"log %s/%n\n")

    def test_long_line_is_mirrored_piece_by_piece(self, zfc):
        answers(zfc, b"log mirror", b"x" * 2047 + b"y")
        expected = PROMPT + b"x" * 2047 + UNKNOWN_COMMAND + PROMPT + b"y\n" + UNKNOWN_COMMAND + PROMPT + b"q\n"
        assert self.mirror(zfc) == expected

    def test_second_log_takes_over_from_the_first(self, zfc):
        answers(zfc, b"log first", b"version", b"log second", b"version")
        assert self.mirror(zfc, "first") == PROMPT + b"version\n" + VERSION + PROMPT + b"log second\n"
        assert self.mirror(zfc, "second") == PROMPT + b"version\n" + VERSION + PROMPT + b"q\n"

    def test_log_again_after_its_end_starts_afresh(self, zfc):
        answers(zfc, b"log mirror", b"version", b"log", b"log mirror")
        assert self.mirror(zfc) == PROMPT + b"q\n"

    def test_log_without_a_name_and_without_a_file_does_nothing(self, zfc):
        assert answers(zfc, b"log", b"log") == [b"", b""]

    @pytest.mark.parametrize("line, name", [(b'log "my file"', "my file"), (b'log my" "file', "my file")])
    def test_quoted_name_holds_the_blank(self, zfc, line, name):
        assert answers(zfc, line) == [b""]
        assert self.mirror(zfc, name) == PROMPT + b"q\n"

    def test_relative_name_lies_in_the_working_folder(self, zfc):
        (zfc.work / "logs").mkdir()
        answers(zfc, b"log ./logs/mirror")
        assert self.mirror(zfc, "logs/mirror") == PROMPT + b"q\n"

    def test_mirror_that_is_not_taken_loses_its_text_and_nothing_else(self, zfc):
        """The result of the write is ignored: /dev/full takes nothing."""
        assert answers(zfc, b"log /dev/full", b"version") == [b"", VERSION]

    def test_program_that_ends_keeps_what_was_mirrored(self, zfc):
        zfc("log mirror")  # nothing is mirrored from the command line, and the file is closed at the end
        assert self.mirror(zfc) == b""

    @staticmethod
    def mirror(zfc, name="mirror"):
        path = zfc.work / name
        path.chmod(0o600)
        return path.read_bytes()


class TestEdgeCases:
    def test_adapter_alone_is_matched_and_runs_nothing(self, zfc):
        result = zfc(stdin=b"adapter\nq\n")
        assert result.stdout == PROMPT * 2
        assert result.command_calls == []

    def test_adapter_list_needs_the_switch_word(self, zfc):
        assert answers(zfc, b"adapter list") == [UNKNOWN_COMMAND]

    def test_identifier_as_a_quoted_word(self, zfc):
        plain, quoted = answers(
            zfc,
            f"-t adapter -s info getcli {IDENTIFIER}".encode(),
            f'-t adapter -s info getcli "{IDENTIFIER}"'.encode(),
        )
        assert plain == quoted
        assert b"Message: Success\n" in plain

    def test_end_of_input_ends_the_shell_after_five_seconds(self, zfc):
        """The last line has no line end, and is a command all the same."""
        started = time.monotonic()
        result = zfc(stdin=b"version", debug=1)
        passed = time.monotonic() - started
        assert result.stdout == PROMPT + VERSION + PROMPT + b"Unknown input problem!\r\nQuit...\r\n"
        assert 4.5 < passed < 10
        assert result.code == 4
        assert result.calls[-1] == "TORPI_Uninitialize()"
