// Every page and dialog, whoever uses it and on whatever screen: named, within reach, large enough.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { test } from "node:test";

import { openBrowser, top, visit } from "../support/browser.mjs";
import { computer } from "../support/printhost.mjs";
import { documentSheet, sheetDocument } from "../../tools/sheet_document.mjs";
import { tour } from "./tour.mjs";

const AXE = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
const RULES = ["wcag2a", "wcag2aa", "best-practice"];

async function opened(t, size, context = {}, tail = "") {
  const sheet = computer(t).start("demo");
  const page = await openBrowser(t, size, context);
  const faults = await visit(page, (await sheet.address) + tail);
  return { page, faults };
}

// What axe finds in the page, access keys that two controls share, and what axe does not know to be
// wanted: windows that say what they are, groups with their controls, a help box that is read.
async function violations(page) {
  return page.evaluate(async (rules) => {
    const { violations } = await axe.run(document, { runOnly: rules });
    const window = [...document.querySelectorAll("section[data-window]")].at(-1);
    const keys = [...window.querySelectorAll("u")].map((key) => key.textContent.toUpperCase());
    const { kind } = window.dataset;
    const wanted = {
      role: { sheet: "region", message: "alertdialog" }[kind] ?? "dialog",
      modal: kind === "sheet" ? null : "true",
      described: kind === "message" ? window.querySelector(".message .text").textContent : undefined,
    };
    const is = { role: window.role, modal: window.ariaModal, described: document.getElementById(window.getAttribute("aria-describedby"))?.textContent };
    return [
      ...Object.keys(wanted).filter((name) => wanted[name] !== is[name]),
      ...[...window.querySelectorAll(".group")].filter((group) => group.role !== "group" || !group.getAttribute("aria-owns")).map((group) => `${group.textContent} owns nothing`),
      ...[...window.querySelectorAll('[data-id="1167"] .text')].filter((help) => help.ariaLive !== "polite").map(() => "help is not read"),
      ...violations.flatMap(({ id, nodes }) => nodes.map((node) => `${id} ${node.html}`)),
      ...keys.filter((key, i) => keys.indexOf(key) !== i).map((key) => `two controls have the access key ${key}`),
    ];
  }, RULES);
}

// What sticks out of the window on top, cannot be scrolled to, is cut off, too small to be hit or to be read:
// least are the heights of a target and of a letter. A window opens at its left edge, no larger than its
// owner; a sheet fits the width, and its tabs stay in view.
function misfits(page, least) {
  return page.evaluate(([leastTarget, leastLetter]) => {
    const [window, owner] = [...document.querySelectorAll("section[data-window]")].reverse();
    const outer = window.getBoundingClientRect();
    const faults = [];
    const { scrollX, scrollY } = globalThis;
    const root = document.scrollingElement;
    const letters = (one) => parseFloat(getComputedStyle(one).fontSize);
    if (owner && letters(window) > letters(owner) + 0.01) faults.push("the window is scaled above its owner");
    if (outer.left < -1) faults.push("the left edge of the window is not in view");
    if (window.dataset.kind === "sheet") {
      if (root.scrollWidth > innerWidth) faults.push("the sheet is wider than the viewport");
      scrollTo(0, root.scrollHeight);
      const tabs = window.querySelector(".tabs").getBoundingClientRect();
      if (tabs.top < -1 || tabs.bottom > innerHeight) faults.push("the tabs scroll out of view");
      scrollTo(scrollX, scrollY);
    }
    const within = (inner, box) => inner.left >= box.left - 1 && inner.top >= box.top - 1 && inner.right <= box.right + 1 && inner.bottom <= box.bottom + 1;
    if (outer.left + scrollX < -1 || outer.top + scrollY < -1 || outer.right + scrollX > root.scrollWidth + 1 || outer.bottom + scrollY > root.scrollHeight + 1)
      faults.push("the window is out of reach");
    for (const one of window.querySelectorAll(".control, button")) {
      const box = one.getBoundingClientRect();
      const name = `${one.className} ${one.textContent.slice(0, 20)}`;
      if (box.width && !within(box, outer)) faults.push(`${name} sticks out`);
      if (one.matches("label, button, input, select") && box.width && !one.closest(".updown") && Math.min(box.width, box.height + 2) < leastTarget) faults.push(`${name} is ${box.width} x ${box.height}`);
    }
    for (const text of window.querySelectorAll(".text:not(:has(.own)), .own, .gloss")) {
      const box = text.closest(".push, .choice, .check, .group, .static:not(.wrapped)");
      const [bounds, own] = [box?.getBoundingClientRect(), text.getBoundingClientRect()];
      if (bounds && (own.right > bounds.right + 2 || own.left < bounds.left - 2)) faults.push(`${text.textContent} is cut off`);
      if (box?.matches(".push, .choice") && (own.bottom > bounds.bottom + 1 || own.top < bounds.top - 1)) faults.push(`${text.textContent} is cut off below or above`);
      if (own.width && text.textContent && letters(text) < leastLetter) faults.push(`${text.textContent} has letters of ${letters(text)}`);
    }
    // The browser draws the choice of a closed list, unless the page does; the arrow takes 18 pixels.
    const pen = document.createElement("canvas").getContext("2d");
    for (const list of window.querySelectorAll(".combo select")) {
      if (list.nextSibling.checkVisibility()) continue;
      pen.font = getComputedStyle(list).font;
      const text = list.selectedOptions[0]?.text ?? "";
      if (pen.measureText(text).width > list.clientWidth - 18) faults.push(`${text} is cut off`);
    }
    return faults;
  }, least);
}

test("every page and dialog is named and unambiguous, and docs/sheet.md tells of it as it is", async (t) => {
  const { page, faults } = await opened(t, { width: 1280, height: 720 }, {}, "#gloss=en");
  await page.evaluate(AXE);
  const found = {};
  const stops = [];
  await tour(page, async (stop) => {
    const wrong = await violations(page);
    if (wrong.length) found[stop.name] = wrong;
    stops.push(await documentSheet(page, stop));
  });
  assert.deepEqual(found, {});
  assert.deepEqual(faults, []);
  assert.equal(readFileSync(new URL("../../docs/sheet.md", import.meta.url), "utf8"), sheetDocument(stops), "docs/sheet.md is old: node tools/screenshots.mjs");
});

test("every page and dialog fits a small laptop, a phone and a page at 200 %", async (t) => {
  const screens = [
    [{ width: 1280, height: 720 }, {}, [16, 11], true],
    [{ width: 1280, height: 720 }, { colorScheme: "dark" }, [15, 10], true, "#gloss=en"],
    [{ width: 1366, height: 640 }, {}, [15, 11], true],
    [{ width: 390, height: 844 }, { hasTouch: true, isMobile: true }, [24, 11], false, "#gloss=en"],
    [{ width: 640, height: 360 }, {}, [15, 11], false],
  ];
  await Promise.all(screens.map(async ([size, context, least, whole, tail]) => {
    const { page } = await opened(t, size, context, tail);
    assert.deepEqual(await page.evaluate(() => [scrollX, scrollY]), [0, 0], `the first focus scrolls: ${JSON.stringify(size)}`);
    const found = {};
    await tour(page, async (stop) => {
      const wrong = await misfits(page, least);
      const seen = await page.evaluate(() => [document.scrollingElement.scrollWidth <= innerWidth, document.scrollingElement.scrollHeight <= innerHeight]);
      if (whole && !seen.every(Boolean)) wrong.push("is not seen whole");
      if (wrong.length) found[stop.name] = wrong;
    });
    assert.deepEqual(found, {}, JSON.stringify(size));
  }));
});
