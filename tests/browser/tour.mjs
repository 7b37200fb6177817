// A tour of everything a sheet can show: each page and each dialog in turn, with what they are
// called. What is checked or pictured at each stop is the caller's.
import { top } from "../support/browser.mjs";

const [VERSION, PAPER, OPERATION, DEVICE, FONTS, UTILITY] = [0, 1, 2, 3, 4, 5];
const PAGES = { version: VERSION, paper: PAPER, operation: OPERATION, device: DEVICE, "create-font": FONTS, utility: UTILITY };
// Dialogs by the page and the controls that open them one inside the other, with what is typed
// into the first meanwhile.
const DIALOGS = [
  ["dialog-paper", PAPER, [1046], { 1115: "荷札 50 × 80 mm", 1053: "50.0", 1080: "80.0" }],
  ["dialog-reference", PAPER, [1051, 3]],
  ["message-delete", PAPER, [1047]],
  ["dialog-decorative-font", FONTS, [1133]],
  ["dialog-barcode-font", FONTS, [1049]],
  ["dialog-barcode-detail", FONTS, [1049, 1059]],
  ["message-name", FONTS, [1049, 1]],
  ["dialog-colour", OPERATION, [1180]],
  ["dialog-halftone", OPERATION, [1192]],
  ["dialog-save-file", UTILITY, [1175]],
  ["dialog-open-file", UTILITY, [1177]],
  ["message-file", UTILITY, [1060]],
];

const windows = (page) => page.locator("section[data-window]").count();

// Calls stop(name) at each page and dialog of an open user-default sheet.
export async function tour(page, stop) {
  const { control } = top(page);
  const go = async (index) => {
    await page.locator(`[data-page="${index}"]`).click();
    await page.locator(`[data-page="${index}"][aria-selected="true"]`).waitFor();
  };
  const settled = () => page.waitForTimeout(150); // the focus brings a help text
  for (const [name, index] of Object.entries(PAGES)) {
    await go(index);
    await settled();
    await stop(`page-${name}`);
  }
  for (const [name, index, ids, typed = {}] of DIALOGS) {
    await go(index);
    const before = await windows(page);
    for (const id of ids) {
      await control(id).click();
      await settled();
    }
    if ((await windows(page)) === before) throw new Error(`${name} did not open`);
    for (const [id, text] of Object.entries(typed)) await control(id).fill(text);
    await settled();
    await stop(name);
    while ((await windows(page)) > before) {
      await page.keyboard.press("Escape");
      await settled();
    }
  }
}
