// The reader behind OpenArtwork: the usual layout alone.
#include <fcntl.h>
#include <unistd.h>

#include <cstring>

#include "library/artwork/ArtworkHandle.h"
#include "tests/support/CacheFiles.h"
#include "tests/support/RecordSizes.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::test {
namespace {

class ArtworkReader : public testing::Test {
 protected:
  ~ArtworkReader() override { CloseArtwork(handle_); }

  ArtworkHandle* Open(std::string_view contents) {
    CloseArtwork(handle_);
    const std::string path = folder_.Write("a.itc2", contents);
    handle_ = OpenArtworkHandle(path.c_str(), ArtworkLayouts::Usual);
    return handle_;
  }
  const ArtworkImage& Image(int index) const { return *handle_->images[index]; }

  TemporaryFolder folder_;
  ArtworkHandle* handle_ = nullptr;
};

TEST_F(ArtworkReader, OneBlockIsOneImage) {
  ASSERT_NE(Open(CacheHeader(284) + Bytes({.image = Filler(1000)})), nullptr);
  ASSERT_EQ(handle_->count, 1);
  EXPECT_EQ(handle_->capacity, 32);
  EXPECT_EQ(Image(0).format, 0);
  EXPECT_EQ(Image(0).width, 600);
  EXPECT_EQ(Image(0).height, 600);
  EXPECT_EQ(Image(0).data, nullptr);
  EXPECT_EQ(Image(0).dataSize, 1000);
  EXPECT_EQ(Image(0).fileOffset, 284U + 208U);
}

// As a host sees a handle's list that knows nothing but the order of the fields.
TEST_F(ArtworkReader, AnImagesOffsetFollowsItsSizeAtOnce) {
  ASSERT_NE(Open(CacheHeader(284) + Bytes({.image = Filler(1000)})), nullptr);
  struct Flat {
    std::int32_t format;
    std::int32_t width;
    std::int32_t height;
    std::uint8_t* data;
    std::int32_t dataSize;
    std::uint32_t fileOffset;
  };
  ASSERT_EQ(sizeof(ArtworkImage), sizeof(Flat));
  Flat flat = {};
  std::memcpy(&flat, handle_->images[0], sizeof flat);
  EXPECT_EQ(flat.dataSize, 1000);
  EXPECT_EQ(flat.fileOffset, 284U + 208U);
}

TEST_F(ArtworkReader, HeaderIsKeptWithItsLengthConverted) {
  ASSERT_NE(Open(CacheHeader(284)), nullptr);
  EXPECT_EQ(handle_->header.length, 284U);
  EXPECT_EQ(std::memcmp(handle_->header.tag, "itch", 4), 0);
  for (std::size_t i = 0; i < 20; ++i) EXPECT_EQ(handle_->header.rest[i], i + 8);
}

TEST_F(ArtworkReader, FileWithoutABlockIsAHandleWithoutImages) {
  ASSERT_NE(Open(CacheHeader(28)), nullptr);
  EXPECT_EQ(handle_->images, nullptr);
  EXPECT_EQ(handle_->capacity, 0);
  EXPECT_EQ(GetArtworkCount(handle_), 0);
  ArtworkInfo info{};
  EXPECT_EQ(GetArtworkInfo(handle_, 0, &info), 0);
}

TEST_F(ArtworkReader, ShortHeaderOrWrongTagIsNoCacheFile) {
  EXPECT_EQ(Open(""), nullptr);
  EXPECT_EQ(Open(CacheHeader(28).substr(0, 27)), nullptr);
  for (const char* tag : {"Itch", "ITCH", "itc2", "item"}) {
    EXPECT_EQ(Open(CacheHeader(284, tag) + Bytes({.image = Filler(9)})), nullptr) << tag;
  }
}

TEST_F(ArtworkReader, JpegCodeHasItsLeastSignificantByteFirst) {
  Open(CacheHeader() + Bytes({.image = Filler(10), .code = kJpegCodeBigEndian}) +
       Bytes({.image = Filler(20), .code = kJpegCode}) + Bytes({.image = Filler(30)}));
  ASSERT_EQ(handle_->count, 2);
  EXPECT_EQ(Image(0).format, 1);
  EXPECT_EQ(Image(0).dataSize, 20);
  EXPECT_EQ(Image(1).format, 0);
  EXPECT_EQ(Image(1).dataSize, 30);
}

TEST_F(ArtworkReader, UnknownBlocksAreSkippedByTheirLength) {
  Open(CacheHeader() + Bytes({.image = Filler(10), .tag = "Item"}) +
       Bytes({.image = Filler(20), .dataTag = "Data"}) +
       Bytes({.image = Filler(30), .code = "PNGF"}) + Bytes({.image = Filler(40), .code = "ARGb"}) +
       Bytes({.image = Filler(50)}));
  ASSERT_EQ(handle_->count, 1);
  EXPECT_EQ(Image(0).dataSize, 50);
}

TEST_F(ArtworkReader, NumberAtEightAndThePicturesBytesAreNotLookedAt) {
  std::string block = Bytes({.image = LikeJpeg(10)});
  block.replace(8, 4, Number(12345));
  Open(CacheHeader() + block);
  ASSERT_EQ(handle_->count, 1);
  EXPECT_EQ(Image(0).format, 0);
}

TEST_F(ArtworkReader, EndInsideABlockHeaderEndsTheWalk) {
  const std::string start = CacheHeader() + Bytes({.image = Filler(10)});
  for (const std::size_t bytes : {0U, 1U, 100U, 207U}) {
    Open(start + Bytes({}).substr(0, bytes));
    EXPECT_EQ(handle_->count, 1) << bytes;
  }
  Open(start + Bytes({}));
  EXPECT_EQ(handle_->count, 2);
}

TEST_F(ArtworkReader, ListGrowsInStepsOf32) {
  std::string file = CacheHeader();
  for (std::uint32_t i = 0; i < 100; ++i) file += Bytes({.image = Filler(i), .width = i});
  Open(file);
  ASSERT_EQ(handle_->count, 100);
  EXPECT_EQ(handle_->capacity, 128);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(Image(i).width, i);
}

TEST_F(ArtworkReader, HeaderLengthBelow28IsWhereTheWalkStarts) {
  // The block's length field lies over the header's "itch", from offset 27 on, or over its length.
  std::string from27 = CacheHeader(27).substr(0, 27) + Bytes({.image = Filler(5)});
  Open(from27);
  ASSERT_EQ(handle_->count, 1);
  EXPECT_EQ(Image(0).fileOffset, 27U + 208U);

  Open(Number(0) + "itch" + std::string(300, '\0'));
  EXPECT_EQ(handle_->count, 0);  // the walk starts at the header itself, whose length is below 8
}

TEST_F(ArtworkReader, HeaderLengthThatLeadsBeforeTheFileGivesNoImage) {
  for (const std::uint32_t length : {0x80000000U + 28, 0xFFFFFFFFU, 0xC0000000U}) {
    ASSERT_NE(Open(CacheHeader(length) + Bytes({.image = Filler(5)})), nullptr);
    EXPECT_EQ(handle_->count, 0) << length;
    EXPECT_EQ(handle_->header.length, length);
  }
}

TEST_F(ArtworkReader, BlockShorterThanItsHeaderIsRecordedAndStepsBackToItsEnd) {
  const std::string shortBlock = Bytes({.length = 100});
  std::string file = CacheHeader() + shortBlock;
  file.resize(284 + 100);
  // What the reader takes for the rest of the first block's header is the next block's start.
  std::string second = Bytes({.image = Filler(7)});
  second.replace(104, 4, "data");  // at 204 of the first block
  file += second;
  Open(file);
  ASSERT_EQ(handle_->count, 2);
  EXPECT_EQ(Image(0).dataSize, 100 - 208);
  EXPECT_EQ(Image(1).dataSize, 7);
  EXPECT_EQ(Image(1).fileOffset, 284U + 100U + 208U);

  ArtworkInfo info{.format = 9, .width = 9, .height = 9, .data = nullptr, .dataSize = -200};
  EXPECT_EQ(GetArtworkInfo(handle_, 0, &info), 100 - 208 + tavrel::test::kArtworkInfoSize);
  EXPECT_EQ(info.width, 9);
  EXPECT_EQ(info.dataSize, -108);
  std::uint8_t untouched = 77;
  info = {.format = 9, .width = 9, .height = 9, .data = &untouched, .dataSize = 0};
  EXPECT_EQ(GetArtworkInfo(handle_, 0, &info), 100 - 208 + tavrel::test::kArtworkInfoSize);
  EXPECT_EQ(info.format, 0);
  EXPECT_EQ(info.width, 600);
  EXPECT_EQ(info.height, 600);
  EXPECT_EQ(info.dataSize, -108);
  EXPECT_EQ(untouched, 77);
}

TEST_F(ArtworkReader, DescriptorZeroIsAFile) {
  const int kept = dup(0);
  close(0);
  ASSERT_NE(Open(CacheHeader() + Bytes({.image = Filler(8)})), nullptr);
  EXPECT_EQ(ArtworkDescriptor(*handle_), 0);
  std::uint8_t bytes[8];
  ArtworkInfo info{.format = 0, .width = 0, .height = 0, .data = bytes, .dataSize = 8};
  EXPECT_EQ(GetArtworkInfo(handle_, 0, &info), 8 + tavrel::test::kArtworkInfoSize);
  EXPECT_EQ(std::memcmp(bytes, Filler(8).data(), 8), 0);
  CloseArtwork(handle_);
  handle_ = nullptr;
  EXPECT_EQ(fcntl(0, F_GETFD), -1);
  if (kept >= 0) dup2(kept, 0);
}

TEST_F(ArtworkReader, FileIsClosedInProgramsThatTheHostStarts) {
  Open(CacheHeader());
  EXPECT_EQ(fcntl(ArtworkDescriptor(*handle_), F_GETFD), FD_CLOEXEC);
}

}  // namespace
}  // namespace tavrel::test
