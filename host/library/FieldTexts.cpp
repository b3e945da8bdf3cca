#include "host/library/FieldTexts.h"

#include <charconv>
#include <cstddef>

namespace tavrel::host {

namespace {

// Digits too few to overflow: nearly all numbers.
std::optional<std::int64_t> ShortNumberIn(std::string_view text) noexcept {
  constexpr std::size_t kMostDigits = 18;
  if (text.empty() || text.size() > kMostDigits) return std::nullopt;
  std::int64_t number = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') return std::nullopt;
    number = number * 10 + (digit - '0');
  }
  return number;
}

}  // namespace

std::optional<std::int64_t> NumberIn(std::string_view text) noexcept {
  if (const auto number = ShortNumberIn(text)) return number;
  if (text.starts_with('+')) text.remove_prefix(1);
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool IsDate(std::string_view text) noexcept {
  constexpr std::string_view kLeast = "0000-00-00T00:00:00Z";
  constexpr std::string_view kMost = "9999-99-99T99:99:99Z";
  if (text.size() != kLeast.size()) return false;
  unsigned char odd = 0;  // without an end at the first: all characters are looked at together
  for (std::size_t i = 0; i < kLeast.size(); ++i) {
    const auto above = static_cast<unsigned char>(text[i] - kLeast[i]);
    const auto most = static_cast<unsigned char>(kMost[i] - kLeast[i]);
    odd = static_cast<unsigned char>(odd | (above > most ? 1 : 0));
  }
  return odd == 0;
}

}  // namespace tavrel::host
