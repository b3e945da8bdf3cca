#include "tests/fault/StateCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>

#include "agent/Exports.h"
#include "library/State.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackTable.h"
#include "tests/fault/FailingNew.h"
#include "tests/fault/SeenParts.h"

namespace tavrel::test {
namespace {

using test::IsPart;  // beside those below

constexpr std::int32_t kRingtoneKind = 55;

void ExpectTable(const void* array, std::int32_t capacity, std::int32_t count) {
  EXPECT_GE(count, 0);
  EXPECT_LE(count, capacity);
  EXPECT_EQ(capacity % 32, 0);
  EXPECT_EQ(array == nullptr, capacity == 0);
}

void ExpectText(const char* text, std::int32_t size) {
  EXPECT_GE(size, 0);
  if (text == nullptr) {
    EXPECT_LE(size, 1);  // 1: a boolean in place of a text
  } else {
    EXPECT_LT(std::strlen(text), static_cast<std::size_t>(size));
  }
}

void ExpectPlaylist(const PlaylistRecord* playlist, const std::set<const TrackRecord*>& tracks) {
  ASSERT_NE(playlist, nullptr);
  ExpectTable(playlist->tracks, playlist->capacity, playlist->count);
  ExpectText(playlist->name, playlist->nameSize);
  for (std::int32_t i = 0; i < playlist->count; ++i) {
    const bool owned = playlist->kind == kRingtoneKind;
    EXPECT_TRUE(owned || tracks.count(playlist->tracks[i]) == 1);
  }
}

bool IsPart(const SeenPlaylist& part, const SeenPlaylist& whole) {
  const bool sameKind = IsPart(part.kind, whole.kind);
  return sameKind && IsPart(part.name, whole.name) && part.songs.size() <= whole.songs.size();
}

}  // namespace

const HostFunctions kLinkedFunctions = {
    [](std::int32_t group) noexcept { return Inside([=] { return GetPlaylistCount(group); }); },
    [](std::int32_t group, std::int32_t index) noexcept {
      return Inside([=] { return OpenPlaylist(group, index); });
    },
    [](PlaylistRecord* playlist) noexcept {
      return Inside([=] { return ClosePlaylist(playlist); });
    },
    [](std::int32_t group, std::int32_t index, char* buffer, std::int32_t size) noexcept {
      return Inside([=] { return GetPlaylistName(group, index, buffer, size); });
    },
    [](const PlaylistRecord* playlist) noexcept {
      return Inside([=] { return GetPlaylistKind(playlist); });
    },
    [](const PlaylistRecord* playlist) noexcept {
      return Inside([=] { return GetSongCount(playlist); });
    },
    [](PlaylistRecord* playlist, std::int32_t index, SongInfo* info) noexcept {
      return Inside([=] { return GetSongInfo(playlist, index, info); });
    },
    []() noexcept { return Inside([] { return OpenAllSongs(); }); },
    [](const PlaylistRecord* playlist, std::int32_t index, const char* key, char* buffer,
       std::int32_t size) noexcept {
      return Inside([=] { return GetSongProperty(playlist, index, key, buffer, size); });
    },
    [](const PlaylistRecord* playlist, const char* key, char* buffer, std::int32_t size) noexcept {
      return Inside([=] { return GetPlaylistProperty(playlist, key, buffer, size); });
    },
    [](const char* key, char* buffer, std::int32_t size) noexcept {
      return Inside([=] { return GetLibraryProperty(key, buffer, size); });
    },
    // What these call is the test's own: their memory is never taken by operator new.
    VisitSongProperties,
    VisitPlaylistProperties,
    VisitLibraryProperties,
    FindSongs,
};

SeenLibrary SeeLibrary() {
  SeenLibrary library;
  if (PlaylistRecord* all = kLinkedFunctions.openAllSongs()) {
    library.songs = SeeSongs(kLinkedFunctions, all);
  }
  library.playlists = SeePlaylists(kLinkedFunctions);
  return library;
}

void ExpectConsistentState() {
  if (g_pGlobal == nullptr) return;
  const GlobalState& state = *g_pGlobal;
  EXPECT_NE(state.pool, nullptr);
  ExpectTable(state.tracks, state.trackCapacity, state.trackCount);
  std::set<const TrackRecord*> tracks;
  for (std::int32_t i = 0; i < state.trackCount; ++i) {
    const TrackRecord* track = state.tracks[i];
    ASSERT_NE(track, nullptr);
    EXPECT_TRUE(tracks.insert(track).second);
    for (const auto& [text, size] : {std::pair(track->info.name, track->info.nameSize),
                                     {track->info.location, track->info.locationSize},
                                     {track->info.artist, track->info.artistSize},
                                     {track->info.album, track->info.albumSize},
                                     {track->info.genre, track->info.genreSize}}) {
      ExpectText(text, size);
    }
  }
  EXPECT_EQ(state.groups == nullptr, state.groupCount == 0);
  EXPECT_TRUE(state.groupCount == 0 || state.groupCount == 3);
  for (std::int32_t g = 0; g < state.groupCount; ++g) {
    const PlaylistGroup* group = state.groups[g];
    ASSERT_NE(group, nullptr);
    ExpectTable(group->playlists, group->capacity, group->count);
    for (std::int32_t i = 0; i < group->count; ++i) ExpectPlaylist(group->playlists[i], tracks);
  }
  EXPECT_TRUE(state.document != nullptr || (state.trackCount == 0 && state.groups == nullptr));
}

void ExpectPartOf(const SeenLibrary& seen, const SeenLibrary& whole) {
  ASSERT_LE(seen.songs.size(), whole.songs.size());
  for (std::size_t i = 0; i < seen.songs.size(); ++i) {
    EXPECT_TRUE(IsPart(seen.songs[i], whole.songs[i])) << "song " << i;
  }
  // The playlists that are left stand in the order of the whole.
  auto candidate = whole.playlists.begin();
  for (const SeenPlaylist& playlist : seen.playlists) {
    if (playlist.kind == 0) continue;  // one whose kind was lost stands among the others
    candidate =
        std::find_if(candidate, whole.playlists.end(),
                     [&playlist](const SeenPlaylist& other) { return IsPart(playlist, other); });
    ASSERT_NE(candidate, whole.playlists.end()) << playlist.name.text.value_or("-");
    ++candidate;
  }
}

}  // namespace tavrel::test
