// The tracks of a generated library: made album by album, as real libraries grow.
#pragma once

#include <cstdint>
#include <vector>

#include "bench/generator/PlistWriter.h"

namespace tavrel::bench {

// What playlists need to know of the tracks.
struct TrackList {
  std::vector<std::uint32_t> ids;          // ascending, with gaps
  std::vector<std::uint32_t> albumStarts;  // positions in `ids`
};

// Writes the "Tracks" dictionary. Holds nothing in memory but the list that it returns.
TrackList WriteTracks(PlistWriter& writer, std::uint32_t trackCount, std::uint64_t seed);

}  // namespace tavrel::bench
