#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "system/Memory.h"
#include "system/ReleasePool.h"

namespace faults = tavrel::system::faults;
using tavrel::system::Allocate;
using tavrel::system::ReleasePool;

// That blocks are released at all is what the leak check of the sanitizer build sees.

TEST(ReleasePool, KeepsBlocksUntilItIsDrained) {
  ReleasePool pool;
  auto* first = static_cast<char*>(Allocate(100));
  auto* second = static_cast<char*>(Allocate(100));
  std::memset(first, 'a', 100);
  std::memset(second, 'b', 100);
  pool.Adopt(first);
  pool.Adopt(second);
  EXPECT_EQ(first[99], 'a');
  EXPECT_EQ(second[0], 'b');
  pool.Drain();
}

TEST(ReleasePool, CanBeUsedAgainAfterItWasDrained) {
  ReleasePool pool;
  pool.Drain();
  pool.Adopt(Allocate(10));
  pool.Drain();
  pool.Drain();
  pool.Adopt(Allocate(10));
  pool.Drain();
}

TEST(ReleasePool, AdoptsNothingWithoutAllocating) {
  ReleasePool pool;
  faults::FailAfter(0, false);
  pool.Adopt(nullptr);
  EXPECT_EQ(faults::Asked(), 0);
  faults::Stop();
  pool.Drain();
}

TEST(ReleasePool, ReleasesABlockAtOnceThatItHasNoMemoryToRemember) {
  ReleasePool pool;
  void* block = Allocate(100);
  faults::FailAfter(0, false);
  pool.Adopt(block);
  faults::Stop();
  pool.Drain();
}

TEST(ReleasePool, IsAPlainRecordThatIsEmptyWhenAllZero) {
  static_assert(std::is_trivially_copyable_v<ReleasePool>);
  alignas(ReleasePool) char place[sizeof(ReleasePool)];
  const ReleasePool empty;
  std::memset(place, 0, sizeof place);
  EXPECT_EQ(std::memcmp(place, &empty, sizeof place), 0);
}
