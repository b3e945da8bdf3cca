// Must fail: its test is skipped for something that is missing.
#include <gtest/gtest.h>

TEST(Skip, ForAMissingFile) {
  GTEST_SKIP() << "a file is missing";
}
