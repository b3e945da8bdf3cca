// Which playlists are exported, and to which files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/library/Options.h"
#include "host/library/Playlists.h"

namespace tavrel::host {

struct PlannedList {
  const Playlist* playlist;
  std::string folder;  // relative to the folder of the export; empty for that itself
  std::string path;    // likewise
};

enum class Layout { Folders, Flat };

// For each playlist whether the user has made it: no folder, nothing built-in.
[[nodiscard]] std::vector<bool> ChooseOwn(const std::vector<Playlist>& playlists);

// For each whether it is a list of the file: all of them but the folders.
[[nodiscard]] std::vector<bool> ChooseAll(const std::vector<Playlist>& playlists);

// Those that are named, as FindPlaylist finds them; of a folder, the lists in it at any depth. What names
// none is a Failure. options: those that were given.
[[nodiscard]] std::vector<bool> ChooseNamed(const std::vector<Playlist>& playlists,
                                            const std::vector<std::string>& wanted,
                                            const Options& options);

// The chosen ones in the order of the tree. Each has the file that it would have if all were chosen, so that an
// export of some fits one of all; the user's own have the first choice of names. Folders that stand so deep
// that their paths would be too long for some systems open no folder of their own.
[[nodiscard]] std::vector<PlannedList> PlanLists(const std::vector<Playlist>& playlists,
                                                 const std::vector<bool>& chosen, Layout layout,
                                                 std::string_view extension);

}  // namespace tavrel::host
