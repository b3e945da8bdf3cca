// The artwork of a song.
#pragma once

#include <cstdint>

#include "library/State.h"
#include "library/artwork/ArtworkHandle.h"

namespace tavrel {

// Opens the cache file of the song at `index` of the playlist, as OpenArtwork() does.
// loaded: the loaded library, whose own tracks' properties are read into its memory; may be none.
[[nodiscard]] ArtworkHandle* OpenSongArtwork(LibraryState& state, LibraryState* loaded,
                                             const PlaylistRecord* playlist, std::int32_t index,
                                             ArtworkLayouts layouts) noexcept;

}  // namespace tavrel
