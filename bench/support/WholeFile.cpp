#include "bench/support/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <stdexcept>
#include <system_error>

namespace tavrel::bench {

WholeFile::WholeFile(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  struct stat status {};
  if (descriptor_ < 0 || fstat(descriptor_, &status) != 0) {
    const int error = errno;
    if (descriptor_ >= 0) close(descriptor_);
    throw std::system_error(error, std::generic_category(), "cannot read \"" + path + "\"");
  }
  size_ = static_cast<std::size_t>(status.st_size);
}

WholeFile::~WholeFile() {
  close(descriptor_);
}

void WholeFile::ReadInto(char* buffer) const {
  for (std::size_t got = 0; got < size_;) {
    const ssize_t piece = read(descriptor_, buffer + got, size_ - got);
    if (piece < 0 && errno == EINTR) continue;
    if (piece <= 0) throw std::runtime_error("cannot read the file to its end");
    got += static_cast<std::size_t>(piece);
  }
}

Buffer ReadWholeFile(const std::string& path, std::size_t& size) {
  const WholeFile file(path);
  size = file.size();
  Buffer buffer(static_cast<char*>(std::malloc(size + 1)));
  if (buffer == nullptr) throw std::bad_alloc();
  file.ReadInto(buffer.get());
  buffer.get()[size] = '\0';
  return buffer;
}

std::string ContentsOf(const std::string& path) {
  const WholeFile file(path);
  std::string contents(file.size(), '\0');
  file.ReadInto(contents.data());
  if (contents.empty()) throw std::runtime_error("\"" + path + "\" is empty");
  return contents;
}

}  // namespace tavrel::bench
