// The fast paths of the UTF-8 check beside the plain one.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/GuardedPages.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "text/Utf8.h"
#include "text/Utf8Blocks.h"

using namespace tavrel::text;
using tavrel::system::InstructionSet;
using tavrel::test::GuardedPages;
using tavrel::test::Random;
using tavrel::test::Rounds;

namespace {

constexpr std::size_t kBlock = 64;

// The edges of every range that the rule knows.
constexpr std::string_view kEdges(
    "\x00\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF\xF0\xF1\xF3\xF4"
    "\xF5\xFF",
    25);

const std::vector<std::string_view> kCharacters = {
    "\xC2\x80",         "\xC3\xA9",         "\xDF\xBF",         "\xE0\xA0\x80",
    "\xE2\x82\xAC",     "\xED\x9F\xBF",     "\xEE\x80\x80",     "\xEF\xBF\xBF",
    "\xF0\x90\x80\x80", "\xF0\x9F\x98\x80", "\xF1\x80\x80\x80", "\xF4\x8F\xBF\xBF"};

void AppendCharacter(std::string& text, std::uint32_t codePoint) {
  const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
  const auto appendRest = [&append](std::uint32_t bits) { append(0x80 | (bits & 0x3F)); };
  if (codePoint < 0x80) return append(codePoint);
  if (codePoint < 0x800) {
    append(0xC0 | codePoint >> 6);
  } else if (codePoint < 0x10000) {
    append(0xE0 | codePoint >> 12);
    appendRest(codePoint >> 6);
  } else {
    append(0xF0 | codePoint >> 18);
    appendRest(codePoint >> 12);
    appendRest(codePoint >> 6);
  }
  appendRest(codePoint);
}

// Behind `text` every character but the zero byte.
std::string WithEveryCodePoint(std::string text) {
  text.reserve(text.size() + 4 * std::size_t{0x110000});
  for (std::uint32_t codePoint = 1; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint < 0xD800 || codePoint > 0xDFFF) AppendCharacter(text, codePoint);
  }
  return text;
}

// Every sequence of so many bytes from the edges.
template <typename Function>
void ForEachSequence(std::size_t length, Function function) {
  std::string sequence(length, '\0');
  std::vector<std::size_t> digits(length, 0);
  while (true) {
    for (std::size_t i = 0; i < length; ++i) sequence[i] = kEdges[digits[i]];
    function(sequence);
    std::size_t place = 0;
    while (place < length && ++digits[place] == kEdges.size()) digits[place++] = 0;
    if (place == length) return;
  }
}

class Utf8Paths : public testing::TestWithParam<InstructionSet> {
 protected:
  void SetUp() override {
    if (!tavrel::system::IsSupported(GetParam())) GTEST_SKIP() << "this processor lacks the set";
  }

  [[nodiscard]] static bool Agrees(const char* text, std::size_t length) {
    const TextPrefix plain = ValidTextPrefix(text, length, InstructionSet::kPlain);
    const TextPrefix fast = ValidTextPrefix(text, length, GetParam());
    return fast.length == plain.length && fast.lengthToZero == plain.lengthToZero;
  }
  static void ExpectAgreement(const std::string& text) {
    ASSERT_TRUE(Agrees(text.data(), text.size())) << testing::PrintToString(text);
  }

  // Puts every sequence over `filler` at the places from `first` to `last`.
  static void ExpectAgreementOnSequences(std::size_t length, const std::string& filler,
                                         std::size_t first, std::size_t last) {
    std::string text = filler;
    ForEachSequence(length, [&](const std::string& sequence) {
      for (std::size_t place = first; place <= last; ++place) {
        sequence.copy(text.data() + place, length);
        if (!Agrees(text.data(), text.size())) {
          FAIL() << testing::PrintToString(sequence) << " at " << place;
        }
        filler.copy(text.data() + place, length, place);
      }
    });
  }
};

}  // namespace

TEST(Utf8Paths, ThePlainOneIsTheCheckForShortTexts) {
  ForEachSequence(tavrel::test::kSlow ? 2 : 3, [](const std::string& text) {
    const TextPrefix plain = ValidTextPrefix(text.data(), text.size(), InstructionSet::kPlain);
    const std::size_t length = ValidUtf8Prefix(text.data(), text.size());
    ASSERT_EQ(plain.length, length) << testing::PrintToString(text);
    ASSERT_EQ(plain.lengthToZero, std::min(length, text.find('\0')));
  });
}

TEST_P(Utf8Paths, ShortSequencesAreJudgedAlikeAtEveryPlace) {
  const std::string filler(3 * kBlock, 'x');
  ExpectAgreementOnSequences(1, filler, 0, filler.size() - 1);
  ExpectAgreementOnSequences(2, filler, 0, filler.size() - 2);
  if (tavrel::test::kSlow) return;
  ExpectAgreementOnSequences(3, filler, 0, filler.size() - 3);
}

TEST_P(Utf8Paths, LongSequencesAreJudgedAlikeWhereBlocksMeet) {
  const std::string filler(2 * kBlock + 8, 'x');
  const std::size_t length = tavrel::test::kSlow ? 2 : 4;
  ExpectAgreementOnSequences(length, filler, 0, 4);
  ExpectAgreementOnSequences(length, filler, kBlock - 5, kBlock + 1);
  ExpectAgreementOnSequences(length, filler, filler.size() - length, filler.size() - length);
}

TEST_P(Utf8Paths, SequencesBetweenOtherCharactersAreJudgedAlike) {
  for (const std::string_view character : kCharacters) {
    std::string filler;
    while (filler.size() < 2 * kBlock + 8) filler += character;
    ExpectAgreementOnSequences(2, filler, 0, filler.size() - 2);
  }
}

TEST_P(Utf8Paths, CutOffCharactersAreJudgedAlikeAtEveryEnd) {
  for (const std::string_view character : kCharacters) {
    for (std::size_t before = 0; before < 3 * kBlock; ++before) {
      const std::string text = std::string(before, 'x').append(character).append(kBlock, 'y');
      for (std::size_t length = before; length <= text.size(); ++length) {
        ASSERT_TRUE(Agrees(text.data(), length)) << before << ' ' << length;
      }
    }
  }
}

TEST_P(Utf8Paths, EveryCodePointIsTextAndNoSurrogateIs) {
  static const std::string all = WithEveryCodePoint(std::string(kBlock + 3, 'x'));
  for (std::size_t shift = 0; shift < 4; ++shift) {
    const std::string_view text = std::string_view(all).substr(shift);
    const TextPrefix prefix = ValidTextPrefix(text.data(), text.size(), GetParam());
    ASSERT_EQ(prefix.length, text.size());
    ASSERT_EQ(prefix.lengthToZero, text.size());
  }
  for (std::uint32_t surrogate = 0xD800; surrogate <= 0xDFFF; ++surrogate) {
    std::string text(2 * kBlock, 'x');
    AppendCharacter(text, surrogate);
    text.append(kBlock, 'x');
    ASSERT_EQ(ValidTextPrefix(text.data(), text.size(), GetParam()).length, 2 * kBlock);
  }
}

// What they refuse is judged again, one character after the other: that would only take longer.
TEST_P(Utf8Paths, BlocksOfValidTextReachItsEnd) {
  using namespace tavrel::system;
  if (!kForX86 && !kForArm64)
    GTEST_SKIP() << "this processor lacks instructions that blocks are judged with";
  const std::string text = WithEveryCodePoint("");
  const Utf8Blocks blocks = ValidUtf8Blocks(text.data(), text.size(), GetParam());
  EXPECT_LE(blocks.length, text.size());
  EXPECT_GT(blocks.length + 2 * kBlock, text.size());
  EXPECT_FALSE(blocks.hasZero);
}

TEST_P(Utf8Paths, TheFirstZeroByteIsFoundAtEveryPlace) {
  for (const std::string_view filler : {"x", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
    for (std::size_t count = 0; count < 4 * kBlock; ++count) {
      std::string text;
      for (std::size_t i = 0; i < count; ++i) text += filler;
      const std::size_t place = text.size();
      text += '\0';
      text.append(2 * kBlock, 'y');
      text += '\0';
      const TextPrefix prefix = ValidTextPrefix(text.data(), text.size(), GetParam());
      ASSERT_EQ(prefix.length, text.size());
      ASSERT_EQ(prefix.lengthToZero, place);
    }
  }
}

TEST_P(Utf8Paths, AZeroByteBehindAFaultIsNotFound) {
  for (std::size_t place = 0; place < 3 * kBlock; ++place) {
    std::string text(4 * kBlock, 'x');
    text[place] = '\xFF';
    text[place + 1] = '\0';
    const TextPrefix prefix = ValidTextPrefix(text.data(), text.size(), GetParam());
    ASSERT_EQ(prefix.length, place);
    ASSERT_EQ(prefix.lengthToZero, place);
  }
}

TEST_P(Utf8Paths, RandomBytesAreJudgedAlike) {
  std::vector<std::string_view> alphabet = kCharacters;
  for (std::size_t i = 0; i < kEdges.size(); ++i) alphabet.push_back(kEdges.substr(i, 1));
  alphabet.insert(alphabet.end(), 12, "abcdefghijklmnopqrstuvwxyzabcdefghijklmnop");
  Random random(20130415);
  for (int round = 0; round < Rounds(200000); ++round) {
    ExpectAgreement(random.Text(alphabet, random.Below(24)));
    ExpectAgreement(random.Bytes(random.Below(3 * kBlock)));
  }
}

TEST_P(Utf8Paths, FaultsInValidTextAreFoundAlike) {
  std::vector<std::string_view> alphabet = kCharacters;
  alphabet.insert(alphabet.end(), 6, "plain text");
  alphabet.push_back(std::string_view("\0", 1));
  Random random(20130416);
  for (int round = 0; round < Rounds(200000); ++round) {
    std::string text = random.Text(alphabet, 1 + random.Below(120));
    ExpectAgreement(text);
    ASSERT_EQ(ValidTextPrefix(text.data(), text.size(), GetParam()).length, text.size());
    text[random.Below(text.size())] = kEdges[random.Below(kEdges.size())];
    ExpectAgreement(text);
    text.erase(random.Below(text.size()), 1);
    ExpectAgreement(text);
  }
}

TEST_P(Utf8Paths, NothingOutsideTheTextIsRead) {
  GuardedPages pages(1);
  for (const std::string_view character : {"x", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
    std::string text;
    while (text.size() < 5 * kBlock) {
      text += character;
      char* atEnd = pages.PlaceAtEnd(text) + 1;
      text.copy(atEnd, text.size());  // over the zero byte, which could be read
      EXPECT_EQ(ValidTextPrefix(atEnd, text.size(), GetParam()).length, text.size());
      const char* atStart = pages.PlaceAtStart(text, '\xFF');
      EXPECT_EQ(ValidTextPrefix(atStart, text.size(), GetParam()).length, text.size());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, Utf8Paths,
                         testing::Values(InstructionSet::kBaseline, InstructionSet::kAvx2),
                         [](const testing::TestParamInfo<InstructionSet>& set) {
                           return set.param == InstructionSet::kBaseline ? "Baseline" : "Avx2";
                         });
