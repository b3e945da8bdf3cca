#include "text/Numbers.h"

#include <limits>
#include <optional>

#include "text/Ascii.h"

namespace tavrel::text {
namespace {

// The rest of `text` behind blanks and one sign.
std::string_view SkipBlanksAndSign(std::string_view text, bool& negative) noexcept {
  while (!text.empty() && IsWhitespace(text.front())) text.remove_prefix(1);
  negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return text;
}

// The digits at the start of `text`; none when their value is above `limit`.
std::optional<std::uint64_t> ReadDigits(std::string_view text, unsigned base,
                                        std::uint64_t limit) noexcept {
  std::uint64_t value = 0;
  for (const char c : text) {
    const unsigned digit = HexDigitValue(c);
    if (digit >= base) break;
    if (__builtin_mul_overflow(value, base, &value) ||
        __builtin_add_overflow(value, digit, &value) || value > limit) {
      return std::nullopt;
    }
  }
  return value;
}

}  // namespace

std::int32_t ReadDecimal(std::string_view text) noexcept {
  bool negative = false;
  text = SkipBlanksAndSign(text, negative);
  constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
  const std::uint64_t limit = negative ? kLargest + 1 : kLargest;
  const std::uint64_t value = ReadDigits(text, 10, limit).value_or(limit);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(negative ? 0 - value : value));
}

std::uint32_t ReadUnsigned(std::string_view text, unsigned base) noexcept {
  bool negative = false;
  text = SkipBlanksAndSign(text, negative);
  const bool prefixed = base == 16 && text.size() > 2 && text[0] == '0' &&
                        (text[1] == 'x' || text[1] == 'X') && HexDigitValue(text[2]) < 16;
  if (prefixed) text.remove_prefix(2);
  constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();
  const std::optional<std::uint64_t> value = ReadDigits(text, base, kLargest);
  if (!value) return static_cast<std::uint32_t>(kLargest);  // whatever the sign
  return static_cast<std::uint32_t>(negative ? 0 - *value : *value);
}

}  // namespace tavrel::text
