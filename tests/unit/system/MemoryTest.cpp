#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "system/HugePages.h"
#include "system/Memory.h"

namespace faults = tavrel::system::faults;
using namespace tavrel::system;

namespace {

constexpr std::size_t kSmallRequest = 1000;
constexpr std::size_t kLargeRequest = std::size_t{5} << 20;

bool IsZero(const char* at, std::size_t bytes) {
  return std::all_of(at, at + bytes, [](char byte) { return byte == 0; });
}

}  // namespace

TEST(Memory, BlocksOfAnySizeAreZeroFilledAndWritable) {
  const std::size_t megabyte = std::size_t{1} << 20;
  for (const std::size_t bytes : {std::size_t{1}, kSmallRequest, megabyte - 1, megabyte,
                                  megabyte + 1, 2 * megabyte, kLargeRequest, kLargeRequest + 1}) {
    ZeroedBlock block = AllocateBlock(bytes);
    ASSERT_NE(block.address, nullptr) << bytes;
    EXPECT_TRUE(IsZero(block.address, bytes)) << bytes;
    std::memset(block.address, 1, bytes);
    ReleaseBlock(block);
  }
}

TEST(Memory, ReleasingABlockLeavesItEmptyAndAnEmptyOneIsAllowed) {
  for (const std::size_t bytes : {kSmallRequest, kLargeRequest}) {
    ZeroedBlock block = AllocateBlock(bytes);
    ReleaseBlock(block);
    EXPECT_EQ(block.address, nullptr);
    EXPECT_EQ(block.mappedBytes, 0u);
    ReleaseBlock(block);
  }
}

TEST(Memory, ATrimmedBlockKeepsItsFirstBytes) {
  for (const std::size_t bytes : {kSmallRequest, kLargeRequest}) {
    for (const std::size_t kept : {std::size_t{0}, std::size_t{1}, bytes / 2, bytes - 1, bytes}) {
      ZeroedBlock block = AllocateBlock(bytes);
      ASSERT_NE(block.address, nullptr);
      std::memset(block.address, 7, kept);
      TrimBlock(block, kept);
      ASSERT_NE(block.address, nullptr);
      EXPECT_TRUE(std::all_of(block.address, block.address + kept, [](char b) { return b == 7; }));
      ReleaseBlock(block);
    }
  }
}

TEST(Memory, TrimmingALargeBlockGivesItsPagesBack) {
  ZeroedBlock block = AllocateBlock(kLargeRequest);
  ASSERT_GE(block.mappedBytes, kLargeRequest);
  TrimBlock(block, 10);
  EXPECT_LE(block.mappedBytes, std::size_t{64} << 10);
  ReleaseBlock(block);
}

TEST(MemoryFaults, TrimmingAsksAndLeavesTheBlockAsItIsWhenItFails) {
  ZeroedBlock block = AllocateBlock(kSmallRequest);
  ASSERT_NE(block.address, nullptr);
  std::memset(block.address, 7, kSmallRequest);
  faults::FailAfter(0, false);
  TrimBlock(block, 10);
  faults::Stop();
  EXPECT_EQ(faults::Asked(), 1);
  EXPECT_TRUE(
      std::all_of(block.address, block.address + kSmallRequest, [](char b) { return b == 7; }));
  ReleaseBlock(block);
}

TEST(Memory, MoreThanThereCanBeIsRefused) {
  const std::size_t tooMuch = std::numeric_limits<std::size_t>::max() / 8 * 7;
  EXPECT_EQ(AllocateBlock(tooMuch).address, nullptr);
}

TEST(MemoryFaults, AllAllocationsFailAfterTheAllowedOnes) {
  faults::FailAfter(2, false);
  void* first = Allocate(10);
  void* second = AllocateZeroed(10);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(second, nullptr);
  EXPECT_EQ(Allocate(10), nullptr);
  EXPECT_EQ(AllocateZeroed(10), nullptr);
  EXPECT_EQ(Reallocate(nullptr, 10), nullptr);
  EXPECT_EQ(AllocateBlock(kSmallRequest).address, nullptr);
  EXPECT_EQ(AllocateBlock(kLargeRequest).address, nullptr);
  EXPECT_FALSE(AllocationAllowed());
  EXPECT_EQ(faults::Asked(), 8);
  faults::Stop();
  EXPECT_TRUE(AllocationAllowed());
  Release(first);
  Release(second);
}

TEST(MemoryFaults, OneAllocationFailsWhenOnlyOneIsMeantTo) {
  faults::FailAfter(1, true);
  EXPECT_TRUE(AllocationAllowed());
  EXPECT_FALSE(AllocationAllowed());
  EXPECT_TRUE(AllocationAllowed());
  EXPECT_TRUE(AllocationAllowed());
  faults::Stop();
}

TEST(MemoryFaults, AFailedReallocationLeavesTheBlockAsItWas) {
  auto* block = static_cast<char*>(Allocate(10));
  std::memcpy(block, "123456789", 10);
  faults::FailAfter(0, true);
  EXPECT_EQ(Reallocate(block, 1000000), nullptr);
  faults::Stop();
  EXPECT_STREQ(block, "123456789");
  Release(block);
}

TEST(Memory, AWishForHugePagesChangesNoByte) {
  constexpr std::size_t kSize = std::size_t{16} << 20;
  tavrel::system::ZeroedBlock block = tavrel::system::AllocateBlock(kSize);
  ASSERT_NE(block.address, nullptr);
  block.address[1] = 'a';
  block.address[kSize - 1] = 'z';
  tavrel::system::PreferHugePages(block.address + 1, kSize - 1);
  EXPECT_EQ(block.address[1], 'a');
  EXPECT_EQ(block.address[2], '\0');
  EXPECT_EQ(block.address[kSize - 1], 'z');
  tavrel::system::ReleaseBlock(block);
}
