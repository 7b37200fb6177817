// What is stored when processes are killed, the disk is full or many write at once: the old or the new, never a
// mixture, and nothing that was confirmed is lost. Each test prints one line of results; KILLS=1000 PROCESSES=50
// repeats them more often.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { existsSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { test } from "node:test";
import { setTimeout as sleep } from "node:timers/promises";
import { fileURLToPath } from "node:url";

import { computer, program, start } from "../support/printhost.mjs";
import { ids } from "../support/resource_ids.mjs";

const PRINTER = "Label Printer";
const KILLS = Number(process.env.KILLS ?? 40);
const PROCESSES = Number(process.env.PROCESSES ?? 10);
const [PAPER_PAGE, UTILITY_PAGE] = [1, 5];
const BASE_IN_RECORD = 384; // offset of nVertBase

// Prepares a computer and operations that store a number. Of each: how it starts, the output that confirms it, what
// is stored, and what should be.
function prepare(t) {
  const pc = computer(t, PRINTER);
  const [backup, disk] = [pc.file("b.ini"), pc.file("full.so")];
  execFileSync("cc", ["-shared", "-fPIC", "-o", disk, fileURLToPath(new URL("full_disk.c", import.meta.url))]);
  const run = (words, env, stdin = "ignore") => start(t, program, ["--state", pc.state, ...words], { env: { ...process.env, ...env }, stdio: [stdin, "pipe", "pipe"] });
  // Plays a sheet up to its last step and starts that one.
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
  const edited = (number) => [{ page: PAPER_PAGE }, { type: ids.IDC_PAPER_VERT_BASE, text: String(number) }];
  const record = () => (pc.done("settings", PRINTER, "--out", pc.file("own")), readFileSync(pc.file("own"), "latin1"));
  const first = Buffer.from(record(), "latin1");
  const wanted = (number) => (first.writeInt16LE(number, BASE_IN_RECORD), first.toString("latin1"));
  const setDefault = (number, file = pc.file("in")) => (writeFileSync(file, wanted(number), "latin1"), ["set-default", PRINTER, "--in", file]);
  const data = (name) => pc.done("data", name, "--json");
  const installed = data(PRINTER);
  const operations = {
    add: { begin: (number, env) => run(["add", `p${number}`], env), stored: (number) => (pc.json("list").some(({ name }) => name === `p${number}`) ? data(`p${number}`) : ""), wanted: () => installed },
    "set-default": { begin: (number, env) => run(setDefault(number), env), stored: record, wanted },
    OK: { begin: (number, env) => play(env, ...edited(number), { button: "ok" }), confirms: '"end":"ok"', stored: record, wanted },
    save: {
      begin: (number, env) => play(env, ...edited(number), { page: UTILITY_PAGE }, { type: ids.IDC_UTILITY_SAVE_NAME, text: `Z:${backup.replaceAll("/", "\\")}` }, { click: ids.IDC_UTILITY_SAVE }),
      confirms: '"step":5,"ok":true', stored: () => (existsSync(backup) ? readFileSync(backup, "latin1") : ""),
      wanted: (number, whole) => whole.replace(/^(VerticalBase=)\d+/m, `$1${number}`),
    },
  };
  return { pc, disk, record, wanted, setDefault, data, operations };
}

// Repeats each operation while interrupt, which starts and disturbs one, returns how it ended; prints what was stored.
async function repeat(t, what, interrupt) {
  for (const name of ["add", "set-default", "OK", "save"]) {
    const { operations, ...rest } = prepare(t);
    const { begin, confirms = "", stored, wanted } = operations[name];
    const counts = { confirmed: 0, new: 0, old: 0, between: 0, torn: 0, lost: 0 };
    const { ended } = await begin(0);
    const began = performance.now();
    await ended;
    const [time, whole] = [performance.now() - began, stored(0)];
    for (let round = 1, old = whole; ; ++round) {
      if (name === "add") old = "";
      const end = await interrupt({ begin, round, time, ...rest });
      if (!end) break;
      const [now, all] = [stored(round), wanted(round, whole)];
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

test("a process that is killed: stored the old or the new", (t) =>
  repeat(t, "kill -9", async ({ begin, round, time }) => {
    if (round > KILLS / 4 + 1) return undefined;
    const { child, ended } = await begin(round);
    await sleep(Math.random() * time);
    if (round <= KILLS / 4) child.kill("SIGKILL"); // the last one ends by itself
    return ended;
  }));

test("a disk that is full from the n-th write on: stored the old or the new", (t) =>
  repeat(t, "full disk", async ({ begin, round, pc, disk }) => {
    const mark = pc.file("mark");
    if (round > 1 && !existsSync(mark)) return undefined;
    rmSync(mark, { force: true });
    const firstFailing = KILLS >= 1000 ? round : Math.ceil(1.3 ** (round - 1));
    return (await begin(round, { LD_PRELOAD: disk, FULL_FROM: firstFailing, FULL_MARK: mark })).ended;
  }));

test("many processes on one printer: no record torn or lost, one of them adds a name", async (t) => {
  const { pc, record, wanted, setDefault } = prepare(t);
  const known = [record(), ...Array.from({ length: PROCESSES }, (_, i) => wanted(i + 1))];
  const words = known.map((_, i) => [["add", "one"], ["settings", PRINTER, "--out", pc.file(`out${i}`)], setDefault(i, pc.file(`in${i}`))][Math.min(i % 5, 2)]);
  const ends = await Promise.all(words.slice(1).map((each) => pc.start(...each).ended.then((end) => ({ ...end, each }))));
  for (const { status, errors } of ends) assert.ok(status === 0 || (status === 3 && /there is a printer "one" already; remove it first|locked/.test(errors)), errors);
  const [adds, reads, writes] = ["add", "settings", "set-default"].map((word) => ends.filter(({ status, each }) => status === 0 && each[0] === word));
  const torn = reads.filter(({ each }) => !known.includes(readFileSync(each.at(-1), "latin1"))).length;
  const lost = Number(!writes.some(({ each }) => readFileSync(each.at(-1), "latin1") === record()));
  t.diagnostic(`${PROCESSES} processes: ${writes.length} set-default and ${reads.length} reads, ${torn} torn, ${lost} lost; ${adds.length} add of one name`);
  assert.deepEqual([torn, lost, adds.length], [0, 0, 1]);
});
