#include "host/copying/FileCopier.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#if defined(__linux__)
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "system/Files.h"
#include "system/Uninterrupted.h"

namespace tavrel::host {
namespace {

constexpr std::uint64_t kCopiedAtOnce = 1 << 20;
// What is written before the disk is asked to keep it: less takes longer, more lets a user wait who wants the
// program to end.
constexpr std::uint64_t kBetweenSyncs = 32 * kCopiedAtOnce;
constexpr std::int64_t kSameTime = 2;  // seconds

struct FileState {
  std::uint64_t size;
  timespec read;  // last
  timespec changed;
  dev_t device;
  ino_t number;
};

FileState StateOf(const struct stat& state) {
#if defined(__APPLE__)
  const timespec read = state.st_atimespec;
  const timespec changed = state.st_mtimespec;
#else
  const timespec read = state.st_atim;
  const timespec changed = state.st_mtim;
#endif
  return {static_cast<std::uint64_t>(state.st_size), read, changed, state.st_dev, state.st_ino};
}

[[noreturn]] void FailToRead(const std::string& path, int error) {
  throw Failure(ExitCode::Failed, "cannot read " + path + ": " + std::strerror(error));
}

[[noreturn]] void FailChanged(const std::string& path) {
  throw Failure(ExitCode::Failed, path + " has changed while it was copied");
}

FileState SourceState(const std::string& path) {
  struct stat state = {};
  if (::stat(path.c_str(), &state) != 0) FailToRead(path, errno);
  if (!S_ISREG(state.st_mode)) throw Failure(ExitCode::Failed, path + " is no file");
  return StateOf(state);
}

std::int64_t Seconds(timespec time) {
  return time.tv_sec;
}

bool IsSameTime(timespec one, timespec other) {
  const std::int64_t apart = Seconds(one) - Seconds(other);
  return apart >= -kSameTime && apart <= kSameTime;
}

bool HaveSameBytes(int one, int other, std::uint64_t size) {
  std::string left(kCopiedAtOnce, '\0');
  std::string right(kCopiedAtOnce, '\0');
  for (std::uint64_t at = 0; at < size; at += kCopiedAtOnce) {
    const auto count = static_cast<std::size_t>(std::min(kCopiedAtOnce, size - at));
    if (system::ReadAt(one, at, left.data(), count) != count) return false;
    if (system::ReadAt(other, at, right.data(), count) != count) return false;
    if (std::memcmp(left.data(), right.data(), count) != 0) return false;
  }
  return true;
}

// Where a file system has no times to set, or not for us, the bytes tell that a file is the same.
void SetTimes(int descriptor, const FileState& state) {
  const std::array times{state.read, state.changed};
  (void)::futimens(descriptor, times.data());
}

// Whether the file that stands there, with another time, is the same for all that; it gets the time then.
bool IsSameFile(const std::string& source, const std::string& target, const FileState& wanted) {
  const system::FileDescriptor one = system::OpenRegularFile(source.c_str());
  const system::FileDescriptor other = system::OpenRegularFile(target.c_str());
  if (!one || !other || !HaveSameBytes(one.get(), other.get(), wanted.size)) return false;
  SetTimes(other.get(), wanted);
  return true;
}

// What is there under the target's name, if anything is.
std::optional<CopyEnd> WhatIsThere(const std::string& source, const std::string& target,
                                   const FileState& wanted) {
  struct stat there = {};
  if (::lstat(target.c_str(), &there) != 0) return std::nullopt;
  if (!S_ISREG(there.st_mode)) return CopyEnd::Differs;
  const FileState state = StateOf(there);
  if (state.device == wanted.device && state.number == wanted.number) return CopyEnd::Left;
  if (state.size != wanted.size) return CopyEnd::Differs;
  const bool isSame =
      IsSameTime(state.changed, wanted.changed) || IsSameFile(source, target, wanted);
  return isSame ? CopyEnd::Left : CopyEnd::Differs;
}

// Lets the two files share what the first one holds, where the file system can.
bool ShareBlocks([[maybe_unused]] int from, [[maybe_unused]] int to) {
#if defined(FICLONE)
  return ::ioctl(to, FICLONE, from) == 0;
#else
  return false;
#endif
}

// Some file systems know of no such wish; they are believed.
void Sync(int descriptor, const std::string& target) {
  const int result = system::Uninterrupted([descriptor] { return ::fsync(descriptor); });
  if (result != 0 && errno != EINVAL && errno != ENOTSUP) throw WriteFailure(target, errno);
}

// What the system still holds in memory says nothing about the disk.
void ForgetCached([[maybe_unused]] int descriptor) {
#if defined(POSIX_FADV_DONTNEED)
  (void)::posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
#endif
}

void Verify(int from, std::uint64_t size, const std::string& target, const NewFile& file) {
  const system::FileDescriptor written = system::OpenRegularFile(file.TemporaryPath().c_str());
  if (!written) FailToRead(file.TemporaryPath(), errno);
  ForgetCached(written.get());
  struct stat state = {};
  const bool isWhole = ::fstat(written.get(), &state) == 0 && StateOf(state).size == size &&
                       HaveSameBytes(from, written.get(), size);
  if (!isWhole) {
    throw Failure(ExitCode::Failed,
                  "cannot write " + target + ": what was written is not what is read again");
  }
}

}  // namespace

bool FileCopier::Foresee(const std::string& source, const std::string& target,
                         bool force) noexcept {
  struct stat wanted = {};
  struct stat there = {};
  if (::stat(source.c_str(), &wanted) != 0) return false;
  if (::lstat(target.c_str(), &there) != 0) return true;
  const bool isSame = S_ISREG(there.st_mode) && there.st_size == wanted.st_size;
  return !isSame && force;
}

CopyEnd FileCopier::Copy(const std::string& source, const std::string& target) {
  const FileState wanted = SourceState(source);
  const std::optional<CopyEnd> there = WhatIsThere(source, target, wanted);
  if (there == CopyEnd::Left) return CopyEnd::Left;
  if (there == CopyEnd::Differs && !options_.force) return CopyEnd::Differs;
  const IfThere ifThere = there ? IfThere::Replace : IfThere::Keep;
  if (options_.byLinks) {
    NewFile file(target);
    if (Link(source, file)) return file.Finish(ifThere) ? CopyEnd::Linked : CopyEnd::Differs;
  }
  NewFile file(target);
  Fill(source, target, file);
  return file.Finish(ifThere) ? CopyEnd::Copied : CopyEnd::Differs;
}

bool FileCopier::Link(const std::string& source, NewFile& file) {
  const bool isDone = file.LinkTo(source);
  if (!isDone && whyNotLinked_.empty()) whyNotLinked_ = std::strerror(errno);
  return isDone;
}

void FileCopier::Fill(const std::string& source, const std::string& target, NewFile& file) {
  const system::FileDescriptor from = system::OpenRegularFile(source.c_str());
  struct stat before = {};
  if (!from || ::fstat(from.get(), &before) != 0) FailToRead(source, errno);
  const FileState state = StateOf(before);
  const bool isShared = ShareBlocks(from.get(), file.Descriptor());
  if (isShared) onBytes_(state.size);
  const std::uint64_t written = isShared ? state.size : Write(from.get(), state.size, target, file);
  SetTimes(file.Descriptor(), state);
  Sync(file.Descriptor(), target);
  struct stat after = {};
  if (::fstat(from.get(), &after) != 0) FailToRead(source, errno);
  const FileState now = StateOf(after);
  const bool hasChanged = now.size != state.size || now.changed.tv_sec != state.changed.tv_sec ||
                          now.changed.tv_nsec != state.changed.tv_nsec;
  if (hasChanged) FailChanged(source);
  if (written != state.size) FailToRead(source, EIO);
  if (!isShared) Verify(from.get(), state.size, target, file);
}

std::uint64_t FileCopier::Write(int from, std::uint64_t size, const std::string& target,
                                NewFile& file) {
  bool isInSystem = true;
  std::uint64_t kept = 0;  // by the disk
  std::uint64_t at = 0;
  while (at < size) {
    RequireNoEndingSignal();
    std::uint64_t written = 0;
    if (isInSystem) written = WriteInSystem(from, at, size, target, file);
    isInSystem = written != 0;
    if (!isInSystem) written = WritePiece(from, at, target, file);
    if (written == 0) break;
    at += written;
    onBytes_(written);
    if (at - kept < kBetweenSyncs) continue;
    Sync(file.Descriptor(), target);
    kept = at;
  }
  return at;
}

std::uint64_t FileCopier::WriteInSystem([[maybe_unused]] int from,
                                        [[maybe_unused]] std::uint64_t at,
                                        [[maybe_unused]] std::uint64_t size,
                                        [[maybe_unused]] const std::string& target,
                                        [[maybe_unused]] NewFile& file) {
#if defined(__linux__)
  auto offset = static_cast<off_t>(at);
  const auto count = static_cast<std::size_t>(std::min(kCopiedAtOnce, size - at));
  const ssize_t written = ::copy_file_range(from, &offset, file.Descriptor(), nullptr, count, 0);
  if (written > 0) return static_cast<std::uint64_t>(written);
  if (written < 0 && (errno == ENOSPC || errno == EDQUOT || errno == EFBIG)) {
    throw WriteFailure(target, errno);
  }
#endif
  return 0;  // what else is wrong shows when it is done piece by piece
}

std::uint64_t FileCopier::WritePiece(int from, std::uint64_t at, const std::string& target,
                                     NewFile& file) {
  buffer_.resize(kCopiedAtOnce);
  const std::size_t count = system::ReadAt(from, at, buffer_.data(), buffer_.size());
  if (!system::WriteFully(file.Descriptor(), std::string_view(buffer_).substr(0, count))) {
    throw WriteFailure(target, errno);
  }
  return count;
}

}  // namespace tavrel::host
