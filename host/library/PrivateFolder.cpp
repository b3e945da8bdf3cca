#include "host/library/PrivateFolder.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "host/output/Failure.h"
#include "system/BlockedSignals.h"

namespace tavrel::host {

namespace {

using system::BlockedSignals;
using system::kEndingSignals;

// Enough to stand in a folder below which nothing is read.
#if defined(O_PATH)
constexpr int kStandIn = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int kStandIn = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

constexpr int kMostNames = 100;  // that are tried until one is free

constexpr const char* kTakenOver = "another program has put something else in its place";

// What the signal handler removes. It changes only while the ending signals are blocked.
const PrivateFolder* activeFolder = nullptr;

std::string FolderForTemporaryFiles() {
  const char* chosen = ::getenv("TMPDIR");
  return std::filesystem::absolute(chosen != nullptr && *chosen != '\0' ? chosen : P_tmpdir);
}

// "tavrel-" and letters that nobody can guess; empty when the system has no randomness.
std::string UnguessableName() {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz234567";
  std::array<std::uint8_t, 10> bytes{};
  if (::getentropy(bytes.data(), bytes.size()) != 0) return {};
  std::string name = "tavrel-";
  for (const std::uint8_t byte : bytes) name += kLetters[byte % kLetters.size()];
  return name;
}

bool IsPrivateFolder(const struct stat& state) noexcept {
  return S_ISDIR(state.st_mode) && state.st_uid == ::geteuid() && (state.st_mode & 077) == 0;
}

bool IsSame(const struct stat& one, const struct stat& other) noexcept {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

void SetHandlers(void (*handler)(int)) noexcept {
  for (const int number : kEndingSignals) {
    struct sigaction action {};
    ::sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action.sa_handler = handler;
    for (const int other : kEndingSignals) ::sigaddset(&action.sa_mask, other);
    ::sigaction(number, &action, nullptr);
  }
}

}  // namespace

void RemoveActiveFolder() noexcept {
  if (activeFolder != nullptr) activeFolder->Remove();
}

namespace {

extern "C" void EndBySignal(int number) {
  RemoveActiveFolder();
  // The signal is blocked while its handler runs; its default action ends the program on return.
  ::signal(number, SIG_DFL);
  ::raise(number);
}

}  // namespace

PrivateFolder::PrivateFolder()
    : parentPath_(FolderForTemporaryFiles()), parent_(::open(parentPath_.c_str(), kStandIn)) {
  if (!parent_) Fail(std::strerror(errno));
  const auto blocked = BlockedSignals::Ending();
  MakeUnderFreeName();
  activeFolder = this;
  SetHandlers(&EndBySignal);
  const std::string failed = OpenWhatWasMade();
  if (failed.empty()) return;
  Release();
  Fail(failed);
}

PrivateFolder::~PrivateFolder() {
  const auto blocked = BlockedSignals::Ending();
  Release();
}

void PrivateFolder::MakeUnderFreeName() {
  for (int tries = 0;; ++tries) {
    name_ = UnguessableName();
    if (name_.empty()) Fail(std::strerror(errno));
    path_ = parentPath_ + "/" + name_;
    if (::mkdirat(parent_.get(), name_.c_str(), 0700) == 0) break;
    if (errno != EEXIST || tries == kMostNames) Fail(std::strerror(errno));
  }
  // What stands there now may be somebody else's; nothing has been put into it yet.
  if (::fstatat(parent_.get(), name_.c_str(), &identity_, AT_SYMLINK_NOFOLLOW) != 0) {
    const int error = errno;
    ::unlinkat(parent_.get(), name_.c_str(), AT_REMOVEDIR);
    Fail(std::strerror(error));
  }
  if (!IsPrivateFolder(identity_)) Fail(kTakenOver);
}

std::string PrivateFolder::OpenWhatWasMade() {
  folder_.emplace(
      ::openat(parent_.get(), name_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat opened {};
  if (!*folder_ || ::fstat(folder_->get(), &opened) != 0) return std::strerror(errno);
  if (IsPrivateFolder(opened) && IsSame(opened, identity_)) return {};
  folder_.reset();
  return kTakenOver;
}

template <typename Make>
void PrivateFolder::Add(const std::string& name, int removal, Make make) {
  const auto blocked = BlockedSignals::Ending();
  entries_.push_back({name, removal});
  if (make()) return;
  const int error = errno;
  entries_.pop_back();
  Fail(std::strerror(error));
}

void PrivateFolder::MakeFolder(const std::string& name) {
  Add(name, AT_REMOVEDIR, [&] { return ::mkdirat(folder_->get(), name.c_str(), 0700) == 0; });
}

void PrivateFolder::MakeLink(const std::string& name, const std::string& target) {
  Add(name, 0, [&] { return ::symlinkat(target.c_str(), folder_->get(), name.c_str()) == 0; });
}

system::FileDescriptor PrivateFolder::MakeFile(const std::string& name) {
  int file = -1;
  Add(name, 0, [&] {
    file = ::openat(folder_->get(), name.c_str(),
                    O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    return file >= 0;
  });
  return system::FileDescriptor(file);
}

bool PrivateFolder::IsInPlace() const noexcept {
  struct stat now {};
  if (::fstatat(parent_.get(), name_.c_str(), &now, AT_SYMLINK_NOFOLLOW) != 0) return true;
  return IsPrivateFolder(now) && IsSame(now, identity_);
}

void PrivateFolder::Remove() const noexcept {
  if (folder_ && *folder_) {
    for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
      ::unlinkat(folder_->get(), entry->name.c_str(), entry->removal);
    }
  }
  if (IsInPlace()) ::unlinkat(parent_.get(), name_.c_str(), AT_REMOVEDIR);
}

void PrivateFolder::Release() noexcept {
  SetHandlers(SIG_DFL);
  Remove();
  activeFolder = nullptr;
}

void PrivateFolder::Fail(const std::string& reason) const {
  throw Failure(
      ExitCode::Failed,
      "cannot make a temporary folder below " + parentPath_ + ": " + reason +
          "\n  Reading this library needs one; set TMPDIR to a folder that can be written to.");
}

}  // namespace tavrel::host
