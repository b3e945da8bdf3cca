#include "system/FolderListing.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>

namespace tavrel::system {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const noexcept { closedir(folder); }
};

bool IsEntry(std::string_view name) noexcept {
  return name != "." && name != "..";
}

}  // namespace

std::string PathIn(std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path.append(folder);
  if (!folder.ends_with('/')) path += '/';
  return path.append(name);
}

std::vector<std::string> NamesIn(const std::string& folder) {
  const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.c_str()));
  std::vector<std::string> names;
  if (open == nullptr) return names;
  for (;;) {
    errno = 0;
    const dirent* entry =
        readdir(open.get());  // NOLINT(concurrency-mt-unsafe): a stream of its own
    if (entry == nullptr) break;
    if (IsEntry(entry->d_name)) names.emplace_back(entry->d_name);
  }
  if (errno != 0) names.clear();
  std::sort(names.begin(), names.end());
  return names;
}

EntryKind KindOfEntry(const std::string& path) noexcept {
  struct stat state;
  if (stat(path.c_str(), &state) != 0) return EntryKind::Unreadable;
  return S_ISDIR(state.st_mode) ? EntryKind::Folder : EntryKind::Other;
}

}  // namespace tavrel::system
