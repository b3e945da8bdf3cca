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

// The positions of what is found among all songs, in the file's order.
[[nodiscard]] std::vector<std::int32_t> FindSongs(const LibraryFunctions& library,
                                                  const SearchTerms& terms);

}  // namespace tavrel::host
