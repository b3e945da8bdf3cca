#include "host/artwork/Pixels.h"

#include <png.h>
#include <turbojpeg.h>

#include <algorithm>
#include <memory>

#include "host/output/Failure.h"

namespace tavrel::host {
namespace {

// A file that describes its pixels anew more often than that was made to take time.
constexpr int kDecodingFlags = TJFLAG_LIMITSCANS;

[[noreturn]] void Fail(const std::string& why) {
  throw Failure(ExitCode::Failed, "the picture cannot be scaled: " + why);
}

const unsigned char* Begin(std::string_view bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}

unsigned char* Begin(std::string& bytes) {
  return reinterpret_cast<unsigned char*>(bytes.data());
}

std::size_t CountOf(PictureSize size) {
  return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

PictureSize Checked(std::int64_t width, std::int64_t height) {
  if (width <= 0 || height <= 0) Fail("it has no size");
  if (width > kMostPixels || height > kMostPixels || width * height > kMostPixels) {
    Fail("it claims to be " + std::to_string(width) + " by " + std::to_string(height) +
         " pixels large");
  }
  return {static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
}

bool IsJpeg(std::string_view bytes) {
  return bytes.starts_with("\xFF\xD8");
}

// ---- PNG ----------------------------------------------------------------------------------------

class PngFile {
 public:
  explicit PngFile(std::string_view bytes) {
    image_.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image_, bytes.data(), bytes.size()) == 0) {
      Fail(image_.message);
    }
  }
  PngFile(const PngFile&) = delete;
  PngFile& operator=(const PngFile&) = delete;
  ~PngFile() { png_image_free(&image_); }

  [[nodiscard]] PictureSize Size() const { return Checked(image_.width, image_.height); }

  [[nodiscard]] Pixels Decode() {
    const PictureSize size = Size();
    Pixels pixels{size.width, size.height, std::string(CountOf(size) * 4, '\0')};
    image_.format = PNG_FORMAT_RGBA;
    if (png_image_finish_read(&image_, nullptr, pixels.bytes.data(), 0, nullptr) == 0) {
      Fail(image_.message);
    }
    return pixels;
  }

 private:
  png_image image_{};
};

bool IsOpaque(const Pixels& pixels) {
  for (std::size_t at = 3; at < pixels.bytes.size(); at += 4) {
    if (pixels.bytes[at] != '\xFF') return false;
  }
  return true;
}

std::string WithoutAlpha(const Pixels& pixels) {
  std::string bytes;
  bytes.reserve(pixels.bytes.size() / 4 * 3);
  for (std::size_t at = 0; at < pixels.bytes.size(); at += 4) bytes.append(pixels.bytes, at, 3);
  return bytes;
}

// ---- JPEG ---------------------------------------------------------------------------------------

struct EndJpeg {
  void operator()(void* handle) const noexcept { tjDestroy(handle); }
};
using JpegHandle = std::unique_ptr<void, EndJpeg>;

JpegHandle Checked(tjhandle handle) {
  if (handle == nullptr) Fail(tjGetErrorStr2(nullptr));
  return JpegHandle(handle);
}

// The smallest size, of those that come at the price of the pixels they have, that is large enough.
PictureSize SmallestOf(PictureSize whole, std::int32_t enough) {
  PictureSize smallest = whole;
  int count = 0;
  const tjscalingfactor* factors = tjGetScalingFactors(&count);
  if (enough <= 0 || factors == nullptr) return whole;
  for (int i = 0; i < count; ++i) {
    const tjscalingfactor factor = factors[i];
    const PictureSize size{TJSCALED(whole.width, factor), TJSCALED(whole.height, factor)};
    const bool isEnough = std::max(size.width, size.height) >= enough;
    if (isEnough && CountOf(size) < CountOf(smallest)) smallest = size;
  }
  return smallest;
}

// From the four colours of print, which such files have inverted, without leaving the place.
void MakeRgba(std::string& cmyk) {
  unsigned char* bytes = Begin(cmyk);
  for (std::size_t at = 0; at < cmyk.size(); at += 4) {
    const unsigned black = bytes[at + 3];
    for (std::size_t colour = at; colour < at + 3; ++colour) {
      bytes[colour] = static_cast<unsigned char>(bytes[colour] * black / 255);
    }
    bytes[at + 3] = 255;
  }
}

class JpegFile {
 public:
  explicit JpegFile(std::string_view bytes) : bytes_(bytes) {
    int width = 0;
    int height = 0;
    int sampling = 0;
    if (tjDecompressHeader3(handle_.get(), Begin(bytes), bytes.size(), &width, &height, &sampling,
                            &colours_) != 0) {
      Fail(tjGetErrorStr2(handle_.get()));
    }
    size_ = Checked(width, height);
  }

  [[nodiscard]] PictureSize Size() const { return size_; }

  [[nodiscard]] Pixels Decode(std::int32_t enough) const {
    const PictureSize size = SmallestOf(size_, enough);
    const bool isForPrint = colours_ == TJCS_CMYK || colours_ == TJCS_YCCK;
    Pixels pixels{size.width, size.height, std::string(CountOf(size) * 4, '\0')};
    const int result =
        tjDecompress2(handle_.get(), Begin(bytes_), bytes_.size(), Begin(pixels.bytes), size.width,
                      0, size.height, isForPrint ? TJPF_CMYK : TJPF_RGBA, kDecodingFlags);
    // After a warning the pixels are there, if not all as they were meant.
    if (result != 0 && tjGetErrorCode(handle_.get()) != TJERR_WARNING) {
      Fail(tjGetErrorStr2(handle_.get()));
    }
    if (isForPrint) MakeRgba(pixels.bytes);
    return pixels;
  }

 private:
  std::string_view bytes_;
  JpegHandle handle_ = Checked(tjInitDecompress());
  PictureSize size_{};
  int colours_ = 0;
};

struct FreeJpeg {
  void operator()(unsigned char* bytes) const noexcept { tjFree(bytes); }
};

}  // namespace

PictureSize SizeOfPicture(std::string_view bytes) {
  return IsJpeg(bytes) ? JpegFile(bytes).Size() : PngFile(bytes).Size();
}

Pixels DecodePicture(std::string_view bytes, std::int32_t enough) {
  return IsJpeg(bytes) ? JpegFile(bytes).Decode(enough) : PngFile(bytes).Decode();
}

std::string PngOf(const Pixels& pixels) {
  const bool isOpaque = IsOpaque(pixels);
  const std::string opaque = isOpaque ? WithoutAlpha(pixels) : std::string();
  const std::string& bytes = isOpaque ? opaque : pixels.bytes;
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(pixels.width);
  image.height = static_cast<png_uint_32>(pixels.height);
  image.format = isOpaque ? PNG_FORMAT_RGB : PNG_FORMAT_RGBA;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::string png(size, '\0');
  if (png_image_write_to_memory(&image, png.data(), &size, 0, bytes.data(), 0, nullptr) == 0) {
    Fail(image.message);
  }
  png.resize(size);
  return png;
}

std::string JpegOf(const Pixels& pixels, int quality) {
  const JpegHandle handle = Checked(tjInitCompress());
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  const int result =
      tjCompress2(handle.get(), Begin(pixels.bytes), pixels.width, 0, pixels.height, TJPF_RGBA,
                  &bytes, &size, quality < 90 ? TJSAMP_420 : TJSAMP_444, quality, 0);
  const std::unique_ptr<unsigned char, FreeJpeg> owned(bytes);
  if (result != 0) Fail(tjGetErrorStr2(handle.get()));
  return {reinterpret_cast<const char*>(bytes), size};
}

}  // namespace tavrel::host
