// What a sheet leaves: kept before the page is told, told when it could not be kept, and no page's
// coming or going loses it.
import assert from "node:assert/strict";
import { spawn, spawnSync } from "node:child_process";
import { once } from "node:events";
import { mkdirSync, openSync, readFileSync, rmSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { setTimeout as sleep } from "node:timers/promises";

import { page } from "../support/driving.mjs";
import { computer, program } from "../support/printhost.mjs";

const PRINTER = "Label Printer";
const ROUNDS = Number(process.env.ROUNDS ?? 5);
const [PAPER, VERTICAL_BASE, OK_BUTTON] = [1, 1099, 1];
const [REGISTER, NAME, WIDTH, HEIGHT] = [1046, 1115, 1053, 1080];
const OK = { action: "press", button: "ok" };

function installed(t) {
  const pc = computer(t);
  assert.equal(pc.run("add", PRINTER).status, 0);
  return pc;
}

// A sheet in which the vertical base has been changed.
async function changed(pc, base, ...words) {
  const sheet = pc.start("sheet", PRINTER, "--kind", "user-default", ...words);
  const one = await page(await sheet.address);
  await one.act({ action: "page", index: PAPER });
  await one.act({ action: "edit", id: VERTICAL_BASE, text: String(base) });
  return { sheet, one, ...one };
}

const kept = (pc) => pc.json("settings", PRINTER).private.nVertBase;
const message = ({ windows }) => windows?.at(-1).kind === "message" && windows.at(-1).controls.map(({ text }) => text).join(" ");

function inTime(t, what, start, limit) {
  const time = performance.now() - start;
  t.diagnostic(`${what}: ${time.toFixed(0)} ms`);
  assert.ok(time < limit, `${what}: ${time} ms`);
}

// Another program that holds the computer's database until it is let go.
async function locked(t, pc, mode) {
  const code = `import sqlite3, sys
c = sqlite3.connect(sys.argv[1], isolation_level=None)
c.execute("PRAGMA locking_mode = " + sys.argv[2])
c.execute("BEGIN EXCLUSIVE")
print("held", flush=True)
sys.stdin.read()`;
  const child = spawn("python3", ["-c", code, join(pc.state, "computer.sqlite"), mode], { stdio: ["pipe", "pipe", "inherit"] });
  t.after(() => child.kill("SIGKILL"));
  await once(child.stdout, "data");
  return async () => {
    child.stdin.end();
    await once(child, "exit");
  };
}

test("a value that the page was told of outlives a kill", async (t) => {
  const pc = installed(t);
  for (let round = 1; round <= ROUNDS; ++round) {
    const { sheet, act, ended } = await changed(pc, round, "--out", pc.file("out"));
    const done = ended().then(({ end }) => (sheet.child.kill("SIGKILL"), end));
    act(OK).catch(() => {});
    assert.equal(await done, "ok");
    await sheet.ended;
    assert.equal(kept(pc), round);
    pc.run("settings", PRINTER, "--out", pc.file("own"));
    assert.ok(readFileSync(pc.file("out")).equals(readFileSync(pc.file("own"))));
  }
  t.diagnostic(`${ROUNDS} rounds`);
});

test("what cannot be kept is told, and OK may be pressed again", async (t) => {
  const pc = installed(t);
  const folder = pc.file("folder");
  assert.equal(pc.run("sheet", PRINTER, "--out", join(folder, "out")).status, 3);
  mkdirSync(folder);
  const { sheet, act } = await changed(pc, 7, "--out", join(folder, "out"), "--json");
  rmSync(folder, { recursive: true });
  assert.match(message(await act(OK)), /保存できませんでした.*folder\/out cannot be written: No such file/s);
  mkdirSync(folder);
  await act({ action: "click", id: OK_BUTTON });
  assert.equal((await act(OK)).end, "ok");
  const { status, output } = await sheet.ended;
  assert.deepEqual([status, JSON.parse(output).private.nVertBase, kept(pc)], [0, 7, 7]);
  assert.equal(readFileSync(join(folder, "out")).length, 452);

  const full = await changed(pc, 8, "--out", "/dev/full");
  assert.match(message(await full.act(OK)), /No space left/);
  await full.act({ action: "click", id: OK_BUTTON });
  assert.match((await full.act({ action: "press", button: "cancel" })).reason, /No space left/);
  const { status: failed, errors } = await full.sheet.ended;
  assert.equal(failed, 3);
  assert.match(errors, /^printhost: .*No space left.*\n$/);

  const removed = await changed(pc, 9);
  pc.run("remove", PRINTER);
  const last = await removed.act(OK);
  assert.deepEqual([last.end, (await removed.sheet.ended).status], ["failed", 3]);
  assert.match(last.reason, /removed/);
});

test("a locked database is told within five seconds, and the sheet outlasts it", async (t) => {
  const pc = installed(t);
  for (const [mode, ...words] of [["EXCLUSIVE", "list"], ["NORMAL", "add", "b"]]) {
    const release = await locked(t, pc, mode);
    const start = performance.now();
    const { status, stderr } = pc.run(...words);
    assert.equal(status, 3);
    assert.match(stderr, /^printhost: .*locked; .*\n$/);
    inTime(t, words[0], start, 5000);
    await release();
  }
  const { sheet, act } = await changed(pc, 5);
  await act({ action: "click", id: REGISTER });
  for (const [id, text] of [[NAME, "棚札"], [WIDTH, "50.0"], [HEIGHT, "30.0"]]) await act({ action: "edit", id, text });
  await act({ action: "click", id: OK_BUTTON });
  const release = await locked(t, pc, "NORMAL");
  const pressed = performance.now();
  assert.match(message(await act(OK)), /保存できませんでした.*locked/s);
  inTime(t, "OK", pressed, 5000);
  await release();
  await act({ action: "click", id: OK_BUTTON });
  assert.equal((await act(OK)).end, "ok");
  assert.deepEqual([(await sheet.ended).status, kept(pc)], [0, 5]);
  assert.ok(pc.json("caps", PRINTER).DC_PAPERNAMES.output.includes("棚札"));
});

test("a page comes back to its sheet, and two pages count for themselves", async (t) => {
  const pc = installed(t);
  const { sheet, one } = await changed(pc, 3);
  one.leave();
  await sleep(1500); // three tries of a browser
  const other = await page(one.url, "other");
  assert.equal((await other.until(({ windows }) => windows)).handled.test, 2);
  const { handled, windows } = await other.act({ action: "edit", id: VERTICAL_BASE, text: "34" });
  assert.deepEqual(handled, { test: 2, other: 1 });
  assert.equal(windows.at(-1).page.controls.find(({ id }) => id === VERTICAL_BASE).text, "34");
  other.leave();
  const start = performance.now();
  assert.equal((await sheet.ended).status, 1);
  assert.ok(performance.now() - start > 1500);
});

test("a signal ends a sheet at every stage, and no stage hangs", async (t) => {
  const pc = installed(t);
  const full = spawnSync(program, ["--state", pc.state, "sheet", PRINTER], { stdio: ["ignore", openSync("/dev/full", "w"), "pipe"], timeout: 5000 });
  assert.equal(full.status, 3);
  assert.match(String(full.stderr), /^printhost: .+\n$/);
  const pipe = pc.file("pipe");
  spawnSync("mkfifo", [pipe]);
  const { sheet, act } = await changed(pc, 4, "--out", pipe);
  const start = performance.now();
  assert.match(message(await act(OK)), /nobody reads it/);
  inTime(t, "no reader", start, 5000);
  await act({ action: "click", id: OK_BUTTON });
  const reader = spawn("cat", [pipe], { stdio: ["ignore", "pipe", "inherit"] });
  const bytes = once(reader.stdout, "data");
  assert.equal((await act(OK)).end, "ok");
  assert.equal((await bytes)[0].length, 452);
  assert.equal((await sheet.ended).status, 0);
  for (const signal of ["SIGTERM", "SIGINT", "SIGHUP"]) {
    const waiting = pc.start("sheet", PRINTER);
    await waiting.address;
    const asked = performance.now();
    waiting.child.kill(signal);
    assert.equal((await waiting.ended).status, 1);
    inTime(t, signal, asked, 1000);
  }
});
