#include <arm_neon.h>

#include "xml/StructuralIndexKernels.h"

namespace tavrel::xml {
namespace {

[[gnu::always_inline]] inline std::size_t WritePositions(std::uint64_t mask, std::uint32_t base,
                                                         std::uint32_t* positions) noexcept {
  uint32x4_t start = vdupq_n_u32(base);
  std::uint32_t* next = positions;
  for (int i = 0; i < 8; ++i, mask >>= 8) {
    const std::size_t byte = mask & 0xFF;
    const uint16x8_t words = vmovl_u8(vld1_u8(kBits.numbers[byte].data()));
    vst1q_u32(next, vaddq_u32(start, vmovl_u16(vget_low_u16(words))));
    vst1q_u32(next + 4, vaddq_u32(start, vmovl_u16(vget_high_u16(words))));
    next += kBits.count[byte];
    start = vaddq_u32(start, vdupq_n_u32(8));
  }
  return static_cast<std::size_t>(next - positions);
}

}  // namespace

std::size_t IndexNeon(const char* text, std::size_t length, std::uint32_t base,
                      std::uint32_t* positions) noexcept {
  const uint8x16_t two = vdupq_n_u8(2);
  const uint8x16_t closer = vdupq_n_u8('>');
  const uint8x16_t bits = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
  std::size_t count = 0;
  for (Strides strides(text, length); strides.More(); strides.Advance(), base += kStride) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(strides.At());
    uint8x16_t hits[4];
    for (int i = 0; i < 4; ++i) {
      hits[i] = vandq_u8(vceqq_u8(vorrq_u8(vld1q_u8(bytes + 16 * i), two), closer), bits);
    }
    uint8x16_t sums = vpaddq_u8(vpaddq_u8(hits[0], hits[1]), vpaddq_u8(hits[2], hits[3]));
    sums = vpaddq_u8(sums, sums);
    count += WritePositions(vgetq_lane_u64(vreinterpretq_u64_u8(sums), 0), base, positions + count);
  }
  return count;
}

}  // namespace tavrel::xml
