"""zfc-lab diff: what changed between two hosts, read from files."""

import json

import pytest

from zfc.lab_view import BUILTIN_HOST, EXAMPLES, changed, lab

SAME = "The hosts are the same.\n"

HOST = """
adapters:
  - family: hazel
    serial: HZ00001
    bus: 0x17
    ports:
      - wwpn: 21:00:00:0e:1e:00:00:00
        temperature: 46
        vpd: {items: {PN: HD8310405-18}}
        firmware-counters: [0, 0, 0, 0, 0, 3]
        congestion: {state: congested, seconds-since-event: 42}
        configuration:
          parameters: {frame-size: 1024}
          boot: {drives: [{wwpn: 50:06:0b:00:00:00:00:01, lun: 2}]}
          credit-recovery: {count: 3}
          fec: {enabled: true}
          beacon: off
        targets:
          - {wwpn: 50:06:0b:00:00:00:00:01, luns: 0-9}
          - {wwpn: 50:06:0b:00:00:00:00:02, luns: 0}
"""
PORT = "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"


@pytest.fixture
def files(tmp_path):
    """Writes two hosts and gives their paths."""

    def write(before, after):
        paths = tmp_path / "before.yaml", tmp_path / "after.yaml"
        for path, text in zip(paths, (before, after)):
            path.write_text(text)
        return paths

    return write


@pytest.mark.parametrize("host", [BUILTIN_HOST, *sorted(EXAMPLES.glob("*.yaml"))], ids=lambda path: path.stem)
def test_a_host_is_the_same_as_itself(host):
    # failing.yaml has a library that gives no list, which it does twice
    assert lab("diff", host, host) == (SAME, "")


@pytest.mark.parametrize("host", [BUILTIN_HOST, EXAMPLES / "odd.yaml", EXAMPLES / "modules.yaml"], ids=lambda path: path.stem)
def test_a_snapshot_is_the_same_as_its_host(host, tmp_path):
    snapshot = tmp_path / "snapshot.yaml"
    lab("snapshot", "-o", snapshot, TORPI_LAB_HOST=str(host))
    assert lab("diff", host, snapshot) == (SAME, "")


@pytest.mark.parametrize(
    "old, new, lines",
    [
        pytest.param("seconds-since-event: 42", "seconds-since-event: 43", None, id="time"),
        pytest.param("temperature: 46", "temperature: 48", None, id="2 degrees"),
        pytest.param(
            "temperature: 46", "temperature: 61", "    Board temperature changed from 46 C to 61 C.\n", id="temperature"
        ),
        pytest.param("0, 0, 3]", "0, 0, 1003]", "    Invalid CRC count rose by 1,000 to 1,003.\n", id="counter"),
        pytest.param("0, 0, 3]", "0, 0, 1]", "    Invalid CRC count was reset: it was 3, it is 1.\n", id="reset"),
        pytest.param(
            "state: congested,", "state: healthy,", "    Congestion state changed from congested to healthy.\n",
            id="congestion",
        ),
        pytest.param("frame-size: 1024", "frame-size: 2048", "    Frame size changed from 1024 to 2048.\n", id="parameter"),
        pytest.param(
            "lun: 2", "lun: 3",
            "    Primary boot drive changed from 50:06:0b:00:00:00:00:01 LUN 2 to 50:06:0b:00:00:00:00:01 LUN 3.\n",
            id="boot drive",
        ),
        pytest.param("beacon: off", "beacon: on", "    Beacon changed from off to on.\n", id="beacon"),
        pytest.param(
            "fec: {enabled: true}", "fec: {enabled: false}", "    Forward error correction changed from on to off.\n",
            id="fec",
        ),
        pytest.param("-18", "-19", "    VPD item PN changed from HD8310405-18 to HD8310405-19.\n", id="vpd"),
        pytest.param(
            "luns: 0-9", "luns: 0-3",
            "    Target 50:06:0b:00:00:00:00:01\n      LUNs 4 to 9: gone.\n", id="LUNs gone",
        ),
        pytest.param(
            "luns: 0}", "luns: {number: 0, size: 4096}}",
            "    Target 50:06:0b:00:00:00:00:02\n      LUN 0: Size changed from 102,400 MB to 4,096 MB.\n", id="LUN size",
        ),
        pytest.param(
            "02, luns: 0}", "02, luns: 0, state: offline}",
            "    Target 50:06:0b:00:00:00:00:02\n      State changed from online to offline.\n", id="target offline",
        ),
        pytest.param(
            "        temperature: 46", "        temperature: 46\n        sfp: none",
            "    The module SORVEX OPTICS SX-F32-SW, serial SX001000 was taken out.\n", id="module taken out",
        ),
        pytest.param(
            "        temperature: 46", "        temperature: 46\n        sfp: {measured: {temperature: 76}}",
            "    Module temperature is 76.0 C, above its alarm limit of 75.0 C; it was 36.5 C.\n", id="module hot",
        ),
        pytest.param(
            "        temperature: 46", "        temperature: 46\n        lockdown: {config: on}",
            "    Config lockdown changed from off to on.\n", id="lockdown",
        ),
    ],
)
def test_says_what_changed_of_a_port(files, old, new, lines):
    paths = files(HOST, changed(HOST, (old, new)))
    if lines is None:
        assert lab("diff", *paths) == (SAME, "")
    else:
        assert lab("diff", *paths, status=1) == (PORT + lines, "")


def test_says_that_the_link_went_down(files):
    paths = files(HOST, changed(HOST, ("        temperature: 46", "        temperature: 46\n        link: down")))
    text = lab("diff", *paths, status=1)[0]
    assert text.startswith(PORT + "    The link went down.\n    Link speed changed from 32 Gbps to none.\n")


def test_says_which_adapter_moved_and_which_is_gone(files):
    two = HOST + "  - {family: elm, serial: EL00001, ports: [{}, {}]}\n"
    moved = changed(HOST, ("bus: 0x17", "bus: 0x18"))
    assert lab("diff", *files(two, moved), status=1)[0].split("\n")[:4] == [
        "Adapter ZX100 EL00001",
        "  The adapter is gone. It had 2 ports.",
        "Adapter ZX320 HZ00001",
        "  The adapter moved from PCI bus 0x0017 to PCI bus 0x0018.",
    ]


def test_says_what_is_refused_now(files):
    fault = "faults:\n  - {call: TORPI_GetLockdownStatus, result: 150}\n"
    assert lab("diff", *files(HOST, fault + HOST), status=1)[0] == PORT + (
        "    The call for the lockdown status answered before and is refused with 150 (maintenance mode) now.\n"
    )


def test_json_has_the_place_and_the_values(files):
    after = changed(HOST, ("0, 0, 3]", "0, 0, 7]"), ("luns: 0-9", "luns: 0-8"), ("bus: 0x17", "bus: 0x17\n    model: '\"\\e'"))
    text = lab("diff", "--json", *files(changed(HOST, ("bus: 0x17", "bus: 0x17\n    model: '\"\\e'")), after), status=1)[0]
    port = {"adapter": '"\\e HZ00001', "port": "21:00:00:0e:1e:00:00:00"}
    assert json.loads(text) == [
        {**port, "target": None, "lun": None, "what": "Invalid CRC count", "before": 3, "after": 7},
        {**port, "target": "50:06:0b:00:00:00:00:01", "lun": 9, "what": "LUN", "before": "there", "after": None},
    ]
    assert json.loads(lab("diff", "--json", *files(HOST, HOST))[0]) == []


def test_a_mistake_in_a_file_is_no_difference(files):
    paths = files(HOST, changed(HOST, ("frame-size: 1024", "frame-size: large")))
    text, mistake = lab("diff", *paths, status=1)
    assert text == "" and str(paths[1]) in mistake and "frame-size" in mistake
    text, mistake = lab("diff", paths[0], paths[0].parent / "none.yaml", status=1)
    assert text == "" and "none.yaml" in mistake


def test_files_are_read_without_the_variables_of_the_lab(files):
    paths = files("chatter: true\n" + HOST, HOST)
    state = paths[0].parent / "state.yaml"
    out = lab("diff", *paths, TORPI_LAB_FAULTS="TORPI_GetLockdownStatus=150", TORPI_LAB_STATE=str(state))
    assert out == (SAME, "") and not state.exists()


@pytest.mark.parametrize("words", [[], ["one.yaml"], ["a", "b", "c"], ["--nothing", "a", "b"], ["", "b"]])
def test_wrong_words_are_refused(words):
    text, mistake = lab("diff", *words, status=2)
    assert text == "" and mistake.startswith("zfc-lab diff: ")


def test_help():
    assert lab("diff", "--help")[0].startswith("Usage: zfc-lab diff ")
