// A user at the sheet: registering a paper, saving a backup, cancelling, several browsers.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";

import { openBrowser, openNewSheet, PAGES, topWindow, waitForValue, waitUntilHandled } from "../support/browser.mjs";
import { ids } from "../support/resource_ids.mjs";

const { IDC_HELP_TEXT, IDC_PAPER_LIST, IDC_PAPER_REGISTER, IDC_PAPER_REGISTER_NAME: NAME } = ids;

test("PaperRegistration: a paper without a name is refused, a complete one is listed, drawn and stored", async (t) => {
  const { pc, page, window, control, showPage, openWindow, closeMessage, pressOk } = await openNewSheet(t, { viewport: { width: 640, height: 360 } });
  const focusedName = page.locator(`[data-id="${NAME}"]:focus`);
  await showPage(PAGES.paper);
  await openWindow(IDC_PAPER_REGISTER, "用紙登録");
  await focusedName.waitFor();
  await page.keyboard.press("Enter");
  await page.locator('[data-kind="message"] [data-icon="exclamation"]').waitFor();
  assert.match(await closeMessage(), /用紙名/);
  await focusedName.waitFor();

  await page.keyboard.type("荷札 R&D");
  const helpOfName = await control(IDC_HELP_TEXT).textContent();
  await control(ids.IDC_PAPER_REGISTER_WIDTH).fill("40.0");
  await control(IDC_HELP_TEXT).filter({ hasNotText: helpOfName }).waitFor();
  await control(ids.IDC_PAPER_REGISTER_LENGTH).fill("30.0");
  await page.keyboard.press("Enter");
  await page.locator('[data-window="用紙登録"]').waitFor({ state: "detached" });
  await control(IDC_PAPER_LIST).selectOption("荷札 R&D");
  await control(ids.IDC_PAPER_LANDSCAPE).check();
  await control(ids.IDC_PAPER_PICTURE).locator(`[href="picture/${ids.IDB_LANDSCAPE}"]`).nth(1).waitFor(); // two labels

  await control(ids.IDC_PAPER_DELETE).click();
  await window.filter({ hasText: "荷札 R&D を削除します" }).waitFor(); // the ampersand is no access key
  await page.keyboard.press("Escape");
  await page.locator('[data-kind="message"]').waitFor({ state: "detached" });
  assert.equal((await pressOk()).public.dmFormName, "荷札 R&D");
  assert.deepEqual(pc.json("caps", "Label Printer").DC_PAPERSIZE.output[1], [400, 300]);
});

test("Backup: a saved file is chosen by a double click in the file dialog", async (t) => {
  const { pc, page, control, showPage, closeMessage, waitForValue: waitFor } = await openNewSheet(t);
  const folder = `Z:${pc.folder.replaceAll("/", "\\")}\\`;
  await showPage(PAGES.utility);
  await control(ids.IDC_UTILITY_SAVE_NAME).fill(`${folder}saved.ini`);
  await control(ids.IDC_UTILITY_SAVE).click();
  assert.match(await closeMessage(), /データを保存しました。/);

  await control(ids.IDC_UTILITY_LOAD_NAME).fill(`${folder}other.ini`);
  await control(ids.IDC_UTILITY_LOAD_BROWSE).click();
  await page.locator(".drives", { hasText: `C:\\ = ${pc.state}/` }).waitFor();
  await page.locator("select.list option", { hasText: "saved.ini" }).dblclick();
  await waitFor(ids.IDC_UTILITY_LOAD_NAME, `${folder}saved.ini`);
});

test("Sheet: the close box cancels it", async (t) => {
  const { sheet, page } = await openNewSheet(t);
  await page.locator(".title .close").click();
  assert.equal((await sheet.ended).status, 1);
});

test("Sheet: letters typed after a reload, in a second browser and again in the first all arrive", async (t) => {
  const { sheet, page, control, showPage, openWindow } = await openNewSheet(t);
  const { page: other } = await openBrowser(t, await sheet.address);
  await showPage(PAGES.paper);
  await openWindow(IDC_PAPER_REGISTER, "用紙登録");
  await control(NAME).pressSequentially("before the reload");
  await page.reload();
  for (const [browserPage, letters] of [[page, "ABCDEFGHIJ"], [other, "BCDEFGHIJK"], [page, "CDEFGHIJKL"]]) {
    const field = topWindow(browserPage).control(NAME);
    await field.fill("");
    await field.pressSequentially(letters);
    await waitUntilHandled(browserPage);
    for (const each of [page, other]) await waitForValue(each, NAME, letters);
  }
});

test("Document: the example of a sheet in the browser moves the print's origin", async (t) => {
  const { page, sheet } = await openNewSheet(t);
  const [, code] = /```js\n([^]*?)```/.exec(readFileSync(new URL("../../docs/driving-a-sheet.md", import.meta.url), "utf8"));
  await new Function("page", `return (async () => {${code}})()`)(page);
  assert.equal(JSON.parse((await sheet.ended).output).private.nVertBase, -12);
});
