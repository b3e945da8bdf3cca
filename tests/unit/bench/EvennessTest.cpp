// How the benchmarks judge whether a byte costs the same in files of every size.
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "bench/report/Evenness.h"

namespace {

using namespace tavrel::bench;

TEST(Evenness, OneLuckyRunMakesNoDifference) {
  // The best run of the first is 1.76 times as fast as the best run of the second.
  const Pair pair = MostUneven({Series({0.5, 1, 1, 1, 1}), Series({0.88, 1, 1, 1, 1})});
  EXPECT_EQ(pair.ratio.Median(), 1);
}

TEST(Evenness, SlowRoundsInWhichAllAreSlowMakeNoDifference) {
  const Pair pair = MostUneven({Series({2, 6, 2, 6, 5}), Series({2, 6, 2, 6, 5})});
  EXPECT_EQ(pair.ratio.values(), (std::vector<double>{1, 1, 1, 1, 1}));
}

TEST(Evenness, ThePairThatDiffersMostIsTheOneThatCounts) {
  const Pair pair = MostUneven({Series({4, 5}), Series({2, 2}), Series({3, 3})});
  EXPECT_EQ(pair.over, 0U);
  EXPECT_EQ(pair.under, 1U);
  EXPECT_EQ(pair.ratio.values(), (std::vector<double>{2, 2.5}));
}

TEST(Evenness, ADifferenceOfMostRoundsIsSeenThroughARoundThatSaysOtherwise) {
  const Pair pair = MostUneven({Series({1, 1, 9}), Series({1.5, 1.5, 1})});
  EXPECT_EQ(pair.over, 1U);
  EXPECT_EQ(pair.ratio.Median(), 1.5);
}

TEST(Evenness, TakesTwoFiles) {
  EXPECT_THROW((void)MostUneven({Series({1, 2})}), std::logic_error);
}

}  // namespace
