// Pictures out of artwork cache files.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/Library.h"

namespace tavrel::host {

// What a cache file says of one of its images.
struct ImageFacts {
  std::int32_t format;
  std::int32_t width;
  std::int32_t height;
  std::int32_t size;  // in bytes
};

// "PNG", "JPEG", "ARGB", "BGRA"
[[nodiscard]] std::string_view FormatName(std::int32_t format);

// A picture as a file holds it.
struct Picture {
  std::string bytes;
  std::string_view extension;  // ".png" or ".jpg"
};

// An opened cache file.
class Artwork {
 public:
  // Takes over the handle; null is allowed.
  Artwork(const LibraryFunctions& library, ArtworkHandle* handle)
      : library_(library), handle_(handle, library.closeArtwork) {}

  [[nodiscard]] bool IsOpen() const noexcept { return handle_ != nullptr; }
  [[nodiscard]] std::vector<ImageFacts> Images() const;

  // The picture with the most pixels of those that are whole; raw pixels become a PNG. None when
  // there is no such picture.
  [[nodiscard]] std::optional<Picture> LargestPicture() const;

  // The same for a picture whose longer side is to have so many pixels: the smallest one that has as many,
  // else the largest one. longestSide: 0 for the largest one.
  [[nodiscard]] std::optional<Picture> PictureFor(std::int32_t longestSide) const;

 private:
  [[nodiscard]] std::optional<std::string> ReadImage(std::int32_t index, std::int32_t size) const;
  [[nodiscard]] std::optional<Picture> ReadPicture(std::int32_t index,
                                                   const ImageFacts& facts) const;

  const LibraryFunctions& library_;
  std::unique_ptr<ArtworkHandle, decltype(&::CloseArtwork)> handle_;
};

}  // namespace tavrel::host
