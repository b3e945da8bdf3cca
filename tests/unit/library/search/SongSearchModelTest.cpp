// The search over columns tells exactly what the plain search tells: calls, count and log lines.
#include <gtest/gtest.h>

#include "library/search/PlainSearch.h"
#include "library/tracks/TrackTable.h"
#include "tests/reference/SearchModel.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/SongLibrary.h"

namespace {

using namespace tavrel::test;

const std::vector<std::string_view> kModelPieces = {
    "a", "b",      "B",      "e\u0301", "\u00C9", "ss", "\u00DF", " ",
    "a", "&amp;",  "&#38;",  "&",       "&nbsp;", ";",  "&#233;", "love",
    "b", "\uAC00", "\u11A8", "\u0301",  "&#x61;", "&;", "\u212A", "\u65E5\u672C"};

Text RandomText(Random& random, std::size_t most) {
  if (random.Below(6) == 0) return std::nullopt;
  return random.Text(kModelPieces, random.Below(most));
}

std::vector<LibraryTrack> RandomTracks(Random& random) {
  std::vector<LibraryTrack> tracks;
  Text artist;
  Text album;
  std::int32_t id = 0;
  for (std::size_t count = random.Below(60); count > 0; --count) {
    if (random.Below(3) == 0) artist = RandomText(random, 4);
    if (random.Below(4) == 0) album = RandomText(random, 4);
    id += static_cast<std::int32_t>(random.Below(3));
    tracks.push_back({id, RandomText(random, 6), artist, album});
  }
  return tracks;
}

const std::vector<std::string_view> kTermPieces = {
    "a", "b", "\u00E9", "s", "\u00DF", "&", ";", "lo", "VE", "\uAC01", "k", " ", "\u672C"};

Terms RandomTerms(Random& random) {
  const auto term = [&random]() -> Text {
    if (random.Below(3) == 0) return std::nullopt;
    if (random.Below(12) == 0) return "\xFF";
    return random.Text(kTermPieces, random.Below(3));
  };
  return {term(), term(), term()};
}

TEST(SongSearchModel, RandomLibrariesAreSearchedAsThePlainSearchDoes) {
  Random random(4);
  int matches = 0;
  for (int round = 0; round < Rounds(150); ++round) {
    const SongLibrary library(RandomTracks(random), {{0, {1, 5, 9}}, {4, {9, 20}}});
    for (int search = 0; search < 12; ++search) {
      const Terms terms = RandomTerms(random);
      const std::size_t end = random.Below(90);
      const auto stop = [end](std::size_t call) { return call < end ? 1 : 0; };
      const Heard heard = Search(terms, stop);
      ASSERT_EQ(heard, SearchInPlainForm(terms, stop))
          << "round " << round << ", search " << search;
      matches += heard.count;
    }
  }
  EXPECT_GT(matches, Rounds(150) * 6);
}

// The plain search, in turn, answers as the model of the text search does.
TEST(SongSearchModel, ThePlainSearchFindsWhatTheModelFinds) {
  Random random(5);
  for (int round = 0; round < Rounds(600); ++round) {
    const std::string text =
        random.Text({"a", "e\u0301", "\u00DF", "s", "B", "\uAC00", "\u11A8"}, random.Below(8));
    const std::string term = random.Text({"a", "\u00E9", "s", "b", "\uAC01"}, random.Below(4));
    const SongLibrary library(std::vector<LibraryTrack>{{1, text}});
    ASSERT_EQ(SearchInPlainForm({.name = term}).count, ContainsByModel(text, term) ? 1 : 0)
        << text << " / " << term;
  }
}

}  // namespace
