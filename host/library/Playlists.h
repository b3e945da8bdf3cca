// The playlists of the library, group by group.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/Library.h"

namespace tavrel::host {

inline constexpr std::int32_t kGroupCount = 3;

// What the groups are called on screen: "library", "Genius", "other".
[[nodiscard]] std::string_view GroupName(std::int32_t group);

enum class PlaylistType { List, Smart, Folder, BuiltIn };

// "list", "smart", "folder", "built-in"
[[nodiscard]] std::string_view TypeName(PlaylistType type);

struct Playlist {
  std::int32_t group;
  std::int32_t position;
  std::optional<std::string> name;
  std::int32_t kind;
  std::int32_t songCount;
  PlaylistRecord* handle;
  std::string id = {};      // its persistent ID; empty when it has none
  std::string parent = {};  // the ID of the folder that holds it; empty at the top
  PlaylistType type = PlaylistType::List;
  bool isInFile = true;  // not so of the list of ringtones
};

// Every playlist, group by group.
[[nodiscard]] std::vector<Playlist> ReadPlaylists(const LibraryFunctions& library);

}  // namespace tavrel::host
