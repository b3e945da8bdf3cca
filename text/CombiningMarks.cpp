#include "text/CombiningMarks.h"

#include <algorithm>
#include <limits>

namespace tavrel::text {

bool CombiningMarks::Grow() noexcept {
  void* grown = system::Reallocate(block_, 2 * capacity_ * sizeof(CombiningMark));
  if (grown == nullptr) return false;
  auto* marks = static_cast<CombiningMark*>(grown);
  if (block_ == nullptr) std::copy(begin(), end(), marks);
  marks_ = marks;
  block_ = grown;
  capacity_ *= 2;
  return true;
}

void CombiningMarks::OrderFew() noexcept {
  for (std::size_t i = 1; i < count_; ++i) {
    const CombiningMark mark = marks_[i];
    std::size_t at = i;
    for (; at > 0 && marks_[at - 1].combiningClass > mark.combiningClass; --at) {
      marks_[at] = marks_[at - 1];
    }
    marks_[at] = mark;
  }
}

// Few are ordered by insertion, more by counting.
bool CombiningMarks::Order() noexcept {
  if (count_ <= kFew) {
    OrderFew();
    return true;
  }
  auto* ordered = static_cast<CombiningMark*>(system::Allocate(capacity_ * sizeof(CombiningMark)));
  if (ordered == nullptr) return false;
  constexpr std::size_t kClasses = std::size_t{std::numeric_limits<std::uint8_t>::max()} + 1;
  std::size_t places[kClasses + 1] = {};  // where the next mark of a class goes
  for (const CombiningMark& mark : *this) ++places[mark.combiningClass + 1u];
  for (std::size_t i = 1; i <= kClasses; ++i) places[i] += places[i - 1];
  for (const CombiningMark& mark : *this) ordered[places[mark.combiningClass]++] = mark;
  system::Release(block_);
  block_ = ordered;
  marks_ = ordered;
  return true;
}

}  // namespace tavrel::text
