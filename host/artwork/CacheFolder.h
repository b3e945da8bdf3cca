// The artwork cache as a folder of files: which of them belong to a song, and to which. The library
// opens a song's file without telling where it lies.
#pragma once

#include <string>
#include <vector>

#include "host/artwork/PersistentIds.h"
#include "host/library/TextHash.h"

namespace tavrel::host {

class CacheFolder {
 public:
  // library:     whose songs the files belong to; one without a file has none.
  // libraryFile: the path of the library file, beside which the folder "Album Artwork" lies.
  CacheFolder(const LibraryFunctions& library, const std::string& libraryFile);

  // The path of the cache file of a song of the library, by its position; empty when there is none.
  [[nodiscard]] std::string FileOf(std::size_t song) const;

  // Whether there is no cache file at all.
  [[nodiscard]] bool IsEmpty() const noexcept { return files_.empty() && unclaimed_.empty(); }

  // The files that belong to no song of the library, in the order of their paths.
  [[nodiscard]] const std::vector<std::string>& Unclaimed() const noexcept { return unclaimed_; }

 private:
  PersistentIds ids_;
  TextMap<std::string> files_;  // the first file of each track ID
  std::vector<std::string> unclaimed_;
};

}  // namespace tavrel::host
