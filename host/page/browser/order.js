// Songs in the order of a column.
import {fold} from "./fold.js";

/** @typedef {import("./payload.js").Library} Library @typedef {import("./payload.js").Column} Column */

// So many texts are compared as a reader's language has it; more would take too long.
const MOST_COLLATED = 20000;

/**
 * For each number its place among all numbers, from 1; 0 for 0, which is none.
 * @param {Float64Array|Int32Array} numbers
 */
function placesOfNumbers(numbers) {
  const sorted = numbers.slice().sort();
  const places = new Map([[0, 0]]);
  for (const number of sorted) {
    if (!places.has(number)) places.set(number, places.size);
  }
  const of = new Int32Array(numbers.length);
  for (let i = 0; i < of.length; ++i) of[i] = places.get(numbers[i]) ?? 0;
  return of;
}

/**
 * The songs by their places, those without one behind the others; equal ones keep their order.
 * @param {Int32Array} songs @param {Int32Array} places @param {boolean} isDown
 */
function countingSorted(songs, places, isDown) {
  let highest = 0;
  for (const song of songs) highest = Math.max(highest, places[song]);
  const rank = (/** @type {number} */ place) => (place === 0 ? highest : isDown ? highest - place : place - 1);
  const starts = new Int32Array(highest + 2);
  for (const song of songs) ++starts[rank(places[song]) + 1];
  for (let i = 1; i < starts.length; ++i) starts[i] += starts[i - 1];
  const sorted = new Int32Array(songs.length);
  for (const song of songs) sorted[starts[rank(places[song])]++] = song;
  return sorted;
}

export class Order {
  /** @param {Library} library @param {string} language */
  constructor(library, language) {
    this.library = library;
    this.collator = new Intl.Collator(language, {numeric: true, sensitivity: "base"});
    /** @type {Map<string, Int32Array>} */
    this.places = new Map();
  }

  /**
   * For each text of a column its place in the alphabet; equal ones share it. The empty text has 0.
   * @param {Column} column
   */
  ranksOf(column) {
    const keys = column.texts.map(fold);
    const order = new Int32Array(keys.length - 1);
    for (let i = 0; i < order.length; ++i) order[i] = i + 1;
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
    return ranks;
  }

  /**
   * For each song its place among the values of a field, from 1; 0 for a song that does not have it.
   * @param {string} field
   * @returns {Int32Array|null}
   */
  placesOf(field) {
    const known = this.places.get(field);
    if (known) return known;
    const column = this.library.byField.get(field);
    if (!column) return null;
    const places = column.kind === "text" ? this.ranksOf(column) : placesOfNumbers(column.numbers);
    if (column.kind !== "text") return this.keep(field, places);
    const ofSongs = new Int32Array(this.library.count);
    for (let song = 0; song < ofSongs.length; ++song) ofSongs[song] = places[column.numbers[song]];
    return this.keep(field, ofSongs);
  }

  /** @param {string} field @param {Int32Array} places */
  keep(field, places) {
    this.places.set(field, places);
    return places;
  }

  /**
   * The songs sorted by fields, the first one first; those that do not have a field stand behind the others,
   * equal ones keep their order.
   * @param {Int32Array} songs which is left as it is
   * @param {string[]} fields
   * @param {boolean} isDown the other way round
   */
  sorted(songs, fields, isDown = false) {
    let sorted = songs.slice();
    for (const field of [...fields].reverse()) {
      const places = this.placesOf(field);
      if (places) sorted = countingSorted(sorted, places, isDown);
    }
    return sorted;
  }

  /** All songs as one would shelve them: by artist, album, disc and track. */
  shelved() {
    const all = new Int32Array(this.library.count);
    for (let song = 0; song < all.length; ++song) all[song] = song;
    const hasAlbumArtist = this.library.byField.has("albumArtist");
    return this.sorted(all, [hasAlbumArtist ? "albumArtist" : "artist", "album", "disc", "track"]);
  }
}
