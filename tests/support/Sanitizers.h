// Whether sanitizers watch this build: they make every step many times slower, and some rules cannot be
// tested under them.
#pragma once

#include "tests/support/Soak.h"

#if defined(__SANITIZE_ADDRESS__)
#define TAVREL_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer)
#define TAVREL_SANITIZED 1
#endif
#endif
#ifndef TAVREL_SANITIZED
#define TAVREL_SANITIZED 0
#endif

namespace tavrel::test {

// For tests that sanitizers leave without a meaning: `#if !TAVREL_SANITIZED` takes them out of the build.
inline constexpr bool kSanitized = TAVREL_SANITIZED != 0;

// Where every step takes many times longer: under sanitizers, and on a machine that another one emulates.
#ifdef TAVREL_EMULATED
inline constexpr bool kSlow = true;
#else
inline constexpr bool kSlow = kSanitized;
#endif

// How much of a randomised test to run: all of it in scripts/soak, a fourth with every other test, less where steps
// take many times longer.
[[nodiscard]] inline int Rounds(int count) {
  if (IsSoaking()) return count;
  constexpr int kShare = kSlow ? 32 : 4;
  return (count + kShare - 1) / kShare;
}

}  // namespace tavrel::test
