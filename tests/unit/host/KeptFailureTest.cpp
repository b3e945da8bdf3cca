// What visitors of the library throw waits until the walk is over.
#include <gtest/gtest.h>

#include <new>

#include "host/library/KeptFailure.h"

namespace tavrel::host {
namespace {

TEST(KeptFailure, EndsTheWalkAndIsThrownBehindIt) {
  KeptFailure failure;
  EXPECT_EQ(failure.Keep([] { return 1; }), 1);
  EXPECT_NO_THROW(failure.Throw());
  EXPECT_EQ(failure.Keep([]() -> int { throw std::bad_alloc(); }), 0);
  EXPECT_THROW(failure.Throw(), std::bad_alloc);
}

}  // namespace
}  // namespace tavrel::host
