// What is looked at, as the address has it behind its "#", so that it can be linked: songs?q=bach&sort=-plays

/** @typedef {{view: string, values: Map<string, string>}} Place */

/** @type {readonly string[]} */
export const VIEWS = ["overview", "albums", "songs"];

/** What the songs may be narrowed by, in the order in which it is told. */
export const FILTERS = [
  "playlist",
  "album",
  "artist",
  "genre",
  "decade",
  "year",
  "added",
  "rating",
  "plays",
  "without",
  "status",
];

/**
 * A view that is not known is the overview.
 * @param {string} hash with or without "#"
 * @returns {Place}
 */
export function placeOf(hash) {
  const text = hash.replace(/^#/, "");
  const mark = text.indexOf("?");
  const view = mark === -1 ? text : text.slice(0, mark);
  const values = new Map(mark === -1 ? [] : new URLSearchParams(text.slice(mark + 1)));
  return {view: VIEWS.includes(view) ? view : "overview", values};
}

/**
 * @param {Place} place
 * @returns {string} with "#"
 */
export function addressOf(place) {
  const values = new URLSearchParams([...place.values].filter(([, value]) => value !== ""));
  const text = values.toString();
  return `#${place.view}${text === "" ? "" : `?${text}`}`;
}

/**
 * The same place with another value of one name; an empty one takes it away.
 * @param {Place} place @param {string} name @param {string} value
 * @returns {Place}
 */
export function placeWith(place, name, value) {
  const values = new Map(place.values);
  if (value === "") values.delete(name);
  else values.set(name, value);
  return {view: place.view, values};
}
