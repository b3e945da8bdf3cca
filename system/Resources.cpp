#include "system/Resources.h"

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#if defined(__APPLE__)
#include <mach-o/dyld.h>
#endif

namespace tavrel::system {
namespace {

constinit char chosenFolder[PATH_MAX] = {};

std::string ExecutablePath() {
  char path[PATH_MAX] = {};
#if defined(__APPLE__)
  uint32_t size = sizeof path;
  if (_NSGetExecutablePath(path, &size) != 0) return {};
#else
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
  if (length < 0) return {};
#endif
  return path;
}

std::string ResourceFolder() {
  if (chosenFolder[0] != '\0') return chosenFolder;
  std::string path = ExecutablePath();
  path.erase(path.rfind('/') + 1);
  return path + "resources";
}

}  // namespace

void SetResourceFolder(std::string_view folder) noexcept {
  const bool fits = folder.size() < sizeof chosenFolder;
  std::memset(chosenFolder, 0, sizeof chosenFolder);
  if (fits && !folder.empty()) std::memcpy(chosenFolder, folder.data(), folder.size());
}

std::optional<std::string> PathForResource(std::string_view baseName, std::string_view extension) {
  if (baseName.empty() && extension.empty()) return std::nullopt;
  std::string path = ResourceFolder();
  path.append("/").append(baseName);
  if (!extension.empty()) path.append(".").append(extension);
  struct stat state;
  if (stat(path.c_str(), &state) != 0) return std::nullopt;
  return path;
}

}  // namespace tavrel::system
