"""Reads a compiled resource file (.res): its entries, dialog templates and string tables."""
import struct
from dataclasses import dataclass, field

RT_BITMAP, RT_DIALOG, RT_STRING, RT_VERSION, RT_MANIFEST = 2, 5, 6, 16, 24
CLASSES = {0x80: "Button", 0x81: "Edit", 0x82: "Static", 0x83: "ListBox", 0x84: "ScrollBar",
           0x85: "ComboBox"}


@dataclass
class Control:
    kind: str
    id: int
    style: int
    left: int
    top: int
    width: int
    height: int
    text: str

    @property
    def right(self):
        return self.left + self.width

    @property
    def bottom(self):
        return self.top + self.height

    def __str__(self):
        return f"{self.kind} {self.id} {self.text!r} ({self.left},{self.top},{self.width},{self.height})"


@dataclass
class Dialog:
    id: int
    style: int
    width: int
    height: int
    caption: str
    point: int
    face: str
    controls: list = field(default_factory=list)


class Reader:
    def __init__(self, data, at=0):
        self.data, self.at = data, at

    def take(self, form):
        values = struct.unpack_from("<" + form, self.data, self.at)
        self.at += struct.calcsize("<" + form)
        return values if len(values) > 1 else values[0]

    def align(self):
        self.at = (self.at + 3) & ~3

    def name(self):
        """An id, a text, or None for an absent one."""
        first = self.take("H")
        if first == 0xFFFF:
            return self.take("H")
        units = []
        while first:
            units.append(first)
            first = self.take("H")
        return struct.pack(f"<{len(units)}H", *units).decode("utf-16-le")


def entries(data):
    """(type, name, bytes) of every resource of the file."""
    at = 0
    while at < len(data):
        reader = Reader(data, at)
        size, header = reader.take("II")
        kind, name = reader.name(), reader.name()
        start = at + header
        if kind != 0:
            yield kind, name, data[start:start + size]
        at = (start + size + 3) & ~3


def dialog(number, data):
    r = Reader(data)
    version, signature, _help, _ex, style, count = r.take("HHIIIH")
    assert (version, signature) == (1, 0xFFFF), f"dialog {number} is no extended template"
    _x, _y, width, height = r.take("hhhh")
    r.name(), r.name()
    caption = r.name()
    point, _weight, _italic, _charset = r.take("HHBB")
    result = Dialog(number, style, width, height, caption, point, r.name())
    for _ in range(count):
        r.align()
        _help, _ex, style = r.take("III")
        x, y, w, h = r.take("hhhh")
        control_id = r.take("i")
        kind = r.name()
        text = r.name()
        extra = r.take("H")
        r.at += extra
        result.controls.append(Control(CLASSES.get(kind, kind), control_id, style, x, y, w, h, text))
    return result


def strings(name, data):
    """id -> text of one block of sixteen."""
    r, result = Reader(data), {}
    for i in range(16):
        length = r.take("H")
        text = data[r.at:r.at + 2 * length].decode("utf-16-le")
        r.at += 2 * length
        if length:
            result[(name - 1) * 16 + i] = text
    return result
