// The characters of URLs.
#pragma once

#include <array>
#include <string_view>

namespace tavrel::text {

inline constexpr std::array<bool, 256> kUrlCharacters = [] {
  std::array<bool, 256> characters{};
  for (const char c : std::string_view("0123456789"
                                       "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                       "abcdefghijklmnopqrstuvwxyz"
                                       ";/?:@&=+$,"     // reserved
                                       "-_.!~*'()")) {  // marks
    characters[static_cast<unsigned char>(c)] = true;
  }
  return characters;
}();

// Whether RFC 2396 lets it stand unescaped.
[[nodiscard]] constexpr bool IsUrlCharacter(char c) noexcept {
  return kUrlCharacters[static_cast<unsigned char>(c)];
}

}  // namespace tavrel::text
