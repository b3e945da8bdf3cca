#include "text/Utf8Blocks.h"

#include <cstdint>

#include "text/Utf8BlocksKernels.h"

namespace tavrel::text {

using system::InstructionSet;

Utf8Blocks ValidUtf8Blocks(const char* text, [[maybe_unused]] std::size_t length,
                           [[maybe_unused]] InstructionSet set) noexcept {
  [[maybe_unused]] const auto* bytes = reinterpret_cast<const std::uint8_t*>(text);
  if constexpr (system::kForX86) {
    if (set >= InstructionSet::kAvx2) return ValidateAvx2(bytes, length);
    if (set >= InstructionSet::kBaseline) return ValidateSse2(bytes, length);
  }
  if constexpr (system::kForArm64) {
    if (set >= InstructionSet::kBaseline) return ValidateNeon(bytes, length);
  }
  return {};
}

}  // namespace tavrel::text
