#include <gtest/gtest.h>

#include <map>
#include <string>

#include "host/library/TextHash.h"
#include "host/library/TextNumbers.h"

namespace tavrel::host {
namespace {

// The key and the texts of the algorithm's published example.
constexpr HashSeed kSeed{0x0706050403020100u, 0x0F0E0D0C0B0A0908u};

TEST(SeededHash, IsSipHash24) {
  std::string text;
  for (char byte = 0; byte < 17; ++byte) text += byte;
  const auto ofFirst = [&text](std::size_t bytes) {
    return SeededHash(std::string_view(text).substr(0, bytes), kSeed);
  };
  EXPECT_EQ(ofFirst(0), 0x726FDB47DD0E0E31u);
  EXPECT_EQ(ofFirst(1), 0x74F839C593DC67FDu);
  EXPECT_EQ(ofFirst(7), 0xAB0200F58B01D137u);
  EXPECT_EQ(ofFirst(8), 0x93F5F5799A932462u);
  EXPECT_EQ(ofFirst(9), 0x9E0082DF0BA9E4B0u);
  EXPECT_EQ(ofFirst(15), 0xA129CA6149BE45E5u);
  EXPECT_EQ(ofFirst(16), 0x3F2ACC7F57C29BDBu);
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

TEST(TextNumbers, AreThoseOfAnOrdinaryMap) {
  TextNumbers numbers;
  std::map<std::string, std::size_t> wanted;
  for (std::size_t i = 0; i < 3000; ++i) {
    // Some come again at once, others much later; one is empty, and some begin as others do.
    for (const std::size_t word : {i, i, i * i % 1009}) {
      const std::string text(word % 7, static_cast<char>('a' + word % 26));
      const std::string whole = word == 5 ? std::string() : text + std::to_string(word / 2);
      const auto [entry, isNew] = wanted.try_emplace(whole, wanted.size());
      const TextNumbers::Found found = numbers.Of(whole);
      ASSERT_EQ(found.number, entry->second) << whole;
      ASSERT_EQ(found.isNew, isNew) << whole;
    }
  }
  EXPECT_EQ(numbers.Size(), wanted.size());
  for (const auto& [text, number] : wanted) {
    EXPECT_EQ(numbers.Find(text), number) << text;
    EXPECT_EQ(numbers.Text(number), text);
  }
  EXPECT_EQ(numbers.Find("none of them"), std::nullopt);
  EXPECT_EQ(TextNumbers().Find(""), std::nullopt);
}

TEST(TextNumbers, TakeAZeroByteForAnyOther) {
  TextNumbers numbers;
  EXPECT_EQ(numbers.Of(std::string("a\0b", 3)).number, 0u);
  EXPECT_EQ(numbers.Of(std::string("a\0c", 3)).number, 1u);
  EXPECT_EQ(numbers.Of("a").number, 2u);
  EXPECT_FALSE(numbers.Of(std::string("a\0b", 3)).isNew);
}

}  // namespace
}  // namespace tavrel::host
