// What a load makes and an unload gives back. The functions of the library model take the state that
// they work on; which one is the loaded library's, only the agent knows.
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

// The record that others know by its layout.
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

namespace tavrel {

class ArtworkIndex;
struct SearchIndex;

// The same with what the library keeps for itself behind it.
struct LibraryState : GlobalState {
  char* home;  // the home folder of this load, owned; none when there is none
  system::ReleasePool ownPool;
  system::ZeroedArena trackRecords;
  system::ZeroedArena trackTexts;
  system::ZeroedArena playlistRecords;
  bool tracksDestroyed;
  PlaylistRecord* ringtones;   // the ringtone playlist while it stands in the first group
  PlaylistRecord* allSongs;    // made on first use among the tracks
  ArtworkIndex* artworkIndex;  // owned; none before artwork was first asked for
  bool artworkDestroyed;
  SearchIndex* searchIndex;  // owned; none before the first search
  LibraryState* former;      // what the load before has made, while that is not released
};

}  // namespace tavrel
