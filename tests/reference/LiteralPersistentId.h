// Persistent IDs by the letter: two characters at a time, each pair a number that ends at its first other
// character.
#pragma once

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace tavrel::reference {

// As ParsePersistentId(), for arguments that are not null.
inline std::int32_t ReadPersistentIdLiterally(const char* text, std::uint8_t* bytes) {
  if (std::strlen(text) < 16) return 0;
  for (std::size_t i = 0; i < 8; ++i) {
    std::string digits;
    for (const char c : std::string(text + 2 * i, 2)) {
      if (std::isxdigit(static_cast<unsigned char>(c)) == 0) break;
      digits += c;
    }
    bytes[i] = static_cast<std::uint8_t>(std::strtoul(digits.c_str(), nullptr, 16));
  }
  return 8;
}

}  // namespace tavrel::reference
