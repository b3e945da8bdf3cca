// The layouts of real caches, which the additions read.
#include <cstring>

#include "library/artwork/ArtworkHandle.h"
#include "tests/support/CacheFiles.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::test {
namespace {

constexpr int kPng = 0;
constexpr int kJpeg = 1;
constexpr int kArgb = 2;
constexpr int kBgra = 3;
const std::string kPngCodeOfOld("\0\0\x23\x28", 4);
const std::string kPngCodeBigEndian("\0\0\0\x0E", 4);

class ArtworkLayout : public testing::Test {
 protected:
  ~ArtworkLayout() override { CloseArtwork(handle_); }

  void Open(std::string_view blocks) {
    CloseArtwork(handle_);
    handle_ =
        OpenArtworkFile(folder_.Write("any name", CacheHeader() + std::string(blocks)).c_str());
    ASSERT_NE(handle_, nullptr);
  }
  // The format of the one image; -1 when there is none.
  int FormatOf(const Block& block) {
    Open(Bytes(block));
    return GetArtworkCount(handle_) == 1 ? handle_->images[0]->format : -1;
  }
  std::string Delivered(int index) {
    ArtworkInfo info{};
    GetArtworkInfo(handle_, index, &info);
    std::string bytes(static_cast<std::size_t>(info.dataSize), '?');
    info.data = reinterpret_cast<std::uint8_t*>(bytes.data());
    GetArtworkInfo(handle_, index, &info);
    return bytes;
  }

  TemporaryFolder folder_;
  ArtworkHandle* handle_ = nullptr;
};

TEST_F(ArtworkLayout, NumberAtEightTellsWhereEverythingStands) {
  for (const std::uint32_t start : {196U, 208U, 212U, 216U}) {
    const std::string image = LikePng(90);
    Open(Bytes({.image = image, .width = 7, .height = 5, .imageStart = start}) +
         Bytes({.image = LikeJpeg(40), .imageStart = start}));
    ASSERT_EQ(GetArtworkCount(handle_), 2) << start;
    const ArtworkImage& found = *handle_->images[0];
    EXPECT_EQ(found.format, kPng);
    EXPECT_EQ(found.width, 7);
    EXPECT_EQ(found.height, 5);
    EXPECT_EQ(found.dataSize, 90);
    EXPECT_EQ(found.fileOffset, 284 + start);
    EXPECT_EQ(Delivered(0), image);
    EXPECT_EQ(handle_->images[1]->format, kJpeg);
    EXPECT_EQ(Delivered(1), LikeJpeg(40));
  }
}

TEST_F(ArtworkLayout, PicturesOwnBytesDecideOverTheCode) {
  for (const std::string& code :
       {std::string("PNGf"), kJpegCode, kJpegCodeBigEndian, kPngCodeBigEndian, kPngCodeOfOld,
        std::string("ARGb"), std::string("bGRA"), std::string("what")}) {
    EXPECT_EQ(FormatOf({.image = LikePng(50), .code = code}), kPng) << code;
    EXPECT_EQ(FormatOf({.image = LikeJpeg(50), .code = code}), kJpeg) << code;
    EXPECT_EQ(FormatOf({.image = LikeJpeg(50), .code = code, .imageStart = 196}), kJpeg) << code;
  }
}

TEST_F(ArtworkLayout, CodeDecidesWhereThePictureSaysNothing) {
  const auto byCode = [this](const std::string& code) {
    return FormatOf({.image = Filler(16), .code = code, .width = 2, .height = 2});
  };
  EXPECT_EQ(byCode("PNGf"), kPng);
  EXPECT_EQ(byCode(kJpegCode), kJpeg);
  EXPECT_EQ(byCode(kJpegCodeBigEndian), kJpeg);
  EXPECT_EQ(byCode(kPngCodeBigEndian), kPng);
  EXPECT_EQ(byCode("ARGb"), kArgb);
  EXPECT_EQ(byCode("bGRA"), kBgra);
  EXPECT_EQ(byCode("xdat"), -1);
  EXPECT_EQ(byCode(kPngCodeOfOld), -1);
}

TEST_F(ArtworkLayout, AnImageWithoutBytesIsWhatItsCodeSays) {
  EXPECT_EQ(FormatOf({.image = "", .code = "bGRA", .width = 0, .height = 0}), kBgra);
  EXPECT_EQ(FormatOf({.image = LikeJpeg(8), .code = "bGRA", .length = 204}), kBgra) << "size -4";
}

TEST_F(ArtworkLayout, PixelsThatBeginLikeAPictureAreStillPixels) {
  const Block pixels{.image = LikeJpeg(24), .code = "bGRA", .width = 3, .height = 2};
  EXPECT_EQ(FormatOf(pixels), kBgra);
  Block wrongSize = pixels;
  wrongSize.image = LikeJpeg(28);
  EXPECT_EQ(FormatOf(wrongSize), kJpeg);
  Block wrap = pixels;  // 2^31 x 2^31 pixels of 4 bytes are 0 in 64 bits
  wrap.width = wrap.height = 0x80000000;
  EXPECT_EQ(FormatOf(wrap), kJpeg);
}

TEST_F(ArtworkLayout, FirstBytesOfTheNextBlockAreNotThisImages) {
  Open(Bytes({.image = "\xFF\xD8", .code = "what"}) + "\xFF" + std::string(300, '\0'));
  EXPECT_EQ(GetArtworkCount(handle_), 0);
}

TEST_F(ArtworkLayout, WhateverOpenArtworkFindsIsFound) {
  for (const std::uint32_t number : {0U, 12345U, 196U, 216U}) {
    std::string block = Bytes({.image = Filler(30), .code = kJpegCode});
    block.replace(8, 4, Number(number));
    Open(block);
    ASSERT_EQ(GetArtworkCount(handle_), 1) << number;
    EXPECT_EQ(handle_->images[0]->format, kJpeg);
    EXPECT_EQ(handle_->images[0]->fileOffset, 284U + 208U);
  }
}

TEST_F(ArtworkLayout, WrongTagsAndBlocksWithoutAnImageAreSkipped) {
  Open(Bytes({.image = LikePng(20), .tag = "itEm"}) +
       Bytes({.image = LikePng(20), .dataTag = "date"}) + Bytes({.image = "", .code = "xdat"}) +
       Bytes({.image = LikeJpeg(20), .imageStart = 196, .dataTag = "none"}) +
       Bytes({.image = LikeJpeg(33), .imageStart = 196}));
  ASSERT_EQ(GetArtworkCount(handle_), 1);
  EXPECT_EQ(handle_->images[0]->dataSize, 33);
}

TEST_F(ArtworkLayout, NullPathAndOtherFilesGiveNull) {
  EXPECT_EQ(OpenArtworkFile(nullptr), nullptr);
  EXPECT_EQ(OpenArtworkFile(""), nullptr);
  EXPECT_EQ(OpenArtworkFile(folder_.path().c_str()), nullptr);
  EXPECT_EQ(OpenArtworkFile(folder_.Write("a.png", LikePng(500)).c_str()), nullptr);
}

}  // namespace
}  // namespace tavrel::test
