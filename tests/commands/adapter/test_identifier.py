"""From an identifier to records: which texts name an adapter, and which of its entries a command then acts on.

Seen through `info`: its report holds the entry's device, its calls name the entry's handle.
"""

import re

import pytest

from zfc.documents import check_both
from zfc.host import IDENTIFIER, NO_ADAPTERS, NO_LIST, Adapter, Fc, Host, Port, one

INFO = "-t adapter -s info get"
USAGE = "Usage: get [adapter identifier]\r\n"
LISTED = ["TORPI_GetAdapterList()"]


def chosen(zfc, identifier, host):
    """The name of the entry that the command acted on, and the manufacturer and device that it reported."""
    result = zfc(["-t", "adapter", "-s", "info", "getcli", identifier], host=host)
    assert result.command_calls[0] == "TORPI_GetAdapterList()"
    handle = re.fullmatch(r"TORPI_GetFlashComponentVersion\((.*), zeroed buffer\)", result.command_calls[1])
    manufacturer = re.search(rb"Manufacturer: (.*)\n", result.stdout)
    device = re.search(rb"Device ID: 0x(.*)\n", result.stdout)
    return handle[1], manufacturer[1].decode(), int(device[1], 16)


def check_refused(zfc, words, host=None, *, message="Failed, Invalid parameter", usage=USAGE, calls=LISTED):
    result = check_both(
        zfc, INFO, "adapter/info/failed", words=words, host=host, values={"message": message}, usage=usage
    )
    assert result.command_calls == calls


@pytest.mark.parametrize(
    "identifier",
    [
        "Adapter_ZX100_AB12345",
        "adapter_zx100_ab12345",
        "ADAPTER_ZX100_AB12345",
        "aDaPtEr_Zx100_aB12345",
        pytest.param("_Adapter_ZX100_AB12345", id="leading underscore"),
        pytest.param("___Adapter__ZX100___AB12345", id="runs of underscores"),
        pytest.param("Adapter_ZX100_AB12345_", id="trailing underscore"),
        pytest.param("Adapter_ZX100_AB12345_more", id="fourth token is dropped"),
        pytest.param("Adapter_ZX100_AB12345_more_and_more", id="further tokens are dropped"),
    ],
)
def test_names_the_adapter(zfc, identifier):
    assert chosen(zfc, identifier, one()) == ("port", "Sorvex", 0x3522)


@pytest.mark.parametrize(
    "identifier",
    [
        "",
        "_",
        "____",
        "Port_ZX100_AB12345",
        "Adapte_ZX100_AB12345",
        "Adapters_ZX100_AB12345",
        "ZX100_AB12345",
        "FC_21:00:00:11:22:33:44:55",
        " Adapter_ZX100_AB12345",
        "-",
        "=",
        "%s%n%d%",
    ],
)
def test_text_of_another_type_is_refused_before_the_list_is_asked_for(zfc, identifier):
    check_refused(zfc, [identifier], calls=[])


@pytest.mark.parametrize(
    "identifier",
    [
        "Adapter",
        "Adapter_",
        "Adapter_ZX100",
        "Adapter_ZX100_",
        "Adapter_ZX100_AB1234",
        "Adapter_ZX100_AB123456",
        "Adapter_ZX10_AB12345",
        "Adapter_ZX1000_AB12345",
        "Adapter_AB12345_ZX100",
        "Adapter_ZX100AB12345",
        "Adapter-ZX100-AB12345",
        "Adapter_ZX100_AB12345 ",
        "Adapter_%s_%s",
        "Adapter_" + "Z" * 200 + "_" + "A" * 300,
    ],
)
def test_no_such_adapter(zfc, identifier):
    calls = [] if identifier == "Adapter-ZX100-AB12345" else LISTED
    check_refused(zfc, [identifier], calls=calls)


@pytest.mark.parametrize(
    "model, serial, identifier",
    [
        pytest.param("M" * 32, "S" * 32, f"Adapter_{'M' * 32}_{'S' * 32}", id="texts without terminator"),
        pytest.param("M" * 32, "S" * 32, f"adapter_{'m' * 32}_{'s' * 32}", id="the same in another case"),
        pytest.param("ZX%s", "%n%d", "Adapter_ZX%s_%n%d", id="percent signs"),
        pytest.param("ZX 100", "AB 1", "Adapter_ZX 100_AB 1", id="blanks"),
        pytest.param("ZX100", "", "Adapter_ZX100_", id="no serial number"),
        pytest.param("ZX100", "", "Adapter_ZX100", id="no serial number and no underscore"),
    ],
)
def test_texts_that_can_be_named(zfc, model, serial, identifier):
    assert chosen(zfc, identifier, one(model=model, serial=serial))[0] == "port"


@pytest.mark.parametrize(
    "model, serial",
    [
        pytest.param("ZX_100", "AB12345", id="underscore in the model"),
        pytest.param("ZX100", "AB_12345", id="underscore in the serial number"),
        pytest.param("", "AB12345", id="no model"),
        pytest.param("_ZX100", "AB12345", id="model begins with an underscore"),
    ],
)
def test_listed_adapter_that_cannot_be_named(zfc, model, serial):
    # A run of underscores counts as one, so "_ZX100" is looked for as "ZX100".
    check_refused(zfc, [f"Adapter_{model}_{serial}"], one(model=model, serial=serial))


# Ports as the library lists them, and the entry that is chosen: that of the port with the lowest number.
A, B, C = Fc("a", 0x3A02), Fc("b", 0x3A12), Fc("c", 0x5C02)
FCOE = Fc("fcoe", 0x3A02, type=1)
ISCSI, RDMA = Fc("iscsi", 0x3A02, type=2), Fc("rdma", 0x3A02, type=0xFFFFFFFF)


@pytest.mark.parametrize(
    "ports, entry",
    [
        pytest.param([Port(0, [A])], A, id="one port"),
        pytest.param([Port(7, [A])], A, id="one port with a high number"),
        pytest.param([Port(0, [A]), Port(1, [B])], A, id="ports in order"),
        pytest.param([Port(1, [A]), Port(0, [B])], B, id="ports in reverse order"),
        pytest.param([Port(2, [A]), Port(0, [B]), Port(1, [C])], B, id="lowest in the middle"),
        pytest.param([Port(2, [A]), Port(1, [B]), Port(0, [C])], C, id="lowest last"),
        pytest.param([Port(0, [A]), Port(0, [B])], A, id="same number twice"),
        pytest.param([Port(0, [A, B])], A, id="two entries of one port: the first wins"),
        pytest.param([Port(1, [C]), Port(0, [A, B])], A, id="two entries of a later port: the first wins"),
        pytest.param([Port(0, [FCOE])], FCOE, id="FCoE"),
        pytest.param([Port(0, [ISCSI, A])], A, id="another protocol is skipped"),
        pytest.param([Port(0, [RDMA, ISCSI, FCOE, A])], FCOE, id="other protocols are skipped"),
        pytest.param([Port(0, [ISCSI]), Port(1, [A])], A, id="FC entry on a higher port only"),
        pytest.param([Port(0, []), Port(1, [A])], A, id="protocol list without entries"),
        pytest.param([Port(0, None), Port(1, [A])], A, id="port without protocol list"),
        pytest.param([Port(0, None), Port(2, [A]), Port(1, [B])], A, id="no port is below the first, so no change"),
        pytest.param([Port(2, [A]), Port(0, [ISCSI]), Port(1, [B])], B, id="lower port without candidates"),
        pytest.param([Port(0xFFFFFFFF, [A]), Port(0x80000000, [B])], B, id="numbers are unsigned"),
    ],
)
def test_entry_of_the_lowest_port_is_chosen(zfc, ports, entry):
    assert chosen(zfc, IDENTIFIER, Host([Adapter(ports=ports)])) == (entry.name, "Sorvex", entry.device)


@pytest.mark.parametrize(
    "host",
    [
        pytest.param(NO_ADAPTERS, id="no adapters"),
        pytest.param(Host([Adapter(ports=None)]), id="adapter without port list"),
        pytest.param(Host([Adapter(ports=[])]), id="port list without ports"),
        pytest.param(Host([Adapter(ports=[Port(0, None)])]), id="port without protocol list"),
        pytest.param(Host([Adapter(ports=[Port(0, [])])]), id="protocol list without entries"),
        pytest.param(Host([Adapter(ports=[Port(0, [ISCSI]), Port(1, [RDMA])])]), id="no FC or FCoE entry"),
        pytest.param(Host([Adapter(serial="other")]), id="another adapter"),
    ],
)
def test_host_without_such_an_entry(zfc, host):
    check_refused(zfc, [IDENTIFIER], host)


FIRST = Adapter(manufacturer="First", ports=[Port(0, [Fc("first 0", 0x3A02)])])


@pytest.mark.parametrize(
    "second, outcome",
    [
        pytest.param(
            Adapter(manufacturer="Second", ports=[Port(0, [Fc("second 0", 0x3A12)])]),
            ("first 0", "Second", 0x3A02),
            id="adapter of the later one, entry of the earlier one",
        ),
        pytest.param(
            Adapter(
                manufacturer="Second",
                ports=[Port(1, [Fc("second 1", 0x3A12)]), Port(0, [Fc("second 0", 0x5C02)])],
            ),
            ("second 0", "Second", 0x5C02),
            id="a lower port of the later one takes the entry too",
        ),
        pytest.param(
            Adapter(manufacturer="Second", ports=[Port(0, [Fc("second 0", 0x3A12, type=2)])]),
            ("first 0", "Second", 0x3A02),
            id="later one without FC entry",
        ),
        pytest.param(
            Adapter(manufacturer="Second", ports=None),
            ("first 0", "First", 0x3A02),
            id="later one without port list does not match",
        ),
        pytest.param(
            Adapter(manufacturer="Second", model="zx100", serial="ab12345"),
            ("first 0", "Second", 0x3A02),
            id="case makes no difference between two adapters",
        ),
    ],
)
def test_two_adapters_with_the_same_model_and_serial_number(zfc, second, outcome):
    assert chosen(zfc, IDENTIFIER, Host([FIRST, second])) == outcome


def test_two_adapters_of_one_name_the_later_without_ports(zfc):
    check_refused(zfc, [IDENTIFIER], Host([FIRST, Adapter(ports=[])]))


class TestEdgeCases:
    def test_adapter_with_no_port_list_is_listed_but_its_identifier_resolves_to_nothing(self, zfc):
        host = Host([Adapter(ports=None)])
        assert IDENTIFIER.encode() in zfc("-t adapter listcli", host=host).stdout
        check_refused(zfc, [IDENTIFIER], host)

    def test_missing_identifier_has_an_empty_type_word(self, zfc):
        check_refused(zfc, [], calls=[])

    def test_missing_adapter_list_is_host_not_found(self, zfc):
        check_refused(zfc, [IDENTIFIER], NO_LIST, message="Failed, Host not found", usage="")

    def test_wrong_type_word_goes_before_the_missing_adapter_list(self, zfc):
        check_refused(zfc, ["Port_ZX100_AB12345"], NO_LIST, calls=[])

    @pytest.mark.parametrize("word", ["help", "/h", "/help", "-h", "-help", "/?", "Help"])
    def test_help_word_as_identifier_is_unknown_and_then_the_usage(self, zfc, word):
        check_refused(zfc, [word], message="Failed, Unknown", calls=[])

    def test_help_word_as_identifier_goes_before_the_missing_adapter_list(self, zfc):
        check_refused(zfc, ["help"], NO_LIST, message="Failed, Unknown", calls=[])
