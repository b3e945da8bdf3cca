// What the functions that check UTF-8 in blocks have in common, and these functions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "text/Utf8Blocks.h"
#include "text/Utf8Characters.h"

namespace tavrel::text {

Utf8Blocks ValidateSse2(const std::uint8_t* bytes, std::size_t length) noexcept;
Utf8Blocks ValidateAvx2(const std::uint8_t* bytes, std::size_t length) noexcept;
Utf8Blocks ValidateNeon(const std::uint8_t* bytes, std::size_t length) noexcept;

// How most blocks are found valid: each byte, taken as a signed number, is greater than zero. Such a
// block is ASCII and holds no zero byte.
//
// The others are judged by the look-up of Keiser and Lemire ("Validating UTF-8 In Less Than One
// Instruction Per Byte", 2020): every byte together with the one before it. Whether two bytes may follow
// each other shows in three of their half bytes: the first byte's two and the upper one of the
// second. A table for each of the three says which faults that half byte takes part in; there is a
// fault where all three say so. What remains are third and fourth bytes: they follow continuation
// bytes, which is a fault anywhere else.

// A set of half bytes.
constexpr unsigned Halves(unsigned first, unsigned last) {
  return (2U << last) - (1U << first);
}
inline constexpr unsigned kAny = Halves(0x0, 0xF);
inline constexpr unsigned kAscii = Halves(0x0, 0x7);
inline constexpr unsigned kContinuation = Halves(0x8, 0xB);
inline constexpr unsigned kLead = Halves(0xC, 0xF);

struct Fault {
  unsigned firstUpper;
  unsigned firstLower;
  unsigned secondUpper;
};

inline constexpr std::array<Fault, 8> kFaults = {{
    {kLead, kAny, kAscii | kLead},                                              // cut off
    {kAscii, kAny, kContinuation},                                              // lone
    {Halves(0xC, 0xC), Halves(0x0, 0x1), kContinuation},                        // overlong: 2 bytes
    {Halves(0xE, 0xE), Halves(0x0, 0x0), Halves(0x8, 0x9)},                     // overlong: 3 bytes
    {Halves(0xE, 0xE), Halves(0xD, 0xD), Halves(0xA, 0xB)},                     // surrogates
    {Halves(0xF, 0xF), Halves(0x4, 0xF), Halves(0x9, 0xB)},                     // above U+10FFFF
    {Halves(0xF, 0xF), Halves(0x0, 0x0) | Halves(0x5, 0xF), Halves(0x8, 0x8)},  // overlong or above
    {kContinuation, kAny, kContinuation},  // third and fourth bytes, in the place of the top bit
}};

// Bit n of an entry stands for fault n.
constexpr std::array<std::uint8_t, 16> TableOf(unsigned Fault::*halves) {
  std::array<std::uint8_t, 16> table{};
  for (unsigned half = 0; half < 16; ++half) {
    for (unsigned fault = 0; fault < kFaults.size(); ++fault) {
      table[half] |= static_cast<std::uint8_t>((kFaults[fault].*halves >> half & 1U) << fault);
    }
  }
  return table;
}

alignas(16) inline constexpr std::array<std::uint8_t, 16> kFirstUpper = TableOf(&Fault::firstUpper);
alignas(16) inline constexpr std::array<std::uint8_t, 16> kFirstLower = TableOf(&Fault::firstLower);
alignas(16) inline constexpr std::array<std::uint8_t, 16> kSecondUpper =
    TableOf(&Fault::secondUpper);

// A byte less these has the top bit when it announces a third, or a fourth, byte.
inline constexpr std::uint8_t kBelowThree = 0xE0 - 0x80;
inline constexpr std::uint8_t kBelowFour = 0xF0 - 0x80;

// So many bytes before a byte have a say in it.
inline constexpr std::size_t kLookBack = 3;

// How many bytes of a character that goes on there stand before the end of a block without faults.
inline std::size_t BytesCutOff(const std::uint8_t* end) noexcept {
  return end[-1] >= 0xC0 ? 1 : end[-2] >= 0xE0 ? 2 : end[-3] >= 0xF0 ? 3 : 0;
}

// Judges a block by the plain rule; false when it holds a fault.
inline bool ValidateCharacters(const std::uint8_t* bytes, Utf8Blocks& checked) noexcept {
  const auto* block = reinterpret_cast<const char*>(bytes + checked.length);
  const std::size_t valid = ValidUtf8Characters(block, kUtf8Block);
  checked.length += valid;
  return valid >= kUtf8Block - kLookBack;
}

}  // namespace tavrel::text
