#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "host/output/Format.h"

namespace tavrel::host {
namespace {

TEST(Format, NumbersAreGroupedByThousands) {
  EXPECT_EQ(Grouped(0), "0");
  EXPECT_EQ(Grouped(999), "999");
  EXPECT_EQ(Grouped(1000), "1,000");
  EXPECT_EQ(Grouped(1234567), "1,234,567");
  EXPECT_EQ(Grouped(-999), "-999");
  EXPECT_EQ(Grouped(-1000), "-1,000");
  EXPECT_EQ(Grouped(std::numeric_limits<std::int64_t>::min()), "-9,223,372,036,854,775,808");
}

TEST(Format, OneIsSingular) {
  EXPECT_EQ(Counted(0, "song"), "0 songs");
  EXPECT_EQ(Counted(1, "song"), "1 song");
  EXPECT_EQ(Counted(2000, "song"), "2,000 songs");
}

TEST(Format, ClockRoundsToSeconds) {
  EXPECT_EQ(Clock(1), "0:00");
  EXPECT_EQ(Clock(59499), "0:59");
  EXPECT_EQ(Clock(59500), "1:00");
  EXPECT_EQ(Clock(245000), "4:05");
  EXPECT_EQ(Clock(3599999), "1:00:00");
  EXPECT_EQ(Clock(INT64_MAX), "2562047788015:12:56");
  EXPECT_EQ(Clock(3723000), "1:02:03");
  EXPECT_EQ(Clock(std::int64_t{100} * 3600 * 1000), "100:00:00");
}

TEST(Format, ThereIsNoClockWithoutATime) {
  EXPECT_EQ(Clock(0), "");
  EXPECT_EQ(Clock(-245000), "");
}

TEST(Format, SpanUsesTheTwoLargestUnits) {
  EXPECT_EQ(Span(0), "0 seconds");
  EXPECT_EQ(Span(59999), "59 seconds");
  EXPECT_EQ(Span(60000), "1 minute");
  EXPECT_EQ(Span(3599999), "59 minutes");
  EXPECT_EQ(Span(3600000), "1 hour");
  EXPECT_EQ(Span(3660000), "1 hour 1 minute");
  EXPECT_EQ(Span(std::int64_t{8905} * 3600000 + 59 * 60000), "8,905 hours 59 minutes");
}

TEST(SizeText, HasTwoOrThreeDigits) {
  EXPECT_EQ(SizeText(0), "0 bytes");
  EXPECT_EQ(SizeText(1), "1 byte");
  EXPECT_EQ(SizeText(999), "999 bytes");
  EXPECT_EQ(SizeText(1000), "1.0 kB");
  EXPECT_EQ(SizeText(9940), "9.9 kB");
  EXPECT_EQ(SizeText(9960), "10 kB");
  EXPECT_EQ(SizeText(999'499), "999 kB");
  EXPECT_EQ(SizeText(999'500), "1.0 MB");
  EXPECT_EQ(SizeText(345'678'901), "346 MB");
  EXPECT_EQ(SizeText(18'446'744'073'709'551'615u), "18 EB");
}

}  // namespace
}  // namespace tavrel::host
