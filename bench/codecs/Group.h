// Ours and its peers take turns, and the ratios of their times.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/report/Report.h"
#include "bench/report/Turns.h"

namespace tavrel::bench {

// The first step is ours, the others are its peers'. Times are those of the processor.
class Group {
 public:
  // bytes: what speeds are given in. freshBytes: how much memory a step takes from the system.
  Group(std::string name, std::size_t bytes, std::size_t freshBytes = 0)
      : name_(std::move(name)), bytes_(bytes), freshBytes_(freshBytes) {}

  void Add(std::string name, std::function<void()> work);

  // Runs the steps in turns and reports their times, speeds and ratios.
  void Measure(std::uint32_t rounds, Report& report);

  // How many times as long as ours the step of that name takes, round by round.
  [[nodiscard]] Series RatioTo(std::string_view peer) const;

 private:
  void AddTo(Report& report) const;

  std::string name_;
  std::size_t bytes_;
  std::size_t freshBytes_;
  std::vector<Step> steps_;
};

}  // namespace tavrel::bench
