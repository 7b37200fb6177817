// What the page itself has to say: a line at the bottom, with its English when that is switched on.
import { make } from "./dom.js";
import { meaningOf } from "./gloss.js";

const notice = document.getElementById("notice");
let fading = 0;

// Shows a text (none: nothing), and a link when one belongs to it; for some seconds, or until the
// next.
export function say(text, { link, seconds } = {}) {
  clearTimeout(fading);
  notice.replaceChildren();
  notice.hidden = !text;
  if (!text) return;
  make("span", "", notice, { textContent: text });
  const meaning = meaningOf(text);
  if (meaning) make("span", "gloss", notice, { textContent: meaning, lang: "en" });
  if (link) make("a", "", notice, { href: link, textContent: link, target: "_blank", rel: "noopener noreferrer" });
  if (seconds) fading = setTimeout(say, seconds * 1000, "");
}

// Opens what the sheet opens in a browser. Only pages of the web, and only for the person who has
// just clicked for it.
export function openPage(file) {
  if (!navigator.userActivation.isActive) return;
  const address = URL.canParse(file) ? new URL(file) : null;
  if (!["http:", "https:"].includes(address?.protocol)) return say("ウェブのアドレスではないので開きません。", { seconds: 10 });
  window.open(address, "_blank", "noopener,noreferrer");
  const placeholder = /(^|\.)example$/.test(address.hostname);
  say(placeholder ? "新しいタブで開きました。このアドレスは仮のもので、実在しません。" : "新しいタブで開きました。", { link: address.href, seconds: 15 });
}
