#include "codecs/Crc32.h"

#include <array>
#include <cstddef>

#include "system/Processor.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tavrel {
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

std::uint32_t Continue(std::uint32_t rest, std::string_view bytes) noexcept {
  for (const char byte : bytes) {
    rest = rest >> 8 ^ kDivided[(rest ^ static_cast<unsigned char>(byte)) & 0xFF];
  }
  return rest;
}

#if defined(__x86_64__)

#define TAVREL_CLMUL [[gnu::target("pclmul")]]

constexpr std::size_t kVector = 16;

TAVREL_CLMUL [[gnu::always_inline]] inline __m128i Load(std::string_view bytes,
                                                        std::size_t at) noexcept {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + at));
}

// Moves `sum` on over as many bytes as the powers of x in `distance` stand for, and adds `next`.
TAVREL_CLMUL [[gnu::always_inline]] inline __m128i Fold(__m128i sum, __m128i distance,
                                                        __m128i next) noexcept {
  const __m128i low = _mm_clmulepi64_si128(sum, distance, 0x00);
  const __m128i high = _mm_clmulepi64_si128(sum, distance, 0x11);
  return _mm_xor_si128(_mm_xor_si128(low, high), next);
}

// Folds all but the last bytes into 16 bytes with the same remainder. Gopal and others, "Fast CRC
// Computation for Generic Polynomials Using PCLMULQDQ Instruction", Intel 2009; the constants are
// theirs for this polynomial, bits reflected.
TAVREL_CLMUL std::uint32_t FoldedCrc32(std::string_view bytes) noexcept {
  const __m128i over64 = _mm_set_epi64x(0x1C6E41596, 0x154442BD4);
  const __m128i over16 = _mm_set_epi64x(0x0CCAA009E, 0x1751997D0);
  __m128i first = _mm_xor_si128(Load(bytes, 0), _mm_cvtsi32_si128(-1));
  __m128i second = Load(bytes, kVector);
  __m128i third = Load(bytes, 2 * kVector);
  __m128i fourth = Load(bytes, 3 * kVector);
  std::size_t at = 4 * kVector;
  for (; bytes.size() - at >= 4 * kVector; at += 4 * kVector) {
    first = Fold(first, over64, Load(bytes, at));
    second = Fold(second, over64, Load(bytes, at + kVector));
    third = Fold(third, over64, Load(bytes, at + 2 * kVector));
    fourth = Fold(fourth, over64, Load(bytes, at + 3 * kVector));
  }
  __m128i sum = Fold(first, over16, second);
  sum = Fold(sum, over16, third);
  sum = Fold(sum, over16, fourth);

  std::array<char, kVector> folded{};
  _mm_storeu_si128(reinterpret_cast<__m128i*>(folded.data()), sum);
  return ~Continue(Continue(0, {folded.data(), folded.size()}), bytes.substr(at));
}

#endif

}  // namespace

bool IsCrc32Fast() noexcept {
  return system::Features().carrylessMultiplication;
}

std::uint32_t PlainCrc32(std::string_view bytes) noexcept {
  return ~Continue(0xFFFFFFFF, bytes);
}

std::uint32_t Crc32(std::string_view bytes) noexcept {
#if defined(__x86_64__)
  if (bytes.size() >= 4 * kVector && IsCrc32Fast()) return FoldedCrc32(bytes);
#endif
  return PlainCrc32(bytes);
}

}  // namespace tavrel
