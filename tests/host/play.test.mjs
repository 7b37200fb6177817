// A sheet played by a script: what a person can do, what nobody can, and what is left behind.
import assert from "node:assert/strict";
import { spawn, spawnSync } from "node:child_process";
import { existsSync, readFileSync } from "node:fs";
import { createInterface } from "node:readline";
import { test } from "node:test";

import { computer, program } from "../support/printhost.mjs";

const NAME = "Label Printer";
const [REGISTER, PAPERS, BASE, BASE_ARROWS, PEEL] = [1046, 1005, 1099, 1101, 1195];
const [PAPER_NAME, WIDTH, WIDTH_ARROWS, HEIGHT, OK] = [1115, 1053, 1102, 1080, 1];

// Plays steps on a computer; answers the exit code and each line.
function player(t) {
  const pc = computer(t);
  assert.equal(pc.run("add", NAME).status, 0);
  const play = (steps, ...words) => {
    const input = steps.map((step) => (typeof step === "string" ? step : JSON.stringify(step))).join("\n");
    const { status, stdout, stderr } = spawnSync(program, ["--state", pc.state, "play", NAME, ...words], { input, encoding: "utf8", cwd: pc.folder });
    return { status, stderr, lines: stdout.split("\n").filter(Boolean).map((line) => JSON.parse(line)) };
  };
  return { pc, play };
}

test("a paper is registered through its dialog, its message box and the arrows", (t) => {
  const { pc, play } = player(t);
  const { status, lines } = play([{ page: 1 }, { click: REGISTER }, { type: PAPER_NAME, text: "棚札 R&D" }, { type: WIDTH, text: "500" }, { click: OK },
    { expect: "window", title: "用紙登録", message: "ラベルサイズの幅は、 58.0 ㎜ 以下にして下さい。" }, { shot: "message.svg" }, { key: "enter" },
    { type: WIDTH, text: "50.0" }, { spin: WIDTH_ARROWS, steps: 3 }, { expect: WIDTH, text: "50.3" }, { type: HEIGHT, text: "30.0" },
    { click: OK }, { read: PAPERS }, { type: BASE, text: "7" }, { spin: BASE_ARROWS, steps: -3 }, { button: "ok" }], "--kind", "user-default", "--json", "--out", "out");
  assert.deepEqual(lines.slice(0, 17).map(({ step, ok }) => [step, ok]), Array.from({ length: 17 }, (_, i) => [i + 1, true]));
  assert.ok(lines[13].items.includes("棚札 R&D"));
  const { end, record } = lines.at(-1);
  assert.deepEqual([status, end, record.private.nVertBase], [0, "ok", 4]);
  assert.deepEqual([pc.json("settings", NAME), pc.json("settings", NAME, "--in", pc.file("out"))], [record, record]);
  assert.ok(pc.json("caps", NAME).DC_PAPERNAMES.output.includes("棚札 R&D"));
  assert.match(readFileSync(pc.file("message.svg"), "utf8"), /^<svg [^]*58\.0 ㎜ 以下[^]*<\/svg>\s*$/);
});

test("what nobody could do fails with its reason, and nothing is stored", (t) => {
  const { pc, play } = player(t);
  const before = [pc.json("settings", NAME), pc.json("data", NAME, "Private DevMode")];
  const paper = { page: 1 };
  for (const [reason, ...steps] of [
    [/1195 is disabled/, paper, { type: PEEL, text: "1" }],
    [/no control 1099/, { read: BASE }],
    [/1099 is under the window "用紙登録"/, paper, { click: REGISTER }, { click: BASE }],
    [/the sheet is under the window "用紙登録"/, paper, { click: REGISTER }, { button: "ok" }],
    [/1099 has no items/, paper, { select: BASE, index: 0 }],
    [/1005 has no such item/, paper, { select: PAPERS, item: "none" }],
    [/1005 has no such item/, paper, { select: PAPERS, index: -1 }],
    [/1005 takes no text/, paper, { type: PAPERS, text: "x" }],
    [/1099 has no arrows/, paper, { spin: BASE, steps: 1 }],
    [/1099: "text" is "5", not "6"/, paper, { type: BASE, text: "5" }, { expect: BASE, text: "6" }],
    [/1099 has no "checked"/, paper, { expect: BASE, checked: true }],
    [/pages 0 to 5/, { page: 6 }],
    [/no such step/, { press: 1 }],
    [/not both/, { page: 1, click: 1 }],
    [/has no "x"/, { page: 1, x: 1 }],
    [/has to be an integer/, { page: "1" }],
    [/no JSON/, "nonsense"],
    [/cannot be written/, { shot: "/nowhere/x.svg" }],
    [/had been closed/, paper, { type: BASE, text: "5" }, { button: "ok" }, { page: 0 }],
  ]) {
    const { status, stderr, lines } = play(steps, "--kind", "user-default", "--out", "out");
    assert.deepEqual([status, lines.length, lines.at(-1).ok], [3, steps.length, false], String(reason));
    assert.match(lines.at(-1).reason, reason);
    assert.equal(stderr, `printhost: step ${steps.length}: ${lines.at(-1).reason}\n`);
  }
  for (const steps of [[], [{ key: "escape" }], [{ close: true }], [{ button: "cancel" }]])
    assert.deepEqual([play(steps, "--json").lines.at(-1), play(steps).status], [{ end: "cancel", record: null }, 1]);
  assert.deepEqual([pc.json("settings", NAME), pc.json("data", NAME, "Private DevMode")], before);
  assert.ok(!existsSync(pc.file("out")));
  assert.equal(play([], pc.folder).status, 3);
});

test("a program decides by each answer", async (t) => {
  const { pc } = player(t);
  const child = spawn(program, ["--state", pc.state, "play", NAME], { stdio: ["pipe", "pipe", "inherit"] });
  const answers = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  const say = async (step) => (child.stdin.write(`${JSON.stringify(step)}\n`), JSON.parse((await answers.next()).value));
  await say({ page: 1 });
  const { items } = await say({ read: PAPERS });
  assert.equal((await say({ select: PAPERS, item: items.at(-1) })).ok, true);
  assert.equal((await say({ read: PAPERS })).item, items.at(-1));
  assert.equal((await say({ button: "ok" })).ok, true);
  child.stdin.end();
});

test("the documented script gives the documented answers", (t) => {
  const pc = computer(t);
  const text = readFileSync(new URL("../../docs/driving-a-sheet.md", import.meta.url), "utf8");
  const blocks = [...text.matchAll(/^```\w*\n([^]*?)^```$/gm)].map(([, code]) => code);
  const code = blocks.find((block) => block.includes("STEPS")).replaceAll("./run", program).replaceAll("/tmp/pc", pc.state);
  const { status, stdout } = spawnSync("bash", ["-ec", code], { cwd: pc.folder, encoding: "utf8" });
  assert.deepEqual([status, stdout], [0, blocks.find((block) => block.startsWith('{"step":1'))]);
  assert.match(readFileSync(pc.file("page.svg"), "utf8"), /^<svg /);
  assert.equal(pc.json("settings", NAME, "--in", pc.file("moved.dm")).private.nHorzBase, 3);
});
