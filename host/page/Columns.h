// Songs as columns: each text once, and numbers in as few bytes as they take.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/TextNumbers.h"

namespace tavrel::host {

struct SongText {
  std::size_t song;
  std::string_view text;
};

// The texts of one field. Texts that differ only in how their accents are composed, or in what nobody sees,
// are the same.
class TextColumn {
 public:
  TextColumn() : TextColumn(std::span<std::int64_t>()) {}
  // numbers: a zero for each song that will come; borrowed.
  explicit TextColumn(std::span<std::int64_t> numbers) : numbers_(numbers) { known_.Of(""); }

  // A song's text; one of which nothing is seen is number 0, as is that of a song that is left out. Songs come in
  // their order.
  void Set(std::size_t song, std::string_view text);
  // The same for many songs, with less time a song.
  void Add(const std::vector<SongText>& songs);

  // By number, from 0: the empty text, then the others in the order in which they came.
  [[nodiscard]] std::size_t TextCount() const noexcept { return texts_.size(); }
  [[nodiscard]] std::string_view Text(std::size_t number) const noexcept {
    return known_.Text(texts_[number]);
  }
  // The number of each song's text.
  [[nodiscard]] std::span<const std::int64_t> Numbers() const noexcept { return numbers_; }

 private:
  std::int64_t NumberOf(std::string_view text, std::uint64_t hash);

  TextNumbers known_;                      // as the file writes them, and as they are shown
  std::vector<std::int64_t> shown_ = {0};  // for each of these the number of its text
  std::vector<std::size_t> texts_ = {
      0};  // the numbers that the texts have among those that are known
  std::span<std::int64_t> numbers_;
  struct Run {
    std::size_t first;  // of some equal texts
    std::uint64_t hash;
  };
  std::vector<Run> runs_;
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
[[nodiscard]] PackedNumbers Pack(std::span<const std::int64_t> numbers);

}  // namespace tavrel::host
