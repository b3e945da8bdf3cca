// Sorting songs.
#pragma once

#include <cstdint>
#include <vector>

#include "host/library/SongRecord.h"

namespace tavrel::host {

// Sorts positions in the playlist by the fields, the first one first. Texts compare without case and
// accents, numbers as numbers; songs that are equal keep their order, and those without a value stand last,
// whichever way the others are sorted.
// Cost: the values of these fields are kept for every song.
void SortSongs(const LibraryFunctions& library, PlaylistRecord* playlist,
               const std::vector<Field>& fields, bool isReversed,
               std::vector<std::int32_t>& positions);

}  // namespace tavrel::host
