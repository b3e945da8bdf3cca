// ASCII characters, without a locale.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tavrel::text {

// Blank, tab, line feed, vertical tab, form feed, carriage return; never a byte above 0x7F.
[[nodiscard]] constexpr bool IsWhitespace(char byte) noexcept {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

// The value of a hexadecimal digit, 16 for any other byte.
[[nodiscard]] constexpr unsigned HexDigitValue(char digit) noexcept {
  const unsigned byte = static_cast<unsigned char>(digit);
  const unsigned asDecimal = byte - '0';
  const unsigned asLetter = (byte | 0x20u) - 'a';
  const unsigned orNone = asLetter < 6 ? asLetter + 10 : 16;  // no branches: digits are random
  return asDecimal < 10 ? asDecimal : orNone;
}

[[nodiscard]] constexpr char ToLowerCase(char c) noexcept {
  return static_cast<char>(c + (c >= 'A' && c <= 'Z' ? 'a' - 'A' : 0));
}

[[nodiscard]] constexpr char ToUpperCase(char c) noexcept {
  return static_cast<char>(c - (c >= 'a' && c <= 'z' ? 'a' - 'A' : 0));
}

// Whether both are the same when the case of ASCII letters does not count.
[[nodiscard]] constexpr bool EqualIgnoringCase(std::string_view left,
                                               std::string_view right) noexcept {
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (ToLowerCase(left[i]) != ToLowerCase(right[i])) return false;
  }
  return true;
}

// How many bytes at the front of `text` are ASCII.
[[nodiscard]] inline std::size_t AsciiPrefixLength(std::string_view text) noexcept {
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  std::uint64_t words[4];
  std::size_t at = 0;
  for (; text.size() - at >= sizeof words; at += sizeof words) {
    std::memcpy(words, text.data() + at, sizeof words);
    if (((words[0] | words[1] | words[2] | words[3]) & kHighBits) != 0) break;
  }
  for (; text.size() - at >= sizeof *words; at += sizeof *words) {
    std::memcpy(words, text.data() + at, sizeof *words);
    if ((words[0] & kHighBits) != 0) break;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at;
}

[[nodiscard]] inline bool IsAscii(std::string_view text) noexcept {
  return AsciiPrefixLength(text) == text.size();
}

}  // namespace tavrel::text
