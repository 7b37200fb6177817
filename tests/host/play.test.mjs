// printhost play: a sheet driven by a script of steps.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { readdirSync } from "node:fs";
import { createInterface } from "node:readline";
import { test } from "node:test";

import { computer, program, start } from "../support/printhost.mjs";
import { ids } from "../support/resource_ids.mjs";

const NAME = "Label Printer";
const [PAPER_PAGE, DEVICE_PAGE] = [1, 3];
const { IDC_PAPER_LIST: PAPERS, IDC_PAPER_VERT_BASE: BASE, IDC_PAPER_VERT_BASE_SPIN: BASE_SPIN, IDC_PAPER_PEEL_OFFSET: PEEL } = ids;
const { IDC_PAPER_REGISTER: REGISTER, IDC_PAPER_REGISTER_NAME: PAPER_NAME, IDC_PAPER_REGISTER_WIDTH: WIDTH } = ids;

// The arguments of printhost that play a user-default sheet.
const userDefault = (pc) => ["--state", pc.state, "play", NAME, "--kind", "user-default", "--out", pc.file("out"), "--json"];

// Plays a script from standard input; returns the exit code, standard error and the objects that it printed.
function play(parameters, steps) {
  const input = steps.map((step) => (typeof step === "string" ? step : JSON.stringify(step))).join("\n");
  const { status, stdout, stderr } = spawnSync(program, parameters, { input, encoding: "utf8" });
  return { status, stderr, lines: stdout.split("\n").filter(Boolean).map((line) => JSON.parse(line)) };
}

test("play, one step after another: registers a paper, queries the device and stores the settings", async (t) => {
  const pc = computer(t, NAME);
  pc.done("device", NAME, "--mode", "peel");
  const { child } = start(t, program, userDefault(pc), { stdio: "pipe", cwd: pc.folder });
  const lines = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  let number = 0;
  const perform = async (...steps) => {
    let result;
    for (const step of steps) {
      child.stdin.write(`# a comment\n\n${JSON.stringify(step)}\n`);
      const { step: performed, ok, ...read } = JSON.parse((await lines.next()).value);
      assert.deepEqual([performed, ok], [++number, true], JSON.stringify([step, read]));
      result = read;
    }
    return result;
  };
  await perform({ page: PAPER_PAGE }, { click: REGISTER }, { type: PAPER_NAME, text: "棚札 R&D" }, { type: WIDTH, text: "500" }, { click: ids.IDOK },
    { expect: "window", title: "用紙登録", message: "ラベルサイズの幅は、 58.0 ㎜ 以下にして下さい。" }, { key: "enter" },
    { type: WIDTH, text: "50.0" }, { spin: ids.IDC_PAPER_REGISTER_WIDTH_SPIN, steps: 3 }, { expect: WIDTH, text: "50.3" },
    { type: ids.IDC_PAPER_REGISTER_LENGTH, text: "30.0" }, { click: ids.IDOK });
  const { items, item, ...rest } = await perform({ read: PAPERS });
  assert.deepEqual(items, ["Standard Label 58 x 68 mm", "棚札 R&D", "フリーサイズ"]);
  assert.deepEqual([item, rest], [items[0], { text: items[0], visible: true, enabled: true }]);
  await perform({ select: PAPERS, item: "フリーサイズ" }, { expect: PAPERS, items, item: "フリーサイズ" }, { select: PAPERS, index: 0 },
    { click: ids.IDC_PAPER_LANDSCAPE }, { expect: ids.IDC_PAPER_LANDSCAPE, checked: true }, { type: BASE, text: "7" }, { spin: BASE_SPIN, steps: -3 });
  // The device reports the peel mode, which enables the peel offset.
  await perform({ expect: PEEL, enabled: false }, { page: DEVICE_PAGE }, { expect: ids.IDC_DEVICE_MODE, item: "ティアオフ" },
    { click: ids.IDC_DEVICE_QUERY_MODE }, { key: "enter" }, { expect: ids.IDC_DEVICE_MODE, item: "ハクリ" }, { page: PAPER_PAGE }, { expect: PEEL, enabled: true });
  const { title, message, controls } = await perform({ read: "window" });
  assert.deepEqual([title, message, controls.find(({ id }) => id === BASE).text], ["用紙", null, "4"]);
  await perform({ button: "ok" });
  child.stdin.end();
  const { end, record } = JSON.parse((await lines.next()).value);
  assert.deepEqual([end, record.private.nVertBase, record.private.Orient], ["ok", 4, 2]);
  assert.deepEqual(pc.json("settings", NAME), record);
  assert.deepEqual(pc.json("settings", NAME, "--in", pc.file("out")), record);
  assert.deepEqual(pc.json("data", NAME, "Private DevMode").settings.Papers.map(({ LabelWidth }) => LabelWidth), [580, 503]);
});

test("play, keys: move the focus, edit a field and a list", (t) => {
  const pc = computer(t, NAME);
  const { status, lines } = play(userDefault(pc), [{ page: PAPER_PAGE }, { type: BASE, text: "12" }, { key: "back" }, { expect: BASE, text: "1" },
    { key: "tab" }, { key: "backtab" }, { key: "delete" }, { expect: BASE, text: "" }, { type: BASE, text: "3" },
    { select: PAPERS, index: 0 }, { key: "f4" }, { key: "down" }, { expect: PAPERS, item: "フリーサイズ" }, { key: "up" }, { key: "enter" }, { key: "enter" }]);
  assert.deepEqual([status, lines.at(-1).end, lines.at(-1).record?.private.nVertBase], [0, "ok", 3], JSON.stringify(lines));
});

test("play, a step that is invalid or that no user could perform: fails with the reason, stores nothing", (t) => {
  const pc = computer(t, NAME);
  const before = [pc.json("settings", NAME), pc.json("data", NAME, "Private DevMode")];
  const paper = { page: PAPER_PAGE };
  // The reason, and the steps of which the last one fails.
  const scripts = [
    [/1195 is disabled/, paper, { type: PEEL, text: "1" }],
    [/no control 1099/, { read: BASE }],
    [/1099 is under the window "用紙登録"/, paper, { click: REGISTER }, { click: BASE }],
    [/the sheet is under the window "用紙登録"/, paper, { click: REGISTER }, { button: "ok" }],
    [/the sheet is under the window "用紙登録"/, paper, { click: REGISTER }, paper],
    [/1099 has no items/, paper, { select: BASE, index: 0 }],
    [/either "item" or "index"/, paper, { select: PAPERS, index: 0, item: "" }],
    [/1005 has no such item/, paper, { select: PAPERS, item: "none" }],
    [/1005 has no such item/, paper, { select: PAPERS, index: 2 }],
    [/1005 takes no text/, paper, { type: PAPERS, text: "x" }],
    [/1099 has no arrows/, paper, { spin: BASE, steps: 1 }],
    [/1099: "text" is "5", not "6"/, paper, { type: BASE, text: "5" }, { expect: BASE, text: "6" }],
    [/1099 has no "checked"/, paper, { expect: BASE, checked: true }],
    [/what is expected/, paper, { expect: BASE }],
    [/pages 0 to 5/, { page: 6 }],
    [/an integer/, { page: 2 ** 31 }],
    [/has to be a text/, { key: 1 }],
    [/no such step/, { press: 1 }],
    [/not both/, { page: 1, click: 1 }],
    [/has no "x"/, { page: 1, x: 1 }],
    [/no key "home"/, { key: "home" }],
    [/ok and cancel/, { button: "apply" }],
    [/has to be true/, { close: false }],
    [/no JSON/, "nonsense"],
    [/a JSON object/, "[]"],
    [/cannot be written/, { shot: "/nowhere/x.svg" }],
    [/cannot be written/, paper, { click: REGISTER }, { click: ids.IDOK }, { shot: "/dev/full" }],
    [/had been closed/, paper, { type: BASE, text: "5" }, { button: "ok" }, { page: 0 }],
  ];
  for (const [reason, ...steps] of scripts) {
    const { status, stderr, lines } = play(userDefault(pc), steps);
    assert.deepEqual([status, lines.length, lines.at(-1).ok], [3, steps.length, false], String(reason));
    assert.match(lines.at(-1).reason, reason);
    assert.equal(stderr, `printhost: step ${steps.length}: ${lines.at(-1).reason}\n`);
  }
  for (const steps of [[], [{ key: "escape" }], [{ close: true }], [{ button: "cancel" }]]) {
    const { status, lines } = play(userDefault(pc), steps);
    assert.deepEqual([status, lines.at(-1)], [1, { end: "cancel", record: null }]);
  }
  assert.deepEqual([pc.json("settings", NAME), pc.json("data", NAME, "Private DevMode")], before);
  assert.deepEqual(readdirSync(pc.folder), ["state"], "neither the output file nor its temporary file");
  pc.refused(3, "play", NAME, pc.folder);
});

test("play, each kind of sheet: locked without permission, only user-default stores the printer's settings", (t) => {
  const pc = computer(t, NAME);
  const exitCode = (kind, ...steps) => play(["--state", pc.state, "play", NAME, "--kind", kind], steps).status;
  const paper = { page: PAPER_PAGE };
  for (const [kind, storedBase] of [["document", 0], ["advanced", 0], ["user-default", 7]]) {
    pc.done("machine", "--permission", NAME, "no");
    assert.equal(exitCode(kind, paper, { expect: BASE, enabled: false }), 1, kind);
    pc.done("machine", "--permission", NAME, "yes");
    assert.equal(exitCode(kind, paper, { type: BASE, text: "7" }, { button: "ok" }), 0, kind);
    assert.equal(pc.json("settings", NAME).private.nVertBase, storedBase, kind);
  }
  assert.equal(exitCode("printer", { button: "ok" }), 0);
  assert.equal(exitCode("printer", paper), 3, "the sheet of kind printer has one page");
});
