#include <emmintrin.h>

#include "text/Utf8BlocksKernels.h"

namespace tavrel::text {

// Without a table look-up there is nothing better for the other blocks than the plain rule.
Utf8Blocks ValidateSse2(const std::uint8_t* bytes, std::size_t length) noexcept {
  const __m128i zero = _mm_setzero_si128();
  Utf8Blocks checked;
  while (length - checked.length >= kUtf8Block) {
    const auto* vectors = reinterpret_cast<const __m128i*>(bytes + checked.length);
    const __m128i a = _mm_loadu_si128(vectors);
    const __m128i b = _mm_loadu_si128(vectors + 1);
    const __m128i c = _mm_loadu_si128(vectors + 2);
    const __m128i d = _mm_loadu_si128(vectors + 3);
    const __m128i positive =
        _mm_and_si128(_mm_and_si128(_mm_cmpgt_epi8(a, zero), _mm_cmpgt_epi8(b, zero)),
                      _mm_and_si128(_mm_cmpgt_epi8(c, zero), _mm_cmpgt_epi8(d, zero)));
    if (_mm_movemask_epi8(positive) == 0xFFFF) [[likely]] {
      checked.length += kUtf8Block;
      continue;
    }
    const __m128i least = _mm_min_epu8(_mm_min_epu8(a, b), _mm_min_epu8(c, d));
    checked.hasZero |= _mm_movemask_epi8(_mm_cmpeq_epi8(least, zero)) != 0;
    if (!ValidateCharacters(bytes, checked)) break;
  }
  return checked;
}

}  // namespace tavrel::text
