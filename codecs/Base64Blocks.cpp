#include "codecs/Base64Blocks.h"

#include "codecs/Base64BlocksKernels.h"

namespace tavrel {

using system::InstructionSet;

namespace {

std::size_t EncodeNothing(const std::uint8_t*, std::size_t, char*) noexcept {
  return 0;
}

std::size_t DecodeNothing(const char*, std::size_t, std::size_t, std::uint8_t*) noexcept {
  return 0;
}

}  // namespace

Base64Blocks BlocksFor(InstructionSet set) noexcept {
  if constexpr (system::kForX86) {
    if (set >= InstructionSet::kAvx2) return {EncodeAvx2, DecodeAvx2};
  }
  if (set >= InstructionSet::kBaseline) return {EncodeGroups, DecodeGroups};
  return {EncodeNothing, DecodeNothing};
}

}  // namespace tavrel
