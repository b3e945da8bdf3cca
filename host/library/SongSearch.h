// Searching songs through the library.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/library/Library.h"

namespace tavrel::host {

// What is looked for; none where nothing is. A song is found by any of them.
struct SearchTerms {
  std::optional<std::string> name;
  std::optional<std::string> artist;
  std::optional<std::string> album;
};

struct FoundSong {
  std::int32_t track;        // its position among all songs
  PlaylistRecord* playlist;  // the first that holds it; null when none does
  std::int32_t position;     // in that playlist
};

// The first `limit` songs that are found, in the file's order; 0 for all.
[[nodiscard]] std::vector<FoundSong> FindSongs(const LibraryFunctions& library,
                                               const SearchTerms& terms, std::size_t limit);

// The number of them alone, which takes less time.
[[nodiscard]] std::size_t CountSongs(const LibraryFunctions& library, const SearchTerms& terms,
                                     std::size_t limit);

}  // namespace tavrel::host
