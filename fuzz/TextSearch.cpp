// The search in texts: every set of instructions finds a term where the model finds it, and nowhere else.
// An input is a term and, behind a line feed, a text.
#include "text/TextSearch.h"

#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "tests/reference/SearchModel.h"
#include "tests/support/InstructionSets.h"

using tavrel::fuzz::Require;
using tavrel::text::FoldedTexts;
using tavrel::text::SearchTerm;

namespace {

// A folded text with a zero byte behind it, in memory of just its size.
struct Folded {
  explicit Folded(std::string_view text) : bytes(tavrel::text::kFoldingGrowth * text.size() + 1) {
    joined.resize(bytes.size() / 64 + 1);
    const auto size = tavrel::text::FoldText(text, {bytes.data(), joined.data()}, 0);
    Require(size.has_value(), "A text cannot be folded");
    bytes.resize(*size + 1);
    bytes.back() = '\0';
    bytes.shrink_to_fit();
  }
  [[nodiscard]] FoldedTexts texts() const { return {bytes.data(), joined.data()}; }

  std::vector<char> bytes;
  std::vector<std::uint64_t> joined;
};

void SearchTexts(std::string_view input) {
  constexpr std::size_t kLongest = 512;  // the model tries every place
  input = input.substr(0, std::min(input.find('\0'), kLongest));
  const std::size_t end = input.find('\n');
  if (end == std::string_view::npos) return;
  const std::string_view term = input.substr(0, end);
  const std::string_view text = input.substr(end + 1);
  const bool expected = tavrel::test::ContainsByModel(text, term);
  const Folded folded(text);
  for (const tavrel::system::InstructionSet set : tavrel::test::SetsForSearch()) {
    const SearchTerm prepared(term, set);
    Require(prepared.IsPrepared(), "A term cannot be prepared");
    Require(prepared.IsIn(text) == expected, "A text is judged differently");
    const std::size_t place = prepared.FindIn(folded.texts(), 0, folded.bytes.size());
    Require((place != tavrel::text::kNotFound) == expected, "A folded text is judged differently");
  }
}

const tavrel::fuzz::Target searchTarget("search", SearchTexts);

}  // namespace
