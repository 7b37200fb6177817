// The SVG pictures that the step "shot" of a script writes. One dialog unit is 1.5 pixels.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { isDeepStrictEqual } from "node:util";

import { computer, program } from "../support/printhost.mjs";
import { ids } from "../support/resource_ids.mjs";

const NAME = "Label Printer";

// Plays steps and takes a picture; the sheet is cancelled as the script ends there. Returns the picture's elements,
// each with its tag, attributes (numbers as numbers) and text.
function shoot(pc, ...steps) {
  const file = pc.file("picture.svg");
  const input = [...steps, { shot: file }].map((step) => JSON.stringify(step)).join("\n");
  const { status, stderr } = spawnSync(program, ["--state", pc.state, "play", NAME, "--kind", "user-default"], { input, encoding: "utf8" });
  assert.deepEqual([status, stderr], [1, ""]);
  return [...readFileSync(file, "utf8").matchAll(/<(\w+)([^>]*?)\/?>([^<]*)/g)].map(([, tag, attributes, text]) => {
    const pairs = [...attributes.matchAll(/([\w:-]+)="([^"]*)"/g)];
    const values = pairs.map(([, name, value]) => [name, Number.isNaN(Number(value)) ? value : Number(value)]);
    return { tag, ...Object.fromEntries(values), ...(text.trim() && { text }) };
  });
}

// Asserts that the picture has each of the elements, exactly.
function assertHas(elements, expected) {
  for (const [what, element] of Object.entries(expected))
    assert.ok(elements.some((one) => isDeepStrictEqual(one, element)), `${what}: ${JSON.stringify(element)}\n${elements.map((one) => JSON.stringify(one)).join("\n")}`);
}

const BLACK = "#000000", WHITE = "#ffffff", GREY = "#808080", LIGHT_GREY = "#b0b0b0", FACE = "#e8e8e8", RED = "#ff0000";
// A frame is drawn on the centres of the border's pixels.
const frame = (x, y, width, height, fill, stroke, rx = 0) => ({ tag: "rect", x: x + 0.5, y: y + 0.5, width: width - 1, height: height - 1, rx, fill, stroke });
const text = (x, y, content, more = { fill: BLACK }) => ({ tag: "text", x, y, ...more, text: content });
const centred = { fill: BLACK, "text-anchor": "middle" };
const bitmap = (name) => `data:image/bmp;base64,${readFileSync(new URL(`../../resources/bitmaps/${name}.bmp`, import.meta.url), "base64")}`;

test("shot of the paper page: title, tabs, each kind of control, and the label with its markers", (t) => {
  const pc = computer(t, NAME);
  const elements = shoot(pc, { page: 1 }, { type: ids.IDC_PAPER_VERT_BASE, text: "40" }, { click: ids.IDC_PAPER_WHOLE_LABEL });
  assertHas(elements, {
    document: { tag: "svg", xmlns: "http://www.w3.org/2000/svg", width: 419, height: 444, "font-family": "Noto Sans CJK JP, sans-serif", "font-size": 12 },
    window: frame(0, 0, 419, 444, "#f0f0f0", GREY),
    title: text(6, 16, "プロパティ", { "font-weight": "bold" }),
    "tab, 9 pixels a character and 10": frame(0, 24, 73, 22, "#d8d8d8", LIGHT_GREY),
    "tab's text": text(36, 39, "バージョン情報", { "font-size": 9, "text-anchor": "middle" }),
    "active tab": frame(73, 24, 28, 22, WHITE, LIGHT_GREY),
    "page below title and tabs": { tag: "g", transform: "translate(0 46)" },
    "static text": { tag: "foreignObject", x: 11, y: 9, width: 45, height: 12 },
    "its content": { tag: "div", xmlns: "http://www.w3.org/1999/xhtml", style: "white-space:pre-wrap;line-height:1;color:#000000", text: "用紙名:" },
    "combo box": frame(57, 6, 177, 20, WHITE, GREY),
    "selected item": text(61, 20, "Standard Label 58 x 68 mm"),
    "group box": frame(11, 54, 224, 32, "none", LIGHT_GREY),
    "its title over the frame": text(19, 58, "印刷方向", { fill: BLACK, stroke: "#f0f0f0", "stroke-width": 4, "paint-order": "stroke" }),
    "radio button": frame(21, 64, 11, 11, WHITE, BLACK, 5),
    "its mark": frame(24, 67, 5, 5, BLACK, BLACK, 5),
    "checked check box": frame(246, 286, 5, 5, BLACK, BLACK),
    "edit field": frame(105, 105, 32, 18, WHITE, GREY),
    "its number": text(108, 118, "40"),
    "up-down": frame(137, 105, 16, 18, FACE, GREY),
    "its arrows": text(145, 118, "↕", centred),
    "default button": frame(252, 216, 120, 21, FACE, BLACK),
    button: frame(11, 254, 71, 21, FACE, GREY),
    "its caption": text(46, 268, "用紙登録", centred),
    "drawing of the owner-drawn picture": { tag: "g", transform: "translate(252 21)" },
    "background, stretched": { tag: "svg", x: 0, y: 0, width: 120, height: 189, viewBox: "0 0 24 24", preserveAspectRatio: "none" },
    "bitmap with four bits a pixel": { tag: "image", href: bitmap("portrait") },
    label: { tag: "rect", x: 9.5, y: 96.5, width: 101, height: 119, fill: WHITE, stroke: BLACK, "stroke-width": 1 },
    "marker of the base": { tag: "line", x1: 9.5, y1: 103.5, x2: 120.5, y2: 103.5, stroke: RED, "stroke-width": 1, "stroke-dasharray": "2 2" },
    "filled background": { tag: "rect", x: 0, y: 0, width: 24, height: 69, fill: WHITE },
    "text's background": { tag: "rect", x: 2, y: 18, width: 12, height: 12, fill: WHITE },
    "drawn text, at its baseline": { tag: "text", transform: "translate(2 28) scale(1.000 1)", "font-size": 12, fill: BLACK, text: "送" },
  });
});

test("shot of lists, a font preview and a message box", (t) => {
  const pc = computer(t, NAME);
  const newFont = (name) => [{ click: ids.IDC_CREATE_FONT_DECO_NEW }, { type: ids.IDC_DECO_FONT_NAME, text: name }, { click: ids.IDOK }];
  const fontPage = shoot(pc, { page: 4 }, ...newFont("A&B"), ...newFont("<C\">"));
  assertHas(fontPage, {
    "list box": frame(21, 27, 174, 147, WHITE, GREY),
    "selected item": frame(22, 28, 172, 14, "#cce0ff", "none"),
    "its text": text(25, 39, "A&amp;B"),
    "next item, 14 pixels below": text(25, 53, "&lt;C&quot;>"),
    "disabled button's caption": text(320, 199, "変更", { ...centred, fill: GREY }),
    "disabled check box": frame(224, 219, 11, 11, WHITE, GREY),
  });
  assert.ok(!shoot(pc, { page: 2 }).some((element) => element.text === "エラー時の動作:"), "hidden text");
  assertHas(shoot(pc, { page: 4 }, { click: ids.IDC_CREATE_FONT_DECO_NEW }), {
    "clip of the preview": { tag: "svg", x: 0, y: 0, width: 123, height: 117, viewBox: "0 0 123 117" },
    "character, half as wide as high is 1": { tag: "text", transform: "translate(59 62) scale(0.444 1)", "font-size": 9, fill: "#ffff00", text: "i" },
  });
  pc.done("device", NAME, "--offline", "yes");
  assertHas(shoot(pc, { page: 3 }, { click: ids.IDC_DEVICE_QUERY_MODE }), {
    "message box": frame(0, 0, 308, 115, "#f0f0f0", GREY),
    "its contents below the title": { tag: "g", transform: "translate(0 24)" },
    "stop icon": frame(12, 12, 32, 32, "#c8323c", "none", 15),
    "its sign": text(28, 33, "✕", { fill: WHITE, "font-size": 20, "text-anchor": "middle" }),
  });
});
