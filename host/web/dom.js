// What every part of the page needs to make elements.
import { meaningOf } from "./gloss.js";

// Lengths in the desk's pixels, across and down.
export const across = (n) => `calc(${n} * var(--px))`;
export const down = (n) => `calc(${n} * var(--py))`;

export function make(tag, className, parent, properties = {}) {
  const element = Object.assign(document.createElement(tag), properties);
  if (className) element.className = className;
  parent?.append(element);
  return element;
}

// A text with its English meaning beside it, or under it where there is no room, while that is
// switched on; both begin at the left then, without the blanks that align a text to the right. "(&X)": the
// letter after a single "&" is the access key, "&&" is an ampersand; without prefixes "&" is itself.
export function setLabel(element, text, prefix = true) {
  const meaning = meaningOf(text);
  element.replaceChildren();
  const own = meaning ? make("span", "own", element) : element;
  if (meaning) text = text.trimStart();
  for (const piece of prefix ? text.match(/&&|&[^&]|[^&]+/gs) ?? [] : [text]) {
    if (prefix && piece === "&&") own.append("&");
    else if (prefix && piece.length === 2 && piece[0] === "&") make("u", "", own, { textContent: piece[1] });
    else own.append(piece);
  }
  if (meaning) make("span", "gloss", element, { textContent: meaning, lang: "en" });
}
