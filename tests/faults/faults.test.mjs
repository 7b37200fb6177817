// What is kept when processes are killed, the disk is full or many write at once: the old or the new,
// never a mixture, and nothing that was confirmed is lost. Each tells one line of result; KILLS=1000
// PROCESSES=50 for the long form.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { existsSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { test } from "node:test";
import { setTimeout as sleep } from "node:timers/promises";
import { fileURLToPath } from "node:url";

import { page } from "../support/driving.mjs";
import { computer, program, start } from "../support/printhost.mjs";

const PRINTER = "Label Printer";
const KILLS = Number(process.env.KILLS ?? 40);
const PROCESSES = Number(process.env.PROCESSES ?? 10);
const [PAPER, UTILITY, BASE, FILE, SAVE, OK] = [1, 5, 1099, 1176, 1060, 1];
const BASE_IN_RECORD = 384;

// A computer, and of each operation: how one that keeps a number begins, by which words it confirms,
// what is kept, and what is to be.
function prepared(t) {
  const pc = computer(t, PRINTER);
  const [backup, disk] = [pc.file("b.ini"), pc.file("full.so")];
  execFileSync("cc", ["-shared", "-fPIC", "-o", disk, fileURLToPath(new URL("full_disk.c", import.meta.url))]);
  const run = (words, env, stdin = "ignore") => start(t, program, ["--state", pc.state, ...words], { env: { ...process.env, ...env }, stdio: [stdin, "pipe", "pipe"] });
  // A sheet of which all but the last step has been done.
  const play = async (env, ...steps) => {
    const sheet = run(["play", PRINTER, "--kind", "user-default", "--json"], env, "pipe");
    const script = steps.map((step) => `${JSON.stringify(step)}\n`);
    let answers = "";
    const ready = new Promise((resolve) => sheet.child.stdout.on("data", (text) => (answers += text).split("\n").length >= script.length && resolve()));
    sheet.child.stdin.on("error", () => {}).write(script.slice(0, -1).join(""));
    await Promise.race([ready, sheet.ended]);
    sheet.child.stdin.end(script.at(-1));
    return sheet;
  };
  const edited = (number) => [{ page: PAPER }, { type: BASE, text: String(number) }];
  const record = () => (pc.done("settings", PRINTER, "--out", pc.file("own")), readFileSync(pc.file("own"), "latin1"));
  const first = Buffer.from(record(), "latin1");
  const wanted = (number) => (first.writeInt16LE(number, BASE_IN_RECORD), first.toString("latin1"));
  const given = (number, file = pc.file("in")) => (writeFileSync(file, wanted(number), "latin1"), ["set-default", PRINTER, "--in", file]);
  const data = (name) => pc.done("data", name, "--json");
  const installed = data(PRINTER);
  const operations = {
    add: { begin: (number, env) => run(["add", `p${number}`], env), kept: (number) => (pc.json("list").some(({ name }) => name === `p${number}`) ? data(`p${number}`) : ""), wanted: () => installed },
    "set-default": { begin: (number, env) => run(given(number), env), kept: record, wanted },
    OK: { begin: (number, env) => play(env, ...edited(number), { button: "ok" }), confirms: '"end":"ok"', kept: record, wanted },
    save: {
      begin: (number, env) => play(env, ...edited(number), { page: UTILITY }, { type: FILE, text: `Z:${backup.replaceAll("/", "\\")}` }, { click: SAVE }),
      confirms: '"step":5,"ok":true', kept: () => (existsSync(backup) ? readFileSync(backup, "latin1") : ""),
      wanted: (number, whole) => whole.replace(/^(VerticalBase=)\d+/m, `$1${number}`),
    },
  };
  return { pc, disk, record, wanted, given, data, operations };
}

// Does each operation again and again, hindered as long as the hindrance answers how it ended, and
// tells what was kept.
async function hinder(t, what, hindrance) {
  for (const name of ["add", "set-default", "OK", "save"]) {
    const { operations, ...rest } = prepared(t);
    const { begin, confirms = "", kept, wanted } = operations[name];
    const counts = { confirmed: 0, new: 0, old: 0, between: 0, torn: 0, lost: 0 };
    const { ended } = await begin(0);
    const began = performance.now();
    await ended;
    const [time, whole] = [performance.now() - began, kept(0)];
    for (let round = 1, old = whole; ; ++round) {
      if (name === "add") old = "";
      const end = await hindrance({ begin, round, time, ...rest });
      if (!end) break;
      const [now, all] = [kept(round), wanted(round, whole)];
      const confirmed = confirms ? end.output.includes(confirms) : end.status === 0;
      // A save writes key by key, and what it confirms on a full disk are the driver's own keys.
      const known = new Set(`${old}\n${all}`.split("\n"));
      const between = name === "save" && now.split("\n").every((line) => known.has(line));
      counts.confirmed += confirmed;
      ++counts[now === all ? "new" : confirmed && !(between && end.status) ? "lost" : now === old ? "old" : between ? "between" : "torn"];
      old = now;
    }
    t.diagnostic(`${what}, ${name}: ${Object.entries(counts).map(([kind, count]) => `${count} ${kind}`).join(", ")}`);
    assert.deepEqual([counts.torn, counts.lost], [0, 0]);
    assert.ok(counts.new > 0);
  }
}

test("a kill -9 at any moment", (t) =>
  hinder(t, "kill -9", async ({ begin, round, time }) => {
    if (round > KILLS / 4 + 1) return undefined;
    const { child, ended } = await begin(round);
    await sleep(Math.random() * time);
    if (round <= KILLS / 4) child.kill("SIGKILL"); // the last one has its way
    return ended;
  }));

test("a disk that is full from the n-th write on", (t) => {
  let n;
  return hinder(t, "full disk", async ({ begin, round, pc, disk }) => {
    const mark = pc.file("mark");
    if (round > 1 && !existsSync(mark)) return undefined;
    rmSync(mark, { force: true });
    n = round === 1 ? 1 : KILLS >= 1000 ? round : Math.ceil(n * 1.3);
    return (await begin(round, { LD_PRELOAD: disk, FULL_FROM: n, FULL_MARK: mark })).ended;
  });
});

test("a full disk at OK: the page tells, the sheet stays, nothing is half kept", async (t) => {
  const { pc, disk, record, wanted, data } = prepared(t);
  const [before, full] = [[record(), data(PRINTER)], pc.file("full")];
  const sheet = start(t, program, ["--state", pc.state, "sheet", PRINTER, "--kind", "user-default"], { env: { ...process.env, LD_PRELOAD: disk, FULL_WHEN: full } });
  const { act } = await page(await sheet.address);
  await act({ action: "page", index: PAPER });
  await act({ action: "edit", id: BASE, text: "7" });
  writeFileSync(full, "");
  const { windows } = await act({ action: "press", button: "ok" });
  assert.match(windows.at(-1).controls.map(({ text }) => text).join(" "), /ディスクの空き容量がありません。/);
  assert.deepEqual([record(), data(PRINTER)], before);
  rmSync(full);
  await act({ action: "click", id: OK });
  assert.equal((await act({ action: "press", button: "ok" })).end, "ok");
  assert.deepEqual([(await sheet.ended).status, record()], [0, wanted(7)]);
});

test("many processes on one printer", async (t) => {
  const { pc, record, wanted, given } = prepared(t);
  const known = [record(), ...Array.from({ length: PROCESSES }, (_, i) => wanted(i + 1))];
  const words = known.map((_, i) => [["add", "one"], ["settings", PRINTER, "--out", pc.file(`out${i}`)], given(i, pc.file(`in${i}`))][Math.min(i % 5, 2)]);
  const ends = await Promise.all(words.slice(1).map((each) => pc.start(...each).ended.then((end) => ({ ...end, each }))));
  for (const { status, errors } of ends) assert.ok(status === 0 || (status === 3 && /there is a printer "one" already; remove it first|locked/.test(errors)), errors);
  const [adds, reads, writes] = ["add", "settings", "set-default"].map((word) => ends.filter(({ status, each }) => status === 0 && each[0] === word));
  const torn = reads.filter(({ each }) => !known.includes(readFileSync(each.at(-1), "latin1"))).length;
  const lost = Number(!writes.some(({ each }) => readFileSync(each.at(-1), "latin1") === record()));
  t.diagnostic(`${PROCESSES} processes: ${writes.length} set-default and ${reads.length} reads, ${torn} torn, ${lost} lost; ${adds.length} add of one name`);
  assert.deepEqual([torn, lost, adds.length], [0, 0, 1]);
});
