#include <emmintrin.h>

#include "xml/StructuralIndexKernels.h"

namespace tavrel::xml {
namespace {

[[gnu::always_inline]] inline std::size_t WritePositions(std::uint64_t mask, std::uint32_t base,
                                                         std::uint32_t* positions) noexcept {
  const __m128i zero = _mm_setzero_si128();
  __m128i start = _mm_set1_epi32(static_cast<int>(base));
  std::uint32_t* next = positions;
  for (int i = 0; i < 8; ++i, mask >>= 8) {
    const std::size_t byte = mask & 0xFF;
    const auto* numbers = reinterpret_cast<const __m128i*>(kBits.numbers[byte].data());
    const __m128i words = _mm_unpacklo_epi8(_mm_loadl_epi64(numbers), zero);
    auto* places = reinterpret_cast<__m128i*>(next);
    _mm_storeu_si128(places, _mm_add_epi32(start, _mm_unpacklo_epi16(words, zero)));
    _mm_storeu_si128(places + 1, _mm_add_epi32(start, _mm_unpackhi_epi16(words, zero)));
    next += kBits.count[byte];
    start = _mm_add_epi32(start, _mm_set1_epi32(8));
  }
  return static_cast<std::size_t>(next - positions);
}

}  // namespace

std::size_t IndexSse2(const char* text, std::size_t length, std::uint32_t base,
                      std::uint32_t* positions) noexcept {
  const __m128i two = _mm_set1_epi8(2);
  const __m128i closer = _mm_set1_epi8('>');
  std::size_t count = 0;
  for (Strides strides(text, length); strides.More(); strides.Advance(), base += kStride) {
    const auto* vectors = reinterpret_cast<const __m128i*>(strides.At());
    std::uint64_t mask = 0;
    for (int i = 0; i < 4; ++i) {
      const __m128i bytes = _mm_or_si128(_mm_loadu_si128(vectors + i), two);
      const int hits = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, closer));
      mask |= static_cast<std::uint64_t>(hits) << (16 * i);
    }
    count += WritePositions(mask, base, positions + count);
  }
  return count;
}

}  // namespace tavrel::xml
