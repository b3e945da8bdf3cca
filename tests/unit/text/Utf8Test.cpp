#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/support/GuardedPages.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "text/Utf8.h"

using tavrel::test::GuardedPages;
using tavrel::text::IsValidUtf8;
using tavrel::text::ValidUtf8Prefix;

namespace {

// The bit pattern of a code point in `size` bytes, whether that is allowed or not.
std::string Encode(std::uint32_t codePoint, int size) {
  if (size == 1) return std::string(1, static_cast<char>(codePoint));
  std::string bytes(static_cast<std::size_t>(size), '\0');
  for (int i = size - 1; i > 0; --i) {
    bytes[static_cast<std::size_t>(i)] = static_cast<char>(0x80 | (codePoint & 0x3F));
    codePoint >>= 6;
  }
  bytes[0] = static_cast<char>((0xF00 >> size & 0xFF) | codePoint);
  return bytes;
}

int ShortestSize(std::uint32_t codePoint) {
  return codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
}

// The rule from the other side: decode whatever the lead byte announces, then ask the value.
std::size_t PrefixByDecoding(const std::string& text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const auto lead = static_cast<unsigned char>(text[at]);
    int size = 0;
    if (lead < 0x80) size = 1;
    if ((lead & 0xE0) == 0xC0) size = 2;
    if ((lead & 0xF0) == 0xE0) size = 3;
    if ((lead & 0xF8) == 0xF0) size = 4;
    if (size == 0 || at + static_cast<std::size_t>(size) > text.size()) return at;
    std::uint32_t value = size == 1 ? lead : lead & (0xFFu >> (size + 1));
    for (int i = 1; i < size; ++i) {
      const auto byte = static_cast<unsigned char>(text[at + static_cast<std::size_t>(i)]);
      if ((byte & 0xC0) != 0x80) return at;
      value = value << 6 | (byte & 0x3Fu);
    }
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value > 0x10FFFF || surrogate || ShortestSize(value) != size) return at;
    at += static_cast<std::size_t>(size);
  }
  return at;
}

}  // namespace

TEST(Utf8, EveryCodePointButTheSurrogatesIsText) {
  for (std::uint32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    ASSERT_EQ(IsValidUtf8(Encode(codePoint, ShortestSize(codePoint))), !surrogate) << codePoint;
  }
}

TEST(Utf8, ValuesAboveTheLastCodePointAreNotText) {
  EXPECT_TRUE(IsValidUtf8("\xF4\x8F\xBF\xBF"));
  EXPECT_FALSE(IsValidUtf8("\xF4\x90\x80\x80"));
  EXPECT_FALSE(IsValidUtf8("\xF5\x80\x80\x80"));
  EXPECT_FALSE(IsValidUtf8("\xF7\xBF\xBF\xBF"));
  EXPECT_FALSE(IsValidUtf8("\xF8\x88\x80\x80\x80"));
  EXPECT_FALSE(IsValidUtf8("\xFC\x84\x80\x80\x80\x80"));
  EXPECT_FALSE(IsValidUtf8("\xFE"));
  EXPECT_FALSE(IsValidUtf8("\xFF"));
}

TEST(Utf8, OverlongFormsAreNotText) {
  for (int size = 2; size <= 4; ++size) {
    for (std::uint32_t codePoint = 0; codePoint < 0x10000; ++codePoint) {
      if (ShortestSize(codePoint) >= size) continue;
      ASSERT_FALSE(IsValidUtf8(Encode(codePoint, size))) << codePoint << " in " << size;
    }
  }
}

TEST(Utf8, ALoneContinuationByteIsNotText) {
  for (int byte = 0x80; byte < 0xC0; ++byte) {
    EXPECT_FALSE(IsValidUtf8(std::string(1, static_cast<char>(byte))));
    EXPECT_EQ(ValidUtf8Prefix(("ab" + std::string(1, static_cast<char>(byte)) + "c").data(), 4),
              2u);
  }
}

TEST(Utf8, AMissingContinuationByteIsNotText) {
  for (const std::string& character : {Encode(0xE9, 2), Encode(0x20AC, 3), Encode(0x1F600, 4)}) {
    for (std::size_t kept = 1; kept < character.size(); ++kept) {
      const std::string cut = character.substr(0, kept);
      EXPECT_FALSE(IsValidUtf8(cut));
      EXPECT_FALSE(IsValidUtf8(cut + "a"));
      EXPECT_FALSE(IsValidUtf8(cut + character));
    }
  }
}

TEST(Utf8, NoncharactersZeroBytesAndAByteOrderMarkAreText) {
  EXPECT_TRUE(IsValidUtf8("\xEF\xBF\xBE"));  // U+FFFE
  EXPECT_TRUE(IsValidUtf8("\xEF\xBF\xBF"));  // U+FFFF
  EXPECT_TRUE(IsValidUtf8("\xEF\xB7\x90"));  // U+FDD0
  EXPECT_TRUE(
      IsValidUtf8("\xEF\xBB\xBF"
                  "<a/>"));  // U+FEFF
  EXPECT_TRUE(IsValidUtf8(std::string("a\0b", 3)));
  EXPECT_TRUE(IsValidUtf8(""));
}

TEST(Utf8, ThePrefixEndsWithTheLastWholeCharacter) {
  const std::string character = Encode(0x1F600, 4);
  for (std::size_t before = 0; before < 80; ++before) {
    const std::string text = std::string(before, 'x') + character + std::string(40, 'y');
    for (std::size_t length = 0; length <= text.size(); ++length) {
      const std::size_t expected = length > before && length < before + 4 ? before : length;
      ASSERT_EQ(ValidUtf8Prefix(text.data(), length), expected) << before << ' ' << length;
    }
  }
}

TEST(Utf8, ABadByteIsFoundAtEveryPlaceOfALongText) {
  for (std::size_t place = 0; place < 200; ++place) {
    std::string text(200, 'x');
    text[place] = '\xC1';
    ASSERT_EQ(ValidUtf8Prefix(text.data(), text.size()), place);
  }
}

TEST(Utf8, NothingOutsideTheTextIsRead) {
  GuardedPages pages(1);
  for (std::size_t length = 0; length < 300; ++length) {
    // The placed text is one byte longer than what is asked about, so step over the first one.
    const std::string ascii(length + 1, 'x');
    EXPECT_EQ(ValidUtf8Prefix(pages.PlaceAtEnd(ascii) + 2, length), length);
    const std::string cut = std::string(length, 'x') + "\xF0";
    EXPECT_EQ(ValidUtf8Prefix(pages.PlaceAtEnd(cut), cut.size()), length);
  }
}

TEST(Utf8, RandomBytesAreJudgedAsByDecodingThem) {
  // Bytes at the edges of the ranges, so that a wrong bound shows.
  const std::vector<std::string_view> alphabet = {"\x41",
                                                  "\x7F",
                                                  "\x80",
                                                  "\x8F",
                                                  "\x90",
                                                  "\x9F",
                                                  "\xA0",
                                                  "\xBF",
                                                  "\xC0",
                                                  "\xC1",
                                                  "\xC2",
                                                  "\xDF",
                                                  "\xE0",
                                                  "\xE1",
                                                  "\xEC",
                                                  "\xED",
                                                  "\xEE",
                                                  "\xEF",
                                                  "\xF0",
                                                  "\xF1",
                                                  "\xF3",
                                                  "\xF4",
                                                  "\xF5",
                                                  "\xFF",
                                                  "\x80",
                                                  "\xBF",
                                                  "\xA0",
                                                  "\x90",
                                                  "\xC3\xA9",
                                                  "\xE2\x82\xAC",
                                                  "\xF0\x9F\x98\x80",
                                                  "abcdefghijklmnopqrstuvwxyzabcdefghijklmnop"};
  tavrel::test::Random random(20130414);
  for (int round = 0; round < tavrel::test::Rounds(400000); ++round) {
    const std::string text = random.Text(alphabet, 1 + random.Below(8));
    ASSERT_EQ(ValidUtf8Prefix(text.data(), text.size()), PrefixByDecoding(text))
        << testing::PrintToString(text);
  }
}
