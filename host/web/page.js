// Shows the desk's windows and reports what the person does. The server's picture is the truth; a
// control that the person is ahead of (its last action is not handled yet) is left alone until the
// server has caught up.
import { createFrame, updateFrame, focusedControl } from "./frames.js";

const desk = document.getElementById("desk");
const notice = document.getElementById("notice");
const frames = new Map(); // handle → frame, the one on top last
const me = crypto.randomUUID(); // tells this page's actions from those of other pages
let sent = 0; // this page's actions, counted from 1
let handled = 0; // the last of them that the server has dealt with
let picture = { handled: {}, windows: [] };
let following = false; // the focus moves because the server says so
let queue = Promise.resolve();

function say(text) {
  notice.textContent = text;
  notice.hidden = !text;
}

// Reports an action; answers its number. Actions reach the server in order. One that the server does
// not take is told, and the page shows what is true again.
function send(action) {
  const number = ++sent;
  const body = JSON.stringify({ ...action, page: me, number });
  const post = async () => {
    const answer = await fetch("action", { method: "POST", headers: { "Content-Type": "application/json" }, body });
    if (answer.ok) return;
    say(`操作を受け付けられませんでした: ${await answer.text()}`);
    handled = Math.max(handled, number);
    show(picture);
  };
  queue = queue.then(post).catch(() => say("接続が切れました。"));
  return number;
}

const top = () => [...frames.values()].at(-1);

// What a frame and its controls need of the page.
function linkTo({ handle, kind }) {
  return {
    kind,
    send: (action) => send({ ...action, window: handle }),
    isAhead: (number) => handled < number,
    focused: (node) => {
      if (!following && !node.view.focused) send({ action: "focus", id: node.view.id, window: handle });
    },
  };
}

function followFocus(frame) {
  if (handled < sent) return;
  const node = focusedControl(frame);
  if (!node || document.activeElement === node.input) return;
  following = true;
  node.input.focus({ preventScroll: true });
  if (node.kind === "edit") node.input.select();
  following = false;
}

function show(next) {
  picture = next;
  handled = Math.max(handled, picture.handled[me] ?? 0);
  const gone = new Map(frames);
  for (const view of picture.windows) {
    let frame = frames.get(view.handle);
    if (!frame) {
      const link = linkTo(view);
      frame = Object.assign(createFrame(view, link), { link });
      frames.set(view.handle, frame);
      desk.append(frame.element);
    }
    gone.delete(view.handle);
    updateFrame(frame, view, frame.link);
  }
  for (const [handle, frame] of gone) {
    frame.element.remove();
    frames.delete(handle);
  }
  const last = top();
  for (const frame of frames.values()) frame.element.inert = frame !== last;
  if (!last) return;
  document.title = [...frames.values()][0].title.textContent;
  followFocus(last);
}

const LAST_WORDS = {
  ok: "設定しました。このページは閉じてかまいません。",
  cancel: "変更せずに終了しました。このページは閉じてかまいません。",
  failed: "設定できませんでした。",
  elsewhere: "このシートはほかのページで開かれています。ここで続けるには、このページを読み込み直してください。",
};

function end({ end: result, reason = "" }) {
  stream.close();
  desk.replaceChildren();
  frames.clear();
  document.body.dataset.end = result;
  say(LAST_WORDS[result] + reason);
}

document.addEventListener("keydown", (event) => {
  const frame = top();
  if (!frame || event.isComposing || event.ctrlKey || event.metaKey) return;
  const inButton = event.target instanceof HTMLButtonElement;
  if (event.key === "Escape") frame.link.send({ action: "escape" });
  else if (event.key === "Enter" && !inButton) frame.link.send({ action: "enter" });
  else if (event.altKey && event.key.length === 1) frame.link.send({ action: "access", text: event.key });
  else return;
  event.preventDefault();
});

const stream = new EventSource("events");
stream.onopen = () => say("");
stream.onerror = () => say("接続が切れました。つなぎ直しています…");
stream.onmessage = (event) => {
  const news = JSON.parse(event.data);
  if (news.end) end(news);
  else show(news);
};
