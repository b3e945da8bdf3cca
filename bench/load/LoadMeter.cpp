#include "bench/load/LoadMeter.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "bench/support/Clocks.h"

namespace tavrel::bench {
namespace {

double Seconds(const timeval& time) noexcept {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

rusage Usage() noexcept {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage;
}

#if defined(__linux__)

// A process made by fork() begins with all that its parent has resident, and getrusage() counts
// that as the child's peak too. So the peak is set back to what is resident now, which also makes
// it the figure to subtract. Where the kernel was built without that file, a forked process has
// its peak there anyway, as long as it has given nothing back yet.
void ResetPeak() noexcept {
  const int file = open("/proc/self/clear_refs", O_WRONLY | O_CLOEXEC);
  if (file < 0) return;
  [[maybe_unused]] const ssize_t written = write(file, "5", 1);
  close(file);
}

// Read from the system's own text with nothing allocated: this runs between load and release.
double PeakBytes() noexcept {
  char text[4096] = {};
  const int file = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
  if (file < 0) return 0;
  const ssize_t length = read(file, text, sizeof text - 1);
  close(file);
  const char* line = length <= 0 ? nullptr : std::strstr(text, "VmHWM:");
  return line == nullptr ? 0 : std::strtod(line + 6, nullptr) * 1024;
}

#else

void ResetPeak() noexcept {}

double PeakBytes() noexcept {
#if defined(__APPLE__)
  constexpr double kUnit = 1;
#else
  constexpr double kUnit = 1024;
#endif
  return static_cast<double>(Usage().ru_maxrss) * kUnit;
}

#endif

}  // namespace

LoadMeter::LoadMeter() noexcept {
  ResetPeak();
  peakBefore_ = PeakBytes();
  usageBefore_ = Usage();
  start_ = WallTime();
}

void LoadMeter::Loaded() noexcept {
  figures_.seconds = WallTime() - start_;
  const rusage usage = Usage();
  figures_.userSeconds = Seconds(usage.ru_utime) - Seconds(usageBefore_.ru_utime);
  figures_.systemSeconds = Seconds(usage.ru_stime) - Seconds(usageBefore_.ru_stime);
  figures_.pageFaults = static_cast<double>(usage.ru_minflt - usageBefore_.ru_minflt);
  figures_.peakBytes = PeakBytes() - peakBefore_;
}

void LoadMeter::ReleaseBegins() noexcept {
  start_ = WallTime();
}

LoadFigures LoadMeter::Released() noexcept {
  figures_.releaseSeconds = WallTime() - start_;
  return figures_;
}

}  // namespace tavrel::bench
