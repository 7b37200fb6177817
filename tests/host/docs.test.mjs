// The README's examples, run as they are printed.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { readFileSync, writeFileSync } from "node:fs";
import { test } from "node:test";

import { page } from "../support/driving.mjs";
import { computer, program } from "../support/printhost.mjs";

const read = (name) => readFileSync(new URL(`../../${name}`, import.meta.url), "utf8");
// The code blocks of a document that hold a text.
const blocks = (name, holding) => [...read(name).matchAll(/^```\w*\n([^]*?)^```$/gm)].map(([, code]) => code).filter((code) => code.includes(holding));

// Runs shell code in a folder where ./run is the program; OK is pressed in every sheet it shows.
async function shell(t, pc, code) {
  writeFileSync(pc.file("run"), '#!/bin/sh\nexec "$PROGRAM" "$@"\n', { mode: 0o755 });
  const child = spawn("bash", ["-ec", code], { cwd: pc.folder, detached: true, env: { ...process.env, PROGRAM: program, XDG_STATE_HOME: pc.folder } });
  let [output, errors, opened] = ["", "", false];
  // A line that hangs goes with its test.
  t.after(() => child.exitCode ?? process.kill(-child.pid, "SIGKILL"));
  child.stdin.end();
  child.stdout.on("data", (text) => (output += text));
  child.stderr.on("data", async (text) => {
    errors += text;
    const address = opened ? null : /^http:\S+(?=\n)/m.exec(errors);
    if (!address) return;
    opened = true;
    const sheet = await page(address[0]);
    await sheet.act({ action: "press", button: "ok" });
    sheet.leave();
  });
  const [status] = await once(child, "close");
  assert.equal(status, 0, `${code}${errors}`);
  return output;
}

test("the README's commands, one after another", { timeout: 60000 }, async (t) => {
  const pc = computer(t);
  const [code] = blocks("README.md", "./run add");
  const lines = code.trim().split("\n");
  assert.ok(lines.length > 10);
  for (const line of lines) {
    const output = await shell(t, pc, line);
    if (line.includes("--json")) assert.ok(JSON.parse(output.split("\n").findLast((text) => text.includes('"end"')) ?? output), line);
  }
});
