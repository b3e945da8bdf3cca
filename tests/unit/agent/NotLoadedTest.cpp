// Before the first load there is no global record: every function answers as for nothing.
#include <gtest/gtest.h>

#include "agent/Exports.h"
#include "library/State.h"
#include "library/file/PropertyList.h"
#include "library/playlists/PlaylistTable.h"
#include "tests/support/RecordSizes.h"
#include "tests/support/SongLibrary.h"

namespace {

const auto* const globalAtStart = g_pGlobal;

// Where another test of the same process has had a library, the record's address stays behind it: kept.
class NotLoaded : public testing::Test {
 protected:
  NotLoaded() {
    EXPECT_EQ(globalAtStart, nullptr);
    g_pGlobal = nullptr;
  }
};

}  // namespace

TEST_F(NotLoaded, EveryQueryAnswersNothing) {
  EXPECT_EQ(GetPlaylistCount(0), 0);
  EXPECT_EQ(OpenPlaylist(0, 0), nullptr);
  EXPECT_EQ(ClosePlaylist(nullptr), 0);
  EXPECT_EQ(GetPlaylistName(0, 0, nullptr, 0), 0);
  EXPECT_EQ(GetPlaylistKind(nullptr), 0);
  EXPECT_EQ(GetSongCount(nullptr), 0);
  EXPECT_EQ(GetSongInfo(nullptr, 0, nullptr), 0);
  EXPECT_EQ(OpenAllSongs(), nullptr);
  EXPECT_EQ(GetSongProperty(nullptr, 0, "Name", nullptr, 0), 0);
  EXPECT_EQ(GetPlaylistProperty(nullptr, "Name", nullptr, 0), 0);
  EXPECT_EQ(GetLibraryProperty("Date", nullptr, 0), 0);
  const auto visit = [](const char*, const char*, const char*, void*) { return std::int32_t{1}; };
  EXPECT_EQ(VisitSongProperties(nullptr, 0, visit, nullptr), 0);
  EXPECT_EQ(VisitPlaylistProperties(nullptr, visit, nullptr), 0);
  EXPECT_EQ(VisitLibraryProperties(visit, nullptr), 0);
  const SongInfo terms = {};
  const auto goOn = [](std::int32_t, void*) { return std::int32_t{1}; };
  EXPECT_EQ(FindSongs(&terms, goOn, nullptr), 0);
  EXPECT_EQ(GetPlaylistByTrackId(1, nullptr), nullptr);
  EXPECT_EQ(tavrel::TopLevelDictionary(nullptr), nullptr);
}

TEST_F(NotLoaded, ASearchReportsNothing) {
  EXPECT_TRUE(tavrel::test::Search({.name = "a"}).calls.empty());
}

TEST_F(NotLoaded, BuildersDestroyersAndTheFinalizerDoNothing) {
  EXPECT_EQ(CreateTrackArray(), 0);
  EXPECT_EQ(CreatePlaylistArray(), 0);
  EXPECT_EQ(DestroyTrackArray(), 0);
  EXPECT_EQ(DestroyPlaylistArray(), 0);
  EXPECT_EQ(AgentFinalizer(), 0);
  EXPECT_EQ(AgentFinalizerImp(), 0);
  EXPECT_EQ(g_pGlobal, nullptr);
}

TEST(GetSongInfo, ServesARecordOfTheCallersOwn) {
  char name[] = "mine";
  TrackRecord track = {};
  track.info.name = name;
  track.info.nameSize = 5;
  track.info.playCount = 3;
  TrackRecord* tracks[] = {&track};
  PlaylistRecord playlist = {};
  playlist.tracks = tracks;
  playlist.capacity = playlist.count = 1;
  char buffer[5] = {};
  SongInfo info = {};
  info.name = buffer;
  EXPECT_EQ(GetSongInfo(&playlist, 0, &info), tavrel::test::kSongInfoSize + 5);
  EXPECT_STREQ(buffer, "mine");
  EXPECT_EQ(info.playCount, 3);
}
