// Visits everything that a sheet can show: each page, and each window that a push button opens there or
// in a dialog. The resource script says which templates and push buttons there are; the tour fails when
// it has not come to one of them.
import { readFileSync } from "node:fs";

import { settled, top } from "../support/browser.mjs";

const read = (name) => readFileSync(new URL(`../../resources/${name}`, import.meta.url), "utf8");
const [OK, CANCEL] = [1, 2];
const ids = { IDOK: OK, IDCANCEL: CANCEL };
for (const [, name, id] of read("resource.h").matchAll(/#define (IDC_\w+) (\d+)/g)) ids[name] = Number(id);

// The templates: name, caption, controls and push buttons by id, and the names that the ids have there.
const templates = ["pages.rc", "dialogs.rc"].flatMap((file) => [...read(file).matchAll(/^IDD_(\w+) DIALOGEX[^]*?^END/gm)].map(([text, name]) => {
  const controls = [...text.matchAll(/^ +(\w+) (?:"[^"]*", )?(ID\w+),.*$/gm)].map(([, kind, symbol]) => ({ symbol, id: ids[symbol], isButton: kind.endsWith("PUSHBUTTON") }));
  return { name, isPage: file === "pages.rc", caption: /^CAPTION "(.*)"/m.exec(text)[1], controls };
}));

// The template that a window of these controls is made from: the smallest that has them all.
const templateOf = (shown) => templates.filter(({ controls }) => shown.every((id) => controls.some((one) => one.id === id)))
  .sort((a, b) => a.controls.length - b.controls.length)[0];

const slug = (...words) => words.join("-").toLowerCase().replaceAll("_", "-");

// Registers a font of each kind, without which some buttons are disabled.
async function registerFonts(page, { control, press }) {
  const { IDC_CREATE_FONT_DECO_NEW, IDC_DECO_FONT_NAME, IDC_CREATE_FONT_BAR_NEW, IDC_BAR_FONT_NAME } = ids;
  await press(page.locator(".tab", { hasText: templates.find(({ name }) => name === "CREATE_FONT").caption }));
  for (const [button, name, font] of [[IDC_CREATE_FONT_DECO_NEW, IDC_DECO_FONT_NAME, "太字"], [IDC_CREATE_FONT_BAR_NEW, IDC_BAR_FONT_NAME, "品番"]]) {
    await press(control(button));
    await control(name).fill(font);
    await press(control(OK));
  }
}

// Calls stop({ name, prefix }) at each page and window of an open user-default sheet: what it is called,
// and what the names of its controls' ids begin with.
export async function tour(page, stop) {
  const { window, control } = top(page);
  const [seen, pressed, visited] = [new Set(), new Set(), new Set()];
  const windows = page.locator("section[data-window]");
  const press = async (locator) => {
    await locator.click();
    await settled(page);
  };
  const shown = (selector = "") => window.locator(`[data-id]${selector}:visible`).evaluateAll((all) => all.filter((one) => Number(one.dataset.id) > 0 && one.dataset.id !== "65535").map((one) => Number(one.dataset.id)));

  // Looks at the window on top, and at what its buttons open; the one that may close it comes last.
  async function look(kind, label) {
    const template = kind === "message" ? undefined : templateOf(await shown());
    visited.add(template?.name);
    await stop({ name: slug(kind, label), prefix: template?.name ?? "" });
    if (kind === "message") return;
    const buttons = (await shown(":is([data-kind=button], button[data-kind=drawn])")).filter((id) => id !== CANCEL);
    for (const id of [...buttons.filter((id) => id !== OK), ...buttons.filter((id) => id === OK)]) {
      if (await control(id).isDisabled()) continue;
      const symbol = template?.controls.find((one) => one.id === id)?.symbol ?? `ID${id}`;
      const count = await windows.count();
      pressed.add(`${template?.name} ${symbol}`);
      await press(control(id));
      if ((await windows.count()) > count) {
        const [what, title, text] = await windows.last().evaluate((one) => [one.dataset.kind, one.dataset.window, one.querySelector(".message .text")?.textContent]);
        const key = text ?? title;
        if (!seen.has(key)) await look(what === "message" ? what : "dialog", id === OK ? `${label}-ok` : template ? symbol.slice(4) : `${label}-${id}`);
        seen.add(key);
      }
      while ((await windows.count()) > count) {
        await page.keyboard.press("Escape");
        await settled(page);
      }
      if ((await windows.count()) < count) return;
    }
  }

  await page.evaluate(() => (globalThis.open = () => null));
  await registerFonts(page, { control, press });
  for (const tab of await page.locator("[data-page]").all()) {
    await press(tab);
    await look("page", templateOf(await shown()).name);
  }
  const missed = templates.flatMap(({ name, controls }) => [
    ...(visited.has(name) ? [] : [name]),
    ...controls.filter(({ symbol, isButton }) => isButton && symbol !== "IDCANCEL" && !pressed.has(`${name} ${symbol}`)).map(({ symbol }) => `${name} ${symbol}`),
  ]);
  if (missed.length) throw new Error(`not visited: ${missed.join(", ")}`);
}
