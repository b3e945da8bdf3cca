// Where each track of the library file stands first among the playlists: what
// GetPlaylistByTrackId() answers for its Track ID, known beforehand.
#pragma once

#include <cstdint>
#include <span>

#include "library/State.h"
#include "system/Memory.h"

namespace tavrel {

struct SongPlace {
  PlaylistRecord* playlist;  // none: no playlist holds such a track
  std::int32_t position;
  std::int32_t group;
};

// A plain record: all zero is empty.
class SongPlaces {
 public:
  // The place of track number `track`, whose Track ID is trackIds[track].
  // trackIds: those of the library file's tracks, in its order; the same in each call.
  // Cost: the first call, and the first one after the playlists have changed, go through all of
  // them; without memory for that, each call does.
  [[nodiscard]] SongPlace Find(std::span<const std::int32_t> trackIds, std::size_t track) noexcept;

  void Release() noexcept;

 private:
  [[nodiscard]] bool Renew(std::span<const std::int32_t> trackIds) noexcept;

  system::ZeroedBlock block_;
  SongPlace* places_;      // for each track; none: not known
  std::uint32_t changes_;  // playlistChanges when they were found
};

}  // namespace tavrel
