#include "bench/support/ChildRun.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace tavrel::bench {
namespace {

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

int WaitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) Fail("cannot wait for the child process");
  }
  return status;
}

// Ends the child. The answer is short enough for the pipe to take it at once.
[[noreturn]] void Answer(int descriptor, const void* bytes, std::size_t size, int status) noexcept {
  const bool whole = write(descriptor, bytes, size) == static_cast<ssize_t>(size);
  _exit(whole ? status : 2);
}

[[noreturn]] void RunAndAnswer(const std::function<void()>& work, const void* result,
                               std::size_t byteCount, int descriptor) noexcept {
  try {
    work();
    Answer(descriptor, result, byteCount, 0);
  } catch (const std::exception& error) {
    const std::string_view message(error.what());
    Answer(descriptor, message.data(), std::min<std::size_t>(message.size(), 2000), 1);
  }
}

std::string ReadAll(int descriptor) {
  std::string text;
  char piece[512];
  while (true) {
    const ssize_t got = read(descriptor, piece, sizeof piece);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return text;
    text.append(piece, static_cast<std::size_t>(got));
  }
}

// Half of the machine's memory: more would only drive out the input file.
std::uint64_t MostToTouch() noexcept {
  const long pages = sysconf(_SC_PHYS_PAGES);
  const long pageSize = sysconf(_SC_PAGESIZE);
  if (pages <= 0 || pageSize <= 0) return std::uint64_t{1} << 30;
  return static_cast<std::uint64_t>(pages) / 2 * static_cast<std::uint64_t>(pageSize);
}

[[noreturn]] void TouchAndEnd(std::size_t byteCount) noexcept {
  constexpr std::size_t pageSize = 4096;
  void* region =
      mmap(nullptr, byteCount, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (region == MAP_FAILED) _exit(1);
#if defined(MADV_HUGEPAGE)
  madvise(region, byteCount, MADV_HUGEPAGE);
#endif
  auto* bytes = static_cast<volatile unsigned char*>(region);
  for (std::size_t at = 0; at < byteCount; at += pageSize) bytes[at] = 1;
  _exit(0);
}

}  // namespace

void RunInChild(const std::function<void()>& work, void* result, std::size_t byteCount) {
  int ends[2];
  if (pipe(ends) != 0) Fail("cannot make a pipe");
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    RunAndAnswer(work, result, byteCount, ends[1]);
  }
  close(ends[1]);
  const std::string answer = child < 0 ? std::string() : ReadAll(ends[0]);
  close(ends[0]);
  if (child < 0) Fail("cannot start a child process");

  const int status = WaitFor(child);
  if (WIFSIGNALED(status)) {
    throw std::runtime_error(std::string("the child process was ended by: ") +
                             strsignal(WTERMSIG(status)));
  }
  if (WEXITSTATUS(status) != 0) throw std::runtime_error(answer);
  if (answer.size() != byteCount) throw std::runtime_error("the child process gave no answer");
  std::memcpy(result, answer.data(), byteCount);
}

void WarmMemory(std::uint64_t byteCount) {
  const pid_t child = fork();
  if (child < 0) Fail("cannot start a child process");
  if (child == 0) TouchAndEnd(std::min(byteCount, MostToTouch()));
  if (WaitFor(child) != 0) throw std::runtime_error("cannot touch enough memory beforehand");
}

}  // namespace tavrel::bench
