// The playlists of a generated library: the hidden one that holds everything, those that iTunes
// makes, smart ones, folders and the user's own.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bench/generator/GeneratedTracks.h"
#include "bench/generator/PlistWriter.h"

namespace tavrel::bench {

struct PlaylistCounts {
  std::size_t playlists = 0;
  std::size_t items = 0;
};

// Writes the "Playlists" array: always the same number of playlists, with half as many items again
// as there are tracks.
PlaylistCounts WritePlaylists(PlistWriter& writer, const TrackList& tracks, std::uint64_t seed);

}  // namespace tavrel::bench
