// Which of the instructions that not every processor has may be used.
#pragma once

namespace tavrel::platform {

struct ProcessorFeatures {
  bool avx2 = false;
};

// Asks the processor on every call, which takes microseconds on a virtual machine: keep the answer.
// The compilers' __builtin_cpu_supports() would have the processor asked for everything at each
// load of the library, needed or not.
[[nodiscard]] ProcessorFeatures DetectProcessorFeatures() noexcept;

}  // namespace tavrel::platform
