#include <immintrin.h>

#include "xml/StructuralIndexKernels.h"

namespace tavrel::xml {
namespace {

[[gnu::target("avx2"), gnu::always_inline]] inline std::size_t WritePositions(
    std::uint64_t mask, std::uint32_t base, std::uint32_t* positions) noexcept {
  __m256i start = _mm256_set1_epi32(static_cast<int>(base));
  std::uint32_t* next = positions;
  for (int i = 0; i < 8; ++i, mask >>= 8) {
    const std::size_t byte = mask & 0xFF;
    const auto* numbers = reinterpret_cast<const __m128i*>(kBits.numbers[byte].data());
    const __m256i added = _mm256_add_epi32(start, _mm256_cvtepu8_epi32(_mm_loadl_epi64(numbers)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(next), added);
    next += kBits.count[byte];
    start = _mm256_add_epi32(start, _mm256_set1_epi32(8));
  }
  return static_cast<std::size_t>(next - positions);
}

}  // namespace

[[gnu::target("avx2")]] std::size_t IndexAvx2(const char* text, std::size_t length,
                                              std::uint32_t base,
                                              std::uint32_t* positions) noexcept {
  const __m256i two = _mm256_set1_epi8(2);
  const __m256i closer = _mm256_set1_epi8('>');
  std::size_t count = 0;
  for (Strides strides(text, length); strides.More(); strides.Advance(), base += kStride) {
    const auto* vectors = reinterpret_cast<const __m256i*>(strides.At());
    const __m256i low = _mm256_or_si256(_mm256_loadu_si256(vectors), two);
    const __m256i high = _mm256_or_si256(_mm256_loadu_si256(vectors + 1), two);
    const auto lowHits =
        static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(low, closer)));
    const auto highHits =
        static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(high, closer)));
    count += WritePositions(std::uint64_t{highHits} << 32 | lowHits, base, positions + count);
  }
  return count;
}

}  // namespace tavrel::xml
