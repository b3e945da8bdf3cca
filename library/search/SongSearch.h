// The song search over columns of texts that are ready to be searched.
#pragma once

#include <cstdint>

#include "library/State.h"
#include "tavrel/tavrel.h"

namespace tavrel {

// As SearchSong().
// current: the loaded library, which is searched. A callback may load another one, whose playlists count
//          from then on: so it is looked at afresh for each match.
// own:     the same with what searches keep in it; none when it is a record of the host's own, for which
//          nothing can be kept.
[[nodiscard]] std::int32_t SearchSongs(GlobalState* const& current, LibraryState* own,
                                       const SongInfo& terms, SearchSongCallback callback,
                                       void* context) noexcept;

}  // namespace tavrel
