#include "host/library/Playlists.h"

#include <array>
#include <cstring>

namespace tavrel::host {
namespace {

std::optional<std::string> ReadName(const LibraryFunctions& library, std::int32_t group,
                                    std::int32_t position) {
  const std::int32_t size = library.getPlaylistName(group, position, nullptr, 0);
  if (size <= 0) return std::nullopt;
  std::string name(static_cast<std::size_t>(size), '\0');
  library.getPlaylistName(group, position, name.data(), size);
  name.resize(std::strlen(name.c_str()));
  return name;
}

}  // namespace

std::string_view GroupName(std::int32_t group) {
  constexpr std::array<std::string_view, kGroupCount> kNames{"library", "Genius", "other"};
  return kNames.at(static_cast<std::size_t>(group));
}

std::vector<Playlist> ReadPlaylists(const LibraryFunctions& library) {
  std::vector<Playlist> playlists;
  for (std::int32_t group = 0; group < kGroupCount; ++group) {
    const std::int32_t count = library.getPlaylistCount(group);
    for (std::int32_t position = 0; position < count; ++position) {
      PlaylistRecord* handle = library.openPlaylist(group, position);
      playlists.push_back({group, position, ReadName(library, group, position),
                           library.getPlaylistKind(handle), library.getSongCount(handle), handle});
    }
  }
  return playlists;
}

}  // namespace tavrel::host
