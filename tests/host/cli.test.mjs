// printhost from the shell: what a person types and reads, all there in the next process.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { createHash, randomFillSync } from "node:crypto";
import { existsSync, lstatSync, readFileSync, readdirSync, readlinkSync, realpathSync, symlinkSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { test } from "node:test";

import { page } from "../support/driving.mjs";
import { computer, program, start } from "../support/printhost.mjs";

const NAME = "倉庫 1F,LPT1:";
const [SIZE, EXTRA, FIELDS, ORIENTATION, COPIES] = [68, 70, 72, 76, 86]; // offsets in a record

// The printer's own record in a file "own", and a writer of others with words changed.
function records(pc) {
  pc.done("settings", NAME, "--out", pc.file("own"));
  const own = readFileSync(pc.file("own"));
  const file = (name, bytes, ...words) => {
    for (const [offset, value] of words) bytes.writeInt16LE(value, offset);
    writeFileSync(pc.file(name), bytes);
    return pc.file(name);
  };
  return { own, file };
}

test("a record is converted, merged and kept as the default, byte for byte", (t) => {
  const pc = computer(t, NAME);
  const { own, file } = records(pc);
  const before = pc.json("settings", NAME);
  assert.equal(before.public.dmDeviceName, "倉庫 1F");
  assert.deepEqual(pc.json("convert", NAME, "--in", pc.file("own")), before);
  for (const command of ["settings", "convert"])
    assert.equal(pc.done(command, NAME, "--in", pc.file("own"), "--out", "-"), own.toString(), command);
  const piped = (...words) => spawnSync(program, ["--state", pc.state, ...words], { input: own });
  for (const command of ["settings", "convert"]) assert.deepEqual(piped(command, NAME, "--in", "-", "--out", "-").stdout, own, command);
  assert.match(pc.refused(3, "settings", NAME, "--in", "-"), /standard input holds no settings record/);

  // Both places of a value, the public and the driver's own.
  const given = file("given", Buffer.from(own), [ORIENTATION, 2], [388, 2], [COPIES, 77], [382, 77], ...[350, 384, 392, 408, 434].map((offset) => [offset, -offset]));
  assert.equal(pc.json("settings", NAME, "--in", given).public.dmCopies, 77);
  assert.deepEqual(pc.json("settings", NAME), before);
  const stored = pc.json("data", NAME);
  pc.done("set-default", NAME, "--in", given);
  pc.done("settings", NAME, "--out", pc.file("again"));
  assert.deepEqual(readFileSync(pc.file("again")), readFileSync(given));
  assert.deepEqual(pc.json("data", NAME), stored);

  // An older, shorter record is handed back as it came, and no default.
  const short = file("short", Buffer.alloc(176, 0x5a), [SIZE, 156], [EXTRA, 20], [FIELDS, 0], [FIELDS + 2, 0]);
  pc.done("convert", NAME, "--in", short, "--out", pc.file("out"));
  assert.deepEqual(readFileSync(pc.file("out")).subarray(SIZE), readFileSync(short).subarray(SIZE));
  assert.equal(pc.json("settings", NAME, "--in", short).private, null);
  pc.refused(3, "set-default", NAME, "--in", short);
});

test("texts of a record that control a terminal are shown escaped", (t) => {
  const pc = computer(t, NAME);
  const short = Buffer.alloc(156);
  short.write("\x1b[31mA\r\n\u009b\u2028\u202eé", 0, "utf16le");
  writeFileSync(pc.file("short"), (short.writeInt16LE(156, SIZE), short));
  const output = pc.done("convert", NAME, "--in", pc.file("short"));
  assert.match(output, /^public\.dmDeviceName\t\\u001b\[31mA\\u000d\\u000a\\u009b\\u2028\\u202eé$/m);
  assert.equal(pc.json("convert", NAME, "--in", pc.file("short")).public.dmDeviceName, "\x1b[31mA\r\n\u009b\u2028\u202eé");
});

test("files that hold no record are refused and nothing is written", (t) => {
  const pc = computer(t, NAME);
  const { own, file } = records(pc);
  // Noise with a claim that fits into it.
  const noise = file("noise", randomFillSync(Buffer.alloc(65536)), [SIZE, 30000], [EXTRA, 9000]);
  const zeros = [3, 75, 452].map((size) => file(`zeros ${size}`, Buffer.alloc(size)));
  for (const name of [...zeros, noise, file("boast", Buffer.from(own), [SIZE, -1]), file("longer", Buffer.concat([own, own.subarray(0, 2)])),
    file("cut", own.subarray(0, 300)), pc.file("missing")])
    for (const [command, ...out] of [["settings", "--out", pc.file("out")], ["convert", "--out", pc.file("out")], ["set-default"]])
      pc.refused(3, command, NAME, "--in", name, ...out);
  assert.ok(!existsSync(pc.file("out")));
  pc.refused(3, "settings", NAME, "--out", pc.folder);
  symlinkSync(pc.file("own"), pc.file("link"));
  pc.done("settings", NAME, "--out", pc.file("link"));
  assert.ok(lstatSync(pc.file("link")).isSymbolicLink());
});

test("printers, the computer and the device are kept and changed, and go with their printer alone", (t) => {
  const pc = computer(t, NAME);
  assert.match(pc.refused(3, "add", NAME), /already; remove it first/);
  const second = `${NAME}\\second`;
  pc.done("add", second, "--driver-name", "Someone's");
  assert.deepEqual(pc.json("list").map(({ name, driver }) => [name, driver]), [[NAME, "VELA QM610r"], [second, "Someone's"]]);
  pc.done("machine", "--os", "6.1", "--server", "--administrator", "no", "--high-contrast", "yes", "--permission", NAME, "no",
    "--ansi-page", "65001", "--code-page-932", "no", "--hide-extensions", "no");
  const { os, product, administrator, highContrast, permissions, ansiPage, codePage932, hideExtensions } = pc.json("machine");
  assert.deepEqual([os, product, administrator, highContrast, permissions], ["6.1", "server", false, true, { [NAME]: false, [second]: true }]);
  assert.deepEqual([ansiPage, codePage932, hideExtensions], [65001, false, false]);
  assert.match(pc.refused(3, "set-default", NAME, "--in", "none"), /may not be changed; .*--permission/);
  pc.done("machine", "--os", "nt4");
  assert.deepEqual([pc.json("machine").os, pc.json("machine").product], ["nt4", "workstation"]);
  const device = { mode: "peel", density: "305", firmware: "V9", font: "F9", offline: "yes", answer: "short" };
  for (const name of [NAME, second]) {
    pc.done("device", name, ...Object.entries(device).flatMap(([option, value]) => [`--${option}`, value]));
    assert.deepEqual(pc.json("device", name), { ...device, density: 305, offline: true });
  }
  const key = `SOFTWARE\\Kestrel\\Devices\\${NAME}`;
  for (const root of ["", "hklm\\", "HKEY_LOCAL_MACHINE\\"])
    assert.equal(pc.json("registry", root + key)[`${key}\\Density`].number, 305, root);
  assert.ok(`${key}\\Density` in pc.json("registry", "HKLM"));
  pc.refused(3, "registry", `HKLM\\${key}\\none`);
  pc.refused(3, "data", NAME, "nothing");
  pc.done("remove", NAME);
  assert.equal(pc.json("device", second).mode, "peel");
  pc.done("add", NAME);
  assert.equal(pc.json("device", NAME).mode, "tear-off");
});

test("misuse prints one line, exits with 2 and changes nothing", (t) => {
  const pc = computer(t, NAME);
  const before = pc.json("machine");
  for (const words of [[], ["nonsense"], ["add"], ["add", ""], ["caps"], ["caps", NAME, "--frob"], ["data", NAME, "a", "b"], ["convert", NAME],
    ["machine", "--os"], ["machine", "--os", "6."], ["play", NAME, "--in", "-"], ["machine", "--administrator", "perhaps"], ["machine", "--ansi-page", "437"], ["machine", "--code-page-932", "perhaps"],
    ["machine", "--server", "--domain-controller"], ["machine", "--server", "--server"], ["machine", "--server=yes"],
    ["machine", "--os", "5.1", "--permission", NAME, "perhaps"], ["device", NAME, "--density", "300"], ["device", NAME, "--mode", "257"],
    ["device", NAME, "--answer", "maybe"], ["settings", NAME, "--out", "-", "--json"], ["sheet", NAME, "--out", "-"],
    ["sheet", NAME, "--kind", "some"], ["sheet", NAME, "--kind", "printer", "--out", "a"], ["sheet", NAME, "--gloss", "de"],
    ...["0.0.0.0:0", "[::]:0", "127.0.0.1", "127.0.0.1:", "127.0.0.1:99999", ":0", "127.evil.invalid:0", "224.0.0.1:0"]
      .map((listen) => ["sheet", NAME, "--listen", listen]),
    ...["\ufeffa", "\ufffea", "a\nb", "a\x1b[31m", "a\x7f", "\u0085", "\u2028", "x".repeat(221)].map((name) => ["add", name])])
    pc.refused(2, ...words);
  for (const [exit, message, ...words] of [[2, /takes tear-off, continuous, peel or a code/, "device", NAME, "--mode", "x"],
    ...["5", "5.0.0", "six"].map((os) => [2, /takes a version like 6\.1/, "machine", "--os", os]),
    ...[" ", ",LPT1:", "　 ,LPT1:"].map((name) => [2, /before its first comma/, "add", name]),
    [3, /"printhost list" shows/, "machine", "--permission", "none", "no"], [3, /"printhost list" shows/, "caps", "none"]])
    assert.match(pc.refused(exit, ...words), message, words.join(" "));
  assert.deepEqual(pc.json("machine"), before);
  for (const help of ["--help", "-h"]) assert.match(pc.done("caps", help), /--json/);
  assert.match(pc.done("-h"), /COMMAND/);
  assert.equal(readdirSync(pc.folder).length, 1);
});

test("the driver that runs is the Windows DLL, or the native module where that was asked for", (t) => {
  const pc = computer(t, NAME);
  const installed = pc.json("module");
  const bytes = readFileSync(installed.file);
  assert.equal(installed.sha256, createHash("sha256").update(bytes).digest("hex"));
  const built = (machine, name) => join(dirname(realpathSync(installed.file)), `../${machine}/${name}`);
  for (const [machine, format, wide] of [["x86", "PE32", false], ["x64", "PE32+", true], ["arm64", "PE32+", true]]) {
    const file = pc.json("module", built(machine, "QM610rDRV1.dll"));
    assert.deepEqual([file.format, file.exports], [format, installed.exports]);
    assert.ok(file.hardening.callTargets > 40);
    delete file.hardening.callTargets;
    assert.deepEqual(file.hardening, {
      anyAddress: true, highEntropy: wide, noExecutableData: true, noExceptionHandlers: !wide,
      stackProtector: true, shadowStacks: machine === "x64", systemLibrariesOnly: true,
    });
    // The file of the symbols has the same identifier, whose first three numbers begin with the lowest byte.
    const id = Buffer.from(file.symbols.id.slice(0, 32), "hex");
    id.subarray(0, 4).reverse(), id.subarray(4, 6).reverse(), id.subarray(6, 8).reverse();
    assert.ok(readFileSync(built(machine, file.symbols.file)).includes(id), machine);
  }
  assert.match(pc.done("module"), /^symbols\tQM610rDRV1\.pdb [0-9A-F]{32}1$[^]*^  stackProtector\tyes$/m);
  for (const size of [0, 100, 1000, bytes.length - 1]) {
    writeFileSync(pc.file("cut"), bytes.subarray(0, size));
    pc.refused(3, "module", pc.file("cut"));
  }
  const caps = pc.json("caps", NAME);
  pc.done("add", "native", "--native");
  assert.match(readlinkSync(installed.file), /\.so$/);
  assert.deepEqual(pc.json("caps", NAME), caps);
  pc.refused(3, "module");
  pc.done("add", "again");
  assert.equal(pc.json("module").sha256, installed.sha256);
});

test("a terminal shows what to do at the address and what became of the settings; a pipe does not", async (t) => {
  const pc = computer(t, NAME);
  for (const [kind, button, status, report] of [["user-default", "ok", 0, `The settings are stored as the default of "${NAME}".`],
    ["user-default", "cancel", 1, "Cancelled; the settings are as they were."],
    ["document", "ok", 0, "The settings are handed to no application and not stored; --out FILE writes them."]]) {
    const words = ["--state", pc.state, "sheet", NAME, "--kind", kind];
    const terminal = ["-qefc", ["stty -onlcr; exec", program, ...words].map((word) => (word === NAME ? `'${word}'` : word)).join(" "), "/dev/null"];
    for (const [command, given] of [["script", terminal], [program, words]]) {
      const sheet = start(t, command, given);
      const address = await sheet.address;
      await (await page(address)).act({ action: "press", button });
      const { status: ended, output, errors } = await sheet.ended;
      const [, after, end] = /^http:\S+\n([^]*?)([^\n]*\n)?$/.exec(output);
      assert.deepEqual([ended, errors], [status, ""]);
      if (command !== "script") assert.deepEqual([after, end], ["", undefined]);
      else assert.ok(/^Open the address in a browser on this computer\. On OK the settings are [^]*Ctrl-C/.test(after) && end === `${report}\n`, output);
    }
  }
});
