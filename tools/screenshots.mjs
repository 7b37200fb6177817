// Writes docs/sheet.md and its pictures: node tools/screenshots.mjs
import { mkdirSync, rmSync, writeFileSync } from "node:fs";
import { fileURLToPath } from "node:url";

import { openBrowser } from "../tests/support/browser.mjs";
import { computer } from "../tests/support/printhost.mjs";
import { documentSheet, sheetDocument } from "./sheet_document.mjs";
import { tour } from "../tests/browser/tour.mjs";

const docs = fileURLToPath(new URL("../docs/", import.meta.url));
rmSync(`${docs}screenshots`, { recursive: true, force: true }); // removes pictures of windows that no longer exist
mkdirSync(`${docs}screenshots`);
const cleanups = [];
const scope = { after: (cleanup) => cleanups.unshift(cleanup) };
const { page } = await openBrowser(scope, await computer(scope).start("demo").address);
const gloss = page.locator("#gloss");
const stops = [];
await tour(page, async (stop) => {
  await page.mouse.move(0, 0);
  // The name of the temporary folder must not differ from run to run.
  await page.evaluate(() => document.querySelectorAll(".drives").forEach((one) => (one.textContent = one.textContent.replace(/printhost-\w+/, "printhost"))));
  await page.locator("section[data-window]").last().screenshot({ path: `${docs}screenshots/${stop.name}.png` });
  await gloss.evaluate((button) => button.click());
  await page.locator("html.glossed section[data-window]").last().waitFor();
  stops.push(await documentSheet(page, stop));
  await gloss.evaluate((button) => button.click());
  await page.locator("html:not(.glossed) section[data-window]").last().waitFor();
});
writeFileSync(`${docs}sheet.md`, sheetDocument(stops));
for (const cleanup of cleanups) await cleanup();
