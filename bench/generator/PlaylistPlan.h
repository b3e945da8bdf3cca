// Which playlists a generated library has, and how many items each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::bench {

enum class PlaylistType : std::uint8_t { Master, BuiltIn, Folder, Own };

struct PlaylistPlan {
  PlaylistType type = PlaylistType::Own;
  std::string name;
  std::uint32_t kind = 0;  // "Distinguished Kind"; 0 is none
  std::string_view
      mediaKey{};  // the key that says once more what a built-in playlist holds, or empty
  bool smart = false;
  std::size_t childCount = 0;  // of a folder: the playlists that follow it
  std::size_t parent = 0;      // position of the folder; 0, the master playlist, is none
  std::size_t itemCount = 0;   // of a folder: the sum of its children's
  std::uint64_t persistentId = 0;
};

// In the order in which they are written; the master playlist is the first.
std::vector<PlaylistPlan> PlanPlaylists(std::size_t trackCount, std::uint64_t seed);

}  // namespace tavrel::bench
