#include "text/OrdinaryUrl.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "text/Ascii.h"
#include "text/UrlCharacters.h"
#include "text/Utf8.h"

namespace tavrel::text {
namespace {

// Of each byte: whether it may stand unescaped in a path, and its value as a hexadecimal digit. One
// look into a table answers both: asking without it takes more than twice as long.
struct UrlByte {
  bool isPlain;
  std::uint8_t digit;  // 16 for none
};

constexpr std::array<UrlByte, 256> kUrlBytes = [] {
  std::array<UrlByte, 256> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char c = static_cast<char>(static_cast<unsigned char>(i));
    bytes[i] = {IsUrlCharacter(c) && c != '?', static_cast<std::uint8_t>(HexDigitValue(c))};
  }
  return bytes;
}();

const UrlByte& Of(char c) noexcept {
  return kUrlBytes[static_cast<unsigned char>(c)];
}

// Where the path begins, at its '/'; null when the URL is not ordinary.
const char* StartOfPath(const char* url) noexcept {
  constexpr std::string_view kOfThisMachine = "file://localhost/";
  constexpr std::string_view kWithoutHost = "file:///";
  for (const std::string_view start : {kOfThisMachine, kWithoutHost}) {
    if (std::strncmp(url, start.data(), start.size()) == 0) return url + start.size() - 1;
  }
  return nullptr;
}

// The value of the escape at the start of `escape`; 0 when there is none, or half of one.
unsigned ValueOfEscape(const char* escape) noexcept {
  if (escape[0] != '%') return 0;
  const unsigned high = Of(escape[1]).digit;
  if (high > 15) return 0;
  const unsigned low = Of(escape[2]).digit;
  return low > 15 ? 0 : high * 16 + low;
}

}  // namespace

std::optional<std::size_t> PathOfOrdinaryUrl(const char* url, char* path) noexcept {
  const char* const start = StartOfPath(url);
  if (start == nullptr) return std::nullopt;
  *path = '/';
  return PathOfOrdinaryName(start + 1, path, 1);
}

std::optional<std::size_t> PathOfOrdinaryName(const char* name, char* path,
                                              std::size_t folder) noexcept {
  const char* next = name;
  char* const start = path + folder;
  char* out = start;
  unsigned allEscaped = 0;
  for (;;) {
    while (Of(*next).isPlain) *out++ = *next++;
    if (*next == '\0') break;
    const unsigned value = ValueOfEscape(next);
    if (value == 0) return std::nullopt;
    allEscaped |= value;
    *out++ = static_cast<char>(static_cast<unsigned char>(value));
    next += 3;
  }
  // What is behind a '/' is UTF-8 by itself when the whole is.
  if (allEscaped > 0x7F && !IsValidUtf8({start, static_cast<std::size_t>(out - start)})) {
    return std::nullopt;
  }
  const auto length = static_cast<std::size_t>(out - path);
  return path[length - 1] == '/' ? length - 1 : length;
}

}  // namespace tavrel::text
