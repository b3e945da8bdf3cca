// A home folder with as many cache files as songs.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "bench/support/TemporaryFolder.h"

namespace tavrel::bench {

class ArtworkHome {
 public:
  // Each song has a cache file of one image.
  ArtworkHome(int songs, std::size_t imageBytes);

  [[nodiscard]] const std::string& path() const { return folder_.path(); }
  // The cache files, in the order of the songs.
  [[nodiscard]] const std::vector<std::string>& files() const { return files_; }

 private:
  TemporaryFolder folder_;
  std::vector<std::string> files_;
};

// The 16 digits of a song's persistent ID.
[[nodiscard]] std::string TrackId(int song);

}  // namespace tavrel::bench
