// Rows of songs whose columns are known only at the end.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "host/commands/SongRows.h"

namespace tavrel::host {
namespace {

using KeyedValues = std::vector<std::pair<const char*, const char*>>;

// Other keys come with the third song, and with the last one.
const std::array<KeyedValues, 5>& KeyedSongs() {
  static const std::array<KeyedValues, 5> songs{{{{"Name", "a"}, {"Mood", "calm"}},
                                                 {{"Name", "b"}},
                                                 {{"Name", "c"}, {"Key", "D"}, {"Mood", "wild"}},
                                                 {{"Name", "d"}, {"Mood", nullptr}},
                                                 {{"Name", "e"}, {"Last", "x"}, {"Last", "y"}}}};
  return songs;
}

int songVisits = 0;

LibraryFunctions LibraryOfKeyedSongs() {
  LibraryFunctions functions{};
  functions.getSongCount = [](const PlaylistRecord*) noexcept {
    return static_cast<std::int32_t>(KeyedSongs().size());
  };
  functions.visitSongProperties = [](const PlaylistRecord*, std::int32_t index,
                                     PropertyVisitor visitor, void* context) noexcept {
    ++songVisits;
    std::int32_t count = 0;
    for (const auto& [key, text] : KeyedSongs().at(static_cast<std::size_t>(index))) {
      ++count;
      if (visitor(key, text, "string", context) == 0) break;
    }
    return count;
  };
  return functions;
}

// "0 name|value|value", with '-' for a key that came later.
class PlainRows final : public SongRows {
 public:
  explicit PlainRows(const SongColumns& columns) : columns_(columns) {}

  std::string_view Begun(const SongRecord& song) override {
    begun_ = song.Text(Field::Name).value_or("");
    for (std::size_t key = 0; key < columns_.keys.All().size(); ++key) {
      begun_.append(1, '|').append(song.Other(key).text.value_or(""));
    }
    return begun_;
  }
  void WriteHead() override {
    for (const std::string& key : columns_.keys.All()) written_.append(key).append(1, ' ');
  }
  void Write(std::string_view begun, std::size_t keys, std::int32_t position) override {
    written_.append(1, '\n').append(std::to_string(position)).append(1, ' ').append(begun);
    for (; keys < columns_.keys.All().size(); ++keys) written_ += "|";
  }
  void WriteEnd() override { written_ += "\nend"; }

  [[nodiscard]] const std::string& Written() const { return written_; }

 private:
  const SongColumns& columns_;
  std::string begun_;
  std::string written_;
};

std::string WrittenRowsOf(const std::vector<std::int32_t>& positions, std::size_t mostHeld,
                          bool withAllKeys = true) {
  const LibraryFunctions library = LibraryOfKeyedSongs();
  SongColumns columns{.fields = {Field::Name}, .withAllKeys = withAllKeys};
  PlainRows rows(columns);
  songVisits = 0;
  WriteSongRows(library, nullptr, positions, columns, rows, mostHeld);
  return rows.Written();
}

constexpr char kWholeRows[] =
    "Mood Key Last \n0 a|calm||\n1 b|||\n2 c|wild|D|\n3 d|||\n4 e|||x\nend";

TEST(SongRows, AreTheSameHoweverManyOfThemWait) {
  constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();
  EXPECT_EQ(WrittenRowsOf({0, 1, 2, 3, 4}, kNoLimit), kWholeRows);
  EXPECT_EQ(songVisits, 5) << "each song is read once";
  for (std::size_t most = 0; most < 40; ++most) {
    EXPECT_EQ(WrittenRowsOf({0, 1, 2, 3, 4}, most), kWholeRows) << most;
  }
  EXPECT_EQ(WrittenRowsOf({0, 1, 2, 3, 4}, 0), kWholeRows);
  EXPECT_EQ(songVisits, 10);
}

TEST(SongRows, OfSomeSongsHaveTheKeysOfAllInTheOrderOfThePlaylist) {
  EXPECT_EQ(WrittenRowsOf({4, 0}, kMostHeldRows), "Mood Key Last \n4 e|||x\n0 a|calm||\nend");
  EXPECT_EQ(WrittenRowsOf({4, 3, 2, 1, 0}, kMostHeldRows),
            "Mood Key Last \n4 e|||x\n3 d|||\n2 c|wild|D|\n1 b|||\n0 a|calm||\nend");
  EXPECT_EQ(WrittenRowsOf({}, kMostHeldRows), "Mood Key Last \nend");
}

TEST(SongRows, HaveNoOtherKeysUnlessTheyAreAskedFor) {
  EXPECT_EQ(WrittenRowsOf({0, 4}, kMostHeldRows, false), "\n0 a\n4 e\nend");
  EXPECT_EQ(songVisits, 2);
}

}  // namespace
}  // namespace tavrel::host
