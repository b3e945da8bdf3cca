// Runs every loader on every file, round by round.
#pragma once

#include <cstdint>
#include <vector>

#include "bench/load/Input.h"
#include "bench/load/Loaders.h"
#include "bench/report/Series.h"

namespace tavrel::bench {

// One loader on one file; its runs are those of the first rounds.
struct Case {
  const Input* input;
  const Loader* loader;
  std::vector<LoadFigures> runs;

  [[nodiscard]] Series Values(double LoadFigures::*figure) const;
  [[nodiscard]] Series Seconds() const { return Values(&LoadFigures::seconds); }
  [[nodiscard]] Series ProcessorSeconds() const;
};

struct RoundCounts {
  std::uint32_t all;
  std::uint32_t slow;  // for a loader that takes more than a second
};

// Runs all cases once a round, in random order, each in a process of its own, with memory warmed
// before it. Throws when one finds another number of tracks than its file has: then no figure is
// worth anything.
void RunRounds(std::vector<Case>& cases, const RoundCounts& counts);

// A figure of one case over that of another, for the rounds that both took part in.
[[nodiscard]] Series Ratio(const Series& over, const Series& under);

}  // namespace tavrel::bench
