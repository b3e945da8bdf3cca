#include "text/Utf8.h"

#include <cstring>

#include "text/Utf8Blocks.h"
#include "text/Utf8Characters.h"

namespace tavrel::text {

std::size_t ValidUtf8Prefix(const char* bytes, std::size_t length) noexcept {
  // Most texts are names of a few bytes, over before anything better has begun.
  constexpr std::size_t kShort = 256;
  if (length < kShort) return ValidUtf8Characters(bytes, length);
  return ValidTextPrefix(bytes, length).length;
}

TextPrefix ValidTextPrefix(const char* bytes, std::size_t length,
                           system::InstructionSet set) noexcept {
  const Utf8Blocks blocks = ValidUtf8Blocks(bytes, length, set);
  const std::size_t valid =
      blocks.length + ValidUtf8Characters(bytes + blocks.length, length - blocks.length);
  const std::size_t withoutZero = blocks.hasZero ? 0 : blocks.length;
  return {valid, withoutZero + strnlen(bytes + withoutZero, valid - withoutZero)};
}

}  // namespace tavrel::text
