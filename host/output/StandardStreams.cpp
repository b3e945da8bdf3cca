#include "host/output/StandardStreams.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
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

void PrepareStandardDescriptors() noexcept {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    // Opens at the lowest free number, which is this one.
    if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) ::open("/dev/null", O_RDONLY);
  }
  ::signal(SIGPIPE, SIG_IGN);
}

MessageGuard::MessageGuard(Messages kept) noexcept {
  if (kept == Messages::OnATerminal && ::isatty(STDERR_FILENO) != 1) return;
  kept_ = OpenNamelessFile();
  terminal_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  if (kept_ >= 0 && terminal_ >= 0) ::dup2(kept_, STDERR_FILENO);
}

MessageGuard::~MessageGuard() {
  Show();
  if (kept_ >= 0 && terminal_ >= 0) ::dup2(terminal_, STDERR_FILENO);
  ::close(kept_);
  ::close(terminal_);
}

void MessageGuard::Show() noexcept {
  if (kept_ < 0 || terminal_ < 0) return;
  ::dup2(terminal_, STDERR_FILENO);
  try {
    ShowMessages(ReadFromStart(kept_));
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

}  // namespace tavrel::host
