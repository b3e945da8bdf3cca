// Songs as columns: each text once, and numbers in as few bytes as they take.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/TextNumbers.h"

namespace tavrel::host {

// The texts of one field. Texts that differ only in how their accents are composed, or in what nobody sees,
// are the same.
class TextColumn {
 public:
  // A song's text; none, or one of which nothing is seen, is number 0.
  void Add(std::optional<std::string_view> text);

  // By number, from 0: the empty text, then the others in the order in which they came.
  [[nodiscard]] const std::vector<std::string>& Texts() const noexcept { return texts_; }
  // The number of each song's text.
  [[nodiscard]] const std::vector<std::int64_t>& Numbers() const noexcept { return numbers_; }
  [[nodiscard]] std::string_view Of(std::size_t song) const {
    return texts_[static_cast<std::size_t>(numbers_[song])];
  }

 private:
  std::int64_t NumberOf(std::string_view text);

  std::vector<std::string> texts_ = {""};
  std::vector<std::int64_t> numbers_;
  TextNumbers known_;                // as the file writes them, and as they are shown
  std::vector<std::int64_t> shown_;  // for each of these the number of its text
  std::string last_;
  std::int64_t lastNumber_ = 0;
};

// A column of whole numbers as bytes: the numbers themselves, or what each differs from the one before,
// whichever takes fewer; zigzag (0, -1, 1, -2, …), in groups of seven bits from the lowest, the highest bit
// set where another group follows.
struct PackedNumbers {
  std::string bytes;
  bool areDifferences = false;
};
[[nodiscard]] PackedNumbers Pack(const std::vector<std::int64_t>& numbers);

}  // namespace tavrel::host
