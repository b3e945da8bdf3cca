// Every property while memory runs out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "agent/Exports.h"
#include "tests/fault/FailingNew.h"
#include "tests/fault/StateCheck.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/PropertySurvey.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryHome.h"
#include "tests/support/Texts.h"

namespace tavrel::test {
namespace {

namespace faults = tavrel::system::faults;

std::vector<SeenPairs> SeeSongs() {
  std::vector<SeenPairs> songs;
  const PlaylistRecord* all = OpenAllSongs();
  for (std::int32_t i = 0; i < GetSongCount(all); ++i) {
    songs.push_back(SeeSongProperties(kLinkedFunctions, all, i));
  }
  return songs;
}

std::vector<SeenPairs> SeePlaylists() {
  std::vector<SeenPairs> playlists;
  for (std::int32_t group = 0; group < 3; ++group) {
    for (std::int32_t i = 0; i < GetPlaylistCount(group); ++i) {
      playlists.push_back(SeePlaylistProperties(kLinkedFunctions, OpenPlaylist(group, i)));
    }
  }
  return playlists;
}

class PropertyFaults : public testing::Test {
 protected:
  PropertyFaults() : variable_("HOME", home_.path().c_str()) {}

  const TemporaryHome home_;
  const ScopedVariable variable_;
};

// More songs than the track table has room for at once.
constexpr std::int32_t kSongsAsked = 70;
std::string ManySongs() {
  std::string tracks;
  std::string playlists;
  for (int id = 1; id <= kSongsAsked; ++id) {
    const std::string name = TextPair("Name", "song &#38; " + std::to_string(id));
    tracks += Track(id, name);
    if (id % 5 == 0) playlists += Playlist(name, {id});
  }
  return LibraryText({tracks, playlists});
}

TEST_F(PropertyFaults, OfALoadLeaveEveryRecordItsOwnDictionary) {
  home_.WriteLibrary(ManySongs());
  ASSERT_EQ(AgentInitializer(), 0);
  const std::vector<SeenPairs> whole = SeeSongs();
  const std::vector<SeenPairs> playlists = SeePlaylists();
  AgentFinalizer();
  ASSERT_EQ(whole.size(), 70u);
  const CapturedStderr log;
  std::size_t fewest = whole.size();
  WithEachAllocationFailing(10, [&] {
    Inside(AgentInitializer);
    faults::Stop();
    const std::vector<SeenPairs> songs = SeeSongs();
    ASSERT_LE(songs.size(), whole.size());
    EXPECT_TRUE(std::equal(songs.begin(), songs.end(), whole.begin()));
    for (const SeenPairs& playlist : SeePlaylists()) {
      // That of the ringtones has none.
      const bool isOne = std::find(playlists.begin(), playlists.end(), playlist) != playlists.end();
      EXPECT_TRUE(isOne || playlist.empty());
    }
    if (!songs.empty()) fewest = std::min(fewest, songs.size());
    Inside(AgentFinalizer);
  });
  EXPECT_LT(fewest, whole.size()) << "no load has left a part of the songs";
}

// Positions that lead nowhere are never told.
TEST_F(PropertyFaults, OfALoadLeaveNoSongToBeFoundThatHasNoRecord) {
  home_.WriteLibrary(ManySongs());
  const CapturedStderr log;
  SongInfo terms = {};
  char term[] = "song";
  terms.name = term;
  std::int32_t fewest = kSongsAsked;
  WithEachAllocationFailing(10, [&] {
    Inside(AgentInitializer);
    faults::Stop();
    std::int32_t next = 0;
    const auto inOrder = [](std::int32_t index, void* context) {
      auto& expected = *static_cast<std::int32_t*>(context);
      EXPECT_EQ(index, expected);
      ++expected;
      return std::int32_t{1};
    };
    const std::int32_t count = FindSongs(&terms, inOrder, &next);
    EXPECT_EQ(count, next);
    EXPECT_EQ(next, GetSongCount(OpenAllSongs()));
    if (next > 0) fewest = std::min(fewest, next);
    Inside(AgentFinalizer);
  });
  EXPECT_LT(fewest, kSongsAsked) << "no load has left a part of the songs";
}

TEST_F(PropertyFaults, OfQuestionsThereAreNone) {
  home_.WriteLibrary(LibraryText(
      {Track(1, TextPair("K&amp;K", "x") + TextPair("Name", Repeated("&lt;", 5000) + "&bad;")),
       {}}));
  ASSERT_EQ(AgentInitializer(), 0);
  const PlaylistRecord* all = OpenAllSongs();
  char buffer[5001];
  const CapturedStderr log;
  faults::FailAfter(0, false);
  EXPECT_EQ(GetSongProperty(all, 0, "Name", buffer, sizeof buffer), 5001);
  EXPECT_EQ(GetSongProperty(all, 0, "K&K", nullptr, 0), 2);
  EXPECT_EQ(GetLibraryProperty("Library Persistent ID", nullptr, 0), 17);
  EXPECT_EQ(faults::Asked(), 0);
  faults::Stop();
  EXPECT_EQ(buffer, Repeated("<", 5000));
  EXPECT_EQ(log.Messages().size(), 1u);
  AgentFinalizer();
}

std::int32_t CountAndCheck(const char* key, const char* text, const char*, void* context) {
  const std::string lessers = Repeated("<", 600);
  const std::string both = Repeated("<>", 600);
  const std::pair<std::string, std::string> kPairs[] = {
      {"Track ID", "1"},          {"Name", "A&B"}, {"long", lessers}, {"longer", both},
      {Repeated("&", 500), both}, {"last", both}};
  auto& count = *static_cast<std::int32_t*>(context);
  EXPECT_EQ(key, kPairs[count].first);
  EXPECT_EQ(text, kPairs[count].second);
  ++count;
  return 1;
}

// Only long texts with references need any; a visit that finds none ends before the first of them.
TEST_F(PropertyFaults, OfAVisitEndItBeforeThePairThatNeedsTheMemory) {
  home_.WriteLibrary(
      LibraryText({Track(1, TextPair("Name", "A&amp;B") + TextPair("long", Repeated("&lt;", 600)) +
                                TextPair("longer", Repeated("&lt;&gt;", 600)) +
                                TextPair(Repeated("&amp;", 500), Repeated("&lt;&gt;", 600)) +
                                TextPair("last", Repeated("&lt;&gt;", 600))),
                   {}}));
  ASSERT_EQ(AgentInitializer(), 0);
  const PlaylistRecord* all = OpenAllSongs();
  std::vector<std::int32_t> counts;
  const auto visit = [&] {
    std::int32_t count = 0;
    const std::int32_t visited = VisitSongProperties(all, 0, CountAndCheck, &count);
    EXPECT_EQ(visited, count);
    faults::Stop();
    counts.push_back(count);
  };
  for (std::int64_t successes = 0; successes < 4; ++successes) {
    faults::FailAfter(successes, false);
    visit();
  }
  EXPECT_THAT(counts, testing::ElementsAre(2, 3, 4, 6));
  WithEachAllocationFailing(2, [all] {
    std::int32_t count = 0;
    VisitSongProperties(all, 0, CountAndCheck, &count);
    EXPECT_GE(count, 2);
  });
  AgentFinalizer();
}

TEST_F(PropertyFaults, OfAVisitToTextsThatGrowByteByByteThereAreFew) {
  std::string pairs;
  for (std::size_t size = 1024; size < 2048; ++size) {
    pairs += TextPair("K", "&lt;" + std::string(size, 'x'));
  }
  home_.WriteLibrary(LibraryText({Track(1, pairs), {}}));
  ASSERT_EQ(AgentInitializer(), 0);
  const auto goOn = [](const char*, const char*, const char*, void*) { return std::int32_t{1}; };
  const PlaylistRecord* all = OpenAllSongs();
  faults::FailAfter(1000000, false);
  EXPECT_EQ(VisitSongProperties(all, 0, goOn, nullptr), 1025);
  EXPECT_EQ(faults::Asked(), 2);
  faults::Stop();
  AgentFinalizer();
}

TEST_F(PropertyFaults, OfAVisitToAnOrdinarySongThereAreNone) {
  home_.WriteLibrary(LibraryText(
      {Track(1, TextPair("Name", "A&amp;B") +
                    TextPair("Comments", "&#60;" + std::string(900, 'c')) +
                    TextPair("Lyrics", std::string(100000, 'l')) + BooleanPair("Loved", true)),
       {}}));
  ASSERT_EQ(AgentInitializer(), 0);
  const auto goOn = [](const char*, const char*, const char*, void*) { return std::int32_t{1}; };
  const PlaylistRecord* all = OpenAllSongs();
  faults::FailAfter(0, false);
  EXPECT_EQ(VisitSongProperties(all, 0, goOn, nullptr), 5);
  EXPECT_EQ(faults::Asked(), 0);
  faults::Stop();
  AgentFinalizer();
}

}  // namespace
}  // namespace tavrel::test
