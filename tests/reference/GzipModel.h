// Inflating by the letter: a zero-filled output of half as much again as the input, which grows by
// half the input whenever it is full.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel::test {

// `input` must not be empty. An input of one byte grows by nothing, and so never succeeds with
// output.
inline std::optional<std::string> ModelInflate(std::string_view input) {
  const auto length = static_cast<std::uint32_t>(input.size());
  const std::uint32_t half = length / 2;
  std::string output(length + half, '\0');
  z_stream stream{};
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
  stream.avail_in = length;
  if (inflateInit2(&stream, 47) != Z_OK) return std::nullopt;
  int result = Z_OK;
  while (result == Z_OK) {
    if (stream.total_out >= output.size()) output.resize(output.size() + half);
    stream.next_out = reinterpret_cast<Bytef*>(output.data()) + stream.total_out;
    stream.avail_out = static_cast<uInt>(output.size() - stream.total_out);
    result = inflate(&stream, Z_SYNC_FLUSH);
  }
  const std::size_t made = stream.total_out;
  if (inflateEnd(&stream) != Z_OK || result != Z_STREAM_END) return std::nullopt;
  output.resize(made);
  return output;
}

}  // namespace tavrel::test
