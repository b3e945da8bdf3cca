#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

#include "codecs/Crc32.h"
#include "tests/support/InstructionSets.h"
#include "tests/support/Random.h"

using tavrel::Crc32;
using tavrel::system::InstructionSet;

TEST(Crc32, TheCheckValueIsTheKnownOne) {
  EXPECT_EQ(Crc32("123456789"), 0xCBF43926U);
  EXPECT_EQ(Crc32("123456789", InstructionSet::kPlain), 0xCBF43926U);
  EXPECT_EQ(Crc32(""), 0U);
}

TEST(Crc32, IsThatOfTheCompressionLibraryForEveryLengthAndPlace) {
  const std::string bytes = tavrel::test::Random(1).Bytes(2000);
  for (std::size_t start = 0; start < 20; ++start) {
    for (std::size_t length = 0; length < 700; ++length) {
      const std::string_view part = std::string_view(bytes).substr(start, length);
      const auto expected = static_cast<std::uint32_t>(
          crc32(0, reinterpret_cast<const Bytef*>(part.data()), static_cast<uInt>(part.size())));
      for (const InstructionSet set : tavrel::test::SetsForChecksum()) {
        ASSERT_EQ(Crc32(part, set), expected) << length;
      }
    }
  }
}

TEST(Crc32, EverySingleBitCounts) {
  std::string bytes(300, '\0');
  const std::uint32_t before = Crc32(bytes);
  for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
    char& byte = bytes[bit / 8];
    byte = static_cast<char>(1 << bit % 8);
    ASSERT_NE(Crc32(bytes), before);
    ASSERT_EQ(Crc32(bytes), Crc32(bytes, InstructionSet::kPlain));
    byte = 0;
  }
}
