#include <immintrin.h>

#include "text/Utf8BlocksKernels.h"

namespace tavrel::text {
namespace {

[[gnu::target("avx2")]] inline __m256i Table(const std::array<std::uint8_t, 16>& table) noexcept {
  return _mm256_broadcastsi128_si256(
      _mm_load_si128(reinterpret_cast<const __m128i*>(table.data())));
}

[[gnu::target("avx2")]] inline __m256i Load(const std::uint8_t* at) noexcept {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

// Not zero at each byte that may not stand there.
[[gnu::target("avx2")]] inline __m256i Faults(const std::uint8_t* at) noexcept {
  const __m256i lowerHalf = _mm256_set1_epi8(0x0F);
  const __m256i second = Load(at);
  const __m256i first = Load(at - 1);
  const __m256i firstUpper = _mm256_and_si256(_mm256_srli_epi16(first, 4), lowerHalf);
  const __m256i firstLower = _mm256_and_si256(first, lowerHalf);
  const __m256i secondUpper = _mm256_and_si256(_mm256_srli_epi16(second, 4), lowerHalf);
  const __m256i pairs =
      _mm256_and_si256(_mm256_and_si256(_mm256_shuffle_epi8(Table(kFirstUpper), firstUpper),
                                        _mm256_shuffle_epi8(Table(kFirstLower), firstLower)),
                       _mm256_shuffle_epi8(Table(kSecondUpper), secondUpper));
  const __m256i third = _mm256_subs_epu8(Load(at - 2), _mm256_set1_epi8(kBelowThree));
  const __m256i fourth = _mm256_subs_epu8(Load(at - 3), _mm256_set1_epi8(kBelowFour));
  const __m256i topBit = _mm256_set1_epi8(static_cast<char>(0x80));
  const __m256i expected = _mm256_and_si256(_mm256_or_si256(third, fourth), topBit);
  return _mm256_xor_si256(pairs, expected);
}

}  // namespace

[[gnu::target("avx2")]] Utf8Blocks ValidateAvx2(const std::uint8_t* bytes,
                                                std::size_t length) noexcept {
  const __m256i zero = _mm256_setzero_si256();
  Utf8Blocks checked;
  while (length - checked.length >= kUtf8Block) {
    const std::uint8_t* block = bytes + checked.length;
    const __m256i low = Load(block);
    const __m256i high = Load(block + sizeof low);
    const __m256i positive = _mm256_cmpgt_epi8(_mm256_min_epi8(low, high), zero);
    if (_mm256_movemask_epi8(positive) == -1) [[likely]] {
      checked.length += kUtf8Block;
      continue;
    }
    const __m256i zeros = _mm256_cmpeq_epi8(_mm256_min_epu8(low, high), zero);
    checked.hasZero |= _mm256_movemask_epi8(zeros) != 0;
    if (checked.length < kLookBack) {
      if (!ValidateCharacters(bytes, checked)) break;
      continue;
    }
    const __m256i faults = _mm256_or_si256(Faults(block), Faults(block + sizeof low));
    if (_mm256_testz_si256(faults, faults) == 0) break;
    checked.length += kUtf8Block - BytesCutOff(block + kUtf8Block);
  }
  return checked;
}

}  // namespace tavrel::text
