// A person at a sheet without a browser: reads the pictures of its event stream and posts actions.
import assert from "node:assert/strict";
import { request } from "node:http";

// Sends one HTTP request; returns the status, headers and text of its answer.
export function ask(url, { path = "", method = "GET", headers = {}, body } = {}) {
  return new Promise((resolve, reject) => {
    const outgoing = request(new URL(path, url), { method, headers }, (answer) => {
      let text = "";
      answer.setEncoding("utf8");
      answer.on("data", (piece) => (text += piece));
      answer.on("close", () => resolve({ status: answer.statusCode, headers: answer.headers, text }));
    });
    outgoing.on("error", reject);
    outgoing.end(body);
  });
}

// Opens a stream; the returned page knows the newest picture.
export async function page(address, name = "test") {
  const url = new URL(address);
  let [picture, number, rest, closed] = [undefined, 0, "", false];
  const waiting = [];
  const answer = await new Promise((resolve, reject) => {
    request(new URL("events", url), resolve).on("error", reject).end();
  });
  assert.equal(answer.statusCode, 200);
  answer.setEncoding("utf8");
  answer.on("data", (piece) => {
    const blocks = (rest + piece).split("\n\n");
    rest = blocks.pop();
    for (const block of blocks) if (block.startsWith("data: ")) picture = JSON.parse(block.slice(6));
    for (const resume of waiting.splice(0)) resume();
  });
  answer.on("error", () => {});
  answer.on("close", () => {
    closed = true;
    for (const resume of waiting.splice(0)) resume();
  });
  // The newest picture, once it is as wanted.
  const until = async (wanted) => {
    while (!(picture && wanted(picture))) {
      if (closed) throw new Error("the stream ended before the picture came");
      await new Promise((resolve) => waiting.push(resolve));
    }
    return picture;
  };
  const post = (action) =>
    ask(url, { path: "action", method: "POST", headers: { "Content-Type": "application/json" }, body: JSON.stringify(action) });
  return {
    url,
    post,
    until,
    leave: () => answer.destroy(),
    // Does one thing in the window on top; done once the picture tells so.
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
