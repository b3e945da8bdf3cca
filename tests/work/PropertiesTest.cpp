// What it costs to ask for properties, and to find songs: one walk over one dictionary, the columns, and
// nothing else of the library.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tavrel/tavrel.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryHome.h"
#include "tests/support/Texts.h"
#include "tests/work/WorkCount.h"

namespace tavrel::test {
namespace {

class Loaded {
 public:
  explicit Loaded(const LibraryParts& parts) : variable_("HOME", home_.path().c_str()) {
    home_.WriteLibrary(LibraryText(parts));
    EXPECT_EQ(AgentInitializer(), 0);
  }
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;
  ~Loaded() { AgentFinalizer(); }

 private:
  const TemporaryHome home_;
  const ScopedVariable variable_;
};

std::int32_t GoOnAsking(const char*, const char*, const char*, void*) {
  return 1;
}

WorkCount WorkOfAVisit(const std::string& pairs, std::int32_t count) {
  const Loaded library({Track(1, pairs), {}});
  return WorkOf(
      [&] { EXPECT_EQ(VisitSongProperties(OpenAllSongs(), 0, GoOnAsking, nullptr), count + 1); });
}

WorkCount WorkOfAQuestion(const std::string& pairs, std::int32_t size) {
  const Loaded library({Track(1, pairs), {}});
  return WorkOf([&] { EXPECT_EQ(GetSongProperty(OpenAllSongs(), 0, "Last", nullptr, 0), size); });
}

constexpr int kFew = 2000;
constexpr int kTimesAsMany = 8;

TEST(PropertyWork, OfAVisitAndOfAQuestionIsLinearInTheNumberOfPairs) {
  for (const std::string& pair :
       {TextPair("Key", "text"), TextPair("Key", "A&amp;B"), TextPair("La&#115;&#116;s", "&lt;")}) {
    const auto pairs = [&](int count) { return Repeated(pair, static_cast<std::size_t>(count)); };
    ExpectLinear(WorkOfAVisit(pairs(kFew), kFew),
                 WorkOfAVisit(pairs(kTimesAsMany * kFew), kTimesAsMany * kFew), kTimesAsMany, kFew);
    const std::string last = TextPair("Last", "x");
    ExpectLinear(WorkOfAQuestion(pairs(kFew) + last, 2),
                 WorkOfAQuestion(pairs(kTimesAsMany * kFew) + last, 2), kTimesAsMany, kFew);
  }
}

TEST(PropertyWork, OfAQuestionEndsAtItsKey) {
  const auto work = [](std::size_t count) {
    const Loaded library({Track(1, Repeated(TextPair("Key", "text"), count)), {}});
    return WorkOf([] { EXPECT_EQ(GetSongProperty(OpenAllSongs(), 0, "Track ID", nullptr, 0), 2); });
  };
  EXPECT_EQ(work(10), work(1000));
}

TEST(PropertyWork, OfAVisitIsLinearInTheLengthOfItsTexts) {
  const auto growing = [](std::size_t count) {
    std::string pairs;
    for (std::size_t i = 0; i < count; ++i) {
      pairs += TextPair("Key", "&lt;" + std::string(1000 + i, 'x'));
    }
    return pairs;
  };
  const std::string small = growing(100);
  const std::string large = growing(800);
  ExpectLinear(WorkOfAVisit(small, 100), WorkOfAVisit(large, 800),
               (large.size() + small.size() - 1) / small.size(), small.size());
  const auto references = [](std::size_t count) {
    return TextPair("Last", Repeated("&#65;", count));
  };
  ExpectLinear(WorkOfAQuestion(references(kFew), kFew + 1),
               WorkOfAQuestion(references(kTimesAsMany * kFew), kTimesAsMany * kFew + 1),
               kTimesAsMany, kFew);
}

TEST(PropertyWork, IsTheSameHoweverManySongsAndPlaylistsThereAre) {
  const auto workIn = [](int others) {
    std::string tracks = Track(1, TextPair("Name", "first"));
    std::string playlists = Playlist(TextPair("Name", "p"), {1});
    for (int id = 2; id < others; ++id) {
      tracks += Track(id, TextPair("Name", "other"));
      playlists += Playlist(TextPair("Name", "p"), {id});
    }
    const Loaded library({tracks, playlists});
    return WorkOf([] {
      EXPECT_EQ(GetSongProperty(OpenPlaylist(2, 0), 0, "Name", nullptr, 0), 6);
      EXPECT_EQ(VisitSongProperties(OpenPlaylist(2, 0), 0, GoOnAsking, nullptr), 2);
      EXPECT_EQ(GetPlaylistProperty(OpenPlaylist(2, 0), "Name", nullptr, 0), 2);
    });
  };
  EXPECT_EQ(workIn(10), workIn(1000));
}

// A search has to find the playlist of a match; this one does not even know that there are any.
TEST(PropertyWork, OfFindingSongsDoesNotDependOnPlaylists) {
  const auto workWith = [](int playlistCount) {
    std::string tracks;
    std::string playlists;
    for (int id = 1; id <= 200; ++id) tracks += Track(id, TextPair("Name", "song"));
    for (int i = 0; i < playlistCount; ++i) {
      playlists += Playlist(TextPair("Name", "p"), {1, 2, 200});
    }
    const Loaded library({tracks, playlists});
    return WorkOf([] {
      SongInfo terms = {};
      char term[] = "song";
      terms.name = term;
      const auto goOn = [](std::int32_t, void*) { return std::int32_t{1}; };
      EXPECT_EQ(FindSongs(&terms, goOn, nullptr), 200);
    });
  };
  // With fewer, the walk over the songs looks less far ahead.
  EXPECT_EQ(workWith(100), workWith(300));
}

// Each miss costs a search a call; here it costs nothing but its texts.
TEST(PropertyWork, OfFindingWhatIsNotThereIsThatOfLookingOverTheColumns) {
  constexpr int kTracks = 4000;
  std::string tracks;
  for (int id = 1; id <= kTracks; ++id) tracks += Track(id, TextPair("Name", "song"));
  const Loaded library({tracks, {}});
  SongInfo terms = {};
  char term[] = "zqx";
  terms.name = terms.artist = terms.album = term;
  const auto find = [&] {
    const auto goOn = [](std::int32_t, void*) { return std::int32_t{1}; };
    EXPECT_EQ(FindSongs(&terms, goOn, nullptr), 0);
  };
  find();
  EXPECT_LT(WorkOf(find).steps, std::uint64_t{kTracks} / 8);
}

}  // namespace
}  // namespace tavrel::test
