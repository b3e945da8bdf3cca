// The song search for hosts that want to hear of matches only.
#pragma once

#include <cstdint>

#include "library/State.h"
#include "tavrel/tavrel.h"

namespace tavrel {

// As FindSongs(), in a library with or without a document. Should the callback load another library, the
// search goes on in this one.
[[nodiscard]] std::int32_t FindMatches(LibraryState& state, const SongInfo& terms,
                                       FindSongsCallback callback, void* context) noexcept;

}  // namespace tavrel
