#include "host/output/NewFile.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "host/output/Failure.h"
#include "system/BlockedSignals.h"
#include "system/Files.h"

namespace tavrel::host {
namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
  throw Failure(ExitCode::Failed, "cannot write " + path + ": " + std::strerror(error));
}

// A file of its own beside `path`, removed with the object unless it has got its name.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& path) : target_(path) {
    const std::string folder = path.substr(0, path.rfind('/') + 1);  // empty: the current one
    for (int number = 0; descriptor_ < 0; ++number) {
      path_ = folder + ".tavrel-" + std::to_string(::getpid()) + "-" + std::to_string(number);
      descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (descriptor_ < 0 && errno != EEXIST) Fail(target_, errno);
    }
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!path_.empty()) ::unlink(path_.c_str());
  }

  void Write(std::string_view bytes) {
    if (!system::WriteFully(descriptor_, bytes)) Fail(target_, errno);
    const int closed = ::close(descriptor_);
    descriptor_ = -1;
    if (closed != 0) Fail(target_, errno);  // some file systems tell only now that they are full
  }

  void Replace() {
    if (::rename(path_.c_str(), target_.c_str()) != 0) Fail(target_, errno);
    path_.clear();
  }

  // False when the name is taken.
  bool TakeFreeName() {
    // A second name, which the system gives only if it is free; the temporary one goes later.
    if (::link(path_.c_str(), target_.c_str()) == 0) return true;
    if (errno == EEXIST) return false;
    return RenameToFreeName();
  }

 private:
  // For file systems that know no second names.
  bool RenameToFreeName() {
#if defined(__APPLE__)
    const int result = ::renamex_np(path_.c_str(), target_.c_str(), RENAME_EXCL);
#else
    const int result =
        ::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE);
#endif
    if (result != 0 && errno == EEXIST) return false;
    if (result != 0) Fail(target_, errno);
    path_.clear();
    return true;
  }

  const std::string& target_;
  std::string path_;
  int descriptor_ = -1;
};

bool IsTaken(const std::string& path) noexcept {
  struct stat state;
  return ::lstat(path.c_str(), &state) == 0;
}

}  // namespace

bool WriteNewFile(const std::string& path, std::string_view bytes, IfThere ifThere) {
  if (ifThere == IfThere::Keep && IsTaken(path)) return false;  // saves the work; asked again below
  // None comes between the making of a temporary file and its end.
  const auto blocked = system::BlockedSignals::Ending();
  TemporaryFile file(path);
  file.Write(bytes);
  if (ifThere == IfThere::Keep) return file.TakeFreeName();
  file.Replace();
  return true;
}

}  // namespace tavrel::host
