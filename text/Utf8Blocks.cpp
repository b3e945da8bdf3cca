#include "text/Utf8Blocks.h"

#include <array>
#include <cstdint>

#include "system/Processor.h"

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
#endif

namespace tavrel::text {
namespace {

#if defined(__x86_64__) || defined(__aarch64__)

// How most blocks are passed: each byte, taken as a signed number, is greater than zero. Such a
// block is ASCII and holds no zero byte.
//
// In the others every byte is judged together with the one before it. Whether two bytes may follow
// each other shows in three of their half bytes: the first byte's two and the upper one of the
// second. A table for each of the three says which faults that half byte takes part in; there is a
// fault where all three say so. What remains are third and fourth bytes: they follow continuation
// bytes, which is a fault anywhere else.

// A set of half bytes.
constexpr unsigned Halves(unsigned first, unsigned last) {
  return (2U << last) - (1U << first);
}
constexpr unsigned kAny = Halves(0x0, 0xF);
constexpr unsigned kAscii = Halves(0x0, 0x7);
constexpr unsigned kContinuation = Halves(0x8, 0xB);
constexpr unsigned kLead = Halves(0xC, 0xF);

struct Fault {
  unsigned firstUpper;
  unsigned firstLower;
  unsigned secondUpper;
};

constexpr std::array<Fault, 8> kFaults = {{
    {kLead, kAny, kAscii | kLead},                                              // cut off
    {kAscii, kAny, kContinuation},                                              // lone
    {Halves(0xC, 0xC), Halves(0x0, 0x1), kContinuation},                        // overlong: 2 bytes
    {Halves(0xE, 0xE), Halves(0x0, 0x0), Halves(0x8, 0x9)},                     // overlong: 3 bytes
    {Halves(0xE, 0xE), Halves(0xD, 0xD), Halves(0xA, 0xB)},                     // surrogates
    {Halves(0xF, 0xF), Halves(0x4, 0xF), Halves(0x9, 0xB)},                     // above U+10FFFF
    {Halves(0xF, 0xF), Halves(0x0, 0x0) | Halves(0x5, 0xF), Halves(0x8, 0x8)},  // overlong or above
    {kContinuation, kAny, kContinuation},  // third and fourth bytes, in the place of the top bit
}};

// Bit n of an entry stands for fault n.
constexpr std::array<std::uint8_t, 16> TableOf(unsigned Fault::*halves) {
  std::array<std::uint8_t, 16> table{};
  for (unsigned half = 0; half < 16; ++half) {
    for (unsigned fault = 0; fault < kFaults.size(); ++fault) {
      table[half] |= static_cast<std::uint8_t>((kFaults[fault].*halves >> half & 1U) << fault);
    }
  }
  return table;
}

alignas(16) constexpr std::array<std::uint8_t, 16> kFirstUpper = TableOf(&Fault::firstUpper);
alignas(16) constexpr std::array<std::uint8_t, 16> kFirstLower = TableOf(&Fault::firstLower);
alignas(16) constexpr std::array<std::uint8_t, 16> kSecondUpper = TableOf(&Fault::secondUpper);

// A byte less these has the top bit when it announces a third, or a fourth, byte.
constexpr std::uint8_t kBelowThree = 0xE0 - 0x80;
constexpr std::uint8_t kBelowFour = 0xF0 - 0x80;

// So many bytes before a byte have a say in it.
constexpr std::size_t kLookBack = 3;

// How many bytes of a character that goes on there stand before the end of a block without faults.
std::size_t BytesCutOff(const std::uint8_t* end) noexcept {
  return end[-1] >= 0xC0 ? 1 : end[-2] >= 0xE0 ? 2 : end[-3] >= 0xF0 ? 3 : 0;
}

// Judges a block by the plain rule; false when it holds a fault.
bool PassCharacters(const std::uint8_t* bytes, Utf8Blocks& passed) noexcept {
  const auto* block = reinterpret_cast<const char*>(bytes + passed.length);
  const std::size_t valid = ValidUtf8Characters(block, kUtf8Block);
  passed.length += valid;
  return valid >= kUtf8Block - kLookBack;
}

#endif

#if defined(__x86_64__)

// Without a table look-up there is nothing better for the other blocks than the plain rule.
Utf8Blocks PassBaseline(const std::uint8_t* bytes, std::size_t length) noexcept {
  const __m128i zero = _mm_setzero_si128();
  Utf8Blocks passed;
  while (length - passed.length >= kUtf8Block) {
    const auto* vectors = reinterpret_cast<const __m128i*>(bytes + passed.length);
    const __m128i a = _mm_loadu_si128(vectors);
    const __m128i b = _mm_loadu_si128(vectors + 1);
    const __m128i c = _mm_loadu_si128(vectors + 2);
    const __m128i d = _mm_loadu_si128(vectors + 3);
    const __m128i positive =
        _mm_and_si128(_mm_and_si128(_mm_cmpgt_epi8(a, zero), _mm_cmpgt_epi8(b, zero)),
                      _mm_and_si128(_mm_cmpgt_epi8(c, zero), _mm_cmpgt_epi8(d, zero)));
    if (_mm_movemask_epi8(positive) == 0xFFFF) [[likely]] {
      passed.length += kUtf8Block;
      continue;
    }
    const __m128i least = _mm_min_epu8(_mm_min_epu8(a, b), _mm_min_epu8(c, d));
    passed.hasZero |= _mm_movemask_epi8(_mm_cmpeq_epi8(least, zero)) != 0;
    if (!PassCharacters(bytes, passed)) break;
  }
  return passed;
}

[[gnu::target("avx2")]] inline __m256i TableAvx2(
    const std::array<std::uint8_t, 16>& table) noexcept {
  return _mm256_broadcastsi128_si256(
      _mm_load_si128(reinterpret_cast<const __m128i*>(table.data())));
}

[[gnu::target("avx2")]] inline __m256i LoadAvx2(const std::uint8_t* at) noexcept {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

// Not zero at each byte that may not stand there.
[[gnu::target("avx2")]] inline __m256i FaultsAvx2(const std::uint8_t* at) noexcept {
  const __m256i lowerHalf = _mm256_set1_epi8(0x0F);
  const __m256i second = LoadAvx2(at);
  const __m256i first = LoadAvx2(at - 1);
  const __m256i firstUpper = _mm256_and_si256(_mm256_srli_epi16(first, 4), lowerHalf);
  const __m256i firstLower = _mm256_and_si256(first, lowerHalf);
  const __m256i secondUpper = _mm256_and_si256(_mm256_srli_epi16(second, 4), lowerHalf);
  const __m256i pairs =
      _mm256_and_si256(_mm256_and_si256(_mm256_shuffle_epi8(TableAvx2(kFirstUpper), firstUpper),
                                        _mm256_shuffle_epi8(TableAvx2(kFirstLower), firstLower)),
                       _mm256_shuffle_epi8(TableAvx2(kSecondUpper), secondUpper));
  const __m256i third = _mm256_subs_epu8(LoadAvx2(at - 2), _mm256_set1_epi8(kBelowThree));
  const __m256i fourth = _mm256_subs_epu8(LoadAvx2(at - 3), _mm256_set1_epi8(kBelowFour));
  const __m256i topBit = _mm256_set1_epi8(static_cast<char>(0x80));
  const __m256i expected = _mm256_and_si256(_mm256_or_si256(third, fourth), topBit);
  return _mm256_xor_si256(pairs, expected);
}

[[gnu::target("avx2")]] Utf8Blocks PassAvx2(const std::uint8_t* bytes,
                                            std::size_t length) noexcept {
  const __m256i zero = _mm256_setzero_si256();
  Utf8Blocks passed;
  while (length - passed.length >= kUtf8Block) {
    const std::uint8_t* block = bytes + passed.length;
    const __m256i low = LoadAvx2(block);
    const __m256i high = LoadAvx2(block + sizeof low);
    const __m256i positive = _mm256_cmpgt_epi8(_mm256_min_epi8(low, high), zero);
    if (_mm256_movemask_epi8(positive) == -1) [[likely]] {
      passed.length += kUtf8Block;
      continue;
    }
    const __m256i zeros = _mm256_cmpeq_epi8(_mm256_min_epu8(low, high), zero);
    passed.hasZero |= _mm256_movemask_epi8(zeros) != 0;
    if (passed.length < kLookBack) {
      if (!PassCharacters(bytes, passed)) break;
      continue;
    }
    const __m256i faults = _mm256_or_si256(FaultsAvx2(block), FaultsAvx2(block + sizeof low));
    if (_mm256_testz_si256(faults, faults) == 0) break;
    passed.length += kUtf8Block - BytesCutOff(block + kUtf8Block);
  }
  return passed;
}

#elif defined(__aarch64__)

// Not zero at each byte that may not stand there.
uint8x16_t FaultsNeon(const std::uint8_t* at) noexcept {
  const uint8x16_t second = vld1q_u8(at);
  const uint8x16_t first = vld1q_u8(at - 1);
  const uint8x16_t pairs =
      vandq_u8(vandq_u8(vqtbl1q_u8(vld1q_u8(kFirstUpper.data()), vshrq_n_u8(first, 4)),
                        vqtbl1q_u8(vld1q_u8(kFirstLower.data()), vandq_u8(first, vdupq_n_u8(15)))),
               vqtbl1q_u8(vld1q_u8(kSecondUpper.data()), vshrq_n_u8(second, 4)));
  const uint8x16_t third = vqsubq_u8(vld1q_u8(at - 2), vdupq_n_u8(kBelowThree));
  const uint8x16_t fourth = vqsubq_u8(vld1q_u8(at - 3), vdupq_n_u8(kBelowFour));
  const uint8x16_t expected = vandq_u8(vorrq_u8(third, fourth), vdupq_n_u8(0x80));
  return veorq_u8(pairs, expected);
}

Utf8Blocks PassBaseline(const std::uint8_t* bytes, std::size_t length) noexcept {
  Utf8Blocks passed;
  while (length - passed.length >= kUtf8Block) {
    const std::uint8_t* block = bytes + passed.length;
    const uint8x16_t a = vld1q_u8(block);
    const uint8x16_t b = vld1q_u8(block + 16);
    const uint8x16_t c = vld1q_u8(block + 32);
    const uint8x16_t d = vld1q_u8(block + 48);
    passed.hasZero |= vminvq_u8(vminq_u8(vminq_u8(a, b), vminq_u8(c, d))) == 0;
    if (vmaxvq_u8(vmaxq_u8(vmaxq_u8(a, b), vmaxq_u8(c, d))) < 0x80) [[likely]] {
      passed.length += kUtf8Block;
      continue;
    }
    if (passed.length < kLookBack) {
      if (!PassCharacters(bytes, passed)) break;
      continue;
    }
    const uint8x16_t faults = vorrq_u8(vorrq_u8(FaultsNeon(block), FaultsNeon(block + 16)),
                                       vorrq_u8(FaultsNeon(block + 32), FaultsNeon(block + 48)));
    if (vmaxvq_u8(faults) != 0) break;
    passed.length += kUtf8Block - BytesCutOff(block + kUtf8Block);
  }
  return passed;
}

#endif

}  // namespace

bool IsSupported(Utf8Path path) noexcept {
  switch (path) {
    case Utf8Path::kPlain:
      return true;
#if defined(__x86_64__) || defined(__aarch64__)
    case Utf8Path::kBaseline:
      return true;
#endif
#if defined(__x86_64__)
    case Utf8Path::kAvx2:
      return system::Features().avx2;
#endif
    default:
      return false;
  }
}

Utf8Path BestUtf8Path() noexcept {
  for (const Utf8Path path : {Utf8Path::kAvx2, Utf8Path::kBaseline}) {
    if (IsSupported(path)) return path;
  }
  return Utf8Path::kPlain;
}

Utf8Blocks ValidUtf8Blocks(const char* bytes, [[maybe_unused]] std::size_t length,
                           Utf8Path path) noexcept {
  [[maybe_unused]] const auto* unsignedBytes = reinterpret_cast<const std::uint8_t*>(bytes);
  switch (path) {
#if defined(__x86_64__) || defined(__aarch64__)
    case Utf8Path::kBaseline:
      return PassBaseline(unsignedBytes, length);
#endif
#if defined(__x86_64__)
    case Utf8Path::kAvx2:
      return PassAvx2(unsignedBytes, length);
#endif
    default:
      return {};
  }
}

}  // namespace tavrel::text
