// How far texts are from one that was meant.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tavrel::host {

// How many characters must be inserted, removed or replaced to turn one text into another.
//
// Cost of a question: the length of the text, times the 64th part of that of the wanted one.
class EditDistance {
 public:
  explicit EditDistance(std::string_view wanted);

  [[nodiscard]] std::size_t To(std::string_view text) const;

 private:
  // For each character where the wanted text has it: a bit for each place, 64 in a word.
  using Places = std::vector<std::uint64_t>;

  [[nodiscard]] const std::uint64_t* PlacesOf(std::int32_t code) const;

  std::size_t length_ = 0;  // of the wanted text, in characters
  std::size_t words_ = 0;
  std::vector<std::int32_t> codes_;  // that the wanted text has, ascending
  Places places_;                    // `words_` for each of them, and as many empty ones
};

}  // namespace tavrel::host
