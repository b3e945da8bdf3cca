// Artwork cache files, put together byte by byte.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel::test {

// A number as cache files hold it, most significant byte first.
[[nodiscard]] std::string Number(std::uint32_t value);

// The header of a cache file; its block is as long as it says, from 28 bytes on.
[[nodiscard]] std::string CacheHeader(std::uint32_t length = 284, std::string_view tag = "itch");

struct Block {
  std::string image = {};
  std::string code = "PNGf";
  std::uint32_t width = 600;
  std::uint32_t height = 600;
  std::uint32_t imageStart = 208;  // the number at offset 8; it decides where everything stands
  std::string tag = "item";
  std::string dataTag = "data";
  std::optional<std::uint32_t> length = {};  // what the block claims
};

[[nodiscard]] std::string Bytes(const Block& block);

// A JPEG code as the usual layout has it, and as other files do.
inline const std::string kJpegCode("\x0D\0\0\0", 4);
inline const std::string kJpegCodeBigEndian("\0\0\0\x0D", 4);

// `count` bytes that differ from their neighbours and begin like no picture.
[[nodiscard]] std::string Filler(std::size_t count);

// What begins like a picture.
[[nodiscard]] std::string LikePng(std::size_t count);
[[nodiscard]] std::string LikeJpeg(std::size_t count);

}  // namespace tavrel::test
