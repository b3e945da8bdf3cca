// The counters count: an alarm that never rang is not to be trusted.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/unit/xml/TreeText.h"
#include "tests/work/WorkCount.h"

namespace tavrel::test {
namespace {

TEST(WorkCounter, GrowsWithTheStepsOfTheLibrary) {
  const std::string few = "<a><b/></a>";
  const std::string many = "<a><b/><b/><b/><b/></a>";
  const WorkCount work = WorkOf([&] { static_cast<void>(Parse(few)); });
  EXPECT_GT(work.steps, 10u);
  EXPECT_GT(WorkOf([&] { static_cast<void>(Parse(many)); }).steps, work.steps);
}

TEST(WorkCounter, GrowsWithTheBytesThatTheCLibraryGoesOver) {
  const std::string text = "<a>" + std::string(100000, 'x') + "</a>";
  EXPECT_GT(WorkOf([&] { static_cast<void>(Parse(text)); }).bytes, 100000u);
}

TEST(WorkCounter, IsTheSameEachTime) {
  const std::string text = "<a><b c='d'>e</b></a>";
  static_cast<void>(Parse(text));
  const WorkCount first = WorkOf([&] { static_cast<void>(Parse(text)); });
  EXPECT_EQ(WorkOf([&] { static_cast<void>(Parse(text)); }), first);
}

TEST(WorkCounter, AQuadraticCostIsNoLinearOne) {
  EXPECT_NONFATAL_FAILURE(ExpectLinear({1000, 0}, {64000, 0}, 8, 100), "steps");
  EXPECT_NONFATAL_FAILURE(ExpectLinear({0, 100000}, {0, 6400000}, 8, 100), "bytes");
  ExpectLinear({1000, 100000}, {8000, 800000}, 8, 100);
}

TEST(WorkCounter, WorkThatGrowsFasterThanTheInputHasNotDoubled) {
  EXPECT_NONFATAL_FAILURE(ExpectDoubled({1000, 1000}, {2200, 2000}, "a thing"), "a thing: steps");
  EXPECT_NONFATAL_FAILURE(ExpectDoubled({1000, 1000}, {2000, 2200}, "a thing"), "a thing: bytes");
  ExpectDoubled({1000, 1000}, {2100, 2000}, "a thing");
}

}  // namespace
}  // namespace tavrel::test
