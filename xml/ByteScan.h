// Searches in a text that ends at a known place, where a zero byte stands.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace tavrel::xml {

inline constexpr std::string_view kSectionOpener = "<![CDATA[";
inline constexpr std::string_view kSectionEnd = "]]>";
inline constexpr std::string_view kCommentOpener = "<!--";
inline constexpr std::string_view kCommentEnd = "-->";

[[nodiscard]] inline char* FindByte(char* from, const char* end, char byte) noexcept {
  return static_cast<char*>(std::memchr(from, byte, static_cast<std::size_t>(end - from)));
}

[[nodiscard]] inline char* FindText(char* from, const char* end, std::string_view text) noexcept {
  return static_cast<char*>(
      memmem(from, static_cast<std::size_t>(end - from), text.data(), text.size()));
}

[[nodiscard]] inline bool StartsWith(const char* at, const char* end,
                                     std::string_view text) noexcept {
  return static_cast<std::size_t>(end - at) >= text.size() &&
         std::memcmp(at, text.data(), text.size()) == 0;
}

// Blank, tab, line feed, vertical tab, form feed, carriage return; never a byte above 0x7F.
[[nodiscard]] inline bool IsWhitespace(char byte) noexcept {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

}  // namespace tavrel::xml
