#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "system/Environment.h"
#include "system/FolderListing.h"
#include "system/ScriptRunner.h"

namespace tavrel::system {
namespace {

bool IsExecutableFile(const std::string& path) noexcept {
  struct stat state;
  return stat(path.c_str(), &state) == 0 && S_ISREG(state.st_mode) &&
         faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

}  // namespace

std::optional<std::string> FindScriptRunner() {
#if defined(__APPLE__)
  const char* path = "/usr/bin";
#else
  const char* path = TrustedVariable("PATH");
#endif
  std::string_view rest = path == nullptr ? "" : path;
  while (!rest.empty()) {
    const std::string_view folder = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
    if (!folder.starts_with('/')) continue;
    std::string runner = PathIn(folder, "osascript");
    if (IsExecutableFile(runner)) return runner;
  }
  return std::nullopt;
}

}  // namespace tavrel::system
