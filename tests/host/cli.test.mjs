// printhost from the shell: what a person types and reads, and that everything is there in the next
// process.
import assert from "node:assert/strict";
import { createHash, randomFillSync } from "node:crypto";
import { existsSync, lstatSync, readFileSync, readdirSync, readlinkSync, realpathSync, rmSync, symlinkSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { test } from "node:test";

import { computer } from "../support/printhost.mjs";

const NAME = "倉庫 1F,LPT1:";
const [SIZE, EXTRA, FIELDS, ORIENTATION, PAPER, COPIES] = [68, 70, 72, 76, 78, 86]; // offsets in a record
const SPEED = 398;

function installed(t) {
  const pc = computer(t);
  assert.deepEqual(pc.run("add", NAME), { status: 0, stdout: "", stderr: "" });
  return pc;
}

// The printer's own record, changed and written to a file.
function record(pc, name, change = (bytes) => bytes) {
  const file = pc.file(name);
  assert.equal(pc.run("settings", NAME, "--out", file).status, 0);
  writeFileSync(file, change(readFileSync(file)));
  return file;
}

test("an installed printer answers its capabilities", (t) => {
  const caps = installed(t).json("caps", NAME);
  const names = ["Standard Label 58 x 68 mm", "フリーサイズ"];
  const expected = {
    DC_FIELDS: [9999], DC_PAPERS: [2, [257, 256]], DC_PAPERSIZE: [2, [[580, 680], [580, 680]]],
    DC_MINEXTENT: [6553700, [100, 100]], DC_MAXEXTENT: [106824260, [580, 1630]], DC_BINS: [1, [256]], DC_DUPLEX: [0],
    DC_SIZE: [220], DC_EXTRA: [232], DC_VERSION: [0x401], DC_DRIVER: [0xe01], DC_BINNAMES: [1, ["標準"]],
    DC_ENUMRESOLUTIONS: [1, [[203, 203]]], DC_FILEDEPENDENCIES: [0], DC_TRUETYPE: [1], DC_PAPERNAMES: [2, names],
    DC_ORIENTATION: [90], DC_COPIES: [32767], DC_BINADJUST: [-1], DC_EMF_COMPLIANT: [1], DC_DATATYPE_PRODUCED: [-1],
    DC_COLLATE: [0], DC_MANUFACTURER: [-1], DC_MODEL: [-1], DC_PERSONALITY: [-1], DC_PRINTRATE: [-1],
    DC_PRINTRATEUNIT: [-1], DC_PRINTERMEM: [-1], DC_MEDIAREADY: [2, names], DC_STAPLE: [0], DC_PRINTRATEPPM: [-1],
    DC_COLORDEVICE: [0], DC_NUP: [-1], DC_MEDIATYPENAMES: [3, ["Plain paper", "Transparency", "Glossy paper"]],
    DC_MEDIATYPES: [3, [1, 2, 3]],
  };
  for (const [name, [result, output = null]] of Object.entries(expected))
    assert.deepEqual(caps[name], { result, output }, name);
  assert.equal(Object.keys(caps).length, 35);
});

test("its settings and what is stored for it", (t) => {
  const pc = installed(t);
  const settings = pc.json("settings", NAME);
  assert.equal(settings.public.dmDeviceName, "倉庫 1F");
  assert.equal(settings.public.dmFields, 9999);
  assert.equal(settings.private.Signature, 672227609);
  assert.equal(settings.private.FreePaper.PaperName, "フリーサイズ");
  assert.equal(settings.private.ColorAdjust.caReferenceWhite, 10000);
  const data = pc.json("data", NAME);
  assert.deepEqual([data.SPLUserModePrinterDriver.type, data.SPLUserModePrinterDriver.size], ["REG_SZ", 20]);
  assert.equal(data.SPLUserModePrinterDriver.text, "QM610rDRV2");
  assert.deepEqual([data["Private DevMode"].type, data["Private DevMode"].size], ["REG_BINARY", 3338]);
  assert.equal(data["Private DevMode"].settings.Papers[0].PaperName, "Standard Label 58 x 68 mm");
  assert.equal(pc.run("data", NAME, "nothing").status, 3);
});

test("an application's record merges field by field", (t) => {
  const pc = installed(t);
  const own = record(pc, "own");
  assert.deepEqual(pc.json("convert", NAME, "--in", own), pc.json("settings", NAME));
  for (const command of ["settings", "convert"])
    assert.equal(pc.run(command, NAME, "--in", own, "--out", "-").stdout, readFileSync(own, "utf8"), command);
  const file = record(pc, "in", (bytes) => {
    bytes.writeInt16LE(2, ORIENTATION);
    bytes.writeInt16LE(9, PAPER);
    bytes.writeInt16LE(0, COPIES);
    bytes.writeInt16LE(3, SPEED);
    bytes.writeUInt32LE(0, bytes.length - 4); // no signature of ours: the private part is foreign
    return bytes;
  });
  const { public: open, private: kept } = pc.json("settings", NAME, "--in", file);
  assert.deepEqual([open.dmOrientation, open.dmPaperSize, open.dmCopies, kept.nPrintSpeed], [2, 257, 1, 1]);
});

test("an older, shorter record converts to itself and cannot be a default", (t) => {
  const pc = installed(t);
  const short = Buffer.alloc(176, 0x5a);
  short.writeUInt16LE(156, SIZE);
  short.writeUInt16LE(20, EXTRA);
  short.writeUInt32LE(0, FIELDS);
  writeFileSync(pc.file("short"), short);
  assert.equal(pc.run("convert", NAME, "--in", pc.file("short"), "--out", pc.file("out")).status, 0);
  const out = readFileSync(pc.file("out"));
  assert.equal(out.length, 176);
  assert.ok(out.subarray(72).equals(short.subarray(72)) && out.readUInt16LE(SIZE) === 156 && out.readUInt16LE(EXTRA) === 20);
  assert.equal(pc.json("settings", NAME, "--in", pc.file("short")).private, null);
  assert.equal(pc.run("set-default", NAME, "--in", pc.file("short")).status, 3);
});

test("files that hold no record are refused and nothing is written", (t) => {
  const pc = installed(t);
  const noise = randomFillSync(Buffer.alloc(65536));
  noise.writeUInt16LE(40000, SIZE); // a claim that fits into the noise
  noise.writeUInt16LE(9000, EXTRA);
  record(pc, "own");
  const bad = {
    short: Buffer.alloc(3),
    "no fields": Buffer.alloc(75),
    zeros: Buffer.alloc(452),
    noise,
    boast: record(pc, "boast", (bytes) => (bytes.writeUInt16LE(65535, SIZE), bytes)) && readFileSync(pc.file("boast")),
    longer: Buffer.concat([readFileSync(pc.file("own")), Buffer.alloc(2)]),
    cut: Buffer.from(readFileSync(pc.file("own"))).subarray(0, 300),
  };
  for (const [name, bytes] of Object.entries(bad)) {
    writeFileSync(pc.file("bad"), bytes);
    for (const command of ["settings", "convert", "set-default"]) {
      const words = [command, NAME, "--in", pc.file("bad"), ...(command === "set-default" ? [] : ["--out", pc.file("out")])];
      const { status, stdout, stderr } = pc.run(...words);
      assert.deepEqual([status, stdout], [3, ""], `${name}: ${command}`);
      assert.match(stderr, /^printhost: .*\n$/);
    }
  }
  assert.ok(!existsSync(pc.file("out")));
  assert.equal(pc.run("settings", NAME, "--in", pc.file("missing")).status, 3);
  assert.equal(pc.run("settings", NAME, "--out", pc.folder).status, 3);
  symlinkSync(pc.file("own"), pc.file("link"));
  assert.equal(pc.run("settings", NAME, "--out", pc.file("link")).status, 0);
  assert.ok(lstatSync(pc.file("link")).isSymbolicLink());
});

test("a default survives in another process, byte for byte, and the registered papers with it", (t) => {
  const pc = computer(t);
  pc.run("list");
  const setup = join(pc.state, "drive_c", "WINDOWS", "SetupKit_QM6_1R.INI");
  const papers = ["一", "二", "三"];
  writeFileSync(setup, Buffer.from("\ufeff[ﾊﾞｰｼﾞｮﾝ情報]\nDriverName=x\n[用紙登録数]\nPaperNum=3\n" +
    papers.map((name, i) => `[PAPER0${i}]\nPaperName=${name}\nLabelWidth=${i}\n`).join(""), "utf16le"));
  assert.equal(pc.run("add", NAME).status, 0);
  rmSync(setup);
  const stored = pc.json("data", NAME);
  assert.deepEqual(stored["Private DevMode"].settings.Papers.map(({ PaperName, LabelWidth }) => [PaperName, LabelWidth]),
                   papers.map((name, i) => [name, i]));
  for (const value of [(offset) => -offset, () => 0]) {
    const file = record(pc, "in", (bytes) => {
      bytes.writeInt16LE(2, ORIENTATION);
      bytes.writeInt16LE(258, PAPER);
      bytes.writeInt16LE(77, COPIES);
      for (const [first, last] of [[350, 374], [384, 388], [390, 404], [408, 410], [434, 436]])
        for (let offset = first; offset < last; offset += 2) bytes.writeInt16LE(value(offset), offset);
      return bytes;
    });
    assert.equal(pc.run("set-default", NAME, "--in", file).status, 0);
    pc.run("settings", NAME, "--out", pc.file("again"));
    const [given, again] = [readFileSync(file), readFileSync(pc.file("again"))];
    assert.equal(again.length, 452);
    assert.deepEqual([again.readInt16LE(ORIENTATION), again.readInt16LE(PAPER), again.readInt16LE(COPIES)], [2, 258, 77]);
    assert.ok(again.subarray(350).equals(Buffer.concat([given.subarray(350, 382), again.subarray(382, 384),
                                                        given.subarray(384, 388), again.subarray(388, 390), given.subarray(390)])));
    assert.deepEqual(pc.json("data", NAME), stored);
  }
});

test("printers, the computer and the device are kept and changed", (t) => {
  const pc = installed(t);
  assert.equal(pc.run("add", NAME).status, 3);
  assert.equal(pc.run("add", "other", "--driver-name", "Someone's").status, 0);
  assert.deepEqual(pc.json("list").map(({ name, driver }) => [name, driver]),
                   [[NAME, "VELA QM610r"], ["other", "Someone's"]]);
  assert.equal(pc.run("remove", "other").status, 0);
  assert.equal(pc.json("list").length, 1);
  pc.run("machine", "--os", "6.1", "--server", "--administrator", "no", "--permission", NAME, "no");
  const machine = pc.json("machine");
  assert.deepEqual([machine.os, machine.product, machine.administrator, machine.permissions[NAME]], ["6.1", "server", false, false]);
  pc.run("device", NAME, "--mode", "peel", "--density", "305", "--offline", "yes");
  const device = pc.json("device", NAME);
  assert.deepEqual([device.mode, device.density, device.offline], ["peel", 305, true]);
  const key = `SOFTWARE\\Kestrel\\Devices\\${NAME}`;
  for (const root of ["", "hklm\\", "HKEY_LOCAL_MACHINE\\"])
    assert.equal(pc.json("registry", root + key)[`${key}\\Density`].number, 305, root);
  assert.ok(`${key}\\Density` in pc.json("registry", "HKLM"));
  assert.equal(pc.run("registry", `HKLM\\${key}\\none`).status, 3);
});

test("misuse is told in one line with exit code 2, and changes nothing", (t) => {
  const pc = installed(t);
  const before = pc.json("machine");
  for (const words of [[], ["nonsense"], ["add"], ["add", ""], ["caps"], ["caps", NAME, "--frob"], ["data", NAME, "a", "b"], ["convert", NAME],
    ["machine", "--os"], ["machine", "--os", "six"], ["machine", "--administrator", "perhaps"], ["device", NAME, "--density", "300"],
    ["machine", "--os", "5.1", "--permission", NAME, "perhaps"], ["sheet", NAME, "--kind", "some"],
    ["device", NAME, "--mode", "257"], ["settings", NAME, "--out", "-", "--json"], ["sheet", NAME, "--out", "-"],
    ...["0.0.0.0:0", "[::]:0", "127.0.0.1", "127.0.0.1:", "127.0.0.1:99999", ":0", "127.evil.invalid:0", "224.0.0.1:0"]
      .map((listen) => ["sheet", NAME, "--listen", listen]),
    ...["\ufeffa", "\ufffea", "a\nb", "a\x1b[31m", "a\x7f", "\u0085", "\u2028", "x".repeat(221)].map((name) => ["add", name])]) {
    const { status, stdout, stderr } = pc.run(...words);
    assert.deepEqual([status, stdout], [2, ""], words.join(" "));
    assert.match(stderr, /^printhost: .+\n$/);
  }
  assert.deepEqual(pc.json("machine"), before);
  assert.equal(pc.run("caps", "absent").status, 3);
  for (const help of ["--help", "-h"]) assert.match(pc.run("caps", help).stdout, /--json/);
  assert.match(pc.run("-h").stdout, /COMMAND/);
  assert.equal(readdirSync(pc.folder).length, 1);
});

test("the driver that runs is the Windows DLL, or the native module where that was asked for", (t) => {
  const pc = installed(t);
  const told = pc.json("module");
  const bytes = readFileSync(told.file);
  assert.deepEqual([told.format, told.machine, told.version], ["PE32+", "x86-64", "14.0.1.20"]);
  assert.equal(told.sha256, createHash("sha256").update(bytes).digest("hex"));
  assert.equal(told.exports.length, 16);
  assert.ok(told.imports["winspool.drv"].includes("OpenPrinterW") && !told.imports["user32.dll"].includes("OpenPrinterW"));
  assert.deepEqual(told.resources.filter(({ type }) => type === "version").map(({ name }) => name), [1]);
  assert.deepEqual(told.sections.filter(({ name }) => [".text", ".data"].includes(name)).map(({ protection }) => protection), ["r-x", "rw-"]);
  const x86 = pc.json("module", join(dirname(realpathSync(told.file)), "../x86/QM610rDRV1.dll"));
  assert.deepEqual([x86.format, x86.machine, x86.exports], ["PE32", "x86", told.exports]);
  for (const size of [0, 100, 1000, bytes.length - 1]) {
    const file = pc.file(`cut${size}`);
    writeFileSync(file, bytes.subarray(0, size));
    const { status, stdout, stderr } = pc.run("module", file);
    assert.deepEqual([status, stdout], [3, ""]);
    assert.match(stderr, /^printhost: .+\n$/);
  }

  const caps = pc.json("caps", NAME);
  assert.equal(pc.run("add", "native", "--native").status, 0);
  assert.deepEqual(pc.json("caps", NAME), caps);
  assert.match(readlinkSync(told.file), /\.so$/);
  assert.equal(pc.run("module").status, 3);
  assert.equal(pc.run("add", "again").status, 0);
  assert.equal(pc.json("module").sha256, told.sha256);
});
