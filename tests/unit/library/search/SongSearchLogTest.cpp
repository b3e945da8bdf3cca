// A search logs what decoding every text afresh would log.
#include <gtest/gtest.h>

#include "agent/Exports.h"
#include "library/search/PlainSearch.h"
#include "library/tracks/TrackTable.h"
#include "tests/support/SongLibrary.h"

namespace {

using namespace tavrel::test;

constexpr const char* kNoEnding = "] XML text \"Beat & It\" Escaping has no ending\n";
constexpr const char* kNoNumeric = "] XML text \"&nbsp; Beat\" Escaping has no numeric\n";

std::vector<LibraryTrack> FaultyTracks() {
  return {{1, "Beat & It", "anna"}, {2, "ok", "Heart&nbsp; Beat"}, {3, "fine", "fine"}};
}

TEST(SongSearchLog, AFaultyTextIsSearchedAsFarAsItWasDecodedAndLoggedOncePerTest) {
  const SongLibrary library(FaultyTracks());
  for (int again = 0; again < 3; ++again) {
    const Heard beat = Search({.name = "beat"});
    EXPECT_EQ(beat.count, 1);
    EXPECT_EQ(beat.log, kNoEnding);
    const Heard it = Search({.name = "it"});
    EXPECT_EQ(it.count, 0) << "behind the fault";
    EXPECT_EQ(it.log, kNoEnding);
    const Heard heart = Search({.artist = "heart"});
    EXPECT_EQ(heart.count, 1);
    EXPECT_EQ(heart.log, kNoNumeric);
  }
}

TEST(SongSearchLog, TextsThatAreNotTestedAreNotLogged) {
  const SongLibrary library(FaultyTracks());
  EXPECT_EQ(Search({}).log, "");
  EXPECT_EQ(Search({.album = "beat"}).log, "");
  EXPECT_EQ(Search({.name = "ok", .artist = "heart"}).log, kNoEnding)
      << "the second track's name matches, so that its artist is not looked at";
  EXPECT_EQ(Search({.name = "x", .artist = "x"}).log, std::string(kNoEnding) + kNoNumeric);
}

TEST(SongSearchLog, ATermThatIsNeverFoundIsATestAllTheSame) {
  const SongLibrary library(FaultyTracks());
  EXPECT_EQ(Search({.name = ""}).log, kNoEnding);
  EXPECT_EQ(Search({.name = "\xFF"}).log, kNoEnding);
}

TEST(SongSearchLog, NeighboursThatShareAFaultyTextAreLoggedOneByOne) {
  const SongLibrary library(std::vector<LibraryTrack>{
      {1, "a", "Beat & It"}, {2, "b", "Beat & It"}, {3, "c"}, {4, "d", "Beat & It"}});
  const std::string once = kNoEnding;
  EXPECT_EQ(Search({.artist = "beat"}).log, once + once + once);
  EXPECT_EQ(Search({.artist = "zzz"}).log, once + once + once);
  EXPECT_EQ(Search({.name = "b", .artist = "zzz"}).log, once + once);
}

TEST(SongSearchLog, LinesComeBeforeTheCallForTheirTrackAndNoneAfterTheEnd) {
  const SongLibrary library(FaultyTracks());
  const auto mark = [](std::size_t call) {
    fprintf(stderr, "[x] call %zu\n", call);
    return call < 1 ? 1 : 0;
  };
  EXPECT_EQ(Search({.name = "x", .artist = "x"}, mark).log,
            std::string(kNoEnding) + "] call 0\n" + kNoNumeric + "] call 1\n");
  EXPECT_EQ(Search({.name = "x", .artist = "x"}, [](std::size_t) { return 0; }).log, kNoEnding);
}

TEST(SongSearchLog, AFaultyTextThatIsNoUtf8IsLoggedToo) {
  const SongLibrary library(std::vector<LibraryTrack>{{1, "a&#233;b&c"}});
  EXPECT_EQ(Search({.name = "a"}).count, 0);
  EXPECT_EQ(Search({.name = "a"}).log, "] XML text \"a&#233;b&c\" Escaping has no ending\n");
}

TEST(SongSearchLog, OneTestOfOneTextLogsItsFault) {
  const SongLibrary library(FaultyTracks());
  testing::internal::CaptureStderr();
  EXPECT_EQ(FilterPropMatch(g_pGlobal->tracks[0]->pendingDict, "Name", "beat"), 1);
  EXPECT_NE(testing::internal::GetCapturedStderr().find(kNoEnding), std::string::npos);
}

}  // namespace
