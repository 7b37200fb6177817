// A person's whole way from one printer to another, from the pages to what another process reads.
import assert from "node:assert/strict";
import { test } from "node:test";

import { openSheet } from "../support/browser.mjs";
import { computer } from "../support/printhost.mjs";

const PRINTER = "Label Printer";
const [PAPER, FONTS, UTILITY] = [1, 4, 5];
const OK = 1;

test("a backup chosen by browsing brings papers and fonts to a second printer", async (t) => {
  const pc = computer(t, PRINTER, "倉庫 2F");
  const first = await openSheet(t, pc, PRINTER);
  await first.go(PAPER);
  await first.open(1046, "用紙登録");
  for (const [id, text] of [[1115, "棚札"], [1053, "40.0"], [1080, "30.0"]]) await first.control(id).fill(text);
  await first.close(OK);
  await first.go(FONTS);
  await first.open(1133, "装飾フォントの登録");
  await first.control(1144).fill("太字");
  await first.control(1135).selectOption("漢字(横書)");
  await first.holds(1107, "16");
  await first.close(OK);
  await first.open(1049, "バーコードフォントの登録");
  await first.control(1049).fill("品番QR");
  await first.control(1165).selectOption({ index: 12 });
  await first.control(1059).click();
  await first.holds(1003, "4");
  await first.control(1003).fill("9");
  for (const window of [OK, OK]) await first.close(window);
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
