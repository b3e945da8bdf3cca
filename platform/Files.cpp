#include "platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/Utf8.h"

namespace tavrel::platform {
namespace {

// Small enough to stay in the second-level cache until it is checked; with smaller ones the calls
// begin to count.
constexpr std::size_t kPiece = std::size_t{128} << 10;

// Reads up to `bytes` bytes, fewer only at the end of the file; -1 on an error.
ssize_t ReadPiece(int descriptor, char* to, std::size_t bytes) noexcept {
  std::size_t filled = 0;
  while (filled < bytes) {
    const ssize_t got = read(descriptor, to + filled, bytes - filled);
    if (got == 0) break;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return -1;
    filled += static_cast<std::size_t>(got);
  }
  return static_cast<ssize_t>(filled);
}

FileDescriptor OpenAndCheck(const char* path, struct stat& state) noexcept {
  FileDescriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  const bool regular = file && fstat(file.get(), &state) == 0 && S_ISREG(state.st_mode);
  return regular ? std::move(file) : FileDescriptor();
}

// Follows a text that arrives in pieces, some of which end inside a character.
class TextProgress {
 public:
  // Whether the first `length` bytes may still become valid text.
  bool Accepts(const char* text, std::size_t length) noexcept {
    const TextPrefix prefix = ValidTextPrefix(text + valid_, length - valid_);
    if (lengthToZero_ == valid_) lengthToZero_ += prefix.lengthToZero;
    valid_ += prefix.length;
    return length - valid_ < 4;  // at most the start of one character is open
  }
  [[nodiscard]] std::size_t valid() const noexcept { return valid_; }
  [[nodiscard]] std::size_t lengthToZero() const noexcept { return lengthToZero_; }

 private:
  std::size_t valid_ = 0;
  std::size_t lengthToZero_ = 0;
};

}  // namespace

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileDescriptor::~FileDescriptor() {
  if (descriptor_ >= 0) close(descriptor_);
}

FileDescriptor OpenRegularFile(const char* path, std::size_t& size) noexcept {
  struct stat state;
  FileDescriptor file = OpenAndCheck(path, state);
  if (!file || state.st_size > kLargestFile) return FileDescriptor();
  size = static_cast<std::size_t>(state.st_size);
  return file;
}

FileDescriptor OpenRegularFile(const char* path) noexcept {
  struct stat state;
  return OpenAndCheck(path, state);
}

std::size_t ReadAt(int descriptor, std::uint64_t offset, void* to, std::size_t bytes) noexcept {
  std::size_t filled = 0;
  while (filled < bytes) {
    const ssize_t got = pread(descriptor, static_cast<char*>(to) + filled, bytes - filled,
                              static_cast<off_t>(offset + filled));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    filled += static_cast<std::size_t>(got);
  }
  return filled;
}

ByteBuffer ReadFileBytes(const char* path) noexcept {
  std::size_t size = 0;
  const FileDescriptor file = OpenRegularFile(path, size);
  if (!file) return {};
  ZeroedBlock block = AllocateBlock(size + 1);
  if (block.address == nullptr) return {};
  const ssize_t length = ReadPiece(file.get(), block.address, size);
  if (length < 0) {
    ReleaseBlock(block);
    return {};
  }
  return ByteBuffer::Adopt(block, static_cast<std::size_t>(length));
}

FileText ReadFileText(const char* path) noexcept {
  std::size_t size = 0;
  const FileDescriptor file = OpenRegularFile(path, size);
  if (!file) return {};
  FileText text{AllocateBlock(size + 1)};
  if (text.block.address == nullptr) return {};
  if (ReadText(file.get(), size, text)) return text;
  ReleaseBlock(text.block);
  return {};
}

bool ReadText(int descriptor, std::size_t size, FileText& text) noexcept {
  TextProgress progress;
  text.length = 0;
  while (text.length < size) {
    const std::size_t wanted = std::min(kPiece, size - text.length);
    const ssize_t got = ReadPiece(descriptor, text.block.address + text.length, wanted);
    if (got < 0) return false;
    if (got == 0) break;  // the file has become shorter
    text.length += static_cast<std::size_t>(got);
    if (!progress.Accepts(text.block.address, text.length)) return false;
  }
  text.lengthToZero = progress.lengthToZero();
  return progress.valid() == text.length;
}

}  // namespace tavrel::platform
