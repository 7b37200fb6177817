// Runs printhost from a shell, each test on a simulated computer of its own.
import assert from "node:assert/strict";
import { spawn, spawnSync } from "node:child_process";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

// The limit of every wait of a test, in ms: far more than a loaded machine needs.
export const LIMIT = 180_000;

export const program = process.env.PRINTHOST ?? fileURLToPath(new URL("../../build/release/bin/printhost", import.meta.url));

// Starts a command, which is ended with the test. Returns its process and two promises: address, of the sheet that it
// serves, and ended, of its exit code and output. options: those of spawn.
export function start(test, command, commandArguments, options = {}) {
  const child = spawn(command, commandArguments, { stdio: ["ignore", "pipe", "pipe"], ...options });
  const limit = setTimeout(() => child.kill("SIGKILL"), LIMIT);
  let [output, errors] = ["", ""];
  const ended = new Promise((resolve) => child.on("close", (status) => resolve({ status, output, errors }, clearTimeout(limit))));
  const address = new Promise((resolve, reject) => {
    const findAddress = (text) => {
      const [line] = /^http:\S+(?=\n)/m.exec(text) ?? [];
      if (line) resolve(line);
    };
    child.stdout.on("data", (text) => findAddress((output += text)));
    child.stderr.on("data", (text) => findAddress((errors += text)));
    child.on("close", () => reject(new Error(`no address: ${errors}`)));
  });
  address.catch(() => {});
  // A detached command is ended with every process that it has started.
  test.after(() => child.exitCode ?? child.signalCode ?? process.kill(options.detached ? -child.pid : child.pid, "SIGKILL"));
  return { child, address, ended };
}

// Creates a computer with these printers in a folder that is removed with the test.
export function computer(test, ...printers) {
  const folder = mkdtempSync(join(tmpdir(), "printhost-"));
  test.after(() => rmSync(folder, { recursive: true, force: true }));
  const state = join(folder, "state");
  const run = (...commandLine) => spawnSync(program, ["--state", state, ...commandLine], { encoding: "utf8", timeout: LIMIT });
  // Runs a command that must succeed; returns its output.
  const done = (...commandLine) => {
    const { status, stdout, stderr } = run(...commandLine);
    assert.deepEqual([status, stderr], [0, ""], commandLine.join(" "));
    return stdout;
  };
  for (const printer of printers) done("add", printer);
  return {
    folder, state, done,
    json: (...commandLine) => JSON.parse(done(...commandLine, "--json")),
    file: (name) => join(folder, name),
    // Runs a command that must fail with this exit code and one line on standard error; returns the line.
    refused: (exitCode, ...commandLine) => {
      const { status, stdout, stderr } = run(...commandLine);
      assert.deepEqual([status, stdout], [exitCode, ""], commandLine.join(" "));
      assert.match(stderr, /^printhost: .+\n$/);
      return stderr;
    },
    // Starts a command and does not wait for its end.
    start: (...commandLine) => start(test, program, ["--state", state, ...commandLine]),
  };
}
