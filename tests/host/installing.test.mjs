// A printer is installed whole or not at all, once for each name, and goes with all that is its own.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { readdirSync } from "node:fs";
import { test } from "node:test";
import { setTimeout as sleep } from "node:timers/promises";

import { computer, program } from "../support/printhost.mjs";

const KILLS = Number(process.env.KILLS ?? 20);
const VALUES = ["Private DevMode", "SPLUserModePrinterDriver"];

// What a printer lacks of a whole one; nothing when it is not there at all.
function missing(pc, name) {
  if (!pc.json("list").some((printer) => printer.name === name)) return [];
  const data = pc.json("data", name);
  const lacks = VALUES.filter((value) => !(value in data));
  if (pc.json("settings", name).private.Signature !== 672227609) lacks.push("settings");
  return lacks;
}

test("a killed add leaves a whole printer or none", async (t) => {
  const pc = computer(t);
  assert.equal(pc.run("add", "first").status, 0);
  let [whole, ended] = [0, 0];
  const start = performance.now();
  pc.run("add", "second");
  const span = performance.now() - start;
  for (let kill = 0; kill < KILLS; ++kill) {
    const child = spawn(program, ["--state", pc.state, "add", `p${kill}`], { stdio: "ignore" });
    const end = once(child, "exit");
    await sleep((2 * span * (kill + 1)) / KILLS);
    child.kill("SIGKILL");
    ended += (await end)[1] === null;
    assert.deepEqual(missing(pc, `p${kill}`), [], `kill ${kill}`);
    whole += pc.json("list").some(({ name }) => name === `p${kill}`);
  }
  assert.ok(whole > 0 && ended < KILLS, "some must have been killed at work, some have come to their end");
  t.diagnostic(`${KILLS} kills: ${ended} too late, ${whole} printers whole, no half ones`);
});

test("of adds of one name at once one is done, the others are refused", async (t) => {
  const pc = computer(t);
  const adds = Array.from({ length: 6 }, async () => {
    const child = spawn(program, ["--state", pc.state, "add", "P"], { stdio: ["ignore", "ignore", "pipe"] });
    let errors = "";
    child.stderr.on("data", (text) => (errors += text));
    const [status] = await once(child, "close");
    return status === 0 ? "" : errors;
  });
  const refusals = (await Promise.all(adds)).filter((errors) => errors !== "");
  assert.equal(refusals.length, 5);
  for (const errors of refusals) assert.match(errors, /^printhost: there is a printer "P" already; remove it first\n$/);
  assert.deepEqual(missing(pc, "P"), []);
});

test("remove takes the device along and no other printer's", (t) => {
  const pc = computer(t);
  for (const name of ["label", "label\\second"]) {
    pc.run("add", name);
    pc.run("device", name, "--mode", "peel");
  }
  assert.equal(pc.run("remove", "label").status, 0);
  assert.equal(pc.json("device", "label\\second").mode, "peel");
  pc.run("add", "label");
  assert.equal(pc.json("device", "label").mode, "tear-off");
});

test("who may not change a printer cannot set its default", (t) => {
  const pc = computer(t);
  pc.run("add", "P");
  const file = pc.file("record");
  pc.run("settings", "P", "--out", file);
  pc.run("machine", "--permission", "P", "no");
  const { status, stderr } = pc.run("set-default", "P", "--in", file);
  assert.equal(status, 3);
  assert.match(stderr, /^printhost: .*"P" may not be changed; .*--permission.*\n$/);
  pc.run("machine", "--permission", "P", "yes");
  assert.equal(pc.run("set-default", "P", "--in", file).status, 0);
});
