// The controls of a window as HTML controls. Each kind has a builder, which creates the element and reports
// the user's actions, and an updater, which applies the state that the server sends.
import { cssX, cssY, make, setLabel } from "./dom.js";
import { draw } from "./draw.js";
import { isGlossOn, meaningOf } from "./gloss.js";

function place(element, [left, top, width, height]) {
  Object.assign(element.style, { left: cssX(left), top: cssY(top), width: cssX(width), height: cssY(height) });
}

// Narrows a text, or its English, that is wider than its control: the dialogs are laid out for another font
// than the browser's. Texts that the driver sets at run time are cut off by the style sheet instead.
function narrowToFit(text, box, centred) {
  const available = box.clientWidth - (centred ? 0 : text.offsetLeft);
  if (available <= 0 || box.classList.contains("wrapped") || box.classList.contains("filled")) return;
  const inOneLine = !text.querySelector(".own") || box.classList.contains("group");
  for (const part of inOneLine ? [text] : text.children) {
    part.style.transformOrigin = centred ? "center" : "left";
    part.style.transform = part.scrollWidth > available ? `scaleX(${available / part.scrollWidth})` : "";
  }
}

const builders = {
  button(node) {
    node.element = node.input = make("button", "push", null, { type: "button" });
    node.text = make("span", "text", node.element);
    node.input.addEventListener("click", () => node.act({ action: "click" }));
  },
  check(node, type = "checkbox") {
    node.element = make("label", "check");
    node.input = make("input", "", node.element, { type });
    node.text = make("span", "text", node.element);
    node.input.addEventListener("click", () => node.act({ action: "click" }));
  },
  radio: (node) => builders.check(node, "radio"),
  group(node) {
    node.element = node.input = make("div", "group", null, { role: "group" });
    node.text = make("span", "text", node.element);
  },
  static(node) {
    node.element = node.input = make("div", "static");
    node.text = make("span", "text", node.element);
    // The driver changes such a text at run time: the help box, versions, limits.
    if (!node.view.prefix) node.text.ariaLive = "polite";
  },
  edit(node) {
    node.element = node.input = make("input", "edit", null, { type: "text", autocomplete: "off", spellcheck: false });
    const report = () => node.act({ action: "edit", text: node.input.value });
    // Text under composition is reported once, when the input method has finished it.
    node.input.addEventListener("input", (event) => event.isComposing || report());
    node.input.addEventListener("compositionend", report);
    node.input.addEventListener("keydown", (event) => {
      const steps = { ArrowUp: 1, ArrowDown: -1 }[event.key];
      if (!steps || event.isComposing || !node.spin) return;
      event.preventDefault();
      node.act({ action: "spin", steps }, node.spin);
    });
  },
  combo(node) {
    node.element = make("span", "combo");
    node.input = make("select", "", node.element);
    const choice = make("span", "choice", node.element, { ariaHidden: "true" });
    node.choice = make("span", "text", choice);
    node.input.addEventListener("change", () => node.act({ action: "select", index: node.input.selectedIndex }));
    // F4, or Alt with an arrow key, opens the list on the server. There each arrow key notifies the driver, and Esc
    // restores the selection.
    node.input.addEventListener("keydown", (event) => {
      const steps = { ArrowUp: -1, ArrowDown: 1 }[event.key];
      const togglesList = event.key === "F4" || (event.altKey && steps);
      if (!togglesList && !(node.isOpen && steps)) return;
      event.preventDefault();
      if (togglesList) node.isOpen = !node.isOpen;
      node.act(togglesList ? { action: "drop" } : { action: "move", steps });
    });
  },
  list(node) {
    node.element = node.input = make("select", "list");
    node.input.addEventListener("change", () => node.act({ action: "select", index: node.input.selectedIndex }));
    node.input.size = 2;
    // A double click in a file dialog opens the file.
    node.input.addEventListener("dblclick", () => node.link.kind === "file" && node.link.send({ action: "enter" }));
  },
  updown(node) {
    node.element = node.input = make("span", "updown");
    for (const [name, steps, symbol, label] of [["up", 1, "▲", "増やす"], ["down", -1, "▼", "減らす"]]) {
      const arrow = make("button", "", node.element, { type: "button", tabIndex: -1, textContent: symbol, ariaLabel: label });
      arrow.dataset.spin = name;
      arrow.id = `${name}${node.view.handle}`;
      let timer = 0;
      const stop = () => clearTimeout(timer);
      const step = (delay) => {
        node.act({ action: "spin", steps });
        if (delay) timer = setTimeout(step, delay, 120);
      };
      arrow.addEventListener("pointerdown", (event) => {
        event.preventDefault(); // the edit keeps the focus
        if (event.button === 0 && !arrow.disabled) step(400);
      });
      for (const type of ["pointerup", "pointerleave", "pointercancel"]) arrow.addEventListener(type, stop);
      // Assistive technology clicks without a pointer; detail is 0 then.
      arrow.addEventListener("click", (event) => event.detail === 0 && step(0));
    }
  },
  drawn(node) {
    node.element = node.input = node.view.tabStop ? make("button", "drawn", null, { type: "button" }) : make("div", "drawn");
    if (node.view.tabStop) node.input.addEventListener("click", () => node.act({ action: "click" }));
  },
};

function updateItems(node, view) {
  const { input } = node;
  if (JSON.stringify(view.items) !== node.items) {
    node.items = JSON.stringify(view.items);
    const optionText = (text) => [text, meaningOf(text).replaceAll("\n", " ")].filter(Boolean).join(" · ");
    input.replaceChildren(...view.items.map((text) => make("option", "", null, { textContent: optionText(text) })));
  }
  if (input.selectedIndex !== view.selection) input.selectedIndex = view.selection;
  input.title = isGlossOn() ? (input.selectedOptions[0]?.text ?? "") : "";
}

const updaters = {
  button(node, view) {
    node.element.classList.toggle("default", view.default);
  },
  check(node, view) {
    node.input.checked = view.checked;
  },
  static(node, view) {
    node.element.classList.toggle("centred", view.centred);
    node.element.classList.toggle("wrapped", view.rect[3] >= 23);
    node.element.classList.toggle("filled", !view.prefix);
    if (!view.prefix) node.element.title = view.rect[3] >= 23 ? "" : view.text;
    // White becomes the page's own background, which is dark in a dark colour scheme.
    node.element.classList.toggle("white", view.background === "#ffffff");
    node.element.style.color = (view.colour ?? "#000000") === "#000000" ? "" : view.colour;
    node.element.style.background = view.background && view.background !== "#ffffff" ? view.background : "";
  },
  edit(node, view) {
    const { input } = node;
    input.readOnly = view.readOnly;
    input.title = view.text.length > 20 ? view.text : ""; // long paths do not fit
    if (view.limit > 0) input.maxLength = view.limit;
    if (input.value === view.text) return;
    const caret = input.selectionStart;
    input.value = view.text;
    if (document.activeElement === input) input.setSelectionRange(caret, caret);
  },
  combo(node, view) {
    updateItems(node, view);
    node.isOpen = view.open;
    node.input.size = view.open ? Math.max(view.items.length, 2) : 1;
    node.element.classList.toggle("open", view.open);
    if (!isGlossOn()) return;
    setLabel(node.choice, view.items[view.selection] ?? "", false);
    requestAnimationFrame(() => narrowToFit(node.choice, node.choice.parentElement, false));
  },
  list: updateItems,
  updown(node, view) {
    for (const arrow of node.element.children) arrow.disabled = !view.enabled;
  },
};

export function createControl(view, link) {
  const node = { view: { ...view }, kind: view.kind, link, number: 0, shown: "" };
  node.act = (action, id = node.view.id) => (node.number = link.send({ id, ...action }));
  builders[view.kind](node);
  node.input.dataset.id = view.id;
  node.input.dataset.kind = view.kind;
  node.element.classList.add("control");
  node.element.id = `c${view.handle}`;
  if (node.text) node.text.id = `t${view.handle}`;
  node.input.addEventListener("focus", () => link.focused(node));
  return node;
}

// Applies the server's state, unless the user's last action on the control is still on its way or the user
// composes text in it.
export function updateControl(node, view, link) {
  node.view.focused = view.focused;
  if (link.isAhead(node.number, node.input)) return;
  const shown = JSON.stringify({ ...view, focused: false });
  if (shown === node.shown && node.number === 0) return;
  const isTextNew = node.view.text !== view.text || !node.shown;
  Object.assign(node, { view, shown, number: 0 });
  place(node.element, view.rect);
  if ("disabled" in node.input) node.input.disabled = !view.enabled;
  node.element.classList.toggle("disabled", !view.enabled);
  if (node.kind !== "updown") node.input.tabIndex = view.tabStop || view.kind === "radio" ? 0 : -1;
  if (node.text && isTextNew) setLabel(node.text, view.text, view.prefix ?? true);
  updaters[node.kind]?.(node, view);
  if (view.drawing) {
    node.drawing?.remove();
    node.drawing = draw(view.drawing, view.rect[2], view.rect[3]);
    node.input.append(node.drawing);
  }
  if (node.text && isTextNew) requestAnimationFrame(() => narrowToFit(node.text, node.element, node.kind === "button" || view.centred));
}
