#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <string>

#include "tests/reference/Base64Model.h"
#include "tests/support/Random.h"
#include "tests/unit/codecs/Base64Calls.h"

using tavrel::system::ByteBuffer;
using tavrel::test::Encoded;
using tavrel::test::ModelEncode;

namespace {

std::string Bytes(std::size_t count) {
  return tavrel::test::Random(count).Bytes(count);
}

std::string WithoutLineFeeds(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
  return text;
}

}  // namespace

TEST(Base64Encoding, AnEmptyBufferGivesTheEmptyText) {
  for (const std::uint32_t lineLength : {0U, 1U, 76U}) {
    EXPECT_EQ(Encoded("", lineLength), "");
    EXPECT_EQ(tavrel::base64EncodingWithLineLength(ByteBuffer(), lineLength), "");
  }
}

TEST(Base64Encoding, PaddingFillsTheLastGroup) {
  EXPECT_EQ(Encoded(std::string(1, '\0')), "AA==");
  EXPECT_EQ(Encoded(std::string(2, '\0')), "AAA=");
  EXPECT_EQ(Encoded(std::string(3, '\0')), "AAAA");
  EXPECT_EQ(Encoded("A"), "QQ==");
  EXPECT_EQ(Encoded("AB"), "QUI=");
  EXPECT_EQ(Encoded("ABC"), "QUJD");
  EXPECT_EQ(Encoded("ABCD"), "QUJDRA==");
}

TEST(Base64Encoding, TheAlphabetIsTheStandardOne) {
  // All values in order, then each at every place of its group.
  std::string bytes;
  for (unsigned value = 0; value < 64; value += 4) {
    const unsigned joined = value << 18 | (value + 1) << 12 | (value + 2) << 6 | (value + 3);
    for (const unsigned shift : {16U, 8U, 0U}) bytes += static_cast<char>(joined >> shift);
  }
  EXPECT_EQ(Encoded(bytes), tavrel::test::kAlphabet);
  for (unsigned value = 0; value < 64; ++value) {
    const unsigned joined = value << 18 | value << 12 | value << 6 | value;
    std::string group;
    for (const unsigned shift : {16U, 8U, 0U}) group += static_cast<char>(joined >> shift);
    std::string groups;
    for (int i = 0; i < 20; ++i) groups += group;
    ASSERT_EQ(Encoded(groups), std::string(80, tavrel::test::kAlphabet[value]));
  }
}

TEST(Base64Encoding, LineLengthZeroNeverBreaksLines) {
  const std::string bytes = Bytes(200000);
  EXPECT_EQ(Encoded(bytes).find('\n'), std::string::npos);
  EXPECT_EQ(tavrel::base64Encoding(ByteBuffer::Copy(bytes)), Encoded(bytes));
}

TEST(Base64Encoding, AFullLastLineEndsWithALineFeed) {
  const std::string text = Encoded(Bytes(57), 76);
  EXPECT_EQ(text.size(), 77u);
  EXPECT_EQ(text.find('\n'), 76u);
  EXPECT_EQ(Encoded("ABC", 4), "QUJD\n");
  EXPECT_EQ(Encoded("A", 4), "QQ==\n");  // padding fills a line as well
}

TEST(Base64Encoding, ALastLineThatIsNotFullEndsWithoutALineFeed) {
  EXPECT_EQ(Encoded(Bytes(56), 76).size(), 77u);  // 19 groups, the last one padded
  EXPECT_EQ(Encoded(Bytes(54), 76).size(), 72u);
  EXPECT_EQ(Encoded(Bytes(54), 76).back(), Encoded(Bytes(54)).back());
  const std::string text = Encoded(Bytes(60), 76);
  EXPECT_EQ(text.size(), 81u);
  EXPECT_NE(text.back(), '\n');
}

TEST(Base64Encoding, ALineHasTheNextMultipleOfFour) {
  const std::string bytes = Bytes(90);
  for (std::uint32_t lineLength = 1; lineLength <= 80; ++lineLength) {
    const std::string text = Encoded(bytes, lineLength);
    const std::size_t expected = (lineLength + 3) / 4 * 4;
    EXPECT_EQ(text.find('\n'), expected) << lineLength;
    EXPECT_EQ(text, Encoded(bytes, static_cast<std::uint32_t>(expected)));
  }
  EXPECT_EQ(Encoded(bytes, 10).find('\n'), 12u);
}

TEST(Base64Encoding, ALineLengthOfOneToFourGivesOneGroupALine) {
  for (std::uint32_t lineLength = 1; lineLength <= 4; ++lineLength) {
    EXPECT_EQ(Encoded("ABCDEFG", lineLength), "QUJD\nREVG\nRw==\n");
  }
}

TEST(Base64Encoding, ThereIsNeverACarriageReturn) {
  EXPECT_EQ(Encoded(Bytes(10000), 76).find('\r'), std::string::npos);
}

TEST(Base64Encoding, LineFeedsAreAllThatALineLengthAdds) {
  const std::string bytes = Bytes(30000);
  const std::string plain = Encoded(bytes);
  for (const std::uint32_t lineLength : {1U, 5U, 64U, 76U, 77U, 1000U, 12288U, 16384U, 16388U}) {
    ASSERT_TRUE(WithoutLineFeeds(Encoded(bytes, lineLength)) == plain) << lineLength;
  }
}

// The count of characters on a line is a signed 16-bit number that goes up in fours: behind 32,764
// it is negative. Kept on purpose.
TEST(Base64Encoding, ALineLengthAbove32764NeverBreaksLines) {
  const std::string bytes = Bytes(150000);
  for (const std::uint32_t lineLength :
       {32765U, 32766U, 32767U, 32768U, 40000U, 65535U, 65536U, 65540U, 0x7FFFFFFFU, 0x80000000U,
        0xFFFF8000U, 0xFFFFFFFCU, 0xFFFFFFFFU}) {
    ASSERT_TRUE(Encoded(bytes, lineLength) == Encoded(bytes)) << lineLength;
  }
}

TEST(Base64Encoding, LinesOf32764CharactersAreTheLongest) {
  const std::string bytes = Bytes(150000);
  for (const std::uint32_t lineLength : {32757U, 32760U, 32761U, 32764U}) {
    const std::string text = Encoded(bytes, lineLength);
    ASSERT_EQ(text.find('\n'), (lineLength + 3) / 4 * 4);
    ASSERT_TRUE(text == ModelEncode(bytes, lineLength)) << lineLength;
  }
}

TEST(Base64Encoding, IsAsTheModelForEveryLengthAndManyLineLengths) {
  for (std::size_t size = 0; size <= 200; ++size) {
    for (const std::uint32_t lineLength : {0U, 1U, 4U, 5U, 8U, 12U, 20U, 64U, 76U, 100U, 128U}) {
      const std::string bytes = Bytes(size);
      ASSERT_EQ(Encoded(bytes, lineLength), ModelEncode(bytes, lineLength)) << size;
    }
  }
}

TEST(Base64Encoding, IsAsTheModelForEveryByteAtEveryPlace) {
  for (std::size_t at = 0; at < 64; ++at) {
    std::string bytes = Bytes(64);
    for (int value = 0; value < 256; ++value) {
      bytes[at] = static_cast<char>(value);
      ASSERT_EQ(Encoded(bytes), ModelEncode(bytes, 0));
    }
  }
}

TEST(Base64Encoding, IsAsTheModelForLongBuffers) {
  tavrel::test::Random random(1);
  for (int round = 0; round < 60; ++round) {
    const std::string bytes = random.Bytes(random.Below(100000));
    const auto lineLength = static_cast<std::uint32_t>(random.Below(round % 2 == 0 ? 200 : 70000));
    ASSERT_TRUE(Encoded(bytes, lineLength) == ModelEncode(bytes, lineLength))
        << bytes.size() << " bytes in lines of " << lineLength;
  }
}
