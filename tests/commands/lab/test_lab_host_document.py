"""docs/lab-host.md: what it says of the examples' images, and of the commands. Its tour is played by documents/test_sessions.py."""

import re
import subprocess
import zlib

import pytest

from zfc.runner import BUILD, ROOT

DOCUMENT = (ROOT / "docs" / "lab-host.md").read_text()
ZFC_LAB = BUILD / "bin" / "zfc-lab"


def section(title):
    return re.split(r"^## ", DOCUMENT.split(f"\n## {title}\n")[1], maxsplit=1, flags=re.MULTILINE)[0]


IMAGES = re.findall(r"^\| `(\S+\.img)` \| `(updatecli .*?)` \| (\d+) \|$", section("Flash images"), re.MULTILINE)


def test_every_example_of_an_image_is_in_the_table():
    assert sorted(image for image, _, _ in IMAGES) == sorted(path.name for path in (ROOT / "examples/flash").iterdir())


@pytest.mark.parametrize("image, words, result", IMAGES, ids=[image for image, _, _ in IMAGES])
def test_result_of_an_image(zfc, image, words, result):
    words = [word.replace("examples/", f"{ROOT}/examples/") for word in words.split()]
    argv, env = zfc.command(["run", "--trace", "--", "-t", "adapter", *words], program=ZFC_LAB)
    done = zfc.run(argv, env)
    calls = [line for line in done.stderr.decode().splitlines() if image in line]
    assert [line.rsplit(" -> ", 1)[1] for line in calls] == [result]


@pytest.mark.parametrize("first", ["ZNFC NVRAM image", "ZNFC SFP firmware"])
def test_checksum_of_an_example(first):
    image = re.search(rf"^{first}\n.*?^checksum: (\w+)$", DOCUMENT, re.MULTILINE | re.DOTALL)
    body = image[0].rsplit("checksum: ", 1)[0].encode()
    assert int(image[1], 16) == zlib.crc32(body)


def test_commands_are_those_of_the_help():
    """The document's table has them all; each command has a help of its own."""
    helped = subprocess.run([ZFC_LAB, "--help"], capture_output=True, text=True, check=True).stdout
    words = re.findall(r"^\| `([a-z-]+) ", section("zfc-lab"), re.MULTILINE)
    assert len(words) >= 8
    assert sorted(words) == sorted(re.findall(r"^  ([a-z-]+) ", helped, re.MULTILINE))
    for word in words:
        shown = subprocess.run([ZFC_LAB, word, "--help"], capture_output=True, text=True, check=True).stdout
        assert shown.startswith(f"Usage: zfc-lab {word} ")
