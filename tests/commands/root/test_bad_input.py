"""Input of sizes and kinds that nobody types, and hosts that no library should serve: a defined answer each time."""

import pytest

from zfc.documents import check, check_both
from zfc.flash import components, memo
from zfc.host import IDENTIFIER, Adapter, Fc, Host, Port, one
from zfc.runner import EXECUTABLE, SANITIZED, UNKNOWN_COMMAND

PROMPT = b"$>"
VERSION = b"Halcyr Sorvex Meridot FC ESXCLI Plugin v1.9.0\r\n"
LONGEST_WORD = 128 * 1024 - 1  # the kernel hands over no longer one
LIST_ONE = {"identifier": IDENTIFIER}


class TestManyWords:
    WORDS = ["word"] * 10_000

    def test_of_no_command(self, zfc):
        assert zfc(self.WORDS).stdout == UNKNOWN_COMMAND
        assert zfc(["-t"] * 10_000).stdout == UNKNOWN_COMMAND

    def test_after_a_command(self, zfc):
        check(zfc(["-t", "adapter", "list", *self.WORDS]).stdout, "adapter/list-one.xml", **LIST_ONE)
        check(zfc(["help", *self.WORDS]).stdout, "root/help.txt")

    def test_around_the_switch_pairs(self, zfc):
        words = ["getcli", IDENTIFIER, *self.WORDS, "-s", "info", *self.WORDS, "-t", "adapter"]
        check(zfc(words, components=components(), memo=memo()).stdout, "adapter/info/hazel.txt")

    def test_as_arguments(self, zfc):
        zfc.file("image")
        words = [IDENTIFIER, "image", "MBI", *self.WORDS]
        values = {"reboot": "false", "message": "Success"}
        check_both(zfc, "-t adapter update", "adapter/update", words=words, values=values)

    def test_that_are_empty(self, zfc):
        assert zfc([""] * 10_000).stdout == UNKNOWN_COMMAND

    def test_of_which_the_last_is_q(self, zfc):
        assert zfc([*self.WORDS, "q"]).stdout == b""

    def test_on_one_line_of_the_shell(self, zfc):
        line = b" ".join([b"-t adapter listcli"] + [b"w"] * 1000)  # just within the shell's buffer
        assert len(line) <= 2046
        output = zfc(stdin=line + b"\nq\n").stdout
        assert output.startswith(PROMPT) and output.endswith(PROMPT)
        check(output[len(PROMPT) : -len(PROMPT)], "adapter/list-one.txt", **LIST_ONE)


class TestLongWord:
    WORD = "x" * LONGEST_WORD

    def test_of_no_command(self, zfc):
        assert zfc([self.WORD]).stdout == UNKNOWN_COMMAND
        assert zfc(["-t", self.WORD]).stdout == UNKNOWN_COMMAND
        assert zfc(["-t", "adapter", self.WORD]).stdout == UNKNOWN_COMMAND

    def test_after_a_command(self, zfc):
        check(zfc(["-t", "adapter", "list", self.WORD]).stdout, "adapter/list-one.xml", **LIST_ONE)

    @pytest.mark.parametrize(
        "word",
        [WORD, "_" * LONGEST_WORD, "Adapter_ZX100_" + "x" * 130_000, "%s" * 60_000],
        ids=["one token", "underscores", "serial number", "percent signs"],
    )
    def test_as_identifier(self, zfc, word):
        check_both(
            zfc,
            "-t adapter -s info get",
            "adapter/info/failed",
            words=[word],
            values={"message": "Failed, Invalid parameter"},
            usage="Usage: get [adapter identifier]\r\n",
            debug=65535,
        )

    def test_after_the_serial_number(self, zfc):
        """What follows a third underscore is dropped, however long it is."""
        words = [f"{IDENTIFIER}_" + "x" * 130_000]
        options = {"components": components(), "memo": memo()}
        check_both(zfc, "-t adapter -s info get", "adapter/info/hazel", words=words, **options)

    def test_as_file_and_as_image_type(self, zfc):
        zfc.file("image")
        for words, message in (
            ([IDENTIFIER, self.WORD, "MBI"], "Failed, File not found"),
            ([IDENTIFIER, "image", self.WORD], "Failed, Flash Update Error"),
        ):
            values = {"reboot": "false", "message": message}
            check_both(zfc, "-t adapter update", "adapter/update", words=words, values=values, debug=4)

    def test_as_personality(self, zfc):
        values = {"reboot": "true", "message": "Success", "personality": "FC"}
        words = [IDENTIFIER, self.WORD]
        command, name = "-t adapter -s personality set", "adapter/personality/set"
        check_both(zfc, command, name, words=words, values=values, host=one(0x3432))

    def test_as_mirror_name(self, zfc):
        name = "n" * 130_000
        output = zfc(["log", name]).stdout
        assert output == b"Failed to create file " + name.encode() + b"\n"

    def test_a_megabyte_of_long_words(self, zfc):
        assert zfc([self.WORD] * 8).stdout == UNKNOWN_COMMAND

    def test_a_megabyte_on_the_shells_input(self, zfc):
        """It is read in pieces of 2047 characters, each a command."""
        size = 1024 * 1024
        pieces = -(-size // 2047)
        assert size % 2047 != 0  # the last piece has the line end with it
        output = zfc(stdin=b"x" * size + b"\nversion\nq\n").stdout
        assert output == (PROMPT + UNKNOWN_COMMAND) * pieces + PROMPT + VERSION + PROMPT


class TestNulBytesOnTheShellsInput:
    """A line ends at its first NUL."""

    @pytest.mark.parametrize(
        "line, answer",
        [
            (b"\0", b""),
            (b"\0version", b""),
            (b"ver\0sion", UNKNOWN_COMMAND),
            (b"version\0", VERSION),
            (b"version\0now", VERSION),
            (b"version \0now", VERSION),
            (b'"version"\0"', VERSION),
            (b'"ver\0sion"', b"Error parsing command input string!\n"),
            (b"\0" * 2046, b""),
            (b"version" + b"\0" * 2039, VERSION),
        ],
    )
    def test_line(self, zfc, line, answer):
        output = zfc(stdin=line + b"\nversion\nq\n").stdout
        assert output == PROMPT + answer + PROMPT + VERSION + PROMPT

    def test_many(self, zfc):
        """Two buffers of 2047 bytes and one byte with the line end, none with anything before its first NUL."""
        output = zfc(stdin=b"\0" * (2 * 2047 + 1) + b"\nversion\nq\n").stdout
        assert output == PROMPT * 4 + VERSION + PROMPT

    def test_in_the_mirror(self, zfc):
        zfc(stdin=b"log mirror\nversion\0now\nq\n")
        (zfc.work / "mirror").chmod(0o600)
        mirror = (zfc.work / "mirror").read_bytes()
        assert mirror == PROMPT + b"version" + VERSION + PROMPT + b"q\n"


class TestBytesOnTheShellsInput:
    LINES = [bytes(range(1, 10)), bytes(range(128, 256)), b"\x1b[A", b"\xef\xbb\xbfversion"]

    @pytest.mark.parametrize("line", LINES, ids=["control", "high", "arrow key", "byte order mark"])
    def test_line(self, zfc, line):
        output = zfc(stdin=line + b"\nversion\nq\n").stdout
        assert output == PROMPT + UNKNOWN_COMMAND + PROMPT + VERSION + PROMPT


class TestOutput:
    def test_document_that_cannot_be_written_changes_nothing_of_how_the_run_ends(self, zfc):
        result = zfc(["-c", "exec zfcesxcli -t adapter list >/dev/full"], program="/bin/sh", host=Host([]))
        assert result.calls[-1] == "TORPI_Uninitialize()"


class TestHosts:
    TEN_THOUSAND = [(f"M{number % 7}", f"S{number:05}") for number in range(10_000)]

    def test_ten_thousand_adapters_are_listed(self, zfc):
        host = Host([Adapter(model=model, serial=serial, ports=None) for model, serial in self.TEN_THOUSAND])
        rule = "*" * 52
        records = "".join(f"AdapterList:\nAdapters: Adapter_{m}_{s}\n" for m, s in self.TEN_THOUSAND)
        assert zfc("-t adapter listcli", host=host).stdout.decode() == f"{rule}\n{records}{rule}\n"

    def test_last_of_ten_thousand_adapters_is_found(self, zfc):
        adapters = [Adapter(model=model, serial=serial, ports=None) for model, serial in self.TEN_THOUSAND]
        result = check_both(
            zfc,
            "-t adapter -s info get",
            "adapter/info/hazel",
            words=[IDENTIFIER],
            host=Host([*adapters, Adapter()]),
            components=components(),
            memo=memo(),
        )
        assert result.command_calls[0] == "TORPI_GetAdapterList()"
        assert len(result.command_calls) == 3

    def test_port_of_a_thousand_ports(self, zfc):
        ports = [Port(number, [Fc(f"port {number}", type=number % 3)]) for number in range(1000, 0, -1)]
        result = zfc(f"-t adapter -s info get {IDENTIFIER}", host=Host([Adapter(ports=ports)]))
        assert result.command_calls[1] == "TORPI_GetFlashComponentVersion(port 1, zeroed buffer)"

    def test_null_at_every_level_at_once(self, zfc):
        """Everything that can be missing is missing somewhere ahead of the one entry that is there."""
        host = Host(
            [
                Adapter(model="NONE", ports=None),
                Adapter(model="EMPTY", ports=[]),
                Adapter(model="NULLS", ports=[Port(0, None), Port(1, [])]),
                Adapter(ports=[Port(3, None), Port(2, []), Port(1, [Fc(type=7)]), Port(5, [Fc("there")])]),
            ]
        )
        result = zfc(f"-t adapter -s info get {IDENTIFIER}", host=host)
        assert result.command_calls[1] == "TORPI_GetFlashComponentVersion(there, zeroed buffer)"
        for model in ("NONE", "EMPTY", "NULLS"):
            output = zfc(f"-t adapter -s info getcli Adapter_{model}_AB12345", host=host).stdout
            assert b"Message: Failed, Invalid parameter\n" in output

    @pytest.mark.parametrize("text", [b"\n", b"\r\n\t", b"\x00", b"</string>", b"\xff\xfe", b"*" * 32])
    def test_texts_are_printed_as_they_are(self, zfc, text):
        adapter = Adapter(multiboot=b"[" + text[:30] + b"]")
        output = zfc(f"-t adapter -s info getcli {IDENTIFIER}", host=Host([adapter])).stdout
        shown = (b"[" + text[:30] + b"]").split(b"\0")[0]
        assert b"      Multiboot Version: " + shown + b"\n" in output

    def test_memo_block_of_all_bytes_zero_but_the_signature(self, zfc):
        """The build date holds no characters; whatever its line then shows, the document has its frame."""
        output = zfc(f"-t adapter -s flashinfo getcli {IDENTIFIER}", memo=b"F").stdout
        rule = b"*" * 52 + b"\n"
        head = b"AdapterFlashInformation:\nMessage: Success\nFlash Info: FlashInfoList:\n"
        assert output.startswith(rule + head + b"Data: MBI Version: 00.00.00\n") and output.endswith(rule)

    def test_long_answers_are_no_longer_than_their_buffer(self, zfc):
        """The library fills all that the program says it takes."""
        result = zfc(
            f"-t adapter -s info getcli {IDENTIFIER}",
            components=b"\xff" * 256,
            memo=b"\xff" * 48,
            host=one(0x3640),
        )
        assert b"Flash PCIE Serdes Version: NA\n" in result.stdout


@pytest.mark.skipif(not SANITIZED, reason="only a build with sanitizers reports on standard error")
def test_sanitizers_are_at_work():
    """A build that claims them is linked with them."""
    assert b"__asan_init" in EXECUTABLE.read_bytes()
