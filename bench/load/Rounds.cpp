#include "bench/load/Rounds.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "bench/report/Turns.h"
#include "bench/support/ChildRun.h"

namespace tavrel::bench {
namespace {

// The same for all loaders, for each byte of the file: above what any of them takes but libxml2,
// which has to pay for some memory that the machine must fetch first.
constexpr std::uint64_t kWarmBytes = 8;

bool IsDone(const Case& work, std::uint32_t rounds) {
  return work.runs.size() >= rounds && work.Seconds().Median() > 1;
}

void RunOnce(Case& work) {
  WarmMemory(work.input->bytes * kWarmBytes);
  work.runs.push_back(RunInChild([&] { return work.loader->load(work.input->path); }));
  const std::int64_t found = work.runs.back().trackCount;
  if (found == work.input->tracks) return;
  throw std::runtime_error(fmt::format("{} found {} tracks in {}, which has {}", work.loader->name,
                                       found, work.input->name, work.input->tracks));
}

Series FirstOf(const Series& series, std::size_t count) {
  const std::vector<double>& values = series.values();
  return std::vector<double>(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count));
}

}  // namespace

Series Case::Values(double LoadFigures::*figure) const {
  Series values;
  for (const LoadFigures& run : runs) values.Add(run.*figure);
  return values;
}

Series Case::ProcessorSeconds() const {
  Series values;
  for (const LoadFigures& run : runs) values.Add(run.userSeconds + run.systemSeconds);
  return values;
}

void RunRounds(std::vector<Case>& cases, const RoundCounts& counts) {
  InTurns(counts.all, cases.size(), [&](std::size_t which) {
    if (!IsDone(cases[which], counts.slow)) RunOnce(cases[which]);
  });
}

Series Ratio(const Series& over, const Series& under) {
  const std::size_t both = std::min(over.size(), under.size());
  return FirstOf(over, both).Over(FirstOf(under, both));
}

}  // namespace tavrel::bench
