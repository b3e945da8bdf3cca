// Searching many bytes for a few.
#pragma once

#include <cstddef>
#include <string_view>

#include "system/Processor.h"

namespace tavrel::text {

// What is searched for. Two of its bytes, the probes, are compared first, at many places at once, and
// the whole pattern only where both stand: the "generic SIMD" search of Muła.
struct BytePattern {
  std::string_view bytes;   // borrowed
  std::size_t firstProbe;   // where the byte stands that texts hold least often
  std::size_t secondProbe;  // and the next one; the same place in a pattern of one byte
  system::InstructionSet set;
};

// bytes: not empty.
// set:   a supported one.
[[nodiscard]] BytePattern MakePattern(std::string_view bytes, system::InstructionSet set) noexcept;

// What a search from `from` on has cost so far beyond looking at each byte once. Comparing at every
// place where both probes stand can take as many steps as both lengths multiplied; a search stops
// when they are out of proportion to the way that it has come.
struct SearchEffort {
  const char* from;
  std::size_t compared = 0;

  [[nodiscard]] bool IsExcessive(const char* at) const noexcept {
    return compared > 1024 + 8 * static_cast<std::size_t>(at - from);
  }
};

struct FoundBytes {
  const char* at;
  bool isMatch;  // false: when `at` is the end, nothing was found, else the effort is excessive
};

// The first place of the pattern in the bytes from `from` to `end`. When the effort becomes
// excessive, the place from which the caller has to go on in another way.
[[nodiscard]] FoundBytes FindPattern(const BytePattern& pattern, const char* from, const char* end,
                                     SearchEffort& effort) noexcept;

}  // namespace tavrel::text
