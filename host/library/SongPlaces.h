// Which playlists hold a song.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "host/library/Library.h"
#include "host/library/Playlists.h"

namespace tavrel::host {

// For songs of the library, the playlists that hold them. Playlists name songs by their track IDs; where
// several songs have one ID, the first of them counts.
// Cost: a look at each item of each playlist.
class SongPlaces {
 public:
  // The playlists are borrowed.
  SongPlaces(const LibraryFunctions& library, const std::vector<Playlist>& playlists);

  // By the position among all songs: the playlists, in their order, each once.
  [[nodiscard]] std::vector<const Playlist*> Of(std::int32_t song) const;

 private:
  using Held = std::pair<std::int32_t, std::size_t>;  // a song, and the number of a playlist

  const std::vector<Playlist>& playlists_;
  std::vector<Held> held_;  // ascending
};

inline constexpr const char* kTrackIdKey = "Track ID";

// The number that a track ID is; none for a text that is no number.
[[nodiscard]] std::optional<std::int64_t> TrackIdOf(std::string_view text) noexcept;

// A song's track ID, and its position among all songs.
using NumberedId = std::pair<std::int64_t, std::int32_t>;

// The position among all songs of each song of a playlist; -1 for what is not in the file.
class SongNumbers {
 public:
  // Cost: a look at each song.
  explicit SongNumbers(const LibraryFunctions& library);
  // The same for who has read all songs. ids: of those that have one.
  SongNumbers(const LibraryFunctions& library, std::vector<NumberedId> ids);

  [[nodiscard]] std::int32_t Of(const PlaylistRecord* playlist, std::int32_t position) const;

 private:
  const LibraryFunctions& library_;
  std::vector<NumberedId> byId_;  // ascending
};

}  // namespace tavrel::host
