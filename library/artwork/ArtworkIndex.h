// Finding the cache file of a track in the artwork catalogue, by its name: "LIBRARY-TRACK", two
// persistent IDs of 16 characters, in front of the extension.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "library/State.h"

namespace tavrel {

// What a name stands for: the library's ID and the track's, as bytes, so that digits in upper and
// lower case are the same.
using ArtworkIds = std::array<std::uint8_t, 16>;

// The IDs in a path's last component, extension aside; none when the parts before and behind the
// first '-' are not exactly 16 bytes long each.
[[nodiscard]] std::optional<ArtworkIds> ArtworkIdsIn(std::string_view path) noexcept;

// The path of the first file of the catalogue whose name stands for `ids`; borrowed, null when
// there is none.
// Cost: constant, plus a look at each file that the catalogue has gained since the last search.
//       Without memory for an index, every name is tried.
[[nodiscard]] const char* FindArtworkFile(LibraryState& state, const ArtworkIds& ids) noexcept;

void ReleaseArtworkIndex(LibraryState& state) noexcept;

}  // namespace tavrel
