#include "host/artwork/PictureFiles.h"

#include <png.h>

namespace tavrel::host {
namespace {

using namespace std::string_view_literals;

constexpr std::int32_t kLongestSide = 32767;

std::uint32_t BigEndian(std::string_view bytes) {
  std::uint32_t number = 0;
  for (const char byte : bytes) number = number << 8 | static_cast<unsigned char>(byte);
  return number;
}

}  // namespace

// A signature, then chunks: length, type, content, checksum. The chunk IEND is the last.
bool IsWholePng(std::string_view bytes) {
  constexpr std::size_t kAround = 12;  // length, type and checksum
  if (!bytes.starts_with("\x89PNG\r\n\x1A\n"sv)) return false;
  bytes.remove_prefix(8);
  while (bytes.size() >= kAround) {
    const std::size_t length = BigEndian(bytes.substr(0, 4));
    if (length > bytes.size() - kAround) return false;
    if (bytes.substr(4, 4) == "IEND") return true;
    bytes.remove_prefix(kAround + length);
  }
  return false;
}

// Segments: a marker and a length. The pixels follow the segment "start of scan", unmarked, up to
// the marker "end of image".
bool IsWholeJpeg(std::string_view bytes) {
  constexpr char kStartOfScan = '\xDA';
  if (!bytes.starts_with("\xFF\xD8\xFF"sv)) return false;
  bytes.remove_prefix(2);
  while (bytes.size() >= 4 && bytes[0] == '\xFF') {
    if (bytes[1] == '\xFF') {  // a filler before a marker
      bytes.remove_prefix(1);
      continue;
    }
    if (bytes[1] == kStartOfScan) return bytes.find("\xFF\xD9"sv) != std::string_view::npos;
    const std::size_t length = BigEndian(bytes.substr(2, 2));
    if (length < 2 || length > bytes.size() - 2) return false;
    bytes.remove_prefix(2 + length);
  }
  return false;
}

std::optional<std::string> PngOfPixels(std::string_view pixels, std::int32_t width,
                                       std::int32_t height, PixelOrder order) {
  if (width <= 0 || height <= 0 || width > kLongestSide || height > kLongestSide) {
    return std::nullopt;
  }
  if (std::uint64_t{4} * static_cast<std::uint32_t>(width) * static_cast<std::uint32_t>(height) >
      pixels.size()) {
    return std::nullopt;
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = order == PixelOrder::Argb ? PNG_FORMAT_ARGB : PNG_FORMAT_BGRA;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::string png(size, '\0');
  if (png_image_write_to_memory(&image, png.data(), &size, 0, pixels.data(), 0, nullptr) == 0) {
    return std::nullopt;
  }
  png.resize(size);
  return png;
}

}  // namespace tavrel::host
