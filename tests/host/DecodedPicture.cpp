#include "tests/host/DecodedPicture.h"

#include <jpeglib.h>
#include <png.h>
#include <stdio.h>  // before jpeglib.h, which needs it

#include <stdexcept>

namespace tavrel::test {
namespace {

std::optional<DecodedPicture> DecodePng(std::string_view bytes) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) return {};
  image.format = PNG_FORMAT_RGBA;
  DecodedPicture picture{image.width, image.height, {}};
  picture.pixels.resize(std::size_t{image.width} * image.height);
  if (png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr) == 0) return {};
  if (image.warning_or_error != 0) return {};
  return picture;
}

[[noreturn]] void GiveUp(j_common_ptr) {
  throw std::runtime_error("JPEG");
}

void GiveUpOnWarnings(j_common_ptr, int level) {
  if (level < 0) throw std::runtime_error("JPEG");
}

struct Decoder : jpeg_decompress_struct {
  Decoder() : jpeg_decompress_struct() {
    err = jpeg_std_error(&errors);
    errors.error_exit = GiveUp;
    errors.emit_message = GiveUpOnWarnings;
    jpeg_CreateDecompress(this, JPEG_LIB_VERSION, sizeof(jpeg_decompress_struct));
  }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder() { jpeg_destroy_decompress(this); }

  jpeg_error_mgr errors{};
};

std::optional<DecodedPicture> DecodeJpeg(std::string_view bytes) try {
  Decoder decoder;
  jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  jpeg_read_header(&decoder, TRUE);
  decoder.out_color_space = JCS_RGB;
  jpeg_start_decompress(&decoder);
  DecodedPicture picture{decoder.output_width, decoder.output_height, {}};
  std::vector<unsigned char> row(std::size_t{decoder.output_width} * 3);
  while (decoder.output_scanline < decoder.output_height) {
    unsigned char* rows[] = {row.data()};
    jpeg_read_scanlines(&decoder, rows, 1);
    for (std::size_t x = 0; x < row.size(); x += 3) {
      picture.pixels.push_back({row[x], row[x + 1], row[x + 2], 255});
    }
  }
  jpeg_finish_decompress(&decoder);
  return picture;
} catch (const std::runtime_error&) {
  return std::nullopt;
}

}  // namespace

std::optional<DecodedPicture> Decode(std::string_view bytes) {
  return bytes.starts_with("\xFF\xD8") ? DecodeJpeg(bytes) : DecodePng(bytes);
}

}  // namespace tavrel::test
