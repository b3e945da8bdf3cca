// The two clocks of the benchmarks, in seconds since a moment of their own.
#pragma once

namespace tavrel::bench {

// The wall's.
[[nodiscard]] double WallTime() noexcept;
// The time that this process, and its children that have ended, had of the processor, system calls
// included: what other programs do meanwhile counts for nobody.
[[nodiscard]] double ProcessorTime() noexcept;

template <class Work>
[[nodiscard]] double WallSecondsOf(Work&& work) {
  const double start = WallTime();
  work();
  return WallTime() - start;
}

template <class Work>
[[nodiscard]] double ProcessorSecondsOf(Work&& work) {
  const double start = ProcessorTime();
  work();
  return ProcessorTime() - start;
}

}  // namespace tavrel::bench
