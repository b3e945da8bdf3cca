// operator new of this program: inside the library it fails where the library's own allocations
// fail; the test's own allocations never do.
#pragma once

#include <gtest/gtest.h>

#include "system/Memory.h"
#include "tests/fault/AllocationCount.h"
#include "tests/fault/InsideLibrary.h"
#include "tests/support/Sanitizers.h"

namespace tavrel::test {

// Prepares, and runs the steps with the n-th allocation failing, for every n until none is left to
// fail: that one alone, and then all later ones as well. After each run as much memory must be held
// as before it. The steps may end the failing themselves (faults::Stop).
// least: allocations that the steps make at least, so that a test which reaches none is noticed.
template <class Prepare, class Steps>
void WithEachAllocationFailing(std::int64_t least, Prepare prepare, Steps steps) {
  namespace faults = tavrel::system::faults;
  for (const bool once : {true, false}) {
    std::int64_t n = 0;
    // Where steps take many times longer, the first forty fail and then every ninth; elsewhere each.
    for (bool failed = true; failed; n += kSlow && n > 40 ? 9 : 1) {
      const HeldMemory before = Held();
      prepare();
      faults::FailAfter(n, once);
      steps();
      failed = faults::Asked() > n;
      faults::Stop();
      EXPECT_EQ(Held(), before);
      if (testing::Test::HasFailure()) {
        FAIL() << "allocation " << n << (once ? " alone" : " and all after it");
      }
    }
    EXPECT_GT(n, least);
  }
}

template <class Steps>
void WithEachAllocationFailing(std::int64_t least, Steps steps) {
  WithEachAllocationFailing(
      least, [] {}, steps);
}

}  // namespace tavrel::test
