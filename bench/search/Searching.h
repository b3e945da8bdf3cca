// Searches of the library that is loaded and selected.
#pragma once

#include <cstdint>
#include <string>

#include "bench/search/SearchPeers.h"
#include "tavrel/tavrel.h"

namespace tavrel::bench {

// Search terms that borrow their texts.
[[nodiscard]] SongInfo Terms(const std::string& name, const std::string& artist,
                             const std::string& album);
[[nodiscard]] inline SongInfo Terms(const std::string& any) {
  return Terms(any, any, any);
}

// The number of matches. Throws std::runtime_error when a callback, that of SearchSong() or of FindSongs(),
// hears anything else than that of a plain search: figures of such a search are worth nothing.
[[nodiscard]] std::int32_t CheckedCount(const SongInfo& terms);

[[nodiscard]] double SecondsOfSearch(const SongInfo& terms);
// Of one more FindSongs(): the mean of many in a row.
[[nodiscard]] double SecondsOfFinding(const SongInfo& terms);
[[nodiscard]] double SecondsOfPlainSearch(const SongInfo& terms);

[[nodiscard]] TrackTexts ReadTexts();

}  // namespace tavrel::bench
