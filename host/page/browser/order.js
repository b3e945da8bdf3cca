// Songs in the order of a column.
import { fold } from "./fold.js";

/** @typedef {import("./payload.js").Library} Library @typedef {import("./payload.js").Column} Column */

// So many texts are compared as a reader's language has it; more would take too long.
const MOST_COLLATED = 20000;

export class Order {
  /** @param {Library} library @param {string} language */
  constructor(library, language) {
    this.library = library;
    this.collator = new Intl.Collator(language, {numeric: true, sensitivity: "base"});
    /** @type {Map<string, Int32Array>} */
    this.ranks = new Map();
  }

  /**
   * For each text of a column its place in the alphabet; equal ones share it. The empty text has 0.
   * @param {Column} column
   */
  ranksOf(column) {
    const known = this.ranks.get(column.field);
    if (known) return known;
    const keys = column.texts.map(fold);
    const order = Int32Array.from(keys, (_, i) => i).subarray(1);
    const {compare} = this.collator;
    if (order.length <= MOST_COLLATED) {
      order.sort((a, b) => compare(keys[a], keys[b]) || a - b);
    } else {
      order.sort((a, b) => (keys[a] < keys[b] ? -1 : keys[a] > keys[b] ? 1 : a - b));
    }
    const ranks = new Int32Array(keys.length);
    for (let i = 0, rank = 0; i < order.length; ++i) {
      if (i === 0 || keys[order[i]] !== keys[order[i - 1]]) ++rank;
      ranks[order[i]] = rank;
    }
    this.ranks.set(column.field, ranks);
    return ranks;
  }

  /**
   * What the songs are compared by; 0 for a song that does not have it.
   * @param {string} field
   * @returns {ArrayLike<number>|null}
   */
  keysOf(field) {
    const column = this.library.byField.get(field);
    if (!column) return null;
    if (column.kind !== "text") return column.numbers;
    const ranks = this.ranksOf(column);
    return Int32Array.from(column.numbers, (text) => ranks[text]);
  }

  /**
   * The songs sorted by fields, the first one first; those that do not have a field stand behind the others,
   * equal ones keep their order.
   * @param {Int32Array} songs which is left as it is
   * @param {string[]} fields
   * @param {boolean} isDown the other way round
   */
  sorted(songs, fields, isDown = false) {
    const keys = fields.map((field) => this.keysOf(field)).filter((key) => key !== null);
    const sorted = songs.slice();
    const sign = isDown ? -1 : 1;
    const place = new Int32Array(this.library.count);
    songs.forEach((song, i) => { place[song] = i; });
    sorted.sort((a, b) => {
      for (const key of keys) {
        const [left, right] = [key[a], key[b]];
        if (left === right) continue;
        if (left === 0) return 1;
        if (right === 0) return -1;
        return sign * (left - right);
      }
      return place[a] - place[b];
    });
    return sorted;
  }

  /** All songs as one would shelve them: by artist, album, disc and track. */
  shelved() {
    const all = Int32Array.from({length: this.library.count}, (_, i) => i);
    const hasAlbumArtist = this.library.byField.has("albumArtist");
    return this.sorted(all, [hasAlbumArtist ? "albumArtist" : "artist", "album", "disc", "track"]);
  }
}
