// Every example of docs/json.md is what the command answers.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";

import { computer } from "../support/printhost.mjs";

const NAME = "Label Printer";

// Whether an answer is as documented, where "…" stands for the rest of a text or list and numbers of
// the file itself may differ.
function like(shown, real, path) {
  if (Array.isArray(shown)) {
    const cut = shown.at(-1) === "…";
    const rows = cut ? shown.slice(0, -1) : shown;
    assert.ok(Array.isArray(real) && (cut ? real.length > rows.length : real.length === rows.length), path);
    rows.forEach((row, i) => like(row, real[i], `${path}[${i}]`));
  } else if (shown !== null && typeof shown === "object") {
    assert.deepEqual(Object.keys(real), Object.keys(shown), path);
    for (const [name, value] of Object.entries(shown)) like(value, real[name], `${path}.${name}`);
  } else if (/\.sha256$/.test(path)) {
    assert.match(real, /^[0-9a-f]{64}$/);
  } else if (/^module.*\.(address|size)$/.test(path)) {
    assert.equal(typeof real, "number", path);
  } else if (typeof shown === "string" && shown.endsWith("…")) {
    assert.ok(real.startsWith(shown.slice(0, -1)), path);
  } else {
    assert.equal(real, shown, path);
  }
}

test("the documented answers", (t) => {
  const pc = computer(t);
  const document = readFileSync(new URL("../../docs/json.md", import.meta.url), "utf8");
  pc.run("add", NAME);
  pc.run("play", NAME, pc.steps([{ page: 2 }, { button: "ok" }]), "--kind", "user-default");
  pc.run("settings", NAME, "--out", pc.file("in"));
  const more = { convert: ["--in", pc.file("in")], play: [pc.steps([{ button: "ok" }])] };
  const examples = [...document.matchAll(/^## (\w+)( NAME)?\n[^#]*?```json\n([^]*?)```/gm)];
  assert.equal(examples.length, 10);
  for (const [, command, name, example] of examples) {
    const { stdout } = pc.run(command, ...(name ? [NAME] : []), ...(more[command] ?? []), "--json");
    const answer = JSON.parse(command === "play" ? stdout.trim().split("\n").at(-1) : stdout.replaceAll(pc.state, "/state"));
    like(JSON.parse(example), answer, command);
  }
});
