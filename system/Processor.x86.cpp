#include "system/Processor.h"

#include <cpuid.h>

namespace tavrel::system {
namespace {

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

}  // namespace

InstructionSet AskX86() noexcept {
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0) return InstructionSet::kBaseline;
  if ((c & bit_PCLMUL) == 0) return InstructionSet::kBaseline;
  const unsigned saved = (c & bit_OSXSAVE) != 0 ? SavedRegisters() : 0;
  if ((saved & kVectors256) != kVectors256) return InstructionSet::kCarryless;
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) return InstructionSet::kCarryless;
  if ((b & bit_AVX2) == 0) return InstructionSet::kCarryless;
  const bool avx512 =
      (b & bit_AVX512F) != 0 && (b & bit_AVX512BW) != 0 && (c & bit_AVX512VBMI2) != 0;
  return avx512 && (saved & kVectors512) == kVectors512 ? InstructionSet::kAvx512
                                                        : InstructionSet::kAvx2;
}

}  // namespace tavrel::system
