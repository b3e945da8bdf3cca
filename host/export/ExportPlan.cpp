#include "host/export/ExportPlan.h"

#include "host/library/PlaylistSearch.h"
#include "host/library/PlaylistTree.h"
#include "host/naming/FolderTree.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kLongestFolder =
    1000;  // in bytes; a system's longest paths have four times that

bool IsOwn(const Playlist& playlist) {
  return playlist.isInFile &&
         (playlist.type == PlaylistType::List || playlist.type == PlaylistType::Smart);
}

// The lists in the folder, at any depth.
void ChooseIn(std::size_t folder, const std::vector<Playlist>& playlists,
              const std::vector<TreeEntry>& tree, std::vector<bool>& chosen) {
  std::vector<bool> isInside(playlists.size(), false);
  isInside[folder] = true;
  for (const TreeEntry& entry : tree) {  // each stands behind its folder
    if (entry.parent == kNoParent || !isInside[entry.parent]) continue;
    isInside[entry.playlist] = true;
    if (playlists[entry.playlist].type != PlaylistType::Folder) chosen[entry.playlist] = true;
  }
}

std::string NameOf(const Playlist& playlist) {
  return Compose(playlist.name.value_or(""));
}

// For each playlist the path of the folder that what it holds goes to.
std::vector<std::string> FolderPaths(const std::vector<Playlist>& playlists,
                                     const std::vector<TreeEntry>& tree, FolderTree& names) {
  std::vector<bool> holds(playlists.size(), false);
  for (const TreeEntry& entry : tree) {
    if (entry.parent != kNoParent) holds[entry.parent] = true;
  }
  std::vector<std::string> paths(playlists.size());
  for (const TreeEntry& entry : tree) {
    if (!holds[entry.playlist]) continue;
    const std::string parent = entry.parent == kNoParent ? "" : paths[entry.parent];
    const bool isTooDeep = parent.size() + kLongestFileName > kLongestFolder;
    paths[entry.playlist] =
        isTooDeep ? parent : names.NewFolder(parent, NameOf(playlists[entry.playlist]));
  }
  return paths;
}

}  // namespace

std::vector<bool> ChooseOwn(const std::vector<Playlist>& playlists) {
  std::vector<bool> chosen;
  for (const Playlist& playlist : playlists) chosen.push_back(IsOwn(playlist));
  return chosen;
}

std::vector<bool> ChooseAll(const std::vector<Playlist>& playlists) {
  std::vector<bool> chosen;
  for (const Playlist& playlist : playlists) {
    chosen.push_back(playlist.isInFile && playlist.type != PlaylistType::Folder);
  }
  return chosen;
}

std::vector<bool> ChooseNamed(const std::vector<Playlist>& playlists,
                              const std::vector<std::string>& wanted, const Options& options) {
  std::vector<bool> chosen(playlists.size(), false);
  const std::vector<TreeEntry> tree = MakeTree(playlists);
  for (const std::string& name : wanted) {
    const Playlist& playlist = FindPlaylist(playlists, name, options);
    const auto number = static_cast<std::size_t>(&playlist - playlists.data());
    if (playlist.type == PlaylistType::Folder) {
      ChooseIn(number, playlists, tree, chosen);
    } else {
      chosen[number] = true;
    }
  }
  return chosen;
}

std::vector<PlannedList> PlanLists(const std::vector<Playlist>& playlists,
                                   const std::vector<bool>& chosen, Layout layout,
                                   std::string_view extension) {
  const std::vector<TreeEntry> tree = MakeTree(playlists);
  FolderTree names;
  std::vector<std::string> folders(playlists.size());
  if (layout == Layout::Folders) folders = FolderPaths(playlists, tree, names);
  std::vector<PlannedList> planned(playlists.size());
  for (const bool own : {true, false}) {
    for (const TreeEntry& entry : tree) {
      const Playlist& playlist = playlists[entry.playlist];
      if (playlist.type == PlaylistType::Folder || IsOwn(playlist) != own) continue;
      const std::string folder = entry.parent == kNoParent ? "" : folders[entry.parent];
      planned[entry.playlist] = {&playlist, folder,
                                 names.NewFile(folder, NameOf(playlist), extension)};
    }
  }
  std::vector<PlannedList> lists;
  for (const TreeEntry& entry : tree) {
    const bool isMeant = chosen[entry.playlist] && planned[entry.playlist].playlist != nullptr;
    if (isMeant) lists.push_back(std::move(planned[entry.playlist]));
  }
  return lists;
}

}  // namespace tavrel::host
