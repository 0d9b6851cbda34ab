"""zfc-lab map: a host as a picture, drawn by a real renderer, and as a text."""

import os
import re
import struct
import subprocess
import zlib

import pytest
from lxml import etree

from zfc.lab_view import BUILTIN_HOST, EXAMPLES, LAB, lab
from zfc.runner import ROOT

SVG = "{http://www.w3.org/2000/svg}"
HOSTS = [BUILTIN_HOST, *(EXAMPLES / name for name in ("all-families.yaml", "many-luns.yaml", "odd.yaml", "modules.yaml"))]

HOSTILE = r"""
adapters:
  - family: hazel
    model: "<script>&\"'\e[31mRED"
    serial: "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW"
    ports:
      - sfp: {vendor: "</text><a>", part: "]]>", measured: {temperature: -40}}
        targets:
          - {vendor: "\e]0;pwn", product: "日本語テス", luns: 0-3}
          - {vendor: "\a\b", product: "&amp; <b>"}
"""


def picture(text):
    """The picture's elements, read by a parser that forgives nothing."""
    return etree.fromstring(text.encode(), etree.XMLParser(resolve_entities=False, no_network=True))


def texts(root):
    return ["".join(element.xpath("text()")) for element in root.iter(f"{SVG}text")]


def pixels(png):
    """Width, height and the rows, as they are filtered, of a PNG of 8 bits for each channel, not interlaced."""
    assert png.startswith(b"\x89PNG\r\n\x1a\n")
    at, data, size, channels = 8, b"", None, 0
    while at < len(png):
        length, kind = struct.unpack(">I4s", png[at : at + 8])
        body = png[at + 8 : at + 8 + length]
        if kind == b"IHDR":
            size = struct.unpack(">II", body[:8])
            channels = {bytes([8, 2, 0, 0, 0]): 3, bytes([8, 6, 0, 0, 0]): 4}[body[8:]]
        if kind == b"IDAT":
            data += body
        at += 12 + length
    data, row = zlib.decompress(data), 1 + channels * size[0]
    return size, [data[begin : begin + row] for begin in range(0, len(data), row)]


def render(svg):
    run = subprocess.run(["rsvg-convert", "--format=png"], input=svg.encode(), capture_output=True, timeout=60)
    assert run.returncode == 0 and run.stderr == b"", run.stderr
    return pixels(run.stdout)


def corner(svg):
    """The colour of the first pixel, which no row is ahead of: every filter leaves it as it is."""
    return tuple(render(svg)[1][0][1:4])


def dark(svg):
    """The picture as a reader on a dark screen draws it: the rules of its media query take part."""
    query = re.search(r"@media \(prefers-color-scheme: dark\) \{\n(.*?)\n\}\n</style>", svg, re.DOTALL)
    return svg.replace(query[0], query[1] + "\n</style>")


@pytest.mark.parametrize("host", HOSTS, ids=lambda path: path.stem)
def test_is_drawn_by_a_renderer(host):
    svg, mistakes = lab("map", host)
    assert mistakes == ""
    root = picture(svg)
    size, rows = render(svg)
    assert size == (int(root.get("width")), int(root.get("height")))
    assert size[0] == 1400 and size[1] < 4000
    assert len({*rows}) > 100


def test_is_light_and_dark():
    svg = lab("map", BUILTIN_HOST)[0]
    assert corner(svg) == (0xF6, 0xF8, 0xFA) and corner(dark(svg)) == (0x0D, 0x11, 0x17)


def luminance(colour):
    """Relative luminance of '#rrggbb' (WCAG 2)."""
    channels = [int(colour[at : at + 2], 16) / 255 for at in (1, 3, 5)]
    linear = [c / 12.92 if c <= 0.03928 else ((c + 0.055) / 1.055) ** 2.4 for c in channels]
    return sum(weight * c for weight, c in zip((0.2126, 0.7152, 0.0722), linear))


def contrast(one, other):
    light, dim = sorted((luminance(one), luminance(other)), reverse=True)
    return (light + 0.05) / (dim + 0.05)


@pytest.mark.parametrize("mode", ["light", "dark"])
def test_texts_and_signs_stand_out(mode):
    """4.5 for texts, 3 for signs: WCAG 2, level AA."""
    style = lab("map", BUILTIN_HOST)[0].split("<style>")[1].split("</style>")[0]
    plain, query = style.split("@media (prefers-color-scheme: dark) {\n")
    fill = {}
    for part in (plain, query) if mode == "dark" else (plain,):
        for selectors, colour in re.findall(r"^([^{}@]*?) \{[^}]*?fill: (#\w{6})", part, re.MULTILINE):
            fill.update({selector.strip(" ."): colour for selector in selectors.split(",")})
    for ground in ("page", "card", "board"):
        for text in ("t", "b", "h", "c", "m", "cm"):
            assert contrast(fill[text], fill[ground]) >= 4.5, (text, ground)
        for sign in ("good", "idle", "warning", "problem"):
            assert contrast(fill[sign], fill[ground]) >= 3, (sign, ground)


@pytest.mark.parametrize("host", HOSTS, ids=lambda path: path.stem)
def test_needs_nothing_but_itself(host):
    svg = lab("map", host)[0]
    root = picture(svg)
    used = {element.tag.removeprefix(SVG) for element in root.iter()}
    assert used <= {"svg", "title", "desc", "style", "g", "rect", "text", "line", "path", "circle"}
    attributes = {name for element in root.iter() for name in element.attrib}
    assert not [name for name in attributes if name.startswith("on") or "href" in name or name == "style"]
    assert re.findall(r"https?://[^\"]*", svg) == ["http://www.w3.org/2000/svg"]
    assert "url(" not in svg and "@import" not in svg


def test_has_a_title_and_a_description():
    root = picture(lab("map", BUILTIN_HOST)[0])
    title, description = root[0], root[1]
    assert root.get("role") == "img" and root.get("aria-labelledby") == f"{title.get('id')} {description.get('id')}"
    assert title.text == "Map of builtin_host.yaml"
    assert description.text.startswith("6 adapters, 10 ports, 21 targets, 78 LUNs. Ports: 5 good")


def test_says_health_in_words():
    shown = texts(picture(lab("map", BUILTIN_HOST)[0]))
    assert "Problem: Congested, severity alarm" in shown
    assert "Idle: No module" in shown
    assert [text for text in shown if text.startswith("Warning: Module temperature is 71.5 C")]


def test_groups_many_targets():
    shown = texts(picture(lab("map", EXAMPLES / "many-luns.yaml")[0]))
    assert shown.count("256 targets") == shown.count("16,384 LUNs") == 8
    assert shown.count("256 targets, 16,384 LUNs") == 8


def test_hostile_texts_are_only_texts(tmp_path):
    host = tmp_path / "<b>&.yaml"
    host.write_text(HOSTILE)
    svg = lab("map", host)[0]
    root = picture(svg)
    render(svg)
    shown = texts(root)
    assert "<b>&.yaml" in shown and "�]0;pwn 日本語テス, disk, online" in shown
    assert "�� &amp; <b>, disk, online" in shown
    assert root.xpath("//*[local-name()='b' or local-name()='script' or local-name()='a']") == []
    cut = [element for element in root.iter(f"{SVG}text") if element.find(f"{SVG}title") is not None]
    assert [element[0].text for element in cut] == ["<script>&\"'�[31mRED", "W" * 32]
    assert all("".join(element.xpath("text()")).endswith("…") for element in cut)
    text = lab("map", "--text", host)[0]
    assert not [character for character in text if ord(character) < 0x20 and character != "\n"]
    assert "Target 50:00:0e:11:00:00:00:00  4 LUNs  �]0;pwn 日本語テス, disk, online\n" in text


def test_text_is_a_tree():
    text = lab("map", "--text", EXAMPLES / "small.yaml")[0]
    assert text.startswith("Host: 2 adapters, 3 ports, 0 targets, 0 LUNs\nPorts: 2 good, 1 problem\n\nAdapter ZX100 AB12345: elm,")
    assert "  Port 1, 21:00:00:0e:1e:11:22:34, link down, problem\n    problem: Link down\n" in text


def test_without_a_file_it_is_the_host_of_the_environment(tmp_path):
    assert lab("map", "--text")[0] == lab("map", "--text", BUILTIN_HOST)[0]
    small = EXAMPLES / "small.yaml"
    assert lab("map", TORPI_LAB_HOST=str(small))[0] == lab("map", small)[0]


def test_shows_the_state_of_the_environment_host(tmp_path):
    state = tmp_path / "state.yaml"
    state.write_text(
        "adapters:\n  ZX100/AB12345:\n    ports:\n      21:00:00:0e:1e:11:22:33:\n"
        "        target-speeds: {50:06:0b:00:3b:20:11:c0: 8}\n"
    )
    assert lab("map", "--text", TORPI_LAB_STATE=str(state))[1] == ""
    state.write_text("nothing: good\n")
    assert "state.yaml" in lab("map", "--text", TORPI_LAB_STATE=str(state), status=1)[1]


def test_a_file_is_written_once_and_replaced_by_force(tmp_path):
    path = tmp_path / "map.svg"
    assert lab("map", "-o", path) == ("", "")
    drawn = path.read_text()
    assert drawn == lab("map")[0]
    path.write_text("mine")
    assert str(path) in lab("map", "-o", path, status=1)[1]
    assert path.read_text() == "mine"
    assert lab("map", "-o", path, "--force") == ("", "")
    assert path.read_text() == drawn


def test_the_picture_of_the_documents_is_what_map_draws():
    assert (ROOT / "docs" / "images" / "builtin-host.svg").read_text() == lab("map")[0]


def test_a_mistake_in_the_file_draws_nothing(tmp_path):
    host = tmp_path / "lab.yaml"
    host.write_text("adapters: 3\n")
    text, mistake = lab("map", host, status=1)
    assert text == "" and "lab.yaml" in mistake


@pytest.mark.parametrize("words", [["a", "b"], ["--nothing"], ["-o"], [""]])
def test_wrong_words_are_refused(words):
    text, mistake = lab("map", *words, status=2)
    assert text == "" and mistake.startswith("zfc-lab map: ")


def test_help():
    assert lab("map", "--help")[0].startswith("Usage: zfc-lab map ")


def test_standard_output_that_is_closed(tmp_path):
    def run(*words):
        close = lambda: os.close(1)  # noqa: E731
        done = subprocess.run([LAB, "map", *words], stderr=subprocess.PIPE, cwd=tmp_path, preexec_fn=close, timeout=60)
        return done.returncode, done.stderr

    assert run("-o", "host.svg") == (0, b"")
    assert picture((tmp_path / "host.svg").read_text()).tag == f"{SVG}svg"
    assert run() == (1, b"zfc-lab map: standard output: can't be written: Bad file descriptor\n")
