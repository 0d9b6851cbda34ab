"""`zfc-snapshot --anonymise`: nothing that names the host is left, and everything still reads."""

import re

import pytest

from zfc.runner import ROOT
from zfc.snapshots import all_bytes, all_reports, decoded, identifiers, played, ports_of, shell, take

HOSTS = {
    "built-in": {"library": "simulated"},
    **{name: played(ROOT / "examples" / f"{name}.yaml") for name in ("all-families", "modules", "small")},
}
NAME = re.compile(rb"(?<![0-9a-f:])(?:[0-9a-f]{2}:){7}[0-9a-f]{2}(?!:)")
# Labels of reports whose values name somebody's things.
SERIALS = (b"Serial Number", b"Vendor SN", b"Target Serial Number")


@pytest.fixture(params=HOSTS)
def options(request):
    return HOSTS[request.param]


def values(output, *labels):
    joined = b"|".join(re.escape(label) for label in labels)
    return {value.strip() for value in re.findall(rb"^.*?(?:" + joined + rb"): *(.*)$", output, re.MULTILINE)}


def reports(zfc, **options):
    commands = [line for line in all_reports(identifiers(zfc, **options), 40, True) if b"get" in line or b"cli" in line]
    return shell(zfc, [line for line in commands if b"cli" in line.split(b" FC_")[0]], **options)


def test_nothing_of_the_original_is_left(zfc, options):
    output = reports(zfc, **options)
    file, _ = take(zfc, "hidden.yaml", ["--anonymise", "--with-rdp"], **options)
    text = file.read_bytes()
    images = b"\n".join(all_bytes(file))

    names = {bytes.fromhex(name.decode().replace(":", "")) for name in NAME.findall(output)}
    names = {name for name in names if any(name[2:])}
    assert len(names) >= 4
    for name in names:  # the format of a name, its first two octets, stays
        low = name[2:]
        assert low.hex().encode() not in text and low.hex(":").encode() not in text and low not in images, name.hex(":")

    serials = {serial for serial in values(output, *SERIALS) if len(serial) > 4}
    assert len(serials) >= 2
    for serial in serials:
        assert serial not in text and serial not in images, serial

    nqns = {nqn for nqn in values(output, b"NQN") if nqn.startswith(b"nqn.")}
    ids = {value for value in values(output, b"Unique ID", b"Host ID") if len(value) >= 23}
    for value in nqns:
        assert value[12:] not in text and value[12:] not in images, value
    for value in ids:
        raw = bytes.fromhex(re.sub(rb"[:-]", b"", value).decode())
        assert not any(raw) or (raw[1:].hex().encode() not in text and raw[1:] not in images), value


def test_texts_that_name_the_built_in_host_are_searched_for(zfc):
    output = reports(zfc, library="simulated")
    assert len([nqn for nqn in values(output, b"NQN") if nqn.startswith(b"nqn.")]) > 3
    assert len(values(output, b"Unique ID")) > 10 and len(values(output, b"Host ID")) > 0


def labels(output):
    """The lines up to their values, and the lists' words that are no value."""
    return [re.sub(rb": .*", b":", line) for line in output.splitlines()]


def test_reports_say_as_much(zfc, options):
    file, _ = take(zfc, "hidden.yaml", ["--anonymise", "--with-rdp"], **options)
    before, after = reports(zfc, **options), reports(zfc, **played(file))
    assert labels(after) == labels(before)
    for label in (b"Message", b"Model", b"Port Speed", b"Vendor PN", b"Part Number", b"Vendor name", b"Driver Version"):
        assert values(after, label) == values(before, label)


def test_check_sums_of_images_are_right(zfc, options):
    file, _ = take(zfc, "hidden.yaml", ["--anonymise"], **options)
    plain, _ = take(zfc, "plain.yaml", **options)
    seen = 0
    for entry, before in zip(ports_of(file), ports_of(plain)):
        module, original = decoded(entry["sfp"], 512), decoded(before["sfp"], 512)
        start, end = (192, 223) if module[0] in (0x0C, 0x0D, 0x11, 0x12) else (64, 95)
        was_right = sum(original[start:end]) % 256 == original[end]
        assert (sum(module[start:end]) % 256 == module[end]) == was_right
        if any(original) and was_right:
            assert module != original
            seen += 1
        image = decoded(entry["vpd"].get("bytes", "zeros"), 1024)
        if b"RV" in image:
            assert sum(image[: image.index(b"RV") + 4]) % 256 == 0
            seen += 1
    assert seen >= 2


def vpd_items(image):
    """The values of the items by keyword, of both lists of a VPD image."""
    items = {}
    at = 0
    while image[at] in (0x82, 0x90, 0x91):
        end = at + 3 + int.from_bytes(image[at + 1 : at + 3], "little")
        item = at + 3
        while image[at] != 0x82 and item < end:
            items[image[item : item + 2].decode()] = image[item + 3 : item + 3 + image[item + 2]]
            item += 3 + image[item + 2]
        at = end
    return items


def test_items_of_vital_product_data_that_name_nobody_stay(zfc):
    file, _ = take(zfc, "hidden.yaml", ["--anonymise"], library="simulated")
    plain, _ = take(zfc, "plain.yaml", library="simulated")
    for entry, before in zip(ports_of(file), ports_of(plain)):
        items, original = (vpd_items(decoded(port["vpd"]["bytes"], 1024)) for port in (entry, before))
        assert items.keys() == original.keys()
        for keyword in ("PN", "EC", "MN", "V0", "V1", "V3", "V4", "V5", "V9"):
            assert items[keyword] == original[keyword] != b"", keyword
        assert items["SN"] != original["SN"]


def test_equal_to_equal(zfc):
    """The same file every time, and the same replacements in a host that has only some of it."""
    whole, _ = take(zfc, "whole.yaml", ["--anonymise"], library="simulated")
    again, _ = take(zfc, "again.yaml", ["--anonymise"], library="simulated")
    assert whole.read_bytes() == again.read_bytes()
    plain, _ = take(zfc, "plain.yaml", library="simulated")

    def replacements(hidden, original):
        pairs = zip(NAME.findall(hidden.read_bytes()), NAME.findall(original.read_bytes()))
        return {old: new for new, old in pairs}

    found = replacements(whole, plain)
    pairs = [*zip(NAME.findall(whole.read_bytes()), NAME.findall(plain.read_bytes()))]
    assert len({*pairs}) == len({old for _, old in pairs}) == len({new for new, _ in pairs}) > 20
    part = zfc.file("part.yaml", b"adapters: [{family: elm, ports: [{wwpn: 21:00:00:0e:1e:11:22:33}]}]")
    part_hidden, _ = take(zfc, "part_hidden.yaml", ["--anonymise"], **played(part))
    part_plain, _ = take(zfc, "part_plain.yaml", **played(part))
    old = b"21:00:00:0e:1e:11:22:33"
    assert replacements(part_hidden, part_plain)[old] == found[old] != old


def test_gaps_are_zero(zfc):
    """A host of noise keeps none of it but in fields."""
    file, _ = take(zfc, "noise.yaml", ["--anonymise"])
    text = file.read_text()
    lines = [line for line in text.splitlines() if re.match(r" +\d+: ", line)]
    assert len(lines) > 40
    assert [line for line in lines if "#" not in line and "*" in line] == []
