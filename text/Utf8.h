// The strict UTF-8 rule: no overlong forms, no surrogates, nothing above U+10FFFF, no lone or
// missing continuation bytes. Noncharacters, zero bytes and a byte order mark are text like any
// other.
#pragma once

#include <cstddef>
#include <string_view>

#include "system/Processor.h"

namespace tavrel::text {

// The length in bytes of the longest prefix that is valid UTF-8 and ends with a whole character.
[[nodiscard]] std::size_t ValidUtf8Prefix(const char* bytes, std::size_t length) noexcept;

[[nodiscard]] inline bool IsValidUtf8(std::string_view text) noexcept {
  return ValidUtf8Prefix(text.data(), text.size()) == text.size();
}

struct TextPrefix {
  std::size_t length;        // as ValidUtf8Prefix() gives it
  std::size_t lengthToZero;  // of what stands before its first zero byte
};

// Finds both in one sweep.
// set: a supported one; kPlain goes from character to character.
[[nodiscard]] TextPrefix ValidTextPrefix(const char* bytes, std::size_t length,
                                         system::InstructionSet set = system::WidestSet()) noexcept;

}  // namespace tavrel::text
