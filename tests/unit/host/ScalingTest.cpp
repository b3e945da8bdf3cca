// Pictures made smaller.
#include <gmock/gmock.h>
#include <turbojpeg.h>
#include <zlib.h>

#include <array>
#include <cstdlib>

#include "host/artwork/PictureFiles.h"
#include "host/artwork/Scaling.h"
#include "host/output/Failure.h"

namespace tavrel::host {
namespace {

using testing::HasSubstr;

using Pixel = std::array<unsigned char, 4>;
constexpr Pixel kRed{255, 0, 0, 255};
constexpr Pixel kBlue{0, 0, 255, 255};

Pixels Filled(std::int32_t width, std::int32_t height, Pixel left, Pixel right) {
  Pixels pixels{width, height, {}};
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      for (const unsigned char byte : x < width / 2 ? left : right) {
        pixels.bytes += static_cast<char>(byte);
      }
    }
  }
  return pixels;
}

Picture Png(std::int32_t width, std::int32_t height) {
  return {PngOf(Filled(width, height, kRed, kBlue)), ".png"};
}

Picture Jpeg(std::int32_t width, std::int32_t height) {
  return {JpegOf(Filled(width, height, kRed, kBlue), 95), ".jpg"};
}

Pixel At(const Pixels& pixels, std::int32_t x, std::int32_t y) {
  Pixel pixel{};
  const auto at = static_cast<std::size_t>(y * pixels.width + x) * 4;
  for (std::size_t i = 0; i < 4; ++i) pixel[i] = static_cast<unsigned char>(pixels.bytes[at + i]);
  return pixel;
}

void ExpectNear(Pixel pixel, Pixel wanted) {
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(pixel[i], wanted[i], 6) << "byte " << i;
}

std::string WhyNotScaled(const Picture& picture) {
  try {
    (void)Scaled(picture, 10);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "it was scaled";
}

TEST(Scaled, LongerSideIsAsAskedAndTheOtherKeepsItsShare) {
  for (const Picture& picture : {Png(300, 200), Jpeg(300, 200), Png(200, 300), Jpeg(1024, 683)}) {
    const Picture smaller = Scaled(picture, 60);
    EXPECT_EQ(smaller.extension, picture.extension);
    EXPECT_TRUE(picture.extension == ".jpg" ? IsWholeJpeg(smaller.bytes)
                                            : IsWholePng(smaller.bytes));
    const PictureSize size = SizeOfPicture(smaller.bytes);
    EXPECT_EQ(std::max(size.width, size.height), 60);
    EXPECT_EQ(std::min(size.width, size.height), 40);
    const Pixels pixels = DecodePicture(smaller.bytes);
    ExpectNear(At(pixels, 3, 3), kRed);
    ExpectNear(At(pixels, size.width - 4, size.height - 4), kBlue);
  }
}

TEST(Scaled, PictureThatIsSmallEnoughStaysAsItIs) {
  for (const Picture& picture : {Png(30, 20), Jpeg(30, 20)}) {
    EXPECT_EQ(Scaled(picture, 30).bytes, picture.bytes);
    EXPECT_EQ(Scaled(picture, 2147483647).bytes, picture.bytes);
    EXPECT_EQ(ScaledPixels(picture, 2147483647).width, 30);
  }
}

TEST(Scaled, ThinPictureKeepsAPixel) {
  const PictureSize size = SizeOfPicture(Scaled(Png(1000, 1), 10).bytes);
  EXPECT_EQ(size.width, 10);
  EXPECT_EQ(size.height, 1);
}

TEST(Scaled, WhatCannotBeSeenLendsNoColour) {
  const Picture picture{PngOf(Filled(100, 100, kRed, {0, 255, 0, 0})), ".png"};
  const Pixels pixels = ScaledPixels(picture, 10);
  ExpectNear(At(pixels, 1, 1), kRed);
  EXPECT_EQ(At(pixels, 9, 9)[3], 0);
  EXPECT_EQ(At(pixels, 4, 5)[1], 0) << "no green at the edge";
}

TEST(Scaled, PictureOfTheColoursOfPrintKeepsThem) {
  std::string inverted;  // cyan, magenta, yellow and black, 255 being none
  for (int i = 0; i < 64 * 64; ++i) inverted += "\xFF\x01\x01\x80";
  const tjhandle handle = tjInitCompress();
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  ASSERT_EQ(tjCompress2(handle, reinterpret_cast<const unsigned char*>(inverted.data()), 64, 0, 64,
                        TJPF_CMYK, &bytes, &size, TJSAMP_444, 95, 0),
            0);
  const Picture picture{std::string(reinterpret_cast<const char*>(bytes), size), ".jpg"};
  tjFree(bytes);
  tjDestroy(handle);
  ExpectNear(At(DecodePicture(Scaled(picture, 16).bytes), 8, 8), {128, 0, 0, 255});
}

// ---- Pictures that nobody can trust -------------------------------------------------------------

void PutNumber(std::string& bytes, std::size_t at, std::uint32_t number, int count) {
  while (count-- > 0) {
    bytes[at + static_cast<std::size_t>(count)] = static_cast<char>(number & 0xFF);
    number >>= 8;
  }
}

// Where a PNG has its width, its height, and the checksum of both.
constexpr std::size_t kPngSize = 16;
constexpr std::size_t kPngChecksum = 29;

Picture PngThatClaims(std::uint32_t width, std::uint32_t height) {
  Picture picture = Png(30, 20);
  PutNumber(picture.bytes, kPngSize, width, 4);
  PutNumber(picture.bytes, kPngSize + 4, height, 4);
  const auto* header = reinterpret_cast<const Bytef*>(picture.bytes.data()) + 12;
  PutNumber(picture.bytes, kPngChecksum, static_cast<std::uint32_t>(crc32(0, header, 17)), 4);
  return picture;
}

Picture JpegThatClaims(std::uint32_t width, std::uint32_t height) {
  Picture picture = Jpeg(30, 20);
  const std::size_t frame = picture.bytes.find("\xFF\xC0");
  PutNumber(picture.bytes, frame + 5, height, 2);
  PutNumber(picture.bytes, frame + 7, width, 2);
  return picture;
}

TEST(Scaled, PictureThatClaimsMorePixelsThanAnyHasIsNotDecoded) {
  EXPECT_THAT(WhyNotScaled(PngThatClaims(50'000, 50'000)), HasSubstr("50000 by 50000 pixels"));
  EXPECT_THAT(WhyNotScaled(JpegThatClaims(65'500, 65'500)), HasSubstr("65500 by 65500 pixels"));
  EXPECT_THAT(WhyNotScaled(PngThatClaims(7001, 7143)), HasSubstr("7001 by 7143"));
  EXPECT_THAT(WhyNotScaled(PngThatClaims(700, 700)), Not(HasSubstr("claims")));
}

TEST(Scaled, WhatIsNoPictureIsSaid) {
  for (const std::string bytes :
       {"", "GIF89a", "\xFF\xD8", "\xFF\xD8\xFF\xD9", "\x89PNG\r\n\x1A\n"}) {
    EXPECT_THAT(WhyNotScaled({bytes, ".png"}), HasSubstr("the picture cannot be scaled: "));
  }
  EXPECT_THAT(WhyNotScaled(PngThatClaims(0, 7)), HasSubstr("the picture cannot be scaled: "));
}

TEST(Scaled, AnyByteMayBeWrong) {
  int scaled = 0;
  int refused = 0;
  for (const Picture& picture : {Png(24, 16), Jpeg(24, 16)}) {
    for (std::size_t at = 0; at < picture.bytes.size(); ++at) {
      Picture damaged = picture;
      damaged.bytes[at] = static_cast<char>(damaged.bytes[at] ^ (at % 2 == 0 ? 0xFF : 0x10));
      ++(WhyNotScaled(damaged) == "it was scaled" ? scaled : refused);
      damaged.bytes = picture.bytes.substr(0, at);
      ++(WhyNotScaled(damaged) == "it was scaled" ? scaled : refused);
    }
  }
  EXPECT_GT(scaled, 0);
  EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace tavrel::host
