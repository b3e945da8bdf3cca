// Searches in a text that ends at a known place, where a zero byte stands.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

#include "text/Ascii.h"

namespace tavrel::xml {

using text::IsWhitespace;

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

// Most sections and comments, and what stands between them, are too short for a call to be
// worthwhile: the next few bytes are looked at first.
inline constexpr int kNear = 16;

[[nodiscard]] inline char* FindNearByte(char* from, const char* end, char byte) noexcept {
  for (int i = 0; i < kNear; ++i, ++from) {
    if (from == end) return nullptr;
    if (*from == byte) return from;
  }
  return FindByte(from, end, byte);
}

[[nodiscard]] inline char* FindNearText(char* from, const char* end,
                                        std::string_view text) noexcept {
  for (int i = 0; i < kNear; ++i, ++from) {
    if (from == end) return nullptr;
    if (StartsWith(from, end, text)) return from;
  }
  return FindText(from, end, text);
}

}  // namespace tavrel::xml
