// The sheet server: which requests it admits, and what hostile or many clients can do.
import assert from "node:assert/strict";
import { readFileSync, readdirSync } from "node:fs";
import { get } from "node:http";
import { connect } from "node:net";
import { test } from "node:test";

import { openPage, sendRequest } from "../support/driving.mjs";
import { computer, LIMIT } from "../support/printhost.mjs";
import { ids } from "../support/resource_ids.mjs";

const JSON_TYPE = { "Content-Type": "application/json" };

async function startDemo(t) {
  const sheet = computer(t).start("demo");
  return { sheet, url: new URL(await sheet.address) };
}

// Sends a head, and a piece again and again, over one connection until the server closes it. Returns the status
// of the response, NaN without one.
function send(url, head, piece, pause = 0) {
  const socket = connect(url.port, url.hostname);
  let text = "";
  const push = () => {
    if (!piece || socket.destroyed || text) return;
    if (pause) setTimeout(push, pause, socket.write(piece));
    else if (socket.write(piece)) setImmediate(push);
    else socket.once("drain", push);
  };
  socket.on("connect", () => push(socket.write(head))).on("data", (data) => (text += data)).on("error", () => {});
  return new Promise((resolve) => socket.on("close", () => resolve(Number(text.split(" ")[1]))));
}

test("server, a request without the token, of another host or origin: 403 and no body", async (t) => {
  const { url } = await startDemo(t);
  assert.match(url.href, /^http:\/\/127\.0\.0\.1:\d+\/[0-9a-f]{32}\/$/);
  const token = url.pathname.slice(1, -1);
  const foreign = [{ Host: "evil.example" }, { Host: `evil.example:${url.port}` }, { Host: `127.0.0.1:${Number(url.port) + 1}` },
    { Origin: "http://evil.example" }, { Origin: "null" }, { Origin: `https://127.0.0.1:${url.port}` }];
  for (const path of ["", "page.js", "events", "picture/149", "action"]) {
    const request = path === "action" ? { method: "POST", body: "{}" } : {};
    const withoutToken = [`/${path}`, `/${"0".repeat(32)}/${path}`, `/${token.slice(0, 31)}/${path}`, `/x?/${token}/${path}`];
    for (const refused of [...withoutToken.map((wrong) => ({ path: wrong })), ...foreign.map((headers) => ({ path, headers: { ...JSON_TYPE, ...headers } }))]) {
      const { status, text } = await sendRequest(url, { headers: JSON_TYPE, ...request, ...refused });
      assert.deepEqual([status, text], [403, ""], JSON.stringify(refused));
    }
  }
});

test("server, an admitted request: the page with its policy, pictures, and the status of a wrong path or method", async (t) => {
  const { url } = await startDemo(t);
  const { status, headers } = await sendRequest(url);
  assert.equal(status, 200);
  assert.match(headers["content-security-policy"], /default-src 'none'/);
  assert.equal(headers["content-type"], "text/html; charset=utf-8");
  for (const [expected, path, method, more] of [[200, `picture/${ids.IDB_PORTRAIT}`, "GET"], [404, "none", "GET"], [404, "picture/99999", "GET"], [404, "picture/1x", "GET"],
    [405, "", "POST"], [405, "action", "GET"], [405, "", "DELETE"], [200, "?x", "GET"], ...["localhost", "127.0.0.1", "[::1]"].map((host) =>
      [200, "", "GET", { Host: `${host}:${url.port}`, Origin: `http://${host}:${url.port}` }])])
    assert.equal((await sendRequest(url, { path, method, headers: more, body: method === "POST" ? "{}" : undefined })).status, expected, `${method} ${path}`);
});

test("server, an action: performed when it is valid, otherwise refused with a sentence", async (t) => {
  const { url } = await startDemo(t);
  const one = await openPage(url, "x".repeat(64)); // the longest name
  const { windows } = await one.until((picture) => picture.windows);
  const window = windows.at(-1).handle;
  const invalid = ["", "[]", "{", "\u0000", "1e999", "[".repeat(60000)].concat([
    {}, { action: 7 }, { action: "none" }, { action: "click" }, { action: "click", id: "1" }, { action: "click", id: 1.5 },
    { action: "click", id: 2 ** 31 }, { action: "click", id: 2 ** 63 }, { action: "spin", id: 1, steps: -1001 }, { action: "spin", id: 1, steps: 1001 },
    { action: "edit", id: 1, text: 5 }, { action: "edit", id: 1 }, { action: "press", button: "no" }, { action: "press", button: [] },
    { action: "page", index: null }, { action: "enter", window: 1 }, { action: "enter", number: 0 }, { action: "enter", number: 2 ** 63 },
    { action: "enter", page: 1 }, { action: "enter", page: "x".repeat(65) },
  ].map((action) => JSON.stringify({ window, ...action })));
  // The last is what a form of another page could send.
  for (const [body, type, expected] of [...invalid.map((body) => [body, "application/json", 400]), [JSON.stringify({ action: "enter", window }), "text/plain", 415]]) {
    const { status, text } = await sendRequest(url, { path: "action", method: "POST", headers: { "Content-Type": type }, body });
    assert.deepEqual([status, /^\S.*\.$/.test(text)], [expected, true], body.slice(0, 80));
  }
  // An action for a control or window that does not exist is ignored; 1000 steps are the most.
  const { IDC_PAPER_LIST: PAPERS, IDC_PAPER_VERT_BASE: BASE, IDC_PAPER_VERT_BASE_SPIN: SPIN } = ids;
  for (const action of [{ action: "click", id: 99999 }, { action: "page", index: 1 }, { action: "spin", id: SPIN, steps: -1000 }]) await one.act(action);
  await one.act({ action: "spin", id: SPIN, steps: 1000 });
  await one.act({ action: "edit", id: BASE, text: "3" });
  await one.post({ action: "press", button: "ok", window: "0" });
  for (const action of [{ action: "focus", id: PAPERS }, { action: "drop" }, { action: "move", steps: 1 }]) await one.act(action);
  const { windows: [{ page: shown }] } = await one.act({ action: "enter" });
  const control = (wanted) => shown.controls.find(({ id }) => id === wanted);
  assert.deepEqual([control(PAPERS).selection, control(PAPERS).open, control(BASE).text], [1, false, "3"]);
  for (const action of [{ action: "page", index: 5 }, { action: "click", id: ids.IDC_UTILITY_LOAD_BROWSE }]) await one.act(action);
  const { windows: opened } = await one.act({ action: "access", text: "i" });
  assert.equal(opened.at(-1).controls.find(({ focused }) => focused).kind, "list"); // behind the label of "i"
});

test("server, a page that reads slowly: receives the newest snapshot at last", { timeout: LIMIT }, async (t) => {
  const { url } = await startDemo(t);
  const slow = await new Promise((resolve) => get(new URL("events", url), resolve));
  const one = await openPage(url);
  // Enough snapshots to fill the buffers of the connection.
  for (let step = 0; step < 1000; ++step) await one.act({ action: "page", index: 1 + (step % 2) });
  let text = "";
  for await (const piece of slow.setEncoding("utf8")) if ((text += piece).includes('"handled":{"test":1000}')) break;
});

// The status of a refusal by the head; a server that waited for the body, which never ends, would respond 408.
test("server, a hostile request: refused by its head or at a deadline, without memory for its body", async (t) => {
  const { sheet, url } = await startDemo(t);
  const path = `${url.pathname}action`;
  const peakMemory = () => Number(/VmHWM:\s+(\d+)/.exec(readFileSync(`/proc/${sheet.child.pid}/status`, "utf8"))[1]);
  const head = (target, lines, host = url.host) => `POST ${target} HTTP/1.1\r\nHost: ${host}\r\n${lines}\r\n`;
  const mega = Buffer.alloc(1 << 20, "7");
  const chunk = Buffer.concat([Buffer.from("100000\r\n"), mega, Buffer.from("\r\n")]);
  const cases = {
    "chunked, no token": [403, head("/action", "Transfer-Encoding: chunked\r\n\r\n"), chunk],
    "large, foreign host": [403, head(path, "Content-Length: 536870912\r\n\r\n", "evil.example"), mega],
    "chunked": [411, head(path, `Transfer-Encoding: chunked\r\nContent-Length: 2\r\n`), chunk],
    "no length": [411, head(path, ""), mega],
    "above 64 KiB": [413, head(path, `Content-Length: 65537\r\n`), mega],
    "length above 64 bits": [413, head(path, `Content-Length: 99999999999999999999999\r\n`), mega],
    "encoded": [415, head(path, `Content-Encoding: gzip\r\nContent-Length: 261000\r\n`), mega],
    "two equal lengths": [400, head(path, `Content-Length: 2\r\nContent-Length: 2\r\n`)],
    "two hosts": [403, head(path, `Host: evil.example\r\nContent-Length: 2\r\n`)],
    "not HTTP": [400, "\x16\x03\x01\r\n\r\n"],
    "folded": [400, head(path, `X: 1\r\n  2\r\n`)],
    "endless headers": [431, "GET / HTTP/1.1\r\n", "X: 1\r\n".repeat(1000)],
    "slow head": [408, "GET / HTTP/1.1\r\n", "X", 100],
    "slow body": [408, head(path, `Content-Length: 60000\r\n`), "7", 100],
    "silence": [NaN, ""],
  };
  await sendRequest(url);
  const before = peakMemory();
  await Promise.all(Object.entries(cases).map(async ([name, [expected, ...sent]]) => assert.equal(await send(url, ...sent), expected, name)));
  assert.ok(peakMemory() - before < 4096, `${before} kB, then ${peakMemory()} kB`);
});

test("server, many connections: the oldest give way, the user's page works on", async (t) => {
  const { sheet, url } = await startDemo(t);
  const pages = [];
  for (let i = 0; i < 6; ++i) pages.push(await openPage(url, `tab ${i}`));
  // A browser opens six connections to a site; four of them may be streams.
  for (const evicted of pages.slice(0, 2)) {
    assert.equal((await evicted.ended()).end, "elsewhere");
    await assert.rejects(evicted.until(() => false)); // the stream ends
  }
  const idle = Array.from({ length: 400 }, () => send(url, "GET / HTTP/1.1\r\n", "X", 100));
  assert.equal((await sendRequest(url)).status, 200);
  assert.ok(readdirSync(`/proc/${sheet.child.pid}/fd`).length < 300);
  await pages[5].act({ action: "page", index: 1 });
  await pages[5].act({ action: "press", button: "ok" });
  for (const one of pages.slice(2)) assert.equal((await one.ended()).end, "ok");
  assert.equal((await sheet.ended).status, 0);
  await Promise.all(idle);
});
