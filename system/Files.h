// Reading and writing files. Only regular files are read, and they are opened close-on-exec and
// non-blocking, so that a FIFO or a device in place of a file cannot hang the host.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "system/ByteBuffer.h"
#include "system/Memory.h"

namespace tavrel::system {

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

// Reads up to `bytes` bytes from the descriptor's position on, fewer only at the file's end; -1 on an
// error, and errno says which.
[[nodiscard]] std::ptrdiff_t ReadFully(int descriptor, char* to, std::size_t bytes) noexcept;

// Writes all of the bytes from the descriptor's position on; false on an error, and errno says which.
[[nodiscard]] bool WriteFully(int descriptor, std::string_view bytes) noexcept;

// The file's bytes; none when it cannot be read.
[[nodiscard]] ByteBuffer ReadFileBytes(const char* path) noexcept;

}  // namespace tavrel::system
