#!/usr/bin/env python3
"""Checks the compiled resources: every dialog's controls are inside it, do not overlap and are wide enough for their own
texts; help texts fit into the help box; texts have the placeholders that their
callers fill in.

usage: check_resources.py FILE.res RESOURCE.H — prints one line a fault, exits 1 when there is any."""
import re
import struct
import sys
import unicodedata
from collections import namedtuple
from itertools import combinations

RT_BITMAP, RT_DIALOG, RT_STRING = 2, 5, 6
CLASSES = {0x80: "Button", 0x81: "Edit", 0x82: "Static", 0x83: "ListBox", 0x84: "ScrollBar", 0x85: "ComboBox"}
WS_VISIBLE, WS_GROUP, WS_TABSTOP = 0x10000000, 0x20000, 0x10000
GROUP_BOX, AUTO_RADIO, AUTO_CHECK, BUTTON_OWNER_DRAW = 7, 9, 3, 0xB
# The placeholders that callers fill in, by the text's name; the first row that matches counts. Errors name a limit, help
# texts a range, both of them in millimetres and inches where the help is about a length.
PLACEHOLDERS = [
    ("(FONT|PAPER)_LIMIT", ["%d"]),
    ("HELP_PAPER_REGISTER_GAP", ["%s"] * 6),
    ("HELP_(DECO_FONT|PAPER_REGISTER)_(WIDTH|HEIGHT|LENGTH)", ["%s"] * 4),
    (r"HELP_\w+_(EXPAND_[XY]|PRINT_NUM|INCREMENT|DIGITS|BASE|OFFSET|PRINTABLE_LEFT|PRINTABLE_TOP)", ["%s"] * 2),
    (r"FONT_(WIDTH|HEIGHT)_(BELOW|ABOVE)", ["%s"] * 2),
    (r"\w+_(BELOW|ABOVE)(_MM|_INCH)?", ["%s"]),
    (r"\w+", []),
]
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
    """The bytes of every resource in the file by (type, name)."""
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
        {"ComboBox": 16, "Edit": 13}.get(c.kind, 0)  # an up-down is inside the edit
    return units(text) <= c.width - margin


def box(c):
    return c.left, c.top, c.left + c.width, c.top + (13 if c.kind == "ComboBox" else c.height)


def holds(outer, inner, edge=(0, 0, 0, 0)):
    return all(i - o >= e if side < 2 else o - i >= e
               for side, (o, i, e) in enumerate(zip(outer, inner, edge)))


def check_places(where, width, height, found):
    for c in found:
        fault(not holds((0, 0, width, height), box(c)), where, c, "is outside")
    for a, b in combinations([c for c in found if c.style & WS_VISIBLE], 2):
        one, other = box(a), box(b)
        apart = any(one[i + 2] <= other[i] or other[i + 2] <= one[i] for i in (0, 1))
        inside = any(is_button(x, GROUP_BOX) and holds(box(x), box(y), (1, 8, 1, 2)) for x, y in ((a, b), (b, a)))
        fault(not apart and not inside, where, a, b, "overlap")


def check_order(where, found):
    """A set of radio buttons starts with WS_GROUP | WS_TABSTOP, and the control after it starts a new group."""
    previous = None
    for c in found:
        after_radio = previous and is_button(previous, AUTO_RADIO)
        if is_button(c, AUTO_RADIO):
            fault(bool(c.style & WS_GROUP) != bool(c.style & WS_TABSTOP), where, c, "is no tab stop, or one too many")
        elif after_radio and not is_button(c, GROUP_BOX):
            fault(not c.style & WS_GROUP, where, c, "belongs to the radio buttons before it")
        previous = previous if is_button(c, GROUP_BOX) else c


def check_dialog(name, data, texts):
    where = name + ":"
    r = Reader(data)
    _, _, _, _, _, count, _, _, width, height = r.take("HHIIIHhhhh")
    r.name(), r.name(), r.name(), r.take("HHBB"), r.name()
    found = list(controls(r, count))
    ids = [c.id for c in found if c.id != -1]
    # The help texts of the dialog IDD_NAME are those whose names begin with IDS_HELP_NAME.
    helps = [texts.get(i, "").replace("%s", "-9999") for i in named("IDS_HELP_" + name[4:])]
    has_help_box = helps and name != "IDD_PAPER_REFERENCE"
    fault(has_help_box and numbers["IDC_HELP_TEXT"] not in ids, where, "lacks its help box")
    for c in found:
        shown = [c.text] if c.style & 15 != BUTTON_OWNER_DRAW else []
        for text in filter(None, shown + (helps if c.id == numbers["IDC_HELP_TEXT"] else [])):
            fault(not fits(c, text), where, repr(text), "does not fit", c)
    check_places(where, width, height, found)
    check_order(where, found)


def check_texts(texts, names):
    fault(names.keys() ^ texts.keys(), "texts without a name, or names without a text:", names.keys() ^ texts.keys())
    for i, text in texts.items():
        wanted = next(wanted for pattern, wanted in PLACEHOLDERS if re.fullmatch("IDS_" + pattern, names.get(i, "IDS_none")))
        fault(re.findall(r"%.", text) != wanted, "text", i, "has not the placeholders", wanted)
        fault(len(text) > 510, "text", i, "is longer than the help box's buffer")


with open(sys.argv[2], encoding="utf-8") as f:
    numbers = {name: int(value) for name, value in re.findall(r"#define (\w+) (\d+)", f.read())}
with open(sys.argv[1], "rb") as f:
    found = entries(f.read())

def named(prefix):
    return {value for name, value in numbers.items() if name.startswith(prefix)}

def of_type(wanted):
    return {name: data for (kind, name), data in found.items() if kind == wanted}

texts, dialogs, bitmaps = strings(found), of_type(RT_DIALOG), of_type(RT_BITMAP)
check_texts(texts, {number: name for name, number in numbers.items() if number in named("IDS_") - {2473, 2474}})
for name in numbers:
    if name.startswith("IDD_") and numbers[name] in dialogs:
        check_dialog(name, dialogs[numbers[name]], texts)
print("\n".join(faults) or f"{len(dialogs)} dialogs, {len(texts)} texts, {len(bitmaps)} pictures")
sys.exit(1 if faults else 0)
