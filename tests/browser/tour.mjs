// A tour of everything a sheet can show: each page and each dialog in turn, with what they are
// called. What is checked or pictured at each stop is the caller's.
import { top } from "../support/browser.mjs";

const [VERSION, PAPER, OPERATION, DEVICE, FONTS, UTILITY] = [0, 1, 2, 3, 4, 5];
// Pages and dialogs: what they are called, what the names of their controls' ids begin with, the page
// they are on, and the controls that open them one inside the other.
const STOPS = [
  ["page-version", "VERSION", VERSION],
  ["page-paper", "PAPER", PAPER],
  ["page-operation", "OPERATION", OPERATION],
  ["page-device", "DEVICE", DEVICE],
  ["page-create-font", "CREATE_FONT", FONTS],
  ["page-utility", "UTILITY", UTILITY],
  ["dialog-paper", "PAPER_REGISTER", PAPER, 1046],
  ["dialog-paper-reference", "PAPER_REFERENCE", PAPER, 1051, 3],
  ["message-delete", "", PAPER, 1047],
  ["dialog-colour", "", OPERATION, 1180],
  ["dialog-halftone", "", OPERATION, 1192],
  ["dialog-decorative-font", "DECO_FONT", FONTS, 1133],
  ["dialog-barcode-font", "BAR_FONT", FONTS, 1049],
  ["dialog-barcode-detail", "", FONTS, 1049, 1059],
  ["message-name", "", FONTS, 1049, 1],
  ["dialog-save-file", "", UTILITY, 1175],
  ["dialog-open-file", "", UTILITY, 1177],
  ["message-file", "", UTILITY, 1060],
];

const windows = (page) => page.locator("section[data-window]").count();

// Calls stop({ name, prefix }) at each page and dialog of an open user-default sheet.
export async function tour(page, stop) {
  const { control } = top(page);
  const go = async (index) => {
    await page.locator(`[data-page="${index}"]`).click();
    await page.locator(`[data-page="${index}"][aria-selected="true"]`).waitFor();
  };
  // Everything done is in the picture, and what that moves is moved.
  const settled = async () => {
    await page.waitForTimeout(30);
    await page.waitForSelector("body:not([data-ahead])");
  };
  for (const [name, prefix, index, ...ids] of STOPS) {
    await go(index);
    const before = await windows(page);
    await settled();
    for (const id of ids) {
      await control(id).click();
      await settled();
    }
    if ((await windows(page)) === before && ids.length) throw new Error(`${name} did not open`);
    await stop({ name, prefix });
    while ((await windows(page)) > before) {
      await page.keyboard.press("Escape");
      await settled();
    }
  }
}
