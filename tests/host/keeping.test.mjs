// What a sheet leaves is kept before its page is told of it.
import assert from "node:assert/strict";
import { spawn, spawnSync } from "node:child_process";
import { once } from "node:events";
import { mkdirSync, openSync, readdirSync, readFileSync, rmSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { setImmediate as immediately } from "node:timers/promises";

import { page } from "../support/driving.mjs";
import { computer, LIMIT, program, start } from "../support/printhost.mjs";

const PRINTER = "Label Printer";
const ROUNDS = Number(process.env.ROUNDS ?? 5);
const [PAPER, VERTICAL_BASE, OK_BUTTON] = [1, 1099, 1];
const [REGISTER, NAME, WIDTH, HEIGHT] = [1046, 1115, 1053, 1080];
const OK = { action: "press", button: "ok" };

// A sheet in which the vertical base has been changed.
async function changed(pc, base, ...words) {
  const sheet = pc.start("sheet", PRINTER, "--kind", "user-default", ...words);
  const one = await page(await sheet.address);
  await one.act({ action: "page", index: PAPER });
  await one.act({ action: "edit", id: VERTICAL_BASE, text: String(base) });
  return { sheet, ...one };
}

const kept = (pc) => pc.json("settings", PRINTER).private.nVertBase;
const message = ({ windows }) => windows?.at(-1).kind === "message" && windows.at(-1).controls.map(({ text }) => text).join(" ");

// Another program that holds the computer's database until it is let go.
async function locked(t, pc, mode) {
  const code = "import sqlite3, sys; c = sqlite3.connect(sys.argv[1]); c.executescript(sys.argv[2]); print(flush=True); sys.stdin.read()";
  const words = ["-c", code, join(pc.state, "computer.sqlite"), `PRAGMA locking_mode = ${mode}; BEGIN EXCLUSIVE`];
  const { child, ended } = start(t, "python3", words, { stdio: "pipe" });
  await once(child.stdout, "data");
  return () => (child.stdin.end(), ended);
}

test("a value that the page was told of outlives a kill", async (t) => {
  const pc = computer(t, PRINTER);
  for (let round = 1; round <= ROUNDS; ++round) {
    const { sheet, act, ended } = await changed(pc, round, "--out", pc.file("out"));
    const done = ended().then(({ end }) => (sheet.child.kill("SIGKILL"), end));
    act(OK).catch(() => {});
    assert.equal(await done, "ok");
    await sheet.ended;
    assert.equal(kept(pc), round);
    pc.done("settings", PRINTER, "--out", pc.file("own"));
    assert.deepEqual(readFileSync(pc.file("out")), readFileSync(pc.file("own")));
  }
});

test("what cannot be kept is reported in Japanese, and OK may be pressed again", async (t) => {
  const pc = computer(t, PRINTER);
  const [folder, pipe] = [pc.file("folder"), pc.file("pipe")];
  spawnSync("mkfifo", [pipe]);
  pc.refused(3, "sheet", PRINTER, "--out", join(folder, "out"));
  mkdirSync(folder);
  const hindrances = [
    [/folder\/outに書き込めません。そのフォルダはありません。/, join(folder, "out"), () => (rmSync(folder, { recursive: true }), () => mkdirSync(folder))],
    [/読み取るプログラムがありません。/, pipe, () => () => spawn("cat", [pipe], { stdio: ["ignore", openSync(pc.file("read"), "w"), "inherit"] })],
    [/ほかのプログラムが computer.sqlite を使用しています。/, pc.file("out"), () => locked(t, pc, "NORMAL")],
  ];
  for (const [base, [reason, out, hinder]] of hindrances.entries()) {
    const { sheet, act } = await changed(pc, base, "--out", out, "--json");
    await act({ action: "click", id: REGISTER });
    for (const [id, text] of [[NAME, `棚札 ${base}`], [WIDTH, "50.0"], [HEIGHT, "30.0"]]) await act({ action: "edit", id, text });
    await act({ action: "click", id: OK_BUTTON });
    const mend = await hinder();
    assert.match(message(await act(OK)), new RegExp(`保存できませんでした.*${reason.source}`, "s"));
    await mend();
    await act({ action: "click", id: OK_BUTTON });
    assert.equal((await act(OK)).end, "ok");
    const { status, output } = await sheet.ended;
    assert.deepEqual([status, JSON.parse(output).private.nVertBase, kept(pc)], [0, base, base]);
    assert.equal(readFileSync(out === pipe ? pc.file("read") : out).length, 452);
  }
  assert.deepEqual(pc.json("caps", PRINTER).DC_PAPERNAMES.output.slice(1, 4), ["棚札 0", "棚札 1", "棚札 2"]);

  const full = await changed(pc, 8, "--out", "/dev/full");
  await full.act(OK);
  await full.act({ action: "click", id: OK_BUTTON });
  assert.notEqual(kept(pc), 8);
  const removed = await changed(pc, 9);
  pc.done("remove", PRINTER);
  for (const [{ sheet, act }, last, why, japanese] of [[full, { ...OK, button: "cancel" }, /No space left/, /^\/dev\/fullに書き込めません。ディスクの空き容量がありません。$/],
    [removed, OK, /removed/, /^プリンタが削除された/]]) {
    const { end, reason, japanese: shown } = await act(last);
    const { status, errors } = await sheet.ended;
    assert.deepEqual([end, status, errors], ["failed", 3, `printhost: ${reason}\n`]);
    assert.match(reason, why);
    assert.match(shown, japanese);
  }

  for (const [mode, ...words] of [["EXCLUSIVE", "list"], ["NORMAL", "add", "b"]]) {
    const release = await locked(t, pc, mode);
    assert.match(pc.refused(3, ...words), /locked; /);
    await release();
  }
});

test("a page comes back to its sheet, two pages count for themselves, the last one's leaving or a signal ends it", async (t) => {
  const pc = computer(t, PRINTER);
  const { sheet, url, leave } = await changed(pc, 3);
  // The page comes back after the server has noticed that it left: one connection less.
  const connections = () => readdirSync(`/proc/${sheet.child.pid}/fd`).length;
  const before = connections();
  leave();
  while (connections() >= before) await immediately();
  const other = await page(url, "other");
  const { handled, windows } = await other.act({ action: "edit", id: VERTICAL_BASE, text: "34" });
  assert.deepEqual([handled, windows[0].page.controls.find(({ id }) => id === VERTICAL_BASE).text], [{ test: 2, other: 1 }, "34"]);
  other.leave();
  assert.equal((await sheet.ended).status, 1);
  for (const signal of ["SIGTERM", "SIGINT", "SIGHUP"]) {
    const waiting = pc.start("sheet", PRINTER);
    await waiting.address;
    waiting.child.kill(signal);
    assert.equal((await waiting.ended).status, 1, signal);
  }
  const full = spawnSync(program, ["--state", pc.state, "sheet", PRINTER], { stdio: ["ignore", openSync("/dev/full", "w"), "pipe"], timeout: LIMIT });
  assert.equal(full.status, 3);
  assert.match(String(full.stderr), /^printhost: .+\n$/);
});
