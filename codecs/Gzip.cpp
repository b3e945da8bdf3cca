#include "codecs/Gzip.h"

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <string>

#include "platform/Files.h"
#include "platform/PathNames.h"

namespace tavrel {
namespace {

using platform::ByteBuffer;
using platform::ZeroedBlock;

constexpr std::size_t kLargest = platform::kLargestFile;
constexpr int kGzipOrZlibHeader = 15 + 32;
constexpr int kGzipHeader = 15 + 16;
constexpr int kMemoryLevel = 8;

// The output grows inside one block of the largest size that it can reach: pages that are never
// written cost nothing, and nothing is copied on the way. Where the system refuses that much, less
// may do.
ZeroedBlock ReserveOutput(std::size_t largest, std::size_t least, std::size_t& bytes) noexcept {
  for (bytes = std::min(largest, kLargest); bytes >= least; bytes /= 2) {
    const ZeroedBlock block = platform::AllocateBlock(bytes);
    if (block.address != nullptr) return block;
  }
  return {};
}

Bytef* AsOutput(const ZeroedBlock& block) noexcept {
  return reinterpret_cast<Bytef*>(block.address);
}

void SetStreams(z_stream& stream, const ByteBuffer& input, const ZeroedBlock& output,
                std::size_t outputBytes) noexcept {
  // zlib only reads its input, but declares it without const.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = AsOutput(output);
  stream.avail_out = static_cast<uInt>(outputBytes);
}

ByteBuffer Finish(ZeroedBlock& output, std::size_t length) noexcept {
  platform::TrimBlock(output, length);
  return ByteBuffer::Adopt(output, length);
}

}  // namespace

ByteBuffer gzipInflate(const ByteBuffer& bytes) noexcept {
  if (bytes.size() == 0) return bytes;
  if (bytes.size() > kLargest) return {};

  // A bit pair of a deflate stream can stand for 258 bytes: no stream becomes more than 1032 times
  // longer.
  const std::size_t least = std::min(bytes.size() + bytes.size() / 2, kLargest);
  std::size_t room = 0;
  ZeroedBlock output = ReserveOutput(1032 * bytes.size() + 64, least, room);
  if (output.address == nullptr) return {};

  z_stream stream{};
  SetStreams(stream, bytes, output, room);
  if (inflateInit2(&stream, kGzipOrZlibHeader) != Z_OK) {
    platform::ReleaseBlock(output);
    return {};
  }
  int result = Z_OK;
  while (result == Z_OK) result = inflate(&stream, Z_SYNC_FLUSH);
  const std::size_t length = stream.total_out;
  if (inflateEnd(&stream) != Z_OK || result != Z_STREAM_END) {
    platform::ReleaseBlock(output);
    return {};
  }
  return Finish(output, length);
}

ByteBuffer gzipDeflate(const ByteBuffer& bytes) noexcept {
  if (bytes.size() == 0) return bytes;
  if (bytes.size() > kLargest) return {};

  // More than zlib's own bound for any level: an eighth and a bit for codes, and the gzip frame.
  const std::size_t size = bytes.size();
  std::size_t room = 0;
  ZeroedBlock output = ReserveOutput(size + size / 8 + size / 64 + 64, 1, room);
  if (output.address == nullptr) return {};

  z_stream stream{};
  SetStreams(stream, bytes, output, room);
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipHeader, kMemoryLevel,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    platform::ReleaseBlock(output);
    return {};
  }
  const bool complete = deflate(&stream, Z_FINISH) == Z_STREAM_END;
  const std::size_t length = stream.total_out;
  deflateEnd(&stream);
  if (!complete) {
    platform::ReleaseBlock(output);
    return {};
  }
  return Finish(output, length);
}

ByteBuffer dataWithUncompressedContentsOfFile(std::string_view path) {
  const ByteBuffer bytes = platform::ReadFileBytes(std::string(path).c_str());
  const bool compressed = platform::SplitExtension(path).extension == "gz";
  return bytes && compressed ? gzipInflate(bytes) : bytes;
}

}  // namespace tavrel
