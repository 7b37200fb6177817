// A headless Chromium, and a sheet as a person meets it in one.
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { chromium } from "playwright-core";

import { computer } from "./printhost.mjs";

const FLAGS = ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
  "--disable-component-update", "--disable-sync"];

// A page of a browser with a profile of its own, closed with the test.
export async function openBrowser(test, viewport = { width: 1000, height: 900 }, options = {}) {
  const profile = mkdtempSync(join(tmpdir(), "chromium-"));
  const context = await chromium.launchPersistentContext(profile, {
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium", headless: true, args: FLAGS, viewport, ...options,
  });
  test.after(async () => {
    await context.close().catch(() => {});
    rmSync(profile, { recursive: true, force: true });
  });
  return context.pages()[0] ?? context.newPage();
}

// The window on top, and its controls by id.
export function top(page) {
  const window = page.locator("[data-window]").last();
  return { window, control: (id) => window.locator(`[data-id="${id}"]`) };
}

// Opens the address and waits until a window stands there.
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
export async function openNewSheet(test, printer = "Label Printer") {
  const pc = computer(test);
  pc.run("add", printer);
  return openSheet(test, pc, printer);
}

// A sheet of a printer (its defaults if nothing else is said), open in a browser, with what a person
// does at it.
export async function openSheet(test, pc, printer, ...words) {
  const sheet = pc.start("sheet", printer, ...(words.length ? words : ["--kind", "user-default", "--json"]));
  const page = await openBrowser(test);
  const faults = await visit(page, await sheet.address);
  const { window, control } = top(page);
  const windowTitled = (title) => page.locator(`[data-window="${title}"]`);
  return {
    pc,
    sheet,
    page,
    faults,
    window,
    control,
    go: async (index) => {
      await page.locator(`[data-page="${index}"]`).click();
      await page.locator(`[data-page="${index}"][aria-selected="true"]`).waitFor();
    },
    // Clicks a control that opens a window of this title.
    open: async (id, title) => {
      await control(id).click();
      await windowTitled(title).last().waitFor();
    },
    // Clicks a control that closes the window on top.
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
      // Another message may follow at once.
      await page.waitForFunction((shown) => document.querySelector('[data-kind="message"]')?.innerText !== shown, text);
      return text;
    },
    holds: (id, value) => holds(page, id, value),
    // OK of the sheet; the record that came out.
    ok: async () => {
      await page.locator('[data-button="ok"]').click();
      const { status, output } = await sheet.ended;
      if (status !== 0) throw new Error(`exit ${status}`);
      return JSON.parse(output);
    },
  };
}
