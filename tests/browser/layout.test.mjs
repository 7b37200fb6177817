// Every page and dialog as assistive technology and screens of several sizes show it, and drawings.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { describe, test } from "node:test";

import { openNewSheet } from "../support/browser.mjs";
import { documentSheet, sheetDocument } from "../../tools/sheet_document.mjs";
import { tour } from "./tour.mjs";

const AXE = createRequire(import.meta.url).resolve("axe-core/axe.min.js");

// Returns the accessibility faults of the topmost window: those that axe finds in the page, and those of rules that
// axe does not have.
const findAccessibilityFaults = (page) => page.evaluate(async () => {
  const { violations } = await axe.run(document, { runOnly: ["wcag2a", "wcag2aa", "best-practice"] });
  const faults = violations.flatMap(({ id, nodes }) => nodes.map((node) => `${id} ${node.html}`));
  const expect = (isRight, fault) => isRight || faults.push(fault);
  const window = [...document.querySelectorAll("section[data-window]")].at(-1);
  const { kind } = window.dataset;
  expect(window.role === ({ sheet: "region", message: "alertdialog" }[kind] ?? "dialog"), `a ${kind} has the role ${window.role}`);
  expect(window.ariaModal === (kind === "sheet" ? null : "true"), "modal is wrong");
  const describesMessage = document.getElementById(window.getAttribute("aria-describedby"))?.matches(".message .body .text");
  expect(kind !== "message" || describesMessage, "the text does not describe the message box");
  for (const group of window.querySelectorAll(".group")) expect(group.role === "group" && group.getAttribute("aria-owns"), `${group.textContent} owns no control`);
  for (const help of window.querySelectorAll('[data-id="1167"] .text')) expect(help.ariaLive === "polite", "the help text is not announced");
  const accessKeys = [...window.querySelectorAll("u")].map((key) => key.textContent.toUpperCase());
  expect(new Set(accessKeys).size === accessKeys.length, `the access keys ${accessKeys} are not unique`);
  return faults;
});

// Returns what is cut off, out of reach or too small in the topmost window. limits: the smallest heights of a touch
// target and of a letter in pixels, and whether nothing may have to be scrolled.
const findLayoutFaults = (page, limits) => page.evaluate((minimum) => {
  const [window, owner] = [...document.querySelectorAll("section[data-window]")].reverse();
  const root = document.scrollingElement;
  const [faults, outer] = [[], window.getBoundingClientRect()];
  const expect = (isRight, fault) => isRight || faults.push(fault);
  const fontSize = (element) => parseFloat(getComputedStyle(element).fontSize);
  const isInside = (inner, box, tolerance) => inner.left >= box.left - tolerance && inner.right <= box.right + tolerance &&
    inner.top >= box.top - tolerance && inner.bottom <= box.bottom + tolerance;

  const page = { left: -scrollX, top: -scrollY, right: root.scrollWidth - scrollX, bottom: root.scrollHeight - scrollY };
  expect(isInside(outer, page, 1) && outer.left >= -1, "the window cannot be scrolled into view, or does not start there");
  expect(!owner || fontSize(window) <= fontSize(owner) + 0.01, "the window has a larger scale than its owner");
  const fitsWidth = root.scrollWidth <= innerWidth;
  expect(!minimum.fitsViewport || (fitsWidth && root.scrollHeight <= innerHeight), "the page has to be scrolled");
  for (const control of window.querySelectorAll(".control, button")) {
    const box = control.getBoundingClientRect();
    if (box.width === 0) continue;
    const name = `${control.className} ${control.textContent.slice(0, 20)}`;
    expect(isInside(box, outer, 1), `${name} is outside the window`);
    const isTarget = control.matches("label, button, input, select") && !control.closest(".updown");
    expect(!isTarget || Math.min(box.width, box.height + 2) >= minimum.targetHeight, `${name} is ${box.width} x ${box.height}`);
  }
  for (const text of window.querySelectorAll(".text:not(:has(.own)), .own, .gloss")) {
    const own = text.getBoundingClientRect();
    const box = text.closest(".push, .choice, .check, .group, .static:not(.wrapped)");
    const bounds = box?.getBoundingClientRect() ?? own;
    expect(own.left >= bounds.left - 2 && own.right <= bounds.right + 2, `${text.textContent} is cut off at a side`);
    const isClipped = box?.matches(".push, .choice") && (own.top < bounds.top - 1 || own.bottom > bounds.bottom + 1);
    expect(!isClipped, `${text.textContent} is cut off above or below`);
    expect(own.width === 0 || text.textContent === "" || fontSize(text) >= minimum.letterHeight, `${text.textContent} has ${fontSize(text)} pixels`);
  }
  if (window.dataset.kind === "sheet") {
    expect(fitsWidth, "the sheet is wider than the viewport");
  }
  return faults;
}, limits);

test("Accessibility: every page and dialog is named and unambiguous, and docs/sheet.md describes it", async (t) => {
  const { page, errors } = await openNewSheet(t, { fragment: "#gloss=en" });
  await page.evaluate(readFileSync(AXE, "utf8"));
  const [faults, described] = [{}, []];
  await tour(page, async (stop) => {
    const found = await findAccessibilityFaults(page);
    if (found.length) faults[stop.name] = found;
    described.push(await documentSheet(page, stop));
  });
  assert.deepEqual({ faults, errors }, { faults: {}, errors: [] });
  const current = readFileSync(new URL("../../docs/sheet.md", import.meta.url), "utf8");
  assert.equal(current, sheetDocument(described), "docs/sheet.md is old: run node tools/screenshots.mjs");
});

const SCREENS = [
  { name: "a laptop", viewport: { width: 1366, height: 640 }, targetHeight: 15, letterHeight: 11, fitsViewport: true },
  { name: "a laptop, in English", viewport: { width: 1280, height: 720 }, fragment: "#gloss=en", targetHeight: 15, letterHeight: 10, fitsViewport: true },
  { name: "a phone, in English", viewport: { width: 390, height: 844 }, fragment: "#gloss=en", isMobile: true, hasTouch: true, targetHeight: 24, letterHeight: 11 },
  { name: "a laptop at 200 %", viewport: { width: 640, height: 360 }, targetHeight: 15, letterHeight: 11 },
];

describe("Layout", { concurrency: true }, () => SCREENS.forEach(({ name: screen, targetHeight, letterHeight, fitsViewport = false, ...options }) => {
  test(`every page and dialog fits ${screen}`, async (t) => {
    const { page } = await openNewSheet(t, options);
    assert.deepEqual(await page.evaluate(() => [scrollX, scrollY]), [0, 0], "the first focus scrolls");
    const faults = {};
    await tour(page, async ({ name }) => {
      const found = await findLayoutFaults(page, { targetHeight, letterHeight, fitsViewport });
      if (found.length) faults[name] = found;
    });
    assert.deepEqual(faults, {});
  });
}));

// A display list, which the page draws as SVG.
const PEN = { pen: "#000000", width: 1, style: 0 };
const FONT = { face: "Noto Sans CJK JP", fontHeight: 12, fontAscent: 10, colour: "#0000ff" };
const OPERATIONS = [
  { kind: "fill", rect: [1, 2, 30, 40], brush: "#ff0000" },
  { kind: "rectangle", rect: [10, 20, 30, 40], brush: "#00ff00", ...PEN },
  { kind: "line", rect: [5, 7, 70, 0], ...PEN },
  { kind: "image", rect: [50, 10, 20, 30], source: [0, 0, 40, 60], bitmap: 155 },
  { kind: "text", at: [8, 60], text: "width of half the height", fontWidth: 6, ...FONT },
  { kind: "fill", rect: [0, 0, 100, 80], clip: [60, 50, 20, 10], brush: "#ff0000" },
];

test("Drawing: each operation is drawn at its place and clipped", async (t) => {
  const { page } = await openNewSheet(t);
  const drawn = await page.evaluate(async (operations) => {
    const { draw } = await import("./draw.js");
    const svg = draw(operations, 100, 80);
    svg.style = "position: fixed; left: 0; top: 0; width: 100px; height: 80px; z-index: 9";
    document.body.append(svg);
    const [fill, outline, line, , , clip] = svg.children;
    return {
      boxes: [fill, outline, line].map((shape) => shape.getBoundingClientRect()).map(({ x, y, width, height }) => [x, y, width, height]),
      scalesAndOrigins: [...svg.querySelectorAll("image, text")].map((shape) => shape.getScreenCTM()).map(({ a, d, e, f }) => [a, d, e, f]),
      isInClip: [[79, 59], [81, 59]].map(([x, y]) => clip.contains(document.elementFromPoint(x, y))),
    };
  }, OPERATIONS);
  assert.deepEqual(drawn.boxes, [[1, 2, 30, 40], [10.5, 20.5, 29, 39], [5.5, 7.5, 70, 0]]); // lines through the middle of pixels
  assert.deepEqual(drawn.scalesAndOrigins, [[0.5, 0.5, 50, 10], [1, 1, 8, 70]]);
  assert.deepEqual(drawn.isInClip, [true, false]);
});
