// Which of the instructions that not every processor has may be used.
#pragma once

#include <array>

namespace tavrel::system {

// Each set holds those before it. A job that some instructions make faster has a function for each
// of them, in a file named for them (StructuralIndex.avx2.cpp), and one place that chooses by set: a
// set without a function of its own takes that of the set before. All of them give the same results.
enum class InstructionSet {
  kPlain,      // nothing in bulk, on every machine: what the others are compared with
  kBaseline,   // what every processor of this kind has: SSE2 on x86-64, NEON on ARM64
  kCarryless,  // and the carry-less multiplication of x86-64
  kAvx2,
  kAvx512,  // with its operations on bytes: BW and VBMI2
};

inline constexpr std::array kInstructionSets = {InstructionSet::kPlain, InstructionSet::kBaseline,
                                                InstructionSet::kCarryless, InstructionSet::kAvx2,
                                                InstructionSet::kAvx512};

// The widest set of this processor. Asks it at the first call only. (The compilers'
// __builtin_cpu_supports() would have it asked for everything at each load of the library, needed or
// not, which takes tens of microseconds on a virtual machine.)
[[nodiscard]] InstructionSet WidestSet() noexcept;

[[nodiscard]] inline bool IsSupported(InstructionSet set) noexcept {
  return set <= WidestSet();
}

// The kind of processor that is compiled for: functions for other kinds are missing.
#if defined(__x86_64__)
inline constexpr bool kForX86 = true;
#else
inline constexpr bool kForX86 = false;
#endif
#if defined(__aarch64__)
inline constexpr bool kForArm64 = true;
#else
inline constexpr bool kForArm64 = false;
#endif

// What WidestSet() asks on x86-64.
[[nodiscard]] InstructionSet AskX86() noexcept;

}  // namespace tavrel::system
