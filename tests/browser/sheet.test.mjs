// A person at the sheet: pages, fields, keys, dialogs, and what comes out of it.
import assert from "node:assert/strict";
import { existsSync, readFileSync } from "node:fs";
import { test } from "node:test";

import { holds, openBrowser, openNewSheet, openSheet, settled, top, visit } from "../support/browser.mjs";
import { computer } from "../support/printhost.mjs";

const PRINTER = "Label Printer";
const PAPER = 1; // the page
// Controls of the paper page and its registration dialog.
const [VERTICAL_BASE, VERTICAL_BASE_SPIN, LANDSCAPE, PAPERS, REGISTER] = [1099, 1101, 1001, 1005, 1046];
const [NAME, WIDTH, LENGTH, HELP] = [1115, 1053, 1080, 1167];

test("a paper is registered by keyboard, refused while it has no name, drawn, turned and listed by the next process", async (t) => {
  const { pc, page, faults, go, ok, control, window } = await openNewSheet(t);
  await go(PAPER);
  await control(REGISTER).click();
  await page.locator('[data-window="用紙登録"]').waitFor();
  assert.equal(await page.evaluate(() => document.activeElement.dataset.id), String(NAME));
  await page.keyboard.press("Enter");
  await page.locator('[data-kind="message"] [data-icon="exclamation"]').waitFor();
  assert.match(await window.innerText(), /用紙名/);
  await page.keyboard.press("Escape"); // a box with OK alone ends with OK
  await page.locator('[data-kind="message"]').waitFor({ state: "detached" });
  await page.waitForFunction((id) => document.activeElement.dataset.id === String(id), NAME);
  await page.keyboard.type("荷札 50");
  const before = await control(HELP).textContent();
  await control(WIDTH).click();
  await page.waitForFunction(([id, text]) => [...document.querySelectorAll(`[data-id="${id}"]`)].at(-1).textContent !== text, [HELP, before]);
  await control(WIDTH).fill("40.0");
  await control(LENGTH).fill("30.0");
  await page.keyboard.press("Enter");
  await page.locator('[data-window="用紙登録"]').waitFor({ state: "detached" });
  await page.waitForFunction((id) => [...document.querySelector(`[data-id="${id}"]`).options].some((option) => option.text === "荷札 50"), PAPERS);
  await control(PAPERS).selectOption("荷札 50");
  await control(LANDSCAPE).check();
  // Two labels fit the box, each turned.
  await page.waitForFunction(() => ["rect", '[href="picture/156"]'].every((one) => document.querySelectorAll(`[data-id="1181"] ${one}`).length === 2));
  const { public: open } = await ok();
  assert.deepEqual([open.dmFormName, open.dmPaperWidth, open.dmOrientation, faults], ["荷札 50", 400, 2, []]);
  assert.deepEqual(pc.json("caps", PRINTER).DC_PAPERSIZE.output[1], [400, 300]);
});

test("Cancel, Esc and a closed page change nothing", async (t) => {
  const pc = computer(t, PRINTER);
  const before = [pc.json("settings", PRINTER), pc.json("data", PRINTER)];
  for (const end of [(page) => page.locator('[data-button="cancel"]').click(), (page) => page.keyboard.press("Escape"), (page) => page.close()]) {
    const { sheet, page, go, control } = await openSheet(t, pc, PRINTER, "--kind", "user-default", "--out", pc.file("out"));
    await go(PAPER);
    await control(VERTICAL_BASE).fill("9");
    await end(page);
    assert.equal((await sheet.ended).status, 1);
    assert.ok(!existsSync(pc.file("out")));
    assert.deepEqual([pc.json("settings", PRINTER), pc.json("data", PRINTER)], before);
  }
});

test("each kind of sheet shows its pages and hands its record on as it should", async (t) => {
  const pc = computer(t, PRINTER);
  for (const [kind, pages, base] of [["document", 6, 0], ["advanced", 6, 0], ["printer", 1, 0], ["user-default", 6, 1]]) {
    const out = kind === "printer" ? [] : ["--out", pc.file(kind)];
    const { sheet, page, go, control } = await openSheet(t, pc, PRINTER, "--kind", kind, ...out);
    assert.equal(await page.locator("[data-page]").count(), pages);
    if (kind !== "printer") {
      await go(PAPER);
      await control(VERTICAL_BASE_SPIN).locator('[data-spin="up"]').click();
    }
    await page.locator('[data-button="ok"]').click();
    assert.equal((await sheet.ended).status, 0);
    if (kind !== "printer") assert.equal(readFileSync(pc.file(kind)).readInt16LE(384), 1);
    assert.equal(pc.json("settings", PRINTER).private.nVertBase, base, kind);
  }
});

test("what a field refuses snaps back; text under composition stays in the browser", async (t) => {
  const { page, go, control } = await openNewSheet(t);
  await go(PAPER);
  await control(REGISTER).click();
  const width = control(WIDTH);
  await width.fill("12");
  await page.keyboard.type("x");
  await settled(page);
  assert.equal(await width.inputValue(), "12.0");

  // The user is back in the name before the server gets the width: the network holds actions back.
  await control(NAME).focus();
  await settled(page);
  const edits = [];
  let release;
  const released = new Promise((resolve) => (release = resolve));
  await page.route("**/action", async (route) => {
    const { action, id, text } = route.request().postDataJSON();
    if (action === "edit" && id === NAME) edits.push(text);
    await released;
    await route.continue();
  });
  await width.fill("50.5");
  await control(NAME).focus();
  const input = await page.context().newCDPSession(page);
  for (const text of ["n", "に", "にふ", "にふだ"])
    await input.send("Input.imeSetComposition", { text, selectionStart: text.length, selectionEnd: text.length });
  release();
  await settled(page);
  assert.equal(await control(NAME).inputValue(), "にふだ");
  assert.deepEqual(edits, []);
  await input.send("Input.insertText", { text: "荷札" });
  await page.waitForFunction(() => document.activeElement.value === "荷札");
  await page.keyboard.type("1");
  await settled(page);
  assert.equal(await control(NAME).inputValue(), "荷札1");
  assert.deepEqual(edits.at(-1), "荷札1");
  assert.ok(edits.every((text) => !/[nにふだ]/.test(text)), edits.join());
});

test("letters typed after a reload, in a second browser and in the first again all arrive", async (t) => {
  const { sheet, page, go, control } = await openNewSheet(t);
  await go(PAPER);
  await control(REGISTER).click();
  const typed = async (page, letters) => {
    const field = top(page).control(NAME);
    await field.fill("");
    await field.pressSequentially(letters, { delay: 20 });
    await settled(page);
    assert.equal(await field.inputValue(), letters);
  };
  await typed(page, "ABCDEFGHIJKLMNOPQRST");
  await page.reload();
  await typed(page, "BCDEFGHIJKLMNOPQRSTU");
  const other = await openBrowser(t);
  await visit(other, await sheet.address);
  await typed(other, "CDEFGHIJKLMNOPQRSTUV");
  await holds(page, NAME, "CDEFGHIJKLMNOPQRSTUV");
  await typed(page, "DEFGHIJKLMNOPQRSTUVW");
  await holds(other, NAME, "DEFGHIJKLMNOPQRSTUVW");
});

test("the documented example of a sheet in the browser", async (t) => {
  const { page, sheet } = await openNewSheet(t);
  const document = readFileSync(new URL("../../docs/driving-a-sheet.md", import.meta.url), "utf8");
  const [, code] = /```js\n([^]*?)```/.exec(document);
  const AsyncFunction = (async () => {}).constructor;
  await new AsyncFunction("page", code)(page);
  const { status, output } = await sheet.ended;
  assert.deepEqual([status, JSON.parse(output).private.nVertBase], [0, -12]);
});
