#include "codecs/Base64Blocks.h"

#include "codecs/Base64Kernels.h"

namespace tavrel {

using system::InstructionSet;

namespace {

std::size_t EncodeNothing(const std::uint8_t*, std::size_t, char*) noexcept {
  return 0;
}

std::size_t DecodeNothing(const char*, std::size_t, std::size_t, std::uint8_t*) noexcept {
  return 0;
}

}  // namespace

std::size_t EncodeGroups(const std::uint8_t* bytes, std::size_t size, char* text) noexcept {
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

std::size_t DecodeGroups(const char* text, std::size_t size, std::size_t,
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

Base64Blocks BlocksFor(InstructionSet set) noexcept {
  if constexpr (system::kForX86) {
    if (set >= InstructionSet::kAvx2) return {EncodeAvx2, DecodeAvx2};
  }
  if (set >= InstructionSet::kBaseline) return {EncodeGroups, DecodeGroups};
  return {EncodeNothing, DecodeNothing};
}

}  // namespace tavrel
