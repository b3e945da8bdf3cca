// Folding and searching single texts, for tests.
#pragma once

#include <gtest/gtest.h>
#include <utf8proc.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/InstructionSets.h"
#include "text/TextSearch.h"

namespace tavrel::test {

// Folded texts, one behind the other, with a zero byte behind each, in memory of exactly their
// size.
class Folded {
 public:
  explicit Folded(const std::vector<std::string_view>& texts) {
    std::size_t room = texts.size();
    for (const std::string_view text : texts) room += text::kFoldingGrowth * text.size();
    std::vector<char> bytes(room + 1);
    joined_.resize(room / 64 + 1);
    for (const std::string_view text : texts) {
      starts_.push_back(size_);
      const auto length = text::FoldText(text, {bytes.data(), joined_.data()}, size_);
      EXPECT_TRUE(length.has_value());
      size_ += length.value_or(0) + 1;
    }
    bytes.resize(size_);
    bytes_ = std::vector<char>(bytes);
    bytes_.shrink_to_fit();
  }
  explicit Folded(std::string_view text) : Folded(std::vector<std::string_view>{text}) {}

  [[nodiscard]] text::FoldedTexts texts() const { return {bytes_.data(), joined_.data()}; }
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] std::string_view bytes() const { return {bytes_.data(), size_ - 1}; }

  // The number of the text that the first match stands in; none found: the number of texts.
  [[nodiscard]] std::size_t Find(const text::SearchTerm& term, std::size_t first = 0) const {
    const std::size_t place = term.FindIn(texts(), starts_[first], size_);
    if (place == text::kNotFound) return starts_.size();
    const auto behind = std::upper_bound(starts_.begin(), starts_.end(), place);
    return static_cast<std::size_t>(behind - starts_.begin()) - 1;
  }

 private:
  std::vector<char> bytes_;
  std::vector<std::uint64_t> joined_;
  std::vector<std::size_t> starts_;
  std::size_t size_ = 0;
};

// Whether a search finds `term` in `text`; every set of instructions must say the same.
[[nodiscard]] inline bool Finds(std::string_view text, std::string_view term) {
  const Folded folded(text);
  std::vector<bool> answers;
  for (const system::InstructionSet set : SetsForSearch()) {
    const text::SearchTerm prepared(term, set);
    EXPECT_TRUE(prepared.IsPrepared());
    answers.push_back(folded.Find(prepared) == 0);
    EXPECT_EQ(answers.back(), prepared.IsIn(text)) << text << " / " << term;
    EXPECT_EQ(answers.back(), answers.front()) << text << " / " << term;
  }
  return answers.front();
}

// Whether a loop over all characters should look at this one: of the hundreds of thousands that are alike
// (unassigned, private, ideographs, Korean syllables), some stand for the others.
[[nodiscard]] inline bool IsWorthATest(std::int32_t point) {
  const bool isSurrogate = point >= 0xD800 && point < 0xE000;
  const utf8proc_category_t category = utf8proc_category(point);
  const bool isOneOfMany = category == UTF8PROC_CATEGORY_CN || category == UTF8PROC_CATEGORY_CO ||
                           (point >= 0x3400 && point < 0xD7A4) ||
                           (point >= 0x17000 && point < 0x1BC00) || point >= 0x30000 ||
                           (point >= 0x20000 && point < 0x2F800);
  return !isSurrogate && (!isOneOfMany || point % 53 == 0 || (point & 0xFFFE) == 0xFFFE);
}

}  // namespace tavrel::test
