// A whole life of the library that is linked with the test: loading, all lists, every song twice, searches,
// artwork, an import, unloading. And what of it may be missing when a call to the system has failed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/StandInRunner.h"
#include "tests/support/Survey.h"

namespace tavrel::test {

struct LivedPlaylist {
  std::int32_t kind = 0;
  SeenText name;
  std::vector<std::int32_t> trackIds;

  friend bool operator==(const LivedPlaylist&, const LivedPlaylist&) = default;
};

struct LivedImage {
  std::int32_t format = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::string bytes;  // zeros where nothing was read

  friend bool operator==(const LivedImage&, const LivedImage&) = default;
};

// The cache file of one song, opened by both functions that open one.
struct LivedArtwork {
  bool isFound = false;
  std::vector<LivedImage> images;

  friend bool operator==(const LivedArtwork&, const LivedArtwork&) = default;
};

struct LivedSearch {
  std::int32_t count = 0;
  std::vector<bool> isPlaced;  // for each track: whether the callback was given a playlist

  friend bool operator==(const LivedSearch&, const LivedSearch&) = default;
};

struct Life {
  std::int32_t loaded = 0;
  std::vector<SeenSong> songs;
  std::vector<std::vector<LivedPlaylist>> groups;
  std::vector<LivedSearch> searches;
  std::vector<LivedArtwork> artwork;
  std::vector<std::string> ringtones;  // "NAME LOCATION", before the import
  std::int32_t imported = 0;
  std::vector<std::string> log;

  friend bool operator==(const Life&, const Life&) = default;
};

// The sample library, and a script runner that answers 0.
class LifeScene {
 public:
  LifeScene();

  // Everything is asked for by exported functions; only the library's own calls can fail. What a table or
  // a size says against itself fails the test.
  [[nodiscard]] Life Live() const;

 private:
  ScopedVariable home_;
  StandInRunner runner_{"exit 0"};
};

// Fails the test unless `life` is what failures can leave of `whole`: the tables are the first part of
// those of the whole, a text or an image is there or is missing, what was found is found there too.
void ExpectPartOf(const Life& life, const Life& whole);

}  // namespace tavrel::test
