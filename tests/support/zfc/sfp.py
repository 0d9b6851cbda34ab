"""Images of pluggable modules: real ones from examples/modules, and ones laid out byte by byte."""

from .runner import ROOT

SFP_OFFSETS = {"vendor": 20, "part": 40, "revision": 56, "serial": 68, "date": 84}


def real(name):
    """The image of a real module: lines of an offset and sixteen bytes."""
    lines = (ROOT / "examples" / "modules" / f"{name}.hex").read_text().splitlines()
    image = b"".join(bytes.fromhex(line.split(":")[1]) for line in lines)
    assert len(image) == 512
    return image


def laid_out(fields, *, identifier=3):
    """An image that is zero but for its identifier and these bytes, by their offset."""
    image = bytearray(512)
    image[0] = identifier
    for offset, content in fields.items():
        image[offset : offset + len(content)] = content
    assert len(image) == 512
    return bytes(image)


def changed(image, fields):
    """The image with other bytes, by their offset."""
    copy = bytearray(image)
    for offset, content in fields.items():
        copy[offset : offset + len(content)] = content
    assert len(copy) == 512
    return bytes(copy)


REAL_SFP = real("sfpp-10g-sr-finisar-a")
REAL_QSFP = real("qsfp28-100g-finisar")
NO_MODULE = bytes(512)

# A 64GFC module of a maker's own, externally calibrated.
EXTERNAL = laid_out(
    {
        1: bytes([0x04, 0x07, 0x00]),
        7: bytes([0x20, 0x40, 0x0C, 0x2A]),  # I; SN; M5 and M6; 1600 and 3200, and byte 62 counts
        11: bytes([0x08, 0xFF, 0x10, 0, 0, 2, 0, 10, 7]),
        20: b"SORVEX OPTICS   ",
        36: bytes([0x80, 0x00, 0x11, 0x22]),
        40: b"SX64-SW-E\0hidden",
        56: b"E1  ",
        60: bytes([0x03, 0x52]),
        62: bytes([0x01, 0xAB]),
        64: bytes([0x0C, 0x32, 0x70, 0x00]),
        68: b"--------        ",
        84: b"260314  ",
        92: bytes([0x58, 0xF0, 0x09, 0xCD]),
        96: bytes(range(0xE0, 0x100)),
        149: bytes([0x02, 0x07, 0x01, 0x80, 0x12, 0x34]),
        249: bytes([0x01, 0x02, 0x0A, 0x0B, 0x0C]),
        # Temperature: 75.5, -5, 70, 0. Voltage, bias, powers: below.
        256: bytes([0x4B, 0x01, 0xFB, 0x00, 0x46, 0x00, 0x00, 0x00]),
        264: bytes([0x8C, 0xA0, 0x75, 0x30, 0x88, 0xB8, 0x79, 0x18]),
        272: bytes([0x17, 0x70, 0x03, 0xE8, 0x15, 0x7C, 0x05, 0xDC]),
        280: bytes([0x27, 0x10, 0x03, 0xE8, 0x1F, 0x40, 0x07, 0xD0]),
        288: bytes([0x27, 0x10, 0x03, 0xE8, 0x1F, 0x40, 0x07, 0xD0]),
        312: bytes.fromhex("3d800000 bd000000 3e000000 40000000 3c23d70a"),  # 2^-4, -2^-5, 2^-3, 2, 0.01
        332: bytes([0x01, 0x02, 0x12, 0x03]),  # bias: slope 2.0, offset 3
        336: bytes([0x00, 0x02, 0x77, 0x77]),  # transmit power: slope 512.2
        340: bytes([0x02, 0x00, 0x05, 0x00]),  # temperature: slope 2.0, offset 5
        344: bytes([0x03, 0x00, 0xFF, 0xFE]),  # voltage: slope 3.0, offset -2
        351: bytes([0xEE]),
        352: bytes([0x23, 0x40, 0x80, 0xE8, 0x0D, 0xAC, 0x13, 0x88, 0x07, 0xD0]),
        366: bytes([0xDF, 0x0F, 0xFF, 0xC0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFE]),
        376: bytes(range(1, 9)),
        386: bytes([0x02]),
        389: bytes([0x01]),
        480: bytes([1, 2, 3, 4, 5]),
        496: bytes([0x20, 0x21]),
        500: bytes([0x30, 0xC7, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10]),
    }
)
