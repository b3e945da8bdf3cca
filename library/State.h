// The one global record that every operation reads, made at load and freed at unload.
#pragma once

#include <cstddef>
#include <cstdint>

#include "system/ReleasePool.h"
#include "system/ZeroedArena.h"
#include "tavrel/tavrel.h"

class TBXML;
struct ArtworkFileEntry;
struct PlaylistGroup;
struct TrackRecord;

struct GlobalState {
  TrackRecord** tracks;
  std::int32_t trackCapacity;
  std::int32_t trackCount;
  PlaylistGroup** groups;
  std::int32_t groupCapacity;
  std::int32_t groupCount;
  ArtworkFileEntry** artworkFiles;
  std::int32_t artworkFileCapacity;
  std::int32_t artworkFileCount;
  std::uint8_t libraryPersistentId[8];
  TBXML* document;  // owned; none when the library file could not be opened
  tavrel::system::ReleasePool* pool;
};

#if defined(__LP64__)
static_assert(offsetof(GlobalState, tracks) == 0);
static_assert(offsetof(GlobalState, trackCapacity) == 8);
static_assert(offsetof(GlobalState, trackCount) == 12);
static_assert(offsetof(GlobalState, groups) == 16);
static_assert(offsetof(GlobalState, groupCapacity) == 24);
static_assert(offsetof(GlobalState, groupCount) == 28);
static_assert(offsetof(GlobalState, artworkFiles) == 32);
static_assert(offsetof(GlobalState, artworkFileCapacity) == 40);
static_assert(offsetof(GlobalState, artworkFileCount) == 44);
static_assert(offsetof(GlobalState, libraryPersistentId) == 48);
static_assert(offsetof(GlobalState, document) == 56);
static_assert(offsetof(GlobalState, pool) == 64);
static_assert(sizeof(GlobalState) == 72);
#endif

// Null before the first load. It keeps its value after unload, when it must not be followed.
extern "C" TAVREL_API GlobalState* g_pGlobal;

namespace tavrel {

class ArtworkIndex;
struct SearchIndex;

// What the library keeps for itself stands behind the record that others know.
struct PrivateState {
  GlobalState shared;
  char* home;  // the home folder of this load, owned; none when there is none
  system::ReleasePool pool;
  system::ZeroedArena trackRecords;
  system::ZeroedArena trackTexts;
  bool tracksDestroyed;
  PlaylistRecord* ringtones;   // the ringtone playlist while it stands in the first group
  PlaylistRecord* allSongs;    // what OpenAllSongs() gives, made on first use among the tracks
  ArtworkIndex* artworkIndex;  // owned; none before the first search
  bool artworkDestroyed;
  SearchIndex* searchIndex;  // made by the first search
};

// The private half of `g_pGlobal`, which must be set.
[[nodiscard]] inline PrivateState& Private() noexcept {
  return *reinterpret_cast<PrivateState*>(g_pGlobal);
}

// What the last load made; none before it and after its unload. `g_pGlobal` cannot tell: it keeps
// its value, and callers can set it.
extern constinit PrivateState* loadedState;

// Counts the calls that may have changed the playlists. Not behind the global record: such a call
// can be given a playlist, elements and a global record that are all the caller's own.
extern constinit std::uint32_t playlistChanges;

}  // namespace tavrel
