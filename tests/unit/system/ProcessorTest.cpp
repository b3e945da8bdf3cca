#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/InstructionSets.h"

using tavrel::system::InstructionSet;
using tavrel::system::IsSupported;
using tavrel::system::kInstructionSets;
using tavrel::test::SupportedAmong;

TEST(Processor, HasEverySetUpToItsWidest) {
  const auto sets = SupportedAmong({kInstructionSets.begin(), kInstructionSets.end()});
  ASSERT_GE(sets.size(), 2u);
  EXPECT_EQ(sets.front(), InstructionSet::kPlain);
  EXPECT_EQ(sets[1], InstructionSet::kBaseline);
  EXPECT_EQ(sets.back(), tavrel::system::WidestSet());
  EXPECT_TRUE(std::is_sorted(sets.begin(), sets.end()));
}

TEST(Processor, SaysTheSameAtEveryCall) {
  EXPECT_EQ(tavrel::system::WidestSet(), tavrel::system::WidestSet());
}

#if defined(__x86_64__)
// A set counts only together with those before it.
TEST(Processor, IsAskedRight) {
  const bool carryless = __builtin_cpu_supports("pclmul") != 0;
  const bool avx2 = carryless && __builtin_cpu_supports("avx2") != 0;
  const bool avx512 = avx2 && __builtin_cpu_supports("avx512f") != 0 &&
                      __builtin_cpu_supports("avx512bw") != 0 &&
                      __builtin_cpu_supports("avx512vbmi2") != 0;
  EXPECT_EQ(IsSupported(InstructionSet::kCarryless), carryless);
  EXPECT_EQ(IsSupported(InstructionSet::kAvx2), avx2);
  EXPECT_EQ(IsSupported(InstructionSet::kAvx512), avx512);
}
#endif
