"""Targets and LUNs of the simulated library: its built-in host, what a set speed leaves, and a host with very many."""

import re

import pytest
from lxml import etree

from zfc.runner import ROOT

MANY = {"TORPI_LAB_HOST": str(ROOT / "examples" / "many-luns.yaml")}
PORTS, TARGETS, LUNS = 8, 256, 64


def values(document, field):
    return etree.fromstring(document).xpath(f"//field[@name='{field}']/string/text()")


def listed(zfc, node, field, **options):
    return values(zfc(f"-t {node} list", library="simulated", **options).stdout, field)


def test_both_forms_of_the_lists_name_the_same(zfc):
    for node, field in (("target", "Targets"), ("lun", "LUNs/Namespaces")):
        text = zfc(f"-t {node} listcli", library="simulated").stdout.decode()
        assert re.findall(rf"^{field}: (.*)$", text, re.MULTILINE) == listed(zfc, node, field)


def test_built_in_host_has_targets_and_luns_of_both_kinds(zfc):
    luns = listed(zfc, "lun", "LUNs/Namespaces")
    for kind in ("_LUN_", "_NSID_"):
        assert len({lun.split("_Target_")[0] for lun in luns if kind in lun}) >= 2
    assert {lun.rsplit("_", 2)[0] for lun in luns} <= {*listed(zfc, "target", "Targets")}


@pytest.mark.parametrize("command", ["info get", "stats get"])
def test_reports_of_every_target(zfc, command):
    for target in listed(zfc, "target", "Targets"):
        assert values(zfc(f"-t target -v {command} {target}", library="simulated").stdout, "Message") == ["Success"]


def test_report_of_every_lun(zfc):
    for lun in listed(zfc, "lun", "LUNs/Namespaces"):
        assert values(zfc(f"-t lun -v info get {lun}", library="simulated").stdout, "Message") == ["Success"]


def test_speed_of_every_target(zfc):
    for target in listed(zfc, "target", "Targets"):
        document = zfc(f"-t target -v tlsd get {target}", library="simulated").stdout
        is_virtual = target.startswith("FC_21:01:")
        message = "Failed, Feature not supported for virtual port" if is_virtual else "Success"
        assert values(document, "Message") == [message]


def speed(zfc, words, state):
    output = zfc(f"-t target -v tlsd {words}", library="simulated", env={"TORPI_LAB_STATE": str(state)}).stdout
    return re.search(rb"Target Maximum Link Speed: (.*)\n", output)[1].decode()


def test_speed_that_is_set_is_there_in_the_next_run(zfc):
    state = zfc.work / "state.yaml"
    first, second = listed(zfc, "target", "Targets")[:2]
    assert speed(zfc, f"getcli {first}", state) == "16_Gbps"
    assert speed(zfc, f"getcli {second}", state) == "8_Gbps"
    assert speed(zfc, f"setcli {first} 4_Gbps", state) == "4_Gbps"
    assert speed(zfc, f"getcli {first}", state) == "4_Gbps"
    assert speed(zfc, f"getcli {second}", state) == "8_Gbps"


class TestManyLuns:
    @pytest.mark.parametrize(
        "node, field, count",
        [("target", "Targets", PORTS * TARGETS), ("lun", "LUNs/Namespaces", PORTS * TARGETS * LUNS)],
    )
    def test_list_has_them_all(self, zfc, node, field, count):
        found = listed(zfc, node, field, env=MANY)
        assert len(found) == len({*found}) == count

    def test_last_lun_is_found(self, zfc):
        last = listed(zfc, "lun", "LUNs/Namespaces", env=MANY)[-1]
        assert last.endswith(f"_LUN_{LUNS - 1}")
        text = zfc(f"-t lun -v info getcli {last}", library="simulated", env=MANY).stdout
        assert b"\nMessage: Success\n" in text
        assert f"      Lun Number: {LUNS - 1}\n".encode() in text

    def test_last_target_is_found(self, zfc):
        last = listed(zfc, "target", "Targets", env=MANY)[-1]
        text = zfc(f"-t target -v info getcli {last}", library="simulated", env=MANY).stdout
        assert f"      Target Number: {TARGETS - 1}\n      Vendor ID: LABSTOR\n".encode() in text
        numbers = ", ".join(f"LUN_{number}" for number in range(LUNS))
        assert f"      Luns: {numbers}\n      Remote Type: Target\n".encode() in text
