// A home folder with a library and an artwork cache, and the library loaded from it in this
// process.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "library/State.h"
#include "tavrel/tavrel.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::test {

inline constexpr std::string_view kLibraryId = "0A1B2C3D4E5F6071";

class ArtworkHome {
 public:
  ArtworkHome() = default;
  ArtworkHome(const ArtworkHome&) = delete;
  ArtworkHome& operator=(const ArtworkHome&) = delete;
  ~ArtworkHome();

  // A library of one track for each ID; no "Persistent ID" for an empty one.
  void WriteLibrary(const std::vector<std::string>& trackIds,
                    std::string_view libraryId = kLibraryId) const;
  // Writes a file below the artwork folder and returns its path.
  std::string WriteCache(std::string_view name, std::string_view contents) const;
  // The artwork folder, which need not exist.
  [[nodiscard]] std::string Artwork() const;
  [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }

  void Load();
  void Unload();

  // The paths of the catalogue, relative to the artwork folder.
  [[nodiscard]] std::vector<std::string> Catalogue() const;

 private:
  TemporaryFolder folder_;
  bool loaded_ = false;
};

// The base name of the cache file of a track.
[[nodiscard]] inline std::string CacheName(std::string_view trackId,
                                           std::string_view libraryId = kLibraryId) {
  return std::string(libraryId) + "-" + std::string(trackId);
}

// A track ID of 16 digits.
[[nodiscard]] std::string TrackId(unsigned long long number);

// How many descriptors this process has open.
[[nodiscard]] std::size_t OpenDescriptors();

}  // namespace tavrel::test
