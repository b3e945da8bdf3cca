// Texts as they are searched: accents and case do not count.

// Marks above and below letters, of Latin, Greek, Cyrillic, Hebrew and Arabic. Those of other scripts are
// part of how a syllable is written (the voiced kana, the vowels of India) and count.
const MARKS =
  // eslint-disable-next-line no-misleading-character-class -- each is looked for by itself
  /[\u0300-\u036F\u0591-\u05BD\u05BF\u05C1\u05C2\u05C4\u05C5\u05C7\u064B-\u065F\u0670\u1AB0-\u1AFF\u1DC0-\u1DFF\u20D0-\u20FF\uFE20-\uFE2F]/g;

// Letters that decompose into nothing, though people type others for them.
const OTHER_LETTERS = /[ßøłđðħæœþıŧŋ’‘“”]/g;

/** @type {Record<string, string>} */
// prettier-ignore
const TYPED = {
  "ß": "ss", "ø": "o", "ł": "l", "đ": "d", "ð": "d", "ħ": "h", "æ": "ae", "œ": "oe", "þ": "th", "ı": "i",
  "ŧ": "t", "ŋ": "n", "’": "'", "‘": "'", "“": '"', "”": '"',
};

// eslint-disable-next-line no-control-regex -- they are ASCII, too
const ASCII = /^[\x00-\x7F]*$/;

/** @param {string} text */
export function fold(text) {
  if (ASCII.test(text)) return text.toLowerCase();
  return text
    .normalize("NFKD")
    .replace(MARKS, "")
    .toLowerCase()
    .replace(OTHER_LETTERS, (letter) => TYPED[letter]);
}

/**
 * The words of what was typed, folded, each once.
 * @param {string} typed
 */
export function foldedWords(typed) {
  return [
    ...new Set(
      fold(typed)
        .split(/\s+/u)
        .filter((word) => word !== ""),
    ),
  ];
}
