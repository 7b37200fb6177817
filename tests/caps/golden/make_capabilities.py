"""Writes capabilities.bin: the outputs of all capabilities that have one, each behind its index and its size.

The printer has 305 dpi, the standard paper, one of 2.283 by 4 in with a name that fills its field, and a free size
77.7 mm wide.
"""
import pathlib
from struct import pack


def names(units, *texts):
    return b"".join(text.encode("utf-16-le").ljust(2 * units, b"\0") for text in texts)


PAPERS = names(64, "Standard Label 58 x 68 mm", "A" * 63, "フリーサイズ")
OUTPUTS = {
    2: pack("<3H", 257, 258, 256),  # DC_PAPERS
    3: pack("<6i", 580, 680, 580, 1016, 777, 680),  # DC_PAPERSIZE, tenths of a millimetre
    4: pack("<2i", 100, 100),  # DC_MINEXTENT
    5: pack("<2i", 580, 1630),  # DC_MAXEXTENT
    6: pack("<H", 256),  # DC_BINS
    12: names(24, "標準"),  # DC_BINNAMES
    13: pack("<2i", 305, 305),  # DC_ENUMRESOLUTIONS
    16: PAPERS,  # DC_PAPERNAMES
    29: PAPERS,  # DC_MEDIAREADY
    34: names(64, "Plain paper", "Transparency", "Glossy paper"),  # DC_MEDIATYPENAMES
    35: pack("<3I", 1, 2, 3),  # DC_MEDIATYPES
}
pathlib.Path(__file__).with_name("capabilities.bin").write_bytes(
    b"".join(pack("<2H", index, len(output)) + output for index, output in OUTPUTS.items()))
