// Cache files that nobody's iTunes wrote: an answer at once, whatever they claim.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include "library/artwork/ArtworkHandle.h"
#include "system/Files.h"
#include "tests/support/ArtworkHome.h"
#include "tests/support/CacheFiles.h"
#include "tests/support/Random.h"
#include "tests/support/RecordSizes.h"
#include "tests/support/Sanitizers.h"

namespace tavrel::test {
namespace {

constexpr ArtworkLayouts kBoth[] = {ArtworkLayouts::Usual, ArtworkLayouts::Every};

// The number of images, after all of them have been asked for; -1 when there is no handle.
int Images(const std::string& path, ArtworkLayouts layouts) {
  const std::size_t open = OpenDescriptors();
  ArtworkHandle* handle = OpenArtworkHandle(path.c_str(), layouts);
  const int count = handle == nullptr ? -1 : GetArtworkCount(handle);
  std::vector<std::uint8_t> buffer(4096);
  for (int i = 0; i < count; ++i) {
    ArtworkInfo info{};
    info.data = buffer.data();
    info.dataSize = static_cast<std::int32_t>(buffer.size());
    GetArtworkInfo(handle, i, &info);
  }
  CloseArtwork(handle);
  EXPECT_EQ(OpenDescriptors(), open);
  return count;
}

class HostileArtwork : public testing::Test {
 protected:
  // The same for both readers, or a failure.
  int Count(std::string_view contents) {
    const std::string path = folder_.Write("a.itc2", contents);
    const int count = Images(path, ArtworkLayouts::Usual);
    EXPECT_EQ(Images(path, ArtworkLayouts::Every), count);
    return count;
  }

  TemporaryFolder folder_;
};

TEST_F(HostileArtwork, BlockLengthBelow8EndsTheWalkBehindTheBlock) {
  for (const std::uint32_t length : {0U, 1U, 7U}) {
    EXPECT_EQ(Count(CacheHeader() + Bytes({.length = length}) + Bytes({})), 1) << length;
  }
}

TEST_F(HostileArtwork, LengthBelow8LeadsNowhereEvenIfABlockIsThere) {
  for (const std::uint32_t length : {4U, 8U}) {
    std::string steps;
    while (steps.size() < 64) steps += Number(length);
    EXPECT_EQ(Count(CacheHeader() + steps + Bytes({})), length < 8 ? 0 : 1) << length;
  }
}

TEST_F(HostileArtwork, BlockLengthOf8StepsOnBy8) {
  // Every eight bytes a block begins; none but the first has its tags.
  std::string file = CacheHeader() + Bytes({.length = 8});
  for (int i = 0; i < 100; ++i) file += Number(8) + "item";
  EXPECT_EQ(Count(file), 1);
}

TEST_F(HostileArtwork, BlockLengthOf207StepsBackByOne) {
  std::string file = CacheHeader() + Bytes({.length = 207});
  file.pop_back();
  EXPECT_EQ(Count(file), 0);
  // The last byte that the first block reads is the first of the second block's length.
  std::string next = Bytes({.image = Filler(4)});
  next[0] = 'a';
  EXPECT_EQ(Count(file + next), 2);
}

TEST_F(HostileArtwork, LengthsFrom2To31OnLeadBackOrOutOfTheFile) {
  for (const std::uint32_t length :
       {0x7FFFFFFFU, 0x80000000U, 0x80000000U + 207, 0x80000000U + 208, 0xFFFFFFFFU}) {
    EXPECT_EQ(Count(CacheHeader() + Bytes({.length = length}) + Bytes({})), 1) << length;
  }
}

TEST_F(HostileArtwork, LengthThatLeadsToTheBlockItselfEndsTheWalk) {
  // As a signed number it leads back to the first block; nothing is recorded twice.
  const std::string first = Bytes({.image = Filler(100)});
  const auto back = static_cast<std::uint32_t>(-static_cast<std::int64_t>(first.size()));
  EXPECT_EQ(Count(CacheHeader() + first + Bytes({.length = back})), 2);
}

TEST_F(HostileArtwork, HeaderLengths) {
  const std::string block = Bytes({.image = Filler(4)});
  EXPECT_EQ(Count(CacheHeader(0) + block), 0);
  EXPECT_EQ(Count(CacheHeader(27).substr(0, 27) + block), 1);
  EXPECT_EQ(Count(CacheHeader(0x80000000) + block), 0);
  EXPECT_EQ(Count(CacheHeader(0xFFFFFFFF) + block), 0);
}

TEST_F(HostileArtwork, TruncatedAtEveryByte) {
  const std::string whole = CacheHeader(40) + Bytes({.image = LikePng(30)}) +
                            Bytes({.image = LikeJpeg(20), .imageStart = 196}) +
                            Bytes({.image = Filler(16), .code = "bGRA", .width = 2, .height = 2});
  const std::string path = folder_.PathOf("a.itc2");
  for (std::size_t bytes = 0; bytes <= whole.size(); ++bytes) {
    folder_.Write("a.itc2", whole.substr(0, bytes));
    const int expected = bytes < 28 ? -1 : bytes < 40 + 208 ? 0 : 1;
    EXPECT_EQ(Images(path, ArtworkLayouts::Usual), expected) << bytes;
    const int second = bytes >= 40 + 238 + 208 ? 1 : 0;
    const int third = bytes >= 40 + 238 + 216 + 208 ? 1 : 0;
    EXPECT_EQ(Images(path, ArtworkLayouts::Every), expected + second + third) << bytes;
  }
}

TEST_F(HostileArtwork, PositionsBeyond32BitsEndTheWalk) {
  const std::string path = folder_.Write("a.itc2", CacheHeader(28));
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_GE(file, 0);
  const auto put = [file](std::int64_t at, const std::string& bytes) {
    return pwrite(file, bytes.data(), bytes.size(), at) == static_cast<ssize_t>(bytes.size());
  };
  // Two blocks of almost 2 GB each lead to the last one that 32 bits reach; its own leads beyond.
  constexpr std::int64_t kLast = 0xFFFFFFFF - 208;
  constexpr std::int64_t kSecond = std::int64_t{28} + 0x7FFFFFF0;
  ASSERT_TRUE(put(28, Bytes({.length = 0x7FFFFFF0})));
  ASSERT_TRUE(put(kSecond, Bytes({.length = static_cast<std::uint32_t>(kLast - kSecond)})));
  ASSERT_TRUE(put(kLast, Bytes({.image = Filler(4), .width = 17, .length = 0x40000000})));
  ASSERT_TRUE(put(kLast + 0x40000000, Bytes({.image = Filler(4)})));
  close(file);
  for (const ArtworkLayouts layouts : kBoth) {
    ArtworkHandle* handle = OpenArtworkHandle(path.c_str(), layouts);
    ASSERT_NE(handle, nullptr);
    ASSERT_EQ(handle->count, 3);
    EXPECT_EQ(handle->images[2]->fileOffset, 0xFFFFFFFFU);
    EXPECT_EQ(handle->images[2]->width, 17);
    CloseArtwork(handle);
  }
}

TEST_F(HostileArtwork, ImageBeyond32BitsIsNotRecorded) {
  const std::string path = folder_.Write("a.itc2", CacheHeader(28));
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_GE(file, 0);
  constexpr std::int64_t kSecond = std::int64_t{28} + 0x7FFFFFF0;
  constexpr std::int64_t kLast = 0xFFFFFFFF - 207;
  const std::string first = Bytes({.length = 0x7FFFFFF0});
  const std::string second = Bytes({.length = static_cast<std::uint32_t>(kLast - kSecond)});
  const std::string last = Bytes({.image = Filler(4)});
  const auto size = [](const std::string& bytes) { return static_cast<ssize_t>(bytes.size()); };
  ASSERT_EQ(pwrite(file, first.data(), first.size(), 28), size(first));
  ASSERT_EQ(pwrite(file, second.data(), second.size(), kSecond), size(second));
  ASSERT_EQ(pwrite(file, last.data(), last.size(), kLast), size(last));
  close(file);
  for (const ArtworkLayouts layouts : kBoth) EXPECT_EQ(Images(path, layouts), 2);
}

TEST_F(HostileArtwork, SumOfSizeAndRecordThatOverflowsIsTaken32BitsWide) {
  const std::string path =
      folder_.Write("a.itc2", CacheHeader() + Bytes({.length = 0x80000000U + 200}));
  ArtworkHandle* handle = OpenArtworkHandle(path.c_str(), ArtworkLayouts::Usual);
  ASSERT_NE(handle, nullptr);
  ASSERT_EQ(handle->count, 1);
  EXPECT_EQ(handle->images[0]->dataSize, 0x7FFFFFF8);
  ArtworkInfo info{};
  EXPECT_EQ(GetArtworkInfo(handle, 0, &info), -0x7FFFFFFF - 1 + tavrel::test::kArtworkInfoSize - 8);
  EXPECT_EQ(info.dataSize, 0x7FFFFFF8);
  CloseArtwork(handle);
}

TEST_F(HostileArtwork, OnlyRegularFilesAreOpened) {
  const std::string fifo = folder_.PathOf("fifo.itc2");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::string folder = folder_.PathOf("folder.itc2");
  ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
  for (const ArtworkLayouts layouts : kBoth) {
    EXPECT_EQ(Images(fifo, layouts), -1);
    EXPECT_EQ(Images(folder, layouts), -1);
    EXPECT_EQ(Images("/dev/zero", layouts), -1);
    EXPECT_EQ(Images(folder_.PathOf("missing.itc2"), layouts), -1);
  }
}

TEST_F(HostileArtwork, WhatIsNotRegularIsClosedUnread) {
  const std::string fifo = folder_.PathOf("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_TRUE(system::OpenRegularFile(folder_.Write("file", "").c_str()));
  for (const std::string& path : {fifo, folder_.path(), std::string("/dev/zero")}) {
    EXPECT_FALSE(system::OpenRegularFile(path.c_str())) << path;
  }
}

TEST_F(HostileArtwork, RandomBlocksEndInAnAnswer) {
  Random random(20260);
  const std::vector<std::string> pieces = {Number(8),   Number(100), Number(208),
                                           Number(212), Number(216), Number(0),
                                           "item",      "data",      "PNGf",
                                           "bGRA",      kJpegCode,   std::string(36, '\0'),
                                           Bytes({}),   LikePng(60), Number(0x7FFFFFFF),
                                           Filler(13),  Number(196), Number(0xFFFFFF00)};
  const std::vector<std::string_view> alphabet(pieces.begin(), pieces.end());
  const std::string path = folder_.PathOf("a.itc2");
  for (int round = 0; round < Rounds(800); ++round) {
    folder_.Write("a.itc2", CacheHeader(28) + random.Text(alphabet, 1 + random.Below(40)));
    EXPECT_GE(Images(path, ArtworkLayouts::Usual), 0);
    EXPECT_GE(Images(path, ArtworkLayouts::Every), Images(path, ArtworkLayouts::Usual));
  }
}

}  // namespace
}  // namespace tavrel::test
