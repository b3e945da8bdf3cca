#include "library/file/PersistentId.h"

#include <cstring>

#include "text/Ascii.h"

namespace tavrel {
namespace {

constexpr int kBytes = 8;

std::uint8_t ReadPair(const char* digits) noexcept {
  const unsigned first = text::HexDigitValue(digits[0]);
  const unsigned second = text::HexDigitValue(digits[1]);
  if (first > 15) return 0;
  return static_cast<std::uint8_t>(second > 15 ? first : first * 16 + second);
}

}  // namespace

std::int32_t ParsePersistentId(const char* text, std::uint8_t* bytes) noexcept {
  if (text == nullptr || bytes == nullptr || strnlen(text, 2 * kBytes) < 2 * kBytes) return 0;
  for (int i = 0; i < kBytes; ++i) bytes[i] = ReadPair(text + 2 * i);
  return kBytes;
}

}  // namespace tavrel
