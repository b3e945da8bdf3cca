// The track table: one record for every track of the library file, in the file's order and never
// sorted. At load a record receives its Track ID and a reference to its dictionary; everything else
// is read from the dictionary when it is first asked for.
#pragma once

#include <cstddef>
#include <cstdint>

#include "library/State.h"
#include "tavrel/tavrel.h"
#include "xml/Records.h"

struct TrackRecord {
  SongInfo info;  // a pointer to a track is a pointer to its SongInfo; the texts are the library's
  std::int32_t trackId;
  std::uint8_t persistentId[8];
  const TBXMLElement* pendingDict;  // the track's dictionary until its properties are loaded
};

#if defined(__LP64__)
static_assert(sizeof(SongInfo) == 96);
static_assert(offsetof(SongInfo, nameSize) == 8);
static_assert(offsetof(SongInfo, location) == 16);
static_assert(offsetof(SongInfo, totalTime) == 28);
static_assert(offsetof(SongInfo, artist) == 32);
static_assert(offsetof(SongInfo, album) == 48);
static_assert(offsetof(SongInfo, genre) == 64);
static_assert(offsetof(SongInfo, reserved) == 76);
static_assert(offsetof(SongInfo, movie) == 88);
static_assert(sizeof(TrackRecord) == 120);
static_assert(offsetof(TrackRecord, trackId) == 96);
static_assert(offsetof(TrackRecord, persistentId) == 100);
static_assert(offsetof(TrackRecord, pendingDict) == 112);
#endif

namespace tavrel {

// A record as the library makes it: behind the stated fields stands what `pendingDict` no longer tells once
// the properties are loaded. Records that others make end with the stated fields.
struct OwnTrack : TrackRecord {
  const TBXMLElement* properties;  // the track's dictionary
};

// The dictionary of a track that the library has made, which is known by its address; none of any other.
[[nodiscard]] const TBXMLElement* PropertiesOf(const LibraryState& state,
                                               const TrackRecord* track) noexcept;

// The dictionary that holds all tracks: the first "dict" of the top-level dictionary. None when there
// is none, or no document.
[[nodiscard]] const TBXMLElement* TrackDictionary(const TBXML* document) noexcept;

// The Track ID of a track's dictionary: the value of its first pair, whatever the key; 0 without
// one.
[[nodiscard]] std::int32_t TrackIdOf(const TBXMLElement* trackDict) noexcept;

// Makes a record for each track of the state's document, and reads the library's persistent ID.
void CreateTracks(LibraryState& state) noexcept;

// Releases the records with all that they own; the table's fields are not reset. Nothing happens the
// second time.
void DestroyTracks(LibraryState& state) noexcept;

}  // namespace tavrel
