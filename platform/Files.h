// Reading files. Only regular files are read, and they are opened close-on-exec and
// non-blocking, so that a FIFO or a device in place of a file cannot hang the host.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/ByteBuffer.h"
#include "platform/Memory.h"

namespace tavrel::platform {

// A larger file counts as unreadable: every size and sum of sizes stays within 32 bits.
inline constexpr std::int64_t kLargestFile = (std::int64_t{1} << 31) - (std::int64_t{1} << 20);

// An open descriptor, closed with the object; negative when there is none.
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor = -1) noexcept : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept;
  FileDescriptor& operator=(FileDescriptor&&) = delete;
  ~FileDescriptor();

  [[nodiscard]] explicit operator bool() const noexcept { return descriptor_ >= 0; }
  [[nodiscard]] int get() const noexcept { return descriptor_; }
  // Leaves the descriptor open, and to the caller.
  [[nodiscard]] int Release() noexcept { return std::exchange(descriptor_, -1); }

 private:
  int descriptor_;
};

// path: NUL-terminated, borrowed.
// size: receives the file's size in bytes.
// Nothing is open when the file is missing, unreadable, not regular or larger than kLargestFile.
[[nodiscard]] FileDescriptor OpenRegularFile(const char* path, std::size_t& size) noexcept;

// The same for a file of any size.
[[nodiscard]] FileDescriptor OpenRegularFile(const char* path) noexcept;

// Reads up to `bytes` bytes from position `offset`; the descriptor's own position is neither used
// nor moved.
// Result: how many there were, fewer at the file's end or when an error stops the reading.
[[nodiscard]] std::size_t ReadAt(int descriptor, std::uint64_t offset, void* to,
                                 std::size_t bytes) noexcept;

// The file's bytes; none when it cannot be read.
[[nodiscard]] ByteBuffer ReadFileBytes(const char* path) noexcept;

// A file's text in one zero-filled block, with at least one zero byte behind it.
struct FileText {
  ZeroedBlock block;             // empty: the file could not be read, or is not UTF-8
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

}  // namespace tavrel::platform
