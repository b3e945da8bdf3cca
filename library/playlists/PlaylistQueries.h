// The questions that a host asks about playlists. A state that is none, a null playlist and a bad
// position answer 0 or none.
#pragma once

#include <cstdint>

#include "library/State.h"
#include "library/playlists/PlaylistTable.h"

namespace tavrel {

[[nodiscard]] std::int32_t PlaylistCount(const GlobalState* state,
                                         std::int32_t groupIndex) noexcept;
[[nodiscard]] PlaylistRecord* PlaylistAt(const GlobalState* state, std::int32_t groupIndex,
                                         std::int32_t index) noexcept;

// As GetPlaylistName(), of a playlist that may be none.
std::int32_t CopyPlaylistName(const PlaylistRecord* playlist, char* buffer,
                              std::int32_t bufferSize) noexcept;

[[nodiscard]] inline TrackRecord* SongAt(const PlaylistRecord* playlist,
                                         std::int32_t index) noexcept {
  if (playlist == nullptr || index < 0 || index >= playlist->count) return nullptr;
  return playlist->tracks[index];
}

// The first playlist that holds a track with that ID, groups and playlists in their order.
// index:  receives the track's position in it; untouched when there is none; may be null.
// Cost: a scan of every playlist up to that position.
[[nodiscard]] PlaylistRecord* PlaylistOfTrack(const GlobalState* state, std::int32_t trackId,
                                              std::int32_t* index) noexcept;

// Every track of the library file as one playlist, which stands in no group: the track table's own
// array, nothing is copied. None without a document, or when memory is exhausted.
[[nodiscard]] PlaylistRecord* AllSongs(LibraryState& state) noexcept;

}  // namespace tavrel
