#include "host/output/Output.h"

#include <errno.h>
#include <poll.h>
#include <unistd.h>

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

void Output::Write(std::string_view text) {
  buffer_ += text;
  if (buffer_.size() >= kBufferSize) Flush();
}

void Output::Flush() {
  const int error = WriteAll(STDOUT_FILENO, buffer_);
  buffer_.clear();
  if (error == EPIPE) throw Failure(ExitCode::Failed, "");
  if (error != 0) {
    throw Failure(ExitCode::Failed,
                  std::string("cannot write to standard output: ") + std::strerror(error));
  }
}

}  // namespace tavrel::host
