// The English meanings of the sheet's Japanese texts, shown beside them while the switch is on.

let entries = null; // patterns and meanings, longest first; null while the English is off

const MIN_JOINED_LENGTH = 9; // messages are joined from texts of at least this length

// Removes access keys, blanks, colons and the difference between full-width and half-width letters, which the
// comparison of texts ignores.
export const normalizeText = (text) => text.normalize("NFKC").replace(/\(&.\)|&(?=[^&])|[\s:]/g, "");

// "%s" and "%d" match any text, which is translated as well when it has an entry.
function entryOf([text, meaning]) {
  const source = normalizeText(text).split(/%[sd]/).map((piece) => piece.replace(/[.*+?^${}()|[\]\\]/g, "\\$&"));
  return { pattern: new RegExp(`^${source.join("(.*?)")}`), whole: new RegExp(`^${source.join("(.*)")}$`), length: source.join("").length, meaning };
}

export async function switchGloss(on) {
  if (!on) entries = null;
  else setMeanings(await (await fetch("gloss.json")).json());
}

export function setMeanings(table) {
  entries = Object.entries(table).map(entryOf).sort((a, b) => b.length - a.length);
}

export const isGlossOn = () => entries !== null;

// Returns the piece of a text whose normalized form is part, with its blanks: a name or a path.
function originalPiece(text, part) {
  for (let start = 0; start < text.length; ++start) {
    for (let end = start + 1; end <= text.length && normalizeText(text.slice(start, end)).length <= part.length; ++end) {
      if (normalizeText(text.slice(start, end)) === part) return text.slice(start, end).trim();
    }
  }
  return part;
}

// Returns the meaning of a text, or of the texts that it is joined from; empty when there is none. source: the
// whole text, from which inserted names are copied.
export function meaningOf(text, source = text) {
  let rest = normalizeText(text ?? "");
  if (!entries || !rest) return "";
  const insertArguments = (meaning, match) =>
    match.slice(1).reduce((filled, part, i) => filled.replace(`%${i + 1}`, () => meaningOf(part, source) || originalPiece(source, part)), meaning);
  for (const { whole, meaning } of entries) {
    const match = rest.match(whole);
    if (match) return insertArguments(meaning, match);
  }
  const meanings = [];
  while (rest) {
    const entry = entries.find(({ pattern, length }) => length >= MIN_JOINED_LENGTH && pattern.test(rest));
    if (!entry) return "";
    const match = rest.match(entry.pattern);
    meanings.push(insertArguments(entry.meaning, match));
    rest = rest.slice(match[0].length);
  }
  return meanings.join("\n");
}
