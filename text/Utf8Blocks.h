// The UTF-8 rule in bulk: 64 bytes at a time, with the widest instructions of the machine. What is
// shorter, and the place of a fault, is left to the plain rule.
#pragma once

#include <cstddef>

#include "system/Processor.h"

namespace tavrel::text {

inline constexpr std::size_t kUtf8Block = 64;

struct Utf8Blocks {
  std::size_t length = 0;  // of what was found valid; ends with a whole character
  bool hasZero = false;    // false: no zero byte stands in it
};

// Stops in front of the first fault, at most a block in front, or when less than a block is left.
// set: a supported one; kPlain has no blocks.
[[nodiscard]] Utf8Blocks ValidUtf8Blocks(const char* text, std::size_t length,
                                         system::InstructionSet set) noexcept;

}  // namespace tavrel::text
