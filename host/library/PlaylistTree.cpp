#include "host/library/PlaylistTree.h"

#include "host/library/TextHash.h"

namespace tavrel::host {
namespace {

// For each playlist the number of the folder that it names.
std::vector<std::size_t> NamedParents(const std::vector<Playlist>& playlists) {
  TextMap<std::size_t> byId;
  for (std::size_t i = 0; i < playlists.size(); ++i) {
    if (!playlists[i].id.empty()) byId.try_emplace(playlists[i].id, i);
  }
  std::vector<std::size_t> parents;
  for (const Playlist& playlist : playlists) {
    const auto parent = byId.find(playlist.parent);
    parents.push_back(playlist.parent.empty() || parent == byId.end() ? kNoParent : parent->second);
  }
  return parents;
}

class TreeMaker {
 public:
  explicit TreeMaker(const std::vector<std::size_t>& parents)
      : parents_(parents), children_(parents.size()), isPlaced_(parents.size(), false) {
    for (std::size_t i = 0; i < parents.size(); ++i) {
      if (parents[i] != kNoParent) children_[parents[i]].push_back(i);
    }
  }

  std::vector<TreeEntry> Make() {
    for (std::size_t i = 0; i < parents_.size(); ++i) {
      if (parents_[i] == kNoParent) Place(i);
    }
    // What is left stands in circles, or below one: the first of each opens it.
    for (std::size_t i = 0; i < parents_.size(); ++i) {
      if (!isPlaced_[i]) Place(i);
    }
    return std::move(tree_);
  }

 private:
  // With all that is below it; without recursion, since folders may stand as deep as the file is long.
  void Place(std::size_t top) {
    std::vector<TreeEntry> waiting{{top, 0, kNoParent}};
    while (!waiting.empty()) {
      const TreeEntry entry = waiting.back();
      waiting.pop_back();
      if (isPlaced_[entry.playlist]) continue;
      isPlaced_[entry.playlist] = true;
      tree_.push_back(entry);
      const std::vector<std::size_t>& below = children_[entry.playlist];
      for (auto child = below.rbegin(); child != below.rend(); ++child) {
        waiting.push_back({*child, entry.depth + 1, entry.playlist});
      }
    }
  }

  const std::vector<std::size_t>& parents_;
  std::vector<std::vector<std::size_t>> children_;
  std::vector<bool> isPlaced_;
  std::vector<TreeEntry> tree_;
};

}  // namespace

std::vector<TreeEntry> MakeTree(const std::vector<Playlist>& playlists) {
  const std::vector<std::size_t> parents = NamedParents(playlists);
  return TreeMaker(parents).Make();
}

}  // namespace tavrel::host
