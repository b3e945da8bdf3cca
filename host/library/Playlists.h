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

struct Playlist {
  std::int32_t group;
  std::int32_t position;
  std::optional<std::string> name;
  std::int32_t kind;
  std::int32_t songCount;
  PlaylistRecord* handle;
};

// Every playlist, group by group.
[[nodiscard]] std::vector<Playlist> ReadPlaylists(const LibraryFunctions& library);

}  // namespace tavrel::host
