// The English table knows every Japanese text that a sheet can show.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { fileURLToPath } from "node:url";

import { meaningOf, plain, useMeanings } from "../../host/web/gloss.js";

const root = fileURLToPath(new URL("../../", import.meta.url));
const table = JSON.parse(readFileSync(join(root, "host/web/gloss.json"), "utf8"));
const JAPANESE = /[\u3041-\u30ff\u4e00-\u9fff\uff66-\uff9f]/;

// Literals of the resource script and the sources, each joined with those that follow it directly. Not shown in a sheet: the
// keys of settings files, names of typefaces, log lines of the build.
function sourceTexts() {
  const rooms = ["resources", "driver", "sheets", "paper", "operation", "fonts", "files", "companions", "platform", "host"];
  const files = execFileSync("git", ["-C", root, "ls-files", ...rooms.map((room) => `${room}/**`)], { encoding: "utf8" }).split("\n");
  const literal = /(?:u8?|TEXT\()?"(?:[^"\\\n]|\\.)*"\)?(?:\s*(?:u8?)?"(?:[^"\\\n]|\\.)*")*/g;
  return files.filter((file) => /\.(rc|cpp|h|js|html)$/.test(file) && !file.endsWith("settings_keys.h")).flatMap((file) => {
    const code = readFileSync(join(root, file), "utf8").replace(/^\s*\/\/.*$/gm, "").replace(/(?<=[^\s,])""(?=[^\s,])/g, '\\"');
    return (code.match(literal) ?? []).map((found) =>
      [...found.matchAll(/"((?:[^"\\\n]|\\.)*)"/g)].map(([, text]) => text.replace(/\\n/g, "\n").replace(/\\t/g, "\t").replace(/\\./g, (two) => two[1])).join(""));
  }).filter((text) => !/^ＭＳ Ｐ?ゴシック$/.test(text));
}

test("every text has an English meaning, and every meaning a text", () => {
  const texts = sourceTexts().filter((text) => JAPANESE.test(text));
  assert.ok(texts.length > 400);
  useMeanings(table);
  assert.deepEqual(texts.filter((text) => !meaningOf(text)), []);
  const known = texts.map((text) => plain(text).replace(/^%s/, ""));
  const unused = Object.keys(table).filter((text) => {
    const wanted = plain(text).replace(/^%s-?/, "");
    return !known.some((text) => text === wanted || (/%[sd]$/.test(wanted) && text.startsWith(wanted.slice(0, -2))));
  });
  assert.deepEqual(unused, []);
});

test("meanings carry numbers and names, joined texts keep their order, other texts have none", () => {
  useMeanings(table);
  const expected = {
    "保存(&S)": "Save", "プリンタのプロパティ": "printer properties", "ｷｬﾝｾﾙ": "Cancel", "回転の詳細設定": "Details of Rotation",
    "用紙幅サイズを設定します。（指定範囲20.0mmから58.0mmです。）": "The width of the paper (20.0mm to 58.0mm).",
    "データを保存しました。データを読込みました。": "The settings were saved.\nThe settings were loaded.",
    "設定を保存できませんでした。原因を取り除いてから、もう一度 OK を押してください。\n\n/my folder/ﾌﾟﾘﾝﾀに書き込めません。そのフォルダはありません。":
      "The settings could not be kept. Remove the cause and press OK once more.\n\n/my folder/ﾌﾟﾘﾝﾀ cannot be written.\nThere is no such folder.",
    "荷札 50": "", "Standard Label 58 x 68 mm": "", "": "",
  };
  assert.deepEqual(Object.fromEntries(Object.keys(expected).map((text) => [text, meaningOf(text)])), expected);
});
