// Messages of the page itself: one line that covers no control, with its English while that is switched on.
import { make } from "./dom.js";
import { meaningOf } from "./gloss.js";

const notice = document.getElementById("notice");

// Shows a text, and a link when one belongs to it, until the next text or until the user closes it. An
// empty text removes the notice. The meaning is that of the English table when none is given.
export function say(text, { link, meaning = meaningOf(text) } = {}) {
  notice.replaceChildren();
  notice.hidden = !text;
  if (!text) return;
  const words = make("span", "", notice);
  make("span", "", words, { textContent: text });
  if (meaning) make("span", "gloss", words, { textContent: meaning, lang: "en" });
  if (link) make("a", "", words, { href: link, textContent: link, target: "_blank", rel: "noopener noreferrer" });
  const close = make("button", "close", notice, { type: "button", textContent: "×", title: "閉じる", ariaLabel: "閉じる" });
  close.addEventListener("click", () => say(""));
}

// What sticks to the top of the page stands below a notice that does so.
new ResizeObserver(() => {
  const sticks = getComputedStyle(notice).position === "sticky";
  document.documentElement.style.setProperty("--notice-height", `${sticks ? notice.offsetHeight : 0}px`);
}).observe(notice);

// Opens what the sheet opens in a browser. Only pages of the web, and only for the person who has
// just clicked for it.
export function openPage(file) {
  if (!navigator.userActivation.isActive) return;
  const address = URL.canParse(file) ? new URL(file) : null;
  if (!["http:", "https:"].includes(address?.protocol)) return say("ウェブのアドレスではないので開きません。");
  window.open(address, "_blank", "noopener,noreferrer");
  const placeholder = /(^|\.)example$/.test(address.hostname);
  say(placeholder ? "新しいタブで開きました。このアドレスは仮のもので、実在しません。" : "新しいタブで開きました。", { link: address.href });
}
