// A headless Chromium, and a sheet as a person meets it in one.
import { chromium } from "playwright-core";

import { computer, LIMIT } from "./printhost.mjs";

// A page of a browser of its own, closed with the test.
export async function openBrowser(test, viewport = { width: 1000, height: 900 }, options = {}) {
  const browser = await chromium.launch({ executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium" });
  test.after(() => browser.close());
  const page = await browser.newPage({ viewport, ...options });
  page.setDefaultTimeout(LIMIT);
  return page;
}

// The window on top, and its controls by id.
export function top(page) {
  const window = page.locator("[data-window]").last();
  return { window, control: (id) => window.locator(`[data-id="${id}"]`) };
}

// Opens the address and waits for a window; answers the faults that the browser tells from then on.
export async function visit(page, address) {
  const faults = [];
  page.on("console", (message) => message.type() === "error" && faults.push(message.text()));
  page.on("pageerror", (error) => faults.push(String(error)));
  await page.goto(address);
  await page.locator("[data-window]").first().waitFor();
  return faults;
}

// Waits until all that was done on the page is handled and shown.
export const settled = (page) => page.waitForSelector("body:not([data-ahead])");

// Waits until a control of the window on top has this value.
export const holds = (page, id, value) =>
  page.waitForFunction(
    ([wanted, text]) => {
      const controls = [...document.querySelectorAll("[data-window]")].at(-1).querySelectorAll(`[data-id="${wanted}"]`);
      const shown = [...controls].map((one) => (one.tagName === "SELECT" ? one.selectedOptions[0]?.text : one.value ?? one.textContent));
      return shown.includes(text);
    },
    [id, value],
  );

// A sheet of a printer on a computer of its own.
export const openNewSheet = (test, printer = "Label Printer") => openSheet(test, computer(test, printer), printer);

// A sheet of a printer (its defaults if nothing else is said), with what a person does at it.
export async function openSheet(test, pc, printer, ...words) {
  const sheet = pc.start("sheet", printer, ...(words.length ? words : ["--kind", "user-default", "--json"]));
  const page = await openBrowser(test);
  const faults = await visit(page, await sheet.address);
  const { window, control } = top(page);
  return {
    pc, sheet, page, faults, window, control,
    go: async (index) => {
      await page.locator(`[data-page="${index}"]`).click();
      await page.locator(`[data-page="${index}"][aria-selected="true"]`).waitFor();
    },
    // Clicks a control that opens a window of this title, or closes the one on top.
    open: async (id, title) => {
      await control(id).click();
      await page.locator(`[data-window="${title}"]`).last().waitFor();
    },
    close: async (id) => {
      const count = await page.locator("section[data-window]").count();
      await control(id).click();
      await page.waitForFunction((n) => document.querySelectorAll("section[data-window]").length < n, count);
    },
    // Waits for a message box, answers its text and closes it.
    message: async () => {
      const box = page.locator('[data-kind="message"]');
      await box.waitFor();
      const text = await box.innerText();
      await box.locator('[data-id="1"]').click();
      await page.waitForFunction((shown) => document.querySelector('[data-kind="message"]')?.innerText !== shown, text);
      return text;
    },
    holds: (id, value) => holds(page, id, value),
    // OK of the sheet; the record that came out.
    ok: async () => {
      await page.locator('[data-button="ok"]').click();
      await settled(page);
      const { status, output } = await sheet.ended;
      if (status !== 0) throw new Error(`exit ${status}`);
      return JSON.parse(output);
    },
  };
}
