// A headless Chromium, and a property sheet of printhost in it.
import { chromium } from "playwright-core";

import { computer, LIMIT } from "./printhost.mjs";
import { ids } from "./resource_ids.mjs";

// The indices of the sheet's pages.
export const PAGES = { version: 0, paper: 1, operation: 2, device: 3, fonts: 4, utility: 5 };

// Loads an address in a browser of its own, which is closed when the test ends, and waits for a window. Returns the page
// and the list of the browser's error messages, which grows. options: those of playwright's newPage.
export async function openBrowser(test, address, { viewport = { width: 1000, height: 900 }, ...options } = {}) {
  const browser = await chromium.launch({ executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium" });
  test.after(() => browser.close());
  const page = await browser.newPage({ viewport, ...options });
  page.setDefaultTimeout(LIMIT);
  const errors = [];
  page.on("console", (message) => message.type() === "error" && errors.push(message.text()));
  page.on("pageerror", (error) => errors.push(String(error)));
  await page.goto(address);
  await page.locator("[data-window]").first().waitFor();
  return { page, errors };
}

// Returns locators of the topmost window and of its controls by id.
export function topWindow(page) {
  const window = page.locator("[data-window]").last();
  return { window, control: (id) => window.locator(`[data-id="${id}"]`) };
}

// Waits until the server has handled every action of the page and the page shows the result.
export const waitUntilHandled = (page) => page.waitForSelector("body:not([data-ahead])");

// Waits until a control of the topmost window has this value or selected text.
export const waitForValue = (page, id, value) =>
  page.waitForFunction(
    ([wantedId, wantedValue]) => {
      const window = [...document.querySelectorAll("[data-window]")].at(-1);
      const controls = [...window.querySelectorAll(`[data-id="${wantedId}"]`)];
      return controls.some((one) => (one.tagName === "SELECT" ? one.selectedOptions[0]?.text : one.value) === wantedValue);
    },
    [id, value],
  );

// Opens the user-default sheet of a printer on a computer of its own, in a browser of its own. fragment: that of the
// address.
export async function openNewSheet(test, { printer = "Label Printer", fragment = "", ...options } = {}) {
  const pc = computer(test, printer);
  const sheet = pc.start("sheet", printer, "--kind", "user-default", "--json");
  const { page, errors } = await openBrowser(test, (await sheet.address) + fragment, options);
  const { window, control } = topWindow(page);
  return {
    pc, sheet, page, errors, window, control,
    showPage: async (index) => {
      await page.locator(`[data-page="${index}"]`).click();
      await page.locator(`[data-page="${index}"][aria-selected="true"]`).waitFor();
    },
    // Clicks a control that opens a window of this title.
    openWindow: async (id, title) => {
      await control(id).click();
      await page.locator(`[data-window="${title}"]`).last().waitFor();
    },
    // Waits for a message box, closes it and returns its text. Another message box may follow at once.
    closeMessage: async () => {
      const box = page.locator('[data-kind="message"]');
      await box.waitFor();
      const text = await box.innerText();
      await control(ids.IDOK).click();
      await page.waitForFunction((closed) => document.querySelector('[data-kind="message"]')?.innerText !== closed, text);
      return text;
    },
    waitForValue: (id, value) => waitForValue(page, id, value),
    // Presses OK of the sheet and returns the resulting record.
    pressOk: async () => {
      await page.locator('[data-button="ok"]').click();
      return JSON.parse((await sheet.ended).output);
    },
  };
}
