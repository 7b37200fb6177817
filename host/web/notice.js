// Messages of the page itself: one line that covers no control, with its English while the English is on.
import { make } from "./dom.js";
import { meaningOf } from "./gloss.js";

const notice = document.getElementById("notice");

// Shows a text, and a link when one is given, until the next text or until the user closes the notice. An
// empty text removes the notice. meaning: the English, by default that of the table.
export function showNotice(text, { link, meaning = meaningOf(text) } = {}) {
  notice.replaceChildren();
  notice.hidden = !text;
  if (!text) return;
  const texts = make("span", "", notice);
  make("span", "", texts, { textContent: text });
  if (meaning) make("span", "gloss", texts, { textContent: meaning, lang: "en" });
  if (link) make("a", "", texts, { href: link, textContent: link, target: "_blank", rel: "noopener noreferrer" });
  const close = make("button", "close", notice, { type: "button", textContent: "×", title: "閉じる", ariaLabel: "閉じる" });
  close.addEventListener("click", () => showNotice(""));
}

// Sticky elements are placed below the notice where the notice is sticky itself.
new ResizeObserver(() => {
  const isSticky = getComputedStyle(notice).position === "sticky";
  document.documentElement.style.setProperty("--notice-height", `${isSticky ? notice.offsetHeight : 0}px`);
}).observe(notice);

// Opens an address that the driver passed to the shell. Opens http and https addresses only, and only in
// the page in which the user has just clicked.
export function openWebPage(file) {
  if (!navigator.userActivation.isActive) return;
  const address = URL.canParse(file) ? new URL(file) : null;
  if (!["http:", "https:"].includes(address?.protocol)) return showNotice("ウェブのアドレスではないので開きません。");
  window.open(address, "_blank", "noopener,noreferrer");
  const isPlaceholder = /(^|\.)example$/.test(address.hostname);
  showNotice(isPlaceholder ? "新しいタブで開きました。このアドレスは仮のもので、実在しません。" : "新しいタブで開きました。", { link: address.href });
}
