'use strict';
// The library's interface as its C header has it: records, callbacks and functions. A test compares everything
// here with the header.

const koffi = require('koffi');

const int = koffi.type('int32_t');
const text = koffi.type('str');
const buffer = koffi.type('void *'); // room for a text or for bytes, and a pointer that only the caller reads

/**
 * Koffi takes types without a name for one another, and refuses a name that is taken, as when this module is loaded
 * a second time.
 * @param {string} name
 */
function free(name) {
  for (let number = 1; ; ++number) {
    try {
      koffi.type(`Tavrel${number}_${name}`);
    } catch {
      return `Tavrel${number}_${name}`;
    }
  }
}

const PlaylistRecord = koffi.pointer(koffi.opaque(free('PlaylistRecord')));
const ArtworkHandle = koffi.pointer(koffi.opaque(free('ArtworkHandle')));

const SongInfo = koffi.struct(free('SongInfo'), {
  name: buffer,
  nameSize: int,
  location: buffer,
  locationSize: int,
  totalTime: int,
  artist: buffer,
  artistSize: int,
  album: buffer,
  albumSize: int,
  genre: buffer,
  genreSize: int,
  reserved: int,
  playCount: int,
  trackNumber: int,
  movie: int,
});

const ArtworkInfo = koffi.struct(free('ArtworkInfo'), {
  format: int,
  width: int,
  height: int,
  data: buffer,
  dataSize: int,
});

const SearchSongCallback = koffi.pointer(koffi.proto(free('SearchSongCallback'), int, [PlaylistRecord, int, buffer]));
const PropertyVisitor = koffi.pointer(koffi.proto(free('PropertyVisitor'), int, [text, text, text, buffer]));
const FindSongsCallback = koffi.pointer(koffi.proto(free('FindSongsCallback'), int, [int, buffer]));

const songInfo = koffi.inout(koffi.pointer(SongInfo));
const artworkInfo = koffi.inout(koffi.pointer(ArtworkInfo));

/** @typedef {import('koffi').TypeObject | ReturnType<typeof import('koffi').inout>} Type */

// [result, arguments]
/** @satisfies {Record<string, [Type, Type[]]>} */
const functions = {
  AgentInitializer: [int, []],
  AgentFinalizer: [int, []],
  GetPlaylistCount: [int, [int]],
  OpenPlaylist: [PlaylistRecord, [int, int]],
  ClosePlaylist: [int, [PlaylistRecord]],
  GetPlaylistName: [int, [int, int, buffer, int]],
  GetPlaylistKind: [int, [PlaylistRecord]],
  GetSongCount: [int, [PlaylistRecord]],
  GetSongInfo: [int, [PlaylistRecord, int, songInfo]],
  OpenArtwork: [ArtworkHandle, [PlaylistRecord, int]],
  GetArtworkCount: [int, [ArtworkHandle]],
  GetArtworkInfo: [int, [ArtworkHandle, int, artworkInfo]],
  CloseArtwork: [koffi.type('void'), [ArtworkHandle]],
  AppendRingtone: [int, [text]],
  SearchSong: [int, [songInfo, SearchSongCallback, buffer]],
  OpenAllSongs: [PlaylistRecord, []],
  OpenArtworkAny: [ArtworkHandle, [PlaylistRecord, int]],
  OpenArtworkFile: [ArtworkHandle, [text]],
  GetSongProperty: [int, [PlaylistRecord, int, text, buffer, int]],
  GetPlaylistProperty: [int, [PlaylistRecord, text, buffer, int]],
  GetLibraryProperty: [int, [text, buffer, int]],
  VisitSongProperties: [int, [PlaylistRecord, int, PropertyVisitor, buffer]],
  VisitPlaylistProperties: [int, [PlaylistRecord, PropertyVisitor, buffer]],
  VisitLibraryProperties: [int, [PropertyVisitor, buffer]],
  FindSongs: [int, [songInfo, FindSongsCallback, buffer]],
};

/**
 * @typedef {bigint} Handle
 * @typedef {Record<keyof typeof functions, (...values: any[]) => any>} Functions
 */

/** A record with nothing in it, to be filled. */
const emptySongInfo = () => ({
  name: null, nameSize: 0, location: null, locationSize: 0, totalTime: 0, artist: null, artistSize: 0,
  album: null, albumSize: 0, genre: null, genreSize: 0, reserved: 0, playCount: 0, trackNumber: 0, movie: 0,
});

module.exports = {
  ArtworkHandle, ArtworkInfo, FindSongsCallback, PlaylistRecord, PropertyVisitor, SearchSongCallback, SongInfo,
  artworkInfo, buffer, emptySongInfo, functions, int, songInfo, text,
};
