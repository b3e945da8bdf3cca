// Values as people read them.

/** @typedef {import("./payload.js").Column} Column */

/** The words of the interface. @type {Record<string, string>} */
let words = {};

// Making them takes longer than using them.
let numbers = new Intl.NumberFormat("en");
let plurals = new Intl.PluralRules("en");

/** @param {Record<string, string>} table */
export function useWords(table) {
  words = table;
  numbers = new Intl.NumberFormat(words.language);
  plurals = new Intl.PluralRules(words.language);
}

/**
 * A word of the interface with values put in; a key that is not there is told itself.
 * @param {string} key @param {Record<string, string|number>} values
 */
export function word(key, values = {}) {
  const text = words[key] ?? key;
  return text.replace(/\{(\w+)\}/g, (place, name) => String(values[name] ?? place));
}

/** @param {number} number */
export function grouped(number) {
  return numbers.format(number);
}

/** @param {string} key @param {number} number */
export function counted(key, number) {
  const own = `${key}.${plurals.select(number)}`;
  return word(own in words ? own : `${key}.other`, {n: grouped(number)});
}

/** "4:05" or "1:02:03" @param {number} seconds */
export function clock(seconds) {
  const two = (/** @type {number} */ part) => String(part).padStart(2, "0");
  const [hours, minutes] = [Math.floor(seconds / 3600), Math.floor(seconds / 60) % 60];
  return hours === 0 ? `${minutes}:${two(seconds % 60)}` : `${hours}:${two(minutes)}:${two(seconds % 60)}`;
}

/** @param {number} day since the beginning of 1970 */
export function date(day) {
  return new Date(day * 86400000).toISOString().slice(0, 10);
}

/** @param {number} rating from 0 to 100 */
export function stars(rating) {
  const halves = Math.round(Math.min(rating, 100) / 10);
  return "★".repeat(halves >> 1) + (halves % 2 ? "½" : "");
}

/** @param {number} kilobytes */
export function size(kilobytes) {
  if (kilobytes < 1024) return `${kilobytes} KB`;
  const megabytes = kilobytes / 1024;
  return megabytes < 1024 ? `${megabytes.toFixed(1)} MB` : `${(megabytes / 1024).toFixed(2)} GB`;
}

/**
 * What a song has in a column; empty where it has nothing.
 * @param {Column} column @param {number} song
 */
export function shown(column, song) {
  const stored = column.numbers[song];
  if (column.kind === "text") return column.texts[stored];
  if (stored === 0) return "";
  const number = stored - 1;
  switch (column.kind) {
    case "seconds":
      return number > 0 ? clock(number) : "";
    case "day":
      return date(number);
    case "rating":
      return stars(number);
    case "kilobytes":
      return size(number);
    case "flag":
      return word("yes");
    default:
      return column.field === "plays" || column.field === "skips" ? grouped(number) : String(number);
  }
}

/**
 * The beginning of a text of any length; "…" stands for its rest. No character is cut.
 * @param {string} text @param {number} most
 */
export function start(text, most) {
  if (text.length <= most) return text;
  return text.slice(0, most).replace(/[\uD800-\uDBFF]$/, "") + "…";
}

/** What stands for an album without a cover: its first letter or digit. @param {string} title */
export function initial(title) {
  const first = /[\p{L}\p{N}]/u.exec(title.slice(0, 200));
  return first ? first[0].toUpperCase().slice(0, 2) : "";
}

/** One of eight, the same as the host gives a title: the sum of its bytes. @param {string} title */
export function hue(title) {
  return new TextEncoder().encode(title).reduce((sum, byte) => sum + byte, 0) % 8;
}
