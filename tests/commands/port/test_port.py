"""The port node: `list`, `updatenvram`, its help and usage texts, and how an identifier is looked up."""

import re

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST, Adapter, Fc, Host, Port
from zfc.port import IDENTIFIER, WWPN, entry, identifier, one_port
from zfc.runner import chatter

LIST = "-t port list"
UPDATE = "-t port updatenvram"
LIST_CALL = "TORPI_GetAdapterList()"
REBOOT_CALL = "TORPI_IsRebootRequired(1)"
NVRAM = "TORPI_UpdateAdapterNVRAMFromFile"
NVRAM_CALL = f'{NVRAM}(port, "nvram")'
HELP_WORDS = ["help", "/h", "/help", "-h", "-help", "/?", "HELP"]


def wwpn(last, first=0x21, vport=0):
    return bytes([first, vport, 0, 0, 0, 0, 0, last])


# Nulls at every level, other protocols, virtual ports and FCoE entries, in an order of their own.
WALK = Host(
    [
        Adapter(ports=None),
        Adapter(ports=[]),
        Adapter(
            ports=[
                Port(7, None),
                Port(6, []),
                Port(
                    5,
                    [
                        entry("first", wwpn=wwpn(0x0A)),
                        entry("virtual", wwpn=wwpn(0x0A, vport=1), interface=3),
                        entry("foreign", wwpn=wwpn(0x0C), type=2),
                        entry("fcoe", wwpn=bytes.fromhex("ffeeddccbbaa0900"), type=1),
                    ],
                ),
                Port(0, [entry("foreign too", wwpn=wwpn(0x0D), type=0xFFFFFFFF)]),
                Port(1, [entry("zero", wwpn=bytes(8))]),
            ]
        ),
        Adapter(ports=[Port(0, [entry("last", wwpn=wwpn(0x0B), device=0x1234, vendor=0xFFFF)])]),
    ]
)


class TestList:
    def test_names_the_ports_in_the_order_of_the_lists(self, zfc):
        result = check_both(zfc, LIST, "port/list-walk", host=WALK)
        assert result.command_calls == [LIST_CALL]

    def test_ignores_more_words(self, zfc):
        check_both(zfc, LIST, "port/list-walk", words=["more", "help", "?"], host=WALK)

    @pytest.mark.parametrize("count", [0, 1, 2**32 - 1])
    def test_follows_the_chain_and_not_the_count(self, zfc, count):
        check_both(zfc, LIST, "port/list-walk", host=Host(WALK.adapters, count=count))

    def test_no_adapters_give_an_empty_list(self, zfc):
        check_both(zfc, LIST, "port/list-empty", host=NO_ADAPTERS)

    @pytest.mark.parametrize("ports", [None, [], [Port(0, None)], [Port(0, [])], [Port(0, [Fc(type=2)])]])
    def test_levels_without_entries_give_an_empty_list(self, zfc, ports):
        check_both(zfc, LIST, "port/list-empty", host=Host([Adapter(ports=ports), Adapter(ports=ports)]))

    @pytest.mark.parametrize("form", ["list", "listcli"])
    def test_no_adapter_list_prints_nothing(self, zfc, form):
        result = zfc(f"-t port {form}", host=NO_LIST, debug=1)
        assert result.stdout == b""
        assert result.command_calls == [LIST_CALL]
        assert result.code == 14

    @pytest.mark.parametrize("word", HELP_WORDS)
    def test_help_word(self, zfc, word):
        for form, text in (("list", b""), ("listcli", b"Usage: list\r\n")):
            result = zfc(["-t", "port", form, word], host=WALK)
            assert result.stdout == text
            assert result.command_calls == []

    def test_a_thousand_ports(self, zfc):
        ports = [Port(number, [Fc(raw={8: number.to_bytes(8, "big")})]) for number in range(1000)]
        result = zfc(LIST, host=Host([Adapter(ports=ports)]))
        names = [identifier(number.to_bytes(8, "big")) for number in range(1000)]
        assert re.findall("<string>(.*)</string>", result.stdout.decode()) == names


def check_update(zfc, message="Success", words=(IDENTIFIER, "nvram"), *, reboot_shown="false", **options):
    options = {"host": one_port(), "values": {"message": message, "reboot": reboot_shown}, **options}
    return check_both(zfc, UPDATE, "port/updatenvram", words=words, **options)


@pytest.fixture
def nvram(zfc):
    return zfc.file("nvram")


@pytest.mark.usefixtures("nvram")
class TestUpdateNvram:
    @pytest.mark.parametrize(
        "flag, shown", [(1, "true"), (0, "false"), (2, "false"), (255, "false"), (None, "true")]
    )
    def test_success(self, zfc, flag, shown):
        """A flag that the library leaves alone stays at 1."""
        result = check_update(zfc, reboot=flag, reboot_shown=shown)
        assert result.command_calls == [LIST_CALL, NVRAM_CALL, REBOOT_CALL]

    @pytest.mark.parametrize("result", [1, 150])
    @pytest.mark.parametrize("flag", [0, 1, None])
    def test_failed_reboot_query_after_a_good_update_assumes_a_reboot(self, zfc, result, flag):
        results = {"TORPI_IsRebootRequired": result}
        check_update(zfc, reboot=flag, results=results, reboot_shown="true")

    def test_library_prints_stay_out_of_the_document(self, zfc):
        """Only the reboot query is outside the bracket."""
        prefix = chatter("TORPI_GetAdapterList", "TORPI_IsRebootRequired")
        calls = ["TORPI_GetAdapterList", NVRAM, "TORPI_IsRebootRequired"]
        result = check_update(zfc, reboot=0, chatter=calls, prefix=prefix)
        assert result.xml.library_log.endswith(chatter(NVRAM))

    @pytest.mark.parametrize(
        "result, message",
        [
            (150, "Failed, Command not supported when adapter port in maintenance mode"),
            *[(code, "Failed, NVRAM update failed") for code in (1, 6, 149, 151, 0xFFFFFFFF)],
        ],
    )
    def test_failed_update(self, zfc, result, message):
        done = check_update(zfc, message, results={NVRAM: result}, reboot=1)
        assert done.command_calls == [LIST_CALL, NVRAM_CALL]

    @pytest.mark.parametrize("kind", ["folder", "link", "empty"])
    def test_a_file_of_any_kind_is_handed_over(self, zfc, kind):
        target = zfc.work / kind
        if kind == "folder":
            target.mkdir()
        elif kind == "link":
            target.symlink_to("nvram")
        else:
            target.write_bytes(b"")
        result = check_update(zfc, words=[IDENTIFIER, kind], reboot=0)
        assert result.command_calls[1] == f'{NVRAM}(port, "{kind}")'

    @pytest.mark.parametrize("word", ["missing", "", "nvram/x", "no/such/folder/file", "n" * 5000])
    def test_file_that_is_not_there(self, zfc, word):
        result = check_update(zfc, "Failed, File not found", [IDENTIFIER, word])
        assert result.command_calls == [LIST_CALL]

    def test_missing_file_word(self, zfc):
        check_update(zfc, "Failed, File not found", [IDENTIFIER])

    def test_log_that_cannot_be_opened(self, zfc):
        result = check_update(zfc, "Failed, File not found", spoil_log="TORPI_GetAdapterList:directory", reboot=1)
        assert result.command_calls == [LIST_CALL]

    @pytest.mark.parametrize(
        "words, options, message",
        [
            pytest.param([], {}, "Failed, Invalid parameter", id="no identifier"),
            pytest.param(["", "nvram"], {}, "Failed, Invalid parameter", id="empty identifier"),
            pytest.param(["nobody", "nvram"], {}, "Failed, Invalid parameter", id="bad identifier"),
            *[pytest.param([word, "nvram"], {}, "Failed, Unknown", id=word) for word in HELP_WORDS],
            pytest.param([IDENTIFIER, "nvram"], {"host": NO_LIST}, "Failed, Host not found", id="no list"),
            pytest.param([IDENTIFIER, "nvram"], {"host": NO_ADAPTERS}, "Failed, Invalid parameter", id="no adapters"),
            pytest.param(
                [IDENTIFIER, "missing"],
                {"host": one_port(interface=3)},
                "Failed, Feature not supported for virtual port",
                id="virtual port, before the file",
            ),
        ],
    )
    def test_failure(self, zfc, words, options, message):
        """None of the two forms has a usage text."""
        result = check_update(zfc, message, words, **options)
        assert not [call for call in result.command_calls if call.startswith((NVRAM, "TORPI_IsReboot"))]


# From an identifier to an entry. A missing file shows that the look-up succeeded, since it is checked after it.
class TestIdentifier:
    @pytest.mark.parametrize(
        "word, message, calls",
        [
            (IDENTIFIER, "Failed, File not found", [LIST_CALL]),
            ("FC_21:00:00:11:22:33:44:5F", "Failed, Invalid parameter", [LIST_CALL]),
            ("fc_21:00:00:11:22:33:44:55", "Failed, Invalid parameter", [LIST_CALL]),
            ("Fc_21:00:00:11:22:33:44:55", "Failed, Invalid parameter", [LIST_CALL]),
            ("FC", "Failed, Invalid parameter", [LIST_CALL]),
            ("FC_", "Failed, Invalid parameter", [LIST_CALL]),
            ("FC'", "Failed, Invalid parameter", [LIST_CALL]),
            ("FC_21:00:00:11:22:33:44", "Failed, Invalid parameter", [LIST_CALL]),
            ("FC_21:00:00:11:22:33:44:5", "Failed, Invalid parameter", [LIST_CALL]),
            (IDENTIFIER + " ", "Failed, Invalid parameter", [LIST_CALL]),
            (IDENTIFIER + "0", "Failed, Invalid parameter", [LIST_CALL]),
            (IDENTIFIER + "_Target_", "Failed, Invalid parameter", [LIST_CALL]),
            ("FC_ 21:00:00:11:22:33:44:55", "Failed, Invalid parameter", [LIST_CALL]),
            ("FC_0x21:00:00:11:22:33:44:55", "Failed, Invalid parameter", [LIST_CALL]),
            ("FC_21-00-00-11-22-33-44-55", "Failed, Invalid parameter", [LIST_CALL]),
            ("FCX_21:00:00:11:22:33:44:55", "Failed, Invalid parameter", []),
            (" FC_21:00:00:11:22:33:44:55", "Failed, Invalid parameter", []),
            ("_" + IDENTIFIER, "Failed, Invalid parameter", []),
            ("'" + IDENTIFIER, "Failed, Invalid parameter", []),
            ("21:00:00:11:22:33:44:55", "Failed, Invalid parameter", []),
            ("FCFCFCFCFCFCFCFC_21", "Failed, Invalid parameter", []),
            ("", "Failed, Invalid parameter", []),
            ("%s%n%d", "Failed, Invalid parameter", []),
            ("x" * 100_000, "Failed, Invalid parameter", []),
            ("FC_" + "21:" * 30_000, "Failed, Invalid parameter", [LIST_CALL]),
        ],
    )
    def test_only_the_whole_text_matches(self, zfc, word, message, calls):
        assert check_update(zfc, message, [word]).command_calls == calls

    @pytest.mark.parametrize("type, found", [(0, True), (1, True), (2, False), (3, False), (0xFFFFFFFF, False)])
    def test_protocol_decides(self, zfc, type, found):
        message = "Failed, File not found" if found else "Failed, Invalid parameter"
        check_update(zfc, message, [IDENTIFIER], host=one_port(type=type))

    def test_first_of_several_with_the_name(self, zfc):
        zfc.file("nvram")
        ports = [Port(1, [entry("first", wwpn=WWPN)]), Port(0, [entry("second", wwpn=WWPN)])]
        result = check_update(zfc, host=Host([Adapter(ports=ports)]), reboot=0)
        assert result.command_calls[1] == f'{NVRAM}(first, "nvram")'

    def test_after_gaps_at_every_level(self, zfc):
        zfc.file("nvram")
        result = check_update(zfc, words=["FC_21:00:00:00:00:00:00:0b", "nvram"], host=WALK, reboot=0)
        assert result.command_calls[1] == f'{NVRAM}(last, "nvram")'

    def test_entry_of_another_protocol_is_passed_over(self, zfc):
        zfc.file("nvram")
        entries = [entry("foreign", wwpn=WWPN, type=2), entry("there", wwpn=WWPN)]
        result = check_update(zfc, host=Host([Adapter(ports=[Port(0, entries)])]), reboot=0)
        assert result.command_calls[1] == f'{NVRAM}(there, "nvram")'


# Why each command fails, in the debug log.
NO_LOG = {"spoil_log": "TORPI_GetAdapterList:directory"}


def failures(zfc, words, **options):
    """The failure lines of the class."""
    lines = zfc(words, debug=65535, **options).failures
    assert all(line.startswith("PhysicalPortCmdsProcessor::") for line in lines)
    return [line.removeprefix("PhysicalPortCmdsProcessor::") for line in lines]


@pytest.mark.parametrize("form", ["list", "listcli"])
@pytest.mark.parametrize(
    "words, options, lines",
    [
        ([], {}, []),
        (["help"], {}, []),
        ([], {"host": NO_LIST}, ["CmdListCommon: List is NULL"]),
    ],
)
def test_failure_lines_of_list(zfc, form, words, options, lines):
    assert failures(zfc, ["-t", "port", form, *words], **options) == lines


@pytest.mark.parametrize("form", ["updatenvram", "updatenvramcli"])
@pytest.mark.parametrize(
    "words, options, lines",
    [
        ([IDENTIFIER, "nvram"], {}, []),
        (
            [],
            {},
            ["GetPhyPortFromPortString: Invalid Port identifier ", "CmdUpdateNvramCommon: Get phy port failed err=6"],
        ),
        (
            ["FCX_%s", "nvram"],
            {},
            [
                "GetPhyPortFromPortString: Invalid Port identifier FCX_%s",
                "CmdUpdateNvramCommon: Get phy port failed err=6",
            ],
        ),
        (["FC_nobody", "nvram"], {}, ["CmdUpdateNvramCommon: Get phy port failed err=6"]),
        (["help"], {}, ["CmdUpdateNvramCommon: Get phy port failed err=5"]),
        (
            [IDENTIFIER, "nvram"],
            {"host": NO_LIST},
            ["GetPhyPortFromPortString: Adapter List is NULL", "CmdUpdateNvramCommon: Get phy port failed err=14"],
        ),
        (
            [IDENTIFIER, "missing"],
            {"host": one_port(interface=3)},
            ["CmdUpdateNvramCommon: Command not supported for vport"],
        ),
        ([IDENTIFIER, "no %s"], {}, ["CmdUpdateNvramCommon: NVRAM file [no %s] does not exist"]),
        ([IDENTIFIER], {}, ["CmdUpdateNvramCommon: NVRAM file [] does not exist"]),
        (
            [IDENTIFIER, "nvram"],
            NO_LOG,
            ["CmdUpdateNvramCommon: Failed to open /var/tmp/torpi-output.log file"],
        ),
        (
            [IDENTIFIER, "nvram"],
            {"results": {NVRAM: 0xFFFFFFFF}},
            ["CmdUpdateNvramCommon: Update NVRAM from File failed err=-1"],
        ),
        (
            [IDENTIFIER, "nvram"],
            {"results": {"TORPI_IsRebootRequired": 150}},
            ["CmdUpdateNvramCommon: Get Reboot Required failed err=150"],
        ),
    ],
)
@pytest.mark.usefixtures("nvram")
def test_failure_lines_of_updatenvram(zfc, form, words, options, lines):
    assert failures(zfc, ["-t", "port", form, *words], **{"host": one_port(), **options}) == lines


@pytest.mark.usefixtures("nvram")
def test_steps_in_the_debug_log(zfc):
    result = zfc(["-t", "port", "updatenvramcli", IDENTIFIER, "nvram"], host=one_port(), debug=65535)
    own = "PhysicalPortCmdsProcessor::"
    assert result.steps_in(own) == [
        "CmdUpdateNvramCli: Entered",
        "CmdUpdateNvramCommon: Entered",
        "GetPhyPortFromPortString: Entered",
        "GetPhyPortFromPortString: Exiting",
        "DisplayUpdateNvram: Entered",
        "DisplayUpdateNvram: Message=Success",
        "DisplayUpdateNvram: Exiting",
        "CmdUpdateNvramCommon: Exiting",
        "CmdUpdateNvramCli: Exiting",
    ]


@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more"])
def test_help(zfc, words):
    result = zfc(f"-t port {words}")
    documents.check(result.stdout, "port/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize(
    "words, text",
    [("list ?", b""), ("listcli ?", b"Usage: list\r\n"), ("updatenvram ?", b""), ("updatenvramcli ?", b"")],
)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t port {words}")
    assert result.stdout == text
    assert result.command_calls == []


def test_node_alone_reaches_nothing(zfc):
    assert zfc("-t port").stdout == b"Unknown command or invalid target identifier!\r\n"
