#include "host/output/Text.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

namespace tavrel::host {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

struct Character {
  utf8proc_int32_t code;  // -1: the first byte is not UTF-8
  std::size_t length;     // in bytes
};

Character FirstCharacter(std::string_view text) noexcept {
  utf8proc_int32_t code = -1;
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  const auto size = static_cast<utf8proc_ssize_t>(std::min<std::size_t>(text.size(), 4));
  const utf8proc_ssize_t length = utf8proc_iterate(bytes, size, &code);
  if (length <= 0) return {-1, 1};
  return {code, static_cast<std::size_t>(length)};
}

std::size_t CharacterWidth(utf8proc_int32_t code) noexcept {
  // The vowels and final consonants of decomposed Hangul join the syllable before them.
  if ((code >= 0x1160 && code <= 0x11FF) || (code >= 0xD7B0 && code <= 0xD7FF)) return 0;
  return static_cast<std::size_t>(utf8proc_charwidth(code));
}

bool Reorders(utf8proc_int32_t code) noexcept {
  return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

bool IsLineEndOrTab(utf8proc_int32_t code) noexcept {
  return (code >= '\t' && code <= '\r') || code == 0x85 || code == 0x2028 || code == 0x2029;
}

std::size_t AppendCharacter(std::string& destination, std::string_view bytes,
                            utf8proc_int32_t code) {
  if (code < 0) {
    destination += kReplacement;
    return 1;
  }
  if (Reorders(code) || utf8proc_category(code) == UTF8PROC_CATEGORY_CC) return 0;
  destination += bytes;
  return CharacterWidth(code);
}

// Removes the blanks at the end of what stands from `start` on. Result: how many there were.
std::size_t RemoveBlanks(std::string& text, std::size_t start) {
  const std::size_t before = text.size();
  while (text.size() > start && text.back() == ' ') text.pop_back();
  return before - text.size();
}

// The bytes of the blanks, tabs and line ends at the start of a text.
std::size_t LengthOfBlanks(std::string_view text) noexcept {
  std::size_t length = 0;
  while (length < text.size()) {
    const Character next = FirstCharacter(text.substr(length));
    if (next.code != ' ' && !IsLineEndOrTab(next.code)) break;
    length += next.length;
  }
  return length;
}

std::size_t PlainAsciiPrefix(std::string_view text) noexcept {
  const auto isPlain = [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x20 && byte < 0x7F;
  };
  const auto end = std::find_if_not(text.begin(), text.end(), isPlain);
  return static_cast<std::size_t>(end - text.begin());
}

std::string Map(std::string_view text, int options) {
  const std::string clean = Clean(text);  // always valid UTF-8
  utf8proc_uint8_t* mapped = nullptr;
  const utf8proc_ssize_t length =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(clean.data()),
                   static_cast<utf8proc_ssize_t>(clean.size()), &mapped,
                   static_cast<utf8proc_option_t>(options));
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(mapped, &std::free);
  if (length == UTF8PROC_ERROR_NOMEM) throw std::bad_alloc();
  if (length < 0) return clean;
  return {reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(length)};
}

std::u32string Characters(std::string_view text) {
  std::u32string characters;
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    characters += static_cast<char32_t>(first.code);
    text.remove_prefix(first.length);
  }
  return characters;
}

}  // namespace

std::size_t AppendClean(std::string& destination, std::string_view text) {
  const std::size_t start = destination.size();
  std::size_t width = 0;
  while (!text.empty()) {
    const std::size_t plain = PlainAsciiPrefix(text);
    destination += text.substr(0, plain);
    width += plain;
    text.remove_prefix(plain);
    if (text.empty()) break;
    const Character first = FirstCharacter(text);
    if (IsLineEndOrTab(first.code)) {
      width -= RemoveBlanks(destination, start);
      destination += ' ';
      ++width;
      text.remove_prefix(LengthOfBlanks(text));
      continue;
    }
    width += AppendCharacter(destination, text.substr(0, first.length), first.code);
    text.remove_prefix(first.length);
  }
  return width;
}

std::string Clean(std::string_view text) {
  std::string clean;
  clean.reserve(text.size());
  AppendClean(clean, text);
  return clean;
}

std::size_t Width(std::string_view clean) {
  std::size_t width = 0;
  while (!clean.empty()) {
    const Character first = FirstCharacter(clean);
    width += CharacterWidth(first.code);
    clean.remove_prefix(first.length);
  }
  return width;
}

std::string_view Prefix(std::string_view clean, std::size_t columns) {
  std::size_t width = 0;
  std::size_t at = 0;
  while (at < clean.size()) {
    const Character next = FirstCharacter(clean.substr(at));
    width += CharacterWidth(next.code);
    if (width > columns) break;
    at += next.length;
  }
  return clean.substr(0, at);
}

std::string_view Suffix(std::string_view clean, std::size_t columns) {
  for (std::size_t width = Width(clean); !clean.empty();) {
    const Character first = FirstCharacter(clean);
    const std::size_t firstWidth = CharacterWidth(first.code);
    if (width <= columns && firstWidth > 0) break;
    width -= firstWidth;
    clean.remove_prefix(first.length);
  }
  return clean;
}

std::vector<std::string> FoldLine(const std::vector<std::string>& cleanParts, std::size_t width) {
  constexpr std::string_view kIndent = "  ";
  std::vector<std::string> lines{{}};
  const auto add = [&](std::string_view part) {
    const bool isFirst = lines.back().empty();
    const bool fits = width == 0 || Width(lines.back()) + 1 + Width(part) <= width;
    if (!isFirst && !fits) lines.emplace_back(kIndent);
    if (!isFirst && fits) lines.back() += ' ';
    lines.back() += part;
  };
  for (std::string_view part : cleanParts) {
    while (width != 0 && kIndent.size() + Width(part) > width) {
      const std::size_t blank = part.find(' ');
      if (blank == std::string_view::npos) break;
      add(part.substr(0, blank));
      part.remove_prefix(blank + 1);
    }
    add(part);
  }
  return lines;
}

std::string Fold(std::string_view text) {
  return Map(text, UTF8PROC_STABLE | UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD);
}

std::string FoldFileName(std::string_view name) {
  return Map(name, UTF8PROC_STABLE | UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD | UTF8PROC_IGNORE);
}

std::string Compose(std::string_view text) {
  if (PlainAsciiPrefix(text) == text.size()) return std::string(text);
  return Map(text, UTF8PROC_STABLE | UTF8PROC_COMPOSE);
}

std::size_t EditDistance(std::string_view left, std::string_view right) {
  const std::u32string from = Characters(left);
  const std::u32string to = Characters(right);
  // row[j]: the distance of the part of `from` that was walked so far to the first j characters of
  // `to`.
  std::vector<std::size_t> row(to.size() + 1);
  for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace tavrel::host
