#include "host/output/Text.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "text/Ascii.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kMostMarks = 30;

std::size_t CharacterWidth(utf8proc_int32_t code) noexcept {
  // The vowels and final consonants of decomposed Hangul join the syllable before them.
  if ((code >= 0x1160 && code <= 0x11FF) || (code >= 0xD7B0 && code <= 0xD7FF)) return 0;
  return static_cast<std::size_t>(utf8proc_charwidth(code));
}

bool IsLineEndOrTab(utf8proc_int32_t code) noexcept {
  return (code >= '\t' && code <= '\r') || code == 0x85 || code == 0x2028 || code == 0x2029;
}

// Appends characters one by one, and counts the marks that follow each other.
class Appender {
 public:
  explicit Appender(std::string& destination) : destination_(destination) {}

  // Result: the columns that it takes.
  std::size_t Append(std::string_view bytes, std::int32_t code) {
    if (code < 0) {
      marks_ = 0;
      destination_ += kReplacementCharacter;
      return 1;
    }
    if (IsUnseen(code)) return 0;
    const std::size_t width = CharacterWidth(code);
    marks_ = width > 0 ? 0 : marks_ + 1;
    if (marks_ <= kMostMarks) destination_ += bytes;
    return width;
  }

  void AppendPlain(std::string_view text) {
    if (!text.empty()) marks_ = 0;
    destination_ += text;
  }

 private:
  std::string& destination_;
  std::size_t marks_ = 0;
};

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

std::string LowerCase(std::string_view ascii) {
  std::string lower(ascii);
  std::transform(lower.begin(), lower.end(), lower.begin(), text::ToLowerCase);
  return lower;
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

}  // namespace

Character FirstCharacter(std::string_view text) noexcept {
  if (static_cast<unsigned char>(text.front()) < 0x80) return {text.front(), 1};
  utf8proc_int32_t code = -1;
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  const auto size = static_cast<utf8proc_ssize_t>(std::min<std::size_t>(text.size(), 4));
  const utf8proc_ssize_t length = utf8proc_iterate(bytes, size, &code);
  if (length <= 0) return {-1, 1};
  return {code, static_cast<std::size_t>(length)};
}

bool IsUnseen(std::int32_t code) noexcept {
  constexpr std::int32_t kSoftHyphen = 0xAD;
  constexpr std::int32_t kMongolianSeparator = 0x180E;
  constexpr std::int32_t kNonJoiner = 0x200C;
  constexpr std::int32_t kJoiner = 0x200D;
  const utf8proc_property_t& property = *utf8proc_get_property(code);
  if (property.category == UTF8PROC_CATEGORY_CC) return true;
  // Around notes between the lines, and what is not assigned yet but never to be shown.
  if ((code >= 0xFFF0 && code <= 0xFFFB) || (code >= 0x2060 && code <= 0x206F)) return true;
  if (code >= 0xE0000 && code <= 0xE0FFF) return property.category != UTF8PROC_CATEGORY_MN;
  const bool isFormat = property.ignorable && property.category == UTF8PROC_CATEGORY_CF;
  return isFormat && code != kSoftHyphen && code != kMongolianSeparator && code != kNonJoiner &&
         code != kJoiner;
}

std::size_t AppendClean(std::string& destination, std::string_view text) {
  const std::size_t start = destination.size();
  Appender appender(destination);
  std::size_t width = 0;
  while (!text.empty()) {
    const std::size_t plain = PlainAsciiPrefix(text);
    appender.AppendPlain(text.substr(0, plain));
    width += plain;
    text.remove_prefix(plain);
    if (text.empty()) break;
    const Character first = FirstCharacter(text);
    if (IsLineEndOrTab(first.code)) {
      width -= RemoveBlanks(destination, start);
      appender.AppendPlain(" ");
      ++width;
      text.remove_prefix(LengthOfBlanks(text));
      continue;
    }
    width += appender.Append(text.substr(0, first.length), first.code);
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
  constexpr std::string_view kFurtherIndent = "  ";
  std::vector<std::string> lines{{}};
  const auto add = [&](std::string_view part) {
    const bool isFirst = lines.back().empty();
    const bool fits = width == 0 || Width(lines.back()) + 1 + Width(part) <= width;
    if (!isFirst && !fits) lines.emplace_back(kFurtherIndent);
    if (!isFirst && fits) lines.back() += ' ';
    lines.back() += part;
  };
  for (std::string_view part : cleanParts) {
    while (width != 0 && kFurtherIndent.size() + Width(part) > width) {
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
  if (PlainAsciiPrefix(text) == text.size()) return LowerCase(text);
  return Map(text, UTF8PROC_STABLE | UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD);
}

std::string FoldFileName(std::string_view name) {
  constexpr std::string_view kDotlessI = "\u0131";  // whose capital letter is that of i
  std::string folded =
      Map(name, UTF8PROC_STABLE | UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD | UTF8PROC_IGNORE);
  std::size_t at = folded.find(kDotlessI);
  if (at == std::string::npos) return folded;
  std::string whole;
  std::string_view rest = folded;
  for (; at != std::string_view::npos; at = rest.find(kDotlessI)) {
    whole.append(rest.substr(0, at)).append(1, 'i');
    rest.remove_prefix(at + kDotlessI.size());
  }
  return whole.append(rest);
}

std::string Compose(std::string_view text) {
  if (PlainAsciiPrefix(text) == text.size()) return std::string(text);
  return Map(text, UTF8PROC_STABLE | UTF8PROC_COMPOSE);
}

}  // namespace tavrel::host
