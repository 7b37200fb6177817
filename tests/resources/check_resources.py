#!/usr/bin/env python3
"""Checks the compiled resources: that every dialog's controls stand inside it, side by side and wide
enough for their texts, that help texts fit the help box, and that texts fit their callers.

usage: check_resources.py FILE.res — prints one line a fault, exits 1 when there is any."""
import re
import struct
import sys
import unicodedata

from compiled_resources import (RT_BITMAP, RT_DIALOG, RT_MANIFEST, RT_STRING, RT_VERSION, dialog,
                                entries, strings)

WS_VISIBLE, WS_GROUP, WS_TABSTOP, WS_CHILD, WS_POPUP = 0x10000000, 0x20000, 0x10000, 0x40000000, 1 << 31
GROUP_BOX, AUTO_RADIO, AUTO_CHECK, BUTTON_OWNER_DRAW = 7, 9, 3, 0xB
PIXELS = 1.5  # a dialog unit, either way
HELP_TEXT, HELP_GROUP = 1167, 1171

FORMS = {110: ("動作モード", 279, 261), 111: ("用紙", 279, 261), 114: ("用紙登録", 327, 337),
         121: ("参照用紙選択\u3000", 216, 58), 122: ("デバイスの設定", 243, 265), 125: ("装飾フォントの登録", 397, 347),
         127: ("バーコードフォントの登録", 323, 246), 129: ("クリエイトフォント", 279, 261), 145: ("バージョン情報", 275, 261),
         153: ("ユーティリティ", 279, 261)}
HIDDEN = {110: [1113], 114: [1126, 1056, 1106, 1067, 1107, 1070, 1108, 1073, 1109]}  # beside their labels
PAGES = (110, 111, 122, 129, 145, 153)
# The longest texts that the code puts into controls, by dialog and control.
FILLED = {
    (110, 1032): ["プリンタ設定に従う"], (110, 1035): ["反射センサタイプ：アイマーク", "プリンタ設定に従う"],
    (111, 1188): ["用紙は最大 20 個登録できます。"], (111, 1005): ["Standard Label 58 x 68"],
    (114, 1116): ["プリンタ設定に従う"], (114, 1117): ["濃度2 やや薄い"], (114, 1053): ["58.0", "2.283"],
    (114, 1080): ["163.0", "6.417"], (122, 1135): ["ティアオフ"], (122, 1050): ["203dpi(  8本/mm)"],
    (125, 1135): ["漢字(横書)"], (125, 1139): ["80*133"], (125, 1107): ["550", "68.8"],
    (125, 1149): ["9999"], (125, 1151): ["-9999"], (127, 1103): ["9999"], (127, 1105): ["-9999"],
    (129, 1186): ["装飾フォントとバーコードフォントは、合計 70 個まで登録できます。"],
    (145, 1191): ["Kestrel(QM610r) Printer Driver for Windows (x86)\nVersion 14.0.1.20"],
    (145, 1239): ["14.0.1.20"], (145, 1235): ["14.0.1.20"], (145, 1211): ["14.0.1.20"],
    (145, 1210): ["14.0.1.20"],
}
# Which help texts a dialog shows: by the names of the ids.
HELP_OF = {110: "OPERATION", 111: "PAPER", 114: "PAPER_REGISTER", 122: "DEVICE", 125: "DECO_FONT",
           127: "BAR_FONT", 129: "CREATE_FONT", 153: "UTILITY"}
# Ids whose callers fill in this many texts; every other text has none.
FORMATTED = ({i: ["%s"] for i in range(2204, 2221)} | {i: ["%s"] for i in range(2246, 2262)}
             | {i: ["%s", "%s"] for i in range(2250, 2254)}
             | {i: ["%s", "%s"] for i in (2278, 2279, 2280, 2281, 2294, 2295, 2326, 2327, 2328, 2329,
                                         2358, 2359, 2360, 2361, 2362, 2363, 2377, 2378)}
             | {i: ["%s"] * 4 for i in (2296, 2297, 2373, 2374)}
             | {2375: ["%s"] * 6, 2410: ["%d"], 2435: ["%d"], 2212: []})
# Width, height and bits a dot of pictures whose boxes count on them.
PICTURES = {149: (420, 200, 24), 134: (138, 246, 8), 141: (138, 246, 8), 162: (120, 189, 8),
            155: (96, 96, 8), 158: (96, 96, 8)}

faults = []


def fault(text):
    faults.append(text)


def units(text):
    """Width in dialog units: a half-width character is 6 pixels wide, a full-width one 12."""
    return sum(8 if unicodedata.east_asian_width(c) in "WFA" else 4 for c in text)


def lines(text, width):
    """How many lines a static control of that width wraps the text into, cutting at any character."""
    count = 0
    for line in text.split("\n"):
        count, used = count + 1, 0
        for c in line:
            if used + units(c) > width:
                count, used = count + 1, 0
            used += units(c)
    return count


def is_group(control):
    return control.kind == "Button" and control.style & 15 == GROUP_BOX


def is_radio(control):
    return control.kind == "Button" and control.style & 15 == AUTO_RADIO


def room(control):
    """Width and height that a control leaves to its text."""
    if control.kind == "Button":
        margin = {GROUP_BOX: 14, AUTO_RADIO: 12, AUTO_CHECK: 12}.get(control.style & 15, 8)
        return control.width - margin, max(control.height, 8)
    if control.kind == "ComboBox":
        return control.width - 16, 8
    if control.kind == "Edit":
        return control.width - 4 - 9, 8  # an attached up-down stands inside
    return control.width, control.height


def shown_height(control):
    return 13 if control.kind == "ComboBox" else control.height


def check_fit(d, control, text):
    width, height = room(control)
    if control.kind == "Static":
        if lines(text, width) * 8 > height:
            fault(f"dialog {d.id}: {text!r} does not fit {control}")
    elif units(text) > width:
        fault(f"dialog {d.id}: {text!r} is {units(text)} units wide in {control}")


def check_places(d):
    shown = [c for c in d.controls if c.style & WS_VISIBLE]
    for c in d.controls:
        if c.left < 0 or c.top < 0 or c.right > d.width or c.top + shown_height(c) > d.height:
            fault(f"dialog {d.id}: {c} sticks out")
        if c.kind == "ComboBox" and c.height < 50:
            fault(f"dialog {d.id}: the list of {c} is too low to drop down")
    for i, a in enumerate(shown):
        for b in shown[i + 1:]:
            apart = (a.right <= b.left or b.right <= a.left or a.top + shown_height(a) <= b.top
                     or b.top + shown_height(b) <= a.top)
            if apart:
                continue
            outer, inner = (a, b) if is_group(a) and (not is_group(b) or a.width > b.width) else (b, a)
            inside = (is_group(outer) and inner.left > outer.left and inner.right < outer.right
                      and inner.top >= outer.top + 8
                      and inner.top + shown_height(inner) <= outer.bottom - 2)
            if not inside:
                fault(f"dialog {d.id}: {a} and {b} overlap")


def check_groups(d):
    """Radio sets start with WS_GROUP | WS_TABSTOP and end with a control that starts a new group."""
    previous = before = None
    for c in d.controls:
        first = not (previous and is_radio(previous)) or is_group(before)
        if is_radio(c) and first and not c.style & WS_GROUP:
            fault(f"dialog {d.id}: {c} continues a set of radio buttons across other controls")
        if is_radio(c) and bool(c.style & WS_GROUP) != bool(c.style & WS_TABSTOP):
            fault(f"dialog {d.id}: {c} must be the tab stop of its set exactly when it starts one")
        if previous and is_radio(previous) and not is_radio(c) and not is_group(c) \
                and not c.style & WS_GROUP:
            fault(f"dialog {d.id}: {c} belongs to the radio buttons before it")
        before = c
        if not is_group(c):
            previous = c


def check_spins(d):
    for before, c in zip(d.controls, d.controls[1:]):
        if c.kind != "msctls_updown32":
            continue
        if before.kind != "Edit" or before.right != c.left or before.top != c.top:
            fault(f"dialog {d.id}: {c} does not stand to the right of an edit")
        measured = (d.id == 114) or (d.id == 125 and c.id in (1108, 1110))
        if bool(c.style & 2) == measured:  # UDS_SETBUDDYINT
            fault(f"dialog {d.id}: {c} must {'not ' if measured else ''}write its edit")
        if c.style & 0x10:  # UDS_AUTOBUDDY
            fault(f"dialog {d.id}: {c} attaches itself")


def check_dialog(d, texts, help_ids):
    if FORMS.get(d.id) != (d.caption, d.width, d.height):
        fault(f"dialog {d.id} is {d.caption!r}, {d.width} x {d.height}")
    hidden = [c.id for c in d.controls if not c.style & WS_VISIBLE and c.id != -1]
    if hidden != HIDDEN.get(d.id, []):
        fault(f"dialog {d.id} hides {hidden}")
    if (d.point, d.face) != (9, "ＭＳ Ｐゴシック"):
        fault(f"dialog {d.id} has the font {d.face} {d.point}")
    if (d.id in PAGES) != bool(d.style & WS_CHILD) or (d.id in PAGES) == bool(d.style & WS_POPUP):
        fault(f"dialog {d.id} is of the wrong kind")
    ids = [c.id for c in d.controls if c.id != -1]
    for i in {i for i in ids if ids.count(i) > 1}:
        fault(f"dialog {d.id}: two controls {i}")
    for (number, i) in FILLED:
        if number == d.id and i not in ids:
            fault(f"dialog {d.id} lacks the control {i}")
    for c in d.controls:
        if c.text and c.style & 15 != BUTTON_OWNER_DRAW:
            check_fit(d, c, c.text)
        for text in FILLED.get((d.id, c.id), []):
            check_fit(d, c, text)
        if c.id == HELP_TEXT:
            for i in help_ids:
                check_fit(d, c, texts.get(i, "").replace("%s", "-9999"))
    if d.id in HELP_OF and not {HELP_TEXT, HELP_GROUP} <= set(ids):
        fault(f"dialog {d.id} has no help box")
    check_places(d)
    check_groups(d)
    check_spins(d)


def check_texts(texts, named):
    absent = {2473, 2474}
    for i in sorted(named - absent - texts.keys()):
        fault(f"string {i} is missing")
    for i in sorted(texts.keys() - (named - absent)):
        fault(f"string {i} is not named")
    for i, text in sorted(texts.items()):
        if re.findall(r"%.", text) != FORMATTED.get(i, []):
            fault(f"string {i} asks for {re.findall('%.', text)}, its callers give "
                  f"{FORMATTED.get(i, [])}")
        if len(text) > 510:
            fault(f"string {i} is longer than the help box's buffer")
        if re.search(r"\\[nt]|\r", text):
            fault(f"string {i} holds an escape that was not understood")
    expected = {
        2102: " を削除します。\nよろしいですか？",
        2262: "初期化ﾌｧｲﾙ(*.ini)\n*.ini\n",
        2379: "実際に印字する領域の幅を指定します。 ",
        2403: "このファイルはこのプリンタのデータファイルではありません。" + " " * 18
              + "\nもう一度ファイルを確かめてください。",
        2434: "特に以下のデータについて現在の機種で、\n正当なデータかどうかを確認してください。\n\t・印字基点補正\n"
              "\t・ﾒｶﾆｽﾞﾑ寸法補正\n",
        2441: "不正なファイル名です。\n以下のことを確認してください。\n\t・ファイル名にピリオド( . )が使われていないか\n"
              "\t・拡張子が\"ini\"になっているか",
    }
    for i, text in expected.items():
        if texts.get(i) != text:
            fault(f"string {i} reads {texts.get(i)!r}")
    # Shown through the override table, which breaks these two lines elsewhere.
    for i in (2430, 2433):
        if "現在の\n" in texts.get(i, "現在の\n"):
            fault(f"string {i} breaks its lines as the override does")


def main():
    res, header = sys.argv[1], sys.argv[2]
    with open(header, encoding="utf-8") as f:
        numbers = dict(re.findall(r"#define (\w+) (\d+)", f.read()))
    with open(res, "rb") as f:
        found = list(entries(f.read()))
    texts = {}
    for kind, name, data in found:
        if kind == RT_STRING:
            texts.update(strings(name, data))
    check_texts(texts, {int(v) for k, v in numbers.items() if k.startswith("IDS_")})
    dialogs = [dialog(name, data) for kind, name, data in found if kind == RT_DIALOG]
    for d in dialogs:
        prefix = "IDS_HELP_" + HELP_OF.get(d.id, "-")
        help_ids = [int(v) for k, v in numbers.items() if k.startswith(prefix)]
        check_dialog(d, texts, help_ids)
    for number in FORMS.keys() - {d.id for d in dialogs}:
        fault(f"dialog {number} is missing")
    bitmaps = {name: data for kind, name, data in found if kind == RT_BITMAP}
    for number in {int(v) for k, v in numbers.items() if k.startswith("IDB_")} ^ bitmaps.keys():
        fault(f"bitmap {number} is missing or not named")
    for number, facts in PICTURES.items():
        width, height, bits = struct.unpack_from("<4xii2xH", bitmaps.get(number, bytes(16)))
        if (width, height, bits) != facts:
            fault(f"bitmap {number} is {width} x {height} of {bits} bits")
    for kind in (RT_VERSION, RT_MANIFEST):
        if kind not in {k for k, _, _ in found}:
            fault(f"no resource of type {kind}")
    print("\n".join(faults) or f"{len(dialogs)} dialogs, {len(texts)} texts, {len(bitmaps)} pictures")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
