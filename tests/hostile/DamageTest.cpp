// A good library file, damaged in every place: whatever is left, a host gets through it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/hostile/HostileHome.h"
#include "tests/support/LibraryTexts.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Soak.h"

using namespace tavrel::test;

namespace {

// Under sanitizers only every so many places.
constexpr std::size_t kStride = kSlow ? 7 : 1;

// What stays true of every damaged copy of the small library.
void ExpectNoMoreThanTheWhole(const Outcome& outcome, std::size_t songs, std::size_t playlists) {
  EXPECT_LE(outcome.songs.size(), songs);
  EXPECT_LE(outcome.playlists.size(), playlists);
  if (!outcome.loaded) {
    EXPECT_EQ(outcome.log, std::vector<std::string>{"Open iTunes Library file error!"});
  }
}

}  // namespace

TEST(HostileDamage, TruncatedAtEveryByte) {
  const HostileHome home;
  const std::string text = SmallLibraryText();
  const Outcome whole = home.Load(text);
  std::size_t songs = 5;
  for (std::size_t length = text.size(); length-- > 0;) {
    std::filesystem::resize_file(home.home().LibraryFile(), length);
    if (length % kStride != 0) continue;
    const Outcome outcome = home.LoadFile();
    ExpectNoMoreThanTheWhole(outcome, 5, 6);
    if (!outcome.loaded) continue;  // cut inside a character, or before the first element
    EXPECT_LE(outcome.songs.size(), songs) << length;  // a shorter file never holds more
    songs = outcome.songs.size();
    for (std::size_t i = 0; i + 1 < songs; ++i) EXPECT_EQ(outcome.songs[i], whole.songs[i]);
  }
  EXPECT_EQ(songs, 0u);
}

TEST(HostileDamage, EveryByteReplacedByAMarkup) {
  const HostileHome home;
  const std::string text = SmallLibraryText();
  // All of them in scripts/soak.
  const std::size_t stride = IsSoaking() ? 1 : 10 * kStride;
  for (const char markup : {'<', '>', '/', '"', '\0'}) {
    for (std::size_t at = 0; at < text.size(); at += stride) {
      std::string damaged = text;
      damaged[at] = markup;
      // A '<' or a '/' more can turn what was inside an element into its neighbour.
      ExpectNoMoreThanTheWhole(home.Load(damaged), 200, 200);
    }
  }
}

// One bit of every so many bytes, which goes round; each of each byte, and all at once, in scripts/soak.
TEST(HostileDamage, EveryByteFlipped) {
  const HostileHome home;
  const std::string text = SmallLibraryText();
  const std::size_t stride = IsSoaking() ? 1 : 5 * kStride;
  std::int64_t files = 0;
  for (unsigned round = 0; round < (IsSoaking() ? 9u : 1u); ++round) {
    for (std::size_t at = 0; at < text.size(); at += stride, ++files) {
      const unsigned bit = (static_cast<unsigned>(at) + round) % 8;
      const unsigned flipped = round == 8 ? 0xFFu : 1u << bit;
      std::string damaged = text;
      damaged[at] = static_cast<char>(static_cast<unsigned char>(damaged[at]) ^ flipped);
      ExpectNoMoreThanTheWhole(home.Load(damaged), 200, 200);
    }
  }
  PrintFigure(files, "library files with one byte flipped");
}

TEST(HostileDamage, PiecesRemovedRepeatedAndMovedAtRandom) {
  const HostileHome home;
  const std::string text = SmallLibraryText();
  Random random(42);
  for (int round = 0; round < Rounds(1500); ++round) {
    std::string damaged = text;
    for (std::size_t steps = random.Below(4) + 1; steps > 0; --steps) {
      const std::size_t at = random.Below(damaged.size());
      const std::string piece = damaged.substr(at, random.Below(200) + 1);
      if (random.Below(3) > 0) damaged.erase(at, piece.size());
      if (random.Below(3) > 0) damaged.insert(random.Below(damaged.size() + 1), piece);
      if (damaged.empty()) damaged.assign(1, '<');
    }
    const Outcome outcome = home.Load(damaged);
    if (testing::Test::HasFailure()) FAIL() << damaged;
  }
}

TEST(HostileDamage, RandomMarkup) {
  const HostileHome home;
  Random random(43);
  for (int round = 0; round < Rounds(1500); ++round) {
    const std::string text = random.Text(
        {"<plist>", "<dict>",   "<dict>",   "<array>",   "</dict>",  "</array>",
         "<key>",   "</key>",   "Name",     "Visible",   "Track ID", "<integer>7</integer>",
         "<true/>", "<false/>", "<string>", "</string>", "<",        ">",
         "/",       "&",        "&#38;",    "&lt",       ";",        "<![CDATA[",
         "]]>",     "<!--",     "-->",      "\"",        "'",        " a=",
         "\n",      "\u00e9"},
        random.Below(60));
    const Outcome outcome = home.Load(text);
    if (testing::Test::HasFailure()) FAIL() << text;
  }
}

TEST(HostileDamage, EverySingleByteAsAFile) {
  const HostileHome home;
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_FALSE(home.Load(std::string(1, static_cast<char>(byte))).loaded) << byte;
  }
}

TEST(HostileDamage, EveryShortMixOfMarkupBytesAsAFile) {
  const HostileHome home;
  const std::string bytes = "<>/!a\"";
  for (std::size_t first = 0; first < 6 * 6 * 6 * 6; ++first) {
    std::string text;
    for (std::size_t rest = first, i = 0; i < 4; ++i, rest /= 6) text += bytes[rest % 6];
    const Outcome outcome = home.Load(text);
    EXPECT_TRUE(outcome.songs.empty() && outcome.playlists.empty()) << text;
  }
}
