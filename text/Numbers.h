// Reading numbers out of texts, with stated overflow rules and without a locale.
#pragma once

#include <cstdint>
#include <string_view>

namespace tavrel::text {

// A signed decimal number: leading blanks, one sign, digits up to the first other byte; 0 without
// digits.
// Result: the low 32 bits of the value clamped to 64 bits.
[[nodiscard]] std::int32_t ReadDecimal(std::string_view text) noexcept;

// An unsigned number in base 10 or 16: leading blanks, one sign (negated modulo 2^64), in base 16
// an optional "0x", digits up to the first other byte; 0 without digits.
// Result: the low 32 bits of the value clamped to 64 bits.
[[nodiscard]] std::uint32_t ReadUnsigned(std::string_view text, unsigned base) noexcept;

}  // namespace tavrel::text
