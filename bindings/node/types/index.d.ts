// An iTunes library, read through libTavrel: playlists, songs, covers, and every property of each.

/** A property as the file gives it. null: it has no text (data, arrays, dictionaries, elements without content). An
 * integer that a number cannot hold exactly is a bigint. Numbers and dates that are none stay texts. */
export type PropertyValue = string | number | bigint | boolean | Date | null;

/** In the file's order; of equal keys the first counts. */
export type Properties = ReadonlyMap<string, PropertyValue>;

/** A song's fields, free of the library. null: the song has no such text. */
export interface SongFields {
  readonly name: string | null;
  readonly artist: string | null;
  readonly album: string | null;
  readonly genre: string | null;
  /** The path of its file, which need not be there. */
  readonly location: string | null;
  /** In milliseconds. */
  readonly totalTime: number;
  readonly playCount: number;
  /** The position on its disc, from 1; 0 when the file has none. */
  readonly trackNumber: number;
  readonly isMovie: boolean;
}

export interface Picture {
  /** "png", "jpeg": data is such a file. "argb", "bgra": raw pixels of four bytes in that order, in rows from the
   * top. */
  readonly format: 'png' | 'jpeg' | 'argb' | 'bgra';
  /** In pixels, as the cache file states it. */
  readonly width: number;
  readonly height: number;
  readonly data: Uint8Array;
}

/** A sequence whose length and items are asked for when they are needed, and not kept. */
export interface Sequence<T> extends Iterable<T> {
  readonly length: number;
  /** The item at the index; below 0 it counts from the end. */
  at(index: number): T | undefined;
}

/** The song at a position of a playlist. Its fields are read when the first of them is asked for. */
export interface Song extends SongFields {
  /** All of its fields, to keep when the library is closed. */
  readonly fields: SongFields;
  /** The position in the playlist by which this song was found. */
  readonly index: number;
  /** Every property that the file has of it: "Rating", "Composer", "Persistent ID", ... */
  readonly properties: Properties;
  /** Its pictures in the artwork cache, read now; none when it has no cover there. */
  artwork(): Picture[];
}

/** A playlist of one of the three groups. */
export interface Playlist {
  /** 0 the library's own, 1 Genius, 2 all others. */
  readonly group: number;
  readonly name: string | null;
  /** The file's "Distinguished Kind": 4 music, 2 films, 26 Genius, ...; 0 for an ordinary playlist. */
  readonly kind: number;
  readonly songs: Sequence<Song>;
  readonly properties: Properties;
}

export interface Terms {
  name?: string;
  artist?: string;
  album?: string;
}

/** An open library. One at a time can be open in a process, in whichever of its threads.
 *
 * Playlists, songs and properties belong to it: what was not read before it is closed throws ClosedError then. */
export class Library {
  /**
   * @param place home: the folder below which Music/iTunes/iTunes Music Library.xml lies; the user's own if neither is
   * given. file: a library file under any name; covers are looked for in the folder "Album Artwork" beside it.
   *
   * HOME is changed while the library loads, for the whole process, and put back. For `file` there is a folder of
   * links among the temporary files until the library is closed.
   * @throws an Error with the code ENOENT or EISDIR: there is no such file. LibraryError: it cannot be read, or
   * libTavrel cannot be loaded. AlreadyOpenError: a library is open.
   */
  constructor(place?: { home?: string; file?: string });

  readonly isClosed: boolean;
  /** The playlists of all groups, group after group. */
  readonly playlists: Sequence<Playlist>;
  /** All songs of the file, also those that no playlist holds. */
  readonly songs: Sequence<Song>;
  /** Every property of the file itself: "Library Persistent ID", "Music Folder", "Date", ... */
  readonly properties: Properties;

  /**
   * The songs that hold a text in their name, artist or album; or the name in their name, or the artist in their
   * artist, or the album in their album. Regardless of case, and of how accented characters are composed.
   *
   * The library searches only as far as songs are asked for: up to the first, and when that is not enough, from the
   * start up to four times as many as were had, and so on.
   */
  search(wanted: string | Terms): Generator<Song, void, unknown>;

  /** Adds a ringtone to iTunes, by a script that osascript runs; LibraryError when that fails. `path` goes into the
   * script as it is: a double quote, a backslash or a line break in it changes the script. */
  appendRingtone(path: string): void;

  /** Unloads the library and gives everything back. A second time does nothing. */
  close(): void;
  /** The same, for `using`. */
  [Symbol.dispose](): void;
}

/** The library cannot be found, opened or read, or did not do what it was asked for. */
export class LibraryError extends Error {}
/** A library is open already in this process, which can have one at a time. */
export class AlreadyOpenError extends LibraryError {}
/** The library is closed. */
export class ClosedError extends LibraryError {}
