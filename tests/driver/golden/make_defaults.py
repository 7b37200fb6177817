"""Writes defaults.bin: the 3792 bytes of a fresh settings block of the printer "倉庫 1F,LPT1:", unsigned."""
import pathlib
from struct import pack


def text(value, units):
    return value.encode("utf-16-le").ljust(2 * units, b"\0")


def paper(name):
    #     kind, thickness, width, height, gap, eye mark, unit, printable left, top, width, height, the rest
    return text(name, 64) + pack("<16h", 0, 3, 580, 680, 30, 30, 0, 50, 0, 480, 650, 0, 0, 0, 0, 0)


LABEL = "Standard Label 58 x 68 mm"
public = (text("倉庫 1F", 32) + pack("<4HI", 0x0401, 0x0E01, 220, 232, 0x270F)
          # orientation, size, length, width, scale, copies, source, quality, colour, duplex, y resolution, TrueType, collate
          + pack("<13h", 1, 257, 680, 580, 100, 1, 256, 203, 1, 1, 203, 1, 0) + text(LABEL, 32)).ljust(220, b"\0")
private = (pack("<h", 257) + paper("フリーサイズ")
           # copies, base points, orientation, flip, three offsets, speed, sensor, feed, reserved, dither, colour text
           + pack("<14h", 1, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 2, 1)
           + pack("<6H6h", 24, 0, 0, 10000, 10000, 10000, 0, 10000, 0, 0, 0, 0)
           # page by page, position, compulsory, reserved, signature
           + pack("<7hI", 0, 1, 0, 0, 0, 0, 0, 0))
colours = [(6810, 3050, 0), (2260, 6550, 0), (1810, 500, 0), (2000, 2450, 65534), (5210, 2100, 0), (4750, 5100, 0),
           (3324, 3474, 10000)]
halftone = (pack("<3i", 2, 7, 0) + b"".join(pack("<3i", *colour) for colour in colours)
            + pack("<9i", 10000, 10000, 10000, 1422, 952, 787, 495, 324, 248))
printer = pack("<h", 1) + paper(LABEL).ljust(3200, b"\0") + pack("<2H", 203, 0) + halftone
block = public + private + printer + b"\0\0"
assert [len(part) for part in (public, private, printer, block)] == [220, 232, 3338, 3792]
pathlib.Path(__file__).with_name("defaults.bin").write_bytes(block)
