// The library's calls that open, read and look at files and folders, and that make processes: each fails
// when it is its turn.
#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>

#include "tests/fault/FaultPlan.h"
#include "tests/fault/InsideLibrary.h"

using tavrel::test::CallKind;
using tavrel::test::FaultOfNextCall;
using tavrel::test::NextCallFails;

namespace {

constinit int inherited = 0;

void NoteFlags(bool isClosedOnExec) noexcept {
  if (!isClosedOnExec && tavrel::test::IsInsideLibrary()) ++inherited;
}

// What a read of `bytes` bytes may deliver; negative when it fails.
ssize_t AllowedOf(std::size_t bytes) noexcept {
  const tavrel::test::FaultPlan* fault = FaultOfNextCall(CallKind::Read);
  if (fault == nullptr) return static_cast<ssize_t>(bytes);
  errno = fault->error;
  if (fault->shortened == nullptr) return -1;
  return static_cast<ssize_t>(std::min(std::max<std::size_t>(fault->shortened(bytes), 1), bytes));
}

}  // namespace

namespace tavrel::test {

int InheritedDescriptors() noexcept {
  return inherited;
}

}  // namespace tavrel::test

// The names are those that the linker gives to a wrapped function and to the original.
// NOLINTBEGIN(bugprone-reserved-identifier)
#define WRAPPED(result, name, ...)   \
  result __real_##name(__VA_ARGS__); \
  result __wrap_##name(__VA_ARGS__); \
  result __wrap_##name(__VA_ARGS__)

extern "C" {

int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0) {
    va_list rest;
    va_start(rest, flags);
    mode = va_arg(rest, mode_t);
    va_end(rest);
  }
  NoteFlags((flags & O_CLOEXEC) != 0);
  return NextCallFails(CallKind::Open) ? -1 : __real_open(path, flags, mode);
}

WRAPPED(int, memfd_create, const char* name, unsigned flags) {
  NoteFlags((flags & MFD_CLOEXEC) != 0);
  return NextCallFails(CallKind::Open) ? -1 : __real_memfd_create(name, flags);
}
WRAPPED(int, mkostemp, char* pattern, int flags) {
  NoteFlags((flags & O_CLOEXEC) != 0);
  return NextCallFails(CallKind::Open) ? -1 : __real_mkostemp(pattern, flags);
}

WRAPPED(int, fstat, int file, struct stat* state) {
  return NextCallFails(CallKind::Stat) ? -1 : __real_fstat(file, state);
}
WRAPPED(int, stat, const char* path, struct stat* state) {
  return NextCallFails(CallKind::Stat) ? -1 : __real_stat(path, state);
}
WRAPPED(int, lstat, const char* path, struct stat* state) {
  return NextCallFails(CallKind::Stat) ? -1 : __real_lstat(path, state);
}
WRAPPED(int, faccessat, int folder, const char* path, int mode, int flags) {
  return NextCallFails(CallKind::Stat) ? -1 : __real_faccessat(folder, path, mode, flags);
}

WRAPPED(DIR*, opendir, const char* path) {
  return NextCallFails(CallKind::List) ? nullptr : __real_opendir(path);
}
WRAPPED(dirent*, readdir, DIR* folder) {
  return NextCallFails(CallKind::List) ? nullptr : __real_readdir(folder);
}

WRAPPED(ssize_t, read, int file, void* to, std::size_t bytes) {
  const ssize_t allowed = AllowedOf(bytes);
  return allowed < 0 ? -1 : __real_read(file, to, static_cast<std::size_t>(allowed));
}
WRAPPED(ssize_t, pread, int file, void* to, std::size_t bytes, off_t at) {
  const ssize_t allowed = AllowedOf(bytes);
  return allowed < 0 ? -1 : __real_pread(file, to, static_cast<std::size_t>(allowed), at);
}

WRAPPED(pid_t, fork) {
  return NextCallFails(CallKind::Process) ? -1 : __real_fork();
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
