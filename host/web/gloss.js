// The English meanings of the sheet's Japanese texts, shown beside them while the switch is on.

let entries = null; // pattern and meaning, the longest first; null: switched off

const JOINED = 8; // messages are joined from texts longer than this

// Texts are compared without their access keys, blanks and widths of letters.
export const plain = (text) => text.normalize("NFKC").replace(/\(&.\)|&(?=[^&])|[\s:]/g, "");

// "%s" and "%d" stand for any text, which is given its own meaning if it has one.
function entryOf([text, meaning]) {
  const source = plain(text).split(/%[sd]/).map((piece) => piece.replace(/[.*+?^${}()|[\]\\]/g, "\\$&"));
  return { pattern: new RegExp(`^${source.join("(.*?)")}`), whole: new RegExp(`^${source.join("(.*)")}$`), length: source.join("").length, meaning };
}

export async function switchGloss(on) {
  if (!on) entries = null;
  else useMeanings(await (await fetch("gloss.json")).json());
}

export function useMeanings(table) {
  entries = Object.entries(table).map(entryOf).sort((a, b) => b.length - a.length);
}

export const glossIsOn = () => entries !== null;

// Finds the piece of a text whose plain form is given: a name or a path with its blanks.
function restored(text, part) {
  for (let start = 0; start < text.length; ++start) {
    for (let end = start + 1; end <= text.length && plain(text.slice(start, end)).length <= part.length; ++end) {
      if (plain(text.slice(start, end)) === part) return text.slice(start, end).trim();
    }
  }
  return part;
}

// The meaning of a text, or of the texts that it is joined from; empty when there is none. A name in it
// reads as in the source, the whole text.
export function meaningOf(text, source = text) {
  let rest = plain(text ?? "");
  if (!entries || !rest) return "";
  const fill = (meaning, found) => found.slice(1).reduce((filled, part, i) => filled.replace(`%${i + 1}`, () => meaningOf(part, source) || restored(source, part)), meaning);
  for (const { whole, meaning } of entries) {
    const found = rest.match(whole);
    if (found) return fill(meaning, found);
  }
  const meanings = [];
  while (rest) {
    const entry = entries.find(({ pattern, length }) => length > JOINED && pattern.test(rest));
    if (!entry) return "";
    const found = rest.match(entry.pattern);
    meanings.push(fill(entry.meaning, found));
    rest = rest.slice(found[0].length);
  }
  return meanings.join("\n");
}
