#include "bench/report/Turns.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "bench/support/Random.h"

namespace tavrel::bench {

void InTurns(std::uint32_t rounds, std::size_t count,
             const std::function<void(std::size_t)>& turn) {
  Random random(1);
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  for (std::uint32_t round = 0; round < rounds; ++round) {
    for (std::size_t i = count; i > 1; --i) {
      std::swap(order[i - 1], order[random.Below(static_cast<std::uint32_t>(i))]);
    }
    for (const std::size_t which : order) turn(which);
  }
}

void RunInTurns(std::vector<Step>& steps, std::uint32_t rounds) {
  InTurns(rounds, steps.size(),
          [&](std::size_t which) { steps[which].seconds.Add(steps[which].run()); });
}

void WarmUp(const std::vector<Step>& steps) {
  for (const Step& step : steps) (void)step.run();
}

const Step* StepNamed(const std::vector<Step>& steps, std::string_view name) {
  const auto found =
      std::find_if(steps.begin(), steps.end(), [=](const Step& step) { return step.name == name; });
  return found == steps.end() ? nullptr : &*found;
}

}  // namespace tavrel::bench
