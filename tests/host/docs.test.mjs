// What the documents show is what happens.
import assert from "node:assert/strict";
import { readFileSync, writeFileSync } from "node:fs";
import { test } from "node:test";

import { openPage } from "../support/driving.mjs";
import { computer, program, start } from "../support/printhost.mjs";

const NAME = "Label Printer";
const read = (name) => readFileSync(new URL(`../../${name}`, import.meta.url), "utf8");
// The code block of a document that holds a text.
const block = (name, holding) => [...read(name).matchAll(/^```\w*\n([^]*?)^```$/gm)].map(([, code]) => code).find((code) => code.includes(holding));

// Runs shell code in a folder where ./run is the program; OK is pressed in the sheet that it shows.
async function shell(t, pc, code) {
  writeFileSync(pc.file("run"), '#!/bin/sh\nexec "$PROGRAM" "$@"\n', { mode: 0o755 });
  const env = { ...process.env, PROGRAM: program, XDG_STATE_HOME: pc.folder };
  const { address, ended } = start(t, "bash", ["-ec", code], { cwd: pc.folder, detached: true, env });
  address.then(async (url) => (await openPage(url)).act({ action: "press", button: "ok" }), () => {});
  const { status, output, errors } = await ended;
  assert.equal(status, 0, `${code}${errors}`);
  return output;
}

test("the README's commands, one after another, and the script of a sheet", { timeout: 60000 }, async (t) => {
  const pc = computer(t);
  const lines = block("README.md", "./run add").trim().split("\n");
  assert.ok(lines.length > 10);
  for (const line of lines) {
    const output = await shell(t, pc, line);
    if (line.includes("--json")) assert.ok(JSON.parse(output.split("\n").findLast((text) => text.includes('"end"')) ?? output), line);
  }
  const guide = "docs/driving-a-sheet.md";
  assert.equal(await shell(t, pc, block(guide, "STEPS").replaceAll("/tmp/pc", pc.state)), block(guide, '{"step":1'));
  assert.match(readFileSync(pc.file("page.svg"), "utf8"), /^<svg /);
  assert.equal(pc.json("settings", NAME, "--in", pc.file("moved.dm")).private.nHorzBase, 3);
});

// Whether an answer is as documented, where "…" stands for the rest of a text or list and numbers of
// the driver's file may differ.
function like(shown, real, path) {
  const cut = typeof shown === "string" ? shown.endsWith("…") : shown?.at?.(-1) === "…";
  if (/^module.*\.(address|size|callTargets|id)$/.test(path) || /\.sha256$/.test(path)) {
    assert.equal(typeof real, typeof shown, path);
  } else if (shown === null || typeof shown !== "object") {
    assert.equal(cut ? `${real.slice(0, shown.length - 1)}…` : real, shown, path);
  } else {
    const rows = cut ? shown.slice(0, -1) : shown;
    assert.deepEqual(Object.keys(cut ? real.slice(0, rows.length) : real), Object.keys(rows), path);
    for (const [name, value] of Object.entries(rows)) like(value, real[name], `${path}.${name}`);
  }
}

test("the documented answers in JSON", (t) => {
  const pc = computer(t, NAME);
  writeFileSync(pc.file("ok"), '{"page": 2}\n{"button": "ok"}');
  pc.done("play", NAME, pc.file("ok"), "--kind", "user-default");
  const examples = [...read("docs/json.md").matchAll(/^## (\w+)( NAME)?\n[^#]*?```json\n([^]*?)```/gm)];
  assert.equal(examples.length, 9);
  for (const [, command, name, example] of examples) {
    const output = pc.done(command, ...(name ? [NAME] : []), ...(command === "play" ? [pc.file("ok")] : []), "--json");
    like(JSON.parse(example), JSON.parse((command === "play" ? output.trim().split("\n").at(-1) : output).replaceAll(pc.state, "/state")), command);
  }
});
