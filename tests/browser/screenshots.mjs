// Draws the pictures of docs/screenshots anew: node tests/browser/screenshots.mjs
import { mkdirSync } from "node:fs";
import { fileURLToPath } from "node:url";

import { openBrowser, top, visit } from "../support/browser.mjs";
import { computer } from "../support/printhost.mjs";

const folder = fileURLToPath(new URL("../../docs/screenshots/", import.meta.url));
mkdirSync(folder, { recursive: true });
const cleanups = [];
const scope = { after: (cleanup) => cleanups.unshift(cleanup) };

const pc = computer(scope);
const sheet = pc.start("demo");
const page = await openBrowser(scope);
await visit(page, await sheet.address);
const { window, control } = top(page);
const picture = async (name) => {
  await page.waitForTimeout(400); // let the focus and its help text settle
  await page.mouse.move(0, 0);
  await page.locator("section[data-window]").last().screenshot({ path: `${folder}${name}.png` });
};
// Opens a dialog by a control of the shown page, pictures it, and leaves it by Esc.
const dialog = async (index, id, name, meanwhile = async () => {}) => {
  await page.locator(`[data-page="${index}"]`).click();
  const count = await page.locator("section[data-window]").count();
  await control(id).click();
  await page.waitForFunction((n) => document.querySelectorAll("section[data-window]").length > n, count);
  await meanwhile();
  await picture(name);
  await page.keyboard.press("Escape");
  await page.waitForFunction((n) => document.querySelectorAll("section[data-window]").length === n, count);
};

for (const [index, name] of ["version", "paper", "operation", "device", "create-font", "utility"].entries()) {
  await page.locator(`[data-page="${index}"]`).click();
  await picture(`page-${name}`);
}
await dialog(1, 1046, "dialog-paper", async () => {
  await control(1115).fill("荷札 50 × 80 mm");
  await control(1053).fill("50.0");
  await control(1080).fill("80.0");
});
await dialog(4, 1133, "dialog-decorative-font");
await dialog(4, 1049, "dialog-barcode-font");
await dialog(2, 1180, "dialog-colour");
await dialog(2, 1192, "dialog-halftone");
await dialog(5, 1175, "dialog-file");
await window.waitFor();
for (const cleanup of cleanups) await cleanup();
