#include <immintrin.h>

#include <array>

#include "codecs/Crc32Kernels.h"

namespace tavrel {
namespace {

constexpr std::size_t kVector = 16;
static_assert(kLeastForCarryless == 4 * kVector);

[[gnu::target("pclmul"), gnu::always_inline]] inline __m128i Load(std::string_view bytes,
                                                                  std::size_t at) noexcept {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + at));
}

// Moves `sum` on over as many bytes as the powers of x in `distance` stand for, and adds `next`.
[[gnu::target("pclmul"), gnu::always_inline]] inline __m128i Fold(__m128i sum, __m128i distance,
                                                                  __m128i next) noexcept {
  const __m128i low = _mm_clmulepi64_si128(sum, distance, 0x00);
  const __m128i high = _mm_clmulepi64_si128(sum, distance, 0x11);
  return _mm_xor_si128(_mm_xor_si128(low, high), next);
}

}  // namespace

// Folds all but the last bytes into 16 bytes with the same remainder. Gopal and others, "Fast CRC
// Computation for Generic Polynomials Using PCLMULQDQ Instruction", Intel 2009; the constants are
// theirs for this polynomial, bits reflected.
[[gnu::target("pclmul")]] std::uint32_t Crc32Carryless(std::string_view bytes) noexcept {
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
  return ~ContinueCrc32(ContinueCrc32(0, {folded.data(), folded.size()}), bytes.substr(at));
}

}  // namespace tavrel
