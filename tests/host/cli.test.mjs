// printhost from a shell: each command runs in a process of its own, on a computer that the state directory stores.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { createHash, randomFillSync } from "node:crypto";
import { existsSync, lstatSync, readFileSync, readdirSync, readlinkSync, realpathSync, symlinkSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { test } from "node:test";

import { openPage } from "../support/driving.mjs";
import { computer, program, start } from "../support/printhost.mjs";

const NAME = "倉庫 1F,LPT1:";
// Offsets in a DEVMODE, and in the driver's own part behind its 220 bytes.
const [dmSize, dmDriverExtra, dmFields, dmOrientation, dmCopies] = [68, 70, 72, 76, 86];
const [nVertBase, ownCopies, ownOrientation] = [384, 382, 388];

// Writes words into a copy of some bytes and the bytes into a file; returns the file's path.
function recordFile(pc, name, bytes, words = {}) {
  const record = Buffer.from(bytes);
  for (const [offset, value] of Object.entries(words)) record.writeInt16LE(value, Number(offset));
  writeFileSync(pc.file(name), record);
  return pc.file(name);
}

// Writes the printer's own record into the file "own" and returns its bytes.
function ownRecord(pc) {
  pc.done("settings", NAME, "--out", pc.file("own"));
  return readFileSync(pc.file("own"));
}

test("settings and convert: a driver's own record comes back unchanged, from files and pipes", (t) => {
  const pc = computer(t, NAME);
  const own = ownRecord(pc);
  const settings = pc.json("settings", NAME);
  assert.equal(settings.public.dmDeviceName, "倉庫 1F");
  assert.deepEqual(pc.json("convert", NAME, "--in", pc.file("own")), settings);
  for (const command of ["settings", "convert"]) {
    assert.equal(pc.done(command, NAME, "--in", pc.file("own"), "--out", "-"), own.toString(), command);
    const { stdout } = spawnSync(program, ["--state", pc.state, command, NAME, "--in", "-", "--out", "-"], { input: own });
    assert.deepEqual(stdout, own, command);
  }
  // A link stays a link to the file that is replaced.
  symlinkSync(pc.file("own"), pc.file("link"));
  pc.done("settings", NAME, "--out", pc.file("link"));
  assert.ok(lstatSync(pc.file("link")).isSymbolicLink());
  assert.match(pc.refused(3, "settings", NAME, "--in", "-"), /standard input holds no settings record/);
});

test("set-default: a merged record becomes the default, the printer's data stay", (t) => {
  const pc = computer(t, NAME);
  const before = [pc.json("settings", NAME), pc.json("data", NAME)];
  const changed = recordFile(pc, "changed", ownRecord(pc), { [dmOrientation]: 2, [ownOrientation]: 2, [dmCopies]: 77, [ownCopies]: 77, [nVertBase]: -384 });
  assert.equal(pc.json("settings", NAME, "--in", changed).public.dmCopies, 77);
  assert.deepEqual(pc.json("settings", NAME), before[0]);
  pc.done("set-default", NAME, "--in", changed);
  assert.deepEqual(ownRecord(pc), readFileSync(changed));
  assert.deepEqual(pc.json("data", NAME), before[1]);
  // An older driver's shorter record comes back unchanged and is no default.
  const short = recordFile(pc, "short", Buffer.alloc(176, 0x5a), { [dmSize]: 156, [dmDriverExtra]: 20, [dmFields]: 0, [dmFields + 2]: 0 });
  pc.done("convert", NAME, "--in", short, "--out", pc.file("out"));
  assert.deepEqual(readFileSync(pc.file("out")).subarray(dmSize), readFileSync(short).subarray(dmSize));
  assert.equal(pc.json("settings", NAME, "--in", short).private, null);
  pc.refused(3, "set-default", NAME, "--in", short);
});

test("a name with control characters: escaped for a reader, valid UTF-8 in JSON", (t) => {
  const pc = computer(t, NAME);
  // Both sides of each range of characters that control a terminal, a surrogate pair and lone surrogates.
  const name = "\x1f ~\x7f\x80\x9f\xa0\u200d\u200e\u200f\u2010\u2027\u2028\u202e\u202f\u2065\u2066\u2069\u206a\u{1f600}\udc00A\ud800";
  const bytes = Buffer.alloc(156);
  Buffer.from(name, "utf16le").copy(bytes);
  const file = recordFile(pc, "named", bytes, { [dmSize]: 156 });
  const shown = "\\u001f ~\\u007f\\u0080\\u009f\xa0\u200d\\u200e\\u200f\u2010\u2027\\u2028\\u202e\u202f\u2065\\u2066\\u2069\u206a\u{1f600}\ufffdA\ufffd";
  assert.equal(pc.done("convert", NAME, "--in", file).split("\n")[0], `public.dmDeviceName\t${shown}`);
  assert.equal(pc.json("convert", NAME, "--in", file).public.dmDeviceName, name.replaceAll(/\udc00|\ud800/gu, "\ufffd"));
});

test("a file that is not exactly one record: refused, nothing is written", (t) => {
  const pc = computer(t, NAME);
  const own = ownRecord(pc);
  const files = [
    pc.file("missing"),
    ...[3, 75, 452].map((size) => recordFile(pc, `zeros ${size}`, Buffer.alloc(size))),
    recordFile(pc, "noise", randomFillSync(Buffer.alloc(65536)), { [dmSize]: 30000, [dmDriverExtra]: 9000 }),
    recordFile(pc, "size above the bytes", own, { [dmSize]: -1 }),
    recordFile(pc, "longer", Buffer.concat([own, own.subarray(0, 2)])),
    recordFile(pc, "shorter", own.subarray(0, 300)),
    recordFile(pc, "ends before dmFields", Buffer.alloc(80), { [dmSize]: 75, [dmDriverExtra]: 5 }),
  ];
  for (const file of files) {
    for (const command of ["settings", "convert"]) pc.refused(3, command, NAME, "--in", file, "--out", pc.file("out"));
    pc.refused(3, "set-default", NAME, "--in", file);
  }
  for (const command of ["settings", "play"]) assert.match(pc.refused(3, command, NAME, "--out", pc.folder), /Is a directory/);
  assert.ok(!existsSync(pc.file("out")));
  // The smallest record ends with dmFields.
  pc.done("settings", NAME, "--in", recordFile(pc, "smallest", Buffer.alloc(76), { [dmSize]: 76 }), "--out", pc.file("out"));
});

test("add, list, remove: printers of one computer do not affect one another", (t) => {
  const pc = computer(t, NAME);
  const second = `${NAME}\\second`;
  assert.match(pc.refused(3, "add", NAME), /already; remove it first/);
  pc.done("add", second, "--driver-name", "Someone's");
  assert.deepEqual(pc.json("list").map(({ name, driver }) => [name, driver]), [[NAME, "VELA QM610r"], [second, "Someone's"]]);
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
  for (const longest of ["x".repeat(220), "~\u00a0"]) pc.done("add", longest);
});

test("machine: options change the computer and stay for the next command", (t) => {
  const pc = computer(t, NAME);
  pc.done("machine", "--os", "6.1", "--server", "--administrator", "no", "--high-contrast", "yes", "--permission", NAME, "no",
    "--ansi-page", "65001", "--code-page-932", "no", "--hide-extensions", "no");
  const { windows, drivers, ...settings } = pc.json("machine");
  assert.deepEqual(settings, { os: "6.1", product: "server", administrator: false, highContrast: true, permissions: { [NAME]: false },
    ansiPage: 65001, codePage932: false, hideExtensions: false });
  assert.match(pc.refused(3, "set-default", NAME, "--in", "none"), /may not be changed; .*--permission/);
  pc.done("machine", "--domain-controller", "--ansi-page", "932");
  for (const [member, value] of Object.entries({ os: "6.1", product: "domain controller", codePage932: true })) assert.equal(pc.json("machine")[member], value);
  for (const os of ["nt3.51", "nt4", "95", "98", "me", "10.0"]) {
    pc.done("machine", "--os", os);
    assert.deepEqual([pc.json("machine").os, pc.json("machine").product], [os, "workstation"]);
  }
});

test("state directory: --state before or after the command, then XDG_STATE_HOME, then HOME", (t) => {
  const pc = computer(t, NAME);
  const list = (env, ...words) => spawnSync(program, ["list", ...words], { env, encoding: "utf8" });
  assert.equal(list({}, `--state=${pc.state}`).stdout, `${NAME}\tVELA QM610r\tLPT1:\n`);
  assert.equal(list({ XDG_STATE_HOME: pc.file("xdg"), HOME: pc.file("home") }).status, 0);
  assert.equal(list({ XDG_STATE_HOME: "relative", HOME: pc.file("home") }).status, 0);
  for (const folder of ["xdg/printhost", "home/.local/state/printhost"]) assert.ok(existsSync(pc.file(folder)), folder);
  assert.equal(list({ HOME: "relative" }).status, 2);
});

test("wrong usage: one line, exit code 2, nothing changes", (t) => {
  const pc = computer(t, NAME);
  const before = pc.json("machine");
  const calls = [
    [], ["nonsense"], ["list", "caps", NAME], ["add"], ["caps"], ["caps", NAME, "--frob"], ["data", NAME, "a", "b"], ["convert", NAME],
    ["list", "--state="], ["--state", pc.file("second"), "list"], ["play", NAME, "--in", "-"],
    ["machine", "--os"], ["machine", "--os", "6."], ["machine", "--administrator", "perhaps"], ["machine", "--ansi-page", "437"],
    ["machine", "--code-page-932", "perhaps"], ["machine", "--server", "--domain-controller"], ["machine", "--server", "--server"],
    ["machine", "--server=yes"], ["machine", "--os", "5.1", "--permission", NAME, "perhaps"],
    ["device", NAME, "--density", "300"], ["device", NAME, "--mode", "256"], ["device", NAME, "--answer", "maybe"],
    ["settings", NAME, "--out", "-", "--json"], ["sheet", NAME, "--out", "-"], ["sheet", NAME, "--kind", "some"],
    ["sheet", NAME, "--kind", "printer", "--out", "a"], ["sheet", NAME, "--gloss", "de"],
    ...["0.0.0.0:0", "[::]:0", "127.0.0.1", "127.0.0.1:", "127.0.0.1:65536", "127.0.0.1:0x", ":0", "127.evil.invalid:0", "224.0.0.1:0"]
      .map((listen) => ["sheet", NAME, "--listen", listen]),
    ...["", "\ufeffa", "\ufffea", "a\nb", "a\x1f", "a\x7f", "\u009f", "\u2028", "x".repeat(221)].map((name) => ["add", name]),
    ["add", "b", "--driver-name="],
  ];
  for (const words of calls) pc.refused(2, ...words);
  for (const [message, exit, ...words] of [
    [/takes tear-off, continuous, peel or a code/, 2, "device", NAME, "--mode", "x"],
    ...["5", "5.0.0", "six"].map((os) => [/takes a version like 6\.1/, 2, "machine", "--os", os]),
    ...[" ", ",LPT1:", "　 ,LPT1:"].map((name) => [/before its first comma/, 2, "add", name]),
    [/"printhost list" shows/, 3, "machine", "--permission", "none", "no"],
    [/"printhost list" shows/, 3, "caps", "none"],
  ]) assert.match(pc.refused(exit, ...words), message, words.join(" "));
  assert.deepEqual(pc.json("machine"), before);
  assert.equal(readdirSync(pc.folder).length, 1);
});

test("help: lists the commands, and the options of a command", (t) => {
  const pc = computer(t);
  const commands = /^Usage: printhost \[OPTIONS\] \[COMMAND\]$[^]*^Commands:$[^]*^ +set-default +resolves [^]*\nExit codes: 0 done, 1 cancelled, 2 usage, 3 failed\.\n$/m;
  for (const help of ["-h", "--help", "help"]) assert.match(pc.done(help), commands);
  for (const help of ["-h", "--help"]) assert.match(pc.done("play", help), /^Usage: printhost play \[OPTIONS\] NAME \[STEPS\]$[^]*--json[^]*--state DIR/m);
});

test("module: describes the DLLs of the three machines", (t) => {
  const pc = computer(t, NAME);
  const installed = pc.json("module");
  const bytes = readFileSync(installed.file);
  assert.equal(installed.sha256, createHash("sha256").update(bytes).digest("hex"));
  const built = (machine, name) => join(dirname(realpathSync(installed.file)), `../${machine}/${name}`);
  for (const [machine, format, is64Bit] of [["x86", "PE32", false], ["x64", "PE32+", true], ["arm64", "PE32+", true]]) {
    const { hardening, symbols, ...file } = pc.json("module", built(machine, "QM610rDRV1.dll"));
    assert.deepEqual([file.format, file.exports], [format, installed.exports]);
    const { callTargets, ...protections } = hardening;
    assert.ok(callTargets > 40);
    assert.deepEqual(protections, {
      anyAddress: true, highEntropy: is64Bit, noExecutableData: true, noExceptionHandlers: !is64Bit,
      stackProtector: true, shadowStacks: machine === "x64", systemLibrariesOnly: true,
    });
    // The symbol file contains the same GUID, whose first three numbers begin with the lowest byte there.
    const guid = Buffer.from(symbols.id.slice(0, 32), "hex");
    for (const [start, end] of [[0, 4], [4, 6], [6, 8]]) guid.subarray(start, end).reverse();
    assert.ok(readFileSync(built(machine, symbols.file)).includes(guid), machine);
  }
});

test("module: refuses a damaged file, escapes its names; add --native installs the shared object", (t) => {
  const pc = computer(t, NAME);
  const installed = pc.json("module");
  const bytes = readFileSync(installed.file);
  pc.refused(3, "module", pc.file("missing"));
  for (const size of [0, 100, 1000, bytes.length - 1]) {
    writeFileSync(pc.file("cut"), bytes.subarray(0, size));
    pc.refused(3, "module", pc.file("cut"));
  }
  const hostile = Buffer.from(bytes);
  hostile.write("\x1b\xff", hostile.indexOf("DevQueryPrint\0"), "latin1");
  writeFileSync(pc.file("hostile"), hostile);
  assert.match(pc.done("module", pc.file("hostile")), /^ {2}\\u001b\ufffdvQueryPrint$/m);
  // The shared object of this system runs after add --native, until a printer is added without it.
  const caps = pc.json("caps", NAME);
  pc.done("add", "native", "--native");
  assert.deepEqual(pc.json("caps", NAME), caps);
  assert.match(readlinkSync(installed.file), /\.so$/);
  pc.refused(3, "module");
  pc.done("add", "again");
  assert.equal(pc.json("module").sha256, installed.sha256);
});

test("sheet on a terminal: shows what to do and what became of the settings", async (t) => {
  const pc = computer(t, NAME);
  for (const [kind, button, status, outcome] of [
    ["user-default", "ok", 0, `The settings are stored as the default of "${NAME}".`],
    ["printer", "cancel", 1, "Cancelled; the settings are as they were."],
    ["document", "ok", 0, "The settings are handed to no application and not stored; --out FILE writes them."],
  ]) {
    const words = [program, "--state", pc.state, "sheet", NAME, "--kind", kind].map((word) => `'${word}'`).join(" ");
    const sheet = start(t, "script", ["-qefc", `stty -onlcr; exec ${words}`, "/dev/null"]);
    await (await openPage(await sheet.address)).act({ action: "press", button });
    const { status: ended, output } = await sheet.ended;
    const [, hint, cancelHint, ...rest] = output.trimEnd().split("\n");
    assert.match(hint, /^Open the address in a browser on this computer\. On OK the settings are /);
    assert.match(cancelHint, /^Cancel or Ctrl-C/);
    assert.deepEqual([ended, rest], [status, [outcome]]);
  }
});
