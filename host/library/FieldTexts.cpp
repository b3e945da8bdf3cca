#include "host/library/FieldTexts.h"

#include <charconv>
#include <cstddef>
#include <cstdint>

namespace tavrel::host {

namespace {

using Word = std::uint64_t;

// The 4 bytes from there, the first one lowest.
Word FourBytes(const char* at) noexcept {
  const auto byte = [at](unsigned i) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(at[i])) << 8 * i;
  };
  return byte(0) | byte(1) | byte(2) | byte(3);  // one load, and not a loop
}

// Up to 8 bytes with as many '0' before them as make 8; the first one lowest.
Word RightAligned(std::string_view digits) noexcept {
  constexpr Word kZeros = 0x3030303030303030u;
  const std::size_t size = digits.size();
  const auto byte = [digits](std::size_t i) { return Word{static_cast<unsigned char>(digits[i])}; };
  const Word word =
      size >= 4 ? FourBytes(digits.data()) | FourBytes(digits.data() + size - 4) << 8 * (size - 4)
                : byte(0) | byte(size / 2) << 8 * (size / 2) | byte(size - 1) << 8 * (size - 1);
  return size == 8 ? word : word << 8 * (8 - size) | kZeros >> 8 * size;
}

// Up to 8 digits, all at a time: nearly all numbers.
std::optional<std::int64_t> ShortNumberIn(std::string_view text) noexcept {
  if (text.empty() || text.size() > 8) return std::nullopt;
  const Word word = RightAligned(text);
  // The higher half of a byte is 3 from '0' to '?', and is so still with 6 more up to '9'.
  constexpr Word kHighHalves = 0xF0F0F0F0F0F0F0F0u;
  const Word above = word + 0x0606060606060606u;
  if ((word & above & kHighHalves) != 0x3030303030303030u) return std::nullopt;
  const Word digits = word & ~kHighHalves;
  const Word pairs = (digits * 10 + (digits >> 8)) & 0x00FF00FF00FF00FFu;
  const Word fours = (pairs * 100 + (pairs >> 16)) & 0x0000FFFF0000FFFFu;
  return static_cast<std::int64_t>((fours * 10000 + (fours >> 32)) & 0xFFFFFFFFu);
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
