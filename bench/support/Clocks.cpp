#include "bench/support/Clocks.h"

#include <sys/resource.h>
#include <time.h>

namespace tavrel::bench {
namespace {

double Seconds(const timeval& time) noexcept {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

double Now(clockid_t clock) noexcept {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace

double WallTime() noexcept {
  return Now(CLOCK_MONOTONIC);
}

// The clock of this process is finer than its rusage.
double ProcessorTime() noexcept {
  rusage children{};
  getrusage(RUSAGE_CHILDREN, &children);
  return Seconds(children.ru_utime) + Seconds(children.ru_stime) + Now(CLOCK_PROCESS_CPUTIME_ID);
}

}  // namespace tavrel::bench
