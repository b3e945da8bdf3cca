#include <gtest/gtest.h>

#include "system/Memory.h"
#include "tests/reference/SearchModel.h"
#include "tests/support/Random.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Texts.h"
#include "tests/unit/text/Folded.h"
#include "tests/unit/text/RepetitiveTexts.h"
#include "text/TextSearch.h"

namespace {

using tavrel::test::Composed;
using tavrel::test::ContainsByModel;
using tavrel::test::Decomposed;
using tavrel::test::Finds;
using tavrel::test::Folded;
using tavrel::test::Join;
using tavrel::test::Random;
using tavrel::test::Repeated;
using tavrel::test::Rounds;
using tavrel::test::SetsForSearch;
using tavrel::text::kNotFound;
using tavrel::text::SearchTerm;

TEST(TextSearch, FindsATermAnywhere) {
  EXPECT_TRUE(Finds("Beat It", "beat"));
  EXPECT_TRUE(Finds("HEARTBEAT", "beat"));
  EXPECT_TRUE(Finds("HEARTBEAT", "HEART"));
  EXPECT_TRUE(Finds("Rock & Roll", "& roll"));
  EXPECT_TRUE(Finds("x", "X"));
  EXPECT_FALSE(Finds("Beat It", "beat  it"));
  EXPECT_FALSE(Finds("bea", "beat"));
}

TEST(TextSearch, AnEmptyTermIsNeverFound) {
  EXPECT_FALSE(Finds("Beat It", ""));
  EXPECT_FALSE(Finds("", ""));
}

TEST(TextSearch, WhatIsNoUtf8IsNotFoundAndFindsNothing) {
  EXPECT_FALSE(Finds("caf\xE9", "caf"));
  EXPECT_FALSE(Finds("caf\xE9", "caf\xE9"));
  EXPECT_FALSE(Finds("café", "caf\xE9"));
  EXPECT_FALSE(Finds("café", "\xC3"));
}

TEST(TextSearch, NeitherCaseNorCompositionCounts) {
  EXPECT_TRUE(Finds("Dvo\u0159\u00E1k", "DVOR\u030CA\u0301K"));
  EXPECT_TRUE(Finds("Dvor\u030Ca\u0301k", "dvo\u0159\u00E1k"));
  EXPECT_TRUE(Finds("E\u0301tude", "\u00E9"));
  EXPECT_TRUE(Finds("\u00C9tude", "e\u0301"));
  EXPECT_TRUE(Finds("\u1EAD", "\u00E2\u0323"));
  EXPECT_TRUE(Finds("Kelvin", "\u212A"));
  EXPECT_TRUE(Finds("\u212Aelvin", "k"));
  EXPECT_TRUE(Finds("Congre\u017F\u017F", "congress"));
  EXPECT_TRUE(Finds("ΟΔΥΣΣΕΥΣ", "οδυσσευς"));
  EXPECT_TRUE(Finds("Любовь", "ЛЮБОВЬ"));
  EXPECT_TRUE(Finds("\U00010400", "\U00010428"));
}

TEST(TextSearch, AMatchTakesNoLetterWithoutItsMarks) {
  EXPECT_FALSE(Finds("\u00E9toil", "e"));
  EXPECT_FALSE(Finds("e\u0301toil", "e"));
  EXPECT_FALSE(Finds("xe\u0301", "xe"));
  EXPECT_FALSE(Finds("e\u0301x", "\u0301x"));
  EXPECT_FALSE(Finds("e\u0323\u0301", "e\u0323"));
  EXPECT_FALSE(Finds("e\u0323\u0301", "e\u0301"));
  EXPECT_TRUE(Finds("e\u0323\u0301", "e\u0301\u0323"));
  EXPECT_FALSE(Finds("Dvořák", "dvorak"));
  EXPECT_TRUE(Finds("e\u0301toil", "toil"));
  EXPECT_TRUE(Finds("e\u0301e", "e")) << "the second one";
}

TEST(TextSearch, MarksWithoutALetterStandForThemselves) {
  EXPECT_TRUE(Finds("\u0301x", "\u0301"));
  EXPECT_TRUE(Finds("\u0301x", "x"));
  EXPECT_FALSE(Finds("\u0301\u0301x", "\u0301"));
}

TEST(TextSearch, AMatchTakesNoPartOfWhatACharacterFoldsTo) {
  EXPECT_TRUE(Finds("Straße", "strasse"));
  EXPECT_TRUE(Finds("Strasse", "STRAßE"));
  EXPECT_FALSE(Finds("Straße", "stras"));
  EXPECT_FALSE(Finds("Straße", "se"));
  EXPECT_TRUE(Finds("Strasse", "stras"));
  EXPECT_TRUE(Finds("ßßs", "sss"));
  EXPECT_FALSE(Finds("ßß", "sss"));
  EXPECT_FALSE(Finds("\uFB01n", "f"));
  EXPECT_TRUE(Finds("\uFB01n", "fin"));
  EXPECT_FALSE(Finds("\u0149", "n"));
  EXPECT_FALSE(Finds("\u1FB3", "\u03B1"));
  EXPECT_FALSE(Finds("\u03B1\u0345", "\u03B1"));
  EXPECT_TRUE(Finds("\u03B1\u03B9", "\u03B1"));
  EXPECT_TRUE(Finds("\u03B1\u03B9", "\u1FB3"));
}

TEST(TextSearch, AMatchTakesNoPartOfAHangulSyllable) {
  EXPECT_FALSE(Finds("\uAC01", "\u1100"));
  EXPECT_FALSE(Finds("\uAC01", "\uAC00"));
  EXPECT_FALSE(Finds("\u1100\u1161\u11A8", "\uAC00"));
  EXPECT_FALSE(Finds("\uAC00\u11A8", "\uAC00"));
  EXPECT_TRUE(Finds("\uAC00\u11A8", "\uAC01"));
  EXPECT_TRUE(Finds("\uAC01\uAC00", "\uAC00"));
  EXPECT_TRUE(Finds("\uC0AC\uB791\uD574", "\uB791"));
}

TEST(TextSearch, ACharacterOfSeveralPartsIsOneHoweverItIsWritten) {
  EXPECT_FALSE(Finds("\u09CB", "\u09C7"));
  EXPECT_FALSE(Finds("\u09C7\u09BE", "\u09C7"));
  EXPECT_TRUE(Finds("\u09C7\u09BE", "\u09CB"));
  EXPECT_TRUE(Finds("\u0995\u09BE", "\u0995")) << "these two are characters of their own";
  EXPECT_FALSE(Finds("\u0CC6\u0CC2\u0CD5", "\u0CCA"));
  EXPECT_FALSE(Finds("\u0F43", "\u0F42"));
  EXPECT_FALSE(Finds("\u0F42\u0FB7", "\u0F42"));
}

TEST(TextSearch, PartsWithAnythingBetweenThemAreCharactersOfTheirOwn) {
  EXPECT_TRUE(Finds("\u1100\u0301\u1161", "\u1161"));
  EXPECT_TRUE(Finds("\u1100a\u1161", "\u1161"));
  EXPECT_TRUE(Finds("\u1100\u1100\u1161", "\u1100"));
  EXPECT_FALSE(Finds("\u1100\u1161", "\u1161"));
}

TEST(TextSearch, EmojiSequencesAreNoSingleCharacters) {
  const char* family = "\U0001F469\u200D\U0001F469\u200D\U0001F467";
  EXPECT_TRUE(Finds(family, "\U0001F467"));
  EXPECT_TRUE(Finds(family, family));
  EXPECT_TRUE(Finds("\U0001F1E9\U0001F1EA", "\U0001F1EA"));
  EXPECT_TRUE(Finds("\u2764\uFE0F", "\u2764"));
}

TEST(TextSearch, NoMatchReachesFromOneTextIntoTheNext) {
  const Folded folded({"ab", "", "cd", "bc"});
  for (const auto set : SetsForSearch()) {
    EXPECT_EQ(folded.Find(SearchTerm("bc", set)), 3u);
    EXPECT_EQ(folded.Find(SearchTerm("abcd", set)), 4u);
  }
}

TEST(TextSearch, ATextThatIsNoUtf8LeavesNothingBehind) {
  const Folded folded({"e\u0301\u0301\u0301\u0301\xFF", "abcdefghi", "x"});
  for (const char* letter : {"a", "b", "c", "d", "e", "f", "g", "h", "i"}) {
    EXPECT_EQ(folded.Find(SearchTerm(letter)), 1u) << letter;
  }
  EXPECT_EQ(folded.Find(SearchTerm("x")), 2u);
}

TEST(TextSearch, ATermThatCouldNotBePreparedIsNeverFound) {
  tavrel::system::faults::FailAfter(0, true);
  const SearchTerm term("beat");
  tavrel::system::faults::Stop();
  EXPECT_FALSE(term.IsPrepared());
  EXPECT_FALSE(term.IsIn("beat"));
}

// Letters, marks, Hangul, sharp s, sigma, emoji, and whatever else is subtle.
const std::vector<std::string_view> kTextPieces = {
    "a",          "A",          "e",          "E",      "s",      "S",          "k",      "i",
    "I",          "f",          " ",          "\u0301", "\u0301", "\u0323",     "\u0302", "\u0345",
    "\u0327",     "\u0344",     "\u00E9",     "\u00C9", "\u1EBF", "\u00DF",     "\u1E9E", "\u017F",
    "\u212A",     "\uFB01",     "\uFB03",     "\u0130", "\u0131", "\u0149",     "\u03A3", "\u03C3",
    "\u03C2",     "\u03B1",     "\u0391",     "\u1FB3", "\u1FBC", "\u1FB4",     "\u03B9", "\u1100",
    "\u1161",     "\u11A8",     "\uAC00",     "\uAC01", "\u09C7", "\u09BE",     "\u09CB", "\u0CC6",
    "\u0CC2",     "\u0CD5",     "\u0F42",     "\u0FB7", "\u0F43", "\u0F73",     "\u0F71", "\u13A0",
    "\uAB70",     "\U00010400", "\U00010428", "\u01C4", "\u01C5", "\U0001F469", "\u200D", "\uFE0F",
    "\U0001D15E", "\u2126",     "\u03C9",     "\u0958", "\u093C"};

std::vector<std::string_view> FewPieces(Random& random) {
  std::vector<std::string_view> few;
  for (std::size_t count = 2 + random.Below(4); count > 0; --count) {
    few.push_back(kTextPieces[random.Below(kTextPieces.size())]);
  }
  return few;
}

std::string Respelled(const std::string& text, Random& random) {
  switch (random.Below(3)) {
    case 0:
      return Composed(text);
    case 1:
      return Decomposed(text);
    default:
      return text;
  }
}

TEST(TextSearch, AnswersLikeTheModel) {
  Random random(1);
  int found = 0;
  const int rounds = Rounds(60'000);
  for (int round = 0; round < rounds; ++round) {
    const std::vector<std::string_view> pieces = FewPieces(random);
    const std::string text = random.Text(pieces, random.Below(12));
    const std::string term = random.Text(pieces, 1 + random.Below(3));
    const bool expected = ContainsByModel(text, term);
    found += expected ? 1 : 0;
    ASSERT_EQ(Finds(text, term), expected) << text << " / " << term;
    ASSERT_EQ(Finds(Respelled(text, random), Respelled(term, random)), expected)
        << text << " / " << term;
  }
  EXPECT_GT(found, rounds / 10) << "the texts are too different to say anything";
  EXPECT_LT(found, rounds * 9 / 10);
}

// Long texts in columns, where the vectors of a scan meet every offset.
TEST(TextSearch, FindsTheSameTextsAsTheModelInColumns) {
  Random random(2);
  for (int round = 0; round < Rounds(600); ++round) {
    const std::vector<std::string_view> pieces = FewPieces(random);
    std::vector<std::string> texts;
    for (std::size_t count = 1 + random.Below(30); count > 0; --count) {
      texts.push_back(random.Text(pieces, random.Below(40)));
    }
    const Folded folded({texts.begin(), texts.end()});
    const std::string term = random.Text(pieces, 1 + random.Below(9));
    for (const auto set : SetsForSearch()) {
      const SearchTerm prepared(term, set);
      std::size_t from = 0;
      for (std::size_t i = 0; i < texts.size(); ++i) {
        if (!ContainsByModel(texts[i], term)) continue;
        ASSERT_EQ(folded.Find(prepared, from), i) << term;
        from = i + 1;
        if (from == texts.size()) break;
      }
      if (from == texts.size()) continue;
      ASSERT_EQ(folded.Find(prepared, from), texts.size()) << term;
    }
  }
}

TEST(TextSearch, RepetitiveTextsHoldRepetitiveTermsOrDoNot) {
  for (const tavrel::test::RepetitiveText& each : tavrel::test::RepetitiveTexts(40'000)) {
    EXPECT_EQ(Finds(each.text, each.term), each.isFound) << each.term.substr(0, 8);
  }
}

TEST(TextSearch, WithoutMemoryATermIsInNoText) {
  const SearchTerm term("beat");
  tavrel::system::faults::FailAfter(0, false);
  const bool isIn = term.IsIn("Beat It");
  tavrel::system::faults::Stop();
  EXPECT_FALSE(isIn);
  EXPECT_TRUE(term.IsIn("Beat It"));
}

TEST(TextSearch, OnlyTheTibetanPairsOfACharacterBelongTogether) {
  EXPECT_FALSE(Finds("\u0F40\u0FB5", "\u0F40"));
  EXPECT_FALSE(Finds("\u0F90\u0FB5", "\u0F90"));
  EXPECT_TRUE(Finds("\u0F41\u0FB5", "\u0F41"));
}

}  // namespace
