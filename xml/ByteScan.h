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

// The first "]]>". Its last byte is looked at first: one that is no part of it lets three bytes be
// skipped, and most sections are too short for a call to be worthwhile.
[[nodiscard]] inline char* FindSectionEnd(char* from, const char* end) noexcept {
  const auto length = static_cast<std::size_t>(end - from);
  for (std::size_t i = 2; i < length; i += from[i] == ']' ? 1 : 3) {
    if (from[i] == '>' && from[i - 1] == ']' && from[i - 2] == ']') return from + i - 2;
  }
  return nullptr;
}

// The first '<' where one is likely to stand near.
[[nodiscard]] inline char* FindNearTag(char* from, const char* end) noexcept {
  constexpr int kNear = 16;
  for (int i = 0; i < kNear; ++i, ++from) {
    if (from == end) return nullptr;
    if (*from == '<') return from;
  }
  return FindByte(from, end, '<');
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
