// The functions that code whole groups of base64: EncodeBlocks and DecodeBlocks of Base64Blocks.h.
#pragma once

#include <cstddef>
#include <cstdint>

#include "codecs/Base64Blocks.h"

namespace tavrel {

std::size_t EncodeAvx2(const std::uint8_t* bytes, std::size_t size, char* text) noexcept;
std::size_t DecodeAvx2(const char* text, std::size_t size, std::size_t readable,
                       std::uint8_t* bytes) noexcept;

// Group by group, on every machine. (Inline, since the others end with what is left for them.)
inline std::size_t EncodeGroups(const std::uint8_t* bytes, std::size_t size, char* text) noexcept {
  std::size_t done = 0;
  for (; size - done >= 3; done += 3, text += 4) {
    const std::uint32_t group = std::uint32_t{bytes[done]} << 16 |
                                std::uint32_t{bytes[done + 1]} << 8 |
                                std::uint32_t{bytes[done + 2]};
    text[0] = encodingTable[group >> 18];
    text[1] = encodingTable[group >> 12 & 0x3F];
    text[2] = encodingTable[group >> 6 & 0x3F];
    text[3] = encodingTable[group & 0x3F];
  }
  return done;
}

inline std::size_t DecodeGroups(const char* text, std::size_t size, std::size_t,
                                std::uint8_t* bytes) noexcept {
  const auto valueOf = [text](std::size_t at) {
    return std::int32_t{decodingTable[static_cast<unsigned char>(text[at])]};
  };
  std::size_t done = 0;
  for (; size - done >= 4; done += 4, bytes += 3) {
    // A negative value keeps its sign, whatever it is joined with.
    const std::int32_t group = valueOf(done) * (1 << 18) | valueOf(done + 1) * (1 << 12) |
                               valueOf(done + 2) * (1 << 6) | valueOf(done + 3);
    if (group < 0) break;
    bytes[0] = static_cast<std::uint8_t>(group >> 16);
    bytes[1] = static_cast<std::uint8_t>(group >> 8);
    bytes[2] = static_cast<std::uint8_t>(group);
  }
  return done;
}

}  // namespace tavrel
