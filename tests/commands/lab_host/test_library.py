"""The executable with the simulated library and its built-in host: what a newcomer tries first."""

import re

import pytest
import yaml
from lxml import etree

from zfc.runner import ROOT

HOST = yaml.safe_load((ROOT / "simulator" / "builtin_host.yaml").read_text())
SERIALS = [adapter["serial"] for adapter in HOST["adapters"]]


def listed(zfc):
    document = etree.fromstring(zfc("-t adapter list", library="simulated").stdout)
    return document.xpath("//field[@name='Adapters']/string/text()")


def message_of(document):
    return etree.fromstring(document).xpath("//field[@name='Message']/string/text()")


def test_list_names_the_adapters_of_the_host_in_order(zfc):
    identifiers = listed(zfc)
    assert [identifier.rsplit("_", 1)[1] for identifier in identifiers] == SERIALS
    for identifier, adapter in zip(identifiers, HOST["adapters"]):
        if "model" in adapter:
            assert identifier == f"Adapter_{adapter['model']}_{adapter['serial']}"


def test_both_forms_of_the_list_name_the_same(zfc):
    text = zfc("-t adapter listcli", library="simulated").stdout.decode()
    assert re.findall(r"^Adapters: (.*)$", text, re.MULTILINE) == listed(zfc)


@pytest.mark.parametrize("number", range(len(SERIALS)), ids=SERIALS)
def test_reports_of_each_adapter(zfc, number):
    identifier = listed(zfc)[number]
    info = zfc(f"-t adapter -s info get {identifier}", library="simulated").stdout
    assert message_of(info) == ["Success"]
    assert f"      Serial Number: {SERIALS[number]}\n".encode() in info
    personality = zfc(f"-t adapter -s personality get {identifier}", library="simulated").stdout
    assert message_of(personality) == ["Success"]
    flashinfo = zfc(f"-t adapter -s flashinfo get {identifier}", library="simulated").stdout
    families_with_memo = ("elm", "hazel", "iris", "dahlia")
    supported = HOST["adapters"][number]["family"] in families_with_memo
    assert message_of(flashinfo) == ["Success" if supported else "Failed, Feature not supported for this adapter"]


def test_library_is_silent_about_itself(zfc):
    result = zfc("help", library="simulated")
    assert result.library_log.startswith(b"FC ESXCLI Debug level = 0\nTORPI Debug level = 0\n")
