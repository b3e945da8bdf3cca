#include "system/Processor.h"

#if defined(__x86_64__)
#include <cpuid.h>

#include <atomic>
#endif

namespace tavrel::system {

#if defined(__x86_64__)
namespace {

constexpr unsigned kAsked = 1;
constexpr unsigned kAvx2 = 2;
constexpr unsigned kAvx512 = 4;
constexpr unsigned kCarrylessMultiplication = 8;

constinit std::atomic<unsigned> known{0};

// Which registers the system saves on a change of task. What it does not save must not be used,
// whatever the processor offers.
constexpr unsigned kVectors256 = 0x06;
constexpr unsigned kVectors512 = 0xE6;

unsigned SavedRegisters() noexcept {
  unsigned low = 0;
  unsigned high = 0;
  __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

unsigned AskProcessor() noexcept {
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  unsigned features = kAsked;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0) return features;
  if ((c & bit_PCLMUL) != 0) features |= kCarrylessMultiplication;
  const unsigned saved = (c & bit_OSXSAVE) != 0 ? SavedRegisters() : 0;
  if ((saved & kVectors256) != kVectors256) return features;
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) return features;
  if ((b & bit_AVX2) != 0) features |= kAvx2;
  const bool avx512 =
      (b & bit_AVX512F) != 0 && (b & bit_AVX512BW) != 0 && (c & bit_AVX512VBMI2) != 0;
  if (avx512 && (saved & kVectors512) == kVectors512) features |= kAvx512;
  return features;
}

}  // namespace

ProcessorFeatures Features() noexcept {
  unsigned features = known.load(std::memory_order_relaxed);
  if (features == 0) {
    features = AskProcessor();
    known.store(features, std::memory_order_relaxed);
  }
  return {.avx2 = (features & kAvx2) != 0,
          .avx512 = (features & kAvx512) != 0,
          .carrylessMultiplication = (features & kCarrylessMultiplication) != 0};
}

#else

ProcessorFeatures Features() noexcept {
  return {};
}

#endif

}  // namespace tavrel::system
