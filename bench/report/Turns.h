// Rounds in which everything that is measured takes its turn: a machine has fast and slow moments, so
// only what ran close together can be compared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/report/Series.h"

namespace tavrel::bench {

// Calls `turn` with every number below `count` once a round, in an order that changes from round to
// round and is the same in every run.
void InTurns(std::uint32_t rounds, std::size_t count, const std::function<void(std::size_t)>& turn);

// One of several pieces of work whose times are compared.
struct Step {
  std::string name;
  std::function<double()> run;  // does the work once; the result is its time in seconds
  Series seconds{};             // one value for each round
};

void RunInTurns(std::vector<Step>& steps, std::uint32_t rounds);

// Runs each once and forgets its time: caches are filled then, and memory is resident.
void WarmUp(const std::vector<Step>& steps);

// Null when none has that name.
[[nodiscard]] const Step* StepNamed(const std::vector<Step>& steps, std::string_view name);

}  // namespace tavrel::bench
