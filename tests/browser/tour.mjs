// Visits everything that a sheet can show: each page, and each window that a push button opens there or in a
// dialog. The resource script lists the dialog templates; the tour throws when it has missed one of their push
// buttons.
import { readFileSync } from "node:fs";

import { PAGES, topWindow, waitUntilHandled } from "../support/browser.mjs";
import { ids } from "../support/resource_ids.mjs";

const { IDOK, IDCANCEL } = ids;

// The dialog templates: name, and of each control the symbol and number of its id.
const templates = ["pages.rc", "dialogs.rc"].flatMap((file) => {
  const script = readFileSync(new URL(`../../resources/${file}`, import.meta.url), "utf8");
  return [...script.matchAll(/^IDD_(\w+) DIALOGEX[^]*?^END/gm)].map(([text, name]) => {
    const controls = [...text.matchAll(/^ +(\w+) (?:"[^"]*", )?(ID\w+),.*$/gm)].map(([, kind, symbol]) => (
      { symbol, id: ids[symbol], isButton: kind.endsWith("PUSHBUTTON") }));
    return { name, controls };
  });
});

// Returns the smallest template that has all of these controls.
const findTemplate = (controlIds) => templates
  .filter(({ controls }) => controlIds.every((id) => controls.some((control) => control.id === id)))
  .sort((a, b) => a.controls.length - b.controls.length)[0];

// Visits the open user-default sheet. Calls visit({ name, prefix }) at each window: name is the file name of its
// picture, prefix what the names of its controls' ids begin with.
export async function tour(page, visit) {
  const { window, control } = topWindow(page);
  const windows = page.locator("section[data-window]");
  const [titles, pressed] = [new Set(), new Set()];
  const press = async (locator) => {
    await locator.click();
    await waitUntilHandled(page);
  };
  const visibleIds = async (selector = "") => {
    const all = await window.locator(`[data-id]${selector}:visible`).evaluateAll((elements) => elements.map(({ dataset }) => Number(dataset.id)));
    return all.filter((id) => id > 0 && id < 65535); // without the statics that have no name
  };

  // Visits the topmost window and the windows that its buttons open. OK, which may close it, comes last.
  async function visitWindow(kind, label) {
    const template = kind === "message" ? undefined : findTemplate(await visibleIds());
    await visit({ name: `${kind}-${label}`.toLowerCase().replaceAll("_", "-"), prefix: template?.name ?? "" });
    if (kind === "message") return;
    const buttons = (await visibleIds(":is([data-kind=button], button[data-kind=drawn])")).filter((id) => id !== IDCANCEL);
    for (const id of buttons.sort((a, b) => (a === IDOK) - (b === IDOK))) {
      if (await control(id).isDisabled()) continue;
      const symbol = template?.controls.find((one) => one.id === id)?.symbol ?? `ID${id}`;
      const count = await windows.count();
      pressed.add(`${template?.name} ${symbol}`);
      await press(control(id));
      if ((await windows.count()) > count) {
        // A window of the same title, or a box of the same message, is visited once.
        const opened = (await window.getAttribute("data-kind")) === "message" ? "message" : "dialog";
        const title = opened === "message" ? await page.locator(".message .body .text").textContent() : await window.getAttribute("data-window");
        if (!titles.has(title)) await visitWindow(opened, id === IDOK ? `${label}-ok` : template ? symbol.slice(4) : `${label}-${id}`);
        titles.add(title);
      }
      while ((await windows.count()) > count) {
        await page.keyboard.press("Escape");
        await waitUntilHandled(page);
      }
      if ((await windows.count()) < count) return;
    }
  }

  await page.evaluate(() => (globalThis.open = () => null)); // no page opens for the web site
  // A font of each kind, without which some buttons are disabled.
  await press(page.locator(`[data-page="${PAGES.fonts}"]`));
  for (const [button, nameField, name] of [[ids.IDC_CREATE_FONT_DECO_NEW, ids.IDC_DECO_FONT_NAME, "太字"], [ids.IDC_CREATE_FONT_BAR_NEW, ids.IDC_BAR_FONT_NAME, "品番"]]) {
    await press(control(button));
    await control(nameField).fill(name);
    await press(control(IDOK));
  }
  for (const tab of await page.locator("[data-page]").all()) {
    await press(tab);
    await visitWindow("page", findTemplate(await visibleIds()).name);
  }
  const buttons = templates.flatMap(({ name, controls }) =>
    controls.filter(({ id, isButton }) => isButton && id !== IDCANCEL).map(({ symbol }) => `${name} ${symbol}`));
  const missed = buttons.filter((button) => !pressed.has(button));
  if (missed.length) throw new Error(`not pressed: ${missed.join(", ")}`);
}
