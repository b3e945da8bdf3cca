#include <gtest/gtest.h>
#include <utf8proc.h>

#include "system/Memory.h"
#include "tests/reference/SearchModel.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Texts.h"
#include "tests/unit/text/Folded.h"
#include "text/TextFolding.h"

namespace {

using tavrel::test::Composed;
using tavrel::test::Decomposed;
using tavrel::test::Folded;
using tavrel::test::Join;
using tavrel::test::Repeated;
using tavrel::test::Utf8;
using tavrel::text::FoldText;
using tavrel::text::kFoldingGrowth;

std::string Fold(std::string_view text) {
  return std::string(Folded(text).bytes());
}

// For some of those that have no character of their own; under sanitizers, for some of all.
template <class Check>
void ForEachCharacter(Check&& check) {
  for (std::int32_t point = 1; point < 0x110000; point += tavrel::test::kSlow ? 11 : 1) {
    if (tavrel::test::IsWorthATest(point)) check(point);
  }
}

TEST(TextFolding, AsciiLettersLoseTheirCaseAndNothingElseChanges) {
  for (int c = 1; c < 0x80; ++c) {
    const bool isUpper = c >= 'A' && c <= 'Z';
    EXPECT_EQ(Fold(std::string(1, static_cast<char>(c))),
              std::string(1, static_cast<char>(isUpper ? c + 32 : c)));
  }
  EXPECT_EQ(Fold("Beat It (7\" Mix) [LIVE] @HOME"), "beat it (7\" mix) [live] @home");
}

TEST(TextFolding, FoldsFullyAndDecomposes) {
  EXPECT_EQ(Fold("Straße"), "strasse");
  EXPECT_EQ(Fold("\u1E9E"), "ss");
  EXPECT_EQ(Fold("\uFB03"), "ffi");
  EXPECT_EQ(Fold("\u212Aing"), "king");
  EXPECT_EQ(Fold("\u017F"), "s");
  EXPECT_EQ(Fold("ΟΔΟΣ"), "οδοσ");
  EXPECT_EQ(Fold("οδος"), "οδοσ");
  EXPECT_EQ(Fold("Dvo\u0159\u00E1k"), "dvor\u030Ca\u0301k");
  EXPECT_EQ(Fold("\uAC01"), "\u1100\u1161\u11A8");
}

TEST(TextFolding, NoLocaleTakesPart) {
  EXPECT_EQ(Fold("I"), "i");
  EXPECT_EQ(Fold("\u0130"), "i\u0307");
  EXPECT_EQ(Fold("\u0131"), "\u0131");
}

TEST(TextFolding, TheIotaBelowIsOrderedAsAMarkBeforeItBecomesALetter) {
  EXPECT_EQ(Fold("\u03B1\u0345\u0301"), "\u03B1\u0301\u03B9");
  EXPECT_EQ(Fold("\u1FB4"), "\u03B1\u0301\u03B9");
  EXPECT_EQ(Fold("\u1FB3\u0301"), "\u03B1\u0301\u03B9");
}

TEST(TextFolding, WhatIsNoUtf8FoldsToNothing) {
  for (const std::string_view text : {"a\xE9", "\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80",
                                      "\x80", "é\xE2\x82", "long enough for words \xFF"}) {
    EXPECT_EQ(Fold(text), "") << text;
  }
  EXPECT_EQ(Fold(""), "");
}

TEST(TextFolding, NoncharactersAreTextLikeAnyOther) {
  EXPECT_EQ(Fold("A\uFFFEB\uFFFF\U0010FFFF"), "a\uFFFEb\uFFFF\U0010FFFF");
}

// The properties of Unicode's data that the folding is built on.
TEST(TextFolding, NothingGrowsBeyondItsRoom) {
  ForEachCharacter([](std::int32_t point) {
    const std::string text = Utf8(point);
    ASSERT_LE(Fold(text).size(), kFoldingGrowth * text.size()) << std::hex << point;
  });
}

TEST(TextFolding, FoldingTwiceChangesNothing) {
  ForEachCharacter([](std::int32_t point) {
    const std::string folded = Fold(Utf8(point));
    ASSERT_EQ(Fold(folded), folded) << std::hex << point;
  });
}

TEST(TextFolding, WhatACharacterFoldsToHoldsNoCombiningMarks) {
  ForEachCharacter([](std::int32_t point) {
    std::int32_t parts[8];
    int unused = 0;
    const auto options = static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD);
    if (Decomposed(Utf8(point)) != Utf8(point)) return;
    const auto count = utf8proc_decompose_char(point, parts, 8, options, &unused);
    for (int i = 0; i < count; ++i) {
      const bool isItself = count == 1 && parts[0] == point;
      ASSERT_TRUE(isItself || utf8proc_get_property(parts[i])->combining_class == 0)
          << std::hex << point;
    }
  });
}

TEST(TextFolding, BothSpellingsOfACharacterFoldAlikeAndAreOneCharacter) {
  ForEachCharacter([](std::int32_t point) {
    for (const std::string& text : {Utf8(point), Decomposed(Utf8(point)), Composed(Utf8(point))}) {
      const Folded folded(Join({"x", text, "y"}));
      ASSERT_EQ(folded.bytes(), Fold(Join({"x", Utf8(point), "y"}))) << std::hex << point;
      for (std::size_t at = 2; at + 1 < folded.bytes().size(); ++at) {
        const bool isStart = (static_cast<unsigned char>(folded.bytes()[at]) & 0xC0u) != 0x80u;
        ASSERT_EQ(folded.texts().IsJoined(at), isStart) << std::hex << point << " at " << at;
      }
    }
  });
}

TEST(TextFolding, MarksComeIntoTheirOrderHoweverManyThereAre) {
  for (const std::size_t count : {1u, 21u, 22u, 32u, 33u, 1000u, 100'000u}) {
    const std::string mixed = Repeated("\u0301\u0323\u0300", count);
    const std::string ordered = Join({Repeated("\u0323", count), Repeated("\u0301\u0300", count)});
    EXPECT_EQ(Fold(Join({"e", mixed})), Join({"e", ordered})) << count;
    EXPECT_EQ(Fold(mixed), ordered) << count;
    EXPECT_EQ(Fold(Join({"E", mixed, "E"})), Join({"e", ordered, "e"})) << count;
  }
}

TEST(TextFolding, OnlyALongRunOfMarksNeedsMemory) {
  const std::string many = Join({"e", Repeated("\u0301\u0323", 500)});
  const std::string few = Join({"e", Repeated("\u0301\u0323", 32)});
  std::vector<char> room(kFoldingGrowth * many.size());
  tavrel::system::faults::FailAfter(0, false);
  const auto size = FoldText(few, {room.data(), nullptr}, 0);
  const auto failed = FoldText(many, {room.data(), nullptr}, 0);
  tavrel::system::faults::Stop();
  EXPECT_EQ(size, few.size());
  EXPECT_EQ(failed, std::nullopt);
  EXPECT_EQ(FoldText(many, {room.data(), nullptr}, 0), many.size());
}

TEST(TextFolding, WithoutMemoryForALongRunOfMarksNothingIsFolded) {
  namespace faults = tavrel::system::faults;
  const std::string marks = Join({"e", Repeated("\u0301\u0323", 500)});
  for (const std::string& text : {marks, Join({marks, "\u00E9"}), Join({marks, "x"})}) {
    std::vector<char> room(kFoldingGrowth * text.size());
    const auto fold = [&](std::int64_t successes) {
      faults::FailAfter(successes, false);
      const auto size = FoldText(text, {room.data(), nullptr}, 0);
      faults::Stop();
      return size;
    };
    EXPECT_NE(fold(1000), std::nullopt);
    const std::int64_t asked = faults::Asked();
    EXPECT_GT(asked, 1) << "to take the marks, and to order them";
    for (std::int64_t i = 0; i < asked; ++i) EXPECT_EQ(fold(i), std::nullopt) << i;
  }
}

}  // namespace
