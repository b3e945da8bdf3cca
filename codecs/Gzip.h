// NSDataAdditions: gzip over byte buffers. Operations keep no state and may run on any thread.
#pragma once

#include <string_view>

#include "system/ByteBuffer.h"

namespace tavrel {

// The decompressed bytes of a gzip or zlib stream (told apart by its header).
// Result: `bytes` itself when it is empty; none when the stream is damaged or cut off, when input
//         or output is larger than system::kLargestFile, or when memory is exhausted. Only the
//         first member counts: whatever follows it is ignored.
[[nodiscard]] system::ByteBuffer gzipInflate(const system::ByteBuffer& bytes) noexcept;

// A gzip stream of `bytes`, at zlib's default level.
// Result: `bytes` itself when it is empty; none when input or output is larger than
//         system::kLargestFile, or when memory is exhausted.
[[nodiscard]] system::ByteBuffer gzipDeflate(const system::ByteBuffer& bytes) noexcept;

// The bytes of a file, inflated when the path's extension is exactly "gz" (case matters); none when
// the file cannot be read or inflated. May throw std::bad_alloc.
[[nodiscard]] system::ByteBuffer dataWithUncompressedContentsOfFile(std::string_view path);

}  // namespace tavrel
