// Every set of instructions beside the model, on random and hostile inputs and at the edges of memory.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/reference/Base64Model.h"
#include "tests/support/GuardedPages.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/unit/codecs/Base64Calls.h"

using tavrel::system::InstructionSet;
using tavrel::test::GuardedPages;
using tavrel::test::ModelDecode;
using tavrel::test::ModelEncode;

namespace {

// `bytes`, with nothing that can be touched behind the last one.
std::string_view AtTheEdge(GuardedPages& pages, std::string_view bytes) {
  if (bytes.empty()) return {};
  char* place = pages.PlaceAtEnd(bytes.substr(0, bytes.size() - 1));
  place[bytes.size() - 1] = bytes.back();
  return {place, bytes.size()};
}

// Few clean characters in a row, so that the rules and the blocks take turns.
std::string OddText(tavrel::test::Random& random, std::size_t pieces) {
  std::string text;
  while (pieces-- > 0) {
    switch (random.Below(8)) {
      case 0:
        text += "\n";
        break;
      case 1:
        text += "\r\n";
        break;
      case 2:
        text += static_cast<char>(random.Below(128));
        break;
      case 3:
        if (random.Below(40) == 0) text += '=';
        if (random.Below(400) == 0) text += '\x80';
        break;
      default: {
        const std::size_t count = random.Below(random.Below(4) == 0 ? 200 : 12);
        for (std::size_t i = 0; i < count; ++i) text += tavrel::test::kAlphabet[random.Below(64)];
      }
    }
  }
  return text;
}

}  // namespace

TEST(Base64Paths, ThePlainOneDoesNothingInBulk) {
  std::uint8_t byte = 0;
  const tavrel::Base64Blocks blocks = tavrel::BlocksFor(InstructionSet::kPlain);
  EXPECT_EQ(blocks.encode(&byte, 1, nullptr), 0u);
  EXPECT_EQ(blocks.decode("QUJD", 4, 4, &byte), 0u);
}

TEST(Base64Paths, BlocksTakeAllWholeGroups) {
  const std::string bytes = tavrel::test::Random(1).Bytes(300);
  const std::string text = ModelEncode(bytes, 0);
  for (const InstructionSet set : {InstructionSet::kBaseline, tavrel::system::WidestSet()}) {
    const tavrel::Base64Blocks blocks = tavrel::BlocksFor(set);
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
      std::string encoded(400, '\0');
      ASSERT_EQ(
          blocks.encode(reinterpret_cast<const std::uint8_t*>(bytes.data()), size, encoded.data()),
          size / 3 * 3);
      ASSERT_EQ(encoded.substr(0, size / 3 * 4), text.substr(0, size / 3 * 4));
      ASSERT_EQ(encoded.find_first_not_of('\0', size / 3 * 4), std::string::npos);
    }
    for (std::size_t size = 0; size <= text.size(); ++size) {
      for (const std::size_t readable : {size, text.size()}) {
        std::vector<std::uint8_t> decoded(tavrel::DecodingRoom(size));
        ASSERT_EQ(blocks.decode(text.data(), size, readable, decoded.data()), size / 4 * 4);
        ASSERT_EQ(std::memcmp(decoded.data(), bytes.data(), size / 4 * 3), 0);
      }
    }
  }
}

TEST(Base64Paths, BlocksStopInFrontOfTheGroupWithAnOddCharacter) {
  const std::string clean = ModelEncode(tavrel::test::Random(2).Bytes(150), 0);
  for (const InstructionSet set : {InstructionSet::kBaseline, tavrel::system::WidestSet()}) {
    for (std::size_t at = 0; at < clean.size(); ++at) {
      for (int value = 0; value < 256; ++value) {
        if (tavrel::decodingTable[static_cast<std::size_t>(value)] >= 0) continue;
        std::string text = clean;
        text[at] = static_cast<char>(value);
        std::vector<std::uint8_t> decoded(tavrel::DecodingRoom(text.size()));
        ASSERT_EQ(
            tavrel::BlocksFor(set).decode(text.data(), text.size(), text.size(), decoded.data()),
            at / 4 * 4)
            << value;
      }
    }
  }
}

TEST(Base64Paths, EncodingReadsAndWritesNothingOutside) {
  GuardedPages input(300);
  GuardedPages output(500);
  const std::string bytes = tavrel::test::Random(3).Bytes(300);
  for (const InstructionSet set : tavrel::test::SetsForBase64()) {
    for (std::size_t size = 1; size <= 200; ++size) {
      const std::string_view edge = AtTheEdge(input, std::string_view(bytes).substr(0, size));
      ASSERT_EQ(tavrel::EncodeBase64(edge, 76, set), ModelEncode(edge, 76));
      // Whole groups into a place that ends at the edge.
      const std::size_t textSize = size / 3 * 4;
      const std::string_view room = AtTheEdge(output, std::string(textSize, '?'));
      tavrel::BlocksFor(set).encode(reinterpret_cast<const std::uint8_t*>(edge.data()), size,
                                    const_cast<char*>(room.data()));
    }
  }
}

TEST(Base64Paths, DecodingReadsAndWritesNothingOutside) {
  GuardedPages input(400);
  GuardedPages output(400);
  tavrel::test::Random random(4);
  const std::string bytes = random.Bytes(225);
  for (const std::uint32_t lineLength : {0U, 16U, 76U}) {
    const std::string text = ModelEncode(bytes, lineLength);
    for (const InstructionSet set : tavrel::test::SetsForBase64()) {
      for (std::size_t size = 1; size <= text.size(); ++size) {
        const std::string_view edge = AtTheEdge(input, std::string_view(text).substr(0, size));
        const std::string room(tavrel::DecodingRoom(size), '?');
        auto* decoded =
            reinterpret_cast<std::uint8_t*>(const_cast<char*>(AtTheEdge(output, room).data()));
        const auto length = tavrel::DecodeBase64Into(decoded, edge, set);
        ASSERT_TRUE(length);
        ASSERT_EQ(std::string_view(reinterpret_cast<char*>(decoded), *length),
                  ModelDecode(std::string(edge)));
      }
    }
  }
}

TEST(Base64Paths, OddTextsAreReadAsByTheModel) {
  tavrel::test::Random random(5);
  for (int round = 0; round < tavrel::test::Rounds(20000); ++round) {
    const std::string text = OddText(random, random.Below(40));
    ASSERT_EQ(tavrel::test::Decoded(text), ModelDecode(text));
  }
}

TEST(Base64Paths, LongOddTextsAreReadAsByTheModel) {
  // Odd characters as dense as they can be, in texts of a megabyte, or of a sixteenth where steps take longer.
  constexpr std::size_t kLong = std::size_t{1} << (tavrel::test::kSlow ? 16 : 20);
  std::vector<std::string> texts;
  for (const std::string_view piece : {"\n", "Q\n", "QU\n", "QUJ\n", "QUJD\n", "QUJDR\n",
                                       "QUJDREVG\n\n", "QUJD\nQUJDREVG\n", " \r\n\t", "~A"}) {
    std::string text;
    while (text.size() < kLong) text += piece;
    texts.push_back(text + "QUI=");
  }
  texts.push_back("Q=" + std::string(kLong, '='));
  for (const std::string& text : texts) {
    ASSERT_TRUE(tavrel::test::Decoded(text) == ModelDecode(text)) << text.substr(0, 20);
  }
}
