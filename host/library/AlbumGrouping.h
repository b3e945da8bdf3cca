// What one album is.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/library/SongReader.h"
#include "host/library/TextNumbers.h"

namespace tavrel::host {

inline constexpr std::string_view kVariousArtists = "Various Artists";

// Puts songs together to albums. Songs belong to one album when they name the same one and share
// their artist or their folder, so that an album of several artists stays together, and so do the
// discs of one artist. An album artist counts instead of the artist; compilations of one name without an
// album artist are one album. How accents are composed makes no difference.
//
//   song ──► part: a title by an artist         "Hits" by A   "Hits" by B   "Hits" by C
//                                                    └─ one folder ─┘            │
//   part ──► album: parts that folders join       the album, named by its     another album
//                                                 first part
//
// Cost: all songs together take a little more than linear time in the length of their texts.
class AlbumGrouping {
 public:
  // The part that the song belongs to, counted from 0 in the order of their first songs; none for a
  // song without an album.
  std::optional<std::size_t> Add(const Song& song);

  // The same for a song whose part is known already; none when it is not.
  [[nodiscard]] std::optional<std::size_t> Find(const Song& song) const;

  // For each part the first part of its album, which stands for the album.
  [[nodiscard]] std::vector<std::size_t> Albums() const;

  // With accents composed.
  [[nodiscard]] const std::string& TitleOf(std::size_t part) const { return parts_[part].title; }
  [[nodiscard]] const std::string& ArtistOf(std::size_t part) const { return parts_[part].artist; }

 private:
  struct Part {
    std::string title;
    std::string artist;
    std::size_t earlier;  // a part of the same album, or this one when it is the album's first
  };
  [[nodiscard]] std::size_t PartOf(std::string_view title, std::string_view artist);
  void Join(std::size_t part, std::size_t other);

  std::vector<Part> parts_;
  TextNumbers byArtist_;  // titles and artists, as the file writes them and composed
  std::vector<std::size_t> partsByArtist_;  // of each of these
  TextNumbers byFolder_;                    // titles and folders
  std::vector<std::size_t> partsByFolder_;  // the first of each of these
  std::string key_;
  // Of the song before, if it has an album: nearly always the next one is of the same album and folder.
  std::string lastKey_;
  std::string lastFolder_;
  std::size_t lastPart_ = 0;
};

}  // namespace tavrel::host
