// The covers of songs.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/artwork/Artwork.h"
#include "host/artwork/CacheFolder.h"
#include "host/library/Library.h"
#include "host/library/TextHash.h"

namespace tavrel::host {

// Opens each cache file that gives no picture once, however many songs share it; and none at all while the
// artwork cache holds none, since the library looks for one at every call then.
class Covers {
 public:
  // Both are borrowed. cache: that of the library file which the library has read. longestSide: that
  // pictures may have at most; 0 for any.
  Covers(const LibraryFunctions& library, const CacheFolder& cache, std::int32_t longestSide = 0)
      : library_(library),
        cache_(cache),
        longestSide_(longestSide),
        songs_(library.openAllSongs()) {}

  // The cache file of a song of the library, by its position; a closed one when there is none, or when it
  // is known to give no picture. A file that is there but cannot be opened is damaged.
  [[nodiscard]] Artwork Open(std::int32_t song);

  // The largest picture of an opened file, made as small as is asked for. A file without one, although it
  // holds images, is damaged; one whose picture cannot be made smaller gives none.
  // file: its path; empty when it is not known.
  [[nodiscard]] std::optional<Picture> In(const Artwork& artwork, const std::string& file);

  // The song's own cover.
  [[nodiscard]] std::optional<Picture> Of(std::int32_t song);

  // The paths of the damaged files that were met so far.
  [[nodiscard]] const std::set<std::string>& Damaged() const noexcept { return damaged_; }

  // Why pictures were not made smaller, as messages.
  [[nodiscard]] const std::vector<std::string>& NotScaled() const noexcept { return notScaled_; }

 private:
  const LibraryFunctions& library_;
  const CacheFolder& cache_;
  std::int32_t longestSide_;
  PlaylistRecord* songs_;
  std::set<std::string> damaged_;
  std::vector<std::string> notScaled_;
  TextSet withoutPicture_;  // files
};

// The covers of songs one after the other, of which one is in memory at a time.
class OneCover {
 public:
  // Both are borrowed, and fit each other.
  OneCover(Covers& covers, const CacheFolder& cache) : covers_(covers), cache_(cache) {}

  // The song's own cover, until the next call; null when it has none.
  [[nodiscard]] const Picture* Of(std::int32_t song);

 private:
  Covers& covers_;
  const CacheFolder& cache_;
  std::optional<Picture> picture_;
  std::int32_t song_ = 0;  // whose picture it is, and from which file
  std::string file_;
};

}  // namespace tavrel::host
