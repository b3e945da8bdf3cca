#include <gtest/gtest.h>

#include <new>

#include "system/Guard.h"

using tavrel::system::Guarded;

TEST(Guard, PassesTheResultOn) {
  EXPECT_EQ(Guarded(-1, [] { return 7; }), 7);
}

TEST(Guard, TurnsWhateverIsThrownIntoTheOtherResult) {
  EXPECT_EQ(Guarded(-1, []() -> int { throw std::bad_alloc(); }), -1);
  EXPECT_EQ(Guarded(-1, []() -> int { throw 7; }), -1);
}
