#include "host/output/Output.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "host/output/Failure.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kBufferSize = 1 << 16;

}  // namespace

int WriteAll(int descriptor, std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      // A terminal or pipe that somebody else has made non-blocking.
      pollfd wait{descriptor, POLLOUT, 0};
      ::poll(&wait, 1, -1);
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

void Output::PageLongOutput() {
  pagerCommand_ = PagerCommand();
  if (pagerCommand_.empty()) return;
  rowsLeft_ = RowsOfTerminal();
  messages_.emplace(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

// The last row is left to the prompt.
void Output::StartPagerWhenLong(std::string_view text) {
  const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  rowsLeft_ -= std::min(rowsLeft_, lines);
  if (rowsLeft_ > 0) return;
  pager_.emplace(pagerCommand_, messages_->get());
  pagerCommand_.clear();
}

void Output::Finish() {
  Flush();
  pager_.reset();
}

void Output::Write(std::string_view text) {
  if (!pagerCommand_.empty()) StartPagerWhenLong(text);
  buffer_ += text;
  if (buffer_.size() >= kBufferSize) Flush();
}

void Output::Flush() {
  const bool isPaged = pager_ && pager_->IsRunning();
  const int error = WriteAll(isPaged ? pager_->Descriptor() : STDOUT_FILENO, buffer_);
  buffer_.clear();
  if (error == EPIPE && isPaged) throw Failure(ExitCode::Done, "");
  if (error == EPIPE) throw Failure(ExitCode::Failed, "");
  if (error != 0) {
    throw Failure(ExitCode::Failed,
                  std::string("cannot write to standard output: ") + std::strerror(error));
  }
}

}  // namespace tavrel::host
