#include "text/Utf8Characters.h"

#include "text/Ascii.h"

namespace tavrel::text {
namespace {

bool IsContinuation(unsigned char byte) noexcept {
  return (byte & 0xC0u) == 0x80u;
}

// The length of the character at `bytes`, 0 when it is malformed or cut off.
std::size_t CharacterLength(const unsigned char* bytes, std::size_t length) noexcept {
  const unsigned char lead = bytes[0];
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;  // continuation, overlong, or above U+10FFFF
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (length < size) return 0;
  // The second byte's range depends on the lead: overlong forms, surrogates and the upper end.
  const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (bytes[1] < low || bytes[1] > high) return 0;
  for (std::size_t i = 2; i < size; ++i) {
    if (!IsContinuation(bytes[i])) return 0;
  }
  return size;
}

}  // namespace

std::size_t ValidUtf8Characters(const char* text, std::size_t length) noexcept {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  std::size_t at = 0;
  while (at < length) {
    if (bytes[at] < 0x80) {
      at += AsciiPrefixLength({text + at, length - at});
      continue;
    }
    const std::size_t size = CharacterLength(bytes + at, length - at);
    if (size == 0) break;
    at += size;
  }
  return at;
}

}  // namespace tavrel::text
