// The characters of URLs.
#pragma once

#include <string_view>

namespace tavrel::text {

// Whether RFC 2396 lets it stand unescaped.
[[nodiscard]] constexpr bool IsUrlCharacter(char c) noexcept {
  constexpr std::string_view kReserved = ";/?:@&=+$,";
  constexpr std::string_view kMarks = "-_.!~*'()";
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         kReserved.find(c) != std::string_view::npos || kMarks.find(c) != std::string_view::npos;
}

}  // namespace tavrel::text
