// Keys, arrows and input methods.
import assert from "node:assert/strict";
import { test } from "node:test";

import { openNewSheet, PAGES, waitUntilHandled } from "../support/browser.mjs";
import { ids } from "../support/resource_ids.mjs";

const { IDOK, IDCANCEL, IDC_PAPER_LIST, IDC_PAPER_REGISTER_NAME: NAME } = ids;

// Presses keys; after each the focused element must have the given data-page or data-id. steps: [key, value].
async function expectFocusAfterKeys(page, attribute, steps) {
  for (const [key, expected] of steps) {
    await page.keyboard.press(key);
    await waitUntilHandled(page); // the server's snapshot must not move the focus
    assert.equal(await page.evaluate((name) => document.activeElement.dataset[name], attribute), String(expected), key);
  }
}

test("Tabs: arrow keys, Home and End switch pages and keep the focus on the tabs", async (t) => {
  const { page } = await openNewSheet(t);
  await page.locator('[data-page="0"]').focus();
  await expectFocusAfterKeys(page, "page", [["ArrowRight", 1], ["ArrowRight", 2], ["End", 5], ["ArrowLeft", 4], ["Home", 0], ["ArrowRight", 1]]);
  await page.keyboard.press("Enter"); // as a click: the focus moves to the page
  await page.locator(`[data-window="用紙"] [data-id="${IDC_PAPER_LIST}"]:focus`).waitFor();
});

test("Keyboard: Tab moves between controls and stays in a dialog, arrow keys move in a group and step a number", async (t) => {
  const { page, control, showPage, openWindow, waitForValue } = await openNewSheet(t);
  await showPage(PAGES.paper);
  await control(IDC_PAPER_LIST).focus();
  await expectFocusAfterKeys(page, "id", [["Tab", ids.IDC_PAPER_PORTRAIT], ["ArrowRight", ids.IDC_PAPER_LANDSCAPE], ["Tab", ids.IDC_PAPER_FLIP],
    ["Tab", ids.IDC_PAPER_VERT_BASE], ["ArrowUp", ids.IDC_PAPER_VERT_BASE]]);
  assert.ok(await control(ids.IDC_PAPER_LANDSCAPE).isChecked());
  await control(ids.IDC_PAPER_VERT_BASE_SPIN).locator('[data-spin="up"]').evaluate((arrow) => arrow.click()); // without a pointer
  await waitForValue(ids.IDC_PAPER_VERT_BASE, "2");

  await showPage(PAGES.fonts);
  await openWindow(ids.IDC_CREATE_FONT_BAR_NEW, "バーコードフォントの登録");
  await expectFocusAfterKeys(page, "id", [["Shift+Tab", IDCANCEL], ["Tab", ids.IDC_BAR_FONT_NAME], ["Shift+Tab", IDCANCEL], ["Shift+Tab", IDOK]]);
  await control(ids.IDC_BAR_FONT_SERIAL_OFF).focus();
  await expectFocusAfterKeys(page, "id", [["ArrowRight", ids.IDC_BAR_FONT_SERIAL_ON], ["ArrowLeft", ids.IDC_BAR_FONT_SERIAL_OFF]]);
});

test("SpinArrow: steps when pressed and repeatedly while it is held down", async (t) => {
  const { page, control, showPage, waitForValue } = await openNewSheet(t);
  await showPage(PAGES.paper);
  await page.clock.install({ time: 0 });
  await page.clock.pauseAt("1970-01-02"); // from now on only runFor advances the time
  await control(ids.IDC_PAPER_VERT_BASE_SPIN).locator('[data-spin="down"]').hover();
  await page.mouse.down();
  await waitForValue(ids.IDC_PAPER_VERT_BASE, "-1");
  await page.clock.runFor(400 + 2 * 120); // the delay, and two intervals of the repetition
  await waitForValue(ids.IDC_PAPER_VERT_BASE, "-4");
  await page.mouse.up();
  await page.clock.runFor(1000);
  await waitUntilHandled(page);
  assert.equal(await control(ids.IDC_PAPER_VERT_BASE).inputValue(), "-4");
});

test("DropDownList: Esc restores the choice that arrow keys have changed, Enter keeps it", async (t) => {
  const { page, control, showPage, waitForValue } = await openNewSheet(t);
  await showPage(PAGES.device);
  await control(ids.IDC_DEVICE_MODE).focus();
  for (const openKey of ["F4", "Alt+ArrowDown"]) {
    for (const key of [openKey, "ArrowDown", "ArrowDown"]) await page.keyboard.press(key);
    await page.locator(".combo.open").waitFor();
    await waitForValue(ids.IDC_DEVICE_MODE, "ハクリ");
    await page.keyboard.press("Escape");
    await waitForValue(ids.IDC_DEVICE_MODE, "ティアオフ");
  }
  for (const key of ["F4", "ArrowDown", "Enter"]) await page.keyboard.press(key);
  await page.locator(".combo.open").waitFor({ state: "detached" });
  await waitForValue(ids.IDC_DEVICE_MODE, "連続");
});

test("InputMethod: text under composition stays in the browser until it is finished", async (t) => {
  const { page, control, showPage, openWindow } = await openNewSheet(t);
  await showPage(PAGES.paper);
  await openWindow(ids.IDC_PAPER_REGISTER, "用紙登録");
  // The name is composed while the server has not yet handled an action before it: the network holds actions back.
  const nameEdits = [];
  let release;
  const released = new Promise((resolve) => (release = resolve));
  await page.route("**/action", async (route) => {
    const { action, id, text } = route.request().postDataJSON();
    if (action === "edit" && id === NAME) nameEdits.push(text);
    await released;
    await route.continue();
  });
  await control(ids.IDC_PAPER_REGISTER_WIDTH).fill("50.5");
  await control(NAME).focus();
  const input = await page.context().newCDPSession(page);
  for (const text of ["n", "に", "にふ", "にふだ"]) {
    await input.send("Input.imeSetComposition", { text, selectionStart: text.length, selectionEnd: text.length });
  }
  release();
  await waitUntilHandled(page);
  assert.equal(await control(NAME).inputValue(), "にふだ");
  await input.send("Input.insertText", { text: "荷札" });
  await page.keyboard.type("1");
  await waitUntilHandled(page);
  assert.equal(await control(NAME).inputValue(), "荷札1");
  assert.deepEqual(nameEdits, ["荷札", "荷札1"]);
});
