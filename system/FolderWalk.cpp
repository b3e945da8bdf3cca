#include "system/FolderWalk.h"

#include <sys/stat.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "system/FolderListing.h"

namespace tavrel::system {
namespace {

// Whether a folder itself stands there, and not a link to one.
bool IsFolder(const std::string& path) noexcept {
  struct stat state;
  return lstat(path.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

}  // namespace

FolderWalk::FolderWalk(std::string folder) : path_(std::move(folder)) {
  if (!path_.ends_with('/')) path_ += '/';
  topLength_ = path_.size();
  Enter();
}

std::optional<std::string_view> FolderWalk::Next() {
  while (!levels_.empty()) {
    Level& level = levels_.back();
    if (level.toCome.empty()) {
      levels_.pop_back();
      continue;
    }
    path_.resize(level.pathLength);
    path_ += level.toCome.back();
    level.toCome.pop_back();
    if (!path_.ends_with('/')) return std::string_view(path_).substr(topLength_);
    Enter();
  }
  return std::nullopt;
}

// Reads the folder that the path, which ends in a '/', leads to.
void FolderWalk::Enter() {
  Level level{NamesIn(path_), path_.size()};
  const std::size_t count = level.toCome.size();
  for (std::size_t i = 0; i < count; ++i) {
    path_.resize(level.pathLength);
    path_ += level.toCome[i];
    if (IsFolder(path_)) level.toCome.push_back(level.toCome[i] + '/');
  }
  std::sort(level.toCome.begin(), level.toCome.end(), std::greater<>());
  levels_.push_back(std::move(level));
}

}  // namespace tavrel::system
