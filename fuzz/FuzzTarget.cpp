#include "fuzz/FuzzTarget.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace tavrel::fuzz {
namespace {

constinit const Target* first = nullptr;
constinit int messages = STDERR_FILENO;

}  // namespace

Target::Target(const char* name, void (*run)(std::string_view input)) noexcept
    : name_(name), run_(run), next_(first) {
  first = this;
}

const Target* Target::First() noexcept {
  return first;
}

void Require(bool condition, const char* what) noexcept {
  if (condition) return;
  dprintf(messages, "%s\n", what);
  std::abort();
}

void KeepStandardError() noexcept {
  const int kept = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
  if (kept >= 0) messages = kept;
}

}  // namespace tavrel::fuzz
