#include "codecs/Gzip.h"

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "codecs/Crc32.h"
#include "system/Files.h"
#include "text/PathNames.h"

namespace tavrel {
namespace {

using system::ByteBuffer;
using system::ZeroedBlock;

constexpr std::size_t kLargest = system::kLargestFile;
constexpr int kGzipOrZlibHeader = 15 + 32;
constexpr int kGzipHeader = 15 + 16;
constexpr int kNoHeader = -15;
constexpr int kMemoryLevel = 8;
constexpr std::size_t kTrailer = 8;  // of a gzip stream: checksum and length

// A bit pair of a deflate stream can stand for 258 bytes: no stream becomes more than 1032 times
// longer.
constexpr std::size_t LargestOutput(std::size_t streamLength) noexcept {
  return static_cast<std::size_t>(
      std::min<std::uint64_t>(std::uint64_t{1032} * streamLength + 64, kLargest));
}

// The output grows inside one block of the largest size that it can reach: pages that are never
// written cost nothing, and nothing is copied on the way. Where the system refuses that much, less
// may do.
ZeroedBlock ReserveOutput(std::size_t largest, std::size_t least, std::size_t& bytes) noexcept {
  for (bytes = largest; bytes >= least; bytes /= 2) {
    const ZeroedBlock block = system::AllocateBlock(bytes);
    if (block.address != nullptr) return block;
  }
  return {};
}

void SetStreams(z_stream& stream, std::string_view input, const ZeroedBlock& output,
                std::size_t outputBytes) noexcept {
  // zlib only reads its input, but declares it without const.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = reinterpret_cast<Bytef*>(output.address);
  stream.avail_out = static_cast<uInt>(outputBytes);
}

ByteBuffer Finish(ZeroedBlock& output, std::size_t length) noexcept {
  system::TrimBlock(output, length);
  return ByteBuffer::Adopt(output, length);
}

// What came of inflating one stream.
struct Inflated {
  bool complete = false;  // the end of the stream was reached, and nothing was wrong with it
  std::size_t taken = 0;  // bytes of input
  std::size_t made = 0;   // bytes of output
};

Inflated InflateInto(const ZeroedBlock& output, std::size_t room, std::string_view input,
                     int windowBits) noexcept {
  z_stream stream{};
  SetStreams(stream, input, output, room);
  if (inflateInit2(&stream, windowBits) != Z_OK) return {};
  int result = Z_OK;
  while (result == Z_OK) result = inflate(&stream, Z_SYNC_FLUSH);
  const Inflated inflated{result == Z_STREAM_END, stream.total_in, stream.total_out};
  return inflateEnd(&stream) == Z_OK ? inflated : Inflated{};
}

// The length of the gzip header at the front; 0 when there is none, or one with more to it than a
// file name.
std::size_t SimpleHeaderLength(std::string_view stream) noexcept {
  constexpr std::size_t kFixedLength = 10;
  constexpr char kHasName = 8;
  if (stream.size() < kFixedLength || !stream.starts_with("\x1F\x8B\x08")) return 0;
  const char flags = stream[3];
  if (flags != kHasName) return flags == 0 ? kFixedLength : 0;
  const std::size_t nameEnd = stream.find('\0', kFixedLength);
  return nameEnd == std::string_view::npos ? 0 : nameEnd + 1;
}

std::uint32_t LittleEndianAt(std::string_view bytes, std::size_t at) noexcept {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) {
    value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  }
  return value;
}

// The quick way for the usual gzip file: a block of just the size that its last field says, and a
// checksum that takes a part of the time of zlib's own. Nothing unless everything fits
// together, so that zlib would have given the same; it has to look at the stream afresh then.
std::optional<ByteBuffer> InflateUsualFile(std::string_view stream) noexcept {
  const std::size_t header = SimpleHeaderLength(stream);
  if (!IsCrc32Fast() || header == 0 || stream.size() < header + kTrailer) return std::nullopt;
  const std::size_t room = LittleEndianAt(stream, stream.size() - 4);
  if (room == 0 || room > LargestOutput(stream.size())) return std::nullopt;

  ZeroedBlock output = system::AllocateBlock(room);
  if (output.address == nullptr) return std::nullopt;
  const Inflated inflated = InflateInto(output, room, stream.substr(header), kNoHeader);
  const std::string_view trailer = stream.substr(header + inflated.taken);
  if (!inflated.complete || trailer.size() < kTrailer ||
      LittleEndianAt(trailer, 0) != Crc32({output.address, inflated.made}) ||
      LittleEndianAt(trailer, 4) != inflated.made) {
    system::ReleaseBlock(output);
    return std::nullopt;
  }
  return Finish(output, inflated.made);
}

}  // namespace

ByteBuffer gzipInflate(const ByteBuffer& bytes) noexcept {
  if (bytes.size() == 0) return bytes;
  if (bytes.size() > kLargest) return {};
  if (const auto result = InflateUsualFile(bytes.view())) return *result;

  std::size_t room = 0;
  const std::size_t least = std::min(bytes.size() + bytes.size() / 2, kLargest);
  ZeroedBlock output = ReserveOutput(LargestOutput(bytes.size()), least, room);
  if (output.address == nullptr) return {};
  const Inflated inflated = InflateInto(output, room, bytes.view(), kGzipOrZlibHeader);
  if (!inflated.complete) {
    system::ReleaseBlock(output);
    return {};
  }
  return Finish(output, inflated.made);
}

ByteBuffer gzipDeflate(const ByteBuffer& bytes) noexcept {
  if (bytes.size() == 0) return bytes;
  if (bytes.size() > kLargest) return {};

  // More than zlib's own bound for any level: an eighth and a bit for codes, and the gzip frame.
  const std::size_t size = bytes.size();
  std::size_t room = 0;
  ZeroedBlock output = ReserveOutput(std::min(size + size / 8 + size / 64 + 64, kLargest), 1, room);
  if (output.address == nullptr) return {};

  z_stream stream{};
  SetStreams(stream, bytes.view(), output, room);
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipHeader, kMemoryLevel,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    system::ReleaseBlock(output);
    return {};
  }
  const bool complete = deflate(&stream, Z_FINISH) == Z_STREAM_END;
  const std::size_t length = stream.total_out;
  deflateEnd(&stream);
  if (!complete) {
    system::ReleaseBlock(output);
    return {};
  }
  return Finish(output, length);
}

ByteBuffer dataWithUncompressedContentsOfFile(std::string_view path) {
  const ByteBuffer bytes = system::ReadFileBytes(std::string(path).c_str());
  const bool compressed = text::SplitExtension(path).extension == "gz";
  return bytes && compressed ? gzipInflate(bytes) : bytes;
}

}  // namespace tavrel
