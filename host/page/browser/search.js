// Which songs hold words. Each text is folded once, when the first word comes; then a word is looked for in
// all texts of a column at a time.
import {fold, foldedWords} from "./fold.js";

/** @typedef {import("./payload.js").Library} Library @typedef {import("./payload.js").Column} Column */

const SEARCHED = ["name", "artist", "albumArtist", "album", "composer", "genre", "grouping"];

/** The texts of a column in one string, and where each begins. */
class FoldedTexts {
  /** @param {Column} column */
  constructor(column) {
    this.numbers = column.numbers;
    this.starts = new Int32Array(column.texts.length + 1);
    const folded = [];
    let at = 0;
    for (let i = 0; i < column.texts.length; ++i) {
      this.starts[i] = at;
      const text = fold(column.texts[i]);
      folded.push(text);
      at += text.length + 1;
    }
    this.starts[column.texts.length] = at;
    this.all = folded.join("\n") + "\n";
  }

  /**
   * For each text 1 where it holds the word.
   * @param {string} word without a line's end
   */
  textsWith(word) {
    const found = new Uint8Array(this.starts.length);
    let text = 0;
    let at = this.all.indexOf(word);
    while (at !== -1) {
      while (this.starts[text + 1] <= at) ++text;
      found[text] = 1;
      at = this.all.indexOf(word, this.starts[text + 1]);
    }
    return found;
  }
}

export class Search {
  /** @param {Library} library */
  constructor(library) {
    this.library = library;
    /** @type {FoldedTexts[]} */
    this.columns = [];
    this.isReady = false;
  }

  /** Folds all texts, which otherwise the first search does. */
  prepare() {
    if (this.isReady) return;
    this.isReady = true;
    for (const field of SEARCHED) {
      const column = this.library.byField.get(field);
      if (column) this.columns.push(new FoldedTexts(column));
    }
  }

  /**
   * For each song 1 where every word stands in it somewhere, a year for itself; null when nothing was typed.
   * @param {string} typed
   */
  find(typed) {
    const words = foldedWords(typed);
    if (words.length === 0) return null;
    this.prepare();
    const found = new Uint8Array(this.library.count).fill(1);
    for (const word of words) this.narrow(found, word);
    return found;
  }

  /** @param {Uint8Array} found @param {string} word */
  narrow(found, word) {
    const held = new Uint8Array(found.length);
    for (const column of this.columns) mark(held, column.numbers, column.textsWith(word));
    const years = this.library.byField.get("year")?.numbers;
    if (years && /^\d{4}$/.test(word)) markEqual(held, years, Number(word) + 1);
    for (let song = 0; song < found.length; ++song) found[song] &= held[song];
  }
}

/** @param {Uint8Array} held @param {ArrayLike<number>} numbers @param {Uint8Array} texts */
function mark(held, numbers, texts) {
  for (let song = 0; song < held.length; ++song) held[song] |= texts[numbers[song]];
}

/** @param {Uint8Array} held @param {ArrayLike<number>} numbers @param {number} wanted */
function markEqual(held, numbers, wanted) {
  for (let song = 0; song < held.length; ++song) {
    if (numbers[song] === wanted) held[song] = 1;
  }
}
