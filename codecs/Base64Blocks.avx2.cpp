// Base64 as Muła and Lemire do it: "Faster Base64 Encoding and Decoding Using AVX2 Instructions", 2018.
#include <immintrin.h>

#include <bit>

#include "codecs/Base64BlocksKernels.h"

namespace tavrel {
namespace {

#define TAVREL_STEP [[gnu::target("avx2"), gnu::always_inline]] inline

// The same 16 bytes in both halves: a shuffle looks up in each half on its own.
TAVREL_STEP __m256i InBothHalves(__m128i half) noexcept {
  return _mm256_broadcastsi128_si256(half);
}

// 24 bytes, twelve in each half of the vector, as four groups of three in each half. A group takes
// two words of 16 bits, in which every sextet lies whole (its bytes 1 0 2 1, lowest first):
//
//     aaaaaabb bbbbcccc   bbbbcccc ccdddddd
TAVREL_STEP __m256i SpreadGroups(const std::uint8_t* bytes) noexcept {
  const __m256i order =
      InBothHalves(_mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 12));
  return _mm256_shuffle_epi8(_mm256_setr_m128i(low, high), order);
}

// Moves the sextets of spread groups to bytes of their own. A multiplication shifts each word by a
// distance of its own:
//
//     00bbbbbb 00aaaaaa   00dddddd 00cccccc
TAVREL_STEP __m256i SextetsOfGroups(__m256i groups) noexcept {
  const __m256i aAndC = _mm256_mulhi_epu16(_mm256_and_si256(groups, _mm256_set1_epi32(0x0FC0FC00)),
                                           _mm256_set1_epi32(0x04000040));
  const __m256i bAndD = _mm256_mullo_epi16(_mm256_and_si256(groups, _mm256_set1_epi32(0x003F03F0)),
                                           _mm256_set1_epi32(0x01000010));
  return _mm256_or_si256(aAndC, bAndD);
}

TAVREL_STEP __m256i CharactersOf(__m256i sextets) noexcept {
  // What leads from a sextet to its character: for a to z, the ten digits, '+', '/', A to Z.
  const __m256i offsets = InBothHalves(
      _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                    '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0));
  // The place in `offsets`: how far the sextet is above 51, but 13 for those below 26.
  const __m256i capital = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), sextets);
  const __m256i place = _mm256_or_si256(_mm256_subs_epu8(sextets, _mm256_set1_epi8(51)),
                                        _mm256_and_si256(capital, _mm256_set1_epi8(13)));
  return _mm256_add_epi8(sextets, _mm256_shuffle_epi8(offsets, place));
}

// Half bytes as places of a look-up: 0x2F, which is '/', keeps the lower half, and zero in the top bit.
TAVREL_STEP __m256i LowerHalves(__m256i bytes) noexcept {
  return _mm256_and_si256(bytes, _mm256_set1_epi8('/'));
}
TAVREL_STEP __m256i UpperHalves(__m256i bytes) noexcept {
  return LowerHalves(_mm256_srli_epi32(bytes, 4));
}

// How many characters, from the front, belong to the alphabet.
TAVREL_STEP std::size_t AlphabetPrefix(__m256i text) noexcept {
  // Each upper half byte has a bit of its own kind, and each lower one the bits of the upper ones
  // with which it makes no character of the alphabet.
  const __m256i badWithLower =
      InBothHalves(_mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13,
                                 0x1A, 0x1B, 0x1B, 0x1B, 0x1A));
  const __m256i kindOfUpper =
      InBothHalves(_mm_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10,
                                 0x10, 0x10, 0x10, 0x10, 0x10));
  const __m256i bad = _mm256_and_si256(_mm256_shuffle_epi8(badWithLower, LowerHalves(text)),
                                       _mm256_shuffle_epi8(kindOfUpper, UpperHalves(text)));
  const __m256i good = _mm256_cmpeq_epi8(bad, _mm256_setzero_si256());
  const auto goods = static_cast<std::uint32_t>(_mm256_movemask_epi8(good));
  return static_cast<std::size_t>(std::countr_one(goods));
}

TAVREL_STEP __m256i SextetsOf(__m256i text) noexcept {
  // What leads from a character to its sextet, by the upper half byte; '/' takes the place before.
  const __m256i offsets = InBothHalves(_mm_setr_epi8(0, 63 - '/', 62 - '+', 52 - '0', -'A', -'A',
                                                     26 - 'a', 26 - 'a', 0, 0, 0, 0, 0, 0, 0, 0));
  const __m256i place =
      _mm256_add_epi8(UpperHalves(text), _mm256_cmpeq_epi8(text, _mm256_set1_epi8('/')));
  return _mm256_add_epi8(text, _mm256_shuffle_epi8(offsets, place));
}

// Joins four sextets to a number of 24 bits each, and packs the numbers' bytes in written order:
// 24 bytes at the front of the vector.
//
//     00aaaaaa 00bbbbbb 00cccccc 00dddddd   →   aaaaaabb bbbbcccc ccdddddd
TAVREL_STEP __m256i BytesOfSextets(__m256i sextets) noexcept {
  const __m256i pairs = _mm256_maddubs_epi16(sextets, _mm256_set1_epi32(0x01400140));  // 12 bits
  const __m256i groups = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));      // 24 bits
  const __m256i packInHalves =
      InBothHalves(_mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
  const __m256i joinHalves = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
  return _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(groups, packInHalves), joinHalves);
}

}  // namespace

[[gnu::target("avx2")]] std::size_t EncodeAvx2(const std::uint8_t* bytes, std::size_t size,
                                               char* text) noexcept {
  constexpr std::size_t kRead = 28;  // of which 24 are encoded
  std::size_t done = 0;
  for (; size - done >= kRead; done += 24, text += 32) {
    const __m256i sextets = SextetsOfGroups(SpreadGroups(bytes + done));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(text), CharactersOf(sextets));
  }
  return done + EncodeGroups(bytes + done, size - done, text);
}

[[gnu::target("avx2")]] std::size_t DecodeAvx2(const char* text, std::size_t size,
                                               std::size_t readable, std::uint8_t* bytes) noexcept {
  std::size_t done = 0;
  for (; done < size && readable - done >= 32; done += 32, bytes += 24) {
    const __m256i in = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + done));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), BytesOfSextets(SextetsOf(in)));
    const std::size_t count = AlphabetPrefix(in);
    if (count >= size - done) return size / 4 * 4;
    if (count < 32) return done + count / 4 * 4;
  }
  return done < size ? done + DecodeGroups(text + done, size - done, 0, bytes) : done;
}

}  // namespace tavrel
