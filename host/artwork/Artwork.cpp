#include "host/artwork/Artwork.h"

#include <algorithm>
#include <numeric>

#include "host/artwork/PictureFiles.h"

namespace tavrel::host {
namespace {

enum Format : std::int32_t { Png, Jpeg, Argb, Bgra };

// A larger image is a damaged file's claim, and not worth the memory.
constexpr std::int32_t kLargestImage = 256 << 20;

std::int64_t PixelsOf(const ImageFacts& facts) {
  return std::int64_t{std::max(facts.width, 0)} * std::max(facts.height, 0);
}

}  // namespace

std::string_view FormatName(std::int32_t format) {
  constexpr std::string_view kNames[] = {"PNG", "JPEG", "ARGB", "BGRA"};
  return format >= Png && format <= Bgra ? kNames[format] : "unknown";
}

std::vector<ImageFacts> Artwork::Images() const {
  std::vector<ImageFacts> images;
  const std::int32_t count = library_.getArtworkCount(handle_.get());
  for (std::int32_t i = 0; i < count; ++i) {
    ArtworkInfo info{};
    library_.getArtworkInfo(handle_.get(), i, &info);
    library_.getArtworkInfo(handle_.get(), i, &info);  // now there is room, and no buffer
    images.push_back({info.format, info.width, info.height, info.dataSize});
  }
  return images;
}

// The library does not tell how much of an image a file that was cut short has delivered: that the
// last byte has come shows in its not being what stood there before.
std::optional<std::string> Artwork::ReadImage(std::int32_t index, std::int32_t size) const {
  if (size <= 0 || size > kLargestImage) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(size), '\0');
  for (const char before : {'\x55', '\x2A'}) {
    bytes.back() = before;
    ArtworkInfo info{};
    info.data = reinterpret_cast<std::uint8_t*>(bytes.data());
    info.dataSize = size;
    library_.getArtworkInfo(handle_.get(), index, &info);
    if (bytes.back() != before) return bytes;
  }
  return std::nullopt;
}

std::optional<Picture> Artwork::ReadPicture(std::int32_t index, const ImageFacts& facts) const {
  std::optional<std::string> bytes = ReadImage(index, facts.size);
  if (!bytes) return std::nullopt;
  if (facts.format == Png || facts.format == Jpeg) {
    // Their own bytes say which of the two they are.
    if (IsWholePng(*bytes)) return Picture{std::move(*bytes), ".png"};
    if (IsWholeJpeg(*bytes)) return Picture{std::move(*bytes), ".jpg"};
    return std::nullopt;
  }
  const PixelOrder order = facts.format == Argb ? PixelOrder::Argb : PixelOrder::Bgra;
  std::optional<std::string> png = PngOfPixels(*bytes, facts.width, facts.height, order);
  if (!png) return std::nullopt;
  return Picture{std::move(*png), ".png"};
}

std::optional<Picture> Artwork::LargestPicture() const {
  return PictureFor(0);
}

std::optional<Picture> Artwork::PictureFor(std::int32_t longestSide) const {
  const std::vector<ImageFacts> images = Images();
  std::vector<std::size_t> order(images.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto isEnough = [&](std::size_t index) {
    return longestSide > 0 && std::max(images[index].width, images[index].height) >= longestSide;
  };
  // Those that are large enough, the smallest one first; then the others, the largest one first.
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    if (isEnough(a) != isEnough(b)) return isEnough(a);
    return isEnough(a) ? PixelsOf(images[a]) < PixelsOf(images[b])
                       : PixelsOf(images[a]) > PixelsOf(images[b]);
  });
  for (const std::size_t index : order) {
    auto picture = ReadPicture(static_cast<std::int32_t>(index), images[index]);
    if (picture) return picture;
  }
  return std::nullopt;
}

}  // namespace tavrel::host
