#include "host/output/MessageGuard.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <new>
#include <string>

#include "host/output/Output.h"

namespace tavrel::host {
namespace {

// A file without a name; negative when there can be none.
int OpenNamelessFile() noexcept {
  char path[] = P_tmpdir "/tavrel-XXXXXX";
  const int descriptor = ::mkostemp(path, O_CLOEXEC);
  if (descriptor >= 0) ::unlink(path);
  return descriptor;
}

std::string ReadFromStart(int descriptor) {
  std::string text;
  char piece[4096];
  ::lseek(descriptor, 0, SEEK_SET);
  for (ssize_t count; (count = ::read(descriptor, piece, sizeof piece)) > 0;) {
    text.append(piece, static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

MessageGuard::MessageGuard() noexcept
    : kept_(OpenNamelessFile()),
      original_(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
  if (IsKeeping()) ::dup2(kept_, STDERR_FILENO);
}

MessageGuard::~MessageGuard() {
  Show();
  if (IsKeeping()) ::dup2(original_, STDERR_FILENO);
  ::close(kept_);
  ::close(original_);
}

void MessageGuard::Show() noexcept {
  if (!IsKeeping()) return;
  ::dup2(original_, STDERR_FILENO);
  try {
    const std::string text = ReadFromStart(kept_);
    if (::isatty(original_) == 1) {
      ShowMessages(text);
    } else {
      PassOnMessages(text);
    }
  } catch (const std::bad_alloc&) {
    // Messages that there is no memory for are lost.
  }
  Discard();
  ::dup2(kept_, STDERR_FILENO);
}

void MessageGuard::Discard() noexcept {
  if (kept_ < 0 || ::ftruncate(kept_, 0) != 0) return;
  ::lseek(kept_, 0, SEEK_SET);
}

void MessageGuard::KeepForTerminalsOnly() noexcept {
  if (!IsKeeping() || ::isatty(original_) == 1) return;
  Show();
  ::dup2(original_, STDERR_FILENO);
  ::close(kept_);
  kept_ = -1;
}

}  // namespace tavrel::host
