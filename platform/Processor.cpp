#include "platform/Processor.h"

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace tavrel::platform {

#if defined(__x86_64__)
namespace {

// Whether the system saves the 256-bit registers on a change of task. What it does not save must
// not be used, whatever the processor offers.
bool SavesVectors256() noexcept {
  unsigned low = 0;
  unsigned high = 0;
  __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return (low & 0x06U) == 0x06U;
}

}  // namespace

ProcessorFeatures DetectProcessorFeatures() noexcept {
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & bit_OSXSAVE) == 0 || !SavesVectors256()) {
    return {};
  }
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) return {};
  return {.avx2 = (b & bit_AVX2) != 0};
}

#else

ProcessorFeatures DetectProcessorFeatures() noexcept {
  return {};
}

#endif

}  // namespace tavrel::platform
