// The elements that nearly all of a library file consists of.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tavrel::xml {

// For each length of a name, the bits of the eight bytes from its '<' on that are compared.
using TagBytes = std::array<unsigned char, 8>;
inline constexpr TagBytes kPlainTag = {'<', 0x40, 0x40, 0x40, 0x40, 0x40, 0x40, 0x40};
inline constexpr std::array<TagBytes, 8> kComparedBits = [] {
  std::array<TagBytes, 8> bits{};
  for (std::size_t length = 0; length < bits.size(); ++length) {
    bits[length][0] = 0xFF;
    for (std::size_t i = 1; i <= length; ++i) bits[length][i] = 0x40;
  }
  return bits;
}();

[[nodiscard]] inline std::uint64_t EightBytes(const void* bytes) noexcept {
  std::uint64_t number = 0;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

// Whether a '<' and a name of `length` letters stand at `open`. Every byte with the bit that all
// letters have counts as one: blanks, '/', '!' and '?' lack it. False for names that are longer
// than seven bytes. Reads eight bytes in any case.
[[nodiscard]] inline bool IsPlainTag(const char* open, std::size_t length) noexcept {
  if (length >= kComparedBits.size()) return false;
  const std::uint64_t differing = EightBytes(open) ^ EightBytes(kPlainTag.data());
  return (differing & EightBytes(kComparedBits[length].data())) == 0;
}

// An element that has no attributes, no children and nothing else special about it, as the next
// four marks of the index show it:
//
//     <integer>1437</integer>
//     ^       ^    ^        ^
//     open    |    textEnd  close
//             nameEnd
struct Leaf {
  static constexpr std::ptrdiff_t kMarks = 4;

  Leaf(char* text, const std::uint32_t* marks) noexcept
      : open(text + marks[0]),
        nameEnd(text + marks[1]),
        textEnd(text + marks[2]),
        close(text + marks[3]) {}

  // With no blank at either end of the text there is nothing to trim. (An empty text shows the
  // bytes of its tags.)
  [[nodiscard]] bool IsThere() const noexcept {
    return *nameEnd == '>' && std::memcmp(textEnd, "</", 2) == 0 && *close == '>' &&
           static_cast<unsigned char>(nameEnd[1]) > ' ' &&
           static_cast<unsigned char>(textEnd[-1]) > ' ' &&
           IsPlainTag(open, static_cast<std::size_t>(nameEnd - open) - 1);
  }
  void EndTexts() const noexcept { *open = *nameEnd = *textEnd = *close = '\0'; }

  char* open;
  char* nameEnd;
  char* textEnd;
  char* close;
};

}  // namespace tavrel::xml
