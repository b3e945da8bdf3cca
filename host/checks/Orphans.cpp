#include "host/checks/Orphans.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace tavrel::host {
namespace {

using Identity = std::pair<dev_t, ino_t>;

std::optional<Identity> IdentityOf(const std::string& path) noexcept {
  struct stat state {};
  if (::stat(path.c_str(), &state) != 0) return std::nullopt;
  return Identity(state.st_dev, state.st_ino);
}

bool IsLitter(std::string_view name) noexcept {
  constexpr std::array<std::string_view, 4> kLitter{"Thumbs.db", "desktop.ini", "cover.jpg",
                                                    "cover.png"};
  return name.starts_with('.') || std::find(kLitter.begin(), kLitter.end(), name) != kLitter.end();
}

// All files below the folder that are not claimed by their paths.
void AddUnclaimed(const std::string& top, const NamedFiles& claimed, Folders& folders,
                  std::vector<std::string>& found) {
  std::vector<std::string> waiting{top};
  std::string path;
  while (!waiting.empty()) {
    const FolderContents* folder = folders.At(waiting.back());
    waiting.pop_back();
    if (folder == nullptr) continue;
    for (const FolderEntry& entry : folder->Entries()) {
      if (entry.isOfSong || IsLitter(entry.name)) continue;
      path = folder->Path();
      path += entry.name;
      if (entry.kind != EntryKind::Link && folder->IsFolder(entry)) {
        waiting.push_back(path);
      } else if (!claimed.Holds(path) && folder->IsFile(entry)) {
        found.push_back(path);
      }
    }
  }
}

void RemoveClaimed(const NamedFiles& claimed, std::vector<std::string>& found) {
  std::set<Identity> identities;
  claimed.ForEachHere([&](std::string_view path) {
    if (const auto identity = IdentityOf(std::string(path))) identities.insert(*identity);
  });
  const auto isClaimed = [&](const std::string& path) {
    const auto identity = IdentityOf(path);
    return !identity || identities.contains(*identity);
  };
  found.erase(std::remove_if(found.begin(), found.end(), isClaimed), found.end());
}

}  // namespace

std::vector<std::string> FindOrphans(const std::set<std::string>& musicFolders,
                                     const NamedFiles& claimed, Folders& folders) {
  std::vector<std::string> found;
  for (const std::string& folder : musicFolders) AddUnclaimed(folder, claimed, folders, found);
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  if (!found.empty()) RemoveClaimed(claimed, found);
  return found;
}

}  // namespace tavrel::host
