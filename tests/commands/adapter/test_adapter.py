"""The adapter node: `list`, its help and usage texts."""

import pytest

from zfc import documents
from zfc.documents import check_both
from zfc.host import NO_ADAPTERS, NO_LIST, Adapter, Fc, Host, Port, one

LIST = "-t adapter list"
LIST_USAGE = b"Usage: list\r\n"
UPDATE_USAGE = b"Usage: [identifier] [flashfile]\r\n"

THREE = Host(
    [
        Adapter(model="ZX100", serial="AB12345"),
        Adapter(model="ZX200", serial="CD67890", ports=None),
        Adapter(model="ZM_64", serial="EF00001", ports=[]),
    ]
)


def test_list_names_all_adapters_in_order(zfc):
    result = check_both(zfc, LIST, "adapter/list-three", host=THREE)
    assert result.command_calls == ["TORPI_GetAdapterList()"]


@pytest.mark.parametrize("words", [["more"], ["more", "words", "-x", "=", "help"]])
def test_list_ignores_more_words(zfc, words):
    check_both(zfc, LIST, "adapter/list-three", words=words, host=THREE)


@pytest.mark.parametrize("count", [0, 1, 2**32 - 1])
def test_list_follows_the_chain_and_not_the_count(zfc, count):
    check_both(zfc, LIST, "adapter/list-three", host=Host(THREE.adapters, count=count))


# A part of the identifier is printed as it is in the record.
@pytest.mark.parametrize(
    "model, serial, identifier, well_formed",
    [
        pytest.param("ZX100", "AB12345", b"Adapter_ZX100_AB12345", True, id="plain"),
        pytest.param("", "", b"Adapter__", True, id="both empty"),
        pytest.param("ZX100", "", b"Adapter_ZX100_", True, id="no serial number"),
        pytest.param("Z_X_1", "_7_", b"Adapter_Z_X_1__7_", True, id="underscores"),
        pytest.param("%s%n%d", "100%", b"Adapter_%s%n%d_100%", True, id="percent signs"),
        pytest.param("%%", "%", b"Adapter_%%_%", True, id="double percent sign"),
        pytest.param("A<B>", "C&D", b"Adapter_A<B>_C&D", False, id="nothing is escaped"),
        pytest.param(b"\xc3\xa9", b"\x01\xff", b"Adapter_\xc3\xa9_\x01\xff", False, id="any bytes"),
        pytest.param("M" * 31, "S" * 31, b"Adapter_" + b"M" * 31 + b"_" + b"S" * 31, True, id="longest texts"),
        pytest.param("M" * 32, "S" * 32, b"Adapter_" + b"M" * 32 + b"_" + b"S" * 32, True, id="no terminator"),
    ],
)
def test_list_prints_the_texts_of_the_record(zfc, model, serial, identifier, well_formed):
    host = one(model=model, serial=serial)
    check_both(
        zfc, LIST, "adapter/list-one", host=host, values={"identifier": identifier}, well_formed=well_formed
    )


class TestEdgeCases:
    def test_no_adapters_print_a_document_with_an_empty_list(self, zfc):
        check_both(zfc, LIST, "adapter/list-empty", host=NO_ADAPTERS)

    def test_no_adapter_list_prints_nothing_at_all(self, zfc):
        for form in ("list", "listcli"):
            result = zfc(f"-t adapter {form}", host=NO_LIST)
            assert result.stdout == b""
            assert result.command_calls == ["TORPI_GetAdapterList()"]

    @pytest.mark.parametrize("word", ["help", "/h", "/help", "-h", "-help", "/?", "HELP", "-H"])
    def test_listcli_with_a_help_word_prints_the_usage(self, zfc, word):
        result = zfc(f"-t adapter listcli {word}")
        assert result.stdout == LIST_USAGE
        assert result.command_calls == []

    @pytest.mark.parametrize("word", ["help", "/h", "/help", "-h", "-help", "/?", "?"])
    def test_list_with_a_help_word_prints_nothing(self, zfc, word):
        result = zfc(f"-t adapter list {word}")
        assert result.stdout == b""
        assert result.command_calls == []

    @pytest.mark.parametrize("words", [["more", "help"], ["helper"], ["?help"]])
    def test_help_word_counts_in_the_first_place_only(self, zfc, words):
        check_both(zfc, LIST, "adapter/list-empty", words=words, host=NO_ADAPTERS)

    def test_adapter_without_port_list_is_listed(self, zfc):
        values = {"identifier": "Adapter_ZX100_AB12345"}
        check_both(zfc, LIST, "adapter/list-one", host=Host([Adapter(ports=None)]), values=values)

    def test_adapter_without_a_served_protocol_is_listed(self, zfc):
        host = Host([Adapter(ports=[Port(0, [Fc(type=2)])])])
        check_both(zfc, LIST, "adapter/list-one", host=host, values={"identifier": "Adapter_ZX100_AB12345"})


# Help and usage texts of the node.
@pytest.mark.parametrize("words", ["help", "HELP", "help ?", "help more words", "help help"])
def test_help(zfc, words):
    result = zfc(f"-t adapter {words}")
    documents.check(result.stdout, "adapter/help.txt")
    assert result.command_calls == []


@pytest.mark.parametrize(
    "words, text",
    [
        ("list ?", b""),
        ("update ?", b""),
        ("update ? Adapter_ZX100_AB12345 file MBI", b""),
        ("listcli ?", LIST_USAGE),
        ("listcli ? more", LIST_USAGE),
        ("updatecli ?", UPDATE_USAGE),
        ("updatecli ? Adapter_ZX100_AB12345 file MBI", UPDATE_USAGE),
    ],
)
def test_question_mark_prints_the_usage_of_the_leaf(zfc, words, text):
    result = zfc(f"-t adapter {words}")
    assert result.stdout == text
    assert result.command_calls == []


@pytest.mark.parametrize("form", ["list", "listcli"])
def test_missing_adapter_list_in_the_log(zfc, form):
    log = zfc(f"-t adapter {form}", host=NO_LIST, debug=4).failures
    assert log == ["AdapterCmdsProcessor::CmdListCommon: List is NULL"]
