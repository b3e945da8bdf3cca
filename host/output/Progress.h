// How far a long piece of work has come, on a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "host/output/Output.h"
#include "host/output/Terminal.h"

namespace tavrel::host {

// "[#####     ] 123/412  56/s  5 s left"; width: of the terminal, in columns.
[[nodiscard]] std::string ProgressLine(std::size_t done, std::size_t total, double seconds,
                                       std::size_t width);

// Shows nothing unless standard output is a terminal that can erase a line.
class Progress {
 public:
  // isQuiet: nothing is shown.
  Progress(std::size_t total, const Terminal& terminal, Output& output, bool isQuiet = false);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  void Step();

 private:
  using Clock = std::chrono::steady_clock;

  std::size_t total_;
  std::size_t done_ = 0;
  bool isShown_;
  bool isOnScreen_ = false;
  std::size_t width_;
  Output& output_;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lastShown_ = start_;
};

}  // namespace tavrel::host
