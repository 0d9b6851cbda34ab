"""The lun node: `list`, its help and usage texts, and identifiers of LUNs and namespaces."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST, Adapter, Host, Port
from zfc.port import entry
from zfc.steps import around
from zfc.target import IDENTIFIER as TARGET
from zfc.target import luns, one_target, target

LIST = "-t lun list"
LIST_CALL = "TORPI_GetAdapterList()"
USAGE = b"Usage: list\r\n"

SECOND = bytes.fromhex("50060160abcdef02")


def port(last_octet, *targets, **fields):
    """A port named 21:00:00:11:22:33:44:xx that sees these targets."""
    return entry(wwpn=bytes.fromhex("21000011223344") + bytes([last_octet]), targets=targets, **fields)


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
                Port(2, [port(4, target(luns(1)), type=2), port(2)]),
                Port(
                    3,
                    [
                        port(
                            1,
                            target(luns(0, 65535, 10)),
                            target(),
                            target(luns(1), wwpn=SECOND, nvme=True),
                            type=1,
                        ),
                        port(6, target(luns(1)), type=0x80000000),
                    ],
                ),
            ],
        ),
        Adapter(serial="D", ports=[Port(0, [port(5, target(luns(0)), interface=3)])]),
    ]
)


def test_list_names_all_luns_in_the_order_of_the_walk(zfc):
    result = check_both(zfc, LIST, "lun/list", host=GAPS)
    assert result.command_calls == [LIST_CALL]


@pytest.mark.parametrize("words", [["more"], ["more", "words", "-x", "=", "help"], [""]])
def test_list_ignores_more_words(zfc, words):
    check_both(zfc, LIST, "lun/list", words=words, host=GAPS)


@pytest.mark.parametrize("count", [0, 1, 2**32 - 1])
def test_list_follows_the_chains_and_not_the_counts(zfc, count):
    host = one_target(target(luns(3, 4), lun_count=count), target_count=count)
    text = zfc(f"{LIST}cli", host=host).stdout
    assert text.count(b"LUNs/Namespaces: ") == 2


def test_no_adapters_print_a_document_with_an_empty_list(zfc):
    check_both(zfc, LIST, "lun/list-empty", host=NO_ADAPTERS)


def test_targets_without_luns_add_nothing(zfc):
    check_both(zfc, LIST, "lun/list-empty", host=one_target())


def test_no_adapter_list_prints_nothing_at_all(zfc):
    for form in ("list", "listcli"):
        result = zfc(f"-t lun {form}", host=NO_LIST)
        assert result.stdout == b""
        assert result.command_calls == [LIST_CALL]


@pytest.mark.parametrize("word", ["help", "/h", "/help", "-h", "-help", "/?", "HELP"])
def test_help_word(zfc, word):
    for form, text in (("list", b""), ("listcli", USAGE)):
        result = zfc(f"-t lun {form} {word}", host=GAPS)
        assert result.stdout == text
        assert result.command_calls == []


@pytest.mark.parametrize("host, words, code", [(GAPS, "", 0), (NO_LIST, "", 14), (GAPS, " help", 5)])
def test_code(zfc, host, words, code):
    assert zfc(f"-t lun list{words}", host=host, debug=1).code == code


@pytest.mark.parametrize(
    "host, failures", [(GAPS, []), (NO_LIST, ["FCLunCmdsProcessor::CmdListCommon: List is NULL"])]
)
def test_debug_log_of_the_list(zfc, host, failures):
    name = "FCLunCmdsProcessor"
    result = zfc("-t lun listcli", host=host, debug=65535)
    assert result.steps_of(name) == around(f"{name}::CmdListCli", *around(f"{name}::CmdListCommon"))
    assert result.failures == failures


# Help and usage texts of the node.
@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more words"])
def test_help(zfc, words):
    result = zfc(f"-t lun {words}")
    documents.check(result.stdout, "lun/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize("words, text", [("list ?", b""), ("listcli ?", USAGE), ("listcli ? more", USAGE)])
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t lun {words}")
    assert result.stdout == text
    assert result.command_calls == []


@pytest.mark.parametrize("words", ["-t lun -s info get", "-t lun -t info get", "-s lun list", "-v lun list"])
def test_sub_node_has_a_switch_word_of_its_own(zfc, words):
    assert zfc(f"{words} {TARGET}_LUN_0").stdout == b"Unknown command or invalid target identifier!\r\n"


# Only the words of an identifier count before the library is asked.
@pytest.mark.parametrize(
    "identifier, asks",
    [
        ("x", False),
        ("FC_21:00:00:11:22:33:44:55", False),
        (TARGET, False),
        (TARGET + "_", False),
        (TARGET + "_LUNS_3", False),
        (TARGET + "_Disk_3", False),
        (TARGET + "_123456789_3", False),
        ("X_21:00:00:11:22:33:44:55_Target_50:06:01:60:ab:cd:ef:01_LUN_3", False),
        ("FC_21:00:00:11:22:33:44:55_Tgt_50:06:01:60:ab:cd:ef:01_LUN_3", False),
        ("FC_21:00:00:11:22:33:44:55_Target_50:06:01:60:ab:cd:ef-01_LUN_3", False),
        (TARGET + "_LUN", True),
        (TARGET + "_LUN_", True),
        (TARGET + "_LUN_x", True),
        (TARGET + "_lun_3", True),
        (TARGET + "_Nsid_3", True),
        (TARGET + "_LUN'3", True),
        (TARGET + "_NSID_3", True),
        (TARGET + "_LUN_03", True),
        (TARGET + "_LUN_+3", True),
        (TARGET + "_LUN_ 3", True),
        (TARGET + "_LUN_3_", True),
        (TARGET + "_LUN_4", True),
        (TARGET + "_LUN_65539", True),
        (TARGET + "_LUN_4294967299", True),
        (TARGET.replace("ab:cd:ef", "AB:CD:EF") + "_LUN_3", True),
        (TARGET.replace("FC", "fc") + "_LUN_3", True),
    ],
)
def test_wrong_identifier(zfc, identifier, asks):
    result = zfc(["-t", "lun", "-v", "info", "get", identifier], host=one_target(target(luns(3))))
    documents.check(result.stdout, "lun/info/failed.xml", message="Failed, Invalid parameter")
    assert result.command_calls == ([LIST_CALL] if asks else [])
