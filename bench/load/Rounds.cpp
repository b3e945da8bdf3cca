#include "bench/load/Rounds.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "bench/support/ChildRun.h"
#include "bench/support/Random.h"

namespace tavrel::bench {
namespace {

// The same for all programs, for each byte of the file: above what any of them takes but libxml2,
// which has to pay for some memory that the machine must fetch first.
constexpr std::uint64_t kWarmBytes = 8;

void Shuffle(std::vector<std::size_t>& order, Random& random) {
  for (std::size_t i = order.size(); i > 1; --i) {
    std::swap(order[i - 1], order[random.Below(static_cast<std::uint32_t>(i))]);
  }
}

bool IsDone(const Case& work, std::uint32_t rounds) {
  return work.runs.size() >= rounds && work.Seconds().Median() > 1;
}

void RunOnce(Case& work) {
  WarmMemory(work.input->bytes * kWarmBytes);
  work.runs.push_back(RunInChild([&] { return work.program->load(work.input->path); }));
  const std::int64_t found = work.runs.back().trackCount;
  if (found == work.input->tracks) return;
  throw std::runtime_error(fmt::format("{} found {} tracks in {}, which has {}", work.program->name,
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
  Random random(1);
  std::vector<std::size_t> order(cases.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  for (std::uint32_t round = 0; round < counts.all; ++round) {
    Shuffle(order, random);
    for (const std::size_t which : order) {
      if (!IsDone(cases[which], counts.slow)) RunOnce(cases[which]);
    }
  }
}

Series Ratio(const Series& over, const Series& under) {
  const std::size_t both = std::min(over.size(), under.size());
  return FirstOf(over, both).Over(FirstOf(under, both));
}

}  // namespace tavrel::bench
