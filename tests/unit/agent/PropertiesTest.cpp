// Whose records lead to properties.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstring>
#include <new>
#include <string_view>

#include "agent/Exports.h"
#include "library/playlists/PlaylistTable.h"
#include "library/tracks/TrackTable.h"
#include "tests/support/GuardedPages.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryHome.h"

namespace tavrel::test {
namespace {

std::int32_t GoOn(const char*, const char*, const char*, void*) {
  return 1;
}

// How much a record leads to: the size of "Name", and how many pairs.
struct Extent {
  std::int32_t nameSize;
  std::int32_t pairs;

  friend bool operator==(const Extent&, const Extent&) = default;
};
constexpr Extent kNothing = {0, 0};

Extent OfSong(const PlaylistRecord* playlist, std::int32_t index) {
  return {GetSongProperty(playlist, index, "Name", nullptr, 0),
          VisitSongProperties(playlist, index, GoOn, nullptr)};
}

Extent OfPlaylist(const PlaylistRecord* playlist) {
  return {GetPlaylistProperty(playlist, "Name", nullptr, 0),
          VisitPlaylistProperties(playlist, GoOn, nullptr)};
}

Extent OfLibrary() {
  return {GetLibraryProperty("Library Persistent ID", nullptr, 0),
          VisitLibraryProperties(GoOn, nullptr)};
}

template <class Record>
std::string_view BytesOf(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof(Record)};
}

class Properties : public testing::Test {
 protected:
  Properties() : variable_("HOME", home_.path().c_str()) {
    home_.WriteLibrary(SmallLibraryText());
    EXPECT_EQ(AgentInitializer(), 0);
  }
  ~Properties() override { AgentFinalizer(); }

  const TemporaryHome home_;
  const ScopedVariable variable_;
};

TEST_F(Properties, OfRecordsOfACallersOwnAreNoneAndNothingBehindThemIsRead) {
  GuardedPages pages(2 * sizeof(TrackRecord));
  // The last byte of the record is the last one there is.
  const std::string_view bytes = BytesOf(*g_pGlobal->tracks[0]);
  auto* copy = reinterpret_cast<TrackRecord*>(pages.PlaceAtEnd(bytes.substr(0, bytes.size() - 1)));
  std::memcpy(static_cast<void*>(copy), bytes.data(), bytes.size());
  TrackRecord* tracks[] = {copy};
  PlaylistRecord playlist = *OpenPlaylist(0, 0);
  playlist.tracks = tracks;
  playlist.count = playlist.capacity = 1;
  EXPECT_EQ(OfSong(&playlist, 0), kNothing);
  EXPECT_EQ(OfSong(&playlist, 1), kNothing);

  const std::string_view playlistBytes = BytesOf(playlist);
  auto* atTheEnd = reinterpret_cast<PlaylistRecord*>(
      pages.PlaceAtEnd(playlistBytes.substr(0, playlistBytes.size() - 1)));
  std::memcpy(atTheEnd, playlistBytes.data(), playlistBytes.size());
  EXPECT_EQ(OfPlaylist(atTheEnd), kNothing);
}

TEST_F(Properties, OfTheLibrarysSongsAreToldThroughAPlaylistOfACallersOwn) {
  PlaylistRecord playlist = {};
  TrackRecord* tracks[] = {g_pGlobal->tracks[1], nullptr};
  playlist.tracks = tracks;
  playlist.count = playlist.capacity = 2;
  EXPECT_EQ(OfSong(&playlist, 0), OfSong(OpenAllSongs(), 1));
  EXPECT_EQ(OfSong(&playlist, 0).nameSize, 12);
  EXPECT_EQ(OfSong(&playlist, 1), kNothing) << "no record";
  EXPECT_EQ(OfPlaylist(&playlist), kNothing);
}

TEST_F(Properties, OfPlaylistsThatWereBuiltAnewAreToldToo) {
  const PlaylistRecord* former = OpenPlaylist(0, 0);
  const Extent before = OfPlaylist(former);
  EXPECT_EQ(before.nameSize, 6);
  EXPECT_EQ(DestroyPlaylistArray(), 0);
  EXPECT_EQ(OpenPlaylist(0, 0), nullptr);
  EXPECT_EQ(CreatePlaylistArray(), 0);
  EXPECT_EQ(OfPlaylist(OpenPlaylist(0, 0)), before);
}

TEST_F(Properties, OfALibraryThatWasLoadedBeforeAreNone) {
  const PlaylistRecord* all = OpenAllSongs();
  const PlaylistRecord* music = OpenPlaylist(0, 0);
  static GlobalState* former;  // and does not count as a leak
  former = g_pGlobal;
  EXPECT_EQ(OfSong(all, 0).pairs, 10);
  EXPECT_EQ(AgentInitializer(), 0);
  EXPECT_EQ(OfSong(all, 0), kNothing);
  EXPECT_EQ(OfPlaylist(music), kNothing);
  EXPECT_EQ(OfSong(OpenAllSongs(), 0).pairs, 10);
  // Who goes back to it is told again.
  GlobalState* present = g_pGlobal;
  g_pGlobal = former;
  EXPECT_EQ(OfSong(all, 0).pairs, 10);
  EXPECT_EQ(OfPlaylist(music).nameSize, 6);
  g_pGlobal = present;
}

TEST_F(Properties, AreNoneAfterTheUnload) {
  const PlaylistRecord* all = OpenAllSongs();
  const PlaylistRecord* music = OpenPlaylist(0, 0);
  EXPECT_EQ(OfLibrary(), (Extent{17, 5}));
  AgentFinalizer();
  EXPECT_EQ(OfLibrary(), kNothing);
  EXPECT_EQ(OfSong(all, 0), kNothing);
  EXPECT_EQ(OfPlaylist(music), kNothing);
  SongInfo terms = {};
  char term[] = "a";
  terms.name = term;
  const auto goOn = [](std::int32_t, void*) { return std::int32_t{1}; };
  EXPECT_EQ(FindSongs(&terms, goOn, nullptr), 0);
}

}  // namespace
}  // namespace tavrel::test
