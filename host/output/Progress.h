// How far a long piece of work has come, on a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/output/Output.h"
#include "host/output/Terminal.h"

namespace tavrel::host {

// What is counted.
enum class ProgressOf { Things, Bytes };

// "[#####     ] 123/412  56/s  5 s left", "[#####     ] 1.2 GB/4.5 GB  34 MB/s  2 minutes left".
// width: of the terminal, in columns.
[[nodiscard]] std::string ProgressLine(std::uint64_t done, std::uint64_t total, double seconds,
                                       std::size_t width, ProgressOf what = ProgressOf::Things);

// Shows nothing unless standard output is a terminal that can erase a line.
class Progress {
 public:
  // isQuiet: nothing is shown.
  Progress(std::uint64_t total, const Terminal& terminal, Output& output, bool isQuiet = false,
           ProgressOf what = ProgressOf::Things);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  void Step(std::uint64_t done = 1);

 private:
  using Clock = std::chrono::steady_clock;

  std::uint64_t total_;
  std::uint64_t done_ = 0;
  ProgressOf what_;
  bool isShown_;
  bool isOnScreen_ = false;
  std::size_t width_;
  Output& output_;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lastShown_ = start_;
};

}  // namespace tavrel::host
