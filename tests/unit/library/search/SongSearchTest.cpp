#include <gtest/gtest.h>

#include "agent/Exports.h"
#include "library/search/PlainSearch.h"
#include "library/tracks/TrackTable.h"
#include "tests/support/SongLibrary.h"

namespace {

using namespace tavrel::test;
using Numbers = std::vector<std::size_t>;

// Four songs, all of them in one playlist.
class SongSearch : public testing::Test {
 protected:
  SongLibrary library_{std::vector<LibraryTrack>{{1, "Beat It", "Michael", "Thriller"},
                                                 {2, "HEARTBEAT", "Anna", "Thriller"},
                                                 {3, "Rock &amp; Roll", "Led", "IV"},
                                                 {4, "Dvo\u0159\u00E1k", "Beatrice", "Thriller"}},
                       std::vector<LibraryPlaylist>{{0, {1, 2, 3, 4}}}};
};

TEST_F(SongSearch, WithoutTermsEveryTrackIsReportedAndNoneMatches) {
  const Heard heard = Search({});
  EXPECT_EQ(heard.count, 0);
  EXPECT_EQ(heard.calls, std::vector<Call>(4, Call{nullptr, 0}));
}

TEST_F(SongSearch, ATermIsFoundAnywhereInAnyCase) {
  const Heard heard = Search({.name = "beat"});
  EXPECT_EQ(heard.count, 2);
  EXPECT_EQ(heard.calls.size(), 4u);
  EXPECT_EQ(Placed(heard), (Numbers{0, 1}));
  PlaylistRecord* playlist = OpenPlaylist(2, 0);
  EXPECT_EQ(heard.calls[1], (Call{playlist, 1}));
  EXPECT_EQ(heard.calls[2], (Call{nullptr, 0}));
}

TEST_F(SongSearch, TermsAreAlternatives) {
  EXPECT_EQ(Placed(Search({.name = "nothing", .artist = "anna"})), (Numbers{1}));
  EXPECT_EQ(Placed(Search({.name = "rock", .artist = "anna"})), (Numbers{1, 2}));
  EXPECT_EQ(Placed(Search({.name = "rock", .artist = "anna", .album = "thriller"})),
            (Numbers{0, 1, 2, 3}));
}

TEST_F(SongSearch, ATrackThatMatchesByNameAndArtistIsReportedOnce) {
  const Heard heard = Search({.name = "beat", .artist = "beat"});
  EXPECT_EQ(heard.count, 3);
  EXPECT_EQ(heard.calls.size(), 4u);
  EXPECT_EQ(Search({.name = "beat it", .artist = "michael", .album = "thriller"}).count, 3);
}

TEST_F(SongSearch, EachTermIsLookedForInItsOwnTextOnly) {
  EXPECT_EQ(Search({.name = "anna"}).count, 0);
  EXPECT_EQ(Search({.artist = "thriller"}).count, 0);
  EXPECT_EQ(Search({.album = "beat"}).count, 0);
  EXPECT_EQ(Search({.name = "file", .artist = "file", .album = "file"}).count, 0);
}

TEST_F(SongSearch, ReferencesAreDecoded) {
  EXPECT_EQ(Placed(Search({.name = "& roll"})), (Numbers{2}));
  EXPECT_EQ(Search({.name = "&amp;"}).count, 0);
}

TEST_F(SongSearch, AnySpellingOfAnAccentIsFound) {
  EXPECT_EQ(Placed(Search({.name = "dvo\u0159\u00E1k"})), (Numbers{3}));
  EXPECT_EQ(Placed(Search({.name = "DVOR\u030CA\u0301K"})), (Numbers{3}));
  EXPECT_EQ(Search({.name = "dvorak"}).count, 0);
}

TEST_F(SongSearch, ACallbackThatReturnsZeroEndsTheSearch) {
  const auto stop = [](std::size_t) { return 0; };
  const Heard matching = Search({.name = "beat"}, stop);
  EXPECT_EQ(matching.count, 1);
  EXPECT_EQ(matching.calls.size(), 1u);
  const Heard other = Search({.name = "rock"}, stop);
  EXPECT_EQ(other.count, 0);
  EXPECT_EQ(other.calls.size(), 1u);
  const Heard third = Search({.name = "rock"}, [](std::size_t call) { return call < 2 ? -1 : 0; });
  EXPECT_EQ(third.count, 1);
  EXPECT_EQ(third.calls.size(), 3u);
}

TEST_F(SongSearch, AnEmptyTermMatchesNothing) {
  EXPECT_EQ(Search({.name = ""}).count, 0);
  EXPECT_EQ(Search({.name = "", .artist = "", .album = ""}).calls.size(), 4u);
  EXPECT_EQ(Search({.name = "", .artist = "anna"}).count, 1);
}

TEST_F(SongSearch, NullTermsOrCallbackGiveZeroWithoutACall) {
  SongInfo terms = {};
  bool isCalled = false;
  const auto call = [](PlaylistRecord*, std::int32_t, void* context) {
    *static_cast<bool*>(context) = true;
    return std::int32_t{1};
  };
  EXPECT_EQ(SearchSong(nullptr, call, &isCalled), 0);
  EXPECT_EQ(SearchSong(&terms, nullptr, nullptr), 0);
  EXPECT_FALSE(isCalled);
}

TEST_F(SongSearch, OnlyTheThreePointersAreRead) {
  SongInfo terms = {};
  char wanted[] = "beat it";
  terms.name = wanted;
  terms.nameSize = terms.artistSize = terms.albumSize = terms.reserved = -1;
  terms.location = terms.genre = reinterpret_cast<char*>(1);
  const auto call = [](PlaylistRecord*, std::int32_t, void*) { return std::int32_t{1}; };
  EXPECT_EQ(SearchSong(&terms, call, nullptr), 1);
}

TEST_F(SongSearch, TermsAreReadBeforeTheFirstCall) {
  SongInfo terms = {};
  char wanted[] = "beat";
  terms.name = wanted;
  const auto call = [](PlaylistRecord*, std::int32_t, void* context) {
    static_cast<SongInfo*>(context)->name[0] = '#';
    return std::int32_t{1};
  };
  EXPECT_EQ(SearchSong(&terms, call, &terms), 2);
}

TEST_F(SongSearch, LoadsNoProperties) {
  (void)Search({.name = "beat"});
  for (int i = 0; i < 4; ++i) EXPECT_NE(g_pGlobal->tracks[i]->pendingDict, nullptr);
}

TEST(SongSearchTracks, AMatchThatNoPlaylistHoldsIsReportedWithoutAPlaceAndCounts) {
  const SongLibrary library(std::vector<LibraryTrack>{{1, "one"}, {2, "two"}}, {{0, {2}}});
  const Heard heard = Search({.name = "o"});
  EXPECT_EQ(heard.count, 2);
  EXPECT_EQ(heard.calls, (std::vector<Call>{{nullptr, 0}, {OpenPlaylist(2, 0), 0}}));
}

TEST(SongSearchTracks, NeighboursThatShareATextAreAllReported) {
  const SongLibrary library(std::vector<LibraryTrack>{{1, "a", "same"},
                                                      {2, "b", "same"},
                                                      {3, "c"},
                                                      {4, "d", "same"},
                                                      {5, "e", "other"},
                                                      {6, "f", "same"}},
                            {{0, {1, 2, 3, 4, 5, 6}}});
  EXPECT_EQ(Placed(Search({.artist = "same"})), (Numbers{0, 1, 3, 5}));
  EXPECT_EQ(Placed(Search({.name = "f", .artist = "other"})), (Numbers{4, 5}));
}

TEST(SongSearchTracks, TheFirstPairWithAKeyDecides) {
  const SongLibrary library(LibraryXml(
      "<key>1</key><dict><key>Track ID</key><integer>1</integer>"
      "<key>Name</key><true/><key>Name</key><string>second</string></dict>"
      "<key>2</key><dict><key>Track ID</key><integer>2</integer>"
      "<key>Name</key><string>first</string><key>Name</key><string>second</string></dict>"
      "<key>3</key><dict><key>Track ID</key><integer>3</integer>"
      "<key>name</key><string>second</string><key>Name</key></dict>"
      "<key>4</key><dict><key>Name</key><integer>4</integer></dict>"
      "<key>5</key><dict></dict><key>6</key>",
      {{0, {1, 2, 3, 4}}}));
  EXPECT_EQ(Search({.name = "second"}).count, 0);
  EXPECT_EQ(Placed(Search({.name = "first"})), (Numbers{1}));
  EXPECT_EQ(Placed(Search({.name = "4"})), (Numbers{3})) << "a text of any type of value";
  EXPECT_EQ(Search({}).calls.size(), 5u) << "the last key has no value";
}

TEST(SongSearchTracks, TextsAndTermsThatAreNoUtf8MatchNothing) {
  const SongLibrary library(
      std::vector<LibraryTrack>{{1, "caf&#233; noir", "x"}, {2, "caf\u00E9 noir"}}, {{0, {1, 2}}});
  EXPECT_EQ(Placed(Search({.name = "noir"})), (Numbers{1}))
      << "the reference becomes the single byte E9";
  EXPECT_EQ(Search({.name = "caf\xE9"}).count, 0);
  EXPECT_EQ(Placed(Search({.name = "caf\xE9", .artist = "x"})), (Numbers{0}));
}

TEST(SongSearchTracks, WithoutTracksThereIsNothingToReport) {
  for (const std::string& xml :
       {std::string("<plist></plist>"), std::string("<plist><dict></dict></plist>"),
        std::string("<plist><dict><key>Tracks</key><dict></dict></dict></plist>")}) {
    const SongLibrary library(xml);
    const Heard heard = Search({.name = "a"});
    EXPECT_EQ(heard.count, 0) << xml;
    EXPECT_TRUE(heard.calls.empty()) << xml;
  }
}

TEST(SongSearchTracks, WithoutALibraryThereIsNothingToReport) {
  const TemporaryFolder home;
  const ScopedVariable variable("HOME", home.path().c_str());
  EXPECT_EQ(AgentInitializer(), -1);
  const Heard heard = Search({.name = "a"});
  EXPECT_EQ(heard.count, 0);
  EXPECT_TRUE(heard.calls.empty());
  AgentFinalizer();
}

TEST(SongSearchTracks, AFileLoadedAnewIsSearchedAnew) {
  {
    const SongLibrary library(std::vector<LibraryTrack>{{1, "first"}});
    EXPECT_EQ(Search({.name = "first"}).count, 1);
  }
  const SongLibrary library(std::vector<LibraryTrack>{{1, "second"}});
  EXPECT_EQ(Search({.name = "first"}).count, 0);
  EXPECT_EQ(Search({.name = "second"}).count, 1);
}

TEST(SongSearchInLargeTexts, FindsATermBehindMoreTextThanABlockOfTheHeapHolds) {
  const SongLibrary library(std::vector<LibraryTrack>{
      {1, std::string(600'000, 'x') + "needle"}, {2, "needle"}, {3, "x"}});
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Search({.name = "NEEDLE"}).count, 2);
}

TEST(FilterPropMatch, LooksForATermInTheTextOfAKey) {
  const SongLibrary library(std::vector<LibraryTrack>{{1, "Rock &amp; Roll", "Led"}});
  const TBXMLElement* dict = g_pGlobal->tracks[0]->pendingDict;
  EXPECT_EQ(FilterPropMatch(dict, "Name", "& ROLL"), 1);
  EXPECT_EQ(FilterPropMatch(dict, "Name", "led"), 0);
  EXPECT_EQ(FilterPropMatch(dict, "Artist", "led"), 1);
  EXPECT_EQ(FilterPropMatch(dict, "Kind", "fil"), 1) << "any key";
  EXPECT_EQ(FilterPropMatch(dict, "Album", "led"), 0);
  EXPECT_EQ(FilterPropMatch(dict, "Name", ""), 0);
  EXPECT_EQ(FilterPropMatch(nullptr, "Name", "a"), 0);
  EXPECT_EQ(FilterPropMatch(dict, nullptr, "a"), 0);
  EXPECT_EQ(FilterPropMatch(dict, "Name", nullptr), 0);
}

}  // namespace
