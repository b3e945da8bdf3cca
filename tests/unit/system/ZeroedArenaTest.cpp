#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "system/Memory.h"
#include "system/ZeroedArena.h"

namespace faults = tavrel::system::faults;
using tavrel::system::ZeroedArena;

namespace {

bool IsZero(const void* piece, std::size_t bytes) {
  const char* at = static_cast<const char*>(piece);
  return bytes == 0 || (*at == 0 && std::memcmp(at, at + 1, bytes - 1) == 0);
}

}  // namespace

TEST(ZeroedArena, HandsOutAlignedZeroBytesThatDoNotOverlap) {
  ZeroedArena arena;
  std::vector<std::pair<char*, std::size_t>> pieces;
  for (std::size_t i = 1; i < 4000; ++i) {
    const std::size_t bytes = i * 7919 % 3000 + 1;
    auto* piece = static_cast<char*>(arena.Take(bytes));
    ASSERT_NE(piece, nullptr);
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(piece) % alignof(std::uint64_t), 0u);
    ASSERT_TRUE(IsZero(piece, bytes));
    std::memset(piece, static_cast<int>(i % 255 + 1), bytes);
    pieces.emplace_back(piece, bytes);
  }
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const auto [piece, bytes] = pieces[i];
    const char mark = static_cast<char>((i + 1) % 255 + 1);
    ASSERT_TRUE(std::all_of(piece, piece + bytes, [mark](char byte) { return byte == mark; })) << i;
  }
  arena.ReleaseAll();
}

TEST(ZeroedArena, TakesAPieceLargerThanItsBlocks) {
  ZeroedArena arena;
  constexpr std::size_t kLarge = std::size_t{200} << 20;
  auto* small = static_cast<char*>(arena.Take(10));
  auto* large = static_cast<char*>(arena.Take(kLarge));
  ASSERT_NE(large, nullptr);
  large[0] = large[kLarge - 1] = 1;
  auto* behind = static_cast<char*>(arena.Take(10));
  ASSERT_NE(behind, nullptr);
  EXPECT_TRUE(IsZero(small, 10));
  EXPECT_TRUE(IsZero(behind, 10));
  arena.ReleaseAll();
}

TEST(ZeroedArena, WhatWasReservedIsTakenFromOneBlock) {
  constexpr std::size_t kPieces = 100000;
  constexpr std::size_t kBytes = 120;
  ZeroedArena arena;
  faults::FailAfter(1000000, false);
  arena.Reserve(kPieces * kBytes);
  EXPECT_EQ(faults::Asked(), 1);
  auto* first = static_cast<char*>(arena.Take(kBytes));
  char* last = first;
  for (std::size_t i = 1; i < kPieces; ++i) last = static_cast<char*>(arena.Take(kBytes));
  EXPECT_EQ(last, first + (kPieces - 1) * kBytes);
  arena.Reserve(0);
  EXPECT_EQ(faults::Asked(), 1);
  EXPECT_NE(arena.Take(kBytes), nullptr);
  EXPECT_EQ(faults::Asked(), 2);
  faults::Stop();
  arena.ReleaseAll();
}

TEST(ZeroedArena, AFailedReservationChangesNothing) {
  ZeroedArena arena;
  faults::FailAfter(0, true);
  arena.Reserve(1000000);
  faults::Stop();
  EXPECT_NE(arena.Take(100), nullptr);
  arena.ReleaseAll();
}

TEST(ZeroedArena, AsksForFewBlocksHoweverManyPiecesItHandsOut) {
  ZeroedArena arena;
  faults::FailAfter(1000000, false);
  for (int i = 0; i < 100000; ++i) ASSERT_NE(arena.Take(64), nullptr);
  EXPECT_LT(faults::Asked(), 10);
  faults::Stop();
  arena.ReleaseAll();
}

TEST(ZeroedArena, IsUnharmedByAFailedAllocation) {
  ZeroedArena arena;
  auto* first = static_cast<char*>(arena.Take(100));
  ASSERT_NE(first, nullptr);
  std::memset(first, 1, 100);
  faults::FailAfter(0, true);
  EXPECT_EQ(arena.Take(1 << 20), nullptr);
  faults::Stop();
  EXPECT_EQ(first[99], 1);
  void* second = arena.Take(100);
  ASSERT_NE(second, nullptr);
  EXPECT_TRUE(IsZero(second, 100));
  arena.ReleaseAll();
}

TEST(ZeroedArena, HandsOutWhatASmallBlockHoldsWhereALargeOneFindsNoMemory) {
  ZeroedArena arena;
  for (int i = 0; i < 100; ++i) ASSERT_NE(arena.Take(std::size_t{64} << 10), nullptr);
  std::size_t pieces = 0;
  for (; pieces < 200000; ++pieces) {
    faults::FailAfter(0, true);  // the larger block of each growth
    void* piece = arena.Take(1000);
    faults::Stop();
    if (piece == nullptr) break;
    ASSERT_TRUE(IsZero(piece, 1000));
  }
  EXPECT_EQ(pieces, 200000u);
  arena.ReleaseAll();
}

TEST(ZeroedArena, ALargeReservationLeadsToNoLargeBlockBehindIt) {
  ZeroedArena arena;
  constexpr std::size_t kReserved = std::size_t{20} << 20;
  constexpr std::size_t kSmall = std::size_t{64} << 10;
  arena.Reserve(kReserved);
  ASSERT_NE(arena.Take(kReserved), nullptr);
  auto* behind = static_cast<char*>(arena.Take(40));
  ASSERT_NE(behind, nullptr);
  EXPECT_TRUE(arena.Holds(behind + 39));
  EXPECT_FALSE(arena.Holds(behind + kSmall));
  arena.ReleaseAll();
}

TEST(ZeroedArena, IsEmptyAndUsableAfterItsRelease) {
  ZeroedArena arena;
  arena.ReleaseAll();
  std::memset(arena.Take(1000), 1, 1000);
  arena.ReleaseAll();
  void* piece = arena.Take(1000);
  ASSERT_NE(piece, nullptr);
  EXPECT_TRUE(IsZero(piece, 1000));
  arena.ReleaseAll();
}

TEST(ZeroedArena, HoldsItsPiecesAndNothingElse) {
  ZeroedArena arena;
  char outside = 0;
  EXPECT_FALSE(arena.Holds(&outside));
  std::vector<std::pair<char*, std::size_t>> pieces;
  for (std::size_t bytes = 1; bytes < (std::size_t{4} << 20); bytes = bytes * 3 / 2 + 1) {
    pieces.emplace_back(static_cast<char*>(arena.Take(bytes)), bytes);
    ASSERT_NE(pieces.back().first, nullptr);
  }
  for (const auto& [piece, bytes] : pieces) {
    EXPECT_TRUE(arena.Holds(piece));
    EXPECT_TRUE(arena.Holds(piece + bytes - 1));
  }
  EXPECT_FALSE(arena.Holds(&outside));
  EXPECT_FALSE(arena.Holds(nullptr));
  const std::vector<char> other(std::size_t{8} << 20);
  EXPECT_FALSE(arena.Holds(other.data()));
  EXPECT_FALSE(arena.Holds(other.data() + other.size() - 1));
  arena.ReleaseAll();
  EXPECT_FALSE(arena.Holds(pieces[0].first));
}

TEST(ZeroedArena, IsAPlainRecordThatIsEmptyWhenAllZero) {
  static_assert(std::is_trivially_copyable_v<ZeroedArena>);
  ZeroedArena arena;
  EXPECT_TRUE(IsZero(&arena, sizeof arena));
}
