// Base64 by the letter: one character after the other, with the counters as they are stated. Slow
// and plain; what the codec gives is compared with it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel::test {

inline constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

inline std::string ModelEncode(std::string_view bytes, std::uint32_t lineLength) {
  std::string text;
  std::int16_t onLine = 0;
  const auto byteAt = [bytes](std::size_t at) {
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
  };
  for (std::size_t start = 0; start < bytes.size(); start += 3) {
    const unsigned first = byteAt(start);
    const unsigned second = byteAt(start + 1);
    const unsigned third = byteAt(start + 2);
    const std::array<unsigned, 4> sextets = {first >> 2, (first & 3) << 4 | second >> 4,
                                             (second & 15) << 2 | third >> 6, third & 63};
    const std::size_t left = bytes.size() - start;
    const std::size_t count = left == 1 ? 2 : left == 2 ? 3 : 4;
    for (std::size_t i = 0; i < 4; ++i) text += i < count ? kAlphabet[sextets[i]] : '=';
    onLine = static_cast<std::int16_t>(onLine + 4);
    if (lineLength != 0 && std::int64_t{onLine} >= std::int64_t{lineLength}) {
      text += '\n';
      onLine = 0;
    }
  }
  return text;
}

inline std::string ModelDecode(const std::optional<std::string>& string) {
  std::string bytes;
  if (!string) return bytes;
  for (const char character : *string) {
    if (static_cast<unsigned char>(character) > 127) return bytes;
  }
  std::array<unsigned, 4> group{};
  std::int16_t filled = 0;
  const auto emit = [&](int count) {
    const std::array<unsigned, 3> three = {group[0] << 2 | (group[1] & 0x30) >> 4,
                                           (group[1] & 0x0F) << 4 | (group[2] & 0x3C) >> 2,
                                           (group[2] & 0x03) << 6 | (group[3] & 0x3F)};
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
      bytes += static_cast<char>(three[i]);
    }
  };
  for (const char character : *string) {
    if (character == '=') {
      group[3] = 0x3D;
      if (filled != 0) emit(filled == 3 ? 2 : 1);
      break;
    }
    const std::size_t value = kAlphabet.find(character);
    if (value == std::string_view::npos) continue;
    group[static_cast<std::size_t>(filled)] = static_cast<unsigned>(value);
    if (++filled == 4) {
      filled = 0;
      emit(3);
    }
  }
  return bytes;
}

}  // namespace tavrel::test
