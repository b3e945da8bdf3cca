// What it costs to fold and to search texts, however long and repetitive they are.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/InstructionSets.h"
#include "tests/support/Texts.h"
#include "tests/unit/text/RepetitiveTexts.h"
#include "tests/work/WorkCount.h"
#include "text/TextFolding.h"
#include "text/TextSearch.h"

namespace tavrel::test {
namespace {

WorkCount WorkOfFolding(const std::string& text) {
  std::vector<char> room(text::kFoldingGrowth * text.size());
  return WorkOf([&] { EXPECT_TRUE(text::FoldText(text, {room.data(), nullptr}, 0).has_value()); });
}

TEST(TextFolding, LongRunsOfMarksTakeWorkLinearInTheirLength) {
  for (const char* marks : {"\u0301\u0323", "\u0301", "\u0323\u0301\u0300"}) {
    constexpr std::size_t kCount = 20000;
    ExpectLinear(WorkOfFolding(Join({"e", Repeated(marks, kCount)})),
                 WorkOfFolding(Join({"e", Repeated(marks, 8 * kCount)})), 8, kCount);
  }
}

TEST(TextSearch, RepetitiveTextsTakeWorkLinearInTheirLength) {
  constexpr std::size_t kSize = 40000;
  const std::vector<RepetitiveText> small = RepetitiveTexts(kSize);
  const std::vector<RepetitiveText> large = RepetitiveTexts(8 * kSize);
  const auto workOf = [](const RepetitiveText& each, system::InstructionSet set) {
    return WorkOf([&] {
      EXPECT_EQ(text::SearchTerm(each.term, set).IsIn(each.text), each.isFound)
          << each.term.substr(0, 8);
    });
  };
  for (const system::InstructionSet set : SetsForSearch()) {
    for (std::size_t i = 0; i < small.size(); ++i) {
      ExpectLinear(workOf(small[i], set), workOf(large[i], set), 8, kSize);
    }
  }
}

}  // namespace
}  // namespace tavrel::test
