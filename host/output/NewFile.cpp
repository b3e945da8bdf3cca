#include "host/output/NewFile.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "host/output/Failure.h"
#include "system/Files.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kWriteSize = 1 << 16;

[[noreturn]] void Fail(const std::string& path, int error) {
  throw WriteFailure(path, error);
}

}  // namespace

WriteFailure::WriteFailure(const std::string& path, int number, const char* what)
    : Failure(ExitCode::Failed,
              std::string("cannot ").append(what) + " " + path + ": " + std::strerror(number)),
      number_(number) {}

bool WriteFailure::IsOfTheDisk() const noexcept {
  constexpr std::array kErrors{ENOSPC, EDQUOT, EROFS, EIO, ENODEV, ENXIO};
  return std::find(kErrors.begin(), kErrors.end(), number_) != kErrors.end();
}

NewFile::NewFile(std::string path) : path_(std::move(path)) {
  const std::string folder = path_.substr(0, path_.rfind('/') + 1);  // empty: the current one
  for (int number = 0; descriptor_ < 0; ++number) {
    temporary_ = folder + ".tavrel-" + std::to_string(::getpid()) + "-" + std::to_string(number);
    descriptor_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ < 0 && errno != EEXIST) Fail(path_, errno);
  }
}

NewFile::~NewFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void NewFile::Write(std::string_view bytes) {
  // What is large already is not copied once more.
  const bool isLarge = bytes.size() >= kWriteSize;
  if (!isLarge) waiting_ += bytes;
  if (!isLarge && waiting_.size() < kWriteSize) return;
  RequireNoEndingSignal();
  Flush();
  if (isLarge) WriteOut(bytes);
}

void NewFile::WriteOut(std::string_view bytes) {
  if (!system::WriteFully(descriptor_, bytes)) Fail(path_, errno);
}

void NewFile::Flush() {
  WriteOut(waiting_);
  waiting_.clear();
}

bool NewFile::Finish(IfThere ifThere) {
  Flush();
  const int closed = ::close(std::exchange(descriptor_, -1));
  if (closed != 0) Fail(path_, errno);  // some file systems tell only now that they are full
  if (ifThere == IfThere::Keep) return TakeFreeName();
  Replace();
  return true;
}

// The link takes the place of the temporary file. What leads to the file through a link leads to it as well.
bool NewFile::LinkTo(const std::string& file) {
  return ::unlink(temporary_.c_str()) == 0 &&
         ::linkat(AT_FDCWD, file.c_str(), AT_FDCWD, temporary_.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

void NewFile::Replace() {
  if (::rename(temporary_.c_str(), path_.c_str()) != 0) Fail(path_, errno);
  temporary_.clear();
}

// False when the name is taken.
bool NewFile::TakeFreeName() {
  // A second name, which the system gives only if it is free; the temporary one goes later.
  if (::link(temporary_.c_str(), path_.c_str()) == 0) return true;
  if (errno == EEXIST) return false;
  return RenameToFreeName();
}

// For file systems that know no second names.
bool NewFile::RenameToFreeName() {
#if defined(__APPLE__)
  const int result = ::renamex_np(temporary_.c_str(), path_.c_str(), RENAME_EXCL);
#else
  const int result =
      ::renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, path_.c_str(), RENAME_NOREPLACE);
#endif
  if (result != 0 && errno == EEXIST) return false;
  if (result != 0) Fail(path_, errno);
  temporary_.clear();
  return true;
}

bool WriteNewFile(const std::string& path, std::string_view bytes, IfThere ifThere) {
  if (ifThere == IfThere::Keep && IsTaken(path)) return false;  // saves the work; asked again below
  NewFile file(path);
  file.Write(bytes);
  return file.Finish(ifThere);
}

bool IsTaken(const std::string& path) noexcept {
  struct stat state;
  return ::lstat(path.c_str(), &state) == 0;
}

bool HoldsText(const std::string& path, std::string_view text) {
  std::size_t size = 0;
  if (!system::OpenRegularFile(path.c_str(), size) || size != text.size()) return false;
  return system::ReadFileBytes(path.c_str()).view() == text;
}

void MakeFolders(const std::string& path) {
  if (::mkdir(path.c_str(), 0777) == 0) return;
  const std::string parent = path.substr(0, path.find_last_not_of('/') + 1);
  const std::size_t slash = parent.rfind('/');
  if (errno == ENOENT && slash != std::string::npos && slash > 0) {
    MakeFolders(parent.substr(0, slash));
    if (::mkdir(path.c_str(), 0777) == 0) return;
  }
  struct stat state;
  const int error = errno;
  const bool isThere =
      error == EEXIST && ::stat(path.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
  if (!isThere) throw WriteFailure(path, error, "make");
}

void RequireNoEndingSignal() {
  if (system::EndingSignalWaits()) throw Failure(ExitCode::Failed, "");
}

}  // namespace tavrel::host
