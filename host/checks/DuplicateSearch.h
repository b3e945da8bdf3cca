// Songs that a library holds twice.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "host/library/SongRecord.h"
#include "host/library/TextHash.h"

namespace tavrel::host {

using Positions = std::vector<std::int32_t>;  // among all songs, ascending

struct Duplicates {
  bool isOneFile = false;  // several songs name one file; else they are alike
  Positions songs;
};

// Two songs are the same when they name one file, or share artist, album and name, without regard to case and
// to how accents are composed, and are of one length within two seconds.
class DuplicateSearch {
 public:
  // What it reads of a song.
  [[nodiscard]] static FieldSet Fields();

  void Add(std::int32_t position, const SongRecord& song);

  // Takes what was added. In the order of their first songs.
  [[nodiscard]] std::vector<Duplicates> Take();

 private:
  using Timed = std::pair<std::int64_t, std::int32_t>;  // a length in milliseconds, a position

  void AddGroups(std::vector<Timed> alike, std::vector<Duplicates>& groups) const;

  TextMap<std::size_t> files_;
  std::vector<Positions> byFile_;
  std::vector<std::size_t> fileOf_;  // by the position; kNoFile
  TextMap<std::size_t> titles_;
  std::vector<std::vector<Timed>> byTitle_;
};

}  // namespace tavrel::host
