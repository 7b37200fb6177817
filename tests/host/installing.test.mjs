// A printer is installed whole or not at all, and once for each name.
import assert from "node:assert/strict";
import { once } from "node:events";
import { test } from "node:test";
import { setTimeout as sleep } from "node:timers/promises";

import { computer } from "../support/printhost.mjs";

const KILLS = Number(process.env.KILLS ?? 20);

// Whether a printer is there; a half one is a fault.
function isThere(pc, name) {
  if (!pc.json("list").some((printer) => printer.name === name)) return false;
  const { "Private DevMode": own, SPLUserModePrinterDriver: driver } = pc.json("data", name);
  assert.deepEqual([own?.size, driver?.size, pc.json("settings", name).private.Signature], [3338, 20, 672227609], name);
  return true;
}

test("a killed add leaves a whole printer or none", async (t) => {
  const pc = computer(t, "first");
  let [whole, ended] = [0, 0];
  const start = performance.now();
  pc.done("add", "second");
  const span = performance.now() - start;
  for (let kill = 0; kill < KILLS; ++kill) {
    const { child } = pc.start("add", `p${kill}`);
    const end = once(child, "exit");
    await sleep((1.3 * span * (kill + 1)) / KILLS);
    child.kill("SIGKILL");
    ended += (await end)[1] === null;
    whole += isThere(pc, `p${kill}`);
  }
  t.diagnostic(`${KILLS} kills: ${ended} too late, ${whole} printers whole, no half ones`);
  assert.ok(whole > 0 && ended < KILLS, "some must have been killed at work, some have come to their end");
});

test("of adds of one name at once one is done, the others are refused", async (t) => {
  const pc = computer(t);
  const ends = await Promise.all(Array.from({ length: 6 }, () => pc.start("add", "P").ended));
  assert.deepEqual(ends.map(({ status, errors }) => `${status} ${errors}`).sort(),
    ["0 ", ...Array(5).fill('3 printhost: there is a printer "P" already; remove it first\n')]);
  assert.ok(isThere(pc, "P"));
});
