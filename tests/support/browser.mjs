// A headless Chromium, and a sheet as a person meets it in one.
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { chromium } from "playwright-core";

const FLAGS = ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
  "--disable-component-update", "--disable-sync"];

// A page of a browser with a profile of its own, closed with the test.
export async function openBrowser(test, viewport = { width: 1000, height: 900 }) {
  const profile = mkdtempSync(join(tmpdir(), "chromium-"));
  const context = await chromium.launchPersistentContext(profile, {
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium", headless: true, args: FLAGS, viewport,
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
