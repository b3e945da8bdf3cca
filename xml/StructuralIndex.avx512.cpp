#include <immintrin.h>

#include <bit>

#include "xml/StructuralIndexKernels.h"

namespace tavrel::xml {
namespace {

constexpr std::array<std::uint8_t, kStride> kAscending = [] {
  std::array<std::uint8_t, kStride> numbers{};
  for (std::size_t i = 0; i < kStride; ++i) numbers[i] = static_cast<std::uint8_t>(i);
  return numbers;
}();

}  // namespace

// Here the machine itself packs the numbers of the bits that are set, one byte each.
[[gnu::target("avx512f,avx512bw,avx512vbmi2,popcnt")]] std::size_t IndexAvx512(
    const char* text, std::size_t length, std::uint32_t base, std::uint32_t* positions) noexcept {
  const __m512i two = _mm512_set1_epi8(2);
  const __m512i closer = _mm512_set1_epi8('>');
  // GCC 12 warns of its own header when the unmasked forms are used.
  constexpr __mmask16 kAll = 0xFFFF;
  const __m512i ascending = _mm512_loadu_si512(kAscending.data());
  std::size_t count = 0;
  for (Strides strides(text, length); strides.More(); strides.Advance(), base += kStride) {
    const __m512i bytes = _mm512_or_si512(_mm512_loadu_si512(strides.At()), two);
    const __mmask64 hits = _mm512_cmpeq_epi8_mask(bytes, closer);
    const auto found = static_cast<std::size_t>(std::popcount(static_cast<std::uint64_t>(hits)));
    const __m512i packed = _mm512_maskz_compress_epi8(hits, ascending);
    const __m512i start = _mm512_set1_epi32(static_cast<int>(base));
    const __m512i first =
        _mm512_maskz_cvtepu8_epi32(kAll, _mm512_maskz_extracti32x4_epi32(0xF, packed, 0));
    _mm512_storeu_si512(positions + count, _mm512_add_epi32(start, first));
    if (found > 16) [[unlikely]] {
      alignas(kStride) std::uint8_t numbers[kStride];
      _mm512_store_si512(numbers, packed);
      for (std::size_t i = 16; i < found; ++i) positions[count + i] = base + numbers[i];
    }
    count += found;
  }
  return count;
}

}  // namespace tavrel::xml
