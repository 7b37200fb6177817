// A client of the sheet's server without a browser: reads the snapshots of its event stream and posts actions.
import assert from "node:assert/strict";
import { EventEmitter, once } from "node:events";
import { request } from "node:http";

// Sends one HTTP request; returns the status, headers and text of the response.
export function sendRequest(url, { path = "", method = "GET", headers = {}, body } = {}) {
  return new Promise((resolve, reject) => {
    const outgoing = request(new URL(path, url), { method, headers }, (response) => {
      let text = "";
      response.setEncoding("utf8");
      response.on("data", (piece) => (text += piece));
      response.on("close", () => resolve({ status: response.statusCode, headers: response.headers, text }));
    });
    outgoing.on("error", reject);
    outgoing.end(body);
  });
}

// Opens an event stream as a browser page does. name: distinguishes the actions of this page from those of others.
export async function openPage(address, name = "test") {
  const url = new URL(address);
  let [snapshot, number, rest, isClosed] = [undefined, 0, "", false];
  const changes = new EventEmitter();
  const response = await new Promise((resolve, reject) => {
    request(new URL("events", url), resolve).on("error", reject).end();
  });
  assert.equal(response.statusCode, 200);
  response.setEncoding("utf8");
  response.on("data", (piece) => {
    const blocks = (rest + piece).split("\n\n");
    rest = blocks.pop();
    for (const block of blocks) if (block.startsWith("data: ")) snapshot = JSON.parse(block.slice(6));
    changes.emit("change");
  });
  response.on("error", () => {});
  response.on("close", () => {
    isClosed = true;
    changes.emit("change");
  });
  // Waits for a snapshot with this property and returns it; throws when the stream ends before.
  const until = async (isWanted) => {
    while (!(snapshot && isWanted(snapshot))) {
      if (isClosed) throw new Error("the stream ended before the snapshot came");
      await once(changes, "change");
    }
    return snapshot;
  };
  const post = (action) =>
    sendRequest(url, { path: "action", method: "POST", headers: { "Content-Type": "application/json" }, body: JSON.stringify(action) });
  return {
    url,
    post,
    until,
    leave: () => response.destroy(),
    // Sends an action to the topmost window; returns the snapshot in which it is handled, or the end of the sheet.
    act: async (action) => {
      const { windows } = await until(({ windows }) => windows?.length);
      const sent = { ...action, window: windows.at(-1).handle, page: name, number: ++number };
      const { status, text } = await post(sent);
      assert.deepEqual([status, text], [204, ""]);
      return until(({ end, handled }) => end || handled[name] >= sent.number);
    },
    ended: () => until(({ end }) => end),
  };
}
