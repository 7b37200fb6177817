// The sheet server answers the person at this computer alone, and nobody keeps it from doing so.
import assert from "node:assert/strict";
import { readFileSync, readdirSync } from "node:fs";
import { connect } from "node:net";
import { test } from "node:test";

import { ask, page } from "../support/driving.mjs";
import { computer } from "../support/printhost.mjs";

const JSON_TYPE = { "Content-Type": "application/json" };

async function demo(t) {
  const sheet = computer(t).start("demo");
  return { sheet, url: new URL(await sheet.address) };
}

// Sends a head, and a piece again and again, over one connection until the server closes it; returns the
// status of the answer, NaN without one.
function send(url, head, piece, pause = 0) {
  const socket = connect(url.port, url.hostname);
  let text = "";
  const push = () => {
    if (!piece || socket.destroyed || text) return;
    if (pause) setTimeout(push, pause, socket.write(piece));
    else if (socket.write(piece)) setImmediate(push);
    else socket.once("drain", push);
  };
  socket.on("connect", () => push(socket.write(head))).on("data", (some) => (text += some)).on("error", () => {});
  return new Promise((resolve) => socket.on("close", () => resolve(Number(text.split(" ")[1]))));
}

test("no token, a wrong host or a foreign origin gets nothing, and a wrong path or method what it should", async (t) => {
  const { sheet, url } = await demo(t);
  const token = url.pathname.slice(1, -1);
  assert.match(url.href, /^http:\/\/127\.0\.0\.1:\d+\/[0-9a-f]{32}\/$/);
  const own = await ask(url);
  assert.equal(own.status, 200);
  assert.match(own.headers["content-security-policy"], /default-src 'none'/);
  const foreign = [{ Host: "evil.example" }, { Host: `evil.example:${url.port}` }, { Host: `127.0.0.1:${Number(url.port) + 1}` },
    { Origin: "http://evil.example" }, { Origin: "null" }, { Origin: `https://127.0.0.1:${url.port}` }];
  for (const path of ["", "page.js", "events", "picture/149", "action"]) {
    const what = path === "action" ? { method: "POST", body: "{}" } : {};
    const refused = [`/${path}`, `/${"0".repeat(32)}/${path}`, `/${token.slice(0, 31)}/${path}`, `/x?/${token}/${path}`].map((wrong) => ({ path: wrong }));
    for (const how of [...refused, ...foreign.map((headers) => ({ path, headers: { ...JSON_TYPE, ...headers } }))]) {
      const { status, text } = await ask(url, { headers: JSON_TYPE, ...what, ...how });
      assert.deepEqual([status, text], [403, ""], JSON.stringify(how));
    }
  }
  for (const [path, method, status, headers] of [["none", "GET", 404], ["picture/99999", "GET", 404], ["picture/1x", "GET", 404], ["", "POST", 405],
    ["action", "GET", 405], ["", "DELETE", 405], ["", "GET", 200, { Host: `localhost:${url.port}`, Origin: url.origin }]])
    assert.equal((await ask(url, { path, method, headers, body: method === "POST" ? "{}" : undefined })).status, status, path);
  assert.equal(sheet.child.exitCode, null);
});

test("an action is taken as it should be, or refused with a sentence", async (t) => {
  const { sheet, url } = await demo(t);
  const one = await page(url);
  const { windows } = await one.until((picture) => picture.windows);
  const window = windows.at(-1).handle;
  const bad = ["", "[]", "{", "\u0000", "1e999", "[".repeat(60000)].concat([
    {}, { action: 7 }, { action: "none" }, { action: "click" }, { action: "click", id: "1" }, { action: "click", id: 1.5 },
    { action: "click", id: 2 ** 31 }, { action: "click", id: 2 ** 63 }, { action: "spin", id: 1, steps: -1001 }, { action: "spin", id: 1, steps: 1001 },
    { action: "edit", id: 1, text: 5 }, { action: "edit", id: 1 }, { action: "press", button: "no" }, { action: "press", button: [] },
    { action: "page", index: null }, { action: "enter", window: 1 }, { action: "enter", number: 0 }, { action: "enter", number: 2 ** 63 },
    { action: "enter", page: 1 }, { action: "enter", page: "x".repeat(65) },
  ].map((action) => JSON.stringify({ window, ...action })));
  // The last is what a form of another page could send.
  for (const [body, type, wanted] of [...bad.map((body) => [body, "application/json", 400]), [JSON.stringify({ action: "enter", window }), "text/plain", 415]]) {
    const { status, text } = await ask(url, { path: "action", method: "POST", headers: { "Content-Type": type }, body });
    assert.deepEqual([status, /^\S.*\.$/.test(text)], [wanted, true], body.slice(0, 80));
  }
  // Well formed: done, or senseless and let pass; meant for a window that is gone: nothing.
  for (const action of [{ action: "click", id: 99999 }, { action: "page", index: 1 }, { action: "spin", id: 1101, steps: 3 }]) await one.act(action);
  await one.post({ action: "press", button: "ok", window: "0" });
  const { windows: after } = await one.act({ action: "select", id: 1005, index: 1 });
  assert.deepEqual(after[0].page.controls.filter(({ id }) => id === 1099 || id === 1005).map(({ text, selection }) => selection ?? text), [1, "3"]);
});

// A request that the server refuses by its head has the status of that refusal; if the server waited for the
// body, which never ends, the status would be that of the deadline, 408.
test("hostile requests are refused by their head, or at a deadline, and cost no memory", async (t) => {
  const { sheet, url } = await demo(t);
  const path = `${url.pathname}action`;
  const memory = () => Number(/VmHWM:\s+(\d+)/.exec(readFileSync(`/proc/${sheet.child.pid}/status`, "utf8"))[1]);
  const head = (way, lines, host = url.host) => `POST ${way} HTTP/1.1\r\nHost: ${host}\r\n${lines}\r\n`;
  const mega = Buffer.alloc(1 << 20, "7");
  const chunk = Buffer.concat([Buffer.from("100000\r\n"), mega, Buffer.from("\r\n")]);
  const cases = {
    "chunked, no token": [403, head("/action", "Transfer-Encoding: chunked\r\n\r\n"), chunk],
    "large, foreign host": [403, head(path, "Content-Length: 536870912\r\n\r\n", "evil.example"), mega],
    "chunked": [411, head(path, `Transfer-Encoding: chunked\r\nContent-Length: 2\r\n`), chunk],
    "unbounded": [411, head(path, ""), mega],
    "large": [413, head(path, `Content-Length: 536870912\r\n`), mega],
    "huge": [413, head(path, `Content-Length: 99999999999999999999999\r\n`), mega],
    "packed": [415, head(path, `Content-Encoding: gzip\r\nContent-Length: 261000\r\n`), mega],
    "two lengths": [400, head(path, `Content-Length: 1\r\nContent-Length: 2\r\n`)],
    "two hosts": [403, head(path, `Host: evil.example\r\nContent-Length: 2\r\n`)],
    "no HTTP": [400, "\x16\x03\x01\r\n\r\n"],
    "folded": [400, head(path, `X: 1\r\n  2\r\n`)],
    "endless headers": [431, "GET / HTTP/1.1\r\n", "X: 1\r\n".repeat(1000)],
    "dripping head": [408, "GET / HTTP/1.1\r\n", "X", 100],
    "dripping body": [408, head(path, `Content-Length: 60000\r\n`), "7", 100],
    "silence": [NaN, ""],
  };
  await ask(url);
  const before = memory();
  await Promise.all(Object.entries(cases).map(async ([name, [wanted, ...sent]]) => assert.equal(await send(url, ...sent), wanted, name)));
  assert.ok(memory() - before < 4096, `${before} kB, then ${memory()} kB`);
});

test("nobody else's connections keep a person waiting", async (t) => {
  const { sheet, url } = await demo(t);
  const pages = [];
  for (let i = 0; i < 6; ++i) pages.push(await page(url, `tab ${i}`));
  // A browser has six connections: the oldest tabs give way.
  assert.deepEqual((await Promise.all([pages[0].ended(), pages[1].ended()])).map(({ end }) => end), ["elsewhere", "elsewhere"]);
  const idle = Array.from({ length: 400 }, () => send(url, "GET / HTTP/1.1\r\n", "X", 100));
  assert.ok((await ask(url)).status === 200 && readdirSync(`/proc/${sheet.child.pid}/fd`).length < 300);
  await pages[5].act({ action: "page", index: 1 });
  await pages[5].act({ action: "press", button: "ok" });
  for (const one of pages.slice(2)) assert.equal((await one.ended()).end, "ok");
  assert.equal((await sheet.ended).status, 0);
  await Promise.all(idle);
});
