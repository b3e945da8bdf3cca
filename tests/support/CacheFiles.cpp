#include "tests/support/CacheFiles.h"

#include <algorithm>

namespace tavrel::test {
namespace {

void Put(std::string& bytes, std::size_t at, std::string_view text) {
  bytes.replace(at, text.size(), text);
}

std::string Begun(std::string_view start, std::size_t count) {
  return std::string(start) + Filler(count - start.size());
}

}  // namespace

std::string Number(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

std::string CacheHeader(std::uint32_t length, std::string_view tag) {
  std::string header(std::clamp<std::size_t>(length, 28, 4096), '\0');
  Put(header, 0, Number(length));
  Put(header, 4, tag);
  for (std::size_t i = 8; i < 28; ++i) header[i] = static_cast<char>(i);
  return header;
}

std::string Bytes(const Block& block) {
  const bool old = block.imageStart == 196;
  const bool shifted = block.imageStart == 216;
  const std::size_t code = shifted ? 52 : 48;
  const std::size_t dataTag = old ? 192 : shifted ? 208 : 204;
  const std::size_t start = old || shifted || block.imageStart == 212 ? block.imageStart : 208;
  std::string bytes(start, '\0');
  Put(bytes, 0,
      Number(block.length.value_or(static_cast<std::uint32_t>(start + block.image.size()))));
  Put(bytes, 4, block.tag);
  Put(bytes, 8, Number(block.imageStart));
  Put(bytes, code, block.code);
  Put(bytes, code + 8, Number(block.width));
  Put(bytes, code + 12, Number(block.height));
  Put(bytes, dataTag, block.dataTag);
  return bytes + block.image;
}

std::string Filler(std::size_t count) {
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>(1 + i * 7 % 100);
  return bytes;
}

std::string LikePng(std::size_t count) {
  return Begun("\x89PNG\r\n", count);
}

std::string LikeJpeg(std::size_t count) {
  return Begun("\xFF\xD8\xFF", count);
}

}  // namespace tavrel::test
