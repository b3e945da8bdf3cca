// Decoding of XML references by the letter, with the C library's string functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "library/file/XmlText.h"

namespace tavrel::reference {

class LiteralXmlText {
 public:
  // destination: room for `size` bytes; nothing is written when there would be no room for a terminator.
  LiteralXmlText(char* destination, std::int32_t size) : destination_(destination), size_(size) {}

  // Once only. Result: the decoded length; 0 for a reference in error.
  std::int32_t Decode(const char* source) {
    for (const char* ampersand; (ampersand = std::strchr(source, '&')) != nullptr;) {
      Copy(source, ampersand - source);
      const char* semicolon = std::strchr(ampersand, ';');
      if (semicolon == nullptr) return 0;
      if (!CopyNamed(ampersand)) {
        if (semicolon - ampersand < 3 || ampersand[1] != '#') return 0;
        CopyNumber(ampersand + 2);
      }
      source = semicolon + 1;
    }
    const auto rest = static_cast<std::int32_t>(std::strlen(source));
    if (total_ + rest < size_) std::strcpy(destination_ + total_, source);
    return total_ + rest;
  }

 private:
  void Copy(const char* piece, std::ptrdiff_t length) {
    const std::int32_t start = total_;
    total_ += static_cast<std::int32_t>(length);
    if (total_ < size_) std::memcpy(destination_ + start, piece, static_cast<std::size_t>(length));
  }

  bool CopyNamed(const char* at) {
    for (const XMLEntity& entry : XMLEntities) {
      if (std::strncmp(at, entry.entity, std::strlen(entry.entity)) != 0) continue;
      Copy(entry.replacement, 1);
      return true;
    }
    return false;
  }

  void CopyNumber(const char* digits) {
    const bool hexadecimal = *digits == 'x' || *digits == 'X';
    const unsigned long long value =
        hexadecimal ? std::strtoull(digits + 1, nullptr, 16) : std::strtoull(digits, nullptr, 10);
    for (int shift = 24; shift >= 0; shift -= 8) {
      const char byte = static_cast<char>(static_cast<unsigned char>(value >> shift));
      if (byte != '\0') Copy(&byte, 1);
    }
  }

  char* destination_;
  std::int32_t size_;
  std::int32_t total_ = 0;
};

}  // namespace tavrel::reference
