#include "codecs/Base64Blocks.h"

#include <algorithm>
#include <bit>

#include "system/Processor.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tavrel {
namespace {

std::size_t EncodeNothing(const std::uint8_t*, std::size_t, char*) noexcept {
  return 0;
}

std::size_t DecodeNothing(const char*, std::size_t, std::size_t, std::uint8_t*) noexcept {
  return 0;
}

std::size_t EncodePortable(const std::uint8_t* bytes, std::size_t size, char* text) noexcept {
  std::size_t done = 0;
  for (; size - done >= 3; done += 3, text += 4) {
    const std::uint32_t group = std::uint32_t{bytes[done]} << 16 |
                                std::uint32_t{bytes[done + 1]} << 8 |
                                std::uint32_t{bytes[done + 2]};
    text[0] = encodingTable[group >> 18];
    text[1] = encodingTable[group >> 12 & 0x3F];
    text[2] = encodingTable[group >> 6 & 0x3F];
    text[3] = encodingTable[group & 0x3F];
  }
  return done;
}

std::size_t DecodePortable(const char* text, std::size_t size, std::size_t,
                           std::uint8_t* bytes) noexcept {
  const auto valueOf = [text](std::size_t at) {
    return std::int32_t{decodingTable[static_cast<unsigned char>(text[at])]};
  };
  std::size_t done = 0;
  for (; size - done >= 4; done += 4, bytes += 3) {
    // A negative value keeps its sign, whatever it is joined with.
    const std::int32_t group = valueOf(done) * (1 << 18) | valueOf(done + 1) * (1 << 12) |
                               valueOf(done + 2) * (1 << 6) | valueOf(done + 3);
    if (group < 0) break;
    bytes[0] = static_cast<std::uint8_t>(group >> 16);
    bytes[1] = static_cast<std::uint8_t>(group >> 8);
    bytes[2] = static_cast<std::uint8_t>(group);
  }
  return done;
}

#if defined(__x86_64__)

#define TAVREL_AVX2 [[gnu::target("avx2")]]

// The same 16 bytes in both halves: a shuffle looks up in each half on its own.
TAVREL_AVX2 [[gnu::always_inline]] inline __m256i InBothHalves(__m128i half) noexcept {
  return _mm256_broadcastsi128_si256(half);
}

// 24 bytes become 32 characters, twelve bytes in each half of the vector.
TAVREL_AVX2 std::size_t EncodeAvx2(const std::uint8_t* bytes, std::size_t size,
                                   char* text) noexcept {
  // Each group as its bytes 1 0 2 1, so that every sextet lies whole in one half of the 32 bits.
  const __m256i spread =
      InBothHalves(_mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
  // What leads from a sextet to its character: for a to z, the ten digits, '+', '/', A to Z.
  const __m256i offsets = InBothHalves(
      _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                    '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0));
  std::size_t done = 0;
  for (; size - done >= 28; done += 24, text += 32) {
    const auto* low = reinterpret_cast<const __m128i*>(bytes + done);
    const auto* high = reinterpret_cast<const __m128i*>(bytes + done + 12);
    const __m256i groups =
        _mm256_shuffle_epi8(_mm256_setr_m128i(_mm_loadu_si128(low), _mm_loadu_si128(high)), spread);
    // A multiplication shifts each 16 bits by a distance of their own.
    const __m256i even = _mm256_mulhi_epu16(_mm256_and_si256(groups, _mm256_set1_epi32(0x0FC0FC00)),
                                            _mm256_set1_epi32(0x04000040));
    const __m256i odd = _mm256_mullo_epi16(_mm256_and_si256(groups, _mm256_set1_epi32(0x003F03F0)),
                                           _mm256_set1_epi32(0x01000010));
    const __m256i sextets = _mm256_or_si256(even, odd);
    // The place in `offsets`: how far the sextet is above 51, but 13 for those below 26.
    const __m256i capital = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), sextets);
    const __m256i place = _mm256_or_si256(_mm256_subs_epu8(sextets, _mm256_set1_epi8(51)),
                                          _mm256_and_si256(capital, _mm256_set1_epi8(13)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(text),
                        _mm256_add_epi8(sextets, _mm256_shuffle_epi8(offsets, place)));
  }
  return done + EncodePortable(bytes + done, size - done, text);
}

// 32 characters become 24 bytes.
TAVREL_AVX2 std::size_t DecodeAvx2(const char* text, std::size_t size, std::size_t readable,
                                   std::uint8_t* bytes) noexcept {
  // Each upper half byte has a bit of its own kind, and each lower one the bits of the upper ones
  // with which it makes no character of the alphabet.
  const __m256i badWithLower =
      InBothHalves(_mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13,
                                 0x1A, 0x1B, 0x1B, 0x1B, 0x1A));
  const __m256i kindOfUpper =
      InBothHalves(_mm_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10,
                                 0x10, 0x10, 0x10, 0x10, 0x10));
  // What leads from a character to its sextet, by the upper half byte; '/' takes the place before.
  const __m256i offsets = InBothHalves(_mm_setr_epi8(0, 63 - '/', 62 - '+', 52 - '0', -'A', -'A',
                                                     26 - 'a', 26 - 'a', 0, 0, 0, 0, 0, 0, 0, 0));
  // The three bytes of each group in written order, at the front of each half; then of the whole.
  const __m256i pack =
      InBothHalves(_mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
  const __m256i join = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
  const __m256i slash = _mm256_set1_epi8('/');  // 0x2F: also the mask for a lookup by half bytes

  std::size_t done = 0;
  for (; done < size && readable - done >= 32; done += 32, bytes += 24) {
    const __m256i in = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + done));
    const __m256i upper = _mm256_and_si256(_mm256_srli_epi32(in, 4), slash);
    const __m256i lower = _mm256_and_si256(in, slash);
    const __m256i bad = _mm256_and_si256(_mm256_shuffle_epi8(badWithLower, lower),
                                         _mm256_shuffle_epi8(kindOfUpper, upper));
    const __m256i place = _mm256_add_epi8(upper, _mm256_cmpeq_epi8(in, slash));
    const __m256i sextets = _mm256_add_epi8(in, _mm256_shuffle_epi8(offsets, place));
    // Two sextets join to 12 bits, two of those to 24.
    const __m256i pairs = _mm256_maddubs_epi16(sextets, _mm256_set1_epi32(0x01400140));
    const __m256i groups = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
    const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(groups, pack), join);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), packed);

    const __m256i good = _mm256_cmpeq_epi8(bad, _mm256_setzero_si256());
    const auto goods = static_cast<std::uint32_t>(_mm256_movemask_epi8(good));
    const auto count = static_cast<std::size_t>(std::countr_one(goods));
    if (count >= size - done) return size / 4 * 4;
    if (count < 32) return done + count / 4 * 4;
  }
  return done < size ? done + DecodePortable(text + done, size - done, 0, bytes) : done;
}

#endif

}  // namespace

Base64Path BestBase64Path() noexcept {
  return system::Features().avx2 ? Base64Path::kAvx2 : Base64Path::kPortable;
}

bool IsSupported(Base64Path path) noexcept {
  return path <= BestBase64Path();
}

Base64Blocks BlocksOf(Base64Path path) noexcept {
  switch (path) {
    case Base64Path::kPlain:
      break;
    case Base64Path::kPortable:
      return {EncodePortable, DecodePortable};
    case Base64Path::kAvx2:
#if defined(__x86_64__)
      return {EncodeAvx2, DecodeAvx2};
#else
      break;
#endif
  }
  return {EncodeNothing, DecodeNothing};
}

}  // namespace tavrel
