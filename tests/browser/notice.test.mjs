// The messages of the page itself: notices and the question before leaving.
import assert from "node:assert/strict";
import { test } from "node:test";

import { openBrowser, openNewSheet, PAGES, waitUntilHandled } from "../support/browser.mjs";
import { ids } from "../support/resource_ids.mjs";

const PRINTER = "R&D 2F";
const waitForNotice = (page, text) => page.locator("#notice", { hasText: text }).waitFor();

test("WebSite: opens in a new tab of the page with the click and shows a notice there", async (t) => {
  const { page, sheet, control, showPage } = await openNewSheet(t, { printer: PRINTER });
  const { page: other } = await openBrowser(t, await sheet.address);
  await other.evaluate(() => Object.defineProperty(navigator, "userActivation", { value: { isActive: false } })); // no click there
  await showPage(PAGES.version);
  await page.context().route("https://**", (route) => route.fulfill({ body: "support" }));
  const opening = page.context().waitForEvent("page");
  await control(ids.IDC_VERSION_WEBSITE).click();
  await (await opening).waitForURL("https://www.vela.example/**");
  await waitForNotice(page, "仮のもの");
  await page.locator("#notice .close").click();
  await page.locator("#notice").waitFor({ state: "hidden" });
  await showPage(PAGES.paper);
  await other.locator(`[data-page="${PAGES.paper}"][aria-selected="true"]`).waitFor();
  assert.ok(await other.locator("#notice").isHidden());
});

test("Page: reports a refused action, asks before it is left with changes, accepts no input without its server", async (t) => {
  const { page, control, showPage, waitForValue, sheet } = await openNewSheet(t);
  await showPage(PAGES.paper);
  await page.route("**/action", (route) => route.fulfill({ status: 503, body: "Too many." }));
  await control(ids.IDC_PAPER_VERT_BASE).fill("77");
  await waitForNotice(page, "操作を受け付けられませんでした。");
  await waitForValue(ids.IDC_PAPER_VERT_BASE, "0");

  await page.unroute("**/action");
  await control(ids.IDC_PAPER_VERT_BASE).fill("12");
  await waitUntilHandled(page);
  const question = page.waitForEvent("dialog");
  await page.evaluate(() => setTimeout(() => location.reload()));
  assert.equal((await question).type(), "beforeunload");
  await (await question).dismiss();

  sheet.child.kill("SIGKILL");
  await waitForNotice(page, "もう一度 printhost を起動し");
  await page.locator("[data-lost] #desk[inert]").waitFor();
});

test("Sheet: the removal of its printer is reported in Japanese and English", async (t) => {
  const { pc, page } = await openNewSheet(t, { printer: PRINTER });
  await page.locator("#gloss").click();
  await page.locator("html.glossed").waitFor();
  pc.done("remove", PRINTER);
  await page.locator('[data-button="ok"]').click();
  await page.locator("[data-end] #notice").waitFor();
  const [japanese, english] = await page.locator("#notice > span > span").allTextContents();
  assert.equal(japanese, "設定できませんでした。プリンタが削除されたため、設定は保存されていません。");
  assert.equal(english, `The settings could not be kept: the printer "${PRINTER}" was removed meanwhile; nothing is kept.`);
});
