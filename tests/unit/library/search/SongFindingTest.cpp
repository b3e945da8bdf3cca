// Finding songs tells of exactly the songs that a search counts, and logs what it logs.
#include <gtest/gtest.h>

#include "agent/Exports.h"
#include "library/State.h"
#include "library/tracks/TrackTable.h"
#include "tests/support/CapturedStderr.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/SongLibrary.h"

namespace {

using namespace tavrel::test;

// What is found, and what is logged meanwhile.
struct Found {
  std::vector<std::int32_t> songs;
  std::vector<std::string> log;

  friend bool operator==(const Found&, const Found&) = default;
};

const char* PointerTo(const Text& text) {
  return text ? text->c_str() : nullptr;
}

// most: after how many songs the callback ends the search.
Found Find(const Terms& terms, std::size_t most = SIZE_MAX) {
  struct Listener {
    std::vector<std::int32_t> songs;
    std::size_t most;
  } listener = {{}, most};
  SongInfo info = {};
  info.name = const_cast<char*>(PointerTo(terms.name));
  info.artist = const_cast<char*>(PointerTo(terms.artist));
  info.album = const_cast<char*>(PointerTo(terms.album));
  const auto keep = [](std::int32_t index, void* context) {
    auto& heard = *static_cast<Listener*>(context);
    heard.songs.push_back(index);
    return std::int32_t{heard.songs.size() < heard.most ? 1 : 0};
  };
  const CapturedStderr log;
  const std::int32_t count = FindSongs(&info, keep, &listener);
  EXPECT_EQ(count, static_cast<std::int32_t>(listener.songs.size()));
  return {listener.songs, log.Messages()};
}

// Track by track, term by term.
Found FindLiterally(const Terms& terms, std::size_t most = SIZE_MAX) {
  Found found;
  const CapturedStderr log;
  for (std::int32_t i = 0; i < g_pGlobal->trackCount && found.songs.size() < most; ++i) {
    const TBXMLElement* dict = g_pGlobal->tracks[i]->pendingDict;
    if (FilterPropMatch(dict, "Name", PointerTo(terms.name)) != 0 ||
        FilterPropMatch(dict, "Artist", PointerTo(terms.artist)) != 0 ||
        FilterPropMatch(dict, "Album", PointerTo(terms.album)) != 0) {
      found.songs.push_back(i);
    }
  }
  found.log = log.Messages();
  return found;
}

using Songs = std::vector<std::int32_t>;

// What is remembered here does not count as a leak.
GlobalState* abandonedWhileFinding;

TEST(SongFinding, TellsOfMatchesOnlyInTheFilesOrder) {
  const SongLibrary library(
      std::vector<LibraryTrack>{{5, "Beat It", "Michael", "Thriller"},
                                {5, "HEARTBEAT", "Anna", "Thriller"},
                                {2, "Rock &amp; Roll", "Led", "IV"},
                                {9, "Dvo\u0159\u00E1k", "Beatrice", "Thriller"}});
  EXPECT_EQ(Find({.name = "beat"}).songs, (Songs{0, 1}));
  EXPECT_EQ(Find({.name = "beat", .artist = "BEAT"}).songs, (Songs{0, 1, 3}));
  EXPECT_EQ(Find({.name = "& roll"}).songs, (Songs{2}));
  EXPECT_EQ(Find({.album = "zqxjkv"}).songs, Songs());
  EXPECT_EQ(Find({}).songs, Songs());
  EXPECT_EQ(Find({.name = ""}).songs, Songs());
}

TEST(SongFinding, EndsAtTheSongAtWhichTheCallbackEndsIt) {
  const SongLibrary library(
      std::vector<LibraryTrack>{{1, "a"}, {2, "b"}, {3, "a & b"}, {4, "a & c"}});
  EXPECT_EQ(Find({.name = "a"}, 1).songs, (Songs{0}));
  EXPECT_EQ(Find({.name = "a"}, 1).log.size(), 0u);
  EXPECT_EQ(Find({.name = "a"}, 2).songs, (Songs{0, 2}));
  EXPECT_EQ(Find({.name = "a"}, 2).log.size(), 1u) << "what lies behind is not looked at";
  EXPECT_EQ(Find({.name = "a"}).log.size(), 2u);
}

// As after a load for which there was too little memory.
TEST(SongFinding, TellsOfNoMoreSongsThanTheTableHolds) {
  const SongLibrary library(std::vector<LibraryTrack>{{1, "a"}, {2, "ab"}, {3, "abc"}});
  g_pGlobal->trackCount = 2;
  EXPECT_EQ(Find({.name = "a"}).songs, (Songs{0, 1}));
  EXPECT_EQ(Find({.name = "a"}, 1).songs, (Songs{0}));
  EXPECT_EQ(Find({.name = "c"}).songs, Songs());
  g_pGlobal->trackCount = 3;
  EXPECT_EQ(Find({.name = "a"}).songs, (Songs{0, 1, 2}));
}

TEST(SongFinding, ACallbackMaySearchAndFindAndLoadAnotherLibrary) {
  const SongLibrary library(std::vector<LibraryTrack>{{1, "a"}, {2, "ab"}, {3, "abc"}},
                            {{4, {3, 2, 1}}});
  static int inside;
  inside = 0;
  SongInfo info = {};
  char term[] = "a";
  info.name = term;
  const auto nested = [](std::int32_t index, void*) {
    inside += 100 * static_cast<int>(Find({.name = "b"}).songs.size());
    inside += Search({.name = "c"}).count;
    if (index != 1) return std::int32_t{1};
    abandonedWhileFinding = g_pGlobal;
    return AgentInitializer() + 1;
  };
  EXPECT_EQ(FindSongs(&info, nested, nullptr), 3);
  EXPECT_EQ(inside, 603);
}

TEST(SongFinding, InRandomLibrariesTellsWhatEachTextTells) {
  const std::vector<std::string_view> kPieces = {
      "a", "b",      "B",      "e\u0301", "\u00C9", "ss", "\u00DF", " ",
      "a", "&amp;",  "&#38;",  "&",       "&nbsp;", ";",  "&#233;", "love",
      "b", "\uAC00", "\u11A8", "\u0301",  "&#x61;", "&;", "\u212A", "\u65E5\u672C"};
  const std::vector<std::string_view> kTermPieces = {"a", "b",  "\u00E9", "s",      "\u00DF", "&",
                                                     ";", "lo", "VE",     "\uAC01", "k",      " "};
  Random random(12);
  const auto text = [&](const std::vector<std::string_view>& pieces, std::size_t most) -> Text {
    if (random.Below(4) == 0) return std::nullopt;
    return random.Text(pieces, random.Below(most));
  };
  std::size_t songs = 0;
  std::size_t lines = 0;
  for (int round = 0; round < Rounds(120); ++round) {
    std::vector<LibraryTrack> tracks;
    Text album;
    for (std::size_t count = random.Below(50); count > 0; --count) {
      if (random.Below(3) == 0) album = text(kPieces, 4);
      tracks.push_back(
          {static_cast<std::int32_t>(random.Below(9)), text(kPieces, 6), text(kPieces, 4), album});
    }
    const SongLibrary library(tracks);
    for (int search = 0; search < 8; ++search) {
      const Terms terms = {text(kTermPieces, 3), text(kTermPieces, 3), text(kTermPieces, 3)};
      const std::size_t most = 1 + random.Below(20);
      const Found found = Find(terms, most);
      ASSERT_EQ(found, FindLiterally(terms, most)) << "round " << round << ", search " << search;
      const Heard heard = Search(terms);
      ASSERT_EQ(Find(terms).songs.size(), static_cast<std::size_t>(heard.count));
      songs += found.songs.size();
      lines += found.log.size();
    }
  }
  EXPECT_GT(songs, static_cast<std::size_t>(Rounds(120) * 6));
  EXPECT_GT(lines, static_cast<std::size_t>(Rounds(120) * 8));
}

}  // namespace
