"""Writes everything.ini, a backup file with every section and key, and everything.bin, the records that it is a
backup of, to a folder: make_everything.py FOLDER

everything.bin holds a settings block (3792 bytes), then 2 decorative and 22 barcode fonts (232 bytes each). No two
numbers of the file are equal. The bytes of a record that the file does not name are 0x55.
"""
import itertools
import pathlib
import struct
import sys

# The forms of a field and their sizes in bytes: numbers of 16 and 32 bits, names in UTF-16, texts in code page 932.
WORD, LONG, TRIPLE, PAPER_NAME, FONT_NAME, ZIP, LONG_ZIP = "h", "i", "3i", "64u", "32u", "7s", "20s"
SIZES = {WORD: 2, LONG: 4, TRIPLE: 12, PAPER_NAME: 128, FONT_NAME: 64, ZIP: 7, LONG_ZIP: 20}
NUMBERS = itertools.count(-30000, 97)
# A name has at most 63 bytes in the file.
NAMES = {PAPER_NAME: itertools.cycle(["ｶﾅ 表 ソ\\=;[x]", "ﾊ" * 63, "ソ" * 31 + "x"]),
         FONT_NAME: itertools.cycle(["字" * 31, "ﾊ" * 31])}
TEXTS = {ZIP: "4567890", LONG_ZIP: "0123456789012345678"}  # only the long text has a terminator


def fields(offset, form, keys, prefix=""):
    """Consecutive fields of one form, the first of which is at an offset of the record."""
    return [(prefix + key, offset + i * SIZES[form], form) for i, key in enumerate(keys.split())]


DRIVER = (fields(220, WORD, "PaperID")
          + fields(382, WORD, "Copies VerticalBase HorizonBase Orient Flip PeelOffset TearOffset PitchOffset PrintSpeed"
                              " SensorKind MoveMode")
          + fields(406, WORD, "Dither ColorText") + fields(438, WORD, "CompulsorySet") + fields(436, WORD, "Position"))
HALFTONE = (fields(3658, LONG, "HalfToneFlags HalfTonePatternSize DevPelsDPI", "HTInfo.")
            + fields(3670, TRIPLE, "Red Green Blue Cyan Magenta Yellow AlignmentWhite", "HTInfo.ColorInfo.")
            + fields(3754, LONG, "RedGamma GreenGamma BlueGamma MagentaInCyanDye YellowInCyanDye CyanInMagentaDye"
                                 " YellowInMagentaDye CyanInYellowDye MagentaInYellowDye", "HTInfo.ColorInfo.")
            + fields(410, WORD, "Size Flags IlluminantIndex RedGamma GreenGamma BlueGamma ReferenceBlack ReferenceWhite"
                                " Contrast Brightness Colorfulness RedGreenTint", "ColorAdjust."))
PAPER = (fields(0, PAPER_NAME, "PaperName")
         + fields(128, WORD, "PaperKind Thickness LabelWidth LabelHeight GapSize EyeMarkSize Unit PrintableLeft"
                             " PrintableTop PrintableWidth PrintableHeight Yoshi") + fields(158, WORD, "UserDef"))
DECORATIVE = (fields(66, FONT_NAME, "DecoFontName ResiFontName")
              + fields(194, WORD, "Decorate Size SizeX SizeY ExpandX ExpandY Unit Pitch Rotate ColorRevolution"
                                  " Smoothing Bold OutlineStyle Range Mode PrintNum Incriment ActivateData NegativeData"))
BARCODE = (fields(66, FONT_NAME, "BarFontName")
           + fields(130, WORD, "FontCategory BarcodeKind Range Mode PrintNum Incriment ActiveData NegativeData"))
# The parameters of all known kinds of barcodes, then those of some kinds. Kind 7 is not known.
COMMON = fields(146, WORD, "BarcodeID Rotate") + fields(156, WORD, "Unit")
PARAMETERS = {
    (100, 300, 400): fields(158, WORD, "Expand Height Guide"),
    (200, 600, 700): fields(158, WORD, "Expand Height"),
    (500, 900, 1000, 1100, 1200): fields(158, WORD, "Expand Height Ratio NarrowSpace WideSpace NarrowBar WideBar"
                                                    " CharacterGap"),
    (800,): fields(158, WORD, "Expand Height CommentChar"),
    (1300,): fields(158, WORD, "ZipSize") + fields(160, ZIP, "ZipCode"),
    (1400, 1500, 1600): fields(158, WORD, "ErrCollectLebel CellSize EstablishMode ConnectMode ConnectNum ConnectCur"
                                          " ConnectParity DataMode"),
    (1700,): fields(158, WORD, "ModuleWidth ModuleHeight SecurityLevel CodeWordNum SymbolLineNum CodeType"),
    (1900,): fields(158, WORD, "CodeType ServiceCode CountryCode ZipSize") + fields(166, LONG_ZIP, "ZipCode"),
    (2000,): fields(158, WORD, "Width height Line Linesu"),
    (2100,): fields(158, WORD, "ModuleWidth ModuleHeight ColsWordNum RowsLineNum BynalyType"),
    (2500,): fields(158, WORD, "Expand Height Segment BarType")}
KINDS = {kind: COMMON + own for kinds, own in PARAMETERS.items() for kind in kinds} | {7: []}

lines = ["[ﾊﾞｰｼﾞｮﾝ情報]", "FileVersion=0003", "DriverVersion=0e01", "DriverName=Label Printer"]
records = bytearray(b"\x55" * 3792)


def value(form):
    """The next value of a form: its text in the file and its bytes in the record."""
    if form in NAMES:
        text = next(NAMES[form])
        return text, text.encode("utf-16-le").ljust(SIZES[form], b"\0")
    if form in TEXTS:
        return TEXTS[form], TEXTS[form].encode().ljust(SIZES[form], b"\0")
    factor = 1 if form == WORD else 70001  # needs more than 16 bits
    values = [next(NUMBERS) * factor for _ in range(3 if form == TRIPLE else 1)]
    return ",".join(map(str, values)), struct.pack("<" + form, *values)


def add(section, keys, start=0, **given):
    """Adds a section to the file and its values to the record at start. Values that are not given are generated."""
    lines.append(f"[{section}]")
    for key, offset, form in keys:
        text, data = (str(given[key]), struct.pack("<h", given[key])) if key in given else value(form)
        lines.append(f"{key}={text}")
        records[start + offset:start + offset + len(data)] = data


def add_font(section, font_kind, keys, **given):
    """Adds a font; its record begins with a copy of its name and the kind of font."""
    start = len(records)
    records.extend(b"\x55" * 232)
    add(section, keys, start, **given)
    records[start:start + 66] = records[start + 66:start + 130] + struct.pack("<H", font_kind)


add("ﾄﾞﾗｲﾊﾞ情報", DRIVER)
add("ﾌﾘｰｻｲｽﾞ用紙", PAPER, 222)
# A load does not read these two, so that a save writes the bytes that were there.
add("ﾃﾞﾊﾞｲｽ情報", fields(3654, WORD, "HeadDensity Mecha"), HeadDensity=0x5555, Mecha=0x5555)
add("ﾊｰﾌﾄｰﾝ情報", HALFTONE)
add("用紙登録数", fields(452, WORD, "PaperNum"), PaperNum=12)
for i in range(12):
    add(f"PAPER{i:02}", PAPER, 454 + 160 * i)
records[454 + 160 * 12:3654] = bytes(160 * 8)  # a load clears the other papers
lines += ["[装飾ﾌｫﾝﾄ登録数]", "DecoFontNum=2"]
for i in range(2):
    add_font(f"DECOFONT{i:02}", 0, DECORATIVE)
lines += ["[ﾊﾞｰｺｰﾄﾞﾌｫﾝﾄ登録数]", f"BarFontNum={len(KINDS)}"]
for i, (kind, parameters) in enumerate(KINDS.items()):
    add_font(f"BARFONT{i:02}", 1, BARCODE + parameters, BarcodeKind=kind)
lines += ["[同期印刷]", "SYNC=ab"]
struct.pack_into("<h", records, 434, 0xAB)

folder = pathlib.Path(sys.argv[1])
folder.joinpath("everything.ini").write_bytes("".join(line + "\r\n" for line in lines).encode("cp932"))
folder.joinpath("everything.bin").write_bytes(records)
