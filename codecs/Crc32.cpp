#include "codecs/Crc32.h"

#include <array>

#include "codecs/Crc32Kernels.h"

namespace tavrel {

using system::InstructionSet;

namespace {

// What eight steps of division by the polynomial make of each byte, lowest bit first.
constexpr std::array<std::uint32_t, 256> kDivided = [] {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    std::uint32_t rest = byte;
    for (int step = 0; step < 8; ++step) rest = rest >> 1 ^ ((rest & 1) != 0 ? 0xEDB88320U : 0U);
    table[byte] = rest;
  }
  return table;
}();

}  // namespace

std::uint32_t ContinueCrc32(std::uint32_t rest, std::string_view bytes) noexcept {
  for (const char byte : bytes) {
    rest = rest >> 8 ^ kDivided[(rest ^ static_cast<unsigned char>(byte)) & 0xFF];
  }
  return rest;
}

bool IsCrc32Fast() noexcept {
  return system::IsSupported(InstructionSet::kCarryless);
}

std::uint32_t Crc32(std::string_view bytes, [[maybe_unused]] InstructionSet set) noexcept {
  if constexpr (system::kForX86) {
    if (set >= InstructionSet::kCarryless && bytes.size() >= kLeastForCarryless) {
      return Crc32Carryless(bytes);
    }
  }
  return ~ContinueCrc32(0xFFFFFFFF, bytes);
}

}  // namespace tavrel
