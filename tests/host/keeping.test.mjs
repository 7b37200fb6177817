// What a sheet stores, when its page and its caller learn of it, and how it ends.
import assert from "node:assert/strict";
import { spawn, spawnSync } from "node:child_process";
import { once } from "node:events";
import { mkdirSync, openSync, readdirSync, readFileSync, rmSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { setImmediate as nextTurn } from "node:timers/promises";

import { openPage } from "../support/driving.mjs";
import { computer, LIMIT, program, start } from "../support/printhost.mjs";
import { ids } from "../support/resource_ids.mjs";

const PRINTER = "Label Printer";
const ROUNDS = Number(process.env.ROUNDS ?? 5);
const PAPER_PAGE = 1;
const OK = { action: "press", button: "ok" };
const CLOSE_MESSAGE = { action: "click", id: ids.IDOK };

// Opens a user-default sheet and changes the vertical base.
async function openChanged(pc, base, ...options) {
  const sheet = pc.start("sheet", PRINTER, "--kind", "user-default", ...options);
  const driver = await openPage(await sheet.address);
  await driver.act({ action: "page", index: PAPER_PAGE });
  await driver.act({ action: "edit", id: ids.IDC_PAPER_VERT_BASE, text: String(base) });
  return { sheet, ...driver };
}

const storedBase = (pc) => pc.json("settings", PRINTER).private.nVertBase;
const messageText = ({ windows }) => windows?.at(-1).kind === "message" && windows.at(-1).controls.map(({ text }) => text).join(" ");

// Locks the computer's database in another process; returns a function that unlocks it.
async function lockDatabase(t, pc) {
  const code = "import sqlite3, sys; c = sqlite3.connect(sys.argv[1]); c.executescript(sys.argv[2]); print(flush=True); sys.stdin.read()";
  const parameters = ["-c", code, join(pc.state, "computer.sqlite"), "BEGIN EXCLUSIVE"];
  const { child, ended } = start(t, "python3", parameters, { stdio: "pipe" });
  await once(child.stdout, "data");
  return () => (child.stdin.end(), ended);
}

test("sheet: settings that the page reported as saved survive a kill", async (t) => {
  const pc = computer(t, PRINTER);
  for (let round = 1; round <= ROUNDS; ++round) {
    const { sheet, act, ended } = await openChanged(pc, round, "--out", pc.file("out"));
    const done = ended().then(({ end }) => (sheet.child.kill("SIGKILL"), end));
    act(OK).catch(() => {});
    assert.equal(await done, "ok");
    await sheet.ended;
    assert.equal(storedBase(pc), round);
    pc.done("settings", PRINTER, "--out", pc.file("own"));
    assert.deepEqual(readFileSync(pc.file("out")), readFileSync(pc.file("own")));
  }
});

test("sheet: a save error is shown in Japanese, the sheet stays open, and OK may be pressed again", async (t) => {
  const pc = computer(t, PRINTER);
  const [folder, pipe] = [pc.file("folder"), pc.file("pipe")];
  spawnSync("mkfifo", [pipe]);
  pc.refused(3, "sheet", PRINTER, "--out", join(folder, "out"));
  mkdirSync(folder);
  // The reason shown, the output file, where its bytes arrive, and how the error is caused; that returns how it is resolved.
  const errors = [
    [/folder\/outに書き込めません。そのフォルダはありません。/, join(folder, "out"), join(folder, "out"),
      () => (rmSync(folder, { recursive: true }), () => mkdirSync(folder))],
    [/読み取るプログラムがありません。/, pipe, pc.file("read"),
      () => () => spawn("cat", [pipe], { stdio: ["ignore", openSync(pc.file("read"), "w"), "inherit"] })],
    [/ほかのプログラムが computer.sqlite を使用しています。/, pc.file("out"), pc.file("out"), () => lockDatabase(t, pc)],
  ];
  for (const [base, [reason, out, received, cause]] of errors.entries()) {
    const { sheet, act } = await openChanged(pc, base, "--out", out, "--json");
    const resolve = await cause();
    assert.match(messageText(await act(OK)), new RegExp(`保存できませんでした.*${reason.source}`, "s"));
    await resolve();
    await act(CLOSE_MESSAGE);
    assert.equal((await act(OK)).end, "ok");
    const { status, output } = await sheet.ended;
    assert.deepEqual([status, JSON.parse(output).private.nVertBase, storedBase(pc)], [0, base, base]);
    assert.equal(readFileSync(received).length, 452);
  }
});

test("sheet: an error that stays is reported to the page and the caller, nothing is stored", async (t) => {
  const pc = computer(t, PRINTER);
  const full = await openChanged(pc, 8, "--out", "/dev/full");
  await full.act(OK);
  await full.act(CLOSE_MESSAGE);
  assert.equal(storedBase(pc), 0);
  const removed = await openChanged(pc, 9);
  pc.done("remove", PRINTER);
  for (const [{ sheet, act }, last, reason, japanese] of [
    [full, { ...OK, button: "cancel" }, /No space left/, /^\/dev\/fullに書き込めません。ディスクの空き容量がありません。$/],
    [removed, OK, /removed/, /^プリンタが削除された/],
  ]) {
    const shown = await act(last);
    const { status, errors } = await sheet.ended;
    assert.deepEqual([shown.end, status, errors], ["failed", 3, `printhost: ${shown.reason}\n`]);
    assert.match(shown.reason, reason);
    assert.match(shown.japanese, japanese);
  }
});

test("sheet: a page reconnects, each page counts its own actions, the last one's leaving or a signal cancels", async (t) => {
  const pc = computer(t, PRINTER);
  const { sheet, url, leave } = await openChanged(pc, 3);
  // The page comes back after the server has noticed that it left: one connection less.
  const connections = () => readdirSync(`/proc/${sheet.child.pid}/fd`).length;
  const before = connections();
  leave();
  while (connections() >= before) await nextTurn();
  const other = await openPage(url, "other");
  const { handled, windows } = await other.act({ action: "edit", id: ids.IDC_PAPER_VERT_BASE, text: "34" });
  assert.deepEqual(handled, { test: 2, other: 1 });
  assert.equal(windows[0].page.controls.find(({ id }) => id === ids.IDC_PAPER_VERT_BASE).text, "34");
  other.leave();
  assert.equal((await sheet.ended).status, 1);
  for (const signal of ["SIGTERM", "SIGINT", "SIGHUP"]) {
    const waiting = pc.start("sheet", PRINTER);
    await waiting.address;
    waiting.child.kill(signal);
    assert.equal((await waiting.ended).status, 1, signal);
  }
  const { status, stderr } = spawnSync(program, ["--state", pc.state, "sheet", PRINTER], { stdio: ["ignore", openSync("/dev/full", "w"), "pipe"], timeout: LIMIT });
  assert.deepEqual([status, String(stderr).split("\n").length], [3, 2]);
});
