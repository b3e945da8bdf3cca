#include <gtest/gtest.h>

#include <string>

#include "host/output/FindRange.h"

namespace tavrel::host {
namespace {

using text::SearchTerm;

std::string Found(std::string_view text, std::string_view term) {
  const std::optional<TextRange> range = FindRange(text, SearchTerm(term));
  return range ? std::string(text.substr(range->from, range->to - range->from)) : "(none)";
}

std::string FoundWithoutAccents(std::string_view text, std::string_view part) {
  const std::optional<TextRange> range = AccentlessTerm(part).FindIn(text);
  return range ? std::string(text.substr(range->from, range->to - range->from)) : "(none)";
}

TEST(Highlight, FindsTheFirstMatchAsItIsWritten) {
  EXPECT_EQ(Found("Beat It, beat", "BEAT"), "Beat");
  EXPECT_EQ(Found("HEARTBEAT", "beat"), "BEAT");
  EXPECT_EQ(Found("Dvor\u030Ca\u0301k", "\u0159\u00E1"), "r\u030Ca\u0301");
  EXPECT_EQ(Found("Dvo\u0159\u00E1k", "r\u030Ca\u0301"), "\u0159\u00E1");
  EXPECT_EQ(Found("eine Straße weit", "STRASSE"), "Straße");
  EXPECT_EQ(Found("xe\u0301\u0323y", "\u1EB9\u0301"), "e\u0301\u0323") << "marks in another order";
  EXPECT_EQ(Found("\uAC00\u11A8x", "\uAC01"), "\uAC00\u11A8");
}

TEST(Highlight, FindsNothingWhereNothingMatches) {
  EXPECT_EQ(Found("Beat It", "heart"), "(none)");
  EXPECT_EQ(Found("", "a"), "(none)");
  EXPECT_EQ(Found("abc", ""), "(none)");
  EXPECT_EQ(Found("abc\xFF", "a"), "(none)");
}

TEST(Highlight, WithoutAccentsFindsLettersWithTheirMarks) {
  EXPECT_EQ(FoundWithoutAccents("Dvor\u030Ca\u0301k, A.", "dvorak"), "Dvor\u030Ca\u0301k");
  EXPECT_EQ(FoundWithoutAccents("Dvor\u030Ca\u0301", "DVORA"), "Dvor\u030Ca\u0301");
  EXPECT_EQ(FoundWithoutAccents("Antonín Dvo\u0159\u00E1k", "in dv"), "ín Dv");
  EXPECT_EQ(FoundWithoutAccents("Rusalka", "r\u00FAs\u00E1l"), "Rusal");
  EXPECT_EQ(FoundWithoutAccents("a\u0301b", "b"), "b");
  EXPECT_EQ(FoundWithoutAccents("Straße", "strass"), "Straß");
  EXPECT_EQ(FoundWithoutAccents("abc", "d"), "(none)");
  EXPECT_EQ(FoundWithoutAccents("abc", "\u0301"), "(none)") << "nothing is left of it";
  EXPECT_EQ(FoundWithoutAccents("ab\xFF", "a"), "a");
}

}  // namespace
}  // namespace tavrel::host
