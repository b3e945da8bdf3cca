#include "host/artwork/Scaling.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdlib>
#include <cstring>

// Only what this program has decoded itself comes near it.
#define STB_IMAGE_RESIZE_IMPLEMENTATION
#define STB_IMAGE_RESIZE_STATIC
#include <stb/stb_image_resize.h>

#include "host/output/Failure.h"

namespace tavrel::host {
namespace {

constexpr int kQuality = 90;
constexpr std::int32_t kAtLeast = 2;  // times the wanted side: what a good filter has to have

std::int32_t LongerSide(PictureSize size) {
  return std::max(size.width, size.height);
}

std::int32_t Share(std::int32_t side, std::int32_t longest, std::int32_t of) {
  const std::int64_t rounded = (std::int64_t{side} * longest + of / 2) / of;
  return static_cast<std::int32_t>(std::max<std::int64_t>(rounded, 1));
}

Pixels Resized(const Pixels& pixels, std::int32_t longestSide) {
  const std::int32_t longer = std::max(pixels.width, pixels.height);
  Pixels smaller{
      Share(pixels.width, longestSide, longer), Share(pixels.height, longestSide, longer), {}};
  smaller.bytes.resize(std::size_t{4} * static_cast<std::size_t>(smaller.width) *
                       static_cast<std::size_t>(smaller.height));
  const auto* from = reinterpret_cast<const unsigned char*>(pixels.bytes.data());
  auto* to = reinterpret_cast<unsigned char*>(smaller.bytes.data());
  const int done = stbir_resize_uint8_srgb(from, pixels.width, pixels.height, 0, to, smaller.width,
                                           smaller.height, 0, 4, 3, 0);
  if (done == 0) throw Failure(ExitCode::Failed, "the picture cannot be scaled: out of memory");
  return smaller;
}

}  // namespace

Pixels ScaledPixels(const Picture& picture, std::int32_t longestSide) {
  Pixels pixels =
      DecodePicture(picture.bytes, std::min(longestSide, INT32_MAX / kAtLeast) * kAtLeast);
  if (std::max(pixels.width, pixels.height) <= longestSide) return pixels;
  return Resized(pixels, longestSide);
}

Picture Scaled(Picture picture, std::int32_t longestSide) {
  if (LongerSide(SizeOfPicture(picture.bytes)) <= longestSide) return picture;
  const Pixels pixels = ScaledPixels(picture, longestSide);
  const bool isJpeg = picture.extension == ".jpg";
  return {isJpeg ? JpegOf(pixels, kQuality) : PngOf(pixels), picture.extension};
}

}  // namespace tavrel::host
