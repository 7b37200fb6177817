// The sheet server answers the person at this computer and nobody else.
import assert from "node:assert/strict";
import { request } from "node:http";
import { test } from "node:test";

import { computer } from "../support/printhost.mjs";

// One plain HTTP request; answers status, headers and body.
function ask(url, { path = url.pathname, method = "GET", headers = {}, body } = {}) {
  return new Promise((resolve, reject) => {
    const outgoing = request({ host: "127.0.0.1", port: url.port, path, method, headers }, (answer) => {
      let text = "";
      answer.on("data", (bytes) => {
        text += bytes;
        if (answer.headers["content-type"] === "text/event-stream") outgoing.destroy();
      });
      answer.on("close", () => resolve({ status: answer.statusCode, headers: answer.headers, text }));
    });
    outgoing.on("error", reject);
    outgoing.end(body);
  });
}

test("no token, a wrong host or a foreign origin gets nothing", async (t) => {
  const pc = computer(t);
  const sheet = pc.start("demo");
  const url = new URL(await sheet.address);
  const token = url.pathname.slice(1, -1);
  assert.match(token, /^[0-9a-f]{32}$/);
  assert.equal(url.hostname, "127.0.0.1");
  const own = await ask(url);
  assert.equal(own.status, 200);
  assert.match(own.headers["content-security-policy"], /default-src 'none'/);
  assert.equal(own.headers["access-control-allow-origin"], undefined);

  const press = JSON.stringify({ action: "press", button: "ok", window: "10010", number: 1 });
  const json = { "Content-Type": "application/json" };
  const foreign = [
    { headers: { Host: "evil.example" } },
    { headers: { Host: `evil.example:${url.port}` } },
    { headers: { Host: `127.0.0.1:${Number(url.port) + 1}` } },
    { headers: { Origin: "http://evil.example" } },
    { headers: { Origin: "null" } },
    { headers: { Origin: `https://127.0.0.1:${url.port}` } },
  ];
  for (const path of ["", "page.js", "events", "picture/149", "action"]) {
    const method = path === "action" ? "POST" : "GET";
    const refused = [
      { path: `/${path}` },
      { path: `/${"0".repeat(32)}/${path}` },
      { path: `/${token.slice(0, 31)}/${path}` },
      { path: `/x?/${token}/${path}` },
      ...foreign.map((how) => ({ path: url.pathname + path, ...how })),
    ];
    for (const how of refused) {
      const { status, text } = await ask(url, { method, body: method === "POST" ? press : undefined, ...how, headers: { ...json, ...how.headers } });
      assert.deepEqual([status, text], [403, ""], JSON.stringify(how));
    }
  }
  // A form of another page could send these; they are refused by their type.
  const plain = await ask(url, { path: `${url.pathname}action`, method: "POST", headers: { "Content-Type": "text/plain" }, body: press });
  assert.equal(plain.status, 415);
  for (const body of ["", "[]", "{", '{"action":1}', "\u0000"])
    assert.equal((await ask(url, { path: `${url.pathname}action`, method: "POST", headers: json, body })).status, 400);
  // Well formed but senseless: taken, and nothing happens.
  for (const action of [{ action: 7, window: [] }, { action: "click", id: "x", window: "10010" }, { action: "none", window: "1" },
    { action: "edit", id: 99999, text: 5, window: "10010" }]) {
    const answer = await ask(url, { path: `${url.pathname}action`, method: "POST", headers: json, body: JSON.stringify(action) });
    assert.equal(answer.status, 204);
  }
  assert.equal(sheet.child.exitCode, null);
  // The stream has come and gone: nobody is there any more.
  assert.match((await ask(url, { path: `${url.pathname}events` })).text, /^data: \{"handled"/);
  assert.equal((await sheet.ended).status, 1);
});
