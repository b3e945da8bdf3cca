// The paths of URLs by the letter: RFC 2396 and its appendix B, part by part, and UTF-8 by a table of its
// forms. Copies at every step.
#pragma once

#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

namespace tavrel::reference {
namespace detail {

// Takes what stands before the first of `ends` off the front of `url`.
inline std::string TakeUpTo(std::string& url, const char* ends) {
  const std::string part = url.substr(0, std::strcspn(url.c_str(), ends));
  url.erase(0, part.size());
  return part;
}

// uric, escapes apart: reserved and unreserved characters.
inline bool IsUric(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 128 &&
         (std::isalnum(byte) != 0 || std::strchr(";/?:@&=+$,-_.!~*'()", c) != nullptr);
}

// The bytes that escapes and characters stand for; none when either is malformed.
inline std::optional<std::string> Unescaped(const std::string& part) {
  std::string bytes;
  for (std::size_t i = 0; i < part.size(); ++i) {
    if (part[i] != '%') {
      if (!IsUric(part[i])) return std::nullopt;
      bytes += part[i];
      continue;
    }
    const std::string digits = part.substr(i + 1, 2);
    if (std::strspn(digits.c_str(), "0123456789ABCDEFabcdef") != 2) return std::nullopt;
    bytes += static_cast<char>(std::strtol(digits.c_str(), nullptr, 16));
    i += 2;
  }
  return bytes;
}

// Table 3-7 of the Unicode Standard: of each form the range of the first and of the second byte, and how
// many bytes there are. All others are 80 to BF.
inline bool IsUtf8(std::string bytes) {
  struct Form {
    unsigned char first, last, second, secondLast;
    std::size_t size;
  };
  constexpr Form kForms[] = {
      {0x00, 0x7F, 0, 0, 1},       {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
      {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
      {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};
  const auto isOf = [&bytes](const Form& form) {
    const auto byte = [&bytes](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    if (byte(0) < form.first || byte(0) > form.last || bytes.size() < form.size) return false;
    if (form.size > 1 && (byte(1) < form.second || byte(1) > form.secondLast)) return false;
    for (std::size_t i = 2; i < form.size; ++i) {
      if (byte(i) < 0x80 || byte(i) > 0xBF) return false;
    }
    return true;
  };
  while (!bytes.empty()) {
    std::size_t size = 0;
    for (const Form& form : kForms) size += isOf(form) ? form.size : 0;
    if (size == 0) return false;
    bytes.erase(0, size);
  }
  return true;
}

}  // namespace detail

// As text::PathOfUrl(), for a URL without zero bytes.
inline std::optional<std::string> PathOfUrlLiterally(std::string url) {
  std::string scheme = url;
  scheme = detail::TakeUpTo(scheme, ":/?#");
  const bool hasScheme = !scheme.empty() && url.substr(scheme.size()).starts_with(":");
  std::string rest = hasScheme ? url.substr(scheme.size() + 1) : url;
  std::string authority;
  if (rest.starts_with("//")) {
    rest.erase(0, 2);
    authority = detail::TakeUpTo(rest, "/?#");
  }
  const std::string path = detail::TakeUpTo(rest, "?#");
  const std::string query = detail::TakeUpTo(rest, "#");
  if (rest.starts_with("#")) rest.erase(0, 1);
  for (const std::string& part : {hasScheme ? scheme : std::string(), authority, query, rest}) {
    if (!detail::Unescaped(part)) return std::nullopt;
  }
  std::optional<std::string> bytes = detail::Unescaped(path);
  if (!bytes || bytes->find('\0') != std::string::npos || !detail::IsUtf8(*bytes))
    return std::nullopt;
  if (bytes->ends_with('/')) bytes->pop_back();
  return bytes;
}

}  // namespace tavrel::reference
