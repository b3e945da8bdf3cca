#include "bench/generator/OutputFile.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace tavrel::bench {
namespace {

[[noreturn]] void Fail(const std::string& path) {
  throw std::system_error(errno, std::generic_category(), "cannot write \"" + path + "\"");
}

// The permissions that a newly created file would have; mkstemp gives it to its owner only.
mode_t NewFileMode() noexcept {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : target(path) {
  struct stat status {};
  if (path == "-") {
    target = "standard output";
    descriptor = dup(STDOUT_FILENO);
  } else if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  } else {
    // A link to a file stays: the file behind it is replaced.
    std::error_code ignored;
    const std::filesystem::path real = std::filesystem::canonical(path, ignored);
    if (!real.empty()) target = real.string();
    temporary = target + ".XXXXXX";
    descriptor = mkstemp(temporary.data());
    if (descriptor < 0) temporary.clear();
  }
  if (descriptor < 0) Fail(target);
}

OutputFile::~OutputFile() {
  if (descriptor >= 0) close(descriptor);
  if (!temporary.empty()) unlink(temporary.c_str());
}

void OutputFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail(target);
    bytes.remove_prefix(static_cast<std::size_t>(written));
    bytesWritten += static_cast<std::uint64_t>(written);
  }
}

void OutputFile::Commit() {
  if (!temporary.empty() && fchmod(descriptor, NewFileMode()) != 0) Fail(target);
  const int closed = close(descriptor);
  descriptor = -1;
  if (closed != 0) Fail(target);
  if (temporary.empty()) return;
  if (rename(temporary.c_str(), target.c_str()) != 0) Fail(target);
  temporary.clear();
}

}  // namespace tavrel::bench
