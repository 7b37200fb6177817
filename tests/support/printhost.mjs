// Runs printhost as a person does, each test on a computer of its own.
import { spawn, spawnSync } from "node:child_process";
import { mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

export const program = process.env.PRINTHOST ?? fileURLToPath(new URL("../../build/release/bin/printhost", import.meta.url));

// A fresh computer in a folder that goes with the test.
export function computer(test) {
  const folder = mkdtempSync(join(tmpdir(), "printhost-"));
  test.after(() => rmSync(folder, { recursive: true, force: true }));
  const state = join(folder, "state");
  const run = (...words) => {
    const { status, stdout, stderr } = spawnSync(program, ["--state", state, ...words], { encoding: "utf8" });
    return { status, stdout, stderr };
  };
  return {
    folder,
    state,
    run,
    file: (name) => join(folder, name),
    // A script for "play".
    steps: (steps) => {
      const path = join(folder, "steps");
      writeFileSync(path, steps.map((step) => JSON.stringify(step)).join("\n"));
      return path;
    },
    json: (...words) => {
      const { status, stdout, stderr } = run(...words, "--json");
      if (status !== 0) throw new Error(`exit ${status}: ${stderr}`);
      return JSON.parse(stdout);
    },
    // A command that goes on: its address once it has told it, and its exit code and outputs when it
    // ends.
    start: (...words) => {
      const child = spawn(program, ["--state", state, ...words], { stdio: ["ignore", "pipe", "pipe"] });
      let output = "";
      let errors = "";
      const ended = new Promise((resolve) => {
        child.on("close", (status) => resolve({ status, output, errors }));
      });
      const address = new Promise((resolve, reject) => {
        const look = () => {
          const line = /^http:\S+(?=\n)/m.exec(words.includes("--json") ? errors : output);
          if (line) resolve(line[0]);
        };
        child.stdout.on("data", (text) => ((output += text), look()));
        child.stderr.on("data", (text) => ((errors += text), look()));
        child.on("close", () => reject(new Error(`no address: ${errors}`)));
      });
      address.catch(() => {});
      test.after(() => child.kill("SIGKILL"));
      return { child, address, ended };
    },
  };
}
