#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "text/Ascii.h"
#include "text/Numbers.h"

using tavrel::text::HexDigitValue;
using tavrel::text::ReadDecimal;
using tavrel::text::ReadUnsigned;

TEST(ReadDecimal, ReadsDigitsUpToTheFirstOtherByte) {
  EXPECT_EQ(ReadDecimal("206794"), 206794);
  EXPECT_EQ(ReadDecimal("12abc"), 12);
  EXPECT_EQ(ReadDecimal("12 34"), 12);
  EXPECT_EQ(ReadDecimal("12.9"), 12);
  EXPECT_EQ(ReadDecimal("0x10"), 0);
  EXPECT_EQ(ReadDecimal("010"), 10);
  EXPECT_EQ(ReadDecimal(std::string_view("1\0002", 3)), 1);
}

TEST(ReadDecimal, WithoutDigitsIsZero) {
  for (const char* text :
       {"", " ", "-", "+", "abc", "- 5", "--5", "+-5", "-+5", ".5", "\xC2\xB2"}) {
    EXPECT_EQ(ReadDecimal(text), 0) << text;
  }
}

TEST(ReadDecimal, TakesLeadingBlanksAndOneSign) {
  EXPECT_EQ(ReadDecimal(" \t\n\v\f\r42"), 42);
  EXPECT_EQ(ReadDecimal("+42"), 42);
  EXPECT_EQ(ReadDecimal("-42"), -42);
  EXPECT_EQ(ReadDecimal("  -42"), -42);
  EXPECT_EQ(ReadDecimal("\xA0"
                        "42"),
            0);
}

TEST(ReadDecimal, TakesTheLow32BitsOfTheValueClampedTo64) {
  EXPECT_EQ(ReadDecimal("2147483647"), INT32_MAX);
  EXPECT_EQ(ReadDecimal("2147483648"), INT32_MIN);
  EXPECT_EQ(ReadDecimal("-2147483648"), INT32_MIN);
  EXPECT_EQ(ReadDecimal("-2147483649"), INT32_MAX);
  EXPECT_EQ(ReadDecimal("4294967296"), 0);
  EXPECT_EQ(ReadDecimal("4294967297"), 1);
  EXPECT_EQ(ReadDecimal("9223372036854775807"), -1);
  EXPECT_EQ(ReadDecimal("9223372036854775808"), -1);
  EXPECT_EQ(ReadDecimal("99999999999999999999999999"), -1);
  EXPECT_EQ(ReadDecimal("-9223372036854775807"), 1);
  EXPECT_EQ(ReadDecimal("-9223372036854775808"), 0);
  EXPECT_EQ(ReadDecimal("-9223372036854775809"), 0);
  EXPECT_EQ(ReadDecimal("-99999999999999999999999999"), 0);
}

TEST(ReadDecimal, ReadsNothingBehindItsText) {
  EXPECT_EQ(ReadDecimal(std::string_view("123456").substr(0, 3)), 123);
  EXPECT_EQ(ReadDecimal(std::string_view("-1").substr(0, 1)), 0);
  EXPECT_EQ(ReadDecimal(std::string_view()), 0);
}

TEST(ReadUnsigned, SkipsAPrefixOnlyInFrontOfAHexadecimalDigit) {
  EXPECT_EQ(ReadUnsigned("0x1F", 16), 0x1Fu);
  EXPECT_EQ(ReadUnsigned("0X1f", 16), 0x1Fu);
  EXPECT_EQ(ReadUnsigned("0x", 16), 0u);
  EXPECT_EQ(ReadUnsigned("0xg", 16), 0u);
  EXPECT_EQ(ReadUnsigned("x1", 16), 0u);
  EXPECT_EQ(ReadUnsigned("0x10", 10), 0u);
  EXPECT_EQ(ReadUnsigned(std::string_view("0x1F").substr(0, 2), 16), 0u);
}

TEST(ReadUnsigned, NegatesModulo64BitsAndClampsWhateverTheSign) {
  EXPECT_EQ(ReadUnsigned("-1", 10), 0xFFFFFFFFu);
  EXPECT_EQ(ReadUnsigned("-18446744073709551615", 10), 1u);
  EXPECT_EQ(ReadUnsigned("-18446744073709551616", 10), 0xFFFFFFFFu);
  EXPECT_EQ(ReadUnsigned("18446744073709551616", 10), 0xFFFFFFFFu);
  EXPECT_EQ(ReadUnsigned("10000000000000000", 16), 0xFFFFFFFFu);
  EXPECT_EQ(ReadUnsigned("FFFFFFFFFFFFFFFF", 16), 0xFFFFFFFFu);
  EXPECT_EQ(ReadUnsigned("123456789A", 16), 0x3456789Au);
}

TEST(ReadUnsigned, AgreesWithTheCLibraryInTheCLocale) {
  tavrel::test::Random random(7);
  for (int i = 0; i < tavrel::test::Rounds(100000); ++i) {
    const std::string text =
        random.Text({" ", "\t", "-", "+", "0x", "0X", "x"}, random.Below(3)) +
        random.Text({"0", "1", "5", "9", "a", "F", "g", "\xE9", "999999999"}, random.Below(20));
    const unsigned base = random.Below(2) == 0 ? 10 : 16;
    const auto expected = std::strtoull(text.c_str(), nullptr, static_cast<int>(base));
    ASSERT_EQ(ReadUnsigned(text, base), static_cast<std::uint32_t>(expected))
        << text << " " << base;
  }
}

TEST(ReadDecimal, AgreesWithTheCLibraryInTheCLocale) {
  tavrel::test::Random random(8);
  for (int i = 0; i < tavrel::test::Rounds(100000); ++i) {
    const std::string text =
        random.Text({" ", "\n", "-", "+", ""}, random.Below(3)) +
        random.Text({"0", "1", "9", "a", "922337203685477580"}, random.Below(8));
    const long long expected = std::strtoll(text.c_str(), nullptr, 10);
    ASSERT_EQ(ReadDecimal(text), static_cast<std::int32_t>(expected)) << text;
  }
}

TEST(HexDigitValue, KnowsTheDigitsOfBothCasesAndNothingElse) {
  const std::string lower = "0123456789abcdef";
  const std::string upper = "0123456789ABCDEF";
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    const std::size_t at = lower.find(c) != std::string::npos ? lower.find(c) : upper.find(c);
    EXPECT_EQ(HexDigitValue(c), at == std::string::npos ? 16 : at) << byte;
  }
}
