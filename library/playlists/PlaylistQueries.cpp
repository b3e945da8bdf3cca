// The questions that a host asks about playlists.
#include <cstring>

#include "agent/Implementations.h"
#include "library/playlists/PlaylistTable.h"

namespace {

// The group at that position; none for a bad one, or when no library is loaded.
const PlaylistGroup* GroupAt(std::int32_t groupIndex) noexcept {
  if (g_pGlobal == nullptr || groupIndex < 0 || groupIndex >= g_pGlobal->groupCount) return nullptr;
  return g_pGlobal->groups[groupIndex];
}

PlaylistRecord* PlaylistAt(std::int32_t groupIndex, std::int32_t index) noexcept {
  const PlaylistGroup* group = GroupAt(groupIndex);
  if (group == nullptr || index < 0 || index >= group->count) return nullptr;
  return group->playlists[index];
}

}  // namespace

std::int32_t GetPlaylistCountImp(std::int32_t groupIndex) noexcept {
  const PlaylistGroup* group = GroupAt(groupIndex);
  return group == nullptr ? 0 : group->count;
}

PlaylistRecord* OpenPlaylistImp(std::int32_t groupIndex, std::int32_t index) noexcept {
  return PlaylistAt(groupIndex, index);
}

std::int32_t ClosePlaylistImp(PlaylistRecord* playlist) noexcept {
  return playlist == nullptr ? 0 : 1;
}

std::int32_t GetPlaylistKindImp(const PlaylistRecord* playlist) noexcept {
  return playlist == nullptr ? 0 : playlist->kind;
}

std::int32_t GetSongCountImp(const PlaylistRecord* playlist) noexcept {
  return playlist == nullptr ? 0 : playlist->count;
}

std::int32_t GetPlaylistNameImp(std::int32_t groupIndex, std::int32_t index, char* buffer,
                                std::int32_t bufferSize) noexcept {
  const PlaylistRecord* playlist = PlaylistAt(groupIndex, index);
  if (playlist == nullptr) return 0;
  if (buffer == nullptr || playlist->nameSize > bufferSize) return playlist->nameSize;
  if (playlist->name != nullptr) {
    std::memcpy(buffer, playlist->name, std::strlen(playlist->name) + 1);
  } else if (bufferSize > 0) {
    buffer[0] = '\0';
  }
  return playlist->nameSize;
}

PlaylistRecord* GetPlaylistByTrackId(std::int32_t trackId, std::int32_t* index) noexcept {
  const std::int32_t groupCount = g_pGlobal == nullptr ? 0 : g_pGlobal->groupCount;
  for (std::int32_t g = 0; g < groupCount; ++g) {
    const PlaylistGroup* group = g_pGlobal->groups[g];
    for (std::int32_t p = 0; p < group->count; ++p) {
      PlaylistRecord* playlist = group->playlists[p];
      for (std::int32_t i = 0; i < playlist->count; ++i) {
        if (playlist->tracks[i]->trackId != trackId) continue;
        if (index != nullptr) *index = i;
        return playlist;
      }
    }
  }
  return nullptr;
}
