#include <gtest/gtest.h>

#include <array>
#include <string>

#include "agent/Exports.h"
#include "library/file/PersistentId.h"
#include "tests/support/GuardedPages.h"

namespace {

using IdBytes = std::array<std::uint8_t, 8>;

IdBytes ReadId(const char* text) {
  IdBytes bytes = {};
  EXPECT_EQ(PersistentId2Buf(text, bytes.data()), 8) << text;
  return bytes;
}

}  // namespace

TEST(PersistentId2Buf, KeepsTheOrderOfTheDigits) {
  EXPECT_EQ(ReadId("0123456789ABCDEF"), (IdBytes{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}));
  EXPECT_EQ(ReadId("fedcba9876543210"), (IdBytes{0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10}));
  EXPECT_EQ(ReadId("00000000000000FF"), (IdBytes{0, 0, 0, 0, 0, 0, 0, 0xFF}));
}

TEST(PersistentId2Buf, LeavesTheBytesAloneForAShortText) {
  IdBytes bytes = {1, 2, 3, 4, 5, 6, 7, 8};
  const IdBytes before = bytes;
  EXPECT_EQ(PersistentId2Buf("0123456789ABCDE", bytes.data()), 0);
  EXPECT_EQ(PersistentId2Buf("", bytes.data()), 0);
  EXPECT_EQ(PersistentId2Buf(nullptr, bytes.data()), 0);
  EXPECT_EQ(bytes, before);
  EXPECT_EQ(PersistentId2Buf("0123456789ABCDEF", nullptr), 0);
}

TEST(PersistentId2Buf, IgnoresWhatFollowsTheSixteenthCharacter) {
  EXPECT_EQ(ReadId("0123456789ABCDEF0"), ReadId("0123456789ABCDEF"));
  EXPECT_EQ(ReadId("0123456789ABCDEF and more"), ReadId("0123456789ABCDEF"));
}

TEST(PersistentId2Buf, CountsTheLeadingDigitsOfAPair) {
  EXPECT_EQ(ReadId("7xx7g1 1-1+1xA0x"), (IdBytes{0x07, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(ReadId("1.2.3.4.5.6.7.8."), (IdBytes{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(ReadId("Fg\xC3\xA9\t5\n5-5+5 50x"), (IdBytes{0x0F, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(PersistentId2Buf, ReadsNoFurtherThanItMust) {
  tavrel::test::GuardedPages pages(32);
  IdBytes bytes = {};
  EXPECT_EQ(PersistentId2Buf(pages.PlaceAtEnd("0123456789ABCDEF"), bytes.data()), 8);
  EXPECT_EQ(PersistentId2Buf(pages.PlaceAtEnd("0123456789ABCDE"), bytes.data()), 0);
}
