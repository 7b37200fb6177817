#!/usr/bin/env python3
"""Checks the compiled resources: that every dialog's controls stand inside it, side by side and wide enough for their
texts and those that the code fills in, that help texts fit the help box, and that texts fit their callers.

usage: check_resources.py FILE.res RESOURCE.H — prints one line a fault, exits 1 when there is any."""
import re
import struct
import sys
import unicodedata
from collections import namedtuple
from itertools import combinations

RT_BITMAP, RT_DIALOG, RT_STRING, RT_VERSION, RT_MANIFEST = 2, 5, 6, 16, 24
CLASSES = {0x80: "Button", 0x81: "Edit", 0x82: "Static", 0x83: "ListBox", 0x84: "ScrollBar", 0x85: "ComboBox"}
DS_SHELLFONT = 0x48
WS_VISIBLE, WS_GROUP, WS_TABSTOP, WS_CHILD, WS_POPUP = 0x10000000, 0x20000, 0x10000, 0x40000000, 1 << 31
GROUP_BOX, AUTO_RADIO, AUTO_CHECK, BUTTON_OWNER_DRAW = 7, 9, 3, 0xB
HELP_TEXT, HELP_GROUP = 1167, 1171

FORMS = {110: ("動作モード", 279, 261), 111: ("用紙", 279, 261), 114: ("用紙登録", 327, 337),
         121: ("参照用紙選択\u3000", 216, 58), 122: ("デバイスの設定", 243, 265), 125: ("装飾フォントの登録", 397, 347),
         127: ("バーコードフォントの登録", 323, 246), 129: ("クリエイトフォント", 279, 261),
         145: ("バージョン情報", 275, 261), 153: ("ユーティリティ", 279, 261)}
HIDDEN = {110: [1113], 114: [1126, 1056, 1106, 1067, 1107, 1070, 1108, 1073, 1109]}  # beside their labels
PAGES = (110, 111, 122, 129, 145, 153)
# The longest texts that the code puts into controls, by dialog and control.
FILLED = {
    (110, 1032): ["プリンタ設定に従う"], (110, 1035): ["反射センサタイプ：アイマーク", "プリンタ設定に従う"],
    (111, 1188): ["用紙は最大 20 個登録できます。"], (111, 1005): ["Standard Label 58 x 68"],
    (114, 1116): ["プリンタ設定に従う"], (114, 1117): ["濃度2 やや薄い"], (114, 1053): ["58.0", "2.283"],
    (114, 1080): ["163.0", "6.417"], (122, 1135): ["ティアオフ"], (122, 1050): ["203dpi(  8本/mm)"],
    (125, 1135): ["漢字(横書)"], (125, 1139): ["80*133"], (125, 1107): ["550", "68.8"], (125, 1149): ["9999"],
    (125, 1151): ["-9999"], (127, 1103): ["9999"], (127, 1105): ["-9999"],
    (129, 1186): ["装飾フォントとバーコードフォントは、合計 70 個まで登録できます。"],
    (145, 1191): ["Kestrel(QM610r) Printer Driver for Windows (x86)\nVersion 14.0.1.20"],
    **dict.fromkeys([(145, i) for i in (1210, 1211, 1235, 1239)], ["14.0.1.20"])}
# Ids whose callers fill in so many texts, or a number; every other text has none.
TEXTS = ({i: 1 for i in (*range(2204, 2212), *range(2213, 2221), *range(2246, 2250), *range(2254, 2262))}
         | {i: 2 for i in (*range(2250, 2254), *range(2278, 2282), 2294, 2295, *range(2326, 2330), *range(2358, 2364),
                           2377, 2378)} | {i: 4 for i in (2296, 2297, 2373, 2374)} | {2375: 6})
NUMBERS = (2410, 2435)
# Width, height and bits a dot of pictures whose boxes count on them.
PICTURES = {149: (420, 200, 24), 134: (138, 246, 8), 141: (138, 246, 8), 162: (120, 189, 8), 155: (96, 96, 8),
            158: (96, 96, 8)}
Control = namedtuple("Control", "kind id style left top width height text")
faults = []


class Reader:
    def __init__(self, data, at=0):
        self.data, self.at = data, at

    def take(self, form):
        values = struct.unpack_from("<" + form, self.data, self.at)
        self.at += struct.calcsize("<" + form)
        return values if len(values) > 1 else values[0]

    def name(self):
        """An id or a text."""
        start, unit = self.at, self.take("H")
        if unit == 0xFFFF:
            return self.take("H")
        while unit:
            unit = self.take("H")
        return self.data[start:self.at - 2].decode("utf-16-le")


def entries(data):
    """The bytes of every resource of the file by (type, name)."""
    at, found = 0, {}
    while at < len(data):
        reader = Reader(data, at)
        size, header = reader.take("II")
        found[reader.name(), reader.name()] = data[at + header:at + header + size]
        at = (at + header + size + 3) & ~3
    return found


def controls(r, count):
    for _ in range(count):
        r.at = (r.at + 3) & ~3
        _, _, style, left, top, width, height, number = r.take("IIIhhhhi")
        kind, text, extra = r.name(), r.name(), r.take("H")
        r.at += extra
        yield Control(CLASSES.get(kind, kind), number, style, left, top, width, height, text)


def strings(found):
    texts = {}
    for (kind, block), data in found.items():
        r = Reader(data)
        for i in range(16 if kind == RT_STRING else 0):
            text = r.take(f"{2 * r.take('H')}s").decode("utf-16-le")
            texts.update({(block - 1) * 16 + i: text} if text else {})
    return texts


def fault(wrong, *text):
    faults.extend([" ".join(map(str, text))] if wrong else [])


def units(text):
    """Width in dialog units: a half-width character is 6 pixels wide, a full-width one 12, a unit 1.5."""
    return sum(8 if unicodedata.east_asian_width(c) in "WFA" else 4 for c in text)


def lines(text, width):
    """How many lines a static control of that width wraps the text into, cutting at any character."""
    count = 0
    for line in text.split("\n"):
        used = width
        for c in line or " ":
            wraps = used + units(c) > width
            count, used = count + wraps, units(c) + (0 if wraps else used)
    return count


def is_button(c, kind):
    return c.kind == "Button" and c.style & 15 == kind


def fits(c, text):
    if c.kind == "Static":
        return lines(text, c.width) * 8 <= c.height
    margin = {GROUP_BOX: 14, AUTO_RADIO: 12, AUTO_CHECK: 12}.get(c.style & 15, 8) if c.kind == "Button" else \
        {"ComboBox": 16, "Edit": 13}.get(c.kind, 0)  # an up-down stands inside the edit
    return units(text) <= c.width - margin


def box(c):
    return c.left, c.top, c.left + c.width, c.top + (13 if c.kind == "ComboBox" else c.height)


def holds(outer, inner, edge=(0, 0, 0, 0)):
    return all(i - o >= e if side < 2 else o - i >= e
               for side, (o, i, e) in enumerate(zip(outer, inner, edge)))


def check_places(where, width, height, found):
    for c in found:
        fault(not holds((0, 0, width, height), box(c)), where, c, "sticks out")
        fault(c.kind == "ComboBox" and c.height < 50, where, "the list of", c, "is too low to drop down")
    for a, b in combinations([c for c in found if c.style & WS_VISIBLE], 2):
        one, other = box(a), box(b)
        apart = any(one[i + 2] <= other[i] or other[i + 2] <= one[i] for i in (0, 1))
        inside = any(is_button(x, GROUP_BOX) and holds(box(x), box(y), (1, 8, 1, 2)) for x, y in ((a, b), (b, a)))
        fault(not apart and not inside, where, a, b, "overlap")


def check_order(where, found):
    """Radio sets start with WS_GROUP | WS_TABSTOP and end with a control that starts a new group; an up-down follows the
    edit to its left, and writes it where it holds a plain number."""
    previous = before = None
    for c in found:
        after_radio = previous and is_button(previous, AUTO_RADIO)
        if is_button(c, AUTO_RADIO):
            starts = not after_radio or is_button(before, GROUP_BOX)
            fault(starts and not c.style & WS_GROUP, where, c, "continues a set across other controls")
            fault(bool(c.style & WS_GROUP) != bool(c.style & WS_TABSTOP), where, c, "is no tab stop, or one too many")
        elif after_radio and not is_button(c, GROUP_BOX):
            fault(not c.style & WS_GROUP, where, c, "belongs to the radio buttons before it")
        if c.kind == "msctls_updown32":
            right = before.left + before.width
            fault((before.kind, right, before.top) != ("Edit", c.left, c.top), where, c, "stands beside no edit")
            measured = where == "dialog 114:" or where == "dialog 125:" and c.id in (1108, 1110)
            fault(c.style & 0x12 != (0 if measured else 2), where, c, "attaches itself or writes its edit wrongly")
        before, previous = c, previous if is_button(c, GROUP_BOX) else c


def check_dialog(number, data, texts, help_ids):
    where = f"dialog {number}:"
    r = Reader(data)
    version, signature, _, _, style, count, _, _, width, height = r.take("HHIIIHhhhh")
    fault((version, signature) != (1, 0xFFFF), where, "is no extended template")
    r.name(), r.name()
    caption, (point, _, _, _), face = r.name(), r.take("HHBB"), r.name()
    found = list(controls(r, count))
    fault(FORMS.get(number) != (caption, width, height), where, caption, width, height)
    fault((point, face) != (9, "ＭＳ Ｐゴシック"), where, "has the font", face, point)
    fault(bool(style & WS_CHILD) != (number in PAGES) or bool(style & WS_POPUP) == (number in PAGES), where, "is wrong")
    fault(number in PAGES and style & DS_SHELLFONT != DS_SHELLFONT, where, "is measured by the font of the sheet's frame")
    hidden = [c.id for c in found if not c.style & WS_VISIBLE and c.id != -1]
    fault(hidden != HIDDEN.get(number, []), where, "hides", hidden)
    ids = [c.id for c in found if c.id != -1]
    fault(len(ids) != len(set(ids)), where, "has ids twice", ids)
    wanted = {i for n, i in FILLED if n == number} | ({HELP_TEXT, HELP_GROUP} if help_ids and number != 121 else set())
    fault(wanted - set(ids), where, "lacks", wanted - set(ids))
    for c in found:
        shown = FILLED.get((number, c.id), []) + ([c.text] if c.style & 15 != BUTTON_OWNER_DRAW else [])
        if c.id == HELP_TEXT:
            shown += [texts.get(i, "").replace("%s", "-9999") for i in help_ids]
        for text in filter(None, shown):
            fault(not fits(c, text), where, repr(text), "does not fit", c)
    check_places(where, width, height, found)
    check_order(where, found)


def check_texts(texts, named):
    fault(named ^ texts.keys(), "texts without a name, or names without a text:", named ^ texts.keys())
    for i, text in texts.items():
        wanted = ["%d"] if i in NUMBERS else ["%s"] * TEXTS.get(i, 0)
        fault(re.findall(r"%.", text) != wanted, "text", i, "does not ask for", wanted)
        fault(len(text) > 510, "text", i, "is longer than the help box's buffer")
        fault(re.search(r"\\[nt]|\r", text), "text", i, "holds an escape that was not understood")


with open(sys.argv[2], encoding="utf-8") as f:
    numbers = {name: int(value) for name, value in re.findall(r"#define (\w+) (\d+)", f.read())}
with open(sys.argv[1], "rb") as f:
    found = entries(f.read())

def named(prefix):
    return {value for name, value in numbers.items() if name.startswith(prefix)}

def of_type(wanted):
    return {name: data for (kind, name), data in found.items() if kind == wanted}

texts, dialogs, bitmaps = strings(found), of_type(RT_DIALOG), of_type(RT_BITMAP)
check_texts(texts, named("IDS_") - {2473, 2474})
# Which help texts a dialog shows is told by its name and theirs.
for name, number in numbers.items():
    if name.startswith("IDD_") and number in dialogs:
        check_dialog(number, dialogs[number], texts, named("IDS_HELP_" + name[4:]))
for prefix, there in (("IDD_", dialogs), ("IDB_", bitmaps)):
    fault(named(prefix) ^ there.keys(), prefix, "missing or not named:", named(prefix) ^ there.keys())
for number, facts in PICTURES.items():
    fault(struct.unpack_from("<4xii2xH", bitmaps.get(number, bytes(16))) != facts, "bitmap", number, "is not", facts)
fault(not of_type(RT_VERSION) or not of_type(RT_MANIFEST), "no version or no manifest")
print("\n".join(faults) or f"{len(dialogs)} dialogs, {len(texts)} texts, {len(bitmaps)} pictures")
sys.exit(1 if faults else 0)
