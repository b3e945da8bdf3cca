#include "host/output/MessageGuard.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "host/output/Failure.h"
#include "host/output/Output.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kCaptureSize = 1 << 16;

MessageGuard* activeGuard = nullptr;

std::string CleanLines(std::string_view text) {
  std::string clean;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    AppendClean(clean, text.substr(0, end));
    if (end < text.size()) clean += '\n';
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return clean;
}

// A file without a name.
system::FileDescriptor OpenNamelessFile() noexcept {
#if defined(__linux__)
  const int inMemory = ::memfd_create("messages", MFD_CLOEXEC);
  if (inMemory >= 0) return system::FileDescriptor(inMemory);
#endif
  char path[] = P_tmpdir "/tavrel-XXXXXX";
  const int descriptor = ::mkostemp(path, O_CLOEXEC);
  if (descriptor >= 0) ::unlink(path);
  return system::FileDescriptor(descriptor);
}

// How much of `text`, which goes on, can be shown now: its whole lines, or of a very long line all but a
// character that may not be complete.
std::size_t ReadyPart(std::string_view text) {
  const std::size_t lines = text.rfind('\n') + 1;  // 0 when there is none
  if (lines > 0 || text.size() < kCaptureSize) return lines;
  std::size_t end = text.size();
  while (end > 0 && (static_cast<unsigned char>(text[end - 1]) & 0xC0u) == 0x80u) --end;
  return end > 0 ? end - 1 : text.size();
}

void CopyCleaned(int from, int to) {
  std::string waiting;
  char piece[kCaptureSize];
  ::lseek(from, 0, SEEK_SET);
  for (;;) {
    const std::ptrdiff_t count = system::ReadFully(from, piece, sizeof piece);
    if (count <= 0) break;
    waiting.append(piece, static_cast<std::size_t>(count));
    const std::size_t ready = ReadyPart(waiting);
    WriteAll(to, CleanLines(std::string_view(waiting).substr(0, ready)));
    waiting.erase(0, ready);
  }
  if (!waiting.empty()) WriteAll(to, CleanLines(waiting) + '\n');
}

}  // namespace

void Complain(const std::string& message) {
  const std::string text = CleanLines("tavrel: " + message) + '\n';
  if (activeGuard != nullptr) activeGuard->Show();
  WriteAll(activeGuard != nullptr ? activeGuard->original_.get() : STDERR_FILENO, text);
}

std::int64_t LoggedBytes() noexcept {
  return activeGuard != nullptr ? ::lseek(activeGuard->kept_.get(), 0, SEEK_END) : 0;
}

MessageGuard::MessageGuard(LogLines lines)
    : lines_(lines),
      kept_(OpenNamelessFile()),
      original_(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
  if (!kept_ || !original_ || ::dup2(kept_.get(), STDERR_FILENO) < 0) {
    throw Failure(ExitCode::Failed,
                  std::string("cannot keep the library's messages: ") + std::strerror(errno));
  }
  activeGuard = this;
}

MessageGuard::~MessageGuard() {
  Show();
  activeGuard = nullptr;
  ::dup2(original_.get(), STDERR_FILENO);
}

void MessageGuard::Show() noexcept {
  try {
    if (lines_ == LogLines::Shown) CopyCleaned(kept_.get(), original_.get());
  } catch (const std::bad_alloc&) {
    // Messages that there is no memory for are lost.
  }
  Discard();
}

void MessageGuard::Discard() noexcept {
  if (::ftruncate(kept_.get(), 0) == 0) ::lseek(kept_.get(), 0, SEEK_SET);
}

}  // namespace tavrel::host
