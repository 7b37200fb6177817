// Windows: the sheet with its tabs and buttons, dialogs, message boxes. A frame holds the controls of its
// window in template order, which is the tab order.
import { createControl, updateControl } from "./controls.js";
import { cssX, cssY, make, setLabel } from "./dom.js";
import { isGlossOn } from "./gloss.js";
import { enclosingGroup, nameControls } from "./labels.js";

const SHEET_BUTTONS = [["ok", "OK"], ["cancel", "キャンセル"]];
// Message box icons by the high digit of the style.
const ICONS = { 1: ["stop", "✕"], 2: ["question", "?"], 3: ["exclamation", "!"], 4: ["information", "i"] };

function resize(element, width, height) {
  Object.assign(element.style, { width: cssX(width), height: cssY(height) });
}

// Sets the variables from which the style sheet computes the scale of a window: the width, the height of
// title, tabs and footer (fixed), and the height of the dialog, which grows with the English. A window is
// scaled down to fit the viewport and is never larger in scale than its owner.
function setScale(frame, width, fixed, height, margin = "0") {
  const horizontal = `(100vw - var(--around)) / (${width} + ${margin})`;
  const vertical = `(100dvh - 56px) / (${fixed} + var(--more) + ${height} * var(--tall))`;
  frame.fit = `min(${[frame.owner?.fit, horizontal, vertical].filter(Boolean).join(", ")})`;
  for (const [name, value] of [["--w", width], ["--fixed", fixed], ["--h", height], ["--fit", frame.fit]]) frame.element.style.setProperty(name, value);
}

// Creates, updates and removes the controls of a frame according to the server's list, in its order.
function updateControls(frame, views, link) {
  const removed = new Map(frame.controls);
  let position = frame.client.querySelector(":scope > .control");
  for (const view of views) {
    let node = frame.controls.get(view.handle);
    if (!node || node.kind !== view.kind) {
      node?.element.remove();
      node = createControl(view, link);
      frame.controls.set(view.handle, node);
    }
    removed.delete(view.handle);
    if (node.element === position) position = position.nextElementSibling;
    else frame.client.insertBefore(node.element, position);
    updateControl(node, view, link);
  }
  for (const [handle, node] of removed) {
    node.element.remove();
    frame.controls.delete(handle);
  }
  pairSpins(frame);
  if (isGlossOn()) widenChoices(frame, views);
  nameControls(frame, views);
  nameRadios(frame, views, link);
}

// Widens check boxes and radio buttons up to the next control at their right, so that the English fits
// beside the text; the lines are too close for a second line.
function widenChoices(frame, views) {
  const groups = views.filter((view) => view.kind === "group");
  for (const view of views.filter(({ kind }) => kind === "check" || kind === "radio")) {
    const [left, top, width, height] = view.rect;
    const beside = views.filter(({ kind, rect: [x, y, , h] }) => kind !== "group" && x > left && y < top + height && y + h > top);
    const [x, , w] = enclosingGroup(groups, view)?.rect ?? [left, 0, width];
    frame.controls.get(view.handle).element.style.width = cssX(Math.max(width, Math.min(x + w - 6, ...beside.map(({ rect }) => rect[0] - 4)) - left));
  }
}

// Lets the arrow keys of an edit control its up-down.
function pairSpins(frame) {
  const nodes = [...frame.controls.values()];
  for (const spin of nodes.filter((node) => node.kind === "updown" && node.view.enabled)) {
    const edit = nodes.find((node) => node.kind === "edit" && node.view.id === spin.view.buddy);
    if (edit) edit.spin = spin.view.id;
  }
}

// Radio buttons of one group share a name, so that the arrow keys move between them.
function nameRadios(frame, views, link) {
  let group = 0;
  for (const view of views) {
    if (view.group) ++group;
    if (view.kind === "radio") frame.controls.get(view.handle).input.name = `${frame.handle}-${group}`;
  }
  // The browser clears the others when one is checked, so all of them are updated together.
  const radios = [...frame.controls.values()].filter((node) => node.kind === "radio");
  if (radios.some((node) => link.isAhead(node.number))) return;
  for (const node of radios) node.input.checked = node.view.checked;
}

function updateClient(frame, view, link) {
  resize(frame.client, view.width, view.height);
  updateControls(frame, view.controls, link);
}

function titleBar(element, link) {
  const bar = make("header", "title", element);
  const text = make("h2", "", bar);
  const close = make("button", "close", bar, { type: "button", tabIndex: -1, textContent: "×", title: "閉じる", ariaLabel: "閉じる" });
  close.addEventListener("click", () => link.send({ action: "close" }));
  return text;
}

function buildSheet(frame, link) {
  frame.tabs = make("div", "tabs", frame.element, { role: "tablist" });
  frame.holder = make("div", "holder", frame.element);
  const footer = make("footer", "", frame.element);
  frame.buttons = {};
  for (const [name, label] of SHEET_BUTTONS) {
    const button = make("button", "push", footer, { type: "button" });
    setLabel(button, label);
    button.dataset.button = name;
    button.addEventListener("click", () => link.send({ action: "press", button: name }));
    frame.buttons[name] = button;
  }
  frame.element.append(frame.tabs); // last in the tab order; the style sheet shows them at the top
}

// While a tab has the focus, the arrow keys, Home and End switch pages and the focus stays on the tabs.
function createTab(frame, index, link) {
  const tab = make("button", "tab", frame.tabs, { type: "button", role: "tab", id: `tab${index}` });
  tab.dataset.page = index;
  tab.addEventListener("click", () => {
    frame.keepsTabFocus = false;
    link.send({ action: "page", index });
  });
  tab.addEventListener("keydown", (event) => {
    const last = frame.tabs.children.length - 1;
    const next = { ArrowRight: index + 1, ArrowLeft: index - 1, Home: 0, End: last }[event.key];
    if (!frame.tabs.children[next] || event.altKey || event.ctrlKey || event.metaKey) return;
    event.preventDefault();
    frame.keepsTabFocus = true;
    link.send({ action: "page", index: next });
    frame.tabs.children[next].focus();
  });
}

function updateTabs(frame, view, link) {
  while (frame.tabs.children.length < view.tabs.length) createTab(frame, frame.tabs.children.length, link);
  [...frame.tabs.children].forEach((tab, index) => {
    setLabel(tab, view.tabs[index]);
    tab.ariaSelected = String(index === view.activeTab);
    tab.tabIndex = index === view.activeTab ? 0 : -1;
  });
}

function updateSheet(frame, view, link) {
  updateTabs(frame, view, link);
  resize(frame.holder, view.pageWidth, view.pageHeight);
  setScale(frame, view.pageWidth + 2, 90, view.pageHeight, "var(--margin)");
  if (frame.page?.handle !== view.page?.handle) {
    frame.page?.client.remove();
    frame.page = view.page && { handle: view.page.handle, controls: new Map() };
    if (frame.page) frame.page.client = make("div", "client page", frame.holder, { role: "tabpanel" });
  }
  if (!frame.page) return;
  frame.page.client.dataset.window = view.page.title;
  frame.page.client.setAttribute("aria-labelledby", `tab${view.activeTab}`);
  updateClient(frame.page, view.page, link);
}

// A message box is laid out by the browser from its text; the rectangles of its controls are not used.
function updateMessage(frame, view, link) {
  const [icon, symbol] = ICONS[(view.style >> 4) & 0xf] ?? [];
  if (!frame.message) {
    frame.message = make("div", "body", frame.element);
    if (icon) make("span", `icon ${icon}`, frame.message, { textContent: symbol }).dataset.icon = icon;
    frame.client = make("div", "message-buttons", frame.element);
  }
  frame.element.style.setProperty("--fit", frame.owner?.fit ?? "1.3px");
  updateControls(frame, view.controls, link);
  const text = [...frame.controls.values()].find((node) => node.kind === "static");
  if (text && text.element.parentElement !== frame.message) frame.message.append(text.element);
  if (text) frame.element.setAttribute("aria-describedby", text.text.id);
}

const ROLES = { sheet: "region", message: "alertdialog" };

// Creates the frame of a window. owner: the frame of the window below it, undefined for the first.
export function createFrame(view, link, owner) {
  const frame = { handle: view.handle, kind: view.kind, owner, controls: new Map(), page: null, keepsTabFocus: false };
  frame.element = make("section", `window ${view.kind}`, null, { role: ROLES[view.kind] ?? "dialog" });
  if (view.kind !== "sheet") frame.element.ariaModal = "true";
  frame.element.dataset.kind = view.kind;
  frame.title = titleBar(frame.element, link);
  if (view.kind === "sheet") buildSheet(frame, link);
  else if (view.kind !== "message") frame.client = make("div", "client", frame.element);
  if (view.kind === "file") make("p", "drives", frame.element, { textContent: link.drives });
  return frame;
}

export function updateFrame(frame, view, link) {
  frame.element.dataset.window = view.title;
  frame.element.ariaLabel = view.title;
  if (frame.shownTitle !== view.title) setLabel(frame.title, view.title, false);
  frame.shownTitle = frame.title.title = view.title;
  if (view.kind === "sheet") return updateSheet(frame, view, link);
  if (view.kind === "message") return updateMessage(frame, view, link);
  setScale(frame, view.width + 2, view.kind === "file" ? 60 : 26, view.height);
  updateClient(frame, view, link);
}

// Returns the control of the frame or its page that has the focus on the server, undefined without one.
export function focusedControl(frame) {
  const nodes = [...frame.controls.values(), ...(frame.page?.controls.values() ?? [])];
  return nodes.find((node) => node.view.focused);
}
