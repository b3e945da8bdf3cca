#include "host/page/Html.h"

#include <utf8proc.h>

#include "host/output/PercentEscaping.h"
#include "host/output/Text.h"
#include "text/Ascii.h"

namespace tavrel::host {
namespace {

std::string_view EntityOf(char letter) noexcept {
  switch (letter) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

std::string EscapedClean(std::string_view clean) {
  std::string escaped;
  escaped.reserve(clean.size());
  for (const char letter : clean) {
    const std::string_view entity = EntityOf(letter);
    if (entity.empty()) escaped += letter;
    escaped += entity;
  }
  return escaped;
}

bool IsLetterOrDigit(std::int32_t code) noexcept {
  const auto category = utf8proc_category(code);
  return category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_NO &&
         (category <= UTF8PROC_CATEGORY_LO || category >= UTF8PROC_CATEGORY_ND);
}

void AppendUtf8(std::string& text, std::int32_t code) {
  utf8proc_uint8_t bytes[4];
  const utf8proc_ssize_t length = utf8proc_encode_char(code, bytes);
  for (utf8proc_ssize_t i = 0; i < length; ++i) text += static_cast<char>(bytes[i]);
}

}  // namespace

std::string Escaped(std::string_view text) {
  return EscapedClean(Clean(text));
}

std::string EscapedStart(std::string_view text, std::size_t characters) {
  const std::string clean = Clean(text.substr(0, characters * 4 + 4));
  std::size_t at = 0;
  for (std::size_t i = 0; i < characters && at < clean.size(); ++i) {
    at += FirstCharacter(std::string_view(clean).substr(at)).length;
  }
  const bool isWhole = at == clean.size() && text.size() <= characters * 4 + 4;
  return EscapedClean(std::string_view(clean).substr(0, at)) + (isWhole ? "" : "…");
}

std::string InAddress(std::string_view text) {
  return PercentEscaped(text, "-._~");
}

std::string Initial(std::string_view name) {
  std::string initial;
  while (!name.empty()) {
    const Character first = FirstCharacter(name);
    if (first.code >= 0 && IsLetterOrDigit(first.code)) {
      AppendUtf8(initial, utf8proc_toupper(first.code));
      return initial;
    }
    name.remove_prefix(first.length);
  }
  return initial;
}

std::string Base64Text(std::string_view bytes) {
  constexpr std::string_view kLetters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const auto at = [bytes](std::size_t place) -> std::uint32_t {
    return place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0;
  };
  std::string text((bytes.size() + 2) / 3 * 4, '=');
  std::size_t to = 0;
  for (std::size_t from = 0; from < bytes.size(); from += 3, to += 4) {
    const std::uint32_t group = at(from) << 16 | at(from + 1) << 8 | at(from + 2);
    text[to] = kLetters[group >> 18];
    text[to + 1] = kLetters[group >> 12 & 63];
    if (from + 1 < bytes.size()) text[to + 2] = kLetters[group >> 6 & 63];
    if (from + 2 < bytes.size()) text[to + 3] = kLetters[group & 63];
  }
  return text;
}

std::string Base64OfHex(std::string_view digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes +=
        static_cast<char>(text::HexDigitValue(digits[i]) * 16 + text::HexDigitValue(digits[i + 1]));
  }
  return Base64Text(bytes);
}

}  // namespace tavrel::host
