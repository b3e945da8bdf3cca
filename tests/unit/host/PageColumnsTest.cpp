#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/page/Columns.h"
#include "host/page/NumberRoom.h"
#include "host/page/SongBlock.h"
#include "tests/support/Random.h"

namespace tavrel::host {
namespace {

// As the page's scripts read them.
std::vector<std::int64_t> Unpacked(const PackedNumbers& packed) {
  std::vector<std::int64_t> numbers;
  std::uint64_t value = 0;
  unsigned shift = 0;
  std::int64_t before = 0;
  for (const char letter : packed.bytes) {
    const auto byte = static_cast<unsigned char>(letter);
    value |= std::uint64_t{byte & 0x7Fu} << shift;
    shift += 7;
    if (byte >= 0x80) continue;
    const auto number = static_cast<std::int64_t>((value >> 1) ^ (0 - (value & 1)));
    before = packed.areDifferences ? before + number : number;
    numbers.push_back(before);
    value = shift = 0;
  }
  EXPECT_EQ(shift, 0u) << "the last number is cut off";
  return numbers;
}

TEST(PackedNumbers, AreThoseThatWerePacked) {
  std::vector<std::int64_t> numbers{0};
  for (unsigned bits = 1; bits < 54; ++bits) {
    for (const std::int64_t away : {-1, 0, 1}) numbers.push_back((std::int64_t{1} << bits) + away);
  }
  EXPECT_EQ(Unpacked(Pack(numbers)), numbers);
  for (std::int64_t& number : numbers) number = -number;
  EXPECT_EQ(Unpacked(Pack(numbers)), numbers);
  for (const std::int64_t last : {0, 63, 64, 8191, 8192, 1 << 20}) {
    const std::vector<std::int64_t> alone{last};
    const PackedNumbers packed = Pack(alone);
    EXPECT_EQ(Unpacked(packed), alone);
    EXPECT_EQ(packed.bytes.size(), last < 64 ? 1u : last < 8192 ? 2u : last < 1 << 20 ? 3u : 4u);
  }
}

TEST(PackedNumbers, AreDifferencesWhereThatIsShorter) {
  std::vector<std::int64_t> rising;
  for (std::int64_t i = 0; i < 1000; ++i) rising.push_back(100000 + i);
  const PackedNumbers packed = Pack(rising);
  EXPECT_TRUE(packed.areDifferences);
  EXPECT_EQ(packed.bytes.size(), 1002u);
  EXPECT_EQ(Unpacked(packed), rising);
  EXPECT_FALSE(Pack(std::array<std::int64_t, 3>{5, 60, 1}).areDifferences);
}

TEST(TextColumn, IsTheSameForManySongsAsForEachOfThem) {
  test::Random random(33);
  NumberRoom room;
  constexpr std::size_t kSongs = 50 * 40 * 2 + 1;
  TextColumn one(room.Take(kSongs));
  TextColumn many(room.Take(kSongs));
  std::size_t song = 0;
  for (int block = 0; block < 50; ++block) {
    std::vector<std::string> texts;
    for (std::size_t i = random.Below(40); i > 0; --i) {
      const bool isSame = !texts.empty() && random.Below(2) == 0;
      texts.push_back(isSame ? texts.back() : random.Text({"a", "e\u0301", "\u00E9", " "}, 3));
    }
    std::vector<SongText> songs;
    for (const std::string& text : texts) {
      song += 1 + random.Below(2);
      songs.push_back({song, text});
      one.Set(song, text);
    }
    many.Add(songs);
  }
  EXPECT_THAT(many.Numbers(), testing::ElementsAreArray(one.Numbers()));
  ASSERT_EQ(many.TextCount(), one.TextCount());
  for (std::size_t i = 0; i < one.TextCount(); ++i) EXPECT_EQ(many.Text(i), one.Text(i));
}

TEST(SongBlock, TakesTheFirstOfTwoEqualKeysOfASong) {
  SongBlock block;
  block.Add(IndexOf(Field::Name), "first");
  block.Add(IndexOf(Field::Artist), nullptr);
  block.Add(IndexOf(Field::Name), "second");
  block.Add(IndexOf(Field::Artist), "too late");
  block.EndSong();
  block.EndSong();
  block.Add(IndexOf(Field::Name), "third");
  block.EndSong();
  EXPECT_EQ(block.Songs(), 3u);
  FieldReader names(block, Field::Name);
  FieldReader artists(block, Field::Artist);
  EXPECT_EQ(names.Of(0), "first");
  EXPECT_EQ(names.Of(1), std::nullopt);
  EXPECT_EQ(names.Of(2), "third");
  EXPECT_EQ(artists.Of(0), std::nullopt);
  std::string all;
  block.ForEachText(IndexOf(Field::Name), [&all](std::size_t song, std::string_view text) {
    all += std::to_string(song) + std::string(text) + " ";
  });
  EXPECT_EQ(all, "0first 2third ");
  block.Clear();
  EXPECT_EQ(FieldReader(block, Field::Name).Of(0), std::nullopt);
}

}  // namespace
}  // namespace tavrel::host
