// What people come to the sheet for, each from the page to what another process reads afterwards.
import assert from "node:assert/strict";
import { test } from "node:test";

import { openNewSheet, openSheet } from "../support/browser.mjs";
import { computer } from "../support/printhost.mjs";

const PRINTER = "Label Printer";
const [PAPER, DEVICE, FONTS, UTILITY] = [1, 3, 4, 5];
const OK = 1;

async function registerPaper(sheet) {
  await sheet.go(PAPER);
  await sheet.open(1046, "用紙登録");
  await sheet.control(1115).fill("棚札");
  await sheet.control(1053).fill("40.0");
  await sheet.control(1080).fill("30.0");
  await sheet.close(OK);
}

async function registerFonts(sheet) {
  await sheet.go(FONTS);
  await sheet.open(1133, "装飾フォントの登録");
  await sheet.control(1144).fill("太字");
  await sheet.control(1135).selectOption("漢字(横書)");
  await sheet.holds(1107, "16");
  await sheet.close(OK);
  await sheet.open(1049, "バーコードフォントの登録");
  await sheet.control(1049).fill("品番QR");
  await sheet.control(1165).selectOption({ index: 12 });
  await sheet.control(1059).click();
  await sheet.holds(1003, "4");
  await sheet.control(1003).fill("9");
  await sheet.close(OK);
  await sheet.close(OK);
}

test("a label is registered, drawn, turned and listed by the next process", async (t) => {
  const sheet = await openNewSheet(t);
  const { pc } = sheet;
  await registerPaper(sheet);
  await sheet.control(1005).selectOption("棚札");
  await sheet.control(1001).check();
  // Two labels fit the box, each turned.
  await sheet.page.waitForFunction(() => ["rect", '[href="picture/156"]'].every((one) => document.querySelectorAll(`[data-id="1181"] ${one}`).length === 2));
  const { public: record } = await sheet.ok();
  assert.deepEqual([record.dmPaperSize, record.dmOrientation, record.dmFormName], [258, 2, "棚札"]);
  const caps = pc.json("caps", PRINTER);
  const index = caps.DC_PAPERS.output.indexOf(258);
  assert.deepEqual(caps.DC_PAPERSIZE.output[index], [400, 300]);
});

test("a peel printer tells its mode, and the paper page follows", async (t) => {
  const sheet = await openNewSheet(t);
  assert.equal(sheet.pc.run("device", PRINTER, "--mode", "peel").status, 0);
  await sheet.go(PAPER);
  assert.ok(await sheet.control(1195).isDisabled());
  await sheet.go(DEVICE);
  await sheet.holds(1135, "ティアオフ");
  await sheet.control(1180).click();
  assert.match(await sheet.message(), /機種が変更されました/);
  await sheet.holds(1135, "ハクリ");
  await sheet.go(PAPER);
  await sheet.control(1195).waitFor();
  assert.ok(await sheet.control(1195).isEnabled());
  assert.ok(await sheet.control(1196).isDisabled());
  await sheet.ok();
});

test("a backup chosen by browsing brings papers and fonts to a second printer", async (t) => {
  const pc = computer(t);
  for (const name of [PRINTER, "倉庫 2F"]) pc.run("add", name);
  const first = await openSheet(t, pc, PRINTER);
  await registerPaper(first);
  await registerFonts(first);
  await first.go(UTILITY);
  await first.control(1175).click();
  await first.control(1148).waitFor();
  await first.control(1148).fill("倉庫");
  await first.close(OK);
  const name = await first.control(1176).inputValue();
  assert.match(name, /^C:\\.*倉庫\.ini$/);
  await first.control(1060).click();
  assert.match(await first.message(), /データを保存しました。/);
  await first.ok();

  const second = await openSheet(t, pc, "倉庫 2F");
  await second.go(UTILITY);
  await second.control(1178).fill(name);
  await second.control(1061).click();
  assert.match(await second.message(), /重複する可能性/);
  assert.match(await second.message(), /データを読込みました。/);
  await second.go(FONTS);
  await second.holds(1131, "太字");
  await second.holds(1132, "品番QR");
  await second.open(1050, "バーコードフォントの変更");
  await second.control(1059).click();
  await second.holds(1003, "9");
  for (const window of [2, 2]) await second.close(window);
  await second.ok();
  const caps = pc.json("caps", "倉庫 2F");
  assert.deepEqual(caps.DC_PAPERNAMES.output, ["Standard Label 58 x 68 mm", "棚札", "フリーサイズ"]);
  const fonts = (printer) => pc.json("data", printer)["CreateFont Data"];
  assert.equal(fonts("倉庫 2F").size, 464);
});
