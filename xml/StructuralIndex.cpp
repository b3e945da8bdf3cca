#include "xml/StructuralIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "system/Processor.h"

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
#endif

namespace tavrel::xml {
namespace {

constexpr std::size_t kStride = 64;

std::size_t IndexPlain(const char* text, std::size_t length, std::uint32_t base,
                       std::uint32_t* positions) noexcept {
  std::size_t count = 0;
  for (std::size_t i = 0; i < length; ++i) {
    if (text[i] == '<' || text[i] == '>') positions[count++] = base + static_cast<std::uint32_t>(i);
  }
  return count;
}

// Everything wider works on a mask of 64 bytes: '<' is 0x3C and '>' is 0x3E, so that one OR and one
// comparison find both.

// For each byte of a mask, the numbers of the bits that are set, and how many they are. Every byte
// writes eight positions, most of them in vain: that is cheaper than to branch on their number,
// which nobody can predict.
struct BitTable {
  alignas(8) std::array<std::array<std::uint8_t, 8>, 256> numbers;
  std::array<std::uint8_t, 256> count;
};

constexpr BitTable kBits = [] {
  BitTable table{};
  for (std::size_t byte = 0; byte < 256; ++byte) {
    for (std::uint8_t bit = 0; bit < 8; ++bit) {
      if ((byte >> bit & 1) != 0) table.numbers[byte][table.count[byte]++] = bit;
    }
  }
  return table;
}();

// Walks a text in strides of 64 bytes. The last, shorter one is a zero-filled copy: nothing is read
// behind the text.
class Strides {
 public:
  [[gnu::always_inline]] Strides(const char* text, std::size_t length) noexcept
      : at_(text), left_(length) {
    CopyRest();
  }
  [[gnu::always_inline]] bool More() const noexcept { return left_ > 0; }
  [[gnu::always_inline]] const char* At() const noexcept { return at_; }
  [[gnu::always_inline]] void Advance() noexcept {
    at_ += kStride;
    left_ -= std::min(left_, kStride);
    CopyRest();
  }

 private:
  [[gnu::always_inline]] void CopyRest() noexcept {
    if (left_ == 0 || left_ >= kStride) return;
    std::memset(rest_, 0, kStride);
    std::memcpy(rest_, at_, left_);
    at_ = rest_;
  }

  const char* at_;
  std::size_t left_;
  char rest_[kStride];
};

#if defined(__x86_64__)

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

std::size_t IndexBaseline(const char* text, std::size_t length, std::uint32_t base,
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

[[gnu::target("avx2"), gnu::always_inline]] inline std::size_t WritePositionsAvx2(
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
    count += WritePositionsAvx2(std::uint64_t{highHits} << 32 | lowHits, base, positions + count);
  }
  return count;
}

constexpr std::array<std::uint8_t, kStride> kAscending = [] {
  std::array<std::uint8_t, kStride> numbers{};
  for (std::size_t i = 0; i < kStride; ++i) numbers[i] = static_cast<std::uint8_t>(i);
  return numbers;
}();

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

#elif defined(__aarch64__)

[[gnu::always_inline]] inline std::size_t WritePositions(std::uint64_t mask, std::uint32_t base,
                                                         std::uint32_t* positions) noexcept {
  uint32x4_t start = vdupq_n_u32(base);
  std::uint32_t* next = positions;
  for (int i = 0; i < 8; ++i, mask >>= 8) {
    const std::size_t byte = mask & 0xFF;
    const uint16x8_t words = vmovl_u8(vld1_u8(kBits.numbers[byte].data()));
    vst1q_u32(next, vaddq_u32(start, vmovl_u16(vget_low_u16(words))));
    vst1q_u32(next + 4, vaddq_u32(start, vmovl_u16(vget_high_u16(words))));
    next += kBits.count[byte];
    start = vaddq_u32(start, vdupq_n_u32(8));
  }
  return static_cast<std::size_t>(next - positions);
}

std::size_t IndexBaseline(const char* text, std::size_t length, std::uint32_t base,
                          std::uint32_t* positions) noexcept {
  const uint8x16_t two = vdupq_n_u8(2);
  const uint8x16_t closer = vdupq_n_u8('>');
  const uint8x16_t bits = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
  std::size_t count = 0;
  for (Strides strides(text, length); strides.More(); strides.Advance(), base += kStride) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(strides.At());
    uint8x16_t hits[4];
    for (int i = 0; i < 4; ++i) {
      hits[i] = vandq_u8(vceqq_u8(vorrq_u8(vld1q_u8(bytes + 16 * i), two), closer), bits);
    }
    uint8x16_t sums = vpaddq_u8(vpaddq_u8(hits[0], hits[1]), vpaddq_u8(hits[2], hits[3]));
    sums = vpaddq_u8(sums, sums);
    count += WritePositions(vgetq_lane_u64(vreinterpretq_u64_u8(sums), 0), base, positions + count);
  }
  return count;
}

#endif

}  // namespace

bool IsSupported(InstructionSet set) noexcept {
  switch (set) {
    case InstructionSet::kPlain:
      return true;
#if defined(__x86_64__)
    case InstructionSet::kBaseline:
      return true;
    case InstructionSet::kAvx2:
      return system::Features().avx2;
    case InstructionSet::kAvx512:
      return system::Features().avx512;
#elif defined(__aarch64__)
    case InstructionSet::kBaseline:
      return true;
#endif
    default:
      return false;
  }
}

InstructionSet BestInstructionSet() noexcept {
  for (const InstructionSet set :
       {InstructionSet::kAvx512, InstructionSet::kAvx2, InstructionSet::kBaseline}) {
    if (IsSupported(set)) return set;
  }
  return InstructionSet::kPlain;
}

IndexFunction IndexFunctionOf(InstructionSet set) noexcept {
  switch (set) {
#if defined(__x86_64__)
    case InstructionSet::kBaseline:
      return IndexBaseline;
    case InstructionSet::kAvx2:
      return IndexAvx2;
    case InstructionSet::kAvx512:
      return IndexAvx512;
#elif defined(__aarch64__)
    case InstructionSet::kBaseline:
      return IndexBaseline;
#endif
    default:
      return IndexPlain;
  }
}

bool StructuralIndex::Fill(std::size_t count) noexcept {
  auto left = static_cast<std::size_t>(last_ - next_);
  std::memmove(positions_, next_, left * sizeof *next_);
  while (left < count && indexed_ < length_) {
    const std::size_t bytes = std::min(kBlock, length_ - indexed_);
    left +=
        index_(text_ + indexed_, bytes, static_cast<std::uint32_t>(indexed_), positions_ + left);
    indexed_ += bytes;
  }
  next_ = positions_;
  last_ = positions_ + left;
  return left >= count;
}

void StructuralIndex::SkipTo(std::size_t position) noexcept {
  while (next_ < last_ && *next_ < position) ++next_;
  // A long jump leaves the bytes in between unindexed.
  if (next_ == last_) indexed_ = std::max(indexed_, std::min(position, length_));
}

}  // namespace tavrel::xml
