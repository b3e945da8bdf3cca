// The time that this process has had of the processor, its system calls included: what other
// programs do meanwhile counts for nobody.
#pragma once

#include <time.h>

namespace tavrel::bench {

inline double ProcessorTimeNow() noexcept {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace tavrel::bench
