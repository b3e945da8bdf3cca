// Reading files of UTF-8 text.
#pragma once

#include <cstddef>

#include "system/Memory.h"

namespace tavrel::text {

// A file's text in one zero-filled block, with at least one zero byte behind it.
struct FileText {
  system::ZeroedBlock block;     // empty: the file could not be read, or is not UTF-8
  std::size_t length = 0;        // of the whole file, in bytes
  std::size_t lengthToZero = 0;  // of the text before the first zero byte
};

// Reads a file as UTF-8 text. The caller owns the block.
[[nodiscard]] FileText ReadFileText(const char* path) noexcept;

// Reads up to `size` bytes as UTF-8 text. It is checked piece by piece while it is still in the
// processor's cache, so that it is read from memory only once.
// text:   its block has room for one byte more, is zero-filled and stays the caller's; the lengths
//         are received, and undefined on failure.
// Result: whether it could be read and is UTF-8.
[[nodiscard]] bool ReadText(int descriptor, std::size_t size, FileText& text) noexcept;

}  // namespace tavrel::text
