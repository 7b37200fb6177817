// The English table has every Japanese text that a sheet can show.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { fileURLToPath } from "node:url";

import { meaningOf, normalizeText, setMeanings } from "../../host/web/gloss.js";

const root = fileURLToPath(new URL("../../", import.meta.url));
const table = JSON.parse(readFileSync(join(root, "host/web/gloss.json"), "utf8"));
const JAPANESE = /[\u3041-\u30ff\u4e00-\u9fff\uff66-\uff9f]/;
const FOLDERS = ["resources", "driver", "sheets", "paper", "operation", "fonts", "files", "companions", "platform", "host"];
// A literal and those that directly follow it, which the compiler joins.
const JOINED_LITERALS = /(?:u8?|TEXT\()?"(?:[^"\\\n]|\\.)*"\)?(?:\s*(?:u8?)?"(?:[^"\\\n]|\\.)*")*/g;

const unescape = (text) => text.replace(/\\n/g, "\n").replace(/\\t/g, "\t").replace(/\\./g, (pair) => pair[1]);

// Returns the literals of the resource script and the sources. A sheet does not show the keys of settings files
// and names of typefaces.
function readSourceTexts() {
  const files = execFileSync("git", ["-C", root, "ls-files", ...FOLDERS], { encoding: "utf8" }).split("\n")
    .filter((file) => /\.(rc|cpp|h|js|html)$/.test(file) && !file.endsWith("settings_keys.h"));
  return files.flatMap((file) => {
    const withoutComments = readFileSync(join(root, file), "utf8").replace(/^\s*\/\/.*$/gm, "");
    const code = withoutComments.replace(/(?<=[^\s,])""(?=[^\s,])/g, '\\"'); // a quotation mark in a resource script
    return (code.match(JOINED_LITERALS) ?? []).map((joined) => [...joined.matchAll(/"((?:[^"\\\n]|\\.)*)"/g)].map(([, text]) => unescape(text)).join(""));
  }).filter((text) => JAPANESE.test(text) && !/^ＭＳ Ｐ?ゴシック$/.test(text));
}

test("Gloss: every text has an English meaning, and every meaning has a text", () => {
  const texts = readSourceTexts();
  setMeanings(table);
  assert.deepEqual(texts.filter((text) => !meaningOf(text)), []);
  const known = texts.map((text) => normalizeText(text).replace(/^%s/, ""));
  const isUsed = (entry) => {
    const wanted = normalizeText(entry).replace(/^%s-?/, "");
    return known.some((text) => text === wanted || (/%[sd]$/.test(wanted) && text.startsWith(wanted.slice(0, -2))));
  };
  assert.deepEqual(Object.keys(table).filter((entry) => !isUsed(entry)), []);
});

test("Gloss: inserts numbers and names, translates joined texts in order, returns nothing for other texts", () => {
  setMeanings(table);
  const meanings = {
    "保存(&S)": "Save",
    "ｷｬﾝｾﾙ": "Cancel",
    "用紙幅サイズを設定します。（指定範囲20.0mmから58.0mmです。）": "The width of the paper (20.0mm to 58.0mm).",
    "データを保存しました。データを読込みました。": "The settings were saved.\nThe settings were loaded.",
    "/my folder/ﾌﾟﾘﾝﾀに書き込めません。そのフォルダはありません。": "/my folder/ﾌﾟﾘﾝﾀ cannot be written.\nThere is no such folder.",
    "荷札 50": "",
  };
  for (const [text, meaning] of Object.entries(meanings)) assert.equal(meaningOf(text), meaning);
});
