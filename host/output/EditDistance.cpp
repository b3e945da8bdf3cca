#include "host/output/EditDistance.h"

#include <algorithm>

#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kWordSize = 64;

std::vector<std::int32_t> Codes(std::string_view text) {
  std::vector<std::int32_t> codes;
  codes.reserve(text.size());
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    codes.push_back(first.code);
    text.remove_prefix(first.length);
  }
  return codes;
}

// 64 rows of one column of the table of distances between the starts of both texts. Neighbours in it
// differ by one at most, so that bits hold it: where a row is one more than the row above, or one less.
struct WordOfRows {
  std::uint64_t more = ~std::uint64_t{0};
  std::uint64_t less = 0;

  // Goes on to the next column (Myers, "A fast bit-vector algorithm for approximate string matching").
  // same: the rows whose character is the column's.
  // above: how the value above the first row has changed from column to column: -1, 0 or 1.
  // last: the bit of the last row.
  // Result: how that one's value has changed.
  int Step(std::uint64_t same, int above, std::uint64_t last) noexcept {
    const std::uint64_t vertical = same | less;
    if (above < 0) same |= 1;
    const std::uint64_t horizontal = (((same & more) + more) ^ more) | same;
    std::uint64_t up = less | ~(horizontal | more);
    std::uint64_t down = more & horizontal;
    const int change = (up & last) != 0 ? 1 : (down & last) != 0 ? -1 : 0;
    up = up << 1 | (above > 0 ? 1u : 0u);
    down = down << 1 | (above < 0 ? 1u : 0u);
    more = down | ~(vertical | up);
    less = up & vertical;
    return change;
  }
};

}  // namespace

EditDistance::EditDistance(std::string_view wanted) {
  const std::vector<std::int32_t> codes = Codes(wanted);
  length_ = codes.size();
  words_ = (length_ + kWordSize - 1) / kWordSize;
  codes_ = codes;
  std::sort(codes_.begin(), codes_.end());
  codes_.erase(std::unique(codes_.begin(), codes_.end()), codes_.end());
  places_.resize((codes_.size() + 1) * words_);
  for (std::size_t place = 0; place < length_; ++place) {
    const auto code = std::lower_bound(codes_.begin(), codes_.end(), codes[place]);
    const auto entry = static_cast<std::size_t>(code - codes_.begin());
    places_[entry * words_ + place / kWordSize] |= std::uint64_t{1} << place % kWordSize;
  }
}

const std::uint64_t* EditDistance::PlacesOf(std::int32_t code) const {
  auto entry = std::lower_bound(codes_.begin(), codes_.end(), code);
  if (entry != codes_.end() && *entry != code) entry = codes_.end();
  return places_.data() + static_cast<std::size_t>(entry - codes_.begin()) * words_;
}

std::size_t EditDistance::To(std::string_view text) const {
  const std::vector<std::int32_t> codes = Codes(text);
  if (length_ == 0) return codes.size();
  constexpr std::uint64_t kTop = std::uint64_t{1} << (kWordSize - 1);
  const std::uint64_t last = std::uint64_t{1} << (length_ - 1) % kWordSize;
  std::vector<WordOfRows> column(words_);
  std::size_t distance = length_;
  for (const std::int32_t code : codes) {
    const std::uint64_t* places = PlacesOf(code);
    int change = 1;  // the row of the empty text grows from column to column
    for (std::size_t word = 0; word < words_; ++word) {
      change = column[word].Step(places[word], change, word + 1 < words_ ? kTop : last);
    }
    distance += static_cast<std::size_t>(change);
  }
  return distance;
}

}  // namespace tavrel::host
