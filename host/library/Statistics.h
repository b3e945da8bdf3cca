// What a library amounts to: sums, and what it holds most of.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/library/Library.h"

namespace tavrel::host {

// One artist, album or genre. Texts that differ only in how their accents are composed are the
// same.
struct Tally {
  std::string name;
  std::string artist;  // of an album, "Various Artists" say; else empty
  std::int64_t songs = 0;
  std::int64_t time = 0;  // in milliseconds
};

struct PlayedSong {
  std::optional<std::string> name;
  std::optional<std::string> artist;
  std::int64_t plays = 0;
};

struct Statistics {
  std::int64_t songs = 0;
  std::int64_t movies = 0;    // of the songs, those that are no podcasts
  std::int64_t podcasts = 0;  // of the songs
  std::int64_t time = 0;      // in milliseconds; a song with a negative time counts as 0
  // At most kTopCount each. The first has the most songs, or plays; equal ones stand in the order
  // of their times, then of their names. Songs that lack the text are not counted.
  std::vector<Tally> artists;
  std::vector<Tally> albums;  // as AlbumGrouping tells them apart
  std::vector<Tally> genres;
  std::vector<PlayedSong> mostPlayed;  // songs that were never played are not among them
};

inline constexpr std::size_t kTopCount = 5;

[[nodiscard]] Statistics CollectStatistics(const LibraryFunctions& library);

}  // namespace tavrel::host
