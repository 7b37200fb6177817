// Helpers that create elements.
import { meaningOf } from "./gloss.js";

// CSS lengths of n dialog pixels, horizontal and vertical.
export const cssX = (n) => `calc(${n} * var(--px))`;
export const cssY = (n) => `calc(${n} * var(--py))`;

export function make(tag, className, parent, properties = {}) {
  const element = Object.assign(document.createElement(tag), properties);
  if (className) element.className = className;
  parent?.append(element);
  return element;
}

// Shows a text and, while the English is switched on, its meaning; leading blanks are removed then, so that
// both start at the left. With hasPrefix the letter after a single "&" is underlined as the access key and
// "&&" is an ampersand; without it "&" is an ordinary character.
export function setLabel(element, text, hasPrefix = true) {
  const meaning = meaningOf(text);
  element.replaceChildren();
  const own = meaning ? make("span", "own", element) : element;
  if (meaning) text = text.trimStart();
  for (const piece of hasPrefix ? text.match(/&&|&[^&]|[^&]+/gs) ?? [] : [text]) {
    if (hasPrefix && piece === "&&") own.append("&");
    else if (hasPrefix && piece.length === 2 && piece[0] === "&") make("u", "", own, { textContent: piece[1] });
    else own.append(piece);
  }
  if (meaning) make("span", "gloss", element, { textContent: meaning, lang: "en" });
}
