#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/reference/Base64Model.h"
#include "tests/support/Random.h"
#include "tests/unit/codecs/Base64Calls.h"

namespace faults = tavrel::system::faults;
using tavrel::test::Decoded;
using tavrel::test::Encoded;
using tavrel::test::kAlphabet;
using tavrel::test::ModelDecode;

namespace {

std::string RepeatedTimes(std::string_view piece, std::size_t count) {
  std::string text;
  while (count-- > 0) text += piece;
  return text;
}

}  // namespace

TEST(Base64Decoding, NoTextGivesAnEmptyBuffer) {
  EXPECT_EQ(Decoded(std::nullopt), "");
  EXPECT_EQ(Decoded(""), "");
  EXPECT_TRUE(tavrel::dataWithBase64EncodedString(std::nullopt));
}

TEST(Base64Decoding, PaddingTellsHowManyBytesTheLastGroupHas) {
  EXPECT_EQ(Decoded("QQ=="), "A");
  EXPECT_EQ(Decoded("QUI="), "AB");
  EXPECT_EQ(Decoded("QUJD"), "ABC");
  EXPECT_EQ(Decoded("QUJDRA=="), "ABCD");
}

TEST(Base64Decoding, BothOperationsGiveTheSame) {
  EXPECT_EQ(tavrel::dataWithBase64EncodedString("QUJD\nREU=").view(), "ABCDE");
  EXPECT_EQ(tavrel::initWithBase64EncodedString("QUJD\nREU=").view(), "ABCDE");
}

TEST(Base64Decoding, LineBreaksAndSpacesAreSkipped) {
  EXPECT_EQ(Decoded(" Q\nU\r\nJ\tD "), "ABC");
  const std::string bytes = tavrel::test::Random(1).Bytes(5000);
  const std::string text = Encoded(bytes);
  for (const std::string_view gap : {"\n", "\r\n", "\r", " ", "\n\n", " \r\n\t"}) {
    for (std::size_t line = 1; line < 200; line += line < 20 ? 1 : 13) {
      std::string broken;
      for (std::size_t at = 0; at < text.size(); at += line) {
        broken.append(text, at, line).append(gap);
      }
      ASSERT_TRUE(Decoded(broken) == bytes) << "lines of " << line;
    }
  }
}

TEST(Base64Decoding, LinesOfChangingLengthsAreRead) {
  tavrel::test::Random random(2);
  for (int round = 0; round < 300; ++round) {
    const std::string bytes = random.Bytes(3000);
    const std::string text = Encoded(bytes);
    std::string broken;
    // A length is kept for some lines, so that lines come as expected and then do not.
    std::size_t line = 76;
    for (std::size_t at = 0; at < text.size(); at += line) {
      if (random.Below(4) == 0) line = 1 + random.Below(200);
      broken.append(text, at, line).append(random.Below(3) == 0 ? "\r\n" : "\n");
    }
    ASSERT_TRUE(Decoded(broken) == bytes) << round;
  }
}

TEST(Base64Decoding, EveryOtherCharacterIsSkipped) {
  const std::string clean = RepeatedTimes("QUJD", 30);
  for (int value = 0; value < 128; ++value) {
    const char character = static_cast<char>(value);
    if (character == '=' || kAlphabet.find(character) != std::string_view::npos) continue;
    for (std::size_t at = 0; at <= clean.size(); ++at) {
      std::string text = clean;
      text.insert(at, 1, character);
      ASSERT_EQ(Decoded(text), RepeatedTimes("ABC", 30)) << value << " at " << at;
    }
  }
}

TEST(Base64Decoding, TheUrlSafeAlphabetIsSkipped) {
  EXPECT_EQ(Decoded("-_QUJD"), "ABC");
  EXPECT_EQ(Decoded("+/+/"), "\xFB\xFF\xBF");
}

TEST(Base64Decoding, ZeroBytesInTheTextAreSkipped) {
  EXPECT_EQ(Decoded(std::string("QU\0JD", 5)), "ABC");
}

TEST(Base64Decoding, ALastGroupWithoutPaddingIsDropped) {
  EXPECT_EQ(Decoded("QUJDR"), "ABC");
  EXPECT_EQ(Decoded("QUJDRA"), "ABC");
  EXPECT_EQ(Decoded("QUJDREU"), "ABC");
  EXPECT_EQ(Decoded("QUJDREVG"), "ABCDEF");
  EXPECT_EQ(Decoded("QUI"), "");
}

TEST(Base64Decoding, TheFirstEqualsSignEndsTheText) {
  EXPECT_EQ(Decoded("QQ==QUJD"), "A");
  EXPECT_EQ(Decoded("QUI=QUJDREVG"), "AB");
  EXPECT_EQ(Decoded("QUJD=QUJD"), "ABC");
  EXPECT_EQ(Decoded("QUJDRA=\nREVG"), "ABCD");
}

TEST(Base64Decoding, ATextThatStartsWithAnEqualsSignIsEmpty) {
  EXPECT_EQ(Decoded("="), "");
  EXPECT_EQ(Decoded("=QUJD"), "");
  EXPECT_EQ(Decoded("\n ="), "");
}

// Group positions are never cleared: the byte of a single character takes its two lower bits from
// what the group before left at the second position.
TEST(Base64Decoding, ASingleCharacterBeforePaddingGivesAByteWithTwoBitsOfTheGroupBefore) {
  EXPECT_EQ(Decoded("AAAAE="), std::string("\0\0\0\x10", 4));      // second position: 0
  EXPECT_EQ(Decoded("APAAE="), std::string("\0\xF0\0\x10", 4));    // 15: its upper bits are zero
  EXPECT_EQ(Decoded("AQAAE="), std::string("\x01\0\0\x11", 4));    // 16
  EXPECT_EQ(Decoded("AgAAE="), std::string("\x02\0\0\x12", 4));    // 32
  EXPECT_EQ(Decoded("A/AAE="), std::string("\x03\xF0\0\x13", 4));  // 63
  for (const char second : kAlphabet) {
    const std::string text = RepeatedTimes("QUJD", 40) + "x" + second + "/z\nQ=";
    ASSERT_EQ(Decoded(text), ModelDecode(text));
    ASSERT_EQ((Decoded(text).back() & 3), static_cast<int>(kAlphabet.find(second) >> 4));
  }
}

TEST(Base64Decoding, ASingleCharacterBeforePaddingInTheFirstGroupHasZeroes) {
  EXPECT_EQ(Decoded("Q="), "\x40");
  EXPECT_EQ(Decoded("/="), "\xFC");
  EXPECT_EQ(Decoded("\n/\n==="), "\xFC");
}

TEST(Base64Decoding, UnusedBitsBeforePaddingAreIgnored) {
  EXPECT_EQ(Decoded("QR=="), "A");
  EXPECT_EQ(Decoded("Q/=="), "C");  // only the four lower bits of the second character are unused
  EXPECT_EQ(Decoded("QUL="), "AB");
}

TEST(Base64Decoding, ACharacterOutsideAsciiAnywhereGivesAnEmptyBuffer) {
  const std::string clean = RepeatedTimes("QUJD", 30);
  for (int value = 128; value < 256; ++value) {
    for (std::size_t at = 0; at <= clean.size(); ++at) {
      std::string text = clean;
      text.insert(at, 1, static_cast<char>(value));
      ASSERT_EQ(Decoded(text), "") << value << " at " << at;
    }
  }
  EXPECT_EQ(Decoded("QUJDä"), "");
}

TEST(Base64Decoding, ACharacterOutsideAsciiBehindTheEndCountsToo) {
  for (std::size_t gap = 0; gap < 40; ++gap) {
    EXPECT_EQ(Decoded("QQ==" + std::string(gap, 'x') + "é"), "");
    EXPECT_EQ(Decoded("QQ==" + std::string(gap, 'x')), "A");
  }
}

TEST(Base64Decoding, ACharacterOutsideAsciiAtTheEndOfALongTextCountsToo) {
  for (const std::string_view line : {"QUJD", "QUJDREVG\n"}) {
    std::string text = RepeatedTimes(line, (std::size_t{1} << 20) / line.size());
    EXPECT_FALSE(Decoded(text).empty());
    text += "\xC3\xA9";
    EXPECT_EQ(Decoded(text), "");
  }
}

TEST(Base64Decoding, IsAsTheModelForEveryCharacterAtEveryPlace) {
  std::string clean = Encoded(tavrel::test::Random(3).Bytes(51));
  for (std::size_t at = 0; at < clean.size(); ++at) {
    for (int value = 0; value < 256; ++value) {
      std::string text = clean;
      text[at] = static_cast<char>(value);
      ASSERT_EQ(Decoded(text), ModelDecode(text)) << value << " at " << at;
    }
  }
}

TEST(Base64Decoding, IsAsTheModelForEveryLengthAndAnEqualsSignAtEveryPlace) {
  const std::string clean = Encoded(tavrel::test::Random(4).Bytes(150));
  for (std::size_t size = 0; size <= clean.size(); ++size) {
    std::string text = clean.substr(0, size);
    ASSERT_EQ(Decoded(text), ModelDecode(text)) << size;
    for (std::size_t at = 0; at < size; ++at) {
      const char kept = text[at];
      text[at] = '=';
      ASSERT_EQ(Decoded(text), ModelDecode(text)) << at << " of " << size;
      text[at] = kept;
    }
  }
}

TEST(Base64Decoding, GivesBackWhatWasEncoded) {
  tavrel::test::Random random(5);
  for (int round = 0; round < 200; ++round) {
    const std::string bytes = random.Bytes(random.Below(round < 100 ? 300 : 100000));
    const auto lineLength = static_cast<std::uint32_t>(random.Below(200));
    ASSERT_TRUE(Decoded(Encoded(bytes, lineLength)) == bytes) << round;
  }
}

TEST(Base64Decoding, ExhaustedMemoryGivesNone) {
  const std::optional<std::string> text = "QUJD";
  for (std::int64_t successes = 0; successes < 2; ++successes) {
    faults::FailAfter(successes, false);
    EXPECT_FALSE(tavrel::initWithBase64EncodedString(text));
    EXPECT_FALSE(tavrel::dataWithBase64EncodedString(text));
    faults::Stop();
  }
  EXPECT_TRUE(tavrel::initWithBase64EncodedString(text));
}
