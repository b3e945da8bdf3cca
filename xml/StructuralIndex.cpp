#include "xml/StructuralIndex.h"

#include <algorithm>
#include <cstring>

#include "xml/StructuralIndexKernels.h"

namespace tavrel::xml {

using system::InstructionSet;

namespace {

std::size_t IndexPlain(const char* text, std::size_t length, std::uint32_t base,
                       std::uint32_t* positions) noexcept {
  std::size_t count = 0;
  for (std::size_t i = 0; i < length; ++i) {
    if (text[i] == '<' || text[i] == '>') positions[count++] = base + static_cast<std::uint32_t>(i);
  }
  return count;
}

}  // namespace

IndexFunction IndexFunctionFor([[maybe_unused]] InstructionSet set) noexcept {
  if constexpr (system::kForX86) {
    if (set >= InstructionSet::kAvx512) return IndexAvx512;
    if (set >= InstructionSet::kAvx2) return IndexAvx2;
    if (set >= InstructionSet::kBaseline) return IndexSse2;
  }
  if constexpr (system::kForArm64) {
    if (set >= InstructionSet::kBaseline) return IndexNeon;
  }
  return IndexPlain;
}

bool StructuralIndex::Fill(std::size_t count) noexcept {
  auto left = static_cast<std::size_t>(last_ - next_);
  std::memmove(positions_, next_, left * sizeof *next_);
  while (left < count && indexed_ < length_) {
    const std::size_t bytes = std::min(kBlock, length_ - indexed_);
    left +=
        index_(text_ + indexed_, bytes, static_cast<std::uint32_t>(indexed_), positions_ + left);
    indexed_ += bytes;
  }
  next_ = positions_;
  last_ = positions_ + left;
  return left >= count;
}

void StructuralIndex::SkipTo(std::size_t position) noexcept {
  while (next_ < last_ && *next_ < position) ++next_;
  // A long jump leaves the bytes in between unindexed.
  if (next_ == last_) indexed_ = std::max(indexed_, std::min(position, length_));
}

}  // namespace tavrel::xml
