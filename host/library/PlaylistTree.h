// Playlists in their folders.
#pragma once

#include <cstddef>
#include <vector>

#include "host/library/Playlists.h"

namespace tavrel::host {

struct TreeEntry {
  std::size_t playlist;  // its number
  std::size_t depth;     // the folders around it
  std::size_t parent;    // the number of the folder that holds it; kNoParent at the top
};

inline constexpr std::size_t kNoParent = static_cast<std::size_t>(-1);

// All playlists, each below the folder that holds it, else in their order. A folder that is not there, or
// that stands within itself, holds nothing.
[[nodiscard]] std::vector<TreeEntry> MakeTree(const std::vector<Playlist>& playlists);

}  // namespace tavrel::host
