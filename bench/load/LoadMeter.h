// Measures one load and what follows it, from inside the process that does it.
#pragma once

#include <sys/resource.h>

#include <cstdint>

namespace tavrel::bench {

struct LoadFigures {
  double seconds;
  double userSeconds;
  double systemSeconds;
  double releaseSeconds;
  double pageFaults;
  double peakBytes;  // how far the load has raised the memory of its process
  std::int64_t trackCount;
};

// One object measures one load; the calls come in the order in which they stand here.
class LoadMeter {
 public:
  LoadMeter() noexcept;  // the load begins
  void Loaded() noexcept;
  void Found(std::int64_t trackCount) noexcept { figures_.trackCount = trackCount; }
  void ReleaseBegins() noexcept;
  [[nodiscard]] LoadFigures Released() noexcept;

 private:
  LoadFigures figures_{};
  double peakBefore_;
  rusage usageBefore_;
  double start_;
};

}  // namespace tavrel::bench
