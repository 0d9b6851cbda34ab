"""The target node: `list`, its help and usage texts, and identifiers of targets."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST, Adapter, Host, Port, Target
from zfc.port import entry
from zfc.steps import around
from zfc.target import IDENTIFIER, one_target

LIST = "-t target list"
LIST_CALL = "TORPI_GetAdapterList()"
USAGE = b"Usage: list\r\n"

FIRST = "50:06:01:60:ab:cd:ef:01"


def port(last_octet, *targets, **fields):
    """A port named 21:00:00:11:22:33:44:xx that sees targets of these names."""
    wwpn = bytes.fromhex("21000011223344") + bytes([last_octet])
    return entry(wwpn=wwpn, targets=[Target(name) for name in targets], **fields)


# A host with a null or an empty list at every level, and everything that is to be skipped.
GAPS = Host(
    [
        Adapter(serial="A", ports=None),
        Adapter(serial="B", ports=[]),
        Adapter(
            serial="C",
            ports=[
                Port(0, None),
                Port(1, []),
                Port(2, [port(4, FIRST, type=2), port(1, FIRST, "50:06:01:60:ab:cd:ef:00"), port(2)]),
                Port(3, [port(3, "ff:ff:ff:ff:ff:ff:ff:ff", type=1), port(6, FIRST, type=0xFFFFFFFF)]),
            ],
        ),
        Adapter(serial="D", ports=[Port(0, [port(5, FIRST, interface=3)])]),
    ]
)


def test_list_names_all_targets_in_the_order_of_the_walk(zfc):
    result = check_both(zfc, LIST, "target/list", host=GAPS)
    assert result.command_calls == [LIST_CALL]


@pytest.mark.parametrize("words", [["more"], ["more", "words", "-x", "=", "help"], [""]])
def test_list_ignores_more_words(zfc, words):
    check_both(zfc, LIST, "target/list", words=words, host=GAPS)


@pytest.mark.parametrize("count", [0, 1, 2**32 - 1])
def test_list_follows_the_chain_and_not_the_counts(zfc, count):
    host = Host([Adapter(ports=[Port(0, [port(1, FIRST, "50:06:01:60:ab:cd:ef:00", target_count=count)])])])
    text = zfc(f"{LIST}cli", host=host).stdout
    assert text.count(b"Targets: FC_21:00:00:11:22:33:44:01_Target_50:06:01:60:ab:cd:ef:0") == 2


class TestEdgeCases:
    def test_port_without_targets_adds_nothing_to_the_list(self, zfc):
        check_both(zfc, LIST, "target/list-empty", host=Host([Adapter(ports=[Port(0, [port(1)])])]))

    def test_upper_case_digits_give_status_6(self, zfc):
        words = [IDENTIFIER.replace("ab:cd:ef", "AB:CD:EF")]
        check_both(
            zfc,
            "-t target -v info get",
            "target/info/failed",
            words=words,
            host=one_target(),
            usage="Usage: get [port identifier]\r\n",
            values={"message": "Failed, Invalid parameter"},
        )

    def test_no_adapters_print_a_document_with_an_empty_list(self, zfc):
        check_both(zfc, LIST, "target/list-empty", host=NO_ADAPTERS)

    def test_no_adapter_list_prints_nothing_at_all(self, zfc):
        for form in ("list", "listcli"):
            result = zfc(f"-t target {form}", host=NO_LIST)
            assert result.stdout == b""
            assert result.command_calls == [LIST_CALL]

    @pytest.mark.parametrize("word", ["help", "/h", "/help", "-h", "-help", "/?", "HELP", "-H"])
    def test_listcli_with_a_help_word_prints_the_usage(self, zfc, word):
        result = zfc(f"-t target listcli {word}", host=GAPS)
        assert result.stdout == USAGE
        assert result.command_calls == []

    @pytest.mark.parametrize("word", ["help", "/h", "/help", "-h", "-help", "/?", "?"])
    def test_list_with_a_help_word_prints_nothing(self, zfc, word):
        result = zfc(f"-t target list {word}", host=GAPS)
        assert result.stdout == b""
        assert result.command_calls == []


def test_library_that_chatters_while_it_lists_prints_ahead_of_the_document(zfc):
    result = zfc(f"{LIST}cli", host=GAPS, chatter=["TORPI_GetAdapterList"])
    document = zfc(f"{LIST}cli", host=GAPS, chatter=[]).stdout
    assert result.stdout == b"<TORPI_GetAdapterList> chatters & is 100% sure\n" + document


@pytest.mark.parametrize("host, words, code", [(GAPS, "", 0), (NO_LIST, "", 14), (GAPS, " help", 5)])
def test_code(zfc, host, words, code):
    assert zfc(f"-t target list{words}", host=host, debug=1).code == code


# Help and usage texts of the node.
@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more words"])
def test_help(zfc, words):
    result = zfc(f"-t target {words}")
    documents.check(result.stdout, "target/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("list ?", b""), ("listcli ?", USAGE), ("listcli ? more", USAGE)])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t target {words}")
    assert result.stdout == text
    assert result.command_calls == []


@pytest.mark.parametrize(
    "words", ["-t target -s info get", "-t target -t info get", "-s target list", "-v target list"]
)
def test_sub_nodes_have_a_switch_word_of_their_own(zfc, words):
    assert zfc(f"{words} {IDENTIFIER}").stdout == b"Unknown command or invalid target identifier!\r\n"


@pytest.mark.parametrize(
    "words", ["-v info -t target getcli", "-t target getcli -v info", "-T TARGET -V INFO GETCLI"]
)
def test_switch_pairs_are_found_anywhere_and_in_any_case(zfc, words):
    assert b"\nMessage: Success\n" in zfc(f"{words} {IDENTIFIER}", host=one_target()).stdout


@pytest.mark.parametrize(
    "words, host, failures",
    [
        ("list", GAPS, []),
        ("list", NO_LIST, ["FCTargetCmdsProcessor::CmdListCommon: List is NULL"]),
        ("list help", NO_LIST, []),
    ],
)
def test_debug_log_of_the_list(zfc, words, host, failures):
    name = "FCTargetCmdsProcessor"
    result = zfc(f"-t target {words}", host=host, debug=65535)
    assert result.steps_of(name) == around(f"{name}::CmdList", *around(f"{name}::CmdListCommon"))
    assert result.failures == failures


# Only the words of an identifier count before the library is asked.
@pytest.mark.parametrize(
    "identifier, asks",
    [
        ("x", False),
        ("FC", False),
        ("FC_21:00:00:11:22:33:44:55", False),
        ("FC_21:00:00:11:22:33:44:55_LUN_1", False),
        ("F_21:00:00:11:22:33:44:55_Target_50:06:01:60:ab:cd:ef:01", False),
        ("FC_xx:00:00:11:22:33:44:55_Target_50:06:01:60:ab:cd:ef:01", False),
        ("fc_21:00:00:11:22:33:44:55_tARGET", True),
        ("FC_1:2:3:4:5:6:7:8_Target_", True),
        ("FC_21:00:00:11:22:33:44:55_Target'x", True),
        ("FC_21:00:00:11:22:33:44:55_Target_50:06:01:60:ab:cd:ef-01", True),
        ("fc_21:00:00:11:22:33:44:55_Target_50:06:01:60:ab:cd:ef:01", True),
        ("FC_21:00:00:11:22:33:44:55_target_50:06:01:60:ab:cd:ef:01", True),
        (IDENTIFIER + "_LUN_0", True),
        (IDENTIFIER + "0", True),
        ("FC_21:00:00:11:22:33:44:55_Target_50:06:01:60:ab:cd:ef:02", True),
        ("FC_21:00:00:11:22:33:44:56_Target_50:06:01:60:ab:cd:ef:01", True),
    ],
)
def test_wrong_identifier(zfc, identifier, asks):
    result = zfc(["-t", "target", "-v", "info", "get", identifier], host=one_target())
    documents.check(result.stdout, "target/info/failed.xml", message="Failed, Invalid parameter")
    assert result.command_calls == ([LIST_CALL] if asks else [])
