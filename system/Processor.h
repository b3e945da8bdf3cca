// Which of the instructions that not every processor has may be used.
#pragma once

namespace tavrel::system {

struct ProcessorFeatures {
  bool avx2 = false;
  bool avx512 = false;  // with its operations on bytes: BW and VBMI2
  bool carrylessMultiplication = false;
};

// Asks the processor at the first call only. (The compilers' __builtin_cpu_supports() would have it
// asked for everything at each load of the library, needed or not, which takes tens of microseconds
// on a virtual machine.)
[[nodiscard]] ProcessorFeatures Features() noexcept;

}  // namespace tavrel::system
