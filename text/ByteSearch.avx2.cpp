#include <immintrin.h>

#include <cstddef>
#include <optional>

#include "text/ByteSearchKernels.h"

namespace tavrel::text {
namespace {

constexpr std::ptrdiff_t kVector = 32;
constexpr std::ptrdiff_t kStride = 4 * kVector;

// For each of 32 places from `at` on, whether both probes stand there.
[[gnu::target("avx2"), gnu::always_inline]] inline __m256i ProbeBoth(const BytePattern& pattern,
                                                                     const char* at, __m256i first,
                                                                     __m256i second) noexcept {
  const auto* firstPlace = reinterpret_cast<const __m256i_u*>(at + pattern.firstProbe);
  const auto* secondPlace = reinterpret_cast<const __m256i_u*>(at + pattern.secondProbe);
  return _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(firstPlace), first),
                          _mm256_cmpeq_epi8(_mm256_loadu_si256(secondPlace), second));
}

// The first of the places in `mask`, counted from `from`, where the whole pattern stands.
[[gnu::always_inline]] inline std::optional<FoundBytes> FirstAmong(unsigned mask,
                                                                   const BytePattern& pattern,
                                                                   const char* from,
                                                                   SearchEffort& effort) noexcept {
  for (; mask != 0; mask &= mask - 1) {
    const char* at = from + __builtin_ctz(mask);
    if (effort.IsExcessive(at)) return FoundBytes{at, false};
    if (StandsAt(pattern, at, effort)) return FoundBytes{at, true};
  }
  return std::nullopt;
}

}  // namespace

[[gnu::target("avx2")]] FoundBytes FindAvx2(const BytePattern& pattern, const char* from,
                                            const char* end, SearchEffort& effort) noexcept {
  const __m256i first = _mm256_set1_epi8(pattern.bytes[pattern.firstProbe]);
  const __m256i second = _mm256_set1_epi8(pattern.bytes[pattern.secondProbe]);
  const auto size = static_cast<std::ptrdiff_t>(pattern.bytes.size());
  // One vector first: the next match may be near. From then on four at a time, while the pattern
  // may stand at the last place of the stride, so that every load is inside.
  if (end - from >= kVector + size - 1) {
    const __m256i hits = ProbeBoth(pattern, from, first, second);
    const auto mask = static_cast<unsigned>(_mm256_movemask_epi8(hits));
    if (const auto found = FirstAmong(mask, pattern, from, effort)) return *found;
    from += kVector;
  }
  for (; end - from >= kStride + size - 1; from += kStride) {
    __m256i hits[kStride / kVector];
    for (std::ptrdiff_t i = 0; i < kStride / kVector; ++i) {
      hits[i] = ProbeBoth(pattern, from + i * kVector, first, second);
    }
    const __m256i any =
        _mm256_or_si256(_mm256_or_si256(hits[0], hits[1]), _mm256_or_si256(hits[2], hits[3]));
    if (_mm256_testz_si256(any, any) != 0) continue;
    for (std::ptrdiff_t i = 0; i < kStride / kVector; ++i) {
      const auto mask = static_cast<unsigned>(_mm256_movemask_epi8(hits[i]));
      if (const auto found = FirstAmong(mask, pattern, from + i * kVector, effort)) return *found;
    }
  }
  return FindPlain(pattern, from, end, effort);
}

}  // namespace tavrel::text
