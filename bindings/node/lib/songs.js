'use strict';

const { readPictures } = require('./artwork.js');
const { emptySongInfo } = require('./functions.js');
const { readProperties } = require('./properties.js');
const { Sequence } = require('./sequence.js');

/**
 * @typedef {import('./session.js').Session} Session
 * @typedef {{name: string | null, artist: string | null, album: string | null, genre: string | null,
 *   location: string | null, totalTime: number, playCount: number, trackNumber: number, isMovie: boolean}} SongFields
 */

/** @param {Buffer | null} buffer whose text ends with a zero byte */
function textIn(buffer) {
  return buffer === null ? null : buffer.toString('utf8', 0, buffer.indexOf(0));
}

/**
 * @param {Session} session
 * @param {bigint} playlist
 * @param {number} index
 * @returns {SongFields}
 */
function readFields(session, playlist, index) {
  const { functions } = session;
  const sizes = emptySongInfo();
  functions.GetSongInfo(playlist, index, sizes);
  /** @param {number} size */
  const room = (size) => (size > 0 ? Buffer.alloc(size) : null);
  const texts = {
    name: room(sizes.nameSize),
    artist: room(sizes.artistSize),
    album: room(sizes.albumSize),
    genre: room(sizes.genreSize),
    location: room(sizes.locationSize),
  };
  functions.GetSongInfo(playlist, index, { ...sizes, ...texts });
  const location = textIn(texts.location);
  return Object.freeze({
    name: textIn(texts.name),
    artist: textIn(texts.artist),
    album: textIn(texts.album),
    genre: textIn(texts.genre),
    location: location === null ? null : session.userPath(location),
    totalTime: sizes.totalTime,
    playCount: sizes.playCount,
    trackNumber: sizes.trackNumber,
    isMovie: sizes.movie === 1,
  });
}

/** The song at a position of a playlist. Its fields are read when the first of them is asked for. */
class Song {
  #session;
  #playlist;
  #index;
  /** @type {SongFields | null} */
  #fields = null;
  /** @type {ReturnType<typeof readProperties> | null} */
  #properties = null;

  /**
   * @param {Session} session
   * @param {bigint} playlist
   * @param {number} index
   */
  constructor(session, playlist, index) {
    this.#session = session;
    this.#playlist = playlist;
    this.#index = index;
  }

  get fields() {
    return (this.#fields ??= readFields(this.#session, this.#playlist, this.#index));
  }

  get index() { return this.#index; }
  get name() { return this.fields.name; }
  get artist() { return this.fields.artist; }
  get album() { return this.fields.album; }
  get genre() { return this.fields.genre; }
  get location() { return this.fields.location; }
  get totalTime() { return this.fields.totalTime; }
  get playCount() { return this.fields.playCount; }
  get trackNumber() { return this.fields.trackNumber; }
  get isMovie() { return this.fields.isMovie; }

  get properties() {
    return (this.#properties ??= readProperties((visitor) =>
      this.#session.functions.VisitSongProperties(this.#playlist, this.#index, visitor, null)));
  }

  artwork() {
    const { functions } = this.#session;
    return readPictures(functions, functions.OpenArtworkAny(this.#playlist, this.#index));
  }
}

/**
 * The songs of a playlist, in its order.
 * @param {Session} session
 * @param {bigint} playlist
 */
function songsOf(session, playlist) {
  return new Sequence(() => Number(session.functions.GetSongCount(playlist)),
    (index) => new Song(session, playlist, index));
}

module.exports = { Song, songsOf, textIn };
