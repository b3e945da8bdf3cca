#include "system/SystemLog.h"

#include <errno.h>
#include <stdlib.h>
#include <sys/uio.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "system/BlockedSignals.h"
#include "system/Uninterrupted.h"

namespace tavrel::system {
namespace {

constexpr std::size_t kMostPieces = 6;

const char* ProgramName() noexcept {
#if defined(__APPLE__)
  return getprogname();
#else
  return program_invocation_short_name;
#endif
}

// "2013-04-14 19:33:22.123 program[1234] "
std::string_view Heading(char* buffer, std::size_t size) noexcept {
  timespec now{};
  tm local{};
  clock_gettime(CLOCK_REALTIME, &now);
  localtime_r(&now.tv_sec, &local);
  const int length = std::snprintf(buffer, size, "%04d-%02d-%02d %02d:%02d:%02d.%03ld %.200s[%ld] ",
                                   local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                                   local.tm_hour, local.tm_min, local.tm_sec, now.tv_nsec / 1000000,
                                   ProgramName(), static_cast<long>(getpid()));
  return {buffer, std::min(static_cast<std::size_t>(std::max(length, 0)), size - 1)};
}

// A host whose standard error nobody reads lives on.
void WriteAll(iovec* parts, std::size_t count) noexcept {
  NoPipeSignal noPipeSignal;
  while (count > 0) {
    const ssize_t written =
        Uninterrupted([&] { return writev(STDERR_FILENO, parts, static_cast<int>(count)); });
    if (written < 0) {  // there is nowhere to report it
      if (errno == EPIPE) noPipeSignal.NoteBrokenPipe();
      return;
    }
    auto rest = static_cast<std::size_t>(written);
    while (count > 0 && rest >= parts->iov_len) {
      rest -= parts->iov_len;
      ++parts;
      --count;
    }
    if (count > 0) {
      parts->iov_base = static_cast<char*>(parts->iov_base) + rest;
      parts->iov_len -= rest;
    }
  }
}

}  // namespace

void Log(std::initializer_list<std::string_view> pieces) noexcept {
  const int savedError = errno;
  char headingText[320];
  iovec parts[kMostPieces + 2];
  std::size_t count = 0;
  const auto add = [&](std::string_view text) {
    // writev() only reads what it is given; its record has no const form.
    parts[count++] = {const_cast<char*>(text.data()), text.size()};
  };
  add(Heading(headingText, sizeof headingText));
  std::string_view last;
  for (const std::string_view piece : pieces) {
    if (piece.empty() || count > kMostPieces) continue;
    add(piece);
    last = piece;
  }
  if (!last.ends_with('\n')) add("\n");
  WriteAll(parts, count);
  errno = savedError;
}

}  // namespace tavrel::system
