// Runs one measurement in a process of its own, so that no run inherits the memory of another.
#pragma once

#include <cstdint>
#include <functional>

namespace tavrel::bench {

// What the measured code itself reports. Crosses a pipe as bytes.
struct LoadTimes {
  double loadSeconds;
  double releaseSeconds;
  std::int64_t songCount;
};

struct ChildRun {
  LoadTimes times;
  double userSeconds;  // of the whole process, like everything below
  double systemSeconds;
  std::uint64_t peakBytes;
  std::uint64_t pageFaults;
};

// CLOCK_MONOTONIC.
double SecondsNow() noexcept;

// Calls `work` in a child process and waits for it. Throws std::runtime_error with the message of
// the exception that `work` ended with, or with the signal that ended the child.
ChildRun RunInChild(const std::function<LoadTimes()>& work);

// Lets a child process touch `byteCount` bytes and end. A virtual machine gives free pages back to
// its host, and the first touch of such a page costs many times that of a page that the machine
// still has; the process measured next would pay for it. Does less on machines with little memory.
void WarmMemory(std::uint64_t byteCount);

}  // namespace tavrel::bench
