#include <gtest/gtest.h>

#include <string>

#include "host/library/TextHash.h"

namespace tavrel::host {
namespace {

// The key and the texts of the algorithm's published example.
constexpr HashSeed kSeed{0x0706050403020100u, 0x0F0E0D0C0B0A0908u};

TEST(SeededHash, IsSipHash24) {
  std::string text;
  for (char byte = 0; byte < 15; ++byte) text += byte;
  EXPECT_EQ(SeededHash(text, kSeed), 0xA129CA6149BE45E5u);
  EXPECT_EQ(SeededHash("", kSeed), 0x726FDB47DD0E0E31u);
}

TEST(SeededHash, DependsOnEveryByteAndOnTheSeed) {
  const std::string text(40, 'x');
  const std::uint64_t whole = SeededHash(text, kSeed);
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::string other = text;
    other[i] = 'y';
    EXPECT_NE(SeededHash(other, kSeed), whole) << i;
    EXPECT_NE(SeededHash(text.substr(0, i), kSeed), whole) << i;
  }
  EXPECT_NE(SeededHash(text, {kSeed[0], kSeed[1] + 1}), whole);
  EXPECT_NE(SeededHash(text, {kSeed[0] + 1, kSeed[1]}), whole);
}

TEST(TextHash, EachTableHasASeedOfItsOwn) {
  const TextHash one;
  const TextHash other;
  EXPECT_NE(one("text"), other("text"));
  EXPECT_EQ(one("text"), one(std::string("text")));
}

}  // namespace
}  // namespace tavrel::host
