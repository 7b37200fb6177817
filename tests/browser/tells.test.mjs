// What the page tells and asks, and what keys and texts do on it.
import assert from "node:assert/strict";
import { writeFileSync } from "node:fs";
import { test } from "node:test";

import { openNewSheet, settled } from "../support/browser.mjs";

const PRINTER = "R&D 2F";
const [VERSION, PAPER, DEVICE, FONTS, UTILITY] = [0, 1, 3, 4, 5];
const OK = 1;

test("printer and kind, drives, a placeholder, unsaved changes, a refused action and a lost server are told", async (t) => {
  const { pc, page, control, go, holds, sheet } = await openNewSheet(t, PRINTER);
  const notice = (text) => page.locator("#notice", { hasText: text }).waitFor();
  assert.equal(await page.title(), `${PRINTER} — 既定の設定`);
  assert.equal(await page.locator("h1").textContent(), `${PRINTER} — 既定の設定`);

  await go(VERSION);
  await page.context().route("https://**", (route) => route.fulfill({ body: "support" }));
  const opening = page.context().waitForEvent("page");
  await control(1180).click();
  await (await opening).waitForURL("https://www.vela.example/**");
  await notice("仮のもの");
  await page.bringToFront();
  // The notice covers no control, and goes when it is closed.
  for (const viewport of [{ width: 1280, height: 720 }, { width: 390, height: 844 }]) {
    await page.setViewportSize(viewport);
    const covered = await page.evaluate(() => {
      const box = document.getElementById("notice").getBoundingClientRect();
      return [...document.querySelectorAll("button:not(#notice *), section [data-id]")].filter((one) => {
        const { left, top, right, bottom } = one.getBoundingClientRect();
        return left < box.right && right > box.left && top < box.bottom && bottom > box.top;
      }).map((one) => one.textContent);
    });
    assert.deepEqual(covered, [], JSON.stringify(viewport));
  }
  await page.locator("#notice .close").click();
  await page.locator("#notice").waitFor({ state: "hidden" });

  await go(UTILITY);
  await control(1175).click();
  await page.locator(".drives", { hasText: `C:\\ = ${pc.state}/` }).waitFor();
  await page.keyboard.press("Escape");

  await go(PAPER);
  await page.route("**/action", (route) => route.fulfill({ status: 503, body: "Too many." }));
  await control(1099).fill("77");
  await notice("操作を受け付けられませんでした。");
  await holds(1099, "0");
  await page.unroute("**/action");
  await control(1099).fill("12");
  await settled(page);
  const asked = page.waitForEvent("dialog");
  await page.evaluate(() => setTimeout(() => location.reload()));
  assert.equal((await asked).type(), "beforeunload");
  await (await asked).dismiss();

  sheet.child.kill("SIGKILL");
  await notice("もう一度 printhost を起動し");
  await page.locator("[data-lost] #desk[inert]").waitFor();
});

test("a printer that was removed meanwhile is reported whole in Japanese, and in English", async (t) => {
  const japanese = "設定できませんでした。プリンタが削除されたため、設定は保存されていません。";
  const english = `The settings could not be kept: the printer "${PRINTER}" was removed meanwhile; nothing is kept.`;
  for (const shown of [japanese, japanese + english]) {
    const { pc, page } = await openNewSheet(t, PRINTER);
    if (shown !== japanese) {
      await page.locator("#gloss").click();
      await page.locator("html.glossed").waitFor();
    }
    pc.done("remove", PRINTER);
    await page.locator('[data-button="ok"]').click();
    await page.locator("[data-end] #notice").waitFor();
    assert.equal(await page.locator("#notice > span").textContent(), shown);
  }
});

test("the wait cursor shows while a file is written", async (t) => {
  const { pc, page, control, go, message } = await openNewSheet(t);
  // What else is in the file is kept and written anew with every key.
  const file = pc.file("large.ini");
  writeFileSync(file, `[other]\r\n${`key=${"x".repeat(200)}\r\n`.repeat(20000)}`);
  await go(UTILITY);
  await control(1176).fill(`Z:${file.replaceAll("/", "\\")}`);
  await control(1060).click();
  await page.locator("body[data-busy]").waitFor();
  assert.equal(await control(1060).evaluate((button) => getComputedStyle(button).cursor), "wait");
  assert.match(await message(), /データを保存しました/);
  await page.locator("body:not([data-busy])").waitFor();
});

test("keys: arrows walk the tabs and a group, Tab the controls and inside a dialog; a click() steps", async (t) => {
  const { page, control, go, holds } = await openNewSheet(t);
  const focused = (name) => page.evaluate((name) => document.activeElement.dataset[name], name);
  const walk = async (keys, name) => {
    const visited = [];
    for (const key of keys) {
      await page.keyboard.press(key);
      await settled(page); // the picture that follows moves nothing
      visited.push(await focused(name));
    }
    return visited.join(" ");
  };
  await page.locator('[data-page="0"]').focus();
  assert.equal(await walk(["ArrowRight", "ArrowRight", "ArrowRight", "End", "ArrowLeft", "Home", "ArrowRight"], "page"), "1 2 3 5 4 0 1");
  await page.locator('[data-window="用紙"]').waitFor();
  await page.keyboard.press("Enter");
  await page.waitForFunction(() => document.activeElement.dataset.id === "1005");
  assert.equal(await walk(["Tab", "ArrowRight", "Tab", "Tab", "Tab", "Shift+Tab"], "id"), "1000 1001 1048 1099 1100 1099");
  assert.ok(await control(1001).isChecked());

  await control(1101).locator('[data-spin="up"]').evaluate((arrow) => arrow.click());
  await holds(1099, "1");
  await go(FONTS);
  await control(1049).click();
  await control(1007).waitFor();
  assert.equal(await walk(["Shift+Tab", "Tab", "Shift+Tab", "Shift+Tab"], "id"), "2 1049 2 1");
});

test("Esc takes back what arrow keys chose in a list that F4 opened, Enter keeps it", async (t) => {
  const { pc, page, control, go, holds, ok } = await openNewSheet(t);
  const MODE = 1135;
  const press = async (...keys) => {
    for (const key of keys) await page.keyboard.press(key);
    await settled(page);
  };
  await go(DEVICE);
  await control(MODE).focus();
  await press("F4", "ArrowDown", "ArrowDown");
  await page.locator(".combo.open").waitFor();
  await holds(MODE, "ハクリ");
  await press("Escape");
  await holds(MODE, "ティアオフ");
  await press("Alt+ArrowDown", "ArrowDown", "Enter");
  await holds(MODE, "連続");
  await ok();
  assert.equal(pc.json("data", "Label Printer", "Private DevMode").settings.Mecha, 1);
});

test("an ampersand is itself where the text is no caption, and a preview stands in its box", async (t) => {
  const { page, window, control, go, open, close } = await openNewSheet(t);
  await go(PAPER);
  await open(1046, "用紙登録");
  await control(1115).fill("R&D && x");
  await close(OK);
  await control(1005).selectOption("R&D && x");
  await control(1047).click();
  await page.locator('[data-kind="message"]').waitFor();
  assert.match(await window.innerText(), /R&D && x を削除します/);
  await page.keyboard.press("Escape");
  await page.locator('[data-kind="message"]').waitFor({ state: "detached" });

  await go(FONTS);
  await open(1133, "装飾フォントの登録");
  await control(1135).selectOption("X24");
  await control(1159).fill("2");
  await settled(page);
  const [box, text] = await page.evaluate(() => {
    const drawing = [...document.querySelectorAll(".drawn .drawing")].at(-1);
    return [drawing, drawing.querySelector("text")].map((one) => one.getBoundingClientRect()).map(({ top, bottom, height }) => ({ middle: (top + bottom) / 2, height }));
  });
  assert.ok(Math.abs(box.middle - text.middle) < 0.07 * text.height, JSON.stringify([box, text]));
});
