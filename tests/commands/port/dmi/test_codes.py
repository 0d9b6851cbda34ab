"""The words for the codes and bits of a module in `dmi get`, against module_codes.yaml, a table of its own: each field
shows each of its numbers, and some that have no words."""

from pathlib import Path

import pytest
import yaml

from zfc.port import IDENTIFIER, one_port
from zfc.sfp import laid_out

TABLE = yaml.safe_load(Path(__file__).with_name("module_codes.yaml").read_text())
BELOW_FLAGS = "\n" + " " * 31
NUMBERS = [*range(0x2A), 0x7E, 0x7F, 0x82, 0xFD, 0xFE, 0xFF]


def lines_of(field, number):
    """What the field shows of a byte."""
    if "flags" in field:
        flags = [f" -{words}: 0x{int(number & bit != 0)}" for bit, words in field["flags"].items()]
        return f"{field['label']:>31}{BELOW_FLAGS.join(flags)}"
    if "bits" in field:
        value = ", ".join(words for bit, words in field["bits"].items() if number & bit) or f"{number:#x}"
    else:
        value = field["codes"].get(number, "")
    return f"{field['label']:>30}: {value}"


@pytest.mark.parametrize("form, identifier", [("sfp", 0x03), ("qsfp", 0x0D)])
def test_each_number_has_its_words(zfc, form, identifier):
    fields = TABLE[form]
    codes = {number for field in fields for words in ("codes", "bits", "flags") for number in field.get(words, ())}
    host = one_port()
    for number in sorted(codes.union(NUMBERS)):
        image = laid_out({field["byte"]: bytes([number]) for field in fields}, identifier=identifier)
        result = zfc(["-t", "port", "-s", "dmi", "get", IDENTIFIER], host=host, buffers={"sfp": image})
        report = result.stdout.decode()
        missing = [lines for lines in (lines_of(field, number) for field in fields) if f"\n{lines}\n" not in report]
        assert not missing, hex(number)
