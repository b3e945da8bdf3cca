// The rounds in which everything that is measured takes its turn.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "bench/report/Turns.h"

namespace {

using namespace tavrel::bench;

std::vector<std::size_t> OrderOf(std::uint32_t rounds, std::size_t count) {
  std::vector<std::size_t> order;
  InTurns(rounds, count, [&](std::size_t which) { order.push_back(which); });
  return order;
}

TEST(Turns, EveryoneHasOneTurnARound) {
  const std::vector<std::size_t> order = OrderOf(20, 3);
  ASSERT_EQ(order.size(), 60U);
  for (auto round = order.begin(); round != order.end(); round += 3) {
    std::vector<std::size_t> sorted(round, round + 3);
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, (std::vector<std::size_t>{0, 1, 2}));
  }
}

TEST(Turns, EveryoneIsFirstInSomeRounds) {
  const std::vector<std::size_t> order = OrderOf(60, 3);
  std::vector<int> first(3);
  for (std::size_t at = 0; at < order.size(); at += 3) ++first[order[at]];
  for (const int rounds : first) EXPECT_GE(rounds, 10);
}

TEST(Turns, TheOrderIsTheSameInEveryRun) {
  EXPECT_EQ(OrderOf(9, 5), OrderOf(9, 5));
}

TEST(Turns, AStepHasOneTimeForEachRound) {
  double time = 0;
  std::vector<Step> steps = {{"one", [&] { return time += 1; }}, {"other", [&] { return -time; }}};
  WarmUp(steps);
  RunInTurns(steps, 4);
  EXPECT_EQ(steps[0].seconds.values(), (std::vector<double>{2, 3, 4, 5}));
  EXPECT_EQ(steps[1].seconds.size(), 4U);
}

TEST(Turns, AStepIsFoundByItsName) {
  const std::vector<Step> steps = {{"one", nullptr}, {"other", nullptr}};
  EXPECT_EQ(StepNamed(steps, "other"), &steps[1]);
  EXPECT_EQ(StepNamed(steps, "none"), nullptr);
}

}  // namespace
