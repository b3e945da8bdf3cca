// The first position of each track of the library file among the playlists: what PlaylistOfTrack()
// answers for its Track ID, known beforehand.
#pragma once

#include <cstdint>
#include <span>

#include "library/State.h"
#include "system/Memory.h"

namespace tavrel {

struct SongPosition {
  PlaylistRecord* playlist;  // none: no playlist holds such a track
  std::int32_t index;
  std::int32_t group;
};

// A plain record: all zero is empty.
class FirstPositions {
 public:
  // That of track number `track`, whose Track ID is trackIds[track].
  // state, trackIds: the library, and the Track IDs of its tracks in the file's order; the same in each
  //                  call.
  // Cost: the first call, and the first one after the playlists have changed, go through all of
  // them; without memory for that, each call does.
  [[nodiscard]] SongPosition Find(const LibraryState& state, std::span<const std::int32_t> trackIds,
                                  std::size_t track) noexcept;

  void Release() noexcept;

 private:
  [[nodiscard]] bool IsCurrent() const noexcept;
  [[nodiscard]] bool Renew(const LibraryState& state,
                           std::span<const std::int32_t> trackIds) noexcept;

  system::ZeroedBlock block_;
  SongPosition* positions_;  // for each track; none: not known
  std::uint32_t changes_;    // playlistChanges when they were found
};

}  // namespace tavrel
