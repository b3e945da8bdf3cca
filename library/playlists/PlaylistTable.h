// The playlist table: the playlists of the library file in three groups, each with the tracks that
// its items name.
#pragma once

#include <cstddef>
#include <cstdint>

#include "library/State.h"
#include "library/tracks/TrackTable.h"
#include "tavrel/tavrel.h"
#include "xml/Records.h"

struct PlaylistRecord {
  TrackRecord** tracks;  // not owned, but for the ringtone playlist's; the array is
  std::int32_t capacity;
  std::int32_t count;
  std::int32_t kind;      // the "Distinguished Kind", 0 without one
  char* name;             // decoded, owned; none when the file gives no name text
  std::int32_t nameSize;  // length of the name as the file writes it plus 1; 0 without a name
};

struct PlaylistGroup {
  PlaylistRecord** playlists;
  std::int32_t capacity;
  std::int32_t count;
};

#if defined(__LP64__)
static_assert(sizeof(PlaylistRecord) == 40);
static_assert(offsetof(PlaylistRecord, capacity) == 8);
static_assert(offsetof(PlaylistRecord, count) == 12);
static_assert(offsetof(PlaylistRecord, kind) == 16);
static_assert(offsetof(PlaylistRecord, name) == 24);
static_assert(offsetof(PlaylistRecord, nameSize) == 32);
static_assert(sizeof(PlaylistGroup) == 16);
static_assert(offsetof(PlaylistGroup, capacity) == 8);
static_assert(offsetof(PlaylistGroup, count) == 12);
#endif

inline constexpr std::int32_t kGroupCount = 3;

extern "C" {

// The kinds of group 0 and of group 1; every other playlist stands in group 2.
TAVREL_API extern const std::int32_t arrLibraryKind[7];
TAVREL_API extern const std::int32_t arrGeniusKind[1];
}

namespace tavrel {

// Counts the calls that may have changed the playlists. Not kept in the state: such a call can be given
// a playlist, elements and a state that are all the caller's own.
extern constinit std::uint32_t playlistChanges;

// A record as the library makes it, with its dictionary behind the stated fields. Records that others make,
// and those of the playlists that the library file does not hold, end with the stated fields.
struct OwnPlaylist : PlaylistRecord {
  const TBXMLElement* properties;
};

// The dictionary of a playlist of the library file, whose record is known by its address; none of any
// other.
[[nodiscard]] const TBXMLElement* PropertiesOf(const LibraryState& state,
                                               const PlaylistRecord* playlist) noexcept;

// Makes the three groups, and a record for each visible playlist of the state's document.
void CreatePlaylists(LibraryState& state) noexcept;

// Appends the tracks that the items of a playlist's dictionary name to `playlist`, which may be a
// record of the caller's own; its array is then of the malloc family and the caller's. Items that
// name no track are dropped.
// Tracks are found by binary search: in a file whose Track IDs do not ascend, items are lost. Kept.
void AppendTracks(const GlobalState& state, PlaylistRecord& playlist,
                  const TBXMLElement* playlistDict) noexcept;

// Releases the groups and their playlists; the ringtone playlist, whose songs are its own, must have
// gone. Names and the groups' arrays go to the state's pool, which gives them back when it is drained.
void DestroyPlaylists(LibraryState& state) noexcept;

// Releases the record of a playlist that is not of the library file, and its array, but neither its tracks
// nor its name.
void ReleasePlaylist(PlaylistRecord* playlist) noexcept;

}  // namespace tavrel
