#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "system/ByteBuffer.h"
#include "system/Memory.h"

namespace faults = tavrel::system::faults;
using tavrel::system::ByteBuffer;

TEST(ByteBuffer, NoneHasNoBytes) {
  const ByteBuffer none;
  EXPECT_FALSE(none);
  EXPECT_EQ(none.data(), nullptr);
  EXPECT_EQ(none.size(), 0u);
  EXPECT_TRUE(none.view().empty());
  EXPECT_EQ(none, ByteBuffer());
}

TEST(ByteBuffer, AnEmptyBufferIsNotNone) {
  const ByteBuffer empty = ByteBuffer::Copy("");
  EXPECT_TRUE(empty);
  EXPECT_NE(empty.data(), nullptr);
  EXPECT_EQ(empty.size(), 0u);
  EXPECT_FALSE(empty == ByteBuffer());
}

TEST(ByteBuffer, CopiesTheBytesItIsGiven) {
  std::string bytes("a\0b", 3);
  const ByteBuffer buffer = ByteBuffer::Copy(bytes);
  bytes = "xyz";
  EXPECT_EQ(buffer.view(), std::string_view("a\0b", 3));
}

TEST(ByteBuffer, HandlesShareOneBufferAndAreEqualThen) {
  const ByteBuffer buffer = ByteBuffer::Copy("text");
  const ByteBuffer& alias = buffer;
  const ByteBuffer shared = alias;
  EXPECT_EQ(shared, buffer);
  EXPECT_EQ(shared.data(), buffer.data());
  EXPECT_FALSE(ByteBuffer::Copy("text") == buffer);
}

TEST(ByteBuffer, LivesAsLongAsItsLastHandle) {
  ByteBuffer last;
  {
    ByteBuffer first = ByteBuffer::Copy("text");
    const ByteBuffer second = first;
    last = second;
    first = ByteBuffer();
  }
  EXPECT_EQ(last.view(), "text");
}

TEST(ByteBuffer, MovingLeavesNone) {
  ByteBuffer source = ByteBuffer::Copy("text");
  const ByteBuffer target = std::move(source);
  EXPECT_FALSE(source);  // NOLINT(bugprone-use-after-move): that is the question
  EXPECT_EQ(target.view(), "text");
}

TEST(ByteBuffer, SurvivesBeingAssignedToItself) {
  ByteBuffer buffer = ByteBuffer::Copy("text");
  const ByteBuffer& same = buffer;
  buffer = same;
  EXPECT_EQ(buffer.view(), "text");
}

TEST(ByteBuffer, AdoptsABlockWithoutCopyingIt) {
  for (const std::size_t bytes : {std::size_t{10}, std::size_t{3} << 20}) {
    const auto block = tavrel::system::AllocateBlock(bytes);
    std::memcpy(block.address, "text", 4);
    const ByteBuffer buffer = ByteBuffer::Adopt(block, 4);
    EXPECT_EQ(buffer.data(), block.address);
    EXPECT_EQ(buffer.view(), "text");
  }
}

TEST(ByteBuffer, OfAnEmptyBlockIsNone) {
  EXPECT_FALSE(ByteBuffer::Adopt({}, 0));
}

TEST(ByteBuffer, IsNoneWhenMemoryIsExhausted) {
  for (int successes = 0; successes < 2; ++successes) {
    faults::FailAfter(successes, true);
    EXPECT_FALSE(ByteBuffer::Copy("text"));
    faults::Stop();
  }
  const auto block = tavrel::system::AllocateBlock(100);
  faults::FailAfter(0, true);
  EXPECT_FALSE(ByteBuffer::Adopt(block, 100));  // the block is released all the same
  faults::Stop();
}
