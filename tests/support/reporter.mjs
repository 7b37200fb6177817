// A reporter for node's test runner: after all tests, the tests and seconds of each folder of tests,
// in the form in which ctest sums up a label. ./check adds them up.
import { basename, dirname } from "node:path";

export default async function* report(events) {
  const folders = new Map();
  for await (const { type, data } of events) {
    if ((type !== "test:pass" && type !== "test:fail") || data.nesting !== 0 || !data.file) continue;
    const name = basename(dirname(data.file));
    const sum = folders.get(name) ?? { tests: 0, seconds: 0 };
    sum.tests += 1;
    sum.seconds += data.details.duration_ms / 1000;
    folders.set(name, sum);
  }
  for (const [name, { tests, seconds }] of folders) yield `${name} = ${seconds.toFixed(2)} sec*proc (${tests} tests)\n`;
}
