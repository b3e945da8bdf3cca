#include <arm_neon.h>

#include "text/Utf8BlocksKernels.h"

namespace tavrel::text {
namespace {

// Not zero at each byte that may not stand there.
uint8x16_t Faults(const std::uint8_t* at) noexcept {
  const uint8x16_t second = vld1q_u8(at);
  const uint8x16_t first = vld1q_u8(at - 1);
  const uint8x16_t pairs =
      vandq_u8(vandq_u8(vqtbl1q_u8(vld1q_u8(kFirstUpper.data()), vshrq_n_u8(first, 4)),
                        vqtbl1q_u8(vld1q_u8(kFirstLower.data()), vandq_u8(first, vdupq_n_u8(15)))),
               vqtbl1q_u8(vld1q_u8(kSecondUpper.data()), vshrq_n_u8(second, 4)));
  const uint8x16_t third = vqsubq_u8(vld1q_u8(at - 2), vdupq_n_u8(kBelowThree));
  const uint8x16_t fourth = vqsubq_u8(vld1q_u8(at - 3), vdupq_n_u8(kBelowFour));
  const uint8x16_t expected = vandq_u8(vorrq_u8(third, fourth), vdupq_n_u8(0x80));
  return veorq_u8(pairs, expected);
}

}  // namespace

Utf8Blocks ValidateNeon(const std::uint8_t* bytes, std::size_t length) noexcept {
  Utf8Blocks checked;
  while (length - checked.length >= kUtf8Block) {
    const std::uint8_t* block = bytes + checked.length;
    const uint8x16_t a = vld1q_u8(block);
    const uint8x16_t b = vld1q_u8(block + 16);
    const uint8x16_t c = vld1q_u8(block + 32);
    const uint8x16_t d = vld1q_u8(block + 48);
    checked.hasZero |= vminvq_u8(vminq_u8(vminq_u8(a, b), vminq_u8(c, d))) == 0;
    if (vmaxvq_u8(vmaxq_u8(vmaxq_u8(a, b), vmaxq_u8(c, d))) < 0x80) [[likely]] {
      checked.length += kUtf8Block;
      continue;
    }
    if (checked.length < kLookBack) {
      if (!ValidateCharacters(bytes, checked)) break;
      continue;
    }
    const uint8x16_t faults = vorrq_u8(vorrq_u8(Faults(block), Faults(block + 16)),
                                       vorrq_u8(Faults(block + 32), Faults(block + 48)));
    if (vmaxvq_u8(faults) != 0) break;
    checked.length += kUtf8Block - BytesCutOff(block + kUtf8Block);
  }
  return checked;
}

}  // namespace tavrel::text
