'use strict';

const { LibraryError } = require('./errors.js');
const { emptySongInfo } = require('./functions.js');
const { readProperties } = require('./properties.js');
const { Sequence } = require('./sequence.js');
const { Session, callBack } = require('./session.js');
const { Song, songsOf, textIn } = require('./songs.js');

/**
 * @typedef {{name?: string, artist?: string, album?: string}} Terms
 * @typedef {ReturnType<typeof readProperties>} Properties
 */

const groups = [0, 1, 2];

// Node before 18.18 has no such symbol; programs that dispose by hand get by with the name.
/** @type {typeof Symbol.dispose} */
const dispose = Symbol.dispose ?? Symbol.for('Symbol.dispose');

/** A playlist of one of the three groups: 0 the library's own, 1 Genius, 2 all others. */
class Playlist {
  #session;
  #group;
  #index;
  #handle;
  /** @type {Properties | null} */
  #properties = null;

  /**
   * @param {Session} session
   * @param {number} group
   * @param {number} index
   */
  constructor(session, group, index) {
    this.#session = session;
    this.#group = group;
    this.#index = index;
    /** @type {bigint} */
    this.#handle = session.functions.OpenPlaylist(group, index);
  }

  get group() { return this.#group; }

  get name() {
    const { functions } = this.#session;
    const size = functions.GetPlaylistName(this.#group, this.#index, null, 0);
    if (size === 0) return null;
    const buffer = Buffer.alloc(size);
    functions.GetPlaylistName(this.#group, this.#index, buffer, size);
    return textIn(buffer);
  }

  get kind() { return Number(this.#session.functions.GetPlaylistKind(this.#handle)); }
  get songs() { return songsOf(this.#session, this.#handle); }

  get properties() {
    return (this.#properties ??= readProperties((visitor) =>
      this.#session.functions.VisitPlaylistProperties(this.#handle, visitor, null)));
  }
}

/** @param {Session} session */
function playlistsOf(session) {
  const counts = () => groups.map((group) => Number(session.functions.GetPlaylistCount(group)));
  return new Sequence(() => counts().reduce((sum, count) => sum + count, 0), (index) => {
    const sizes = counts();
    let group = 0;
    for (; index >= sizes[group]; ++group) index -= sizes[group];
    return new Playlist(session, group, index);
  });
}

/**
 * @param {string | Terms} wanted
 * @returns {Record<string, Buffer | null>}
 */
function termsOf(wanted) {
  const terms = typeof wanted === 'string' ? { name: wanted, artist: wanted, album: wanted } : wanted;
  const given = [terms.name, terms.artist, terms.album].filter((term) => term !== undefined);
  if (given.length === 0 || given.some((term) => typeof term !== 'string')) {
    throw new TypeError('give a text to search for, or a name, an artist or an album');
  }
  if (given.some((term) => term.includes('\0'))) throw new TypeError('a term holds no NUL character');
  /** @param {string | undefined} term */
  const bytes = (term) => (term === undefined ? null : Buffer.from(`${term}\0`));
  return { name: bytes(terms.name), artist: bytes(terms.artist), album: bytes(terms.album) };
}

/** An open library. One at a time can be open in a process. */
class Library {
  #session;
  /** @type {bigint} */
  #all;
  /** @type {Properties | null} */
  #properties = null;

  /** @param {{home?: string, file?: string}} [place] */
  constructor({ home, file } = {}) {
    if (home !== undefined && file !== undefined) {
      throw new TypeError('a library has a home or a file, not both');
    }
    this.#session = new Session(home, file);
    this.#all = this.#session.functions.OpenAllSongs();
  }

  get isClosed() { return this.#session.isClosed; }
  get playlists() { return playlistsOf(this.#session); }
  get songs() { return songsOf(this.#session, this.#all); }

  get properties() {
    return (this.#properties ??= readProperties((visitor) =>
      this.#session.functions.VisitLibraryProperties(visitor, null)));
  }

  /** @param {string | Terms} wanted */
  search(wanted) {
    const terms = termsOf(wanted);
    this.#session.functions; // A closed library refuses at once.
    return this.#matches(terms);
  }

  /** @param {string} path */
  appendRingtone(path) {
    if (this.#session.functions.AppendRingtone(path) !== 0) {
      throw new LibraryError(`${path}: it could not be added; standard error says why`);
    }
  }

  close() {
    this.#session.close();
  }

  [dispose]() {
    this.close();
  }

  /** @param {Record<string, Buffer | null>} terms */
  *#matches(terms) {
    for (let had = 0; ;) {
      const room = 3 * had || 1;
      const found = this.#find(terms, had, room);
      for (const index of found) yield new Song(this.#session, this.#all, index);
      if (found.length < room) return;
      had += room;
    }
  }

  /**
   * The positions of up to `room` matches behind those that are skipped; with the last the search ends.
   * @param {Record<string, Buffer | null>} terms
   * @param {number} skipped
   * @param {number} room
   */
  #find(terms, skipped, room) {
    /** @type {number[]} */
    const found = [];
    /** @param {number} index */
    const match = (index) => {
      if (skipped-- > 0) return 1;
      found.push(index);
      return found.length < room ? 1 : 0;
    };
    const info = { ...emptySongInfo(), ...terms };
    callBack((callback) => this.#session.functions.FindSongs(info, callback, null), match);
    return found;
  }
}

module.exports = { Library, Playlist };
