// Shows the windows of the server's snapshots and reports the user's actions. A control keeps what the user
// entered until the server has handled the user's last action on it and no input method composes text in it;
// then the server's state applies.
import { make, setLabel } from "./dom.js";
import { createFrame, updateFrame, focusedControl } from "./frames.js";
import { isGlossOn, meaningOf, switchGloss } from "./gloss.js";
import { openWebPage, showNotice } from "./notice.js";

const desk = document.getElementById("desk");
const about = document.getElementById("about");
const gloss = document.getElementById("gloss");
const KINDS = { document: "文書の設定", advanced: "詳細設定", "user-default": "既定の設定", printer: "プリンタのプロパティ" };
const DISCONNECTED = "printhost との接続が切れました。端末でもう一度 printhost を起動し、表示されたアドレスを開いてください。ここでの変更は保存されていません。";
const REFUSED = "操作を受け付けられませんでした。もう一度操作してください。";
const MAX_CONNECTION_ERRORS = 3; // in a row, after which the server counts as unreachable

const frames = new Map(); // handle → frame, in z-order, the topmost last
const pageId = crypto.randomUUID(); // distinguishes this page's actions from those of other pages
let sent = 0; // number of this page's last action, counted from 1
let handled = 0; // number of the last one that the server has handled
let snapshot = null; // the last one received
let isFollowingFocus = false; // the focus moves because the server's focus moved
let queue = Promise.resolve();
let connectionErrors = 0; // since the last successful connection
let composingField = null; // the field in which an input method composes text
let isDisconnected = false;

// Posts an action. When the server refuses it or cannot be reached, reports that and shows the last snapshot
// again.
async function post(action) {
  const request = { method: "POST", headers: { "Content-Type": "application/json" }, body: JSON.stringify(action) };
  const response = await fetch("action", request).catch(() => null);
  if (response?.ok) return;
  if (!isDisconnected) showNotice(REFUSED);
  handled = Math.max(handled, action.number); // no snapshot will confirm it
  if (snapshot) showSnapshot(snapshot);
}

// Disables the windows and shows the text while the server cannot be reached; an empty text enables them again.
function setDisconnected(text) {
  isDisconnected = desk.inert = Boolean(text);
  document.body.toggleAttribute("data-lost", isDisconnected);
  showNotice(text);
}

// Sends an action after all earlier ones; returns its number.
function send(action) {
  const number = ++sent;
  document.body.toggleAttribute("data-ahead", true);
  queue = queue.then(() => post({ ...action, page: pageId, number }));
  return number;
}

const topFrame = () => [...frames.values()].at(-1);

// Returns the functions through which a frame and its controls use the page.
function createLink({ handle, kind }) {
  return {
    kind,
    drives: Object.entries(snapshot.about.drives).map(([drive, folder]) => `${drive} = ${folder}`).join("　"),
    send: (action) => send({ ...action, window: handle }),
    isAhead: (number, input) => handled < number || input === composingField,
    focused: (node) => {
      if (!isFollowingFocus && (handled < sent || !node.view.focused)) send({ action: "focus", id: node.view.id, window: handle });
    },
  };
}

function followFocus(frame) {
  if (handled < sent || composingField?.isConnected || (frame.keepsTabFocus && document.activeElement.role === "tab")) return;
  const node = focusedControl(frame);
  if (!node || document.activeElement === node.input) return;
  isFollowingFocus = true;
  node.input.focus({ preventScroll: true });
  if (node.kind === "edit") node.input.select();
  isFollowingFocus = false;
  // The first focus of a page or dialog does not scroll its upper left corner out of view.
  const place = frame.page?.handle ?? frame.handle;
  if (frame.entered === place) node.element.scrollIntoView({ block: "nearest", inline: "nearest" });
  else if (frame.page) scrollTo(0, 0);
  frame.entered = place;
}

// Scrolls to a dialog that has just opened, to its upper left corner when it is larger than the viewport. The
// scroll position is restored when the dialog closes.
function bringIntoView(frame) {
  const { width, height } = frame.element.getBoundingClientRect();
  frame.scrolled = [scrollX, scrollY];
  frame.element.scrollIntoView({ block: height > innerHeight ? "start" : "nearest", inline: width > innerWidth ? "start" : "nearest" });
}

function showAbout({ printer, kind }) {
  const title = `${printer} — ${KINDS[kind] ?? kind}`;
  if (document.title === title) return;
  document.title = title;
  about.replaceChildren();
  make("span", "", about, { textContent: `${printer} — `, title: printer });
  setLabel(make("span", "", about), KINDS[kind] ?? kind, false);
}

function showSnapshot(next) {
  if (next.opened.count > (snapshot ?? next).opened.count) openWebPage(next.opened.file);
  snapshot = next;
  handled = Math.max(handled, next.handled[pageId] ?? 0);
  document.body.toggleAttribute("data-busy", next.busy);
  document.body.toggleAttribute("data-ahead", handled < sent);
  showAbout(next.about);
  const closed = new Map(frames);
  let owner;
  for (const view of next.windows) {
    let frame = frames.get(view.handle);
    const opens = !frame;
    if (opens) {
      const link = createLink(view);
      frame = Object.assign(createFrame(view, link, owner), { link });
      frames.set(view.handle, frame);
      desk.append(frame.element);
    }
    closed.delete(view.handle);
    updateFrame(frame, view, frame.link);
    if (opens && owner) bringIntoView(frame);
    owner = frame;
  }
  for (const [handle, frame] of [...closed].reverse()) {
    frame.element.remove();
    frames.delete(handle);
    if (frame.scrolled) scrollTo(...frame.scrolled);
  }
  const last = topFrame();
  for (const frame of frames.values()) frame.element.inert = frame !== last;
  if (last) followFocus(last);
}

// Rebuilds the page with or without the English.
async function setGloss(on) {
  await switchGloss(on);
  document.documentElement.classList.toggle("glossed", on);
  gloss.ariaPressed = String(on);
  history.replaceState(null, "", on ? "#gloss=en" : location.pathname);
  desk.replaceChildren();
  frames.clear();
  document.title = "";
  if (snapshot) showSnapshot(snapshot);
}

const END_TEXTS = {
  ok: "設定しました。このページは閉じてかまいません。",
  cancel: "変更せずに終了しました。このページは閉じてかまいません。",
  failed: "設定できませんでした。",
  elsewhere: "このシートはほかのページで開かれています。ここで続けるには、このページを読み込み直してください。",
};

// Handles the last message of the stream: how the sheet ended.
function onEnd({ end: result, reason, japanese = "" }) {
  stream.close();
  desk.replaceChildren();
  frames.clear();
  snapshot = null;
  document.body.dataset.end = result;
  for (const name of ["data-ahead", "data-busy"]) document.body.removeAttribute(name);
  const meaning = reason && isGlossOn() ? `${meaningOf(END_TEXTS.failed).replace(/\.$/, ":")} ${reason}.` : undefined;
  showNotice(END_TEXTS[result] + japanese, { meaning });
}

// Keeps the focus inside a dialog: Tab moves from the last control to the first and back.
function trapFocus(frame, event) {
  const stops = [...frame.element.querySelectorAll("button, input:not([type=radio]:not(:checked)), select")]
    .filter((one) => one.tabIndex >= 0 && !one.disabled && one.offsetParent);
  const [last, first] = event.shiftKey ? [stops[0], stops.at(-1)] : [stops.at(-1), stops[0]];
  if (document.activeElement !== last && frame.element.contains(document.activeElement)) return;
  event.preventDefault();
  first?.focus();
}

document.addEventListener("compositionstart", (event) => (composingField = event.target));
document.addEventListener("compositionend", () => (composingField = null));

document.addEventListener("keydown", (event) => {
  const frame = topFrame();
  if (!frame || isDisconnected || event.isComposing || event.ctrlKey || event.metaKey) return;
  if (event.key === "Tab") return frame.kind === "sheet" || trapFocus(frame, event);
  const inButton = event.target instanceof HTMLButtonElement;
  if (event.key === "Escape") frame.link.send({ action: "escape" });
  else if (event.key === "Enter" && !inButton) frame.link.send({ action: "enter" });
  else if (event.altKey && event.key.length === 1) frame.link.send({ action: "access", text: event.key });
  else return;
  event.preventDefault();
});

// The browser asks before it leaves a page with changes that OK has not confirmed.
addEventListener("beforeunload", (event) => {
  const [sheet] = snapshot?.windows ?? [];
  if (isDisconnected) return;
  if (snapshot?.windows.length > 1 || sheet?.changed) event.preventDefault();
});

gloss.addEventListener("click", () => setGloss(!isGlossOn()));

if (location.hash === "#gloss=en") await setGloss(true);
const stream = new EventSource("events");
stream.onopen = () => {
  connectionErrors = 0;
  if (isDisconnected) setDisconnected("");
};
stream.onerror = () => setDisconnected(++connectionErrors > MAX_CONNECTION_ERRORS || stream.readyState === EventSource.CLOSED ? DISCONNECTED : "接続が切れました。つなぎ直しています…");
stream.onmessage = (event) => {
  const message = JSON.parse(event.data);
  if (message.end) onEnd(message);
  else showSnapshot(message);
};
