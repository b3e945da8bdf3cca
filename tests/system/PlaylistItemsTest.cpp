// Which tracks the items of a playlist find: those of a binary search through the track table as it
// stands, whatever quicker way the library takes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "tests/support/LibraryTexts.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/Random.h"
#include "tests/support/TemporaryHome.h"

using namespace tavrel::test;

namespace {

using Ids = std::vector<std::int32_t>;

// The position in the table that the search ends at; -1 when it finds nothing.
std::int32_t Search(const Ids& table, std::int32_t id) {
  std::int32_t low = 0;
  auto high = static_cast<std::int32_t>(table.size()) - 1;
  while (low <= high) {
    const std::int32_t middle = (low + high) / 2;
    const std::int32_t found = table[static_cast<std::size_t>(middle)];
    if (id == found) return middle;
    if (id > found) {
      low = middle + 1;
    } else {
      high = middle - 1;
    }
  }
  return -1;
}

// What stands at the start of a playlist's record.
struct Tracks {
  const void* const* tracks;
  std::int32_t capacity;
  std::int32_t count;
};

Tracks TracksOf(const PlaylistRecord* playlist) {
  Tracks tracks;
  std::memcpy(&tracks, playlist, sizeof tracks);
  return tracks;
}

// Loads a library of such tracks with a playlist of such items, and compares.
void ExpectItemsFound(const Ids& table, const Ids& items) {
  std::string trackText;
  std::string itemText;
  std::vector<std::int32_t> expected;
  for (const std::int32_t id : table) trackText += Track(id);
  for (const std::int32_t id : items) {
    itemText += PlaylistItem(id);
    const std::int32_t position = Search(table, id);
    if (position >= 0) expected.push_back(position);
  }
  const TemporaryHome home;
  home.WriteLibrary(
      LibraryText({trackText, "<dict><key>Items</key><array>" + itemText + "</array></dict>"}));
  const LoadedLibrary library(home.path());
  const Tracks all = TracksOf(library->openAllSongs());
  const Tracks found = TracksOf(library->openPlaylist(2, 0));
  std::vector<std::int32_t> positions;
  for (std::int32_t i = 0; i < found.count; ++i) {
    positions.push_back(static_cast<std::int32_t>(
        std::find(all.tracks, all.tracks + all.count, found.tracks[i]) - all.tracks));
  }
  EXPECT_EQ(positions, expected);
}

// Every ID of the table, their neighbours and the ends of the range.
Ids EverythingNear(const Ids& table) {
  Ids items = {INT32_MIN, -1, 0, INT32_MAX};
  for (const std::int32_t id : table) {
    for (const std::int64_t near : {id - std::int64_t{1}, std::int64_t{id}, id + std::int64_t{1}}) {
      if (near >= INT32_MIN && near <= INT32_MAX) items.push_back(static_cast<std::int32_t>(near));
    }
  }
  return items;
}

Ids Ascending(std::size_t count, std::int32_t first, std::int32_t step) {
  Ids ids(count);
  for (std::size_t i = 0; i < count; ++i) ids[i] = first + step * static_cast<std::int32_t>(i);
  return ids;
}

}  // namespace

TEST(PlaylistItems, AreFoundInTablesWithoutGaps) {
  for (const std::size_t count : {1u, 2u, 31u, 32u, 33u, 100u}) {
    ExpectItemsFound(Ascending(count, 1, 1), EverythingNear(Ascending(count, 1, 1)));
  }
}

TEST(PlaylistItems, AreFoundInTablesWithGapsOfAnySize) {
  for (const std::int32_t step : {2, 7, 8, 9, 1000, 20000000}) {
    const Ids table = Ascending(100, -50, step);
    ExpectItemsFound(table, EverythingNear(table));
  }
}

TEST(PlaylistItems, AreFoundAtTheEndsOfTheRange) {
  ExpectItemsFound(Ascending(64, INT32_MIN, 1), EverythingNear(Ascending(64, INT32_MIN, 1)));
  ExpectItemsFound(Ascending(64, INT32_MAX - 63, 1),
                   EverythingNear(Ascending(64, INT32_MAX - 63, 1)));
  Ids ends = Ascending(40, -20, 1);
  ends.insert(ends.begin(), INT32_MIN);
  ends.push_back(INT32_MAX);
  ExpectItemsFound(ends, EverythingNear(ends));
}

TEST(PlaylistItems, OfRepeatedTrackIdsFindTheOneThatTheSearchMeets) {
  Ids table = Ascending(60, 1, 1);
  table[20] = table[21] = table[22];
  ExpectItemsFound(table, EverythingNear(table));
  ExpectItemsFound(Ids(50, 7), {6, 7, 8, 7});
}

TEST(PlaylistItems, OfTablesOutOfOrderAreLostWhereTheSearchMissesThem) {
  tavrel::test::Random random(11);
  for (int round = 0; round < 20; ++round) {
    Ids table = Ascending(40 + random.Below(40), 1, 1);
    for (std::size_t swaps = random.Below(20) + 1; swaps > 0; --swaps) {
      std::swap(table[random.Below(table.size())], table[random.Below(table.size())]);
    }
    ExpectItemsFound(table, EverythingNear(table));
  }
}
