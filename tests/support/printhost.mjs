// Runs printhost as a person does, each test on a computer of its own.
import assert from "node:assert/strict";
import { spawn, spawnSync } from "node:child_process";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

// The limit of everything that a test waits for, in ms: far more than a loaded machine needs, so that only
// what never comes reaches it.
export const LIMIT = 180_000;

export const program = process.env.PRINTHOST ?? fileURLToPath(new URL("../../build/release/bin/printhost", import.meta.url));

// Starts a command, which goes with the test: the address of a sheet once it has told one, and its
// exit code and outputs when it ends. Options as of spawn.
export function start(test, command, words, options = {}) {
  const child = spawn(command, words, { stdio: ["ignore", "pipe", "pipe"], ...options });
  const limit = setTimeout(() => child.kill("SIGKILL"), LIMIT);
  let [output, errors] = ["", ""];
  const ended = new Promise((resolve) => child.on("close", (status) => resolve({ status, output, errors }, clearTimeout(limit))));
  const address = new Promise((resolve, reject) => {
    const look = (text) => {
      const line = /^http:\S+(?=\n)/m.exec(text);
      if (line) resolve(line[0]);
    };
    child.stdout.on("data", (text) => look((output += text)));
    child.stderr.on("data", (text) => look((errors += text)));
    child.on("close", () => reject(new Error(`no address: ${errors}`)));
  });
  address.catch(() => {});
  // Whatever a detached command has started goes as well.
  test.after(() => child.exitCode ?? child.signalCode ?? process.kill(options.detached ? -child.pid : child.pid, "SIGKILL"));
  return { child, address, ended };
}

// A fresh computer in a folder that goes with the test, with these printers.
export function computer(test, ...printers) {
  const folder = mkdtempSync(join(tmpdir(), "printhost-"));
  test.after(() => rmSync(folder, { recursive: true, force: true }));
  const state = join(folder, "state");
  const run = (...words) => spawnSync(program, ["--state", state, ...words], { encoding: "utf8", timeout: LIMIT });
  // A command that has to succeed; answers its output.
  const done = (...words) => {
    const { status, stdout, stderr } = run(...words);
    assert.deepEqual([status, stderr], [0, ""], words.join(" "));
    return stdout;
  };
  for (const printer of printers) done("add", printer);
  return {
    folder, state, done,
    json: (...words) => JSON.parse(done(...words, "--json")),
    file: (name) => join(folder, name),
    // A command that is refused with this exit code and one line, which it answers.
    refused: (exit, ...words) => {
      const { status, stdout, stderr } = run(...words);
      assert.deepEqual([status, stdout], [exit, ""], words.join(" "));
      assert.match(stderr, /^printhost: .+\n$/);
      return stderr;
    },
    // A command that goes on.
    start: (...words) => start(test, program, ["--state", state, ...words]),
  };
}
