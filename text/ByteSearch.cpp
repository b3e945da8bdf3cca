#include "text/ByteSearch.h"

#include <cstring>
#include <optional>

#include "system/Processor.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tavrel::text {
namespace {

// How common a byte is in folded texts: the less, the better it serves as a probe. The bytes of one
// script share few first bytes among many characters, so that a later byte tells more.
std::size_t Frequency(char byte) noexcept {
  constexpr std::string_view kRareToCommon = "zqjxk\x80vbpy\xC0gfwmucdlhrsnioate ";
  const auto value = static_cast<unsigned char>(byte);
  const char kind = value >= 0xC0 ? '\xC0' : value >= 0x80 ? '\x80' : byte;
  const std::size_t rank = kRareToCommon.find(kind);
  return rank == std::string_view::npos ? 0 : rank + 1;
}

bool StandsAt(const BytePattern& pattern, const char* at, SearchEffort& effort) noexcept {
  effort.compared += pattern.bytes.size();
  return std::memcmp(at, pattern.bytes.data(), pattern.bytes.size()) == 0;
}

FoundBytes FindPortable(const BytePattern& pattern, const char* from, const char* end,
                        SearchEffort& effort) noexcept {
  if (static_cast<std::size_t>(end - from) < pattern.bytes.size()) return {end, false};
  const char* last = end - pattern.bytes.size();  // where the pattern may stand last
  const char first = pattern.bytes[pattern.firstProbe];
  const char second = pattern.bytes[pattern.secondProbe];
  while (from <= last) {
    const void* hit =
        std::memchr(from + pattern.firstProbe, first, static_cast<std::size_t>(last - from) + 1);
    if (hit == nullptr) break;
    const char* at = static_cast<const char*>(hit) - pattern.firstProbe;
    if (at[pattern.secondProbe] == second) {
      if (effort.IsExcessive(at)) return {at, false};
      if (StandsAt(pattern, at, effort)) return {at, true};
    }
    from = at + 1;
  }
  return {end, false};
}

#if defined(__x86_64__)

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
  return FindPortable(pattern, from, end, effort);
}

#endif

}  // namespace

bool CanScan(ScanKind kind) noexcept {
  return kind == ScanKind::kPortable || system::Features().avx2;
}

ScanKind FastestScan() noexcept {
  return CanScan(ScanKind::kAvx2) ? ScanKind::kAvx2 : ScanKind::kPortable;
}

BytePattern MakePattern(std::string_view bytes, ScanKind kind) noexcept {
  BytePattern pattern{bytes, 0, bytes.size() - 1, kind};
  if (bytes.size() == 1) return pattern;
  if (Frequency(bytes[pattern.secondProbe]) < Frequency(bytes[pattern.firstProbe])) {
    pattern = {bytes, pattern.secondProbe, pattern.firstProbe, kind};
  }
  for (std::size_t i = 1; i + 1 < bytes.size(); ++i) {
    if (Frequency(bytes[i]) < Frequency(bytes[pattern.firstProbe])) {
      pattern.secondProbe = pattern.firstProbe;
      pattern.firstProbe = i;
    } else if (Frequency(bytes[i]) < Frequency(bytes[pattern.secondProbe])) {
      pattern.secondProbe = i;
    }
  }
  return pattern;
}

FoundBytes FindPattern(const BytePattern& pattern, const char* from, const char* end,
                       SearchEffort& effort) noexcept {
#if defined(__x86_64__)
  if (pattern.kind == ScanKind::kAvx2) return FindAvx2(pattern, from, end, effort);
#endif
  return FindPortable(pattern, from, end, effort);
}

}  // namespace tavrel::text
