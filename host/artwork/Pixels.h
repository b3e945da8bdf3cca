// Pictures as pixels: out of PNG and JPEG files, and back into them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel::host {

// Red, green, blue and alpha, a byte each; rows from the top, nothing between them. The colours are those of
// a screen (sRGB): profiles that say otherwise, and the notes of cameras on which side is up, are not read.
struct Pixels {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::string bytes;
};

struct PictureSize {
  std::int32_t width;
  std::int32_t height;
};

// A picture with more pixels is not decoded: a few bytes can claim any size.
inline constexpr std::int64_t kMostPixels = 50'000'000;

// All of these fail (ExitCode::Failed) with a message that says what is wrong with the picture.

// What the file says of itself, without a look at its pixels. Never more than kMostPixels.
[[nodiscard]] PictureSize SizeOfPicture(std::string_view bytes);

// enough: a side of that length will do. A JPEG file whose longer side is at least that long may come out
// smaller than it is, though not below; that saves most of the time. 0: as it is.
// Where the end of a JPEG file's pixels is missing, what was there counts.
[[nodiscard]] Pixels DecodePicture(std::string_view bytes, std::int32_t enough = 0);

// Without alpha where nothing shines through.
[[nodiscard]] std::string PngOf(const Pixels& pixels);

// Alpha is ignored. quality: 1 to 100; from 90 on colours are as sharp as brightness.
[[nodiscard]] std::string JpegOf(const Pixels& pixels, int quality);

}  // namespace tavrel::host
