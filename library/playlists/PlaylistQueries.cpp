#include "library/playlists/PlaylistQueries.h"

#include <cstring>

namespace tavrel {
namespace {

const PlaylistGroup* GroupAt(const GlobalState* state, std::int32_t groupIndex) noexcept {
  if (state == nullptr || groupIndex < 0 || groupIndex >= state->groupCount) return nullptr;
  return state->groups[groupIndex];
}

}  // namespace

std::int32_t PlaylistCount(const GlobalState* state, std::int32_t groupIndex) noexcept {
  const PlaylistGroup* group = GroupAt(state, groupIndex);
  return group == nullptr ? 0 : group->count;
}

PlaylistRecord* PlaylistAt(const GlobalState* state, std::int32_t groupIndex,
                           std::int32_t index) noexcept {
  const PlaylistGroup* group = GroupAt(state, groupIndex);
  if (group == nullptr || index < 0 || index >= group->count) return nullptr;
  return group->playlists[index];
}

std::int32_t CopyPlaylistName(const PlaylistRecord* playlist, char* buffer,
                              std::int32_t bufferSize) noexcept {
  if (playlist == nullptr) return 0;
  if (buffer == nullptr || playlist->nameSize > bufferSize) return playlist->nameSize;
  if (playlist->name != nullptr) {
    std::memcpy(buffer, playlist->name, std::strlen(playlist->name) + 1);
  } else if (bufferSize > 0) {
    buffer[0] = '\0';
  }
  return playlist->nameSize;
}

PlaylistRecord* PlaylistOfTrack(const GlobalState* state, std::int32_t trackId,
                                std::int32_t* index) noexcept {
  const std::int32_t groupCount = state == nullptr ? 0 : state->groupCount;
  for (std::int32_t g = 0; g < groupCount; ++g) {
    const PlaylistGroup* group = state->groups[g];
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

PlaylistRecord* AllSongs(LibraryState& state) noexcept {
  if (state.document == nullptr) return nullptr;
  if (state.allSongs == nullptr) {
    void* place = state.trackRecords.Take(sizeof(PlaylistRecord));
    state.allSongs = static_cast<PlaylistRecord*>(place);
    if (place == nullptr) return nullptr;
  }
  state.allSongs->tracks = state.tracks;
  state.allSongs->capacity = state.trackCapacity;
  state.allSongs->count = state.trackCount;
  return state.allSongs;
}

}  // namespace tavrel
