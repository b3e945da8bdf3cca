#include "host/files/Folders.h"

#include <algorithm>

namespace tavrel::host {
namespace {

constexpr std::size_t kMostFolders = 8;  // folders that are alike lie side by side by accident only
constexpr std::size_t kMostMissing = 4;

}  // namespace

bool Folders::IsKnownAsMissing(const std::string& path) const noexcept {
  return std::any_of(missing_.begin(), missing_.end(), [&path](const std::string& folder) {
    return path.size() > folder.size() && path[folder.size()] == '/' && path.starts_with(folder);
  });
}

FolderContents* Folders::At(const std::string& path) {
  if (IsKnownAsMissing(path)) return nullptr;
  const auto [known, isNew] = known_.try_emplace(path);
  if (!isNew) return known->second.get();
  std::optional<FolderContents> folder = FolderContents::Read(path);
  if (!folder) {
    // The old folder of music of another machine, mostly.
    std::string highest = missing_.size() < kMostMissing ? HighestMissing(path) : path;
    if (highest != path) missing_.push_back(std::move(highest));
    return nullptr;
  }
  ++listings_;
  known->second = std::make_unique<FolderContents>(std::move(*folder));
  return known->second.get();
}

std::vector<FolderContents*> Folders::Below(FolderContents& folder, std::string_view name) {
  std::vector<FolderContents*> found;
  if (name == "." || name == "..") return found;
  const auto add = [&](std::string_view own) {
    if (FolderContents* below = At(folder.Path() + std::string(own))) found.push_back(below);
  };
  if (!folder.IsListed()) {
    add(name);  // it may be entered all the same
    return found;
  }
  if (const FolderEntry* exact = folder.Find(name); exact != nullptr && folder.IsFolder(*exact)) {
    add(name);
  }
  for (const FolderEntry* alike : folder.FindAlike(name)) {
    if (alike->name != name && folder.IsFolder(*alike)) add(alike->name);
  }
  return found;
}

std::vector<FolderContents*> Folders::Alike(std::string_view base, std::string_view tail) {
  std::vector<FolderContents*> reached;
  if (FolderContents* first = At(std::string(base))) reached.push_back(first);
  while (!reached.empty() && !tail.empty()) {
    const std::size_t end = std::min(tail.find('/'), tail.size());
    const std::string_view name = tail.substr(0, end);
    tail.remove_prefix(std::min(end + 1, tail.size()));
    if (name.empty()) continue;
    std::vector<FolderContents*> next;
    for (FolderContents* folder : reached) {
      const std::vector<FolderContents*> below = Below(*folder, name);
      next.insert(next.end(), below.begin(), below.end());
    }
    if (next.size() > kMostFolders) next.resize(kMostFolders);
    reached = std::move(next);
  }
  return reached;
}

std::vector<std::string> Folders::Unlisted() const {
  std::vector<std::string> paths;
  for (const auto& [path, folder] : known_) {
    if (folder != nullptr && !folder->IsListed()) paths.push_back(path);
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

}  // namespace tavrel::host
