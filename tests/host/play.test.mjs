// A sheet played by a script: what a person can do, what nobody can, and what is left behind.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { existsSync, readFileSync } from "node:fs";
import { createInterface } from "node:readline";
import { test } from "node:test";

import { computer, program, start } from "../support/printhost.mjs";

const NAME = "Label Printer";
const [REGISTER, PAPERS, BASE, BASE_ARROWS, PEEL, LANDSCAPE, MODE, ASK] = [1046, 1005, 1099, 1101, 1195, 1001, 1135, 1180];
const [PAPER_NAME, WIDTH, WIDTH_ARROWS, HEIGHT, OK] = [1115, 1053, 1102, 1080, 1];
const words = (pc, ...more) => ["--state", pc.state, "play", NAME, "--kind", "user-default", "--out", pc.file("out"), ...more];

test("a program registers a paper through its dialog, a message box and arrows, answer by answer", async (t) => {
  const pc = computer(t, NAME);
  pc.done("device", NAME, "--mode", "peel");
  const { child } = start(t, program, words(pc, "--json"), { stdio: "pipe", cwd: pc.folder });
  const answers = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  let number = 0;
  const say = async (step) => {
    child.stdin.write(`# a comment\n\n${JSON.stringify(step)}\n`);
    const { step: told, ok, ...read } = JSON.parse((await answers.next()).value);
    assert.deepEqual([told, ok], [++number, true], JSON.stringify([step, read]));
    return read;
  };
  for (const step of [{ page: 1 }, { click: REGISTER }, { type: PAPER_NAME, text: "棚札 R&D" }, { type: WIDTH, text: "500" }, { click: OK },
    { expect: "window", title: "用紙登録", message: "ラベルサイズの幅は、 58.0 ㎜ 以下にして下さい。" }, { shot: "message.svg" }, { key: "enter" },
    { type: WIDTH, text: "50.0" }, { spin: WIDTH_ARROWS, steps: 3 }, { expect: WIDTH, text: "50.3" }, { type: HEIGHT, text: "30.0" }, { click: OK }]) await say(step);
  const { items, item, ...rest } = await say({ read: PAPERS });
  assert.deepEqual([items, item, rest], [[item, "棚札 R&D", "フリーサイズ"], "Standard Label 58 x 68 mm", { text: item, visible: true, enabled: true }]);
  for (const step of [{ select: PAPERS, item: items.at(-1) }, { expect: PAPERS, items, item: items.at(-1) }, { select: PAPERS, index: 0 },
    { click: LANDSCAPE }, { expect: LANDSCAPE, checked: true }, { type: BASE, text: "7" }, { spin: BASE_ARROWS, steps: -3 }]) await say(step);
  // What the device says reaches the sheet: the peel offset is for a peel printer.
  for (const step of [{ expect: PEEL, enabled: false }, { page: 3 }, { expect: MODE, item: "ティアオフ" }, { click: ASK }, { key: "enter" }, { expect: MODE, item: "ハクリ" },
    { page: 1 }, { expect: PEEL, enabled: true }]) await say(step);
  const { title, message, controls } = await say({ read: "window" });
  assert.deepEqual([title, message, controls.find(({ id }) => id === BASE).text], ["用紙", null, "4"]);
  await say({ button: "ok" });
  child.stdin.end();
  const { end, record } = JSON.parse((await answers.next()).value);
  assert.deepEqual([end, record.private.nVertBase, record.private.Orient], ["ok", 4, 2]);
  assert.deepEqual([pc.json("settings", NAME), pc.json("settings", NAME, "--in", pc.file("out"))], [record, record]);
  assert.deepEqual(pc.json("data", NAME, "Private DevMode").settings.Papers.map(({ LabelWidth }) => LabelWidth), [580, 503]);
  assert.match(readFileSync(pc.file("message.svg"), "utf8"), /^<svg [^]*58\.0 ㎜ 以下[^]*>!<\/text>[^]*<\/svg>\s*$/);
});

test("what nobody could do fails with its reason, and nothing is stored", (t) => {
  const pc = computer(t, NAME);
  const play = (steps, ...more) => {
    const input = steps.map((step) => (typeof step === "string" ? step : JSON.stringify(step))).join("\n");
    const { status, stdout, stderr } = spawnSync(program, words(pc, ...more), { input, encoding: "utf8" });
    return { status, stderr, lines: stdout.split("\n").filter(Boolean).map((line) => JSON.parse(line)) };
  };
  const before = [pc.json("settings", NAME), pc.json("data", NAME, "Private DevMode")];
  const paper = { page: 1 };
  for (const [reason, ...steps] of [
    [/1195 is disabled/, paper, { type: PEEL, text: "1" }],
    [/no control 1099/, { read: BASE }],
    [/1099 is under the window "用紙登録"/, paper, { click: REGISTER }, { click: BASE }],
    [/the sheet is under the window "用紙登録"/, paper, { click: REGISTER }, { button: "ok" }],
    [/the sheet is under the window "用紙登録"/, paper, { click: REGISTER }, paper],
    [/1099 has no items/, paper, { select: BASE, index: 0 }], [/either "item" or "index"/, paper, { select: PAPERS, index: 0, item: "" }],
    ...[{ item: "none" }, { index: -1 }, { index: 2 }].map((choice) => [/1005 has no such item/, paper, { select: PAPERS, ...choice }]),
    [/1005 takes no text/, paper, { type: PAPERS, text: "x" }],
    [/1099 has no arrows/, paper, { spin: BASE, steps: 1 }], [/between -1000 and 1000/, paper, { spin: BASE_ARROWS, steps: 1001 }],
    [/1099: "text" is "5", not "6"/, paper, { type: BASE, text: "5" }, { expect: BASE, text: "6" }],
    [/1099 has no "checked"/, paper, { expect: BASE, checked: true }], [/what is expected/, paper, { expect: BASE }],
    [/pages 0 to 5/, { page: 6 }], [/pages 0 to 5/, { page: -1 }],
    [/an integer/, { page: "1" }], [/an integer/, { page: 2 ** 31 }], [/has to be a text/, { key: 1 }],
    [/no such step/, { press: 1 }], [/not both/, { page: 1, click: 1 }], [/has no "x"/, { page: 1, x: 1 }],
    [/no key "home"/, { key: "home" }], [/ok and cancel/, { button: "apply" }], [/has to be true/, { close: false }],
    [/no JSON/, "nonsense"], [/a JSON object/, "[]"], [/cannot be written/, { shot: "/nowhere/x.svg" }],
    [/had been closed/, paper, { type: BASE, text: "5" }, { button: "ok" }, { page: 0 }],
  ]) {
    const { status, stderr, lines } = play(steps);
    assert.deepEqual([status, lines.length, lines.at(-1).ok], [3, steps.length, false], String(reason));
    assert.match(lines.at(-1).reason, reason);
    assert.equal(stderr, `printhost: step ${steps.length}: ${lines.at(-1).reason}\n`);
  }
  for (const steps of [[], [{ key: "escape" }], [{ close: true }], [{ button: "cancel" }]])
    assert.deepEqual([play(steps, "--json").lines.at(-1), play(steps).status], [{ end: "cancel", record: null }, 1]);
  assert.deepEqual([pc.json("settings", NAME), pc.json("data", NAME, "Private DevMode")], before);
  assert.ok(!existsSync(pc.file("out")));
  pc.refused(3, "play", NAME, pc.folder);
});

test("machine --permission no locks the sheets of every document kind", (t) => {
  const pc = computer(t, NAME);
  const locked = (kind, enabled) => {
    const input = [{ page: 3 }, { expect: MODE, enabled }, { button: "cancel" }].map((step) => JSON.stringify(step)).join("\n");
    const { status, stderr } = spawnSync(program, ["--state", pc.state, "play", NAME, "--kind", kind], { input, encoding: "utf8" });
    assert.deepEqual([status, stderr], [1, ""], kind);
  };
  for (const permission of ["no", "yes"]) {
    pc.done("machine", "--permission", NAME, permission);
    for (const kind of ["document", "advanced", "user-default"]) locked(kind, permission === "yes");
  }
});
