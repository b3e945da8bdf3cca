// The songs that a place in the address asks for.

/**
 * @typedef {import("./payload.js").Library} Library
 * @typedef {Map<string, string>} Values
 * @typedef {(song: number) => boolean} Test
 */

const DAY = 86400000;

/**
 * The number of a playlist by its ID, or as its place from 0 where there is none; -1 for none.
 * @param {Library} library @param {string} value
 */
export function playlistOf(library, value) {
  const byId = library.playlists.findIndex((list) => list.id !== "" && list.id === value);
  if (byId !== -1 || !/^\d{1,6}$/.test(value)) return byId;
  return Number(value) < library.playlists.length ? Number(value) : -1;
}

/**
 * How a playlist is called in an address.
 * @param {Library} library @param {number} number
 */
export function playlistName(library, number) {
  return library.playlists[number].id || String(number);
}

/**
 * The number of an album from 1; 0 for none.
 * @param {Library} library @param {Values} values
 */
export function albumOf(library, values) {
  const {titles, artists} = library.albums;
  const [title, artist] = [values.get("album"), values.get("by")];
  return titles.findIndex((name, i) => name === title && (artist === undefined || artists[i] === artist)) + 1;
}

/** @param {Library} library @param {string} field @param {string} value @returns {Test} */
function textIs(library, field, value) {
  const column = library.byField.get(field);
  const number = column ? column.texts.indexOf(value) : -1;
  return (song) => column !== undefined && number > 0 && column.numbers[song] === number;
}

/**
 * @param {Library} library @param {string} field
 * @param {(number: number) => boolean} test of a number as it is; 0 where there is none
 * @returns {Test}
 */
function numberIs(library, field, test) {
  const numbers = library.byField.get(field)?.numbers;
  return (song) => test(numbers ? Math.max(numbers[song] - 1, 0) : 0);
}

/** The first day of a year or of a month ("2013", "2013-05"), and the first one behind it. @param {string} value */
function days(value) {
  const [year, month] = value.split("-").map(Number);
  const from = Date.UTC(year, month ? month - 1 : 0, 1);
  const to = month ? Date.UTC(year, month, 1) : Date.UTC(year + 1, 0, 1);
  return [from / DAY, to / DAY];
}

/** @type {Record<string, (library: Library, value: string, values: Values) => Test>} */
const TESTS = {
  album: (library, _, values) => {
    const album = albumOf(library, values);
    return (song) => album !== 0 && library.albums.songs[song] === album;
  },
  artist: (library, value) => textIs(library, "artist", value),
  genre: (library, value) => textIs(library, "genre", value),
  status: (library, value) => textIs(library, "status", value),
  decade: (library, value) => numberIs(library, "year", (year) => year >= Number(value) && year < Number(value) + 10),
  year: (library, value) => numberIs(library, "year", (year) => year === Number(value)),
  added: (library, value) => {
    const [from, to] = days(value);
    return numberIs(library, "added", (day) => day >= from && day < to);
  },
  rating: (library, value) =>
    numberIs(library, "rating", (rating) => Math.floor(Math.min(rating, 100) / 20) === Number(value)),
  plays: (library, value) => {
    const [least, most] = value.split("-");
    const end = most === undefined ? Number(least) : most === "" ? Infinity : Number(most);
    return numberIs(library, "plays", (plays) => plays >= Number(least) && plays <= end);
  },
  without: (library, value) => {
    const numbers = library.byField.get(value)?.numbers;
    return (song) => numbers === undefined || numbers[song] === 0;
  },
};

/**
 * The songs of the place in their order: that of its playlist, or that of `shelved`.
 * @param {Library} library @param {Values} values @param {Int32Array} shelved
 * @param {Uint8Array|null} found by a search; null: all
 */
export function songsOf(library, values, shelved, found) {
  let songs = shelved;
  const wanted = values.get("playlist");
  if (wanted !== undefined) {
    const number = playlistOf(library, wanted);
    songs = number === -1 ? new Int32Array() : library.playlists[number].songs;
  }
  const tests = [...values]
    .filter(([name]) => Object.hasOwn(TESTS, name))
    .map(([name, value]) => TESTS[name](library, value, values));
  for (const test of tests) songs = songs.filter(test);
  return found ? songs.filter((song) => found[song] === 1) : songs;
}
