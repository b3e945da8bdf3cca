#include "system/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "system/Uninterrupted.h"

namespace tavrel::system {
namespace {

FileDescriptor OpenAndCheck(const char* path, struct stat& state) noexcept {
  FileDescriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  const bool regular = file && fstat(file.get(), &state) == 0 && S_ISREG(state.st_mode);
  return regular ? std::move(file) : FileDescriptor();
}

}  // namespace

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileDescriptor::~FileDescriptor() {
  if (descriptor_ >= 0) close(descriptor_);
}

FileDescriptor OpenRegularFile(const char* path, std::size_t& size) noexcept {
  struct stat state = {};
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
    const ssize_t got = Uninterrupted([&] {
      return pread(descriptor, static_cast<char*>(to) + filled, bytes - filled,
                   static_cast<off_t>(offset + filled));
    });
    if (got <= 0) break;
    filled += static_cast<std::size_t>(got);
  }
  return filled;
}

std::ptrdiff_t ReadFully(int descriptor, char* to, std::size_t bytes) noexcept {
  std::size_t filled = 0;
  while (filled < bytes) {
    const ssize_t got =
        Uninterrupted([&] { return read(descriptor, to + filled, bytes - filled); });
    if (got < 0) return -1;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  return static_cast<std::ptrdiff_t>(filled);
}

bool WriteFully(int descriptor, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t written =
        Uninterrupted([&] { return write(descriptor, bytes.data(), bytes.size()); });
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

ByteBuffer ReadFileBytes(const char* path) noexcept {
  std::size_t size = 0;
  const FileDescriptor file = OpenRegularFile(path, size);
  if (!file) return {};
  ZeroedBlock block = AllocateBlock(size + 1);
  if (block.address == nullptr) return {};
  const std::ptrdiff_t length = ReadFully(file.get(), block.address, size);
  if (length < 0) {
    ReleaseBlock(block);
    return {};
  }
  return ByteBuffer::Adopt(block, static_cast<std::size_t>(length));
}

}  // namespace tavrel::system
