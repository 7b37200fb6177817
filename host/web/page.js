// Shows the desk's windows and reports what the person does. The server's picture is the truth; a
// control that the person is ahead of (its last action is not handled yet, or an input method is
// composing in it) is left alone until the server has caught up.
import { make, setLabel } from "./dom.js";
import { createFrame, updateFrame, focusedControl } from "./frames.js";
import { glossIsOn, meaningOf, switchGloss } from "./gloss.js";
import { openPage, say } from "./notice.js";

const desk = document.getElementById("desk");
const about = document.getElementById("about");
const gloss = document.getElementById("gloss");
const KINDS = { document: "文書の設定", advanced: "詳細設定", "user-default": "既定の設定", printer: "プリンタのプロパティ" };
const LOST = "printhost との接続が切れました。端末でもう一度 printhost を起動し、表示されたアドレスを開いてください。ここでの変更は保存されていません。";
const REFUSED = "操作を受け付けられませんでした。もう一度操作してください。";
const MOST_TRIES = 3;

const frames = new Map(); // handle → frame, the one on top last
const me = crypto.randomUUID(); // tells this page's actions from those of other pages
let sent = 0; // this page's actions, counted from 1
let handled = 0; // the last of them that the server has dealt with
let shown = null; // the last picture
let following = false; // the focus moves because the server says so
let queue = Promise.resolve();
let tries = 0; // failed connections in a row
let composed = null; // the field in which an input method composes a text
let lost = false; // the server is gone

// Posts an action. One that does not reach the server, or that it refuses, is reported, and the page shows
// the server's state again.
async function post(action) {
  const request = { method: "POST", headers: { "Content-Type": "application/json" }, body: JSON.stringify(action) };
  const answer = await fetch("action", request).catch(() => null);
  if (answer?.ok) return;
  if (!lost) say(REFUSED);
  handled = Math.max(handled, action.number); // no picture will confirm it
  if (shown) show(shown);
}

// Without its server the sheet accepts no input, and looks so. An empty text: the server is back.
function setLost(text) {
  lost = desk.inert = Boolean(text);
  document.body.toggleAttribute("data-lost", lost);
  say(text);
}

// Reports an action; answers its number. Actions reach the server in order.
function send(action) {
  const number = ++sent;
  document.body.toggleAttribute("data-ahead", true);
  queue = queue.then(() => post({ ...action, page: me, number }));
  return number;
}

const top = () => [...frames.values()].at(-1);

// What a frame and its controls need of the page.
function linkTo({ handle, kind }) {
  return {
    kind,
    drives: Object.entries(shown.about.drives).map(([drive, folder]) => `${drive} = ${folder}`).join("　"),
    send: (action) => send({ ...action, window: handle }),
    isAhead: (number, input) => handled < number || input === composed,
    focused: (node) => {
      if (!following && (handled < sent || !node.view.focused)) send({ action: "focus", id: node.view.id, window: handle });
    },
  };
}

function followFocus(frame) {
  if (handled < sent || composed?.isConnected || (frame.walking && document.activeElement.role === "tab")) return;
  const node = focusedControl(frame);
  if (!node || document.activeElement === node.input) return;
  following = true;
  node.input.focus({ preventScroll: true });
  if (node.kind === "edit") node.input.select();
  following = false;
  // The first focus of a page or dialog leaves its upper left corner in view.
  const place = frame.page?.handle ?? frame.handle;
  if (frame.entered === place) node.element.scrollIntoView({ block: "nearest", inline: "nearest" });
  else if (frame.page) scrollTo(0, 0);
  frame.entered = place;
}

// Brings a dialog into view that has just opened, from its upper left corner on when it is larger than the
// viewport. Its owner's place comes back when it closes.
function bringIntoView(frame) {
  const { width, height } = frame.element.getBoundingClientRect();
  frame.scrolled = [scrollX, scrollY];
  frame.element.scrollIntoView({ block: height > innerHeight ? "start" : "nearest", inline: width > innerWidth ? "start" : "nearest" });
}

function showAbout({ printer, kind }) {
  const text = `${printer} — ${KINDS[kind] ?? kind}`;
  if (document.title === text) return;
  document.title = text;
  about.replaceChildren();
  make("span", "", about, { textContent: `${printer} — `, title: printer });
  setLabel(make("span", "", about), KINDS[kind] ?? kind, false);
}

function show(picture) {
  if (picture.opened.count > (shown ?? picture).opened.count) openPage(picture.opened.file);
  shown = picture;
  handled = Math.max(handled, picture.handled[me] ?? 0);
  document.body.toggleAttribute("data-busy", picture.busy);
  document.body.toggleAttribute("data-ahead", handled < sent);
  showAbout(picture.about);
  const gone = new Map(frames);
  let owner;
  for (const view of picture.windows) {
    let frame = frames.get(view.handle);
    const opens = !frame;
    if (opens) {
      const link = linkTo(view);
      frame = Object.assign(createFrame(view, link, owner), { link });
      frames.set(view.handle, frame);
      desk.append(frame.element);
    }
    gone.delete(view.handle);
    updateFrame(frame, view, frame.link);
    if (opens && owner) bringIntoView(frame);
    owner = frame;
  }
  for (const [handle, frame] of [...gone].reverse()) {
    frame.element.remove();
    frames.delete(handle);
    if (frame.scrolled) scrollTo(...frame.scrolled);
  }
  const last = top();
  for (const frame of frames.values()) frame.element.inert = frame !== last;
  if (last) followFocus(last);
}

// Makes the page anew, with or without the English.
async function setGloss(on) {
  await switchGloss(on);
  document.documentElement.classList.toggle("glossed", on);
  gloss.ariaPressed = String(on);
  history.replaceState(null, "", on ? "#gloss=en" : location.pathname);
  desk.replaceChildren();
  frames.clear();
  document.title = "";
  if (shown) show(shown);
}

const LAST_WORDS = {
  ok: "設定しました。このページは閉じてかまいません。",
  cancel: "変更せずに終了しました。このページは閉じてかまいません。",
  failed: "設定できませんでした。",
  elsewhere: "このシートはほかのページで開かれています。ここで続けるには、このページを読み込み直してください。",
};

function end({ end: result, reason, japanese = "" }) {
  stream.close();
  desk.replaceChildren();
  frames.clear();
  shown = null;
  document.body.dataset.end = result;
  for (const name of ["data-ahead", "data-busy"]) document.body.removeAttribute(name);
  const meaning = reason && glossIsOn() ? `${meaningOf(LAST_WORDS.failed).replace(/\.$/, ":")} ${reason}.` : undefined;
  say(LAST_WORDS[result] + japanese, { meaning });
}

// Tab stays inside a dialog.
function keepInside(frame, event) {
  const stops = [...frame.element.querySelectorAll("button, input:not([type=radio]:not(:checked)), select")]
    .filter((one) => one.tabIndex >= 0 && !one.disabled && one.offsetParent);
  const [last, first] = event.shiftKey ? [stops[0], stops.at(-1)] : [stops.at(-1), stops[0]];
  if (document.activeElement !== last && frame.element.contains(document.activeElement)) return;
  event.preventDefault();
  first?.focus();
}

document.addEventListener("compositionstart", (event) => (composed = event.target));
document.addEventListener("compositionend", () => (composed = null));

document.addEventListener("keydown", (event) => {
  const frame = top();
  if (!frame || lost || event.isComposing || event.ctrlKey || event.metaKey) return;
  if (event.key === "Tab") return frame.kind === "sheet" || keepInside(frame, event);
  const inButton = event.target instanceof HTMLButtonElement;
  if (event.key === "Escape") frame.link.send({ action: "escape" });
  else if (event.key === "Enter" && !inButton) frame.link.send({ action: "enter" });
  else if (event.altKey && event.key.length === 1) frame.link.send({ action: "access", text: event.key });
  else return;
  event.preventDefault();
});

// Changes that OK has not confirmed yet are not left without a question.
addEventListener("beforeunload", (event) => {
  const [sheet] = shown?.windows ?? [];
  if (lost) return;
  if (shown?.windows.length > 1 || sheet?.changed) event.preventDefault();
});

gloss.addEventListener("click", () => setGloss(!glossIsOn()));

if (location.hash === "#gloss=en") await setGloss(true);
const stream = new EventSource("events");
stream.onopen = () => {
  tries = 0;
  if (lost) setLost("");
};
stream.onerror = () => setLost(++tries > MOST_TRIES || stream.readyState === EventSource.CLOSED ? LOST : "接続が切れました。つなぎ直しています…");
stream.onmessage = (event) => {
  const news = JSON.parse(event.data);
  if (news.end) end(news);
  else show(news);
};
