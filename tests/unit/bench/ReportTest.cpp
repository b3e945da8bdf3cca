// What the benchmarks conclude from their figures.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/report/Report.h"
#include "tests/support/Json.h"

namespace {

using namespace tavrel::bench;

Target AtLeastTwo(const Series& ratio) {
  return {1, "a target", ratio, Bound::kAtLeast, 2, 3};
}

Target AtMostTwo(const Series& ratio) {
  return {1, "a target", ratio, Bound::kAtMost, 2, 1};
}

TEST(Series, TheMedianOfAnEvenNumberStandsBetweenTheMiddleTwo) {
  const Series series({4, 1, 3, 2});
  EXPECT_EQ(series.Least(), 1);
  EXPECT_EQ(series.Median(), 2.5);
  EXPECT_EQ(series.Most(), 4);
  EXPECT_EQ(Series(7.0).Median(), 7);
}

TEST(Series, RatiosAreThoseOfTheRounds) {
  const Series ratios = Series({6, 8}).Over(Series({2, 4}));
  EXPECT_EQ(ratios.values(), (std::vector<double>{3, 2}));
  EXPECT_THROW((void)Series({1, 2}).Over(Series(1.0)), std::logic_error);
  EXPECT_THROW((void)Series().Median(), std::logic_error);
}

TEST(Target, PassesWhenTheMiddleHalfOfTheRoundsDoes) {
  EXPECT_EQ(AtLeastTwo(Series({1, 2, 2, 2, 2})).Judge(), Verdict::kPass);
  EXPECT_EQ(AtMostTwo(Series({3, 2, 2, 2, 2})).Judge(), Verdict::kPass);
}

TEST(Target, FailsWhenTheMiddleHalfOfTheRoundsMissesTheMark) {
  EXPECT_EQ(AtLeastTwo(Series({1, 1, 1, 1.9, 5})).Judge(), Verdict::kFail);
  EXPECT_EQ(AtMostTwo(Series({3, 3, 3, 2.1, 1})).Judge(), Verdict::kFail);
}

TEST(Target, IsNoisyWhenTheMiddleHalfStandsOnBothSides) {
  EXPECT_EQ(AtLeastTwo(Series({1, 1, 2, 2, 2})).Judge(), Verdict::kNoisy);
  EXPECT_EQ(AtMostTwo(Series({3, 3, 2, 2, 2})).Judge(), Verdict::kNoisy);
}

TEST(Target, TheMoonshotIsForTheMedian) {
  EXPECT_TRUE(AtLeastTwo(Series({1, 3, 4})).IsMoonshot());
  EXPECT_FALSE(AtLeastTwo(Series({1, 2.9, 4})).IsMoonshot());
  EXPECT_TRUE(AtMostTwo(Series({1, 1, 4})).IsMoonshot());
  EXPECT_FALSE(AtMostTwo(Series({1, 1.1, 4})).IsMoonshot());
}

TEST(Report, AFileHoldsEverything) {
  std::string path = testing::TempDir() + "report-XXXXXX";
  const int file = mkstemp(path.data());
  ASSERT_GE(file, 0);
  close(file);
  Report report("a program");
  report.Fact("input", "a file");
  report.Section("a table");
  report.Seconds("a time", Series({0.002, 0.004}));
  report.Add(AtLeastTwo(Series({2, 4})));
  report.Finish(path);

  std::ifstream stream(path);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const auto json = tavrel::test::Json::Parse(text);
  EXPECT_EQ(json["program"], "a program");
  EXPECT_EQ(json["facts"]["input"], "a file");
  EXPECT_EQ(json["sections"][0]["figures"][0]["unit"], "ms");
  EXPECT_EQ(json["sections"][0]["figures"][0]["values"], tavrel::test::Json::Parse("[2.0,4.0]"));
  EXPECT_EQ(json["targets"][0]["median"], 3);
  EXPECT_EQ(json["targets"][0]["verdict"], "PASS");
  EXPECT_EQ(json["targets"][0]["isMoonshot"], true);
  EXPECT_EQ(std::remove(path.c_str()), 0);
}

TEST(Report, AFileThatCannotBeWrittenIsAnError) {
  const Report report("a program");
  EXPECT_THROW(report.Finish(testing::TempDir() + "no such folder/report"), std::runtime_error);
}

}  // namespace
