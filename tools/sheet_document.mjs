// docs/sheet.md: each page and dialog with its picture and its controls by id, name and meaning, read from a sheet
// that shows its English.
import { readFileSync } from "node:fs";

import { ids } from "../tests/support/resource_ids.mjs";

const helpScript = readFileSync(new URL("../resources/help.rc", import.meta.url), "utf8");
const helpTexts = Object.fromEntries([...helpScript.matchAll(/(IDS_HELP_\w+)\s+"([^"]*)"/g)].map(([, name, text]) => [name, text.replace("\\n", "\n")]));

// Returns the help text of a control. prefix: the dialog's name in the names of its controls' ids.
function helpOf(prefix, id) {
  const name = Object.keys(ids).find((one) => one.startsWith(`IDC_${prefix}_`) && ids[one] === id && `IDS_HELP_${one.slice(4)}` in helpTexts);
  return name ? helpTexts[`IDS_HELP_${name.slice(4)}`] : "";
}

// Returns title, message and controls of the topmost window.
export function documentSheet(page, { name, prefix }) {
  return page.evaluate(async ({ name, helps }) => {
    const { meaningOf } = await import("./gloss.js");
    const both = (element) => {
      const meaning = element?.querySelector(".gloss")?.textContent ?? "";
      const text = element?.textContent ?? "";
      return { text: text.slice(0, text.length - meaning.length).trim(), meaning };
    };
    const snapshot = await new Promise((resolve) => {
      const stream = new EventSource("events");
      stream.onmessage = ({ data }) => resolve(JSON.parse(data), stream.close());
    });
    const { controls } = snapshot.windows.at(-1).page ?? snapshot.windows.at(-1);
    // The range of a field is that of its up-down, with as many decimals as the field shows.
    const rangeOf = (id) => {
      const { minimum, maximum } = controls.find(({ buddy }) => buddy === id);
      const decimals = (controls.find((one) => one.id === id).text.split(".")[1] ?? "").length;
      return [minimum, maximum].map((bound) => (bound / 10 ** decimals).toFixed(decimals)).join(" to ");
    };
    const window = [...document.querySelectorAll("section[data-window]")].at(-1);
    const shown = window.querySelector(".tab[aria-selected=true]") ?? window.querySelector("h2");
    const rows = [...window.querySelectorAll("[data-id]")].filter((one) => !one.matches(".group, .static:not(.filled), .message .static, [role=presentation]")).map((one) => {
      const named = one.getAttribute("aria-labelledby") ?? one.querySelector("[aria-labelledby]")?.getAttribute("aria-labelledby").split(" ")[0];
      const own = one.closest(".control");
      const drawn = { text: one.ariaLabel ?? "", meaning: meaningOf(one.ariaLabel) };
      const group = [...window.querySelectorAll(".group")].find((one) => one.getAttribute("aria-owns").split(" ").includes(own.id));
      const id = Number(one.dataset.id);
      return {
        id, kind: one.dataset.kind, group: both(group?.querySelector(".text")),
        ...(named ? both(document.getElementById(named)) : one.dataset.kind === "drawn" ? drawn : both(own)),
        help: meaningOf((helps[id] ?? "").replace(/(%[sd])+/g, "n")).replace("n to n", () => rangeOf(id)).replace(", usually n", ""),
        choices: one.dataset.kind === "combo" ? [...one.options].map((option) => option.text) : [],
      };
    });
    // The text of the help box depends on the focus.
    return { name, title: both(shown), message: both(window.querySelector(".message .text")), rows: rows.filter(({ group }) => group.text !== "説明") };
  }, { name, helps: Object.fromEntries(Object.values(ids).map((id) => [id, helpOf(prefix, id)])) });
}

const KINDS = { button: "button", check: "check box", radio: "choice", edit: "field", combo: "list", list: "list", updown: "arrows", drawn: "picture", static: "text" };
const cell = (text) => text.replace(/\s*\n\s*/g, " ").replaceAll("|", "\\|").trim();

function row({ id, kind, group, text, meaning, help, choices }) {
  const means = [meaning, help, choices.length ? `Choices: ${choices.join("; ")}.` : ""].filter(Boolean).join(". ").replaceAll("..", ".");
  return `| ${id} | ${KINDS[kind]} | ${cell(group.text)} | ${cell(text)} | ${cell(means)} |`;
}

function section({ name, title, message, rows }) {
  return [
    `## ${title.text}${title.meaning ? ` — ${title.meaning}` : ""}`, "", `![${title.text}](screenshots/${name}.png)`, "",
    ...(message.text ? [`> ${cell(message.text)}`, ">", `> ${cell(message.meaning)}`, ""] : []),
    "| id | kind | group | name | meaning |", "|---|---|---|---|---|", ...rows.map(row), "",
  ];
}

export function sheetDocument(stops) {
  return [
    "# The sheet", "",
    "Every page and dialog with its controls: the id that programs and tests use, the name on the sheet, and the meaning.",
    "`node tools/screenshots.mjs` writes this page from a running sheet and its English (`host/web/gloss.json`); a test checks that it is current.", "",
    ...stops.flatMap(section),
  ].join("\n");
}
