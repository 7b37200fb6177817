// The output of the commands without --json: lines of the same values as the JSON, separated by tabs.
import assert from "node:assert/strict";
import { test } from "node:test";

import { computer } from "../support/printhost.mjs";

const NAME = "倉庫 1F,LPT1:";
const fields = (object, prefix = "") => Object.entries(object).flatMap(([name, value]) =>
  (value !== null && typeof value === "object" && !Array.isArray(value) ? fields(value, `${prefix}${name}.`) : [`${prefix}${name}\t${value}`]));

test("commands without --json: print the values of the JSON in lines", (t) => {
  const pc = computer(t, NAME, "棚札");
  pc.done("device", NAME, "--mode", "peel");
  const assertPrints = (words, toLines) => assert.deepEqual(pc.done(...words).trimEnd().split("\n"), toLines(pc.json(...words)), words[0]);
  assert.equal(pc.done("--version"), "printhost 14.0.1.20\n");
  assert.equal(pc.done("list"), `${NAME}\tVELA QM610r\tLPT1:\n棚札\tVELA QM610r\tLPT1:\n`);
  for (const words of [["machine"], ["device", NAME], ["settings", NAME]]) assertPrints(words, (json) => fields(json));
  assertPrints(["caps", NAME], (json) => Object.entries(json).map(([index, { result, output }]) =>
    (output === null ? `${index}\t${result}` : `${index}\t${result}\t${JSON.stringify(output)}`)));
  // A value's text or number, otherwise its bytes.
  const value = (name, { type, size, bytes, text, number }) => `${name}\t${type}\t${size}\t${text ?? number ?? bytes}`;
  for (const words of [["data", NAME], ["registry"]]) assertPrints(words, (json) => Object.entries(json).map(([name, data]) => value(name, data)));
  assertPrints(["data", NAME, "SPLUserModePrinterDriver"], (json) => [value("SPLUserModePrinterDriver", json)]);
});
