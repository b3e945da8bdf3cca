// Reading numbers out of texts, with stated overflow rules and without a locale.
#pragma once

#include <cstdint>
#include <string_view>

namespace tavrel {

// A signed decimal number: leading blanks, one sign, digits up to the first other byte; 0 without
// digits.
// Result: the low 32 bits of the value clamped to 64 bits.
[[nodiscard]] std::int32_t ReadDecimal(std::string_view text) noexcept;

// An unsigned number in base 10 or 16: leading blanks, one sign (negated modulo 2^64), in base 16
// an optional "0x", digits up to the first other byte; 0 without digits.
// Result: the low 32 bits of the value clamped to 64 bits.
[[nodiscard]] std::uint32_t ReadUnsigned(std::string_view text, unsigned base) noexcept;

// The value of a hexadecimal digit, 16 for any other byte.
[[nodiscard]] constexpr unsigned HexDigitValue(char digit) noexcept {
  const unsigned byte = static_cast<unsigned char>(digit);
  const unsigned asDecimal = byte - '0';
  const unsigned asLetter = (byte | 0x20u) - 'a';
  const unsigned orNone = asLetter < 6 ? asLetter + 10 : 16;  // no branches: digits are random
  return asDecimal < 10 ? asDecimal : orNone;
}

}  // namespace tavrel
