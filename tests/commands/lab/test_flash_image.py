"""zfc-lab flash-image: the checksum line of images, and that the library takes what it writes."""

import zlib

import pytest

from zfc.runner import BUILD, ROOT

ZFC_LAB = BUILD / "bin" / "zfc-lab"
ELM = "FC_21:00:00:0e:1e:11:22:33"
FLASH = b"ZNFC flash image\nsignature: Sorvex\nkind: MBI\nversion: 2.02.10\n"


@pytest.fixture
def seal(zfc):
    """Runs zfc-lab flash-image; returns status, standard output and standard error."""

    def run(*files):
        argv, env = zfc.command(["flash-image", *files], program=ZFC_LAB)
        done = zfc.run(argv, env)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    return run


def line(body):
    return b"checksum: %08X\n" % zlib.crc32(body)


@pytest.mark.parametrize(
    "text, body",
    [
        (FLASH, FLASH),
        (FLASH + b"checksum: 00000000\n", FLASH),
        (FLASH + b"checksum:", FLASH),
        (FLASH + b"checksum: 12\n\n \n", FLASH),
        (FLASH + b"checksum: 1\nreboot: warm", FLASH + b"checksum: 1\nreboot: warm\n"),
        (FLASH[:-1], FLASH),
        (FLASH + b"# end\n\n", FLASH + b"# end\n\n"),
        (b"ZNFC NVRAM image", b"ZNFC NVRAM image\n"),
        (b"ZNFC SFP firmware\nvendor: WTD\n", b"ZNFC SFP firmware\nvendor: WTD\n"),
        (FLASH + b"\xff\x00\n", FLASH + b"\xff\x00\n"),
    ],
)
def test_line_that_is_written(zfc, seal, text, body):
    path = zfc.file("image", text)
    path.chmod(0o640)
    shown = line(body).decode().strip()
    assert seal("image") == (0, f"image: {shown}\n", "")
    assert path.read_bytes() == body + line(body)
    assert path.stat().st_mode & 0o777 == 0o640
    assert seal("image") == (0, f"image: {shown}, as it was\n", "")


@pytest.mark.parametrize(
    "content",
    [b"", b"ZNFC flash image\r\n", b"ZNFC flash images\n", b"\nZNFC flash image\n", b"checksum: 00000000\n"],
)
def test_no_image(zfc, seal, content):
    path = zfc.file("image", content)
    expected = "'ZNFC flash image' or 'ZNFC NVRAM image' or 'ZNFC SFP firmware'"
    assert seal("image") == (1, "", f"image:1: expected {expected} as first line\n")
    assert path.read_bytes() == content


def test_files_that_cannot_be_read(zfc, seal):
    zfc.file("good", FLASH)
    zfc.file("large", FLASH + b"\n" * (17 << 20))
    (zfc.work / "folder").mkdir()
    status, stdout, stderr = seal("none", "folder", "/dev/zero", "large", "good")
    assert status == 1 and stdout.startswith("good: checksum: ")
    assert stderr.splitlines() == [
        "none: can't be read: No such file or directory",
        "folder: can't be read: not a regular file",
        "/dev/zero: can't be read: not a regular file",
        "large: larger than 16 MiB",
    ]


def test_link_stays(zfc, seal):
    path = zfc.file("image", FLASH)
    (zfc.work / "link").symlink_to("image")
    assert seal("link")[0] == 0
    assert (zfc.work / "link").is_symlink() and path.read_bytes() == FLASH + line(FLASH)


def test_wrong_usage_and_help(seal):
    assert seal() == (2, "", "zfc-lab flash-image: expected a file\nTry 'zfc-lab flash-image --help'.\n")
    status, stdout, stderr = seal("--help")
    assert status == 0 and stdout.startswith("Usage: zfc-lab flash-image FILE...\n") and stderr == ""


def test_edited_image_is_taken(zfc, seal):
    update = ["-t", "adapter", "updatecli", "Adapter_ZX100_AB12345", f"{zfc.work}/image", "MBI"]
    zfc.file("image", FLASH + b"checksum: 00000000\n")
    assert b"Message: Success\n" not in zfc(update, library="simulated").stdout
    assert seal("image")[0] == 0
    assert b"Message: Success\n" in zfc(update, library="simulated").stdout


def test_edited_nvram_is_taken(zfc, seal):
    assert b"Message: Success" in zfc(f"-t port -s hbaparams savecli {ELM} nvram", library="simulated").stdout
    path = zfc.work / "nvram"
    path.write_bytes(path.read_bytes().replace(b"login-retries: 8\n", b"login-retries: 9\n"))
    update = f"-t port updatenvramcli {ELM} nvram"
    assert b"Message: Success\n" not in zfc(update, library="simulated").stdout
    assert seal("nvram")[0] == 0
    assert b"Message: Success\n" in zfc(update, library="simulated").stdout


GOOD_EXAMPLES = sorted({*(ROOT / "examples").glob("flash/*.img"), *(ROOT / "examples").glob("modules/*.fw")})


@pytest.mark.parametrize("example", GOOD_EXAMPLES, ids=lambda path: path.name)
def test_examples_have_their_checksum_but_for_the_damaged_one(zfc, seal, example):
    path = zfc.file(example.name, example.read_bytes())
    status, stdout, _ = seal(example.name)
    assert status == 0
    assert stdout.endswith(", as it was\n") == (path.read_bytes() == example.read_bytes()) == (example.name != "damaged.img")
