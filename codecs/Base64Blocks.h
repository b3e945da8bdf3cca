// Base64 in bulk: whole groups of three bytes and four characters, many at a time, with the widest
// instructions of the machine. The rules around them stand in Base64Coding.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "system/Processor.h"

namespace tavrel {

inline constexpr std::array<char, 64> encodingTable = {
    'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 'J', 'K', 'L', 'M', 'N', 'O', 'P',
    'Q', 'R', 'S', 'T', 'U', 'V', 'W', 'X', 'Y', 'Z', 'a', 'b', 'c', 'd', 'e', 'f',
    'g', 'h', 'i', 'j', 'k', 'l', 'm', 'n', 'o', 'p', 'q', 'r', 's', 't', 'u', 'v',
    'w', 'x', 'y', 'z', '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', '+', '/'};

// The value of each character; negative outside the alphabet.
inline constexpr std::array<std::int8_t, 256> decodingTable = [] {
  std::array<std::int8_t, 256> values{};
  for (std::int8_t& value : values) value = -1;
  for (std::size_t value = 0; value < encodingTable.size(); ++value) {
    values[static_cast<unsigned char>(encodingTable[value])] = static_cast<std::int8_t>(value);
  }
  return values;
}();

// Encodes whole groups from the front of `size` bytes: four characters for each.
// Result: how many bytes were encoded, a multiple of three.
using EncodeBlocks = std::size_t (*)(const std::uint8_t* bytes, std::size_t size,
                                     char* text) noexcept;

// Decodes whole groups from the front of `size` characters: three bytes for each. Stops in front of
// the first group that holds anything outside the alphabet.
// readable: how many characters may be read; at least `size`.
// bytes:    may be written up to kDecodeSlack bytes behind the result.
// Result:   how many characters were decoded, a multiple of four.
using DecodeBlocks = std::size_t (*)(const char* text, std::size_t size, std::size_t readable,
                                     std::uint8_t* bytes) noexcept;
inline constexpr std::size_t kDecodeSlack = 32;

struct Base64Blocks {
  EncodeBlocks encode;
  DecodeBlocks decode;
};

// The functions for a supported set. Those of kPlain leave everything to the rules, a character at a
// time.
[[nodiscard]] Base64Blocks BlocksFor(system::InstructionSet set) noexcept;

}  // namespace tavrel
